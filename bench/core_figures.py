"""The core's own costs, from the Google Benchmark program."""

import json
import subprocess

from contenders import CORE
from report import Row, duration

TITLE = "The core by itself"

_UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}


def measure(_desktop, scale):
    """The median of several repetitions, without a desktop."""
    done = subprocess.run([CORE, "--benchmark_format=json", "--benchmark_repetitions=5",
                           "--benchmark_report_aggregates_only=true", f"--benchmark_min_time={max(0.05, 0.5 * scale)}"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    found = {}
    for each in json.loads(done.stdout)["benchmarks"]:
        if each["aggregate_name"] == "median":
            what, who = each["run_name"].rsplit("/", 1)
            found.setdefault(what, {})[who] = duration(each["real_time"] * _UNITS[each["time_unit"]])
    return [Row(what, each.pop("ours"), ", ".join(f"{text} {who}" for who, text in each.items()), "", None)
            for what, each in found.items()]
