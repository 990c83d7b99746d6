#include "qx/dictionary/qxvarlist.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/dictionary/internal/testutil.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxcontvar.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/dictionary/qxweightvar.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {
namespace {

using internal::Persisted;
using internal::ReadPersisted;
using V = IQXVariable;

// Names A, B, C, ... as continuous inputs, then the given roles by index.
QXVarList Letters(int n) {
  QXVarList list;
  for (int i = 0; i < n; ++i)
    list.AddContVar(std::string(1, static_cast<char>('A' + i)), "", V::RoleInput);
  return list;
}

TEST(VarListTest, AddingRefusesEmptyAndRepeatedNames) {
  QXVarList list;
  EXPECT_EQ(list.AddContVar("x", "", V::RoleInput), 0);
  EXPECT_EQ(list.AddContVar("x", "again", V::RoleTarget), -1);
  EXPECT_EQ(list.AddCatVar("", "", std::vector<double>{1.0}, V::RoleInput), -1);
  EXPECT_EQ(list.Size(), 1u);
  EXPECT_EQ(list.GetTargetIndex(), -1);
  EXPECT_EQ(list.AddCatVar("c", "", std::vector<std::string>{"b", "a", "b"},
                           std::vector<std::string>{"bee"}, V::RoleTarget),
            1);
  EXPECT_EQ(list.AddContVar("y", "", 0.0, 1.0, V::RoleTargetResponse, true, 4), 2);
  EXPECT_EQ(list.AddCatVar("n", "", 5, V::LevelNumericCategorical, V::RolePossibleInput), 3);
  EXPECT_EQ(list.SetWeightVar("w", "", V::RoundAsIs), 4);
  EXPECT_EQ(list.SetWeightVar("w2", "", V::RoundClosest), 4);  // replaces it in place
  EXPECT_EQ(list.GetNumContVar(), 2);
  EXPECT_EQ(list.GetNumCatVar(), 2);
  EXPECT_EQ(list.GetTargetIndex(), 1);
  EXPECT_EQ(list.GetFirstResponseIndex(), 2);
  EXPECT_EQ(list.FindVariable("w2"), 4);
  EXPECT_EQ(list.FindVariable("w"), -1);
  // The categories were encoded in order; their number is the vector's length.
  EXPECT_EQ(list.GetVarAt(1)->GetNumberOfCategories(), 3);
  EXPECT_EQ(list.GetEncoderAt(1)->GetNumberOfCategories(), 2);
  EXPECT_EQ(list.GetEncoderAt(1)->Decode(1), "a");
  EXPECT_EQ(*list.GetEncoderAt(1)->GetValueLabels(), std::vector<std::string>{"bee"});
  EXPECT_EQ(list.UpdateNumbersOfCategories(), 1 + 3 + 4 + 5 + 0);
  EXPECT_EQ(list.GetNumInputVars(), 1);
  EXPECT_EQ(list.GetNumPossibleInputVars(), 1);
  EXPECT_EQ(list.GetNInputCats(), std::vector<int>{1});
  std::vector<std::string> inputs = {"stale"}, responses;
  list.GetVarNames(inputs, responses);
  EXPECT_EQ(inputs, std::vector<std::string>{"x"});
  EXPECT_EQ(responses, std::vector<std::string>{"y"});
  // Out of range: the refusal values.
  EXPECT_EQ(list.GetVarAt(5), nullptr);
  EXPECT_EQ(list.GetEncoderAt(-1), nullptr);
  EXPECT_EQ(list.GetVariableRole(9), V::RoleUndefined);
  EXPECT_FALSE(list.SetVariableRole(-1, V::RoleInput));
  EXPECT_FALSE(list.SetMissingValueReplacement(5, "0"));
  EXPECT_FALSE(list.RemoveVar(5));
  EXPECT_FALSE(list.RemoveVar("nobody"));
  EXPECT_TRUE(list.SetMissingValueReplacement(0, "0"));
  EXPECT_EQ(*list.GetVariable("x")->GetMissingValueReplacement(), "0");
}

TEST(VarListTest, RemovalKeepsTargetResponseAndWeightIndexes) {
  QXVarList abc = Letters(3);
  abc.SetVariableRole(1, V::RoleTarget);
  EXPECT_TRUE(abc.RemoveVar(0));
  EXPECT_EQ(abc.GetTargetIndex(), 0);
  EXPECT_TRUE(abc.RemoveVar("B"));
  EXPECT_EQ(abc.GetTargetIndex(), -1);
  EXPECT_EQ(abc.GetNumContVar(), 1);

  // A second target keeps the earlier index while it takes the role; the
  // earlier target given another role leaves the list without target.
  QXVarList list = Letters(4);
  list.SetVariableRole(1, V::RoleTarget);
  list.SetVariableRole(3, V::RoleTarget);
  EXPECT_EQ(list.GetTargetIndex(), 1);
  EXPECT_EQ(list.GetVariableRole(3), V::RoleTarget);
  list.SetVariableRole(1, V::RoleInput);
  EXPECT_EQ(list.GetTargetIndex(), -1);

  // A weight removed leaves the numbers of variables; one above moves down.
  QXVarList weighted = Letters(3);
  weighted.SetWeightVar("W", "", V::RoundAsIs);
  EXPECT_TRUE(weighted.RemoveVar(3));
  EXPECT_EQ(weighted.GetWeightIndex(), -1);
  EXPECT_EQ(weighted.GetNumContVar(), 3);
  weighted.SetWeightVar("W", "", V::RoundAsIs);
  weighted.RemoveVar(0);
  EXPECT_EQ(weighted.GetWeightIndex(), 2);
  EXPECT_EQ(weighted.GetVarAt(2)->GetVariableName(), "W");

  // A categorical target removed leaves its count one too high.
  QXVarList cats;
  cats.AddCatVar("t", "", std::vector<double>{1.0, 2.0}, V::RoleTarget);
  cats.AddCatVar("u", "", std::vector<double>{1.0}, V::RoleInput);
  cats.RemoveVar(0);
  EXPECT_EQ(cats.GetNumCatVar(), 2);
  cats.RemoveVar(0);
  EXPECT_EQ(cats.GetNumCatVar(), 1);
}

TEST(VarListTest, ResponsesFollowRemovalsWithTheDocumentedAsymmetry) {
  QXVarList list = Letters(7);
  EXPECT_TRUE(list.AddResponseVariable(2));
  EXPECT_TRUE(list.AddResponseVariable(5));
  EXPECT_FALSE(list.AddResponseVariable(7));
  QXVarList copy = list;
  EXPECT_TRUE(list.RemoveResponseVariable(2));
  EXPECT_EQ(list.GetResponseVariables(), std::vector<int>{4});
  EXPECT_EQ(list.GetFirstResponseIndex(), 4);
  EXPECT_TRUE(copy.RemoveResponseVariable(3));  // not a response: those above still move
  EXPECT_EQ(copy.GetResponseVariables(), (std::vector<int>{2, 4}));
  EXPECT_EQ(copy.GetFirstResponseIndex(), 2);
  EXPECT_TRUE(copy.RemoveResponseVariable(7));  // the size itself passes
  EXPECT_FALSE(copy.RemoveResponseVariable(8));
  EXPECT_TRUE(copy.RemoveResponseVariable(0));
  EXPECT_EQ(copy.GetFirstResponseIndex(), 2);  // not lowered with the list
  EXPECT_EQ(copy.GetResponseVariables(), (std::vector<int>{1, 3}));

  // Roles: ChangeVariableRole always answers false, and does its work.
  QXVarList roles = Letters(3);
  EXPECT_FALSE(roles.ChangeVariableRole(true, 2));
  EXPECT_FALSE(roles.ChangeVariableRole(true, 2));
  EXPECT_EQ(roles.GetResponseVariables(), std::vector<int>{2});
  EXPECT_EQ(roles.GetFirstResponseIndex(), 2);
  EXPECT_TRUE(roles.SetVariableRole(0, V::RoleTargetResponse));
  EXPECT_EQ(roles.GetResponseVariables(), (std::vector<int>{2, 0}));
  EXPECT_EQ(roles.GetFirstResponseIndex(), 2);
  roles.ChangeVariableRole(false, 2);
  EXPECT_EQ(roles.GetFirstResponseIndex(), 2);  // stays while others remain
  roles.ChangeVariableRole(false, 0);
  EXPECT_EQ(roles.GetFirstResponseIndex(), -1);
  // RemoveVar takes a response out of the list and moves the others down.
  roles.AddResponseVariable(1);
  roles.AddResponseVariable(2);
  roles.RemoveVar(1);
  EXPECT_EQ(roles.GetResponseVariables(), std::vector<int>{1});
  EXPECT_EQ(roles.GetFirstResponseIndex(), 1);
}

TEST(VarListTest, CopiesOfVariablesAndTargetEncoders) {
  QXVarList list;
  QXCatVar cat("c", "", 2, V::LevelStringCategorical, V::RoleTarget, false);
  cat.GetEncoder()->Encode("yes");
  EXPECT_EQ(list.AddNewVar(&cat), 0);
  EXPECT_EQ(list.AddNewVar(&cat), -1);
  EXPECT_EQ(list.AddNewVar(nullptr), -1);
  EXPECT_EQ(list.GetTargetIndex(), 0);
  EXPECT_NE(list.GetVarAt(0), &cat);
  QXContVar unnamed;  // the empty name is accepted here
  EXPECT_EQ(list.AddNewVar(&unnamed), 1);
  QXWeightVar weight("w", "", V::RoundAsIs);
  EXPECT_EQ(list.AddNewVar(&weight), 2);
  QXWeightVar other("v", "", V::RoundAsIs);
  EXPECT_EQ(list.AddNewVar(&other), 2);
  EXPECT_EQ(list.GetNumCatVar(), 1);
  EXPECT_EQ(list.GetNumContVar(), 1);

  EXPECT_TRUE(list.ChangeTargetEncoder(new QXCatNumEncoder({1.0, 2.0, 3.0})));
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 3);
  EXPECT_FALSE(list.ChangeTargetEncoder(new QXStringEncoder(0)));  // handed over anyway
  EXPECT_EQ(list.GetEncoderAt(0)->GetEncoderType(), IQXEncoder::EncoderString);
  EXPECT_EQ(list.GetVarAt(0)->GetNumberOfCategories(), 0);
  QXVarList noTarget = Letters(1);
  QXStringEncoder kept(0);
  EXPECT_FALSE(noTarget.ChangeTargetEncoder(&kept));  // nowhere to go: the caller keeps it

