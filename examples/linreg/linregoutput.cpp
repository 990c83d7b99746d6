#include "linregoutput.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "csvreader.h"
#include "minixml.h"

namespace linreg {

using QXCommon_850::QXStatus;
using QXXML_850::IQXVariable;
using QXXML_850::QXStatXMLUtil;
using QXXML_850::QXVarList;
using QXXML_850::XMLElement;
namespace P = QXXML_850::QXPMMLTags;
namespace S = QXXML_850::QXStatXMLTags;

namespace {

const char kApplication[] = "linreg example of qxcommon";

// Writes `root` to a temporary file beside `path`, then renames it into place.
void WriteAtomically(const XMLElement& root, const std::string& path) {
  const std::string temporary = path + ".part";
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (out) QXXML_850::WriteTree(out, nullptr, &root, true);
    if (out && out.flush()) {
      out.close();
      if (std::rename(temporary.c_str(), path.c_str()) == 0) return;
    }
  }
  const std::string why = std::strerror(errno);
  std::remove(temporary.c_str());
  throw InputError{kCannotWrite, path + ": error: cannot write the file (" + why + ")"};
}

// The regression model element: the mining schema, the statistics of every
// field and the quality of the fit, and the one regression table, in which an
// aliased term has no predictor and a reference category none either.
XMLElement* RegressionModel(const Fit& fit, const std::string& dataName,
                            QXCommon_850::QXPMMLExporter& exporter) {
  const QXVarList& list = fit.dictionary;
  const std::string& target = list.GetVarAt(fit.target)->GetVariableName();
  XMLElement* model = XMLElement::Create(P::XML_ELE_REGRESSIONMODEL);
  model->AddAttribute(P::XML_ATT_MODELNAME, "linear regression of " + target);
  model->AddAttribute(P::XML_ATT_FUNCTIONNAME, P::XML_VAL_REGRESSION);
  model->AddAttribute(P::XML_ATT_ALGORITHMNAME, fit.method == Method::kQR
                                                    ? "least squares, Householder QR"
                                                    : "least squares, sweep");
  model->AddAttribute(P::XML_ATT_MODELTYPE, "linearRegression");
  model->AddAttribute("targetFieldName", target);
  XMLElement* schema = XMLElement::Create(P::XML_ELE_MININGSCHEMA);
  for (int v = 0; v < static_cast<int>(list.Size()); ++v) {
    const bool input = list.GetVariableRole(v) == IQXVariable::RoleInput;
    if (v != fit.target && v != list.GetWeightIndex() && !input) continue;
    XMLElement* field = XMLElement::Create(P::XML_ELE_MININGFIELD);
    field->AddAttribute(P::XML_ATT_MININGFIELDNAME, list.GetVarAt(v)->GetVariableName());
    field->AddAttribute(P::XML_ATT_MININGFIELDUSE, v == fit.target ? P::XML_VAL_MININGFIELDTARGET
                                                   : v == list.GetWeightIndex()
                                                       ? std::string("analysisWeight")
                                                       : P::XML_VAL_MININGFIELDACT);
    schema->AddElement(field);
  }
  model->AddElement(schema);
  XMLElement* stats = XMLElement::Create(P::XML_ELE_MODELSTATS);
  for (int v = 0; v < static_cast<int>(fit.fields.size()); ++v) {
    if (v == list.GetWeightIndex()) continue;
    XMLElement* element = nullptr;
    if (exporter.ExportUniStats(fit.fields[v], element).IsOK()) stats->AddElement(element);
  }
  model->AddElement(stats);
  XMLElement* explanation = XMLElement::Create(P::XML_ELE_MODELEXPLANATION);
  XMLElement* quality = XMLElement::Create(P::XML_ELE_PREDICTIVEMODEQUALITY);
  quality->AddAttribute(P::XML_ATT_TARGETFIELD, target);
  quality->AddAttribute(S::XML_ATT_DATANAME, dataName);
  quality->AddAttribute(S::XML_ATT_DATAUSAGE, S::XML_VAL_DATAUSAGE_TRAINING);
  quality->AddAttribute(P::XML_ATT_RSQUARED, fit.rSquared);
  quality->AddAttribute(P::XML_ATT_ADJRSQUARED, fit.adjRSquared);
  quality->AddAttribute(P::XML_ATT_SUMSQUAREDERROR, fit.rss);
  quality->AddAttribute(P::XML_ATT_SUMSQUAREDREGRESSION, fit.tss - fit.rss);
  quality->AddAttribute(P::XML_ATT_NUMOFRECORDS, static_cast<double>(fit.casesUsed));
  quality->AddAttribute(P::XML_ATT_NUMOFRECORDSWEIGHTED, fit.weightSum);
  quality->AddAttribute(P::XML_ATT_NUMOFPREDICTORS, fit.dfModel);
  quality->AddAttribute(P::XML_ATT_DEGREEESOFREEDOM, fit.dfResidual);
  quality->AddAttribute(P::XML_ATT_FSTATISTIC, fit.fValue);
  explanation->AddElement(quality);
  model->AddElement(explanation);
  XMLElement* table = XMLElement::Create("RegressionTable");
  double intercept = 0.0;
  for (const Term& t : fit.terms) {
    if (t.variable < 0) intercept = t.estimate;
  }
  table->AddAttribute("intercept", intercept);
  // The schema wants the numeric predictors ahead of the categorical ones.
  for (const bool categorical : {false, true}) {
    for (const Term& t : fit.terms) {
      if (t.variable < 0 || t.aliased || (t.category >= 0) != categorical) continue;
      const std::string& name = list.GetVarAt(t.variable)->GetVariableName();
      XMLElement* predictor;
      if (!categorical) {
        predictor = XMLElement::Create("NumericPredictor");
        predictor->AddAttribute(P::XML_ATT_NAME, name);
        predictor->AddAttribute("exponent", "1");
      } else {
        predictor = XMLElement::Create("CategoricalPredictor");
        predictor->AddAttribute(P::XML_ATT_NAME, name);
        predictor->AddAttribute(P::XML_ATT_VALUE,
                                list.GetEncoderAt(t.variable)->Decode(t.category));
      }
      predictor->AddAttribute("coefficient", t.estimate);
      table->AddElement(predictor);
    }
  }
  model->AddElement(table);
  return model;
}

XMLElement* Pmml(const Fit& fit, const std::string& dataName) {
  QXCommon_850::QXPMMLExporter exporter(nullptr);
  std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
  const QXCommon_850::QXApplicInfo4XML info(kApplication, "8.5", "");
  XMLElement* part = nullptr;
  exporter.ExportHeader(&info, "Linear regression fitted to " + dataName, true, part);
  root->AddElement(part);
  std::vector<int> fields;
  for (int v = 0; v < static_cast<int>(fit.dictionary.Size()); ++v) {
    if (v == fit.target || v == fit.dictionary.GetWeightIndex() ||
        fit.dictionary.GetVariableRole(v) == IQXVariable::RoleInput) {
      fields.push_back(v);
    }
  }
  exporter.ExportDataDictionary(fit.dictionary, fields, part);
  root->AddElement(part);
  root->AddElement(RegressionModel(fit, dataName, exporter));
  return root.release();
}

// The StatXML results: the build summary, the tests of the model, a
// ParameterStats per term (with its parameter as a covariate or a factor
// level), and the warnings.
XMLElement* StatXml(const Fit& fit, const std::string& dataName) {
  const QXVarList& list = fit.dictionary;
  std::unique_ptr<XMLElement> root(QXStatXMLUtil::BuildRoot());
  XMLElement* summary =
      QXStatXMLUtil::CreateElem(S::XML_ELE_PREDICTIVESUMMARY, S::XML_ATT_TARGETFIELD,
                                list.GetVarAt(fit.target)->GetVariableName(), S::XML_ATT_DATANAME,
                                dataName, S::XML_ATT_DATAUSAGE, S::XML_VAL_DATAUSAGE_TRAINING);
  XMLElement* counts = XMLElement::Create(S::XML_ELE_COUNTS);
  counts->AddAttribute(S::XML_ATT_TOTALCOUNT, static_cast<double>(fit.rowsRead));
  counts->AddAttribute(S::XML_ATT_TOTALFREQ, fit.weightSum);
  counts->AddAttribute(S::XML_ATT_DROPPEDCOUNT, static_cast<double>(fit.casesDropped));
  counts->AddAttribute(S::XML_ATT_BADWEIGHTCOUNT, static_cast<double>(fit.badWeights));
  summary->AddElement(counts);
  summary->AddElement(QXStatXMLUtil::CreateElemStatistic(
      S::XML_VAL_ALGORITHMNAME, fit.method == Method::kQR ? "qr" : "sweep"));
  summary->AddElement(QXStatXMLUtil::CreateElemStatistic(S::XML_VAL_PREDICTORS, fit.dfModel));
  summary->AddElement(QXStatXMLUtil::CreateElemStatistic("tolerance", fit.tol));
  root->AddElement(summary);

  XMLElement* diagnostics = XMLElement::Create(S::XML_ELE_MODELDIAGNOSTICS);
  XMLElement* test = XMLElement::Create(S::XML_ELE_FTEST);
  test->AddAttribute(S::XML_ATT_FSTATISTIC, fit.fValue);
  test->AddAttribute(S::XML_ATT_SIG, fit.fPValue);
  test->AddAttribute(S::XML_ATT_DF1, fit.dfModel);
  test->AddAttribute(S::XML_ATT_DF2, fit.dfResidual);
  diagnostics->AddElement(test);
  const std::pair<const char*, double> statistics[] = {
      {"rSquared", fit.rSquared},           {"adjustedRSquared", fit.adjRSquared},
      {"residualStandardError", fit.sigma}, {"residualSumOfSquares", fit.rss},
      {"totalSumOfSquares", fit.tss},       {"residualDf", fit.dfResidual}};
  for (const auto& s : statistics)
    diagnostics->AddElement(QXStatXMLUtil::CreateElemStatistic(s.first, s.second));
  root->AddElement(diagnostics);

  XMLElement* estimates = XMLElement::Create(S::XML_ELE_PARAMESTIMATES);
  for (std::size_t k = 0; k < fit.terms.size(); ++k) {
    const Term& t = fit.terms[k];
    XMLElement* p = XMLElement::Create(S::XML_ELE_PARAMSTATS);
    p->AddAttribute(S::XML_ATT_PARAMINDEX, static_cast<double>(k));
    p->AddAttribute(S::XML_ATT_PARAMNAME, t.name);
    p->AddAttribute(S::XML_ATT_ESTIMATE, t.estimate);
    p->AddAttribute(S::XML_ATT_STDERROR, t.stdError);
    p->AddAttribute(S::XML_ATT_TTEST, t.tValue);
    p->AddAttribute(S::XML_ATT_SIG, t.pValue);
    p->AddAttribute(P::XML_ATT_DF, fit.dfResidual);
    p->AddAttribute(S::XML_ATT_CONFINTERVALLOWER, t.lower);
    p->AddAttribute(S::XML_ATT_CONFINTERVALUPPER, t.upper);
    p->AddAttribute(S::XML_ATT_ISREDUNDANT, t.aliased ? S::XML_VAL_TRUE : S::XML_VAL_FALSE);
    std::vector<XMLElement*> covariates, factors;
    if (t.variable >= 0) {
      const std::string& name = list.GetVarAt(t.variable)->GetVariableName();
      if (t.category < 0) {
        covariates.push_back(QXStatXMLUtil::CreateElemCovariate(name, 1));
      } else {
        factors.push_back(QXStatXMLUtil::CreateElemFactor(
            name, list.GetEncoderAt(t.variable)->Decode(t.category), false));
      }
    }
    p->AddElement(
        QXStatXMLUtil::CreateElemRegressionParameter(covariates, factors, t.name, t.variable < 0));
    estimates->AddElement(p);
  }
  root->AddElement(estimates);

  for (const QXStatus& w : fit.warnings.GetWarnings(true)) {
    std::string text = "warning " + std::to_string(w.GetErrorCode());
    if (w.GetErrorCode() == kAliased) {
      text = "aliased and refused:";
      for (const std::string& name : fit.aliased)
        text += " " + name;
    }
    root->AddElement(QXStatXMLUtil::CreateElem(S::XML_ELE_MESSAGE, P::XML_ATT_TYPE,
                                               S::XML_VAL_WARNING, P::XML_ATT_DESCRIPTION, text));
  }
  return root.release();
}

const std::string& Need(const XmlNode& node, const char* attribute, const std::string& shownName) {
  const std::string* value = node.Attribute(attribute);
  if (value == nullptr) {
    throw InputError{kBadModel, shownName + ":" + std::to_string(node.line) + ": error: <" +
                                    node.name + "> has no " + attribute};
  }
  return *value;
}

double NeedNumber(const XmlNode& node, const char* attribute, const std::string& shownName) {
  double value;
  if (!ParseNumber(Need(node, attribute, shownName), value)) {
    throw InputError{kBadModel, shownName + ":" + std::to_string(node.line) + ": error: " +
                                    attribute + " of <" + node.name + "> is not a number"};
  }
  return value;
}

}  // namespace

