#include "qx/foundation/qxvalue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <limits>
#include <locale>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "qx/foundation/qxexception.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXCommon_850 {
namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

#define EXPECT_QX_THROW(statement, code, message)                  \
  try {                                                            \
    statement;                                                     \
    ADD_FAILURE() << "no QXException from " #statement;            \
  } catch (const QXException& e) {                                 \
    EXPECT_EQ(e.GetCode(), code) << #statement;                    \
    EXPECT_EQ(e.GetMessage(), std::string(message)) << #statement; \
  }

const char* kNotArray = "This value is not an array!";
const char* kOutOfBounds = "Out of this array bounds!";
const char* kWrongType = "Value type wrong!";

// 1.0 moved up by `ulps` units in the last place.
double OnePlusUlps(int ulps) {
  double x = 1.0;
  for (int i = 0; i < ulps; ++i)
    x = std::nextafter(x, 2.0);
  return x;
}

TEST(ValueTest, ConstantsAreSetAtLoad) {
  EXPECT_TRUE(Value::NULL_VALUE.IsNull());
  EXPECT_EQ(Value::BOOL_VALUE.GetType(), Value::BOOL_TYPE);
  EXPECT_FALSE(Value::BOOL_VALUE.GetBool());
  EXPECT_EQ(Value::INTEGER_VALUE.GetType(), Value::INTEGER_TYPE);
  EXPECT_EQ(Value::REAL_VALUE.GetReal(), QXMV::Missing());
  EXPECT_EQ(Value::STRING_VALUE.Size(), 0);
  EXPECT_EQ(Value::GetSysmisValue(), -1.7976931348623157e308);
  EXPECT_TRUE(std::isinf(Value::GetInfinity()) && Value::GetInfinity() > 0);
  const unsigned char bytes[8] = {0xd3, 0xc7, 0x9d, 0xdd, 0x01, 0x00, 0xb0, 0x3c};
  EXPECT_EQ(std::memcmp(&Value::EPSILON, bytes, 8), 0);
}

TEST(ValueTest, CopiesAreDeepAtEveryLevel) {
  Value v;
  v[0] = 1;
  v[1][0] = "inner";
  v[2]["k"][0] = 2.5;
  Value copy(v);
  Value assigned;
  assigned = v;

  v[1][0] = "changed";
  v[2]["k"][0] = 9.0;
  v[2]["new"] = true;
  v[3] = 4;
  for (const Value* c : {&copy, &assigned}) {
    EXPECT_EQ(c->Size(), 3);
    EXPECT_EQ((*c)[1][0].GetStringRef(), "inner");
    EXPECT_EQ((*c)[2].Size(), 1);
    EXPECT_EQ((*c)[2].GetString(), "[k:{2.5}]");
  }
  std::unique_ptr<Value> clone(v.Clone());
  v.Clear();
  EXPECT_EQ(clone->GetString(), "{1,{changed},[k:{9},new:1],4}");

  // Self-assignment keeps the content; assigning a value's own member to it
  // copies before the old content is released.
  Value& self = *clone;
  *clone = self;
  EXPECT_EQ(clone->Size(), 4);
  *clone = (*clone)[2];
  EXPECT_EQ(clone->GetString(), "[k:{9},new:1]");
  *clone = std::move((*clone)["k"]);
  EXPECT_EQ(clone->GetString(), "{9}");
}

