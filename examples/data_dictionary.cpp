// What a component does with the data dictionary before any arithmetic: it
// describes the fields of its data in a QXVarList (which is continuous, which
// categorical, which the target and which the frequency weight), passes every
// case through the variables' encoders (text categories get codes in the
// order they appear, empty cells are missing, cases with a missing value are
// dropped), keeps the counts, and saves the dictionary as a persisted file
// that a later run reads back, so that codes stay what they were. On request
// it also writes the result documents a component ends with: a PMML model
// (here the intercept-only model of the target) holding the data dictionary,
// the data model and the univariate statistics of every field, and a StatXML
// document with a table of those statistics.
//
//   data_dictionary                      a built-in sample, run twice: once
//                                        building its dictionary, once reading
//                                        that dictionary back
//   data_dictionary data.csv [options]   a CSV file: a header of names, then
//                                        rows; a field may be "quoted"
// Options:
//   --target NAME          the target variable
//   --weight NAME          a column of frequency weights
//   --categorical A,B,...  numeric columns whose values are categories (text
//                          columns always are)
//   --dictionary FILE      read the dictionary from FILE instead of building
//                          it from the header
//   --save FILE            where to write the dictionary (default: the CSV
//                          file's name with .dictionary.xml, in this folder)
//   --pmml FILE            write the PMML document to FILE (needs a target)
//   --statxml FILE         write the StatXML document to FILE
//
// Bad input gets one line on stderr naming the file and line, and exit 1.

#include <qx/qxcommon.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace QXXML_850;
using QXCommon_850::QXApplicInfo4XML;
using QXCommon_850::QXMV;
using QXCommon_850::QXPMMLExporter;
using QXCommon_850::QXStatus;
using QXMath_850::QXCatStats;
using QXMath_850::QXContStats;
using QXMath_850::QXUniStats;
using V = IQXVariable;

namespace {

struct Options {
  std::string file, shownName, target, weight, dictionary, save, pmml, statxml;
  std::vector<std::string> categorical;
};

// Input that can't be used: the message names the file and line.
struct InputError {
  std::string text;
};

InputError At(const std::string& file, long line, const std::string& what) {
  return InputError{file + ":" + std::to_string(line) + ": error: " + what};
}

struct Table {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;
  std::vector<long> lines;  // the file line of each row
};

std::string Trim(const std::string& s) {
  const size_t first = s.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return std::string();
  return s.substr(first, s.find_last_not_of(" \t\r\n") - first + 1);
}

// The fields of one CSV line. A field in double quotes keeps its commas and
// blanks, and "" inside it stands for one quote; others are trimmed.
std::vector<std::string> SplitCsv(const std::string& line, const std::string& file, long number) {
  std::vector<std::string> fields;
  size_t i = 0;
  while (true) {
    std::string field;
    const size_t start = line.find_first_not_of(" \t", i);
    if (start != std::string::npos && line[start] == '"') {
      i = start + 1;
      while (true) {
        if (i >= line.size()) throw At(file, number, "a quoted field has no closing quote");
        if (line[i] == '"' && i + 1 < line.size() && line[i + 1] == '"') {
          field += '"';
          i += 2;
        } else if (line[i] == '"') {
          ++i;
          break;
        } else {
          field += line[i++];
        }
      }
      const size_t comma = line.find(',', i);
      if (!Trim(line.substr(i, comma - i)).empty()) {
        throw At(file, number, "text after a quoted field");
      }
      i = comma;
    } else {
      const size_t comma = line.find(',', i);
      field = Trim(line.substr(i, comma - i));
      i = comma;
    }
    fields.push_back(field);
    if (i == std::string::npos) return fields;
    ++i;
  }
}

Table ReadCsv(const std::string& file, const std::string& shown) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError{shown + ": error: cannot open the file (" + std::strerror(errno) + ")"};
  Table table;
  std::string text;
  long line = 0;
  if (!std::getline(in, text)) throw At(shown, 1, "the file is empty; a header line was expected");
  table.header = SplitCsv(text, shown, ++line);
  std::set<std::string> seen;
  for (const std::string& name : table.header) {
    if (name.empty()) throw At(shown, line, "a column of the header has no name");
    if (!seen.insert(name).second) throw At(shown, line, "column '" + name + "' appears twice");
  }
  while (std::getline(in, text)) {
    ++line;
    if (Trim(text).empty()) continue;
    table.rows.push_back(SplitCsv(text, shown, line));
    table.lines.push_back(line);
    if (table.rows.back().size() != table.header.size()) {
      throw At(shown, line,
               "expected " + std::to_string(table.header.size()) + " fields, found " +
                   std::to_string(table.rows.back().size()));
    }
  }
  if (table.rows.empty()) throw At(shown, line + 1, "no data rows after the header");
  return table;
}

