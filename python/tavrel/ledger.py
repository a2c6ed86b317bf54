"""How complete a recording is, to the set, by the lines of its journal."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any, Final

from .journal import Journal, Line
from .ledger_clock import LedgerClock, Moment
from .times import set_number

_BUFFER_SETS: Final = 896
_MOST_NUMBER: Final = 2**31 - 1
_MOST_SECONDS: Final = 1e12
_BETWEEN_SEALS: Final = 3600  # seconds


@dataclass(frozen=True)
class Bounds:
    """A number of sets that lies between two bounds; equal ones are the number."""

    least: int = 0
    most: int | None = 0
    """None: nobody knows."""

    def __add__(self, other: Bounds) -> Bounds:
        most = None if self.most is None or other.most is None else self.most + other.most
        return Bounds(self.least + other.least, most)

    @property
    def is_exact(self) -> bool:
        """True if the number is known."""
        return self.least == self.most

    def to_json(self) -> dict[str, int | None]:
        """As ``tavrel-file ledger --json`` prints it."""
        return {"least": self.least, "most": self.most}


@dataclass(frozen=True)
class Loss:
    """Sets that are lost in one place."""

    before: int
    """The row before which they are missing."""
    sets: Bounds
    about: int | None
    """By a clock that can be set, where the bounds do not tell."""
    time: str
    """When it was noticed, as in the journal."""
    what: str

    def to_json(self) -> dict[str, Any]:
        """As ``tavrel-file ledger --json`` prints it."""
        return {"before": self.before, **self.sets.to_json(), "about": self.about,
                "time": self.time, "what": self.what}


@dataclass(frozen=True)
class Ledger:
    """The figures of a recording."""

    rows: int
    segments: int
    """One for each start."""
    unwatched: int
    """Rows for which no line of the journal vouches."""
    sets: int
    """Recorded; the rows 0 and 1 hold the same one."""
    live: int
    later: int
    """Of the sets, fetched after the instrument was silent or the program was away."""
    filled: int
    """Rows with a value that stands in place of a lost one."""
    question: int
    """Rows in which values may stand in a wrong row."""
    lost: Bounds
    losses: tuple[Loss, ...]
    waiting: Bounds | None
    """In the instrument at the last line of the journal; None if nobody knows."""

    @property
    def expected(self) -> Bounds:
        """Recorded, lost and waiting."""
        waiting = Bounds(0, None) if self.waiting is None else self.waiting
        return Bounds(self.sets, self.sets) + self.lost + waiting

    @property
    def is_complete(self) -> bool:
        """True if all sets are there and all values are right, as far as the journal tells."""
        return (self.unwatched == 0 and self.filled == 0 and self.question == 0
                and self.lost.most == 0)

    def to_json(self) -> dict[str, Any]:
        """The figures as ``tavrel-file ledger --json`` prints them, without the file's name."""
        return {"rows": self.rows, "complete": self.is_complete, "segments": self.segments,
                "unwatched": self.unwatched, "sets": self.sets, "live": self.live,
                "later": self.later, "filled": self.filled, "question": self.question,
                "lost": self.lost.to_json(),
                "waiting": None if self.waiting is None else self.waiting.to_json(),
                "expected": self.expected.to_json(),
                "losses": [loss.to_json() for loss in self.losses]}


class NoLedger(ValueError):
    """Nothing can be said, for the reason in words."""


def ledger_of(journal: Journal | None, rows: int) -> Ledger:
    """The ledger of a recording with so many whole rows. Raises NoLedger."""
    reader = _Reader()
    for line in journal.lines if journal is not None else ():
        reader.take(line)
    return reader.figures(rows)


def _number(line: Line, name: str) -> int:
    value = line.number(name)
    return min(max(value if value is not None else 0, 0), _MOST_NUMBER)


def _seconds(line: Line, name: str) -> float:
    value = line.members.get(name)
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        return 0.0
    return min(max(float(value), 0.0), _MOST_SECONDS)


def _text(line: Line, name: str) -> str:
    value = line.members.get(name)
    return value if isinstance(value, str) else ""


def _bounds(line: Line) -> Bounds:
    if line.number("least") is not None:
        least = _number(line, "least")
        has_most = line.number("most") is not None
        return Bounds(least, max(least, _number(line, "most")) if has_most else None)
    sets = _number(line, "sets")
    return Bounds(sets, sets) if line.members.get("exact") is True else Bounds(0, None)


def _rows_in(spans: list[tuple[int, int]], rows: int) -> int:
    """Rows in at least one of the spans; row 0 is row 1 and does not count."""
    count = 0
    following = 1
    for first, last in sorted(spans):
        begin, end = max(first, following), min(last + 1, rows)
        if end > begin:
            count += end - begin
            following = end
    return count