TEST(ValueTest, AssignmentChangesTheKindButSetValueKeepsIt) {
  Value real(2.0);
  real = 3;  // operator= takes the right side's kind
  EXPECT_EQ(real.GetType(), Value::INTEGER_TYPE);
  EXPECT_EQ(real.GetInteger(), 3);

  Value kept(2.0);
  kept.SetValue(1);  // the integer's bits, read as a double
  EXPECT_EQ(kept.GetType(), Value::REAL_TYPE);
  EXPECT_EQ(kept.GetReal(), std::numeric_limits<double>::denorm_min());

  Value integer(7);
  integer.SetValue(1.0);
  EXPECT_EQ(integer.GetType(), Value::INTEGER_TYPE);
  EXPECT_EQ(integer.GetInteger(), 0x3FF0000000000000LL);

  Value flag(true);
  flag.SetValue(0);
  EXPECT_EQ(flag.GetType(), Value::BOOL_TYPE);
  EXPECT_FALSE(flag.GetBool());

  // Null takes the setter's kind; an int is widened by sign.
  Value fresh;
  fresh.SetValue(-5);
  EXPECT_EQ(fresh.GetType(), Value::INTEGER_TYPE);
  EXPECT_EQ(fresh.GetInteger(), -5);

  // A string setter replaces any other kind; on a string it assigns.
  Value array;
  array[3] = 1;
  array.SetValue("text");
  EXPECT_EQ(array.GetType(), Value::STRING_TYPE);
  std::string& held = array;
  array.SetValue(std::string("other"));
  EXPECT_EQ(&held, &array.GetStringRef());
  EXPECT_EQ(held, "other");

  // On kinds that own storage the scalar setters assign instead of leaking.
  array.SetValue(2.5);
  EXPECT_EQ(array.GetType(), Value::REAL_TYPE);
  EXPECT_EQ(array.GetReal(), 2.5);
}

TEST(ValueTest, ConversionsNeverFail) {
  EXPECT_FALSE(Value().GetBool());
  EXPECT_EQ(Value().GetInteger(), 0);
  EXPECT_EQ(Value().GetReal(), QXMV::Missing());
  EXPECT_EQ(Value().GetString(), "");

  EXPECT_EQ(Value(true).GetInteger(), 1);
  EXPECT_EQ(Value(true).GetReal(), 1.0);
  EXPECT_EQ(Value(true).GetString(), "1");
  EXPECT_EQ(Value(false).GetString(), "0");

  EXPECT_TRUE(Value(-2).GetBool());
  EXPECT_EQ(Value(-2).GetReal(), -2.0);
  EXPECT_EQ(Value(1234567890123LL).GetString(), "1234567890123");

  EXPECT_EQ(Value(3.5).GetInteger(), 3);
  EXPECT_EQ(Value(-3.5).GetInteger(), -3);
  EXPECT_TRUE(Value(kNaN).GetBool());
  EXPECT_FALSE(Value(-0.0).GetBool());
  EXPECT_EQ(Value(1234567.0).GetString(), "1.23457e+06");
  EXPECT_EQ(Value(0.1).GetString(), "0.1");
  // Beyond the 64-bit range a real saturates; NaN and the sentinel give the minimum.
  EXPECT_EQ(Value(1e300).GetInteger(), LLONG_MAX);
  EXPECT_EQ(Value(QXMV::Missing()).GetInteger(), LLONG_MIN);
  EXPECT_EQ(Value(kNaN).GetInteger(), LLONG_MIN);

  EXPECT_EQ(Value("12.5").GetReal(), 12.5);
  EXPECT_EQ(Value("-17").GetInteger(), -17);
  EXPECT_EQ(Value("42abc").GetInteger(), 42);
  EXPECT_EQ(Value("abc").GetReal(), 0.0);           // a failed read stores 0
  EXPECT_EQ(Value("").GetReal(), QXMV::Missing());  // nothing read: the default stays
  EXPECT_TRUE(Value("1").GetBool());
  EXPECT_FALSE(Value("true").GetBool());  // the default flags know 0 and 1 only
  EXPECT_EQ(Value("as is").GetString(), "as is");

  Value array;
  array[2] = 1;
  EXPECT_TRUE(array.GetBool());
  EXPECT_EQ(array.GetInteger(), 3);
  EXPECT_EQ(array.GetReal(), 3.0);
  Value map;
  map.AssertMap();
  EXPECT_FALSE(map.GetBool());
  EXPECT_EQ(map.GetString(), "[]");
}

