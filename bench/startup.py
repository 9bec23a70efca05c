"""(2) From the start of the process to its item's registration with the tray."""

import statistics
import time

from contenders import BARE_TRAY, SONVARA, Running
from report import Row, duration, spread, times
from signals import SignalTimes

_WATCHER = "org.kde.StatusNotifierWatcher"

TITLE = "Start to tray item registered"


def measure(desktop, scale):
    registrations = SignalTimes(desktop.bus, _WATCHER, "StatusNotifierItemRegistered")
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
