#!/usr/bin/env python3
"""Reference tables of the distribution functions, computed with mpmath.

Run by hand, never in the build (python3 with Debian's python3-mpmath):
    python3 reference.py [name ...]      # all tables, or the named ones

Each table <name>.txt holds one case per line:
    <region> <argument>... <expected>
Arguments are exactly representable doubles written to round-trip; expected
values carry 30 significant digits of a 50-digit (or better) computation, or
the word "missing" where the function must return the missing value. Regions
group the cases by what they exercise (the centre, the tails, extreme
parameters, the switch points between methods) so that tests can hold each
region to its own error budget.

The special functions come straight from mpmath. The incomplete gamma and beta
functions are evaluated here by their series and continued fractions in
60-digit arithmetic (mpmath's hypergeometric forms give up for parameters in
the millions), and the noncentral functions as Poisson mixtures of those,
summed in the numerically stable direction. Quantile tables are built from a
grid of arguments x: p = F(x) is rounded to the nearest double, and the exact
quantile of that double is found by Newton's method from x.
"""
import math
import os
import sys

import mpmath as mp

mp.mp.dps = 60
HERE = os.path.dirname(os.path.abspath(__file__))
MISSING = None

# ---------------------------------------------------------------------------
# Incomplete gamma and beta in high precision.


def _eps():
    return mp.mpf(10) ** -(mp.mp.dps - 8)


def gamma_pq(a, x):
    """(P(a, x), Q(a, x)), each computed without cancellation where small."""
    a, x = mp.mpf(a), mp.mpf(x)
    if x <= 0:
        return mp.mpf(0), mp.mpf(1)
    lpre = a * mp.log(x) - x - mp.loggamma(a)
    if x < a + 1:
        term = total = 1 / a
        n = a
        while True:
            n += 1
            term *= x / n
            total += term
            if abs(term) < abs(total) * _eps():
                break
        p = mp.exp(lpre) * total
        return p, 1 - p
    tiny = mp.mpf(10) ** -300
    b = x + 1 - a
    c = 1 / tiny
    d = 1 / b
    h = d
    i = 1
    while True:
        an = -i * (i - a)
        b += 2
        d = an * d + b
        d = tiny if abs(d) < tiny else d
        c = b + an / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        dl = d * c
        h *= dl
        if abs(dl - 1) < _eps():
            break
        i += 1
    q = mp.exp(lpre) * h
    return 1 - q, q


def _betacf(a, b, x):
    tiny = mp.mpf(10) ** -300
    qab, qap, qam = a + b, a + 1, a - 1
    c = mp.mpf(1)
    d = 1 - qab * x / qap
    d = tiny if abs(d) < tiny else d
    d = 1 / d
    h = d
    m = 1
    while True:
        m2 = 2 * m
        aa = m * (b - m) * x / ((qam + m2) * (a + m2))
        d = 1 + aa * d
        d = tiny if abs(d) < tiny else d
        c = 1 + aa / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        h *= d * c
        aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2))
        d = 1 + aa * d
        d = tiny if abs(d) < tiny else d
        c = 1 + aa / c
        c = tiny if abs(c) < tiny else c
        d = 1 / d
        dl = d * c
        h *= dl
        if abs(dl - 1) < _eps():
            return h
        m += 1


def beta_pq(a, b, x):
    """(I_x(a, b), 1 - I_x(a, b)), each without cancellation where small."""
    a, b, x = mp.mpf(a), mp.mpf(b), mp.mpf(x)
    if x <= 0:
        return mp.mpf(0), mp.mpf(1)
    if x >= 1:
        return mp.mpf(1), mp.mpf(0)
    lpre = (mp.loggamma(a + b) - mp.loggamma(a) - mp.loggamma(b) + a * mp.log(x) +
            b * mp.log1p(-x))
    if x < (a + 1) / (a + b + 2):
        v = mp.exp(lpre) * _betacf(a, b, x) / a
        return v, 1 - v
    v = mp.exp(lpre) * _betacf(b, a, 1 - x) / b
    return 1 - v, v


def beta_pdf(a, b, x):
    a, b, x = mp.mpf(a), mp.mpf(b), mp.mpf(x)
    return mp.exp((a - 1) * mp.log(x) + (b - 1) * mp.log1p(-x) + mp.loggamma(a + b) -
                  mp.loggamma(a) - mp.loggamma(b))


def norm_cdf(z):
    return mp.erfc(-mp.mpf(z) / mp.sqrt(2)) / 2


def norm_pdf(z):
    z = mp.mpf(z)
    return mp.exp(-z * z / 2) / mp.sqrt(2 * mp.pi)


