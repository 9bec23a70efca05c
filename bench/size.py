"""(5) The size of the program and of what it loads."""

import os
import shutil
import subprocess

from desktop.tray import TrayItem

from contenders import BARE_TRAY, SONVARA, Running
from process_figures import libraries
from report import Row, mebibytes

TITLE = "Size of the program and of what it loads"


def measure(desktop, _scale):
    sizes, loads = {}, {}
    for command in (SONVARA, BARE_TRAY):
        sizes[command] = _stripped_size(command[0], desktop.folder)
        with Running(desktop, command) as program:
            TrayItem(desktop, program.pid)
            loads[command] = libraries(program.pid)
    kinds = ("the program, stripped", sizes, _kibibytes), ("libraries and plug-ins", loads, _load)
    return [Row(what, text(found[SONVARA]), f"{text(found[BARE_TRAY])} bare Qt tray program", "", None)
            for what, found, text in kinds]


def _stripped_size(program, folder):
    copy = os.path.join(folder, "stripped")
    shutil.copy(program, copy)
    subprocess.run(["strip", copy], check=True)
    return os.path.getsize(copy)


def _kibibytes(size):
    return f"{size / 1024:.0f} KiB"


def _load(found):
    return f"{found[0]} of {mebibytes(found[1])}"
