#!/usr/bin/env python3
"""Measures a release build beside other programs, and how its cost grows; writes docs/performance.md and its charts.

usage: measure_performance.py BUILD [--peers DIR] [--runs N] [--out FILE]
BUILD has tools/rubrica-bench, bench/growth and bench/floor. DIR is where the drivers of other programs were built (bin/, in/ and
npm/ beneath it) and PEER_SCRIPTS the folder of their scripts; programs that are missing are left out and named.
Every figure is a median over whole processes, ours and theirs in turn, so that the machine's mood falls on all: wall time
and processor time, the peak of memory, the size of what was written. In the same turns bench/floor measures what nobody
can do without (inflate, one memchr pass, printing the numbers, deflate) on the bytes of the same workbook.
"""
import argparse
import glob
import math
import os
import pathlib
import platform
import statistics
import subprocess
import sys
import tempfile
import time

WORKLOADS = {"xlsx": ["N", "S", "M", "R", "B"], "xls": ["N", "S", "M"]}
# The largest ratio to the best peer that we want to have, by job and form. The fastest .xlsx reader known is no package and
# takes half of liborcus' time: half of the one is a quarter of the other.
GOALS = {("write", "xlsx"): 0.40, ("read", "xlsx"): 0.25, ("write", "xls"): 0.12, ("read", "xls"): 1.0}
# What a job can't do without, by the names that bench/floor prints.
FLOOR_PARTS = {("write", "xlsx"): ("print", "deflate"), ("read", "xlsx"): ("inflate", "scan"),
               ("write", "xls"): ("copy",), ("read", "xls"): ("touch",)}
GROWTH = {"rows": 2000, "sheets": 64, "strings": 8000, "styles": 1000, "merges": 2000, "names": 1000, "parts": 64,
          "formula-length": 8}
GROWTH_STEPS = 6
GROWTH_RUNS = 9  # at least: short jobs, of which one that was disturbed would look like growth
GROWTH_LIMIT_TIME, GROWTH_LIMIT_MEMORY = 2.3, 2.1
SHORTEST_GROWTH = 0.002  # seconds