def norm_quantile(q):
    """Newton's method on log Phi(z) = log q, from the lower tail."""
    q = mp.mpf(q)
    if q > 0.5:
        return -norm_quantile(1 - q)
    z = -mp.sqrt(-2 * mp.log(q)) if q < 0.3 else mp.mpf(0)
    for _ in range(200):
        c = norm_cdf(z)
        step = (mp.log(c) - mp.log(q)) * c / norm_pdf(z)
        z -= step
        if abs(step) < mp.mpf(10) ** -55:
            break
    return z

# ---------------------------------------------------------------------------
# Central distributions: (lower, upper) pairs and densities.


def t_pq(t, df):
    t, df = mp.mpf(t), mp.mpf(df)
    if t == 0:
        return mp.mpf(0.5), mp.mpf(0.5)
    ib, _ = beta_pq(df / 2, mp.mpf(0.5), df / (df + t * t))
    small = ib / 2
    return (1 - small, small) if t > 0 else (small, 1 - small)


def t_pdf(t, df):
    t, df = mp.mpf(t), mp.mpf(df)
    return mp.exp(mp.loggamma((df + 1) / 2) - mp.loggamma(df / 2) - mp.log(df * mp.pi) / 2 -
                  (df + 1) / 2 * mp.log1p(t * t / df))


def f_pq(f, d1, d2):
    f, d1, d2 = mp.mpf(f), mp.mpf(d1), mp.mpf(d2)
    if f <= 0:
        return mp.mpf(0), mp.mpf(1)
    return beta_pq(d1 / 2, d2 / 2, d1 * f / (d1 * f + d2))


def f_pdf(f, d1, d2):
    f, d1, d2 = mp.mpf(f), mp.mpf(d1), mp.mpf(d2)
    x = d1 * f / (d1 * f + d2)
    return beta_pdf(d1 / 2, d2 / 2, x) * d1 * d2 / (d1 * f + d2) ** 2


def chi_pq(x, df):
    return gamma_pq(mp.mpf(df) / 2, mp.mpf(x) / 2)


def gamma_pdf(x, shape, rate):
    x, shape, rate = mp.mpf(x), mp.mpf(shape), mp.mpf(rate)
    return mp.exp(mp.log(rate) + (shape - 1) * mp.log(x * rate) - x * rate - mp.loggamma(shape))


def chi_pdf(x, df):
    return gamma_pdf(x, mp.mpf(df) / 2, mp.mpf(0.5))

# ---------------------------------------------------------------------------
# Noncentral distributions, as Poisson mixtures summed from the top index
# down, where the recurrences of the central functions only add.


def _poisson_range(lam):
    if lam == 0:
        return 0, 0
    s = mp.sqrt(lam)
    lo = int(max(0, mp.floor(lam - 40 * s - 40)))
    hi = int(mp.ceil(lam + 40 * s + 80))
    return lo, hi


def nc_chi_cdf(x, df, ncp):
    h, a, lam = mp.mpf(x) / 2, mp.mpf(df) / 2, mp.mpf(ncp) / 2
    lo, hi = _poisson_range(lam)
    p, _ = gamma_pq(a + hi, h)
    # T(k) = h^(a+k) e^-h / Gamma(a+k+1) = P(a+k) - P(a+k+1)
    t = mp.exp((a + hi - 1) * mp.log(h) - h - mp.loggamma(a + hi))  # T(hi - 1)
    w = mp.exp(-lam + hi * mp.log(lam) - mp.loggamma(hi + 1)) if lam > 0 else mp.mpf(1)
    total = w * p
    for j in range(hi - 1, lo - 1, -1):
        p += t
        t *= (a + j) / h
        w *= (j + 1) / lam
        total += w * p
    return total


def nc_beta_cdf(x, a, b, ncp):
    x, a, b, lam = mp.mpf(x), mp.mpf(a), mp.mpf(b), mp.mpf(ncp) / 2
    lo, hi = _poisson_range(lam)
    i, _ = beta_pq(a + hi, b, x)
    # T(k) = I_x(a+k, b) - I_x(a+k+1, b)
    k = hi - 1
    t = mp.exp((a + k) * mp.log(x) + b * mp.log1p(-x) + mp.loggamma(a + k + b) -
               mp.loggamma(a + k + 1) - mp.loggamma(b))
    w = mp.exp(-lam + hi * mp.log(lam) - mp.loggamma(hi + 1)) if lam > 0 else mp.mpf(1)
    total = w * i
    for j in range(hi - 1, lo - 1, -1):
        i += t
        t *= (a + j) / ((a + j + b - 1) * x)
        w *= (j + 1) / lam
        total += w * i
    return total