TEST(ValueTest, TypedAccessThrowsAndChangesNothing) {
  Value v;
  double& d = v;  // null takes the kind
  d = 4.5;
  EXPECT_EQ(v.GetReal(), 4.5);
  EXPECT_QX_THROW(static_cast<void>(static_cast<long long&>(v)), 13, kWrongType);
  EXPECT_QX_THROW(static_cast<void>(static_cast<std::string&>(v)), 13, kWrongType);
  EXPECT_QX_THROW(v.AssertTypeOrInvalid(Value::ARRAY_TYPE), 13, kWrongType);
  EXPECT_EQ(v.GetType(), Value::REAL_TYPE);
  EXPECT_EQ(v.GetReal(), 4.5);

  Value s;
  static_cast<std::string&>(s) += "abc";
  EXPECT_EQ(s.GetStringRef(), "abc");
  Value b;
  static_cast<bool&>(b) = true;
  EXPECT_TRUE(b.GetBool());
  Value i;
  static_cast<long long&>(i) = -3;
  EXPECT_EQ(i.GetInteger(), -3);

  // A const value doesn't forgive null.
  const Value constNull;
  EXPECT_QX_THROW(static_cast<void>(static_cast<double>(constNull)), 13, kWrongType);
  EXPECT_QX_THROW(constNull.AssertTypeOrInvalid(Value::BOOL_TYPE), 13, kWrongType);
  const Value constText("t");
  EXPECT_EQ(static_cast<std::string>(constText), "t");
  EXPECT_QX_THROW(static_cast<void>(static_cast<bool>(constText)), 13, kWrongType);
  EXPECT_QX_THROW(static_cast<void>(static_cast<long long>(constText)), 13, kWrongType);
  EXPECT_TRUE(static_cast<bool>(static_cast<const Value&>(b)));
  EXPECT_EQ(static_cast<long long>(static_cast<const Value&>(i)), -3);
  EXPECT_EQ(static_cast<double>(static_cast<const Value&>(v)), 4.5);
}

TEST(ValueTest, ArraysGrowAndThrow) {
  const Value constNull;
  EXPECT_QX_THROW(constNull[0], 13, kNotArray);
  EXPECT_QX_THROW(constNull.AssertArray(0), 13, kNotArray);

  Value v;
  v[0];  // null becomes an array of one null element
  EXPECT_EQ(v.GetType(), Value::ARRAY_TYPE);
  ASSERT_EQ(v.Size(), 1);
  EXPECT_TRUE(v[0].IsNull());
  v[4] = 5;
  EXPECT_EQ(v.GetString(), "{,,,,5}");

  const Value& c = v;
  EXPECT_EQ(c[4].GetInteger(), 5);
  EXPECT_QX_THROW(c[5], 14, kOutOfBounds);
  EXPECT_QX_THROW(c.AssertArray(6), 14, kOutOfBounds);
  EXPECT_THROW(c[-1], std::out_of_range);
  EXPECT_THROW(v[-1], std::out_of_range);
  EXPECT_EQ(v.Size(), 5);

  // Not exact: a long enough array is left alone; exact cuts or pads.
  v.AssertArray(2, false);
  EXPECT_EQ(v.Size(), 5);
  v.Resize(2);
  EXPECT_EQ(v.GetString(), "{,}");
  v.AssertArray(3, true);
  EXPECT_EQ(v.Size(), 3);
  v.Resize(-1);
  EXPECT_EQ(v.Size(), 0);
  Value fresh;
  fresh.AssertArray(3, false);
  EXPECT_EQ(fresh.Size(), 3);

  // Array operations on another kind throw and leave it alone.
  Value text("keep");
  EXPECT_QX_THROW(text[0], 13, kNotArray);
  EXPECT_QX_THROW(text.Resize(2), 13, kNotArray);
  EXPECT_QX_THROW(static_cast<const Value&>(text)[0], 13, kNotArray);
  EXPECT_EQ(text.GetStringRef(), "keep");
}

