"""The programs with a project's unit tests: what they are made of, how they are built and run, and how long they take."""
import fnmatch
import json
import os
import re
import resource
import shlex
import shutil
import subprocess
import tempfile
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path

SLOW = 500  # milliseconds
QUICK_LINKER = ["-fuse-ld=mold"] if shutil.which("mold") else []


def tests_of(room):
    """The folders of the tests that hold a room: the core and an adapter are tested as a whole."""
    if room == "platform/posix":
        return "posix", "linux/players"  # its part of the volume is tested with players
    if room.startswith("platform/linux"):
        return ("linux",)
    return ("volume",) if room == "volume" else ("core",)


@contextmanager
def scratch_folder():
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)  # as a test may become another user, and look for its files
        yield Path(folder)


def environment(variables, folder):
    """What a test that is killed leaves behind goes with the folder."""
    # A test with random numbers takes always the same: what is noticed by luck is not noticed.
    return os.environ | {"SEED": "1", "SESSIONS": "1000", "TMPDIR": str(folder)} | variables


@dataclass
class Program:
    path: str         # of the tests' executable
    runner: list      # the words before it that run it
    environment: dict # what its tests are run with, beside our own
    link: list        # the words of the command that links it, run in the build's folder
    objects: list     # all that is linked, with what the archives hold
    times: dict       # the milliseconds that each of its tests takes
    limit: int        # seconds of processor time after which it hangs

    @property
    def slow(self):
        return [name for name, time in self.times.items() if time >= SLOW]

    def limit_of(self, chosen):
        """Of the tests that are chosen, as GoogleTest writes it."""
        return min(self.limit, 3 + 3 * self.time_of(chosen))

    def time_of(self, chosen):
        return sum(self.times[name] for name in self.names(chosen)) // 1000

    def names(self, chosen):
        wanted, _, unwanted = chosen.partition("-")
        return [name for name in self.times if fits(name, wanted or "*") and not fits(name, unwanted)]

    def has(self, chosen):
        """Whether it has such tests; one without GoogleTest is run as a whole, and once."""
        return bool(self.names(chosen)) if self.times else chosen.startswith("-")


def fits(name, patterns):
    return any(fnmatch.fnmatchcase(name, pattern) for pattern in patterns.split(":"))


class Build:
    """A build folder, whose commands are used for the changed files."""

    def __init__(self, tree, folder):
        self.tree = Path(tree)
        self.folder = Path(folder)
        self.commands = {}  # by object
        for entry in json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8")):
            words = shlex.split(entry["command"])
            self.commands[words[words.index("-o") + 1]] = (words, entry["file"])
        self.includes = self.read_includes()

    def ninja(self, *arguments):
        return subprocess.run(["ninja", "-C", self.folder, "-t", *arguments], check=True, text=True,
                              capture_output=True).stdout

    def read_includes(self):
        """The headers of the tree that each object includes."""
        includes = {}
        for line in self.ninja("deps").splitlines():
            if line.startswith(" "):
                path = os.path.normpath(self.folder / line.strip())
                if path.startswith(f"{self.tree}/"):
                    headers.add(path)
            elif line:
                headers = includes.setdefault(line.partition(":")[0], set())
        return includes

    def programs(self, folders):
        """The programs with the unit tests of these folders."""
        found = {}
        for folder in folders:
            listed = subprocess.run(["ctest", "--test-dir", self.folder / "tests" / folder, "--show-only=json-v1"],
                                    check=True, text=True, capture_output=True).stdout
            for test in json.loads(listed)["tests"]:
                properties = {each["name"]: each["value"] for each in test["properties"]}
                words = test.get("command", [])  # none for what is not built
                path = next((word for word in words if word.startswith(f"{self.folder}/")), None)
                if path and "unit" in properties.get("LABELS", []) and path not in found:
                    variables = dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", []))
                    found[path] = self.program(path, words[:words.index(path)], variables)
        return list(found.values())

    def program(self, path, runner, variables):
        name = os.path.relpath(path, self.folder)
        # CMake puts more commands around the one that links.
        parts = self.ninja("commands", "-s", name).strip().split(" && ")
        link = shlex.split(next(part for part in parts if f" -o {name} " in f"{part} "))
        objects = [word for word in link if word.endswith(".o")]
        for archive in (word for word in link if word.endswith(".a") and not word.startswith("/")):
            objects += [word for word in shlex.split(self.ninja("commands", "-s", archive)) if word.endswith(".o")]
        objects = self.linked(link, objects)
        if not objects:
            raise SystemExit(f"{name} cannot be linked without a change")
        return Program(path, runner, variables, link, objects, *self.measure(path, runner, variables))

    def linked(self, link, objects):
        """Those of the objects that this command takes: of an archive, what is needed. Empty when it fails."""
        with scratch_folder() as folder:
            words = list(link)
            words[words.index("-o") + 1] = str(folder / "program")
            run = subprocess.run([*words, "-Wl,--trace", *QUICK_LINKER], cwd=self.folder, check=False, text=True,
                                 capture_output=True)
        if run.returncode != 0:
            return []
        taken = re.findall(r"\(([^()]+\.o)\)$", run.stdout, re.MULTILINE)
        return [each for each in objects if each in link or Path(each).name in taken]

    def measure(self, path, runner, variables):
        """The times of its tests, and the limit for all; proves that they pass as they are."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        with scratch_folder() as folder:
            run = subprocess.run([*runner, path], env=environment(variables, folder), cwd=folder, text=True, check=False,
                                 start_new_session=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if run.returncode != 0:
            raise SystemExit(f"{os.path.relpath(path, self.folder)} fails without a change")
        found = re.findall(r"^\[       OK \] (\S+) \((\d+) ms\)$", run.stdout, re.MULTILINE)
        seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        times = {name: int(time) for name, time in found}
        return times, 5 + int(3 * seconds)

    def arguments_for_clang(self, file):
        """Of the first object that is made of it or includes it."""
        words = self.commands[self.objects(file, sorted(self.commands))[0]][0]
        kept = []
        for word, following in zip(words, words[1:] + [""]):
            if word == "-isystem":
                kept += [word, following]
            elif word.startswith(("-I", "-D", "-std=", "-isystem")):
                kept.append(word)
        return kept

    def objects(self, file, among):
        path = str(self.tree / file)
        return [each for each in among
                if each in self.commands and (self.commands[each][1] == path or path in self.includes.get(each, ()))]