def _nct_nonneg(t, df, delta):
    """F(t; df, delta) for t >= 0 by Lenth's mixture (delta of either sign)."""
    t, df, delta = mp.mpf(t), mp.mpf(df), mp.mpf(delta)
    if t == 0:
        return norm_cdf(-delta)
    x = t * t / (t * t + df)
    b = df / 2
    lam = delta * delta / 2
    lo, hi = _poisson_range(lam)
    # Families I_x(j + 1/2, b) and I_x(j + 1, b), from the top down.
    i1, _ = beta_pq(hi + mp.mpf(0.5), b, x)
    i2, _ = beta_pq(hi + 1, b, x)

    def tpow(aa):  # I_x(aa, b) - I_x(aa + 1, b)
        return mp.exp(aa * mp.log(x) + b * mp.log1p(-x) + mp.loggamma(aa + b) -
                      mp.loggamma(aa + 1) - mp.loggamma(b))
    t1 = tpow(hi - mp.mpf(0.5))
    t2 = tpow(mp.mpf(hi))
    total = mp.mpf(0)
    for j in range(hi, lo - 1, -1):
        if lam > 0:
            lp = -lam + j * mp.log(lam)
            pj = mp.exp(lp - mp.loggamma(j + 1))
            qj = delta * mp.exp(lp - mp.loggamma(j + mp.mpf(1.5))) / mp.sqrt(2)
        else:
            pj = mp.mpf(1) if j == 0 else mp.mpf(0)
            qj = mp.mpf(0)
        total += pj * i1 + qj * i2
        if j > lo:
            i1 += t1
            i2 += t2
            if j - 1 > lo:
                a1, a2 = j - mp.mpf(0.5), mp.mpf(j)
                t1 *= a1 / ((a1 + b - 1) * x)
                t2 *= a2 / ((a2 + b - 1) * x)
    return norm_cdf(-delta) + total / 2


def _nct_quad(t, df, delta):
    """F(t) as the integral of Phi(t sqrt(u/df) - delta) over the chi-square(df)
    density of u; accurate in relative terms where the series cancels."""
    t, df, delta = mp.mpf(t), mp.mpf(df), mp.mpf(delta)

    def f(u):
        return norm_cdf(t * mp.sqrt(u / df) - delta) * chi_pdf(u, df)
    return mp.quad(f, [0, df / 4, df, 4 * df + 40, 16 * df + 400, mp.inf])


def nc_t_cdf(t, df, delta):
    if t >= 0:
        return _nct_nonneg(t, df, delta)
    v = 1 - _nct_nonneg(-t, df, -delta)
    return v if v > mp.mpf(10) ** -20 else _nct_quad(t, df, delta)


def nc_t_pdf(t, df, delta):
    t, df, delta = mp.mpf(t), mp.mpf(df), mp.mpf(delta)
    v = df + t * t
    pre = (df / 2 * mp.log(df) - delta * delta / 2 - mp.log(mp.pi) / 2 - mp.loggamma(df / 2) -
           (df + 1) / 2 * mp.log(v))
    z = t * delta * mp.sqrt(2) / mp.sqrt(v)
    total = mp.mpf(0)
    j = 0
    peak = mp.mpf(0)
    while True:
        term = mp.exp(mp.loggamma((df + j + 1) / 2) - mp.loggamma(j + 1) +
                      (j * mp.log(abs(z)) if z != 0 else (0 if j == 0 else -mp.inf)))
        if z < 0 and j % 2 == 1:
            term = -term
        total += term
        peak = max(peak, abs(term))
        if j > 10 and abs(term) < peak * mp.mpf(10) ** -70:
            break
        if z == 0:
            break
        j += 1
    return mp.exp(pre) * total

# ---------------------------------------------------------------------------
# Discrete distributions.


def binom_pmf(x, n, p):
    x, n, p = int(x), int(n), mp.mpf(p)
    return mp.binomial(n, x) * p ** x * (1 - p) ** (n - x)


def binom_cdf(k, n, p):
    k, n = int(math.floor(k)), int(n)
    if k < 0:
        return mp.mpf(0)
    if k >= n:
        return mp.mpf(1)
    if n <= 3000:
        return mp.fsum(binom_pmf(i, n, p) for i in range(0, k + 1))
    _, upper = beta_pq(k + 1, n - k, p)  # P(X <= k) = 1 - I_p(k+1, n-k)
    return upper


def lbinom(n, k):
    n, k = mp.mpf(n), mp.mpf(k)
    return mp.loggamma(n + 1) - mp.loggamma(k + 1) - mp.loggamma(n - k + 1)


