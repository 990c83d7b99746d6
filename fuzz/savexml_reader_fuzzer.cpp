// Fuzz target for the persisted-object reader. The input is a whole file; it
// is read the way each persisted class of the library reads itself (the
// random source, the encoders, the variables and the variable list, nested as
// they nest), with and without the document header, and once more by a
// reader that picks each call from the line it is about to read. Every
// reader stops at its first failed step, as ReadObjectXML does.
//
// Besides the sanitizers, the target checks what callers rely on: a failed
// ParseValue leaves its target as it was, a string read back holds none of
// the characters that end a value, and "Missing" reads as the missing value.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "fuzz/scratchfile.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace {

using namespace QXXML_850;

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::abort();
  }
}

// Wraps the reader functions with the checks above.
class Reader {
 public:
  explicit Reader(std::ifstream& stream) : is(stream) {}

  bool Header() { return ParseStartXML(is); }
  bool Start(const char* name) { return ParseStartObj(is, name); }
  bool End() { return ParseEndObj(is); }

  template <class T>
  bool Value(T& value) {
    const T before = value;
    const bool ok = ParseValue(is, value);
    if (!ok) Require(Same(value, before), "a failed ParseValue changed its target");
    return ok;
  }
  bool Text(std::string& value) {
    value = "unchanged";
    const bool ok = ParseValue(is, value);
    if (!ok) {
      Require(value == "unchanged", "a failed string read changed its target");
    } else {
      Require(value.size() < 256, "string longer than a line");
      Require(value.find_first_of(std::string("\"\r\n\0", 4)) == std::string::npos,
              "string holds a character that ends a value");
    }
    return ok;
  }
  bool Real(double& value) {
    value = 12.5;
    return Value(value);
  }
  // A count of items ahead; a negative count reads no items.
  bool Count(int& n) {
    n = 0;
    return Value(n);
  }

 private:
  static bool Same(double a, double b) { return a == b || (a != a && b != b); }
  template <class T>
  static bool Same(const T& a, const T& b) {
    return a == b;
  }
  std::ifstream& is;
};

bool URandom(Reader& r) {
  double seed;
  int portable = 0, twister = 0;
  return r.Start("QXURandom") && r.Real(seed) && r.Value(portable) && r.Value(twister) && r.End();
}

bool Doubles(Reader& r, int n) {
  double x;
  for (int i = 0; i < n; ++i) {
    if (!r.Real(x)) return false;
  }
  return true;
}

bool Strings(Reader& r, int n) {
  std::string s;
  for (int i = 0; i < n; ++i) {
    if (!r.Text(s)) return false;
  }
  return true;
}

bool Interval(Reader& r) {
  bool has = false;
  double low, high;
  if (!r.Value(has)) return false;
  return !has || (r.Real(low) && r.Real(high));
}

// QXContEncoder and QXRoundEncoder share their layout.
bool ContEncoder(Reader& r, const char* name) {
  int bins = 0, n = 0;
  return r.Start(name) && r.Value(bins) && Interval(r) && r.Count(n) && Doubles(r, n) &&
         Strings(r, n) && r.End();
}

bool CatNumEncoder(Reader& r) {
  int n = 0, labels = 0, missing = 0;
  return r.Start("QXCatNumEncoder") && r.Count(n) && Doubles(r, n) && r.Count(labels) &&
         Strings(r, labels) && Interval(r) && r.Count(missing) && Doubles(r, missing) &&
         Strings(r, missing) && r.End();
}

bool StringEncoder(Reader& r) {
  int n = 0, labels = 0, missing = 0;
  return r.Start("QXStringEncoder") && r.Count(n) && Strings(r, n) && r.Count(labels) &&
         Strings(r, labels) && r.Count(missing) && Strings(r, 2 * missing) && r.End();
}

bool Replacement(Reader& r) {
  bool has = false;
  std::string replacement;
  return r.Value(has) && (!has || r.Text(replacement));
}

bool ContVar(Reader& r) {
  std::string name, label;
  int role = 0, bins = 0, storage = 0, encoder = 0;
  double min, max, mean, sd, freq, comp;
  if (!(r.Start("QXContVar") && r.Text(name) && r.Text(label) && r.Value(role) && r.Value(bins) &&
        r.Real(min) && r.Real(max) && r.Real(mean) && r.Real(sd) && r.Value(storage) &&
        Replacement(r) && r.Real(freq) && r.Real(comp) && r.Value(encoder))) {
    return false;
  }
  if (encoder == 1 && !ContEncoder(r, "QXContEncoder")) return false;
  if (encoder != 0 && encoder != 1) return false;
  return r.End();
}

