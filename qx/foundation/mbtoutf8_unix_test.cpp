#include "qx/foundation/mbtoutf8_unix.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "qx/foundation/internal/testlocale.h"

namespace QXXML_850 {
namespace {

TEST(MbToUTF8Test, ConversionStopsAtTheFirstInvalidSequence) {
  EXPECT_EQ(iconvOpen("qx-no-such-encoding"), reinterpret_cast<iconv_t>(-1));
  // The C locale's encoding is ASCII: any byte above 127 ends the text.
  ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
  EXPECT_EQ(MbToUTF8(""), "");
  EXPECT_EQ(MbToUTF8("<a b=\"c\">&\t\n"), "<a b=\"c\">&\t\n");
  EXPECT_EQ(MbToUTF8("caf\xC3\xA9 au lait"), "caf");

  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  EXPECT_EQ(MbToUTF8("caf\xC3\xA9 \xE2\x82\xAC"), "caf\xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(MbToUTF8("ab\xFF"
                     "cd"),
            "ab");
  EXPECT_EQ(MbToUTF8("ab\xC3"), "ab");  // cut inside a character
  EXPECT_EQ(MbToUTF8(std::string("a\0b", 3)), std::string("a\0b", 3));

  std::string why;
  if (!QXCommon_850::internal::UseLocale("de_DE.ISO-8859-1", "de_DE", "ISO-8859-1",
                                         QX_TEST_BINARY_DIR "/test-locales", why)) {
    GTEST_SKIP() << why;
  }
  EXPECT_EQ(MbToUTF8("caf\xE9 \xFC\xDF"), "caf\xC3\xA9 \xC3\xBC\xC3\x9F");
  EXPECT_EQ(MbToUTF8(std::string(1000, '\xFF')).size(), 2000u);  // each byte doubles
  QXCommon_850::internal::UseClassicLocale();
}

}  // namespace
}  // namespace QXXML_850