def hyper_pmf(x, total, a, b):
    return mp.exp(lbinom(b, x) + lbinom(total - b, a - x) - lbinom(total, a))


def hyper_cdf(x, total, a, b):
    k = int(math.floor(x))
    lo, hi = max(0, a + b - total), min(a, b)
    if k < lo:
        return mp.mpf(0)
    if k >= hi:
        return mp.mpf(1)
    if k - lo <= hi - k:
        return mp.fsum(hyper_pmf(i, total, a, b) for i in range(lo, k + 1))
    return 1 - mp.fsum(hyper_pmf(i, total, a, b) for i in range(k + 1, hi + 1))

# ---------------------------------------------------------------------------
# Quantiles: the exact quantile of the double nearest F(x).


def quantile_row(x, cdf, pdf, min_p=1e-300):
    """(p as double, exact quantile of that double), or None when p is below
    min_p or within 1e-12 of 1, where the quantile of a double p is so badly
    conditioned that no method working from p can resolve it."""
    x = mp.mpf(x)
    p = cdf(x)
    pd = float(p)
    if not (min_p <= pd <= 1 - 1e-12):
        return None
    target = mp.mpf(pd)
    for _ in range(6):
        x = x - (cdf(x) - target) / pdf(x)
    return pd, x

# ---------------------------------------------------------------------------
# Writing.


def fmt(v):
    if v is MISSING:
        return "missing"
    if v == 0:
        return "0"
    return mp.nstr(v, 30, min_fixed=1, max_fixed=0)


def prob_region(v, extreme):
    if extreme:
        return "extreme"
    return "centre" if 1e-3 <= v <= 0.999 else "tail"


def write(name, header, rows):
    path = os.path.join(HERE, name + ".txt")
    with open(path, "w") as out:
        out.write("# %s\n" % header)
        out.write("# Generated by reference.py with mpmath %s; do not edit.\n" % mp.__version__)
        for region, args, value in rows:
            out.write("%s %s %s\n" % (region, " ".join(repr(float(a)) for a in args), fmt(value)))
    print("%s: %d cases" % (name, len(rows)), file=sys.stderr)


def frange(lo, hi, n):
    return [lo + (hi - lo) * k / (n - 1) for k in range(n)]


def geom(lo, hi, n):
    return [lo * (hi / lo) ** (k / (n - 1)) for k in range(n)]

# ---------------------------------------------------------------------------
# The tables.


def t_derf():
    rows = []
    for x in [5e-324, 1e-300, 1e-100, 1e-20, 1e-10, 1e-5, 1e-3]:
        rows.append(("small", [x], mp.erf(x)))
    for x in frange(0.002, 2.198, 300):
        rows.append(("a", [x], mp.erf(x)))
        rows.append(("a", [-x], mp.erf(-x)))
    for k in [1, 2, 3, 4]:
        s = math.sqrt(k)
        for x in [math.nextafter(s, 0), s, math.nextafter(s, 3)]:
            rows.append(("switch", [x], mp.erf(x)))
    for x in [math.nextafter(2.2, 0), 2.2, 3.0, 4.0, 5.0, 6.0, math.nextafter(6.9, 0), 6.9]:
        rows.append(("switch", [x], mp.erf(x)))
    for x in frange(2.201, 6.899, 300):
        rows.append(("b", [x], mp.erf(x)))
    for x in [7.0, 10.0, 1e10, 1e300]:
        rows.append(("b", [x], mp.erf(x)))
    write("derf", "derf(x)", rows)


def t_derfc():
    rows = []
    for x in frange(-6.0, -0.01, 150):
        rows.append(("negative", [x], mp.erfc(x)))
    for x in [1e-300, 1e-20, 1e-8] + frange(0.01, 1.0, 150):
        rows.append(("centre", [x], mp.erfc(x)))
    for x in frange(1.01, 5.0, 200):
        rows.append(("tail", [x], mp.erfc(x)))
    for x in frange(5.05, 26.5, 200):
        rows.append(("far", [x], mp.erfc(x)))
    write("derfc", "derfc(x)", rows)