void WriteDocuments(const Fit& fit, const std::string& dataName, const std::string& statxmlPath,
                    const std::string& pmmlPath) {
  const std::unique_ptr<XMLElement> statxml(StatXml(fit, dataName));
  const std::unique_ptr<XMLElement> pmml(Pmml(fit, dataName));
  WriteAtomically(*statxml, statxmlPath);
  try {
    WriteAtomically(*pmml, pmmlPath);
  } catch (const InputError&) {
    std::remove(statxmlPath.c_str());
    throw;
  }
}

Model ReadModel(const std::string& text, const std::string& shownName) {
  const XmlNode root = ParseXml(text, shownName, kBadModel);
  const auto fail = [&](long line, const std::string& what) {
    return InputError{kBadModel, shownName + ":" + std::to_string(line) + ": error: " + what};
  };
  if (root.name != "PMML") throw fail(root.line, "the root is not <PMML>");
  const XmlNode* model = root.Child("RegressionModel");
  if (model == nullptr) throw fail(root.line, "no <RegressionModel>");
  if (const std::string* f = model->Attribute("functionName"); f == nullptr || *f != "regression") {
    throw fail(model->line, "the model's functionName is not regression");
  }
  const XmlNode* schema = model->Child("MiningSchema");
  if (schema == nullptr) throw fail(model->line, "no <MiningSchema>");
  Model m;
  for (const XmlNode& field : schema->children) {
    if (field.name != "MiningField") continue;
    const std::string& name = Need(field, "name", shownName);
    const std::string* use = field.Attribute("usageType");
    if (use == nullptr || *use == "active") {
      m.active.push_back(name);
    } else if (*use == "target" || *use == "predicted") {
      m.target = name;
    }
  }
  int tables = 0;
  for (const XmlNode& table : model->children) {
    if (table.name != "RegressionTable") continue;
    if (++tables > 1) throw fail(table.line, "more than one <RegressionTable>");
    m.intercept = NeedNumber(table, "intercept", shownName);
    for (const XmlNode& p : table.children) {
      if (p.name == "NumericPredictor") {
        Model::Numeric n;
        n.field = Need(p, "name", shownName);
        n.coefficient = NeedNumber(p, "coefficient", shownName);
        if (p.Attribute("exponent") != nullptr) {
          const double e = NeedNumber(p, "exponent", shownName);
          if (e != std::floor(e) || e < 0.0 || e > 100.0) throw fail(p.line, "a bad exponent");
          n.exponent = static_cast<int>(e);
        }
        m.numeric.push_back(n);
      } else if (p.name == "CategoricalPredictor") {
        m.categorical.push_back({Need(p, "name", shownName), Need(p, "value", shownName),
                                 NeedNumber(p, "coefficient", shownName)});
      } else if (p.name != "Extension") {
        throw fail(p.line, "<" + p.name + "> is not a term this program can apply");
      }
    }
  }
  if (tables == 0) throw fail(model->line, "no <RegressionTable>");
  if (const XmlNode* dictionary = root.Child("DataDictionary")) {
    for (const XmlNode& field : dictionary->children) {
      const std::string* optype = field.Attribute("optype");
      if (field.name != "DataField" || optype == nullptr || *optype == "continuous") continue;
      std::vector<std::string> values;
      for (const XmlNode& value : field.children) {
        const std::string* property = value.Attribute("property");
        if (value.name == "Value" && (property == nullptr || *property == "valid")) {
          values.push_back(Need(value, "value", shownName));
        }
      }
      m.valid.emplace_back(Need(field, "name", shownName), values);
    }
  }
  return m;
}

