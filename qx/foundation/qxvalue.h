#ifndef QX_FOUNDATION_QXVALUE_H
#define QX_FOUNDATION_QXVALUE_H

#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXCommon_850 {

// A tagged value of seven kinds (null, boolean, 64-bit integer, real, string,
// array, string-keyed map) in which rows of data cross a component's boundary
// without a type decided first. A null value takes its kind from its first
// use; conversions between kinds never fail and fall back on a default; typed
// access and const array access throw QXException (codes 13 and 14).
//
// Comparison depends on the kind and is irregular on purpose: a null value
// equals nothing (not even another null), reals are equal within a relative
// tolerance of 100 * EPSILON, values of different kinds are ordered by their
// printed text, a missing real is neither below nor above anything, and
// operator> on two booleans asks the same question as operator<.
//
// WARNING: operator< is NOT a strict weak ordering. Do not hand it (or
// std::less<Value>) to std::sort, std::map, std::set, std::lower_bound and the
// like over values that may be null, missing, NaN or of different kinds: the
// result is undefined behaviour, not merely an odd order. Use ValueTotalOrder
// (below) wherever an order is needed.
class QXCOMMON_API Value {
 public:
  // The kind numbers that GetType returns and AssertTypeOrInvalid takes.
  enum ValueType : unsigned short {
    NULL_TYPE = 0,
    BOOL_TYPE = 1,
    INTEGER_TYPE = 2,
    REAL_TYPE = 3,
    STRING_TYPE = 4,
    ARRAY_TYPE = 5,
    MAP_TYPE = 6
  };

  // Prototype values of each scalar kind, set when the library loads.
  static Value NULL_VALUE;     // null
  static Value BOOL_VALUE;     // false
  static Value INTEGER_VALUE;  // 0
  static Value REAL_VALUE;     // the missing-value sentinel
  static Value STRING_VALUE;   // ""
  // 2.22045e-16 as written, the unit of the real tolerance (not DBL_EPSILON).
  static const double EPSILON;
  // The missing-value sentinel, this unit's own copy.
  static double SYSMISVALUE;
  static double QXVALUE_INFINITY;

  Value();
  Value(bool value);
  Value(int value);
  Value(long long value);
  Value(double value);
  // A null pointer is taken as the empty string.
  Value(const char* text);
  Value(const std::string& text);
  // Deep copy at every level.
  Value(const Value& other);
  // Takes the other's content and leaves it null.
  Value(Value&& other) noexcept;
  ~Value();

  // Deep assignment; the kind becomes that of the right side. The copy is
  // built before the old content goes, so a failed copy changes nothing.
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  Value& operator=(bool value);
  Value& operator=(int value);
  Value& operator=(long long value);
  Value& operator=(double value);
  Value& operator=(const char* text);
  Value& operator=(const std::string& text);

  // A new heap copy that the caller owns.
  Value* Clone() const;

  // Write the payload and keep the kind, unless it was null: SetValue(int) on
  // a real stores the integer's bits, which then read as a double. Use
  // operator= to change the kind. On a string, array or map (which own heap
  // storage) these act as operator= instead.
  void SetValue(bool value);
  void SetValue(int value);
  void SetValue(long long value);
  void SetValue(double value);
  // Assigns into the held string, or replaces any other kind by a string.
  void SetValue(const std::string& text);
  void SetValue(const char* text);

  unsigned short GetType() const;
  bool IsNull() const;
  bool IsNumericValue() const;  // integer or real
  // A real equal to the sentinel, or a null value.
  bool IsSystemMissingValue() const;
  bool IsMissing() const;
  // Elements of an array, entries of a map, bytes of a string; -1 otherwise.
  int Size() const;
  bool Contains(const std::string& key) const;  // only a map has keys
  std::vector<std::string> Names() const;       // a map's keys in key order
  // The held string, or an empty string for any other kind.
  const std::string& GetStringRef() const;

  // Conversions that never fail. A string is read by Str2T and a number
  // written by T2Str; an array or map counts its members and prints as
  // Display does. A null value gives false, 0, the sentinel and "".
  bool GetBool() const;
  long long GetInteger() const;  // reals truncate toward zero
  double GetReal() const;
  std::string GetString() const;

  // Typed access: a null value takes the kind, another kind throws
  // QXException(13, "Value type wrong!").
  operator bool&();
  operator long long&();
  operator double&();
  operator std::string&();
  // The same on a const value, where null is not forgiven.
  operator bool() const;
  operator long long() const;
  operator double() const;
  operator std::string() const;
  void AssertTypeOrInvalid(unsigned short kind);
  void AssertTypeOrInvalid(unsigned short kind) const;

