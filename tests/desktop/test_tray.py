#!/usr/bin/python3
"""The tray item in real trays, with a sample program whose titles no player has."""

import os
import signal
import unittest

from scenario import ROOT
from desktop.processes import Timeout, wait_until
from desktop.screen import Screen
from desktop.session import PrivateDesktop
from desktop.tray import TrayItem

SAMPLE = os.environ.get("SONVARA_TRAY_SAMPLE", os.path.join(ROOT, "build", "test", "tests", "linux", "desktop",
                                                            "tray_sample"))
CHAT = "Up next: <b>A & B</b>\nby snake_case\nand _ others"
TITLES = [CHAT, "A & B", "snake_case", "<b>bold</b>", "R&amp;B", "_ && __", "שיר - זמר", "🎵 Café"]
WIDE = "x" * 300


class Tray(unittest.TestCase):

    def enter(self, tray):
        return self.enterContext(PrivateDesktop(tray=tray))

    def start(self, desktop):
        return desktop.start("sample", [SAMPLE, *TITLES, WIDE])

    def click_until(self, desktop, button, is_open):
        """Clicks until the menu is open: an item that comes into the tray has its place a moment later."""
        def attempt():
            Screen(desktop).click_tray_item(button)
            try:
                return wait_until("the opening", is_open, limit=3)
            except Timeout:
                return None
        wait_until("the open menu", attempt, 30)

    def openings(self, item):
        return int(item.menu()[-1].text.removeprefix("Opened "))

    def test_hosts_read_titles_as_they_are(self):
        desktop = self.enter("xfce4-panel")
        item = TrayItem(desktop, self.start(desktop).pid)
        *shown, wide, _ = [entry.text.removeprefix("\u200e") for entry in item.menu()]
        self.assertEqual(shown, [CHAT] + TITLES)
        self.assertRegex(wide, "^x{20,60}…x{20,60}$")
        item.choose("Opened")
        wait_until("the chosen item", lambda: "Opened 1" in desktop.log("sample"))

    def test_both_buttons_open_the_menu_in_a_real_panel(self):
        desktop = self.enter("xfce4-panel")
        sample = self.start(desktop)
        item = TrayItem(desktop, sample.pid)
        for button in ("1", "3"):
            before = self.openings(item)
            self.click_until(desktop, button, lambda: self.openings(item) > before)
            Screen(desktop).press("Escape")
        before = self.openings(item)
        self.click_until(desktop, "3", lambda: self.openings(item) > before)
        Screen(desktop).press("Up", "Return")
        self.assertEqual(sample.wait(10), 0)
        self.assertRegex(desktop.log("sample"), r"Opened \d+")

    def test_comes_back_when_the_panel_does(self):
        desktop = self.enter(None)
        sample = self.start(desktop)  # at login the panel may be the later one
        panel = desktop.start_tray("xfce4-panel")
        TrayItem(desktop, sample.pid)
        panel.send_signal(signal.SIGKILL)
        panel.wait()
        desktop.start_tray("xfce4-panel")
        item = TrayItem(desktop, sample.pid)
        self.assertEqual(item.menu()[1].text, CHAT)
        self.assertNotIn("no tray", desktop.log("sample"))

    def test_tells_that_there_is_no_tray(self):
        desktop = self.enter(None)
        self.start(desktop)
        wait_until("the notice", lambda: "no tray" in desktop.log("sample"), 20)

    def test_has_a_menu_of_its_own_in_an_older_tray(self):
        desktop = self.enter(None)
        sample = self.start(desktop)  # before the tray
        desktop.start_tray("trayer")
        self.choose_from_own_menu(desktop, sample, "1")
        self.choose_from_own_menu(desktop, self.start(desktop), "3")

    def choose_from_own_menu(self, desktop, sample, button):
        screen = Screen(desktop)
        chosen = desktop.log("sample").count("Opened")

        def attempt():
            """A tray may make the icon's window anew: what has opened then is no menu, and no key reaches it."""
            screen.press("Escape")
            icon = wait_until("the icon", lambda: screen.windows_of(sample.pid), 20)
            self.click_until(desktop, button, lambda: screen.windows_of(sample.pid) - icon)
            try:  # the menu hears the keyboard a moment after it has come up
                return wait_until("the end", lambda: screen.press("Up", "Return") or sample.poll() is not None, limit=3)
            except Timeout:
                return None
        wait_until("the choice", attempt, 40)
        self.assertEqual(sample.poll(), 0)
        self.assertEqual(desktop.log("sample").count("Opened"), chosen + 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
