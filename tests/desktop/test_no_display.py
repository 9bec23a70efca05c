#!/usr/bin/python3
"""Without a display that it can use, the program says in one sentence what is missing, and ends in good order."""

import os
import subprocess
import tempfile
import unittest

from scenario import PROGRAM


class NoDisplay(unittest.TestCase):

    def expect_sentence(self, *parts, **env):
        """Nothing else is heard of it, and it has neither hung nor crashed."""
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run([PROGRAM], env={"HOME": folder, "XDG_RUNTIME_DIR": folder, "LANG": "C.UTF-8", **env},
                                  stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=20, check=False)
            self.assertEqual(os.listdir(folder), [])
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertEqual(done.stdout, "")
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        for part in ("sonvara: ", "start the program in a desktop session", *parts):
            self.assertIn(part, done.stderr)

    def test_no_display_at_all(self):
        self.expect_sentence("There is no display (neither WAYLAND_DISPLAY nor DISPLAY is set)")

    def test_an_x_server_that_is_not_there(self):
        self.expect_sentence("The display cannot be used", "could not connect to display :4242", DISPLAY=":4242")

    def test_a_compositor_that_is_not_there(self):
        self.expect_sentence("The display cannot be used", "Failed to create wl_display", WAYLAND_DISPLAY="nowhere",
                             XDG_SESSION_TYPE="wayland")

    def test_a_plugin_that_is_not_installed(self):
        self.expect_sentence("The display cannot be used", 'Could not find the Qt platform plugin "nowhere"',
                             QT_QPA_PLATFORM="nowhere", DISPLAY=":4242")


if __name__ == "__main__":
    unittest.main(verbosity=2)
