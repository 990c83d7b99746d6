#ifndef QX_DICTIONARY_INTERNAL_TESTUTIL_H
#define QX_DICTIONARY_INTERNAL_TESTUTIL_H

// Test support for the dictionary's persisted forms (never installed): an
// object written as a whole file, and read back from text through a file, as
// ReadObjectXML wants an std::ifstream.

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "qx/foundation/ioexception.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace QXXML_850 {
namespace internal {

// The whole file of one object written at depth 1; its tally in `tally`.
template <typename T>
std::string Persisted(const T& object, int* tally = nullptr) {
  std::ostringstream out;
  StartDocument(out);
  StartRoot(out, "test");
  const int count = object.WriteObjectXML(out, 1);
  if (tally != nullptr) *tally = count;
  EndRoot(out);
  return out.str();
}

// What reading `text` into `object` gave: the tally, -1 when the reader
// threw IOException*, or -2 when the document's header was wrong. The lines it wrote to std::cerr
// and std::cout land in `messages`.
template <typename T>
int ReadPersisted(T& object, const std::string& text, std::string* messages = nullptr) {
  static int serial = 0;
  const std::string path =
      ::testing::TempDir() + "qxdict_" + std::to_string(getpid()) + "_" + std::to_string(serial++);
  std::ofstream(path, std::ios::binary) << text;
  std::ifstream in(path, std::ios::binary);
  std::ostringstream captured;
  std::streambuf* const err = std::cerr.rdbuf(captured.rdbuf());
  std::streambuf* const out = std::cout.rdbuf(captured.rdbuf());
  int result = -2;
  try {
    if (ParseStartXML(in)) {
      result = -1;
      result = object.ReadObjectXML(in);
    }
  } catch (IOException* e) {
    delete e;
  }
  std::cerr.rdbuf(err);
  std::cout.rdbuf(out);
  std::remove(path.c_str());
  if (messages != nullptr) *messages = captured.str();
  return result;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DICTIONARY_INTERNAL_TESTUTIL_H
