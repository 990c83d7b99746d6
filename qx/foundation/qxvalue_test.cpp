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

#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxexception.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXCommon_850 {
namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const char* kNotArray = "This value is not an array!";
const char* kOutOfBounds = "Out of this array bounds!";
const char* kWrongType = "Value type wrong!";

#define EXPECT_QX_THROW(statement, code, message)                  \
  try {                                                            \
    statement;                                                     \
    ADD_FAILURE() << "no QXException from " #statement;            \
  } catch (const QXException& e) {                                 \
    EXPECT_EQ(e.GetCode(), code) << #statement;                    \
    EXPECT_EQ(e.GetMessage(), std::string(message)) << #statement; \
  }

using internal::OnePlusUlps;

TEST(ValueTest, ConstantsAreSetAtLoad) {
  EXPECT_EQ(Value::REAL_VALUE.GetReal(), QXMV::Missing());
  EXPECT_EQ(Value::GetSysmisValue(), -1.7976931348623157e308);
  EXPECT_EQ(Value::GetInfinity(), std::numeric_limits<double>::infinity());
  const unsigned char bytes[8] = {0xd3, 0xc7, 0x9d, 0xdd, 0x01, 0x00, 0xb0, 0x3c};
  EXPECT_EQ(std::memcmp(&Value::EPSILON, bytes, 8), 0);
}

TEST(ValueTest, CopiesAreDeepAtEveryLevel) {
  Value v;
  v[0] = 1;
  v[1][0] = "inner";
  v[2]["k"][0] = 2.5;
  Value copy(v), assigned;
  assigned = v;
  v[1][0] = "changed";
  v[2]["k"][0] = 9.0;
  v[2]["new"] = true;
  EXPECT_EQ(copy.GetString(), "{1,{inner},[k:{2.5}]}");
  EXPECT_EQ(assigned.GetString(), "{1,{inner},[k:{2.5}]}");
  std::unique_ptr<Value> clone(v.Clone());
  v.Clear();
  EXPECT_EQ(clone->GetString(), "{1,{changed},[k:{9},new:1]}");

  // Self-assignment keeps the content; a value's own member assigned to it
  // is copied before the old content goes.
  Value& self = *clone;
  *clone = self;
  *clone = (*clone)[2];
  EXPECT_EQ(clone->GetString(), "[k:{9},new:1]");
  *clone = std::move((*clone)["k"]);
  EXPECT_EQ(clone->GetString(), "{9}");
}

TEST(ValueTest, AssignmentChangesTheKindButSetValueKeepsIt) {
  Value real(2.0);
  real = 3;
  EXPECT_EQ(real.GetType(), Value::INTEGER_TYPE);

  Value kept(2.0);
  kept.SetValue(1);  // the integer's bits, read as a double
  EXPECT_EQ(kept.GetType(), Value::REAL_TYPE);
  EXPECT_EQ(kept.GetReal(), std::numeric_limits<double>::denorm_min());
  Value integer(7);
  integer.SetValue(1.0);
  EXPECT_EQ(integer.GetInteger(), 0x3FF0000000000000LL);
  Value fresh;
  fresh.SetValue(-5);  // null takes the kind; an int widens by sign
  EXPECT_EQ(fresh.GetInteger(), -5);

  // A string setter replaces any kind, and assigns into a held string.
  Value array;
  array[3] = 1;
  array.SetValue("text");
  std::string& held = array;
  array.SetValue(std::string("other"));
  EXPECT_EQ(&held, &array.GetStringRef());
  // On kinds that own storage the scalar setters assign instead of leaking.
  array.SetValue(2.5);
  EXPECT_EQ(array.GetType(), Value::REAL_TYPE);
}

