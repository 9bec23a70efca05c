"""Reads and presses what is in a program's windows, as a screen reader does (AT-SPI over D-Bus)."""

from gi.repository import GLib

from desktop.dbus import Remote, connect, process_of
from desktop.processes import wait_until

_PREFIX = "org.a11y.atspi."
_CHECKED, _ENABLED, _SELECTED, _SHOWING = 4, 8, 23, 25  # bits of a widget's state


class Accessibility:
    """The widgets of one program in a private desktop."""

    def __init__(self, desktop, program):
        self._program = program
        address = Remote(desktop.bus, "org.a11y.Bus", "/org/a11y/bus").call("org.a11y.Bus", "GetAddress")[0]
        self._bus = connect(address)

    def find(self, role, name, limit=10.0):
        """Waits for the widget of that role, on the screen, whose name begins so."""
        return wait_until(f"the {role} “{name}”", lambda: self._search(role, name), limit)

    def is_shown(self, role, name):
        return self._search(role, name) is not None

    def _search(self, role, name):
        try:
            return next((node for node in self._nodes()
                         if node.role() == role and node.name().startswith(name) and node.is_showing()), None)
        except GLib.Error:
            return None  # a window vanished while being read

    def _nodes(self):
        programs = Node(self._bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root").children()
        waiting = [node for node in programs if process_of(self._bus, node.owner) == self._program]
        while waiting:
            node = waiting.pop(0)
            yield node
            waiting.extend(node.children())


class Node(Remote):
    """One widget."""

    def name(self):
        return self.get(_PREFIX + "Accessible", "Name")

    def role(self):
        """Such as "push button", "check box", "combo box", "label", "frame"."""
        return self.call(_PREFIX + "Accessible", "GetRoleName")[0]

    def children(self):
        return [Node(self.bus, *child) for child in self.call(_PREFIX + "Accessible", "GetChildren")[0]]

    def is_enabled(self):
        return self._has_state(_ENABLED)

    def is_checked(self):
        return self._has_state(_CHECKED)

    def is_selected(self):
        return self._has_state(_SELECTED)

    def is_showing(self):
        return self._has_state(_SHOWING)

    def press(self):
        """Does what a click does."""
        self.call(_PREFIX + "Action", "DoAction", "(i)", 0)

    def _has_state(self, state):
        low, high = self.call(_PREFIX + "Accessible", "GetState")[0]
        return bool((low | high << 32) >> state & 1)
