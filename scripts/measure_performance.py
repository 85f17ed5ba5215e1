#!/usr/bin/env python3
"""Measures a release build beside other programs, and how its cost grows; writes docs/performance.md and its chart.

usage: measure_performance.py BUILD [--peers DIR] [--runs N] [--out FILE]
BUILD has tools/rubrica-bench and bench/growth. DIR is where the drivers of other programs were built (bin/, in/ and
npm/ beneath it) and PEER_SCRIPTS the folder of their scripts; programs that are missing are left out and named.
Every figure is the median wall time of whole processes, ours and theirs in turn, so that the machine's mood falls on all.
"""
import argparse
import glob
import os
import pathlib
import platform
import statistics
import subprocess
import sys
import tempfile
import time

WORKLOADS = {"xlsx": ["N", "S", "M", "R", "B"], "xls": ["N", "S", "M"]}
# The largest ratio to the best peer that we want to have, by job and form.
GOALS = {("write", "xlsx"): 0.40, ("read", "xlsx"): 0.50, ("write", "xls"): 0.12, ("read", "xls"): 1.0}
GROWTH = {"rows": 2000, "sheets": 64, "strings": 8000, "styles": 1000, "merges": 2000, "names": 1000, "parts": 64,
          "formula-length": 8}
GROWTH_STEPS = 6
GROWTH_LIMIT_TIME, GROWTH_LIMIT_MEMORY = 2.3, 2.1


