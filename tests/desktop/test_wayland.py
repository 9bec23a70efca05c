#!/usr/bin/python3
"""The program's face on a Wayland desktop: sway without a screen, whose own bar is the tray host."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from scenario import PROGRAM
from desktop.dbus import connect, has_owner
from desktop.processes import Processes, wait_until
from desktop.tray import TrayItem


class Wayland(unittest.TestCase):
    """Is the desktop of its own helpers, such as TrayItem: has a bus, and starts programs."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="sonvara-wayland.")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.processes = Processes(self.folder)
        self.addCleanup(self.processes.stop_all)
        self.env = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": self.folder, "XDG_RUNTIME_DIR": self.folder,
            "XDG_CONFIG_HOME": self.folder, "XDG_STATE_HOME": self.folder, "XDG_SESSION_TYPE": "wayland",
            "GSETTINGS_BACKEND": "memory", "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman", "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folder}/bus"}
        self.start_bus()
        self.start_sway()

    def start(self, name, *arguments):
        return self.processes.start(name, arguments, self.env)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def start_bus(self):
        address = self.env["DBUS_SESSION_BUS_ADDRESS"]
        self.start("bus", "dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + address)
        wait_until("the bus", lambda: os.path.exists(self.folder + "/bus"))
        self.bus = connect(address)

    def start_sway(self):
        settings = self.write("sway.conf", "output * resolution 1280x800\nbar bar-0 {\n swaybar_command true\n}\n")
        sway = self.start("sway", "sway", "-c", settings)
        socket = os.path.join(self.folder, f"sway-ipc.{os.getuid()}.{sway.pid}.sock")
        wait_until("sway", lambda: os.path.exists(socket), 20)
        self.env.update(SWAYSOCK=socket, WAYLAND_DISPLAY="wayland-1", QT_QPA_PLATFORM="wayland")
        self.start("bar", "swaybar", "--bar_id", "bar-0")
        wait_until("the tray host", lambda: has_owner(self.bus, "org.kde.StatusNotifierWatcher"), 30)

    def windows(self):
        """Title and size of each window."""
        tree = json.loads(subprocess.run(["swaymsg", "-t", "get_tree", "-r"], env=self.env, check=True, timeout=10,
                                         stdout=subprocess.PIPE).stdout)
        found, waiting = {}, [tree]
        while waiting:
            node = waiting.pop()
            waiting += node.get("nodes", []) + node.get("floating_nodes", [])
            if node.get("app_id"):
                found[node["name"]] = (node["app_id"], node["geometry"]["width"], node["geometry"]["height"])
        return found

    def test_tray_and_settings(self):
        program = self.start("sonvara", PROGRAM)
        tray = TrayItem(self, program.pid)
        self.assertEqual(tray.now_playing(), "No music playing")
        tray.choose("Settings")
        wait_until("the settings", lambda: "Sonvara Settings" in self.windows())
        application, width, height = self.windows()["Sonvara Settings"]
        self.assertEqual((application, width, height), ("app.sonvara.Sonvara", 420, 420))
        tray.choose("Mute DJ")
        wait_until("the check mark", lambda: [item for item in tray.menu() if item.is_checked])
        tray.choose("Quit")
        self.assertEqual(program.wait(10), 0)


if __name__ == "__main__":
    if os.getuid() == 0:  # sway refuses the superuser
        os.execvp("unshare", ["unshare", "--user", "--map-user=1000", "--map-group=1000", sys.executable, *sys.argv])
    unittest.main(verbosity=2)
