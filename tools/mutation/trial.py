"""Makes a change in a copy of one file, compiles what is made of it, links it, and runs the tests of its room."""
import fnmatch
import json
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
from dataclasses import dataclass, replace
from pathlib import Path

SLOW = 500  # milliseconds
LONGEST_WAIT = 120  # seconds for tests that wait for something that never comes
MOST_MEMORY = 8 << 30
QUICK_LINKER = ["-fuse-ld=mold"] if shutil.which("mold") else []


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
    times: dict       # the milliseconds that each of its tests takes
    limit: int        # seconds of processor time after which it hangs

    @property
    def slow(self):
        return [name for name, time in self.times.items() if time >= SLOW]

    def limit_of(self, chosen):
        """Of the tests that are chosen, as GoogleTest writes it."""
        wanted, _, unwanted = chosen.partition("-")
        time = sum(time for name, time in self.times.items()
                   if fits(name, wanted or "*") and not fits(name, unwanted))
        return min(self.limit, 3 + 3 * time // 1000)


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
        return Program(path, runner, variables, link, objects, *self.measure(path, runner, variables))

    def measure(self, path, runner, variables):
        """The times of its tests, and the limit for all; proves that they pass as they are."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        run = subprocess.run([*runner, path], env=environment(variables), text=True, check=False, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
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


def is_test(path):
    return path.endswith("Test.cpp.o")


class Trial:
    """A folder for one change after the other."""

    def __init__(self, build, folder, programs, narrow=()):
        self.build = build
        self.folder = Path(folder)
        self.stages = [each for each in (narrow, programs) if each]

    def outcome(self, change, source):
        """`source`: the whole changed file. "killed", "hung", "survived", or "no program" when it does not compile."""
        for programs in self.stages:
            paths = self.made_programs(change.file, source, programs)
            if paths is None:
                return "no program"
            for chosen in self.order(change.file, programs):
                for program, path in paths:
                    outcome = self.outcome_of_tests(path, program, chosen)
                    if outcome != "survived":
                        return outcome
        return "survived"

    def made_programs(self, name, source, programs):
        """Pairs of a program and the path at which it is with this file; none when there is no such program."""
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(source)
        try:
            everything = list(dict.fromkeys(each for program in programs for each in program.objects))
            made = {each: str(self.folder / f"{number}.o") for number, each in enumerate(self.build.objects(name, everything))}
            if any(self.run(self.compile(name, each, output)) != 0 for each, output in made.items()):
                return None
        finally:
            file.unlink()
        paths = [(program, self.folder / f"program{number}") for number, program in enumerate(programs)
                 if set(made) & set(program.objects)]
        return None if any(self.run(self.link(program, made, path)) != 0 for program, path in paths) else paths

    def narrow(self, file):
        """Of what many objects include: the program with the tests that include this file and the least else. Most changes
        are noticed by it, which is made of a few objects."""
        programs = self.stages[-1]
        including = [(len(self.build.includes[test]), test, program) for program in programs
                     for test in self.build.objects(file, program.objects) if is_test(test)]
        if not including:
            return []
        _, chosen, program = min(including, key=lambda each: each[:2])
        link = [word for word in program.link if word == chosen or not is_test(word)]
        run = subprocess.run(self.link(replace(program, link=link), {}, self.folder / "narrow") + ["-Wl,--trace"],
                             cwd=self.build.folder, check=False, text=True, capture_output=True)
        linked = re.findall(r"\(([^()]+\.o)\)$", run.stdout, re.MULTILINE)
        objects = [each for each in program.objects if each in link or Path(each).name in linked]
        return [replace(program, link=link, objects=objects)] if run.returncode == 0 else []

    def order(self, file, programs):
        """First the tests that are most likely to notice, last those that take long."""
        own = Path(file).stem + "*"
        slow = ":".join(sorted({test for program in programs for test in program.slow}))
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
                *(made.get(word, word) for word in words[first:]), "-Wl,--strip-debug", *QUICK_LINKER]

    def run(self, command):
        return subprocess.run(command, cwd=self.build.folder, check=False, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode

    def outcome_of_tests(self, path, program, chosen):
        def limit():
            seconds = program.limit_of(chosen)
            resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
            resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        # What a test that is killed leaves behind goes with the folder.
        variables = program.environment | {"TMPDIR": str(self.folder)}
        tests = subprocess.Popen([*program.runner, path, f"--gtest_filter={chosen}", "--gtest_fail_fast", "--gtest_brief=1"],
                                 cwd=self.folder, env=environment(variables), preexec_fn=limit,
                                 start_new_session=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        try:
            return "killed" if tests.wait(timeout=LONGEST_WAIT) != 0 else "survived"
        except subprocess.TimeoutExpired:
            return "hung"
        finally:
            try:
                os.killpg(tests.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            tests.wait()

    def try_unchanged(self, file):
        """Without a change it can be compiled and linked, or nothing that follows means anything."""
        if self.made_programs(file, (self.build.tree / file).read_bytes(), self.stages[0]) is None:
            raise SystemExit(f"{file} does not even compile without a change")
