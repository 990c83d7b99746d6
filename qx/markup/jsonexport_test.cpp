#include "qx/markup/jsonexport.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "qx/foundation/internal/testlocale.h"

namespace QXXML_850 {
namespace {

using List = std::vector<JsonObject>;

// {"inner": {"m": "text", "z": true}, "list": [1, "two", <inner>], "n": 2},
// each level filled out of key order.
JsonObject NestedObject() {
  JsonObject inner;
  inner.AddPair("z", true).AddPair("m", "text");
  JsonObject root;
  root.AddPair("n", 2.0)
      .AddPair("list", JsonObject(List{1.0, "two", inner}))
      .AddPair("inner", inner);
  return root;
}

// The text of a display factory: "text" holding `shape` holding `members`.
std::string Display(const std::string& shape, const std::string& members) {
  return "{\n\t\"text\" : {\n\t\"" + shape + "\" : {\n" + members + "\n}\n\n}\n\n}\n";
}

TEST(JsonObjectTest, NestedShapesByteForByte) {
  EXPECT_EQ(JsonObject("a", 1.5).GetJsonString(true), "{\n\t\"a\" : 1.5\n}\n");
  EXPECT_EQ(JsonObject("a", 1.5).GetJsonString(false), "{\n\t\"a\" : 1.5\n");
  EXPECT_EQ(JsonObject().GetJsonString(true) + JsonObject(List()).GetJsonString(true),
            "{\n\n}\n[]");
  const std::string inner = "{\n\t\"m\" : \"text\",\n\t\"z\" : true\n}\n";
  const std::string body =
      "{\n\t\"inner\" : " + inner + ",\n\t\"list\" : [1,\n\"two\",\n" + inner + "],\n\t\"n\" : 2\n";
  const JsonObject root = NestedObject();
  EXPECT_EQ(root.GetJsonString(true), body + "}\n");
  EXPECT_EQ(root.GetJsonString(false), body);  // inner levels stay closed
  EXPECT_EQ(root.GetDepth(), 3);

  JsonObject lists(List{JsonObject(List{1.0, 2.0})});
  lists.AddToList(JsonObject(List{3.0}));
  EXPECT_EQ(lists.GetJsonString(false), "[[1,\n2],\n[3]");
  EXPECT_EQ(lists.GetDepth(), 2);

  // Members in key order: "value" before "variable".
  EXPECT_EQ(JsonObject::CreateNumDataText("income", 47.25).GetJsonString(true),
            Display("numericDataText", "\t\"value\" : 47.25,\n\t\"variable\" : \"income\""));
  EXPECT_EQ(JsonObject::CreateStringDataText("region", "north").GetJsonString(true),
            Display("stringDataText", "\t\"value\" : \"north\",\n\t\"variable\" : \"region\""));
  EXPECT_EQ(JsonObject::CreateVariableText("age").GetJsonString(true),
            Display("variableText", "\t\"variable\" : \"age\""));
  const std::string text = Display("stringText", "\t\"key\" : \"Weight\",\n\t\"value\" : \"w\"");
  EXPECT_EQ(JsonObject::CreateStringText("Weight", "w").GetJsonString(false),
            text.substr(0, text.size() - 2));
}

TEST(JsonObjectTest, MembersAreReplacedAndCopiesAreDeep) {
  JsonObject object("k", NestedObject());
  object.AddPair("k", 1.0);  // one member, the later value; the depth stays
  EXPECT_EQ(object.GetJsonString(true), "{\n\t\"k\" : 1\n}\n");
  EXPECT_EQ(object.GetDepth(), 4);

  JsonObject copy = object;
  copy.AddPair("k", "new").AddPair("self", copy);  // itself as it was
  EXPECT_EQ(object.GetJsonString(true), "{\n\t\"k\" : 1\n}\n");
  EXPECT_EQ(copy.GetJsonString(true),
            "{\n\t\"k\" : \"new\",\n\t\"self\" : {\n\t\"k\" : \"new\"\n}\n\n}\n");

  JsonObject list(List{1.0});
  list.AddToList(list).AddPair("unseen", 2.0);  // a list prints no members
  EXPECT_EQ(list.GetJsonString(true), "[1,\n[1]]");
  object.AddToList(2.0);  // nor an object elements
  EXPECT_EQ(object.GetJsonString(true), "{\n\t\"k\" : 1\n}\n");

  list.Clear();  // each keeps its type, and a number its value
  object.Clear();
  JsonObject number(2.5);
  number.Clear();
  EXPECT_EQ(list.GetJsonString(true) + object.GetJsonString(true) + number.GetJsonString(true),
            "[]{\n\n}\n2.5");
  EXPECT_EQ(object.GetDepth(), 1);
}

TEST(JsonObjectTest, TextThatIsNotJsonIsKeptAsItStands) {
  EXPECT_EQ(JsonObject("ta\tb", "say \"hi\"\\").GetJsonString(true),
            "{\n\t\"ta\tb\" : \"say \"hi\"\\\"\n}\n");
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(
      JsonObject(List{inf, -inf, std::numeric_limits<double>::quiet_NaN()}).GetJsonString(true),
      "[inf,\n-inf,\nnan]");
  EXPECT_EQ(JsonObject(-1.7976931348623157e+308).GetJsonString(true), "-1.79769313486232e+308");
}

// Fifteen significant digits in the shortest form, with a point also under
// a decimal-comma locale where one can be had.
TEST(JsonObjectTest, NumbersHaveFifteenDigitsAndAPoint) {
  std::string why;
  QXCommon_850::internal::UseLocale("de_DE.UTF-8", "de_DE", "UTF-8",
                                    QX_TEST_BINARY_DIR "/test-locales", why);
  const std::string text =
      JsonObject(List{0.1 + 0.2, 1.0 / 3.0, 1e20, 1234567890123456789.0, -0.0, 1e-7, false})
          .GetJsonString(true);
  QXCommon_850::internal::UseClassicLocale();
  EXPECT_EQ(text, "[0.3,\n0.333333333333333,\n1e+20,\n1.23456789012346e+18,\n-0,\n1e-07,\nfalse]")
      << why;
}

// Each text as Python's json module reads it, written back compactly with
// sorted keys, or "error: ..." where Python refuses it.
std::vector<std::string> ReadWithPython(const std::vector<std::string>& texts) {
  const std::string file = ::testing::TempDir() + "jsonexport_" + std::to_string(getpid());
  std::ofstream(file, std::ios::binary) << [&] {
    std::string all;
    for (const std::string& text : texts)
      all += text + '\0';
    return all;
  }();
  const std::string command =
      "PYTHONIOENCODING=utf-8 python3 -c 'import json, sys\n"
      "for t in open(sys.argv[1], encoding=\"utf-8\").read().split(\"\\0\")[:-1]:\n"
      "  try: print(json.dumps(json.loads(t), sort_keys=True, separators=(\",\", \":\"),"
      " ensure_ascii=False))\n"
      "  except ValueError as e: print(\"error:\", e)' '" +
      file + "'";
  std::vector<std::string> lines(1);
  if (FILE* pipe = popen(command.c_str(), "r")) {
    for (int c; (c = std::fgetc(pipe)) != EOF;) {
      if (c == '\n')
        lines.emplace_back();
      else
        lines.back() += static_cast<char>(c);
    }
    pclose(pipe);
  }
  std::remove(file.c_str());
  lines.pop_back();  // what followed the last line feed
  return lines;
}

TEST(JsonObjectTest, UsualShapesParseAsJson) {
  if (std::system("command -v python3 >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "python3 is not installed; the JSON text is not read back";
  }
  JsonObject several(List{JsonObject::CreateVariableText("income")});
  several.AddToList(JsonObject::CreateNumDataText("income", 1.0 / 3.0))
      .AddToList(JsonObject::CreateStringDataText("region", "Z\xC3\xBCrich"))
      .AddToList(JsonObject::CreateStringText("Weight", "none"));
  // A caller may append members to an object left open.
  const std::string open = JsonObject("big", 1e300).AddPair("neg", -0.0).GetJsonString(false);
  EXPECT_EQ(
      ReadWithPython({NestedObject().GetJsonString(true), several.GetJsonString(true),
                      JsonObject().GetJsonString(true), JsonObject(List()).GetJsonString(true),
                      open + ",\n\t\"more\" : 1\n}\n"}),
      (std::vector<std::string>{
          R"({"inner":{"m":"text","z":true},"list":[1,"two",{"m":"text","z":true}],"n":2})",
          R"([{"text":{"variableText":{"variable":"income"}}},)"
          R"({"text":{"numericDataText":{"value":0.333333333333333,"variable":"income"}}},)"
          "{\"text\":{\"stringDataText\":{\"value\":\"Z\xC3\xBCrich\",\"variable\":\"region\"}}},"
          R"({"text":{"stringText":{"key":"Weight","value":"none"}}}])",
          "{}", "[]",
          R"({"big":1e+300,"more":1,"neg":0})",  // "-0" reads as the integer 0
      }));
}

}  // namespace
}  // namespace QXXML_850
