"""Every form as a client of the accessibility bus hears it: reader_test.py FORM_STAGE

The stage opens one form after the other; this is the client. It walks the tree of each form and
holds it against the texts that the form shows.
"""

import json
import re
import subprocess
import sys
import unittest

import accessible_bus
import reader_rules as rules
from accessible_bus import Tree, read_line

STAGE = sys.argv.pop(1)

# Between these two the user measures in the graph.
BEFORE_CHANGES = "TavGraph-part"
AFTER_CHANGES = "TavGraph-difference"
# The answers of each kind of box.
BOXES = {"Box-message": {"OK"}, "Box-ok": {"OK", "Cancel"}, "Box-retry": {"Retry", "Cancel"},
         "Box-exit": {"Retry", "Exit"}, "Box-yes": {"Yes", "No"},
         "Box-save": {"Yes", "No", "Cancel"}, "Box-offer": {"OK", "Open folder"},
         "Box-beside": {"Yes", "No"}}
GERMAN_ANSWERS = {"Cancel": "Abbrechen", "Retry": "Wiederholen", "Exit": "Beenden", "Yes": "Ja",
                  "No": "Nein"}
BUTTONS = {"push button", "toggle button", "check box", "radio button"}
FORMS_WITH_GRIDS = {"TavKeys", "TavInst", "TavChann", "TavProg", "ALL_OPEN", "ALL_RAM", "ALL_REGS"}


def words(text):
    return " ".join(text.replace("&", "").split())


def end_of(text):
    """A path that is too long for its place is heard as a whole."""
    return re.sub(r"^(…|\.\.\.) *", "", words(text))


def is_lamp(text):
    """The letter that is lit during an exchange."""
    return text == "c"


class Stage:
    """The forms of one language, each walked once; what was heard between two of them."""

    def __init__(self, language):
        self.trees = {}
        self.texts = {}
        self.heard = []
        child = subprocess.Popen([STAGE, language], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                 bufsize=0)
        ears = accessible_bus.Ears()
        while line := read_line(child.stdout, ears=ears):
            stop = json.loads(line)
            name = stop["stop"]
            if name == BEFORE_CHANGES:
                ears.open()
            elif name == AFTER_CHANGES:
                self.heard = ears.heard()
                ears.close()
            self.trees[name] = Tree.of_front_window(child.pid)
            child.stdin.write(b"\n")
            later = json.loads(read_line(child.stdout))
            self.texts[name] = [text for text in stop["texts"] if text in later["texts"]]
        child.stdin.close()
        child.stdout.close()
        self.status = child.wait(accessible_bus.PATIENCE)


