#!/usr/bin/python3
"""Turns build/bench/results.json (written by tools/run-bench.sh) into the start-up plot
and the tables of docs/performance.md.

Usage: plot-bench.py RESULTS.json PLOT.png TABLES.md
"""
import json
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

BARE = "bare QDBusAbstractInterface"
UNIT_TO_MS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def parts(benchmark):
    """The name's own parts, without Google Benchmark's suffixes (min_time:..., real_time)."""
    suffixes = ("min_time:", "iterations:", "repeats:", "real_time")
    return [p for p in benchmark["name"].split("/") if not p.startswith(suffixes)]


def milliseconds(benchmark):
    return benchmark["real_time"] * UNIT_TO_MS[benchmark["time_unit"]]


def round_trip_table(calls):
    by_pattern = {}
    for row in calls:
        by_pattern.setdefault(row["pattern"], {})[row["implementation"]] = row
    order = ["library", BARE, "QDBusConnection::call", "sdbus-c++", "sd_bus_call"]
    lines = ["| call | implementation | median µs | p99 µs | median ÷ bare subclass |", "|---|---|---:|---:|---:|"]
    for pattern, rows in by_pattern.items():
        bare = rows.get(BARE)
        for impl in order:
            if impl in rows:
                r = rows[impl]
                ratio = r["median_us"] / bare["median_us"] if bare else float("nan")
                lines.append(f"| {pattern} | {impl} | {r['median_us']:.1f} | {r['p99_us']:.1f} | {ratio:.2f} |")
    return "\n".join(lines)


def callgrind_table(callgrind):
    counts = {}
    for row in callgrind:
        pattern, impl = row["contender"].rsplit(":", 1)
        counts.setdefault(pattern, {})[impl] = row["instructions_per_call"]
    lines = ["| call pattern | library | bare subclass | library ÷ bare |", "|---|---:|---:|---:|"]
    for pattern, by_impl in counts.items():
        lib, bare = by_impl.get("library"), by_impl.get(BARE)
        if lib and bare:
            lines.append(f"| {pattern} | {lib} | {bare} | {lib / bare:.3f} |")
    int_read = counts.get("int read", {})
    lines += ["", "| int read through | instructions per call |", "|---|---:|"]
    lines += [f"| {impl} | {count} |" for impl, count in int_read.items()]
    return "\n".join(lines)


def rate_table(benchmarks, scenario, counter, label):
    lines = [f"| implementation | {label} |", "|---|---:|"]
    for b in benchmarks:
        p = parts(b)
        if p[0] == scenario and not b.get("error_occurred") and b.get("run_type") == "iteration":
            lines.append(f"| {p[1]} | {b[counter]:,.0f} |")
    return "\n".join(lines)


def custom_type_table(benchmarks):
    lines = ["| operation | entries | ms per call | µs per entry |", "|---|---:|---:|---:|"]
    rows = sorted((parts(b)[1], int(b["entries"]), milliseconds(b)) for b in benchmarks
                  if parts(b)[0] == "custom types" and not b.get("error_occurred"))
    for operation, entries, ms in rows:
        lines.append(f"| {operation} | {entries:,} | {ms:.3f} | {1000 * ms / entries:.3f} |")
    return "\n".join(lines)


def startup_table(startup):
    lines = [
        "| N | path | construct µs | connect µs | first read µs | whole µs | fast ÷ plain (construct / whole) "
        "| best run: construct / whole µs | best runs: fast ÷ plain | msgs sent | msgs received "
        "| match rules added | heap bytes |",
        "|---:|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|",
    ]
    plain = {r["proxies"]: r for r in startup if r["path"] == "plain"}
    for r in startup:
        ratio = best_ratio = ""
        p = plain[r["proxies"]]
        if r["path"] == "bare subclass":
            ratio = f"(plain ÷ bare {p['total_us_per_proxy'] / r['total_us_per_proxy']:.2f})"
            best_ratio = f"(plain ÷ bare {p['total_us_per_proxy_best'] / r['total_us_per_proxy_best']:.2f})"
        if r["path"] == "fast":
            ratio = (f"{r['construct_us_per_proxy'] / p['construct_us_per_proxy']:.2f} / "
                     f"{r['total_us_per_proxy'] / p['total_us_per_proxy']:.2f}")
            best_ratio = (f"{r['construct_us_per_proxy_best'] / p['construct_us_per_proxy_best']:.2f} / "
                          f"{r['total_us_per_proxy_best'] / p['total_us_per_proxy_best']:.2f}")
        lines.append(
            f"| {r['proxies']} | {r['path']} | {r['construct_us_per_proxy']:.1f} | {r['connect_us_per_proxy']:.1f} "
            f"| {r['read_us_per_proxy']:.1f} | {r['total_us_per_proxy']:.1f} | {ratio} "
            f"| {r['construct_us_per_proxy_best']:.1f} / {r['total_us_per_proxy_best']:.1f} | {best_ratio} "
            f"| {r['messages_sent_per_proxy']:.2f} | {r['messages_received_per_proxy']:.2f} "
            f"| {r['match_rules_added']} | {r['heap_bytes_per_proxy']:.0f} |")
    return "\n".join(lines) + ("\n\nTimes (medians of the runs, and the best run), messages and heap bytes are per "
                              "proxy; match rules for the whole run.")


def plot_startup(startup, png):
    fig, ax = plt.subplots(figsize=(7, 4.5))
    for path, colour in (("plain", "tab:red"), ("fast", "tab:blue")):
        rows = sorted((r for r in startup if r["path"] == path), key=lambda r: r["proxies"])
        n = [r["proxies"] for r in rows]
        ax.plot(n, [r["total_us_per_proxy"] for r in rows], "o-", color=colour,
                label=f"{path}: construct, connect, first read")
        ax.plot(n, [r["construct_us_per_proxy"] for r in rows], "s--", color=colour, label=f"{path}: construct only")
    ax.set_xscale("log")
    ax.set_xlabel("proxies started together (N)")
    ax.set_ylabel("µs per proxy (median of runs)")
    ax.set_ylim(bottom=0)
    ax.set_title("Start-up of N proxies of one application")
    ax.grid(True, which="both", alpha=0.3)
    ax.legend(fontsize=8)
    fig.tight_layout()
    fig.savefig(png, dpi=100)


def main():
    results_file, png, tables_file = sys.argv[1:4]
    results = json.load(open(results_file))
    benchmarks = results["benchmarks"]["benchmarks"]
    plot_startup(results["startup"], png)
    sections = [
        ("Calls (scenarios 1 and 2, wall clock)", round_trip_table(results["calls"])),
        ("Instructions per call of the client process, both threads (scenario 2, callgrind)", callgrind_table(results["callgrind"])),
        ("Fire-and-forget (scenario 3)", rate_table(benchmarks, "fire-and-forget", "messages_per_s",
                                                    "setValue messages per second received by the server")),
        ("Signals (scenario 4)", rate_table(benchmarks, "signals", "signals_per_s",
                                            "change signals per second delivered")),
        ("Start-up (scenario 5)", startup_table(results["startup"])),
        ("Custom types (scenario 6)", custom_type_table(benchmarks)),
    ]
    with open(tables_file, "w") as out:
        for title, table in sections:
            out.write(f"### {title}\n\n{table}\n\n")
    print(open(tables_file).read())


if __name__ == "__main__":
    main()
