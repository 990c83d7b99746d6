#include "qx/random/qxurandom.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"
#include "qx/random/qxrandomtwister.h"
#include "qx/random/qxrngucongruential.h"

namespace QXMath_850 {
namespace {

constexpr std::uint64_t kModulus = 2147483647;

class FixedUser : public QXCommon_850::QXRandom {
 public:
  double NextUniform() override { return 0.25; }
};

// The published test output of the MT19937 reference program (mt19937ar.out,
// checked in with the script that writes it and checks its MD5).
TEST(QXRandomTwisterTest, ReproducesThePublishedReferenceOutput) {
  std::ifstream in(QX_RANDOM_TESTDATA "/mt19937ar.out");
  ASSERT_TRUE(in) << "missing " QX_RANDOM_TESTDATA "/mt19937ar.out";
  std::string header;
  std::getline(in, header);
  ASSERT_EQ(header, "1000 outputs of genrand_int32()");
  QXRandomTwister twister;
  const unsigned long key[] = {0x123, 0x234, 0x345, 0x456};
  twister.InitByArray(key, 4);
  for (int i = 0; i < 1000; ++i) {
    unsigned long expected = 0;
    in >> expected;
    ASSERT_EQ(twister.GetInteger32(), expected) << "output " << i;
  }
  in >> std::ws;
  std::getline(in, header);
  ASSERT_EQ(header, "1000 outputs of genrand_real2()");
  for (int i = 0; i < 1000; ++i) {
    std::string expected;
    in >> expected;
    char text[32];
    std::snprintf(text, sizeof text, "%10.8f", twister.GetRealClosedOpen());
    ASSERT_EQ(text, expected) << "real output " << i;
  }
}

TEST(QXRandomTwisterTest, AgreesWithStdMt19937AndGivesEveryOutputForm) {
  // std::mt19937 seeds by init_genrand; its default seed is the reference's 5489.
  std::mt19937 reference;
  QXRandomTwister unseeded, seeded;
  seeded.Initialize(5489);
  for (int i = 1; i <= 10000; ++i) {
    const unsigned long expected = reference();
    ASSERT_EQ(unseeded.GetInteger32(), expected) << i;
    ASSERT_EQ(seeded.GetInteger32(), expected) << i;
    if (i == 10000) {
      EXPECT_EQ(expected, 4123659995ul);  // required by the C++ standard
    }
  }
  // Only the low 32 bits of a seed count.
  for (unsigned long seed : {0ul, 1ul, 0xFFFFFFFFul, 0x100000005ul}) {
    std::mt19937 expected(static_cast<std::uint32_t>(seed));
    QXRandomTwister twister;
    twister.Initialize(seed);
    for (int i = 0; i < 700; ++i)
      ASSERT_EQ(twister.GetInteger32(), expected()) << seed;
  }
  // Each form from the same integers; a copy continues the sequence.
  std::mt19937 ints(7);
  QXRandomTwister twister;
  twister.Initialize(7);
  EXPECT_EQ(twister.GetInteger31(), static_cast<long>(ints() >> 1));
  EXPECT_EQ(twister.GetRealClosed(), ints() / 4294967295.0);
  EXPECT_EQ(twister.GetRealClosedOpen(), ints() / 4294967296.0);
  EXPECT_EQ(twister.GetRealOpen(), (ints() + 0.5) / 4294967296.0);
  const double a = ints() >> 5, b = ints() >> 6;
  EXPECT_EQ(twister.GetRealRes53(), (a * 67108864.0 + b) / 9007199254740992.0);
  QXRandomTwister copy(twister);
  QXRandomTwister assigned;
  assigned = twister;
  for (int i = 0; i < 700; ++i) {
    const unsigned long next = twister.GetInteger32();
    ASSERT_EQ(copy.GetInteger32(), next);
    ASSERT_EQ(assigned.GetInteger32(), next);
  }
}

// QXURandom's portable mode and QXRNGUCongruential are the same recurrence,
// checked here in exact integer arithmetic.
TEST(CongruentialTest, BothGeneratorsAreTheExactRecurrenceOverTwoToThe31) {
  for (std::uint64_t seed : {std::uint64_t{1}, std::uint64_t{12345}, kModulus - 1}) {
    QXURandom portable(static_cast<unsigned long>(seed), true, false, nullptr);
    QXRNGUCongruential generator;
    generator.SetSeed(static_cast<double>(seed));
    std::uint64_t x = seed;
    for (int i = 0; i < 5000; ++i) {
      x = 397204094 * x % kModulus;
      const double expected = static_cast<double>(x) / 2147483648.0;
      ASSERT_EQ(portable.GetRandom(), expected) << seed << " step " << i;
      ASSERT_EQ(generator.GetNext(), expected) << seed << " step " << i;
    }
    EXPECT_EQ(portable.GetSeed(), x);
  }
  // Kept as they are: 0 stays 0, and the modulus itself leads to 0.
  QXURandom zero(0, true, false, nullptr);
  EXPECT_EQ(zero.GetRandom() + zero.GetRandom(), 0.0);
  QXURandom modulus(kModulus, true, false, nullptr);
  EXPECT_EQ(modulus.GetRandom() + modulus.GetRandom(), 0.0);
  // A seed above the modulus isn't reduced: values above 1 until it shrinks.
  QXURandom large(1ul << 40, true, false, nullptr);
  EXPECT_GT(large.GetRandom(), 1.0);
}

TEST(QXURandomTest, PicksItsSourceByTheFlagRules) {
  FixedUser user;
  QXURandom withUser(5, true, true, &user);
  EXPECT_FALSE(withUser.GetUseTwister());
  EXPECT_EQ(withUser.GetUserRNG(), &user);
  EXPECT_EQ(withUser.GetRandom(), 0.25);

  QXURandom notPortable(5, false, true, nullptr);
  EXPECT_FALSE(notPortable.GetUseTwister());
  notPortable.SetSeed(5);
  const double fromC = notPortable.GetRandom();
  std::srand(5);
  EXPECT_EQ(fromC, std::rand() / 2147483647.0);

  // SetSeed reaches srand without the portable flag, even with a user source.
  QXURandom userC(9, false, false, &user);
  userC.SetSeed(77);
  const int afterSetSeed = std::rand();
  std::srand(77);
  EXPECT_EQ(afterSetSeed, std::rand());

  QXURandom twisterMode(42, true, true, nullptr);
  QXRandomTwister reference;
  reference.Initialize(42);
  EXPECT_TRUE(twisterMode.GetUseTwister());
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(twisterMode.GetRandom(), reference.GetRealOpen());
  twisterMode.SetSeed(43);
  reference.Initialize(43);
  EXPECT_EQ(twisterMode.GetRandom(), reference.GetRealOpen());

  // Off the portable flag ends twister mode; on again is congruential mode.
  twisterMode.SetUsePortable(false);
  EXPECT_FALSE(twisterMode.GetUseTwister());
  twisterMode.SetUsePortable(true);
  EXPECT_FALSE(twisterMode.GetUseTwister());
  EXPECT_EQ(twisterMode.GetRandom(), (397204094 * std::uint64_t{43} % kModulus) / 2147483648.0);
}

TEST(QXURandomTest, ACopyContinuesInCongruentialModeAndStartsOverInTwisterMode) {
  QXURandom twister(42, true, true, nullptr);
  const double first = twister.GetRandom();
  twister.GetRandom();
  QXURandom copy(twister);
  QXURandom assigned(1, false, false, nullptr);
  assigned = twister;
  EXPECT_TRUE(copy.GetUseTwister());
  EXPECT_EQ(copy.GetRandom(), first);
  EXPECT_EQ(assigned.GetRandom(), first);

  QXURandom portable(42, true, false, nullptr);
  portable.GetRandom();
  QXURandom portableCopy(portable);
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(portableCopy.GetRandom(), portable.GetRandom());
}

// Files in the test temp folder, removed afterwards.
class QXURandomFileTest : public ::testing::Test {
 protected:
  std::string Path() {
    paths.push_back(::testing::TempDir() + "qxurandom_" + std::to_string(getpid()) + "_" +
                    std::to_string(paths.size()));
    return paths.back();
  }
  std::string WriteFile(const std::string& bytes) {
    const std::string path = Path();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  // Twenty bytes of the binary form.
  static std::string Binary(const char* magic, double seed, std::int32_t portable,
                            std::int32_t twister) {
    std::string bytes(magic, 4);
    bytes.append(reinterpret_cast<const char*>(&seed), 8);
    bytes.append(reinterpret_cast<const char*>(&portable), 4);
    bytes.append(reinterpret_cast<const char*>(&twister), 4);
    return bytes;
  }
  static std::string Describe(const QXURandom& r) {
    return QXCommon_850::internal::CaptureDisplay([&] { r.Display(); });
  }
  void TearDown() override {
    for (const std::string& path : paths)
      std::remove(path.c_str());
  }
  std::vector<std::string> paths;
};

TEST_F(QXURandomFileTest, BinaryFormRestoresSeedAndFlags) {
  // Congruential mode: the seed is the state, so the restored copy continues.
  QXURandom portable(123456789, true, false, nullptr);
  portable.GetRandom();
  const std::string path = Path();
  {
    std::fstream out(path, std::ios::out | std::ios::binary);
    EXPECT_EQ(portable.WriteObject(out), 20);
  }
  std::ifstream raw(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(raw)), std::istreambuf_iterator<char>());
  EXPECT_EQ(bytes, Binary("QXUR", static_cast<double>(portable.GetSeed()), 1, 0));
  QXURandom restored(1, false, false, nullptr);
  std::fstream in(path, std::ios::in | std::ios::binary);
  EXPECT_EQ(restored.ReadObject(in), 20);
  EXPECT_TRUE(restored.GetUsePortable());
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(restored.GetRandom(), portable.GetRandom());

