"""The Python reader: values by hand, and journals in every bad state."""

from __future__ import annotations

import contextlib
import io
import json
import subprocess
import sys
import tempfile
import unittest
from datetime import datetime, timedelta
from pathlib import Path

import recording_maker
from recording_maker import HEADER_BYTES, JournalMaker

import tavrel
from tavrel.__main__ import main
from tavrel.header import field_name

ROWS = [[20, 30], [20, 30], [-3, 1], [32767, -32767]] + [[row, 2 * row] for row in range(4, 20)]


def recording_bytes() -> bytes:
    return recording_maker.header(texts={0: "OVN: Rohrofen", 1: "Öl", 31: "03-14-2026 / 10:00"}) + \
        recording_maker.rows_bytes(ROWS)


def sealed_journal(data: bytes, *rows: int) -> JournalMaker:
    journal = JournalMaker()
    journal.begin("M260314A.OVN")
    journal.add("start", rows=0)
    for count in rows or (10, 20):
        journal.seal(data, count)
    return journal


class Header(unittest.TestCase):
    def test_each_word_and_text_has_its_place(self) -> None:
        data = recording_maker.header({place: 1000 + place for place in range(100)},
                                      {place: f"text {place}" for place in range(40)})
        header = tavrel.Header.from_bytes(data)
        self.assertEqual((header.inet, header.channels, header.ctrl, header.ref),
                         (1000, 1001, 1002, 1003))
        self.assertEqual(header.role, tuple(range(1004, 1019)))
        self.assertEqual((header.rec_on, header.max_minutes, header.interval), (1020, 1021, 1022))
        self.assertEqual((header.setpoint, header.upper, header.lower, header.increment,
                          header.final), (1025, 1026, 1027, 1028, 1029))
        self.assertEqual(header.colour, tuple(range(1032, 1047)))
        self.assertEqual((header.end_action, header.ymax, header.xmax), (1048, 1049, 1050))
        self.assertEqual(header.view, (1051, 1052, 1053, 1054))
        self.assertEqual(header.mark_pos, tuple(range(1055, 1075)))
        self.assertEqual((header.marks, header.graph_mode, header.ymin, header.fast, header.res,
                          header.prog_wait, header.prog_step),
                         (1075, 1076, 1089, 1090, 1092, 1098, 1099))
        self.assertEqual((header.designation, header.date, header.spare_text, header.prog_name,
                          header.origin), ("text 0", "text 31", "text 37", "text 38", "text 39"))
        self.assertEqual(header.input_name, tuple(f"text {place}" for place in range(1, 16)))
        self.assertEqual(header.input_note, tuple(f"text {place}" for place in range(16, 31)))
        self.assertEqual(header.mark_text, tuple(f"text {place}" for place in range(32, 37)))
        self.assertEqual(sorted(header.unnamed),
                         [19, 24, 30, 31, 47, *range(77, 89), 91, *range(93, 98)])
        self.assertEqual(header.unnamed[19], 1019)

    def test_texts_are_windows_1252_and_lose_their_padding(self) -> None:
        header = tavrel.Header.from_bytes(recording_bytes())
        self.assertEqual(header.input_name[0], "Öl")
        self.assertEqual(header.input_name[1], "")
        self.assertEqual(header.designation, "OVN: Rohrofen")

    def test_an_interval_is_tens_of_seconds_unless_the_instrument_is_fast(self) -> None:
        for fast, seconds in ((0, 70), (1, 7), (2, 70)):
            header = tavrel.Header.from_bytes(recording_maker.header({22: 7, 90: fast}))
            self.assertEqual(header.row_seconds, seconds)

    def test_ranges_say_whether_it_is_a_recording(self) -> None:
        for place, low, high in ((0, 1, 6), (1, 1, 15), (2, 1, 4), (3, 1, 15), (22, 1, 3600)):
            for word, is_valid in ((low - 1, False), (low, True), (high, True), (high + 1, False)):
                header = tavrel.Header.from_bytes(recording_maker.header({place: word}))
                self.assertEqual(header.is_valid, is_valid, (place, word))

    def test_fields_are_named_as_in_the_document(self) -> None:
        self.assertEqual(field_name("input_name"), "UnitInputName")
        self.assertEqual(field_name("res"), "UnitRes")


