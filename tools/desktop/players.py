"""The real players: how each is started without a screen, and how loud it is at a volume."""

import contextlib
import math
import os
import signal
import subprocess
from dataclasses import dataclass
from pathlib import Path

from gi.repository import GLib

from desktop.dbus import Remote, has_owner
from desktop.processes import wait_until

_PATH = "/org/mpris/MediaPlayer2"
_ROOT = "org.mpris.MediaPlayer2"
_PLAYER = "org.mpris.MediaPlayer2.Player"


@dataclass(frozen=True)
class Kind:
    command: tuple
    bus_name: str
    exponent: int  # the amplitude is the volume to this power
    settings: tuple = ()  # the name of a file below ~/.config, and what it says
    is_asked: bool = False  # to open the files once it runs; else they are in its command line
    remote: tuple = ()  # by which it is asked, if it understands no OpenUri: the commands, before the files


KINDS = {
    "audacious": Kind(("audacious", "-H"), "audacious", 3),
    # It wants a terminal, and plays the first file at once.
    "cmus": Kind(("env", "TERM=xterm", "script", "--quiet", "--command", "cmus", "/dev/null"), "cmus", 3,
                 ("cmus/rc", "set output_plugin=pulse\n"), is_asked=True,
                 remote=("sh", "-c", 'cmus-remote --file "$1"; shift; [ $# = 0 ] || cmus-remote --queue "$@"', "cmus")),
    "mpv": Kind(("mpv", "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so", "--ao=pulse", "--no-video",
                 "--input-ipc-server=~/mpv.socket", "--really-quiet"), "mpv", 3),
    # Without the settings it asks servers for album covers, and since 1.2 its user for money. That version loses the
    # files of its command line when it starts for the first time.
    "strawberry": Kind(("strawberry",), "strawberry", 1,
                       ("strawberry/strawberry.conf",
                        "[MainWindow]\nsearch_for_cover_auto=false\ndo_not_show_sponsor_message=true\n"), is_asked=True),
    # These only for trials by hand (tools/volume-trial): the tests do not install them.
    "elisa": Kind(("elisa",), "elisa", 3),
    # The daemon that plays, and the program that speaks for it on the bus.
    "mpd": Kind(("sh", "-c", "mpd --no-daemon & MPD_HOST=~/.config/mpd/socket exec mpDris2"), "mpd", 3,
                ("mpd/mpd.conf", 'bind_to_address "~/.config/mpd/socket"\naudio_output {\n type "pulse"\n name "pulse"\n}\n'),
                remote=("sh", "-c", 'export MPD_HOST=~/.config/mpd/socket; mpc --quiet clear; '
                        'for file; do mpc --quiet add "file://$file"; done; mpc --quiet play', "mpc"), is_asked=True),
    "parole": Kind(("parole", "--new-instance"), "parole", 3,
                   ("xfce4/xfconf/xfce-perchannel-xml/parole.xml",
                    '<channel name="parole" version="1.0"><property name="parole" type="empty">'
                    '<property name="plugins" type="string" value="parole-mpris2.so"/></property></channel>')),
    "pragha": Kind(("pragha",), "pragha", 3),
    "rhythmbox": Kind(("rhythmbox",), "rhythmbox", 3, is_asked=True,
                      remote=("sh", "-c", "rhythmbox-client --no-start --play-uri=\"file://$1\"", "rhythmbox-client")),
    "vlc": Kind(("cvlc", "-I", "dummy", "--control", "dbus", "--no-video", "--aout", "pulse"), "vlc", 3),
}


def _write_playlist(files):
    """The address of a playlist beside the files."""
    path = Path(files[0]).resolve().with_name("playlist.m3u")
    path.write_text("".join(f"{os.path.abspath(file)}\n" for file in files), encoding="utf-8")
    return path.as_uri()


class Player:
    """A running player that plays the files, controlled over MPRIS as a user's media keys would."""

    def __init__(self, desktop, name, files):
        self._desktop, self._kind, self._files = desktop, KINDS[name], files
        if self._kind.settings:
            desktop.write_setting(*self._kind.settings)
        self._bus_name = "org.mpris.MediaPlayer2." + self._kind.bus_name
        self._remote = Remote(desktop.bus, self._bus_name, _PATH, limit=20)
        self.process = desktop.start("player", [*self._kind.command, *(() if self._kind.is_asked else files)])
        wait_until(f"{name} on the session bus", lambda: has_owner(desktop.bus, self._bus_name), 30)
        self._open()

    def _open(self):
        if self._kind.remote:
            self._desktop.run(*self._kind.remote, *self._files)
        elif self._kind.is_asked:
            # It answers when it has started up.
            playlist = _write_playlist(self._files)
            Remote(self._desktop.bus, self._bus_name, _PATH, limit=30).call(_PLAYER, "OpenUri", "(s)", playlist)

    def title(self):
        return self._remote.get(_PLAYER, "Metadata").get("xesam:title", "")

    def is_playing(self):
        return self._remote.get(_PLAYER, "PlaybackStatus") == "Playing"

    def call(self, method):
        """Pause, Next, Stop..."""
        self._remote.call(_PLAYER, method)

    def play(self):
        """Goes on, also after a stop."""
        try:
            self.call("Play")
        except GLib.Error:
            self._open()  # Rhythmbox has nothing to play after a stop

    def quit(self):
        """Ends the player as its user would."""
        try:
            self._remote.call(_ROOT, "Quit")
            self.process.wait(10)
        except (GLib.Error, subprocess.TimeoutExpired):
            pass  # it cannot be asked over the bus
        self.end(signal.SIGTERM)

    def end(self, number):
        """Sends a signal to all of its processes."""
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, number)
        self.process.wait(60)

    def volume(self):
        """0 to 100."""
        return round(100 * self._remote.get(_PLAYER, "Volume"))

    def set_volume(self, volume):
        self._remote.set(_PLAYER, "Volume", "d", volume / 100)

    def decibels(self, volume):
        """How much louder (below 0: quieter) this player's sound is at `volume` than at 100."""
        return 20 * self._kind.exponent * math.log10(volume / 100)