def t_dnlgam():
    rows = []
    for x in [5e-324, 1e-300, 1e-100, 1e-20, 1e-8, 1e-4]:
        rows.append(("tiny", [x], mp.loggamma(x)))
    for x in frange(0.001, 0.499, 150):
        rows.append(("a", [x], mp.loggamma(x)))
    for x in frange(0.501, 3.499, 300):
        if x in (1.0, 2.0):
            continue
        rows.append(("b", [x], mp.loggamma(x)))
    for c in [1.0, 2.0]:
        for d in [1e-15, 1e-12, 1e-9, 1e-6, 1e-3]:
            for x in [c - d, c + d]:
                rows.append(("roots", [x], mp.loggamma(x)))
    rows.append(("roots", [1.0], mp.mpf(0)))
    rows.append(("roots", [2.0], mp.mpf(0)))
    for x in [0.25, math.nextafter(0.25, 0), 0.5, math.nextafter(0.5, 0), math.nextafter(0.5, 1),
              math.nextafter(3.5, 0), 3.5, 4.0, 5.0, 6.0, 7.0, math.nextafter(8.0, 0), 8.0]:
        rows.append(("switch", [x], mp.loggamma(x)))
    for x in frange(3.51, 7.99, 150):
        rows.append(("c", [x], mp.loggamma(x)))
    for x in geom(8.01, 1e300, 150):
        rows.append(("stirling", [x], mp.loggamma(x)))
    for x in [0.0, -1.0, -0.5, -1.5, -2.5, -1e10]:
        rows.append(("invalid", [x], MISSING))
    write("dnlgam", "dnlgam(x)", rows)


def t_normal():
    rows = []
    for z in frange(-3.0, 3.0, 241):
        rows.append(("centre", [z], norm_cdf(z)))
    for z in frange(3.02, 8.2, 100):
        rows.append(("upper", [z], norm_cdf(z)))
    for z in frange(-10.0, -3.02, 150):
        rows.append(("lower", [z], norm_cdf(z)))
    for z in frange(-37.5, -10.1, 100):
        rows.append(("far", [z], norm_cdf(z)))
    write("cdfstdnorm", "CdfStdNorm(z)", rows)

    rows = []
    for p in frange(0.075, 0.925, 200):
        rows.append(("centre", [p], norm_quantile(p)))
    for p in geom(1.4e-11, 0.0749, 120):
        rows.append(("tail", [p], norm_quantile(p)))
        rows.append(("tail", [1.0 - p], norm_quantile(1.0 - p)))
    for p in geom(1e-300, 1.3e-11, 80):
        rows.append(("far", [p], norm_quantile(p)))
    for p in [0.0, 1.0, -0.5, 1.5]:
        rows.append(("invalid", [p], MISSING))
    write("idfstdnorm", "IdfStdNorm(p)", rows)

    rows = []
    for x in frange(0.0, 3.0, 100) + frange(-3.0, -0.03, 50):
        rows.append(("centre", [x], norm_pdf(x)))
    for x in frange(3.05, 37.5, 100):
        rows.append(("tail", [x], norm_pdf(x)))
    write("pdfnormalstandard", "PdfNormalStandard(x)", rows)


T_DFS = [0.5, 1.0, 1.5, 2.0, 3.0, 5.0, 10.0, 30.0, 100.0, 1e3, 1e5, 1e9]
T_TS = [1e-8, 0.01, 0.3, 0.9, 1.0, 1.1, 2.0, 3.5, 8.0, 30.0, 1e3, 1e6]


def t_student():
    cdf, sig, pdf = [], [], []
    for df in T_DFS:
        for t0 in T_TS:
            for t in [t0, -t0]:
                lo, up = t_pq(t, df)
                ext = df >= 1e4
                cdf.append((prob_region(lo, ext), [t, df], lo))
                sig.append((prob_region(up, ext), [t, df], up))
                pdf.append(("extreme" if ext else ("centre" if abs(t) <= 3 else "tail"), [t, df],
                            t_pdf(t, df)))
        cdf.append(("centre", [0.0, df], mp.mpf(0.5)))
        sig.append(("centre", [0.0, df], mp.mpf(0.5)))
    for args in [[1.0, 0.0], [1.0, -2.0]]:
        cdf.append(("invalid", args, MISSING))
        sig.append(("invalid", args, MISSING))
        pdf.append(("invalid", args, MISSING))
    write("cdft", "CdfT(t, df)", cdf)
    write("sigt", "SigT(t, df)", sig)
    write("pdft", "PdfT(t, df)", pdf)

    rows = []
    for df in [0.5, 1.0, 1.5, 2.0, 3.0, 7.0, 10.0, 30.0, 100.0, 1e3, 1e5]:
        for t in [-1e4, -100.0, -20.0, -6.0, -3.0, -1.7, -1.0, -0.4, -0.05, 0.05, 0.4, 1.0, 1.7,
                  3.0, 6.0, 20.0]:
            r = quantile_row(t, lambda x: t_pq(x, df)[0], lambda x: t_pdf(x, df), 1e-20)
            if r is None:
                continue
            p, q = r
            rows.append((prob_region(p, df >= 1e4), [p, df], q))
        rows.append(("centre", [0.5, df], mp.mpf(0)))
    for args in [[0.0, 5.0], [1.0, 5.0], [0.3, 0.0]]:
        rows.append(("invalid", args, MISSING))
    write("idft", "IdfT(p, df)", rows)


