#include "qx/mpi/qxmpipool.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace QXMath_850 {

using QXCommon_850::QXStatus;

namespace {

// The header of every buffer: magic ("QXMP"), version, kind, length in
// doubles, shape key.
constexpr double kMagic = 1364741456.0;
constexpr double kVersion = 1.0;
constexpr std::size_t kHeader = 5;
enum Kind { kMeans = 1, kPairs = 2, kUniStats = 3 };
// Keys and counts are whole numbers below 2^53, exact in a double.
constexpr double kMaxWhole = 9007199254740992.0;
constexpr int kTag = 0x5158;

bool IsWhole(double x) {
  return x >= 0.0 && x < kMaxWhole && x == std::floor(x);
}

void StartBuffer(Kind kind, double key, std::size_t payload, std::vector<double>& out) {
  out.clear();
  out.reserve(kHeader + payload);
  out = {kMagic, kVersion, static_cast<double>(kind), static_cast<double>(kHeader + payload), key};
}

// The shape key of a buffer of the given kind, or -1 for a malformed header.
double HeaderKey(const double* buffer, std::size_t size, Kind kind) {
  if (buffer == nullptr || size < kHeader || buffer[0] != kMagic || buffer[1] != kVersion ||
      buffer[2] != static_cast<double>(kind) || buffer[3] != static_cast<double>(size) ||
      !IsWhole(buffer[4])) {
    return -1.0;
  }
  return buffer[4];
}

// Holds a result put together from a buffer; the members are the base's own.
class MeansState : public QXMeansXProdData {
 public:
  MeansState(int n, bool withIntercept) : QXMeansXProdData(n, withIntercept) {}
  void Put(double count, const double* meansIn, const double* xprodsIn, std::size_t packed) {
    wCases = count;
    std::copy(meansIn, meansIn + nVars, means.begin());
    std::copy(xprodsIn, xprodsIn + packed, xprods.AsVector().begin());
  }
};

std::size_t Triangle(std::size_t n) {
  return n * (n + 1) / 2;
}

double MeansKey(const QXMeansXProdData& acc) {
  return 2.0 * acc.GetNVars() + (acc.IsIntercept() ? 1.0 : 0.0);
}

// FNV-1a over what fixes the shape of a field's summary, cut to 52 bits.
double UniStatsKey(const QXUniStats& stats) {
  std::uint64_t h = 14695981039346656037ULL;
  const auto add = [&h](const void* bytes, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
      h ^= static_cast<const unsigned char*>(bytes)[i];
      h *= 1099511628211ULL;
    }
  };
  add(stats.GetVarName().data(), stats.GetVarName().size());
  const unsigned char flags[2] = {static_cast<unsigned char>(stats.IsCategorical()),
                                  static_cast<unsigned char>(stats.AreIntervalsOpenLeft())};
  add(flags, 2);
  for (double cut : stats.GetCutPoints())
    add(&cut, sizeof cut);
  return static_cast<double>(h >> 12);
}

bool PackState(Kind kind, double key, bool ok, const std::vector<double>& state,
               std::vector<double>& out) {
  if (!ok) {
    out.clear();
    return false;
  }
  StartBuffer(kind, key, state.size(), out);
  out.insert(out.end(), state.begin(), state.end());
  return true;
}

// What Allreduce needs of each kind of partial.
struct MeansOps {
  using Partial = QXMeansXProdData;
  static bool HasShape(const Partial& acc) { return acc.GetNVars() > 0; }
  static double Key(const Partial& acc) { return MeansKey(acc); }
  // An empty partial into which a received buffer is unpacked.
  static Partial Blank(const Partial&, const double*, std::size_t) { return Partial(); }
};

struct PairsOps {
  using Partial = QXAccumXProdPair;
  static bool HasShape(const Partial& acc) { return acc.GetNVars() > 0; }
  static double Key(const Partial& acc) { return acc.GetNVars(); }
  static Partial Blank(const Partial& own, const double* buffer, std::size_t size) {
    // Every pair holds at least one double of the state, so the buffer's
    // length bounds the number of variables, and what this allocates, before
    // it is believed; SetState then takes only a state of the exact length.
    const double n = HeaderKey(buffer, size, kPairs);
    const double pairs = n * (n - 1.0) / 2.0;
    const bool fits = n >= 0.0 && n <= INT_MAX && pairs <= static_cast<double>(size - kHeader);
    return Partial(fits ? static_cast<int>(n) : 0, own.GetNAccum());
  }
};