TEST(ValueTest, MapsReplaceOtherKindsSilently) {
  Value v;
  v[1] = 2;
  v["a"] = 1;  // the array is gone, without an exception
  EXPECT_EQ(v.GetType(), Value::MAP_TYPE);
  v["b"];
  EXPECT_EQ(v.Size(), 2);
  EXPECT_TRUE(v.Contains("b"));
  EXPECT_FALSE(v.Contains("c"));
  EXPECT_EQ(v.Names(), (std::vector<std::string>{"a", "b"}));
  EXPECT_FALSE(Value("a").Contains("a"));
  EXPECT_TRUE(Value(3).Names().empty());
  EXPECT_EQ(Value(3).Size(), -1);
  EXPECT_EQ(Value().Size(), -1);
  EXPECT_EQ(Value("four").Size(), 4);
  EXPECT_EQ(Value(3).GetStringRef(), "");
}

TEST(ValueTest, ClearValueKeepsTheStructure) {
  Value v;
  v[0] = 1;
  v[1] = 2;
  v[2]["x"] = "y";
  v[2]["z"][1] = 3.5;
  v.ClearValue();
  EXPECT_EQ(v.GetType(), Value::ARRAY_TYPE);
  EXPECT_EQ(v.GetString(), "{,,[x:,z:{,}]}");
  v.Invalidate();
  EXPECT_TRUE(v.IsNull());
  Value s("s");
  s.ClearValue();
  EXPECT_TRUE(s.IsNull());
}

TEST(ValueTest, DisplayWritesTheCompactForm) {
  Value v;
  v[0] = 1;
  v[1][0] = 2;
  v[1][1] = 3;
  v[2] = "x";
  std::ostringstream out;
  out << v;
  EXPECT_EQ(out.str(), "{1,{2,3},x}");

  Value m;
  m["b"] = 2;
  m["a"] = 1;
  EXPECT_EQ(m.GetString(), "[a:1,b:2]");
  m["c"].AssertArray(0, true);
  m["d"].AssertMap();
  EXPECT_EQ(m.GetString(), "[a:1,b:2,c:{},d:[]]");

  // Scalars follow the stream's own flags.
  std::ostringstream flags;
  flags << std::boolalpha << std::setprecision(3) << Value(true) << " " << Value(3.14159) << " "
        << Value();
  EXPECT_EQ(flags.str(), "true 3.14 ");
}

TEST(ValueTest, EqualityByKind) {
  EXPECT_FALSE(Value() == Value());
  EXPECT_TRUE(Value() != Value());
  Value null;
  EXPECT_FALSE(null == null);
  EXPECT_FALSE(Value(1) == Value(1.0));
  EXPECT_TRUE(Value(true) == Value(true));
  EXPECT_TRUE(Value("ab") == Value("ab"));
  EXPECT_FALSE(Value("ab") == Value(std::string("ab\0", 3)));

  EXPECT_TRUE(Value(0.0) == Value(-0.0));
  EXPECT_TRUE(Value(1e300) == Value(1e300 * (1 + 1e-15)));
  EXPECT_FALSE(Value(0.0) == Value(1e-300));  // nothing is close to zero
  EXPECT_FALSE(Value(kNaN) == Value(kNaN));
  const Value missing(QXMV::Missing());
  EXPECT_TRUE(missing == Value(Value::SYSMISVALUE));
  EXPECT_FALSE(missing == Value(std::nextafter(QXMV::Missing(), 0.0)));  // within the tolerance

  // The relative tolerance is 100 * EPSILON: 100 ulps of 1.0 pass, 101 don't.
  EXPECT_TRUE(Value(1.0) == Value(OnePlusUlps(100)));
  EXPECT_FALSE(Value(1.0) == Value(OnePlusUlps(101)));
  EXPECT_TRUE(Value::IsZeroDiff(-1.0, -OnePlusUlps(100), 100.0));
  EXPECT_TRUE(Value::IsZeroDiff(1.0, OnePlusUlps(1), 1.0));
  EXPECT_FALSE(Value::IsZeroDiff(1.0, OnePlusUlps(2), 1.0));

  // Arrays and maps compare member by member; a null member spoils equality.
  Value a, b;
  a[0] = 1.0;
  a[1]["k"] = "v";
  b = a;
  EXPECT_TRUE(a == b);
  b[1]["k"] = "w";
  EXPECT_FALSE(a == b);
  b = a;
  b[2];
  EXPECT_FALSE(a == b);
  a[2];
  EXPECT_FALSE(a == b);
  Value m1, m2;
  m1["a"] = 1;
  m2["b"] = 1;
  EXPECT_FALSE(m1 == m2);
}

