"""The works of bench/figures with Python's own numbers: python.py WORK ARGUMENT... FILE

Prints the best time in seconds, the number of runs, the peak memory in kilobytes and the part done, and writes the
answer to FILE. The powers are kept in a table, digits are counted in the text of a number, and a text is made once
for each number.
"""

import os
import sys
import tempfile
import time
from decimal import MAX_EMAX, Context, Decimal, Inexact, setcontext
from itertools import combinations_with_replacement, permutations
from math import factorial
from operator import mul

DIGITS = "123456789"


# Long whole numbers are faster in decimal, which is exact here, for they become texts and come from texts.
LONG = 1_000
setcontext(Context(prec=4_000_000, Emax=MAX_EMAX, traps=[Inexact]))


def powers(k):
    if k >= LONG:
        return [Decimal(digit) ** k for digit in range(1, 10)]
    return [digit**k for digit in range(1, 10)]


def image(text, table):
    """The image of a number of many digits: nine products."""
    return sum(map(mul, map(text.count, DIGITS), table))


def append(name, text):
    with open(name, "a", encoding="utf-8", newline="") as file:
        file.write(text)


def cycle(k, p):
    table = powers(int(k))
    seen = {}
    text = p
    step = 0
    while True:
        text = str(sum(map(mul, map(text.count, DIGITS), table)))
        step += 1
        first = seen.setdefault(text, step)
        if first != step:
            break
    order = step - first
    points = [text]
    while len(points) < order:
        text = str(sum(map(mul, map(text.count, DIGITS), table)))
        points.append(text)
    largest = max(points, key=lambda point: (len(point), point))
    smallest = min(points, key=lambda point: (len(point), point))
    report = (
        f" Puissance k= {k}. Pour {p}: Convergence vers le CYCLE d'ORDRE {order}:\r\n"
        f"({', '.join(points)})\r\nPoints extrêmes du cycle: {smallest}, {largest} "
        f"nombre de chiffres maximum: {len(largest)}"
    )
    append("cycle.txt", report + "\r\n")
    return report


def iterates(k, p):
    table = powers(int(k))
    text = p
    texts = [""]
    for _ in range(1000):
        text = str(image(text, table))
        texts.append(text)
    return " ".join(texts)


def first(k, p):
    return str(image(p, powers(int(k)))) + "\n"


