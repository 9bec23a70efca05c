"""The real players: how each is started without a screen, and how loud it is at a volume."""

import math
from dataclasses import dataclass

from desktop.dbus import Remote, has_owner
from desktop.processes import wait_until

_PLAYER = "org.mpris.MediaPlayer2.Player"


@dataclass(frozen=True)
class Kind:
    command: tuple
    bus_name: str
    exponent: int  # the amplitude is the volume to this power
    settings: tuple = ()  # the name of a file below ~/.config, and what it says


KINDS = {
    "audacious": Kind(("audacious", "-H"), "audacious", 3),
    "mpv": Kind(("mpv", "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so", "--ao=pulse", "--no-video",
                 "--really-quiet"), "mpv", 3),
    # Without this it asks servers for album covers.
    "strawberry": Kind(("strawberry", "-p"), "strawberry", 1,
                       ("strawberry/strawberry.conf", "[MainWindow]\nsearch_for_cover_auto=false\n")),
    "vlc": Kind(("cvlc", "-I", "dummy", "--control", "dbus", "--no-video", "--aout", "pulse"), "vlc", 3),
}


class Player:
    """A running player that plays the files, controlled over MPRIS as a user's media keys would."""

    def __init__(self, desktop, name, files):
        self._kind = KINDS[name]
        if self._kind.settings:
            desktop.write_setting(*self._kind.settings)
        bus_name = "org.mpris.MediaPlayer2." + self._kind.bus_name
        self._remote = Remote(desktop.bus, bus_name, "/org/mpris/MediaPlayer2")
        self.process = desktop.start("player", [*self._kind.command, *files])
        wait_until(f"{name} on the session bus", lambda: has_owner(desktop.bus, bus_name), 30)

    def title(self):
        return self._remote.get(_PLAYER, "Metadata").get("xesam:title", "")

    def is_playing(self):
        return self._remote.get(_PLAYER, "PlaybackStatus") == "Playing"

    def call(self, method):
        """Play, Pause, Next, Stop..."""
        self._remote.call(_PLAYER, method)

    def volume(self):
        """0 to 100."""
        return round(100 * self._remote.get(_PLAYER, "Volume"))

    def set_volume(self, volume):
        self._remote.set(_PLAYER, "Volume", "d", volume / 100)

    def decibels(self, volume):
        """How much louder (below 0: quieter) this player's sound is at `volume` than at 100."""
        return 20 * self._kind.exponent * math.log10(volume / 100)
