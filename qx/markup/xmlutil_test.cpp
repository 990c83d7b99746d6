#include "qx/markup/xmlutil.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace QXXML_850 {
namespace {

TEST(XMLUtilTest, EscapesAttributeValues) {
  const struct {
    const char* text;
    const char* escaped;
  } cases[] = {
      {"", ""},
      {"plain", "plain"},
      {"&<>\"'", "&amp;&lt;&gt;&quot;'"},
      {"&amp;", "&amp;amp;"},  // an entity in the input is text, not markup
      {"a\tb\nc\rd", "a&#9;b&#10;c&#13;d"},
      {" ", "&#32;"},
      {"  ", "&#32;&#32;"},
      {" a ", "&#32;a&#32;"},
      {"a b", "a b"},
      {"a  b", "a &#32;b"},
      {"a   b", "a &#32; b"},
      {"a    b", "a &#32; &#32;b"},
      {"a   ", "a &#32;&#32;"},
      {"   a", "&#32;&#32; a"},
      {"\xC3\xA9 \x01", "\xC3\xA9 \x01"},  // other bytes pass as they are
  };
  for (const auto& c : cases)
    EXPECT_EQ(XMLUtil::Escape(c.text), c.escaped) << '"' << c.text << '"';
  EXPECT_EQ(XMLUtil::Escape(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(XMLUtilTest, ReplaceAllNeverLooksIntoItsOwnOutput) {
  std::string text = "a&b&&";
  XMLUtil::ReplaceAll(text, "&", "&amp;");
  EXPECT_EQ(text, "a&amp;b&amp;&amp;");
  XMLUtil::ReplaceAll(text, "&amp;", "&amp;amp;");
  EXPECT_EQ(text, "a&amp;amp;b&amp;amp;&amp;amp;");

  text = "aaaa";
  XMLUtil::ReplaceAll(text, "aa", "b");  // non-overlapping, left to right
  EXPECT_EQ(text, "bb");
  text = "aaa";
  XMLUtil::ReplaceAll(text, "a", "aa");
  EXPECT_EQ(text, "aaaaaa");
  XMLUtil::ReplaceAll(text, "a", "");
  EXPECT_EQ(text, "");
  text = "ab";
  XMLUtil::ReplaceAll(text, "abc", "x");
  XMLUtil::ReplaceAll(text, "", "x");  // an empty pattern matches nothing and ends
  XMLUtil::ReplaceAll(text, nullptr, "x");
  EXPECT_EQ(text, "ab");

  std::string big(100000, '&');  // linear, however many replacements
  XMLUtil::ReplaceAll(big, "&", "&amp;");
  EXPECT_EQ(big.size(), 500000u);
}

TEST(XMLUtilTest, ReplaceAtPosMovesThePosition) {
  std::string text = "xaxa";
  int position = 2;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position), 3);
  EXPECT_EQ(position, 3);
  EXPECT_EQ(text, "xaxBB");

  position = 4;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position), -1);  // no hit
  EXPECT_EQ(position, 3);                                           // drops by one
  position = 6;
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position), -1);  // beyond the end
  EXPECT_EQ(position, 6);
  position = 5;  // at the very end: searched, nothing there
  EXPECT_EQ(XMLUtil::ReplaceAtPos(text, "a", "BB", position), -1);

  text = "a-a";
  EXPECT_EQ(XMLUtil::ReplaceString(text, "a", "b"), 0);
  EXPECT_EQ(text, "b-a");  // the first one only
}

TEST(XMLUtilTest, SmallPiecesAndWriters) {
  EXPECT_EQ(XMLUtil::GetTabs(-1), "");
  EXPECT_EQ(XMLUtil::GetTabs(0), "");
  EXPECT_EQ(XMLUtil::GetTabs(3), "\t\t\t");
  EXPECT_EQ(XMLUtil::toString(-42), "-42");
  EXPECT_EQ(XMLUtil::toString(2147483647), "2147483647");
  EXPECT_EQ(XMLUtil::TAB_LENGTH, 8);
  EXPECT_STREQ(XMLUtil::FIRST_LINE, "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>");
  EXPECT_STREQ(XMLUtil::XML_SP_CHARREF_SP, " &#32;");

  std::ostringstream out;
  EXPECT_EQ(Write(out, std::string("a\0\xFF", 3)), 0);
  EXPECT_EQ(out.str(), std::string("a\0\xFF", 3));
}

}  // namespace
}  // namespace QXXML_850
