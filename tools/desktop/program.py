"""The program itself, on a private desktop."""

import os
import threading

from desktop.processes import wait_until
from desktop.tray import TrayItem


class Sonvara:
    """The program, which runs on a desktop from now on and tells everything that it does in its log."""

    def __init__(self, desktop, command, **env):
        """`command` starts the program, `env` is added to the desktop's."""
        self._desktop = desktop
        # On a terminal, else a machine's journal would have the log. What is heard is the end of the terminal.
        terminal, end = os.openpty()
        self.process = desktop.start("sonvara", list(command), {
            "QT_LOGGING_RULES": "sonvara.Speech.debug=true;sonvara.MusicMonitor.debug=true", "PULSE_SINK": "speech",
            **env}, stdout=end, stderr=end)
        os.close(end)
        self.pid = self.process.pid
        self._log = bytearray()
        threading.Thread(target=self._read_all, args=(terminal,), daemon=True).start()

    def _read_all(self, terminal):
        try:
            while data := os.read(terminal, 65536):
                self._log += data
        except OSError:
            pass  # all who could write have ended
        os.close(terminal)

    def log(self):
        return self._log.decode(errors="replace")

    def tray(self):
        return TrayItem(self._desktop, self.pid)

    def lines(self):
        """What was handed to the voice."""
        return [line.partition("Announcing: ")[2] for line in self.log().splitlines() if "Announcing: " in line]

    def announced(self, title):
        """How many lines about the title were handed to the voice."""
        return sum(title in line for line in self.lines())

    def wait_for_line(self, title, limit=10.0):
        wait_until("the line about " + title[:50], lambda: self.announced(title), limit)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    def end(self, limit=2.0):
        """Asks the program to end, once it has begun, and returns its status; it must do so in time."""
        wait_until("the program's beginning", lambda: "monitoring started" in self.log())
        self.process.terminate()
        return self.process.wait(limit)
