"""Reads and verifies recordings of Tavrel without the program.

    import tavrel
    recording = tavrel.Recording.open("M260314A.OVN")
    print(recording.verify().state)
    for row in recording:
        print(row.seconds, row.degrees)
"""

from .header import Header
from .journal import Journal, Line, read_journal
from .ledger import Bounds, Ledger, Loss, NoLedger
from .recording import NotAnchored, NotARecording, Recording, Row
from .verdict import RowRange, State, Verdict, verify

__all__ = ["Bounds", "Header", "Journal", "Ledger", "Line", "Loss", "NoLedger", "NotARecording",
           "NotAnchored", "Recording", "Row", "RowRange", "State", "Verdict", "read_journal", "verify"]
