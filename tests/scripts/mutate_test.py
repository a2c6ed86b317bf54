"""The changes that scripts/mutate makes in a source text."""

import importlib.machinery
import importlib.util
import pathlib
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "mutate"


def load():
    loader = importlib.machinery.SourceFileLoader("mutate", str(SCRIPT))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
    loader.exec_module(module)
    return module


mutate = load()


def changed(text):
    """All texts that the mutants of `text` make of it."""
    return sorted(mutate.apply(text, mutant) for mutant in mutate.mutants_of(text))


def body(line):
    return "void F() {\n  " + line + "\n}\n"


class Operators(unittest.TestCase):
    def expect(self, line, lines):
        self.assertEqual(changed(body(line)), sorted(body(each) for each in lines))

    def test_comparisons_have_their_neighbour(self):
        self.expect("return a < b;", ["return a <= b;"])
        self.expect("return a <= b;", ["return a < b;"])
        self.expect("return a > b;", ["return a >= b;"])
        self.expect("return a >= b;", ["return a > b;"])
        self.expect("return a == b;", ["return a != b;"])
        self.expect("return a != b;", ["return a == b;"])

    def test_words_and_signs(self):
        self.expect("return a && !b;", ["return a || !b;", "return a && b;"])
        self.expect("return true;", ["return false;"])
        self.expect("return a + b * c;", ["return a - b * c;", "return a + b / c;"])
        self.expect("return std::min(a, b);", ["return std::max(a, b);"])
        self.expect("return std::min_element(a, b);", [])

    def test_numbers_have_two_neighbours_but_0(self):
        self.expect("return 7;", ["return 8;", "return 6;"])
        self.expect("return 0;", ["return 1;"])
        self.expect("return kEnd2 + 0x10 + 1.5;", ["return kEnd2 - 0x10 + 1.5;",
                                                   "return kEnd2 + 0x10 - 1.5;"])

    def test_a_condition_holds_always_or_never(self):
        self.expect("if (Is(a)) {", ["if (true) {", "if (false) {"])

    def test_a_call_or_an_assignment_goes(self):
        self.expect("link_.Close();", [";"])
        self.expect("state.at(slot) = value;", [";"])
        self.expect("parts_.dialogs.Message(\n      {text});", [";"])
        self.expect("static_cast<void>(Save());", [";"])

    def test_declarations_and_returns_stay(self):
        for line in ("int value = Other();", "const Held held(flag);", "return Other();",
                     "std::string text;", "using namespace x;"):
            self.expect(line, [])

    def test_comments_and_literals_and_includes_stay(self):
        self.expect('return "a < b 1";  // a && b == 2', [])
        self.expect("return '1' /* + 1 */;", [])
        self.assertEqual(changed("#include <a>\n#define X 1\n"), [])

    def test_templates_and_pointers_stay(self):
        self.expect("std::vector<int> list;", [])
        self.expect("char* text;", [])

    def test_each_mutant_is_another_text(self):
        text = body("a_ += 2 * b - 1;")
        every = changed(text)
        self.assertEqual(len(every), len(set(every)))
        self.assertNotIn(text, every)

    def test_the_place_is_told_with_both_texts(self):
        text = body("if (a < b) {")
        mutant = next(each for each in mutate.mutants_of(text) if each.after == " <= ")
        self.assertEqual(text[mutant.start:mutant.start + 3], mutant.before)


if __name__ == "__main__":
    unittest.main()
