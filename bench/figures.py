"""Runs the same works in our program and in its peers, checks that all answers are the same, and prints a table.
Called by bench/figures, with the directory of the build first."""

import argparse
import datetime
import json
import os
import platform
import re
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

BENCH = Path(__file__).resolve().parent
NUMBERS = ["PARI/GP", "Python"]
IN_ALL = [*NUMBERS, "textbook"]
PEERS = [*IN_ALL, "Qt"]
SAVED = BENCH / "results.json"
BEHIND = 0.8  # of the ratio that was saved
LONGEST = 600  # seconds

# The enumerators of high orders: k, how many nines in front, how many digits behind them.
ENUMERATORS = {
    "boucle13": (57, 41, 13), "boucle14": (57, 41, 14), "boucle15": (57, 41, 15), "boucle16": (57, 41, 16),
    "boucle13K58": (58, 46, 13), "boucle9K59": (59, 51, 9), "boucle5k60": (60, 56, 5),
}  # fmt: skip


def thousands(number):
    return f"{int(number):,}"


def images(v):
    return "the second image" if v[2] == "1" else f"{v[2]} images in a run behind the first"


def enumerated(v):
    k, nines, digits = ENUMERATORS[v[0]]
    return f"{v[0]}, k = {k}: {digits} digits behind {nines} nines"


class Kind:
    """A kind of work: the form of its arguments, separated by colons, and what it is called in the table. `peers` tells
    which programs do it in reasonable time, for given arguments; `missing` is what arguments left off are; `asked` is
    what the programs are asked for, where that is not the kind's own name and its arguments; `ours` is the program that
    does it with our code. A kind without a title has no row in the table."""

    def __init__(
        self, form, title=None, default=(), quick=(), peers=lambda v: IN_ALL, missing=(), asked=None, ours="press"
    ):
        self.form, self.title, self.default, self.quick = form, title, default, quick
        self.peers, self.missing, self.asked, self.ours = peers, missing, asked, ours


def up_to(greatest):
    """The peers that know numbers, for powers up to this one: what they do takes minutes beyond."""
    return lambda v: NUMBERS if int(v[0]) <= greatest else []


CYCLES = ["24:789", "60:789", "100:789", "148:789"]
STEPS = ["308:789:1000", "308:789:10000", "308:789:100000", "308:789:1000000"]

