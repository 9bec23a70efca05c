#!/usr/bin/python3
"""player.py TITLE ARTIST  A player on the session bus that plays this track until it is ended; "-" as TITLE is a pause."""

import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

PLAYER = "org.mpris.MediaPlayer2.Player"
TITLE, ARTIST = sys.argv[1:]
STATE = {
    "org.mpris.MediaPlayer2": {"Identity": "Sample player", "CanQuit": False},
    PLAYER: {
        "PlaybackStatus": "Paused" if TITLE == "-" else "Playing",
        "Volume": 1.0,
        "Metadata": dbus.Dictionary({
            "mpris:trackid": dbus.ObjectPath("/track/1"), "mpris:length": dbus.Int64(240_000_000), "xesam:title": TITLE,
            "xesam:artist": dbus.Array([ARTIST], "s"), "xesam:album": "Album"}, "sv"),
    },
}


class Player(dbus.service.Object):
    @dbus.service.method(dbus.PROPERTIES_IFACE, "s", "a{sv}")
    def GetAll(self, interface):
        return STATE.get(interface, {})

    @dbus.service.method(dbus.PROPERTIES_IFACE, "ss", "v")
    def Get(self, interface, name):
        return STATE[interface][name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, "ssv")
    def Set(self, interface, name, value):
        STATE[interface][name] = value


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("org.mpris.MediaPlayer2.sample", bus)
player = Player(bus, "/org/mpris/MediaPlayer2")
GLib.MainLoop().run()