long Score(const Model& model, std::istream& data, const std::string& shownName,
           std::ostream& out) {
  CsvReader reader(data, shownName);
  const std::vector<std::string>& header = reader.ReadHeader();
  const auto columnOf = [&](const std::string& name) {
    for (std::size_t c = 0; c < header.size(); ++c) {
      if (header[c] == name) return static_cast<int>(c);
    }
    throw reader.Error(kBadTable, "no column named '" + name + "', which the model needs");
  };
  std::vector<int> numericColumn, categoricalColumn, activeColumn;
  for (const Model::Numeric& n : model.numeric)
    numericColumn.push_back(columnOf(n.field));
  for (const Model::Categorical& c : model.categorical)
    categoricalColumn.push_back(columnOf(c.field));
  // The valid values of each active categorical field; others take numbers.
  std::vector<const std::vector<std::string>*> valid;
  for (const std::string& name : model.active) {
    activeColumn.push_back(columnOf(name));
    valid.push_back(nullptr);
    for (const auto& v : model.valid) {
      if (v.first == name) valid.back() = &v.second;
    }
  }
  out << "predicted_" << (model.target.empty() ? std::string("value") : model.target) << "\n";
  std::vector<std::string_view> fields;
  long unscored = 0;
  char text[40];
  while (reader.Next(fields)) {
    bool usable = true;
    for (std::size_t a = 0; a < activeColumn.size() && usable; ++a) {
      const std::string_view cell = fields[activeColumn[a]];
      if (IsMissingCell(cell)) {
        usable = false;
      } else if (valid[a] != nullptr) {
        usable = std::find(valid[a]->begin(), valid[a]->end(), cell) != valid[a]->end();
      } else {
        double x;
        if (!ParseNumber(cell, x)) {
          throw reader.Error(kBadValue, "column '" + model.active[a] + "': '" + std::string(cell) +
                                            "' is not a finite number");
        }
      }
    }
    if (!usable) {
      ++unscored;
      out << "NA\n";
      continue;
    }
    double y = model.intercept;
    for (std::size_t k = 0; k < model.numeric.size(); ++k) {
      double x;
      if (!ParseNumber(fields[numericColumn[k]], x)) {
        throw reader.Error(kBadValue, "column '" + model.numeric[k].field + "': '" +
                                          std::string(fields[numericColumn[k]]) +
                                          "' is not a finite number");
      }
      double power = 1.0;
      for (int e = 0; e < model.numeric[k].exponent; ++e)
        power *= x;
      y += model.numeric[k].coefficient * power;
    }
    for (std::size_t k = 0; k < model.categorical.size(); ++k) {
      if (fields[categoricalColumn[k]] == model.categorical[k].value) {
        y += model.categorical[k].coefficient;
      }
    }
    std::snprintf(text, sizeof text, "%.17g\n", y);
    out << text;
  }
  return unscored;
}