TEST(ValueTest, OrderingQuirks) {
  // Across kinds, the printed texts decide.
  EXPECT_TRUE(Value(10.5) < Value(2));
  EXPECT_FALSE(Value(2) < Value(10.5));
  EXPECT_TRUE(Value() < Value(1));
  EXPECT_TRUE(Value(2) > Value(10.5));
  EXPECT_TRUE(Value("\xff") > Value("a"));  // bytes compare unsigned

  EXPECT_FALSE(Value() < Value());
  EXPECT_FALSE(Value() <= Value());
  EXPECT_TRUE(Value(false) < Value(true));
  EXPECT_FALSE(Value(true) > Value(false));  // > on booleans asks the question of <
  EXPECT_TRUE(Value(false) > Value(true));
  EXPECT_TRUE(Value(false) >= Value(true));
  EXPECT_TRUE(Value(true) >= Value(true));

  const Value missing(QXMV::Missing());
  for (double x : {-1e308, 0.0, 5.0}) {
    EXPECT_FALSE(missing < Value(x));
    EXPECT_FALSE(Value(x) < missing);
    EXPECT_FALSE(missing > Value(x));
  }
  EXPECT_FALSE(Value(-0.0) < Value(0.0));
  EXPECT_FALSE(Value(kNaN) < Value(1.0));
  EXPECT_FALSE(Value(1.0) < Value(kNaN));

  // Within the tolerance a pair can be both < and ==.
  const Value one(1.0), near(OnePlusUlps(1));
  EXPECT_TRUE(one < near && one == near);
  EXPECT_TRUE(near >= one && near <= one);

  Value a, b;
  a[0] = 1;
  a[1] = 2;
  b[0] = 1;
  b[1] = 3;
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(b > a);
  b.Resize(1);
  EXPECT_TRUE(b < a);  // a prefix comes first
  Value m1, m2;
  m1["a"] = 5;
  m2["a"] = 5;
  m2["b"] = 0;
  EXPECT_TRUE(m1 < m2);
  m1["a0"] = 0;  // key before value
  EXPECT_TRUE(m1 < m2);
}

TEST(ValueTest, TotalOrderIsAStrictWeakOrdering) {
  // operator< fails here: 1.0 and 2.0 are each unordered with the sentinel,
  // yet ordered with each other, so incomparability isn't transitive.
  const Value missing(QXMV::Missing());
  ASSERT_TRUE(!(missing < Value(1.0)) && !(Value(1.0) < missing));
  ASSERT_TRUE(!(missing < Value(2.0)) && !(Value(2.0) < missing));
  ASSERT_TRUE(Value(1.0) < Value(2.0));

  Value array, map;
  array[0] = 1;
  map["k"] = kNaN;
  const std::vector<Value> sample = {Value(),    Value(2),    Value(10),   Value(1.5),
                                     Value(0.0), Value(-0.0), Value(kNaN), missing,
                                     Value("b"), Value(""),   Value(true), Value(false),
                                     array,      map,         Value(-7),   Value(kNaN)};
  const ValueTotalOrder less;
  auto equivalent = [&](const Value& x, const Value& y) { return !less(x, y) && !less(y, x); };
  for (const Value& x : sample) {
    EXPECT_FALSE(less(x, x));
    for (const Value& y : sample) {
      EXPECT_FALSE(less(x, y) && less(y, x));
      for (const Value& z : sample) {
        EXPECT_TRUE(!(less(x, y) && less(y, z)) || less(x, z));
        EXPECT_TRUE(!(equivalent(x, y) && equivalent(y, z)) || equivalent(x, z));
      }
    }
  }
  std::vector<Value> sorted = sample;
  std::sort(sorted.begin(), sorted.end(), less);
  // By kind, then by content: NaN after every number, "" first among strings.
  EXPECT_TRUE(sorted[0].IsNull());
  EXPECT_FALSE(sorted[1].GetBool());
  EXPECT_TRUE(sorted[2].GetBool());
  EXPECT_EQ(sorted[3].GetInteger(), -7);
  EXPECT_EQ(sorted[6].GetReal(), QXMV::Missing());
  EXPECT_EQ(sorted[9].GetReal(), 1.5);
  EXPECT_TRUE(std::isnan(sorted[11].GetReal()));
  EXPECT_EQ(sorted[12].GetStringRef(), "");
  EXPECT_EQ(sorted[15].GetType(), Value::MAP_TYPE);
  std::map<Value, int, ValueTotalOrder> index;
  for (const Value& x : sample)
    ++index[x];
  EXPECT_EQ(index[Value(kNaN)], 2);
  EXPECT_EQ(index[Value(0.0)], 2);  // -0.0 goes with 0.0
}

