"""No static of the program has a destructor: a worker that is still busy when the process ends may use it.

no_destructors_test.py ARCHIVE...  Looks into the compiled rooms for what the compiler leaves of such statics."""
import subprocess
import sys
import unittest

MARKS = ("__cxa_atexit", "guard variable for")


def traces(archive):
    symbols = subprocess.run(["nm", "--demangle", archive], capture_output=True, text=True, check=True).stdout
    return [line for line in symbols.splitlines() if any(mark in line for mark in MARKS)]


class NoDestructorsTest(unittest.TestCase):
    archives = []

    def test_no_static_is_destroyed_at_the_end_of_the_process(self):
        self.assertTrue(self.archives)
        for archive in self.archives:
            self.assertEqual(traces(archive), [], archive)


if __name__ == "__main__":
    NoDestructorsTest.archives = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
