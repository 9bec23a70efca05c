"""What the tests of the AI tools share: the program, a player, a voice that only notes its lines, and a tool.

ctest names the program in SONVARA_PROGRAM. The whole test runs in namespaces of its own (see seclusion.py), so nothing
that a tool does leaves the machine, and /opt/homebrew/bin holds nothing but what the test puts there.
"""

import os
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "desktop"))

import seclusion
from scenario import PROGRAM, ROOT, Trial
from desktop.processes import wait_until
from desktop.session import PrivateSession
from desktop.speech_server import SpeechServer

BIN = "/opt/homebrew/bin"
TOOLS = os.path.join(ROOT, "build", "ai-tools")
FOLDER = "Sonvara-AIDJ"
SPEECH_SERVER = os.path.join(os.path.dirname(PROGRAM), "tests", "linux", "speech", "speech_server")  # of the same build
TIME_LIMIT = 25.0  # of the program for a tool
PROMPT = (
    "You are a smooth radio DJ with deep music knowledge. Introduce the track with a little upbeat DJ chat, and work in "
    "ONE genuinely interesting, true fact about the artist or song. If you are not sure a fact is true, skip it rather "
    "than invent one. Respond with ONE or TWO short spoken sentences (max 45 words total). It will be read aloud by a "
    "text-to-speech voice, so use plain words only — no emoji, hashtags, markdown, quotation marks, or stage directions. "
    "Output only the spoken line, nothing before or after.\n\n"
    "Track: {title}\nArtist: {artist}\nAlbum: {album}\n\nGive the DJ intro line.")


class QuietSession(PrivateSession):
    """A session bus in a folder below which nobody else can write; no screen and no sound."""

    def __enter__(self):
        tempfile.tempdir = "/opt"
        return super().__enter__()

    def _start_parts(self):
        self._start_bus()
        self.speech = SpeechServer(self, SPEECH_SERVER)


class IntroTrial(Trial):

    kind_of_desktop = QuietSession
    provider = "claudeCLI"

    def setUp(self):
        super().setUp()
        self.desktop.write_setting("sonvara/sonvara.conf", f"[General]\naiIntros=true\naiProvider={self.provider}\n")

    @staticmethod
    def put_tool(name, program):
        """Puts a link to the program where Sonvara looks for the tool of this name first."""
        os.makedirs(BIN, exist_ok=True)
        link = os.path.join(BIN, name)
        if os.path.islink(link):
            os.unlink(link)
        os.symlink(program, link)

    def begin(self, **env):
        """Starts the program, which speaks to the session's own voice."""
        self.start(QT_QPA_PLATFORM="offscreen", **{**self.desktop.speech.environment, **env})
        wait_until("the program's beginning", lambda: "monitoring started" in self.program.log())

    def next_line(self, limit):
        """The next line that is spoken; the test fails when none comes in time."""
        line = self.desktop.speech.next_line(limit)
        if line is None:
            self.fail(f"nothing was spoken within {limit:g} seconds")
        return line[1]

    def expect_offline_line(self, title, limit=TIME_LIMIT + 15):
        self.assertIn(title, self.next_line(limit))

    def expect_nothing_more(self):
        self.assertEqual(self.desktop.speech.take_lines(), [])

    def working_folder(self):
        return os.path.join(self.desktop.env["XDG_RUNTIME_DIR"], FOLDER)

    def tools(self):
        """The processes that work in the tools' folder of this session."""
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                folder = os.readlink(f"/proc/{pid}/cwd")
            except OSError:
                continue  # it has ended, or is not ours to look at
            if folder == self.working_folder():
                found.append(int(pid))
        return found

    def expect_tools_to_end(self, within):
        begin = time.monotonic()
        wait_until("the end of the tool", lambda: not self.tools(), within)
        return time.monotonic() - begin


def skip(reason):
    print("Skipped:", reason)
    sys.exit(seclusion.SKIP)
