"""The time of day of the rows of a recording, as far as its journal anchors it."""

from __future__ import annotations

from bisect import bisect_right
from dataclasses import dataclass, field
from datetime import datetime, timedelta, timezone
from typing import Final

from .journal import Journal, Line

_FULL_HOUR: Final = timedelta(hours=1)
_MOST_LOST_SETS: Final = 1_000_000_000  # more is no count of sets


def set_number(row: int) -> int:
    """The number of the set of a row, from 0; the first set stands in the rows 0 and 1."""
    return max(row - 1, 0)


@dataclass
class _Anchor:
    """A line `start`: the rows from `rows` on were recorded from that moment on."""

    rows: int
    time: datetime | None
    lost: list[tuple[int, int | None]] = field(default_factory=list)
    """Of each line `lost`: the row before which sets are missing, and how many, None if unknown."""
    befores: list[int] = field(default_factory=list)
    """The rows of ``lost``, ascending."""
    sums: list[int | None] = field(default_factory=list)
    """Sets lost up to the same place, None if unknown."""

    def add_up(self) -> None:
        """Fills ``befores`` and ``sums``."""
        total: int | None = 0
        for before, sets in sorted(self.lost, key=lambda lost: lost[0]):
            total = None if total is None or sets is None else total + sets
            self.befores.append(before)
            self.sums.append(total)

    def lost_up_to(self, row: int) -> int | None:
        """Sets that are missing before a row or one before it, None if nobody knows."""
        place = bisect_right(self.befores, row)
        return self.sums[place - 1] if place > 0 else 0


class RowTimes:
    """The times of the rows of one recording.

    ``interval``: seconds between two rows, as the header has it.
    """

    def __init__(self, journal: Journal | None, interval: int) -> None:
        self._interval = interval
        self._anchors: list[_Anchor] = []
        self._changes: list[tuple[datetime, timezone]] = []
        if journal is None or journal.damaged_from is not None or not journal.lines:
            return
        if journal.lines[0].number("interval") == interval:
            lines = _lines(journal)
            self._anchors = _anchors(lines)
            self._changes = _zone_changes(lines)

    def utc(self, row: int) -> datetime | None:
        """Universal time of a row (from 0); None if the journal does not anchor it."""
        place = bisect_right(self._anchors, row, key=lambda anchor: anchor.rows)
        anchor = self._anchors[place - 1] if place > 0 else None
        lost = anchor.lost_up_to(row) if anchor is not None else None
        if anchor is None or anchor.time is None or lost is None or lost > _MOST_LOST_SETS:
            return None
        sets = set_number(row) - set_number(anchor.rows) + lost
        try:
            return anchor.time.astimezone(timezone.utc) + timedelta(seconds=sets * self._interval)
        except OverflowError:
            return None

    def local(self, row: int) -> datetime | None:
        """Local time of a row (from 0) with its zone; None if the journal does not anchor it."""
        utc = self.utc(row)
        if utc is None:
            return None
        place = bisect_right(self._changes, utc, key=lambda change: change[0])
        zone = self._changes[max(place - 1, 0)][1]
        try:
            return utc.astimezone(zone)
        except OverflowError:
            return None


def _lines(journal: Journal) -> list[Line]:
    """Those of the journal, and in front of them what a file before or a source says."""
    told: list[Line] = []
    for name in ("before", "origin"):
        other = journal.lines[0].members.get(name)
        elements = other.get("anchors") if isinstance(other, dict) else None
        for element in elements if isinstance(elements, list) else ():
            members = element if isinstance(element, dict) else {}
            told.append(Line(members | {"kind": "start"}, 0))
    return [*told, *journal.lines]


def _anchors(lines: list[Line]) -> list[_Anchor]:
    """In the order of their rows; a later `start` takes the rows of one before it."""
    anchors: list[_Anchor] = []
    for line in lines:
        if line.kind == "start":
            rows = line.number("rows")
            # Without its rows nobody knows from where on it counts.
            anchor = _Anchor(rows or 0, line.time if rows is not None else None)
            while anchors and anchors[-1].rows >= anchor.rows:
                anchors.pop()
            anchors.append(anchor)
        elif line.kind == "lost" and anchors:
            anchors[-1].lost.append(_lost_sets(line))
    for anchor in anchors:
        anchor.add_up()
    return anchors


def _lost_sets(line: Line) -> tuple[int, int | None]:
    sets = line.number("sets")
    if line.members.get("exact") is not True or sets is None or not 0 <= sets <= _MOST_LOST_SETS:
        sets = None
    return line.number("before") or 0, sets


def _zone_changes(lines: list[Line]) -> list[tuple[datetime, timezone]]:
    """From which moments on which distance from universal time holds, in the order of time."""
    changes: list[tuple[datetime, timezone]] = []
    before: datetime | None = None
    for time in (line.time for line in lines):
        if time is None:
            continue
        offset = time.utcoffset()
        assert offset is not None
        if before is None or before.utcoffset() != offset:
            changes.append((_moment_of_change(before, time), timezone(offset)))
        before = time
    return sorted(changes, key=lambda change: change[0])


def _moment_of_change(before: datetime | None, time: datetime) -> datetime:
    utc = time.astimezone(timezone.utc)
    if before is None:
        return utc
    earlier = before.astimezone(timezone.utc)
    try:
        hour = earlier.replace(minute=0, second=0) + _FULL_HOUR
        return hour if hour <= utc < hour + _FULL_HOUR else utc
    except OverflowError:
        return utc
