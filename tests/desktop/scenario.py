"""What the whole-program tests share: Sonvara on a private desktop, with a player.

`Scenario` has a real player and a recorder, and a desktop of its own. `Trial` is for what fails: a scripted player can be
killed, hung and made to say anything, and tells to what its volume was set; the tests of a class share a desktop.

ctest names the program in SONVARA_PROGRAM; a test run by hand takes the one of ./test.
"""

import os
import shutil
import subprocess
import sys
import unittest

sys.dont_write_bytecode = True
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tools"))

from desktop.accessibility import Accessibility
from desktop.players import Player
from desktop.processes import end_orderly, wait_until
from desktop.program import Sonvara
from desktop.screen import Screen
from desktop.scripted_player import ScriptedPlayer
from desktop.session import PrivateDesktop
from desktop.sound import SPEECH, Recorder
from desktop.standin import ALONE, StandIn
from desktop.tracks import make_tracks

PROGRAM = os.environ.get("SONVARA_PROGRAM", os.path.join(ROOT, "build", "test", "sonvara"))
VOLUME, LOWERED = 100, 35
LONG = "A Title That Takes the Voice Quite a While to Read Aloud, and Then Goes On for a While Longer"
end_orderly()


class Scenario:
    """A context in which the program runs and, after play(), a player plays."""

    def __init__(self, tool=None, settings=None):
        """`tool`: name and shell script of a stand-in for an AI tool; `settings`: the settings file's text."""
        self.desktop = PrivateDesktop()
        self.player = None
        self._tool, self._settings = tool, settings

    def __enter__(self):
        self.desktop.__enter__()
        try:
            if self._settings:
                self.desktop.write_setting("sonvara/sonvara.conf", self._settings)
            self.program = Sonvara(self.desktop, self._command())
            self.tray = self.program.tray()
            self.recorder = Recorder(self.desktop)
        except BaseException:
            self.desktop.__exit__(*sys.exc_info())
            raise
        return self

    def __exit__(self, *error):
        if error[0]:
            print(self.program.log(), file=sys.stderr)
        self.desktop.__exit__(*error)

    def _command(self):
        if not self._tool:
            return [PROGRAM]
        command = StandIn(self.desktop.folder, *self._tool).command(PROGRAM)
        if not command:
            raise RuntimeError("a stand-in for an AI tool needs unshare and mount, which this machine does not permit")
        return command

    def copied_log(self):
        """The activity log, as a user copies it from its window."""
        windows = Accessibility(self.desktop, self.program.pid)
        self.tray.choose("Settings")
        windows.find("push button", "View log").press()
        windows.find("push button", "Copy").press()
        return wait_until("the copied log", Screen(self.desktop).clipboard)

    def play(self, player, tracks):
        files = make_tracks(tracks, os.path.join(self.desktop.folder, "tracks"))
        self.player = Player(self.desktop, player, files)

    def speak_alone(self, line):
        """Has the speech daemon say a line without the program; returns the span in the recording."""
        self.desktop.run("spd-say", "--wait", line)
        self.recorder.next_silence(SPEECH, limit=10)
        return self.recorder.sounds(SPEECH)[-1]


class Trial(unittest.TestCase):

    kind_of_desktop = PrivateDesktop

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(cls.kind_of_desktop())

    def run(self, result=None):
        """The program's log stands before the failure."""
        def failures():
            return len(result.failures) + len(result.errors)
        before = failures()
        super().run(result)
        if failures() > before and self.program:
            print(self.program.log(), file=sys.stderr)

    def setUp(self):
        self.notes = os.path.join(self.desktop.env["XDG_STATE_HOME"], "sonvara", "lowered-players")
        for variable in ("XDG_STATE_HOME", "XDG_CONFIG_HOME"):
            shutil.rmtree(os.path.join(self.desktop.env[variable], "sonvara"), ignore_errors=True)
        self.program = None
        self.player = self.start_player()

    def tearDown(self):
        self.kill()
        self.player.kill()

    def start_player(self, volume=VOLUME):
        return ScriptedPlayer(self.desktop, volume)

    def start(self, command=(PROGRAM,), **env):
        self.kill()
        self.program = Sonvara(self.desktop, command, **env)

    def start_quickly(self):
        """The same, without a screen and so without a menu."""
        self.start(QT_QPA_PLATFORM="offscreen")

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

    def speak_with_lowered_player(self, title=LONG):
        self.player.play(title)
        self.player.wait_for_volume(LOWERED)

    def kill(self):
        if self.program:
            self.program.kill()

    def end(self):
        self.assertEqual(self.program.end(), 0)


class KillingTrial(Trial):
    """For tests that end the program in the middle of a line: the daemon says it to its end, and the next one's would wait."""

    def tearDown(self):
        super().tearDown()
        self.desktop.run("spd-say", "--cancel")
