#include "qx/foundation/qxvalue.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <locale>
#include <sstream>

#include "qx/foundation/internal/doublebits.h"
#include "qx/foundation/internal/truncate.h"
#include "qx/foundation/qxexception.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXCommon_850 {

namespace {

const char* NotAnArray = "This value is not an array!";
const char* OutOfBounds = "Out of this array bounds!";
const char* WrongType = "Value type wrong!";

// An index's element count without overflow at INT_MAX.
int CountThrough(int i) {
  return i == INT_MAX ? INT_MAX : i + 1;
}

}  // namespace

// This unit keeps its own sentinel, so that its constants never depend on the
// order in which the library's units are initialised.
double Value::SYSMISVALUE = internal::DoubleFromBits(internal::kMissingValueBits);
double Value::QXVALUE_INFINITY = internal::DoubleFromBits(internal::kInfinityBits);
const double Value::EPSILON = 2.22045e-16;
Value Value::NULL_VALUE;
Value Value::BOOL_VALUE(false);
Value Value::INTEGER_VALUE(0);
Value Value::REAL_VALUE(Value::SYSMISVALUE);
Value Value::STRING_VALUE("");

Value::Value() : type(NULL_TYPE) {
  payload.integer = 0;
}
Value::Value(bool value) : type(BOOL_TYPE) {
  payload.integer = 0;
  payload.flag = value;
}
Value::Value(int value) : type(INTEGER_TYPE) {
  payload.integer = value;
}
Value::Value(long long value) : type(INTEGER_TYPE) {
  payload.integer = value;
}
Value::Value(double value) : type(REAL_TYPE) {
  payload.real = value;
}
Value::Value(const char* text) : type(NULL_TYPE) {
  payload.text = new std::string(text == nullptr ? "" : text);
  type = STRING_TYPE;
}
Value::Value(const std::string& text) : type(NULL_TYPE) {
  payload.text = new std::string(text);
  type = STRING_TYPE;
}

Value::Value(const Value& other) : type(NULL_TYPE) {
  payload.integer = 0;
  switch (other.type) {
    case NULL_TYPE:
    case BOOL_TYPE:
    case INTEGER_TYPE:
    case REAL_TYPE:
      payload = other.payload;
      break;
    case STRING_TYPE:
      payload.text = new std::string(*other.payload.text);
      break;
    case ARRAY_TYPE:
      payload.array = new std::vector<Value>(*other.payload.array);
      break;
    case MAP_TYPE:
      payload.map = new std::map<std::string, Value>(*other.payload.map);
      break;
    default:  // an unknown kind carries nothing
      break;
  }
  type = other.type;
}

Value::Value(Value&& other) noexcept : type(other.type), payload(other.payload) {
  other.type = NULL_TYPE;
  other.payload.integer = 0;
}

Value::~Value() {
  Invalidate();
}

void Value::Swap(Value& other) noexcept {
  std::swap(type, other.type);
  std::swap(payload, other.payload);
}

Value& Value::operator=(const Value& other) {
  if (this == &other) return *this;
  // Copy first: the source may live inside this value's own array or map.
  Value copy(other);
  Swap(copy);
  return *this;
}

Value& Value::operator=(Value&& other) noexcept {
  if (this == &other) return *this;
  Value taken(std::move(other));
  Swap(taken);
  return *this;
}

Value& Value::operator=(bool value) {
  return *this = Value(value);
}
Value& Value::operator=(int value) {
  return *this = Value(value);
}
Value& Value::operator=(long long value) {
  return *this = Value(value);
}
Value& Value::operator=(double value) {
  return *this = Value(value);
}
Value& Value::operator=(const char* text) {
  return *this = Value(text);
}
Value& Value::operator=(const std::string& text) {
  return *this = Value(text);
}

Value* Value::Clone() const {
  return new Value(*this);
}

