#!/usr/bin/env python3
"""Derives the polynomial tables of derf and dnlgam and writes specialfuntables.h.

Run by hand (python3 with mpmath), never in the build:
    python3 specialfuntables.py > specialfuntables.h && clang-format -i specialfuntables.h

Each row is a polynomial in the reduced variable u of its interval, fitted by
interpolation at Chebyshev points in 50-digit arithmetic. The coefficients are
then rounded to double one at a time from the highest degree down, refitting
the lower ones after each rounding, so that the rounding of a high coefficient
is absorbed by the lower ones. The script prints to stderr, per row, the
largest relative error of the rounded polynomial (evaluated exactly) against
the function over its interval.

Intervals, as the evaluating code reduces its argument:
  derf, table a (5 x 13): s = t*t, i = floor(s), u = s - i; the row fits
        erf(t)/t as a function of u on [0, 1) (row 4 on [0, 0.84]).
  derf, table b (5 x 13): i = floor(t), u = t - i, 2.2 <= t < 6.9; row i-2
        fits erfc(t)^(1/16), since derf is 1 - w^16.
  dnlgam, table a (2 x 11): x in (0, 0.25) and [0.25, 0.5); the row fits
        1/Gamma(1+x) as a polynomial in x itself (w = x * P(x) = 1/Gamma(x)).
  dnlgam, table b (7 x 14): 0.5 < x < 3.5, s = x - 4.5/(x+0.5), i = floor(s+4),
        u = s - (i - 3.5) in [-0.5, 0.5); the row fits
        lgamma(x) / ((x-1)(x-2)), so that the code's factor (x-1)(x-2) keeps
        full relative accuracy at the zeros of lgamma at 1 and 2.
  dnlgam, table c (5 x 13): 3.5 <= x < 8, i = floor(x) - 3, u = x - (i+3.5);
        the row fits lgamma(x).
"""
import sys

import mpmath as mp

mp.mp.dps = 50


def chebyshev_points(lo, hi, n):
    lo, hi = mp.mpf(lo), mp.mpf(hi)
    return [(lo + hi) / 2 + (hi - lo) / 2 * mp.cos(mp.pi * (2 * k + 1) / (2 * n)) for k in range(n)]


def interpolate(f, lo, hi, n):
    """Monomial coefficients c[0..n-1] (lowest first) of the interpolant of f."""
    pts = chebyshev_points(lo, hi, n)
    a = mp.matrix([[p ** j for j in range(n)] for p in pts])
    b = mp.matrix([f(p) for p in pts])
    return list(mp.lu_solve(a, b))


def fit_rounded(f, lo, hi, n):
    fixed = {}
    for deg in range(n - 1, -1, -1):
        def rest(u, fixed=dict(fixed)):
            return f(u) - sum(mp.mpf(c) * u ** j for j, c in fixed.items())
        c = interpolate(rest, lo, hi, deg + 1)
        fixed[deg] = float(c[deg])
    return [fixed[j] for j in range(n)]


def max_rel_error(f, coeffs, lo, hi, points=801):
    worst = mp.mpf(0)
    for k in range(points):
        u = mp.mpf(lo) + (mp.mpf(hi) - mp.mpf(lo)) * k / (points - 1)
        p = sum(mp.mpf(c) * u ** j for j, c in enumerate(coeffs))
        v = f(u)
        worst = max(worst, abs(p / v - 1))
    return worst


def table(name, rows, n):
    out = []
    for label, f, lo, hi in rows:
        coeffs = fit_rounded(f, lo, hi, n)
        err = max_rel_error(f, coeffs, lo, hi)
        print("%s %s: max relative error %.3g (%.2f eps)" %
              (name, label, float(err), float(err / mp.mpf(2) ** -52)), file=sys.stderr)
        out.append(coeffs)
        worst[0] = max(worst[0], err / mp.mpf(2) ** -52)
    return out


worst = [mp.mpf(0)]


