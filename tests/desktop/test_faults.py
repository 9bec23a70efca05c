#!/usr/bin/python3
"""Parts that fail, hang or vanish: the program goes on, and the player's volume comes back."""

import glob
import os
import resource
import shutil
import signal
import subprocess
import time
import unittest

from scenario import LONG, LOWERED, VOLUME, KillingTrial, Trial
from desktop.dbus import names, process_of
from desktop.processes import descendants, private_memory, wait_until
from desktop.screen import Screen

DAEMON = "speech-dispatcher"
TRAY_HOST = "xfce4-panel"


def processes(name):
    """The ids of all processes of this desktop that run the program `name`."""
    return [pid for pid in descendants(os.getpid()) if _program_of(pid) == name]


def _program_of(pid):
    try:
        with open(f"/proc/{pid}/cmdline", "rb") as file:
            return os.path.basename(file.read().split(b"\0")[0].decode(errors="replace"))
    except (FileNotFoundError, ProcessLookupError):
        return ""


def send(number, name):
    pids = processes(name)
    if not pids:
        raise RuntimeError(f"no {name} runs")
    for pid in pids:
        os.kill(pid, number)


def end_processes(name):
    """Kills them and waits until they have gone."""
    for pid in processes(name):
        os.kill(pid, signal.SIGKILL)
    wait_until(f"the end of {name}", lambda: not processes(name))


def processor_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="utf-8") as file:
        user, system = file.read().rpartition(")")[2].split()[11:13]
    return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")


