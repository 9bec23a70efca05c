"""(1) From a player's signal to the line in speech-dispatcher's hands."""

import statistics

from desktop.processes import Timeout, rest
from desktop.scripted_player import ScriptedPlayer

from contenders import FLOOR, PIPELINE, SONVARA, SPEECH_SERVER, Running, await_line
from report import Row, duration, spread, times
from desktop.speech_server import SpeechServer

REST = 1.2  # seconds after each line: by then it is over and the volume is back, as between most tracks
TURNS = 6  # the contenders take turns, so that none has the machine's better hour
TRACKS = 30  # of a turn

TITLE = "From a player's signal to the line in speech-dispatcher's hands"


def measure(desktop, scale):
    """`scale`: 1 for the full measure, less for a trial."""
    speech = SpeechServer(desktop, SPEECH_SERVER)
    player = ScriptedPlayer(desktop)
    found = {SONVARA: [], PIPELINE: [], FLOOR: []}
    for _ in range(TURNS if scale == 1 else 2):
        for command, turns in found.items():
            with Running(desktop, command, speech):
                await_line(player, speech)
                rest(REST)
                speech.take_lines()
                turns.append(change_tracks(player, speech, max(5, round(TRACKS * scale))))
                if command == SONVARA:
                    _check_volumes(player)
    player.leave()
    return _rows(found)


def change_tracks(player, speech, count):
    """The seconds from signal to line of each of `count` tracks."""
    player.take_volumes()
    return [_change_track(player, speech, f"Song {number:04}") for number in range(count)]


def _change_track(player, speech, title):
    told = player.play(title)
    while (line := speech.next_line(5)) is not None:
        if title in line[1]:
            rest(REST)
            return line[0] - told
    raise Timeout(f"no line about {title}")


def _check_volumes(player):
    """Ours did all of its work: it lowered the player for its lines and put the volume back."""
    volumes = player.take_volumes()
    if 35 not in volumes or player.volume() != 100:
        raise RuntimeError("the player was not lowered: the measure would be of something else")


def percentile(values, percent):
    """The smallest value that so many percent of all are not above."""
    return sorted(values)[max(0, -(-len(values) * percent // 100) - 1)]


def _rows(found):
    turns, tracks = len(found[SONVARA]), sum(map(len, found[SONVARA]))
    rows = []
    for what, figure in (("median", statistics.median), ("99th percentile", lambda values: percentile(values, 99))):
        ours, pipeline, floor = ([figure(turn) for turn in found[command]] for command in (SONVARA, PIPELINE, FLOOR))
        rows.append(Row(f"{what} of a turn: {turns} turns, {tracks} tracks in all", spread(ours, duration),
                        f"{spread(pipeline, duration)} pipeline, {spread(floor, duration)} floor", "below the pipeline",
                        statistics.median(ours) < statistics.median(pipeline)))
    ours, floor = (statistics.median(sum(found[command], [])) for command in (SONVARA, FLOOR))
    rows.append(Row("median of all tracks, as a multiple of the floor's", times(ours / floor), "", "at most 1.3",
                    ours <= 1.3 * floor))
    return rows
