// Fuzz target for the persisted-object writer against its reader: the input
// is turned into a sequence of objects and fields of every kind, written with
// XMLObj to a file and read back in the same order. What comes back must be
// what the format promises, with its documented losses: whole numbers
// exactly (a long up to 15 digits), doubles to 15 significant digits, the
// missing value as itself, and strings as their escaped text, unless the
// line is longer than the reader takes, in which case the read fails.
#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "fuzz/scratchfile.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"
#include "qx/markup/xmlutil.h"

namespace {

using namespace QXXML_850;

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "round trip broken: %s\n", what);
    std::abort();
  }
}

enum Kind { kInt, kUnsigned, kBool, kLong, kDouble, kString, kStart, kEnd, kKinds };

struct Field {
  Kind kind;
  int depth;  // of the object the field belongs to
  long whole;
  double real;
  std::string text;
};

// How long the reader will find the line of a field or an object's start; for
// numbers, an upper bound (no number's text is longer than 25 characters).
size_t LineLength(const Field& f) {
  if (f.kind == kStart) return f.depth + 13 + f.text.size();  // <Obj name="...">
  if (f.kind == kString) return f.depth + 1 + 15 + XMLUtil::Escape(f.text).size() + 3;
  return f.depth + 1 + 15 + 25 + 3;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_roundtrip_fuzz_XXXXXX");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  FuzzedDataProvider data(bytes, size);
  std::vector<Field> fields;
  std::vector<XMLObj> open;
  {
    std::ofstream out(qxfuzz::ScratchPath(), std::ios::binary | std::ios::trunc);
    open.emplace_back("QXFuzz", 0);
    open.back().StartObj(out);
    while (data.remaining_bytes() > 0 && fields.size() < 2000) {
      Field f;
      f.kind = static_cast<Kind>(data.ConsumeIntegralInRange<int>(0, kKinds - 1));
      f.depth = open.back().GetNTabs();
      f.whole = 0;
      f.real = 0.0;
      const XMLObj& obj = open.back();
      switch (f.kind) {
        case kInt:
          f.whole = data.ConsumeIntegral<int>();
          obj.WriteSubElement(out, static_cast<int>(f.whole));
          break;
        case kUnsigned:
          f.whole = data.ConsumeIntegral<unsigned int>();
          obj.WriteSubElement(out, static_cast<unsigned int>(f.whole));
          break;
        case kBool:
          f.whole = data.ConsumeBool();
          obj.WriteSubElement(out, f.whole != 0);
          break;
        case kLong:
          f.whole = data.ConsumeIntegral<long>();
          obj.WriteSubElement(out, f.whole);
          break;
        case kDouble:
          f.real = data.ConsumeFloatingPoint<double>();
          if (data.ConsumeBool()) f.real = MV::gMissingValue;
          obj.WriteSubElement(out, f.real);
          break;
        case kString:
          f.text = data.ConsumeRandomLengthString(300);
          obj.WriteSubElement(out, f.text);
          break;
        case kStart:
          f.text = data.ConsumeRandomLengthString(40);
          f.depth = obj.GetNTabs() + 1;
          open.emplace_back(f.text, f.depth);
          open.back().StartObj(out);
          break;
        case kEnd:
          if (open.size() == 1) continue;
          open.back().EndObj(out);
          open.pop_back();
          break;
        default:
          break;
      }
      fields.push_back(f);
    }
  }

  std::ifstream in(qxfuzz::ScratchPath(), std::ios::binary);
  Require(ParseStartObj(in, "QXFuzz"), "the outer object");
  for (const Field& f : fields) {
    // A field whose bytes the reader can't take as one line ends the check.
    if (f.text.find_first_of(std::string("\0", 1)) != std::string::npos) return 0;
    const bool fits = LineLength(f) <= 255;
    bool ok = false;
    switch (f.kind) {
      case kInt: {
        int v = 0;
        ok = ParseValue(in, v);
        if (ok) Require(v == f.whole, "int");
        break;
      }
      case kUnsigned: {
        unsigned int v = 0;
        ok = ParseValue(in, v);
        if (ok) Require(v == static_cast<unsigned int>(f.whole), "unsigned int");
        break;
      }
      case kBool: {
        bool v = false;
        ok = ParseValue(in, v);
        if (ok) Require(v == (f.whole != 0), "bool");
        break;
      }
      case kLong: {
        long v = 0;
        ok = ParseValue(in, v);
        if (ok && std::labs(f.whole) <= 999999999999999L) Require(v == f.whole, "long");
        break;
      }
      case kDouble: {
        double v = 0.0;
        ok = ParseValue(in, v);
        if (ok && f.real == MV::gMissingValue) Require(v == MV::gMissingValue, "missing");
        if (ok && std::isfinite(f.real) && f.real != MV::gMissingValue) {
          const double error = std::fabs(v - f.real);
          Require(error <= 5e-15 * std::fabs(f.real) || error <= 5e-324, "double to 15 digits");
        }
        break;
      }
      case kString: {
        std::string v;
        ok = ParseValue(in, v);
        if (ok) Require(v == XMLUtil::Escape(f.text), "string comes back escaped");
        break;
      }
      case kStart: {
        // A class name goes out bare: one with a quote or a line feed, or an
        // empty one, can't be matched when read.
        if (f.text.empty() || f.text.find_first_of("\"\n") != std::string::npos) return 0;
        ok = ParseStartObj(in, f.text);
        break;
      }
      case kEnd:
        ok = ParseEndObj(in);
        break;
      default:
        break;
    }
    if (f.kind == kString || f.kind == kStart) {
      Require(ok == fits, fits ? "a line that fits failed" : "an overlong line was read");
    } else {
      Require(ok || !fits, "a field that fits failed");
    }
    if (!ok) return 0;
  }
  return 0;
}
