#include "qx/foundation/qxcomponentdisplay.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "qx/foundation/qxmissingvalue.h"

namespace QXDisplay_850 {
namespace {

using QXCommon_850::QXMV;

// Captures the display stream for one test and gives std::cout back after.
class DisplayTest : public ::testing::Test {
 protected:
  void SetUp() override { SetOutStream(out); }
  void TearDown() override { SetOutStream(std::cout); }
  std::string Take() {
    std::string text = out.str();
    out.str("");
    return text;
  }
  std::ostringstream out;
};

TEST_F(DisplayTest, TextAndScalarsPutTheBreakFirst) {
  EXPECT_EQ(&GetOutStream(), &out);
  DisplayText(2, "two");
  DisplayText(0, std::string("zero"));
  DisplayText(3, static_cast<const char*>(nullptr));  // nothing, not even breaks
  EXPECT_EQ(Take(), "\n\ntwozero");

  DisplayS("Name", "abc");
  DisplayB("Flag", true);
  DisplayB("Other", false);
  DisplayI("Count", -42);
  DisplayL("Big", 1234567890123L);
  EXPECT_EQ(Take(), "\nName = abc\nFlag = true\nOther = false\nCount = -42\nBig = 1234567890123");

  DisplayD("Mean", 0.1);
  DisplayD("Large", 1.5e300);
  DisplayD("Missing", QXMV::Missing());
  DisplayDF("Exact", 0.1);
  DisplayDF("ExactMissing", QXMV::Missing());
  EXPECT_EQ(Take(),
            "\nMean = 0.1\nLarge = 1.5e+300\nMissing = miss"
            "\nExact = 0.10000000000000001\nExactMissing = miss");
}

TEST_F(DisplayTest, TimeStampShape) {
  DisplayTimeStamp("Started");
  const std::string text = Take();
  const std::string shape = "\nStarted: 9999-99-99-99-99-99";  // 9 stands for any digit
  ASSERT_EQ(text.size(), shape.size()) << text;
  for (size_t i = 0; i < shape.size(); ++i) {
    if (shape[i] == '9') {
      EXPECT_TRUE(text[i] >= '0' && text[i] <= '9') << text;
    } else {
      EXPECT_EQ(text[i], shape[i]) << text;
    }
  }
}

TEST_F(DisplayTest, ListFormWrapsAfterTenElements) {
  std::vector<int> eleven;
  for (int i = 1; i <= 11; ++i)
    eleven.push_back(i);
  DisplayIV("ints", eleven);
  EXPECT_EQ(Take(), "\nints (size = 11)\n  1 2 3 4 5 6 7 8 9 10\n  11");

  std::vector<int> ten(eleven.begin(), eleven.end() - 1);
  DisplayIV("ten", ten);
  EXPECT_EQ(Take(), "\nten (size = 10)\n  1 2 3 4 5 6 7 8 9 10");  // no empty last line

  DisplayIV("none", {});
  EXPECT_EQ(Take(), "\nnone (size = 0)");

  DisplayUV("unsigned", {4000000000u, 0u});
  DisplayBV("flags", {true, false, true});
  DisplaySV("names", {"a b", ""});
  EXPECT_EQ(Take(),
            "\nunsigned (size = 2)\n  4000000000 0"
            "\nflags (size = 3)\n  t f t"
            "\nnames (size = 2)\n  \"a b\" \"\"");

  DisplayVPII("pairs", {{1, 2}, {-3, 4}});
  DisplayVPD("dpairs", {{0.5, QXMV::Missing()}});
  DisplayVPDI("dipairs", {{2.5, 7}});
  EXPECT_EQ(Take(),
            "\npairs (size = 2)\n (1,2) (-3,4) "
            "\ndpairs (size = 1)\n (0.5,miss) "
            "\ndipairs (size = 1)\n (2.5,7) ");
}

TEST_F(DisplayTest, DoublesInListAndOneLineForms) {
  const std::vector<double> v = {1.0, QXMV::Missing(), -2.5e-7};
  DisplayDV("v", v);
  EXPECT_EQ(Take(), "\nv (size = 3)\n  1 miss -2.5e-07");
  DisplayDV("v", v, true);
  EXPECT_EQ(Take(), "\nv (size = 3)\n  = 1\n miss\n  = -2.4999999999999999e-07");
  DisplayDA("a", v.data(), 2, false);
  EXPECT_EQ(Take(), "\na (size = 2)\n  1 miss");
  DisplayDAS(v.data(), 3);
  EXPECT_EQ(Take(), "\n  1 miss -2.5e-07");
  DisplayDAS(v.data(), 0);
  EXPECT_EQ(Take(), "");
}

TEST_F(DisplayTest, PackedTriangle) {
  const std::vector<double> packed = {1, 2, 3, 4, 5, 6, 7};  // three rows and a short fourth
  DisplayDVTRS(packed, 4);
  EXPECT_EQ(Take(), "\n  1\n  2 3\n  4 5 6\n  7");
  DisplayDVTRS(packed, 2);
  EXPECT_EQ(Take(), "\n  1\n  2 3");
  DisplayDVTR("L", packed, 3);
  EXPECT_EQ(Take(),
            "\nL (number of elements = 7, number of rows =3)"
            "\nrow 0:  1\nrow 1:  2 3\nrow 2:  4 5 6");
}

TEST_F(DisplayTest, VectorsOfVectors) {
  DisplayDVV("dvv", {{1.5}, {}}, false);
  EXPECT_EQ(Take(), "\ndvv (size = 2)\nvec[0] (size = 1)\n  1.5\nvec[1] <none>");
  DisplaySVV("svv", {{"x"}});
  EXPECT_EQ(Take(), "\nsvv (size = 1)\nvec[0] (size = 1)\n  \"x\"");
  DisplayBVV("table", {{true, false}, {false, false}}, "row", "col");
  EXPECT_EQ(Take(),
            "\ntable ( number of rows = 2, number of columns = 2 )"
            "\n col: 0 1\n row 0: t f\n row 1: f f");
}

TEST_F(DisplayTest, Maps) {
  DisplayIIM("iim", {{1, 10}, {2, 20}});
  DisplayIIM("empty", {});
  DisplayDDM("ddm", {{0.5, 1.5}});
  EXPECT_EQ(Take(),
            "\niim (map size = 2)\n (1,10) (2,20) "
            "\nempty (map size = 0) <empty>"
            "\nddm (map size = 1)\n (0.5,1.5) ");
  DisplayVIM("vim", {{3, {1, 2}}});
  DisplayIntVecIntMap("ivim", {{{1, 2}, 5}});
  DisplaySLDM("sldm", {{{"a"}, 0.25}});
  DisplayIntVecDVecMap("ivdvm", {});
  EXPECT_EQ(Take(),
            "\nvim (1)\n 3: 1 2"
            "\nivim (1)\nMap key (size = 2)\n  1 2\nMap value = 5"
            "\nsldm (1)\nMap's StringList: (size = 1)\n  \"a\"\nMap's double = 0.25"
            "\nivdvm (0) <empty>");
}

}  // namespace
}  // namespace QXDisplay_850
