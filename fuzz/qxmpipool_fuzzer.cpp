// Fuzz target for the readers of QXMPIPool: the input, taken as doubles, is
// a buffer that another process sent, read as each kind of partial. Besides
// the sanitizers it checks what callers rely on: a refused buffer leaves the
// partial as it was, and an accepted one packs again to the same doubles.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "qx/mpi/qxmpipool.h"

namespace {

using QXMath_850::QXMPIPool;

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::abort();
  }
}

bool SameBits(const std::vector<double>& a, const double* b, std::size_t n) {
  return a.size() == n && (n == 0 || std::memcmp(a.data(), b, n * sizeof(double)) == 0);
}

// Unpacks into a copy of `start`; checks that a refusal changes nothing and
// an acceptance packs back to the buffer.
template <class Partial>
void Read(const Partial& start, const double* buffer, std::size_t n) {
  Partial partial(start);
  std::vector<double> before, after;
  Require(QXMPIPool::Pack(start, before), "the starting partial packs");
  if (QXMPIPool::Unpack(buffer, n, partial)) {
    Require(QXMPIPool::Pack(partial, after) && SameBits(after, buffer, n),
            "an accepted buffer packs back to itself");
  } else {
    Require(QXMPIPool::Pack(partial, after) && after == before, "a refused buffer changes nothing");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<double> buffer(size / sizeof(double));
  if (!buffer.empty()) std::memcpy(buffer.data(), data, buffer.size() * sizeof(double));
  const std::size_t n = buffer.size();
  const double* b = n > 0 ? buffer.data() : nullptr;
  QXMath_850::QXMeansXProdData means(2, true);
  means.AddCase({1.0, 2.0}, 1.0);
  Read(means, b, n);
  Read(QXMath_850::QXAccumXProdPair(3, 4), b, n);
  Read(QXMath_850::QXUniStats("x", {0.0, 1.0, 2.0}, true), b, n);
  Read(QXMath_850::QXUniStats("g", 2), b, n);
  return 0;
}
