"""What continuous integration does with the bundle on a Mac finds a program that does not start, open or quit, and one that crashes."""
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
REPORTS = "Library/Logs/DiagnosticReports"

# A Mac whose state are files: what runs and is open there, and what goes wrong ("fault").
STAND_INS = {
    "sleep": "",
    "open": """
if [ -e running ]; then fails opens || touch settings; else fails starts || touch running; fi""",
    "pgrep": """
[ -e running ] && echo 42""",
    "osascript": f"""
case "$*" in
    *JavaScript*)
        ! fails crashes || echo "why" >"{REPORTS}/Sonvara-new.ips"
        fails quits || rm running ;;
    *AXExtrasMenuBar*) [ -e running ] && ! fails shows && echo true ;;
    *'exists window'*) [ -e settings ] && echo true ;;
    *'exists (first button'*) echo true ;;
    *click*) touch log ;;
    *'exists sheet'*) [ -e log ] && ! fails logs && echo true ;;
    *) exit 1 ;;
esac""",
}


class StartOnMacosTest(unittest.TestCase):
    def setUp(self):
        self.mac = Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.mac / "bin").mkdir()
        (self.mac / REPORTS).mkdir(parents=True)
        (self.mac / REPORTS / "Sonvara-old.ips").touch()
        for name, command in STAND_INS.items():
            path = self.mac / "bin" / name
            path.write_text(f'#!/bin/sh\ncd "{self.mac}"\nfails() {{ [ "$FAULT" = "$1" ]; }}\n{command}\n')
            path.chmod(0o755)

    def start(self, fault=""):
        return subprocess.run([ROOT / ".ci/start-on-macos", "Sonvara.app"], capture_output=True, text=True,
                              env={**os.environ, "HOME": str(self.mac), "FAULT": fault,
                                   "PATH": f"{self.mac}/bin:{os.environ['PATH']}"})

    def test_a_good_program_passes(self):
        run = self.start()
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertFalse((self.mac / "running").exists())

    def test_each_fault_is_found(self):
        faults = {"starts": "does not start", "shows": "no record", "opens": "settings", "logs": "log does not open",
                  "quits": "does not quit", "crashes": "has crashed"}
        for fault, message in faults.items():
            with self.subTest(fault):
                run = self.start(fault)
                self.assertEqual(run.returncode, 1, run.stderr)
                self.assertIn(message, run.stderr)
                for state in ("running", "settings", "log"):
                    (self.mac / state).unlink(missing_ok=True)


if __name__ == "__main__":
    unittest.main()
