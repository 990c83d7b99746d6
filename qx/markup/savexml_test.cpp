#include "qx/markup/savexml.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

namespace QXXML_850 {
namespace {

TEST(SaveXMLTest, WritesTheDocumentedBytes) {
  std::ostringstream out;
  StartDocument(out);
  StartRoot(out, "(c)  Q&A");
  const XMLObj random("QXURandom", 1);
  random.StartObj(out);
  random.WriteSubElement(out, 1234.0);
  random.WriteSubElement(out, 1);
  random.WriteSubElement(out, 0);
  const XMLObj inner("A&B", 2);  // a class name goes out bare
  inner.StartObj(out);
  inner.WriteSubElement(out, MV::gMissingValue);
  inner.WriteSubElement(out, std::nextafter(MV::gMissingValue, 0.0));
  inner.WriteSubElement(out, std::numeric_limits<double>::quiet_NaN());
  inner.WriteSubElement(out, 4294967295u);
  inner.WriteSubElement(out, true);
  inner.WriteSubElement(out, 1234567890123456L);
  inner.WriteSubElement(out, std::string(" a&b <c>\t\"d\"\n "));
  inner.WriteSubElement(out, "literal");  // a string, not a bool
  inner.EndObj(out);
  random.EndObj(out);
  EndRoot(out);
  EXPECT_EQ(out.str(),
            "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
            "<!DOCTYPE QXXMLRoot SYSTEM \"savexml.dtd\">\n"
            "<QXXMLRoot copyright=\"(c) &#32;Q&amp;A\">\n"
            "\t<Obj name=\"QXURandom\">\n"
            "\t\t<Double value=\"1234\"/>\n"
            "\t\t<Int value=\"1\"/>\n"
            "\t\t<Int value=\"0\"/>\n"
            "\t\t<Obj name=\"A&B\">\n"
            "\t\t\t<Double value=\"Missing\"/>\n"
            "\t\t\t<Double value=\"-1.79769313486232e+308\"/>\n"
            "\t\t\t<Double value=\"nan\"/>\n"
            "\t\t\t<Int value=\"4294967295\"/>\n"
            "\t\t\t<Int value=\"1\"/>\n"
            "\t\t\t<Long value=\"1.23456789012346e+15\"/>\n"
            "\t\t\t<String value=\"&#32;a&amp;b &lt;c&gt;&#9;&quot;d&quot;&#10;&#32;\"/>\n"
            "\t\t\t<String value=\"literal\"/>\n"
            "\t\t</Obj>\n"
            "\t</Obj>\n"
            "</QXXMLRoot>");  // no line feed at the very end
}

}  // namespace
}  // namespace QXXML_850
