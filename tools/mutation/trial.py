"""Makes a change in a copy of one file, compiles what is made of it, links it, and runs the tests of its room."""
import os
import re
import resource
import signal
import subprocess
from dataclasses import replace
from pathlib import Path

from mutation.build import QUICK_LINKER, environment

LONGEST_WAIT = 120  # seconds beyond what the tests take, for those that wait for something that never comes
MOST_MEMORY = 8 << 30
MOST_REMEMBERED = 5


def is_test(path):
    return path.endswith("Test.cpp.o")


class Trial:
    """A folder for one change after the other."""

    def __init__(self, build, folder, programs, narrow, noticed):
        self.build = build
        self.folder = Path(folder)
        self.stages = [each for each in (narrow, programs) if each]
        self.noticed = noticed  # the tests that noticed the latest changes of this file

    def outcome(self, change, source):
        """`source`: the whole changed file. "killed", "hung", "survived", or "no program" when it does not compile."""
        for programs in self.stages:
            made = self.made_objects(change.file, source, programs)
            if made is None:
                return "no program"
            including = [program for program in programs if set(made) & set(program.objects)]
            paths = {}
            for chosen in self.order(change.file, including):
                for number, program in enumerate(including):
                    if not program.has(chosen):
                        continue
                    if number not in paths:
                        paths[number] = self.folder / f"program{number}"
                        if self.run(self.link(program, made, paths[number])) != 0:
                            return "no program"
                    outcome = self.outcome_of_tests(paths[number], program, chosen)
                    if outcome != "survived":
                        return outcome
        return "survived"

    def made_objects(self, name, source, programs):
        """The objects that are made of this file or include it, and where each is; none when it does not compile."""
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(source)
        try:
            everything = list(dict.fromkeys(each for program in programs for each in program.objects))
            made = {each: str(self.folder / f"{number}.o") for number, each in enumerate(self.build.objects(name, everything))}
            if any(self.run(self.compile(name, each, output)) != 0 for each, output in made.items()):
                return None
            return made
        finally:
            file.unlink()

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
        objects = self.build.linked(link, program.objects)
        return [replace(program, link=link, objects=objects)] if objects else []

    def order(self, file, programs):
        """First the tests that are most likely to notice, last those that take long."""
        parts = [":".join(self.noticed), Path(file).stem + "*"]
        slow = ":".join(sorted({test for program in programs for test in program.slow}))
        before = list(filter(None, parts))
        ordered = [f"{part}-{':'.join(before[:number])}" for number, part in enumerate(before)]
        return [*ordered, f"-{':'.join([*before, slow])}", *([f"{slow}-{':'.join(before)}"] if slow else [])]

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

        said = self.folder / "said"
        with said.open("wb") as out:
            tests = subprocess.Popen([*program.runner, path, f"--gtest_filter={chosen}", "--gtest_fail_fast", "--gtest_brief=1"],
                                     cwd=self.folder, env=environment(program.environment, self.folder), preexec_fn=limit,
                                     start_new_session=True, stdin=subprocess.DEVNULL, stdout=out,
                                     stderr=subprocess.DEVNULL)
        try:
            if tests.wait(timeout=LONGEST_WAIT + program.time_of(chosen)) == 0:
                return "survived"
            self.remember(re.findall(r"^\[  FAILED  \] ([\w/.]+)", said.read_text(errors="replace"), re.MULTILINE))
            return "killed"
        except subprocess.TimeoutExpired:
            return "hung"
        finally:
            try:
                os.killpg(tests.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            tests.wait()

    def remember(self, tests):
        """What has noticed one change of a file is likely to notice the next."""
        for test in tests:
            self.noticed[:] = [test, *(each for each in self.noticed if each != test)][:MOST_REMEMBERED]

    def try_unchanged(self, file):
        """Without a change it can be compiled and linked, or nothing that follows means anything."""
        made = self.made_objects(file, (self.build.tree / file).read_bytes(), self.stages[0])
        if made is None or any(self.run(self.link(program, made, self.folder / "program")) != 0
                               for program in self.stages[0] if set(made) & set(program.objects)):
            raise SystemExit(f"{file} does not even compile without a change")
