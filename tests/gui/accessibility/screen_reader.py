"""What a screen reader sees of the program: a client of AT-SPI, and the program to look at.

Both live on a display and a session bus of their own, so no desktop is needed and none is disturbed.
"""

import os
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

# Seconds to wait for what is to come.
PATIENCE = 10
MOMENT = 0.01


class Element:
    """An element as it was when it was looked at."""

    def __init__(self, accessible, parent=None):
        self.accessible = accessible
        self.parent = parent
        # Newer versions of the library say "button".
        role = accessible.get_role_name()
        self.role = "push button" if role == "button" else role
        self.name = accessible.get_name() or ""
        self.description = accessible.get_description() or ""
        self.states = {state.value_nick for state in accessible.get_state_set().get_states()}
        self.children = []

    def __str__(self):
        return f"{self.role} '{self.name}'"

    @property
    def is_showing(self):
        return "showing" in self.states

    @property
    def is_focusable(self):
        return "focusable" in self.states

    def text(self):
        return Atspi.Text.get_text(self.accessible, 0, -1)

    def has_text(self):
        return "Text" in self.accessible.get_interfaces()

    def related(self, kind):
        """The names of the elements that this one has the relation to."""
        relations = [
            relation
            for relation in self.accessible.get_relation_set()
            if relation.get_relation_type().value_nick == kind
        ]
        return {
            relation.get_target(index).get_name()
            for relation in relations
            for index in range(relation.get_n_targets())
        }

    def actions(self):
        accessible = self.accessible
        if "Action" not in accessible.get_interfaces():
            return []
        return [
            Atspi.Action.get_action_name(accessible, index)
            for index in range(Atspi.Action.get_n_actions(accessible))
        ]

    def act(self, *names):
        """Does the first of these actions that the element has."""
        offered = self.actions()
        for name in names:
            if name in offered:
                assert Atspi.Action.do_action(self.accessible, offered.index(name)), f"{self}: {name}"
                return
        raise AssertionError(f"{self} offers none of {names} but {offered}")

    def press(self):
        self.act("Press", "Toggle")

    def all(self):
        """The element and what it is made of, from outside to inside."""
        yield self
        for child in self.children:
            yield from child.all()


def shown_children(accessible, parent=None):
    """What is shown of the element's children, without looking into them."""
    found = (accessible.get_child_at_index(at) for at in range(accessible.get_child_count()))
    children = [Element(child, parent) for child in found if child is not None]
    return [child for child in children if child.is_showing]


def look_into(element):
    """The element with the tree of what is shown in it."""
    element.children = shown_children(element.accessible, element)
    for child in element.children:
        look_into(child)
    return element


class Reader:
    """The program under the eyes of a screen reader."""

    def __init__(self, *command):
        self.folder = tempfile.TemporaryDirectory()
        self.display = self._start_display()
        os.environ["XDG_RUNTIME_DIR"] = self.folder.name
        environment = dict(
            os.environ,
            DISPLAY=self.display_name,
            LC_ALL="C.UTF-8",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            QT_QPA_PLATFORM="xcb",
            XDG_CONFIG_HOME=self.folder.name,
        )
        self.renamed = []
        Atspi.init()
        self._listener = Atspi.EventListener.new(self._on_event)
        self._listener.register("object:property-change:accessible-name")
        self.program = subprocess.Popen(command, env=environment)
        self.application = self.wait("the program", self._find_application)
        # What is remembered may be what was.
        self.application.set_cache_mask(Atspi.Cache.NONE)

    def _start_display(self):
        ours, displays = os.pipe()
        display = subprocess.Popen(
            ["Xvfb", "-displayfd", str(displays), "-screen", "0", "1920x1080x24", "-nolisten", "tcp"],
            pass_fds=[displays],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        os.close(displays)
        with os.fdopen(ours) as numbers:
            self.display_name = ":" + numbers.readline().strip()
        return display

    def _find_application(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            found = desktop.get_child_at_index(index)
            if found is not None and found.get_process_id() == self.program.pid:
                return found if found.get_child_count() > 0 else None
        return None

    def _on_event(self, event):
        try:
            self.renamed.append((event.source.get_role_name(), event.source.get_name()))
        except GLib.Error:
            pass  # it is gone already

    def wait(self, what, find):
        """Waits until `find` gives something. What goes away while it is looked at is looked at again."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            while GLib.MainContext.default().iteration(False):
                pass
            try:
                found = find()
            except GLib.Error:
                found = None
            if found:
                return found
            time.sleep(MOMENT)
        seen = "\n".join(str(element) for window in self.windows() for element in look_into(window).all())
        raise AssertionError(f"{what} did not come within {PATIENCE} s; there is\n{seen}")

    def windows(self):
        """The open windows, without what is in them."""
        return shown_children(self.application)

    def boxes(self):
        """The open message boxes."""
        return [window for window in self.windows() if window.role == "alert"]

    def window(self, name):
        """The window of this title, once it is open."""

        def find():
            named = [window for window in self.windows() if window.name == name]
            return look_into(named[0]) if named else None

        return self.wait(f"the window '{name}'", find)

    def is_open(self, name):
        return any(window.name == name for window in self.windows())

    def wait_until_closed(self, name):
        self.wait(f"the end of '{name}'", lambda: not self.is_open(name))

    def exit_status(self):
        return self.program.wait(PATIENCE)

    def close(self):
        for process in (self.program, self.display):
            if process.poll() is None:
                process.terminate()
                process.wait(PATIENCE)
        self.folder.cleanup()


def find(window, role, name):
    """The element of this role and name; fails where there is none."""
    for element in window.all():
        if element.role == role and element.name == name:
            return element
    raise AssertionError(f"{window} has no {role} '{name}':\n" + "\n".join(map(str, window.all())))
