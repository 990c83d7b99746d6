#include "qx/markup/jsonexport.h"

#include <utility>

#include "qx/foundation/localeutil.h"

namespace QXXML_850 {

namespace {

enum JsonType { kString = 0, kNumber = 1, kBoolean = 2, kList = 3, kObject = 4 };

}  // namespace

JsonObject::JsonObject() : type(kObject), depth(1), number(0.0), flag(false) {}

JsonObject::JsonObject(double value) : type(kNumber), depth(0), number(value), flag(false) {}

JsonObject::JsonObject(bool value) : type(kBoolean), depth(0), number(0.0), flag(value) {}

JsonObject::JsonObject(const char* value)
    : type(kString), depth(0), number(0.0), flag(false), text(value == nullptr ? "" : value) {}

JsonObject::JsonObject(const std::string& value)
    : type(kString), depth(0), number(0.0), flag(false), text(value) {}

JsonObject::JsonObject(const std::vector<JsonObject>& elements)
    : type(kList), depth(1), number(0.0), flag(false), list(elements) {
  for (const JsonObject& element : list)
    RaiseDepth(element);
}

JsonObject::JsonObject(const std::string& key, bool value) : JsonObject() {
  AddPair(key, value);
}

JsonObject::JsonObject(const std::string& key, double value) : JsonObject() {
  AddPair(key, value);
}

JsonObject::JsonObject(const std::string& key, const char* value) : JsonObject() {
  AddPair(key, value);
}

JsonObject::JsonObject(const std::string& key, const std::string& value) : JsonObject() {
  AddPair(key, value);
}

JsonObject::JsonObject(const std::string& key, const JsonObject& value) : JsonObject() {
  AddPair(key, value);
}

void JsonObject::RaiseDepth(const JsonObject& value) {
  if (value.depth + 1 > depth) depth = value.depth + 1;
}

JsonObject& JsonObject::AddPair(const std::string& key, bool value) {
  return AddPair(key, JsonObject(value));
}

JsonObject& JsonObject::AddPair(const std::string& key, double value) {
  return AddPair(key, JsonObject(value));
}

JsonObject& JsonObject::AddPair(const std::string& key, const char* value) {
  return AddPair(key, JsonObject(value));
}

JsonObject& JsonObject::AddPair(const std::string& key, const std::string& value) {
  return AddPair(key, JsonObject(value));
}

JsonObject& JsonObject::AddPair(const std::string& key, const JsonObject& value) {
  // Copied before the map changes, since `value` may be this object or one
  // of its own members; the depth changes only once the member is in.
  JsonObject copy(value);
  JsonObject& member = pairs[key];
  member = std::move(copy);
  RaiseDepth(member);
  return *this;
}

JsonObject& JsonObject::AddToList(const JsonObject& value) {
  JsonObject copy(value);  // `value` may be this object or one of its elements
  list.push_back(std::move(copy));
  RaiseDepth(list.back());
  return *this;
}

int JsonObject::GetType() const {
  return type;
}

int JsonObject::GetDepth() const {
  return depth;
}

void JsonObject::Clear() {
  pairs.clear();
  list.clear();
  depth = 1;
}

std::string JsonObject::GetJsonString(bool closed) const {
  std::string out;
  Append(out, closed);
  return out;
}

// Appends the text of GetJsonString(closed) to `out`, so that nested levels
// don't build and copy strings of their own.
void JsonObject::Append(std::string& out, bool closed) const {
  switch (type) {
    case kString:
      out += '"';
      out += text;
      out += '"';
      return;
    case kNumber:
      out += Format(number, false, nullptr);
      return;
    case kBoolean:
      out += flag ? "true" : "false";
      return;
    case kList:
      out += '[';
      for (size_t i = 0; i < list.size(); ++i) {
        if (i > 0) out += ",\n";
        list[i].Append(out, true);
      }
      if (closed) out += ']';
      return;
    case kObject: {
      out += "{\n";
      bool first = true;
      for (const auto& pair : pairs) {
        if (!first) out += ",\n";
        first = false;
        out += "\t\"";
        out += pair.first;
        out += "\" : ";
        pair.second.Append(out, true);
      }
      out += '\n';
      if (closed) out += "}\n";
      return;
    }
    default:
      return;
  }
}

JsonObject JsonObject::CreateStringDataText(const std::string& variable, const std::string& value) {
  JsonObject data;
  data.AddPair("variable", variable).AddPair("value", value);
  return JsonObject("text", JsonObject("stringDataText", data));
}

JsonObject JsonObject::CreateNumDataText(const std::string& variable, double value) {
  JsonObject data;
  data.AddPair("variable", variable).AddPair("value", value);
  return JsonObject("text", JsonObject("numericDataText", data));
}

JsonObject JsonObject::CreateVariableText(const std::string& variable) {
  return JsonObject("text", JsonObject("variableText", JsonObject("variable", variable)));
}

JsonObject JsonObject::CreateStringText(const std::string& key, const std::string& value) {
  JsonObject data;
  data.AddPair("key", key).AddPair("value", value);
  return JsonObject("text", JsonObject("stringText", data));
}

}  // namespace QXXML_850
