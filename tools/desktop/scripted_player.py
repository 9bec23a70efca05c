"""A music player without music, in a process of its own, that does what it is told.

As a program it takes one command after the other from its standard input, each a line of JSON (a list: the name of a
command, then its arguments), and answers each with another once it has been carried out.
"""

import json
import os
import subprocess
import sys
import time

if __name__ == "__main__":
    sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from gi.repository import Gio, GLib

from desktop.dbus import Remote, connect
from desktop.processes import wait_until

_PATH = "/org/mpris/MediaPlayer2"
_ROOT = "org.mpris.MediaPlayer2"
_PLAYER = "org.mpris.MediaPlayer2.Player"
_PROPERTIES = "org.freedesktop.DBus.Properties"
_DESCRIPTION = f"""<node><interface name="{_PROPERTIES}">
<method name="Get"><arg type="s"/><arg type="s"/><arg type="v" direction="out"/></method>
<method name="GetAll"><arg type="s"/><arg type="a{{sv}}" direction="out"/></method>
<method name="Set"><arg type="s"/><arg type="s"/><arg type="v"/></method>
<signal name="PropertiesChanged"><arg type="s"/><arg type="a{{sv}}"/><arg type="as"/></signal>
</interface></node>"""


class ScriptedPlayer:
    """Starts such a player and tells it what to do; its volume is read and set over the bus, as by any program."""

    def __init__(self, desktop, volume=100, name="scripted"):
        bus_name = f"{_ROOT}.{name}"
        self._remote = Remote(desktop.bus, bus_name, _PATH)
        self.process = desktop.start(
            "scripted-player", [sys.executable, "-B", os.path.abspath(__file__), str(volume), bus_name],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._await_answer()

    def play(self, title, artist="Artist", album=""):
        """A new track; returns when it was told (monotonic clock). Without an album, each has one of its own, so that
        it is worth an announcement."""
        return self._command("play", title, artist, album or f"Album of {title[:100]}")

    def pause(self):
        """Returns when it was told, likewise."""
        return self._command("pause")

    def flood(self, count):
        """Signals `count` changes between a few tracks as fast as the bus takes them; the last track is "Flood's End"."""
        self._command("flood", count)

    def take_volumes(self):
        """The volumes to which it has been set, in order, since it was last asked."""
        return self._command("take_volumes")

    def leave(self):
        """Ends the player, as its user would."""
        self.process.stdin.close()
        self.process.wait(5)

    def kill(self):
        self.process.kill()
        self.process.wait()

    def volume(self):
        """0 to 100."""
        return round(100 * self._remote.get(_PLAYER, "Volume"))

    def set_volume(self, volume):
        self._remote.set(_PLAYER, "Volume", "d", volume / 100)

    def wait_for_volume(self, volume, limit=10.0):
        wait_until(f"the volume {volume}", lambda: self.volume() == volume, limit, pause=0.005)

    def _command(self, *command):
        self.process.stdin.write(json.dumps(command).encode() + b"\n")
        self.process.stdin.flush()
        return self._await_answer()

    def _await_answer(self):
        answer = self.process.stdout.readline()
        if not answer:
            raise RuntimeError("the scripted player has ended")
        return json.loads(answer)


class _Service:
    """The player's side of the bus."""

    def __init__(self, volume, bus_name):
        self._bus = connect(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        self._values = {"PlaybackStatus": GLib.Variant("s", "Stopped"), "Metadata": GLib.Variant("a{sv}", {}),
                        "Volume": GLib.Variant("d", volume / 100),
                        # Without these, command-line remote controls leave a player alone.
                        "CanControl": GLib.Variant("b", True), "CanPlay": GLib.Variant("b", True)}
        self._volumes = []
        interface, = Gio.DBusNodeInfo.new_for_xml(_DESCRIPTION).interfaces
        self._bus.register_object(_PATH, interface, self._answer, None, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (bus_name, 0)), None, Gio.DBusCallFlags.NONE, 5000, None)

    def play(self, title, artist, album):
        return self._change(self._track(title, artist, album))

    def pause(self):
        return self._change({"PlaybackStatus": GLib.Variant("s", "Paused")})

    def flood(self, count):
        # Made beforehand: making one takes longer than sending it.
        signals = [self._changed(self._track(f"Flood {number}", "Artist", f"Album {number}")) for number in range(10)]
        for number in range(count - 1):
            self._emit(signals[number % len(signals)])
        self.play("Flood's End", "Artist", "Album")
        self._bus.flush_sync(None)

    def take_volumes(self):
        volumes, self._volumes = self._volumes, []
        return volumes

    @staticmethod
    def _track(title, artist, album):
        metadata = {"mpris:trackid": GLib.Variant("o", "/track/1"), "xesam:title": GLib.Variant("s", title),
                    "xesam:artist": GLib.Variant("as", [artist]), "xesam:album": GLib.Variant("s", album)}
        return {"PlaybackStatus": GLib.Variant("s", "Playing"), "Metadata": GLib.Variant("a{sv}", metadata)}

    def _change(self, values):
        self._values.update(values)
        changed = self._changed(values)
        told = time.monotonic()
        self._emit(changed)
        return told

    @staticmethod
    def _changed(values):
        return GLib.Variant("(sa{sv}as)", (_PLAYER, values, []))

    def _emit(self, changed):
        self._bus.emit_signal(None, _PATH, _PROPERTIES, "PropertiesChanged", changed)

    def _answer(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        interface, *more = (arguments.get_child_value(number) for number in range(arguments.n_children()))
        values = self._values if interface.get_string() == _PLAYER else {"Identity": GLib.Variant("s", "Scripted")}
        name = more[0].get_string() if more else None
        if method == "GetAll":
            invocation.return_value(GLib.Variant("(a{sv})", (values,)))
        elif name not in values:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.UnknownProperty", f"no {name}")
        elif method == "Get":
            invocation.return_value(GLib.Variant("(v)", (values[name],)))
        else:
            values[name] = more[1].get_variant()
            self._volumes.append(round(100 * values[name].get_double()))
            invocation.return_value(None)
            self._emit(self._changed({name: values[name]}))


def _main(volume, bus_name):
    service = _Service(volume, bus_name)
    loop = GLib.MainLoop()
    print(json.dumps("ready"), flush=True)

    def obey(_file, condition):
        line = sys.stdin.buffer.readline() if condition & GLib.IO_IN else b""
        if not line:
            loop.quit()
            return False
        command, *arguments = json.loads(line)
        print(json.dumps(getattr(service, command)(*arguments)), flush=True)
        return True

    GLib.io_add_watch(GLib.IOChannel.unix_new(0), GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, obey)
    loop.run()


if __name__ == "__main__":
    _main(int(sys.argv[1]), sys.argv[2])
