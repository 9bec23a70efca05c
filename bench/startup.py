"""(2) From the start of the process to its item's registration with the tray."""

import statistics
import time

from gi.repository import GLib

from desktop.processes import wait_until

from contenders import BARE_TRAY, SONVARA, Running
from report import Row, duration, spread, times

_WATCHER = "org.kde.StatusNotifierWatcher"

TITLE = "Start to tray item registered"


def measure(desktop, scale):
    registrations = _Registrations(desktop.bus)
    found = {SONVARA: [], BARE_TRAY: []}
    for turn in range(1 + max(3, round(30 * scale))):
        for command, durations in found.items():
            began = time.monotonic()
            with Running(desktop, command):
                registered = registrations.next()
            if turn:  # the first start reads the files from the disk
                durations.append(registered - began)
    ours, beside = (statistics.median(found[command]) for command in (SONVARA, BARE_TRAY))
    return [Row(f"median of {len(found[SONVARA])} warm starts", f"{spread(found[SONVARA], duration)}, {times(ours / beside)}",
                f"{spread(found[BARE_TRAY], duration)} bare Qt tray program", "at most 1.2 times", ours <= 1.2 * beside)]


class _Registrations:
    """When items were registered, as the tray host tells everybody."""

    def __init__(self, bus):
        self._times = []
        bus.signal_subscribe(None, _WATCHER, "StatusNotifierItemRegistered", None, None, 0,
                             lambda *_: self._times.append(time.monotonic()))

    def next(self):
        """The next one's. What a program before has left to be heard is none."""
        while GLib.MainContext.default().iteration(False):
            pass
        self._times.clear()
        wait_until("the registration", self._has_come, 20, pause=0)
        return self._times[0]

    def _has_come(self):
        GLib.MainContext.default().iteration(False)
        if not self._times:
            time.sleep(0.0002)
        return self._times