  // Copies are deep; assignment keeps its own listwise flag.
  list.SetListwiseDeletion(true);
  list.SetFieldFormatsElement(XMLElement::Create("Formats"));
  QXVarList copied(list);
  QXVarList assigned;
  assigned = list;
  EXPECT_TRUE(copied.GetListwiseDeletion());
  EXPECT_FALSE(assigned.GetListwiseDeletion());
  for (const QXVarList* c : {&copied, &assigned}) {
    EXPECT_NE(c->GetVarAt(0), list.GetVarAt(0));
    EXPECT_NE(c->GetFieldFormatsElement(), list.GetFieldFormatsElement());
    EXPECT_EQ(c->GetWeightIndex(), 2);
    EXPECT_EQ(Persisted(*c), Persisted(list));
  }
}

// A list with every kind of variable, roles, labels, missing definitions,
// response variables and a weight.
QXVarList FullList() {
  QXVarList list;
  list.AddContVar("age", "Age in years", 0.0, 120.0, V::RoleInput, true, 6);
  list.GetEncoderAt(0)->SetMissingInterval(-99.0, -1.0);
  list.AddContVar("income", "Income", {1e4, 5e4}, true, V::RolePossibleInput);
  list.GetEncoderAt(1)->AddDiscreteUserMissing(0.0, "refused");
  list.SetMissingValueReplacement(1, "mean");
  list.AddCatVar("region", "Region", std::vector<std::string>{"north", "south", "east"},
                 std::vector<std::string>{"N", "S"}, V::RoleInput);
  list.GetEncoderAt(2)->AddDiscreteUserMissing("?", "unknown");
  list.AddCatVar("grade", "Grade", std::vector<double>{3.0, 1.0, 2.0}, V::RoleTarget);
  list.GetEncoderAt(3)->AddDiscreteUserMissing(9.0, "no grade");
  list.AddContVar("score", "Score", V::RoleTargetResponse);
  list.AddCatVar("pass", "Passed", std::vector<std::string>{"no", "yes"}, V::RoleTargetResponse);
  list.SetWeightVar("w", "Case weight", V::RoundClosest);
  list.AddContVar("late", "Added after the weight", V::RoleUnused);
  return list;
}