// A flag is the first byte of the word; reading it as a byte stays defined
// whatever bits a kind-keeping setter left there.
bool Value::Flag() const {
  unsigned char byte;
  std::memcpy(&byte, &payload, 1);
  return byte != 0;
}

void Value::SetValue(bool value) {
  if (type >= STRING_TYPE && type <= MAP_TYPE) {
    *this = value;
    return;
  }
  if (type == NULL_TYPE) type = BOOL_TYPE;
  payload.integer = 0;
  payload.flag = value;
}

void Value::SetValue(int value) {
  SetValue(static_cast<long long>(value));
}

void Value::SetValue(long long value) {
  if (type >= STRING_TYPE && type <= MAP_TYPE) {
    *this = value;
    return;
  }
  if (type == NULL_TYPE) type = INTEGER_TYPE;
  payload.integer = value;
}

void Value::SetValue(double value) {
  if (type >= STRING_TYPE && type <= MAP_TYPE) {
    *this = value;
    return;
  }
  if (type == NULL_TYPE) type = REAL_TYPE;
  payload.real = value;
}

void Value::SetValue(const std::string& text) {
  if (type == STRING_TYPE) {
    *payload.text = text;
    return;
  }
  std::string* fresh = new std::string(text);
  Clear();
  payload.text = fresh;
  type = STRING_TYPE;
}

void Value::SetValue(const char* text) {
  if (text == nullptr) text = "";
  if (type == STRING_TYPE) {
    *payload.text = text;
    return;
  }
  SetValue(std::string(text));
}

unsigned short Value::GetType() const {
  return type;
}
bool Value::IsNull() const {
  return type == NULL_TYPE;
}
bool Value::IsNumericValue() const {
  return type == INTEGER_TYPE || type == REAL_TYPE;
}

bool Value::IsSystemMissingValue() const {
  if (type == REAL_TYPE) return QXMV::IsMissing(payload.real);
  return type == NULL_TYPE;
}

bool Value::IsMissing() const {
  return IsSystemMissingValue();
}

int Value::Size() const {
  switch (type) {
    case STRING_TYPE:
      return static_cast<int>(payload.text->size());
    case ARRAY_TYPE:
      return static_cast<int>(payload.array->size());
    case MAP_TYPE:
      return static_cast<int>(payload.map->size());
    default:
      return -1;
  }
}

bool Value::Contains(const std::string& key) const {
  return type == MAP_TYPE && payload.map->count(key) > 0;
}

std::vector<std::string> Value::Names() const {
  std::vector<std::string> names;
  if (type != MAP_TYPE) return names;
  names.reserve(payload.map->size());
  for (const auto& entry : *payload.map)
    names.push_back(entry.first);
  return names;
}

const std::string& Value::GetStringRef() const {
  if (type == STRING_TYPE) return *payload.text;
  if (STRING_VALUE.type == STRING_TYPE) return *STRING_VALUE.payload.text;
  static const std::string empty;  // only if a caller has overwritten STRING_VALUE
  return empty;
}

bool Value::GetBool() const {
  switch (type) {
    case BOOL_TYPE:
      return Flag();
    case INTEGER_TYPE:
      return payload.integer != 0;
    case REAL_TYPE:
      return payload.real != 0.0;  // NaN counts as true
    case STRING_TYPE: {
      bool result = false;
      Str2T(*payload.text, result);
      return result;
    }
    case ARRAY_TYPE:
      return !payload.array->empty();
    case MAP_TYPE:
      return !payload.map->empty();
    default:
      return false;
  }
}

long long Value::GetInteger() const {
  switch (type) {
    case BOOL_TYPE:
      return Flag() ? 1 : 0;
    case INTEGER_TYPE:
      return payload.integer;
    case REAL_TYPE:
      return internal::TruncateToward0<long long>(payload.real);
    case STRING_TYPE: {
      long long result = 0;
      Str2T(*payload.text, result);
      return result;
    }
    case ARRAY_TYPE:
      return static_cast<long long>(payload.array->size());
    case MAP_TYPE:
      return static_cast<long long>(payload.map->size());
    default:
      return 0;
  }
}

