"""Holds a recording against the seals in its journal."""

from __future__ import annotations

import hashlib
from dataclasses import dataclass, field
from enum import IntEnum
from typing import Final

from .header import HEADER_BYTES, Header
from .journal import Journal, Line

_WORD_BYTES: Final = 2
_MOST_WORDS: Final = 32000  # samples of a file


class State(IntEnum):
    """The verdicts; the numbers are the exit statuses."""

    INTACT = 0
    NOT_COVERED = 1
    DAMAGED = 2

    def __str__(self) -> str:
        return self.name.lower().replace("_", " ")


@dataclass(frozen=True)
class RowRange:
    """Rows from ``first`` to ``last``, both included; rows count from 0."""

    first: int
    last: int


@dataclass(frozen=True)
class Verdict:
    """What the seals say of a recording."""

    state: State
    rows: int
    """Whole rows in the file."""
    sealed_rows: int
    """Rows of the last seal, 0 if there is none."""
    damaged_rows: RowRange | None
    """Between these rows a sample was changed; rows behind them cannot be judged."""
    missing_rows: RowRange | None
    """Sealed rows that the file no longer has."""
    unjudged_rows: RowRange | None
    """Rows that are there but cannot be judged without the missing ones."""
    header_damaged: bool
    journal_damaged_from: int | None
    """Number of the first line of the journal that does not fit."""
    reasons: tuple[str, ...]
    """Each contradiction in words, or why the recording is not covered."""


@dataclass(frozen=True)
class _Seal:
    rows: int
    columns: int
    data: object

    @property
    def bytes(self) -> int:
        """Of its samples."""
        return _WORD_BYTES * self.columns * self.rows


@dataclass
class _Findings:
    damaged_rows: RowRange | None = None
    missing_rows: RowRange | None = None
    unjudged_rows: RowRange | None = None
    header_damaged: bool = False
    damage: list[str] = field(default_factory=list)
    gaps: list[str] = field(default_factory=list)


def verify(recording: bytes, journal: Journal | None) -> Verdict:
    """Checks the bytes of a whole recording file against its journal, None if it has none.

    Takes any bytes; whether a file without a journal is a recording at all is not asked here.
    """
    header = Header.from_bytes(recording.ljust(HEADER_BYTES, b"\0")[:HEADER_BYTES])
    found = _Findings()
    seals = _seals(journal) if journal else []
    columns = seals[-1].columns if seals else header.channels
    rows, rest = count_rows(len(recording), columns)
    if rest and seals:
        found.gaps.append(f"{rest} byte{'s' if rest > 1 else ''} of a torn row at the end")
    if journal is None:
        found.gaps.append("there is no journal")
    else:
        _check_journal(journal, seals, found)
        _check_rows(recording, seals, rows, found)
        _check_header(recording, journal, found)
    return _verdict(found, journal, rows, seals[-1].rows if seals else 0)


def count_rows(file_bytes: int, columns: int) -> tuple[int, int]:
    """The whole rows of a file, and the bytes of a torn one at its end."""
    if columns < 1 or file_bytes < HEADER_BYTES:
        return 0, 0
    return divmod(file_bytes - HEADER_BYTES, _WORD_BYTES * columns)


def _verdict(found: _Findings, journal: Journal | None, rows: int, sealed: int) -> Verdict:
    state = State.DAMAGED if found.damage else State.NOT_COVERED if found.gaps else State.INTACT
    return Verdict(state, rows, sealed, found.damaged_rows, found.missing_rows,
                   found.unjudged_rows, found.header_damaged, journal.damaged_from if journal else None, tuple(found.damage + found.gaps))


def _seals(journal: Journal) -> list[_Seal]:
    """The seals; one that makes no sense is none."""
    return [seal for seal in map(_read_seal, journal.seals) if seal is not None]


def _read_seal(line: Line) -> _Seal | None:
    rows, columns = line.number("rows"), line.number("columns")
    if rows is None or not 0 <= rows <= _MOST_WORDS or columns is None or not 1 <= columns <= 15:
        return None
    return _Seal(rows, columns, line.members.get("data"))


def _check_journal(journal: Journal, seals: list[_Seal], found: _Findings) -> None:
    if journal.damaged_from is not None:
        found.damage.append(f"the journal is damaged from line {journal.damaged_from} on")
    if not seals:
        found.gaps.append("the journal holds no seal")
    elif journal.lines[-1].kind != "seal":
        found.gaps.append("lines of the journal stand behind the last seal")
    if journal.unfinished:
        found.gaps.append("the journal ends inside a line")


def _check_rows(recording: bytes, seals: list[_Seal], rows: int, found: _Findings) -> None:
    samples = memoryview(recording)[HEADER_BYTES:]
    hashed = hashlib.sha256()
    done = covered = 0
    for seal in seals:
        if seal.bytes > len(samples):
            _tell_missing(rows, covered, seals[-1].rows - 1, found)
            return
        hashed.update(samples[done:seal.bytes])
        if seal.bytes < done or hashed.hexdigest() != seal.data:
            last = max(seal.rows - 1, covered)
            found.damaged_rows = RowRange(covered, last)
            found.damage.append(f"not as sealed between the rows {covered} and {last}")
            return
        done, covered = seal.bytes, seal.rows
    if seals and rows > covered:
        found.gaps.append(f"the rows {covered} to {rows - 1} stand behind the last seal")


def _tell_missing(rows: int, covered: int, last: int, found: _Findings) -> None:
    first = min(rows, last)
    found.missing_rows = RowRange(first, last)
    found.damage.append(f"the rows {first} to {last} are missing")
    if covered < rows:
        found.unjudged_rows = RowRange(covered, rows - 1)
        found.damage.append(f"the rows {covered} to {rows - 1} cannot be judged without them")


def _check_header(recording: bytes, journal: Journal, found: _Findings) -> None:
    right: set[object] = set()
    for line in journal.lines:
        if line.kind == "seal":
            right = {line.members.get("header")}
        elif line.kind == "header":
            if not right and line.members.get("old") is not None:
                right.add(line.members["old"])
            right.add(line.members.get("new"))
    if right and hashlib.sha256(recording[:HEADER_BYTES]).hexdigest() not in right:
        found.header_damaged = True
        found.damage.append("the header is not as it was sealed")