def run(command):
    """(seconds, peak megabytes) of one process; None when it fails."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        return None
    return time.perf_counter() - start, usage.ru_maxrss / 1024


class Job:
    """One task of one program, measured as often as asked."""

    def __init__(self, label, command, result=None):
        self.label, self.command, self.result = label, [str(word) for word in command], result
        self.seconds, self.peak, self.size, self.failed = [], 0, None, False

    def measure(self):
        if self.failed:
            return
        measured = run(self.command)
        if measured is None:
            self.failed = True
            return
        self.seconds.append(measured[0])
        self.peak = max(self.peak, measured[1])
        if self.result is not None and pathlib.Path(self.result).exists():
            self.size = pathlib.Path(self.result).stat().st_size

    @property
    def median(self):
        return statistics.median(self.seconds) if self.seconds and not self.failed else None


class Peers:
    """The commands of other programs, as far as they are on this machine."""

    def __init__(self, folder, scripts):
        self.bin = pathlib.Path(folder or "/nonexistent") / "bin"
        self.scripts = pathlib.Path(scripts or "/nonexistent")
        jars = [jar for name in ("poi", "poi-ooxml", "poi-ooxml-schemas", "xmlbeans", "commons-collections4", "commons-compress",
                                 "commons-math3", "commons-codec") for jar in glob.glob(f"/usr/share/java/{name}.jar")]
        self.java = ["java", "-Xmx12g", "-cp", ":".join([str(self.bin / "java"), *jars]), "Poi"]

    def jobs(self, job, form, workload, source, target):
        py = self.scripts / "py"
        table = {
            ("write", "xlsx"): [("libxlsxwriter, constant memory", [self.bin / "xw_write", workload, target, "const"]),
                                ("libxlsxwriter", [self.bin / "xw_write", workload, target])],
            ("read", "xlsx"): [("liborcus, load only", ["sh", "-c", f"orcus-xlsx -f none {source}; true"])],
            ("write", "xls"): [("POI HSSF", [*self.java, "write", "hssf", workload, target]),
                               ("xlwt", ["/usr/bin/python3", py / "write_xlwt.py", workload, target])],
            ("read", "xls"): [("FreeXL", [self.bin / "freexl_read", source]),
                              ("xlrd", ["/usr/bin/python3", py / "read_xlrd.py", source])],
        }
        return [Job(label, command, target if job == "write" else None) for label, command in table[(job, form)]]


def side_by_side(build, peers, runs, work, say):
    """{(job, form, workload): [jobs, ours first]}"""
    bench, measured = build / "tools/rubrica-bench", {}
    for form, workloads in WORKLOADS.items():
        for workload in workloads:
            ours, theirs = work / f"{workload}.{form}", work / f"peer.{form}"
            if run([str(bench), "write", form, workload, str(ours)]) is None:
                continue
            for job in ("write", "read"):
                command = [bench, "write", form, workload, ours] if job == "write" else [bench, "read", ours]
                jobs = [Job("ours", command, ours), *peers.jobs(job, form, workload, ours, theirs)]
                for _ in range(runs if workload != "B" else min(runs, 3)):
                    for one in jobs:
                        one.measure()
                measured[(job, form, workload)] = jobs
                say(f"{job} {form} {workload}: " + ", ".join(f"{j.label} {j.median:.3f}" for j in jobs if j.median is not None))
    return measured


def growth(build, runs, say):
    """{(form, dimension): [(size, seconds, peak KB)]}"""
    table = {}
    for form in ("xls", "xlsx"):
        for dimension, first in GROWTH.items():
            rows = []
            for step in range(GROWTH_STEPS + 1):
                size, results = first << step, []
                for _ in range(runs):
                    done = subprocess.run([build / "bench/growth", form, dimension, str(size)], capture_output=True, text=True)
                    if done.returncode != 0:
                        break
                    results.append(dict(word.split("=") for word in done.stdout.split()))
                if not results:
                    break
                rows.append((size, min(float(r["seconds"]) for r in results), min(int(r["peakKB"]) for r in results)))
            if rows:
                table[(form, dimension)] = rows
                say(f"growth {form} {dimension}: " + ", ".join(f"{size}: {seconds * 1000:.1f} ms" for size, seconds, _ in rows))
    return table


def number(value, form):
    return "" if value is None else format(value, form)


def side_by_side_lines(measured):
    for (job, form), goal in GOALS.items():
        rows = [(workload, jobs) for (j, f, workload), jobs in measured.items() if (j, f) == (job, form)]
        if not rows:
            continue
        yield f"### {job} .{form}"
        yield ""
        yield f"Goal: at most {goal:.2f} of the best other program."
        yield ""
        yield "| workload | program | seconds | ours / this | peak MB | file MB |"
        yield "|---|---|---|---|---|---|"
        for workload, jobs in rows:
            for one in jobs:
                if one.median is None:
                    yield f"| {workload} | {one.label} | not on this machine | | | |"
                    continue
                ratio = jobs[0].median / one.median if one is not jobs[0] and jobs[0].median else None
                size = one.size / 1e6 if one.size and job == "write" else None
                yield f"| {workload} | {one.label} | {one.median:.3f} | {number(ratio, '.2f')} | {one.peak:.0f} | {number(size, '.1f')} |"
        yield ""


def growth_lines(table):
    yield "| form | dimension | from | to | seconds | per doubling: time, worst | memory, worst |"
    yield "|---|---|---|---|---|---|---|"
    for (form, dimension), rows in table.items():
        # What a process costs before it does anything is no growth; the first steps hide in it.
        times = [b[1] / a[1] for a, b in zip(rows, rows[1:]) if a[1] > 0.002]
        memory = [b[2] / a[2] for a, b in zip(rows, rows[1:])]
        steps = len(rows) - 1
        mean = (rows[-1][1] / rows[0][1]) ** (1 / steps) if steps else 1
        worst = max(times, default=1)
        mark = "" if worst <= GROWTH_LIMIT_TIME and max(memory, default=1) <= GROWTH_LIMIT_MEMORY else " (over)"
        yield (f"| {form} | {dimension} | {rows[0][0]} | {rows[-1][0]} | {rows[-1][1]:.3f} | {mean:.2f}, {worst:.2f}{mark} "
               f"| {(rows[-1][2] / rows[0][2]) ** (1 / max(steps, 1)):.2f}, {max(memory, default=1):.2f} |")


def chart(measured):
    """Our time as a part of the best other program's, a bar a task, as SVG."""
    bars = []
    for (job, form, workload), jobs in measured.items():
        others = [one.median for one in jobs[1:] if one.median is not None]
        if jobs[0].median is not None and others:
            bars.append((f"{job} .{form} {workload}", jobs[0].median / min(others), GOALS[(job, form)]))
    width, row, left = 720, 22, 140
    scale = (width - left - 60) / max([1.0] + [ratio for _, ratio, _ in bars])
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{row * len(bars) + 50}" font-family="sans-serif" font-size="12">',
             '<rect width="100%" height="100%" fill="white"/>',
             f'<text x="{left}" y="16">our time / best other program (line: equal; tick: goal)</text>']
    for i, (label, ratio, goal) in enumerate(bars):
        y = 28 + i * row
        lines.append(f'<text x="{left - 6}" y="{y + 13}" text-anchor="end">{label}</text>')
        lines.append(f'<rect x="{left}" y="{y}" width="{ratio * scale:.1f}" height="{row - 6}" fill="{"#3a7" if ratio <= goal else "#c84"}"/>')
        lines.append(f'<text x="{left + ratio * scale + 4:.1f}" y="{y + 13}">{ratio:.2f}</text>')
        lines.append(f'<rect x="{left + goal * scale:.1f}" y="{y - 2}" width="2" height="{row - 2}" fill="#333"/>')
    lines.append(f'<rect x="{left + scale:.1f}" y="24" width="1" height="{row * len(bars)}" fill="#999"/>')
    return "\n".join([*lines, "</svg>", ""])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--peers", default=os.environ.get("PEERS_TMP", "/var/tmp/peers"))
    parser.add_argument("--peer-scripts", default=os.environ.get("PEER_SCRIPTS", "../shared/peers"))
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--out", type=pathlib.Path, default=pathlib.Path("docs/performance.md"))
    options = parser.parse_args()
    say = lambda text: print(text, file=sys.stderr, flush=True)
    with tempfile.TemporaryDirectory() as work:
        measured = side_by_side(options.build, Peers(options.peers, options.peer_scripts), options.runs, pathlib.Path(work), say)
    grown = growth(options.build, max(options.runs, 3), say)
    picture = options.out.with_suffix(".svg")
    picture.write_text(chart(measured), encoding="utf-8")
    lines = ["# Performance", "",
             f"Made by `./dev performance` on {time.strftime('%Y-%m-%d')}, {os.cpu_count()} cores, {platform.machine()}. Whole processes,",
             "median wall seconds; ratios are what counts, absolute times are this machine's. The workloads are those of",
             "`rubrica-bench`: a million cells (N numbers, S strings, M mixed with styles and formulas, R random numbers; B ten",
             "million numbers; M of .xls 625,000 cells).", "", f"![our time beside the best other program]({picture.name})", "",
             "## Beside other programs", "", *side_by_side_lines(measured), "## Growth", "",
             f"One book's whole life (made, filled, saved, loaded, looked through) while one dimension doubles {GROWTH_STEPS} times. Wanted: at",
             f"most {GROWTH_LIMIT_TIME} times the time and {GROWTH_LIMIT_MEMORY} times the memory for each doubling.", "", *growth_lines(grown), ""]
    options.out.write_text("\n".join(lines), encoding="utf-8")
    say(f"written: {options.out}, {picture}")


if __name__ == "__main__":
    main()