TEST(ValueTest, ConversionsNeverFail) {
  EXPECT_FALSE(Value().GetBool());
  EXPECT_EQ(Value().GetInteger(), 0);
  EXPECT_EQ(Value().GetReal(), QXMV::Missing());
  EXPECT_EQ(Value(true).GetString(), "1");
  EXPECT_EQ(Value(3.5).GetInteger(), 3);
  EXPECT_EQ(Value(-3.5).GetInteger(), -3);
  EXPECT_TRUE(Value(kNaN).GetBool());
  EXPECT_EQ(Value(1234567.0).GetString(), "1.23457e+06");
  // Beyond the 64-bit range a real saturates; NaN and the sentinel give the minimum.
  EXPECT_EQ(Value(1e300).GetInteger(), LLONG_MAX);
  EXPECT_EQ(Value(QXMV::Missing()).GetInteger(), LLONG_MIN);
  EXPECT_EQ(Value(kNaN).GetInteger(), LLONG_MIN);

  EXPECT_EQ(Value("12.5").GetReal(), 12.5);
  EXPECT_EQ(Value("42abc").GetInteger(), 42);
  EXPECT_EQ(Value("abc").GetReal(), 0.0);           // a failed read stores 0
  EXPECT_EQ(Value("").GetReal(), QXMV::Missing());  // nothing read: the default stays
  EXPECT_TRUE(Value("1").GetBool());
  EXPECT_FALSE(Value("true").GetBool());  // the default flags know 0 and 1 only
  Value array;
  array[2] = 1;
  EXPECT_EQ(array.GetReal(), 3.0);
  EXPECT_EQ(Value("four").Size(), 4);
  EXPECT_EQ(Value().Size(), -1);
}

TEST(ValueTest, TypedAccessThrowsAndChangesNothing) {
  Value v;
  static_cast<double&>(v) = 4.5;  // null takes the kind
  EXPECT_QX_THROW(static_cast<void>(static_cast<long long&>(v)), 13, kWrongType);
  EXPECT_QX_THROW(static_cast<void>(static_cast<std::string&>(v)), 13, kWrongType);
  EXPECT_QX_THROW(v.AssertTypeOrInvalid(Value::ARRAY_TYPE), 13, kWrongType);
  EXPECT_EQ(v.GetType(), Value::REAL_TYPE);
  EXPECT_EQ(v.GetReal(), 4.5);

  // A const value doesn't forgive null.
  const Value constNull, constText("t");
  EXPECT_QX_THROW(static_cast<void>(static_cast<double>(constNull)), 13, kWrongType);
  EXPECT_QX_THROW(constNull.AssertTypeOrInvalid(Value::BOOL_TYPE), 13, kWrongType);
  EXPECT_EQ(static_cast<std::string>(constText), "t");
  EXPECT_QX_THROW(static_cast<void>(static_cast<bool>(constText)), 13, kWrongType);
  EXPECT_QX_THROW(static_cast<void>(static_cast<long long>(constText)), 13, kWrongType);
}

