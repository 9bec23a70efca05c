"""(6) How latency, memory and processor time grow with the players on the bus and with the changes of tracks."""

import statistics
import time

from desktop.processes import private_memory, rest
from desktop.tray import TrayItem

from at_rest import costs_at_rest, leave, start_players
from contenders import SONVARA, SPEECH_SERVER, Running
from latency import REST, change_tracks
from process_figures import processor_time
from report import Row, duration, mebibytes, percent
from desktop.speech_server import SpeechServer

PLAYERS = 1, 10, 50
RATES = 1, 10, 100  # changes of tracks a second

PLAYERS_TITLE = "More players on the bus; one of them changes its tracks, or none"
RATES_TITLE = "More changes of tracks a second, by one player"


def measure_players(desktop, scale):
    speech = SpeechServer(desktop, SPEECH_SERVER)
    found = {}
    for count in PLAYERS:
        with Running(desktop, SONVARA, speech) as program:
            TrayItem(desktop, program.pid)
            players = start_players(desktop, speech, count)
            private = private_memory(program.pid)
            share, waits = costs_at_rest((program.pid,), round(60 * scale))[0]
            latency = statistics.median(change_tracks(players[-1], speech, max(5, round(30 * scale))))
            leave(players)
        found[count] = latency, private, share, waits
    latencies, memories, shares, waits = zip(*found.values())
    players = f"{_steps(PLAYERS)} players"
    each = _of_each_further(shares)
    return [Row(f"signal to line, median: {players}", _series(latencies, duration), "", "constant",
                _is_constant(latencies)),
            Row(f"private memory: {players}", _series(memories, mebibytes), "", "constant", _is_constant(memories)),
            Row(f"processor at rest, share of one core: {players}", _series(shares, lambda share: percent(share, 4)), "",
                "", None),
            Row(f"the same for each further player: from {_steps(PLAYERS, ' to ')}",
                _series(each, lambda share: percent(share, 4)), "", "constant", _is_constant(each)),
            Row(f"wake-ups a second at rest: {players}", _series(waits, lambda number: f"{number:.2f}"), "", "", None)]


def _of_each_further(costs):
    """How much each player adds on the way from one number of players to the next."""
    return [(costs[step + 1] - costs[step]) / (PLAYERS[step + 1] - PLAYERS[step]) for step in range(len(PLAYERS) - 1)]


def _is_constant(values):
    """Within half of the first value: what a quiet machine's own noise stays in."""
    return values[-1] <= 1.5 * values[0]


def _is_linear(values):
    return all(value <= rate / RATES[0] * values[0] for rate, value in zip(RATES, values))


def measure_rates(desktop, scale):
    speech = SpeechServer(desktop, SPEECH_SERVER)
    found = {}
    for rate in RATES:
        with Running(desktop, SONVARA, speech) as program:
            TrayItem(desktop, program.pid)
            player, = start_players(desktop, speech, 1)
            found[rate] = _change_at(rate, max(5, round(20 * scale)), program.pid, player, speech)
            player.leave()
    latencies, memories, costs, lines = zip(*found.values())
    rates = f"{_steps(RATES)} a second"
    return [Row(f"signal to line, median: {rates}", _series(latencies, duration), "", "linear at most",
                _is_linear(latencies)),
            Row(f"private memory: {rates}", _series(memories, mebibytes), "", "constant", _is_constant(memories)),
            # Linear in the rate means: no more for each change.
            Row(f"processor time of each change: {rates}", _series(costs, duration), "", "constant",
                _is_constant(costs)),
            Row(f"lines of 100 changes: {rates}", _series(lines, lambda share: f"{100 * share:.0f}"), "", "", None)]


def _change_at(rate, seconds, pid, player, speech):
    """(median latency of the lines that came, private memory, processor time of a change, lines of a change)"""
    told, before = {}, processor_time(pid)
    began = time.monotonic()
    for number in range(rate * seconds):
        rest(max(0.0, began + number / rate - time.monotonic()))
        title = f"Song {number:06}"
        told[title] = player.play(title)
    rest(REST)
    used = processor_time(pid) - before
    lines = speech.take_lines()
    latencies = [came - told[title] for came, text in lines for title in _titles_in(text) if title in told]
    return statistics.median(latencies), private_memory(pid), used / len(told), len(lines) / len(told)


def _titles_in(text):
    begin = text.find("Song ")
    return [text[begin:begin + len("Song 000000")]]


def _steps(numbers, between=", "):
    return between.join(str(number) for number in numbers)


def _series(values, text):
    return ", ".join(text(value) for value in values)
