"""A complete private desktop without a screen or a sound card, with nothing of the user's own in it.

Xvfb with xfwm4 and xfce4-panel (the tray host), a session bus with accessibility switched on, a sound
server with a sink for the player and one for the voice, and speech-dispatcher with espeak-ng, or as tools/voice has it.
"""

import os
import shutil
import subprocess
import sys
import tempfile

from gi.repository import GLib

from desktop import soundserver
from desktop.dbus import Remote, connect, has_owner
from desktop.processes import Processes, Timeout, undisturbed, wait_until

_HERE = os.path.dirname(os.path.abspath(__file__))


class PrivateSession:
    """A session bus and a sound server in a folder of their own, and programs that know nothing else.

    Use it as a context manager: what was started in it is stopped at the end, and its folder removed.
    """

    def __init__(self, keep=False):
        self._keep = keep

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="sonvara-desktop.")
        self.processes = Processes(self._make_folder("log"))
        self.env = self._private_environment()
        try:
            self._start_parts()
        except BaseException:
            self._close()
            raise
        return self

    def _start_parts(self):
        self._start_bus()
        self.sound = soundserver.start(self)
        self._choose_voice()

    def _choose_voice(self):
        """Before a speech daemon starts."""
        soundserver.write_speech_settings(self)

    def __exit__(self, kind, error, trace):
        if isinstance(error, Timeout):
            self._tell_logs()
        self._close()

    def _close(self):
        with undisturbed():
            self.processes.stop_all()
            if self._keep:
                print(f"kept: {self.folder}", flush=True)
            else:
                shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, name, arguments, extra_env=None, **options):
        return self.processes.start(name, arguments, {**self.env, **(extra_env or {})}, **options)

    def run(self, *arguments, **options):
        """Runs a command in the desktop to its end and returns what it printed."""
        done = subprocess.run(arguments, env=self.env, stdin=subprocess.DEVNULL, check=True, timeout=30,
                              stdout=subprocess.PIPE, **options)
        return done.stdout.decode()

    def log(self, name):
        """The end of what a process that was started under this name has printed."""
        with open(self.processes.log_path(name), encoding="utf-8", errors="replace") as log:
            return log.read()[-4000:]

    def _tell_logs(self):
        for name in self.processes.logs():
            print(f"--- the end of the log of {name}", *self.log(name).splitlines()[-10:], sep="\n",
                  file=sys.stderr, flush=True)

    def write_setting(self, name, text):
        """Writes a file below the desktop's own ~/.config."""
        return self._write(text, "home", ".config", *name.split("/"))

    def write_home(self, name, text):
        """Writes a file below the desktop's own home folder, and returns its path."""
        return self._write(text, "home", *name.split("/"))

    def _make_folder(self, *path):
        folder = os.path.join(self.folder, *path)
        os.makedirs(folder, mode=0o700, exist_ok=True)
        return folder

    def _write(self, text, *path):
        self._make_folder(*path[:-1])
        name = os.path.join(self.folder, *path)
        with open(name, "w", encoding="utf-8") as file:
            file.write(text)
        return name

    def _private_environment(self):
        env = {name: os.environ[name] for name in ("PATH", "USER", "LOGNAME", "TERM") if name in os.environ}
        env.update(
            LANG="C.UTF-8",
            HOME=self._make_folder("home"),
            TMPDIR=self._make_folder("tmp"),
            XDG_RUNTIME_DIR=self._make_folder("run"),
            XDG_CURRENT_DESKTOP="XFCE",
            XDG_SESSION_TYPE="x11",
            # GTK programs keep their settings in memory, and nothing is mounted into the folder.
            GSETTINGS_BACKEND="memory",
            GIO_USE_VFS="local",
            GVFS_DISABLE_FUSE="1",
        )
        for name, folder in (("CONFIG", ".config"), ("CACHE", ".cache"), ("DATA", ".local/share"),
                             ("STATE", ".local/state")):
            env[f"XDG_{name}_HOME"] = self._make_folder("home", folder)
        return env

    def _start_bus(self):
        address = f"unix:path={self.env['XDG_RUNTIME_DIR']}/bus"
        self.env["DBUS_SESSION_BUS_ADDRESS"] = address
        self.start("bus", ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address])
        self.bus = wait_until("the session bus", self._try_connect)

    def _try_connect(self):
        try:
            return connect(self.env["DBUS_SESSION_BUS_ADDRESS"])
        except GLib.Error:
            return None


class PrivateDesktop(PrivateSession):
    """The session with everything else that a desktop has."""

    def __init__(self, keep=False, tray="xfce4-panel", has_natural_voice=False):
        """`tray`: what start_tray() starts at once; None leaves the desktop without a tray.

        `has_natural_voice`: Sonvara's lines are spoken as with tools/voice.
        """
        super().__init__(keep)
        self._tray = tray
        self._has_natural_voice = has_natural_voice

    def _start_parts(self):
        self._start_display()
        super()._start_parts()
        Remote(self.bus, "org.a11y.Bus", "/org/a11y/bus", limit=20.0).set(
            "org.a11y.Status", "IsEnabled", "b", True)
        self._start_speech()
        self.start("window-manager", ["xfwm4", "--compositor=off"])
        if self._tray:
            self.start_tray(self._tray)

    def _start_display(self):
        read_end, write_end = os.pipe()
        self.start("display", ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24",
                               "-wr", "-nolisten", "tcp"], pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as answer:  # it ends when Xvfb does
            number = answer.readline().strip()
        if not number:
            raise Timeout("the display did not start: " + self.log("display"))
        self.env["DISPLAY"] = ":" + number

    def _choose_voice(self):
        if self._has_natural_voice:
            self.run(os.path.join(os.path.dirname(_HERE), "voice"))
        super()._choose_voice()

    def _start_speech(self):
        socket = os.path.join(self._make_folder("run", "speech-dispatcher"), "speechd.sock")
        self.start("speech", ["speech-dispatcher", "--run-single", "--communication-method", "unix_socket",
                              "--socket-path", socket, "--timeout", "0"],
                   {"PULSE_SINK": "speech", "PIPEWIRE_NODE": "speech"})
        wait_until("the speech daemon", lambda: os.path.exists(socket))

    def start_tray(self, kind):
        """Starts xfce4-panel, a host of StatusNotifier items, or trayer, which has room for X windows only."""
        if kind == "trayer":
            return self.start("panel", ["trayer", "--edge", "top", "--align", "right", "--widthtype", "request",
                                        "--height", "30", "--SetDockType", "true"])
        settings = self._make_folder("home", ".config", "xfce4", "xfconf", "xfce-perchannel-xml")
        shutil.copy(os.path.join(_HERE, "xfce4-panel.xml"), settings)
        panel = self.start("panel", ["xfce4-panel", "--disable-wm-check"])
        wait_until("the tray host", lambda: has_owner(self.bus, "org.kde.StatusNotifierWatcher"), 30)
        return panel
