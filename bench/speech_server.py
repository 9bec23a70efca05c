"""A speech daemon that says nothing: takes lines in speech-dispatcher's protocol (SSIP) and notes when each came."""

import os
import queue
import socket
import threading
import time

_END_OF_DATA = b"\r\n.\r\n"
_EVENTS = (b"701", b"BEGIN"), (b"702", b"END")


class SpeechServer:
    """Every line has come when the end of its data has been read, and has been spoken at once."""

    def __init__(self, folder):
        self._path = os.path.join(folder, "bench-speech.sock")
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._listener.bind(self._path)
        self._listener.listen(16)
        self._lines = queue.Queue()  # a SimpleQueue can wait beyond its limit, for ever
        threading.Thread(target=self._accept, daemon=True).start()

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

    def _accept(self):
        while True:
            connection, _ = self._listener.accept()
            threading.Thread(target=self._serve, args=(_Client(connection, self._lines),), daemon=True).start()

    @staticmethod
    def _serve(client):
        try:
            client.serve()
        except OSError:
            pass  # it has gone


class _Client:

    def __init__(self, connection, lines):
        self._connection, self._lines = connection, lines
        self._buffer = b""
        self._count = 0
        self._hears_events = False

    def serve(self):
        while (command := self._read_until(b"\r\n")) is not None:
            word = command.upper()
            if word == b"SPEAK":
                self._take_line()
            elif word == b"QUIT":
                self._answer(b"231 HAPPY HACKING")
                break
            else:
                self._hears_events |= word.startswith(b"SET SELF NOTIFICATION")
                self._answer(b"210 OK STOPPED" if word.startswith(b"CANCEL") else b"208 OK SET")
        self._connection.close()

    def _take_line(self):
        self._answer(b"230 OK RECEIVING DATA")
        text = self._read_until(_END_OF_DATA)
        if text is None:
            return
        self._lines.put((time.monotonic(), text.decode(errors="replace")))
        self._count += 1
        number = str(self._count).encode()
        self._answer(b"225-%s\r\n225 OK MESSAGE QUEUED" % number)
        if self._hears_events:
            for code, name in _EVENTS:
                self._answer(b"%s-%s\r\n%s-1\r\n%s %s" % (code, number, code, code, name))

    def _read_until(self, end):
        """What came before `end`; None when the client has gone."""
        while end not in self._buffer:
            data = self._connection.recv(65536)
            if not data:
                return None
            self._buffer += data
        text, _, self._buffer = self._buffer.partition(end)
        return text

    def _answer(self, text):
        self._connection.sendall(text + b"\r\n")