TEST(VarListTest, AWholeListWritesReadsAndWritesAgainByteForByte) {
  const QXVarList list = FullList();
  int written = 0;
  const std::string text = Persisted(list, &written);
  int entries = 0;
  std::ostringstream sink;
  for (size_t i = 0; i < list.Size(); ++i)
    entries += 1 + list.GetVarAt(static_cast<int>(i))->WriteObjectXML(sink, 2);
  EXPECT_EQ(written, 2 + entries + 5);

  QXVarList read = Letters(2);
  read.AddResponseVariable(1);
  EXPECT_EQ(ReadPersisted(read, text), written);
  ASSERT_EQ(read.Size(), list.Size());
  EXPECT_EQ(read.GetNumContVar(), 4);
  EXPECT_EQ(read.GetNumCatVar(), 3);
  EXPECT_EQ(read.GetTargetIndex(), 3);
  EXPECT_EQ(read.GetFirstResponseIndex(), 4);
  EXPECT_EQ(read.GetWeightIndex(), 6);
  EXPECT_EQ(read.GetResponseVariables(), std::vector<int>{1});  // not rebuilt
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const IQXVariable* a = list.GetVarAt(i);
    const IQXVariable* b = read.GetVarAt(i);
    EXPECT_EQ(b->GetVariableName(), a->GetVariableName());
    EXPECT_EQ(b->GetVariableLabel(), a->GetVariableLabel());
    EXPECT_EQ(b->GetVariableRole(), a->GetVariableRole());
    EXPECT_EQ(b->GetMeasureLevel(), a->GetMeasureLevel());
    EXPECT_EQ(b->GetNumberOfCategories(), a->GetNumberOfCategories());
    const IQXEncoder* ea = a->GetEncoder();
    const IQXEncoder* eb = b->GetEncoder();
    EXPECT_EQ(eb->GetEncoderType(), ea->GetEncoderType());
    for (int code = 0; code < ea->GetNumberOfCategories(); ++code) {
      EXPECT_EQ(eb->Decode(code), ea->Decode(code));
    }
    if (ea->GetDiscreteMissValues() != nullptr) {
      EXPECT_EQ(*eb->GetDiscreteMissValues(), *ea->GetDiscreteMissValues());
    }
    EXPECT_EQ(*eb->GetMissValueLabels(), *ea->GetMissValueLabels());
  }
  EXPECT_EQ(*read.GetVarAt(1)->GetMissingValueReplacement(), "mean");
  EXPECT_EQ(read.GetEncoderAt(2)->EncodeConst("?"), -1.0);
  EXPECT_EQ(read.GetEncoderAt(3)->EncodeConst(2.0), 2.0);
  EXPECT_EQ(Persisted(read), text);

  // Reading again into the list reuses its weight variable.
  const IQXVariable* weight = read.GetVarAt(6);
  EXPECT_EQ(ReadPersisted(read, text), written);
  EXPECT_EQ(read.GetVarAt(6), weight);
  // A file without a weight entry leaves none.
  EXPECT_GT(ReadPersisted(read, Persisted(Letters(2))), 0);
  EXPECT_EQ(read.GetWeightIndex(), -1);
  EXPECT_EQ(read.FindVariable("B"), 1);
}

