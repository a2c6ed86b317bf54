"""What the moments at which an instrument had no more data tell of its clock."""

from __future__ import annotations

import math
from dataclasses import dataclass
from typing import Final

RATE: Final = 200e-6
"""By which two clocks may differ."""
ROUNDING: Final = 0.002
"""Seconds, of times that are written in thousandths."""
_MOST_CORNERS: Final = 64
_MOST_SETS: Final = 1e15  # of times that no clock shows no more sets come


@dataclass(frozen=True)
class Moment:
    """Something was so at some time from ``asked`` to ``answered``, in seconds."""

    asked: float
    answered: float


class LedgerClock:
    """Set k, counted from 0, is made at p + k T; keeps all pairs of p and T that are possible.

    The pairs are a convex area, and each moment cuts a part of it off. p counts from the moment at
    which the clock has begun.
    """

    def __init__(self, interval: float) -> None:
        self._interval = interval
        self._origin = 0.0
        self._corners: list[tuple[float, float]] = []

    def begin(self, moment: Moment, made: tuple[int, int] = (0, 0)) -> None:
        """So many sets, at the least and at the most, had been made from number 0 on at that moment.

        T stays as known.
        """
        rates = [t for _, t in self._corners]
        least = min(rates, default=self._interval * (1 - RATE))
        most = max(rates, default=self._interval * (1 + RATE))
        self._origin = moment.answered
        asked = moment.asked - self._origin - ROUNDING
        last = made[0] - 1
        last_time = last * (most if last < 0 else least)
        self._corners = _box(asked - made[1] * most, ROUNDING - last_time, least, most)
        self._clip(1, made[1], asked)
        self._clip(-1, -last, -ROUNDING)

    def made_at(self, moment: Moment) -> tuple[int, int]:
        """How many sets have been made at that moment, at the least and at the most."""
        least, most = _MOST_SETS, 0.0
        for p, t in self._corners:
            least = min(least, (moment.asked - ROUNDING - self._origin - p) / t)
            most = max(most, (moment.answered + ROUNDING - self._origin - p) / t + 1)
        made = max(_whole(least) + 1, 0)
        return made, max(made, _whole(most))

    def learn(self, moment: Moment, made: int) -> bool:
        """So many had been made at that moment; False if that cannot be."""
        self._clip(1, made, moment.asked - ROUNDING - self._origin)
        self._clip(-1, -(made - 1), -(moment.answered + ROUNDING - self._origin))
        if len(self._corners) > _MOST_CORNERS:
            starts = [p for p, _ in self._corners]
            rates = [t for _, t in self._corners]
            self._corners = _box(min(starts), max(starts), min(rates), max(rates))
        return bool(self._corners)

    def _clip(self, factor_p: float, factor_t: float, least: float) -> None:
        """What is left is possible only where factor_p p + factor_t T >= least."""
        left: list[tuple[float, float]] = []
        for place, (p, t) in enumerate(self._corners):
            next_p, next_t = self._corners[(place + 1) % len(self._corners)]
            here = factor_p * p + factor_t * t - least
            there = factor_p * next_p + factor_t * next_t - least
            if here >= 0:
                left.append((p, t))
            if (here >= 0) != (there >= 0):
                part = here / (here - there)
                left.append((p + part * (next_p - p), t + part * (next_t - t)))
        self._corners = left


def _box(least_p: float, most_p: float, least_t: float, most_t: float) -> list[tuple[float, float]]:
    return [(least_p, least_t), (most_p, least_t), (most_p, most_t), (least_p, most_t)]


def _whole(sets: float) -> int:
    return math.floor(min(max(sets, -_MOST_SETS), _MOST_SETS))