F_D1 = [1.0, 2.0, 3.5, 10.0, 50.0]
F_D2 = [1.0, 4.0, 20.0, 100.0, 1e4]
F_FS = [1e-6, 0.1, 0.5, 0.99, 1.0, 1.5, 3.0, 10.0, 100.0, 1e4]


def t_f():
    cdf, sig, idf = [], [], []
    for d1 in F_D1:
        for d2 in F_D2:
            ext = d2 >= 1e4
            for f in F_FS:
                lo, up = f_pq(f, d1, d2)
                cdf.append((prob_region(lo, ext), [f, d1, d2], lo))
                sig.append((prob_region(up, ext), [f, d1, d2], up))
                if f <= 100:
                    r = quantile_row(f, lambda x: f_pq(x, d1, d2)[0], lambda x: f_pdf(x, d1, d2),
                                     1e-20)
                    if r is not None:
                        idf.append((prob_region(r[0], ext), [r[0], d1, d2], r[1]))
    for args in [[1.0, 0.0, 3.0], [1.0, 3.0, -1.0]]:
        cdf.append(("invalid", args, MISSING))
        sig.append(("invalid", args, MISSING))
    for args in [[1.0, 3.0, 4.0], [-0.1, 3.0, 4.0], [0.5, 0.0, 4.0]]:
        idf.append(("invalid", args, MISSING))
    write("cdff", "CdfF(f, df1, df2)", cdf)
    write("sigf", "SigF(f, df1, df2)", sig)
    write("idff", "IdfF(p, df1, df2)", idf)


CHI_DFS = [0.1, 0.5, 1.0, 2.0, 3.0, 5.0, 10.0, 50.0, 200.0, 1e4, 1e6]
CHI_RATIOS = [1e-4, 0.02, 0.3, 0.6, 0.9, 1.0, 1.1, 1.5, 2.0, 3.0, 6.0]


def t_chi():
    cdf, sig, idf = [], [], []
    for df in CHI_DFS:
        ext = df >= 1e4
        xs = [df * r for r in CHI_RATIOS] + [0.01, 1.0, 3.0, 30.0, 200.0]
        for x in sorted(set(xs)):
            lo, up = chi_pq(x, df)
            cdf.append((prob_region(lo, ext), [x, df], lo))
            sig.append((prob_region(up, ext), [x, df], up))
            if up > 1e-300:
                r = quantile_row(x, lambda v: chi_pq(v, df)[0], lambda v: chi_pdf(v, df))
                if r is not None:
                    idf.append((prob_region(r[0], ext), [r[0], df], r[1]))
    for args in [[1.0, 0.0], [1.0, -1.0]]:
        cdf.append(("invalid", args, MISSING))
        sig.append(("invalid", args, MISSING))
    idf.append(("centre", [0.0, 3.0], mp.mpf(0)))
    for args in [[1.0, 3.0], [0.5, 0.0], [-0.1, 3.0]]:
        idf.append(("invalid", args, MISSING))
    write("cdfchi", "CdfChi(x, df)", cdf)
    write("sigchi", "SigChi(x, df)", sig)
    write("idfchi", "IdfChi(p, df)", idf)


BETA_PS = [0.1, 0.5, 1.0, 2.0, 5.0, 30.0, 500.0]
BETA_XS = [1e-6, 0.01, 0.1, 0.3, 0.5, 0.7, 0.9, 0.99, 0.999999]


def t_beta():
    cdf, idf = [], []
    for a in BETA_PS:
        for b in BETA_PS:
            for x in BETA_XS:
                lo, _ = beta_pq(a, b, x)
                cdf.append((prob_region(lo, False), [x, a, b], lo))
                r = quantile_row(x, lambda v: beta_pq(a, b, v)[0], lambda v: beta_pdf(a, b, v),
                                 1e-20)
                if r is not None:
                    idf.append((prob_region(r[0], False), [r[0], a, b], r[1]))
    for a, b, x in [(1e4, 1e4, 0.499), (1e4, 1e4, 0.5), (1e5, 3.0, 0.99998), (2e5, 1e5, 0.667)]:
        lo, _ = beta_pq(a, b, x)
        cdf.append(("extreme", [x, a, b], lo))
    for args in [[0.5, 0.0, 1.0], [0.5, 1.0, -1.0]]:
        cdf.append(("invalid", args, MISSING))
    write("cdfbeta", "CdfBeta(x, a, b)", cdf)
    write("idfbeta", "IdfBeta(p, a, b)", idf)


