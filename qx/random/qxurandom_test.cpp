#include "qx/random/qxurandom.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "qx/foundation/internal/testutil.h"
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
  QXRandomTwister unseeded, seeded, low32;
  seeded.Initialize(5489);
  low32.Initialize(0x100001571ul);  // only the low 32 bits count
  unsigned long last = 0;
  for (int i = 0; i < 10000; ++i) {
    last = reference();
    ASSERT_EQ(unseeded.GetInteger32(), last) << i;
    ASSERT_EQ(seeded.GetInteger32(), last) << i;
    ASSERT_EQ(low32.GetInteger32(), last) << i;
  }
  EXPECT_EQ(last, 4123659995ul);  // the 10000th output the C++ standard requires
  // Each form from the same integers; a copy continues the sequence.
  std::mt19937 ints(7);
  QXRandomTwister twister;
  twister.Initialize(7);
  EXPECT_EQ(twister.GetInteger31(), static_cast<long>(ints() >> 1));
  EXPECT_EQ(twister.GetRealClosed(), ints() / 4294967295.0);
  EXPECT_EQ(twister.GetRealOpen(), (ints() + 0.5) / 4294967296.0);
  QXRandomTwister copy(twister);
  for (int i = 0; i < 700; ++i)
    ASSERT_EQ(copy.GetInteger32(), twister.GetInteger32());
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
  // QXRNGUCongruential takes floor(|seed|) in [1, 2^31 - 1], the top being 0
  // in disguise.
  QXRNGUCongruential g;
  EXPECT_EQ(g.GetState(), 1);
  for (const auto& s : std::vector<std::pair<double, long>>{
           {0.7, 1}, {-5.2, 5}, {std::nan(""), 1}, {1e10, 2147483647}}) {
    g.SetSeed(s.first);
    EXPECT_EQ(g.GetState(), s.second) << s.first;
  }
  EXPECT_EQ(g.GetNext() + g.GetNext(), 0.0);
}

TEST(QXURandomTest, PicksItsSourceByTheFlagRulesAndCopiesAsDocumented) {
  FixedUser user;
  QXURandom withUser(5, true, true, &user), notPortable(5, false, true, nullptr);
  EXPECT_FALSE(withUser.GetUseTwister());
  EXPECT_EQ(withUser.GetRandom(), 0.25);
  EXPECT_FALSE(notPortable.GetUseTwister());
  notPortable.SetSeed(5);
  const double fromC = notPortable.GetRandom();
  std::srand(5);
  EXPECT_EQ(fromC, std::rand() / 2147483647.0);
  // SetSeed reaches srand without the portable flag, even with a user source.
  QXURandom(9, false, false, &user).SetSeed(77);
  const int afterSetSeed = std::rand();
  std::srand(77);
  EXPECT_EQ(afterSetSeed, std::rand());

  QXURandom twisterMode(42, true, true, nullptr);
  QXRandomTwister reference;
  reference.Initialize(42);
  const double first = twisterMode.GetRandom();
  EXPECT_EQ(first, reference.GetRealOpen());
  EXPECT_EQ(twisterMode.GetRandom(), reference.GetRealOpen());
  // A twister-mode copy starts over from the seed.
  QXURandom copy(twisterMode), assigned(1, false, false, nullptr);
  assigned = twisterMode;
  EXPECT_EQ(copy.GetRandom(), first);
  EXPECT_EQ(assigned.GetRandom(), first);

  // Off the portable flag ends twister mode; on again is congruential mode,
  // whose copies continue.
  twisterMode.SetUsePortable(false);
  EXPECT_FALSE(twisterMode.GetUseTwister());
  twisterMode.SetUsePortable(true);
  EXPECT_FALSE(twisterMode.GetUseTwister());
  EXPECT_EQ(twisterMode.GetRandom(), (397204094 * std::uint64_t{42} % kModulus) / 2147483648.0);
  QXURandom portableCopy(twisterMode);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(portableCopy.GetRandom(), twisterMode.GetRandom());
}

// A file holding `bytes`, open for reading and writing, its name already
// removed from the folder.
template <class Stream = std::fstream>
Stream Open(const std::string& bytes) {
  static int count = 0;
  const std::string path = ::testing::TempDir() + "qxurandom_" + std::to_string(getpid()) + "_" +
                           std::to_string(count++);
  std::ofstream(path, std::ios::binary) << bytes;
  Stream stream(path, std::ios::in | std::ios::out | std::ios::binary);
  std::remove(path.c_str());
  return stream;
}

// Twenty bytes of the binary form.
std::string Binary(const char* magic, double seed, std::int32_t portable, std::int32_t twister) {
  std::string bytes(magic, 4);
  bytes.append(reinterpret_cast<const char*>(&seed), 8);
  bytes.append(reinterpret_cast<const char*>(&portable), 4);
  return bytes.append(reinterpret_cast<const char*>(&twister), 4);
}

