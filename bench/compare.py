"""Runs the same works in our program and in its peers, checks that all answers are the same, and prints a table.
Called by bench/compare, with the directory of the build first."""

import argparse
import datetime
import os
import platform
import re
import subprocess
import sys
import tempfile
from pathlib import Path

BENCH = Path(__file__).resolve().parent
PROGRAMS = ["zelvion", "PARI/GP", "Python", "textbook"]
LONGEST = 600  # seconds

# The enumerators of high orders: k, how many nines in front, how many digits behind them.
ENUMERATORS = {
    "boucle13": (57, 41, 13), "boucle14": (57, 41, 14), "boucle15": (57, 41, 15), "boucle16": (57, 41, 16),
    "boucle13K58": (58, 46, 13), "boucle9K59": (59, 51, 9), "boucle5k60": (60, 56, 5),
}  # fmt: skip

DEFAULT = {
    "cycle": ["24:789", "60:789", "100:789", "148:789"],
    "digits": ["24:789", "60:789", "100:789", "148:789"],
    "iterates": ["100:789", "1000:789", "10000:789", "34000:789"],
    "later": ["34000:789:100", "1000000:789:1"],
    "first": ["1000000:789"],
    "cascade": ["3", "11", "20", "58"],
    "grouped": ["11", "20"],
    "enumerator": ["boucle16"],
    "complete": ["1:8", "1:39", "1:60"],
    "steps": ["308:789:1000", "308:789:10000", "308:789:100000", "308:789:1000000"],
}
QUICK = {
    "cycle": ["24:789", "60:789", "100:789"],
    "iterates": ["100:789", "1000:789"],
    "later": ["34000:789:20"],
    "cascade": ["3", "11"],
    "enumerator": ["boucle9K59"],
    "complete": ["1:8", "1:39"],
    "steps": ["308:789:1000", "308:789:10000", "308:789:100000"],
}


def thousands(number):
    return f"{int(number):,}"


class Work:
    def __init__(self, name, text):
        self.name = name
        self.values = text.split(":")
        if name in ("cycle", "digits", "iterates", "later", "first", "steps") and len(self.values) == 1:
            self.values.append("789")
        if name == "later" and len(self.values) == 2:
            self.values.append("1")
        self.arguments = [name, *self.values]
        if name == "digits":
            self.arguments = ["cycle", *self.values]
        if name == "grouped":
            self.arguments = ["cascade", *self.values]
        if name == "enumerator":
            self.arguments += map(str, ENUMERATORS[text])

    def title(self):
        v = self.values
        if self.name == "cycle":
            return f"cycle search, k = {v[0]}, p = {v[1]}"
        if self.name == "digits":
            return f"the same, k = {v[0]}, p = {v[1]}, with digits() in PARI/GP"
        if self.name == "iterates":
            return f"1000 iterates, k = {thousands(v[0])}, p = {v[1]}"
        if self.name == "later":
            images = "the second image" if v[2] == "1" else f"{v[2]} images in a run behind the first"
            return f"{images}, k = {thousands(v[0])}, p = {v[1]}"
        if self.name == "first":
            return f"the powers and the first image, k = {thousands(v[0])}, p = {v[1]}"
        if self.name == "cascade":
            return f"cascade, k = {v[0]}"
        if self.name == "grouped":
            return f"the same, k = {v[0]}, with a table for groups of four digits in Python"
        if self.name == "enumerator":
            k, nines, digits = ENUMERATORS[v[0]]
            return f"{v[0]}, k = {k}: {digits} digits behind {nines} nines"
        return f"complete search, orders {v[0]} to {v[1]}"

    def fits(self, program):
        """Whether a program can do the work in reasonable time at all."""
        if program == "zelvion":
            return True
        if self.name == "complete":
            return int(self.values[1]) <= 10 and program != "textbook"
        if self.name == "digits":
            return program == "PARI/GP"
        if self.name == "grouped":
            return program == "Python"
        if program == "textbook":
            return self.name != "first" and not (self.name == "later" and int(self.values[0]) > 40_000)
        return True


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
    environment = dict(os.environ)
    arguments = list(work.arguments)
    if program == "PARI/GP":
        arguments[0] = work.name
        environment.update(WORK=" ".join(arguments), FILE=str(answer))
        command = ["gp", "-q", "-f", BENCH / "peers/pari.gp"]
    elif program == "Python":
        arguments[0] = work.name
        command = [sys.executable, BENCH / "peers/python.py", *arguments, answer]
    else:
        binary = {"zelvion": "press", "textbook": "textbook"}[program]
        command = [build / binary, *arguments, answer]
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
    rows = ["| Work | zelvion | PARI/GP | Python | textbook | peak memory in MB, each |", "|---|---|---|---|---|---|"]
    ratios = {}
    agree = True
    for work in works:
        tell(work.title())
        results = {p: run(build, p, work, directory) if work.fits(p) else None for p in PROGRAMS}
        ours = results["zelvion"]
        again = run(build, "zelvion", work, directory)
        ours = min(ours, again, key=lambda result: result.seconds)
        for program, result in results.items():
            if result and not result.agrees(ours):
                agree = False
                print(f"{program} gives another answer: {work.title()}", file=sys.stderr)
            if result and result.whole and program != "zelvion":
                ratios.setdefault((work.name, program), []).append(result.whole / ours.seconds)
        memory = " / ".join(f"{r.megabytes:.0f}" if r else "-" for r in results.values())
        cells = [cell(results[p], ours) for p in PROGRAMS[1:]]
        rows.append(f"| {work.title()} | {shown_time(ours.seconds)} | {' | '.join(cells)} | {memory} |")
    return rows, ratios, agree


