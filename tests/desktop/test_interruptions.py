#!/usr/bin/python3
"""What a pause and a burst of skips do to the voice, judged by what was heard."""

import time
import unittest

from scenario import Scenario
from desktop.processes import wait_until
from desktop.sound import AUDIBLE, MUSIC, SPEECH, STEP, likeness
from desktop.tracks import Track

LONG_LINE = Track("A Title That Takes the Voice Quite a While to Read Aloud", "An Orchestra of Many Names",
                  "The Collected Recordings", 440, 25)


class Interruptions(unittest.TestCase):

    def test_pause_silences_the_voice_within_half_a_second_and_resume_does_not_repeat_the_line(self):
        for player in ("audacious", "mpv"):
            with self.subTest(player):
                delays = []
                # A busy machine is late now and then, a slow program every time.
                while not delays or (delays[-1] >= 0.5 and len(delays) < 3):
                    with Scenario() as scenario:
                        scenario.play(player, [LONG_LINE])
                        delays.append(self._pause_and_resume(scenario))
                    print(f"{player}: silent after {delays[-1]:.2f} s", flush=True)
                self.assertLess(delays[-1], 0.5)

    def _pause_and_resume(self, scenario):
        """How long after the pause the voice was silent, in seconds."""
        recorder = scenario.recorder
        recorder.next_sound(SPEECH, limit=30)
        scenario.player.call("Pause")
        recorder.next_silence(SPEECH, limit=10)
        recorder.next_silence(MUSIC, limit=10)

        # The pause is heard as the end of the music.
        paused = recorder.sounds(MUSIC)[-1].end
        voice = recorder.sounds(SPEECH)
        self.assertEqual(len(voice), 1)
        wait_until("the volume", lambda: scenario.player.volume() == 100)

        scenario.player.call("Play")
        resumed = recorder.next_sound(MUSIC, limit=10)
        # Longer than two of the program's looks at the player, and than any line takes to begin.
        wait_until("seven seconds of music", lambda: recorder.seconds() > resumed + 7, 10)
        self.assertEqual(recorder.sounds(SPEECH), voice, "no line after a resume")
        self.assertFalse(recorder.is_audible(SPEECH))

        whole = scenario.speak_alone(scenario.tray.chat())
        self.assertLess(voice[0].seconds, whole.seconds - 1, "the pause came before the end of the line")
        return voice[0].end - paused

    def test_of_ten_quick_skips_only_the_last_line_is_heard_whole(self):
        tracks = [Track(f"Song Number {number}", f"Artist {number}", f"Album {number}", 300 + 30 * number, 30)
                  for number in range(11)]
        alike = []
        # A busy machine leaves gaps now and then, a slow program every time.
        while not alike or (alike[-1] <= 0.8 and len(alike) < 3):
            with Scenario() as scenario:
                scenario.play("audacious", tracks)
                before, last, whole = self._skip_to_the_last(scenario, tracks)
            alike.append(likeness(last, whole))
            print(f"alike: {alike[-1]:.2f}", flush=True)
            self.assertLess(audible(before) * STEP, 2.5, "the two seconds of skipping left no time for a whole line")
        # Two lines at once would sound like neither.
        self.assertGreater(alike[-1], 0.8)

    def _skip_to_the_last(self, scenario, tracks):
        """The voice from the first skip on, before the last line and with it, and that line alone."""
        recorder = scenario.recorder
        recorder.next_sound(SPEECH, limit=30)
        recorder.next_silence(SPEECH, limit=30)
        first = recorder.sounds(SPEECH)

        begin = time.monotonic()
        for number in range(1, 11):
            scenario.player.call("Next")
            wait_until("the next skip", lambda: time.monotonic() >= begin + 0.2 * number)
        self.assertEqual(scenario.player.title(), tracks[-1].title)
        wait_until("the last line", lambda: tracks[-1].title in scenario.tray.chat(), 10)
        skipped = recorder.seconds()
        wait_until("its sound", lambda: recorder.sounds(SPEECH)[-1].end > skipped + 0.5, 15)
        recorder.next_silence(SPEECH, limit=30, length=3.0)

        heard = recorder.levels(SPEECH)[round(first[-1].end / STEP):]
        alone = scenario.speak_alone(scenario.tray.chat())
        whole = recorder.levels(SPEECH)[round(alone.start / STEP):round(alone.end / STEP)]
        return *self._parted(heard, audible(whole)), whole

    def _parted(self, levels, count):
        """The levels before the last `count` audible ones, and from there on."""
        index = [index for index, level in enumerate(levels) if level > AUDIBLE][-count]
        return levels[:index], levels[index:]


def audible(levels):
    return sum(level > AUDIBLE for level in levels)


if __name__ == "__main__":
    unittest.main(verbosity=2)
