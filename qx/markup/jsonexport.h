#ifndef QX_MARKUP_JSONEXPORT_H
#define QX_MARKUP_JSONEXPORT_H

#include <map>
#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// A small JSON value that is built in memory and printed, never parsed. A
// component uses the four Create... factories to hand a piece of text over
// for display to a machine reader, which relies on the exact layout below.
//
// Layout of GetJsonString: an object is "{\n", then its members in key
// order, each a tab, the quoted key, " : " and the value, with ",\n" between
// members and "\n" after the last, then "}\n". A list is "[", its elements
// joined by ",\n", then "]". Nesting adds no indentation, and a nested
// object ends in its own line feed, so the separator after it stands on a
// line of its own.
//
// The text is JSON only for well-behaved content, and is kept so on purpose:
// - keys and strings go out as they are, nothing escaped: a quote, a
//   backslash or a control character (tab, line feed) in them gives text
//   that is not JSON or reads back differently, and bytes that are not
//   UTF-8 pass through;
// - numbers are "%.15g" with a point, whatever the locale: infinities and
//   NaN print as "inf", "-inf", "nan", which are not JSON; 15 digits don't
//   bring every double back exactly, and the missing-value sentinel prints
//   as -1.79769313486232e+308, beyond the largest double, so a reader of
//   doubles takes it for minus infinity.
// A whole number is added as a double (an int matches double and bool
// alike); a pointer other than const char* would become a boolean.
class QXCOMMON_API JsonObject {
 public:
  // An empty object (type 4).
  JsonObject();
  // A number (type 1).
  JsonObject(double value);
  // A boolean (type 2).
  JsonObject(bool value);
  // A string (type 0); a null pointer gives the empty string.
  JsonObject(const char* value);
  JsonObject(const std::string& value);
  // A list (type 3) of copies of the elements.
  JsonObject(const std::vector<JsonObject>& elements);
  // An object (type 4) with the one member `key`.
  JsonObject(const std::string& key, bool value);
  JsonObject(const std::string& key, double value);
  JsonObject(const std::string& key, const char* value);
  JsonObject(const std::string& key, const std::string& value);
  JsonObject(const std::string& key, const JsonObject& value);

  // Stores a copy of `value` under `key`, replacing a member of that key.
  // Whatever the type of this object, the member is kept, but only an object
  // prints its members. Returns this object, for chaining.
  JsonObject& AddPair(const std::string& key, bool value);
  JsonObject& AddPair(const std::string& key, double value);
  JsonObject& AddPair(const std::string& key, const char* value);
  JsonObject& AddPair(const std::string& key, const std::string& value);
  JsonObject& AddPair(const std::string& key, const JsonObject& value);
  // Appends a copy of `value` to the list. The type doesn't change, so only
  // a list prints it. Returns this object.
  JsonObject& AddToList(const JsonObject& value);

  // 0 string, 1 number, 2 boolean, 3 list, 4 object.
  int GetType() const;
  // The nesting count: 0 for a number, boolean or string, 1 for an object or
  // list of plain values, one more for each level of nesting. Adding keeps
  // it up to date; replacing a member never lowers it.
  int GetDepth() const;
  // Removes every member and element and sets the depth to 1; the type and
  // a plain value stay.
  void Clear();

  // The text of the value. With `closed` false the outermost object or list
  // lacks its closing "}\n" or "]", so that a caller can append to it; inner
  // levels are always closed. An empty list prints as "[" and "]".
  std::string GetJsonString(bool closed) const;

  // {"text": {"stringDataText": {"value": value, "variable": variable}}}
  static JsonObject CreateStringDataText(const std::string& variable, const std::string& value);
  // {"text": {"numericDataText": {"value": value, "variable": variable}}}
  static JsonObject CreateNumDataText(const std::string& variable, double value);
  // {"text": {"variableText": {"variable": variable}}}
  static JsonObject CreateVariableText(const std::string& variable);
  // {"text": {"stringText": {"key": key, "value": value}}}
  static JsonObject CreateStringText(const std::string& key, const std::string& value);

 private:
  void Append(std::string& out, bool closed) const;
  void RaiseDepth(const JsonObject& value);

  int type;
  int depth;
  double number;
  bool flag;
  std::string text;
  std::vector<JsonObject> list;
  std::map<std::string, JsonObject> pairs;
};

}  // namespace QXXML_850

#endif  // QX_MARKUP_JSONEXPORT_H
