"""Builds one table from the JSON files of the benchmark programs.

Usage: python3 bench/bench_table.py PAIRS_TSV RESULT_DIR [--cpu] [--filtered]

RESULT_DIR holds <program>.json per program, written with --benchmark_out. Each engine
benchmark named in PAIRS_TSV is shown with its baseline and the ratio engine / baseline
(above 1: the engine is slower); every other benchmark is shown alone. Times are wall
clock per iteration (--cpu: the benchmark thread's CPU time; GL drivers render in other
threads, so wall clock is the default). --filtered: the run had a filter, so pairs with
no result are left out instead of being reported missing.
"""
import argparse
import json
import pathlib
import sys

TO_NS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_pairs(path):
    """Returns [(program, engine, baseline, note)] from the tab-separated pairs file."""
    pairs = []
    for number, line in enumerate(pathlib.Path(path).read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) < 3 or not all(f.strip() for f in fields[:3]):
            raise SystemExit(f"{path}:{number}: expected program, engine, baseline, note separated by tabs")
        fields += [""] * (4 - len(fields))
        pairs.append(tuple(f.strip() for f in fields[:4]))
    return pairs


def read_results(directory):
    """Returns {program: {benchmark name: result}} in the programs' own order."""
    results = {}
    for path in sorted(pathlib.Path(directory).glob("*.json")):
        text = path.read_text()
        if not text.strip():
            continue  # the filter matched nothing in this program
        runs = [b for b in json.loads(text).get("benchmarks", []) if b.get("run_type", "iteration") == "iteration"]
        results[path.stem] = {b["name"]: b for b in runs}
    return results


def nanoseconds(result, cpu):
    """The time of one iteration in nanoseconds, or None for a benchmark that failed."""
    if result.get("error_occurred"):
        return None
    return result["cpu_time" if cpu else "real_time"] * TO_NS[result.get("time_unit", "ns")]


def format_time(ns):
    """Three significant digits in the largest unit that keeps the number at least 1."""
    if ns is None:
        return "error"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if ns >= scale:
            return f"{ns / scale:.3g} {unit}"
    return f"{ns:.3g} ns"


def variants(name, names):
    """The benchmarks of a pair entry: the name itself, or all its argument variants."""
    if name in names:
        return [(name, "")]
    return [(n, n[len(name):]) for n in names if n.startswith(name + "/")]


def display_name(result):
    label = result.get("label")
    return f"{result['name']} [{label}]" if label else result["name"]


def build_rows(pairs, results, cpu, filtered):
    """Rows of (program, benchmark, engine time, baseline, baseline time, ratio)."""
    rows, problems = [], []
    for program, runs in results.items():
        paired = set()
        for prog, engine, baseline, note in pairs:
            if prog != program:
                continue
            found = False
            for name, suffix in variants(engine, runs):
                base_name = baseline + suffix
                if base_name not in runs:
                    continue
                found = True
                paired.update((name, base_name))
                e, b = nanoseconds(runs[name], cpu), nanoseconds(runs[base_name], cpu)
                ratio = f"{e / b:.3g}" if e and b else "-"
                base_text = f"{base_name} ({note})" if note else base_name
                rows.append((program, display_name(runs[name]), format_time(e), base_text, format_time(b), ratio))
            if not found and not filtered:
                problems.append(f"pair without results: {program} {engine} / {baseline}")
        for name, result in runs.items():
            if name not in paired:
                rows.append((program, display_name(result), format_time(nanoseconds(result, cpu)), "-", "-", "-"))
    if not filtered:
        for program in sorted({p[0] for p in pairs} - set(results)):
            problems.append(f"no results from {program}")
    return rows, problems


def print_table(rows, out):
    header = ("program", "benchmark", "engine", "baseline", "baseline time", "ratio")
    widths = [max(len(r[i]) for r in [header, *rows]) for i in range(len(header))]
    right = {2, 4, 5}

    def line(cells):
        return "  ".join(c.rjust(w) if i in right else c.ljust(w) for i, (c, w) in enumerate(zip(cells, widths))).rstrip()

    print(line(header), file=out)
    print("  ".join("-" * w for w in widths), file=out)
    for row in rows:
        print(line(row), file=out)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("pairs")
    parser.add_argument("results")
    parser.add_argument("--cpu", action="store_true", help="CPU time of the benchmark thread instead of wall clock")
    parser.add_argument("--filtered", action="store_true", help="the run had a filter: no missing-pair report")
    args = parser.parse_args(argv)
    rows, problems = build_rows(read_pairs(args.pairs), read_results(args.results), args.cpu, args.filtered)
    if not rows:
        print("no benchmark results", file=sys.stderr)
        return 1
    print_table(rows, sys.stdout)
    for problem in problems:
        print(f"bench: {problem}", file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
