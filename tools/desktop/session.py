"""A complete private desktop without a screen or a sound card, with nothing of the user's own in it.

Xvfb with xfwm4 and xfce4-panel (the tray host), a session bus with accessibility switched on, PulseAudio with a
sink for the player ("music") and one for the voice ("speech"), and speech-dispatcher with espeak-ng.
"""

import os
import shutil
import subprocess
import tempfile

from gi.repository import GLib

from desktop.dbus import Remote, connect, has_owner
from desktop.processes import Processes, Timeout, undisturbed, wait_until

_HERE = os.path.dirname(os.path.abspath(__file__))

# Both sinks are parts of one null sink, so that one recording holds both on one clock.
_SOUND = """
load-module module-native-protocol-unix
load-module module-null-sink sink_name=both rate=44100 channels=4 channel_map=front-left,front-right,rear-left,rear-right
load-module module-remap-sink sink_name=music master=both channels=2 channel_map=front-left,front-right \
master_channel_map=front-left,front-right remix=no
load-module module-remap-sink sink_name=speech master=both channels=2 channel_map=front-left,front-right \
master_channel_map=rear-left,rear-right remix=no
set-default-sink music
"""


class PrivateDesktop:
    """Use it as a context manager: what was started in it is stopped at the end, and its folder removed."""

    def __init__(self, keep=False, tray="xfce4-panel"):
        """`tray`: what start_tray() starts at once; None leaves the desktop without a tray."""
        self._keep, self._tray = keep, tray

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="sonvara-desktop.")
        self.processes = Processes(self._make_folder("log"))
        self.env = self._private_environment()
        try:
            self._start_display()
            self._start_bus()
            self._start_sound()
            self._start_speech()
            self.start("window-manager", ["xfwm4", "--compositor=off"])
            if self._tray:
                self.start_tray(self._tray)
        except BaseException:
            self._close()
            raise
        return self

    def __exit__(self, kind, error, trace):
        self._keep = self._keep or isinstance(error, Timeout)
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

    def write_setting(self, name, text):
        """Writes a file below the desktop's own ~/.config."""
        return self._write(text, "home", ".config", *name.split("/"))

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

    def _start_bus(self):
        address = f"unix:path={self.env['XDG_RUNTIME_DIR']}/bus"
        self.env["DBUS_SESSION_BUS_ADDRESS"] = address
        self.start("bus", ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address])
        self.bus = wait_until("the session bus", self._try_connect)
        Remote(self.bus, "org.a11y.Bus", "/org/a11y/bus", limit=20.0).set(
            "org.a11y.Status", "IsEnabled", "b", True)

    def _try_connect(self):
        try:
            return connect(self.env["DBUS_SESSION_BUS_ADDRESS"])
        except GLib.Error:
            return None

    def _start_sound(self):
        self.write_setting("pulse/daemon.conf", "flat-volumes = no\n")
        script = self._write(_SOUND, "sound.pa")
        self.start("sound", ["pulseaudio", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                             "-n", "-F", script])
        self.env["PULSE_SERVER"] = f"unix:{self.env['XDG_RUNTIME_DIR']}/pulse/native"
        wait_until("the sound server", lambda: subprocess.run(
            ["pactl", "info"], env=self.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0)

    def _start_speech(self):
        socket = os.path.join(self._make_folder("run", "speech-dispatcher"), "speechd.sock")
        self.start("speech", ["speech-dispatcher", "--run-single", "--communication-method", "unix_socket",
                              "--socket-path", socket, "--timeout", "0"], {"PULSE_SINK": "speech"})
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
