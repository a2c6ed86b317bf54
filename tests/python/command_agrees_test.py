"""Random recordings: tavrel-file and the Python reader say the same of each of them.

usage: command_agrees_test.py TAVREL_FILE [NUMBER [SEED]]
TAVREL_RECORDINGS in the environment says how many as well.
"""

from __future__ import annotations

import json
import os
import random
import re
import subprocess
import sys
import tempfile
from collections import Counter
from collections.abc import Callable
from datetime import datetime
from pathlib import Path
from typing import Any

import recording_maker
from recording_maker import HEADER_BYTES, JournalMaker
from recording_story import Story

import tavrel

_BATCH = 200  # files for one call of the command
_NUMBER = 60
_SEED = 20260314


class Case:
    """A recording with its journal, as the program writes them, before anything goes wrong."""

    def __init__(self, dice: random.Random) -> None:
        self.dice = dice
        self.columns = dice.randint(1, 15)
        self.inputs = sorted(dice.sample(range(1, 16), self.columns))
        self.interval = dice.choice([1, 6, 60, 3600])
        self.fast = dice.randint(0, 1)
        words = {0: dice.randint(1, 6), 1: self.columns, 2: dice.randint(1, 4),
                 3: dice.randint(1, 15), 4: 0, 8: 0, 20: dice.randint(0, 1), 22: self.interval,
                 90: self.fast}
        words |= {3 + number: dice.randint(1, 3) for number in self.inputs}
        words |= {25 + place: dice.randint(-32768, 32767) for place in range(5)}
        texts = {0: "OVN: Ofen 3", 1: "Öl °C", 20: dice.choice(["", "a,b", "µ"])}
        self.header = recording_maker.header(words, texts)
        self.rows: list[list[int]] = []
        self.journal: JournalMaker | None = JournalMaker() if dice.random() < 0.95 else None
        self._record()

    @property
    def data(self) -> bytes:
        return self.header + recording_maker.rows_bytes(self.rows)

    def _record(self) -> None:
        """Random actions, each with its lines."""
        if self.journal is not None:
            self.journal.add("begin", id=f"{self.dice.getrandbits(128):032x}", file="F",
                             interval=self.interval * (1 if self.fast == 1 else 10),
                             **self._other_file())
            self.journal.add("header", new=recording_maker.sha(self.header), changes=[], rows=0)
            if self.dice.random() < 0.8:
                self._start()
        actions: list[Callable[[], None]] = [self._append, self._append, self._seal, self._note,
                                           self._change_header, self._tear, self._start]
        for _ in range(self.dice.randint(0, 25)):
            self.dice.choice(actions)()
        if self.dice.random() < 0.7:
            self._seal()

    def _other_file(self) -> dict[str, Any]:
        """What the file before or the source says of the time of the rows."""
        if self.dice.random() < 0.6:
            return {}
        anchors: list[Any] = []
        rows = 0
        for _ in range(self.dice.randint(0, 4)):
            anchors.append({"rows": rows, "time": self.dice.choice(
                [None, self._moment(), self._moment(), "yesterday", 5])})
            rows += self.dice.randint(1, 20)
        other = self.dice.choice([anchors, anchors, anchors, [1], "no list", [{"time": "x"}]])
        return {self.dice.choice(["before", "origin"]): {"file": "B", "anchors": other}}

    def _moment(self) -> str:
        return f"2026-{self.dice.randint(1, 12):02}-25T0{self.dice.randint(0, 9)}" \
               f":50:00{self.dice.choice(['+00:00', '+01:00', '+02:00', '-03:30'])}"

    def _append(self) -> None:
        for _ in range(self.dice.randint(1, 30)):
            self.rows.append([self.dice.randint(-32767, 32767) for _ in range(self.columns)])

    def _seal(self) -> None:
        if self.journal is not None:
            self.journal.seal(self.data, len(self.rows), self.columns)

    def _start(self) -> None:
        if self.journal is not None:
            self.journal.time = self._moment()
            self.journal.add("start", rows=len(self.rows))

    def _note(self) -> None:
        if self.journal is not None and self.dice.random() < 0.5:
            self.journal.add("lost", before=len(self.rows), sets=self.dice.choice([None, 1, 700]),
                             exact=self.dice.random() < 0.8, what="Ä \"x\"\n", rows=len(self.rows))
        elif self.journal is not None:
            self.journal.add("a kind of tomorrow", something=[1, {"deep": None}])

    def _change_header(self) -> None:
        old = self.header
        place = self.dice.choice([50, 58, 300, 999])
        changed = bytearray(old)
        changed[place] = self.dice.randint(32, 126)
        if self.journal is not None:
            self.journal.add("header", old=recording_maker.sha(old),
                             new=recording_maker.sha(bytes(changed)), changes=[])
        if self.dice.random() < 0.7:
            self.header = bytes(changed)

    def _tear(self) -> None:
        if self.journal is None:
            return
        whole = self.journal.line("values", first=0, last=1, inputs=[1], what="filled")
        parts = [whole[:self.dice.randint(0, len(whole) - 30)]]
        if self.dice.random() < 0.3:
            parts.append(b'{"n":')
        self.journal.tear(parts)