GAM_SHAPES = [0.2, 1.0, 2.5, 40.0]
GAM_RATES = [0.5, 3.0]


def t_gamma():
    cdf, idf, pdf = [], [], []
    for s in GAM_SHAPES:
        for r in GAM_RATES:
            for m in [1e-3, 0.1, 0.5, 1.0, 2.0, 4.0]:
                x = m * s / r
                lo, up = gamma_pq(s, x * r)
                cdf.append((prob_region(lo, False), [x, s, r], lo))
                pdf.append(("centre" if lo < 0.999 else "tail", [x, s, r], gamma_pdf(x, s, r)))
                q = quantile_row(x, lambda v: gamma_pq(s, v * r)[0],
                                 lambda v: gamma_pdf(v, s, r))
                if q is not None:
                    idf.append((prob_region(q[0], False), [q[0], s, r], q[1]))
    for args in [[1.0, 0.0, 1.0], [1.0, 1.0, 0.0]]:
        cdf.append(("invalid", args, MISSING))
        pdf.append(("invalid", args, MISSING))
    pdf.append(("centre", [0.0, 1.0, 3.0], mp.mpf(3)))
    pdf.append(("centre", [0.0, 2.0, 3.0], mp.mpf(0)))
    pdf.append(("invalid", [0.0, 0.5, 3.0], MISSING))
    write("cdfgam", "CdfGam(x, shape, rate)", cdf)
    write("idfgam", "IdfGam(p, shape, rate)", idf)
    write("pdfgamma", "PdfGamma(x, shape, rate)", pdf)


def t_noncentral():
    rows = []
    for df in [0.5, 2.0, 5.0, 20.0, 100.0]:
        for ncp in [0.0, 0.5, 3.0, 20.0, 100.0, 1000.0]:
            m = df + ncp
            for r in [0.05, 0.3, 0.7, 1.0, 1.3, 2.0, 3.0]:
                x = m * r
                v = nc_chi_cdf(x, df, ncp)
                rows.append((prob_region(v, ncp >= 1000), [x, df, ncp], v))
    rows.append(("centre", [0.0, 3.0, 2.0], mp.mpf(0)))
    for args in [[1.0, 0.0, 1.0], [1.0, 2.0, -1.0]]:
        rows.append(("invalid", args, MISSING))
    write("noncentralcdfchi", "NonCentralCdfChi(x, df, ncp)", rows)

    rows = []
    for d1 in [1.0, 3.0, 10.0]:
        for d2 in [4.0, 20.0, 200.0]:
            for ncp in [0.0, 1.0, 10.0, 100.0]:
                for f in [0.1, 0.5, 1.0, 2.0, 5.0, 20.0]:
                    x = mp.mpf(d1) * f / (mp.mpf(d2) + mp.mpf(d1) * f)
                    v = nc_beta_cdf(x, mp.mpf(d1) / 2, mp.mpf(d2) / 2, ncp)
                    rows.append((prob_region(v, False), [f, d1, d2, ncp], v))
    for args in [[1.0, 0.0, 3.0, 1.0], [1.0, 2.0, 3.0, -1.0]]:
        rows.append(("invalid", args, MISSING))
    write("noncentralcdff", "NonCentralCdfF(f, df1, df2, ncp) with tol 1e-12", rows)

    rows = []
    for df in [1.0, 3.0, 10.0, 50.0]:
        for delta in [-5.0, -1.0, 0.5, 2.0, 8.0, 30.0]:
            for t in [-10.0, -2.0, -0.5, 0.3, 1.0, 2.5, 6.0, 15.0, 40.0]:
                v = nc_t_cdf(t, df, delta)
                rows.append((prob_region(v, False), [t, df, delta], v))
    for args in [[1.0, 0.0, 1.0]]:
        rows.append(("invalid", args, MISSING))
    write("noncentralcdft", "NonCentralCdfT(t, df, delta)", rows)

    rows = []
    for df in [1.0, 3.0, 10.0, 50.0]:
        for delta in [-3.0, -0.7, 0.5, 2.0, 6.0]:
            for t in [-8.0, -2.0, -0.4, 0.0, 0.3, 1.0, 3.0, 7.0, 20.0]:
                v = nc_t_pdf(t, df, delta)
                region = "opposite" if t * delta < 0 else "same"
                rows.append((region, [t, df, delta], v))
    rows.append(("invalid", [1.0, -1.0, 1.0], MISSING))
    write("noncentralpdft", "NonCentralPdfT(t, df, delta)", rows)


