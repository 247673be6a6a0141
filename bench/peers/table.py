#!/usr/bin/env python3
"""Prints the table of a PeerBench run from its JSON output.

One row per workload, one column per implementation with the median over the repetitions,
then the ratio Quiltra/peer for each other implementation (below 1: Quiltra is faster or
smaller) and, for the storage workloads, Quiltra's rate in megabytes of the stored form per
second. Times are the measured operation only; heap rows are bytes from the allocator's
statistics. A workload that counts what it made per millisecond (counter per_ms_of) gets a
second row with that rate (higher is better; no ratios). The store and write workloads of
the frame tree get a row with the megabytes each format wrote. A workload only Quiltra has shows, in parentheses, the peers'
figures of the workload it is held against (context "compared:<workload>").

Usage: table.py RESULTS.json [--markdown]
"""
import json
import math
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


def stored_size(workload, run):
    """Megabytes written by a frame tree's store or write workload, which differ by format."""
    if not workload.startswith("frames: ") or "bytes_per_second" not in run:
        return None
    if "store" not in workload and "write" not in workload:
        return None
    seconds = measurement(run)[0] / 1e3
    return run["bytes_per_second"] * seconds / 1e6


def per_ms_row(workload, run):
    """The name of the rate row of a workload that counts what it made, or None."""
    if "per_ms_of" not in run:
        return None
    ceiling = run.get("per_ms_ceiling")
    return f"{workload}: per ms" + (f" (ceiling {ceiling:.0f})" if ceiling else "")


def collect(results):
    rows = {}  # workload -> {"rank": int, "unit": str, implementation: [values]}

    def add(workload, rank, unit, implementation, value):
        row = rows.setdefault(workload, {"rank": rank, "unit": unit, "values": {}, "rates": []})
        row["rank"] = min(row["rank"], rank)
        row["values"].setdefault(implementation, []).append(value)
        return row

    for run in results["benchmarks"]:
        if run.get("run_type") != "iteration" or run.get("error_occurred"):
            continue
        workload, implementation = split_name(run["run_name"])
        value, unit = measurement(run)
        rank = run.get("family_index", 0)
        row = add(workload, rank, unit, implementation, value)
        if implementation == "Quiltra" and rate(run) is not None:
            row["rates"].append(rate(run))
        size = stored_size(workload, run)
        if size is not None:
            add(f"{workload}: size", rank + 0.25, "MB", implementation, size)
        rate_row = per_ms_row(workload, run)
        if rate_row and value > 0:
            add(rate_row, rank + 0.5, "/ms", implementation, run["per_ms_of"] / value)
    return sorted(rows.items(), key=lambda item: item[1]["rank"])


def ratio(quiltra, other):
    if quiltra is None or not other:
        return ""
    value = quiltra / other
    if value >= 0.1 or value == 0:
        return f"{value:.2f}"
    return f"{value:.{1 - math.floor(math.log10(value))}f}"  # two significant digits


def shown(value, unit):
    if value is None:
        return ""
    if unit == "B":
        return f"{value:.0f} B"
    if unit == "/ms":
        return f"{value:.1f}"
    if unit == "MB":
        return f"{value:.1f} MB"
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
    context = results.get("context", {})
    compared = {key[len("compared:"):]: value for key, value in context.items()
                if key.startswith("compared:")}
    medians = {workload: {impl: statistics.median(values)
                          for impl, values in row["values"].items()}
               for workload, row in rows}

    header = ["workload"] + implementations + [f"Q/{peer}" for peer in peers] + ["Q MB/s"]
    lines = []
    for workload, row in rows:
        own = medians[workload]
        against = medians.get(compared.get(workload), {})
        cells = [workload]
        for impl in implementations:
            if impl in own or impl not in against:
                cells.append(shown(own.get(impl), row["unit"]))
            else:
                cells.append(f"({shown(against[impl], row['unit'])})")
        for peer in peers:
            if row["unit"] == "/ms":  # a rate: higher is better, so no ratio
                cells.append("")
            elif peer in own:
                cells.append(ratio(own.get("Quiltra"), own[peer]))
            elif peer in against and "Quiltra" in own:
                cells.append(f"({ratio(own['Quiltra'], against[peer])})")
            else:
                cells.append("")
        cells.append(f"{statistics.median(row['rates']):.0f}" if row["rates"] else "")
        lines.append(cells)

    repetitions = max((len(v) for _, row in rows for v in row["values"].values()), default=0)
    print(f"Medians of {repetitions} interleaved repetitions; {context.get('num_cpus', '?')} "
          f"CPUs at {context.get('mhz_per_cpu', '?')} MHz, load average "
          f"{', '.join(f'{x:.2f}' for x in context.get('load_avg', []))} at the start.")
    if context.get("left_out"):
        if markdown:
            print()
        print(f"Left out (over ten minutes a run; QUILTRA_BENCH_ALL=1 or scripts/bench --all "
              f"runs them): {context['left_out']}.")
    shown_against = sorted({(w, r) for w, r in compared.items() if w in medians})
    if shown_against:
        if markdown:
            print()
        print("In parentheses: the peers' figures of the workload a Quiltra-only row is held "
              "against (" + "; ".join(f"{w}: {r}" for w, r in shown_against) + ").")
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
