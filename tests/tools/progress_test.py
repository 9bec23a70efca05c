"""What ./test says of its progress is what ninja and ctest count, and nothing of the command is lost or left."""
import os
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRESS = Path(__file__).resolve().parents[2] / "tools/progress"
SOON, NEVER = "0.05", "3600"


class ProgressTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.fifo = os.path.join(folder.name, "fifo")
        os.mkfifo(self.fifo)

    def start(self, every, script, *prefix):
        """The script in a shell; its $0 is a pipe that nothing comes out of until the test puts it in."""
        process = subprocess.Popen([*prefix, PROGRESS, "--every", every, "trying", "sh", "-c", script, self.fifo],
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def expect_count(self, printed, said):
        process = self.start(SOON, f"echo '{printed}'; read line <$0")
        lines = []
        while not (lines and lines[-1] == said):
            lines.append(next(process.stdout).rstrip("\n"))
        with open(self.fifo, "w", encoding="utf-8") as fifo:
            fifo.write("on\n")
        self.assertEqual(process.wait(), 0)
        return lines

    def test_a_build_counts_its_steps_and_shows_none_of_them(self):
        lines = self.expect_count("[12/540] Building CXX object core.o", "-- trying: step 12 of 540")
        self.assertEqual(lines[0], "-- trying")
        self.assertNotIn("Building", "".join(lines))

    def test_a_build_within_the_build_counts_its_own(self):
        self.expect_count("[macOS adapters 3/57] Linking", "-- trying: step 3 of 57 of macOS adapters")

    def test_tests_are_counted_and_shown(self):
        line = " 12/857 Test  #4: DJ.Speaks ......   Passed    0.01 sec"
        self.assertIn(line, self.expect_count(line, "-- trying: 12 of 857 tests done"))

    def test_everything_else_is_passed_on_as_it_is(self):
        process = self.start(NEVER, "echo 'a.cpp:[3] error'; echo ' [1/2] of it'; printf 'no end'; exit 7")
        self.assertEqual(process.stdout.read(), "-- trying\na.cpp:[3] error\n [1/2] of it\nno end")
        self.assertEqual(process.wait(), 7)

    def test_a_request_to_end_ends_the_command_and_what_it_has_started(self):
        process = self.start(NEVER, "sh -c 'echo ready; read line' <$0 & read line <$0")
        self.addCleanup(os.close, os.open(self.fifo, os.O_RDWR))
        self.assertEqual([next(process.stdout) for _ in range(2)], ["-- trying\n", "ready\n"])
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.stdout.read(), "")  # it ends when nobody is left who could write
        self.assertEqual(process.wait(), 128 + signal.SIGTERM)

    def test_it_ends_with_its_caller(self):
        caller = self.start(NEVER, "echo ready; read line <$0", "sh", "-c", '"$@"; echo survived', "-")
        self.addCleanup(os.close, os.open(self.fifo, os.O_RDWR))
        self.assertEqual([next(caller.stdout) for _ in range(2)], ["-- trying\n", "ready\n"])
        caller.kill()
        self.assertEqual(caller.stdout.read(), "")


if __name__ == "__main__":
    unittest.main()