// A finite number taking up the whole field.
bool ParseNumber(const std::string& field, double& value) {
  if (field.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtod(field.c_str(), &end);
  return end == field.c_str() + field.size() && std::isfinite(value) && errno != ERANGE;
}

int ColumnOf(const Table& table, const std::string& name) {
  for (size_t j = 0; j < table.header.size(); ++j) {
    if (table.header[j] == name) return static_cast<int>(j);
  }
  return -1;
}

// The library's own text of an enumerator, without its " = ".
template <typename Enum>
std::string Text(Enum value) {
  std::ostringstream out;
  QXDisplay_850::SetOutStream(out);
  Display("", value);
  QXDisplay_850::SetOutStream(std::cout);
  return out.str().substr(4);
}

// The dictionary of the header: text columns (and those named by
// --categorical) categorical, the others continuous; roles from the options.
void BuildDictionary(const Table& table, const Options& options, QXVarList& list) {
  const std::string& file = options.shownName;
  for (const std::string* name : {&options.target, &options.weight}) {
    if (!name->empty() && ColumnOf(table, *name) < 0) {
      throw At(file, 1,
               "no column named '" + *name + "' for " +
                   (name == &options.target ? "--target" : "--weight"));
    }
  }
  for (const std::string& name : options.categorical) {
    if (ColumnOf(table, name) < 0)
      throw At(file, 1, "no column named '" + name + "' for --categorical");
  }
  if (!options.weight.empty() && options.weight == options.target) {
    throw At(file, 1, "the weight column can't be the target");
  }
  for (size_t j = 0; j < table.header.size(); ++j) {
    const std::string& name = table.header[j];
    if (name == options.weight) {
      list.SetWeightVar(name, name, V::RoundAsIs);
      continue;
    }
    bool numeric = true;
    double value;
    for (const std::vector<std::string>& row : table.rows)
      numeric = numeric && (row[j].empty() || ParseNumber(row[j], value));
    bool categorical = !numeric;
    for (const std::string& c : options.categorical)
      categorical = categorical || c == name;
    const V::VariableRole role = name == options.target ? V::RoleTarget : V::RoleInput;
    const int index =
        categorical
            ? list.AddCatVar(name, name, 0,
                             numeric ? V::LevelNumericCategorical : V::LevelStringCategorical, role)
            : list.AddContVar(name, name, role);
    list.GetVarAt(index)->SetVariableStorage(numeric ? V::StorageReal : V::StorageString);
    // An empty text cell is a missing value, not a category.
    if (!numeric) list.GetEncoderAt(index)->AddDiscreteUserMissing("", "empty cell");
  }
}

// The dictionary of a persisted file, read the way a component reads its
// saved model; a failure names the line the reader stopped at.
void ReadDictionary(const std::string& path, QXVarList& list) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw InputError{path + ": error: cannot open the file (" + std::strerror(errno) + ")"};
  std::ostringstream failure;
  std::streambuf* const err = std::cerr.rdbuf(failure.rdbuf());
  std::streambuf* const out = std::cout.rdbuf(failure.rdbuf());
  bool ok = ParseStartXML(in);
  if (!ok) failure << "no persisted-object header";
  try {
    if (ok) list.ReadObjectXML(in);
  } catch (IOException* e) {
    delete e;
    ok = false;
  }
  std::cerr.rdbuf(err);
  std::cout.rdbuf(out);
  if (ok) return;
  // The failed line is the one of the last character the reader took.
  in.clear();
  const std::streamoff stop = in.tellg();
  std::ifstream again(path, std::ios::binary);
  long line = 1;
  char c;
  for (std::streamoff k = 0; k + 1 < stop && again.get(c); ++k)
    line += c == '\n';
  throw At(path, line, "not a dictionary this library can read (" + Trim(failure.str()) + ")");
}

