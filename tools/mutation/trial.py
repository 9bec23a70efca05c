"""Makes a change in a copy of one file, compiles what is made of it, links it, and runs the tests of its room."""
import json
import os
import re
import resource
import shlex
import signal
import subprocess
from dataclasses import dataclass
from pathlib import Path

SLOW = 500  # milliseconds
LONGEST_WAIT = 120  # seconds for tests that wait for something that never comes
MOST_MEMORY = 8 << 30


def tests_of(room):
    """The folders of the tests that hold a room: the core and an adapter are tested as a whole."""
    if room == "platform/posix":
        return "posix", "linux/players"  # its part of the volume is tested with players
    if room.startswith("platform/linux"):
        return ("linux",)
    return ("volume",) if room == "volume" else ("core",)


def environment(variables):
    # A test with random numbers takes always the same: what is noticed by luck is not noticed.
    return os.environ | {"SEED": "1", "SESSIONS": "1000"} | variables


@dataclass
class Program:
    path: str         # of the tests' executable
    runner: list      # the words before it that run it
    environment: dict # what its tests are run with, beside our own
    link: list        # the words of the command that links it, run in the build's folder
    objects: list     # all that is linked, with what the archives hold
    slow: list        # its tests that take long
    limit: int        # seconds of processor time after which it hangs


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
        return Program(path, runner, variables, link, objects, *self.measure(path, runner, variables))

    def measure(self, path, runner, variables):
        """Its slow tests, and the limit for all; proves that they pass as they are."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        run = subprocess.run([*runner, path], env=environment(variables), text=True, check=False, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        if run.returncode != 0:
            raise SystemExit(f"{os.path.relpath(path, self.folder)} fails without a change")
        times = re.findall(r"^\[       OK \] (\S+) \((\d+) ms\)$", run.stdout, re.MULTILINE)
        seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        return [name for name, time in times if int(time) >= SLOW], 5 + int(3 * seconds)

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


class Trial:
    """A folder for one change after the other."""

    def __init__(self, build, folder, programs):
        self.build = build
        self.folder = Path(folder)
        self.programs = programs

    def outcome(self, change, source):
        """`source`: the whole changed file. "killed", "survived", or "no program" when it does not compile."""
        paths = self.made_programs(change.file, source)
        if paths is None:
            return "no program"
        for chosen in self.order(change.file):
            if not all(self.passes(path, program, chosen) for program, path in paths):
                return "killed"
        return "survived"

    def made_programs(self, name, source):
        """Pairs of a program and the path at which it is with this file; none when there is no such program."""
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(source)
        try:
            everything = list(dict.fromkeys(each for program in self.programs for each in program.objects))
            made = {each: str(self.folder / f"{number}.o") for number, each in enumerate(self.build.objects(name, everything))}
            if any(self.run(self.compile(name, each, output)) != 0 for each, output in made.items()):
                return None
        finally:
            file.unlink()
        paths = [(program, self.folder / f"program{number}") for number, program in enumerate(self.programs)
                 if set(made) & set(program.objects)]
        return None if any(self.run(self.link(program, made, path)) != 0 for program, path in paths) else paths

    def order(self, file):
        """First the tests that are most likely to notice, last those that take long."""
        own = Path(file).stem + "*"
        slow = ":".join(sorted({test for program in self.programs for test in program.slow}))
        return [own, f"-{own}:{slow}", f"{slow}:-{own}"] if slow else [own, f"-{own}"]

    def compile(self, file, name, output):
        words, source = self.build.commands[name]
        command = []
        skipped = 0
        for word in words:
            if skipped:
                skipped -= 1
            elif word in ("-MF", "-MT", "-o", "-c"):
                skipped = 1
            elif word not in ("-MD", "-g") and not word.endswith("/ccache"):
                command.append(word)
        if source == str(self.build.tree / file):
            source = str(self.folder / file)
        # The changed header stands before the real one, and its objects before those in the archives.
        return [command[0], f"-I{self.folder}/src", *command[1:], "-w", "-o", output, "-c", source]

    def link(self, program, made, path):
        words = list(program.link)
        words[words.index("-o") + 1] = str(path)
        inside = [made[each] for each in made if each in program.objects and each not in words]
        first = words.index("-o")
        return [*(made.get(word, word) for word in words[:first]), *inside,
                *(made.get(word, word) for word in words[first:]), "-Wl,--strip-debug"]

    def run(self, command):
        return subprocess.run(command, cwd=self.build.folder, check=False, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode

    def passes(self, path, program, chosen):
        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (program.limit, program.limit))
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        # What a test that is killed leaves behind goes with the folder.
        variables = program.environment | {"TMPDIR": str(self.folder)}
        tests = subprocess.Popen([*program.runner, path, f"--gtest_filter={chosen}", "--gtest_fail_fast", "--gtest_brief=1"],
                                 cwd=self.folder, env=environment(variables), preexec_fn=limit,
                                 start_new_session=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        try:
            return tests.wait(timeout=LONGEST_WAIT) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(tests.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            tests.wait()

    def try_unchanged(self, file):
        """Without a change it can be compiled and linked, or nothing that follows means anything."""
        if self.made_programs(file, (self.build.tree / file).read_bytes()) is None:
            raise SystemExit(f"{file} does not even compile without a change")
