#include "qx/markup/xmlio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <thread>

#include "qx/foundation/internal/testlocale.h"
#include "qx/markup/savexml.h"

namespace QXXML_850 {
namespace {

// Each test reads files of its own in the test temp folder.
class XMLIOTest : public ::testing::Test {
 protected:
  std::string PathFor(const std::string& tag) {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    return ::testing::TempDir() + "qxio_" + info->name() + "_" + tag + "_" +
           std::to_string(getpid());
  }
  // Writes `text` to a file and opens it for reading in `in`.
  void Open(std::ifstream& in, const std::string& text, const std::string& tag = "main") {
    const std::string path = PathFor(tag);
    std::ofstream(path, std::ios::binary) << text;
    in.open(path, std::ios::binary);
    ASSERT_TRUE(in.good());
    paths.push_back(path);
  }
  void TearDown() override {
    for (const std::string& path : paths)
      std::remove(path.c_str());
    QXCommon_850::internal::UseClassicLocale();
  }
  std::vector<std::string> paths;
};

TEST_F(XMLIOTest, RoundTripOfEveryKindWithTheDocumentedLosses) {
  std::ostringstream out;
  StartDocument(out);
  StartRoot(out, "copyright");
  const XMLObj outer("QXOuter", 1);
  outer.StartObj(out);
  outer.WriteSubElement(out, -7);
  outer.WriteSubElement(out, -2147483647 - 1);
  outer.WriteSubElement(out, 4294967295u);
  outer.WriteSubElement(out, true);
  outer.WriteSubElement(out, false);
  outer.WriteSubElement(out, 123L);
  outer.WriteSubElement(out, -999999999999999L);
  outer.WriteSubElement(out, 1234567890123456L);
  outer.WriteSubElement(out, 0.1);
  outer.WriteSubElement(out, 1.0 / 3.0);
  outer.WriteSubElement(out, MV::gMissingValue);
  outer.WriteSubElement(out, std::numeric_limits<double>::quiet_NaN());
  outer.WriteSubElement(out, -1e-300);
  const XMLObj inner("QXInner", 2);
  inner.StartObj(out);
  inner.WriteSubElement(out, std::string("plain text"));
  inner.WriteSubElement(out, std::string());
  inner.WriteSubElement(out, std::string("  "));
  inner.WriteSubElement(out, std::string("a&b<c>\"d\"\te\nf"));
  inner.WriteSubElement(out, std::string(234, 'x'));  // a line of 255 characters
  inner.WriteSubElement(out, std::string(235, 'y'));  // one more than can be read
  inner.EndObj(out);
  outer.EndObj(out);
  EndRoot(out);

  std::ifstream in;
  Open(in, out.str());
  ASSERT_TRUE(ParseStartXML(in));
  ASSERT_TRUE(ParseStartObj(in, "QXOuter"));
  int i = 0;
  unsigned int u = 0;
  bool b = false;
  long l = 0;
  double d = 0.0;
  EXPECT_TRUE(ParseValue(in, i));
  EXPECT_EQ(i, -7);
  EXPECT_TRUE(ParseValue(in, i));
  EXPECT_EQ(i, -2147483647 - 1);
  EXPECT_TRUE(ParseValue(in, u));
  EXPECT_EQ(u, 4294967295u);
  EXPECT_TRUE(ParseValue(in, b));
  EXPECT_TRUE(b);
  EXPECT_TRUE(ParseValue(in, b));
  EXPECT_FALSE(b);
  EXPECT_TRUE(ParseValue(in, l));
  EXPECT_EQ(l, 123);
  EXPECT_TRUE(ParseValue(in, l));
  EXPECT_EQ(l, -999999999999999L);
  EXPECT_TRUE(ParseValue(in, l));
  EXPECT_EQ(l, 1);  // written as 1.23456789012346e+15, read up to the point
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_EQ(d, 0.1);
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_NE(d, 1.0 / 3.0);  // 15 digits
  EXPECT_NEAR(d, 1.0 / 3.0, 1e-15);
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_EQ(d, MV::gMissingValue);
  EXPECT_TRUE(ParseValue(in, d));  // "nan" doesn't parse, and that is no failure
  EXPECT_FALSE(std::isnan(d));
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_EQ(d, -1e-300);

  ASSERT_TRUE(ParseStartObj(in, "QXInner"));
  std::string s = "old";
  EXPECT_TRUE(ParseValue(in, s));
  EXPECT_EQ(s, "plain text");
  EXPECT_TRUE(ParseValue(in, s));
  EXPECT_EQ(s, "");
  EXPECT_TRUE(ParseValue(in, s));
  EXPECT_EQ(s, "&#32;&#32;");  // entities are not decoded
  EXPECT_TRUE(ParseValue(in, s));
  EXPECT_EQ(s, "a&amp;b&lt;c&gt;&quot;d&quot;&#9;e&#10;f");
  EXPECT_TRUE(ParseValue(in, s));
  EXPECT_EQ(s, std::string(234, 'x'));
  EXPECT_FALSE(ParseValue(in, s));
  EXPECT_EQ(s, std::string(234, 'x'));
  EXPECT_FALSE(ParseEndObj(in));  // the stream has failed for good
}

TEST_F(XMLIOTest, WrongElementsEmptyLinesAndEndOfFile) {
  std::ifstream in;
  Open(in,
       "<Int value=\"2\"/>\n<Int value=\"2\"/>\n<Int value=\"7\"/>\n"
       "<Long value=\"5\"/>\n<Int value=\"5\"/>\n<Int  value=\"5\"/>\n<Int value=\n"
       "<Int value=\"abc\"/>\n<Double value=\"abc\"/>\n<String value=\n");
  bool b = true;
  int i = 0;
  double d = 1.5;
  long l = 9;
  std::string s = "old";
  EXPECT_FALSE(ParseValue(in, b));  // 2 is not a bool, and b keeps its value
  EXPECT_TRUE(b);
  EXPECT_TRUE(ParseValue(in, i));
  EXPECT_EQ(i, 2);
  EXPECT_FALSE(ParseValue(in, d));  // an Int line is not a Double
  EXPECT_EQ(d, 1.5);
  EXPECT_FALSE(ParseValue(in, i));  // a Long line is not an Int
  EXPECT_FALSE(ParseValue(in, l));  // and the other way round
  EXPECT_EQ(l, 9);
  EXPECT_FALSE(ParseValue(in, i));  // the attribute must follow one blank
  EXPECT_FALSE(ParseValue(in, i));  // no value at all
  EXPECT_TRUE(ParseValue(in, i));   // a number that doesn't parse is 0
  EXPECT_EQ(i, 0);
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_EQ(d, 0.0);
  EXPECT_TRUE(ParseValue(in, s));  // a string without a value is empty
  EXPECT_EQ(s, "");
  EXPECT_FALSE(ParseValue(in, s));  // end of file
  EXPECT_FALSE(ParseEndObj(in));

  std::ifstream objects;
  Open(objects,
       "\n<Obj name=\"QXA\">\n\t</Obj>\n\n\n<Obj name=\"QXA\">\n"
       "<Obj name=\"QXB\">\n\n<Int value=\"1\"/>\n</QXXMLRoot>",
       "objects");
  EXPECT_TRUE(ParseStartObj(objects, "QXA"));  // one empty line is forgiven
  EXPECT_TRUE(ParseEndObj(objects));
  EXPECT_FALSE(ParseStartObj(objects, "QXA"));  // two are not
  EXPECT_TRUE(ParseStartObj(objects, "QXA"));
  EXPECT_FALSE(ParseStartObj(objects, "QXA"));  // another class
  EXPECT_FALSE(ParseValue(objects, i));         // an empty line ahead of a value
  EXPECT_TRUE(ParseValue(objects, i));
  EXPECT_FALSE(ParseEndObj(objects));  // the root's end is not an object's

  std::ifstream header;
  Open(header, "<?xml version=\"1.0\"?>\n<!DOCTYPE QXXMLRoot>\n<Other>\n", "header");
  EXPECT_FALSE(ParseStartXML(header));
  std::ifstream empty;
  Open(empty, "", "empty");
  EXPECT_FALSE(ParseStartXML(empty));
}

TEST_F(XMLIOTest, UnsignedReadingFollowsTheCLocale) {
  std::ifstream in;
  const std::string lines =
      "<Int value=\"1.2e+3\"/>\n<Int value=\"3.9\"/>\n<Int value=\"-1\"/>\n"
      "<Int value=\"1e300\"/>\n<Int value=\"nan\"/>\n<Double value=\"0.5\"/>\n";
  Open(in, lines);
  unsigned int u = 7;
  double d = 0.0;
  EXPECT_TRUE(ParseValue(in, u));
  EXPECT_EQ(u, 1200u);
  EXPECT_TRUE(ParseValue(in, u));
  EXPECT_EQ(u, 3u);
  EXPECT_TRUE(ParseValue(in, u));
  EXPECT_EQ(u, 4294967295u);
  EXPECT_TRUE(ParseValue(in, u));  // out of range: no undefined conversion
  EXPECT_EQ(u, 0u);
  EXPECT_TRUE(ParseValue(in, u));
  EXPECT_EQ(u, 0u);
  EXPECT_TRUE(ParseValue(in, d));
  EXPECT_EQ(d, 0.5);

  std::string why;
  if (!QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                         QX_TEST_BINARY_DIR "/test-locales", why)) {
    GTEST_SKIP() << why;
  }
  // A decimal comma cuts the text at the point; doubles and the writer keep
  // the classic locale.
  std::ifstream comma;
  Open(comma, lines, "comma");
  EXPECT_TRUE(ParseValue(comma, u));
  EXPECT_EQ(u, 1u);
  EXPECT_TRUE(ParseValue(comma, u));
  EXPECT_EQ(u, 3u);
  for (int skip = 0; skip < 3; ++skip)
    ParseValue(comma, u);
  EXPECT_TRUE(ParseValue(comma, d));
  EXPECT_EQ(d, 0.5);
  std::ostringstream out;
  XMLObj("QXA", 0).WriteSubElement(out, 2.5);
  EXPECT_EQ(out.str(), "\n\t<Double value=\"2.5\"/>");
}

TEST_F(XMLIOTest, TwoThreadsReadTwoFilesAtOnce) {
  const int count = 3000;
  std::ifstream files[2];
  for (int f = 0; f < 2; ++f) {
    std::ostringstream out;
    const XMLObj obj("QXList", 0);
    obj.StartObj(out);
    for (int k = 0; k < count; ++k) {
      obj.WriteSubElement(out, "file" + std::to_string(f) + " item " + std::to_string(k));
      obj.WriteSubElement(out, f * 1000000 + k);
    }
    obj.EndObj(out);
    Open(files[f], out.str(), std::to_string(f));
  }
  int mismatches[2] = {0, 0};
  auto reader = [&](int f) {
    std::ifstream& in = files[f];
    if (!ParseStartObj(in, "QXList")) ++mismatches[f];
    for (int k = 0; k < count; ++k) {
      std::string s;
      int value = -1;
      if (!ParseValue(in, s) || s != "file" + std::to_string(f) + " item " + std::to_string(k)) {
        ++mismatches[f];
      }
      if (!ParseValue(in, value) || value != f * 1000000 + k) ++mismatches[f];
    }
    if (!ParseEndObj(in)) ++mismatches[f];
  };
  std::thread first(reader, 0);
  std::thread second(reader, 1);
  first.join();
  second.join();
  EXPECT_EQ(mismatches[0], 0);
  EXPECT_EQ(mismatches[1], 0);
}

}  // namespace
}  // namespace QXXML_850
