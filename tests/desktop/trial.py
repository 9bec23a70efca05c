"""What the tests of faults share: one private desktop for a file of them, a scripted player and the program for each.

A scripted player can be killed, hung and made to say anything, and tells to what its volume was set.
"""

import os
import shutil
import signal
import subprocess
import sys
import threading
import unittest

from scenario import PROGRAM
from desktop.processes import wait_until
from desktop.scripted_player import ScriptedPlayer
from desktop.session import PrivateDesktop
from desktop.standin import ALONE
from desktop.tray import TrayItem

VOLUME, LOWERED = 100, 35
LONG = "A Title That Takes the Voice Quite a While to Read Aloud, and Then Goes On for a While Longer"


class Trial(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.desktop = PrivateDesktop()
        cls.desktop.__enter__()
        cls.addClassCleanup(cls.desktop.__exit__, None, None, None)

    def setUp(self):
        self.notes = os.path.join(self.desktop.env["XDG_STATE_HOME"], "sonvara", "lowered-players")
        for variable in ("XDG_STATE_HOME", "XDG_CONFIG_HOME"):
            shutil.rmtree(os.path.join(self.desktop.env[variable], "sonvara"), ignore_errors=True)
        self.program = None
        self._log = bytearray()
        self.player = self.start_player()

    def tearDown(self):
        self.kill()
        self.player.kill()
        error = self._outcome.result.failures + self._outcome.result.errors
        if error and error[-1][0] is self:
            print(self.log(), file=sys.stderr)

    def start_player(self, volume=VOLUME):
        return ScriptedPlayer(self.desktop, volume)

    def start(self, command=(PROGRAM,), **env):
        """Starts the program, which tells everything that it does in its log."""
        self.kill()
        # On a terminal, else a machine's journal would have the log. What is heard is the end of the terminal.
        terminal, end = os.openpty()
        self.program = self.desktop.start("sonvara", list(command), {
            "QT_LOGGING_RULES": "sonvara.Speech.debug=true;sonvara.MusicMonitor.debug=true", "PULSE_SINK": "speech",
            **env}, stdout=end, stderr=end)
        os.close(end)
        self._log = bytearray()
        threading.Thread(target=_read_all, args=(terminal, self._log), daemon=True).start()

    def with_mounts(self, script, *arguments, **env):
        """A command that mounts what the shell script says, out of all others' sight, and starts the program.

        The script is to end with exec "$@"; its $0 is the first one of `arguments`.
        """
        for alone in ALONE:
            command = (*alone, "sh", "-c", script, *arguments)
            if subprocess.run([*command, "true"], env={**self.desktop.env, **env}, stderr=subprocess.DEVNULL,
                              check=False).returncode == 0:
                return (*command, PROGRAM)
        self.skipTest("this machine permits no private mount (unshare)")

    def start_quickly(self):
        """The same, without a screen and so without a menu."""
        self.start(QT_QPA_PLATFORM="offscreen")

    def tray(self):
        return TrayItem(self.desktop, self.program.pid)

    def log(self):
        return self._log.decode(errors="replace")

    def announced(self, title):
        """How many lines about the title were handed to the voice."""
        return sum("Announcing: " in line and title in line for line in self.log().splitlines())

    def wait_for_line(self, title, limit=10.0):
        wait_until("the line about " + title[:50], lambda: self.announced(title), limit)

    def wait_for_look(self):
        """Until the program has looked at the player once more, as it does every three seconds."""
        def looks():
            return self.log().count("Now playing via")
        before = looks()
        wait_until("a look at the player", lambda: looks() > before)

    def kill(self):
        if self.program and self.program.poll() is None:
            self.program.send_signal(signal.SIGKILL)
            self.program.wait()

    def end(self, limit=2.0):
        """Asks the program to end, once it has begun; it must do so in time and in good order."""
        wait_until("the program's beginning", lambda: "monitoring started" in self.log())
        self.program.terminate()
        self.assertEqual(self.program.wait(limit), 0)

    def speak_with_lowered_player(self, title=LONG):
        self.player.play(title)
        self.player.wait_for_volume(LOWERED)


def _read_all(terminal, log):
    try:
        while data := os.read(terminal, 65536):
            log += data
    except OSError:
        pass  # all who could write have ended
    os.close(terminal)
