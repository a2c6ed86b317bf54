"""Makes recordings and journals from what docs/recording_file.md and recording_journal.md say."""

from __future__ import annotations

import hashlib
import json
import struct
from pathlib import Path
from typing import Any

HEADER_BYTES = 1000


def header(words: dict[int, int] | None = None, texts: dict[int, str] | None = None) -> bytes:
    """A header with inputs 1 and 5 of instrument 1, a row every 10 s; words and texts by place."""
    values = [0] * 100
    for place, word in ({0: 1, 1: 2, 2: 1, 3: 5, 4: 1, 8: 2, 22: 1} | (words or {})).items():
        values[place] = word
    data = bytearray(struct.pack("<100h", *values))
    for place in range(40):
        text = (texts or {}).get(place)
        data += bytes(20) if text is None else text.encode("cp1252").ljust(20)[:20]
    return bytes(data)


def rows_bytes(rows: list[list[int]]) -> bytes:
    """Rows of words as they lie in the file."""
    return b"".join(struct.pack(f"<{len(row)}h", *row) for row in rows)


def sha(data: bytes) -> str:
    """SHA-256 as the journal writes it."""
    return hashlib.sha256(data).hexdigest()


class JournalMaker:
    """Adds lines to a journal; `text` is what lies on the disk."""

    def __init__(self) -> None:
        self.text = b""
        self.lines = 0
        self.time = "2026-03-14T10:00:00+01:00"
        self.boot = "5d1f0000000000000000000000000001"
        self.up = 1000.0

    def line(self, kind: str, **members: Any) -> bytes:
        """The bytes of the next line with its line feed; adds nothing."""
        body = {"n": self.lines + 1, "time": self.time, "up": round(self.up, 3),
                "boot": self.boot, "kind": kind} | members
        text = json.dumps(body, separators=(",", ":"), ensure_ascii=False)[:-1].encode()
        return text + b',"sum":"' + sha(self.text + text)[:16].encode() + b'"}\n'

    def add(self, kind: str, **members: Any) -> None:
        """Adds a line at the next second."""
        self.text += self.line(kind, **members)
        self.lines += 1
        self.up += 1.0

    def begin(self, file: str, columns: int = 2) -> None:
        """The first line of every journal."""
        self.add("begin", id="0123456789abcdef" * 2, file=file, computer="pc", login="maria",
                 program="6.1", line="direct", instrument=1, controller=1, reference=5,
                 inputs=[1, 5][:columns], interval=10)

    def seal(self, recording: bytes, rows: int, columns: int = 2) -> None:
        """A seal of the header and the first rows of a recording."""
        data = recording[HEADER_BYTES:HEADER_BYTES + 2 * columns * rows]
        self.add("seal", rows=rows, columns=columns, data=sha(data),
                 header=sha(recording[:HEADER_BYTES]), journal=sha(self.text))

    def tear(self, unfinished: list[bytes]) -> None:
        """A kill within a line, and the next start: each part is ended by a line feed."""
        left = b"\n".join(unfinished)
        self.text += left + b"\n"
        self.add("torn", bytes=len(left))


def write(folder: Path, name: str, recording: bytes, journal: bytes | None) -> Path:
    """Puts a recording and its journal where the program would."""
    path = folder / name
    path.write_bytes(recording)
    if journal is not None:
        (folder / "journal").mkdir(exist_ok=True)
        (folder / "journal" / name).write_bytes(journal)
    return path
