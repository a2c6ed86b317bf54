"""The header of a recording: 1000 bytes in front of the rows."""

from __future__ import annotations

import re
import struct
from dataclasses import dataclass
from typing import Final

HEADER_BYTES: Final = 1000
_WORDS: Final = 100
_TEXT_BYTES: Final = 20
_NEVER_SET_BYTES: Final = b"\0 "

# Name, first word, number of words.
_WORD_FIELDS: Final = (
    ("UnitInet", 0, 1), ("UnitChannels", 1, 1), ("UnitCtrl", 2, 1), ("UnitRef", 3, 1),
    ("UnitRole", 4, 15), ("UnitRecOn", 20, 1), ("UnitMaxMinutes", 21, 1),
    ("UnitInterval", 22, 1), ("UnitCtrlState", 23, 1), ("UnitSetpoint", 25, 1),
    ("UnitUpper", 26, 1), ("UnitLower", 27, 1), ("UnitIncrement", 28, 1), ("UnitFinal", 29, 1),
    ("UnitColour", 32, 15), ("UnitEndAction", 48, 1), ("UnitYmax", 49, 1), ("UnitXmax", 50, 1),
    ("UnitView", 51, 4), ("UnitMarkPos", 55, 20), ("UnitMarks", 75, 1), ("UnitGraphMode", 76, 1),
    ("UnitYmin", 89, 1), ("UnitFast", 90, 1), ("UnitRes", 92, 1), ("UnitProgWait", 98, 1),
    ("UnitProgStep", 99, 1),
)

# Name, first text, number of texts.
_TEXT_FIELDS: Final = (
    ("UnitDesignation", 0, 1), ("UnitInputName", 1, 15), ("UnitInputNote", 16, 15),
    ("UnitDate", 31, 1), ("UnitMarkText", 32, 5), ("UnitSpareText", 37, 1),
    ("UnitProgName", 38, 1), ("UnitOrigin", 39, 1),
)


@dataclass(frozen=True)
class Header:
    """The fields of the header; ``UnitInputName`` of the document is ``input_name`` here.

    Lists by input begin with input 1. Raw temperatures are words in steps of 0.05 degrees.
    """

    inet: int
    """Instrument on the line, 1..6."""
    channels: int
    """Recorded inputs, 1..15: the words of one row."""
    ctrl: int
    """Controller of the instrument, 1..4."""
    ref: int
    """Reference input, 1..15."""
    role: tuple[int, ...]
    """Of the inputs 1..15; 1 or more: the input is recorded."""
    rec_on: int
    """1 while the recording runs."""
    max_minutes: int
    """Length limit in minutes; 0 or less: all that the file can hold."""
    interval: int
    """Sampling in tens of seconds, in seconds if ``fast`` is 1; see ``row_seconds``."""
    ctrl_state: int
    setpoint: int
    """Raw temperature."""
    upper: int
    """Upper limit, raw temperature."""
    lower: int
    """Lower limit, raw temperature."""
    increment: int
    """Ramp as the instrument holds it."""
    final: int
    """Final value, raw temperature."""
    colour: tuple[int, ...]
    """Of the inputs 1..15; below 1: the curve is left out."""
    end_action: int
    """0 end only, 1 switch the controller off, 2 go on in a next file."""
    ymax: int
    """Top of the Y axis, degrees."""
    xmax: int
    """Length of the X axis, minutes."""
    view: tuple[int, ...]
    mark_pos: tuple[int, ...]
    marks: int
    """Marks in use, 0..5."""
    graph_mode: int
    ymin: int
    """Bottom of the Y axis, degrees."""
    fast: int
    """1: fast instrument, ``interval`` is in seconds."""
    res: int
    """Resolution of the graph: below 53 high, else low."""
    prog_wait: int
    """Minutes until the next step of the running program."""
    prog_step: int
    """Number of the running step."""
    designation: str
    """Three letters (the file extension), a colon, the apparatus."""
    input_name: tuple[str, ...]
    """Of the inputs 1..15."""
    input_note: tuple[str, ...]
    """Of the inputs 1..15."""
    date: str
    """Start, ``mm-dd-yyyy / hh:nn``."""
    mark_text: tuple[str, ...]
    """Of the marks 1..5."""
    spare_text: str
    prog_name: str
    """Controller program."""
    origin: str
    """Source of a subfile."""
    unnamed: dict[int, int]
    """Words without a name, by their place from 0."""

    @classmethod
    def from_bytes(cls, data: bytes) -> Header:
        """Reads the first 1000 bytes of ``data``; ValueError if there are fewer.

        Any 1000 bytes are a header; ``is_valid`` says whether they make sense.
        """
        if len(data) < HEADER_BYTES:
            raise ValueError(f"a header has {HEADER_BYTES} bytes, not {len(data)}")
        words = struct.unpack_from(f"<{_WORDS}h", data)
        fields: dict[str, object] = {}
        for name, place, count in _WORD_FIELDS:
            fields[_attribute(name)] = words[place] if count == 1 else words[place:place + count]
        for name, place, count in _TEXT_FIELDS:
            texts = tuple(_text(data, place + index) for index in range(count))
            fields[_attribute(name)] = texts[0] if count == 1 else texts
        named = {place + index for _, place, count in _WORD_FIELDS for index in range(count)}
        fields["unnamed"] = {place: words[place] for place in range(_WORDS) if place not in named}
        return cls(**fields)  # type: ignore[arg-type]

    @property
    def is_valid(self) -> bool:
        """True if the file is one of this system."""
        return (1 <= self.inet <= 6 and 1 <= self.channels <= 15 and 1 <= self.ctrl <= 4
                and 1 <= self.ref <= 15 and 1 <= self.interval <= 3600)

    @property
    def inputs(self) -> tuple[int, ...]:
        """The recorded inputs, from 1, ascending: the columns of a row."""
        return tuple(index + 1 for index, role in enumerate(self.role) if role >= 1)

    @property
    def row_seconds(self) -> int:
        """Seconds between two rows."""
        return self.interval if self.fast == 1 else self.interval * 10


def field_name(attribute: str) -> str:
    """The document's name of a field of ``Header``: ``input_name`` is ``UnitInputName``."""
    return "Unit" + "".join(part.capitalize() for part in attribute.split("_"))


def _attribute(name: str) -> str:
    return re.sub(r"(?<=[a-z])(?=[A-Z])", "_", name.removeprefix("Unit")).lower()


def _text(data: bytes, place: int) -> str:
    begin = 2 * _WORDS + place * _TEXT_BYTES
    padded = data[begin:begin + _TEXT_BYTES]
    return _windows_1252(padded.rstrip(_NEVER_SET_BYTES))


def _windows_1252(data: bytes) -> str:
    # Five bytes mean nothing in Windows-1252; they stay visible as U+FFFD.
    return data.decode("cp1252", errors="replace")
