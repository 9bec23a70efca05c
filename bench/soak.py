#!/usr/bin/python3
"""What tools/soak runs: a long session on a private desktop, a new track every two seconds, with real speech.

Fails if the program's private memory has grown by more than 2 % since the first minute, or if it has other descriptors or
threads than it had then. The minute begins with as many tracks in quick succession as the activity log holds lines: what a
full log takes is not growth.
"""

import os
import statistics
import sys
import time

sys.dont_write_bytecode = True
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tools"))

from desktop.processes import end_orderly, private_memory, rest, wait_until
from desktop.scripted_player import ScriptedPlayer
from desktop.session import PrivateDesktop
from desktop.tray import TrayItem

LOG = 200  # lines, one for each track
QUICK = 0.1  # seconds for a track that is there to fill the log
INTERVAL = 2.0  # seconds for a track: most lines are cut short by the next
ROUND = 10  # tracks; the last one of each round is heard to its end
REST = 12.0  # seconds after which idle threads have left; the connection to the speech daemon stays for longer
QUIET = 0.3  # seconds between two looks
MOST_GROWTH = 0.02


class Soak:

    def __init__(self, desktop, program):
        process = desktop.start("sonvara", [program], {"PULSE_SINK": "speech"})
        self._pid = process.pid
        self._player = ScriptedPlayer(desktop)
        self._tray = TrayItem(desktop, process.pid)
        self._number = 0
        self._begin = time.monotonic()

    def run(self, minutes):
        for _ in range(LOG):
            self._play_next(QUICK)
        self._rounds_until(60)
        first = self._measure()
        self._rounds_until(60 * minutes)
        last = self._measure()
        growth = last[0] / first[0] - 1
        print(f"{self._number} tracks; private memory {growth:+.1%}", flush=True)
        return growth <= MOST_GROWTH and last[1:] == first[1:]

    def _rounds_until(self, seconds):
        while time.monotonic() < self._begin + seconds:
            self._play_round()

    def _play_round(self):
        for _ in range(ROUND):
            self._play_next(INTERVAL)
        wait_until("the end of the last line", lambda: self._player.volume() == 100, 20)

    def _play_next(self, seconds):
        self._number += 1
        title = f"Song Number {self._number}"
        self._player.play(title, f"Artist {self._number % 7}")
        wait_until("the line", lambda: title in self._tray.chat())
        rest(seconds)

    def _measure(self):
        """KiB of private memory, descriptors, threads: at rest, the median of a few looks."""
        rest(REST)
        looks = []
        for _ in range(5):
            rest(QUIET)
            looks.append((private_memory(self._pid), *(len(os.listdir(f"/proc/{self._pid}/{name}")) for name in ("fd", "task"))))
        found = tuple(round(statistics.median(each)) for each in zip(*looks))
        minutes = (time.monotonic() - self._begin) / 60
        print(f"{minutes:5.1f} min  {found[0]} KiB private, {found[1]} descriptors, {found[2]} threads", flush=True)
        return found


def main(minutes="10", program=None):
    end_orderly()
    with PrivateDesktop() as desktop:
        soak = Soak(desktop, os.path.abspath(program or os.path.join(ROOT, "build", "release", "sonvara")))
        return 0 if soak.run(float(minutes)) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
