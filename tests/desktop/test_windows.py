#!/usr/bin/python3
"""The program's windows, as a user and a screen reader meet them, and that there is never a second DJ."""

import os
import signal
import subprocess
import unittest

from scenario import PROGRAM
from desktop.accessibility import Accessibility
from desktop.processes import wait_until
from desktop.screen import Screen
from desktop.scripted_player import ScriptedPlayer
from desktop.session import PrivateDesktop
from desktop.tray import TrayItem

SETTINGS = "Sonvara Settings"


class Windows(unittest.TestCase):

    def setUp(self):
        self.desktop = self.enter("xfce4-panel")

    def enter(self, tray):
        return self.enterContext(PrivateDesktop(tray=tray))

    def start(self):
        program = self.desktop.start("sonvara", [PROGRAM])
        self.tray = TrayItem(self.desktop, program.pid)
        self.windows = Accessibility(self.desktop, program.pid)
        return program

    def open_settings(self):
        self.tray.choose("Settings")
        self.windows.find("frame", SETTINGS)

    def test_form_and_menu_show_one_state(self):
        self.start()
        self.open_settings()
        announce = self.windows.find("check box", "Announce tracks")
        self.assertTrue(announce.is_checked())
        self.tray.choose("Mute DJ")
        wait_until("the changed form", lambda: not announce.is_checked())
        announce.press()
        wait_until("the changed menu", lambda: not [item for item in self.tray.menu() if item.is_checked])

    def test_every_control_has_a_name(self):
        self.start()
        self.open_settings()
        for role, name in (("check box", "Announce tracks"), ("check box", "Lower music while speaking"),
                           ("check box", "Use AI for intros"), ("combo box", "Engine"),
                           ("check box", "Launch at login"), ("push button", "View log (0)")):
            self.windows.find(role, name)
        engine = self.windows.find("combo box", "Engine")
        self.assertFalse(engine.is_enabled())
        self.windows.find("check box", "Use AI").press()
        wait_until("the enabled choice", engine.is_enabled)

    def test_a_choice_is_made_from_the_list_and_kept(self):
        self.desktop.write_setting("sonvara/sonvara.conf", "[General]\naiIntros=true\n")
        self.start()
        self.open_settings()
        engine = self.windows.find("combo box", "Engine")
        choices = engine.children()[0].children()
        self.assertEqual([each.name() for each in choices], ["Claude (Anthropic) CLI", "Gemini CLI"])
        self.assertEqual([each.is_selected() for each in choices], [True, False])
        engine.press()
        wait_until("the open list", lambda: engine.children()[0].is_showing())
        Screen(self.desktop).press("Down", "Return")
        wait_until("the stored choice", lambda: "aiProvider=geminiCLI" in self.settings())
        wait_until("the choice in the closed list", lambda: choices[1].is_selected() and not choices[0].is_selected())

    def settings(self):
        with open(os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "sonvara", "sonvara.conf"), encoding="utf-8") as file:
            return file.read()

    def test_launch_at_login_writes_and_removes_the_entry(self):
        self.start()
        self.open_settings()
        entry = os.path.join(self.desktop.env["XDG_CONFIG_HOME"], "autostart", "app.sonvara.Sonvara.desktop")
        login = self.windows.find("check box", "Launch at login")
        login.press()
        wait_until("the entry", lambda: os.path.exists(entry))
        self.desktop.run("desktop-file-validate", entry)
        with open(entry, encoding="utf-8") as file:
            self.assertIn(f"Exec={os.path.realpath(PROGRAM)}\n", file.read())
        wait_until("the checked switch", login.is_checked)
        login.press()
        wait_until("no entry", lambda: not os.path.exists(entry))

    def test_escape_closes_the_log_and_leaves_the_settings(self):
        self.start()
        self.open_settings()
        self.windows.find("push button", "View log").press()
        self.windows.find("push button", "Done")
        self.windows.find("label", "No activity yet.")
        Screen(self.desktop).window("Diagnostics Log")
        Screen(self.desktop).press("Escape")
        wait_until("the closed log", lambda: not self.windows.is_shown("push button", "Done"))
        self.assertTrue(self.windows.is_shown("frame", SETTINGS))

    def test_the_log_is_read_by_a_screen_reader_and_copied_by_the_keys(self):
        self.start()
        player = ScriptedPlayer(self.desktop)
        self.addCleanup(player.kill)
        player.play("Night Bus", "Ada & the Engines", "The Depot")
        self.open_settings()
        self.windows.find("push button", "View log (1)").press()
        log = self.windows.find("list", "Diagnostics Log")
        self.assertRegex(log.children()[0].name(), r"^\d\d:\d\d:\d\d Spoke: .* Night Bus by Ada & the Engines, from The Depot\.$")
        screen = Screen(self.desktop)
        screen.window("Diagnostics Log")
        screen.press("shift+Tab", "ctrl+c")  # from the first button round to the list
        wait_until("the whole entry", lambda: screen.clipboard().endswith("Night Bus by Ada & the Engines, from The Depot."))
        screen.press("Return", "End", "ctrl+shift+Left", "ctrl+shift+Left", "ctrl+c")
        wait_until("the part", lambda: screen.clipboard() == "Depot.")

    def windows_named(self, name, *options):
        """Windows come and go while they are looked for, and none is an error to the searcher."""
        try:
            return set(self.desktop.run("xdotool", "search", *options, "--name", f"^{name}$",
                                        stderr=subprocess.DEVNULL).split())
        except subprocess.CalledProcessError:
            return set()

    def test_a_miniaturised_window_is_replaced(self):
        self.start()
        self.open_settings()
        old = wait_until("the window", lambda: self.windows_named(SETTINGS, "--onlyvisible"))
        self.desktop.run("xdotool", "windowminimize", "--sync", *old)
        self.tray.choose("Settings")
        new = wait_until("another window", lambda: self.windows_named(SETTINGS, "--onlyvisible") - old)
        wait_until("the end of the old one", lambda: self.windows_named(SETTINGS) == new)

    def test_a_second_start_shows_the_settings_of_the_first(self):
        first = self.start()
        self.assertEqual(self.desktop.start("second", [PROGRAM]).wait(10), 0)
        self.windows.find("frame", SETTINGS)
        self.assertIsNone(first.poll())

    def test_a_crash_does_not_block_the_next_start(self):
        first = self.start()
        first.send_signal(signal.SIGKILL)
        first.wait()
        second = self.start()
        self.open_settings()
        self.assertIsNone(second.poll())

    def test_without_a_tray_the_settings_come_up(self):
        desktop = self.enter(None)
        self.addCleanup(lambda: print(desktop.log("sonvara")))  # shown after a failure
        program = desktop.start("sonvara", [PROGRAM])
        Accessibility(desktop, program.pid).find("frame", SETTINGS, limit=30)
        program.terminate()
        self.assertEqual(program.wait(5), 0)
        later = desktop.start("later", [PROGRAM])  # as at the next login: nobody wants a window each time
        wait_until("the plain sentence", lambda: "This desktop shows no tray" in desktop.log("later"), 30)
        windows = Accessibility(desktop, later.pid)
        self.assertFalse(windows.is_shown("frame", SETTINGS))
        self.assertEqual(desktop.start("again", [PROGRAM]).wait(10), 0)
        windows.find("frame", SETTINGS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