long ScoreFile(const std::string& modelPath, const std::string& dataPath,
               const std::string& outputPath) {
  std::ifstream modelFile(modelPath, std::ios::binary);
  std::error_code ec;
  if (!modelFile || std::filesystem::is_directory(modelPath, ec)) {
    throw InputError{kCannotOpen, modelPath + ": error: cannot open the model file"};
  }
  std::string text;
  char chunk[65536];
  while (modelFile.read(chunk, sizeof chunk) || modelFile.gcount() > 0) {
    text.append(chunk, static_cast<std::size_t>(modelFile.gcount()));
    if (text.size() > kMaxXmlBytes) {
      throw InputError{kBadModel, modelPath + ": error: the model file is too large"};
    }
  }
  const Model model = ReadModel(text, modelPath);
  std::ifstream data(dataPath, std::ios::binary);
  if (!data || std::filesystem::is_directory(dataPath, ec)) {
    throw InputError{kCannotOpen, dataPath + ": error: cannot open the file"};
  }
  long unscored;
  if (outputPath.empty()) {
    unscored = Score(model, data, dataPath, std::cout);
  } else {
    std::ostringstream predictions;
    unscored = Score(model, data, dataPath, predictions);
    const std::string temporary = outputPath + ".part";
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << predictions.str();
    if (!out.flush() || (out.close(), std::rename(temporary.c_str(), outputPath.c_str()) != 0)) {
      std::remove(temporary.c_str());
      throw InputError{kCannotWrite, outputPath + ": error: cannot write the file"};
    }
  }
  if (unscored > 0) std::fprintf(stderr, "linreg: %ld rows scored NA\n", unscored);
  return 0;
}

}  // namespace linreg
