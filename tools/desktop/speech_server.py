"""A speech daemon that says nothing, and tells which lines have come and when."""

import os
import queue
import subprocess
import threading

from desktop.processes import wait_until


class SpeechServer:

    def __init__(self, desktop, program):
        """`program`: the path of tests/linux/speech/speech_server in a build."""
        self._path = os.path.join(desktop.folder, "silent-speech.sock")
        self._process = desktop.start("speech-server", [program, self._path], stdout=subprocess.PIPE, text=True,
                                      encoding="utf-8")
        wait_until("the speech server", lambda: os.path.exists(self._path))
        self._lines = queue.Queue()  # a SimpleQueue can wait beyond its limit, for ever
        threading.Thread(target=self._read, daemon=True).start()

    @property
    def environment(self):
        """What a program needs to speak here."""
        return {"SPEECHD_ADDRESS": "unix_socket:" + self._path}

    def next_line(self, limit):
        """Waits for the next line: when it came (monotonic clock) and its text; None after the limit."""
        try:
            return self._lines.get(timeout=limit)
        except queue.Empty:
            return None

    def take_lines(self):
        """All lines that have come and were not asked for."""
        lines = []
        while (line := self.next_line(0.001)) is not None:
            lines.append(line)
        return lines

    def _read(self):
        for line in self._process.stdout:
            time, text = line.split(" ", 1)
            self._lines.put((float(time), text.rstrip("\n")))