class Rows(unittest.TestCase):
    def test_rows_have_words_degrees_and_seconds(self) -> None:
        recording = tavrel.Recording(recording_bytes())
        self.assertEqual(len(recording), 20)
        self.assertEqual(recording.inputs, (1, 5))
        self.assertEqual(recording[2], tavrel.Row(2, 10, (-3, 1)))
        self.assertEqual(recording[2].degrees, (-0.15, 0.05))
        self.assertEqual(recording[3].degrees, (1638.35, -1638.35))
        self.assertEqual([row.seconds for row in recording][:4], [0, 0, 10, 20])
        self.assertEqual(recording[-1].words, (19, 38))
        with self.assertRaises(IndexError):
            recording[20]

    def test_a_word_that_is_no_value_has_no_degrees(self) -> None:
        data = recording_maker.header() + recording_maker.rows_bytes([[-32768, 0]])
        self.assertEqual(tavrel.Recording(data)[0].degrees, (None, 0.0))

    def test_a_torn_row_does_not_count(self) -> None:
        for torn in range(4):
            self.assertEqual(len(tavrel.Recording(recording_bytes() + bytes(torn))), 20)

    def test_what_is_no_recording_is_refused(self) -> None:
        for data in (b"", bytes(999), bytes(2000), recording_bytes()[:44]):
            with self.assertRaises(tavrel.NotARecording):
                tavrel.Recording(data)

    def test_where_header_and_rows_disagree_no_input_is_named(self) -> None:
        data = recording_maker.header({1: 3}) + bytes(12)
        self.assertEqual(tavrel.Recording(data).inputs, ())