def erf_over_t(i):
    def f(u):
        s = i + u
        if s == 0:
            return 2 / mp.sqrt(mp.pi)
        t = mp.sqrt(s)
        return mp.erf(t) / t
    return f


def erfc_root16(i):
    return lambda u: mp.erfc(i + u) ** (mp.mpf(1) / 16)


def inv_gamma1(x):
    return 1 / mp.gamma(1 + x)


def x_of_s(s):
    y = ((s + mp.mpf(0.5)) + mp.sqrt((s + mp.mpf(0.5)) ** 2 + 18)) / 2
    return y - mp.mpf(0.5)


def lgamma_over_roots(i):
    def f(u):
        x = x_of_s(u + i - mp.mpf(3.5))
        d = (x - 1) * (x - 2)
        if abs(d) < mp.mpf(10) ** -30:
            # Removable singularity: the limit at 1 is gamma, at 2 it is 1 - gamma.
            return mp.euler if abs(x - 1) < mp.mpf(0.5) else 1 - mp.euler
        return mp.loggamma(x) / d
    return f


def lgamma_at(i):
    return lambda u: mp.loggamma(u + i + mp.mpf(3.5))


def emit(name, comment, rows):
    n = len(rows[0])
    print("// %s" % comment)
    print("constexpr double %s[%d][%d] = {" % (name, len(rows), n))
    for r in rows:
        print("    {")
        for c in reversed(r):  # highest degree first, for Horner
            print("        %s," % repr(c))
        print("    },")
    print("};")
    print()


def main():
    derf_a = table("derf a", [("row %d" % i, erf_over_t(i), 0, 1 if i < 4 else 0.84)
                              for i in range(5)], 13)
    derf_b = table("derf b", [("row %d" % (i - 2), erfc_root16(i), 0.2 if i == 2 else 0,
                               0.9 if i == 6 else 1) for i in range(2, 7)], 13)
    lg_a = table("dnlgam a", [("row 0", inv_gamma1, 0, 0.25),
                              ("row 1", inv_gamma1, 0.25, 0.5)], 11)
    lg_b = table("dnlgam b", [("row %d" % i, lgamma_over_roots(i), -0.5,
                               0.5 if i < 6 else -0.125) for i in range(7)], 14)
    lg_c = table("dnlgam c", [("row %d" % i, lgamma_at(i), 0 if i == 0 else -0.5, 0.5)
                              for i in range(5)], 13)

    print("// Generated by specialfuntables.py; do not edit. Each row lists the")
    print("// coefficients of one interval's polynomial, highest degree first. With its")
    print("// coefficients rounded to double, no row is further than %.2f double" % float(worst[0]))
    print("// epsilons (relative) from its function over its interval.")
    print("#ifndef QX_DISTRIBUTIONS_INTERNAL_SPECIALFUNTABLES_H")
    print("#define QX_DISTRIBUTIONS_INTERNAL_SPECIALFUNTABLES_H")
    print()
    print("namespace QXMath_850 {")
    print("namespace internal {")
    print()
    emit("kErfA", "erf(t)/t in u = t*t - i, row i = floor(t*t), t < 2.2.", derf_a)
    emit("kErfB", "erfc(t)^(1/16) in u = t - i, row i - 2, i = floor(t), 2.2 <= t < 6.9.",
         derf_b)
    emit("kLogGammaA", "1/Gamma(1+x) in x; row 0 for x < 0.25, row 1 for 0.25 <= x < 0.5.",
         lg_a)
    emit("kLogGammaB", "lgamma(x)/((x-1)(x-2)) in u = s - (i - 3.5), s = x - 4.5/(x+0.5), "
         "0.5 < x < 3.5.", lg_b)
    emit("kLogGammaC", "lgamma(x) in u = x - (i + 3.5), i = floor(x) - 3, 3.5 <= x < 8.", lg_c)
    print("}  // namespace internal")
    print("}  // namespace QXMath_850")
    print()
    print("#endif  // QX_DISTRIBUTIONS_INTERNAL_SPECIALFUNTABLES_H")


if __name__ == "__main__":
    main()
