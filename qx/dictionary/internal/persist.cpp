#include "qx/dictionary/internal/persist.h"

#include <algorithm>

namespace QXXML_850 {
namespace internal {

size_t CappedCount(std::ifstream& is, int n) {
  if (n <= 0) return 0;
  // Where the rest of the stream can't be measured, a modest start; vectors
  // grow from there as items are really read.
  size_t cap = 4096;
  const std::streampos here = is.tellg();
  if (here != std::streampos(-1) && is.seekg(0, std::ios::end)) {
    const std::streampos end = is.tellg();
    is.seekg(here);
    if (end != std::streampos(-1) && end >= here) cap = static_cast<size_t>(end - here) / 8;
  }
  is.clear(is.rdstate() & ~std::ios::failbit);
  return std::min(static_cast<size_t>(n), cap);
}

void ObjReader::Doubles(int n, std::vector<double>& out) {
  out.reserve(out.size() + CappedCount(is, n));
  for (int i = 0; i < n; ++i) {
    double value = 0.0;
    Value(value);
    out.push_back(value);
  }
}

void ObjReader::Strings(int n, std::vector<std::string>& out) {
  out.reserve(out.size() + CappedCount(is, n));
  for (int i = 0; i < n; ++i) {
    std::string value;
    Value(value);
    out.push_back(value);
  }
}

}  // namespace internal
}  // namespace QXXML_850