class Verdicts(unittest.TestCase):
    def setUp(self) -> None:
        self.data = recording_bytes()

    def verdict(self, data: bytes, journal: bytes | None) -> tavrel.Verdict:
        return tavrel.Recording(data, journal).verify()

    def test_intact(self) -> None:
        verdict = self.verdict(self.data, sealed_journal(self.data).text)
        self.assertEqual((verdict.state, verdict.rows, verdict.sealed_rows, verdict.reasons),
                         (tavrel.State.INTACT, 20, 20, ()))

    def test_not_covered(self) -> None:
        journal = sealed_journal(self.data)
        stopped = sealed_journal(self.data)
        stopped.add("stop", by="user", rows=20)
        begun = JournalMaker()
        begun.begin("M260314A.OVN")
        for data, text in ((self.data, None), (self.data, begun.text),
                           (self.data + bytes(4), journal.text), (self.data + b"a", journal.text),
                           (self.data, stopped.text), (self.data, journal.text + b'{"n":'),
                           (self.data, journal.text + b'{"n":\n{"n"')):
            self.assertEqual(self.verdict(data, text).state, tavrel.State.NOT_COVERED)

    def test_a_changed_row_lies_between_two_seals(self) -> None:
        journal = sealed_journal(self.data, 3, 12, 20).text
        for row, first, last in ((0, 0, 2), (2, 0, 2), (3, 3, 11), (11, 3, 11), (19, 12, 19)):
            data = bytearray(self.data)
            data[HEADER_BYTES + 4 * row + 1] ^= 16
            verdict = self.verdict(bytes(data), journal)
            self.assertEqual(verdict.state, tavrel.State.DAMAGED)
            self.assertEqual(verdict.damaged_rows, tavrel.RowRange(first, last))

    def test_every_single_bit_of_header_and_rows_counts(self) -> None:
        journal = sealed_journal(self.data).text
        for place in range(0, len(self.data), 3):
            data = bytearray(self.data)
            data[place] ^= 1 << place % 8
            verdict = self.verdict(bytes(data), journal)
            self.assertEqual(verdict.state, tavrel.State.DAMAGED)
            self.assertEqual(verdict.header_damaged, place < HEADER_BYTES)

    def test_rows_that_are_gone_are_missing_and_some_cannot_be_judged(self) -> None:
        journal = sealed_journal(self.data).text
        verdict = self.verdict(self.data[:HEADER_BYTES + 4 * 13], journal)
        self.assertEqual(verdict.missing_rows, tavrel.RowRange(13, 19))
        self.assertEqual(verdict.unjudged_rows, tavrel.RowRange(10, 12))
        verdict = self.verdict(self.data[:HEADER_BYTES + 40], journal)
        self.assertEqual((verdict.missing_rows, verdict.unjudged_rows),
                         (tavrel.RowRange(10, 19), None))

    def test_the_recording_cut_at_every_byte_is_damaged(self) -> None:
        journal = sealed_journal(self.data).text
        for length in range(len(self.data)):
            self.assertEqual(self.verdict(self.data[:length], journal).state, tavrel.State.DAMAGED)

    def test_the_journal_cut_at_every_byte_is_never_intact(self) -> None:
        journal = sealed_journal(self.data).text
        for length in range(len(journal) - 1):
            state = self.verdict(self.data, journal[:length]).state
            self.assertEqual(state, tavrel.State.NOT_COVERED, length)
        self.assertEqual(self.verdict(self.data, journal[:-1]).state, tavrel.State.INTACT)

    def test_lines_missing_doubled_swapped_or_changed_are_seen(self) -> None:
        lines = sealed_journal(self.data, 3, 12, 20).text.splitlines(keepends=True)
        for place in range(len(lines) - 1):
            missing = lines[:place] + lines[place + 1:]
            doubled = lines[:place + 1] + lines[place:]
            swapped = lines[:place] + [lines[place + 1], lines[place]] + lines[place + 2:]
            changed = lines[:place] + [lines[place].replace(b":", b";", 1)] + lines[place + 1:]
            for bad, number in ((missing, place + 1), (doubled, place + 2), (swapped, place + 1),
                                (changed, place + 1)):
                verdict = self.verdict(self.data, b"".join(bad))
                self.assertEqual(verdict.state, tavrel.State.DAMAGED)
                self.assertEqual(verdict.journal_damaged_from, number)

    def test_a_torn_line_is_no_damage_where_the_next_one_says_so(self) -> None:
        for parts in ([b'{"n":5,"ti'], [b'{"n":5,"ti', b'{"n":5'], [b""]):
            journal = sealed_journal(self.data)
            journal.tear(parts)
            journal.seal(self.data, 20)
            self.assertEqual(self.verdict(self.data, journal.text).state, tavrel.State.INTACT)
        journal = sealed_journal(self.data)
        digits = journal.text[:-19] + b"\xff" * 16 + journal.text[-3:]
        self.assertEqual(self.verdict(self.data, digits).journal_damaged_from, 4)
        journal.text += b'{"n":5,"ti\n'
        journal.add("torn", bytes=9)
        verdict = self.verdict(self.data, journal.text)
        self.assertEqual((verdict.state, verdict.journal_damaged_from), (tavrel.State.DAMAGED, 5))

    def test_until_the_next_seal_the_old_and_each_new_header_are_right(self) -> None:
        other = recording_maker.header({25: 99}) + self.data[HEADER_BYTES:]
        third = recording_maker.header({25: 98}) + self.data[HEADER_BYTES:]
        journal = sealed_journal(self.data)
        for before, after in ((self.data, other), (other, third)):
            journal.add("header", old=recording_maker.sha(before[:HEADER_BYTES]),
                        new=recording_maker.sha(after[:HEADER_BYTES]), changes=[], rows=20)
        for data in (self.data, other, third):
            self.assertEqual(self.verdict(data, journal.text).state, tavrel.State.NOT_COVERED)
        journal.seal(third, 20)
        for data, is_damaged in ((self.data, True), (other, True), (third, False)):
            self.assertEqual(self.verdict(data, journal.text).header_damaged, is_damaged)

    def test_a_journal_without_its_begin_is_damaged(self) -> None:
        journal = JournalMaker()
        journal.seal(self.data, 20)
        self.assertEqual(self.verdict(self.data, journal.text).journal_damaged_from, 1)

    def test_a_seal_has_to_name_the_journal_before_it(self) -> None:
        journal = JournalMaker()
        journal.begin("M260314A.OVN")
        journal.add("seal", rows=20, columns=2, data=recording_maker.sha(self.data[HEADER_BYTES:]),
                    header=recording_maker.sha(self.data[:HEADER_BYTES]), journal="0" * 64)
        self.assertEqual(self.verdict(self.data, journal.text).journal_damaged_from, 2)

    def test_the_columns_come_from_the_seals(self) -> None:
        data = bytearray(self.data)
        data[2] = 1
        recording = tavrel.Recording(bytes(data), sealed_journal(self.data).text)
        self.assertEqual((recording.columns, len(recording)), (2, 20))
        self.assertTrue(recording.verify().header_damaged)
        self.assertIsNone(recording.verify().damaged_rows)