def spoil(dice: random.Random, data: bytes, journal: bytes | None) -> tuple[str, bytes, bytes | None]:
    """What may happen to files behind the program's back; most often nothing."""
    kind = dice.choice(["nothing", "nothing", "cut", "flip", "flip row", "longer", "cut journal",
                        "flip journal", "line", "no journal", "empty journal"])
    if kind == "cut":
        return kind, data[:dice.randint(0, len(data))], journal
    if kind in ("flip", "flip row"):
        low = HEADER_BYTES if kind == "flip row" and len(data) > HEADER_BYTES else 0
        return kind, _flipped(dice, data, low), journal
    if kind == "longer":
        return kind, data + dice.randbytes(dice.randint(1, 70)), journal
    if journal is None or kind == "nothing":
        return "nothing", data, journal
    if kind == "cut journal":
        return kind, data, journal[:dice.randint(0, len(journal))]
    if kind == "flip journal":
        return kind, data, _flipped(dice, journal, 0)
    if kind == "line":
        return kind, data, _lines_changed(dice, journal)
    return kind, data, None if kind == "no journal" else b""


def _flipped(dice: random.Random, data: bytes, low: int) -> bytes:
    flipped = bytearray(data)
    flipped[dice.randrange(low, len(data))] ^= 1 << dice.randrange(8)
    return bytes(flipped)


def _lines_changed(dice: random.Random, journal: bytes) -> bytes:
    lines = journal.splitlines(keepends=True)
    place = dice.randrange(len(lines))
    how = dice.choice(["missing", "doubled", "swapped"])
    if how == "missing":
        del lines[place]
    elif how == "doubled":
        lines.insert(place, lines[place])
    else:
        other = dice.randrange(len(lines))
        lines[place], lines[other] = lines[other], lines[place]
    return b"".join(lines)


def said_by_command(text: str) -> dict[str, Any]:
    """What a line of `tavrel-file verify` says, without the name in front."""
    def rows(pattern: str) -> tuple[int, int] | None:
        found = re.search(pattern.replace("ROWS", r"rows? (\d+)(?: to (\d+))?"), text)
        return (int(found[1]), int(found[2] or found[1])) if found else None

    verdict = re.match(r"(intact|not covered|damaged), (\d+) rows", text)
    assert verdict is not None, text
    line = re.search(r"the journal: line (\d+) is not as it was written", text)
    lacks_begin = "the journal: its beginning is missing" in text
    return {"state": verdict[1], "rows": int(verdict[2]),
            "damaged": rows(r"ROWS (?:is )?not as sealed"),
            "missing": rows(r"ROWS (?:is )?missing"),
            "unjudged": rows(r"ROWS cannot be judged"),
            "behind": rows(r"ROWS behind the last seal"),
            "header": "the header is not as it was sealed" in text,
            "journal": 1 if lacks_begin else int(line[1]) if line else None,
            "torn row": "of a torn row" in text,
            "no journal": "there is no journal" in text,
            "no seal": "the journal holds no seal" in text,
            "unfinished": "the journal ends inside a line" in text}


