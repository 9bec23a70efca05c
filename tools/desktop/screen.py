"""The private desktop's screen: its windows, pictures of them, the mouse, the keyboard and the clipboard."""

import re
import subprocess
from dataclasses import astuple, dataclass

from PIL import ImageGrab

from desktop.processes import wait_until

_WIDTH = 1280
_MARGIN = 8


@dataclass(frozen=True)
class Area:
    left: int
    top: int
    right: int
    bottom: int


class Screen:

    def __init__(self, desktop):
        self._desktop = desktop

    def window(self, title):
        """Waits for the window, and returns its area with the frame."""
        window = self._find(title)
        area = self._area_of(window)
        frame = self._desktop.run("xprop", "-id", window, "_NET_FRAME_EXTENTS")
        left, right, top, bottom = (int(width) for width in re.findall(r"\d+", frame))
        return Area(area.left - left, area.top - top, area.right + right, area.bottom + bottom)

    def close(self, title):
        """As the button in the window's title does."""
        window = self._find(title)
        self._desktop.run("xdotool", "windowactivate", "--sync", window, "key", "--clearmodifiers", "alt+F4")
        wait_until("the window's end", lambda: window not in self._visible())

    def open_tray_menu(self):
        """Clicks the item in the tray, the only one; returns the area of the menu and the item."""
        others = self._visible()
        self.click_tray_item("3")
        menu, *_ = wait_until("the menu", lambda: self._visible() - others)
        area = self._area_of(menu)
        return Area(area.left - _MARGIN, 0, _WIDTH, area.bottom + _MARGIN)

    def click_tray_item(self, button):
        self._desktop.run("xdotool", "mousemove", str(_WIDTH - 12), "15", "click", button)

    def windows_of(self, pid):
        """The windows of a process that can be seen, those inside of others included."""
        return self._visible("--pid", str(pid))

    def press(self, *keys):
        self._desktop.run("xdotool", "key", *keys)

    def picture(self, name, area):
        """Saves a picture of the area as soon as nothing in it changes."""
        def still():
            before, after = self._grab(area), self._grab(area)
            return after if before == after else None
        wait_until("a still picture", still).save(name)

    def clipboard(self):
        """The text in the clipboard, empty when there is none."""
        try:
            return self._desktop.run("xclip", "-o", "-selection", "clipboard", stderr=subprocess.DEVNULL)
        except subprocess.CalledProcessError:
            return ""

    def _grab(self, area):
        return ImageGrab.grab(astuple(area), xdisplay=self._desktop.env["DISPLAY"])

    def _find(self, title):
        return self._desktop.run("xdotool", "search", "--sync", "--onlyvisible", "--name", f"^{title}$").split()[0]

    def _visible(self, by="--class", what="."):
        try:
            return set(self._desktop.run("xdotool", "search", "--onlyvisible", by, what).split())
        except subprocess.CalledProcessError:
            return set()  # there is none

    def _area_of(self, window):
        text = self._desktop.run("xwininfo", "-id", window)
        left, top, width, height = (int(re.search(name + r": +(-?\d+)", text)[1]) for name in
                                    ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        return Area(left, top, left + width, top + height)