// Truncations at every line and thousands of mutations of a real file: each
// read succeeds or gives the documented failure, and the list stays usable.
TEST(VarListTest, DamagedFilesFailTheDocumentedWay) {
  const std::string text = Persisted(FullList());
  const std::vector<std::string> failures = {
      "Failure reading QXVarList!\n",       "Failure reading QXContVar!\n",
      "Failure reading QXCatVar!\n",        "Failure reading QXWeightVar!\n",
      "Failure reading QXContEncoder!\n",   "Failure reading QXRoundEncoder from XML!\n",
      "Failure reading QXCatNumEncoder!\n", "Failure reading QXStringEncoder!\n",
      "Wrong encoder type in QXContVar!\n"};
  const auto check = [&](const std::string& damaged, QXVarList& list) {
    std::string messages;
    const int result = ReadPersisted(list, damaged, &messages);
    if (result == -1) {
      bool known = false;
      for (const std::string& f : failures)
        known = known || messages == f;
      EXPECT_TRUE(known) << messages << "\n--- from ---\n" << damaged;
    } else {
      EXPECT_EQ(messages, "");
    }
    // Whatever was read, the list answers and copies.
    QXVarList copy(list);
    copy.UpdateNumbersOfCategories();
    copy.RemoveVar(0);
    std::ostringstream out;
    copy.WriteObjectXML(out, 1);
    QXCommon_850::internal::CaptureDisplay([&] { list.Display(); });
    return result;
  };
  QXVarList list = FullList();
  int cuts = 0;
  // Up to the last line, which closes the root and is never read.
  const size_t last = text.rfind('\n');
  for (size_t end = text.find('\n'); end < last; end = text.find('\n', end + 1)) {
    EXPECT_LT(check(text.substr(0, end), list), 0);
    ++cuts;
  }
  EXPECT_GT(cuts, 100);
  std::mt19937 random(20240531);
  const char pieces[] = "0123456789-.\"<>/= \t\nMissingObjIntDouble";
  for (int trial = 0; trial < 3000; ++trial) {
    std::string damaged = text;
    const int edits = 1 + trial % 4;
    for (int e = 0; e < edits; ++e) {
      const size_t at = random() % damaged.size();
      switch (random() % 3) {
        case 0:
          damaged[at] = pieces[random() % (sizeof pieces - 1)];
          break;
        case 1:
          damaged.erase(at, 1 + random() % 8);
          break;
        default:
          damaged.insert(at, std::string(1 + random() % 3, pieces[random() % (sizeof pieces - 1)]));
      }
    }
    check(damaged, list);
  }
}

