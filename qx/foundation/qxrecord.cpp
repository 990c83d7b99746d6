#include "qx/foundation/qxrecord.h"

#include <algorithm>
#include <new>

namespace QXCommon_850 {

Record::Record(int n) : data(nullptr), size(0) {
  if (n < 0) n = 1;
  if (n == 0) return;
  try {
    data = new double[n]();
    size = n;
  } catch (const std::bad_alloc&) {
    data = nullptr;
    size = 0;
  }
}

Record::Record(const Record& other) : data(nullptr), size(0) {
  if (other.size < 1) return;
  data = new double[other.size];
  std::copy(other.data, other.data + other.size, data);
  size = other.size;
}

Record& Record::operator=(const Record& other) {
  if (this == &other) return *this;
  if (size != other.size) {
    double* fresh = other.size > 0 ? new double[other.size] : nullptr;
    delete[] data;
    data = fresh;
    size = other.size;
  }
  std::copy(other.data, other.data + other.size, data);
  return *this;
}

Record::~Record() {
  delete[] data;
}

bool Record::Resize(int n) {
  if (n == size) return true;
  if (n < 0) n = 0;
  double* fresh = nullptr;
  if (n > 0) {
    // Zero rather than indeterminate, though callers must not count on it.
    fresh = new (std::nothrow) double[n]();
    if (fresh == nullptr) return false;
  }
  delete[] data;
  data = fresh;
  size = n;
  return true;
}

int Record::Size() const {
  return size;
}
double* Record::GetAll() {
  return data;
}
const double* Record::GetAll() const {
  return data;
}
double Record::operator[](int i) const {
  return data[i];
}
double& Record::operator[](int i) {
  return data[i];
}

}  // namespace QXCommon_850
