"""(6) How latency, memory and processor time grow with the players on the bus and with the changes of tracks."""

import statistics
import time

from desktop.processes import private_memory, rest
from desktop.tray import TrayItem

from at_rest import RUNS, costs_at_rest, leave, start_players
from contenders import SONVARA, SPEECH_SERVER, Running
from latency import REST, change_tracks
from process_figures import processor_time
from report import Row, duration, mebibytes, percent, spread, two_digits
from desktop.speech_server import SpeechServer

PLAYERS = 1, 10, 50
RATES = 1, 10, 100  # changes of tracks a second

PLAYERS_TITLE = "More players on the bus; one of them changes its tracks, or none"
RATES_TITLE = "More changes of tracks a second, by one player"


def measure_players(desktop, scale):
    speech = SpeechServer(desktop, SPEECH_SERVER)
    runs = _in_turns(PLAYERS, lambda count: _with_players(count, desktop, speech, scale))
    latencies, memories, shares, waits = _medians(runs)
    players = f"{_steps(PLAYERS)} players"
    each = _of_each_further(shares)
    return [Row(f"signal to line, median: {players}", _series(runs, 0, duration), "", "constant", _is_constant(latencies)),
            Row(f"private memory: {players}", _series(runs, 1, mebibytes), "", "constant", _is_constant(memories)),
            Row(f"processor at rest, share of one core: {players}", _series(runs, 2, lambda share: percent(share, 4)), "",
                "", None),
            Row(f"the same for each further player: from {_steps(PLAYERS, ' to ')}",
                ", ".join(percent(share, 4) for share in each), "", "constant", _is_constant(each)),
            Row(f"wake-ups a second at rest: {players}", _series(runs, 3, two_digits), "", "", None)]


def _with_players(count, desktop, speech, scale):
    """(median latency, private memory, share of one core at rest, wake-ups a second)"""
    with Running(desktop, SONVARA, speech) as program:
        TrayItem(desktop, program.pid)
        players = start_players(desktop, speech, count)
        private = private_memory(program.pid)
        share, waits = costs_at_rest((program.pid,), round(30 * scale))[0]
        latency = statistics.median(change_tracks(players[-1], speech, max(5, round(10 * scale))))
        leave(players)
    return latency, private, share, waits


def _in_turns(steps, run):
    """The figures of each step's runs. The steps take turns, so that none has the machine's better hour."""
    found = {step: [] for step in steps}
    for _ in range(RUNS):
        for step, runs in found.items():
            runs.append(run(step))
    return list(found.values())


def _medians(runs):
    """Of each figure, the series of the steps' medians."""
    return zip(*([statistics.median(figure) for figure in zip(*step)] for step in runs))


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
    runs = _in_turns(RATES, lambda rate: _at_rate(rate, desktop, speech, max(5, round(10 * scale))))
    latencies, memories, costs, _ = _medians(runs)
    rates = f"{_steps(RATES)} a second"
    return [Row(f"signal to line, median: {rates}", _series(runs, 0, duration), "", "linear at most", _is_linear(latencies)),
            Row(f"private memory: {rates}", _series(runs, 1, mebibytes), "", "constant", _is_constant(memories)),
            # Linear in the rate means: no more for each change.
            Row(f"processor time of each change: {rates}", _series(runs, 2, duration), "", "constant", _is_constant(costs)),
            Row(f"lines of 100 changes: {rates}", _series(runs, 3, lambda share: f"{100 * share:.0f}"), "", "", None)]


def _at_rate(rate, desktop, speech, seconds):
    with Running(desktop, SONVARA, speech) as program:
        TrayItem(desktop, program.pid)
        player, = start_players(desktop, speech, 1)
        figures = _change_at(rate, seconds, program.pid, player, speech)
        player.leave()
    return figures


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


def _series(runs, number, text):
    """The spread of one figure at each step."""
    return ", ".join(spread([figures[number] for figures in step], text) for step in runs)