  // Element i; throws 13 unless this is an array, 14 at or beyond the end. A
  // negative index throws std::out_of_range.
  const Value& operator[](int i) const;
  // Element i, growing the array (or making a null value one) to reach it.
  Value& operator[](int i);
  // The entry of `key`, inserted as null if absent. Any kind but a map is
  // silently discarded and replaced by an empty map first.
  Value& operator[](const std::string& key);
  Value& operator[](const char* key);
  // A const value has no keyed access; these stop `key` from silently
  // indexing the string literal through a numeric conversion.
  const Value& operator[](const std::string& key) const = delete;
  const Value& operator[](const char* key) const = delete;

  // Passes if this is an array of at least n elements; throws 13 or 14.
  void AssertArray(int n) const;
  // Null becomes an array of n nulls; another non-array throws 13. With
  // `exact`, or if it is shorter, the array is cut or padded to n elements
  // (a negative n counts as 0).
  void AssertArray(int n, bool exact);
  void Resize(int n);  // AssertArray(n, true)
  // Null or any other kind becomes an empty map; a map stays as it is.
  void AssertMap();

  // Release any content and become null.
  void Invalidate();
  void Clear();
  // Nulls the leaves and keeps the structure: an array keeps its size and a
  // map its keys, with every value cleared.
  void ClearValue();

  // Scalars through the stream's own insertion (a string bare), an array as
  // "{a,b}", a map as "[k:v,l:w]" in key order, null as nothing.
  std::ostream& Display(std::ostream& os) const;

  static double GetSysmisValue();
  static double GetInfinity();
  // |a - b| == 0, or neither is zero and max(|a|, |b|) * (tolerance *
  // EPSILON) >= |a - b|. Nothing is close to zero; NaN is close to nothing.
  static bool IsZeroDiff(double a, double b, double tolerance);

  // Same kind and equal content; null never equals anything, reals within
  // IsZeroDiff(.., 100), and an integer never equals a real.
  bool operator==(const Value& other) const;
  bool operator!=(const Value& other) const;
  // Across kinds, the order of GetString(); within a kind, its natural order
  // (false < true, exact for reals, missing reals unordered). See the
  // warning above.
  bool operator<(const Value& other) const;
  // other < *this, except two booleans: the same test as operator<.
  bool operator>(const Value& other) const;
  bool operator<=(const Value& other) const;  // < or ==
  bool operator>=(const Value& other) const;  // > or ==

 private:
  friend struct ValueTotalOrder;

  union Payload {
    long long integer;
    bool flag;
    double real;
    std::string* text;
    std::vector<Value>* array;
    std::map<std::string, Value>* map;
  };

  bool Flag() const;
  void Swap(Value& other) noexcept;
  static int TotalCompare(const Value& a, const Value& b);

  unsigned short type;
  Payload payload;
};

// Value::Display.
QXCOMMON_API std::ostream& operator<<(std::ostream& os, const Value& value);

// A strict weak ordering of values, for sorting and ordered containers: by
// kind number first, then within a kind false < true, integers and reals
// numerically (NaN after all numbers, -0.0 with 0.0), strings by bytes, and
// arrays and maps lexicographically by this same order. Equivalence here is
// not Value::operator==.
struct QXCOMMON_API ValueTotalOrder {
  bool operator()(const Value& a, const Value& b) const;
};

// Text to value for double, long long and bool. The double form first turns
// the first "." into the decimal point of std::cout's locale, then reads the
// text in the global locale. The stream state is not checked: text that is
// not a number leaves whatever the extraction leaves in `result`.
QXCOMMON_API void Str2T(const std::string& text, double& result);
QXCOMMON_API void Str2T(const std::string& text, long long& result);
QXCOMMON_API void Str2T(const std::string& text, bool& result);

// Value to text through a default stream (global locale, six significant
// digits). The double form turns the first "," into "." so that the text
// always carries a point. Not meant for persistence.
QXCOMMON_API std::string T2Str(double value);
QXCOMMON_API std::string T2Str(long long value);
QXCOMMON_API std::string T2Str(bool value);

// The same under their template names, Str2T<double>(text, x) and so on. The
// work is done by the plain overloads above, which the library exports.
template <typename T>
void Str2T(const std::string& text, T& result) {
  static_assert(std::is_same<T, double>::value || std::is_same<T, long long>::value ||
                    std::is_same<T, bool>::value,
                "Str2T converts to double, long long or bool");
  Str2T(text, result);
}
template <typename T>
std::string T2Str(T value) {
  static_assert(std::is_same<T, double>::value || std::is_same<T, long long>::value ||
                    std::is_same<T, bool>::value,
                "T2Str converts from double, long long or bool");
  return T2Str(value);
}

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXVALUE_H
