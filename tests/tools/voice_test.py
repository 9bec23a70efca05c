"""tools/voice writes two files of the user's own, changes none that is there, and takes only its own ones back."""
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

VOICE = Path(__file__).resolve().parents[2] / "tools/voice"


class Voice(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name)
        self.programs = self.home / "programs"
        self.programs.mkdir()
        flite = self.programs / "flite"
        flite.write_text("#!/bin/sh\n")
        flite.chmod(0o755)
        self.settings = self.home / ".config/speech-dispatcher/speechd.conf"
        self.module = self.settings.parent / "modules/flite-rms-generic.conf"

    def run_it(self, *arguments, path=None):
        return subprocess.run([VOICE, *arguments], capture_output=True, text=True, check=False,
                              env={"HOME": str(self.home), "PATH": path or f"{self.programs}:{os.environ['PATH']}"})

    def test_writes_both_files_and_takes_them_back(self):
        for _ in range(2):  # twice is as good as once
            done = self.run_it()
            self.assertEqual((done.returncode, done.stdout), (0, f"written: {self.module}\nwritten: {self.settings}\n"))
        self.assertIn('BeginClient "*:sonvara:*"\n    DefaultModule flite-rms-generic\n', self.settings.read_text())
        done = self.run_it("--undo")
        self.assertEqual((done.returncode, done.stdout), (0, f"removed: {self.settings}\nremoved: {self.module}\n"))
        self.assertFalse(self.settings.exists() or self.module.exists())

    def test_leaves_the_users_own_settings_alone(self):
        for own in (self.settings, self.module):
            with self.subTest(own.name):
                own.parent.mkdir(parents=True, exist_ok=True)
                own.write_text("DefaultRate 20\n")
                done = self.run_it()
                self.assertNotEqual(done.returncode, 0)
                self.assertIn("is there already", done.stderr)
                self.assertEqual(self.run_it("--undo").stdout, "")
                self.assertEqual(own.read_text(), "DefaultRate 20\n")
                own.unlink()
                self.assertFalse(self.settings.exists() or self.module.exists())

    def test_without_flite_it_says_how_to_come_to_it(self):
        (self.programs / "flite").unlink()
        for name in ("bash", "env", "head", "sed"):
            (self.programs / name).symlink_to(f"/bin/{name}" if Path(f"/bin/{name}").exists() else f"/usr/bin/{name}")
        done = self.run_it(path=str(self.programs))
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("sudo apt install flite", done.stderr)
        self.assertFalse(self.settings.exists())

    def test_says_its_usage(self):
        done = self.run_it("--help")
        self.assertEqual(done.returncode, 2)
        self.assertIn("tools/voice --undo", done.stderr)


if __name__ == "__main__":
    unittest.main()
