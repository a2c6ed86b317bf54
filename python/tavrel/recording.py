"""A recording as a whole: header, rows, times and journal."""

from __future__ import annotations

import hashlib
import os
import struct
from collections.abc import Iterator
from dataclasses import dataclass
from datetime import datetime
from functools import cached_property
from pathlib import Path
from typing import TYPE_CHECKING, Any, Final

from .header import HEADER_BYTES, Header
from .journal import Journal, journal_path, read_journal
from .ledger import Ledger, ledger_of
from .times import RowTimes, set_number
from .verdict import Verdict, count_rows, verify

if TYPE_CHECKING:
    import numpy
    import pandas  # type: ignore[import]

NO_VALUE: Final = -32768
"""A word that is no temperature; it never stands in a file that is whole."""


class NotARecording(ValueError):
    """The bytes are no recording: the header is out of its ranges and there is no journal."""


class NotAnchored(ValueError):
    """The journal does not say which time of day a row has."""


@dataclass(frozen=True)
class Row:
    """One row of a recording."""

    number: int
    """From 0."""
    seconds: int
    """Since the first set, which stands in the rows 0 and 1."""
    words: tuple[int, ...]
    """Raw temperatures in steps of 0.05 degrees, one for each column."""

    @property
    def degrees(self) -> tuple[float | None, ...]:
        """Temperatures in degrees; None where a word is no value."""
        return tuple(degrees_of(word) for word in self.words)


class Recording:
    """The bytes of a recording and of its journal, read once; nothing is ever written."""

    def __init__(self, data: bytes, journal: bytes | None = None) -> None:
        """Takes the whole file and the whole journal, None if there is none.

        Raises NotARecording if the header makes no sense and no journal says more.
        """
        self._data = data
        self.header = Header.from_bytes(data.ljust(HEADER_BYTES, b"\0")[:HEADER_BYTES])
        self.journal: Journal | None = None if journal is None else read_journal(journal)
        if journal is None and not self.header.is_valid:
            raise NotARecording("is no recording")

    @classmethod
    def open(cls, path: str | os.PathLike[str]) -> Recording:
        """Reads a file and its journal beside it; OSError if one of them cannot be read."""
        place = Path(path)
        data = place.read_bytes()
        try:
            journal = journal_path(place).read_bytes()
        except (FileNotFoundError, NotADirectoryError):
            journal = None
        return cls(data, journal)

    @cached_property
    def columns(self) -> int:
        """Words of a row. A seal says it, since the header may be damaged."""
        if self.journal is not None:
            for line in reversed(self.journal.seals):
                columns = line.number("columns")
                if columns is not None and 1 <= columns <= 15:
                    return columns
        return self.header.channels

    @property
    def inputs(self) -> tuple[int, ...]:
        """The input of each column, from 1; empty where header and rows disagree."""
        inputs = self.header.inputs
        return inputs if len(inputs) == self.columns else ()

    @property
    def interval(self) -> int:
        """Seconds between two rows."""
        return self.header.row_seconds

    def __len__(self) -> int:
        """Whole rows; a torn one at the end does not count."""
        return count_rows(len(self._data), self.columns)[0]

    def __getitem__(self, row: int) -> Row:
        """The row of that number, from 0; of the last row also -1."""
        number = row + len(self) if row < 0 else row
        if not 0 <= number < len(self):
            raise IndexError(f"row {row} of {len(self)}")
        words = struct.unpack_from(f"<{self.columns}h", self._data,
                                   HEADER_BYTES + 2 * self.columns * number)
        return Row(number, self.seconds(number), words)

    def __iter__(self) -> Iterator[Row]:
        return (self[number] for number in range(len(self)))

    def seconds(self, row: int) -> int:
        """Seconds from the first set to that row (from 0); 0 for the rows 0 and 1."""
        return self.interval * set_number(row)

    @cached_property
    def _times(self) -> RowTimes:
        return RowTimes(self.journal, self.interval)

    def utc(self, row: int) -> datetime | None:
        """Universal time of a row (from 0); None where the journal does not anchor it."""
        return self._times.utc(row)

    def local(self, row: int) -> datetime | None:
        """Local time of a row (from 0) with its zone; None where the journal does not anchor it."""
        return self._times.local(row)

    @property
    def id(self) -> str | None:
        """The random id of the recording; None without a journal that has one."""
        lines = self.journal.lines if self.journal is not None else ()
        value = lines[0].members.get("id") if lines else None
        return value if isinstance(value, str) else None

    def verify(self) -> Verdict:
        """Holds header, rows and journal against the seals."""
        return verify(self._data, self.journal)

    def ledger(self) -> Ledger:
        """How complete the recording is, by its journal, as far as its lines fit.

        Raises NoLedger where nothing can be said, for the reason in words.
        """
        return ledger_of(self.journal, len(self))

    def data_hash(self) -> str:
        """SHA-256 of the sample bytes of all whole rows, as the last seal has it."""
        end = HEADER_BYTES + 2 * self.columns * len(self)
        return hashlib.sha256(self._data[HEADER_BYTES:end]).hexdigest()

    def to_numpy(self) -> numpy.ndarray[Any, numpy.dtype[numpy.float64]]:
        """Degrees as an array of rows and columns; NaN where a word is no value. Needs numpy."""
        import numpy

        words = numpy.frombuffer(self._data, dtype="<i2", count=len(self) * self.columns,
                                 offset=min(HEADER_BYTES, len(self._data)))
        # As numbers with a point at once: five times a word has no room in 16 bits.
        degrees = words.astype(numpy.float64) * 5 / 100
        degrees[words == NO_VALUE] = numpy.nan
        return degrees.reshape(len(self), self.columns)

    def to_pandas(self, time: str = "seconds") -> pandas.DataFrame:
        """Degrees as a table with one column for each input. Needs pandas.

        ``time``: "seconds", "utc" or "local" as index. Raises NotAnchored for a time of day that
        the journal does not say.
        """
        import pandas

        names = [f"input {number}" for number in self.inputs]
        names = names or [f"column {place + 1}" for place in range(self.columns)]
        return pandas.DataFrame(self.to_numpy(), columns=names,
                                index=pandas.Index(self._index(time), name=time))

    def _index(self, time: str) -> list[int] | list[datetime]:
        if time == "seconds":
            return [self.seconds(row) for row in range(len(self))]
        if time not in ("utc", "local"):
            raise ValueError(f"no time of that kind: {time}")
        of_row = self.utc if time == "utc" else self.local
        times: list[datetime] = []
        for row in range(len(self)):
            moment = of_row(row)
            if moment is None:
                raise NotAnchored(f"the journal does not say at which time row {row} was recorded")
            times.append(moment)
        return times


def degrees_of(word: int) -> float | None:
    """A raw temperature in degrees; None if the word is no value."""
    # Hundredths first: 0.05 has no exact value, and 3 * 0.05 is not 0.15.
    return None if word == NO_VALUE else word * 5 / 100