class _Reader:
    """Takes one line after the other."""

    def __init__(self) -> None:
        self._why = "there is no journal"
        self._follows_late_begin = False
        self._is_simulated = False
        self._has_drained = False
        self._is_on = False
        self._interval = 1.0
        self._rows = 0
        self._unwatched = 0
        self._segments = 0
        self._later = 0
        self._later_from: int | None = None
        self._filled: list[tuple[int, int]] = []
        self._questioned: list[tuple[int, int]] = []
        self._question_from: int | None = None
        self._losses: list[Loss] = []
        self._open = 0  # the first loss that the clocks have not been asked about
        self._open_sum: Bounds | None = None  # of the open ones, where the clocks have narrowed it
        self._closed = Bounds()
        self._clock: LedgerClock | None = None
        self._stands = False  # the clock: the series of the instrument go on since it has begun
        self._series_rows = 0  # when the last series were begun
        self._drained_at = (0.0, "")
        self._drained_rows = 0
        self._position = 0  # sets that were made from the clock's beginning to the last `drained`
        self._last = (0.0, "")

    def take(self, line: Line) -> None:
        follows_late_begin, self._follows_late_begin = self._follows_late_begin, False
        if line.number("rows") is not None:
            self._rows = _number(line, "rows")
        self._last = (_seconds(line, "up"), _text(line, "boot"))
        kind_of_line = _text(line, "line")
        if kind_of_line:
            self._is_simulated = kind_of_line == "simulated"
        if line.kind == "begin":
            self._take_begin(line)
        elif line.kind == "adopted":
            self._take_adopted(line, follows_late_begin)
        elif line.kind == "start":
            self._take_start()
        elif line.kind in ("resume", "back"):
            self._is_on = True
            self._later_from = self._rows if self._later_from is None else self._later_from
        elif line.kind in ("stop", "end"):
            self._is_on = False
        elif line.kind == "lost":
            self._take_lost(line)
        elif line.kind == "values":
            self._take_values(line)
        elif line.kind == "drained":
            self._take_drained(line)
        elif line.kind == "counted":
            self._take_counted(line)

    def _take_begin(self, line: Line) -> None:
        self._interval = max(_seconds(line, "interval"), 1.0)
        self._clock = LedgerClock(self._interval)
        self._follows_late_begin = "why" in line.members
        self._is_on = self._follows_late_begin or "before" in line.members
        self._segments = 1 if self._is_on else 0
        self._why = "it is a part of another recording" if "origin" in line.members else ""

    def _take_adopted(self, line: Line, follows_late_begin: bool) -> None:
        end = _number(line, "last") + 1
        if follows_late_begin:
            self._unwatched = end
            return
        rows = self._unexplained(end - _number(line, "first"))
        if rows > 0:
            self._unwatched += rows
            self._begin_series()

    def _unexplained(self, rows: int) -> int:
        """So many rows, if they are more than a kill explains."""
        return rows if rows > _BUFFER_SETS + _BETWEEN_SEALS / self._interval + 2 else 0

    def _take_start(self) -> None:
        self._close_losses()
        self._segments += 1
        self._is_on = True
        self._begin_series()
        self._later_from = None
        if self._question_from is not None:
            self._questioned.append((self._question_from, self._rows - 1))
            self._question_from = None

    def _take_lost(self, line: Line) -> None:
        sets = _bounds(line)
        has_about = line.number("sets") is not None and not sets.is_exact
        self._losses.append(Loss(_number(line, "before"), sets,
                                 _number(line, "sets") if has_about else None,
                                 _text(line, "time"), _text(line, "what")))
        if _text(line, "cause") == "restart":
            self._begin_series()

    def _begin_series(self) -> None:
        self._stands = False
        self._series_rows = self._rows

    def _take_values(self, line: Line) -> None:
        span = (_number(line, "first"), _number(line, "last"))
        is_filled = line.members.get("filled") is True
        if not is_filled or line.members.get("anew") is True:
            self._begin_series()
        if is_filled:
            self._filled.append(span)
            return
        self._questioned.append(span)
        if line.members.get("onward") is True:
            first = span[0] if self._question_from is None else min(span[0], self._question_from)
            self._question_from = first

    def _take_drained(self, line: Line) -> None:
        if self._clock is None:
            return
        self._has_drained = True
        if self._later_from is not None:
            self._later += max(set_number(self._rows) - set_number(self._later_from), 0)
            self._later_from = None
        moment = self._moment(line)
        goes_on = self._goes_on()
        lost = self._compare(self._clock, moment, _text(line, "time")) if goes_on else None
        self._close_losses()
        self._position += set_number(self._rows) - set_number(self._drained_rows) + (lost or 0)
        if lost is None or not self._clock.learn(moment, self._position):
            self._clock.begin(moment)
            self._position = 0
        self._stands = self._rows > self._series_rows
        self._drained_at = self._last
        self._drained_rows = self._rows

    def _moment(self, line: Line) -> Moment:
        return Moment(self._last[0] - _seconds(line, "took"), self._last[0])

    def _goes_on(self) -> bool:
        """True if what the clock knows holds up to the last line."""
        up, boot = self._last
        return (self._stands and self._question_from is None
                and boot == self._drained_at[1] and up >= self._drained_at[0])

    def _take_counted(self, line: Line) -> None:
        """Where the clock does not go on it begins with the oldest set that waits."""
        least = min(_number(line, "least"), _BUFFER_SETS)
        most = min(max(_number(line, "most"), least), _BUFFER_SETS)
        if self._clock is None or least == 0 or self._goes_on():
            return
        self._close_losses()
        self._clock.begin(self._moment(line), (least, most))
        self._position = 0
        self._stands = True
        self._drained_at = self._last
        self._drained_rows = self._rows

    def _compare(self, clock: LedgerClock, moment: Moment, time: str) -> int | None:
        """The sets that are lost since the last `drained`, if their number is known."""
        least, most = clock.made_at(moment)
        taken = self._position + set_number(self._rows) - set_number(self._drained_rows)
        if most < taken:
            return None
        missing = Bounds(max(least - taken, 0), most - taken)
        if self._open < len(self._losses):
            self._narrow(missing)
        elif missing.least > 0:
            self._losses.append(Loss(self._rows, missing, None, time,
                                     "fewer sets have come than were made"))
        lost = self._open_sum if self._open_sum is not None else self._sum_of_open()
        return lost.least if lost.is_exact else None

    def _narrow(self, missing: Bounds) -> None:
        """What was told and what the clocks say hold both; if they contradict, all between does."""
        told = self._sum_of_open()
        most = missing.most if missing.most is not None else 0
        told_most = max(told.most if told.most is not None else most, told.least)
        both = Bounds(max(told.least, missing.least), min(told_most, most))
        if both.most is not None and both.least > both.most:
            both = Bounds(min(told.least, missing.least), max(told_most, most))
        self._open_sum = both
        if self._open + 1 == len(self._losses):
            loss = self._losses[-1]
            self._losses[-1] = Loss(loss.before, both, loss.about, loss.time, loss.what)

    def _sum_of_open(self) -> Bounds:
        return sum((loss.sets for loss in self._losses[self._open:]), Bounds())

    def _close_losses(self) -> None:
        still = self._open_sum if self._open_sum is not None else self._sum_of_open()
        self._closed = self._closed + still
        self._open_sum = None
        self._open = len(self._losses)

    def _waiting(self, rows: int) -> Bounds | None:
        up, boot = self._last
        if not self._is_on:
            return Bounds()
        is_known = self._stands and boot == self._drained_at[1] and up >= self._drained_at[0]
        if self._clock is None or not is_known:
            return None
        least, most = self._clock.made_at(Moment(up, up))
        taken = self._position + set_number(rows) - set_number(self._drained_rows)
        lost = self._sum_of_open()
        least = 0 if lost.most is None else least - taken - lost.most
        most -= taken + lost.least
        return Bounds(min(max(least, 0), _BUFFER_SETS), min(max(most, 0), _BUFFER_SETS))

    def figures(self, rows: int) -> Ledger:
        if not self._why and self._is_simulated and not self._has_drained:
            self._why = "no instrument was on the line"
        if self._why:
            raise NoLedger(self._why)
        sets = set_number(rows)
        since = 0 if self._later_from is None else sets - set_number(self._later_from)
        later = min(self._later + max(since, 0), sets)
        questioned = list(self._questioned)
        if self._question_from is not None:
            questioned.append((self._question_from, rows - 1))
        return Ledger(rows=rows, segments=self._segments,
                      unwatched=min(self._unwatched + self._unexplained(rows - self._rows), rows),
                      sets=sets, live=sets - later, later=later,
                      filled=_rows_in(self._filled, rows), question=_rows_in(questioned, rows),
                      lost=self._closed + self._sum_of_open(),
                      losses=tuple(loss for loss in self._losses if loss.sets.most != 0),
                      waiting=self._waiting(rows))
