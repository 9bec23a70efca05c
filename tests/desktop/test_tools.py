#!/usr/bin/python3
"""AI tools that are late, fail, hang or are missing: what is heard, and what the log says."""

import os
import time
import unittest

from scenario import Scenario
from desktop.processes import wait_until
from desktop.sound import SPEECH
from desktop.tracks import Track

FIRST = Track("First Song", "One", "Album One", 440, 40)
SECOND = Track("Second Song", "Two", "Album Two", 660, 40)
WITH_AI = "[General]\naiIntros=true\n"


def script(body):
    return "claude", "#!/bin/sh\n# A stand-in of this test's own, not an AI.\n" + body


# One that hangs with a child that holds its output, too.
HANGING = script('sleep 300 &\necho $$ $! >"$HOME/tool.new" && mv "$HOME/tool.new" "$HOME/tool"\nwait\n')


def tools_of(scenario):
    """The ids of a hanging tool and its child, as soon as they run."""
    note = os.path.join(scenario.desktop.env["HOME"], "tool")
    wait_until("the tool", lambda: os.path.exists(note))
    with open(note, encoding="utf-8") as file:
        return [int(pid) for pid in file.read().split()]


def runs(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"  # ended, and nobody has asked how
    except FileNotFoundError:
        return False


class Tools(unittest.TestCase):

    def _log_after_the_line(self, scenario, limit=15):
        scenario.recorder.next_sound(SPEECH, limit=limit)
        scenario.recorder.next_silence(SPEECH, limit=15)
        return scenario.copied_log()

    def test_a_line_for_a_track_that_was_skipped_is_never_heard(self):
        slow = script("sleep 2\ncase \"$*\" in *'First Song'*) echo About the first;; *) echo About the second;; esac\n")
        with Scenario(slow, WITH_AI) as scenario:
            scenario.play("audacious", [FIRST, SECOND])
            wait_until("the first track in the menu", lambda: FIRST.title in scenario.tray.now_playing())
            scenario.player.call("Next")
            log = self._log_after_the_line(scenario)
            self.assertEqual(len(scenario.recorder.sounds(SPEECH)), 1)
            self.assertEqual(scenario.tray.chat(), "About the second")
            self.assertIn("claude intro: About the first", log)  # it was written, and dropped
            self.assertNotIn("Spoke: About the first", log)
            self.assertEqual(log.count("Spoke: "), 1)

    def test_a_tool_that_fails_leaves_the_offline_line_and_a_reason(self):
        with Scenario(script("echo something went wrong >&2\nexit 3\n"), WITH_AI) as scenario:
            scenario.play("audacious", [FIRST])
            log = self._log_after_the_line(scenario)
            self.assertIn("First Song by One, from Album One.", scenario.tray.chat())
            self.assertIn("INFO: Calling claude for an intro…", log)
            self.assertIn("ERROR: claude exited 3", log)
            self.assertNotIn("something went wrong", log)

    def test_a_tool_that_is_missing_leaves_the_offline_line_and_names_the_folders(self):
        with Scenario(("another-tool", "#!/bin/sh\n"), WITH_AI) as scenario:
            scenario.play("audacious", [FIRST])
            log = self._log_after_the_line(scenario)
            self.assertIn("First Song by One, from Album One.", scenario.tray.chat())
            self.assertIn("ERROR: claude CLI not found in /opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin", log)

    def test_quitting_ends_a_tool_and_what_it_has_started_within_a_second(self):
        with Scenario(HANGING, WITH_AI) as scenario:
            scenario.play("audacious", [FIRST])
            tools = tools_of(scenario)
            self.assertTrue(all(runs(pid) for pid in tools))
            scenario.tray.choose("Quit")
            self.assertEqual(scenario.program.process.wait(1), 0)
            wait_until("the end of the tool", lambda: not any(runs(pid) for pid in tools), 1)

    def test_a_program_that_is_killed_takes_its_tool_along(self):
        with Scenario(HANGING, WITH_AI) as scenario:
            scenario.play("audacious", [FIRST])
            tool = tools_of(scenario)[0]
            scenario.program.kill()
            wait_until("the end of the tool", lambda: not runs(tool), 1)

    def test_a_tool_that_hangs_is_stopped_after_twenty_five_seconds(self):
        with Scenario(HANGING, WITH_AI) as scenario:
            scenario.play("audacious", [FIRST])
            wait_until("the first track in the menu", lambda: FIRST.title in scenario.tray.now_playing())
            begin = time.monotonic()
            wait_until("the offline line", scenario.tray.chat, 35)
            took = time.monotonic() - begin
            self.assertGreater(took, 24)
            self.assertLess(took, 28)
            self.assertIn("ERROR: claude exited 143", self._log_after_the_line(scenario))
            self.assertFalse(any(runs(pid) for pid in tools_of(scenario)), "nor is anything left that it started")


if __name__ == "__main__":
    unittest.main(verbosity=2)