  // Twister mode: the sequence starts over from the seed, with or without SetSeed.
  QXURandom twister(987, true, true, nullptr);
  const double first = twister.GetRandom();
  std::fstream twisterFile(WriteFile(Binary("QXUR", 987.0, 1, 1)), std::ios::in | std::ios::binary);
  QXURandom lazy(5, true, false, nullptr);
  EXPECT_EQ(lazy.ReadObject(twisterFile), 20);
  EXPECT_TRUE(lazy.GetUseTwister());
  EXPECT_EQ(lazy.GetRandom(), first);
  lazy.SetSeed(987);
  EXPECT_EQ(lazy.GetRandom(), first);

  // A flag is true only as exactly 1; seeds convert through the unsigned range.
  const std::vector<std::pair<double, unsigned long>> seeds = {
      {9223372036854777856.0, 9223372036854777856ul},
      {-5.0, 0},
      {std::nan(""), 0},
      {1e30, ~0ul},
      {7.9, 7}};
  for (const auto& s : seeds) {
    std::fstream file(WriteFile(Binary("QXUR", s.first, 2, -1)), std::ios::in | std::ios::binary);
    QXURandom r(1, true, true, nullptr);
    EXPECT_EQ(r.ReadObject(file), 20);
    EXPECT_EQ(r.GetSeed(), s.second) << s.first;
    EXPECT_FALSE(r.GetUsePortable());
    EXPECT_FALSE(r.GetUseTwister());
  }

