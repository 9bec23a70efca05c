#!/usr/bin/python3
"""tools/voice with the real speech daemon: whose lines are spoken that way, and that no line is read as a command."""

import os
import unittest

from scenario import LONG  # which also finds the tools
from desktop.processes import rest
from desktop.session import PrivateDesktop
from desktop.sound import SPEECH, Recorder

MARK = "read-as-a-command"
LINES = ("Now playing Me & Julio (feat. Somebody) by Sigur Rós.",
         f"a '; touch {MARK}; ' b", f"a `touch {MARK}` b", f"a $(touch {MARK}) \\", f'a "; touch {MARK} & <b>c</b>',
         f"-voice slt -o {MARK}")


class NaturalVoice(unittest.TestCase):

    def test_speaks_the_lines_of_sonvara_alone_and_none_as_a_command(self):
        with PrivateDesktop(tray=None, has_natural_voice=True) as desktop:
            sound = os.path.join(desktop.env["XDG_RUNTIME_DIR"], "flite-rms.wav")
            recorder = Recorder(desktop)
            desktop.run("spd-say", "--wait", "--application-name", "orca", "Another program.")
            recorder.next_silence(SPEECH, 10)
            self.assertFalse(os.path.exists(sound))
            self.assertEqual(len(recorder.sounds(SPEECH)), 1)
            for number, line in enumerate(LINES, 2):
                with self.subTest(line):
                    desktop.run("spd-say", "--wait", "--application-name", "sonvara", "--", line)
                    recorder.next_silence(SPEECH, 10)
                    self.assertEqual(len(recorder.sounds(SPEECH)), number)
                    self.assertGreater(recorder.sounds(SPEECH)[-1].seconds, 0.8)
                    self.assertTrue(os.path.exists(sound))
            found = [os.path.join(folder, MARK) for folder, _, names in os.walk(desktop.folder) if MARK in names]
            self.assertEqual(found + [name for name in (MARK, f"/{MARK}") if os.path.exists(name)], [])

    def test_falls_silent_at_once_when_it_is_told_to(self):
        with PrivateDesktop(tray=None, has_natural_voice=True) as desktop:
            recorder = Recorder(desktop)
            desktop.run("spd-say", "--application-name", "sonvara", LONG)
            recorder.next_sound(SPEECH, 10)
            rest(1)
            asked = recorder.seconds()
            desktop.run("spd-say", "--cancel")
            recorder.next_silence(SPEECH, 10)
            self.assertLess(recorder.sounds(SPEECH)[-1].end - asked, 0.3)


if __name__ == "__main__":
    unittest.main(verbosity=2)
