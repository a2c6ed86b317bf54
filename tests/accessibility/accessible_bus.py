"""A screen, a session bus and an accessibility bus of the test's own, and a client of that bus.

The client is the library that screen readers use. It looks for its bus when it is first used, so
the surroundings are made before that.
"""

import os
import pathlib
import select
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds, for what takes a moment
LOOK = 0.02  # seconds
TABLE_ROWS = 12  # from each end of a table


def atspi():
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi
    return Atspi


def gone():
    """What the client raises for a part that is no longer there."""
    from gi.repository import GLib
    return GLib.GError


def read_line(pipe, patience=PATIENCE, ears=None):
    """A line of a pipe without a buffer; empty at its end or when nothing comes. Meanwhile the ears
    take in what the bus says."""
    line = b""
    end = time.monotonic() + patience
    while not line.endswith(b"\n") and time.monotonic() < end:
        if ears is not None:
            ears.listen()
        if not select.select([pipe], [], [], LOOK)[0]:
            continue
        byte = os.read(pipe.fileno(), 1)
        if not byte:
            return ""
        line += byte
    return line.decode().rstrip("\n")


class Surroundings:
    """Xvfb and dbus-daemon; the bus starts the accessibility bus and its registry when asked."""

    def __init__(self):
        self._directory = tempfile.TemporaryDirectory()
        runtime = pathlib.Path(self._directory.name, "runtime")
        runtime.mkdir(mode=0o700)
        os.environ.update({
            "HOME": self._directory.name,
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": self._directory.name,
            "GSETTINGS_BACKEND": "memory",
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_LOGGING_RULES": "default.warning=false",
            "LC_ALL": "C.UTF-8",
        })
        self._children = []
        screen = self._start("Xvfb", "-displayfd", "1", "-screen", "0", "1600x1200x24",
                             "-nolisten", "tcp", "-noreset")
        os.environ["DISPLAY"] = ":" + read_line(screen.stdout)
        bus = self._start("dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address")
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = read_line(bus.stdout)

    def _start(self, *command):
        child = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                 bufsize=0)
        self._children.append(child)
        return child

    def end(self):
        for child in reversed(self._children):
            child.terminate()
            child.wait(PATIENCE)
            child.stdout.close()
        self._directory.cleanup()


class Ears:
    """What the bus says of changes, each as its kind and the name of what has changed."""

    KINDS = ("object:property-change:accessible-name", "object:property-change:accessible-value",
             "object:state-changed:checked", "object:state-changed:pressed")

    def __init__(self):
        self._events = []
        self._listener = atspi().EventListener.new(self._take)

    def open(self):
        for kind in self.KINDS:
            self._listener.register(kind)

    def close(self):
        for kind in self.KINDS:
            self._listener.deregister(kind)

    def _take(self, event):
        self._events.append((event.type, event.source.get_name()))

    def listen(self):
        from gi.repository import GLib
        while GLib.MainContext.default().iteration(False):
            pass

    def heard(self):
        """Since the last time this was asked."""
        self.listen()
        events, self._events = self._events, []
        return events


class Node:
    """One part of a form as the bus has it: role, name, label, states, size, children in sight."""

    def __init__(self, accessible, parent):
        states = atspi().StateType
        held = accessible.get_state_set()
        self.parent = parent
        self.place = 0  # among all parts of the parent, those that are hidden included
        self.accessible = accessible
        self.role = accessible.get_role_name()
        self.name = accessible.get_name() or ""
        self.states = {state for state in (states.CHECKED, states.PRESSED,
                                           states.SHOWING, states.VISIBLE)
                       if held.contains(state)}
        self.label = label_of(accessible) if self.role == "combo box" or not self.name else ""
        self.text = text_of(accessible)
        self.size = size_of(accessible)
        self.columns = columns_of(accessible) if self.role == "table" else 0
        self.children = list(children_of(accessible, self))

    def is_visible(self):
        return atspi().StateType.VISIBLE in self.states

    def is_in_sight(self):
        return self.is_visible() and min(self.size) > 0

    def is_pressed(self):
        return bool({atspi().StateType.CHECKED, atspi().StateType.PRESSED} & self.states)

    def press(self):
        """As a click does; a form that opens by it keeps the answer back until it closes."""
        atspi().Action.do_action(self.accessible, 0)

    def around(self):
        node = self.parent
        while node is not None:
            yield node
            node = node.parent

    def told(self):
        return f"{self.role} {self.name!r} {self.text!r} {self.size}"


class Tree:
    """All that one window says."""

    def __init__(self, window):
        self.root = Node(window, None)

    @classmethod
    def of_front_window(cls, pid):
        """Of the program with that number; the front one comes last."""
        application = wait_for(lambda: application_of(pid))
        application.clear_cache()
        return cls(wait_for(lambda: front_window_of(application)))

    def nodes(self):
        waiting = [self.root]
        while waiting:
            node = waiting.pop()
            yield node
            waiting += reversed(node.children)

    def find(self, role, name):
        found = [node for node in self.all_of(role) if node.name == name]
        return found[0] if found else None

    def all_of(self, role):
        return [node for node in self.nodes() if node.role == role]


def wait_for(question):
    from gi.repository import GLib
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        while GLib.MainContext.default().iteration(False):
            pass
        answer = question()
        if answer is not None:
            return answer
        select.select([], [], [], LOOK)
    raise TimeoutError("the program is not on the bus")


def application_of(pid):
    desktop = atspi().get_desktop(0)
    for place in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(place)
        if application is not None and application.get_process_id() == pid:
            return application
    return None


def front_window_of(application):
    count = application.get_child_count()
    return application.get_child_at_index(count - 1) if count > 0 else None


def places_of(accessible, node):
    """A large table is walked at its beginning and its end only. Its children are a corner, a head
    for each column, and for each row a head and its cells."""
    count = accessible.get_child_count()
    row = node.columns + 1
    if node.role != "table" or count < 3 * TABLE_ROWS * row:
        return range(count)
    return [*range(row + TABLE_ROWS * row), *range(count - TABLE_ROWS * row, count)]


def children_of(accessible, node):
    for place in places_of(accessible, node):
        child = accessible.get_child_at_index(place)
        if child is None:
            continue
        part = Node(child, node)
        part.place = place
        if part.is_visible() or part.role == "menu item":
            yield part


def label_of(accessible):
    labels = []
    for relation in accessible.get_relation_set():
        if relation.get_relation_type() == atspi().RelationType.LABELLED_BY:
            labels += [relation.get_target(place).get_name()
                       for place in range(relation.get_n_targets())]
    return " ".join(labels)


def text_of(accessible):
    if "Text" not in accessible.get_interfaces():
        return ""
    length = atspi().Text.get_character_count(accessible)
    return atspi().Text.get_text(accessible, 0, length)


def size_of(accessible):
    if "Component" not in accessible.get_interfaces():
        return (0, 0)
    extents = atspi().Component.get_extents(accessible, atspi().CoordType.SCREEN)
    return (extents.width, extents.height)


def columns_of(accessible):
    return atspi().Table.get_n_columns(accessible)