TEST(ValueTest, KindsAboveSixCarryNothing) {
  Value odd;
  odd.AssertTypeOrInvalid(9);
  EXPECT_EQ(odd.GetType(), 9);
  Value copy;
  copy = odd;
  EXPECT_EQ(copy.GetType(), 9);
  EXPECT_FALSE(odd == copy);
  EXPECT_EQ(odd.GetString(), "");
  EXPECT_EQ(odd.GetReal(), QXMV::Missing());
  EXPECT_EQ(odd.Size(), -1);
  EXPECT_FALSE(odd.IsSystemMissingValue());
  std::ostringstream out;
  out << odd;
  EXPECT_EQ(out.str(), "");
}

// Installs a locale with a decimal comma for std::cout and the global locale,
// and puts the old ones back afterwards.
class CommaLocaleTest : public ::testing::Test {
 protected:
  struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
  };
  void SetUp() override { savedCout = std::cout.getloc(); }
  void Install(const std::locale& comma) {
    std::locale::global(comma);
    std::cout.imbue(comma);
  }
  void TearDown() override {
    std::locale::global(savedGlobal);
    std::cout.imbue(savedCout);
  }
  // Conversions that must not depend on the locale's separator.
  void ExpectPointConversions() {
    EXPECT_EQ(Value("12.5").GetReal(), 12.5);
    EXPECT_EQ(Value(12.5).GetString(), "12.5");
    EXPECT_EQ(Value(-0.125).GetString(), "-0.125");
    double x = 0.0;
    Str2T<double>(std::string("3.25e2"), x);
    EXPECT_EQ(x, 325.0);
    EXPECT_EQ(T2Str<double>(2.5), "2.5");
    EXPECT_EQ(Value("7").GetInteger(), 7);
    EXPECT_EQ(T2Str(true), "1");
  }
  std::locale savedGlobal;
  std::locale savedCout;
};

TEST_F(CommaLocaleTest, ConversionsKeepThePointUnderACommaFacet) {
  Install(std::locale(std::locale::classic(), new CommaPoint));
  ExpectPointConversions();
  // The point is swapped for std::cout's separator, then read in the global
  // locale: when the two disagree the fraction is lost.
  std::locale::global(std::locale::classic());
  EXPECT_EQ(Value("12.5").GetReal(), 12.0);
}

TEST_F(CommaLocaleTest, ConversionsKeepThePointUnderGerman) {
  std::locale german;
  bool found = false;
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
    try {
      german = std::locale(name);
      found = true;
      break;
    } catch (const std::runtime_error&) {
    }
  }
  if (!found) GTEST_SKIP() << "no de_DE locale installed (.ci/run generates de_DE.UTF-8)";
  Install(german);
  ExpectPointConversions();
}

}  // namespace
}  // namespace QXCommon_850
