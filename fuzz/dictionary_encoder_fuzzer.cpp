// Fuzz target for the readers of the dictionary's four encoders. The input
// is a whole file, read as each encoder class reads itself, with and without
// the document header, into a new encoder and into one that already holds
// categories and missing definitions. See dictionaryfuzz.h for the checks.
#include <cstdint>

#include "fuzz/dictionaryfuzz.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxcontencoder.h"
#include "qx/dictionary/qxroundencoder.h"
#include "qx/dictionary/qxstringencoder.h"

namespace {

using namespace QXXML_850;

template <typename Encoder, typename Blank>
void ReadBoth(Blank blank, void (*fill)(Encoder&)) {
  for (int header = 0; header < 2; ++header) {
    Encoder* fresh = blank();
    qxfuzz::FuzzRead(*fresh, header == 1, blank,
                     [](const Encoder& e) { qxfuzz::ExerciseEncoder(&e); });
    delete fresh;
    Encoder* held = blank();
    fill(*held);
    qxfuzz::FuzzRead(*held, header == 1, blank,
                     [](const Encoder& e) { qxfuzz::ExerciseEncoder(&e); });
    delete held;
  }
}

void FillNumeric(IQXEncoder& e) {
  e.Encode(3.0);
  e.Encode(-1.0);
  e.AddDiscreteUserMissing(99.0, "refused");
  e.SetMissingInterval(-9.0, -5.0);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_encoder_fuzz_XXXXXX");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  qxfuzz::StoreInput(bytes, size);
  ReadBoth<QXContEncoder>([] { return new QXContEncoder(0.0, 1.0, 4); },
                          [](QXContEncoder& e) { FillNumeric(e); });
  ReadBoth<QXRoundEncoder>([] { return new QXRoundEncoder(); },
                           [](QXRoundEncoder& e) { FillNumeric(e); });
  ReadBoth<QXCatNumEncoder>([] { return new QXCatNumEncoder(0); },
                            [](QXCatNumEncoder& e) { FillNumeric(e); });
  ReadBoth<QXStringEncoder>([] { return new QXStringEncoder(0); },
                            [](QXStringEncoder& e) {
                              e.Encode("red");
                              e.AddDiscreteUserMissing("red", "");
                              e.AddDiscreteUserMissing("", "empty");
                              e.SetValueLabels({"Red", "Green", "Blue", "?"});
                            });
  return 0;
}
