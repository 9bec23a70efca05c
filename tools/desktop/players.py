"""The real players: how each is started without a screen, and how loud it is at a volume.

A player is given files, or the address of a stream.
"""

import contextlib
import math
import os
import re
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
    packages: tuple = ()  # of Debian; none: the one that is called like the player
    has_volume: bool = True  # others may set it


_MPD_SOCKET = "~/.config/mpd/socket"
# The daemon that plays, and the program that speaks for it on the bus.
_MPD = ("sh", "-c", f"mpd --no-daemon & MPD_HOST={_MPD_SOCKET} exec mpDris2")
_MPD_REMOTE = ("sh", "-c", f'export MPD_HOST={_MPD_SOCKET}; mpc --quiet clear; for file; do case $file in *://*) ;; '
               '*) file=file://$file ;; esac; mpc --quiet add "$file"; done; mpc --quiet play', "mpc")


def _mpd_settings(output):
    return "mpd/mpd.conf", f'bind_to_address "{_MPD_SOCKET}"\naudio_output {{\n type "pulse"\n name "pulse"\n{output}}}\n'


KINDS = {
    "audacious": Kind(("audacious", "-H"), "audacious", 3, packages=("audacious", "audacious-plugins")),
    # It wants a terminal, and plays the first file at once.
    "cmus": Kind(("env", "TERM=xterm", "script", "--quiet", "--command", "cmus", "/dev/null"), "cmus", 3,
                 ("cmus/rc", "set output_plugin=pulse\n"), is_asked=True,
                 remote=("sh", "-c", 'cmus-remote --file "$1"; shift; [ $# = 0 ] || cmus-remote --queue "$@"', "cmus")),
    "mpv": Kind(("mpv", "--no-config", "--script=/usr/lib/mpv-mpris/mpris.so", "--ao=pulse", "--no-video",
                 "--input-ipc-server=~/mpv.socket", "--really-quiet"), "mpv", 3, packages=("mpv", "mpv-mpris")),
    # Without the settings it asks servers for album covers, and since 1.2 its user for money. That version loses the
    # files of its command line when it starts for the first time.
    "strawberry": Kind(("strawberry",), "strawberry", 1,
                       ("strawberry/strawberry.conf",
                        "[MainWindow]\nsearch_for_cover_auto=false\ndo_not_show_sponsor_message=true\n"), is_asked=True),
    "vlc": Kind(("cvlc", "-I", "dummy", "--control", "dbus", "--no-video", "--aout", "pulse"), "vlc", 3,
                packages=("vlc-bin", "vlc-plugin-base")),
    # These only for what is run by hand (tools/players, tools/volume-trial): the tests do not install them.
    "celluloid": Kind(("celluloid",), "io.github.celluloid_player.Celluloid.instance-1", 3),
    "clementine": Kind(("clementine",), "clementine", 1),
    "elisa": Kind(("elisa",), "elisa", 3),
    "haruna": Kind(("haruna",), "haruna", 3),
    "lollypop": Kind(("lollypop",), "Lollypop", 3),
    "mpd": Kind(_MPD, "mpd", 3, _mpd_settings(""), is_asked=True, remote=_MPD_REMOTE, packages=("mpd", "mpdris2", "mpc")),
    "mpd-without-mixer": Kind(_MPD, "mpd", 3, _mpd_settings(' mixer_type "none"\n'), is_asked=True, remote=_MPD_REMOTE,
                              packages=("mpd", "mpdris2", "mpc"), has_volume=False),
    "parole": Kind(("parole", "--new-instance"), "parole", 3,
                   ("xfce4/xfconf/xfce-perchannel-xml/parole.xml",
                    '<channel name="parole" version="1.0"><property name="parole" type="empty">'
                    '<property name="plugins" type="string" value="parole-mpris2.so"/></property></channel>')),
    "pragha": Kind(("pragha",), "pragha", 3),
    "quodlibet": Kind(("quodlibet", "--run"), "quodlibet", 3,
                      ("quodlibet/config", "[plugins]\nactive_plugins = mpris\n"), is_asked=True,
                      remote=("sh", "-c", 'quodlibet --play-file="$1"; shift; for file; do quodlibet --enqueue="$file"; done',
                              "quodlibet")),
    "rhythmbox": Kind(("rhythmbox",), "rhythmbox", 3, is_asked=True,
                      remote=("sh", "-c", 'rhythmbox-client --no-start --play-uri="$1"; shift; '
                              '[ $# = 0 ] || rhythmbox-client --no-start --clear-queue --enqueue "$@"', "rhythmbox-client")),
    "sayonara": Kind(("sayonara",), "sayonara", 1),
    "smplayer": Kind(("smplayer",), "smplayer", 3),
    "totem": Kind(("env", "GSETTINGS_BACKEND=keyfile", "totem"), "totem", 3,
                  ("glib-2.0/settings/keyfile", "[org/gnome/totem]\nactive-plugins=['mpris']\n"),
                  packages=("totem", "totem-plugins")),
}


