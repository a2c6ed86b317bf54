"""Shows and verifies recordings: python3 -m tavrel [info|verify|ledger] FILE..."""

from __future__ import annotations

import io
import json
import sys
from collections.abc import Sequence
from typing import Any

from .ledger import NoLedger
from .recording import NotARecording, Recording
from .verdict import State

_USAGE = """usage: python3 -m tavrel [info|verify|ledger] FILE...

info    what the header of each recording and its journal say
verify  holds each recording against its journal; without a command this is done. Exit status:
        0 intact, 1 readable but not covered, 2 damaged, 3 usage or reading failed; of many files
        the highest
ledger  how complete each recording is by its journal, as one JSON object a file. Exit status: 0
        told, 1 there is no ledger, 2 damaged, the figures reach to the damage only, 3 as above
"""
_COMMANDS = ("info", "verify", "ledger")
_FAILED = 3


def main(arguments: Sequence[str]) -> int:
    """Runs the command; the result is its exit status."""
    if list(arguments) == ["--help"]:
        print(_USAGE, end="")
        return 0
    has_command = bool(arguments) and arguments[0] in _COMMANDS
    files = arguments[1:] if has_command else arguments
    wrong = next((file for file in files if file.startswith("--")), None)
    if not files or wrong is not None:
        print(f"tavrel: {'unknown option ' + wrong if wrong else 'a file is missing'}",
              file=sys.stderr)
        print(_USAGE, end="", file=sys.stderr)
        return _FAILED
    command = arguments[0] if has_command else "verify"
    return max(_tell(file, command) for file in files)


def _tell(file: str, command: str) -> int:
    try:
        recording = Recording.open(file)
    except (OSError, NotARecording) as problem:
        what = problem.strerror if isinstance(problem, OSError) else problem
        print(f"tavrel: {file}: {what}", file=sys.stderr)
        return _FAILED
    if command == "info":
        print(f"{file}: {_info(recording)}")
        return State.INTACT
    if command == "ledger":
        return _tell_ledger(file, recording)
    verdict = recording.verify()
    reasons = ": " + "; ".join(verdict.reasons) if verdict.reasons else ""
    print(f"{file}: {verdict.state}, {verdict.rows} rows{reasons}")
    return verdict.state


def _tell_ledger(file: str, recording: Recording) -> int:
    told: dict[str, Any] = {"file": file, "rows": len(recording)}
    verdict = recording.verify()
    status = State.INTACT
    if verdict.state == State.DAMAGED:
        told["damaged"] = "; ".join(verdict.reasons)
    try:
        told |= recording.ledger().to_json()
    except NoLedger as why:
        told["why"] = str(why)
        status = State.NOT_COVERED
    print(json.dumps(told, ensure_ascii=False, separators=(",", ":")))
    return State.DAMAGED if verdict.state == State.DAMAGED else status


def _info(recording: Recording) -> str:
    header = recording.header
    lines = [header.designation, f"begun: {header.date}", f"instrument: {header.inet}",
             f"recording: {'on' if header.rec_on == 1 else 'stopped'}",
             f"interval: {recording.interval} s", f"rows: {len(recording)}"]
    lines += [f"input {number}: {header.input_name[number - 1]}" for number in header.inputs]
    if recording.journal is None:
        return "\n  ".join([*lines, "journal: none"])
    lines.append(f"journal: {len(recording.journal.lines)} lines, id {recording.id}")
    if recording.journal.seals:
        members = recording.journal.seals[-1].members
        lines.append(f"last seal: {members.get('rows')} rows, data {members.get('data')}")
    return "\n  ".join(lines)


if __name__ == "__main__":
    # What a name or a journal holds may have no letter in the encoding of the terminal.
    for stream in (sys.stdout, sys.stderr):
        if isinstance(stream, io.TextIOWrapper):
            stream.reconfigure(errors="backslashreplace")
    sys.exit(main(sys.argv[1:]))
