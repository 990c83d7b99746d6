#include "qx/dictionary/qxmtdisplayenums.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "qx/foundation/internal/testutil.h"

namespace QXXML_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;
using V = IQXVariable;

// Every enumerator's text, and what lies past each enumeration.
TEST(DisplayEnumsTest, EachEnumeratorPrintsItsTextOnANewLine) {
  const auto expect = [](auto value, const char* text) {
    EXPECT_EQ(CaptureDisplay([&] { Display("L", value); }), std::string("\nL") + text)
        << static_cast<int>(value);
  };
  const std::vector<std::pair<int, const char*>> roles = {{0, " = Undefined variable role"},
                                                          {1, " = Target"},
                                                          {2, " = Target Response"},
                                                          {3, " = Frequency weight"},
                                                          {4, " = Input"},
                                                          {5, " = Possible Input"},
                                                          {6, " = Unused variable"},
                                                          {7, " = Record ID variable"},
                                                          {8, " = unrecognized"},
                                                          {-1, " = unrecognized"}};
  for (const auto& r : roles)
    expect(static_cast<V::VariableRole>(r.first), r.second);
  const std::vector<std::pair<int, const char*>> storages = {{0, " = Undefined variable storage"},
                                                             {1, " = Integer"},
                                                             {2, " = Real"},
                                                             {3, " = String"},
                                                             {4, " = Date"},
                                                             {5, " = Time"},
                                                             {6, " = Timestamp"},
                                                             {7, " = unrecognized"}};
  for (const auto& s : storages)
    expect(static_cast<V::VariableStorage>(s.first), s.second);
  const std::vector<std::pair<int, const char*>> levels = {
      {0, " = Unknown measure level"}, {1, " = Continuous"},       {2, " = Numeric Categorical"},
      {3, " = String Categorical"},    {4, " = Frequency weight"}, {5, " = unrecognized"}};
  for (const auto& l : levels)
    expect(static_cast<V::MeasureLevel>(l.first), l.second);
  const std::vector<std::pair<int, const char*>> roundings = {{0, " = Truncate to smaller int"},
                                                              {1, " = Round to closest int"},
                                                              {2, " = As is - no change"},
                                                              {3, " = unrecognized"}};
  for (const auto& r : roundings)
    expect(static_cast<V::WRoundingOption>(r.first), r.second);
  const std::vector<std::pair<int, const char*>> statuses = {
      {0, " = OK"}, {1, " = Constant"}, {2, " = Invalid"}, {3, " = unrecognized"}};
  for (const auto& s : statuses)
    expect(static_cast<V::VarStatus>(s.first), s.second);
  // Past 4 the encoder type indexes into " = Encoder type ".
  const std::vector<std::pair<int, const char*>> encoders = {
      {0, " = Unknown"},
      {1, " = Binning of numeric values"},
      {2, " = Categorical with numeric category values"},
      {3, " = Categorical with string category values"},
      {4, " = ounding for frequency weights"},
      {5, "coder type "},
      {15, " "},
      {16, ""},
      {-1, ""}};
  for (const auto& e : encoders)
    expect(static_cast<IQXEncoder::EncoderType>(e.first), e.second);
}

}  // namespace
}  // namespace QXXML_850