double Value::GetReal() const {
  switch (type) {
    case BOOL_TYPE:
      return Flag() ? 1.0 : 0.0;
    case INTEGER_TYPE:
      return static_cast<double>(payload.integer);
    case REAL_TYPE:
      return payload.real;
    case STRING_TYPE: {
      double result = QXMV::Missing();
      Str2T(*payload.text, result);
      return result;
    }
    case ARRAY_TYPE:
      return static_cast<double>(payload.array->size());
    case MAP_TYPE:
      return static_cast<double>(payload.map->size());
    default:
      return QXMV::Missing();
  }
}

std::string Value::GetString() const {
  switch (type) {
    case BOOL_TYPE:
      return T2Str(Flag());
    case INTEGER_TYPE:
      return T2Str(payload.integer);
    case REAL_TYPE:
      return T2Str(payload.real);
    case STRING_TYPE:
      return *payload.text;
    case ARRAY_TYPE:
    case MAP_TYPE: {
      std::ostringstream out;
      Display(out);
      return out.str();
    }
    default:
      return std::string();
  }
}

Value::operator bool&() {
  AssertTypeOrInvalid(BOOL_TYPE);
  return payload.flag;
}
Value::operator long long&() {
  AssertTypeOrInvalid(INTEGER_TYPE);
  return payload.integer;
}
Value::operator double&() {
  AssertTypeOrInvalid(REAL_TYPE);
  return payload.real;
}
Value::operator std::string&() {
  AssertTypeOrInvalid(STRING_TYPE);
  return *payload.text;
}
Value::operator bool() const {
  AssertTypeOrInvalid(BOOL_TYPE);
  return Flag();
}
Value::operator long long() const {
  AssertTypeOrInvalid(INTEGER_TYPE);
  return payload.integer;
}
Value::operator double() const {
  AssertTypeOrInvalid(REAL_TYPE);
  return payload.real;
}
Value::operator std::string() const {
  AssertTypeOrInvalid(STRING_TYPE);
  return *payload.text;
}

void Value::AssertTypeOrInvalid(unsigned short kind) {
  if (type == kind) return;
  if (type != NULL_TYPE) throw QXException(13, WrongType);
  switch (kind) {
    case STRING_TYPE:
      payload.text = new std::string();
      break;
    case ARRAY_TYPE:
      payload.array = new std::vector<Value>();
      break;
    case MAP_TYPE:
      payload.map = new std::map<std::string, Value>();
      break;
    default:  // the zero payload serves every scalar kind
      break;
  }
  type = kind;
}

void Value::AssertTypeOrInvalid(unsigned short kind) const {
  if (type != kind) throw QXException(13, WrongType);
}

const Value& Value::operator[](int i) const {
  AssertArray(CountThrough(i));
  return payload.array->at(static_cast<size_t>(i));
}

Value& Value::operator[](int i) {
  AssertArray(CountThrough(i), false);
  return payload.array->at(static_cast<size_t>(i));
}

Value& Value::operator[](const std::string& key) {
  AssertMap();
  return (*payload.map)[key];
}

Value& Value::operator[](const char* key) {
  return (*this)[std::string(key == nullptr ? "" : key)];
}

void Value::AssertArray(int n) const {
  if (type != ARRAY_TYPE) throw QXException(13, NotAnArray);
  if (n > 0 && static_cast<size_t>(n) > payload.array->size()) throw QXException(14, OutOfBounds);
}

void Value::AssertArray(int n, bool exact) {
  const size_t count = n < 0 ? 0 : static_cast<size_t>(n);
  if (type == NULL_TYPE) {
    payload.array = new std::vector<Value>(count);
    type = ARRAY_TYPE;
    return;
  }
  if (type != ARRAY_TYPE) throw QXException(13, NotAnArray);
  if (!exact && count <= payload.array->size()) return;
  payload.array->resize(count);
}

