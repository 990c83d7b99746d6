#include "qx/markup/xmlio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>

#include "qx/foundation/internal/testlocale.h"
#include "qx/markup/internal/writerreference.h"
#include "qx/markup/savexml.h"

namespace QXXML_850 {
namespace {

// Files of each test in the test temp folder, removed afterwards.
class XMLIOTest : public ::testing::Test {
 protected:
  void Open(std::ifstream& in, const std::string& text) {
    paths.push_back(::testing::TempDir() + "qxio_" + std::to_string(getpid()) + "_" +
                    std::to_string(paths.size()));
    std::ofstream(paths.back(), std::ios::binary) << text;
    in.open(paths.back(), std::ios::binary);
  }
  void TearDown() override {
    for (const std::string& path : paths)
      std::remove(path.c_str());
    QXCommon_850::internal::UseClassicLocale();
  }
  std::vector<std::string> paths;
};

// The bytes of every kind of element, and what reading them back gives.
TEST_F(XMLIOTest, WrittenBytesAndWhatReadingThemBackLoses) {
  std::ostringstream out;
  StartDocument(out);
  StartRoot(out, "(c)  Q&A");
  const XMLObj outer("QXOuter", 1), inner("A&B", 2);  // a class name goes out bare
  outer.StartObj(out);
  outer.WriteSubElement(out, -2147483647 - 1);
  outer.WriteSubElement(out, 4294967295u);
  outer.WriteSubElement(out, true);
  for (long v : {-999999999999999L, 1234567890123456L})
    outer.WriteSubElement(out, v);
  for (double v : {1.0 / 3.0, MV::gMissingValue, std::nextafter(MV::gMissingValue, 0.0),
                   std::nan(""), -1e-300, 1234.0}) {
    outer.WriteSubElement(out, v);
  }
  inner.StartObj(out);
  for (const char* v : {"", "  ", " a&b <c>\t\"d\"\n ", "literal"})
    inner.WriteSubElement(out, v);  // strings, not bools
  inner.EndObj(out);
  outer.WriteSubElement(out, std::string(235, 'x'));  // a line of 255 characters
  outer.WriteSubElement(out, std::string(236, 'y'));  // one more than a line can hold
  outer.EndObj(out);
  EndRoot(out);
  EXPECT_EQ(out.str(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "<!DOCTYPE QXXMLRoot SYSTEM \"savexml.dtd\">\n"
            "<QXXMLRoot copyright=\"(c) &#32;Q&amp;A\">\n"
            "\t<Obj name=\"QXOuter\">\n"
            "\t\t<Int value=\"-2147483648\"/>\n"
            "\t\t<Int value=\"4294967295\"/>\n"
            "\t\t<Int value=\"1\"/>\n"
            "\t\t<Long value=\"-999999999999999\"/>\n"
            "\t\t<Long value=\"1.23456789012346e+15\"/>\n"
            "\t\t<Double value=\"0.333333333333333\"/>\n"
            "\t\t<Double value=\"Missing\"/>\n"
            "\t\t<Double value=\"-1.79769313486232e+308\"/>\n"
            "\t\t<Double value=\"nan\"/>\n"
            "\t\t<Double value=\"-1e-300\"/>\n"
            "\t\t<Double value=\"1234\"/>\n"
            "\t\t<Obj name=\"A&B\">\n"
            "\t\t\t<String value=\"\"/>\n"
            "\t\t\t<String value=\"&#32;&#32;\"/>\n"
            "\t\t\t<String value=\"&#32;a&amp;b &lt;c&gt;&#9;&quot;d&quot;&#10;&#32;\"/>\n"
            "\t\t\t<String value=\"literal\"/>\n"
            "\t\t</Obj>\n"
            "\t\t<String value=\"" +
                std::string(235, 'x') + "\"/>\n\t\t<String value=\"" + std::string(236, 'y') +
                "\"/>\n"
                "\t</Obj>\n"
                "</QXXMLRoot>");  // no line feed at the very end

  std::ifstream in;
  Open(in, out.str());
  ASSERT_TRUE(ParseStartXML(in) && ParseStartObj(in, "QXOuter"));
  int i;
  unsigned int u;
  bool b = false;
  long l[2];
  double d[6];
  std::string s[5];
  EXPECT_TRUE(ParseValue(in, i) && ParseValue(in, u) && ParseValue(in, b));
  for (long& v : l)
    EXPECT_TRUE(ParseValue(in, v));
  for (double& v : d)
    EXPECT_TRUE(ParseValue(in, v));  // "nan" doesn't parse, and no failure
  EXPECT_TRUE(ParseStartObj(in, "A&B"));
  for (int k = 0; k < 4; ++k)
    EXPECT_TRUE(ParseValue(in, s[k]));
  EXPECT_TRUE(ParseEndObj(in) && ParseValue(in, s[4]));
  EXPECT_EQ(i, -2147483647 - 1);
  EXPECT_EQ(u, 4294967295u);
  EXPECT_TRUE(b);
  EXPECT_EQ(l[0], -999999999999999L);
  EXPECT_EQ(l[1], 1);          // read up to the point
  EXPECT_NE(d[0], 1.0 / 3.0);  // 15 digits
  EXPECT_NEAR(d[0], 1.0 / 3.0, 1e-15);
  EXPECT_EQ(d[1], MV::gMissingValue);
  EXPECT_EQ(d[2], MV::gMissingValue);  // 15 digits round past the largest double
  EXPECT_FALSE(std::isnan(d[3]));
  EXPECT_EQ(d[4], -1e-300);
  EXPECT_EQ(d[5], 1234.0);
  EXPECT_EQ(s[0], "");
  EXPECT_EQ(s[1], "&#32;&#32;");  // entities are not decoded
  EXPECT_EQ(s[2], "&#32;a&amp;b &lt;c&gt;&#9;&quot;d&quot;&#10;&#32;");
  EXPECT_EQ(s[3], "literal");
  EXPECT_EQ(s[4], std::string(235, 'x'));
  EXPECT_FALSE(ParseValue(in, s[4]));
  EXPECT_EQ(s[4], std::string(235, 'x'));
  EXPECT_FALSE(ParseEndObj(in));  // the stream has failed for good
}

// Random objects of every kind of field, with every character a string value
// escapes and every kind of number, in the classic locale and one with a
// decimal comma: the bytes are those the line rules give.
TEST_F(XMLIOTest, RandomFieldsGiveTheBytesOfTheLineRules) {
  const std::string why = internal::InClassicAndDecimalCommaLocales([](int pass) {
    std::mt19937 random(pass);
    std::ostringstream out;
    std::string expected;
    for (int i = 0; i < 3000; ++i) {
      const int depth = static_cast<int>(random() % 4);
      const XMLObj obj(random() % 2 ? "QXContVar" : "A&B \xC3\xA9", depth);
      const std::string tabs(depth, '\t'), field = "\n\t" + tabs + "<";
      const double x = internal::RandomNumber(random);
      const int n = static_cast<int>(random()) >> (random() % 32);
      const std::string text = internal::RandomMarkupText(random, 30);
      obj.StartObj(out);
      obj.WriteSubElement(out, x);
      obj.WriteSubElement(out, n);
      obj.WriteSubElement(out, static_cast<unsigned>(n));
      obj.WriteSubElement(out, n % 2 == 0);
      obj.WriteSubElement(out, static_cast<long>(n) * 1048576L);
      obj.WriteSubElement(out, text);
      obj.EndObj(out);
      expected += "\n" + tabs + "<Obj name=\"" + obj.GetName() + "\">" + field + "Double value=\"" +
                  (x == MV::gMissingValue ? "Missing" : internal::ReferenceNumber(x)) + "\"/>" +
                  field + "Int value=\"" + internal::ReferenceNumber(n) + "\"/>" + field +
                  "Int value=\"" + internal::ReferenceNumber(static_cast<unsigned>(n)) + "\"/>" +
                  field + "Int value=\"" + (n % 2 == 0 ? "1" : "0") + "\"/>" + field +
                  "Long value=\"" + internal::ReferenceNumber(static_cast<long>(n) * 1048576L) +
                  "\"/>" + field + "String value=\"" + internal::ReferenceEscape(text) + "\"/>\n" +
                  tabs + "</Obj>";
    }
    EXPECT_EQ(out.str(), expected) << "pass " << pass;
  });
  if (!why.empty()) GTEST_SKIP() << why;
}

TEST_F(XMLIOTest, WrongElementsEmptyLinesAndEndOfFile) {
  // Each case: the lines one call reads, the call, whether it succeeds, and
  // the value of the call's target afterwards (targets start at 1, 1, 1.5).
  const struct {
    const char* lines;
    char call;  // b bool, i int, d double, o <Obj name="QXA">, e </Obj>
    bool ok;
    double value;
  } cases[] = {
      {"<Int value=\"2\"/>", 'b', false, 1},  // 2 is not a bool: the target stays
      {"<Int value=\"2\"/>", 'i', true, 2},
      {"<Int value=\"7\"/>", 'd', false, 1.5},  // the element name must match
      {"<Long value=\"5\"/>", 'i', false, 2},
      {"<Int  value=\"5\"/>", 'i', false, 2},  // the attribute follows one blank
      {"<Int value=", 'i', false, 2},          // a number needs a value
      {"<Int value=\"abc\"/>", 'i', true, 0},  // which is 0 if it doesn't parse
      {"\n<Obj name=\"QXA\">", 'o', true, 0},  // one empty line is forgiven
      {"\t</Obj>", 'e', true, 0},
      {"\n", 'o', false, 0},  // two are not
      {"<Obj name=\"QXB\">", 'o', false, 0},
      {"", 'i', false, 0},  // nor is one ahead of a value
      {"</QXXMLRoot>", 'e', false, 0},
      {"", 'e', false, 0},  // end of file
  };
  std::string text;
  for (const auto& c : cases)
    text += std::string(c.lines) + "\n";
  std::ifstream in;
  Open(in, text.substr(0, text.size() - 2));
  bool b = true;
  int i = 1;
  double d = 1.5;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.lines);
    switch (c.call) {
      case 'b':
        EXPECT_EQ(ParseValue(in, b), c.ok);
        EXPECT_EQ(b, c.value != 0);
        break;
      case 'i':
        EXPECT_EQ(ParseValue(in, i), c.ok);
        EXPECT_EQ(i, c.value);
        break;
      case 'd':
        EXPECT_EQ(ParseValue(in, d), c.ok);
        EXPECT_EQ(d, c.value);
        break;
      case 'o':
        EXPECT_EQ(ParseStartObj(in, "QXA"), c.ok);
        break;
      case 'e':
        EXPECT_EQ(ParseEndObj(in), c.ok);
        break;
    }
  }
  std::ifstream header;
  Open(header, "<?xml version=\"1.0\"?>\n<!DOCTYPE QXXMLRoot>\n<Other>\n");
  EXPECT_FALSE(ParseStartXML(header));
}

TEST_F(XMLIOTest, UnsignedValuesFollowTheCLocale) {
  const std::string lines =
      "<Int value=\"1.2e+3\"/>\n<Int value=\"-1\"/>\n<Int value=\"1e300\"/>\n<Double "
      "value=\"0.5\"/>";
  unsigned int u[3];
  double d = 0.0;
  const auto readAll = [&] {
    std::ifstream in;
    Open(in, lines);
    for (unsigned int& v : u)
      EXPECT_TRUE(ParseValue(in, v));
    EXPECT_TRUE(ParseValue(in, d));
  };
  readAll();
  EXPECT_EQ(u[0], 1200u);
  EXPECT_EQ(u[1], 4294967295u);
  EXPECT_EQ(u[2], 0u);  // out of range, and no undefined conversion
  EXPECT_EQ(d, 0.5);

  std::string why;
  if (!QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                         QX_TEST_BINARY_DIR "/test-locales", why)) {
    GTEST_SKIP() << why;
  }
  // A decimal comma cuts the text at the point; doubles and the writer keep
  // the classic locale.
  readAll();
  EXPECT_EQ(u[0], 1u);
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
    for (int k = 0; k < count; ++k)
      XMLObj("", 0).WriteSubElement(out, std::to_string(f * count + k));
    Open(files[f], out.str().substr(1));
  }
  int wrong[2] = {0, 0};
  auto reader = [&](int f) {
    std::string s;
    for (int k = 0; k < count; ++k) {
      if (!ParseValue(files[f], s) || s != std::to_string(f * count + k)) ++wrong[f];
    }
  };
  std::thread first(reader, 0), second(reader, 1);
  first.join();
  second.join();
  EXPECT_EQ(wrong[0] + wrong[1], 0);
}

}  // namespace
}  // namespace QXXML_850
