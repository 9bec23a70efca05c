#!/usr/bin/python3
"""What tools/bench runs once everything is built: measures, and prints or writes the tables."""

import argparse
import os
import sys

sys.dont_write_bytecode = True
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tools"))

from desktop.processes import end_orderly
from desktop.session import PrivateDesktop

import at_rest
import core_figures
import growth
import heard
import latency
import report
import size
import startup

MEASURES = {
    "latency": (latency.TITLE, latency.measure),
    "heard": (heard.TITLE, heard.measure),
    "start": (startup.TITLE, startup.measure),
    "memory": (at_rest.MEMORY_TITLE, at_rest.measure_memory),
    "rest": (at_rest.REST_TITLE, at_rest.measure_rest),
    "size": (size.TITLE, size.measure),
    "players": (growth.PLAYERS_TITLE, growth.measure_players),
    "rates": (growth.RATES_TITLE, growth.measure_rates),
    "core": (core_figures.TITLE, core_figures.measure),
}
_DESCRIPTION = """Measures Sonvara beside its peers on a private desktop. What is measured in full is written to
docs/performance.md; --short only prints."""
SHORT = 0.05  # of the full number of tracks, starts and seconds


def main():
    parser = argparse.ArgumentParser(prog="tools/bench", description=_DESCRIPTION)
    parser.add_argument("measures", nargs="*", metavar="MEASURE",
                        help=f"one of {', '.join(MEASURES)}; all unless told otherwise")
    parser.add_argument("--short", action="store_true", help="a trial of five minutes, to see that everything works")
    asked = parser.parse_args()
    if unknown := set(asked.measures) - set(MEASURES):
        parser.error(f"no such measure: {', '.join(sorted(unknown))}")
    names = asked.measures or list(MEASURES)
    machine = report.machine()
    tables = [_measure(name, SHORT if asked.short else 1) for name in names]
    if asked.short:
        return
    document = os.path.join(ROOT, "docs", "performance.md")
    if set(names) == set(MEASURES):
        report.write(document, "\n\n".join([machine, *tables]))
    else:
        for table in tables:
            report.replace_table(document, table)
    print("docs/performance.md is written")


def _measure(name, scale):
    title, measure = MEASURES[name]
    with PrivateDesktop() as desktop:
        text = report.table(title, measure(desktop, scale))
    print(text, end="\n\n", flush=True)
    return text


if __name__ == "__main__":
    end_orderly()
    main()
