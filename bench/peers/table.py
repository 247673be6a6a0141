#!/usr/bin/env python3
"""Prints the table of a PeerBench run from its JSON output.

One row per workload, one column per implementation with the median over the repetitions,
then the ratio Quiltra/peer for each other implementation (below 1: Quiltra is faster or
smaller) and, for the storage workloads, Quiltra's rate in megabytes of the stored form per
second. Times are the measured operation only; heap rows are bytes from the allocator's
statistics.

Usage: table.py RESULTS.json [--markdown]
"""
import json
import re
import statistics
import sys

SUFFIX = re.compile(r"/(manual_time|real_time|iterations:\d+|repeats:\d+|threads:\d+)$")
ORDER = ["Quiltra", "DCMTK", "GDCM", "memcpy"]


def split_name(run_name):
    while SUFFIX.search(run_name):
        run_name = SUFFIX.sub("", run_name)
    workload, _, implementation = run_name.rpartition("/")
    return workload, implementation


def rate(run):
    """Megabytes (10^6) of the stored form per second, where the workload counts bytes."""
    if "bytes_per_second" not in run:
        return None
    return run["bytes_per_second"] / 1e6


def measurement(run):
    if "heap_bytes" in run:
        return run["heap_bytes"], "B"
    scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}[run.get("time_unit", "ms")]
    return run["real_time"] * scale, "ms"


def collect(results):
    rows = {}  # workload -> {"rank": int, "unit": str, implementation: [values]}
    for run in results["benchmarks"]:
        if run.get("run_type") != "iteration" or run.get("error_occurred"):
            continue
        workload, implementation = split_name(run["run_name"])
        value, unit = measurement(run)
        row = rows.setdefault(workload, {"rank": run.get("family_index", 0), "unit": unit,
                                         "values": {}, "rates": []})
        row["rank"] = min(row["rank"], run.get("family_index", 0))
        row["values"].setdefault(implementation, []).append(value)
        if implementation == "Quiltra" and rate(run) is not None:
            row["rates"].append(rate(run))
    return sorted(rows.items(), key=lambda item: item[1]["rank"])


def shown(value, unit):
    if value is None:
        return ""
    if unit == "B":
        return f"{value:.0f} B"
    if value >= 100:
        return f"{value:.0f} ms"
    if value >= 1:
        return f"{value:.2f} ms"
    return f"{value * 1000:.1f} µs"


def main(argv):
    if len(argv) < 2:
        sys.exit(__doc__)
    markdown = "--markdown" in argv
    with open(argv[1], encoding="utf-8") as handle:
        results = json.load(handle)
    rows = collect(results)
    present = {impl for _, row in rows for impl in row["values"]}
    implementations = [impl for impl in ORDER if impl in present]
    implementations += sorted(present - set(ORDER))
    peers = [impl for impl in implementations if impl != "Quiltra"]

    header = ["workload"] + implementations + [f"Q/{peer}" for peer in peers] + ["Q MB/s"]
    lines = []
    for workload, row in rows:
        medians = {impl: statistics.median(values) for impl, values in row["values"].items()}
        cells = [workload] + [shown(medians.get(impl), row["unit"]) for impl in implementations]
        for peer in peers:
            quiltra, other = medians.get("Quiltra"), medians.get(peer)
            cells.append(f"{quiltra / other:.2f}" if quiltra is not None and other else "")
        cells.append(f"{statistics.median(row['rates']):.0f}" if row["rates"] else "")
        lines.append(cells)

    repetitions = max((len(v) for _, row in rows for v in row["values"].values()), default=0)
    context = results.get("context", {})
    print(f"Medians of {repetitions} interleaved repetitions; {context.get('num_cpus', '?')} "
          f"CPUs at {context.get('mhz_per_cpu', '?')} MHz, load average "
          f"{', '.join(f'{x:.2f}' for x in context.get('load_avg', []))} at the start.")
    if context.get("left_out"):
        if markdown:
            print()
        print(f"Left out (over ten minutes a run; QUILTRA_BENCH_ALL=1 or scripts/bench --all "
              f"runs them): {context['left_out']}.")
    if markdown:
        print()
        print("| " + " | ".join(header) + " |")
        print("|" + "|".join(" --- " for _ in header) + "|")
        for cells in lines:
            print("| " + " | ".join(cells) + " |")
        return
    widths = [max(len(row[i]) for row in [header] + lines) for i in range(len(header))]
    for cells in [header] + lines:
        print("  ".join(cell.ljust(widths[0]) if i == 0 else cell.rjust(widths[i])
                        for i, cell in enumerate(cells)))


if __name__ == "__main__":
    main(sys.argv)
