#include "qx/markup/xmlutil.h"

#include <cstdio>
#include <cstring>

#include "qx/foundation/mbtoutf8_unix.h"

namespace QXXML_850 {

const int XMLUtil::TAB_LENGTH = 8;
const char XMLUtil::FIRST_LINE[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>";
const char XMLUtil::ROWSEP[] = "\n";
const char XMLUtil::ITEMINDENT[] = "\t";
const char XMLUtil::QUOTE[] = "\"";
const char XMLUtil::EQUAL[] = "=";
const char XMLUtil::BEGIN_ELEMENT[] = "<";
const char XMLUtil::BEGIN_PREPROCESSOR[] = "!";
const char XMLUtil::END_ELEMENT[] = ">";
const char XMLUtil::BEGIN_END_ELEMENT[] = "/";
const char XMLUtil::SPACE[] = " ";
const char XMLUtil::AMPERSAND[] = "&";
const char XMLUtil::LESS_THAN[] = "<";
const char XMLUtil::GREATER_THAN[] = ">";
const char XMLUtil::XML_AMPERSAND[] = "&amp;";
const char XMLUtil::XML_LESS_THAN[] = "&lt;";
const char XMLUtil::XML_GREATER_THAN[] = "&gt;";
const char XMLUtil::XML_QUOTE[] = "&quot;";
const char XMLUtil::XML_CHARREF_TAB[] = "&#9;";
const char XMLUtil::XML_CHARREF_NL[] = "&#10;";
const char XMLUtil::XML_CHARREF_CR[] = "&#13;";
const char XMLUtil::XML_CHARREF_SP[] = "&#32;";
const char XMLUtil::XML_SP_CHARREF_SP[] = " &#32;";

std::string XMLUtil::GetTabs(int n) {
  return n < 1 ? std::string() : std::string(static_cast<size_t>(n), '\t');
}

std::string XMLUtil::toString(int value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%d", value);
  return buffer;
}

int XMLUtil::ReplaceAtPos(std::string& target, const char* find, const std::string& replacement,
                          int& position) {
  if (position < 0 || static_cast<long>(target.size()) < position) return -1;
  const size_t findLength = find == nullptr ? 0 : std::strlen(find);
  const size_t hit =
      findLength == 0 ? std::string::npos : target.find(find, static_cast<size_t>(position));
  if (hit == std::string::npos) {
    --position;  // the distance of a miss counts as -1
    return -1;
  }
  target.replace(hit, findLength, replacement);
  position = static_cast<int>(hit);
  return position;
}

int XMLUtil::ReplaceString(std::string& target, const char* find, const std::string& replacement) {
  int position = 0;
  return ReplaceAtPos(target, find, replacement, position);
}

// The same result as repeating ReplaceAtPos and stepping over each
// replacement, built in one pass so a text full of specials stays linear.
void XMLUtil::ReplaceAll(std::string& target, const char* find, const std::string& replacement) {
  const size_t findLength = find == nullptr ? 0 : std::strlen(find);
  if (findLength == 0) return;
  size_t hit = target.find(find);
  if (hit == std::string::npos) return;
  std::string result;
  result.reserve(target.size());
  size_t from = 0;
  for (; hit != std::string::npos; hit = target.find(find, from)) {
    result.append(target, from, hit - from);
    result += replacement;
    from = hit + findLength;
  }
  result.append(target, from, std::string::npos);
  target.swap(result);
}

std::string XMLUtil::Escape(const std::string& text) {
  std::string result = text;
  ReplaceAll(result, AMPERSAND, XML_AMPERSAND);  // first, or it would hit the others' output
  ReplaceAll(result, LESS_THAN, XML_LESS_THAN);
  ReplaceAll(result, GREATER_THAN, XML_GREATER_THAN);
  ReplaceAll(result, QUOTE, XML_QUOTE);
  ReplaceAll(result, "\t", XML_CHARREF_TAB);
  ReplaceAll(result, "\n", XML_CHARREF_NL);
  ReplaceAll(result, "\r", XML_CHARREF_CR);
  ReplaceAll(result, "  ", XML_SP_CHARREF_SP);
  if (!result.empty() && result.front() == ' ') result.replace(0, 1, XML_CHARREF_SP);
  if (!result.empty() && result.back() == ' ') result.replace(result.size() - 1, 1, XML_CHARREF_SP);
  return result;
}

int Write(std::ostream& os, const std::string& text) {
  for (char c : text)
    os.put(c);
  return 0;
}

int WriteUTF(std::ostream& os, const std::string& text) {
  return Write(os, MbToUTF8(text));
}

}  // namespace QXXML_850
