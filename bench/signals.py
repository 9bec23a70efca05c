"""When a signal comes over a bus."""

import time

from gi.repository import GLib

from desktop.processes import wait_until


class SignalTimes:

    def __init__(self, bus, interface, member, path=None, is_wanted=lambda parameters: True):
        """`is_wanted`: whether a signal with these parameters counts."""
        self._member, self._time = member, None

        def take(*signal):
            if self._time is None and is_wanted(signal[5].unpack()):
                self._time = time.monotonic()

        bus.signal_subscribe(None, interface, member, path, None, 0, take)

    def next(self, cause=lambda: None):
        """Calls `cause`, and returns when the first signal came after that (monotonic clock)."""
        while GLib.MainContext.default().iteration(False):
            pass  # what has come before is another's
        self._time = None
        cause()
        return wait_until(self._member, self._has_come, 20, pause=0)

    def _has_come(self):
        GLib.MainContext.default().iteration(False)
        if self._time is None:
            time.sleep(0.0002)
        return self._time