bool CatVar(Reader& r) {
  std::string name, label;
  int role = 0, storage = 0, categories = 0, level = 0, trueIndex = 0, encoder = 0;
  bool ordinal = false, binary = false;
  if (!(r.Start("QXCatVar") && r.Text(name) && r.Text(label) && r.Value(role) && r.Value(storage) &&
        r.Value(categories) && r.Value(level) && r.Value(ordinal) && r.Value(binary) &&
        r.Value(trueIndex) && Replacement(r) && r.Value(encoder))) {
    return false;
  }
  if (encoder == 2) {
    if (!CatNumEncoder(r)) return false;
  } else if (encoder == 3) {
    if (!StringEncoder(r)) return false;
  } else {
    return false;
  }
  return r.End();
}

bool WeightVar(Reader& r) {
  std::string name, label;
  int storage = 0;
  return r.Start("QXWeightVar") && r.Text(name) && r.Text(label) && r.Value(storage) &&
         ContEncoder(r, "QXRoundEncoder") && r.End();
}

bool VarList(Reader& r) {
  int n = 0;
  if (!(r.Start("QXVarList") && r.Count(n))) return false;
  for (int i = 0; i < n; ++i) {
    int level = 0;
    if (!r.Value(level)) return false;
    bool ok = false;
    switch (level) {
      case 1:
        ok = ContVar(r);
        break;
      case 2:
      case 3:
        ok = CatVar(r);
        break;
      case 4:
        ok = WeightVar(r);
        break;
      default:
        return false;
    }
    if (!ok) return false;
  }
  int continuous = 0, categorical = 0, target = 0, response = 0;
  return r.Value(continuous) && r.Value(categorical) && r.Value(target) && r.Value(response) &&
         r.End();
}

// Reads line by line, choosing each call from the first letters of the line
// it is about to read, so that a mutated file is still read deep into it.
void Guided(Reader& r, const std::string& data) {
  static const char* const names[] = {"QXURandom",      "QXVarList",       "QXContVar",
                                      "QXCatVar",       "QXWeightVar",     "QXContEncoder",
                                      "QXRoundEncoder", "QXCatNumEncoder", "QXStringEncoder"};
  std::vector<std::string> lines;
  for (size_t start = 0; start <= data.size();) {
    size_t end = data.find('\n', start);
    if (end == std::string::npos) end = data.size();
    lines.push_back(data.substr(start, end - start));
    start = end + 1;
  }
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string& text = lines[i];
    const unsigned pick = static_cast<unsigned>(text.size() + i);
    // A failed line still moves the stream on, or fails it for good: keep reading.
    if (text.find("<?xml") != std::string::npos) {
      r.Header();
      i += 2;  // the header takes three lines
    } else if (text.find("</") != std::string::npos) {
      r.End();
    } else if (text.find("Obj") != std::string::npos ||
               (text.empty() && i + 1 < lines.size() &&
                lines[i + 1].find("<Obj") != std::string::npos)) {
      r.Start(names[pick % 9]);
      if (text.empty()) ++i;  // the one empty line it forgives
    } else if (text.find("Long") != std::string::npos) {
      long value = 0;
      r.Value(value);
    } else if (text.find("Double") != std::string::npos) {
      double value;
      r.Real(value);
    } else if (text.find("String") != std::string::npos) {
      std::string value;
      r.Text(value);
    } else if (pick % 3 == 0) {
      int value = 0;
      r.Value(value);
    } else if (pick % 3 == 1) {
      unsigned int value = 0;
      r.Value(value);
    } else {
      bool value = false;
      r.Value(value);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_savexml_fuzz_XXXXXX");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const std::string data(reinterpret_cast<const char*>(bytes), size);
  {
    std::ofstream out(qxfuzz::ScratchPath(), std::ios::binary | std::ios::trunc);
    out << data;
  }
  std::ifstream in(qxfuzz::ScratchPath(), std::ios::binary);
  Reader reader(in);
  bool (*const readers[])(Reader&) = {
      URandom,       VarList,
      ContVar,       CatVar,
      WeightVar,     CatNumEncoder,
      StringEncoder, [](Reader& r) {
                                        return ContEncoder(r, "QXContEncoder"); }};
  for (auto read : readers) {
    for (int header = 0; header < 2; ++header) {
      in.clear();
      in.seekg(0);
      if (header == 1 && !reader.Header()) continue;
      read(reader);
    }
  }
  in.clear();
  in.seekg(0);
  Guided(reader, data);
  return 0;
}
