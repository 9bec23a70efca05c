#!/usr/bin/python3
"""How deep and how long the music is lowered for a line, judged by what was heard."""

import time
import unittest
from dataclasses import dataclass

from scenario import Scenario
from desktop.processes import wait_until
from desktop.sound import MUSIC, SPEECH, STEP
from desktop.tracks import Track

TRACKS = [Track(f"Song {number}", f"Artist {number}", f"Album {number}", 300 + 100 * number, 60) for number in range(3)]
VOLUME, LOWERED = 100, 35
LIMIT = 0.2  # seconds
ATTEMPTS = 3  # a busy machine is late now and then, a slow program every time


@dataclass(frozen=True)
class Course:
    depth: float  # decibels
    lowered: float  # seconds from the first sound of the line to the last one of loud music
    back: float  # seconds from the report of the line's end to loud music
    paused: float  # seconds from a pause to the user's volume

    def __str__(self):
        return (f"{self.depth:.1f} dB; lowered {self.lowered:.2f} s after the line's begin, back {self.back:.2f} s after its end "
                f"and {self.paused:.2f} s after a pause")


class Duck(unittest.TestCase):

    def test_begins_and_ends_with_the_line(self):
        for _ in range(ATTEMPTS):
            with Scenario() as scenario:
                course, deep = self._measure(scenario)
            print(course, flush=True)
            self.assertAlmostEqual(course.depth, deep, delta=0.5)
            if max(course.lowered, course.back, course.paused) < LIMIT:
                break
        self.assertLess(course.lowered, LIMIT)
        self.assertLess(course.back, LIMIT)
        self.assertLess(course.paused, LIMIT)

    def _measure(self, scenario):
        """The course of the second line, over music that is well under way, and how deep it is to be."""
        recorder = scenario.recorder
        scenario.play("audacious", TRACKS)
        self._hear_line(recorder)
        scenario.player.call("Next")
        line = self._hear_line(recorder)
        recorder.next_silence(SPEECH, 10, 2.5)  # music alone
        loud = recorder.level_between(MUSIC, line.end + 1.5, line.end + 2.5)
        low = recorder.level_between(MUSIC, line.start + LIMIT, line.end)
        middle = (loud + low) / 2
        levels = recorder.levels(MUSIC)
        lowered = max((index * STEP for index in range(round(line.start / STEP), round(line.end / STEP))
                       if levels[index] > middle), default=line.start)
        back = next(index for index in range(round(line.end / STEP), len(levels)) if levels[index] > middle) * STEP
        course = Course(low - loud, lowered - line.start, back - line.end - self._report(scenario), self._pause(scenario))
        return course, scenario.player.decibels(LOWERED) - scenario.player.decibels(VOLUME)

    def _hear_line(self, recorder):
        recorder.next_sound(SPEECH, limit=30)
        recorder.next_silence(SPEECH, limit=30)
        return recorder.sounds(SPEECH)[-1]

    def _report(self, scenario):
        """How long after its last sound the speech daemon reports the end of such a line: what the program goes by."""
        recorder = scenario.recorder
        scenario.desktop.run("spd-say", "--wait", scenario.tray.chat())
        reported = recorder.seconds()
        recorder.next_silence(SPEECH, limit=10)
        return reported - recorder.sounds(SPEECH)[-1].end

    def _pause(self, scenario):
        recorder, player = scenario.recorder, scenario.player
        player.call("Next")
        recorder.next_sound(SPEECH, limit=30)
        self.assertEqual(player.volume(), LOWERED)
        begin = time.monotonic()
        player.call("Pause")
        wait_until("the user's volume", lambda: player.volume() == VOLUME, pause=0.005)
        return time.monotonic() - begin


if __name__ == "__main__":
    unittest.main(verbosity=2)
