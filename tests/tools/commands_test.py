"""Every command that README.md and CONTRIBUTING.md quote works as it is written there, in a fresh copy of the tracked files.

A command stands in an indented line, with what it does after two blanks, or between backquotes in a sentence. Each has its
entry below, which says how it is tried; a command without an entry, and an entry without a command, are failures.
"""
import os
import re
import shutil
import signal
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENTS = ("README.md", "CONTRIBUTING.md")
NO_DISPLAY = "There is no display|The display cannot be used"
LONGEST = 900  # seconds, for one that compiles

# Quoted, but not to be typed: what the log says, and code.
TEXTS = re.compile(r"(claude|gemini) (CLI not found|exited|returned|launch failed)|read\(|build/demo/$|\w+/\w*\.\w+$|final$|[a-z]+: ")


def quoted(text):
    """The commands in a document, in its order."""
    found = []
    for line in text.splitlines():
        if line.startswith("    "):
            found.append(re.split(r" {2,}", line.strip())[0])
        elif not line.startswith("#"):
            found += [span for span in re.findall(r"`([^`]+)`", line)
                      if re.match(r"\./|tools/|build/|[\w-]+ |[A-Z_]+=", span) and not TEXTS.match(span)]
    return found


def all_quoted():
    return [command for name in DOCUMENTS for command in quoted((ROOT / name).read_text(encoding="utf-8"))]


