"""The tables for numpy and pandas; needs both, so it runs where the package is tried."""

from __future__ import annotations

import math
import unittest

import recording_maker

import tavrel


class Tables(unittest.TestCase):
    def setUp(self) -> None:
        data = recording_maker.header() + recording_maker.rows_bytes(
            [[20, 30], [-32768, 3], [-3, 32767], [-32767, 6554]])
        journal = recording_maker.JournalMaker()
        journal.begin("M260314A.OVN")
        journal.add("start", rows=0)
        self.anchored = tavrel.Recording(data, journal.text)
        self.plain = tavrel.Recording(data)

    def test_numpy_has_degrees_by_row_and_column(self) -> None:
        table = self.plain.to_numpy()
        self.assertEqual(table.shape, (4, 2))
        self.assertTrue(math.isnan(table[1, 0]))
        for row in self.plain:
            for column, degrees in enumerate(row.degrees):
                if degrees is not None:
                    self.assertEqual(table[row.number, column], degrees)

    def test_a_recording_without_rows_is_an_empty_table(self) -> None:
        recording = tavrel.Recording(recording_maker.header())
        self.assertEqual(recording.to_numpy().shape, (0, 2))
        self.assertEqual(len(recording.to_pandas()), 0)

    def test_pandas_has_a_column_for_each_input_and_the_wanted_time(self) -> None:
        table = self.anchored.to_pandas()
        self.assertEqual(list(table.columns), ["input 1", "input 5"])
        self.assertEqual(list(table.index), [0, 0, 10, 20])
        self.assertEqual(table["input 5"].tolist(), [1.5, 0.15, 1638.35, 327.7])
        self.assertEqual(str(self.anchored.to_pandas("utc").index[3]), "2026-03-14 09:00:20+00:00")
        self.assertEqual(str(self.anchored.to_pandas("local").index[3]),
                         "2026-03-14 10:00:20+01:00")

    def test_a_time_of_day_needs_an_anchor(self) -> None:
        with self.assertRaises(tavrel.NotAnchored):
            self.plain.to_pandas("utc")
        with self.assertRaises(ValueError):
            self.plain.to_pandas("moon")


if __name__ == "__main__":
    unittest.main()
