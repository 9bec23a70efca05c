"""Starts processes and stops every one of them by its process id, with all that they started themselves."""

import contextlib
import ctypes
import os
import signal
import subprocess
import sys
import threading
import time

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_REQUESTS_TO_END = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)
_libc = ctypes.CDLL(None)


class Timeout(Exception):
    """A condition did not become true within its limit."""


def wait_until(what, condition, limit=10.0, pause=0.02):
    """Returns the first true value of condition(); raises Timeout, naming `what`, after `limit` seconds."""
    deadline = time.monotonic() + limit
    while True:
        _obey()
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Timeout(f"{what}: not within {limit:g} seconds")
        time.sleep(pause)


def rest(seconds):
    """Waits that long, or until this program is asked to end."""
    _request.wait(seconds)
    _obey()


class Processes:
    """The children of this process. There is one of these at a time: stop_all() ends all descendants."""

    def __init__(self, log_folder):
        self._log_folder = log_folder
        self._started = []
        # What a child leaves behind (a daemon, a helper that the bus started) becomes our child: so it is found.
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1)

    def start(self, name, arguments, env, **options):
        """Starts a process whose output goes to the log NAME.log; a session of its own keeps Ctrl-C from it."""
        with open(self.log_path(name), "ab") as log:
            streams = {"stdin": subprocess.DEVNULL, "stdout": log, "stderr": log}
            process = subprocess.Popen(arguments, env=env, start_new_session=True, preexec_fn=_die_with_parent,
                                       **{**streams, **options})
        self._started.append(process)
        return process

    def logs(self):
        """The names under which processes were started."""
        return sorted(name.removesuffix(".log") for name in os.listdir(self._log_folder) if name.endswith(".log"))

    def log_path(self, name):
        return os.path.join(self._log_folder, name + ".log")

    def stop_all(self):
        """Asks all descendants to end, newest first; those left after two seconds are ended."""
        if not _stop_descendants(signal.SIGTERM):
            _stop_descendants(signal.SIGKILL)
        for process in self._started:
            process.poll()  # so that Python, too, knows that they have ended


def end_orderly():
    """From now on a request to end unwinds this program, so that contexts close; so does the end of its parent. It does
    so at the next wait_until() or rest()."""
    for number in _REQUESTS_TO_END:
        signal.signal(number, _request.take)
    _die_with_parent()


class _Request(threading.Event):
    """To end. An exception of the signal's own could come while an object is being destroyed, and be lost."""

    number = None

    def take(self, number, _):
        for other in _REQUESTS_TO_END:  # one is enough: a second one must not cut the closing short
            signal.signal(other, signal.SIG_IGN)
        self.number = number
        self.set()


_request = _Request()


def _obey():
    if _request.is_set():
        _request.clear()
        sys.exit(128 + _request.number)


@contextlib.contextmanager
def undisturbed():
    """Inside, requests to end wait: a closing that is under way is not to be cut short by one."""
    blocked = signal.pthread_sigmask(signal.SIG_BLOCK, _REQUESTS_TO_END)
    try:
        yield
    finally:
        signal.pthread_sigmask(signal.SIG_SETMASK, blocked)


def stop(process, limit=5.0):
    """Asks one process to end, ends it after the limit, and returns its exit status."""
    process.terminate()
    try:
        return process.wait(limit)
    except subprocess.TimeoutExpired:
        process.kill()
        return process.wait()


def _stop_descendants(number, limit=2.0):
    """Whether all have ended within the limit."""
    deadline = time.monotonic() + limit
    asked = set()
    while time.monotonic() < deadline:
        _reap()
        left = descendants(os.getpid())
        if not left:
            return True
        for pid in reversed([pid for pid in left if pid not in asked]):
            _signal(pid, number)
        asked.update(left)
        time.sleep(0.02)
    return False


def _die_with_parent():
    # The last resort, should the parent be killed before it could stop anything.
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


def _signal(pid, number):
    try:
        os.kill(pid, number)
    except (ProcessLookupError, PermissionError):  # fusermount is root's, and ends with what has started it
        pass


def _reap():
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def descendants(root):
    """The process ids below root, parents before children."""
    children = {}
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                parent = int(stat.read().rpartition(")")[2].split()[1])
        except (FileNotFoundError, ProcessLookupError):
            continue
        children.setdefault(parent, []).append(int(entry))
    found = list(children.get(root, ()))
    for pid in found:
        found.extend(children.get(pid, ()))
    return found


def private_memory(pid):
    """KiB that the process has written and nobody shares: pages of libraries count as its own or not as others run."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        return sum(int(line.split()[1]) for line in file if line.startswith(("Private_Dirty:", "Swap:")))