class FreshCopy:
    """The tracked files as they are now, a home and a session without a display, of their own."""

    def __init__(self):
        self.folder = ROOT / "build/commands"  # always the same: what is compiled there is in the compiler's cache
        shutil.rmtree(self.folder, ignore_errors=True)
        self.tree, self.home, self.programs = (self.folder / name for name in ("sonvara", "home", "programs"))
        for each in (self.tree, self.home, self.programs):
            each.mkdir(parents=True)
        files = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True).stdout
        archive = subprocess.run(["tar", "--create", "--null", "--files-from=-"], cwd=ROOT, check=True, input=files,
                                 capture_output=True).stdout
        subprocess.run(["tar", "--extract"], cwd=self.tree, check=True, input=archive)
        subprocess.run(["git", "init", "--quiet"], cwd=self.tree, check=True)
        subprocess.run(["git", "add", "--all"], cwd=self.tree, check=True)
        self.env = {name: value for name, value in os.environ.items()
                    if name not in ("DISPLAY", "WAYLAND_DISPLAY") and not name.startswith("SONVARA_")}
        self.env.setdefault("CCACHE_DIR", subprocess.run(["ccache", "--get-config", "cache_dir"], check=True, text=True,
                                                         capture_output=True).stdout.strip())
        self.env |= {"HOME": str(self.home), "PATH": f"{self.programs}:{self.env['PATH']}", "XDG_CONFIG_HOME": "",
                     "XDG_STATE_HOME": ""}

    def stand_in(self, name, script):
        path = self.programs / name
        path.write_text("#!/bin/sh\n" + script, encoding="utf-8")
        path.chmod(0o755)

    def run(self, command, **env):
        """Its exit status and everything that it says."""
        run = subprocess.run(["bash", "-c", command], cwd=self.tree, env=self.env | env, text=True, timeout=LONGEST,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        return run.returncode, run.stdout

    def remove(self):
        shutil.rmtree(self.folder)


class Commands(unittest.TestCase):
    """In the order of the documents, as somebody would type them: what a command leaves is there for the next."""

    @classmethod
    def setUpClass(cls):
        cls.copy = FreshCopy()
        cls.addClassCleanup(cls.copy.remove)

    def passes(self, command, **env):
        status, output = self.copy.run(command, **env)
        self.assertEqual(status, 0, f"{command}\n{output}")
        return output

    def finds_no_display(self, command, **env):
        """It opens the session, so it is run up to there: everything is built, and there is no display."""
        status, output = self.copy.run(command, **env)
        self.assertNotEqual(status, 0, output)
        self.assertRegex(output, NO_DISPLAY)

    def agrees_with_its_usage(self, command):
        """It takes minutes, or other tests run the same: its first lines have it in this form."""
        program, *arguments = re.sub(r"^[A-Z_]+=\S+ ", "", command).split()
        usage = "\n".join((self.copy.tree / program).read_text(encoding="utf-8").splitlines()[1:8])
        self.assertTrue(os.access(self.copy.tree / program, os.X_OK))
        self.assertRegex(usage, rf'^(# |""")({re.escape(program)})\b')
        for argument in arguments:
            self.assertIn(argument.strip("[]."), usage)

    def makes_a_package(self, command):
        self.passes(command)
        self.assertTrue(list((self.copy.tree / "build/release").glob("sonvara_*.deb")))

    def installs_below_the_home(self, command):
        self.passes(command)
        self.assertTrue(os.access(self.copy.home / ".local/bin/sonvara", os.X_OK))

    def asks_for_rights(self, command):
        """A stand-in for sudo says what would be done."""
        self.copy.stand_in("sudo", 'echo "$@"')
        self.copy.stand_in("claude", "")
        self.assertEqual(self.passes(command), f"ln -sfn {self.copy.programs}/claude /usr/local/bin/claude\n")

    def is_run_by_the_tests_of_the_tools(self, command):
        """It fetches hundreds of megabytes; ./test -L ai installs the same package, elsewhere."""
        self.assertIn(command.split()[-1], (self.copy.tree / "tests/ai/install-tools").read_text(encoding="utf-8"))

    def is_installed_for_the_demo(self, command):
        packages = (self.copy.tree / "tools/packages.txt").read_text(encoding="utf-8")
        self.assertRegex(packages, rf"(?m)^demo +{command.split()[-1]} ")

    def watches_the_bus(self, command):
        """It runs until it is stopped, here after the first message."""
        with subprocess.Popen(["dbus-run-session", "--", "bash", "-c", command], cwd=self.copy.tree, env=self.copy.env, text=True,
                              stdout=subprocess.PIPE, start_new_session=True) as watching:
            first = watching.stdout.readline()
            os.killpg(watching.pid, signal.SIGTERM)
        self.assertRegex(first, "^signal ")

    def passes_on_a_desktop(self, command):
        self.passes("tools/private-desktop " + command)

    def finds_no_player(self, command):
        self.assertIn("No players found", self.copy.run("dbus-run-session -- " + command)[1])

    def passes_with(self, arguments):
        """In place of the words that stand for them."""
        return lambda command: self.passes(f"{command.split()[0]} {arguments}")

    def test_each_quoted_command(self):
        ways = {
            "./run": lambda command: self.finds_no_display(command, DISPLAY=":4711"),
            "./run --demo": self.agrees_with_its_usage,
            "./test": self.agrees_with_its_usage,
            "cmake --build build/release --target package": self.makes_a_package,
            "cmake --install build/release --prefix ~/.local": self.installs_below_the_home,
            "npm install -g @anthropic-ai/claude-code": self.is_run_by_the_tests_of_the_tools,
            "npm install -g @google/gemini-cli": self.is_run_by_the_tests_of_the_tools,
            "tools/ai-setup": self.passes,
            'sudo ln -sfn "$(type -P claude)" /usr/local/bin/claude': self.asks_for_rights,
            "./test -L ai": self.agrees_with_its_usage,
            "spd-say hello": self.passes_on_a_desktop,
            'QT_LOGGING_RULES="sonvara.*.debug=true" build/release/sonvara': self.finds_no_display,
            "sudo apt install flite": self.is_installed_for_the_demo,
            "tools/voice": self.passes,
            "tools/voice --undo": self.passes,
            "playerctl volume 0.5": self.finds_no_player,
            "tools/bench": self.agrees_with_its_usage,
            "./test -L unit": self.agrees_with_its_usage,
            "tools/try core": self.passes,
            "tools/try core 'DJLog*'": self.passes,
            "tools/format": self.passes if shutil.which("clang-format-19") else self.agrees_with_its_usage,
            "tools/tidy": self.agrees_with_its_usage,
            "tests/ai/measure": self.agrees_with_its_usage,
            "tools/coverage": self.agrees_with_its_usage,
            "tools/mutate [ROOM|FILE]": self.agrees_with_its_usage,
            "tools/fuzz [RUNS]": self.agrees_with_its_usage,
            "tools/soak [MINUTES]": self.agrees_with_its_usage,
            "tools/bench --short": self.agrees_with_its_usage,
            "SONVARA_SOUND=pulseaudio ./test -R desktop": self.agrees_with_its_usage,
            "tools/uninstall": self.passes,
            "tools/players": self.agrees_with_its_usage,
            "tools/players [PLAYER...]": self.agrees_with_its_usage,
            "tools/desktops NAME": self.agrees_with_its_usage,
            "tools/private-desktop COMMAND": self.passes_with("xprop -root"),
            "tools/check-layers": self.passes,
            "dbus-monitor --session \"sender='org.mpris.MediaPlayer2.NAME'\"": self.watches_the_bus,
        }
        commands = list(dict.fromkeys(all_quoted()))
        self.assertEqual(sorted(ways), sorted(commands), "one entry for each command that is quoted")
        for command in commands:
            with self.subTest(command):
                ways[command](command)


class Reading(unittest.TestCase):

    def test_a_command_is_found_in_a_block_and_in_a_sentence(self):
        self.assertEqual(quoted("    tools/x [N]   what it does\nUse `./run --demo` or `cmake -B x`; see `docs/a.md`.\n"),
                         ["tools/x [N]", "./run --demo", "cmake -B x"])

    def test_what_the_log_says_is_none(self):
        self.assertEqual(quoted("| `claude exited 1` | not signed in |\n"), [])


if __name__ == "__main__":
    unittest.main()
