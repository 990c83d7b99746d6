#ifndef QX_FUZZ_DICTIONARYFUZZ_H
#define QX_FUZZ_DICTIONARYFUZZ_H

// What the dictionary's fuzz targets share: reading the input file into an
// object the way a caller does, and the checks made on what came of it.
//
// - A read either returns, or throws IOException* after exactly its class's
//   failure line; anything else escapes and is reported as a crash.
// - Whatever the read left, the object still answers, copies, writes and
//   displays (and the leak checker sees it freed).
// - An object read whole writes a file that reads back into a new object,
//   which writes the same bytes and the same tally, unless the first write
//   holds what the format doesn't carry back: an escaped character, a number
//   that isn't finite, or a line longer than the reader takes.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "fuzz/scratchfile.h"
#include "qx/dictionary/iqxencoder.h"
#include "qx/foundation/ioexception.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace qxfuzz {

inline void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::abort();
  }
}

// Writes the input to the scratch file; LLVMFuzzerInitialize makes the file.
inline void StoreInput(const uint8_t* bytes, size_t size) {
  std::ofstream out(ScratchPath(), std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
}

// Reads `is` into `object`; the tally, or -1 after the documented failure.
template <typename T>
int ReadChecked(T& object, std::ifstream& is) {
  std::ostringstream messages;
  std::streambuf* const err = std::cerr.rdbuf(messages.rdbuf());
  std::streambuf* const out = std::cout.rdbuf(messages.rdbuf());
  int result = -1;
  bool thrown = false;
  try {
    result = object.ReadObjectXML(is);
  } catch (QXXML_850::IOException* e) {
    delete e;
    thrown = true;
  }
  std::cerr.rdbuf(err);
  std::cout.rdbuf(out);
  const std::string text = messages.str();
  if (thrown) {
    static const char* const lines[] = {
        "Failure reading QXVarList!\n",       "Failure reading QXContVar!\n",
        "Failure reading QXCatVar!\n",        "Failure reading QXWeightVar!\n",
        "Failure reading QXContEncoder!\n",   "Failure reading QXRoundEncoder from XML!\n",
        "Failure reading QXCatNumEncoder!\n", "Failure reading QXStringEncoder!\n",
        "Wrong encoder type in QXContVar!\n"};
    bool known = false;
    for (const char* line : lines)
      known = known || text == line;
    Require(known, "a failed read without exactly one failure line");
    return -1;
  }
  Require(text.empty(), "a read that succeeded wrote a failure line");
  Require(result > 0, "a read that succeeded gave no tally");
  return result;
}

// The whole document of an object.
template <typename T>
std::string Document(const T& object, int* tally) {
  std::ostringstream out;
  QXXML_850::StartDocument(out);
  QXXML_850::StartRoot(out, "fuzz");
  *tally = object.WriteObjectXML(out, 1);
  QXXML_850::EndRoot(out);
  return out.str();
}

// Display of an object into a stream that drops everything.
template <typename T>
void DisplayNowhere(const T& object) {
  static std::ostream nowhere(nullptr);
  QXDisplay_850::SetOutStream(nowhere);
  object.Display();
  QXDisplay_850::SetOutStream(std::cout);
}

// Whether the format carries this document back as it stands.
inline bool CarriesBack(const std::string& text) {
  if (text.find('&') != std::string::npos) return false;
  if (text.find("nan") != std::string::npos || text.find("inf") != std::string::npos) return false;
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    if (end - start > 255) return false;
    start = end + 1;
  }
  return true;
}

// Reads the scratch file into `object` (after the header, if `header`),
// then checks the outcome. `blank` makes a new object of the same class to
// read a written copy into, and `exercise` uses an object however it ended.
template <typename T, typename Blank, typename Exercise>
void FuzzRead(T& object, bool header, Blank blank, Exercise exercise) {
  std::ifstream in(ScratchPath(), std::ios::binary);
  if (header && !QXXML_850::ParseStartXML(in)) return;
  const int result = ReadChecked(object, in);
  exercise(object);
  if (result < 0) return;
  int written = 0;
  const std::string first = Document(object, &written);
  if (!CarriesBack(first)) return;
  const std::string path = ScratchPath() + ".copy";
  std::ofstream(path, std::ios::binary | std::ios::trunc) << first;
  std::ifstream copyIn(path, std::ios::binary);
  Require(QXXML_850::ParseStartXML(copyIn), "a written document has no header");
  T* copy = blank();
  Require(ReadChecked(*copy, copyIn) == written, "a written object doesn't read back whole");
  int again = 0;
  Require(Document(*copy, &again) == first, "a second write differs from the first");
  delete copy;
  std::remove(path.c_str());
}

// An encoder's codes read both ways: each code up to the number of
// categories (the first 1,000) decodes to a category that encodes as it,
// unless that category is declared missing. Then a deep copy, the display.
inline void ExerciseEncoder(const QXXML_850::IQXEncoder* encoder) {
  if (encoder == nullptr) return;
  const int n = encoder->GetNumberOfCategories();
  const bool numeric = encoder->GetEncoderType() == QXXML_850::IQXEncoder::EncoderCatNum;
  const bool text = encoder->GetEncoderType() == QXXML_850::IQXEncoder::EncoderString;
  for (int code = 0; (numeric || text) && code < n && code < 1000; ++code) {
    const double value = encoder->DecodeNum(code);
    const std::string category = encoder->Decode(code);
    const bool missing = numeric ? encoder->IsMissing(value) : encoder->IsMissing(category);
    const double back = numeric ? encoder->EncodeConst(value) : encoder->EncodeConst(category);
    Require(missing ? back == -1.0 : back == code, "a code doesn't decode to its category");
  }
  Require(encoder->Decode(-1).empty() && encoder->Decode(n).empty(), "a code out of range decodes");
  QXXML_850::IQXEncoder* copy = encoder->Clone();
  int a = 0, b = 0;
  Require(Document(*copy, &a) == Document(*encoder, &b), "a clone writes other bytes");
  delete copy;
  DisplayNowhere(*encoder);
}

}  // namespace qxfuzz

#endif  // QX_FUZZ_DICTIONARYFUZZ_H
