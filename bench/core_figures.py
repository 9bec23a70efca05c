"""The core's own costs, from the Google Benchmark program."""

import json
import subprocess

from contenders import CORE
from report import Row, duration, spread

TITLE = "The core by itself"

_UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}


def measure(_desktop, scale):
    """Several repetitions, without a desktop."""
    done = subprocess.run([CORE, "--benchmark_format=json", "--benchmark_repetitions=5",
                           f"--benchmark_min_time={max(0.05, 0.5 * scale)}"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    found = {}
    for each in json.loads(done.stdout)["benchmarks"]:
        if each["run_type"] == "iteration":
            what, who = each["run_name"].rsplit("/", 1)
            runs = found.setdefault(what, {}).setdefault(who, [])
            runs.append(each["real_time"] * _UNITS[each["time_unit"]])
    return [Row(what, spread(each.pop("ours"), duration),
                ", ".join(f"{spread(runs, duration)} {who}" for who, runs in each.items()), "", None)
            for what, each in found.items()]
