#!/usr/bin/python3
"""The measuring itself, on recordings whose sound is known: it must tell right from wrong."""

import array
import math
import os
import tempfile
import unittest
import wave

import scenario  # finds the desktop library
from desktop.sound import MUSIC, RATE, SPEECH, STEP, Recording, likeness


def tone(seconds, amplitude, pitch=440):
    return [round(32767 * amplitude * math.sin(2 * math.pi * pitch * n / RATE)) for n in range(round(seconds * RATE))]


class Measuring(unittest.TestCase):

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def record(self, music, speech):
        """A recording of two lists of samples, the shorter one followed by silence."""
        samples = array.array("h", bytes(8 * max(len(music), len(speech))))
        for first, line in ((MUSIC, music), (SPEECH, speech)):
            for channel in (first, first + 1):
                samples[channel:channel + 4 * len(line):4] = array.array("h", line)
        name = os.path.join(self.folder.name, "recording.raw")
        with open(name, "wb") as file:
            samples.tofile(file)
        return Recording(name)

    def test_level_of_a_tone(self):
        recording = self.record(tone(1, 0.5) + tone(1, 0.05), [])
        self.assertAlmostEqual(recording.seconds(), 2)
        self.assertAlmostEqual(recording.level_between(MUSIC, 0, 1), -9.03, delta=0.1)
        self.assertAlmostEqual(recording.level_between(MUSIC, 1, 2), -29.03, delta=0.1)
        self.assertEqual(recording.level_between(SPEECH, 0, 2), -96)
        with self.assertRaises(ValueError):
            recording.level_between(MUSIC, 5, 6)

    def test_pitch_of_a_tone(self):
        recording = self.record(tone(1, 0.5, 660), [])
        self.assertAlmostEqual(recording.pitch_between(0.2, 0.8), 660, delta=15)

    def test_pitch_of_a_tone_with_gaps(self):
        recording = self.record(tone(0.35, 0.5, 660) + tone(0.3, 0) + tone(0.35, 0.5, 660), [])
        self.assertAlmostEqual(recording.pitch_between(0, 1), 660, delta=15)

    def test_sounds_are_parted_by_long_silences_only(self):
        recording = self.record([], tone(1, 0.3) + tone(0.4, 0) + tone(1, 0.3) + tone(1, 0) + tone(0.5, 0.3))
        spans = recording.sounds(SPEECH)
        self.assertEqual([(round(span.start, 1), round(span.end, 1)) for span in spans], [(0, 2.4), (3.4, 3.9)])
        self.assertEqual(recording.sounds(MUSIC), [])
        self.assertTrue(recording.is_audible(SPEECH))

    def test_sound_begins_with_its_first_audible_sample(self):
        recording = self.record([], tone(0.2534, 0.002) + tone(1, 0.3))
        self.assertAlmostEqual(recording.onset(SPEECH, recording.sounds(SPEECH)[0]), 0.2534, delta=0.0002)

    def test_loudest_is_exact_to_the_sample(self):
        recording = self.record(tone(0.2534, 0.5) + tone(1, 0.05), [])
        self.assertAlmostEqual(recording.loudest_between(MUSIC, 0.2534, 0.4), -29.03, delta=0.5)
        self.assertGreater(recording.loudest_between(MUSIC, 0.2514, 0.4), -20)
        self.assertAlmostEqual(recording.loudest_between(MUSIC, 0.2, 0.4), -9.03, delta=0.5)

    def test_likeness_tells_one_line_from_another_and_from_two_at_once(self):
        line = tone(0.5, 0.3) + tone(0.2, 0.02) + tone(0.8, 0.4) + tone(0.3, 0.01) + tone(0.4, 0.2)
        other = tone(0.3, 0.02) + tone(0.6, 0.5) + tone(0.4, 0.03) + tone(0.3, 0.4) + tone(0.6, 0.02)
        both = [one + two for one, two in zip(line, other)]
        levels = [self.record([], samples).levels(SPEECH) for samples in (line, other, both)]
        stammered = levels[0][:30] + 9 * [-96] + levels[0][30:120] + 20 * [-96] + levels[0][120:]
        self.assertGreater(likeness(levels[0], levels[0]), 0.99)
        self.assertGreater(likeness(levels[0], stammered), 0.99)
        self.assertLess(likeness(levels[0], levels[1]), 0.6)
        self.assertLess(likeness(levels[0], levels[2]), 0.6)
        self.assertLess(likeness(levels[0], levels[0][:round(1.0 / STEP)]), 0.6)

    def test_saved_sound_is_the_recorded_one(self):
        recording = self.record(tone(0.5, 0.5), tone(1, 0.1))
        name = os.path.join(self.folder.name, "speech.wav")
        recording.save(SPEECH, name)
        with wave.open(name) as saved:
            self.assertEqual((saved.getnchannels(), saved.getframerate(), saved.getnframes()), (2, RATE, RATE))
            samples = array.array("h", saved.readframes(RATE))
        self.assertAlmostEqual(max(samples), 3277, delta=2)
        self.assertEqual(samples[0::2], samples[1::2])


if __name__ == "__main__":
    unittest.main(verbosity=2)