struct Counts {
  long read = 0, used = 0, dropped = 0, badWeight = 0;
  double weighted = 0.0, weightedDropped = 0.0;
  // Every case with a usable weight, used or dropped: its encoded values in
  // list order, and its weight.
  std::vector<std::vector<double>> codes;
  std::vector<double> weights;
};

// Encodes every case through the encoders, in list order, with listwise
// deletion; keeps each variable's statistics and the list's counts.
Counts EncodeCases(const Table& table, const std::string& file, QXVarList& list,
                   const std::vector<int>& column, std::vector<QXContStats>& cont,
                   std::vector<QXCatStats>& cat) {
  const int n = static_cast<int>(list.Size());
  Counts counts;
  std::vector<double> codes(n);
  for (size_t r = 0; r < table.rows.size(); ++r) {
    const std::vector<std::string>& row = table.rows[r];
    ++counts.read;
    bool missing = false;
    double weight = 1.0;
    for (int i = 0; i < n; ++i) {
      IQXEncoder* encoder = list.GetEncoderAt(i);
      const std::string& cell = row[column[i]];
      const V::MeasureLevel level = list.GetVarAt(i)->GetMeasureLevel();
      double number = QXMV::Missing();
      if (level != V::LevelStringCategorical && !cell.empty() && !ParseNumber(cell, number)) {
        throw At(file, table.lines[r],
                 "column '" + table.header[column[i]] + "': '" + cell + "' is not a number");
      }
      codes[i] =
          level == V::LevelStringCategorical ? encoder->Encode(cell) : encoder->Encode(number);
      if (i == list.GetWeightIndex()) {
        weight = codes[i];
      } else {
        const bool categorical = level != V::LevelContinuous;
        missing = missing || (categorical ? codes[i] < 0.0 : QXMV::IsMissing(codes[i]));
      }
    }
    if (QXMV::IsMissing(weight)) {
      ++counts.badWeight;
      continue;
    }
    counts.codes.push_back(codes);
    counts.weights.push_back(weight);
    if (missing && list.GetListwiseDeletion()) {
      ++counts.dropped;
      counts.weightedDropped += weight;
      continue;
    }
    ++counts.used;
    counts.weighted += weight;
    for (int i = 0; i < n; ++i) {
      const V::MeasureLevel level = list.GetVarAt(i)->GetMeasureLevel();
      if (level == V::LevelContinuous) cont[i].Update(codes[i], weight, 1.0);
      if (level == V::LevelNumericCategorical || level == V::LevelStringCategorical) {
        cat[i].Update(codes[i], weight);
      }
    }
  }
  list.SetUnWeightedCount(static_cast<double>(counts.used));
  list.SetWeightedCount(counts.weighted);
  list.SetDroppedCount(static_cast<double>(counts.dropped));
  list.SetWeightedDroppedCount(counts.weightedDropped);
  list.SetBadWeightCount(static_cast<double>(counts.badWeight));
  return counts;
}

