"""What the whole-program tests share: Sonvara on a private desktop, with a real player and a recorder.

ctest names the program in SONVARA_PROGRAM; a test run by hand takes the release build.
"""

import os
import sys

sys.dont_write_bytecode = True
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "tools"))

from desktop.players import Player
from desktop.processes import end_orderly
from desktop.session import PrivateDesktop
from desktop.sound import SPEECH, Recorder
from desktop.tracks import make_tracks
from desktop.tray import TrayItem

PROGRAM = os.environ.get("SONVARA_PROGRAM", os.path.join(ROOT, "build", "release", "sonvara"))
end_orderly()


class Scenario:
    """A context in which the program runs and, after play(), a player plays."""

    def __init__(self):
        self.desktop = PrivateDesktop()
        self.player = None

    def __enter__(self):
        self.desktop.__enter__()
        try:
            self.program = self.desktop.start("sonvara", [PROGRAM], {"PULSE_SINK": "speech"})
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

    def play(self, player, tracks):
        files = make_tracks(tracks, os.path.join(self.desktop.folder, "tracks"))
        self.player = Player(self.desktop, player, files)

    def speak_alone(self, line):
        """Has the speech daemon say a line without the program; returns the span in the recording."""
        self.desktop.run("spd-say", "--wait", line)
        self.recorder.next_silence(SPEECH, limit=10)
        return self.recorder.sounds(SPEECH)[-1]
