"""What the whole-program tests share: Sonvara on a private desktop, with a real player and a recorder.

ctest names the program in SONVARA_PROGRAM; a test run by hand takes the one of ./test.
"""

import os
import sys

sys.dont_write_bytecode = True
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tools"))

from desktop.accessibility import Accessibility
from desktop.players import Player
from desktop.processes import end_orderly, wait_until
from desktop.screen import Screen
from desktop.session import PrivateDesktop
from desktop.sound import SPEECH, Recorder
from desktop.standin import StandIn
from desktop.tracks import make_tracks
from desktop.tray import TrayItem

PROGRAM = os.environ.get("SONVARA_PROGRAM", os.path.join(ROOT, "build", "test", "sonvara"))
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
            self.program = self.desktop.start("sonvara", self._command(), {
                "PULSE_SINK": "speech", "QT_LOGGING_RULES": "sonvara.*.debug=true"})
            self.tray = TrayItem(self.desktop, self.program.pid)
            self.recorder = Recorder(self.desktop)
        except BaseException:
            self.desktop.__exit__(*sys.exc_info())
            raise
        return self

    def __exit__(self, *error):
        if error[0]:
            print(self.desktop.log("sonvara"), file=sys.stderr)
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