void Value::Resize(int n) {
  AssertArray(n, true);
}

void Value::AssertMap() {
  if (type == MAP_TYPE) return;
  auto* fresh = new std::map<std::string, Value>();
  Invalidate();
  payload.map = fresh;
  type = MAP_TYPE;
}

void Value::Invalidate() {
  const unsigned short kind = type;
  const Payload held = payload;
  type = NULL_TYPE;
  payload.integer = 0;
  switch (kind) {
    case STRING_TYPE:
      delete held.text;
      break;
    case ARRAY_TYPE:
      delete held.array;
      break;
    case MAP_TYPE:
      delete held.map;
      break;
    default:
      break;
  }
}

void Value::Clear() {
  Invalidate();
}

void Value::ClearValue() {
  switch (type) {
    case BOOL_TYPE:
    case INTEGER_TYPE:
    case REAL_TYPE:
    case STRING_TYPE:
      Invalidate();
      break;
    case ARRAY_TYPE:
      for (Value& element : *payload.array)
        element.ClearValue();
      break;
    case MAP_TYPE:
      for (auto& entry : *payload.map)
        entry.second.ClearValue();
      break;
    default:
      break;
  }
}

std::ostream& Value::Display(std::ostream& os) const {
  switch (type) {
    case BOOL_TYPE:
      os << Flag();
      break;
    case INTEGER_TYPE:
      os << payload.integer;
      break;
    case REAL_TYPE:
      os << payload.real;
      break;
    case STRING_TYPE:
      os << *payload.text;
      break;
    case ARRAY_TYPE: {
      os << "{";
      bool first = true;
      for (const Value& element : *payload.array) {
        if (!first) os << ",";
        first = false;
        element.Display(os);
      }
      os << "}";
      break;
    }
    case MAP_TYPE: {
      os << "[";
      bool first = true;
      for (const auto& entry : *payload.map) {
        if (!first) os << ",";
        first = false;
        os << entry.first << ":";
        entry.second.Display(os);
      }
      os << "]";
      break;
    }
    default:
      break;
  }
  return os;
}

double Value::GetSysmisValue() {
  return SYSMISVALUE;
}
double Value::GetInfinity() {
  return QXVALUE_INFINITY;
}

bool Value::IsZeroDiff(double a, double b, double tolerance) {
  const double difference = std::fabs(a - b);
  if (difference == 0.0) return true;
  if (a == 0.0 || b == 0.0) return false;
  return std::max(std::fabs(a), std::fabs(b)) * (tolerance * EPSILON) >= difference;
}

bool Value::operator==(const Value& other) const {
  if (type != other.type) return false;
  switch (type) {
    case BOOL_TYPE:
      return Flag() == other.Flag();
    case INTEGER_TYPE:
      return payload.integer == other.payload.integer;
    case REAL_TYPE: {
      const double x = payload.real, y = other.payload.real;
      if (x == 0.0 && y == 0.0) return true;
      if (x == SYSMISVALUE && y == SYSMISVALUE) return true;
      if (x == SYSMISVALUE || y == SYSMISVALUE) return false;
      return IsZeroDiff(x, y, 100.0);
    }
    case STRING_TYPE:
      return *payload.text == *other.payload.text;
    case ARRAY_TYPE:
      return *payload.array == *other.payload.array;
    case MAP_TYPE: {
      const auto& mine = *payload.map;
      const auto& theirs = *other.payload.map;
      if (mine.size() != theirs.size()) return false;
      for (auto a = mine.begin(), b = theirs.begin(); a != mine.end(); ++a, ++b) {
        if (a->first != b->first || !(a->second == b->second)) return false;
      }
      return true;
    }
    default:  // null equals nothing, and an unknown kind carries nothing
      return false;
  }
}

bool Value::operator!=(const Value& other) const {
  return !(*this == other);
}

