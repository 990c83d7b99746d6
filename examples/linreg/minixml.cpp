#include "minixml.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

namespace linreg {

const std::string* XmlNode::Attribute(const std::string& key) const {
  for (const auto& a : attributes) {
    if (a.first == key) return &a.second;
  }
  return nullptr;
}

const XmlNode* XmlNode::Child(const std::string& key) const {
  for (const XmlNode& c : children) {
    if (c.name == key) return &c;
  }
  return nullptr;
}

namespace {

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == ':' || c == '-' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

class Parser {
 public:
  Parser(const std::string& text, const std::string& shownName, Code code)
      : s(text), name(shownName), code(code) {}

  XmlNode Document() {
    if (s.size() > kMaxXmlBytes) Fail("the document is larger than the reader accepts");
    if (s.compare(0, 3, "\xEF\xBB\xBF") == 0) pos = 3;
    Misc();
    if (pos >= s.size() || s[pos] != '<') Fail("no root element");
    XmlNode root = Element(0);
    Misc();
    if (pos < s.size()) Fail("text after the root element");
    return root;
  }

 private:
  [[noreturn]] void Fail(const std::string& what) {
    long line = 1;
    for (std::size_t i = 0; i < pos && i < s.size(); ++i)
      line += s[i] == '\n';
    throw InputError{code, name + ":" + std::to_string(line) + ": error: " + what};
  }

  bool At(const char* token) const { return s.compare(pos, std::strlen(token), token) == 0; }

  void SkipPast(const char* token, const char* what) {
    const std::size_t at = s.find(token, pos);
    if (at == std::string::npos) Fail(std::string("unterminated ") + what);
    pos = at + std::strlen(token);
  }

  void Space() {
    while (pos < s.size() && IsSpace(s[pos]))
      ++pos;
  }

  // Blanks, comments, processing instructions and a document type.
  void Misc() {
    while (true) {
      Space();
      if (At("<?")) {
        SkipPast("?>", "processing instruction");
      } else if (At("<!--")) {
        SkipPast("-->", "comment");
      } else if (At("<!DOCTYPE")) {
        // Up to the '>' that closes it, past an internal subset in brackets.
        int depth = 0;
        while (pos < s.size() && (s[pos] != '>' || depth > 0)) {
          depth += s[pos] == '[' ? 1 : (s[pos] == ']' ? -1 : 0);
          ++pos;
        }
        if (pos >= s.size()) Fail("unterminated document type");
        ++pos;
      } else {
        return;
      }
    }
  }

  std::string Name() {
    const std::size_t start = pos;
    while (pos < s.size() && IsNameChar(s[pos]))
      ++pos;
    if (pos == start) Fail("a name was expected");
    return s.substr(start, pos - start);
  }

  static void AppendUtf8(unsigned long c, std::string& out) {
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }

  // Text up to `stop` (not consumed), with references replaced.
  std::string Chars(char stop) {
    std::string out;
    while (pos < s.size() && s[pos] != stop) {
      const char c = s[pos];
      if (c == '<' && stop == '<') break;
      if (c == '<') Fail("'<' inside an attribute value");
      if (c != '&') {
        out += c;
        ++pos;
        continue;
      }
      const std::size_t semi = s.find(';', pos);
      if (semi == std::string::npos || semi - pos > 12) Fail("a malformed character reference");
      const std::string ref = s.substr(pos + 1, semi - pos - 1);
      pos = semi + 1;
      if (ref == "lt") {
        out += '<';
      } else if (ref == "gt") {
        out += '>';
      } else if (ref == "amp") {
        out += '&';
      } else if (ref == "quot") {
        out += '"';
      } else if (ref == "apos") {
        out += '\'';
      } else if (ref.size() > 1 && ref[0] == '#') {
        const bool hex = ref[1] == 'x';
        const std::string digits = ref.substr(hex ? 2 : 1);
        if (digits.empty() || digits.find_first_not_of(hex ? "0123456789abcdefABCDEF"
                                                           : "0123456789") != std::string::npos) {
          Fail("a malformed character reference");
        }
        const unsigned long value = std::strtoul(digits.c_str(), nullptr, hex ? 16 : 10);
        if (value == 0 || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
          Fail("a character reference out of range");
        }
        AppendUtf8(value, out);
      } else {
        Fail("an unknown entity '&" + ref + ";'");
      }
    }
    return out;
  }

  XmlNode Element(int depth) {
    if (depth >= kMaxXmlDepth) Fail("elements nested too deeply");
    if (++elements > kMaxXmlElements) Fail("too many elements");
    XmlNode node;
    ++pos;  // '<'
    for (std::size_t i = lineCounted; i < pos; ++i)
      lines += s[i] == '\n';
    lineCounted = pos;
    node.line = lines;
    node.name = Name();
    while (true) {
      const std::size_t before = pos;
      Space();
      if (pos >= s.size()) Fail("unterminated start tag of '" + node.name + "'");
      if (At("/>")) {
        pos += 2;
        return node;
      }
      if (s[pos] == '>') {
        ++pos;
        break;
      }
      if (pos == before) Fail("a blank was expected between attributes");
      std::string key = Name();
      Space();
      if (pos >= s.size() || s[pos] != '=') Fail("'=' expected after attribute '" + key + "'");
      ++pos;
      Space();
      if (pos >= s.size() || (s[pos] != '"' && s[pos] != '\'')) Fail("a quoted value expected");
      const char quote = s[pos++];
      std::string value = Chars(quote);
      if (pos >= s.size()) Fail("unterminated attribute value");
      ++pos;
      if (node.Attribute(key) != nullptr) Fail("attribute '" + key + "' given twice");
      node.attributes.emplace_back(std::move(key), std::move(value));
    }
    // Content up to the matching end tag.
    while (true) {
      node.text += Chars('<');
      if (pos >= s.size()) Fail("element '" + node.name + "' is not closed");
      if (At("</")) {
        pos += 2;
        if (Name() != node.name) Fail("the end tag does not match '" + node.name + "'");
        Space();
        if (pos >= s.size() || s[pos] != '>') Fail("unterminated end tag");
        ++pos;
        return node;
      }
      if (At("<!--")) {
        SkipPast("-->", "comment");
      } else if (At("<?")) {
        SkipPast("?>", "processing instruction");
      } else if (At("<![CDATA[")) {
        const std::size_t start = pos + 9;
        SkipPast("]]>", "CDATA section");
        node.text += s.substr(start, pos - 3 - start);
      } else {
        node.children.push_back(Element(depth + 1));
      }
    }
  }

  const std::string& s;
  const std::string& name;
  Code code;
  std::size_t pos = 0;
  long elements = 0;
  long lines = 1;
  std::size_t lineCounted = 0;
};

}  // namespace

XmlNode ParseXml(const std::string& text, const std::string& shownName, Code code) {
  return Parser(text, shownName, code).Document();
}

XmlNode ParseXmlFile(const std::string& path, Code code) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    throw InputError{kCannotOpen,
                     path + ": error: cannot open the file (" + std::strerror(errno) + ")"};
  }
  std::string text;
  char chunk[65536];
  while (in.read(chunk, sizeof chunk) || in.gcount() > 0) {
    text.append(chunk, static_cast<std::size_t>(in.gcount()));
    if (text.size() > kMaxXmlBytes) {
      throw InputError{code, path + ": error: the document is larger than the reader accepts"};
    }
  }
  return ParseXml(text, path, code);
}

}  // namespace linreg