  // Wrong magic, a short file, a failed stream: 0 and the object as it was.
  const std::string before = Describe(restored);
  for (const std::string& content :
       {Binary("QXUr", 5.0, 0, 0), Binary("QXUR", 5.0, 0, 0).substr(0, 19), std::string()}) {
    std::fstream file(WriteFile(content), std::ios::in | std::ios::binary);
    EXPECT_EQ(restored.ReadObject(file), 0);
    EXPECT_EQ(Describe(restored), before);
  }
  std::fstream failed;
  EXPECT_EQ(restored.ReadObject(failed), 0);
  EXPECT_EQ(portable.WriteObject(failed), 0);
}

TEST_F(QXURandomFileTest, XMLFormIsTheDocumentedLinesAndAFailedReadChangesNothing) {
  std::ostringstream out;
  QXXML_850::StartDocument(out);
  QXXML_850::StartRoot(out, "C");
  EXPECT_EQ(QXURandom(1234, true, false, nullptr).WriteObjectXML(out, 1), 5);
  QXXML_850::EndRoot(out);
  EXPECT_NE(out.str().find(">\n\t<Obj name=\"QXURandom\">\n\t\t<Double value=\"1234\"/>\n"
                           "\t\t<Int value=\"1\"/>\n\t\t<Int value=\"0\"/>\n\t</Obj>\n"
                           "</QXXMLRoot>"),
            std::string::npos)
      << out.str();
  std::ostringstream failed;
  failed.setstate(std::ios::badbit);
  EXPECT_EQ(QXURandom(1, true, true, nullptr).WriteObjectXML(failed, 0), 0);

  std::ifstream in(WriteFile(out.str()));
  QXURandom restored(1, false, false, nullptr);
  EXPECT_TRUE(QXXML_850::ParseStartXML(in));
  EXPECT_EQ(restored.ReadObjectXML(in), 5);
  QXURandom expected(1234, true, false, nullptr);
  EXPECT_EQ(Describe(restored), Describe(expected));
  EXPECT_EQ(restored.GetRandom(), expected.GetRandom());

  // Any line out of place: the failure line, 0, no throw, nothing changed.
  const std::string before = Describe(restored);
  const std::string bad[] = {
      "\n<Obj name=\"QXURandom\">\n\t<Int value=\"1234\"/>\n\t<Int value=\"1\"/>\n"
      "\t<Int value=\"0\"/>\n</Obj>",
      "\n<Obj name=\"QXURandomX\">\n\t<Double value=\"1234\"/>\n\t<Int value=\"1\"/>\n"
      "\t<Int value=\"0\"/>\n</Obj>",
      "\n<Obj name=\"QXURandom\">\n\t<Double value=\"1234\"/>\n\t<Int value=\"1\"/>\n"
      "\t<Int value=\"0\"/>",
      ""};
  for (const std::string& text : bad) {
    std::ifstream file(WriteFile(text));
    std::ostringstream errors;
    std::streambuf* saved = std::cerr.rdbuf(errors.rdbuf());
    const int result = restored.ReadObjectXML(file);
    std::cerr.rdbuf(saved);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(errors.str(), "Failure reading QXURandom!\n");
    EXPECT_EQ(Describe(restored), before);
  }
}

TEST(QXURandomTest, DisplayShowsSeedAndFlags) {
  const QXURandom r(18446744073709551615ul, true, true, nullptr);
  EXPECT_EQ(QXCommon_850::internal::CaptureDisplay([&] { r.Display(); }),
            "\nQXURandom display start\nThe seed = 18446744073709551615\n"
            "Portable RNG indicator = true\nMersenne Twister RNG indicator = true\n"
            "QXURandom display end");
}

}  // namespace
}  // namespace QXMath_850
