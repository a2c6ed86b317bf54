"""The installed program as a client of the accessibility bus meets it, and works it:
program_test.py BUILD_DIRECTORY PREPARE_INSTALLATION"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import accessible_bus
import reader_rules as rules
from accessible_bus import Tree, read_line, wait_for

BUILD, PREPARE = sys.argv.pop(1), sys.argv.pop(1)


class Installed:
    """The program in a directory of its own, beside two virtual instruments on a line."""

    def __init__(self):
        self._directory = tempfile.TemporaryDirectory()
        home = pathlib.Path(self._directory.name)
        self._children = []
        quiet = {"check": True, "stdout": subprocess.DEVNULL}
        subprocess.run(["cmake", "--install", BUILD, "--prefix", home], **quiet)
        subprocess.run([PREPARE, home, "COMMPORT=COM1", "COMMODE=0",
                        "slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,inputs=1/5/9"],
                       **quiet)
        line = self._start([home / "tavrel-instrument", "--link", home / "COM1", "--mode", "direct",
                            "--instruments", "1", "--warm", "--sample", "1=10", "--oven",
                            "1.1=hold:200"])
        assert read_line(line.stdout).startswith("ready")
        self.pid = self._start([home / "tavrel"]).pid

    def _start(self, command):
        child = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                 bufsize=0)
        self._children.append(child)
        return child

    def end(self):
        for child in reversed(self._children):
            child.terminate()
            child.wait(accessible_bus.PATIENCE)
            child.stdout.close()
        self._directory.cleanup()

    def window(self, is_there):
        """The tree of the front window, as soon as it is the one that is meant."""
        def look():
            try:
                tree = Tree.of_front_window(self.pid)
            except accessible_bus.gone():
                return None  # a window that closes while it is looked at
            return tree if is_there(tree) else None
        return wait_for(look)


def has(role, name):
    return lambda tree: tree.find(role, name) is not None


class Program(unittest.TestCase):
    def setUp(self):
        surroundings = accessible_bus.Surroundings()
        self.addCleanup(surroundings.end)
        self.program = Installed()
        self.addCleanup(self.program.end)

    def look_at(self, tree):
        for node in tree.nodes():
            self.assertFalse(rules.is_nameless(node), node.told())
            self.assertFalse(rules.is_empty_part(node), node.told())
            self.assertFalse(rules.is_bare_number(node), node.told())
        return tree

    def test_is_worked_from_the_splash_to_the_graph(self):
        splash = self.program.window(lambda tree: "TAVREL" in tree.root.name and
                                     tree.all_of("push button"))
        splash.all_of("push button")[0].press()
        sheet = self.look_at(self.program.window(has("push button", "worksheet, row 1")))
        self.assertIsNotNone(sheet.find("text", "apparatus, row 1"))
        sheet.find("push button", "worksheet, row 1").press()
        worksheet = self.program.window(lambda tree: is_pressed(tree, "recording on"))
        self.look_at(worksheet)
        self.program.window(lambda tree: any(
            node.name.startswith("actual, input 5: 2") for node in tree.nodes()))
        worksheet.find("push button", "show the graph").press()
        graph = self.look_at(self.program.window(has("chart", "curves, overview")))
        self.assertTrue([node for node in graph.nodes()
                         if node.name.startswith("names of the curves: 1")])


def is_pressed(tree, name):
    """A button of a state is told as a box that is checked."""
    button = tree.find("check box", name)
    return button is not None and button.is_pressed()


if __name__ == "__main__":
    unittest.main()