class Times(unittest.TestCase):
    def recording(self, journal: JournalMaker, interval: int = 1, rows: int = 20,
                  begin_interval: int | None = None) -> tavrel.Recording:
        data = recording_maker.header({22: interval}) + bytes(4 * rows)
        return tavrel.Recording(data, journal.text)

    def begun(self, interval: int = 10) -> JournalMaker:
        journal = JournalMaker()
        journal.add("begin", id="0" * 32, file="M260314A.OVN", interval=interval)
        return journal

    def test_a_start_anchors_its_rows(self) -> None:
        journal = self.begun()
        journal.time = "2026-03-14T10:00:05+01:00"
        journal.add("start", rows=0)
        recording = self.recording(journal)
        shown = [str(recording.local(row)) for row in (0, 1, 2, 19)]
        self.assertEqual(shown, ["2026-03-14 10:00:05+01:00", "2026-03-14 10:00:05+01:00",
                                 "2026-03-14 10:00:15+01:00", "2026-03-14 10:03:05+01:00"])
        self.assertEqual(str(recording.utc(19)), "2026-03-14 09:03:05+00:00")

    def test_a_second_start_anchors_the_rows_behind_it(self) -> None:
        journal = self.begun()
        journal.add("start", rows=0)
        journal.time = "2026-03-15T08:00:00+01:00"
        journal.add("start", rows=7)
        recording = self.recording(journal)
        self.assertEqual(str(recording.local(6)), "2026-03-14 10:00:50+01:00")
        self.assertEqual(str(recording.local(7)), "2026-03-15 08:00:00+01:00")
        self.assertEqual(str(recording.local(9)), "2026-03-15 08:00:20+01:00")

    def test_lost_sets_move_the_rows_behind_them(self) -> None:
        journal = self.begun()
        journal.add("start", rows=0)
        journal.add("lost", before=5, sets=3, exact=True, what="", rows=5)
        journal.add("lost", before=9, sets=2, exact=False, what="", rows=9)
        journal.add("lost", before=12, sets=2, exact=True, what="", rows=9)
        recording = self.recording(journal)
        self.assertEqual(str(recording.local(4)), "2026-03-14 10:00:30+01:00")
        self.assertEqual(str(recording.local(5)), "2026-03-14 10:01:10+01:00")
        self.assertEqual(str(recording.local(8)), "2026-03-14 10:01:40+01:00")
        self.assertIsNone(recording.local(9))
        self.assertIsNone(recording.utc(15))

    def test_a_part_has_the_time_of_its_source(self) -> None:
        for name in ("before", "origin"):
            journal = JournalMaker()
            journal.time = "2026-07-01T00:00:00+02:00"
            journal.add("begin", id="0" * 32, file="S260314A.OVN", interval=10, **{name: {"anchors": [
                {"rows": 0, "time": "2026-03-14T10:00:50+01:00"},
                {"rows": 1, "time": "2026-03-14T10:01:00+01:00"},
                {"rows": 7, "time": "2026-03-14T10:03:00+01:00"}, {"rows": 9, "time": None}]}})
            recording = self.recording(journal)
            shown = [str(recording.local(row)) for row in (0, 1, 6, 7, 8, 9)]
            self.assertEqual(shown, ["2026-03-14 10:00:50+01:00", "2026-03-14 10:01:00+01:00",
                                     "2026-03-14 10:01:50+01:00", "2026-03-14 10:03:00+01:00",
                                     "2026-03-14 10:03:10+01:00", "None"])

    def test_a_clock_that_is_set_later_moves_no_row(self) -> None:
        journal = self.begun()
        journal.add("start", rows=0)
        journal.time = "2026-05-01T00:00:00+02:00"
        journal.add("silent", **{"for": 5, "rows": 4})
        recording = self.recording(journal)
        self.assertEqual(str(recording.local(19)), "2026-03-14 10:03:00+01:00")

    def test_local_time_goes_over_a_change_of_summer_time(self) -> None:
        journal = self.begun(3600)
        journal.time = "2026-03-28T23:50:00+01:00"
        journal.add("start", rows=0)
        journal.time = "2026-03-29T01:55:00+01:00"
        journal.add("silent", **{"for": 5, "rows": 2})
        journal.time = "2026-03-29T03:15:00+02:00"
        journal.add("back", held=0, rows=2)
        recording = self.recording(journal, 360)
        shown = [str(recording.local(row)) for row in (2, 3, 4)]
        self.assertEqual(shown, ["2026-03-29 00:50:00+01:00", "2026-03-29 01:50:00+01:00",
                                 "2026-03-29 03:50:00+02:00"])
        self.assertEqual(str(recording.utc(4)), "2026-03-29 01:50:00+00:00")

    def test_the_change_is_at_the_only_full_hour_between_two_lines(self) -> None:
        for before, after, change in (
                ("2026-10-25T02:50:00+02:00", "2026-10-25T02:10:00+01:00", "01:00:00"),
                ("2026-10-25T02:50:00+02:00", "2026-10-25T02:50:00+01:00", "01:00:00"),
                ("2026-10-25T02:50:00+02:00", "2026-10-25T03:00:00+01:00", "02:00:00"),
                ("2026-10-25T02:00:00+02:00", "2026-10-25T02:00:00+01:00", "01:00:00"),
                ("2026-10-25T02:10:00+02:00", "2026-10-25T01:20:00+01:00", "00:20:00")):
            journal = self.begun()
            journal.time = before
            journal.add("start", rows=0)
            journal.time = after
            journal.add("silent", **{"for": 5, "rows": 2})
            recording = self.recording(journal, rows=2000)
            times = [recording.local(row) for row in range(2000)]
            changed = next(time for time in times
                           if time is not None and time.utcoffset() == timedelta(hours=1))
            self.assertEqual(changed, datetime.fromisoformat(f"2026-10-25T{change}+00:00"),
                             (before, after))

    def test_without_an_anchor_there_is_no_time_of_day(self) -> None:
        journal = self.begun()
        self.assertIsNone(self.recording(journal).local(0))
        journal.add("start", rows=5)
        self.assertIsNone(self.recording(journal).local(4))
        self.assertIsNotNone(self.recording(journal).local(5))
        self.assertIsNone(self.recording(journal, interval=2).local(5))
        journal.text += b',"sum":"0123456789abcdef"}\n'
        self.assertIsNone(self.recording(journal).local(5))
        self.assertIsNone(tavrel.Recording(recording_bytes()).utc(0))

    def test_a_table_by_time_of_day_needs_an_anchor(self) -> None:
        recording = tavrel.Recording(recording_bytes())
        self.assertEqual(recording._index("seconds")[:3], [0, 0, 10])
        with self.assertRaises(tavrel.NotAnchored):
            recording._index("local")