class Voice(Trial):

    def test_a_daemon_that_is_killed_while_it_speaks(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        self._wait_for_voice()  # else another daemon is started, and says the line
        end_processes(DAEMON)
        self.player.wait_for_volume(VOLUME, limit=3)
        self.player.play("After the Daemon's Death")
        self.player.wait_for_volume(LOWERED)
        wait_until("the next daemon", lambda: processes(DAEMON))
        self.player.wait_for_volume(VOLUME, limit=20)
        self.assertNotIn("cannot be used", self.program.log().partition("After the Daemon")[2])

    def test_a_daemon_that_hangs_while_it_speaks(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        self._wait_for_voice()
        send(signal.SIGSTOP, DAEMON)
        self.addCleanup(send, signal.SIGCONT, DAEMON)
        self.player.pause()
        self.player.wait_for_volume(VOLUME, limit=2)
        self.speak_with_lowered_player("Nobody Says This")
        self.end()
        self.assertEqual(self.player.volume(), VOLUME)

    def test_a_start_while_the_first_one_ends(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        self._wait_for_voice()
        send(signal.SIGSTOP, DAEMON)  # it holds up the end for half a second
        self.addCleanup(send, signal.SIGCONT, DAEMON)
        first, self.program = self.program, None
        first.process.terminate()
        self.start_quickly()
        self.assertEqual(first.process.wait(2), 0)
        wait_until("the new DJ", lambda: "monitoring started" in self.program.log())
        self.assertIsNone(self.program.process.poll())

    def test_a_missing_daemon(self):
        hidden = self.with_mounts('mount --bind /dev/null "$(command -v "$0")" && exec "$@"', DAEMON)
        self.start(hidden, QT_QPA_PLATFORM="offscreen", SPEECHD_ADDRESS="unix_socket:" + self.desktop.folder + "/none")
        for title in ("First", "Second"):
            self.player.play(title)
            wait_until("the line", lambda: self.program.announced(title) == 1)
        wait_until("the message", lambda: "cannot be used" in self.program.log())
        self.assertEqual(self.program.log().count("cannot be used"), 1)
        self.end()
        # A line that nothing can speak is over at once, so the player need not be lowered for it; nor must it stay so.
        self.assertIn(self.player.take_volumes()[-1:], ([], [VOLUME]))
        self.assertEqual(self.player.volume(), VOLUME)

    def test_a_daemon_without_a_sound_server(self):
        end_processes(DAEMON)
        self.addCleanup(end_processes, DAEMON)
        stock = os.path.join(self.desktop.folder, "stock")  # no settings: a daemon as users have it
        self.start(QT_QPA_PLATFORM="offscreen", PULSE_SERVER="unix:/nonexistent", XDG_CONFIG_HOME=stock)
        self.player.play("A", "B", "C")
        self.player.wait_for_volume(LOWERED)
        self.player.wait_for_volume(VOLUME, limit=20)
        wait_until("the message", lambda: "is a sound server running?" in self.program.log())
        self.end()

    def _wait_for_voice(self):
        """Until a program plays sound; the player of these tests is silent."""
        wait_until("the voice", lambda: [stream for stream in self._streams() if stream.split("\t")[2] != "-"])

    def _streams(self):
        """Each with its number, sink, client ("-": a part of the server) and more."""
        return self.desktop.run("pactl", "list", "short", "sink-inputs").splitlines()


class Players(KillingTrial):

    def test_a_player_that_hangs_while_it_is_lowered(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        self.player.process.send_signal(signal.SIGSTOP)
        self.end()
        self.player.process.send_signal(signal.SIGCONT)
        self.player.pause()
        self.start_quickly()
        self.player.wait_for_volume(VOLUME, limit=3)

    def test_a_flood_of_five_thousand_signals(self):
        self.start_quickly()
        self.player.play("Before")
        self.program.wait_for_line("Before")
        before = private_memory(self.program.pid)
        begin = time.monotonic()
        self.player.flood(5000)
        print(f"flooded for {time.monotonic() - begin:.1f} s", flush=True)
        # On a busy machine it may not be announced: its album may have been with a track before it.
        wait_until("the last track", lambda: "'Flood's End' (playing=true)" in self.program.log())
        seconds = time.monotonic() - begin
        self.assertLess(sum("Announcing: " in line for line in self.program.log().splitlines()), 20 * (1 + seconds))
        self.player.wait_for_volume(VOLUME, limit=15)
        grown = private_memory(self.program.pid) - before
        print(f"{grown} KiB more", flush=True)
        self.assertLess(grown, 8 * 1024)

    def test_a_suspended_program_goes_on_and_repeats_nothing(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        self.program.process.send_signal(signal.SIGSTOP)
        time.sleep(float(os.environ.get("SUSPENSION", 4)))  # what the test is about
        self.program.process.send_signal(signal.SIGCONT)
        self.player.wait_for_volume(VOLUME, limit=15)
        self.player.play("After the Rest")
        self.program.wait_for_line("After the Rest")
        self.assertEqual(self.program.announced(LONG), 1)


class Inert(Trial):

    def test_a_test_harness(self):
        """Nothing is observed, asked, written or shown, and the end touches no player, not even one with a note."""
        self.start_quickly()
        self.speak_with_lowered_player()
        wait_until("the note", lambda: os.path.exists(self.notes))
        self.kill()
        settings = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "sonvara")
        shutil.rmtree(settings)
        with open(self.notes, encoding="utf-8") as file:
            notes = file.read()
        self.player.take_volumes()
        monitor = subprocess.Popen(["dbus-monitor", "--session"], env=self.desktop.env, stdout=subprocess.PIPE, text=True)
        self.addCleanup(monitor.kill)
        self.start(XCTestConfigurationFilePath="", QT_QPA_PLATFORM="offscreen")
        time.sleep(12)  # longer than the wait for a tray
        self.player.play("Nobody Says This")
        time.sleep(1)
        program = self.program.process
        own = [name for name in names(self.desktop.bus) if process_of(self.desktop.bus, name) == program.pid]
        program.terminate()
        self.assertEqual(program.wait(2), 0)
        monitor.terminate()
        self.assertEqual(self.player.take_volumes(), [])
        self.assertEqual(self.program.log(), "")
        with open(self.notes, encoding="utf-8") as file:
            self.assertEqual(file.read(), notes)
        self.assertEqual(os.listdir(os.path.dirname(self.notes)), [os.path.basename(self.notes)])
        self.assertFalse(os.path.exists(settings))
        messages = monitor.stdout.read()
        self.assertIn("Nobody Says This", messages)
        self.assertTrue(own)
        sent = {line.partition("member=")[2] for line in messages.splitlines() for name in own
                if f"sender={name} " in line}
        self.assertEqual(sent, {"Hello"})


class System(Trial):

    def test_no_descriptors_left(self):
        self.start()
        tray = self.program.tray()
        self.speak_with_lowered_player("Before")
        soft, hard = resource.prlimit(self.program.pid, resource.RLIMIT_NOFILE)
        # Not lower: the system takes a limit below what a program waits for as an error of the waiting.
        used = {int(number) for number in os.listdir(f"/proc/{self.program.pid}/fd")}
        free = next(number for number in range(1024) if number not in used)
        resource.prlimit(self.program.pid, resource.RLIMIT_NOFILE, (free, hard))
        for title in ("First", "Second"):
            self.player.play(title)
            self.program.wait_for_line(title)
        tray.choose("Settings")
        Screen(self.desktop).window("Sonvara Settings")  # it may lack its texts, but nothing may wait for it
        tray.choose("Mute DJ")
        self.player.play("Muted")
        wait_until("the muted track", lambda: tray.now_playing().startswith("Muted"))
        tray.choose("Mute DJ")
        resource.prlimit(self.program.pid, resource.RLIMIT_NOFILE, (soft, hard))
        self.assertEqual(self.program.announced("Muted"), 0)
        self.player.play("After")
        self.program.wait_for_line("After")
        self.player.wait_for_volume(VOLUME, limit=20)
        self.end()

    def test_a_clock_that_is_set_back_and_forward_by_a_day(self):
        library = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")[0]
        clock = os.path.join(self.desktop.folder, "clock")

        def set_clock(offset):
            with open(clock + ".new", "w", encoding="utf-8") as file:
                file.write(offset + "\n")
            os.rename(clock + ".new", clock)

        set_clock("+0d")
        self.start(QT_QPA_PLATFORM="offscreen", LD_PRELOAD=library, FAKETIME_TIMESTAMP_FILE=clock,
                   FAKETIME_NO_CACHE="1", FAKETIME_DONT_FAKE_MONOTONIC="1")
        for number, offset in enumerate(("+0d", "+1d", "-1d", "+0d")):
            set_clock(offset)
            title = f"Song {number}"
            self.player.play(title)
            self.player.wait_for_volume(LOWERED)
            self.player.wait_for_volume(VOLUME, limit=20)
            self.assertEqual(self.program.announced(title), 1)
        with open(f"/proc/{self.program.pid}/maps", encoding="utf-8") as maps:
            self.assertIn(library, maps.read(), "its clock was not the system's")
        self.end()

    def test_a_panel_that_is_restarted(self):
        self.start()
        tray = self.program.tray()
        end_processes(TRAY_HOST)
        self.player.play("While There Is No Panel")
        self.program.wait_for_line("While There Is No Panel")
        self.desktop.start("panel", [TRAY_HOST, "--disable-wm-check"])
        tray = self.program.tray()
        self.assertTrue(tray.now_playing().startswith("While There Is No Panel"))
        tray.choose("Quit")
        self.assertEqual(self.program.process.wait(2), 0)


class Bus(Trial):
    """Alone on its desktop, of which it leaves nothing."""

    def test_a_session_bus_that_dies(self):
        self.start_quickly()
        self.speak_with_lowered_player()
        end_processes("dbus-daemon")
        wait_until("the message", lambda: "session bus has gone" in self.program.log())
        used = processor_seconds(self.program.pid)
        time.sleep(4)  # longer than the interval of the polls
        self.assertLess(processor_seconds(self.program.pid) - used, 0.5)
        self.end()
        self.assertTrue(os.path.exists(self.notes), "the next start puts the player right")


if __name__ == "__main__":
    unittest.main(verbosity=2)
