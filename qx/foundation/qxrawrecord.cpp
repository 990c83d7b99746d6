#include "qx/foundation/qxrawrecord.h"

#include <new>
#include <utility>
#include <vector>

namespace QXCommon_850 {

RawRecord::RawRecord(int n) : cells(nullptr), size(0) {
  if (n < 0) n = 1;
  if (n == 0) return;
  try {
    cells = new Cell[n];
    size = n;
  } catch (const std::bad_alloc&) {
    cells = nullptr;
    size = 0;
  }
}

RawRecord::RawRecord(const RawRecord& other) : cells(nullptr), size(0) {
  if (other.size < 1) return;
  Cell* fresh = new Cell[other.size];
  try {
    for (int i = 0; i < other.size; ++i)
      fresh[i] = other.cells[i];
  } catch (...) {
    delete[] fresh;
    throw;
  }
  cells = fresh;
  size = other.size;
}

RawRecord& RawRecord::operator=(const RawRecord& other) {
  if (this == &other) return *this;
  if (size != other.size) {
    RawRecord copy(other);
    std::swap(cells, copy.cells);
    std::swap(size, copy.size);
    return *this;
  }
  // Same size: keep the array. Only the strings can fail to copy, so copy
  // them first and then commit every cell without a throw.
  std::vector<std::string> texts;
  texts.reserve(static_cast<size_t>(size));
  for (int i = 0; i < size; ++i)
    texts.push_back(other.cells[i].fourth);
  for (int i = 0; i < size; ++i) {
    cells[i].first = other.cells[i].first;
    cells[i].second = other.cells[i].second;
    cells[i].third = other.cells[i].third;
    cells[i].fourth.swap(texts[static_cast<size_t>(i)]);
  }
  return *this;
}

RawRecord::~RawRecord() {
  delete[] cells;
}

bool RawRecord::Resize(int n) {
  if (n == size) return true;
  if (n < 0) n = 0;
  Cell* fresh = nullptr;
  if (n > 0) {
    fresh = new (std::nothrow) Cell[n];
    if (fresh == nullptr) return false;
  }
  delete[] cells;
  cells = fresh;
  size = n;
  return true;
}

int RawRecord::Size() const {
  return size;
}
RawRecord::Cell* RawRecord::GetAll() {
  return cells;
}
const RawRecord::Cell* RawRecord::GetAll() const {
  return cells;
}
const RawRecord::Cell& RawRecord::operator[](int i) const {
  return cells[i];
}
RawRecord::Cell& RawRecord::operator[](int i) {
  return cells[i];
}

}  // namespace QXCommon_850
