"""The journal of a recording: one JSON object a line, each bound to all before it."""

from __future__ import annotations

import hashlib
import json
import re
from dataclasses import dataclass
from datetime import datetime, timezone
from pathlib import Path
from typing import Any, Final

_ENDING: Final = re.compile(rb',"sum":"(.{16})"\}\Z', re.DOTALL)

_TIME: Final = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d\Z", re.ASCII)


@dataclass(frozen=True)
class Line:
    """One line of a journal that fits."""

    members: dict[str, Any]
    """All members of the JSON object, ``sum`` included."""
    offset: int
    """Where it begins in the journal, in bytes."""

    @property
    def n(self) -> int:
        """Running number, from 1."""
        return int(self.members["n"])

    @property
    def kind(self) -> str:
        """What the line tells; readers pass over kinds that they do not know."""
        return str(self.members["kind"])

    @property
    def time(self) -> datetime | None:
        """The computer's local time with its zone, None if the line has none."""
        text = self.members.get("time")
        if not isinstance(text, str) or not _TIME.match(text):
            return None
        try:
            time = datetime.fromisoformat(text)
            time.astimezone(timezone.utc)
        except (ValueError, OverflowError):
            return None
        return time

    def number(self, name: str) -> int | None:
        """A whole number of the line; None if it is null, missing or something else."""
        value = self.members.get(name)
        return value if isinstance(value, int) and not isinstance(value, bool) else None


@dataclass(frozen=True)
class Journal:
    """A journal as far as its lines fit."""

    text: bytes
    lines: tuple[Line, ...]
    unfinished: bool
    """A line at the end is not whole, as after a kill."""
    damaged_from: int | None
    """The first line of the text (from 1) that does not fit: one is missing, doubled, changed or in
    another place. The lines before it can be used."""

    @property
    def seals(self) -> tuple[Line, ...]:
        """The lines by which the recording can be checked."""
        return tuple(line for line in self.lines if line.kind == "seal")


def read_journal(text: bytes) -> Journal:
    """Reads the lines of a journal up to the first one that does not fit. Takes any bytes."""
    return _Reader(text).read()


def journal_path(recording: Path) -> Path:
    """Where the journal of a recording lies, whether it is there or not."""
    return recording.parent / "journal" / recording.name


class _Reader:
    """Walks over the lines once and carries one hash along over all bytes before."""

    def __init__(self, text: bytes) -> None:
        self._text = text
        self._lines: list[Line] = []
        self._hash = hashlib.sha256()
        self._hashed = 0
        self._number = 0  # of the line as an editor counts them, from 1
        # Of the lines that do not fit since the last one that does: where the first begins, its
        # number, and whether each of them lacks its own ending.
        self._gap: int | None = None
        self._gap_number = 0
        self._gap_is_unfinished = True

    def read(self) -> Journal:
        if not self._text:
            return Journal(b"", (), True, None)
        begin = 0
        while begin < len(self._text):
            feed = self._text.find(b"\n", begin)
            end = len(self._text) if feed < 0 else feed
            self._number += 1
            self._take(begin, end)
            begin = end + 1
        return self._result()

    def _result(self) -> Journal:
        has_begin = bool(self._lines) and self._lines[0].kind == "begin"
        damaged_from: int | None = None
        if self._gap is not None and not self._gap_is_unfinished:
            damaged_from = self._gap_number
        elif self._gap is None and not has_begin:
            damaged_from = 1
        unfinished = self._gap is not None and self._gap_is_unfinished
        return Journal(self._text, tuple(self._lines), unfinished, damaged_from)

    def _take(self, begin: int, end: int) -> None:
        members = self._fitting(begin, end)
        if members is None or (self._gap is not None and not self._closes_gap(members, begin)):
            self._add_to_gap(begin, end)
            return
        self._gap = None
        self._gap_is_unfinished = True
        self._lines.append(Line(members, begin))

    def _add_to_gap(self, begin: int, end: int) -> None:
        if self._gap is None:
            self._gap = begin
            self._gap_number = self._number
        if _ENDING.search(self._text, max(begin, end - 64), end):
            self._gap_is_unfinished = False

    def _closes_gap(self, members: dict[str, Any], begin: int) -> bool:
        assert self._gap is not None
        return members.get("kind") == "torn" and members.get("bytes") == begin - 1 - self._gap

    def _fitting(self, begin: int, end: int) -> dict[str, Any] | None:
        """The members of a line with the next number and the right sum, else None."""
        before = self._hash_up_to(begin)
        ending = _ENDING.search(self._text, max(begin, end - 64), end)
        if ending is None:
            return None
        if self._hash_up_to(ending.start()).hexdigest()[:16].encode() != ending[1]:
            return None
        try:
            members = json.loads(self._text[begin:end].decode("utf-8"))
        except (ValueError, RecursionError):
            return None
        if not isinstance(members, dict) or not isinstance(members.get("kind"), str):
            return None
        is_seal = members["kind"] == "seal"
        if is_seal and members.get("journal") != before.hexdigest():
            return None
        return members if members.get("n") == len(self._lines) + 1 else None

    def _hash_up_to(self, end: int) -> hashlib._Hash:
        """The hash of all bytes before `end`, which never goes back."""
        self._hash.update(memoryview(self._text)[self._hashed:end])
        self._hashed = end
        return self._hash.copy()