void Report(const std::string& file, bool built, QXVarList& list, const Counts& counts,
            std::vector<QXContStats>& cont, const std::vector<QXCatStats>& cat) {
  const int n = static_cast<int>(list.Size());
  std::printf(
      "Data dictionary of %s (%s): %d variables, %d continuous, %d categorical%s\n", file.c_str(),
      built ? "built from its header" : "read from a saved dictionary", n, list.GetNumContVar(),
      list.GetNumCatVar(),
      list.GetWeightIndex() >= 0
          ? (", weight '" + list.GetVarAt(list.GetWeightIndex())->GetVariableName() + "'").c_str()
          : "");
  std::printf(
      "Cases: %ld read, %ld used (weighted %g), %ld dropped for a missing value "
      "(weighted %g), %ld with a bad weight\n\n",
      counts.read, counts.used, counts.weighted, counts.dropped, counts.weightedDropped,
      counts.badWeight);
  std::printf("%3s  %-14s %-22s %-18s %10s  %-8s %s\n", "#", "variable", "level", "role",
              "categories", "status", "range of used cases");
  for (int i = 0; i < n; ++i) {
    IQXVariable* v = list.GetVarAt(i);
    std::string range;
    if (QXContVar* c = dynamic_cast<QXContVar*>(v)) {
      const auto extremes = cont[i].GetExtrema();
      c->SetMinMax(extremes.first, extremes.second);
      c->SetSumFreqWts(cont[i].GetSumFreqWeights());
      char text[96];
      std::snprintf(text, sizeof text, "%g to %g, mean %g", extremes.first, extremes.second,
                    cont[i].GetMean());
      range = counts.used > 0 ? text : "";
    }
    const bool categorical = v->GetMeasureLevel() == V::LevelNumericCategorical ||
                             v->GetMeasureLevel() == V::LevelStringCategorical;
    std::printf("%3d  %-14s %-22s %-18s %10s  %-8s %s\n", i, v->GetVariableName().c_str(),
                Text(v->GetMeasureLevel()).c_str(), Text(v->GetVariableRole()).c_str(),
                categorical ? std::to_string(v->GetNumberOfCategories()).c_str() : "",
                i == list.GetWeightIndex() ? "" : Text(v->GetVarStatus()).c_str(), range.c_str());
  }
  for (int i = 0; i < n; ++i) {
    const IQXEncoder* e = list.GetEncoderAt(i);
    const IQXVariable* v = list.GetVarAt(i);
    if (v->GetMeasureLevel() != V::LevelNumericCategorical &&
        v->GetMeasureLevel() != V::LevelStringCategorical) {
      continue;
    }
    std::printf("\nCodes of %s:\n", v->GetVariableName().c_str());
    for (int code = 0; code < e->GetNumberOfCategories(); ++code) {
      std::printf("  %4d  %-16s %g case weight\n", code, ("'" + e->Decode(code) + "'").c_str(),
                  cat[i].GetCatCount(static_cast<unsigned int>(code)));
    }
    const std::vector<std::string>* labels = e->GetMissValueLabels();
    const std::vector<std::string>* texts = e->GetDiscreteMissValuesStr();
    for (size_t k = 0; texts != nullptr && k < texts->size(); ++k) {
      std::printf("  missing '%s' (%s)\n", (*texts)[k].c_str(), (*labels)[k].c_str());
    }
  }
}

// The univariate statistics of every field over every case with a usable
// weight, missing values counted as such: category codes for a categorical
// field; for a continuous one (the weight too, unweighted) the summary and
// the frequencies of four equal intervals up to its largest value.
std::vector<QXUniStats> Summarise(const QXVarList& list, const Counts& counts) {
  std::vector<QXUniStats> stats;
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    const IQXVariable* v = list.GetVarAt(i);
    const std::string name = v->GetVariableName();
    const bool categorical = v->GetMeasureLevel() == V::LevelNumericCategorical ||
                             v->GetMeasureLevel() == V::LevelStringCategorical;
    if (categorical) {
      stats.emplace_back(name, v->GetNumberOfCategories());
    } else {
      double low = HUGE_VAL, high = -HUGE_VAL;
      for (const std::vector<double>& row : counts.codes) {
        if (QXMV::IsMissing(row[i])) continue;
        low = std::min(low, row[i]);
        high = std::max(high, row[i]);
      }
      std::vector<double> cuts;
      if (low < high) {
        // The first interval is open below: its left end is the sentinel.
        cuts = {QXMV::Missing()};
        for (int k = 1; k < 4; ++k)
          cuts.push_back(low + (high - low) * k / 4.0);
        cuts.push_back(high);
      }
      stats.emplace_back(name, cuts, true);
    }
    const bool isWeight = i == list.GetWeightIndex();
    for (size_t r = 0; r < counts.codes.size(); ++r)
      stats.back().Update(counts.codes[r][i], isWeight ? 1.0 : counts.weights[r]);
  }
  return stats;
}

void WriteDocument(const std::string& path, const XMLElement& root, const char* what) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) WriteTree(out, nullptr, &root, true);
  if (!out || !out.flush()) {
    throw InputError{path + ": error: cannot write the file (" + std::strerror(errno) + ")"};
  }
  std::printf("%s document written to %s\n", what, path.c_str());
}