class Ledgers(unittest.TestCase):
    def begun(self, **more: object) -> JournalMaker:
        journal = JournalMaker()
        journal.add("begin", id="0" * 32, file="M260314A.OVN", line="direct", interval=10, **more)
        return journal

    def ledger(self, journal: JournalMaker, rows: int) -> tavrel.Ledger:
        data = recording_maker.header() + bytes(4 * rows)
        return tavrel.Recording(data, journal.text).ledger()

    def drain(self, journal: JournalMaker, up: float, rows: int) -> None:
        journal.up = up
        journal.add("drained", took=0.05, rows=rows)

    def test_a_recording_that_is_read_all_the_time_is_complete(self) -> None:
        journal = self.begun()
        journal.add("start", rows=0)
        for turn in range(50):
            self.drain(journal, 1004 + 10 * turn + turn % 9, turn + 2)
        ledger = self.ledger(journal, 51)
        self.assertTrue(ledger.is_complete)
        self.assertEqual((ledger.sets, ledger.live, ledger.later), (50, 50, 0))
        self.assertEqual(ledger.waiting, tavrel.Bounds())
        self.assertEqual(ledger.expected, tavrel.Bounds(50, 50))

    def test_what_nobody_has_told_the_clocks_find(self) -> None:
        journal = self.begun()
        journal.add("start", rows=0)
        for turn in range(20):
            self.drain(journal, 1004 + 10 * turn + turn % 9, turn + 2)
        self.drain(journal, 1309, 22)
        ledger = self.ledger(journal, 22)
        self.assertEqual(ledger.lost, tavrel.Bounds(10, 10))
        self.assertEqual(ledger.losses[0].before, 22)
        self.assertFalse(ledger.is_complete)

    def test_sets_that_wait_are_counted_before_the_first_is_fetched(self) -> None:
        for beside in (0, 1):
            journal = self.begun(why="there was none")
            journal.up = 1004
            journal.add("resume", rows=0)
            journal.add("counted", least=8 - beside, most=8 + beside, took=0.05, rows=0)
            waiting = self.ledger(journal, 0).waiting
            assert waiting is not None
            self.assertLessEqual(waiting.least, 8)
            self.assertEqual((waiting.most or 0) - waiting.least, 2 + 2 * beside)
            journal.up = 1004 + 15000
            journal.add("resume", rows=68)
            journal.add("lost", before=68, sets=3, exact=False, least=0, most=None, cause="full", rows=68)
            self.drain(journal, 1004 + 15100, 68 + 896)
            lost = self.ledger(journal, 68 + 896).lost
            self.assertLessEqual(lost.least, 1510 + 8 - 67 - 896)
            self.assertGreaterEqual(lost.most or 0, 1510 + 8 - 67 - 896)
            self.assertLessEqual((lost.most or 0) - lost.least, 2 + 2 * beside)

    def test_rows_behind_the_journal_that_no_kill_explains_are_unwatched(self) -> None:
        for rows, unwatched in ((896 + 360 + 2, 0), (896 + 360 + 3, 896 + 360 + 3)):
            journal = self.begun()
            journal.add("start", rows=0)
            self.assertEqual(self.ledger(journal, rows).unwatched, unwatched)

    def test_why_there_is_none(self) -> None:
        simulated = JournalMaker()
        simulated.add("begin", id="0" * 32, file="M260314A.OVN", line="simulated", interval=10)
        for text, why in ((None, "there is no journal"), (simulated.text, "no instrument was on"),
                          (self.begun(origin={"file": "B"}).text, "a part of another recording")):
            recording = tavrel.Recording(recording_bytes(), text)
            with self.assertRaisesRegex(tavrel.NoLedger, why):
                recording.ledger()