# All rows of the table, in order. What a work does stands in press.cpp, window.cpp, textbook.cpp and peers/.
KINDS = {
    "cycle": Kind("K:P", lambda v: f"cycle search, k = {v[0]}, p = {v[1]}", CYCLES, CYCLES[:3], missing=["789"]),
    "digits": Kind(
        "K:P", lambda v: f"the same, k = {v[0]}, p = {v[1]}, with digits() in PARI/GP", CYCLES,
        peers=lambda v: ["PARI/GP"], missing=["789"], asked=lambda v: ["cycle", *v],
    ),
    "iterates": Kind(
        "K:P", lambda v: f"1000 iterates, k = {thousands(v[0])}, p = {v[1]}",
        ["100:789", "1000:789", "10000:789", "34000:789"], ["100:789", "1000:789"], missing=["789"],
    ),
    "later": Kind(
        "K:P:COUNT", lambda v: f"{images(v)}, k = {thousands(v[0])}, p = {v[1]}",
        ["34000:789:100", "1000000:789:1"], ["34000:789:20"],
        peers=lambda v: IN_ALL if int(v[0]) <= 40_000 else NUMBERS, missing=["789", "1"],
    ),
    "first": Kind(
        "K:P", lambda v: f"the powers and the first image, k = {thousands(v[0])}, p = {v[1]}",
        ["100000:789", "1000000:789"], peers=lambda v: NUMBERS, missing=["789"],
    ),
    "product": Kind(
        "DIGITS", lambda v: f"a product of two numbers of {thousands(v[0])} digits, from text to text",
        ["100000", "1000000"], ["100000"], peers=lambda v: NUMBERS,
    ),
    "cascade": Kind("K", lambda v: f"cascade, k = {v[0]}", ["3", "11", "20", "58"], ["3", "11"]),
    "grouped": Kind(
        "K", lambda v: f"the same, k = {v[0]}, with a table for groups of four digits in Python", ["11", "20"],
        peers=lambda v: ["Python"], asked=lambda v: ["cascade", *v],
    ),
    "enumerator": Kind(
        "NAME", enumerated, ["boucle16"], ["boucle9K59"],
        asked=lambda v: ["enumerator", *v, *map(str, ENUMERATORS[v[0]])],
    ),
    "complete": Kind(
        "FROM:TO", lambda v: f"complete search, orders {v[0]} to {v[1]}", ["1:8", "1:39", "1:60"], ["1:8", "1:39"],
        peers=lambda v: NUMBERS if int(v[1]) <= 10 else [],
    ),
    "points": Kind(
        "K", lambda v: f"velmoire points-fixes -k {v[0]}", ["10", "20", "40", "61"], ["10", "40"], up_to(12),
    ),
    "cycles": Kind("K", lambda v: f"velmoire cycles -k {v[0]}", ["10", "20", "30", "40"], ["10", "20"], up_to(12)),
    "basins": Kind(
        "K", lambda v: f"velmoire cycles -k {v[0]} --bassins", ["10", "20", "25"], ["10"],
        peers=lambda v: ["Python"] if int(v[0]) <= 10 else [],
    ),
    "starts": Kind(
        "K:COUNT", lambda v: f"velmoire cycle -k {v[0]} 1..{v[1]}", ["5:1000000"], ["5:100000"],
        peers=lambda v: NUMBERS, missing=["1000000"],
    ),
    "lines": Kind(
        "K:COUNT", lambda v: f"velmoire image -k {v[0]}, {thousands(v[1])} lines", ["3:1000000"], ["3:100000"],
        peers=lambda v: NUMBERS, missing=["1000000"],
    ),
    "start": Kind(
        "WHAT", lambda v: "start, until the window is drawn", ["window"], ["window"],
        peers=lambda v: ["Qt"], ours="window",
    ),
    "paste": Kind(
        "LENGTH", lambda v: f"{thousands(v[0])} digits pasted into p", ["5000000"], ["1000000"],
        peers=lambda v: ["Qt"], ours="window",
    ),
    "refuse": Kind(
        "LENGTH", lambda v: f"p of {thousands(v[0])} digits refused", ["5000000"], peers=lambda v: [], ours="window",
    ),
    "steps": Kind("K:P:STEPS", None, STEPS, STEPS[:3], missing=["789", "1000"]),
}  # fmt: skip


class Work:
    def __init__(self, name, text):
        self.name = name
        self.kind = KINDS[name]
        values = text.split(":")
        self.values = values + list(self.kind.missing[len(values) - 1 :])
        self.key = ":".join([name, *self.values])
        self.asked = self.kind.asked(self.values) if self.kind.asked else [name, *self.values]

    def title(self):
        return self.kind.title(self.values)

    def programs(self):
        return ["zelvion", *self.kind.peers(self.values)]


class Result:
    def __init__(self, line, answer):
        seconds, runs, kilobytes, self.part = line.split()
        self.seconds = float(seconds)
        self.runs = int(runs)
        self.megabytes = int(kilobytes) / 1024
        self.answer = answer
        self.whole = self.seconds  # what all of the work would take
        if self.part != "all":
            done, count = map(int, self.part.split("/"))
            self.whole = self.seconds * count / done if done else None

    def agrees(self, other):
        if self.part != "all":
            return other.answer.startswith(self.answer)
        return self.answer == other.answer