def t_discrete():
    pdf, cdf = [], []
    for n in [1.0, 5.0, 33.0, 34.0, 100.0, 1000.0, 1e5]:
        for p in [1e-3, 0.1, 0.5, 0.73, 0.999]:
            xs = sorted(set(x for x in [0.0, 1.0, math.floor(n * p), math.floor(n / 2), n - 1, n]
                            if 0 <= x <= n))
            for x in xs:
                v = binom_pmf(x, n, p)
                pdf.append((prob_region(v, n >= 1e5), [x, n, p], v))
                if x < n:
                    c = binom_cdf(x + 0.5, n, p)
                    cdf.append((prob_region(c, n >= 1e5), [x + 0.5, n, p], c))
    for args in [[1.0, 0.5, 0.5], [1.0, 5.0, 1.5]]:
        pdf.append(("invalid", args, MISSING))
        cdf.append(("invalid", args, MISSING))
    write("pdfbin", "PdfBin(x, n, p)", pdf)
    write("cdfbin", "CdfBin(x, n, p)", cdf)

    pdf, cdf = [], []
    for total, a, b in [(10, 3, 4), (50, 20, 7), (500, 250, 100), (500, 10, 400), (2000, 300, 900),
                        (50000, 1000, 25000), (50000, 20, 300)]:
        lo, hi = max(0, a + b - total), min(a, b)
        mean = a * b / total
        xs = sorted(set(int(x) for x in [lo, lo + 1, (lo + mean) / 2, mean, (mean + hi) / 2,
                                          hi - 1, hi] if lo <= x <= hi))
        normal = total > 10000 and 16 * max(b / (total - b), (total - b) / b) < min(a, total - a)
        for x in xs:
            v = hyper_pmf(x, total, a, b)
            pdf.append((prob_region(v, False), [x, total, a, b], v))
            if x < hi:
                c = hyper_cdf(x, total, a, b)
                cdf.append(("normal" if normal else prob_region(c, False), [x, total, a, b], c))
    pdf.append(("invalid", [5.0, 10.0, 3.0, 4.0], MISSING))
    cdf.append(("invalid", [1.0, 10.0, 3.5, 4.0], MISSING))
    cdf.append(("invalid", [1.0, 10.0, 11.0, 4.0], MISSING))
    write("pdfhyper", "PdfHyper(x, total, a, b)", pdf)
    write("cdfhyper", "CDFHyper(x, total, a, b)", cdf)

    rows = []
    for n in [5.0, 20.0, 33.0, 34.0, 100.0, 1e4, 1e8]:
        for k in sorted(set([1.0, math.floor(n / 3), math.floor(n / 2), n - 1])):
            rows.append(("small" if n <= 33 else "large", [n, k], lbinom(n, k)))
    for args in [[3.0, 4.0], [-1.0, 0.0]]:
        rows.append(("invalid", args, MISSING))
    write("dnlbnc", "dnlbnc(n, k)", rows)


def t_polygamma():
    dig, trig = [], []
    xs = [1e-12, 5e-6, 2e-5, 9e-5, 2e-4, 0.01] + frange(0.05, 30.0, 150) + [100.0, 1e4, 1e10]
    for x in xs:
        dig.append(("small" if x < 1e-5 else "centre", [x], mp.digamma(x)))
        trig.append(("small" if x < 1e-4 else "centre", [x], mp.polygamma(1, x)))
    root = mp.findroot(mp.digamma, 1.46)
    for d in [1e-8, 1e-4, 1e-2]:
        for x in [float(root) - d, float(root) + d]:
            dig.append(("root", [x], mp.digamma(x)))
    for x in [0.0, -1.0, 1e-17]:
        dig.append(("invalid", [x], MISSING))
        trig.append(("invalid", [x], MISSING))
    write("digamma", "QXMathFun::Digamma(x)", dig)
    write("trigamma", "QXMathFun::Trigamma(x)", trig)


TABLES = {
    "derf": t_derf,
    "derfc": t_derfc,
    "dnlgam": t_dnlgam,
    "normal": t_normal,
    "student": t_student,
    "f": t_f,
    "chi": t_chi,
    "beta": t_beta,
    "gamma": t_gamma,
    "noncentral": t_noncentral,
    "discrete": t_discrete,
    "polygamma": t_polygamma,
}


def main():
    names = sys.argv[1:] or list(TABLES)
    for name in names:
        TABLES[name]()


if __name__ == "__main__":
    main()
