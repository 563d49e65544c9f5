"""Prints a Google Benchmark JSON file as one table of ratios: python3 bench_table.py JSON

A benchmark is named Group/Peer ("next_day/velloro", "next_day/icu"), with arguments behind. The
table has a row per group: velloro's own time, and each peer's time as a multiple of it, so that
"12.5×" in a peer's column means that velloro is 12.5 times as fast. Where benchmarks were repeated,
the median counts.
"""

import json
import re
import sys

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
HOUSE = "velloro"
# What the library appends to a name to tell how it ran: no argument of the benchmark.
RUN_SUFFIX = re.compile(
    r"/(?:(?:iterations|repeats|min_time|min_warmup_time|threads):[^/]*"
    r"|real_time|process_time|manual_time)(?=/|$)"
)


def group_and_peer(name):
    group, _, rest = RUN_SUFFIX.sub("", name).partition("/")
    peer, _, arguments = rest.partition("/")
    if not peer:
        raise ValueError(f'"{name}" is not of the form Group/Peer')
    return (f"{group}/{arguments}" if arguments else group), peer


def read_times(report):
    """{group: {peer: nanoseconds}} in the order of the file."""
    times, medians = {}, set()
    for run in report.get("benchmarks", []):
        name = run.get("run_name", run["name"])
        if run.get("error_occurred"):
            raise ValueError(f'"{name}" failed: {run.get("error_message", "no reason given")}')
        is_median = run.get("aggregate_name") == "median"
        if name in medians or (run.get("run_type") == "aggregate" and not is_median):
            continue
        if is_median:
            medians.add(name)
        group, peer = group_and_peer(name)
        times.setdefault(group, {})[peer] = run["real_time"] * NANOSECONDS[run["time_unit"]]
    return times


def duration(nanoseconds):
    for unit in ("s", "ms", "us"):
        if nanoseconds >= 0.9995 * NANOSECONDS[unit]:  # what three digits would round up to it
            return f"{nanoseconds / NANOSECONDS[unit]:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def ratio(times, peer):
    if peer not in times:
        return ""
    if not times.get(HOUSE):
        return duration(times[peer])
    value = times[peer] / times[HOUSE]
    return f"{value:.0f}×" if value >= 100 else f"{value:.1f}×" if value >= 10 else f"{value:.2f}×"


def table(times):
    peers = list(dict.fromkeys(p for group in times.values() for p in group if p != HOUSE))
    rows = [["benchmark", HOUSE, *peers]]
    for group, of_group in times.items():
        own = duration(of_group[HOUSE]) if HOUSE in of_group else "–"
        rows.append([group, own, *(ratio(of_group, peer) for peer in peers)])
    widths = [max(map(len, column)) for column in zip(*rows)]
    lines = []
    for row in rows:
        cells = [row[0].ljust(widths[0]), *(c.rjust(w) for c, w in zip(row[1:], widths[1:]))]
        lines.append("  ".join(cells).rstrip())
    return lines


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: bench_table.py JSON")
    try:
        with open(sys.argv[1], encoding="utf-8") as file:
            times = read_times(json.load(file))
    except (OSError, ValueError) as error:
        sys.exit(f"bench_table.py: {sys.argv[1]}: {error}")
    if not times:
        sys.exit(f"bench_table.py: {sys.argv[1]}: no benchmark in it")
    print("\n".join(table(times)))


if __name__ == "__main__":
    main()
