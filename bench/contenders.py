"""What is measured, and what stands beside it."""

import os

from desktop.processes import stop, wait_until

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
_BUILD = os.path.join(ROOT, "build", "bench")

SONVARA = (os.path.join(_BUILD, "sonvara"),)
BARE_TRAY = (os.path.join(_BUILD, "bench", "bare_tray"),)
SPEECH_SERVER = os.path.join(_BUILD, "tests", "linux", "speech", "speech_server")
FLOOR = (os.path.join(_BUILD, "bench", "signal_to_speech"),)
PLAYERCTL = ("playerctl", "metadata", "--follow", "--format", "{{title}} by {{artist}}")
# What one would type. It lowers nothing, skips no album, and forgets nobody's pause.
PIPELINE = ("sh", "-c", 'playerctl metadata --follow --format "Now playing {{title}} by {{artist}}" | '
                        'while read -r line; do spd-say -- "$line"; done')
CORE = os.path.join(_BUILD, "bench", "core_bench")


class Running:
    """A context in which one of them runs in the desktop; speaks to `speech`, when given."""

    def __init__(self, desktop, command, speech=None):
        self._process = desktop.start("contender", command, speech.environment if speech else {})
        self.pid = self._process.pid

    def __enter__(self):
        return self

    def __exit__(self, *_):
        # A shell does not end what runs in it: the session is its own, so is the process group.
        try:
            os.killpg(self.pid, 15)
        except ProcessLookupError:
            pass
        stop(self._process)


def await_line(player, speech, warm_up=3):
    """Plays tracks until the contender that has just been started speaks of them."""
    number = 0

    def is_heard():
        nonlocal number
        number += 1
        player.play(f"Warm-up {number}")
        return speech.next_line(0.5)

    for _ in range(warm_up):
        wait_until("the first lines", is_heard, 20)
