"""A program's item in the tray and its menu, read and chosen from over D-Bus as the tray host does."""

from dataclasses import dataclass

from gi.repository import GLib

from desktop.dbus import Remote, has_owner, process_of
from desktop.processes import wait_until

_WATCHER = "org.kde.StatusNotifierWatcher"
_MENU = "com.canonical.dbusmenu"


@dataclass(frozen=True)
class MenuItem:
    number: int
    text: str
    is_enabled: bool
    is_checked: bool
    is_separator: bool


class TrayItem:
    """The tray item of one process."""

    def __init__(self, desktop, pid, limit=15.0):
        item = wait_until("the tray item", lambda: _find(desktop.bus, pid), limit)
        self._menu = Remote(desktop.bus, item.owner, item.get("org.kde.StatusNotifierItem", "Menu"))

    def menu(self):
        """The items of the menu as they stand, without opening it."""
        layout = self._menu.call(_MENU, "GetLayout", "(iias)", 0, -1, [])[1]
        return [_menu_item(child) for child in layout[2]]

    def choose(self, text):
        """Opens the menu and chooses the item whose text begins so."""
        self._menu.call(_MENU, "AboutToShow", "(i)", 0)
        item = next(item for item in self.menu() if item.text.startswith(text))
        self._menu.call(_MENU, "Event", "(isvu)", item.number, "clicked", GLib.Variant("s", ""), 0)

    def now_playing(self):
        return self._text_below("Currently Playing")

    def chat(self):
        """The last line that the DJ spoke, in one line; empty before the first."""
        text = self._text_below("DJ Chat:").replace("\n", " ")
        return "" if text == "—" else text

    def _text_below(self, header):
        texts = [item.text for item in self.menu()]
        return texts[texts.index(header) + 1]


def _find(bus, pid):
    if not has_owner(bus, _WATCHER):
        return None
    watcher = Remote(bus, _WATCHER, "/StatusNotifierWatcher")
    try:
        entries = watcher.get(_WATCHER, "RegisteredStatusNotifierItems")
    except GLib.Error:
        return None  # the panel has the name before it has the object
    for entry in entries:
        owner, slash, path = entry.partition("/")
        if process_of(bus, owner) == pid:
            return Remote(bus, owner, slash + path if slash else "/StatusNotifierItem")
    return None


def _menu_item(child):
    number, properties, _ = child
    return MenuItem(number, _without_mnemonics(properties.get("label", "")), properties.get("enabled", True),
                    properties.get("toggle-state", 0) == 1, properties.get("type") == "separator")


def _without_mnemonics(label):
    """What a host shows of a label: one underscore marks a key and vanishes, two stand for one."""
    return label.replace("__", "\0").replace("_", "").replace("\0", "_")
