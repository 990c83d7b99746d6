// How a component takes its configuration from QXSettings and its rows of data
// as ValueRecords: it reads typed settings, falls back on defaults for those
// that are absent, tells the caller clearly about a setting of the wrong
// kind, prints its results through the diagnostic display functions, and
// hands them over for display as one JSON text built from JsonObject.
//
// The analysis is a weighted summary (mean and standard deviation) of chosen
// fields, with listwise deletion of rows that have a missing field.

#include <qx/qxcommon.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using QXCommon_850::Value;
using QXCommon_850::ValueRecord;
using QXXML_850::IQXSettingValue;
using QXXML_850::JsonObject;
using QXXML_850::QXSetting;
using QXXML_850::QXSettings;
using QXXML_850::QXVecValue;

namespace {

const char* KindName(const IQXSettingValue& value) {
  switch (value.GetType()) {
    case 0:
      return "a number";
    case 1:
      return "a text";
    case 2:
      return "a list of values";
    default:
      return "a nested list of settings";
  }
}

// The options of the summary, each with the default it has when absent.
struct SummaryOptions {
  std::vector<std::string> fields;
  std::string weightField;
  double trimLevel = 0.0;  // rows whose weight is below this drop out
  bool listwise = true;
  int decimals = 4;
  std::vector<std::string> problems;  // one clear line per unusable setting
};

// True if nothing but blanks follows the number at the start of the text;
// Str2Double itself is content with a leading number.
bool OnlyANumber(const std::string& text) {
  std::istringstream in(text);
  double ignored;
  return (in >> ignored) && (in >> std::ws).eof();
}

// A number setting: a number as it is, a text only if it reads fully as one.
double ReadNumber(const QXSettings& settings, const std::string& name, double fallback,
                  std::vector<std::string>& problems) {
  const QXSetting* setting = settings.FindSetting(name);
  if (setting == nullptr) return fallback;
  const IQXSettingValue& value = *setting->GetValue();
  if (value.GetType() == 0) return value.GetDouble();
  double number = fallback;
  if (value.GetType() == 1 && settings.Str2Double(value.GetString(), &number) &&
      OnlyANumber(value.GetString())) {
    return number;
  }
  std::ostringstream line;
  line << "Setting \"" << name << "\" must be a number but holds " << KindName(value);
  if (value.GetType() == 1) line << " (\"" << value.GetString() << "\")";
  line << "; the default " << fallback << " is used.";
  problems.push_back(line.str());
  return fallback;
}

SummaryOptions ReadOptions(const QXSettings& settings) {
  SummaryOptions options;
  // A list of field names; a single text names one field.
  if (!settings.GetSettingValByName("fields", options.fields) || options.fields.empty()) {
    std::string one;
    if (settings.GetSettingValByName("fields", one) && !one.empty()) options.fields = {one};
  }
  settings.GetSettingValByName("weight", options.weightField);
  options.trimLevel = ReadNumber(settings, "minimumWeight", 0.0, options.problems);
  options.decimals =
      static_cast<int>(ReadNumber(settings, "decimals", options.decimals, options.problems));
  QXSettings missing;
  if (settings.GetSettingValByName("missing", missing)) {
    missing.GetSettingValByName("listwise", options.listwise);
  } else if (settings.FindSetting("missing") != nullptr) {
    options.problems.push_back(
        "Setting \"missing\" must be a nested list of settings; listwise deletion stays on.");
  }
  return options;
}

struct Summary {
  std::vector<double> means, deviations;
  double weightSum = 0.0;
  int rowsUsed = 0, rowsDropped = 0;
};

// Weighted means and standard deviations by West's (1979) updating algorithm.
Summary Summarise(const std::vector<ValueRecord>& rows, const SummaryOptions& options) {
  const size_t k = options.fields.size();
  Summary result;
  result.means.assign(k, 0.0);
  std::vector<double> squares(k, 0.0);
  for (const ValueRecord& row : rows) {
    const double w = options.weightField.empty() ? 1.0 : row.Get(options.weightField).GetReal();
    bool complete = !Value(w).IsMissing() && w > 0.0 && w >= options.trimLevel;
    for (const std::string& field : options.fields) {
      if (options.listwise && row.Get(field).IsMissing()) complete = false;
    }
    if (!complete) {
      ++result.rowsDropped;
      continue;
    }
    ++result.rowsUsed;
    result.weightSum += w;
    for (size_t j = 0; j < k; ++j) {
      const double x = row.Get(options.fields[j]).GetReal();
      const double delta = x - result.means[j];
      result.means[j] += delta * w / result.weightSum;
      squares[j] += w * delta * (x - result.means[j]);
    }
  }
  for (double s : squares) {
    result.deviations.push_back(result.weightSum > 1.0 ? std::sqrt(s / (result.weightSum - 1.0))
                                                       : QXCommon_850::QXMV::Missing());
  }
  return result;
}

std::vector<ValueRecord> SampleRows() {
  std::vector<ValueRecord> rows;
  const double incomes[] = {41.5, 38.0, 52.25, 47.0, 60.5, 35.75};
  const int ages[] = {34, 29, 51, 45, 58, 23};
  const double weights[] = {1.0, 2.0, 1.5, 1.0, 0.5, 2.0};
  for (int i = 0; i < 6; ++i) {
    ValueRecord row(4);
    row.Add("age", ages[i]);
    row.Add("income", incomes[i]);
    row.Add("w", weights[i]);
    row.Add("region", i % 2 == 0 ? "north" : "south");
    rows.push_back(row);
  }
  rows[3].SetMissingValue(rows[3].IndexOf("income"));  // a missing field
  rows[5]["age"] = "27";  // a field that arrived as text still reads as a number
  return rows;
}

// The results as a component hands them over for display: one JSON text, a
// list of the display shapes. A mean without data goes out as text, since the
// missing-value sentinel as a JSON number would read as minus infinity.
JsonObject DisplayTexts(const SummaryOptions& options, const Summary& summary) {
  JsonObject texts(std::vector<JsonObject>{JsonObject::CreateStringText(
      "Weight", options.weightField.empty() ? "none" : options.weightField)});
  texts.AddToList(JsonObject::CreateStringText("Rows used", std::to_string(summary.rowsUsed)));
  for (size_t j = 0; j < options.fields.size(); ++j) {
    texts.AddToList(JsonObject::CreateVariableText(options.fields[j]));
    texts.AddToList(summary.rowsUsed > 0
                        ? JsonObject::CreateNumDataText(options.fields[j], summary.means[j])
                        : JsonObject::CreateStringDataText(options.fields[j], "no data"));
  }
  return texts;
}

void Run(const std::string& title, const QXSettings& settings) {
  using namespace QXDisplay_850;
  DisplayText(1, title);
  settings.Display();
  const SummaryOptions options = ReadOptions(settings);
  for (const std::string& problem : options.problems)
    DisplayText(1, problem);
  if (options.fields.empty()) {
    DisplayText(1, "Nothing to summarise: the setting \"fields\" names no field.");
    return;
  }
  const Summary summary = Summarise(SampleRows(), options);
  DisplaySV("Fields", options.fields);
  DisplayS("Weight", options.weightField.empty() ? "none" : options.weightField);
  DisplayB("Listwise deletion", options.listwise);
  DisplayI("Rows used", summary.rowsUsed);
  DisplayI("Rows dropped", summary.rowsDropped);
  DisplayD("Sum of weights", summary.weightSum);
  for (size_t j = 0; j < options.fields.size(); ++j) {
    std::ostringstream line;
    line.setf(std::ios::fixed);
    line.precision(options.decimals);
    line << options.fields[j] << ": mean " << summary.means[j] << ", standard deviation "
         << summary.deviations[j];
    DisplayText(1, line.str());
  }
  DisplayText(1, "Display text:");
  DisplayText(1, DisplayTexts(options, summary).GetJsonString(true));
  DisplayText(1, "");
}

}  // namespace

int main() {
  QXDisplay_850::SetOutStream(std::cout);

  // A complete configuration, as a caller would build it.
  QXSettings settings;
  settings.AddNewSetting("fields", QXVecValue<std::string>({"age", "income"}));
  settings.AddNewSetting("weight", "w");
  settings.AddNewSetting("decimals", 2.0, "int");
  QXSettings missing;
  missing.AddNewSetting("listwise", "true");
  settings.AddNewSetting("missing", missing);
  Run("Summary with every setting given", settings);

  // Only the fields: every other option takes its default.
  QXSettings sparse;
  sparse.AddNewSetting("fields", "income");
  Run("Summary with defaults", sparse);

  // Settings of the wrong kind: each one is reported and its default is used.
  QXSettings wrong(settings);
  wrong.AddSetting("decimals", "two", true);
  wrong.AddSetting("minimumWeight", "1.0 or so", true);
  wrong.RemoveSetting("missing", true);
  wrong.AddNewSetting("missing", "listwise");
  Run("Summary with settings of the wrong kind", wrong);
  return 0;
}
