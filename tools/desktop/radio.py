"""An internet radio station on this machine: an MP3 without an end, whose songs' titles come between the sounds."""

import http.server
import os
import threading
import time

from desktop.tracks import Track, make_tracks

MOUNT = "wave-128"  # the end of its address
_RATE = 16000  # bytes in a second: 128 kbit/s
_AHEAD = 3  # seconds that a listener gets at once, to fill its buffers
_BEGIN = 4096  # a station is joined in the midst of its sound, and not where a file tells its length


class Station:
    """Serves until the end of the context. A new song begins every `seconds`, from the first listener on."""

    def __init__(self, folder, name, songs, seconds=10):
        """`songs`: their titles; after the last one it stays at that."""
        file, = make_tracks([Track("", "", "", 250, 60, "mp3")], os.path.join(folder, "station"))
        with open(file, "rb") as sound:
            self.sound = sound.read()[_BEGIN:]
        self.name, self._songs, self._seconds, self._begin = name, songs, seconds, None
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), _Listener)
        self._server.station = self
        self.address = f"http://127.0.0.1:{self._server.server_port}/{MOUNT}.mp3"

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self._server.shutdown()

    def begin(self):
        self._begin = self._begin or time.monotonic()

    def number(self):
        """Of the song that is on the air; -1 until somebody listens."""
        if self._begin is None:
            return -1
        elapsed = time.monotonic() - self._begin
        return min(int(elapsed / self._seconds), len(self._songs) - 1)

    def song(self):
        return self._songs[self.number()]


class _Listener(http.server.BaseHTTPRequestHandler):
    def do_HEAD(self):
        self.send_response(200)
        self.send_header("Content-Type", "audio/mpeg")
        self.send_header("icy-name", self.server.station.name)
        self.send_header("icy-br", "128")
        if self._wants_titles():
            self.send_header("icy-metaint", str(_RATE))
        self.end_headers()

    def do_GET(self):
        self.server.station.begin()
        self.do_HEAD()
        begin, second, told = time.monotonic(), 0, None
        while True:
            self.wfile.write(self._sound(second))
            if self._wants_titles():
                song = self.server.station.song()
                self.wfile.write(_title(song) if song != told else b"\0")
                told = song
            second += 1
            time.sleep(max(0, second - _AHEAD - (time.monotonic() - begin)))

    def _sound(self, second):
        sound = self.server.station.sound
        first = second * _RATE % len(sound)
        return (sound + sound)[first:first + _RATE]

    def _wants_titles(self):
        return self.headers.get("Icy-MetaData") == "1"

    def handle(self):
        try:
            super().handle()
        except ConnectionError:
            pass  # it listens no more

    def log_message(self, *_):  # overrides
        pass


def _title(song):
    text = f"StreamTitle='{song}';".encode()
    count = -(-len(text) // 16)
    return bytes([count]) + text.ljust(16 * count, b"\0")