// The model of a component that knows only its target's distribution: the
// mean of a continuous target, or for a categorical one a softmax over the
// logarithms of the category shares. Its statistics hold every field.
XMLElement* InterceptOnlyModel(QXPMMLExporter& exporter, const QXVarList& list,
                               const std::vector<QXUniStats>& stats) {
  namespace P = QXPMMLTags;
  const int target = list.GetTargetIndex();
  const IQXVariable* t = list.GetVarAt(target);
  const bool classification = stats[target].IsCategorical();
  XMLElement* model = XMLElement::Create(P::XML_ELE_REGRESSIONMODEL);
  model->AddAttribute(P::XML_ATT_MODELNAME, "intercept only");
  model->AddAttribute(P::XML_ATT_FUNCTIONNAME,
                      classification ? P::XML_VAL_CLASSIFICATION : P::XML_VAL_REGRESSION);
  if (classification) model->AddAttribute(P::XML_ATT_NORMALIZATIONMETHOD, P::XML_VAL_SOFTMAX);
  XMLElement* schema = XMLElement::Create(P::XML_ELE_MININGSCHEMA);
  for (int i = 0; i < static_cast<int>(list.Size()); ++i) {
    XMLElement* field = XMLElement::Create(P::XML_ELE_MININGFIELD);
    field->AddAttribute(P::XML_ATT_MININGFIELDNAME, list.GetVarAt(i)->GetVariableName());
    field->AddAttribute(P::XML_ATT_MININGFIELDUSE, i == target ? P::XML_VAL_MININGFIELDTARGET
                                                   : i == list.GetWeightIndex()
                                                       ? std::string("frequencyWeight")
                                                       : P::XML_VAL_MININGFIELDACT);
    schema->AddElement(field);
  }
  model->AddElement(schema);
  XMLElement* modelStats = XMLElement::Create(P::XML_ELE_MODELSTATS);
  for (const QXUniStats& s : stats) {
    XMLElement* element = nullptr;
    const QXStatus status = exporter.ExportUniStats(s, element);
    if (status.IsOK()) modelStats->AddElement(element);
  }
  model->AddElement(modelStats);
  const std::vector<double>& frequencies = stats[target].GetFrequencies();
  double total = 0.0;
  for (double f : frequencies)
    total += f;
  for (size_t k = 0; classification ? k < frequencies.size() : k < 1; ++k) {
    if (classification && frequencies[k] <= 0.0) continue;
    XMLElement* table = XMLElement::Create("RegressionTable");
    table->AddAttribute("intercept", classification ? std::log(frequencies[k] / total)
                                                    : stats[target].GetSummStats()[2]);
    if (classification) {
      table->AddAttribute(P::XML_ATT_TARGETCATEGORY, t->GetEncoder()->Decode(static_cast<int>(k)));
    }
    model->AddElement(table);
  }
  return model;
}

void WritePmml(const Options& options, const QXVarList& list,
               const std::vector<QXUniStats>& stats) {
  if (list.GetTargetIndex() < 0) {
    throw InputError{options.shownName + ":1: error: --pmml needs a target variable (--target)"};
  }
  QXPMMLExporter exporter(nullptr);
  std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
  const QXApplicInfo4XML info("data_dictionary example of qxcommon", "8.5", "");
  XMLElement* part = nullptr;
  exporter.ExportHeader(&info, "Intercept-only model of the fields of " + options.shownName, true,
                        part);
  root->AddElement(part);
  if (!exporter.ExportDataDictionary(list, {}, part).IsOK()) {
    throw InputError{options.shownName + ":1: error: the dictionary has an empty entry"};
  }
  root->AddElement(part);
  root->AddElement(InterceptOnlyModel(exporter, list, stats));
  XMLElement* extension = nullptr;
  exporter.ExportExtension("dataModel", "", extension);
  root->AddElement(extension);
  exporter.ExportDataModel(list, {}, part);
  extension->AddElement(part);
  WriteDocument(options.pmml, *root, "PMML");
}

