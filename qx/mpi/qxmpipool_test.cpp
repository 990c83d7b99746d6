// Runs on every rank of an mpirun; each rank builds the same data, takes its
// own share of the cases, and checks the pooled result on its own.
#include "qx/mpi/qxmpipool.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/matrices/qxrectmatrix.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::QXStatus;
using Vec = std::vector<double>;

constexpr int kVars = 5;
constexpr int kRows = 1000;
constexpr int kBlock = 64;

int Rank() {
  int r = 0;
  MPI_Comm_rank(MPI_COMM_WORLD, &r);
  return r;
}

int Ranks() {
  int n = 1;
  MPI_Comm_size(MPI_COMM_WORLD, &n);
  return n;
}

// Correlated variables far from zero, then a frequency weight.
QXRectMatrix Cases() {
  std::mt19937_64 engine(2026);
  std::normal_distribution<double> normal(0.0, 1.0);
  QXRectMatrix m(kRows, kVars + 1, true);
  for (int r = 0; r < kRows; ++r) {
    double common = normal(engine);
    for (int j = 0; j < kVars; ++j)
      m.SetElem(r, j, 100.0 * (j + 1) + common + (j + 1) * normal(engine));
    m.SetElem(r, kVars, 1.0 + (r % 4));
  }
  return m;
}

// The rows of share k of `parts`; the last of several shares is empty, so
// that a rank with nothing to add takes part in every run.
void Share(int k, int parts, int& first, int& last) {
  const int used = parts > 1 ? parts - 1 : 1;
  first = k < used ? kRows * k / used : kRows;
  last = k < used ? kRows * (k + 1) / used : kRows;
}

QXMeansXProducts Accumulate(const QXRectMatrix& all, int first, int last) {
  QXMeansXProducts acc(kVars, true, true, false);
  QXRectMatrix block(kBlock, kVars + 1, true);
  for (int r = first; r < last; r += kBlock) {
    const int n = std::min(kBlock, last - r);
    for (int i = 0; i < n; ++i)
      for (int j = 0; j <= kVars; ++j)
        block.SetElem(i, j, all.GetElem(r + i, j));
    EXPECT_TRUE(acc.Update(block, n));
  }
  return acc;
}

// One process's merge of the parts in the order of the ranks' tree.
template <class T>
T TreeMerge(std::vector<T> parts) {
  const int k = static_cast<int>(parts.size());
  for (int step = 1; step < k; step *= 2)
    for (int r = 0; r + step < k; r += 2 * step)
      EXPECT_TRUE(parts[r].Merge(parts[r + step]));
  return parts[0];
}

