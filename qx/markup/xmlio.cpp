#include "qx/markup/xmlio.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <locale>
#include <sstream>

#include "qx/markup/internal/savexmltags.h"
#include "qx/markup/savexml.h"

namespace QXXML_850 {

namespace Tags = internal::SaveXMLTags;

namespace {

// One line of the file, with its terminating zero: the longest line that can
// be read has 255 characters.
const int kLineSize = 256;

// The delimiter sets of each kind of line, token by token.
const char kStartXMLDelims[] = " \t\r\n<>=\"";
const char kEndObjDelims[] = " \t\r\n<>";
const char kStartObjDelims[] = " \t\r\n<=\"";
const char kNameDelims[] = "\"";
const char kFirstValueDelims[] = " \t\r\n=<\"";
const char kAttributeDelims[] = "=\"";
const char kNumberDelims[] = " \t\r\n=<\"";
const char kStringDelims[] = "\r\n\"";

// A line of the file cut into tokens the way strtok does, with the position
// kept here rather than in the C library.
class Line {
 public:
  // Reads the next line; false if the stream failed, also by a line too long.
  bool Read(std::ifstream& is) {
    is.getline(buffer, kLineSize, is.widen('\n'));
    first = true;
    return !is.fail();
  }
  bool IsEmpty() const { return buffer[0] == '\0'; }
  // The next token, or null when none is left.
  char* Token(const char* delimiters) {
    char* token = strtok_r(first ? buffer : nullptr, delimiters, &save);
    first = false;
    return token;
  }

 private:
  char buffer[kLineSize] = {};
  bool first = true;
  char* save = nullptr;
};

bool Is(const char* token, const std::string& expected) {
  return token != nullptr && expected == token;
}

// Reads a line "<element attribute=..." and leaves the third token, cut by
// `valueDelims`, in `value` (null if there is none).
bool ReadValueLine(std::ifstream& is, Line& line, const std::string& element,
                   const std::string& attribute, const char* valueDelims, char*& value) {
  if (!line.Read(is)) return false;
  if (!Is(line.Token(kFirstValueDelims), element)) return false;
  if (!Is(line.Token(kAttributeDelims), attribute)) return false;
  value = line.Token(valueDelims);
  return true;
}

// A number's text; false for a missing value token.
bool ReadNumber(std::ifstream& is, const std::string& element, const std::string& attribute,
                Line& line, char*& text) {
  return ReadValueLine(is, line, element, attribute, kNumberDelims, text) && text != nullptr;
}

}  // namespace

bool ParseStartXML(std::ifstream& is) {
  const char* expected[] = {"?xml", "!DOCTYPE", "QXXMLRoot"};
  for (const char* first : expected) {
    Line line;
    if (!line.Read(is)) return false;
    if (!Is(line.Token(kStartXMLDelims), first)) return false;
  }
  return true;
}

bool ParseStartObj(std::ifstream& is, const std::string& name) {
  Line line;
  if (!line.Read(is)) return false;
  if (line.IsEmpty() && !line.Read(is)) return false;
  if (!Is(line.Token(kStartObjDelims), Tags::XML_ELE_OBJ)) return false;
  if (!Is(line.Token(kStartObjDelims), Tags::XML_ATT_OBJ)) return false;
  return Is(line.Token(kNameDelims), name);
}

bool ParseValue(std::ifstream& is, int& value) {
  Line line;
  char* text = nullptr;
  if (!ReadNumber(is, Tags::XML_ELE_INT, Tags::XML_ATT_INT, line, text)) return false;
  value = static_cast<int>(std::strtol(text, nullptr, 10));
  return true;
}

bool ParseValue(std::ifstream& is, unsigned int& value) {
  Line line;
  char* text = nullptr;
  if (!ReadNumber(is, Tags::XML_ELE_INT, Tags::XML_ATT_INT, line, text)) return false;
  // Truncation toward zero, then the low 32 bits as the hardware conversion
  // through a 64-bit integer gives them; out of that range (or NaN) gives 0.
  const double number = std::trunc(std::strtod(text, nullptr));
  if (number >= -9223372036854775808.0 && number < 9223372036854775808.0) {
    value =
        static_cast<unsigned int>(static_cast<std::uint64_t>(static_cast<std::int64_t>(number)));
  } else {
    value = 0;
  }
  return true;
}

bool ParseValue(std::ifstream& is, bool& value) {
  Line line;
  char* text = nullptr;
  if (!ReadNumber(is, Tags::XML_ELE_INT, Tags::XML_ATT_INT, line, text)) return false;
  const long number = std::strtol(text, nullptr, 10);
  if (number != 0 && number != 1) return false;
  value = number == 1;
  return true;
}

bool ParseValue(std::ifstream& is, long& value) {
  Line line;
  char* text = nullptr;
  if (!ReadNumber(is, Tags::XML_ELE_LONG, Tags::XML_ATT_LONG, line, text)) return false;
  value = std::strtol(text, nullptr, 10);
  return true;
}

bool ParseValue(std::ifstream& is, double& value) {
  Line line;
  char* text = nullptr;
  if (!ReadNumber(is, Tags::XML_ELE_DOUBLE, Tags::XML_ATT_DOUBLE, line, text)) return false;
  if (Tags::XML_VAL_MISSING == text) {
    value = MV::gMissingValue;
    return true;
  }
  std::istringstream in(text);
  in.imbue(std::locale::classic());
  in >> value;
  return true;
}

bool ParseValue(std::ifstream& is, std::string& value) {
  Line line;
  char* text = nullptr;
  if (!ReadValueLine(is, line, Tags::XML_ELE_STRING, Tags::XML_ATT_STRING, kStringDelims, text)) {
    return false;
  }
  // An empty value leaves "/>" as the token, right behind the two quotes
  // that were skipped; the two tokens before it keep this inside the line.
  if (text == nullptr || std::strcmp(text - 2, "\"\"/>") == 0) {
    value.clear();
  } else {
    value = text;
  }
  return true;
}

bool ParseEndObj(std::ifstream& is) {
  Line line;
  if (!line.Read(is)) return false;
  return Is(line.Token(kEndObjDelims), "/" + Tags::XML_ELE_OBJ);
}

}  // namespace QXXML_850