def product(count):
    def number(period):
        return (period * (int(count) // len(period) + 1))[: int(count)]

    a, b = number("9876543210123456789"), number("31415926535897932384")
    return lambda: f"{Decimal(a) * Decimal(b)}\n"


def later(k, p, count):
    table = powers(int(k))
    start = str(image(p, table))

    def work():
        text = start
        texts = []
        for _ in range(int(count)):
            text = str(image(text, table))
            texts.append(text)
        return "\n".join(texts) + "\n"

    return work


def sums_of(table, digits):
    """The sums of powers of all multisets of so many non-zero digits, the multisets ascending."""
    sums = table
    ends = range(1, 10)
    for _ in range(digits - 1):
        longer = []
        longer_ends = []
        for power, end in zip(table, ends):
            longer += [power + behind for behind in sums[:end]]
            longer_ends.append(len(longer))
        sums, ends = longer, longer_ends
    return sums


def fixed_points(sums, table):
    """Those of the sums that are their own image."""
    # Up to some forty digits it is faster to look at each of them than to count them.
    if len(str(table[8])) < 40:
        power = dict(zip("0" + DIGITS, [0] + table)).__getitem__
        return [s for s in sums if s == sum(map(power, str(s)))]
    p1, p2, p3, p4, p5, p6, p7, p8, p9 = table
    found = []
    for s in sums:
        count = str(s).count
        if s == (
            count("1") * p1 + count("2") * p2 + count("3") * p3 + count("4") * p4 + count("5") * p5
            + count("6") * p6 + count("7") * p7 + count("8") * p8 + count("9") * p9
        ):  # fmt: skip
            found.append(s)
    return found


def grouped_fixed_points(sums, table):
    """The same with a table of the sums for all groups of four digits."""
    table = [0] + table
    pairs = [high + low for high in table for low in table]
    groups = [high + low for high in pairs for low in pairs]
    found = []
    for s in sums:
        rest = s
        reached = 0
        while rest:
            rest, group = divmod(rest, 10000)
            reached += groups[group]
        if s == reached:
            found.append(s)
    return found


def cascade(k, search=fixed_points):
    order = int(k)
    table = powers(order)
    last = 3 if order == 3 else order + 1 if order < 11 else 12
    nines = max(order - 12, 0) * table[8]
    report = f"Point(s) fixe(s) pour k = {k}\r\n"
    for digits in range(2, last + 1):
        sums = sums_of(table, digits)
        if nines:
            sums = [nines + s for s in sums]
        for number in search(sums, table):
            report += f"{number}, "
            append("pfixe.txt", f"Ordre {k}, points fixes:\r\n{number}, \r\n")
    return report


def grouped(k):
    return cascade(k, grouped_fixed_points)


def enumerator(_, k, nines, digits):
    table = powers(int(k))
    sums = [int(nines) * table[8] + s for s in sums_of(table, int(digits))]
    found = fixed_points(sums, table)
    for number in found:
        append("pfixe.txt", f"{number}, \r\n")
    return f"{found[-1]}, " if found and found[-1] == sums[-1] else "rien"


def complete(first_order, last_order):
    numbers = []
    for order in range(int(first_order), int(last_order) + 1):
        table = [digit**order for digit in range(10)]
        power = dict(zip("0" + DIGITS, table)).__getitem__
        sums = map(sum, combinations_with_replacement(table, order))
        fixed = {s for s in sums if s == sum(map(power, str(s)))}
        numbers += sorted(s for s in fixed if len(str(s)) == order)
    return "".join(f"{number}\n" for number in numbers)


def lines(k, count):
    power = dict(zip("0" + DIGITS, [0] + powers(int(k)))).__getitem__
    # The text of the input is ready.
    text = "".join(f"{1_000_000 + 7 * i}\n" for i in range(int(count)))

    def work():
        rows = ["k,nombre,image\n"]
        rows += [f"{k},{line},{sum(map(power, line))}\n" for line in text.splitlines()]
        return "".join(rows)

    return work


class Fates:
    """Where numbers end under a power, kept for each number that was met: its tail and the number of its cycle."""

    def __init__(self, k):
        self.power = dict(zip("0" + DIGITS, [0] + powers(int(k)))).__getitem__
        self.cycles = []
        self.known = {}

    def image(self, number):
        return sum(map(self.power, str(number)))

    def of(self, number):
        path = []
        places = {}
        while number not in self.known and number not in places:
            places[number] = len(path)
            path.append(number)
            number = self.image(number)
        if number in self.known:
            tail, cycle = self.known[number]
        else:
            tail, cycle = 0, len(self.cycles)
            self.cycles.append(path[places[number] :])
            for point in self.cycles[-1]:
                self.known[point] = (0, cycle)
            path = path[: places[number]]
        for place in reversed(path):
            tail += 1
            self.known[place] = (tail, cycle)
        return tail, cycle

    def sorted(self):
        """The numbers of the cycles, the short ones first."""
        return sorted(range(len(self.cycles)), key=lambda i: (len(self.cycles[i]), min(self.cycles[i])))


def starts(k, count):
    fates = Fates(k)
    known = fates.known
    table = [0] + powers(int(k))
    images = [0]
    ends = []
    rows = ["k,nombre,pas,ordre,plus_petit,plus_grand\n"]
    for number in range(1, int(count) + 1):
        image = images[number // 10] + table[number % 10]
        images.append(image)
        fate = known.get(number)
        if fate is None:
            tail, cycle = known.get(image) or fates.of(image)
            fate = known.get(number) or (tail + 1, cycle)
        tail, cycle = fate
        if cycle >= len(ends):
            ends += [f"{len(c)},{min(c)},{max(c)}\n" for c in fates.cycles[len(ends) :]]
        rows.append(f"{k},{number},{tail},{ends[cycle]}")
    return "".join(rows)


def width_of(k):
    """The digits of the range into which all iterates fall."""
    digits = 1
    while digits * 9 ** int(k) >= 10**digits:
        digits += 1
    return digits


def multisets(width):
    """All texts of so many digits, rising."""
    return map("".join, combinations_with_replacement("0" + DIGITS, width))


def points(k):
    table = powers(int(k))
    fixed = {0}
    for digits in range(1, width_of(k) + 1):
        fixed.update(grouped_fixed_points(sums_of(table, digits), table))
    return "k,chiffres,point_fixe\n" + "".join(f"{k},{len(str(s))},{s}\n" for s in sorted(fixed))


def cycles(k):
    fates = Fates(k)
    for multiset in multisets(width_of(k)):
        fates.of(sum(map(fates.power, multiset)))
    rows = ["k,cycle,ordre,plus_petit,plus_grand\n"]
    for place, i in enumerate(fates.sorted()):
        points = fates.cycles[i]
        rows.append(f"{k},{place + 1},{len(points)},{min(points)},{max(points)}\n")
    return "".join(rows)


def basins(k):
    """Each multiset stands for its arrangements: for those below a power of ten its zeros are in front."""
    fates = Fates(k)
    width = width_of(k)
    below = []
    tails = []
    farthest = []
    by_digits = {}
    for multiset in multisets(width):
        tail, cycle = fates.of(sum(map(fates.power, multiset)))
        while cycle >= len(below):
            below.append([0] * (width + 1))
            tails.append([len(fates.cycles[len(tails)])])
            farthest.append((-1, 0))
            for point in fates.cycles[len(tails) - 1]:
                by_digits.setdefault("".join(sorted(str(point).zfill(width))), []).append(point)
        zeros = multiset.count("0")
        weight = 1
        for digit in DIGITS:
            weight *= factorial(multiset.count(digit))
        for length in range(width - zeros, width + 1):
            below[cycle][length] += factorial(length) // factorial(zeros - width + length) // weight
        count = factorial(width) // factorial(zeros) // weight
        tail += 1
        number = int(multiset)
        if tail == 1:
            points = by_digits.get(multiset, [])
            count -= len(points)
            if count == 0:
                continue
            if number in points:
                number = min(n for n in map(int, map("".join, permutations(multiset))) if n not in points)
        while tail >= len(tails[cycle]):
            tails[cycle].append(0)
        tails[cycle][tail] += count
        farthest[cycle] = max(farthest[cycle], (tail, -number))
    rows = ["k,cycle,ordre,plus_petit,plus_grand,chiffres,nombres,pas_max,depuis,sous,pas\n"]
    for place, i in enumerate(fates.sorted()):
        points = fates.cycles[i]
        tail, least = farthest[i] if len(tails[i]) > 1 else (0, -min(points))
        rows.append(
            f"{k},{place + 1},{len(points)},{min(points)},{max(points)},{width},{below[i][width]},{tail},{-least},"
            f"{' '.join(map(str, below[i]))},{' '.join(map(str, tails[i]))}\n"
        )
    return "".join(rows)


def peak_kilobytes():
    with open("/proc/self/status", encoding="ascii") as status:
        return next(line.split()[1] for line in status if line.startswith("VmHWM:"))


def measure(work, prepared):
    """The best of as many runs as half a second holds."""
    best = total = 0.0
    runs = 0
    while runs == 0 or (total < 0.5 and runs < 200):
        for name in os.listdir():
            os.remove(name)
            open(name, "w", encoding="utf-8").close()
        start = time.perf_counter()
        answer = work(*prepared)
        taken = time.perf_counter() - start
        total += taken
        best = min(best, taken) if runs else taken
        runs += 1
    return best, runs, answer


def main(work, *arguments):
    *arguments, file = arguments
    file = os.path.abspath(file)
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        if work in ("later", "lines", "product"):
            best, runs, answer = measure(globals()[work](*arguments), ())
        else:
            best, runs, answer = measure(globals()[work], arguments)
        print(f"{best:.9f} {runs} {peak_kilobytes()} all")
        os.chdir("/")
    with open(file, "w", encoding="utf-8", newline="") as output:
        output.write(answer)


main(*sys.argv[1:])
