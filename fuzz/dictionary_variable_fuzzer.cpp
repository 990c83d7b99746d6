// Fuzz target for the readers of the dictionary's three variable classes.
// The input is a whole file, read as each class reads itself, with and
// without the document header, into a blank variable and into one that
// already holds an encoder with categories and a field-format element. See
// dictionaryfuzz.h for the checks.
#include <cstdint>
#include <string>

#include "fuzz/dictionaryfuzz.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxcontvar.h"
#include "qx/dictionary/qxweightvar.h"
#include "qx/markup/xmlelement.h"

namespace {

using namespace QXXML_850;
using V = IQXVariable;

// A variable however its read ended: it answers, copies and displays.
void Exercise(IQXVariable& variable) {
  variable.UpdateNumberOfCategories();
  variable.GetVarStatus();
  qxfuzz::ExerciseEncoder(variable.GetEncoder());
  IQXVariable* copy = variable.Clone();
  int a = 0, b = 0;
  qxfuzz::Require(qxfuzz::Document(*copy, &a) == qxfuzz::Document(variable, &b),
                  "a clone writes other bytes");
  delete copy;
  qxfuzz::DisplayNowhere(variable);
}

template <typename Variable, typename Blank>
void ReadBoth(Blank blank, Variable* (*held)()) {
  for (int header = 0; header < 2; ++header) {
    for (Variable* variable : {blank(), held()}) {
      qxfuzz::FuzzRead(*variable, header == 1, blank, [](Variable& v) { Exercise(v); });
      delete variable;
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_variable_fuzz_XXXXXX");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  qxfuzz::StoreInput(bytes, size);
  ReadBoth<QXContVar>([] { return new QXContVar(" ", " ", V::RoleInput); },
                      [] {
                        auto* v = new QXContVar("x", "X", 0.0, 10.0, V::RoleTarget, true, 5);
                        v->SetFieldFormatElement(XMLElement::Create("Format"));
                        v->SetMissingValueReplacement("0");
                        return v;
                      });
  ReadBoth<QXCatVar>(
      [] { return new QXCatVar(" ", " ", 0, V::LevelStringCategorical, V::RoleInput, false); },
      [] {
        auto* v =
            new QXCatVar("c", "C", {1.0, 2.0}, 2, V::LevelNumericCategorical, V::RoleInput, true);
        v->GetEncoder()->Encode(4.0);
        v->SetFieldFormatElement(XMLElement::Create("Format"));
        return v;
      });
  ReadBoth<QXWeightVar>([] { return new QXWeightVar(" ", " ", V::RoundAsIs); },
                        [] { return new QXWeightVar("w", "W", V::RoundClosest); });
  return 0;
}