def run_once(build, program, work, directory):
    answer = Path(directory) / "answer"
    answer.unlink(missing_ok=True)
    environment = dict(os.environ, TMPDIR=directory)
    arguments = list(work.asked)
    if program == "PARI/GP":
        arguments[0] = work.name
        environment.update(WORK=" ".join(arguments), FILE=str(answer))
        command = ["gp", "-q", "-f", BENCH / "peers/pari.gp"]
    elif program == "Python":
        arguments[0] = work.name
        command = [sys.executable, BENCH / "peers/python.py", *arguments, answer]
    elif program == "textbook":
        command = [build / "textbook", *arguments, answer]
    elif work.kind.ours == "window":
        command = [build / "window", arguments[0], program, *arguments[1:], answer]
    else:
        command = [build / "press", *arguments, answer]
    done = subprocess.run(
        command, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=LONGEST
    )
    if done.returncode != 0 or not answer.exists():
        raise RuntimeError(f"{program} failed at {arguments}:\n{done.stdout}{done.stderr}")
    return Result(done.stdout.splitlines()[-1], answer.read_bytes())


def run(build, program, work, directory):
    """The better of two processes if the work is short, or the only one."""
    best = run_once(build, program, work, directory)
    if best.seconds < 3:
        best = min(best, run_once(build, program, work, directory), key=lambda result: result.seconds)
    return best


def shown_time(seconds):
    for unit, name in ((1, "s"), (1e-3, "ms"), (1e-6, "µs")):
        if seconds >= unit or name == "µs":
            value = seconds / unit
            return f"{value:.0f} {name}" if value >= 100 else f"{value:.3g} {name}"


def shown_ratio(ratio):
    return f"{ratio:,.0f}×" if ratio >= 10 else f"{ratio:.1f}×"


def cell(result, ours):
    if result is None or result.whole is None:
        return "-"
    ratio = shown_ratio(result.whole / ours.seconds)
    if result.part == "all":
        return f"{shown_time(result.seconds)} ({ratio})"
    return f"{shown_time(result.seconds)} for {result.part} (about {ratio})"


def table_of(build, works, directory, tell):
    rows = [f"| Work | zelvion | {' | '.join(PEERS)} | peak memory in MB, each |", "|---" * (len(PEERS) + 3) + "|"]
    figures = {}
    agree = True
    for work in works:
        tell(work.title())
        results = {program: run(build, program, work, directory) for program in work.programs()}
        again = run(build, "zelvion", work, directory)
        ours = min(results["zelvion"], again, key=lambda result: result.seconds)
        for program, result in results.items():
            if not result.agrees(ours):
                agree = False
                print(f"{program} gives another answer: {work.title()}", file=sys.stderr)
        figures[work.key] = {p: r.whole for p, r in results.items() if r.whole} | {"zelvion": ours.seconds}
        shown = [results.get(p) for p in PEERS]
        memory = " / ".join(f"{r.megabytes:.0f}" if r else "-" for r in [ours, *shown])
        rows.append(
            f"| {work.title()} | {shown_time(ours.seconds)} | {' | '.join(cell(r, ours) for r in shown)} | {memory} |"
        )
    return rows, figures, agree


def lowest_ratios(figures):
    lowest = {}
    for key, seconds in figures.items():
        for peer in [program for program in seconds if program != "zelvion"]:
            ratio = seconds[peer] / seconds["zelvion"]
            row = (key.split(":")[0], peer)
            lowest[row] = min(ratio, lowest.get(row, ratio))
    return [f"- {name}, {peer}: {shown_ratio(ratio)}" for (name, peer), ratio in lowest.items()]


def behind(figures, saved):
    """The rows that fell behind the saved ones: by their ratios to all their peers, or where a row has none, by its time
    after the pace of this run, the median of what the peers need now to what they needed then."""
    known = {key: seconds for key, seconds in figures.items() if key in saved}
    peers = {key: [p for p in seconds if p != "zelvion" and p in saved[key]] for key, seconds in known.items()}
    paces = [known[key][p] / saved[key][p] for key in known for p in peers[key]]
    rows = []
    for key, seconds in known.items():
        paces_here = [seconds[p] / saved[key][p] for p in peers[key]] or [statistics.median(paces or [1])]
        change = max(paces_here) * saved[key]["zelvion"] / seconds["zelvion"]
        if change < BEHIND:
            rows.append(f"- {key}: {change:.2f} of what the ratio was")
    return rows, len(known)


