#!/usr/bin/env python3
"""Pairs every benchmark case with its baseline and prints one table.

Reads Google Benchmark JSON files. A case "BM_X" (with or without arguments,
"BM_X/2000") is paired with "BM_X_Baseline" carrying the same arguments; a
case "BM_X_Library" is paired with the other benchmark named "BM_X_...". The
user counter "bar" of a case is the largest acceptable ratio case/baseline.
Times are CPU times (the machine may be shared, so wall time says less),
except for cases with the counter "wall", which time other processes and so
are read by the clock; medians when the run had repetitions. Exits 1 when a
ratio misses its bar.
"""

import json
import re
import sys

BASELINE = re.compile(r"_?[Bb]aseline(?=/|$)")
LIBRARY = re.compile(r"^(.*)_Library$")
UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def load(paths):
    """run name -> (seconds, bar) using the median when there is one."""
    per_run = {}
    notes = []
    for path in paths:
        with open(path, encoding="utf-8") as f:
            text = f.read()
        if not text.strip():
            continue  # a filter matched nothing in this executable
        data = json.loads(text)
        for b in data.get("benchmarks", []):
            name = b["run_name"]
            kind = b.get("aggregate_name") if b.get("run_type") == "aggregate" else "iteration"
            if kind == "BigO":
                notes.append(f"{name}: fitted O({b['big_o']}), "
                             f"{b['cpu_coefficient']:.3g} {b['time_unit']} per item")
                continue
            if kind == "RMS":
                notes.append(f"{name}: RMS deviation from the fit {100 * b['rms']:.1f}%")
                continue
            seconds = b["real_time" if b.get("wall") else "cpu_time"] * UNITS[b["time_unit"]]
            entry = per_run.setdefault(name, {"times": [], "median": None, "bar": b.get("bar")})
            if kind == "median":
                entry["median"] = seconds
            elif kind == "iteration":
                entry["times"].append(seconds)
    result = {}
    for name, entry in per_run.items():
        times = sorted(entry["times"])
        seconds = entry["median"]
        if seconds is None and times:
            seconds = times[len(times) // 2]
        if seconds is not None:
            result[name] = (seconds, entry["bar"])
    return result, notes


def show(seconds):
    for unit, scale in (("s", 1.0), ("ms", 1e-3), ("us", 1e-6)):
        if seconds >= scale:
            return f"{seconds / scale:.3f} {unit}"
    return f"{seconds / 1e-9:.1f} ns"


def main(paths):
    runs, notes = load(paths)
    rows = []
    failed = False
    for name, (seconds, bar) in runs.items():
        if BASELINE.search(name):
            continue
        baseline_name = None
        for candidate in runs:
            if BASELINE.search(candidate) and BASELINE.sub("", candidate) == name:
                baseline_name = candidate
                break
        library = LIBRARY.match(name)
        if library:
            for candidate in runs:
                if candidate != name and candidate.startswith(library.group(1) + "_"):
                    baseline_name = candidate
                    break
        elif any(LIBRARY.match(other) and name.startswith(LIBRARY.match(other).group(1) + "_")
                 for other in runs):
            continue  # the baseline of a "_Library" case
        label = name[3:] if name.startswith("BM_") else name
        if baseline_name is not None and library:
            label = f"{label} vs {baseline_name.rsplit('_', 1)[-1]}"
        if baseline_name is None:
            rows.append((label, show(seconds), "-", "-", "-", ""))
            continue
        base = runs[baseline_name][0]
        ratio = seconds / base
        verdict = ""
        if bar is not None:
            ok = ratio <= bar
            failed |= not ok
            verdict = "ok" if ok else "MISSED"
        bar_text = f"<= {bar:g}" if bar is not None else "-"
        if ratio < 0.1:
            ratio_text = f"{ratio:.4f} ({1 / ratio:.0f}x faster)"
        else:
            ratio_text = f"{ratio:.3f}"
        rows.append((label, show(seconds), show(base), ratio_text, bar_text, verdict))

    def order(row):
        base, _, arg = row[0].partition("/")
        return (base, int(arg) if arg.isdigit() else 0)

    rows.sort(key=order)
    header = ("case", "time (cpu)", "baseline", "ratio", "bar", "")
    widths = [max(len(str(r[i])) for r in rows + [header]) for i in range(len(header))]
    line = lambda r: "  ".join(str(v).ljust(w) for v, w in zip(r, widths)).rstrip()
    print(line(header))
    print("  ".join("-" * w for w in widths).rstrip())
    for r in rows:
        print(line(r))
    for note in notes:
        print(note)
    return 1 if failed else 0


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: report.py RESULTS.json...")
    sys.exit(main(sys.argv[1:]))
