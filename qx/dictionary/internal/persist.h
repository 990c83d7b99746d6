#ifndef QX_DICTIONARY_INTERNAL_PERSIST_H
#define QX_DICTIONARY_INTERNAL_PERSIST_H

// The persisted form as the dictionary's classes write and read it: a writer
// and a reader that keep the tally of elements each class returns, and the
// failure path shared by every reader. Never installed.

#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "qx/foundation/internal/readfailure.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace QXXML_850 {
namespace internal {

// Writes one object: Start, the fields, nested objects by their own writer at
// Depth() + 1 (their tallies added by Nested), then End, which returns the
// tally: one for the opening, one per element, the nested tallies and one for
// the closing.
class ObjWriter {
 public:
  ObjWriter(std::ostream& stream, const char* name, int nTabs) : os(stream), obj(name, nTabs) {
    obj.StartObj(os);
  }
  template <typename T>
  void Value(const T& value) {
    obj.WriteSubElement(os, value);
    ++count;
  }
  // An enumeration, as its int.
  template <typename E>
  void Enum(E value) {
    Value(static_cast<int>(value));
  }
  // A count, then the texts.
  void Strings(const std::vector<std::string>& texts) {
    Value(static_cast<int>(texts.size()));
    for (const std::string& text : texts)
      Value(text);
  }
  void Nested(int tally) { count += tally; }
  int Depth() const { return obj.GetNTabs(); }
  std::ostream& Stream() { return os; }
  int End() {
    obj.EndObj(os);
    return count + 1;
  }

 private:
  std::ostream& os;
  XMLObj obj;
  int count = 1;
};

// Reads one object in the order it was written. The first step that fails
// writes `failure` to std::cerr and throws IOException*; what was read by
// then stays in the targets.
class ObjReader {
 public:
  ObjReader(std::ifstream& stream, const char* name, const char* failureText)
      : is(stream), failure(failureText) {
    if (!(is.good() && ParseStartObj(is, name))) Fail();
  }
  template <typename T>
  void Value(T& value) {
    if (!ParseValue(is, value)) Fail();
    ++count;
  }
  template <typename E>
  void Enum(E& value) {
    int number = static_cast<int>(value);
    Value(number);
    value = static_cast<E>(number);
  }
  // A count of items that follow; a negative one is a failure.
  int Count() {
    int n = 0;
    Value(n);
    if (n < 0) Fail();
    return n;
  }
  void Doubles(int n, std::vector<double>& out);
  void Strings(int n, std::vector<std::string>& out);
  void Nested(int tally) { count += tally; }
  std::ifstream& Stream() { return is; }
  int End() {
    if (!ParseEndObj(is)) Fail();
    return count + 1;
  }
  [[noreturn]] void Fail() const { ThrowReadFailure(failure); }

 private:
  std::ifstream& is;
  const char* failure;
  int count = 1;
};

// The number of items worth making room for ahead of reading `n` of them:
// `n`, but no more than the rest of the file can hold, each item taking a
// line of at least 8 bytes. A count from a damaged file so never sizes
// anything beyond the file's own size.
size_t CappedCount(std::ifstream& is, int n);

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DICTIONARY_INTERNAL_PERSIST_H