struct UniStatsOps {
  using Partial = QXUniStats;
  static bool HasShape(const Partial&) { return true; }
  static double Key(const Partial& stats) { return UniStatsKey(stats); }
  static Partial Blank(const Partial& own, const double*, std::size_t) { return own; }
};

// The communicator of one call, apart from the caller's messages.
class Comm {
 public:
  explicit Comm(MPI_Comm parent) {
    MPI_Comm_dup(parent, &comm);
    MPI_Comm_rank(comm, &rank);
    MPI_Comm_size(comm, &size);
  }
  ~Comm() { MPI_Comm_free(&comm); }
  Comm(const Comm&) = delete;
  Comm& operator=(const Comm&) = delete;

  MPI_Comm comm;
  int rank = 0;
  int size = 1;
};

QXStatus Failure(QXMPIPool::Code code, int rank) {
  QXStatus status(code, false);
  status.SetDiscreteDatum(0, rank);
  return status;
}

// The lowest failing rank (or -1) goes first in every tree message.
std::vector<double> TreeMessage(int failed, const std::vector<double>& packed) {
  std::vector<double> message{static_cast<double>(failed)};
  if (failed < 0) message.insert(message.end(), packed.begin(), packed.end());
  return message;
}

int Lowest(int a, int b) {
  if (a < 0) return b;
  if (b < 0) return a;
  return std::min(a, b);
}

template <class Ops>
QXStatus Reduce(typename Ops::Partial& target, MPI_Comm parent) {
  using Partial = typename Ops::Partial;
  Comm c(parent);
  std::vector<double> packed;
  const bool packs = QXMPIPool::Pack(target, packed) && packed.size() < INT_MAX;

  // Agreement first: whether every partial packs, the lowest rank whose
  // doesn't, and whether the shapes agree (an unshaped partial has no say).
  const double none = -std::numeric_limits<double>::max();
  const bool shaped = packs && Ops::HasShape(target);
  const double key = shaped ? Ops::Key(target) : 0.0;
  double mine[4] = {packs ? 0.0 : 1.0, packs ? none : -static_cast<double>(c.rank),
                    shaped ? key : none, shaped ? -key : none};
  double all[4];
  MPI_Allreduce(mine, all, 4, MPI_DOUBLE, MPI_MAX, c.comm);
  if (all[0] > 0.0) return Failure(QXMPIPool::kInvalidPartial, static_cast<int>(-all[1]));
  if (all[2] != none && all[2] != -all[3]) return Failure(QXMPIPool::kShapesDiffer, -1);

  Partial work(target);
  int failed = -1;
  for (int step = 1; step < c.size; step *= 2) {
    if (c.rank % (2 * step) == step) {
      if (failed < 0 && !QXMPIPool::Pack(work, packed)) failed = c.rank;
      const std::vector<double> message = TreeMessage(failed, packed);
      MPI_Send(message.data(), static_cast<int>(message.size()), MPI_DOUBLE, c.rank - step, kTag,
               c.comm);
      break;
    }
    if (c.rank % (2 * step) != 0 || c.rank + step >= c.size) continue;
    MPI_Status probe;
    MPI_Probe(c.rank + step, kTag, c.comm, &probe);
    int count = 0;
    MPI_Get_count(&probe, MPI_DOUBLE, &count);
    std::vector<double> message(static_cast<std::size_t>(std::max(count, 1)));
    MPI_Recv(message.data(), count, MPI_DOUBLE, c.rank + step, kTag, c.comm, MPI_STATUS_IGNORE);
    const double theirs = count > 0 ? message[0] : static_cast<double>(c.rank + step);
    failed = Lowest(failed, theirs >= 0.0 ? static_cast<int>(theirs) : -1);
    if (failed >= 0) continue;
    const double* buffer = message.data() + 1;
    const std::size_t size = static_cast<std::size_t>(count) - 1;
    Partial received = Ops::Blank(work, buffer, size);
    if (!QXMPIPool::Unpack(buffer, size, received) || !work.Merge(received)) failed = c.rank;
  }

  // Rank 0 holds the pooled result, or the lowest rank at fault.
  std::vector<double> result;
  if (c.rank == 0) {
    if (failed < 0 && !QXMPIPool::Pack(work, packed)) failed = 0;
    result = TreeMessage(failed, packed);
  }
  long long length = static_cast<long long>(result.size());
  MPI_Bcast(&length, 1, MPI_LONG_LONG, 0, c.comm);
  result.resize(static_cast<std::size_t>(length));
  MPI_Bcast(result.data(), static_cast<int>(length), MPI_DOUBLE, 0, c.comm);
  if (result[0] >= 0.0) return Failure(QXMPIPool::kMergeRefused, static_cast<int>(result[0]));
  Partial pooled = Ops::Blank(target, result.data() + 1, result.size() - 1);
  // The same bytes on every rank, so every rank gives the same answer here.
  if (!QXMPIPool::Unpack(result.data() + 1, result.size() - 1, pooled)) {
    return Failure(QXMPIPool::kMergeRefused, -1);
  }
  target = pooled;
  return QXStatus();
}

}  // namespace

