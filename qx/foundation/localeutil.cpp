#include "qx/foundation/localeutil.h"

#include <clocale>
#include <cstdio>
#include <locale>
#include <sstream>

#include "qx/foundation/internal/numbertext.h"

namespace QXXML_850 {

std::string GetDefaultNumericFormat() {
  return "%.15g";
}

std::string GetListSeparator() {
  return ";";
}

std::string GetDecimalCharacter() {
  const struct lconv* conventions = std::localeconv();
  if (conventions == nullptr || conventions->decimal_point == nullptr) return std::string();
  return conventions->decimal_point;
}

std::string ReplaceSep(double value, char* /*format*/) {
  char buffer[internal::kNumberTextSize];
  return std::string(buffer, internal::NumberText15(value, buffer));
}

std::string ReplaceSep(double value) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.setf(std::ios::fixed, std::ios::floatfield);
  out.precision(16);
  out << value;
  return out.str();
}

std::string Format(double value, bool useLocale, char* format) {
  static char defaultFormat[] = "%.15g";
  if (format == nullptr) format = defaultFormat;
  if (!useLocale) return ReplaceSep(value, format);
  // Wide enough for any fixed-notation double; a longer result is cut, never
  // written past the buffer.
  char buffer[512];
  const int written = std::snprintf(buffer, sizeof buffer, format, value);
  if (written < 0) return std::string();
  return buffer;
}

std::string Format(long value) {
  return Format(static_cast<double>(value), true, nullptr);
}

}  // namespace QXXML_850