def growth_of(build, works, directory, tell):
    rows = ["| Steps of a cycle search | time | a step | peak memory |", "|---|---|---|---|"]
    figures = {}
    for work in works:
        k, p, steps = work.values
        tell(f"{steps} steps, k = {k}")
        best = min((run(build, "zelvion", work, directory) for _ in range(2)), key=lambda r: r.seconds)
        rows.append(
            f"| {thousands(steps)}, k = {k}, p = {p} | {shown_time(best.seconds)} "
            f"| {best.seconds / int(steps) * 1e9:.0f} ns | {best.megabytes:.0f} MB |"
        )
        figures[work.key] = {"zelvion": best.seconds}
    return rows, figures


def output_of(*command):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    return (done.stdout + done.stderr).strip()


def processor():
    cpu = re.search(r"model name\s*:\s*(.*)", Path("/proc/cpuinfo").read_text())
    return f"{cpu[1] if cpu else platform.machine()}, {os.cpu_count()} cores"


def machine():
    gp = re.search(r"Version (\S+)", output_of("gp", "--version"))
    compiler = output_of("c++", "--version").splitlines()[0]
    return (
        f"{processor()}, {platform.system()} "
        f"{platform.release()}; {compiler}; PARI/GP {gp[1] if gp else '?'}; Python "
        f"{platform.python_version()}; {datetime.date.today().isoformat()}"
    )


def parse():
    parser = argparse.ArgumentParser(prog="bench/figures", description="Compares the program with its peers.")
    parser.add_argument("--quick", action="store_true", help="fewer and smaller works, about two minutes")
    parser.add_argument("--save", action="store_true", help="write the outcome to bench/results.md and .json as well")
    parser.add_argument("--check", action="store_true", help="say which rows fell behind those saved, by their ratios")
    for name, kind in KINDS.items():
        parser.add_argument(f"--{name}", metavar=kind.form, nargs="+", help="these works only, and others given so")
    return parser.parse_args(sys.argv[2:])


def main():
    build = Path(sys.argv[1]).resolve()
    options = vars(parse())
    if options["check"] and not SAVED.exists():
        print("No figures were saved: bench/figures --save", file=sys.stderr)
        return 2
    saved = json.loads(SAVED.read_text()) if options["check"] else None
    if saved and saved["processor"] != processor():
        print(f"The saved figures are of another machine: {saved['processor']}", file=sys.stderr)
        return 2
    chosen = {name: options[name] for name in KINDS if options[name]}
    chosen = chosen or {name: kind.quick if options["quick"] else kind.default for name, kind in KINDS.items()}
    works = [Work(name, text) for name, texts in chosen.items() for text in texts]

    def tell(what):
        print(f"... {what}", file=sys.stderr, flush=True)

    memory = "/dev/shm"
    with tempfile.TemporaryDirectory(dir=memory if os.access(memory, os.W_OK) else None) as directory:
        rows, figures, agree = table_of(build, [work for work in works if work.kind.title], directory, tell)
        growth, more = growth_of(build, [work for work in works if not work.kind.title], directory, tell)
    lines = [machine()]
    if figures:
        lines += ["", *rows, "", "Lowest ratios:", *lowest_ratios(figures)]
        lines += ["", "All answers agree." if agree else "NOT ALL ANSWERS AGREE."]
    if more:
        lines += ["", *growth]
    figures |= more
    text = "\n".join(lines) + "\n"
    print(text)
    fell = []
    if saved:
        fell, count = behind(figures, saved["figures"])
        print("\n".join([f"Of {count} rows that were saved, {len(fell)} fell behind by more than a fifth.", *fell]))
    if options["save"]:
        (BENCH / "results.md").write_text("# Measured\n\n" + text, encoding="utf-8")
        SAVED.write_text(json.dumps({"processor": processor(), "figures": figures}, indent=1) + "\n")
    return 0 if agree and not fell else 1


sys.exit(main())
