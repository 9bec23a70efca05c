"""tools/mutate makes the changes that it promises, sees which of them a room's tests notice, and leaves the tree alone."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

NINJA = """
rule cxx
  command = c++ -std=c++20 -I{tree}/src -MD -MF $out.d -o $out -c $in
  depfile = $out.d
  deps = gcc
rule link
  command = : && c++ $in -o $out && :
build code.o: cxx {tree}/src/log/Code.cpp
build tests.o: cxx {tree}/tests/core/Tests.cpp
build CodeTest.cpp.o: cxx {tree}/tests/core/CodeTest.cpp
build WideTest.cpp.o: cxx {tree}/tests/core/WideTest.cpp
build tests/core/core_tests: link code.o tests.o CodeTest.cpp.o WideTest.cpp.o
"""
CTEST = 'add_test(all "{tree}/build/tests/core/core_tests")\nset_tests_properties(all PROPERTIES LABELS unit)\n'
HEADER = "#pragma once\ninline constexpr int most = 7;\nint twice(int number);\nbool isFull(int number);\nint other(int number);\n"
CODE = """#include "log/Code.h"
int twice(int number)
{
    return number * 2;
}
bool isFull(int number)
{
    return number >= most;
}
"""
TESTS = """#include "log/Code.h"
int main()
{
    return twice(3) == 6 && isFull(7) && !isFull(6) ? 0 : 1;
}
"""


class Tree:
    """A project with one room and its tests, built."""

    def __init__(self, folder, code=CODE, tests=TESTS, code_test="", wide_test=""):
        self.folder = Path(folder).resolve()
        for name, text in {"src/log/Code.h": HEADER, "src/log/Code.cpp": code, "tests/core/Tests.cpp": tests,
                           "tests/core/CodeTest.cpp": code_test, "tests/core/WideTest.cpp": wide_test, "src/ports/Wide.h": "",
                           "tools/mutation/equivalent.txt": "", "build/build.ninja": NINJA.format(tree=self.folder),
                           "build/tests/core/CTestTestfile.cmake": CTEST.format(tree=self.folder)}.items():
            self.write(name, text)
        for room in ("app", "ai", "monitor", "speech", "system", "ui", "support", "volume"):
            (self.folder / "src" / room).mkdir()
        subprocess.run(["ninja", "-C", self.folder / "build", "--quiet"], check=True)
        self.write("build/compile_commands.json", subprocess.run(
            ["ninja", "-C", self.folder / "build", "-t", "compdb", "cxx"], check=True, capture_output=True, text=True).stdout)

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def git(self, *arguments):
        subprocess.run(["git", "-C", self.folder, "-c", "user.name=a", "-c", "user.email=a@b", "-c", "protocol.file.allow=always",
                        *arguments], check=True, capture_output=True)

    def commit(self):
        self.git("add", "src", "tests")
        self.git("commit", "-m", "one")

    def mutate(self, *arguments):
        """Its exit status and what it prints."""
        run = subprocess.run([ROOT / "tools/mutate", "--tree", self.folder, "--build", self.folder / "build", "--jobs", "2",
                              *arguments], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr

    def changes(self, *arguments):
        """Pairs of what stands in the list behind - and +."""
        status, output = self.mutate("--list", *arguments)
        if status != 0:
            raise AssertionError(output)
        found = set()
        for block in output.split("# ")[1:]:
            lines = block.splitlines()
            found.add(tuple("\n".join(line[2:] for line in lines if line.startswith(sign)) for sign in ("- ", "+ ")))
        return found


class MutateTest(unittest.TestCase):
    def tree(self, **files):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return Tree(folder.name, **files)

    def test_tests_that_notice_everything_pass(self):
        status, output = self.tree().mutate("log")
        self.assertEqual((status, output), (0, "log: 7 of 7 changes were noticed\n"))

    def test_a_change_that_no_test_notices_is_shown_with_its_place(self):
        tree = self.tree(tests=TESTS.replace("isFull(7) && ", ""))
        status, output = tree.mutate("src/log/Code.cpp")
        self.assertEqual(status, 1)
        self.assertIn("# src/log/Code.cpp:8: operator\nsrc/log/Code.cpp: isFull\n- return number >= most;\n"
                      "+ return number > most;\n", output)

    def test_a_change_in_a_header_reaches_all_that_include_it(self):
        tree = self.tree(tests=TESTS.replace("isFull(7) && !isFull(6)", "isFull(most) && !isFull(most - 1)"))
        status, output = tree.mutate("src/log/Code.h")
        self.assertEqual(status, 1)
        self.assertIn("+ inline constexpr int most = 8;", output)

    def test_a_change_in_a_header_is_tried_first_by_the_tests_that_include_the_least(self):
        tree = self.tree(tests="bool isRight = true;\nint main()\n{\n    return isRight ? 0 : 1;\n}\n",
                         code_test='#include "log/Code.h"\nextern bool isRight;\n'
                         "bool isNoticed = isRight = isFull(7) && !isFull(6);\n",
                         wide_test='#include "log/Code.h"\n#include "ports/Wide.h"\nstatic_assert(most == 7);\n')
        status, output = tree.mutate("src/log/Code.h")
        # Of all tests together there is no program with this change.
        self.assertEqual((status, output), (0, "log: 2 of 2 changes were noticed\n"))

    def test_tests_that_never_end_have_noticed(self):
        loop = "int other(int number)\n{\n    while (number < 3) {\n        ++number;\n    }\n    return number;\n}\n"
        tree = self.tree(code=CODE + loop, tests=TESTS.replace("? 0", "&& other(2) == 3 ? 0"))
        status, output = tree.mutate("log")
        self.assertEqual(status, 0, output)

    def test_a_crash_has_noticed(self):
        code = CODE.replace("return number * 2;", "int* place = nullptr;\n    place = &number;\n    return 2 * *place;")
        status, output = self.tree(code=code).mutate("log")
        self.assertEqual(status, 0, output)

    def test_tests_that_fail_by_themselves_end_the_run(self):
        status, output = self.tree(tests=TESTS.replace("== 6", "== 7")).mutate("log")
        self.assertEqual(status, 1)
        self.assertIn("fails without a change", output)

    def test_tests_are_run_as_ctest_runs_them(self):
        tests = TESTS.replace("#include", "#include <cstdlib>\n#include").replace("return twice", 'return std::getenv("A") && twice')
        tree = self.tree(tests=tests)
        tree.write("build/tests/core/CTestTestfile.cmake",
                   CTEST.format(tree=tree.folder).replace('(all "', '(all "env" "A=1" "'))
        status, output = tree.mutate("log")
        self.assertEqual((status, output), (0, "log: 7 of 7 changes were noticed\n"))

    def test_what_is_listed_is_not_tried(self):
        tree = self.tree(tests=TESTS.replace("isFull(7) && ", ""))
        tree.write("tools/mutation/equivalent.txt", "# A remark.\n\nsrc/log/Code.cpp: isFull\n- return number >= most;\n"
                   "+ return number > most;\nNobody asks.\n\nsrc/log/Code.cpp: isFull\n- return number >= most;\n"
                   "+ return !(number >= most);\nNobody asks.\n\nsrc/log/Code.h\n- inline constexpr int most = 7;\n"
                   "+ inline constexpr int most = 8;\nNobody asks.\n")
        status, output = tree.mutate("log")
        self.assertEqual((status, output), (0, "log: 4 of 4 changes were noticed\n"))

    def test_the_list_stays_valid_when_the_file_is_edited_elsewhere(self):
        tree = self.tree()
        tree.write("tools/mutation/equivalent.txt",
                   "src/log/Code.cpp: isFull\n- return number >= most;\n+ return number > most;\nNobody asks.\n")
        tree.write("src/log/Code.cpp", CODE.replace("int twice", "// Two of them.\n\nint twice").replace("* 2", "* 4 / 2"))
        self.assertNotIn(("return number >= most;", "return number > most;"), tree.changes("log"))

    def test_an_entry_of_the_list_that_is_no_change_any_more_is_found(self):
        tree = self.tree()
        tree.write("tools/mutation/equivalent.txt",
                   "src/log/Code.cpp: isFull\n- return number >= least;\n+ return number > least;\nNobody asks.\n")
        status, output = tree.mutate("log")
        self.assertEqual(status, 1)
        self.assertIn("least", output)

    def test_an_entry_without_a_reason_is_found(self):
        tree = self.tree()
        tree.write("tools/mutation/equivalent.txt", "src/log/Code.cpp: isFull\n- a\n+ b\n")
        self.assertEqual(tree.mutate("log")[0], 1)

    def test_a_sample_is_the_same_again_also_after_an_edit_elsewhere(self):
        tree = self.tree()
        once = tree.changes("--sample", "3", "src/log/Code.cpp")
        self.assertEqual(len(once), 3)
        self.assertEqual(tree.changes("--sample", "3", "src/log/Code.cpp"), once)
        self.assertNotEqual(tree.changes("--sample", "3", "--seed", "another", "src/log/Code.cpp"), once)
        tree.write("src/log/Code.cpp", CODE.replace("int twice", "// Two of them.\n\nint twice"))
        self.assertEqual(tree.changes("--sample", "3", "src/log/Code.cpp"), once)

    def test_it_leaves_the_tree_as_it_is(self):
        tree = self.tree()

        def contents():
            return {path: path.read_bytes() for path in tree.folder.rglob("*")
                    if path.is_file() and not path.is_relative_to(tree.folder / "build/tests")}  # ctest's notes
        before = contents()
        tree.mutate("log")
        self.assertEqual(contents(), before)

    def test_what_the_last_commit_touched_is_tried(self):
        tree = self.tree()
        tree.git("init")
        tree.commit()
        tree.write("tests/core/Tests.cpp", TESTS + "\n")
        tree.commit()
        status, output = tree.mutate("--last-commit")
        self.assertEqual(status, 0)
        self.assertIn("Skipped: ", output)
        tree.write("src/log/Code.h", HEADER + "\n")
        tree.commit()
        self.assertEqual(tree.changes("--last-commit"), tree.changes("src/log/Code.h"))
        tree.write("src/log/Code.cpp", CODE + "\n")
        self.assertEqual(tree.changes("--last-commit"), tree.changes("log"))

    def test_of_a_clone_of_one_commit_everything_is_tried(self):
        tree = self.tree()
        tree.git("init")
        tree.commit()
        self.assertEqual(tree.changes("--last-commit"), tree.changes("log"))


if __name__ == "__main__":
    unittest.main()
