// Fuzz target for the reader of a persisted QXVarList. The input is a whole
// file, read with and without the document header into a new list and into
// one that holds every kind of variable, a target, responses and a weight
// (whose variable the reader reuses). Besides the checks of dictionaryfuzz.h,
// the list must keep its own bookkeeping whatever was read: names are found
// at their first index, and indexes, roles, removals and the target encoder
// work on what the read left.
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/dictionaryfuzz.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/dictionary/qxvarlist.h"

namespace {

using namespace QXXML_850;
using qxfuzz::Require;
using V = IQXVariable;

QXVarList* Held() {
  auto* list = new QXVarList();
  list->AddContVar("age", "Age", 0.0, 100.0, V::RoleInput, true, 4);
  list->AddCatVar("region", "Region", std::vector<std::string>{"north", "south"}, V::RoleTarget);
  list->AddCatVar("grade", "", std::vector<double>{1.0, 2.0}, V::RoleTargetResponse);
  list->SetWeightVar("w", "Weight", V::RoundClosest);
  list->AddContVar("score", "", V::RoleTargetResponse);
  return list;
}

void Exercise(const QXVarList& list) {
  const int size = static_cast<int>(list.Size());
  for (int i = 0; i < size && i < 1000; ++i) {
    const IQXVariable* variable = list.GetVarAt(i);
    if (variable == nullptr) continue;
    const int found = list.FindVariable(variable->GetVariableName());
    Require(found >= 0 && found <= i &&
                list.GetVarAt(found)->GetVariableName() == variable->GetVariableName(),
            "a variable's name isn't found at its first index");
    Require(list.GetEncoderAt(i) == variable->GetEncoder(), "the encoder of an entry differs");
    qxfuzz::ExerciseEncoder(variable->GetEncoder());
  }
  QXVarList copy(list);
  int a = 0, b = 0;
  Require(qxfuzz::Document(copy, &a) == qxfuzz::Document(list, &b), "a copy writes other bytes");
  copy.UpdateNumbersOfCategories();
  std::vector<std::string> inputs, responses;
  copy.GetVarNames(inputs, responses);
  copy.GetNInputCats();
  // The target encoder goes to a categorical target, else stays here.
  const bool categorical = dynamic_cast<const QXCatVar*>(copy.GetVarAt(copy.GetTargetIndex()));
  auto* encoder = new QXStringEncoder(std::vector<std::string>{"yes", "no"});
  Require(copy.ChangeTargetEncoder(encoder) == categorical, "the target encoder's answer");
  if (!categorical) delete encoder;
  copy.SetVariableRole(size - 1, V::RoleTarget);
  copy.SetVariableRole(0, V::RoleTargetResponse);
  copy.RemoveVar(copy.GetTargetIndex());
  copy.RemoveVar(copy.GetWeightIndex());
  copy.RemoveVar(0);
  const std::string name = "added by the fuzzer";
  const bool taken = copy.FindVariable(name) >= 0;
  const int added = copy.AddContVar(name, "", V::RoleTarget);
  Require(taken ? added == -1 : added >= 0 && copy.GetTargetIndex() == added,
          "a new target isn't the target");
  qxfuzz::DisplayNowhere(list);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  qxfuzz::MakeScratchFile("/tmp/qx_varlist_fuzz_XXXXXX");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  qxfuzz::StoreInput(bytes, size);
  const auto blank = [] { return new QXVarList(); };
  for (int header = 0; header < 2; ++header) {
    for (QXVarList* list : {blank(), Held()}) {
      qxfuzz::FuzzRead(*list, header == 1, blank, Exercise);
      delete list;
    }
  }
  return 0;
}
