"""The few D-Bus calls that the other modules are made of."""

from gi.repository import Gio, GLib

_BUS = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")


def connect(address):
    flags = Gio.DBusConnectionFlags
    return Gio.DBusConnection.new_for_address_sync(
        address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)


class Remote:
    """One object of another process on a bus. Every call waits at most `limit` seconds for its answer."""

    def __init__(self, bus, owner, path, limit=5.0):
        self.bus, self.owner, self.path, self._limit = bus, owner, path, limit

    def call(self, interface, method, signature="()", *arguments):
        """Returns the tuple of the answer's values."""
        return self.bus.call_sync(self.owner, self.path, interface, method, GLib.Variant(signature, arguments), None,
                                  Gio.DBusCallFlags.NONE, int(self._limit * 1000), None).unpack()

    def get(self, interface, name):
        return self.call("org.freedesktop.DBus.Properties", "Get", "(ss)", interface, name)[0]

    def set(self, interface, name, signature, value):
        self.call("org.freedesktop.DBus.Properties", "Set", "(ssv)", interface, name, GLib.Variant(signature, value))


def has_owner(bus, name):
    owner, path, interface = _BUS
    return Remote(bus, owner, path).call(interface, "NameHasOwner", "(s)", name)[0]


def names(bus):
    owner, path, interface = _BUS
    return Remote(bus, owner, path).call(interface, "ListNames")[0]


def process_of(bus, name):
    """The process id behind a bus name, or 0 when it has gone."""
    owner, path, interface = _BUS
    try:
        return Remote(bus, owner, path).call(interface, "GetConnectionUnixProcessID", "(s)", name)[0]
    except GLib.Error:
        return 0
