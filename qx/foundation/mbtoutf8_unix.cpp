#include "qx/foundation/mbtoutf8_unix.h"

#include <langinfo.h>

#include <cstring>
#include <vector>

namespace QXXML_850 {

namespace {
const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);
}  // namespace

iconv_t iconvOpen(const char* fromCode) {
  iconv_t converter = iconv_open("UTF-8", fromCode);
  if (converter == kNoConverter) converter = iconv_open("utf8", fromCode);
  return converter;
}

std::string MbToUTF8(std::string text) {
  const char* codeset = nl_langinfo(CODESET);
  if (codeset == nullptr) codeset = "";
  iconv_t converter = iconvOpen(codeset);
  if (converter == kNoConverter) {
    // Some systems call an ISO encoding "ISO 8859-1" where iconv knows "8859-1".
    if (std::strncmp(codeset, "ISO", 3) == 0) {
      const char* rest = codeset + 3;
      while (*rest == ' ')
        ++rest;
      converter = iconvOpen(rest);
    }
    if (converter == kNoConverter) converter = iconvOpen("8859-1");
  }
  if (converter == kNoConverter) return std::string();

  // Four bytes of UTF-8 per input byte is more than any encoding needs.
  std::vector<char> output(4 * text.size() + 1);
  char* in = &text[0];
  size_t inLeft = text.size();
  char* out = output.data();
  size_t outLeft = output.size();
  iconv(converter, &in, &inLeft, &out, &outLeft);
  iconv_close(converter);
  return std::string(output.data(), out - output.data());
}

}  // namespace QXXML_850