bool SameBits(const Vec& a, const Vec& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

double RelativeError(const Vec& a, const Vec& b) {
  double scale = 0.0, worst = 0.0;
  for (double x : b)
    scale = std::fmax(scale, std::fabs(x));
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
    worst = std::fmax(worst, std::fabs(a[i] - b[i]) / std::fmax(std::fabs(b[i]), 1e-3 * scale));
  return a.size() == b.size() ? worst : HUGE_VAL;
}

// Every rank's status code and datum, so that each rank can see all of them.
std::vector<long> AllStatuses(const QXStatus& s) {
  long mine[2] = {s.GetErrorCode(), s.GetDiscreteDatum(0)};
  std::vector<long> all(2 * Ranks());
  MPI_Allgather(mine, 2, MPI_LONG, all.data(), 2, MPI_LONG, MPI_COMM_WORLD);
  return all;
}

TEST(QXMPIPoolTest, PooledMeansAndCrossProductsMatchOneProcessAndTheTreeToTheBit) {
  const QXRectMatrix all = Cases();
  const int k = Ranks();
  int first, last;
  Share(Rank(), k, first, last);
  QXMeansXProducts mine = Accumulate(all, first, last);
  ASSERT_TRUE(QXStatus() == QXMPIPool::Allreduce(mine, MPI_COMM_WORLD));

  const QXMeansXProducts whole = Accumulate(all, 0, kRows);
  EXPECT_EQ(mine.GetNCases(), whole.GetNCases());
  EXPECT_LT(RelativeError(mine.GetMeans(), whole.GetMeans()), 1e-13);
  EXPECT_LT(RelativeError(mine.GetXProds().AsVectorConst(), whole.GetXProds().AsVectorConst()),
            1e-13);

  std::vector<QXMeansXProdData> parts;
  for (int r = 0; r < k; ++r) {
    Share(r, k, first, last);
    parts.push_back(Accumulate(all, first, last));
  }
  const QXMeansXProdData tree = TreeMerge(parts);
  EXPECT_TRUE(SameBits(mine.GetMeans(), tree.GetMeans()));
  EXPECT_TRUE(SameBits(mine.GetXProds().AsVectorConst(), tree.GetXProds().AsVectorConst()));
}

TEST(QXMPIPoolTest, PooledPairsAndSummariesMatchTheTreeToTheBit) {
  const QXRectMatrix all = Cases();
  const int k = Ranks();
  std::vector<QXAccumXProdPair> pairs;
  std::vector<QXUniStats> stats;
  for (int r = 0; r < k; ++r) {
    int first, last;
    Share(r, k, first, last);
    pairs.emplace_back(kVars, 16);
    stats.emplace_back("x0", Vec{95.0, 100.0, 105.0}, true);
    for (int row = first; row < last; ++row) {
      Vec x(kVars);
      for (int j = 0; j < kVars; ++j)
        x[j] = all.GetElem(row, j);
      pairs.back().UpdateCase(x, all.GetElem(row, kVars));
      stats.back().Update(x[0], all.GetElem(row, kVars));
    }
  }
  QXAccumXProdPair pooledPairs = pairs[Rank()];
  QXUniStats pooledStats = stats[Rank()];
  ASSERT_TRUE(QXStatus() == QXMPIPool::Allreduce(pooledPairs, MPI_COMM_WORLD));
  ASSERT_TRUE(QXStatus() == QXMPIPool::Allreduce(pooledStats, MPI_COMM_WORLD));
  Vec got, expected;
  ASSERT_TRUE(pooledPairs.GetState(got) && TreeMerge(pairs).GetState(expected));
  EXPECT_TRUE(SameBits(got, expected));
  const QXUniStats tree = TreeMerge(stats);
  EXPECT_TRUE(SameBits(pooledStats.GetSummStats(), tree.GetSummStats()));
  EXPECT_EQ(pooledStats.GetFrequencies(), tree.GetFrequencies());

  QXUniStats whole("x0", Vec{95.0, 100.0, 105.0}, true);
  for (int row = 0; row < kRows; ++row)
    whole.Update(all.GetElem(row, 0), all.GetElem(row, kVars));
  EXPECT_LT(RelativeError(pooledStats.GetSummStats(), whole.GetSummStats()), 1e-13);
  EXPECT_EQ(pooledStats.GetFrequencies(), whole.GetFrequencies());
  EXPECT_EQ(pooledStats.GetNumberOfCases(), whole.GetNumberOfCases());
}

TEST(QXMPIPoolTest, OneBadRankFailsEveryRankAlikeAndKeepsEachPartial) {
  const int k = Ranks(), last = k - 1;
  QXUniStats stats("x0");
  stats.Update(1.0 + Rank());
  if (Rank() == last) stats.SetResults(1.0, {1.0, 1.0, 1.0 + Rank(), 0.0}, {});
  QXStatus status = QXMPIPool::Allreduce(stats, MPI_COMM_WORLD);
  const std::vector<long> statuses = AllStatuses(status);
  for (std::size_t r = 0; r < static_cast<std::size_t>(k); ++r) {
    EXPECT_EQ(statuses[2 * r], QXMPIPool::kInvalidPartial);
    EXPECT_EQ(statuses[2 * r + 1], last);
  }
  EXPECT_EQ(stats.GetSummStats()[2], 1.0 + Rank());

  // A field of another name on rank 0.
  QXUniStats named(Rank() == 0 && k > 1 ? "other" : "x0");
  status = QXMPIPool::Allreduce(named, MPI_COMM_WORLD);
  EXPECT_EQ(status.GetErrorCode(), k > 1 ? long{QXMPIPool::kShapesDiffer} : 0L);

  // A rank with no variables yet takes the others' shape.
  QXMeansXProducts acc = Rank() == 0 ? QXMeansXProducts() : Accumulate(Cases(), 0, 10);
  EXPECT_TRUE(QXStatus() == QXMPIPool::Allreduce(acc, MPI_COMM_WORLD));
  EXPECT_EQ(acc.GetNVars(), k > 1 ? kVars : 0);
  EXPECT_EQ(acc.GetNCases(), k > 1 ? (k - 1) * 23.0 : 0.0);
}

// Buffers come from other processes: whatever they hold, a reader reads
// nothing beyond them and leaves the target as it was.
TEST(QXMPIPoolTest, MalformedBuffersAreRefusedWithoutHarm) {
  const QXMeansXProducts acc = Accumulate(Cases(), 0, 100);
  Vec buffer;
  ASSERT_TRUE(QXMPIPool::Pack(acc, buffer));
  ASSERT_EQ(buffer.size(), 5u + 1u + kVars + kVars * (kVars + 1) / 2);
  QXMeansXProdData back;
  ASSERT_TRUE(QXMPIPool::Unpack(buffer.data(), buffer.size(), back));
  EXPECT_TRUE(SameBits(back.GetXProds().AsVectorConst(), acc.GetXProds().AsVectorConst()));
  EXPECT_TRUE(SameBits(back.GetMeans(), acc.GetMeans()));
  EXPECT_EQ(back.IsIntercept(), true);

  QXMeansXProdData target(2, false);
  for (std::size_t size = 0; size < buffer.size(); ++size)
    EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), size, target)) << size;
  for (std::size_t at = 0; at < 5; ++at) {
    for (double bad : {-1.0, 0.5, 1e300, std::nan(""), buffer[at] + 2.0}) {
      Vec broken = buffer;
      broken[at] = bad;
      EXPECT_FALSE(QXMPIPool::Unpack(broken.data(), broken.size(), target)) << at << " " << bad;
    }
  }
  Vec huge = buffer;
  huge[4] = 2.0 * 2147483647.0;  // a vast order that the length can't hold
  EXPECT_FALSE(QXMPIPool::Unpack(huge.data(), huge.size(), target));
  huge[5] = -1.0;  // a negative count
  huge[4] = buffer[4];
  EXPECT_FALSE(QXMPIPool::Unpack(huge.data(), huge.size(), target));
  EXPECT_FALSE(QXMPIPool::Unpack(nullptr, 0, target));
  EXPECT_EQ(target.GetNVars(), 2);
  EXPECT_FALSE(target.IsIntercept());

  // Each reader takes only its own kind, and a partial of its shape.
  QXUniStats stats("x0");
  QXAccumXProdPair pairs(3, 4), wider(4, 4);
  ASSERT_TRUE(QXMPIPool::Pack(pairs, buffer));
  EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), buffer.size(), wider));
  EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), buffer.size(), stats));
  EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), buffer.size(), target));
  ASSERT_TRUE(QXMPIPool::Pack(stats, buffer));
  EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), buffer.size(), pairs));
  QXUniStats other("x1");
  EXPECT_FALSE(QXMPIPool::Unpack(buffer.data(), buffer.size(), other));
}

}  // namespace
}  // namespace QXMath_850

int main(int argc, char** argv) {
  MPI_Init(&argc, &argv);
  ::testing::InitGoogleTest(&argc, argv);
  // Rank 0 reports in full, the others only their failures.
  if (QXMath_850::Rank() != 0) GTEST_FLAG_SET(brief, true);
  const int failed = RUN_ALL_TESTS() != 0 ? 1 : 0;
  int anyFailed = 0;
  MPI_Allreduce(&failed, &anyFailed, 1, MPI_INT, MPI_MAX, MPI_COMM_WORLD);
  MPI_Finalize();
  return anyFailed;
}
