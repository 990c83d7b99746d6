// Speed of the uniform sources and the variate generators, each against the
// standard library doing the same job in the same run: std::mt19937 for the
// twister, std::uniform_real_distribution, std::normal_distribution,
// std::gamma_distribution and std::binomial_distribution on std::mt19937 for
// the rest, and for the Wishart draw a plain triangular construction from
// std:: variates. Each iteration draws kBatch values.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/random/qxrandomtwister.h"
#include "qx/random/qxrandomvalues.h"
#include "qx/random/qxrngbinomial.h"
#include "qx/random/qxrngnormal.h"
#include "qx/random/qxrngucongruential.h"
#include "qx/random/qxrngutwister.h"
#include "qx/random/qxurandom.h"

namespace QXMath_850 {
namespace {

constexpr int kBatch = 1000;

template <class Draw>
void Run(benchmark::State& state, Draw draw) {
  for (auto _ : state) {
    for (int i = 0; i < kBatch; ++i)
      benchmark::DoNotOptimize(draw());
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
}

// Uniform sources.
void BM_StdMt19937(benchmark::State& state) {
  std::mt19937 g(5489);
  Run(state, [&] { return g(); });
}
void BM_TwisterInteger32(benchmark::State& state) {
  QXRandomTwister t;
  t.Initialize(5489);
  Run(state, [&] { return t.GetInteger32(); });
}
void BM_StdUniformReal(benchmark::State& state) {
  std::mt19937 g(5489);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  Run(state, [&] { return u(g); });
}
void BM_URandomTwister(benchmark::State& state) {
  QXURandom r(5489, true, true, nullptr);
  Run(state, [&] { return r.GetRandom(); });
}
void BM_URandomCongruential(benchmark::State& state) {
  QXURandom r(5489, true, false, nullptr);
  Run(state, [&] { return r.GetRandom(); });
}
void BM_URandomCLibrary(benchmark::State& state) {
  QXURandom r(5489, false, false, nullptr);
  r.SetSeed(5489);
  Run(state, [&] { return r.GetRandom(); });
}
void BM_RNGUTwister(benchmark::State& state) {
  QXRNGUTwister g;
  g.SetSeed(5489.0);
  QXRNGenerator& source = g;
  Run(state, [&] { return source.GetNext(); });
}
void BM_RNGUCongruential(benchmark::State& state) {
  QXRNGUCongruential g;
  g.SetSeed(5489.0);
  QXRNGenerator& source = g;
  Run(state, [&] { return source.GetNext(); });
}
BENCHMARK(BM_StdMt19937)->Arg(kBatch);
BENCHMARK(BM_TwisterInteger32)->Arg(kBatch);
BENCHMARK(BM_StdUniformReal)->Arg(kBatch);
BENCHMARK(BM_URandomTwister)->Arg(kBatch);
BENCHMARK(BM_URandomCongruential)->Arg(kBatch);
BENCHMARK(BM_URandomCLibrary)->Arg(kBatch);
BENCHMARK(BM_RNGUTwister)->Arg(kBatch);
BENCHMARK(BM_RNGUCongruential)->Arg(kBatch);
QX_BENCHMARK_RATIO("BM_TwisterInteger32", "BM_StdMt19937");
QX_BENCHMARK_RATIO("BM_URandomTwister", "BM_StdUniformReal");
QX_BENCHMARK_RATIO("BM_URandomCongruential", "BM_StdUniformReal");
QX_BENCHMARK_RATIO("BM_URandomCLibrary", "BM_StdUniformReal");
QX_BENCHMARK_RATIO("BM_RNGUTwister", "BM_StdUniformReal");
QX_BENCHMARK_RATIO("BM_RNGUCongruential", "BM_StdUniformReal");

// Normal variates.
void BM_StdNormal(benchmark::State& state) {
  std::mt19937 g(5489);
  std::normal_distribution<double> normal(0.0, 1.0);
  Run(state, [&] { return normal(g); });
}
void BM_RVSNor(benchmark::State& state) {
  QXRandomValues v;
  v.SetSeed(5489);
  Run(state, [&] { return v.RVSNor(); });
}
void BM_RNGNormal(benchmark::State& state) {
  QXRNGNormal normal(0.0, 1.0);
  normal.SetSeed(5489.0);
  Run(state, [&] { return normal.GetNext(); });
}
BENCHMARK(BM_StdNormal)->Arg(kBatch);
BENCHMARK(BM_RVSNor)->Arg(kBatch);
BENCHMARK(BM_RNGNormal)->Arg(kBatch);
QX_BENCHMARK_RATIO("BM_RVSNor", "BM_StdNormal");
QX_BENCHMARK_RATIO("BM_RNGNormal", "BM_StdNormal");

// Gamma variates; the argument is ten times the shape.
void BM_StdGamma(benchmark::State& state) {
  std::mt19937 g(5489);
  std::gamma_distribution<double> gamma(state.range(0) / 10.0, 1.0);
  Run(state, [&] { return gamma(g); });
}
void BM_RVGam(benchmark::State& state) {
  QXRandomValues v;
  v.SetSeed(5489);
  const double shape = state.range(0) / 10.0;
  Run(state, [&] { return v.RVGam(shape, 1.0); });
}
BENCHMARK(BM_StdGamma)->Arg(5)->Arg(10)->Arg(40)->Arg(1000);
BENCHMARK(BM_RVGam)->Arg(5)->Arg(10)->Arg(40)->Arg(1000);
QX_BENCHMARK_RATIO("BM_RVGam", "BM_StdGamma");

// Binomial variates by beta splitting.
void BM_StdBinomial(benchmark::State& state) {
  std::mt19937 g(5489);
  std::binomial_distribution<long> binomial(state.range(0), 0.3);
  Run(state, [&] { return binomial(g); });
}
void BM_RNGBinomial(benchmark::State& state) {
  QXRNGBinomial binomial(static_cast<double>(state.range(0)), 0.3);
  binomial.SetSeed(5489.0);
  Run(state, [&] { return binomial.GetNext(); });
}
BENCHMARK(BM_StdBinomial)->Arg(20)->Arg(1000)->Arg(1000000);
BENCHMARK(BM_RNGBinomial)->Arg(20)->Arg(1000)->Arg(1000000);
QX_BENCHMARK_RATIO("BM_RNGBinomial", "BM_StdBinomial");

// Wishart draws of order p with p + 10 degrees of freedom, with the identity
// scale and with scale S = C C^T (C lower triangular with 1 on and 0.5 below
// the diagonal), against the same triangular construction from std:: variates
// and plain loops: L L^T, or G G^T with G = C L.
QXSymMatrix Scale(int p) {
  QXSymMatrix s(p, true);
  for (int i = 0; i < p; ++i) {
    for (int j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (int r = 0; r <= j; ++r)
        sum += (r == i ? 1.0 : 0.5) * (r == j ? 1.0 : 0.5);
      s.SetElem(i, j, sum);
    }
  }
  return s;
}
void BM_PlainWishart(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  const bool scaled = state.range(1) != 0;
  std::mt19937 g(5489);
  std::normal_distribution<double> normal(0.0, 1.0);
  std::chi_squared_distribution<double> chi(10.0);
  const std::size_t square = static_cast<std::size_t>(p) * p;
  std::vector<double> l(square, 0.0), c(square, 0.0), w(p * (p + 1) / 2);
  for (int i = 0; i < p; ++i) {
    for (int j = 0; j <= i; ++j)
      c[i * p + j] = i == j ? 1.0 : 0.5;
  }
  for (auto _ : state) {
    for (int i = 0; i < p; ++i) {
      l[i * p + i] = std::sqrt(chi(g));
      for (int j = 0; j < i; ++j)
        l[i * p + j] = normal(g);
    }
    if (scaled) {
      // G = C L, lower triangular, in place from the bottom row up.
      for (int i = p - 1; i >= 0; --i) {
        for (int j = 0; j <= i; ++j) {
          double sum = 0.0;
          for (int r = j; r <= i; ++r)
            sum += c[i * p + r] * l[r * p + j];
          l[i * p + j] = sum;
        }
      }
    }
    for (int i = 0, k = 0; i < p; ++i) {
      for (int j = 0; j <= i; ++j, ++k) {
        double sum = 0.0;
        for (int r = 0; r <= j; ++r)
          sum += l[i * p + r] * l[j * p + r];
        w[k] = sum;
      }
    }
    benchmark::DoNotOptimize(w.data());
  }
  state.SetItemsProcessed(state.iterations());
}
void BM_Wishart(benchmark::State& state) {
  const int p = static_cast<int>(state.range(0));
  QXRandomValues v;
  v.SetSeed(5489);
  if (state.range(1) != 0) {
    v.SetParamWishart(p, p + 10.0, Scale(p));
  } else {
    v.SetParamWishart(p, p + 10.0);
  }
  QXSymMatrix w;
  for (auto _ : state)
    benchmark::DoNotOptimize(v.GetRandom(w));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PlainWishart)->ArgsProduct({{5, 50}, {0, 1}});
BENCHMARK(BM_Wishart)->ArgsProduct({{5, 50}, {0, 1}});
QX_BENCHMARK_RATIO("BM_Wishart", "BM_PlainWishart");

}  // namespace
}  // namespace QXMath_850
