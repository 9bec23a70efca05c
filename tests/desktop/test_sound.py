#!/usr/bin/python3
"""test_sound.py SERVER: that sound server in a private session: what is played is what is recorded."""

import os
import subprocess
import sys
import time
import unittest
from unittest import mock

import scenario  # finds the desktop library
from desktop import soundserver
from desktop.processes import wait_until
from desktop.session import PrivateSession
from desktop.sound import MUSIC, SPEECH, STEP, Recorder

SECONDS = 4.0  # of the tone
FULL = -9.0  # its level


class Sound(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.session = cls.enterClassContext(PrivateSession())

    def setUp(self):
        self.recorder = Recorder(self.session)
        self.addCleanup(self.recorder.stop)

    def play(self, sink, pitch):
        name = os.path.join(self.session.folder, f"{pitch}.wav")
        subprocess.run(["sox", "-R", "-n", "-r", "44100", "-c", "2", name, "synth", str(SECONDS), "sine", str(pitch),
                        "vol", "0.5"], check=True, timeout=30)
        process = self.session.start("tone", ["paplay", name], {"PULSE_SINK": sink} if sink else {})
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def only_sound(self, channel):
        spans = self.recorder.sounds(channel)
        self.assertEqual(len(spans), 1, spans)
        return spans[0]

    def test_the_forced_one_runs(self):
        self.assertEqual(self.session.sound, os.environ["SONVARA_SOUND"])
        said = self.session.run("pactl", "info")
        self.assertEqual("PipeWire" in said, self.session.sound == "pipewire", said)

    def test_music_and_voice_are_recorded_apart_and_whole(self):
        music = self.play(None, 440)  # the default
        self.recorder.next_sound(MUSIC, limit=5)
        voice = self.play("speech", 880)
        self.assertEqual((music.wait(15), voice.wait(15)), (0, 0))
        self.recorder.next_silence(MUSIC, limit=10)
        self.recorder.next_silence(SPEECH, limit=10)
        for channel in (MUSIC, SPEECH):
            span = self.only_sound(channel)
            self.assertAlmostEqual(span.seconds, SECONDS, delta=0.25)
            self.assertAlmostEqual(self.recorder.level_between(channel, span.start, span.end), FULL, delta=0.5)
            levels = self.recorder.levels(channel)[round(span.start / STEP):round(span.end / STEP)]
            gaps = sum(level < FULL - 6 for level in levels)
            print(f"{self.session.sound}: {gaps} of {len(levels)} measures hold a gap", flush=True)
            self.assertLess(gaps, 10)
        span = self.only_sound(MUSIC)
        self.assertAlmostEqual(self.recorder.pitch_between(span.start + 0.5, span.end - 0.5), 440, delta=15)

    def test_a_stream_is_lowered_at_once_and_as_far_as_it_was_told(self):
        self.play("music", 440)
        self.recorder.next_sound(MUSIC, limit=5)
        stream = self.session.run("pactl", "list", "short", "sink-inputs").splitlines()[-1].split("\t")[0]
        time.sleep(1)  # music at its level
        self.session.run("pactl", "set-sink-input-volume", stream, "40%")  # its cube is a sixteenth: 24 dB less
        lowered = self.recorder.seconds()
        wait_until("the lowered music", lambda: self.recorder.seconds() > lowered + 1)
        self.assertAlmostEqual(self.recorder.level_between(MUSIC, lowered - 0.6, lowered - 0.2), FULL, delta=0.5)
        self.assertAlmostEqual(self.recorder.level_between(MUSIC, lowered + 0.3, lowered + 0.9), FULL - 24, delta=0.5)

    def test_an_end_is_heard_at_once(self):
        music = self.play("music", 440)
        self.recorder.next_sound(MUSIC, limit=5)
        time.sleep(1)  # what the test is about: a stream that is well under way
        music.kill()
        killed = self.recorder.seconds()
        self.recorder.next_silence(MUSIC, limit=5)
        self.assertLess(self.only_sound(MUSIC).end - killed, 0.3)

    def test_nothing_of_the_machine_is_in_it(self):
        self.assertEqual(self.session.run("pactl", "list", "short", "cards"), "")
        sinks = [line.split("\t")[1] for line in self.session.run("pactl", "list", "short", "sinks").splitlines()]
        self.assertEqual(sorted(sinks), ["both", "music", "speech"])
        sources = [line.split("\t")[1] for line in self.session.run("pactl", "list", "short", "sources").splitlines()]
        self.assertEqual(sorted(sources), ["both.monitor", "music.monitor", "speech.monitor"])


class Choice(unittest.TestCase):

    def choose(self, installed, forced=""):
        with mock.patch("shutil.which", lambda name: name in installed), \
                mock.patch.dict(os.environ, SONVARA_SOUND=forced):
            return soundserver.choose()

    def test_pipewire_is_preferred_where_all_of_it_is_there(self):
        pipewire = soundserver.PROGRAMS["pipewire"]
        self.assertEqual(self.choose(("pulseaudio", *pipewire)), "pipewire")
        self.assertEqual(self.choose(("pulseaudio", *pipewire[1:])), "pulseaudio")
        self.assertEqual(self.choose(("pulseaudio", *pipewire), "pulseaudio"), "pulseaudio")

    def test_a_missing_one_is_said(self):
        for installed, forced, what in (((), "", "pipewire or pulseaudio"), (("pulseaudio",), "pipewire", "pipewire")):
            with self.assertRaisesRegex(soundserver.Missing, f"^{what} is not installed"):
                self.choose(installed, forced)
        with self.assertRaisesRegex(ValueError, "SONVARA_SOUND is oss"):
            self.choose(("pulseaudio",), "oss")


if __name__ == "__main__":
    os.environ["SONVARA_SOUND"] = sys.argv.pop(1)
    if os.environ["SONVARA_SOUND"] not in soundserver.installed():
        print(f"{os.environ['SONVARA_SOUND']} is not installed, and cannot stand beside the one that is: left out")
        sys.exit(77)
    unittest.main(verbosity=2)