TEST(VarListTest, NamesChangedThroughAVariableAreFound) {
  QXVarList list = Letters(3);
  QXContVar renamed("Z", "", V::RoleInput);
  ASSERT_GT(ReadPersisted(*list.GetVarAt(1), Persisted(renamed)), 0);
  EXPECT_EQ(list.FindVariable("Z"), 1);
  EXPECT_EQ(list.FindVariable("B"), -1);
  EXPECT_EQ(list.AddContVar("B", "", V::RoleInput), 3);
  EXPECT_EQ(list.AddContVar("Z", "", V::RoleInput), -1);
}

TEST(VarListTest, DisplayListsEveryEntry) {
  QXVarList list = Letters(1);
  list.SetWeightVar("W", "", V::RoundAsIs);
  const std::string shown = QXCommon_850::internal::CaptureDisplay([&] { list.Display(); });
  const std::string head =
      "\nBegin display of QXVarList object.\nTotal variables = 2\nNumber of Continuous "
      "Variables = 1\nNumber of Categorical Variables = 0\n\nVariable 0\nContinuous variable";
  EXPECT_EQ(shown.substr(0, head.size()), head);
  EXPECT_NE(shown.find("\n\nVariable 1\nFrequency weight variable: name = W"), std::string::npos);
  EXPECT_EQ(shown.substr(shown.size() - 38), "\n\nEnd of display for QXVarList object.");
}

}  // namespace
}  // namespace QXXML_850
