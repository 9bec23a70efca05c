"""What the kernel knows of a running process: memory, processor time, wake-ups, loaded libraries."""

import os
import threading
import time

_KIB = 1024


def proportional_memory(pid):
    """KiB that nobody shares, and the process's share of what several have mapped."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        return next(int(line.split()[1]) for line in file if line.startswith("Pss:"))


def processor_time(pid):
    """Seconds that all threads of the process have run, also those that have ended, to the nanosecond."""
    return time.clock_gettime(~pid << 3 | 2)  # the number of its clock, as clock_getcpuclockid makes it


def libraries(pid):
    """(number, KiB) of the shared objects that the process has mapped, as large as they are on disk."""
    with open(f"/proc/{pid}/maps", encoding="utf-8") as file:
        names = {line.split(maxsplit=5)[5].strip() for line in file if ".so" in line}
    return len(names), sum(os.path.getsize(name) for name in names) // _KIB


class WakeUps:
    """Counts from its construction on how often threads of a process gave up the processor to wait.

    Each wake-up ends such a wait, and a thread also waits for locks, so this is an upper bound. The threads are looked
    at every half second, so that those that end are counted until shortly before.
    """

    def __init__(self, pid):
        self._pid = pid
        self._first = _waits(pid)
        self._last = dict(self._first)
        self._over = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def stop(self):
        """Ends the count and returns it."""
        self._over.set()
        self._thread.join()
        self._last.update(_waits(self._pid))
        return sum(count - self._first.get(thread, 0) for thread, count in self._last.items())

    def _watch(self):
        while not self._over.wait(0.5):
            self._last.update(_waits(self._pid))


def _waits(pid):
    """For each thread its number of voluntary waits."""
    found = {}
    for thread in os.listdir(f"/proc/{pid}/task"):
        try:
            with open(f"/proc/{pid}/task/{thread}/status", encoding="utf-8", errors="replace") as file:
                found[thread] = next(int(line.split()[1]) for line in file if line.startswith("voluntary"))
        except (FileNotFoundError, ProcessLookupError):
            pass  # it has ended meanwhile
    return found