// A table with a row per field (cases, missing, minimum, maximum, mean,
// standard deviation), then a section per field with its frequencies.
void WriteStatXml(const std::string& path, const QXVarList& list,
                  const std::vector<QXUniStats>& stats) {
  std::unique_ptr<XMLElement> root(QXStatXMLUtil::BuildRoot());
  QXVariateData table;
  table.fDescription = "Univariate statistics";
  table.fCoordinates.resize(1);
  table.fCoordinates[0].fFeature = "column";
  table.fCoordinates[0].fValueType = 2;
  table.fCoordinates[0].fStringValues = {"cases",   "missing", "minimum",
                                         "maximum", "mean",    "standardDeviation"};
  std::vector<QXXMLRecordInfo> rows(stats.size());
  std::vector<QXVariateData> sections(stats.size());
  for (size_t i = 0; i < stats.size(); ++i) {
    const QXUniStats& s = stats[i];
    const IQXVariable* v = list.GetVarAt(static_cast<int>(i));
    const std::vector<double> summary = s.GetSummStats();
    rows[i].fRecordId = s.GetVarName();
    rows[i].fRecordLabel = v->GetVariableLabel();
    rows[i].fValueType = 1;
    rows[i].fDoubleValues = {{s.GetNumberOfCases(), s.GetMissingFreq()}};
    rows[i].fDoubleValues[0].insert(rows[i].fDoubleValues[0].end(), summary.begin(), summary.end());
    QXVariateData& d = sections[i];
    d.fDescription = s.GetVarName();
    d.fCounts.resize(1);
    d.fCounts[0].fTotalFreq = s.GetNumberOfCases();
    d.fCounts[0].fMissingFreq = s.GetMissingFreq();
    QXXMLCoordinates labels, frequencies;
    labels.fFeature = s.IsCategorical() ? "category" : "interval";
    labels.fField = s.GetVarName();
    labels.fValueType = 2;
    frequencies.fFeature = "frequency";
    frequencies.fField = s.GetVarName();
    frequencies.fValueType = 1;
    frequencies.fDoubleValues = s.GetFrequencies();
    if (s.IsCategorical()) {
      d.fCounts[0].fCardinality = static_cast<double>(s.GetFrequencies().size());
      for (size_t k = 0; k < s.GetFrequencies().size(); ++k)
        labels.fStringValues.push_back(v->GetEncoder()->Decode(static_cast<int>(k)));
    } else {
      d.fIsStringStats = false;
      d.fStatNames = {"minimum", "maximum", "mean", "standardDeviation"};
      d.fStatValues = summary;
      const std::vector<double>& cuts = s.GetCutPoints();
      for (size_t k = 1; k < cuts.size(); ++k) {
        char text[64];
        if (k == 1) {
          std::snprintf(text, sizeof text, "<= %.6g", cuts[k]);
        } else {
          std::snprintf(text, sizeof text, "(%.6g, %.6g]", cuts[k - 1], cuts[k]);
        }
        labels.fStringValues.push_back(text);
      }
    }
    d.fCoordinates = {labels, frequencies};
  }
  XMLElement* section = table.GetMultiVariateDataElem();
  QXStatXMLUtil::AddRecordInfos(*section, rows);
  root->AddElement(section);
  for (const QXVariateData& d : sections)
    root->AddElement(d.GetUnivariateDataElem());
  WriteDocument(path, *root, "StatXML");
}

void WriteDictionary(const std::string& path, const QXVarList& list) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out)
    throw InputError{path + ": error: cannot write the file (" + std::strerror(errno) + ")"};
  StartDocument(out);
  StartRoot(out, "data_dictionary example of qxcommon");
  const int elements = list.WriteObjectXML(out, 1);
  EndRoot(out);
  if (!out.flush()) throw InputError{path + ": error: cannot write the file"};
  std::printf("\nDictionary written to %s (%d elements)\n", path.c_str(), elements);
}

int Run(const Options& options) {
  const Table table = ReadCsv(options.file, options.shownName);
  QXVarList list;
  list.SetListwiseDeletion(true);
  const bool build = options.dictionary.empty();
  if (build) {
    BuildDictionary(table, options, list);
  } else {
    ReadDictionary(options.dictionary, list);
  }
  std::vector<int> column;
  for (size_t i = 0; i < list.Size(); ++i) {
    const std::string name = list.GetVarAt(static_cast<int>(i))->GetVariableName();
    column.push_back(ColumnOf(table, name));
    if (column.back() < 0) {
      throw At(options.shownName, 1, "the dictionary's variable '" + name + "' is not a column");
    }
  }
  std::vector<QXContStats> cont(list.Size());
  std::vector<QXCatStats> cat(list.Size());
  const Counts counts = EncodeCases(table, options.shownName, list, column, cont, cat);
  list.UpdateNumbersOfCategories();
  Report(options.shownName, build, list, counts, cont, cat);
  WriteDictionary(options.save, list);
  if (!options.pmml.empty() || !options.statxml.empty()) {
    const std::vector<QXUniStats> stats = Summarise(list, counts);
    if (!options.pmml.empty()) WritePmml(options, list, stats);
    if (!options.statxml.empty()) WriteStatXml(options.statxml, list, stats);
  }
  return 0;
}

