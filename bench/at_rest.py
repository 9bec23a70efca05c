"""(3) Memory while a player plays, and (4) processor time and wake-ups while nothing changes."""

import statistics
import time

from desktop.processes import private_memory, rest
from desktop.scripted_player import ScriptedPlayer
from desktop.tray import TrayItem

from contenders import BARE_TRAY, PLAYERCTL, SONVARA, SPEECH_SERVER, Running
from process_figures import WakeUps, processor_time, proportional_memory
from report import Row, mebibytes, percent, spread, times, two_digits
from desktop.speech_server import SpeechServer

RUNS = 3
SETTLING = 15  # seconds after the last track: lines end, volumes come back, idle workers leave
CLOSING = 25  # seconds more: 30 after a line the connection to the speech daemon is closed, which is no rest yet

MEMORY_TITLE = "Memory while a player plays"
REST_TITLE = "Processor and wake-ups while two players play and nothing changes"


def measure_memory(desktop, _scale):
    speech = SpeechServer(desktop, SPEECH_SERVER)
    found = {SONVARA: [], BARE_TRAY: []}
    for _ in range(RUNS):
        for command, runs in found.items():  # never both: pages that they share would count half
            with Running(desktop, command, speech) as program:
                runs.append(memory_with_players(desktop, program, speech, 1))
    kinds = "private (written, and shared with nobody)", "proportional (PSS)"
    return [_memory_row(kind, ours, beside) for kind, ours, beside in zip(kinds, zip(*found[SONVARA]), zip(*found[BARE_TRAY]))]


def _memory_row(kind, ours, beside):
    ratio = statistics.median(ours) / statistics.median(beside)
    return Row(kind, f"{spread(ours, mebibytes)}, {times(ratio)}", f"{spread(beside, mebibytes)} bare Qt tray program",
               "at most 1.1 times", ratio <= 1.1)


def memory_with_players(desktop, program, speech, count):
    TrayItem(desktop, program.pid)
    players = start_players(desktop, speech, count)
    figures = private_memory(program.pid), proportional_memory(program.pid)
    leave(players)
    return figures


def measure_rest(desktop, scale):
    speech = SpeechServer(desktop, SPEECH_SERVER)
    seconds = round(60 * scale)
    with Running(desktop, SONVARA, speech) as sonvara, Running(desktop, PLAYERCTL) as playerctl:
        TrayItem(desktop, sonvara.pid)
        players = start_players(desktop, speech, 2)
        rest(CLOSING)
        runs = [costs_at_rest((sonvara.pid, playerctl.pid), seconds) for _ in range(RUNS)]
        leave(players)
    (shares, waits), (peers_shares, peers_waits) = (zip(*each) for each in zip(*runs))
    peer = "playerctl --follow"
    return [Row(f"processor time, share of one core over {seconds} s", spread(shares, percent),
                f"{spread(peers_shares, percent)} {peer}", "at most 0.05 %", statistics.median(shares) <= 0.0005),
            Row("wake-ups a second, all threads", spread(waits, two_digits), f"{spread(peers_waits, two_digits)} {peer}", "",
                None)]


def start_players(desktop, speech, count):
    """`count` players that play. The first is the Spotify client when there are several, so that both kinds of player
    are there."""
    names = ["one"] if count == 1 else ["spotify", *(f"player{number}" for number in range(1, count))]
    players = [ScriptedPlayer(desktop, name=name) for name in names]
    for number, player in enumerate(players):
        for track in ("First", "Second", "Third"):
            player.play(f"{track} Song of {number}")
            time.sleep(0.1)  # further apart than a few tracks at once, which would be told late
    rest(SETTLING)
    speech.take_lines()
    return players


def costs_at_rest(pids, seconds):
    """For each process (share of one core, wake-ups a second) over that time."""
    before = [(processor_time(pid), WakeUps(pid)) for pid in pids]
    began = time.monotonic()
    rest(seconds)
    used = [(processor_time(pid) - seen[0], seen[1].stop()) for pid, seen in zip(pids, before)]
    passed = time.monotonic() - began
    return [(cpu / passed, waits / passed) for cpu, waits in used]


def leave(players):
    for player in players:
        player.leave()
