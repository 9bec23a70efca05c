"""./run on macOS builds, asks an older Sonvara to quit, and only then opens the new one."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


class RunOnMacosTest(unittest.TestCase):
    def test_an_older_one_quits_before_the_new_one_is_opened(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder) / "sonvara"
            shutil.copytree(ROOT / "tools", tree / "tools")
            shutil.copy2(ROOT / "run", tree)
            record = Path(folder) / "record"
            for name in ("install", "build"):
                self.put(tree / "tools" / name, f'echo "{name} $*" >>"{record}"')
            self.put(tree / "bin/uname", "echo Darwin")
            for name in ("osascript", "open"):
                self.put(tree / "bin" / name, f'echo "{name}" >>"{record}"')
            self.put(tree / "bin/pgrep", f'echo pgrep >>"{record}"\n[ "$(grep -c pgrep "{record}")" -lt 2 ]')
            run = subprocess.run([tree / "run"], capture_output=True, text=True,
                                 env={**os.environ, "PATH": f"{tree}/bin:{os.environ['PATH']}"})
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertEqual(record.read_text().splitlines(),
                             ["install build", "build release sonvara", "osascript", "pgrep", "pgrep", "open"])

    @staticmethod
    def put(path, command):
        path.parent.mkdir(exist_ok=True)
        path.write_text(f"#!/bin/sh\n{command}\n")
        path.chmod(0o755)


if __name__ == "__main__":
    unittest.main()
