"""Makes recordings of an instrument with a clock of its own, as journals tell of them."""

from __future__ import annotations

import math
import random
from collections.abc import Callable
from typing import Any

import recording_maker
from recording_maker import JournalMaker

_MOST_ROWS = 3000
_BUFFER = 896


class Story:
    """A recording over random days: outages, losses, kills, restarts, doubts, stops."""

    def __init__(self, dice: random.Random) -> None:
        self.dice = dice
        self.interval = dice.choice([1, 2, 10, 60, 3600])
        self.period = self.interval * (1 + dice.uniform(-2.5e-4, 2.5e-4))
        self.phase = dice.uniform(0, self.interval)
        self.header = recording_maker.header({1: 1, 4: 1, 8: 0, 20: 1, 22: self.interval, 90: 1})
        self.rows = 0
        self.given = 0  # sets that are in rows or are lost
        self.journal = JournalMaker()
        self._begin()
        actions: list[Callable[[], None]] = [
            self._live, self._live, self._live, self._away, self._away_for_long, self._lose, self._lose_untold,
            self._doubt, self._fill, self._kill, self._count, self._restart_computer, self._restart_instrument,
            self._stop_and_start, self._write_unwatched, self._controller, self._nonsense]
        for _ in range(dice.randint(0, 30)):
            if self.rows < _MOST_ROWS:
                dice.choice(actions)()
        if dice.random() < 0.5:
            self.journal.seal(self.data, self.rows, 1)
        if dice.random() < 0.2:
            self.rows += dice.choice([1, 30, _BUFFER + 3602 // self.interval + 3])

    @property
    def data(self) -> bytes:
        return self.header + bytes(2 * self.rows)

    def _say(self, kind: str, **members: Any) -> None:
        self.journal.add(kind, **members, rows=self.rows)

    def _begin(self) -> None:
        more = self.dice.choice([{}, {}, {}, {}, {"why": "there was none"}, {"before": {"file": "B"}},
                                 {"origin": {"file": "B"}}])
        line = self.dice.choice(["direct", "direct", "plug-in", "plug-in", "simulated"])
        self.journal.add("begin", id="0" * 32, file="F", line=line, interval=self.interval, **more)
        if "why" in more and self.dice.random() < 0.8:
            self.rows = self.dice.randint(1, 50)
            self.journal.add("adopted", first=0, last=self.rows - 1)
        elif not more:
            self._say("start")
        self.given = self._made()

    def _made(self) -> int:
        return max(math.floor((self.journal.up - self.phase) / self.period) + 1, 0)

    def _pass(self, sets: float) -> None:
        self.journal.up += sets * self.period

    def _fetch(self) -> None:
        """All that the instrument has made comes into rows."""
        sets = min(self._made() - self.given, _MOST_ROWS)
        self.rows += sets + 1 if self.rows == 0 and sets > 0 else max(sets, 0)
        self.given = self._made()

    def _drain(self) -> None:
        self._fetch()
        took = self.dice.choice([0.0, 0.05, self.dice.uniform(0, 0.3)])
        self._say("drained", took=round(took, 3))

    def _count(self) -> None:
        """How many sets wait is read, of the input that is read first or of another one."""
        waiting = self._made() - self.given
        beside = self.dice.choice([0, 0, 1])
        if beside < waiting < _BUFFER:
            self._say("counted", least=waiting - beside, most=waiting + beside, took=0.05)

    def _live(self) -> None:
        for _ in range(self.dice.randint(1, 6)):
            self._pass(self.dice.choice([0.3, 1, 2, self.dice.uniform(0, 20)]))
            self._drain()

    def _away(self) -> None:
        self._say("silent", **{"for": 5})
        self._pass(self.dice.uniform(1, 200))
        if self.dice.random() < 0.3:
            self._say("stop", by="user")
        self._say(self.dice.choice(["back", "resume"]))
        self._count()
        if self.dice.random() < 0.8:
            self._drain()

    def _away_for_long(self) -> None:
        """For so long that the clocks run apart; what the buffer holds comes later."""
        self._pass(self.dice.uniform(1000, 30000))
        lost = max(self._made() - self.given - _BUFFER, 0)
        self.given += lost
        self._say("lost", before=self.rows, sets=lost, exact=False, least=0, cause="full",
                  most=self.dice.choice([None, lost + 50]), what="the buffer was full")
        self._say("back")
        self._drain()

    def _lose(self) -> None:
        """A full buffer; what is told holds the truth most often."""
        self._pass(self.dice.uniform(1, 100))
        lost = self.dice.randint(0, 30)
        least = max(lost - self.dice.randint(0, 3), 0)
        most = lost + self.dice.randint(0, 3)
        told = self.dice.choice([
            {"sets": lost, "exact": True, "least": lost, "most": lost},
            {"sets": lost, "exact": False, "least": least, "most": most},
            {"sets": lost, "exact": False, "least": least, "most": None},
            {"sets": None, "exact": False, "least": 0, "most": None},
            {"sets": lost, "exact": True}, {"sets": lost, "exact": False}, {}])
        self.journal.add("lost", before=self.rows, **told, what="the buffer was full",
                         cause=self.dice.choice(["full", "power", "restart"]), rows=self.rows)
        self.given += min(lost, max(self._made() - self.given, 0))
        if self.dice.random() < 0.8:
            self._drain()

    def _lose_untold(self) -> None:
        self._pass(self.dice.uniform(1, 30))
        self.given += self.dice.randint(0, 5)
        self._drain()

    def _doubt(self) -> None:
        first = self.dice.randint(0, max(self.rows, 1))
        self._say("values", first=first, last=first + self.dice.randint(-1, 9), filled=False,
                  onward=self.dice.random() < 0.2, anew=False, what="in question")

    def _fill(self) -> None:
        first = self.dice.randint(0, max(self.rows, 1))
        more = {"onward": False, "anew": self.dice.random() < 0.1} if self.dice.random() < 0.8 else {}
        self._say("values", first=first, last=first + self.dice.randint(0, 2), filled=True, **more)

    def _kill(self) -> None:
        before = self.rows
        self._pass(self.dice.uniform(0, 10))
        self._fetch()
        self._say("resume", line="direct")
        if self.rows > before:
            self.journal.add("adopted", first=before, last=self.rows - 1)

    def _restart_computer(self) -> None:
        self.journal.boot = f"{self.dice.getrandbits(128):032x}"
        if self.dice.random() < 0.5:
            self.journal.up = self.dice.uniform(0, 100)
            self.phase = self.dice.uniform(0, self.interval)
            self.given = self._made()
        self._say("resume")
        self._pass(self.dice.uniform(0, 5))
        self._count()

    def _restart_instrument(self) -> None:
        self._pass(self.dice.uniform(0, 3))
        self.phase = self.journal.up + self.dice.uniform(0, 1.5 * self.interval)
        self.given = self._made()
        self._say("lost", before=self.rows, sets=None, exact=False, least=0,
                  most=self.dice.choice([None, 3]), cause="restart", what="it was restarted")

    def _stop_and_start(self) -> None:
        self._say(self.dice.choice(["stop", "end"]))
        if self.dice.random() < 0.8:
            self._pass(self.dice.uniform(0, 50))
            self.phase = self.journal.up + self.dice.uniform(0, self.interval)
            self.given = self._made()
            self._say("start")

    def _write_unwatched(self) -> None:
        most = _BUFFER + 3600 // self.interval + 2
        if most < _MOST_ROWS:
            before = self.rows
            self.rows += most + self.dice.randint(-1, 2)
            self.given = self._made()
            self._say("resume")
            self.journal.add("adopted", first=before, last=self.rows - 1)

    def _controller(self) -> None:
        self._pass(self.dice.uniform(0, 2))
        self._say(self.dice.choice(["controller", "header"]), by="user")

    def _nonsense(self) -> None:
        """Members of other types and out of their ranges."""
        wrong = self.dice.choice([-5, 1.5, "3", None, True, [1], {"a": 1}, 2**40])
        kind = self.dice.choice(["lost", "values", "adopted", "drained", "counted", "start", "of tomorrow"])
        names = ["before", "sets", "least", "most", "exact", "first", "last", "filled", "onward",
                 "anew", "took", "rows", "cause", "line"]
        members = {name: wrong for name in names if self.dice.random() < 0.3}
        self.journal.add(kind, **members)