class Reader(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.surroundings = accessible_bus.Surroundings()
        cls.addClassCleanup(cls.surroundings.end)
        cls.stages = {language: Stage(language) for language in ("German", "English")}

    def complain(self, complaints):
        self.assertEqual([], sorted(set(complaints)), "\n" + "\n".join(sorted(set(complaints))))

    def all_nodes(self):
        for stage in self.stages.values():
            for name, tree in stage.trees.items():
                for node in tree.nodes():
                    yield name, node

    def test_walks_every_form(self):
        for stage in self.stages.values():
            self.assertEqual(0, stage.status)
            self.assertGreater(len(stage.trees), 30)
            self.assertGreater(sum(1 for tree in stage.trees.values() for _ in tree.nodes()), 1000)

    def test_finds_no_control_without_a_name(self):
        self.complain(f"{form}: {node.told()}" for form, node in self.all_nodes()
                      if rules.is_nameless(node))

    def test_finds_no_empty_part_in_sight(self):
        self.complain(f"{form}: {node.told()}" for form, node in self.all_nodes()
                      if rules.is_empty_part(node))

    def test_hears_of_each_number_what_it_is(self):
        self.complain(f"{form}: {node.told()}" for form, node in self.all_nodes()
                      if rules.is_bare_number(node))

    def test_hears_each_text_that_is_shown(self):
        complaints = []
        for stage in self.stages.values():
            for name, tree in stage.trees.items():
                heard = "\n".join(words(f"{node.name} {node.text}") for node in tree.nodes())
                complaints += [f"{name}: {text}" for text in stage.texts[name]
                               if end_of(text) not in heard and not is_lamp(text)]
        self.complain(complaints)

    def test_hears_row_column_and_value_of_each_cell(self):
        complaints = []
        for stage in self.stages.values():
            self.assertEqual(set(), FORMS_WITH_GRIDS - set(
                name for name, tree in stage.trees.items() if tree.all_of("table")))
            for name, tree in stage.trees.items():
                for table in tree.all_of("table"):
                    complaints += [f"{name}: {cell}" for cell in rules.wrong_cells(table)]
        self.complain(complaints)

    def test_hears_which_buttons_are_pressed(self):
        for stage in self.stages.values():
            pressed = {node.name: node.is_pressed() for node in stage.trees["TavWork"].nodes()
                       if re.match("(recording|controller) (on|off|iso|dyn)|program$", node.name)
                       and node.role in BUTTONS}
            self.assertEqual({"recording on": True, "recording off": False,
                              "controller isothermal": True, "controller dynamic": False,
                              "controller off": False, "program": False}, pressed)

    def test_hears_what_changes_in_the_graph(self):
        for stage in self.stages.values():
            events = stage.heard
            names = [text for kind, text in events if kind.endswith("accessible-name")]
            for beginning in ("x = ", "y = ", "dy = ", "values at the cursor: "):
                self.assertTrue(any(name.startswith(beginning) for name in names),
                                f"{beginning} is not among {names}")
            self.assertTrue(any(kind.startswith("object:state-changed:checked") for kind, _ in
                                events), events)

    def test_hears_the_title_the_text_and_the_answers_of_each_box(self):
        for language, stage in self.stages.items():
            for box, answers in BOXES.items():
                if language == "German":
                    answers = {GERMAN_ANSWERS.get(answer, answer) for answer in answers}
                tree = stage.trees[box]
                heard = {f"{node.name} {node.text}".strip() for node in tree.all_of("label")}
                self.assertEqual("Open COM1", tree.root.name, box)
                self.assertIn("COM1 is in use.", heard, box)
                self.assertIn("Close that program, or choose another port.", heard, box)
                sign = "Frage" if language == "German" else "question"
                self.assertIsNotNone(tree.find("image", sign), box)
                self.assertEqual(answers, {node.name.replace("&", "") for node in tree.nodes()
                                           if node.role in BUTTONS}, box)

    def test_hears_each_notice(self):
        close = {"German": "Schließen", "English": "Close"}
        for language, stage in self.stages.items():
            tree = stage.trees["Notices"]
            notices = [node.name for node in tree.all_of("list item")]
            self.assertEqual(2, len(notices))
            self.assertRegex(notices[0], r"^\d\d:\d\d:\d\d   Read  Tavrel\n.*lost on the line$")
            self.assertRegex(notices[1], r"^\d\d:\d\d:\d\d   Read  file\n.*not found !$")
            self.assertIsNotNone(tree.find("push button", close[language]))

    def test_hears_the_print_dialog(self):
        print_button = {"German": "Drucken", "English": "Print"}
        for language, stage in self.stages.items():
            tree = stage.trees["PrintDialog"]
            self.assertIsNotNone(tree.find("push button", print_button[language]))
            self.assertTrue([node for node in tree.all_of("combo box") if node.label])

    def test_hears_the_curves_of_the_legend(self):
        for stage in self.stages.values():
            names = [node.name for node in stage.trees["TavGraph"].nodes()]
            self.assertTrue(any(re.match("names of the curves: 1 .*; 5 .*; 9 .*; 13 ", name)
                                for name in names), names)


if __name__ == "__main__":
    unittest.main()
