"""What a client of the accessibility bus must find in every window of the program."""

import re

# What a user works with or reads. On this desktop the name of a list is its value, so that it needs
# a label.
CONTROLS = {"push button", "toggle button", "check box", "radio button", "combo box", "list",
            "list item", "text", "password text", "terminal", "spin button", "slider", "table",
            "tree", "tree table", "table cell", "table column header", "table row header",
            "progress bar", "image", "icon", "chart", "menu item", "check menu item", "page tab"}
NEEDS_LABEL = {"combo box"}
# Without content of their own: a reader passes them over.
EMPTY = {"filler", "panel", "unknown", "invalid", "frame"}
# The toolkit's own parts of these have neither name nor use.
WITH_PARTS = {"text", "table", "tree", "tree table", "terminal", "combo box", "status bar"}
NUMBER = re.compile(r"^[-+\d.,\s]+$")


def is_nameless(node):
    """A control of which nobody says what it is."""
    name = node.label if node.role in NEEDS_LABEL else node.name or node.label
    return node.role in CONTROLS and not name.strip()


def is_empty_part(node):
    """Something is seen there and nothing is said."""
    return (node.role in EMPTY and not node.children and node.is_in_sight() and
            not any(around.role in WITH_PARTS for around in node.around()))


def is_bare_number(node):
    return node.role == "label" and bool(NUMBER.match(node.name))


def wrong_cells(table):
    """Cells that do not say where they are. The first one of a row may be the name of the row."""
    cells = [node for node in table.children if node.role == "table cell"]
    said = set()
    for cell in cells:
        is_first = cell.place % (table.columns + 1) == 1
        if ": " not in cell.name + " " and not is_first:
            yield cell.told()
        elif cell.name in said and not is_first:
            yield cell.told() + " twice"
        said.add(cell.name)
