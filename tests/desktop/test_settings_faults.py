#!/usr/bin/python3
"""A settings file that is damaged, cannot be written or is changed by others: what is read is kept, the music goes on."""

import os
import unittest

from scenario import LOWERED, VOLUME, Trial
from desktop.processes import wait_until

GARBAGE = b"\xff\xfe\0[General\naiIntros=\x00\x01true\n]]]=\n" + bytes(range(256)) * 20
# A disk of its own below the folder, for this program's eyes only, with the settings on it and nothing free.
FULL = """mount -t tmpfs -o size=32k none "$0" && mkdir "$0/sonvara" && printf '%s' "$SETTINGS" >"$0/sonvara/sonvara.conf" &&
{ cat /dev/zero >"$0/filler" 2>/dev/null || true; } && exec "$@" """
READ_ONLY = """mount -t tmpfs none "$0" && mkdir "$0/sonvara" && printf '%s' "$SETTINGS" >"$0/sonvara/sonvara.conf" &&
mount -o remount,ro "$0" && exec "$@" """
SETTINGS = "[General]\nduckMusic=true\naiProvider=gemini\n"


class SettingsFaults(Trial):

    def setUp(self):
        super().setUp()
        self.path = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "sonvara", "sonvara.conf")

    def _write(self, content):
        os.makedirs(os.path.dirname(self.path), exist_ok=True)
        with open(self.path + ".edited", "wb") as file:
            file.write(content)
        os.replace(self.path + ".edited", self.path)

    def _read(self):
        with open(self.path, encoding="utf-8", errors="replace") as file:
            return file.read()

    def _expect_mute_works(self, tray):
        for number in range(2):
            tray.choose("Mute DJ")
            wait_until("the mark", lambda: self._is_muted(tray))
            self.player.play(f"Muted {number}")
            wait_until("the muted track", lambda: tray.now_playing().startswith(f"Muted {number}"))
            tray.choose("Mute DJ")
            wait_until("the mark's end", lambda: not self._is_muted(tray))
            self.player.play(f"Heard {number}")
            self.program.wait_for_line(f"Heard {number}")
            self.assertEqual(self.program.announced("Muted"), 0)

    def _is_muted(self, tray):
        return next(item for item in tray.menu() if item.text == "Mute DJ").is_checked

    def test_a_damaged_file(self):
        self._write(GARBAGE)
        self.start()
        tray = self.program.tray()
        self.player.play("First")
        self.program.wait_for_line("First")
        self._expect_mute_works(tray)
        self.end()
        self.assertIn("announcementsEnabled=true", self._read())

    def test_a_full_disk_and_a_read_only_one(self):
        for script in (FULL, READ_ONLY):
            for variable in ("XDG_CONFIG_HOME", "XDG_STATE_HOME"):
                with self.subTest(script.split("&&")[-2].strip(), folder=variable):
                    self._expect_to_go_on(script, self.desktop.env[variable])

    def _expect_to_go_on(self, script, folder):
        self.start(self.with_mounts(script, folder, SETTINGS=SETTINGS), SETTINGS=SETTINGS)
        tray = self.program.tray()
        self._expect_mute_works(tray)
        self.player.wait_for_volume(LOWERED)
        self.player.pause()
        self.player.wait_for_volume(VOLUME)
        with open(f"/proc/{self.program.pid}/root{folder}/sonvara/sonvara.conf", encoding="utf-8") as file:
            self.assertEqual(file.read(), SETTINGS, "what cannot be replaced is left whole")
        self.end()

    def test_a_change_by_another_process_is_seen_and_kept(self):
        self.start()
        tray = self.program.tray()
        self._write(b"[General]\nduckMusic=false\nsomebodyElses=1\n")
        for number in range(50):
            tray.choose("Mute DJ")
        self.player.play("Loud")
        self.program.wait_for_line("Loud")
        self.player.play("Still Loud")
        self.program.wait_for_line("Still Loud")
        self.end()
        self.assertEqual(self.player.take_volumes(), [])
        self.assertIn("duckMusic=false", self._read())
        self.assertIn("somebodyElses=1", self._read())
        self.assertIn("announcementsEnabled=true", self._read())


if __name__ == "__main__":
    unittest.main(verbosity=2)