TEST(ValueTest, ArraysGrowMapsReplace) {
  const Value constNull;
  EXPECT_QX_THROW(constNull[0], 13, kNotArray);
  EXPECT_QX_THROW(constNull.AssertArray(0), 13, kNotArray);

  Value v;
  v[0];  // null becomes an array of one null element
  ASSERT_EQ(v.Size(), 1);
  v[4] = 5;
  EXPECT_EQ(v.GetString(), "{,,,,5}");
  const Value& c = v;
  EXPECT_QX_THROW(c[5], 14, kOutOfBounds);
  EXPECT_QX_THROW(c.AssertArray(6), 14, kOutOfBounds);
  EXPECT_THROW(c[-1], std::out_of_range);
  EXPECT_THROW(v[-1], std::out_of_range);
  v.AssertArray(2, false);  // long enough: left alone
  EXPECT_EQ(v.Size(), 5);
  v.Resize(2);
  EXPECT_EQ(v.GetString(), "{,}");
  v.Resize(-1);
  EXPECT_EQ(v.Size(), 0);

  Value text("keep");
  EXPECT_QX_THROW(text[0], 13, kNotArray);
  EXPECT_QX_THROW(text.Resize(2), 13, kNotArray);
  EXPECT_EQ(text.GetStringRef(), "keep");

  v["a"] = 1;  // the array is dropped without a word
  v["b"];
  EXPECT_EQ(v.Names(), (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(v.Contains("b"));
  EXPECT_FALSE(text.Contains("keep"));
}

TEST(ValueTest, ClearValueAndDisplay) {
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
  m["c"].AssertArray(0, true);
  m["d"].AssertMap();
  EXPECT_EQ(m.GetString(), "[a:1,b:2,c:{},d:[]]");
  std::ostringstream flags;  // scalars follow the stream's own flags
  flags << std::boolalpha << std::setprecision(3) << Value(true) << Value(3.14159) << Value();
  EXPECT_EQ(flags.str(), "true3.14");

  v[3] = m;
  v.ClearValue();  // the structure stays, the leaves go
  EXPECT_EQ(v.GetString(), "{,{,},,[a:,b:,c:{},d:[]]}");
}

TEST(ValueTest, EqualityByKind) {
  Value null;
  EXPECT_FALSE(null == null);
  EXPECT_TRUE(Value() != Value());
  EXPECT_FALSE(Value(1) == Value(1.0));
  EXPECT_FALSE(Value("ab") == Value(std::string("ab\0", 3)));
  EXPECT_TRUE(Value(0.0) == Value(-0.0));
  EXPECT_TRUE(Value(1e300) == Value(1e300 * (1 + 1e-15)));
  EXPECT_FALSE(Value(0.0) == Value(1e-300));  // nothing is close to zero
  EXPECT_FALSE(Value(kNaN) == Value(kNaN));
  const Value missing(QXMV::Missing());
  EXPECT_TRUE(missing == Value(Value::SYSMISVALUE));
  EXPECT_FALSE(missing == Value(std::nextafter(QXMV::Missing(), 0.0)));

  // The relative tolerance is 100 * EPSILON: 100 ulps of 1.0 pass, 101 don't.
  EXPECT_TRUE(Value(1.0) == Value(OnePlusUlps(100)));
  EXPECT_FALSE(Value(1.0) == Value(OnePlusUlps(101)));
  EXPECT_TRUE(Value::IsZeroDiff(-1.0, -OnePlusUlps(1), 1.0));
  EXPECT_FALSE(Value::IsZeroDiff(1.0, OnePlusUlps(2), 1.0));

  // Arrays and maps compare member by member; a null member spoils it.
  Value a, b;
  a[0] = 1.0;
  a[1]["k"] = "v";
  b = a;
  EXPECT_TRUE(a == b);
  b[1]["k"] = "w";
  EXPECT_FALSE(a == b);
  b = a;
  a[2];
  b[2];
  EXPECT_FALSE(a == b);
}

TEST(ValueTest, OrderingQuirks) {
  EXPECT_TRUE(Value(10.5) < Value(2));  // across kinds the printed texts decide
  EXPECT_FALSE(Value(2) < Value(10.5));
  EXPECT_TRUE(Value() < Value(1));
  EXPECT_TRUE(Value("\xff") > Value("a"));  // bytes compare unsigned
  EXPECT_FALSE(Value() <= Value());
  EXPECT_TRUE(Value(false) < Value(true));
  EXPECT_FALSE(Value(true) > Value(false));  // > on booleans asks the question of <
  EXPECT_TRUE(Value(false) >= Value(true));

  const Value missing(QXMV::Missing());
  EXPECT_FALSE(missing < Value(-1e308) || Value(-1e308) < missing || missing > Value(5.0));
  EXPECT_FALSE(Value(kNaN) < Value(1.0) || Value(1.0) < Value(kNaN));
  const Value one(1.0), near(OnePlusUlps(1));  // within the tolerance: both < and ==
  EXPECT_TRUE(one < near && one == near && near <= one);

  Value a, b, m1, m2;
  a[0] = 1;
  a[1] = 2;
  b[0] = 1;
  b[1] = 3;
  EXPECT_TRUE(a < b);
  b.Resize(1);
  EXPECT_TRUE(b < a);  // a prefix comes first
  m1["a"] = 5;
  m1["a0"] = 0;
  m2["a"] = 5;
  m2["b"] = -1;
  EXPECT_TRUE(m1 < m2);  // key before value
}

TEST(ValueTest, TotalOrderIsAStrictWeakOrdering) {
  // operator< fails here: 1.0 and 2.0 are each unordered with the sentinel
  // yet ordered with each other, so incomparability isn't transitive.
  const Value missing(QXMV::Missing());
  ASSERT_TRUE(!(missing < Value(1.0)) && !(Value(1.0) < missing) && Value(1.0) < Value(2.0));

  Value array, map;
  array[0] = 1;
  map["k"] = kNaN;
  const std::vector<Value> sample = {Value(),    Value(2),    Value(10),   Value(1.5),
                                     Value(0.0), Value(-0.0), Value(kNaN), missing,
                                     Value("b"), Value(""),   Value(true), Value(false),
                                     array,      map,         Value(-7),   Value(kNaN)};
  const ValueTotalOrder less;
  auto same = [&](const Value& x, const Value& y) { return !less(x, y) && !less(y, x); };
  for (const Value& x : sample) {
    EXPECT_FALSE(less(x, x));
    for (const Value& y : sample) {
      for (const Value& z : sample) {
        EXPECT_TRUE(!(less(x, y) && less(y, z)) || less(x, z));
        EXPECT_TRUE(!(same(x, y) && same(y, z)) || same(x, z));
      }
    }
  }
  std::vector<Value> sorted = sample;
  std::sort(sorted.begin(), sorted.end(), less);
  // By kind, then by content: false first, NaN after every number.
  EXPECT_TRUE(sorted[0].IsNull());
  EXPECT_FALSE(sorted[1].GetBool());
  EXPECT_EQ(sorted[3].GetInteger(), -7);
  EXPECT_EQ(sorted[6].GetReal(), QXMV::Missing());
  EXPECT_TRUE(std::isnan(sorted[11].GetReal()));
  std::map<Value, int, ValueTotalOrder> counts;
  for (const Value& x : sample) {
    ++counts[x];
  }
  EXPECT_EQ(counts[Value(kNaN)], 2);
  EXPECT_EQ(counts[Value(0.0)], 2);  // -0.0 goes with 0.0
}

TEST(ValueTest, KindsAboveSixCarryNothing) {
  Value odd, copy;
  odd.AssertTypeOrInvalid(9);
  copy = odd;
  EXPECT_EQ(copy.GetType(), 9);
  EXPECT_FALSE(odd == copy);
  EXPECT_EQ(odd.GetString(), "");
  EXPECT_FALSE(odd.IsSystemMissingValue());
}

// Under a decimal comma in std::cout's and the global locale, as a German
// locale has, the conversions keep the point; the locales are put back after.
TEST(ValueTest, ConversionsKeepThePointUnderADecimalComma) {
  const std::locale comma(std::locale::classic(), new internal::CommaDecimalPoint);
  const std::locale savedGlobal = std::locale::global(comma);
  const std::locale savedCout = std::cout.imbue(comma);
  EXPECT_EQ(Value("12.5").GetReal(), 12.5);
  EXPECT_EQ(Value(12.5).GetString(), "12.5");
  double x = 0.0;
  Str2T<double>(std::string("3.25e2"), x);
  EXPECT_EQ(x, 325.0);
  EXPECT_EQ(T2Str<double>(2.5), "2.5");
  // The point becomes std::cout's separator and is read in the global
  // locale: when the two disagree the fraction is lost.
  std::locale::global(std::locale::classic());
  EXPECT_EQ(Value("12.5").GetReal(), 12.0);
  std::locale::global(savedGlobal);
  std::cout.imbue(savedCout);
}

}  // namespace
}  // namespace QXCommon_850
