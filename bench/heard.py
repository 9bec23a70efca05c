"""(7) From a player's signal to the voice's first sound, and whether the music is low by then; judged by what is heard."""

import os
import time

from desktop.players import Player
from desktop.sound import MUSIC, SPEECH, Recorder
from desktop.tracks import Track, make_tracks

from contenders import PIPELINE, SONVARA, Running
from report import Row, duration, spread
from signals import SignalTimes

TRACKS = {SONVARA: 100, PIPELINE: 30}
LENGTH = 30  # seconds: no track ends by itself
PAUSE = 1.5  # seconds of silence after a line: by then the music is loud again
AT_FIRST = 0.1  # seconds from the voice's first sound on, in which the music must be low
LOWER = 13  # decibels: half of what it is to sink by, as cmus is at 35 % (27)

TITLE = "From a player's signal to the first sound of the voice"


def measure(desktop, scale):
    """With cmus, a real player, and the voice of a fresh desktop."""
    files = make_tracks([Track(f"Song {number:03}", f"Artist {number}", f"Album {number}", 300 + 5 * number, LENGTH)
                         for number in range(2 + max(TRACKS.values()))], os.path.join(desktop.folder, "tracks"))
    recorder = Recorder(desktop)
    found = {command: _Listener(desktop, recorder).run(command, files, max(3, round(scale * count)))
             for command, count in TRACKS.items()}
    delays = {command: [delay for delay, _ in tracks] for command, tracks in found.items()}
    low = sum(is_low for _, is_low in found[SONVARA])
    count = len(found[SONVARA])
    return [Row(f"{count} tracks, beside it {len(found[PIPELINE])}", spread(delays[SONVARA], duration),
                f"{spread(delays[PIPELINE], duration)} pipeline", "", None),
            Row("tracks whose music is low at that sound", f"{low} of {count}", "", "at least 99 of 100", low >= 0.99 * count)]


class _Listener:
    """Changes the tracks of a player, and hears what comes of it."""

    def __init__(self, desktop, recorder):
        self._desktop, self._recorder = desktop, recorder

    def _lead(self):
        """By how much the clock is ahead of the recording now; on a busy machine the recording may lose something."""
        return min(self._lead_now() for _ in range(100))

    def _lead_now(self):
        time.sleep(0.001)  # it grows by some milliseconds at once
        return time.monotonic() - self._recorder.seconds()

    def run(self, command, files, count):
        """(seconds to the first sound, whether the music was low then) of each track."""
        with Running(self._desktop, command):
            player = Player(self._desktop, "cmus", files[:count + 2])
            signals = SignalTimes(self._desktop.bus, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                  "/org/mpris/MediaPlayer2", lambda parameters: "Metadata" in parameters[1])
            self._hear_line()
            tracks = [self._change_track(player, signals) for _ in range(count + 1)][1:]  # the first one warms up
            player.quit()
        return tracks

    def _change_track(self, player, signals):
        lead = self._lead()
        told = signals.next(lambda: player.call("Next")) - lead
        line = self._hear_line()
        first = self._recorder.onset(SPEECH, line)
        loud = self._recorder.level_between(MUSIC, told - 0.5, told)
        return first - told, self._recorder.loudest_between(MUSIC, first, first + AT_FIRST) < loud - LOWER

    def _hear_line(self):
        self._recorder.next_sound(SPEECH, 10)
        self._recorder.next_silence(SPEECH, 20, PAUSE)
        return self._recorder.sounds(SPEECH)[-1]
