"""(1) From a player's signal to the line in speech-dispatcher's hands."""

import statistics

from desktop.processes import Timeout, rest
from desktop.scripted_player import ScriptedPlayer

from contenders import FLOOR, PIPELINE, SONVARA, SPEECH_SERVER, Running, await_line
from report import Row, duration, times
from desktop.speech_server import SpeechServer

REST = 1.2  # seconds after each line: by then it is over and the volume is back, as between most tracks
ROUNDS = 6  # the contenders take turns, so that none has the machine's better hour

TITLE = "From a player's signal to the line in speech-dispatcher's hands"


def measure(desktop, scale):
    """`scale`: 1 for the full measure, less for a trial."""
    speech = SpeechServer(desktop, SPEECH_SERVER)
    player = ScriptedPlayer(desktop)
    found = {SONVARA: [], PIPELINE: [], FLOOR: []}
    rounds = ROUNDS if scale == 1 else 2
    for _ in range(rounds):
        for command, latencies in found.items():
            with Running(desktop, command, speech):
                await_line(player, speech)
                rest(REST)
                speech.take_lines()
                latencies += change_tracks(player, speech, round(300 * scale / rounds))
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
    rows = []
    middle = {command: statistics.median(values) for command, values in found.items()}
    last = {command: percentile(values, 99) for command, values in found.items()}
    for what, figures in ((f"median of {len(found[SONVARA])} tracks", middle), ("99th percentile", last)):
        beside = f"{duration(figures[PIPELINE])} pipeline, {duration(figures[FLOOR])} floor"
        rows.append(Row(what, duration(figures[SONVARA]), beside, "below the pipeline",
                        figures[SONVARA] < figures[PIPELINE]))
    ratio = middle[SONVARA] / middle[FLOOR]
    rows.append(Row("median, as a multiple of the floor's", times(ratio), "", "at most 2.0", ratio <= 2))
    return rows