bool Value::operator<(const Value& other) const {
  if (type != other.type) return GetString().compare(other.GetString()) < 0;
  switch (type) {
    case BOOL_TYPE:
      return !Flag() && other.Flag();
    case INTEGER_TYPE:
      return payload.integer < other.payload.integer;
    case REAL_TYPE:
      if (IsSystemMissingValue() || other.IsSystemMissingValue()) return false;
      return payload.real < other.payload.real;
    case STRING_TYPE:
      return payload.text->compare(*other.payload.text) < 0;
    case ARRAY_TYPE:
      return std::lexicographical_compare(payload.array->begin(), payload.array->end(),
                                          other.payload.array->begin(), other.payload.array->end());
    case MAP_TYPE:
      // Pairs compare key first, then value.
      return std::lexicographical_compare(payload.map->begin(), payload.map->end(),
                                          other.payload.map->begin(), other.payload.map->end());
    default:
      return false;
  }
}

bool Value::operator>(const Value& other) const {
  // Kept as it has always been: on booleans, > asks the question of <.
  if (type == BOOL_TYPE && other.type == BOOL_TYPE) return !Flag() && other.Flag();
  return other < *this;
}

bool Value::operator<=(const Value& other) const {
  return *this < other || *this == other;
}
bool Value::operator>=(const Value& other) const {
  return *this > other || *this == other;
}

std::ostream& operator<<(std::ostream& os, const Value& value) {
  return value.Display(os);
}

namespace {
template <typename T>
int Sign(const T& a, const T& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}
}  // namespace

int Value::TotalCompare(const Value& a, const Value& b) {
  if (a.type != b.type) return a.type < b.type ? -1 : 1;
  switch (a.type) {
    case BOOL_TYPE:
      return Sign(a.Flag(), b.Flag());
    case INTEGER_TYPE:
      return Sign(a.payload.integer, b.payload.integer);
    case REAL_TYPE: {
      const double x = a.payload.real, y = b.payload.real;
      const bool xNaN = std::isnan(x), yNaN = std::isnan(y);
      if (xNaN || yNaN) return Sign(xNaN, yNaN);
      return Sign(x, y);
    }
    case STRING_TYPE: {
      const int c = a.payload.text->compare(*b.payload.text);
      return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    case ARRAY_TYPE: {
      const auto &x = *a.payload.array, &y = *b.payload.array;
      for (size_t i = 0; i < x.size() && i < y.size(); ++i) {
        if (const int c = TotalCompare(x[i], y[i])) return c;
      }
      return Sign(x.size(), y.size());
    }
    case MAP_TYPE: {
      const auto &x = *a.payload.map, &y = *b.payload.map;
      auto i = x.begin(), j = y.begin();
      for (; i != x.end() && j != y.end(); ++i, ++j) {
        if (const int c = i->first.compare(j->first)) return c < 0 ? -1 : 1;
        if (const int c = TotalCompare(i->second, j->second)) return c;
      }
      return Sign(x.size(), y.size());
    }
    default:
      return 0;
  }
}

bool ValueTotalOrder::operator()(const Value& a, const Value& b) const {
  return Value::TotalCompare(a, b) < 0;
}

void Str2T(const std::string& text, double& result) {
  const char point = std::use_facet<std::numpunct<char>>(std::cout.getloc()).decimal_point();
  std::string copy = text;
  const size_t dot = copy.find('.');
  if (dot != std::string::npos) copy[dot] = point;
  std::istringstream in(copy);
  in >> result;
}

void Str2T(const std::string& text, long long& result) {
  std::istringstream in(text);
  in >> result;
}

void Str2T(const std::string& text, bool& result) {
  std::istringstream in(text);
  in >> result;
}

std::string T2Str(double value) {
  std::ostringstream out;
  out << value;
  std::string text = out.str();
  const size_t comma = text.find(',');
  if (comma != std::string::npos) text[comma] = '.';
  return text;
}

std::string T2Str(long long value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

std::string T2Str(bool value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

}  // namespace QXCommon_850
