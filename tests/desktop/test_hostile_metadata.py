#!/usr/bin/python3
"""Metadata that nobody would call a title: never a crash, a hang, a broken menu or another command."""

import time
import unittest

from scenario import LOWERED, VOLUME, Trial

MEGABYTE = 1_000_000
TEXTS = {
    "a megabyte": "x" * MEGABYTE,
    "a megabyte of words": "Radio Ga Ga " * (MEGABYTE // 12),
    "a megabyte of accents": "e" + "\u0301" * (MEGABYTE // 2),
    "a megabyte of accents in disorder": "e" + "\u0301\u0316" * (MEGABYTE // 4),
    "line feeds": "Line\n" * 300,
    "control characters": "".join(map(chr, [*range(1, 32), *range(127, 160)])) + "Bell",
    "escape sequences": "\x1b[2J\x1b]0;title\x07\x1b[31mRed",
    "markup": "<b>Bold</b> &amp; <img src='file:///etc/passwd'/> <speak><break time='10h'/></speak>",
    "other directions": "\u202eesreveR\u202c \u2066\u2067\u2069\u200f",
    "outside everything": "\U0010ffff\ufffe\ufeff\u2028\u2029\u0085 Noncharacters",
    "separators": "A||B||C||true||true",
    "words of a script": "\" to quit\ntell application \"Music\" to set sound volume to 0 --",
    "a word for nothing": "notrunning",
    "a wish to the tool": "--help; $(reboot) `reboot` %s%n",
}
FIXED = ("Currently Playing", "DJ Chat:", "Mute DJ", "Settings...", "Quit Sonvara")


class HostileMetadata(Trial):

    def test_is_only_text(self):
        self.start()
        tray = self.program.tray()
        for number, (name, text) in enumerate(TEXTS.items()):
            with self.subTest(name):
                for where in range(3):
                    fields = [f"Title {number} {where}", f"Artist {number}", f"Album {number} {where}"]
                    fields[where] = text
                    self.player.play(*fields)
                self._expect_alive_after(name)
                texts = [item.text for item in tray.menu()]
                self.assertEqual([each for each in texts if each in FIXED], list(FIXED))
        tray.choose("Quit")
        self.assertEqual(self.program.process.wait(3), 0)
        self.assertEqual(self.player.volume(), VOLUME)
        self.assertLessEqual(set(self.player.take_volumes()), {LOWERED, VOLUME})

    def _expect_alive_after(self, name):
        title = f"An Honest Song after {name}"
        begin = time.monotonic()
        self.player.play(title)
        self.program.wait_for_line(title)
        print(f"{time.monotonic() - begin:.2f} s after {name}", flush=True)


if __name__ == "__main__":
    unittest.main(verbosity=2)
