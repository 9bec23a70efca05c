#!/usr/bin/python3
"""test_players.py PLAYER: a playlist of three tracks in one real player, judged by what was heard."""

import os
import sys
import unittest

from scenario import LOWERED, VOLUME, Scenario
from desktop.sound import MUSIC, SPEECH, STEP
from desktop.tracks import Track

TRACKS = (
    Track("Café Señorita", "Björk & Sigur Rós", "Ænima", 440, 12),
    Track("Snake_Case & Don't Stop", "Queen", "Hits", 660, 12, "ogg"),
    Track("Radio Ga Ga", "Queen", "Hits", 880, 6),  # straight on through the album: not announced
)


class Playlist(unittest.TestCase):
    name = None

    def test_each_new_album_is_announced_over_lowered_music(self):
        with Scenario() as scenario:
            scenario.play(self.name, TRACKS)
            self.recorder = scenario.recorder
            self.player = scenario.player
            self.recorder.next_sound(MUSIC, limit=20)
            self.recorder.next_silence(MUSIC, limit=60, length=2.0)

            lines = self.recorder.sounds(SPEECH)
            heard = [self._track_at((line.start + line.end) / 2) for line in lines]
            self.assertEqual(heard, [0, 1], "each announced track has one line, the third track has none")
            end = self.recorder.sounds(MUSIC)[-1].end
            self.assertEqual(self._track_at(end - 2), 2)
            for line in lines:
                self._expect_duck(line, undisturbed=self.recorder.level_between(MUSIC, end - 3, end - 1))
            self.assertIn(TRACKS[1].title, scenario.tray.chat())

    def _expect_duck(self, line, undisturbed):
        level = self.recorder.level_between
        expected = undisturbed + self.player.decibels(LOWERED) - self.player.decibels(VOLUME)
        course = self._course(line)
        self.assertAlmostEqual(level(MUSIC, line.start, line.end), expected, delta=1.0, msg=course)
        # From shortly after the first word to the last one, nothing was louder.
        loudest = max(self.recorder.levels(MUSIC)[round((line.start + 0.5) / STEP):round(line.end / STEP)])
        self.assertLess(loudest, expected + 3, msg=course)
        self.assertAlmostEqual(level(MUSIC, line.end + 1.5, line.end + 2.5), undisturbed, delta=1.0, msg=course)

    def _course(self, line):
        level = self.recorder.level_between
        times = (line.start + step / 2 for step in range(-4, round(2 * line.seconds) + 6))
        levels = " ".join(f"{level(MUSIC, time, time + 0.5):.0f}" for time in times if time > 0)
        return f"the line from {line.start:.1f} to {line.end:.1f} s; the music from 2 s before, each half second: {levels}"

    def _track_at(self, time):
        pitch = self.recorder.pitch_between(time, time + 1)
        return min(range(len(TRACKS)), key=lambda index: abs(TRACKS[index].pitch - pitch))


if __name__ == "__main__":
    Playlist.name = sys.argv.pop(1)
    if Playlist.name == "vlc" and os.getuid() == 0:
        # It refuses to run as root; all that talks to it over the session bus must be the same user.
        os.execvp("unshare", ["unshare", "--user", "--map-user=1000", "--map-group=1000",
                              sys.executable, __file__, "vlc", *sys.argv[1:]])
    unittest.main(verbosity=2)