bool QXMPIPool::Pack(const QXMeansXProdData& acc, std::vector<double>& out) {
  const int n = acc.GetNVars();
  const std::vector<double>& means = acc.GetMeans();
  const std::vector<double>& xprods = acc.GetXProds().AsVectorConst();
  const double w = acc.GetNCases();
  const bool ok = n >= 0 && means.size() == static_cast<std::size_t>(n) &&
                  acc.GetXProds().GetNRows() == n && xprods.size() >= Triangle(n) &&
                  std::isfinite(w) && w >= 0.0;
  if (!ok) return PackState(kMeans, 0.0, false, {}, out);
  StartBuffer(kMeans, MeansKey(acc), 1 + n + Triangle(n), out);
  out.push_back(w);
  out.insert(out.end(), means.begin(), means.end());
  out.insert(out.end(), xprods.begin(), xprods.begin() + Triangle(n));
  return true;
}

bool QXMPIPool::Pack(const QXAccumXProdPair& acc, std::vector<double>& out) {
  std::vector<double> state;
  const bool ok = acc.GetState(state);
  return PackState(kPairs, acc.GetNVars(), ok, state, out);
}

bool QXMPIPool::Pack(const QXUniStats& stats, std::vector<double>& out) {
  std::vector<double> state;
  const bool ok = stats.GetState(state);
  return PackState(kUniStats, UniStatsKey(stats), ok, state, out);
}

bool QXMPIPool::Unpack(const double* buffer, std::size_t size, QXMeansXProdData& acc) {
  const double key = HeaderKey(buffer, size, kMeans);
  if (key < 0.0 || key / 2.0 > INT_MAX) return false;
  const std::size_t n = static_cast<std::size_t>(key / 2.0);
  // n is at most about 2^30 here, so the sizes below can't overflow.
  if (size - kHeader != 1 + n + Triangle(n)) return false;
  const double w = buffer[kHeader];
  if (!std::isfinite(w) || w < 0.0) return false;
  MeansState state(static_cast<int>(n), std::fmod(key, 2.0) == 1.0);
  state.Put(w, buffer + kHeader + 1, buffer + kHeader + 1 + n, Triangle(n));
  acc = state;
  return true;
}

bool QXMPIPool::Unpack(const double* buffer, std::size_t size, QXAccumXProdPair& acc) {
  const double key = HeaderKey(buffer, size, kPairs);
  if (key < 0.0 || key != acc.GetNVars()) return false;
  return acc.SetState(std::vector<double>(buffer + kHeader, buffer + size));
}

bool QXMPIPool::Unpack(const double* buffer, std::size_t size, QXUniStats& stats) {
  const double key = HeaderKey(buffer, size, kUniStats);
  if (key < 0.0 || key != UniStatsKey(stats)) return false;
  return stats.SetState(std::vector<double>(buffer + kHeader, buffer + size));
}

QXStatus QXMPIPool::Allreduce(QXMeansXProdData& acc, MPI_Comm comm) {
  return Reduce<MeansOps>(acc, comm);
}

QXStatus QXMPIPool::Allreduce(QXAccumXProdPair& acc, MPI_Comm comm) {
  return Reduce<PairsOps>(acc, comm);
}

QXStatus QXMPIPool::Allreduce(QXUniStats& stats, MPI_Comm comm) {
  return Reduce<UniStatsOps>(stats, comm);
}

}  // namespace QXMath_850