class Tables(unittest.TestCase):
    def test_numpy_and_pandas_are_only_needed_for_their_tables(self) -> None:
        look = "import sys, tavrel; sys.exit(len({'numpy', 'pandas'} & set(sys.modules)))"
        self.assertEqual(subprocess.run([sys.executable, "-B", "-c", look], check=False).returncode, 0)


class Command(unittest.TestCase):
    def run_command(self, *arguments: str) -> tuple[int, str, str]:
        output, errors = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
            status = main(arguments)
        return status, output.getvalue(), errors.getvalue()

    def test_the_highest_status_counts(self) -> None:
        data = recording_bytes()
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name)
            journal = sealed_journal(data).text
            intact = recording_maker.write(folder, "M260314A.OVN", data, journal)
            torn = recording_maker.write(folder, "M260314B.OVN", data + b"a", journal)
            damaged = recording_maker.write(folder, "M260314C.OVN", data[:1010], journal)
            self.assertEqual(self.run_command(str(intact)),
                             (0, f"{intact}: intact, 20 rows\n", ""))
            self.assertEqual(self.run_command("verify", str(intact), str(torn))[0], 1)
            self.assertEqual(self.run_command("verify", str(damaged), str(torn))[0], 2)
            self.assertEqual(self.run_command("verify", str(folder / "none"), str(damaged))[0], 3)
            self.assertEqual(self.run_command()[0], 3)
            self.assertEqual(self.run_command("verify", "--what")[0], 3)
            status, output, _ = self.run_command("ledger", str(intact))
            self.assertEqual((status, json.loads(output)["sets"]), (0, 19))
            status, output, _ = self.run_command("ledger", str(damaged))
            self.assertEqual((status, "damaged" in json.loads(output)), (2, True))
            bare = recording_maker.write(folder, "M260314D.OVN", data, None)
            status, output, _ = self.run_command("ledger", str(bare))
            self.assertEqual((status, json.loads(output)["why"]), (1, "there is no journal"))
            status, output, _ = self.run_command("info", str(intact))
            self.assertEqual(status, 0)
            self.assertIn("  begun: 03-14-2026 / 10:00\n", output)
            self.assertIn("  input 1: Öl\n", output)


if __name__ == "__main__":
    unittest.main()
