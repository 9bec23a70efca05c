"""The layer check finds what it is there for, and passes this project."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def check(tree):
    run = subprocess.run([sys.executable, ROOT / "tools/check-layers", tree], capture_output=True, text=True)
    return run.returncode, run.stdout


class CheckLayersTest(unittest.TestCase):
    def findings(self, files, arrows, categories=""):
        with tempfile.TemporaryDirectory() as tree:
            for name, text in {**{f"src/{name}": text for name, text in files.items()},
                               "docs/architecture.md": arrows, "docs/decisions/4-system-log.md": categories}.items():
                path = Path(tree) / name
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return check(tree)

    def expect(self, files, finding, arrows=None, categories=""):
        """`arrows`: what the list of arrows says; nothing for rooms that include no others."""
        if arrows is None:
            arrows = "".join(f"    {room} ->\n" for room in sorted({str(Path(name).parent) for name in files}))
        status, output = self.findings(files, arrows, categories)
        self.assertEqual(status, 1)
        self.assertEqual(len(output.splitlines()), 1, output)
        self.assertIn(finding, output)

    def test_this_project_passes(self):
        status, output = check(ROOT)
        self.assertEqual(status, 0, output)

    def test_a_tree_without_sources_does_not_pass(self):
        self.assertEqual(self.findings({}, "")[0], 1)

    def test_a_tree_that_keeps_to_its_list_passes(self):
        status, output = self.findings({"ui/A.cpp": '#include "ui/A.h"\n#include "log/B.h"\n', "ui/A.h": "", "log/B.h": ""},
                                       "    ui -> log\n    log ->\n")
        self.assertEqual(status, 0, output)

    def test_an_arrow_against_the_layers_is_found(self):
        self.expect({"monitor/A.cpp": '#include "ui/B.h"\n', "ui/B.h": ""}, "monitor must not include ui")

    def test_an_adapter_that_sees_the_core_is_found(self):
        self.expect({"platform/linux/players/A.cpp": '#include "speech/B.h"\n', "speech/B.h": ""},
                    "platform/linux/players must not include speech")

    def test_an_unknown_room_is_found(self):
        self.expect({"attic/A.cpp": ""}, "room attic is not known", arrows="    log ->\n")

    def test_an_arrow_that_is_listed_and_not_there_is_found(self):
        self.expect({"ui/A.cpp": "", "log/B.h": ""}, "architecture.md:1: ui does not include log",
                    arrows="    ui -> log\n    log ->\n")

    def test_a_cycle_of_rooms_is_found(self):
        self.expect({"ui/A.cpp": '#include "log/B.h"\n', "ui/C.h": "", "log/B.h": "", "log/D.cpp": '#include "ui/C.h"\n'},
                    "a cycle of rooms: ui, log", arrows="    ui -> log\n    log -> ui\n")

    def test_a_path_that_leads_nowhere_is_found(self):
        self.expect({"log/A.cpp": '#include "Missing.h"\n'}, "is no path below src/")

    def test_a_cycle_is_found(self):
        self.expect({"log/A.h": '#include "log/B.h"\n', "log/B.h": '#include "log/A.h"\n'}, "includes itself")

    def test_what_the_core_must_not_use_is_found(self):
        for line in ("#ifdef __APPLE__", "#include <thread>", "#include <QString>", "auto t = steady_clock::now();",
                     "std::this_thread::sleep_for(1s);", 'getenv("HOME");'):
            self.expect({"speech/A.cpp": line + "\n"}, "speech/A.cpp:1: ")

    def test_only_the_room_that_keeps_volumes_may_lock(self):
        for room in ("speech", "ports"):
            self.expect({room + "/A.h": "#include <mutex>\n"}, "a lock in the core")
        status, output = self.findings({"volume/A.h": "#include <mutex>\n"}, "    volume ->\n")
        self.assertEqual(status, 0, output)
        self.expect({"volume/A.h": "#include <thread>\n"}, "a header that only adapters may use in the core")

    def test_the_wall_clock_is_found_in_adapters_too(self):
        for line in ("auto t = std::chrono::system_clock::now();", "QDateTime::currentDateTime();"):
            self.expect({"platform/linux/players/A.cpp": line + "\n"}, "players/A.cpp:1: the wall clock")

    def test_an_adapter_that_writes_as_a_component_is_found(self):
        self.expect({"speech/A.cpp": '    : logger_(platform.systemLog, "Speech")\n',
                     "platform/linux/speech/B.cpp": '\n      logger_(log, "Speech"),\n'},
                    "linux/speech/B.cpp:2: writes to the log as the component Speech", categories="| `Speech` | the daemon |\n")

    def test_an_adapters_category_is_listed_and_a_listed_one_used(self):
        files = {"platform/linux/tray/A.cpp": 'Logger(log, "Tray")\n    .error({{"no"}});\n'}
        arrows = "    platform/linux/tray ->\n"
        self.expect(files, "4-system-log.md does not list the category Tray")
        self.assertEqual(self.findings(files, arrows, "| `Tray` | the item |\n")[0], 0)
        self.expect({"log/A.cpp": ""}, "no adapter writes to the log as Tray", categories="| `Tray` | the item |\n")

    def test_a_long_file_is_found(self):
        self.expect({"log/A.cpp": "int x;\n" * 301}, "301 lines, and no reason given")


if __name__ == "__main__":
    unittest.main()
