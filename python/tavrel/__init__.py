"""Reads and verifies recordings of Tavrel without the program.

    import tavrel
    recording = tavrel.Recording.open("M260314A.OVN")
    print(recording.verify().state)
    for row in recording:
        print(row.seconds, row.degrees)
"""

from .header import Header
from .journal import Journal, Line, read_journal
from .recording import NotAnchored, NotARecording, Recording, Row
from .verdict import RowRange, State, Verdict, verify

__all__ = ["Header", "Journal", "Line", "NotARecording", "NotAnchored", "Recording", "Row",
           "RowRange", "State", "Verdict", "read_journal", "verify"]