def run(command):
    """(seconds, processor seconds, peak megabytes) of one process; None when it fails."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        return None
    return time.perf_counter() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


class Job:
    """One task of one program, measured as often as asked."""

    def __init__(self, label, command, result=None):
        self.label, self.command, self.result = label, [str(word) for word in command], result
        self.seconds, self.processor, self.peak, self.size, self.failed = [], [], 0, None, False

    def measure(self):
        if self.failed:
            return
        measured = run(self.command)
        if measured is None:
            self.failed = True
            return
        self.seconds.append(measured[0])
        self.processor.append(measured[1])
        self.peak = max(self.peak, measured[2])
        if self.result is not None and pathlib.Path(self.result).exists():
            self.size = pathlib.Path(self.result).stat().st_size

    @property
    def median(self):
        return statistics.median(self.seconds) if self.seconds and not self.failed else None

    @property
    def cpu(self):
        return statistics.median(self.processor) if self.processor and not self.failed else None


class Floor:
    """What nobody can do without on one workbook: the parts of the floor by name, in seconds."""

    def __init__(self, program, path):
        self.command, self.rounds = [str(program), str(path)], []

    def measure(self):
        done = subprocess.run(self.command, capture_output=True, text=True)
        if done.returncode == 0:
            self.rounds.append({key: float(value) for key, value in (word.split("=") for word in done.stdout.split())})

    def part(self, name):
        values = [one[name] for one in self.rounds if name in one]
        return statistics.median(values) if values else None

    def of(self, job, form):
        """The seconds that a job takes at least; None when they were not measured."""
        parts = [self.part(name) for name in FLOOR_PARTS[(job, form)]]
        return sum(parts) if None not in parts else None


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
    """{(job, form, workload): [jobs, ours first]} and {(form, workload): floor}"""
    bench, measured, floors = build / "tools/rubrica-bench", {}, {}
    for form, workloads in WORKLOADS.items():
        for workload in workloads:
            ours, theirs = work / f"{workload}.{form}", work / f"peer.{form}"
            if run([str(bench), "write", form, workload, str(ours)]) is None:
                continue
            floors[(form, workload)] = floor = Floor(build / "bench/floor", ours)
            for job in ("write", "read"):
                command = [bench, "write", form, workload, ours] if job == "write" else [bench, "read", ours]
                jobs = [Job("ours", command, ours), *peers.jobs(job, form, workload, ours, theirs)]
                for _ in range(runs if workload != "B" else min(runs, 3)):
                    for one in [*jobs, floor]:
                        one.measure()
                measured[(job, form, workload)] = jobs
                say(f"{job} {form} {workload}: " + ", ".join(f"{j.label} {j.median:.3f}" for j in jobs if j.median is not None))
    return measured, floors


def growth_once(build, form, dimension, size):
    """(processor seconds, peak KB) or None"""
    done = subprocess.run([build / "bench/growth", form, dimension, str(size)], capture_output=True, text=True)
    if done.returncode != 0:
        return None
    result = dict(word.split("=") for word in done.stdout.split())
    return float(result["processor"]), int(result["peakKB"])


def growth_of(build, form, dimension, sizes, runs):
    """[(size, least processor seconds, least peak KB)]. Rounds over all sizes, not runs of one: what disturbs the
    machine for a second then hits one run of each, and the least stays true."""
    rounds = [[growth_once(build, form, dimension, size) for size in sizes] for _ in range(runs)]
    rows = []
    for size, results in zip(sizes, zip(*rounds)):
        if None in results:
            break
        rows.append((size, min(seconds for seconds, _ in results), min(peak for _, peak in results)))
    return rows


def growth(build, runs, say):
    """{(form, dimension): [(size, processor seconds, peak KB)]}"""
    table = {}
    for form in ("xls", "xlsx"):
        for dimension, first in GROWTH.items():
            rows = growth_of(build, form, dimension, [first << step for step in range(GROWTH_STEPS + 1)], runs)
            if rows:
                table[(form, dimension)] = rows
                say(f"growth {form} {dimension}: " + ", ".join(f"{size}: {seconds * 1000:.1f} ms" for size, seconds, _ in rows))
    return table


def number(value, form):
    return "" if value is None else format(value, form)


def ratio_text(ours, theirs):
    return number(ours / theirs if ours and theirs else None, ".2f")


def side_by_side_lines(measured, floors):
    for (job, form), goal in GOALS.items():
        rows = [(workload, jobs) for (j, f, workload), jobs in measured.items() if (j, f) == (job, form)]
        if not rows:
            continue
        yield f"### {job} .{form}"
        yield ""
        yield f"Goal: at most {goal:.2f} of the best other program."
        yield ""
        yield "| workload | program | seconds | ours / this | processor seconds | ours / this | peak MB | file MB |"
        yield "|---|---|---|---|---|---|---|---|"
        for workload, jobs in rows:
            ours = jobs[0]
            for one in jobs:
                if one.median is None:
                    yield f"| {workload} | {one.label} | not on this machine | | | | | |"
                    continue
                wall, cpu = ("", "") if one is ours else (ratio_text(ours.median, one.median), ratio_text(ours.cpu, one.cpu))
                size = one.size / 1e6 if one.size and job == "write" else None
                yield (f"| {workload} | {one.label} | {one.median:.3f} | {wall} | {one.cpu:.3f} | {cpu} | {one.peak:.0f} "
                       f"| {number(size, '.1f')} |")
            least = floors[(form, workload)].of(job, form)
            yield f"| {workload} | the floor | {number(least, '.3f')} | {ratio_text(ours.median, least)} | | | | |"
        yield ""


def floor_lines(floors):
    yield "| workload | text MB | numbers | inflate | memchr | print numbers | deflate |"
    yield "|---|---|---|---|---|---|---|"
    for (form, workload), floor in floors.items():
        if form == "xlsx" and floor.part("textBytes") is not None:
            seconds = " | ".join(f"{floor.part(name):.4f}" for name in ("inflate", "scan", "print", "deflate"))
            yield f"| .xlsx {workload} | {floor.part('textBytes') / 1e6:.1f} | {floor.part('numbers'):.0f} | {seconds} |"
    yield ""
    yield "| workload | look at every byte | copy |"
    yield "|---|---|---|"
    for (form, workload), floor in floors.items():
        if form == "xls" and floor.part("touch") is not None:
            yield f"| .xls {workload} | {floor.part('touch'):.4f} | {floor.part('copy'):.4f} |"
    yield ""


def growth_rates(rows):
    """(time, memory) by which each doubling multiplies, None for a time too short to tell."""
    # What a process costs before it does anything is no growth; the first steps hide in it.
    return [(b[1] / a[1] if a[1] > SHORTEST_GROWTH else None, b[2] / a[2]) for a, b in zip(rows, rows[1:])]


def growth_lines(table):
    yield "| form | dimension | from | to | seconds at the end | time at each doubling | memory at each doubling | |"
    yield "|---|---|---|---|---|---|---|---|"
    for (form, dimension), rows in table.items():
        rates = growth_rates(rows)
        times, memory = [time for time, _ in rates if time is not None], [size for _, size in rates]
        over = max(times, default=0) > GROWTH_LIMIT_TIME or max(memory, default=0) > GROWTH_LIMIT_MEMORY
        yield (f"| .{form} | {dimension} | {rows[0][0]} | {rows[-1][0]} | {rows[-1][1]:.3f} "
               f"| {' '.join('-' if time is None else f'{time:.2f}' for time, _ in rates)} "
               f"| {' '.join(f'{size:.2f}' for size in memory)} | {'over' if over else ''} |")


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


def growth_chart(table):
    """The time of each dimension over its doublings on logarithmic axes, a panel a form, as SVG: a line of slope one grows
    in proportion."""
    colours = ["#1b6ca8", "#c0392b", "#3a7d44", "#8e44ad", "#d68910", "#16a085", "#7f5539", "#555555"]
    width, height, left, top = 330, 300, 50, 40
    points = [seconds for rows in table.values() for _, seconds, _ in rows if seconds > 0]
    if not points:
        return None
    low, high = math.floor(math.log10(min(points))), math.ceil(math.log10(max(points)))
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{2 * (width + left) + 130}" height="{height + top + 50}" font-family="sans-serif" font-size="12">',
             '<rect width="100%" height="100%" fill="white"/>',
             f'<text x="{left}" y="16">processor seconds of a book\'s whole life while one dimension doubles (dashed: in proportion)</text>']
    for panel, form in enumerate(("xls", "xlsx")):
        x0 = left + panel * (width + left)
        x = lambda step: x0 + step * width / GROWTH_STEPS
        y = lambda seconds: top + height - (math.log10(seconds) - low) * height / (high - low)
        lines.append(f'<rect x="{x0}" y="{top}" width="{width}" height="{height}" fill="none" stroke="#999"/>')
        lines.append(f'<text x="{x0 + 6}" y="{top + 16}">.{form}</text>')
        for power in range(low, high + 1):
            lines.append(f'<text x="{x0 - 4}" y="{y(10 ** power) + 4:.1f}" text-anchor="end">{10.0 ** power:g}</text>')
        for step in range(GROWTH_STEPS + 1):
            lines.append(f'<text x="{x(step):.1f}" y="{top + height + 16}" text-anchor="middle">×{1 << step}</text>')
        start = 10 ** low * 3
        lines.append(f'<line x1="{x(0)}" y1="{y(start):.1f}" x2="{x(GROWTH_STEPS)}" y2="{max(y(start * 2 ** GROWTH_STEPS), top):.1f}" stroke="#999" stroke-dasharray="4 4"/>')
        for colour, dimension in zip(colours, GROWTH):
            path = " ".join(f"{x(step):.1f},{y(seconds):.1f}" for step, (_, seconds, _) in enumerate(table.get((form, dimension), [])) if seconds > 0)
            lines.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
    for row, (colour, dimension) in enumerate(zip(colours, GROWTH)):
        lines.append(f'<text x="{2 * (width + left) + 12}" y="{top + 16 + row * 18}" fill="{colour}">{dimension}</text>')
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
        measured, floors = side_by_side(options.build, Peers(options.peers, options.peer_scripts), options.runs, pathlib.Path(work), say)
    grown = growth(options.build, max(options.runs, GROWTH_RUNS), say)
    picture = options.out.with_suffix(".svg")
    picture.write_text(chart(measured), encoding="utf-8")
    growth_picture = options.out.with_name(f"{options.out.stem}-growth.svg")
    if (drawn := growth_chart(grown)) is not None:
        growth_picture.write_text(drawn, encoding="utf-8")
    lines = ["# Performance", "",
             f"Made by `./dev performance` on {time.strftime('%Y-%m-%d')}, {os.cpu_count()} cores, {platform.machine()}. Whole processes,",
             "medians; ratios are what counts, absolute times are this machine's. The workloads are those of `rubrica-bench`: a",
             "million cells (N numbers, S strings, M mixed with styles and formulas, R random numbers; B ten million numbers; M of",
             ".xls 625,000 cells). The floor is what no program can do without on the same bytes in the same run.", "",
             f"![our time beside the best other program]({picture.name})", "", "## Beside other programs", "",
             *side_by_side_lines(measured, floors), "## The floor", "",
             "Seconds, each the best of five in a process, the median of processes. Writing .xlsx takes at least the printing of the",
             "numbers and the deflating, reading the inflating and one pass of `memchr`; .xls a copy, or a look at every byte.", "",
             *floor_lines(floors), "## Growth", "",
             f"One book's whole life (made, filled, saved, loaded, looked through) while one dimension doubles {GROWTH_STEPS} times, in",
             f"processor seconds, the least of the runs. Wanted: at most {GROWTH_LIMIT_TIME} times the time and {GROWTH_LIMIT_MEMORY} times the memory for each doubling. Times under "
             f"{SHORTEST_GROWTH * 1000:.0f} ms tell nothing and are left out (-).", "",
             f"![how the time grows]({growth_picture.name})", "", *growth_lines(grown), ""]
    options.out.write_text("\n".join(lines), encoding="utf-8")
    say(f"written: {options.out}, {picture}, {growth_picture}")


if __name__ == "__main__":
    main()
