#ifndef QX_MARKUP_INTERNAL_WRITERREFERENCE_H
#define QX_MARKUP_INTERNAL_WRITERREFERENCE_H

// Test support (never installed): the writers' escaping and number rules
// spelled out step by step, the yardstick the one-pass writers are held to,
// and random text and numbers that exercise every one of those rules.

#include <cstdint>
#include <cstring>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include "qx/foundation/internal/testlocale.h"
#include "qx/markup/xmlutil.h"

namespace QXXML_850 {
namespace internal {

// An attribute value: seven replacements in turn, then blanks in pairs from
// the left, then a blank at either end.
inline std::string ReferenceEscape(std::string text) {
  const char* const steps[][2] = {{"&", "&amp;"},   {"<", "&lt;"},   {">", "&gt;"},
                                  {"\"", "&quot;"}, {"\t", "&#9;"},  {"\n", "&#10;"},
                                  {"\r", "&#13;"},  {"  ", " &#32;"}};
  for (const auto& step : steps)
    XMLUtil::ReplaceAll(text, step[0], step[1]);
  if (!text.empty() && text.front() == ' ') text.replace(0, 1, "&#32;");
  if (!text.empty() && text.back() == ' ') text.replace(text.size() - 1, 1, "&#32;");
  return text;
}

// A text node: "&" first, then "<".
inline std::string ReferenceText(std::string text) {
  XMLUtil::ReplaceAll(text, "&", "&amp;");
  XMLUtil::ReplaceAll(text, "<", "&lt;");
  return text;
}

// A number as a classic-locale stream writes it: 15 significant digits, or
// fixed with 16 decimals.
inline std::string ReferenceNumber(double value, bool fixed = false) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  if (fixed) out.setf(std::ios::fixed, std::ios::floatfield);
  out.precision(fixed ? 16 : 15);
  out << value;
  return out.str();
}

// Up to `maxPieces` pieces: letters, every character either escape touches,
// runs of blanks, UTF-8, a byte no encoding accepts and a zero byte.
inline std::string RandomMarkupText(std::mt19937& random, int maxPieces) {
  static const std::string pieces[] = {
      "a",  "Zq",   "07", "&",  "<",   ">",        "\"",           "'",    "\t",
      "\n", "\r",   " ",  "  ", "   ", "\xC3\xA9", "\xE2\x82\xAC", "\xFF", std::string(1, '\0'),
      ";",  "&amp;"};
  std::string text;
  for (int i = static_cast<int>(random() % (maxPieces + 1u)); i > 0; --i)
    text += pieces[random() % 20];
  return text;
}

// Any bit pattern (NaN, infinities, subnormals), a short decimal, an integer
// of any size, or the missing value.
inline double RandomNumber(std::mt19937& random) {
  const std::uint64_t bits = (static_cast<std::uint64_t>(random()) << 32) | random();
  double value;
  std::memcpy(&value, &bits, sizeof value);
  switch (random() % 4) {
    case 0:
      return value;
    case 1:
      return static_cast<int>(random() % 2000001 - 1000000) * 1e-3;
    case 2:
      return static_cast<double>(static_cast<std::int64_t>(bits) >> (random() % 64));
    default:
      return -1.7976931348623157e308;
  }
}

// Runs `body(pass)` in the classic locale (pass 0), then in de_DE.UTF-8,
// whose decimal comma the writers must ignore (pass 1). Returns why the
// second pass could not run, or "".
template <typename Body>
std::string InClassicAndDecimalCommaLocales(Body body) {
  body(0);
  std::string why;
  if (QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                        QX_TEST_BINARY_DIR "/test-locales", why)) {
    body(1);
  }
  QXCommon_850::internal::UseClassicLocale();
  return why;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_MARKUP_INTERNAL_WRITERREFERENCE_H
