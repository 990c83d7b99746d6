#include "qx/markup/xmlutil.h"

#include <gtest/gtest.h>

#include <string>

namespace QXXML_850 {
namespace {

TEST(XMLUtilTest, EscapesAttributeValues) {
  const char* const cases[][2] = {
      {"", ""},
      {"&<>\"'", "&amp;&lt;&gt;&quot;'"},
      {"&amp;", "&amp;amp;"},
      {"a\tb\nc\rd", "a&#9;b&#10;c&#13;d"},
      {" ", "&#32;"},
      {"  ", "&#32;&#32;"},
      {" a ", "&#32;a&#32;"},
      {"a   b", "a &#32; b"},
      {"a    b", "a &#32; &#32;b"},
      {"\xC3\xA9 \x01", "\xC3\xA9 \x01"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(XMLUtil::Escape(c[0]), c[1]) << '"' << c[0] << '"';
}

TEST(XMLUtilTest, ReplacementsNeverLookIntoTheirOwnOutput) {
  std::string text = "a&b&&";
  XMLUtil::ReplaceAll(text, "&", "&amp;");
  EXPECT_EQ(text, "a&amp;b&amp;&amp;");
  text = "aaa";
  XMLUtil::ReplaceAll(text, "aa", "b");
  XMLUtil::ReplaceAll(text, "", "x");  // an empty pattern matches nothing, and ends
  EXPECT_EQ(text, "ba");
  std::string big(100000, '&');  // linear however many replacements
  XMLUtil::ReplaceAll(big, "&", "&amp;");
  EXPECT_EQ(big.size(), 500000u);

  text = "xaxa";
  int position = 2;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position), 3);
  EXPECT_EQ(text, "xaxBB");
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position = 4), -1);
  EXPECT_EQ(position, 3);  // a miss lowers the position by one
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position = 6), -1);
  EXPECT_EQ(position, 6);  // beyond the end it stays
}

}  // namespace
}  // namespace QXXML_850
