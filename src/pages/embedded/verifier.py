#!/usr/bin/env python3
"""Refait les tableaux CSV de l'atlas d'après la seule définition, sans le programme qui les a écrits. Jusqu'à k = 8, tous
les nombres sous la borne sont comptés, rangés par leurs chiffres. Au-delà, chaque point est itéré, chaque chemin parcouru,
chaque somme refaite, et des nombres tirés au hasard sont suivis : tous doivent finir sur un cycle de la liste."""
import argparse, collections, csv, itertools, math, pathlib, random, sys

def exiger(vrai, quoi):
    if not vrai: raise ValueError(quoi)

class Puissance:
    def __init__(self, k):
        self.puissances = {c: int(c) ** k for c in "0123456789"}
        self.d = next(d for d in itertools.count(1) if d * 9**k < 10**d)  # la borne est 10 ** d
        self.connu = {}  # nombre -> (plus petit point de son cycle, pas jusqu'au cycle)
        self.cycles = {}  # plus petit point -> tous les points, dans l'ordre du cycle
        self.points = {}  # les d chiffres d'un point d'un cycle, triés -> ce point ; deux points n'ont jamais les mêmes
    def image(self, chiffres):
        return sum(self.puissances[c] for c in chiffres)
    def suivre(self, n):
        """Le cycle où finit n, nommé par son plus petit point, et le nombre de pas avant ce cycle."""
        debut, chemin = n, {}
        while n not in self.connu and n not in chemin:
            chemin[n] = len(chemin)
            n = self.image(str(n))
        points = list(chemin)
        if n in chemin:  # n est revenu : de n jusqu'au bout du chemin, c'est un cycle
            cycle, points = points[chemin[n]:], points[:chemin[n]]
            moindre, rang = min(cycle), cycle.index(min(cycle))
            self.cycles[moindre] = cycle[rang:] + cycle[:rang]
            self.connu.update((p, (moindre, 0)) for p in cycle)
            self.points.update((tuple(sorted(str(p).zfill(self.d))), p) for p in cycle)
        but, pas = self.connu[n]
        self.connu.update((p, (but, pas + i)) for i, p in enumerate(reversed(points), 1))
        return self.connu[debut]
    def tout_compter(self):
        """Combien de nombres sous la borne finissent sur chaque cycle, et par nombre de pas : [combien, le plus petit]."""
        par_cycle, par_pas = collections.Counter(), collections.defaultdict(lambda: [0, math.inf])
        for chiffres in itertools.combinations_with_replacement("0123456789", self.d):
            but, pas = self.suivre(self.image(chiffres))
            combien = math.factorial(self.d) // math.prod(map(math.factorial, collections.Counter(chiffres).values()))
            par_cycle[but] += combien  # nombres qui ont ces chiffres, zéros de tête compris
            sur = self.points.get(chiffres)  # le seul d'entre eux qui est sur un cycle, s'il y en a un
            groupes = [] if sur is None else [(0, 1, sur)]
            if combien > len(groupes):  # les autres sont à un pas de plus que leur image
                croissants = (int("".join(n)) for n in itertools.permutations(chiffres))
                groupes.append((pas + 1, combien - len(groupes), next(n for n in croissants if n != sur)))
            for pas, combien, moindre in groupes:
                par_pas[pas] = [par_pas[pas][0] + combien, min(par_pas[pas][1], moindre)]
        return par_cycle, par_pas

def lire(fichier):
    return [{n: int(v) if v.isdigit() else v for n, v in l.items()} for l in csv.DictReader(fichier.read_text().splitlines())]

def verifier(dossier, k, tirages):
    t = Puissance(k)
    bassins, points, longueurs = (lire(dossier / f"k{k}-{nom}.csv") for nom in ("bassins", "cycles", "pas"))
    chiffres, complet = bassins[0]["chiffres"], k <= 8 and bassins[0]["chiffres"] == t.d
    for rang, b in enumerate(bassins, 1):
        c = t.cycles[t.suivre(b["plus_petit"])[0]]
        exiger(list(b.values())[:6] == [k, rang, len(c), c[0], max(c), chiffres], f"le cycle {rang}")
        exiger(not b["nombres"] or t.suivre(b["depuis"]) == (c[0], b["pas_max"]), f"le plus long chemin du cycle {rang}")
    listes = [(rang, i, p) for rang, b in enumerate(bassins, 1) for i, p in enumerate(t.cycles[b["plus_petit"]], 1)]
    exiger([tuple(p.values()) for p in points] == listes, "les points des cycles")
    exiger(max(b["pas_max"] for b in bassins if b["nombres"]) == len(longueurs) - 1, "le plus long chemin")
    for pas, l in enumerate(longueurs):
        exiger(l["pas"] == pas == t.suivre(l["plus_petit"])[1] or not l["nombres"], f"le chemin de {pas} pas")
    for tableau in bassins, longueurs:
        exiger(sum(l["nombres"] for l in tableau) == 10**chiffres, "la somme des nombres")
    if complet:
        par_cycle, par_pas = t.tout_compter()
        exiger({b["plus_petit"]: b["nombres"] for b in bassins} == par_cycle, "les parts")
        exiger({l["pas"]: [l["nombres"], l["plus_petit"]] for l in longueurs} == par_pas, "les longueurs")
    tires = [random.randrange(10 ** random.randint(1, 2 * t.d)) for _ in range(tirages)]  # aussi au-dessus de la borne
    exiger({t.suivre(n)[0] for n in tires} <= {b["plus_petit"] for b in bassins}, "un nombre tiré finit ailleurs")
    return f"{len(bassins)} cycles, {len(points)} points" + ", tous les nombres comptés" * complet + f", {tirages} tirages"

def verifier_records(dossier, choisies):
    lignes = [l for l in lire(dossier / "puissances.csv") if l["k"] in choisies or not choisies]
    for l in lignes:
        t = Puissance(l["k"])
        c = t.cycles[t.suivre(l["son_plus_petit_point"])[0]]
        exiger([l["chiffres"], l["plus_long_cycle"], l["son_plus_petit_point"]] == [t.d, len(c), c[0]], f"k = {l['k']}")
        exiger(l["nombres"] == "" or t.suivre(l["depuis"])[1] == l["plus_long_chemin"], f"le chemin de k = {l['k']}")
    return f"{len(lignes)} lignes, le plus long cycle et le plus long chemin de chacune parcourus"

def essayer(nom, travail, *donnees):
    try:
        print(nom, travail(*donnees), "tout concorde", sep=" : ", flush=True)
        return True
    except (OSError, ValueError, LookupError, TypeError, AttributeError) as faute:
        print(nom, "FAUX", faute, sep=" : ")

options = argparse.ArgumentParser(description=__doc__)
options.add_argument("-k", type=int, action="append", default=[], help="cette puissance seule (plusieurs : -k 3 -k 5)")
options.add_argument("-n", type=int, default=1000, help="combien de nombres tirer au hasard (1000)")
options.add_argument("dossier", type=pathlib.Path, nargs="?", default=pathlib.Path(__file__).parent)
choix = options.parse_args()
presentes = sorted(int(f.name[1:-12]) for f in choix.dossier.glob("k*-bassins.csv"))
bons = [essayer(f"k = {k}", verifier, choix.dossier, k, choix.n) for k in choix.k or presentes]
sys.exit(0 if bons and all(bons + [essayer("puissances", verifier_records, choix.dossier, choix.k)]) else 1)