def _address(files):
    """Of a playlist beside the files, or of the stream."""
    if "://" in files[0]:
        return files[0]
    path = Path(files[0]).resolve().with_name("playlist.m3u")
    path.write_text("".join(f"{os.path.abspath(file)}\n" for file in files), encoding="utf-8")
    return path.as_uri()


def missing_packages(name):
    """What of Debian's packages the player needs and the machine lacks."""
    return [package for package in _packages(name) if not _version(package)]


def version(name):
    """Of the installed player, without what Debian adds to it."""
    return re.split("[~+]", _version(_packages(name)[0]))[0]


def _packages(name):
    return KINDS[name].packages or (name,)


def _version(package):
    """Nothing if it is not installed."""
    told = subprocess.run(["dpkg-query", "--show", "--showformat=${db:Status-Status} ${source:Upstream-Version}", package],
                          check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.decode()
    return told.removeprefix("installed ") if told.startswith("installed ") else ""


class Player:
    """A running player that plays the files, controlled over MPRIS as a user's media keys would."""

    def __init__(self, desktop, name, files):
        self._desktop, self._kind, self._files = desktop, KINDS[name], files
        if self._kind.settings:
            desktop.write_setting(*self._kind.settings)
        self._bus_name = "org.mpris.MediaPlayer2." + self._kind.bus_name
        self._remote = Remote(desktop.bus, self._bus_name, _PATH, limit=20)
        self.process = desktop.start("player", [*self._kind.command, *(() if self._kind.is_asked else files)])
        wait_until(f"{name} on the session bus", self._answers, 30)
        self._open()

    def _answers(self):
        if not has_owner(self._desktop.bus, self._bus_name):
            return False
        try:
            return self._remote.get(_PLAYER, "PlaybackStatus")
        except GLib.Error:
            return False  # Sayonara has its name before it can be called

    def _open(self):
        if self._kind.remote:
            self._desktop.run(*self._kind.remote, *self._files)
        elif self._kind.is_asked:
            # It answers when it has started up.
            Remote(self._desktop.bus, self._bus_name, _PATH, limit=30).call(
                _PLAYER, "OpenUri", "(s)", _address(self._files))

    def title(self):
        return self.metadata().get("xesam:title", "")

    def metadata(self):
        return self._remote.get(_PLAYER, "Metadata")

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
        try:
            self.end(signal.SIGTERM)
        except subprocess.TimeoutExpired:
            self.end(signal.SIGKILL)  # Quod Libet, when it has something to save

    def end(self, number):
        """Sends a signal to all of its processes."""
        with contextlib.suppress(ProcessLookupError):
            os.killpg(self.process.pid, number)
        self.process.wait(20)

    def volume(self):
        """0 to 100."""
        return round(100 * self._remote.get(_PLAYER, "Volume"))

    def set_volume(self, volume):
        self._remote.set(_PLAYER, "Volume", "d", volume / 100)

    def decibels(self, volume):
        """How much louder (below 0: quieter) this player's sound is at `volume` than at 100."""
        return 20 * self._kind.exponent * math.log10(volume / 100)
