#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes one table of what the benchmark programs left in a folder.

A ratio is that of the two sides' fastest repetitions: whatever else the machine did can only have added
time. Exits non-zero when a number is missing or wrong.
"""
import json
import pathlib
import statistics
import sys

folder = pathlib.Path(sys.argv[1])
rows = []
good = True


def row(what, measured, aim="", verdict=""):
    rows.append((what, measured, aim, verdict))


def fields(program):
    """The program's own lines, by their first word."""
    lines = [line.split() for line in (folder / f"{program}.txt").read_text().splitlines()]
    return {words[0]: words[1:] for words in lines if words}


def times(program):
    """The processor time of each repetition by benchmark, in the benchmark's unit."""
    found = {}
    for run in json.loads((folder / f"{program}.json").read_text())["benchmarks"]:
        if run.get("run_type") == "iteration" and not run.get("error_occurred"):
            found.setdefault(run["name"], []).append(run["cpu_time"])
    return found


def exact(what, found):
    global good
    made, stated, verdict = found
    good = good and verdict == "exact" and made == stated
    row(what, made, f"exactly {stated}", verdict)


def ratio(what, beside, base, unit, aim):
    value = min(beside) / min(base)
    row(what, f"{value:.3f} ({min(beside):.0f} / {min(base):.0f} {unit})", f"at most {aim}",
        "met" if value <= aim else "MISSED")


def size(number):
    return f"{int(number):,} bytes"


calls = {
    "frame": "the frame, logging off",
    "send_to_cpu": "exception_configure, send to CPU with a queue",
    "drop": "exception_configure, drop",
    "create_delete": "interface_create and _delete, a switched trunk",
    "create": "interface_create by itself",
    "delete": "interface_delete by itself",
    "vlan_add": "vlan_id_add, the first of its bridge group",
    "vlan_delete": "vlan_id_del",
    "egress_vlan": "port_egress_vlan_config",
    "counters": "port_statistics_get",
    "l2_counters": "l2_interface_statistics_get",
}
counts, timed = fields("ovk-call-counts"), times("ovk-call-bench")
for name, what in calls.items():
    exact(f"{what}: platform calls", counts[name])
for name, what in calls.items():
    ratio(f"{what}: beside its platform calls alone", timed[f"call/{name}"], timed[f"direct/{name}"], "ns", 1.3)

row("of an interface_create, on both sides: the heap", f"{min(timed['heap']):.0f} ns")

writes, timed = fields("ovk-rule-bench"), times("ovk-rule-bench")
for number in ("1000", "60000"):
    exact(f"a rule learnt and deleted, {int(number):,} rules: platform writes", writes[f"rules/{number}"])
ratio("one rule learnt and deleted, 60,000 rules beside 1,000", timed["one_rule/60000"],
      timed["one_rule/1000"], "ns", 1.5)
for number in ("1000", "60000"):
    row(f"another rule each time, {int(number):,} rules", f"{min(timed[f'any_rule/{number}']):.0f} ns")
for name, what in {"interface": "interfaces created and deleted", "vlan": "VLANs added and deleted",
                   "counters": "reads of a port's counters"}.items():
    row(f"{what}, simulator", f"{1e9 / min(timed[f'ports/{name}']):,.0f} per second")

for program, platform in (("ovk-start-bench", "null platform"), ("ovk-start-bench-sim", "simulator")):
    row(f"start and stop, {platform}", f"{statistics.median(times(program)['start_stop']) / 1000:.2f} ms")
    row(f"start, {platform}: peak memory of the process", size(fields(program)["peak"][0]))
memory = fields("ovk-start-bench-sim")
row("module object", size(memory["object"][0]))
row("live heap after start", size(memory["heap"][0]))

rows.insert(0, ("what", "measured", "aim", "verdict"))
widths = [max(len(cells[column]) for cells in rows) for column in range(4)]
for cells in rows:
    print("  ".join(cell.ljust(width) for cell, width in zip(cells, widths)).rstrip())
sys.exit(0 if good else 1)
