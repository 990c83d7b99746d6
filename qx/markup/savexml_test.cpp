#include "qx/markup/savexml.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>

namespace QXXML_850 {
namespace {

TEST(SaveXMLTest, WritesTheDocumentedFile) {
  std::ostringstream out;
  EXPECT_EQ(StartDocument(out), 0);
  EXPECT_EQ(StartRoot(out, "C"), 0);
  const XMLObj random("QXURandom", 1);
  EXPECT_EQ(random.StartObj(out), 0);
  EXPECT_EQ(random.WriteSubElement(out, 1234.0), 0);
  EXPECT_EQ(random.WriteSubElement(out, 1), 0);
  EXPECT_EQ(random.WriteSubElement(out, 0), 0);
  EXPECT_EQ(random.EndObj(out), 0);
  EXPECT_EQ(EndRoot(out), 0);
  EXPECT_EQ(out.str(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "<!DOCTYPE QXXMLRoot SYSTEM \"savexml.dtd\">\n"
            "<QXXMLRoot copyright=\"C\">\n"
            "\t<Obj name=\"QXURandom\">\n"
            "\t\t<Double value=\"1234\"/>\n"
            "\t\t<Int value=\"1\"/>\n"
            "\t\t<Int value=\"0\"/>\n"
            "\t</Obj>\n"
            "</QXXMLRoot>");  // no line feed at the very end
}

TEST(SaveXMLTest, EachScalarKind) {
  const XMLObj obj("A&B", 0);
  EXPECT_EQ(obj.GetName(), "A&B");
  EXPECT_EQ(obj.GetNTabs(), 0);
  std::ostringstream out;
  obj.StartObj(out);
  obj.WriteSubElement(out, MV::gMissingValue);
  obj.WriteSubElement(out, std::numeric_limits<double>::lowest());
  obj.WriteSubElement(out, std::nextafter(std::numeric_limits<double>::lowest(), 0.0));
  obj.WriteSubElement(out, 1.0 / 3.0);
  obj.WriteSubElement(out, std::numeric_limits<double>::quiet_NaN());
  obj.WriteSubElement(out, -2147483647 - 1);
  obj.WriteSubElement(out, 4294967295u);
  obj.WriteSubElement(out, true);
  obj.WriteSubElement(out, 1234567890123456L);
  obj.WriteSubElement(out, std::string(" a&b <c>\t\"d\"\n "));
  obj.WriteSubElement(out, "literal");
  obj.EndObj(out);
  EXPECT_EQ(out.str(),
            "\n<Obj name=\"A&B\">"  // the class name goes out bare
            "\n\t<Double value=\"Missing\"/>"
            "\n\t<Double value=\"Missing\"/>"
            "\n\t<Double value=\"-1.79769313486232e+308\"/>"
            "\n\t<Double value=\"0.333333333333333\"/>"
            "\n\t<Double value=\"nan\"/>"
            "\n\t<Int value=\"-2147483648\"/>"
            "\n\t<Int value=\"4294967295\"/>"
            "\n\t<Int value=\"1\"/>"
            "\n\t<Long value=\"1.23456789012346e+15\"/>"
            "\n\t<String value=\"&#32;a&amp;b &lt;c&gt;&#9;&quot;d&quot;&#10;&#32;\"/>"
            "\n\t<String value=\"literal\"/>"
            "\n</Obj>");

  std::ostringstream root;
  WriteHeader(root, "(c) 2024  Q&A");
  EndHeader(root);
  EXPECT_EQ(root.str(), "<QXXMLRoot copyright=\"(c) 2024 &#32;Q&amp;A\">\n</QXXMLRoot>");

  std::uint64_t bits;
  std::memcpy(&bits, &MV::gMissingValue, sizeof bits);
  EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFULL);
}

}  // namespace
}  // namespace QXXML_850