def said_by_reader(recording: tavrel.Recording) -> dict[str, Any]:
    """The same from the reader's verdict."""
    verdict = recording.verify()
    reasons = "; ".join(verdict.reasons)

    def rows(found: tavrel.RowRange | None) -> tuple[int, int] | None:
        return (found.first, found.last) if found else None

    behind = re.search(r"the rows (\d+) to (\d+) stand behind", reasons)
    return {"state": str(verdict.state), "rows": verdict.rows,
            "damaged": rows(verdict.damaged_rows), "missing": rows(verdict.missing_rows),
            "unjudged": rows(verdict.unjudged_rows),
            "behind": (int(behind[1]), int(behind[2])) if behind else None,
            "header": verdict.header_damaged, "journal": verdict.journal_damaged_from,
            "torn row": "of a torn row" in reasons, "no journal": "there is no journal" in reasons,
            "no seal": "holds no seal" in reasons, "unfinished": "inside a line" in reasons}


def expected_of(path: Path) -> tuple[dict[str, Any] | None, tavrel.Recording | None]:
    """What the reader says; nothing of what is no recording."""
    try:
        recording = tavrel.Recording.open(path)
    except tavrel.NotARecording:
        return None, None
    return said_by_reader(recording), recording


def ledger_by_reader(recording: tavrel.Recording) -> dict[str, Any]:
    """What `tavrel-file ledger --json` says, but for the file's name and the words of damage."""
    damaged = recording.verify().state == tavrel.State.DAMAGED
    try:
        return recording.ledger().to_json() | {"damaged": damaged}
    except tavrel.NoLedger as why:
        return {"rows": len(recording), "damaged": damaged, "why": str(why)}


def exported_rows(recording: tavrel.Recording) -> list[list[Any]]:
    """The rows as `tavrel-file export --format json` prints them."""
    return [[row.number, row.seconds, *row.degrees] for row in recording]


def _text_of(moment: datetime | None, time: str) -> str | None:
    if moment is None:
        return None
    return moment.isoformat() if time == "local" else moment.strftime("%Y-%m-%dT%H:%M:%SZ")


