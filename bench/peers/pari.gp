\\ The works of bench/figures in PARI/GP: WORK="name argument..." FILE=answer gp -q -f pari.gp
\\ Prints the best time in seconds, the number of runs, the peak memory in kilobytes and the part done, and writes
\\ the answer to FILE. The powers stand in a vector under the codes of their digits, iterates in a Map, and a text
\\ is made once for each number.
default(parisizemax, 8*10^9);
default(histsize, 1);

lineend = Strchr([13, 10]);

powertable(k) = vector(57, c, if(c > 48, (c - 48)^k, 0));

\\ How many of the sorted codes are not above c.
upto(codes, c) =
{
  my(a = 0, b = #codes, m);
  while(a < b, m = (a + b + 1) \ 2; if(codes[m] > c, b = m - 1, a = m));
  a;
}

\\ The image of the number that the text s writes. Few digits are looked at one by one, many are sorted and counted.
image(s, P) =
{
  my(d = Vecsmall(s), before, now, sum = 0);
  if(#d < 150, return(vecsum(vecextract(P, d))));
  d = vecsort(d);
  before = upto(d, 48);
  for(c = 49, 57, now = upto(d, c); sum += (now - before) * P[c]; before = now);
  sum;
}

\\ The report of a cycle of these points, written to the file as well.
reported(k, p, points, texts) =
{
  my(report = Str(" Puissance k= ", k, ". Pour ", p, ": Convergence vers le CYCLE d'ORDRE ", #points, ":", lineend,
    "(", strjoin(texts, ", "), ")", lineend, "Points extrêmes du cycle: ", vecmin(points), ", ", vecmax(points),
    " nombre de chiffres maximum: ", #Str(vecmax(points))));
  write1(Str(directory, "/cycle.txt"), report, lineend);
  report;
}

cycle(k, p) =
{
  my(K = eval(k), P = powertable(K), M = Map(), s = p, x, step = 0, first, order, points, texts);
  while(1,
    x = image(s, P); s = Str(x); step++;
    if(mapisdefined(M, x, &first), break);
    mapput(M, x, step));
  order = step - first;
  points = vector(order); texts = vector(order);
  points[1] = x; texts[1] = s;
  for(i = 2, order, x = image(s, P); s = Str(x); points[i] = x; texts[i] = s);
  reported(k, p, points, texts);
}

\\ The same as most would write it, on the vector of digits.
digitscycle(k, p) =
{
  my(P = vector(10, d, (d - 1)^eval(k)), M = Map(), x = eval(p), step = 0, first, points);
  while(1,
    x = vecsum([P[d + 1] | d <- digits(x)]); step++;
    if(mapisdefined(M, x, &first), break);
    mapput(M, x, step));
  points = vector(step - first);
  for(i = 1, #points, points[i] = x; x = vecsum([P[d + 1] | d <- digits(x)]));
  reported(k, p, points, [Str(x) | x <- points]);
}

iterates(k, p) =
{
  my(P = powertable(eval(k)), s = p, texts = vector(1001));
  texts[1] = "";
  for(i = 1, 1000, s = Str(image(s, P)); texts[i + 1] = s);
  strjoin(texts, " ");
}

first(k, p) = Str(image(p, powertable(eval(k))), "\n");

product() = Str(eval(factors[1]) * eval(factors[2]), "\n");

\\ The first so many digits of a text that is repeated.
repeated(period, count) = my(c = Vec(period)); strjoin(vector(count, i, c[(i - 1) % #c + 1]));

later(count) =
{
  my(s = laterstart, texts = vector(eval(count)));
  for(i = 1, #texts, s = Str(image(s, laterpowers)); texts[i] = s);
  Str(strjoin(texts, "\n"), "\n");
}

\\ Goes through the multisets of m digits from 1 to g, ascending, with the sum of their powers carried along.
walk(m, g, sum) =
{
  my(t, found);
  if(m > 1, for(d = 1, g, walk(m - 1, d, sum + table[d + 48])); return);
  for(d = 1, g,
    t = sum + table[d + 48];
    found = t == vecsum(vecextract(table, Vecsmall(Str(t))));
    last = found;
    if(found, listput(hits, t)));
}

cascade(k) =
{
  my(K = eval(k));
  table = powertable(K); hits = List();
  for(m = 2, if(K == 3, 3, K < 11, K + 1, 12), walk(m, 9, max(K - 12, 0) * 9^K));
  foreach(hits, t, write1(Str(directory, "/pfixe.txt"), "Ordre ", k, ", points fixes:", lineend, t, ", ", lineend));
  Str("Point(s) fixe(s) pour k = ", k, lineend, strjoin([Str(t, ", ") | t <- hits]));
}

enumerator(name, k, nines, digits) =
{
  my(K = eval(k));
  table = powertable(K); hits = List();
  walk(eval(digits), 9, eval(nines) * 9^K);
  foreach(hits, t, write1(Str(directory, "/pfixe.txt"), t, ", ", lineend));
  if(last, Str(hits[#hits], ", "), "rien");
}

complete(a, b) =
{
  my(numbers = List(), P, t);
  for(n = eval(a), eval(b),
    my(fixed = List());
    P = powertable(n);
    forvec(x = vector(n, i, [48, 57]),
      t = vecsum(vecextract(P, x));
      if(#Str(t) == n && t == vecsum(vecextract(P, Vecsmall(Str(t)))), listput(fixed, t)), 1);
    foreach(Set(fixed), t, listput(numbers, Str(t, "\n"))));
  strjoin(Vec(numbers));
}

\\ The image of a number, its digits looked at one by one.
following(x) = vecsum(vecextract(table, Vecsmall(Str(x))));

lines(k, count) =
{
  my(rows = vector(eval(count) + 1));
  table = powertable(eval(k));
  rows[1] = "k,nombre,image\n";
  for(i = 1, #rows - 1,
    rows[i + 1] = Str(k, ",", inputlines[i], ",", vecsum(vecextract(table, Vecsmall(inputlines[i]))), "\n"));
  strjoin(rows);
}

\\ Where numbers end, kept for each number that was met: the pair of its tail and the number of its cycle.
fate(x) =
{
  my(path = List(), places = Map(), known, tail, i);
  while(!mapisdefined(fates, x, &known) && !mapisdefined(places, x, &i),
    listput(path, x); mapput(places, x, #path); x = following(x));
  if(known,
    i = #path + 1,
    listput(rounds, Vec(path)[i .. #path]);
    known = [0, #rounds];
    for(j = i, #path, mapput(fates, path[j], known)));
  tail = known[1];
  forstep(j = i - 1, 1, -1, tail++; mapput(fates, path[j], [tail, known[2]]));
  [tail, known[2]];
}

starts(k, count) =
{
  my(n = eval(count), rows = vector(n + 1), ends = List(), f, c);
  table = powertable(eval(k)); fates = Map(); rounds = List();
  rows[1] = "k,nombre,pas,ordre,plus_petit,plus_grand\n";
  for(x = 1, n,
    f = fate(x);
    while(#ends < #rounds,
      c = rounds[#ends + 1]; listput(ends, Str(",", #c, ",", vecmin(c), ",", vecmax(c), "\n")));
    rows[x + 1] = Str(k, ",", x, ",", f[1], ends[f[2]]));
  strjoin(rows);
}

\\ The digits of the range into which all iterates fall.
width(K) = my(d = 1); while(d * 9^K >= 10^d, d++); d;

points(k) =
{
  my(fixed = List(), t);
  table = powertable(eval(k));
  forvec(x = vector(width(eval(k)), i, [48, 57]),
    t = vecsum(vecextract(table, x));
    if(t == following(t), listput(fixed, t)), 1);
  strjoin(concat(["k,chiffres,point_fixe\n"], [Str(k, ",", #Str(t), ",", t, "\n") | t <- Set(fixed)]));
}

cycles(k) =
{
  my(sorted);
  table = powertable(eval(k)); fates = Map(); rounds = List();
  forvec(x = vector(width(eval(k)), i, [48, 57]), fate(vecsum(vecextract(table, x))), 1);
  sorted = vecsort([[#c, vecmin(c), vecmax(c)] | c <- rounds]);
  strjoin(concat(["k,cycle,ordre,plus_petit,plus_grand\n"], vector(#sorted, i,
    Str(k, ",", i, ",", sorted[i][1], ",", sorted[i][2], ",", sorted[i][3], "\n"))));
}

run(w) =
{
  if(w[1] == "cycle", cycle(w[2], w[3]),
     w[1] == "digits", digitscycle(w[2], w[3]),
     w[1] == "iterates", iterates(w[2], w[3]),
     w[1] == "first", first(w[2], w[3]),
     w[1] == "later", later(w[4]),
     w[1] == "cascade", cascade(w[2]),
     w[1] == "enumerator", enumerator(w[2], w[3], w[4], w[5]),
     w[1] == "complete", complete(w[2], w[3]),
     w[1] == "product", product(),
     w[1] == "points", points(w[2]),
     w[1] == "cycles", cycles(w[2]),
     w[1] == "starts", starts(w[2], w[3]),
     w[1] == "lines", lines(w[2], w[3]),
     error("unknown work: ", w[1]));
}

\\ The clock has milliseconds: short works run so often in a row that it does not matter, three times over.
measure(w) =
{
  my(best = oo, n = 1, all = 0, t, answer);
  for(round = 0, 3,
    t = getwalltime();
    for(i = 1, n, answer = run(w));
    t = getwalltime() - t;
    all += n;
    best = min(best, max(t, 1) / n);
    if(t > 1000, break);
    if(!round, n = 1 + 300 \ max(t, 1); best = oo));
  [best / 1000., all, answer];
}

{
  work = strsplit(getenv("WORK"), " ");
  directory = externstr("mktemp -d")[1];
  if(work[1] == "later",
    laterpowers = powertable(eval(work[2]));
    laterstart = Str(image(work[3], laterpowers)));
  if(work[1] == "lines", inputlines = vector(eval(work[3]), i, Str(1000000 + 7 * (i - 1))));
  if(work[1] == "product",
    factors = [repeated(period, eval(work[2])) | period <- ["9876543210123456789", "31415926535897932384"]]);
  result = measure(work);
  system(Str("rm -r ", directory));
  memory = strsplit(externstr("grep VmHWM /proc/$PPID/status | tr -dc 0-9")[1], " ")[1];
  printf("%.9f %d %s all\n", result[1], result[2], memory);
  write1(getenv("FILE"), result[3]);
}
quit;
