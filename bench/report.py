"""The tables of docs/performance.md."""

import os
import platform
import re
import statistics
import subprocess
import time
from dataclasses import dataclass

BEGIN, END = "<!-- written by tools/bench: begin -->", "<!-- written by tools/bench: end -->"

_PACKAGES = "libqt6core6", "libspeechd2", "playerctl", "speech-dispatcher"


@dataclass(frozen=True)
class Row:
    what: str
    ours: str
    beside: str
    target: str
    is_reached: bool | None  # None: there is no target


def table(title, rows):
    lines = [f"### {title}", "", "| | Sonvara | beside it | to reach | |", "|---|---|---|---|---|"]
    lines += [f"| {row.what} | {row.ours} | {row.beside} | {row.target} | {_verdict(row)} |" for row in rows]
    return "\n".join(lines)


def _verdict(row):
    return {True: "reached", False: "**not reached**", None: ""}[row.is_reached]


def machine():
    """The machine, in a sentence."""
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = next(line.split(":")[1].strip() for line in file if line.startswith("model name"))
    gibibytes = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 1024 ** 3
    system = platform.freedesktop_os_release()["PRETTY_NAME"]
    packages = subprocess.run(["dpkg-query", "-W", "-f=, ${Package} ${Version}", *_PACKAGES], stdout=subprocess.PIPE,
                              check=True).stdout.decode()
    return (f"Measured on {time.strftime('%Y-%m-%d')}: {model}, {os.cpu_count()} processors, {gibibytes:.0f} GiB, "
            f"Linux {platform.release()}, {system}{packages}. "
            f"Load average before the run: {os.getloadavg()[0]:.2f}.")


def write(path, text):
    """Puts the text between the marks of the document."""
    _replace(path, re.escape(BEGIN) + ".*" + re.escape(END), f"{BEGIN}\n{text}\n{END}", "place for the tables")


def replace_table(path, text):
    """Puts the table in the place of the one with the same title."""
    title = text.partition("\n")[0]
    pattern = re.escape(title) + r"\n.*?(?=\n\n### |\n" + re.escape(END) + ")"
    _replace(path, pattern, text, f"table “{title}”")


def _replace(path, pattern, text, what):
    """Puts the text where the document matches the pattern, which it must do once."""
    with open(path, encoding="utf-8") as file:
        document = file.read()
    written, count = re.subn(pattern, lambda _: text, document, flags=re.DOTALL)
    if count != 1:
        raise ValueError(f"{path} has no {what}")
    with open(path, "w", encoding="utf-8") as file:
        file.write(written)


def duration(seconds):
    """To three digits, in the unit that it is best read in."""
    for unit, length in (("s", 1), ("ms", 1e-3), ("µs", 1e-6), ("ns", 1e-9)):
        if seconds >= length:
            break
    value = seconds / length
    return f"{value:.{0 if value >= 100 else 1 if value >= 10 else 2}f} {unit}"


def spread(values, text):
    """The median of several runs, and what the least and the greatest came to."""
    return f"{text(statistics.median(values))} ({text(min(values))} to {text(max(values))})"


def mebibytes(kibibytes):
    return f"{kibibytes / 1024:.1f} MiB"


def percent(share, digits=3):
    return f"{100 * share:.{digits}f} %"


def two_digits(number):
    return f"{number:.2f}"


def times(ratio):
    return f"{ratio:.2f} times"
