// Speed of factoring and inverting a block-diagonal matrix of k equal dense
// blocks, against the same numbers held as one dense matrix (LTChol,
// CholInverse) and against LAPACK (dpotrf, dpotri) on the full square when
// it was found at configure time. Arguments: the order n and the number of
// blocks k; the work falls with k, as the blocks are factored one by one.

#include <benchmark/benchmark.h>

#include <vector>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/matrices/internal/benchmarkdata.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {
namespace {

using internal::RandomSpd;
using internal::SetFlops;
using internal::ToFull;

QXSymBlockDiagMatrix Blocks(int n, int k) {
  QXSymBlockDiagMatrix b;
  for (int i = 0; i < k; ++i)
    b.AddBlock(RandomSpd(n / k, 100u + i));
  return b;
}

QXSymMatrix DenseCopy(const QXSymBlockDiagMatrix& b) {
  QXSymMatrix d;
  b.FillDenseMatrix(d);
  return d;
}

// The flops of the blocks' factorization, so that the rates compare.
void SetBlockFlops(benchmark::State& state, double perCube) {
  const double q = static_cast<double>(state.range(0) / state.range(1));
  SetFlops(state, perCube * q * q * q * static_cast<double>(state.range(1)));
}

template <typename Matrix>
void Factor(benchmark::State& state, const Matrix& original) {
  std::vector<double> diag;
  original.GetDiagonal(diag);
  for (auto _ : state) {
    Matrix a = original;
    benchmark::DoNotOptimize(a.LTChol(diag, 1e-12, false));
  }
  SetBlockFlops(state, 1.0 / 3.0);
}

template <typename Matrix>
void Invert(benchmark::State& state, const Matrix& original) {
  std::vector<double> diag;
  original.GetDiagonal(diag);
  Matrix inverse;
  for (auto _ : state)
    benchmark::DoNotOptimize(original.CholInverse(diag, 1e-12, inverse));
  SetBlockFlops(state, 1.0);
}

void BM_BlockLTChol(benchmark::State& state) {
  Factor(state, Blocks(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))));
}
void BM_DenseLTCholOfBlocks(benchmark::State& state) {
  Factor(state,
         DenseCopy(Blocks(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))));
}
void BM_BlockCholInverse(benchmark::State& state) {
  Invert(state, Blocks(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))));
}
void BM_DenseCholInverseOfBlocks(benchmark::State& state) {
  Invert(state,
         DenseCopy(Blocks(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))));
}

#define QX_BLOCK_SIZES \
  ->ArgsProduct({{50, 200, 1000}, {1, 2, 5, 10}})->Unit(benchmark::kMicrosecond)
BENCHMARK(BM_BlockLTChol) QX_BLOCK_SIZES;
BENCHMARK(BM_DenseLTCholOfBlocks) QX_BLOCK_SIZES;
BENCHMARK(BM_BlockCholInverse) QX_BLOCK_SIZES;
BENCHMARK(BM_DenseCholInverseOfBlocks) QX_BLOCK_SIZES;
QX_BENCHMARK_RATIO("BM_BlockLTChol", "BM_DenseLTCholOfBlocks");
QX_BENCHMARK_RATIO("BM_BlockCholInverse", "BM_DenseCholInverseOfBlocks");

#if defined(QX_HAVE_LAPACK)
// dpotrf, and with `invert` dpotri after it, on the full square.
void LapackOfBlocks(benchmark::State& state, bool invert) {
  const int n = static_cast<int>(state.range(0));
  internal::LapackCholesky(state, ToFull(Blocks(n, static_cast<int>(state.range(1)))), n, invert);
  SetBlockFlops(state, invert ? 1.0 : 1.0 / 3.0);
}
void BM_LapackPotrfOfBlocks(benchmark::State& state) {
  LapackOfBlocks(state, false);
}
void BM_LapackPotrfPotriOfBlocks(benchmark::State& state) {
  LapackOfBlocks(state, true);
}
BENCHMARK(BM_LapackPotrfOfBlocks) QX_BLOCK_SIZES;
BENCHMARK(BM_LapackPotrfPotriOfBlocks) QX_BLOCK_SIZES;
QX_BENCHMARK_RATIO("BM_BlockLTChol", "BM_LapackPotrfOfBlocks");
QX_BENCHMARK_RATIO("BM_BlockCholInverse", "BM_LapackPotrfPotriOfBlocks");
#endif

}  // namespace
}  // namespace QXMath_850
