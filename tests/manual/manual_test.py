"""The manuals as they are installed: manual_test.py SOURCE_DIRECTORY DIRECTORY_OF_THE_PDFS"""

import pathlib
import re
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1))
BUILT = pathlib.Path(sys.argv.pop(1))

# Words that stand in every German text and in no English one.
GERMAN = re.compile(r"[äöüÄÖÜß]|\b(und|oder|nicht|wird|werden|eine|einen|mit|auf|für|das|ist)\b")
LIGATURES = re.compile("[\ufb00-\ufb06]")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def plain(name):
    return name.replace("_", "").lower()


def names_of_forms():
    """All numbers of views, the title page, and the sheet by its own name, without "_" and case."""
    header = (SOURCE / "src/base/active_view.h").read_text(encoding="utf-8")
    views = re.findall(r"\bk(\w+) = [1-9]\d*,", header)
    return {"allload"} | {"tavrel" if view == "MainSheet" else plain(view) for view in views}


class Manual:
    def __init__(self, name, language):
        self.path = BUILT / f"{name}.pdf"
        self.pages = run("pdftotext", "-layout", self.path, "-").split("\f")
        self.text = "\n".join(self.pages)
        self.bytes = self.path.read_bytes()
        self.pictures = sorted((BUILT / "pictures" / language).glob("*.png"))
        self.source = (SOURCE / f"docs/manual/{name}.md").read_text(encoding="utf-8")

    def list_of_forms(self):
        """Name and page of each form, as the contents give them."""
        contents = "\n".join(self.pages[:6])
        rows = re.findall(r"(?m)^ *\S.* {2,}(\w+) +(\d+)$", contents)
        return [row for row in rows if row[0] not in ("Contents", "Inhalt")]  # the foot of a page


class Manuals(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.german = Manual("H207_511", "German")
        cls.english = Manual("H207_512", "English")

    def both(self):
        return (self.german, self.english)

    def test_name_each_form_in_the_contents_with_its_page(self):
        for manual in self.both():
            listed = manual.list_of_forms()
            self.assertEqual({plain(name) for name, _ in listed}, names_of_forms())
            for name, page in listed:
                self.assertIn(f"({name})", manual.pages[int(page) - 1], name)

    def test_show_each_form(self):
        for manual in self.both():
            taken = {plain(path.stem) for path in manual.pictures}
            self.assertEqual(names_of_forms() - taken, set())
            for path in manual.pictures:
                self.assertIn(f"({path.name})", manual.source)
                self.assertGreater(path.stat().st_size, 5000, path.name)
            images = len(re.findall(rb"/Subtype /Image\b", manual.bytes))
            self.assertGreaterEqual(images, len(manual.pictures))

    def test_link_only_to_places_that_are_there(self):
        for manual in self.both():
            places = set(re.findall(rb"\(([^()]+)\) \[ \d+ 0 R /XYZ", manual.bytes))
            links = re.findall(rb"/Subtype /Link\n.*?/Dest \(([^()]+)\)", manual.bytes, re.S)
            self.assertGreater(len(links), 100)
            self.assertEqual(set(links) - places, set())

    def test_have_a_bookmark_for_each_heading(self):
        for manual in self.both():
            code = re.compile(r"(?ms)^```.*?^```")
            headings = re.findall(r"(?m)^#{1,3} ", code.sub("", manual.source))
            titles = re.findall(rb"/Title [(<].*?\n/Parent", manual.bytes, re.S)
            self.assertGreaterEqual(len(titles), len(headings))

    def test_can_be_searched(self):
        german = (self.german, ("Öfen", "für", "größte", "auf"))
        english = (self.english, ("final", "first", "offset"))
        for manual, words in (german, english):
            self.assertIsNone(LIGATURES.search(manual.text))
            for word in words:
                self.assertIn(word, manual.text)

    def test_speak_one_language(self):
        found = [line.strip() for line in self.english.text.splitlines() if GERMAN.search(line)]
        self.assertEqual(found, [])

    def test_have_the_same_chapters(self):
        ids = [re.findall(r"(?m)^#+ .*\{#([\w-]+)\}", m.source) for m in (self.german, self.english)]
        self.assertEqual(ids[0], ids[1])
        levels = [re.findall(r"(?m)^(#{1,3}) ", m.source) for m in (self.german, self.english)]
        self.assertEqual(levels[0], levels[1])

    def test_open_with_a_page_of_contents(self):
        for manual in self.both():
            self.assertGreater(len(manual.pages), 20)
            self.assertIn("...", manual.pages[1])


if __name__ == "__main__":
    unittest.main()
