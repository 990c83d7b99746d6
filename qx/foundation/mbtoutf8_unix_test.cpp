#include "qx/foundation/mbtoutf8_unix.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "qx/foundation/internal/testlocale.h"

namespace QXXML_850 {
namespace {

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);

class MbToUTF8Test : public ::testing::Test {
 protected:
  void TearDown() override { QXCommon_850::internal::UseClassicLocale(); }
};

TEST_F(MbToUTF8Test, OpensConvertersByEitherName) {
  iconv_t converter = iconvOpen("ISO-8859-1");
  ASSERT_NE(converter, kNoConverter);
  iconv_close(converter);
  EXPECT_EQ(iconvOpen("qx-no-such-encoding"), kNoConverter);
}

TEST_F(MbToUTF8Test, ConversionStopsAtTheFirstInvalidSequence) {
  // The C locale's encoding is ASCII: any byte above 127 ends the text.
  ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
  EXPECT_EQ(MbToUTF8(""), "");
  EXPECT_EQ(MbToUTF8("plain <text> & \"quotes\"\t\n"), "plain <text> & \"quotes\"\t\n");
  EXPECT_EQ(MbToUTF8("caf\xC3\xA9 au lait"), "caf");

  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  EXPECT_EQ(MbToUTF8("caf\xC3\xA9 \xE2\x82\xAC"), "caf\xC3\xA9 \xE2\x82\xAC");
  EXPECT_EQ(MbToUTF8("ab\xFF"
                     "cd"),
            "ab");
  EXPECT_EQ(MbToUTF8("ab\xC3"), "ab");  // cut in the middle of a character
  EXPECT_EQ(MbToUTF8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(MbToUTF8Test, ConvertsFromASingleByteLocale) {
  std::string why;
  if (!QXCommon_850::internal::UseLocale("de_DE.ISO-8859-1", "de_DE", "ISO-8859-1",
                                         QX_TEST_BINARY_DIR "/test-locales", why)) {
    GTEST_SKIP() << why;
  }
  EXPECT_EQ(MbToUTF8("caf\xE9 \xFC\xDF"), "caf\xC3\xA9 \xC3\xBC\xC3\x9F");
  const std::string high(1000, '\xFF');  // every byte doubles in size
  EXPECT_EQ(MbToUTF8(high).size(), 2000u);
}

}  // namespace
}  // namespace QXXML_850