std::string Describe(const QXURandom& r) {
  return QXCommon_850::internal::CaptureDisplay([&] { r.Display(); });
}

TEST(QXURandomFileTest, BinaryFormRestoresSeedAndFlags) {
  // Congruential mode: the seed is the state, so the restored copy continues.
  QXURandom portable(123456789, true, false, nullptr), restored(1, false, false, nullptr);
  portable.GetRandom();
  std::fstream file = Open("");
  EXPECT_EQ(portable.WriteObject(file), 20);
  file.seekg(0);
  std::string bytes(21, '\0');
  bytes.resize(file.read(&bytes[0], 21).gcount());
  EXPECT_EQ(bytes, Binary("QXUR", static_cast<double>(portable.GetSeed()), 1, 0));
  file.clear();
  file.seekg(0);
  EXPECT_EQ(restored.ReadObject(file), 20);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(restored.GetRandom(), portable.GetRandom());

  // Twister mode: the sequence starts over from the seed, with or without SetSeed.
  const double first = QXURandom(987, true, true, nullptr).GetRandom();
  std::fstream twisterFile = Open(Binary("QXUR", 987.0, 1, 1));
  QXURandom lazy(5, true, false, nullptr);
  EXPECT_EQ(lazy.ReadObject(twisterFile), 20);
  EXPECT_TRUE(lazy.GetUseTwister());
  EXPECT_EQ(lazy.GetRandom(), first);
  lazy.SetSeed(987);
  EXPECT_EQ(lazy.GetRandom(), first);

  // A flag is true only as exactly 1; seeds convert through the unsigned range.
  for (const auto& s : std::vector<std::pair<double, unsigned long>>{
           {9223372036854777856.0, 9223372036854777856ul}, {-5.0, 0}, {1e30, ~0ul}}) {
    std::fstream odd = Open(Binary("QXUR", s.first, 2, -1));
    QXURandom r(1, true, true, nullptr);
    EXPECT_EQ(r.ReadObject(odd), 20);
    EXPECT_EQ(r.GetSeed(), s.second) << s.first;
    EXPECT_FALSE(r.GetUsePortable() || r.GetUseTwister());
  }
  // Wrong magic, a short file, a failed stream: 0 and the object as it was.
  const std::string before = Describe(restored);
  for (const std::string& content :
       {Binary("QXUr", 5.0, 0, 0), Binary("QXUR", 5.0, 0, 0).substr(0, 19)}) {
    std::fstream bad = Open(content);
    EXPECT_EQ(restored.ReadObject(bad), 0);
    EXPECT_EQ(Describe(restored), before);
  }
  std::fstream failed;
  EXPECT_EQ(restored.ReadObject(failed), 0);
  EXPECT_EQ(portable.WriteObject(failed), 0);
}

TEST(QXURandomFileTest, XMLFormIsTheDocumentedLinesAndAFailedReadChangesNothing) {
  std::ostringstream out;
  EXPECT_EQ(QXURandom(1234, true, false, nullptr).WriteObjectXML(out, 1), 5);
  const std::string text = out.str();
  EXPECT_EQ(text,
            "\n\t<Obj name=\"QXURandom\">\n\t\t<Double value=\"1234\"/>\n"
            "\t\t<Int value=\"1\"/>\n\t\t<Int value=\"0\"/>\n\t</Obj>");
  std::ostringstream failed;
  failed.setstate(std::ios::badbit);
  EXPECT_EQ(QXURandom(1, true, true, nullptr).WriteObjectXML(failed, 0), 0);

  std::ifstream in = Open<std::ifstream>(text);
  QXURandom restored(1, false, false, nullptr), expected(1234, true, false, nullptr);
  EXPECT_EQ(restored.ReadObjectXML(in), 5);
  EXPECT_NE(Describe(restored).find("\nThe seed = 1234\nPortable RNG indicator = true\n"
                                    "Mersenne Twister RNG indicator = false\n"),
            std::string::npos);
  EXPECT_EQ(restored.GetRandom(), expected.GetRandom());

  // A line out of place or missing: the failure line, 0, no throw, no change.
  const std::string before = Describe(restored);
  for (const std::string& bad :
       {text.substr(0, text.rfind('\n')),
        text.substr(0, text.find("Double")) + "Int" + text.substr(text.find("Double") + 6)}) {
    std::ifstream file = Open<std::ifstream>(bad);
    std::ostringstream errors;
    std::streambuf* saved = std::cerr.rdbuf(errors.rdbuf());
    EXPECT_EQ(restored.ReadObjectXML(file), 0);
    std::cerr.rdbuf(saved);
    EXPECT_EQ(errors.str(), "Failure reading QXURandom!\n");
    EXPECT_EQ(Describe(restored), before);
  }
}

}  // namespace
}  // namespace QXMath_850