class Bench:
    """Compares file by file and counts."""

    def __init__(self, command: str) -> None:
        self.command = command
        self.counted: Counter[str] = Counter()
        self.differences: list[str] = []

    def compare(self, paths: dict[Path, str]) -> None:
        said = self._run("verify", *map(str, paths))
        lines = dict(line.split(": ", 1) for line in said.splitlines()
                     if ": fork: " not in line)
        wanted: list[tuple[Path, tavrel.Recording]] = []
        recordings: dict[Path, tavrel.Recording] = {}
        for path, kind in paths.items():
            expected, recording = expected_of(path)
            line = lines.get(str(path))
            got = said_by_command(line) if line is not None else None
            self.counted[expected["state"] if expected else "no recording"] += 1
            if got != expected:
                self.differences.append(f"{path} ({kind}): {line}\n  {got}\n  {expected}")
            if recording is not None:
                recordings[path] = recording
            if recording is not None and recording.header.is_valid:
                wanted.append((path, recording))
        self._compare_rows(wanted)
        self.compare_ledgers(recordings)

    def compare_ledgers(self, recordings: dict[Path, tavrel.Recording]) -> None:
        """The figures to the set, and whether there is damage."""
        said = self._run("ledger", "--json", *map(str, recordings))
        for (path, recording), line in zip(recordings.items(), said.splitlines(), strict=True):
            got = json.loads(line)
            got["damaged"] = "damaged" in got
            expected = ledger_by_reader(recording)
            expected |= {"file": str(path)}
            if got != expected:
                self.differences.append(f"{path}: ledger {got}\n  {expected}")
            self.counted["ledgers"] += "sets" in expected
            self.counted["complete"] += expected.get("complete") is True
            bounds = expected.get("lost", {"least": 0, "most": 0})
            self.counted["with losses"] += bounds["most"] != 0
            self.counted["with bounds"] += bounds["most"] != bounds["least"]

    def _compare_rows(self, wanted: list[tuple[Path, tavrel.Recording]]) -> None:
        if not wanted:
            return
        said = self._run("export", "--format", "json", *(str(path) for path, _ in wanted))
        for (path, recording), line in zip(wanted, said.splitlines(), strict=True):
            exported = json.loads(line)
            if recording.columns != recording.header.channels:
                continue  # the export goes by the header, which is damaged
            if exported["rows"] != exported_rows(recording):
                self.differences.append(f"{path}: other rows")
            self.counted["rows"] += len(exported["rows"])
        for time in ("local", "utc"):
            self._compare_times(wanted, time)

    def _compare_times(self, wanted: list[tuple[Path, tavrel.Recording]], time: str) -> None:
        """What the command refuses has a row without a time, and the other way round."""
        said = self._run("export", "--format", "json", "--time", time,
                         *(str(path) for path, _ in wanted))
        tables = {table["file"]: table for table in map(json.loads, said.splitlines())}
        for path, recording in wanted:
            if recording.columns != recording.header.channels:
                continue
            table = tables.get(str(path))
            got = [row[1] for row in table["rows"]] if table is not None else None
            of_row = recording.local if time == "local" else recording.utc
            times = [_text_of(of_row(row), time) for row in range(len(recording))]
            expected = None if None in times else times
            if got != expected:
                self.differences.append(f"{path}: {time} {got}\n  {expected}")
            self.counted[f"with {time} time"] += expected is not None and len(expected) > 0

    def _run(self, *arguments: str) -> str:
        done = subprocess.run([self.command, *arguments], capture_output=True, check=False)
        assert 0 <= done.returncode <= 3, done
        return done.stdout.decode()


def main() -> int:
    number = int((sys.argv[2:3] or [os.environ.get("TAVREL_RECORDINGS", str(_NUMBER))])[0])
    dice = random.Random(int((sys.argv[3:4] or [str(_SEED)])[0]))
    bench = Bench(sys.argv[1])
    with tempfile.TemporaryDirectory() as name:
        for begin in range(0, number, _BATCH):
            paths: dict[Path, str] = {}
            for place in range(begin, min(begin + _BATCH, number)):
                case = Case(dice)
                journal = case.journal.text if case.journal is not None else None
                kind, data, text = spoil(dice, case.data, journal)
                path = recording_maker.write(Path(name), f"R{place:06}.OVN", data, text)
                paths[path] = kind
            bench.compare(paths)
            stories: dict[Path, tavrel.Recording] = {}
            for place in range(begin, min(begin + _BATCH, number)):
                story = Story(dice)
                path = recording_maker.write(Path(name), f"S{place:06}.OVN", story.data,
                                             story.journal.text)
                stories[path] = tavrel.Recording.open(path)
            bench.compare_ledgers(stories)
    print(f"{number} recordings: " +
          ", ".join(f"{count} {what}" for what, count in sorted(bench.counted.items())))
    for difference in bench.differences[:20]:
        print(difference, file=sys.stderr)
    print(f"{len(bench.differences)} differences")
    is_covered = all(bench.counted[what] > 0 for what in
                     ("with utc time", "complete", "with losses", "with bounds"))
    return 1 if bench.differences or not is_covered else 0


if __name__ == "__main__":
    sys.exit(main())