def growth_of(build, works, directory, tell):
    rows = ["| Steps of a cycle search | time | a step | peak memory |", "|---|---|---|---|"]
    for work in works:
        k, p, steps = work.values
        tell(f"{steps} steps, k = {k}")
        best = min((run(build, "zelvion", work, directory) for _ in range(2)), key=lambda r: r.seconds)
        rows.append(
            f"| {thousands(steps)}, k = {k}, p = {p} | {shown_time(best.seconds)} "
            f"| {best.seconds / int(steps) * 1e9:.0f} ns | {best.megabytes:.0f} MB |"
        )
    return rows


def output_of(*command):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    return (done.stdout + done.stderr).strip()


def machine():
    cpu = re.search(r"model name\s*:\s*(.*)", Path("/proc/cpuinfo").read_text())
    gp = re.search(r"Version (\S+)", output_of("gp", "--version"))
    compiler = output_of("c++", "--version").splitlines()[0]
    return (
        f"{cpu[1] if cpu else platform.machine()}, {os.cpu_count()} cores, {platform.system()} "
        f"{platform.release()}; {compiler}; PARI/GP {gp[1] if gp else '?'}; Python "
        f"{platform.python_version()}; {datetime.date.today().isoformat()}"
    )


def parse():
    parser = argparse.ArgumentParser(prog="bench/compare", description="Compares the program with its peers.")
    parser.add_argument("--quick", action="store_true", help="fewer and smaller works, about two minutes")
    parser.add_argument("--save", action="store_true", help="write the outcome to bench/results.md as well")
    forms = {
        "cycle": "K:P", "digits": "K:P", "iterates": "K:P", "later": "K:P:COUNT", "first": "K:P", "cascade": "K", "grouped": "K",
        "enumerator": "NAME", "complete": "FROM:TO", "steps": "K:P:STEPS",
    }  # fmt: skip
    for name, form in forms.items():
        parser.add_argument(f"--{name}", metavar=form, nargs="+", help="these works only, and others given so")
    return parser.parse_args(sys.argv[2:])


def main():
    build = Path(sys.argv[1]).resolve()
    options = vars(parse())
    chosen = {name: options[name] for name in DEFAULT if options[name]}
    chosen = chosen or (QUICK if options["quick"] else DEFAULT)
    works = [Work(name, text) for name, texts in chosen.items() for text in texts]
    growth = [work for work in works if work.name == "steps"]
    works = [work for work in works if work.name != "steps"]

    def tell(what):
        print(f"... {what}", file=sys.stderr, flush=True)

    lines = [machine(), ""]
    agree = True
    with tempfile.TemporaryDirectory() as directory:
        if works:
            rows, ratios, agree = table_of(build, works, directory, tell)
            lines += rows + ["", "Lowest ratios:"]
            for (name, program), values in ratios.items():
                lines.append(f"- {name}, {program}: {shown_ratio(min(values))}")
            lines += ["", "All answers agree." if agree else "NOT ALL ANSWERS AGREE."]
        if growth:
            lines += ["", *growth_of(build, growth, directory, tell)]
    text = "\n".join(lines) + "\n"
    print(text)
    if options["save"]:
        (BENCH / "results.md").write_text("# Measured\n\n" + text, encoding="utf-8")
    return 0 if agree else 1


sys.exit(main())
