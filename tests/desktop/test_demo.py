#!/usr/bin/python3
"""The demo, as a user runs it: what it leaves behind, and that it leaves nothing running."""

import os
import re
import signal
import subprocess
import tempfile
import time
import unittest

from PIL import Image

from scenario import PROGRAM, ROOT
from desktop.processes import Processes, descendants, wait_until

DEMO = os.path.join(ROOT, "tools", "demo")
PICTURES = ("menu.png", "settings.png", "log.png")


class Demo(unittest.TestCase):

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.path.join(folder.name, "demo")
        self.temporary = os.path.join(folder.name, "tmp")
        os.mkdir(self.temporary)
        self.processes = Processes(folder.name)
        self.addCleanup(self.processes.stop_all)

    def start(self):
        env = {**os.environ, "TMPDIR": self.temporary}
        return self.processes.start("demo", [DEMO, PROGRAM, self.folder], env)

    def printed(self):
        with open(self.processes.log_path("demo"), encoding="utf-8") as log:
            return log.read()

    def expect_nothing_left(self):
        self.assertEqual(descendants(os.getpid()), [], "processes that the demo started still run")
        self.assertEqual(os.listdir(self.temporary), [])

    def test_shows_everything_within_a_minute_and_ends(self):
        begin = time.monotonic()
        status = self.start().wait(90)
        self.assertEqual(status, 0, self.printed())
        self.assertLess(time.monotonic() - begin, 60)
        self.expect_nothing_left()

        with open(os.path.join(self.folder, "transcript.txt"), encoding="utf-8") as file:
            transcript = file.read()
        spoken = re.findall(r"^\[\d\d:\d\d:\d\d\] INFO: Spoke: (.+)$", transcript, re.M)
        self.assertEqual(len(spoken), 3, transcript)
        for line in spoken:
            self.assertRegex(self.printed(), r"\bDJ +" + re.escape(line))
        if "permits no private mount" not in self.printed():
            self.assertRegex(transcript, r"SUCCESS: claude intro: .*stand-in")
            self.assertRegex(transcript, r"ERROR: claude exited 7\n.*INFO: Spoke: ")
            self.assertIn("stand-in of this demo's own", self.printed())
        self.assertRegex(self.printed(), r"volume +35\b(.|\n)*volume +100\b")
        for name in PICTURES:
            with Image.open(os.path.join(self.folder, name)) as picture:
                self.assertGreater(len(picture.getcolors(picture.width * picture.height)), 20, f"{name} shows something")
        for name in ("speech.wav", "music.wav"):
            level = subprocess.run(["sox", os.path.join(self.folder, name), "-n", "stat"], check=True,
                                   stderr=subprocess.PIPE, timeout=20).stderr.decode()
            self.assertGreater(float(re.search(r"Maximum amplitude: +([\d.]+)", level)[1]), 0.05, name)

    def test_an_interrupt_stops_everything(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                demo = self.start()
                wait_until("the music", lambda: "track" in self.printed(), 30)
                demo.send_signal(number)
                self.assertEqual(demo.wait(15), 128 + number)
                self.expect_nothing_left()
                os.remove(self.processes.log_path("demo"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
