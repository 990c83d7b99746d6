// Fuzz target for the two readers of QXURandom: the input is a whole file,
// read as the binary form (ReadObject) and as the XML form (ReadObjectXML),
// the latter bare and after the document header. Besides the sanitizers it
// checks what callers rely on: a read returns exactly 20 (binary) or 5 (XML)
// or 0; a failed read leaves the object as it was; a restored object draws
// values in [0, 1] in every mode it can be restored to, and SetSeed with the
// restored seed restarts the same sequence.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "fuzz/scratchfile.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/xmlio.h"
#include "qx/random/qxurandom.h"

namespace {

using QXMath_850::QXURandom;

void Require(bool condition, const char* what) {
  if (!condition) {
    std::fprintf(stderr, "invariant broken: %s\n", what);
    std::abort();
  }
}

std::string Describe(const QXURandom& r) {
  std::ostringstream text;
  QXDisplay_850::SetOutStream(text);
  r.Display();
  QXDisplay_850::SetOutStream(std::cout);
  return text.str();
}

// After a read: either nothing changed, or the object is usable.
void Check(QXURandom& r, int result, int success, const std::string& before) {
  Require(result == 0 || result == success, "unexpected tally");
  if (result == 0) {
    Require(Describe(r) == before, "a failed read changed the object");
    return;
  }
  double first[3];
  for (double& u : first) {
    u = r.GetRandom();
    // The congruential mode gives values above 1 while a large seed shrinks.
    Require(u >= 0.0 && (u <= 1.0 || (r.GetUsePortable() && !r.GetUseTwister())),
            "a restored source gives a value outside [0, 1]");
  }
  if (r.GetUsePortable()) {
    // Portable modes are reproducible: SetSeed with the seed restarts them.
    QXURandom again(r);
    const unsigned long seed = again.GetSeed();
    again.SetSeed(seed);
    QXURandom fresh(seed, again.GetUsePortable(), again.GetUseTwister(), nullptr);
    for (int i = 0; i < 3; ++i)
      Require(again.GetRandom() == fresh.GetRandom(), "SetSeed does not restart the sequence");
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_urandom_fuzz_XXXXXX");
  std::cerr.setstate(std::ios::badbit);  // the readers' failure lines
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  {
    std::ofstream out(qxfuzz::ScratchPath(), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(size));
  }
  {
    QXURandom r(777, true, false, nullptr);
    const std::string before = Describe(r);
    std::fstream in(qxfuzz::ScratchPath(), std::ios::in | std::ios::binary);
    Check(r, r.ReadObject(in), 20, before);
  }
  for (int header = 0; header < 2; ++header) {
    QXURandom r(4242, true, true, nullptr);
    r.GetRandom();
    const std::string before = Describe(r);
    std::ifstream in(qxfuzz::ScratchPath(), std::ios::binary);
    if (header == 1 && !QXXML_850::ParseStartXML(in)) continue;
    Check(r, r.ReadObjectXML(in), 5, before);
  }
  return 0;
}