const char kSample[] =
    "age,region,income,smoker,weight\n"
    "34,north,41200,no,1\n"
    "51,south,55800,yes,2\n"
    "27,\"north, coast\",,no,1\n"
    "45,east,61000,no,1.5\n"
    "62,south,38900,,1\n"
    "38,west,47300,no,0\n"
    "55,north,72100,yes,2\n";

std::string TempFile(const char* pattern, const std::string& text) {
  std::string path = pattern;
  const int fd = mkstemp(&path[0]);
  if (fd >= 0) close(fd);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

// The built-in sample: a first run builds and saves its dictionary, a second
// one reads that back and finds the same codes.
int RunSample() {
  Options options;
  options.file = TempFile("/tmp/qx_dictionary_sample_XXXXXX", kSample);
  options.shownName = "the built-in sample";
  options.save = TempFile("/tmp/qx_dictionary_saved_XXXXXX", "");
  options.target = "income";
  options.weight = "weight";
  int status = Run(options);
  std::printf("\n----- a second run, with the saved dictionary -----\n\n");
  options.dictionary = options.save;
  status = status != 0 ? status : Run(options);
  std::remove(options.file.c_str());
  std::remove(options.save.c_str());
  return status;
}

std::vector<std::string> SplitNames(const std::string& text) {
  std::vector<std::string> names;
  std::stringstream in(text);
  std::string name;
  while (std::getline(in, name, ','))
    if (!Trim(name).empty()) names.push_back(Trim(name));
  return names;
}

const char kUsage[] =
    "usage: data_dictionary [data.csv [options]]\n"
    "  --target NAME          the target variable\n"
    "  --weight NAME          a column of frequency weights\n"
    "  --categorical A,B,...  numeric columns whose values are categories\n"
    "  --dictionary FILE      read the dictionary from FILE instead of the header\n"
    "  --save FILE            where to write the dictionary (default:\n"
    "                         <name of the CSV file>.dictionary.xml, in this folder)\n"
    "  --pmml FILE            write a PMML document (the target's intercept-only\n"
    "                         model with the dictionary and every field's statistics)\n"
    "  --statxml FILE         write a StatXML document with a table of the statistics\n"
    "Without a file, a built-in sample is run twice: building its dictionary,\n"
    "then reading that back.\n";

int Usage(const std::string& why) {
  std::fprintf(stderr, "data_dictionary: error: %s (see --help)\n", why.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) {
    try {
      return RunSample();
    } catch (const InputError& error) {
      std::fprintf(stderr, "%s\n", error.text.c_str());
      return 1;
    }
  }
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      std::fputs(kUsage, stdout);
      return 0;
    }
    std::string* target = nullptr;
    if (arg == "--target") target = &options.target;
    if (arg == "--weight") target = &options.weight;
    if (arg == "--dictionary") target = &options.dictionary;
    if (arg == "--save") target = &options.save;
    if (arg == "--pmml") target = &options.pmml;
    if (arg == "--statxml") target = &options.statxml;
    if (target != nullptr || arg == "--categorical") {
      if (i + 1 >= argc) return Usage("option " + arg + " needs a value");
      if (target != nullptr) {
        *target = argv[++i];
      } else {
        options.categorical = SplitNames(argv[++i]);
      }
    } else if (arg.compare(0, 1, "-") == 0) {
      return Usage("unknown option " + arg);
    } else if (!options.file.empty()) {
      return Usage("a second file '" + arg + "'");
    } else {
      options.file = arg;
    }
  }
  if (options.file.empty()) return Usage("no CSV file given");
  if (!options.dictionary.empty() &&
      (!options.target.empty() || !options.weight.empty() || !options.categorical.empty())) {
    return Usage(
        "--target, --weight and --categorical describe a new dictionary, not one read "
        "with --dictionary");
  }
  options.shownName = options.file;
  if (options.save.empty()) {
    std::string base = options.file.substr(options.file.find_last_of('/') + 1);
    base = base.substr(0, base.rfind(".csv"));
    options.save = base + ".dictionary.xml";
  }
  try {
    return Run(options);
  } catch (const InputError& error) {
    std::fprintf(stderr, "%s\n", error.text.c_str());
    return 1;
  }
}
