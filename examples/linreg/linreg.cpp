#include "linreg.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <sstream>

#include "csvreader.h"
#include "linregsolve.h"

namespace linreg {

using QXCommon_850::QXMV;
using QXCommon_850::QXStatus;
using QXMath_850::QXDistFun;
using QXXML_850::IQXEncoder;
using QXXML_850::IQXVariable;
using QXXML_850::QXSettings;
using QXXML_850::QXVarList;

int ExitStatus(long code) {
  switch (code) {
    case kCancelled:
      return 130;
    case kBadSettings:
      return 2;
    case kCannotOpen:
      return 3;
    case kBadTable:
      return 4;
    case kBadValue:
      return 5;
    case kConstantTarget:
      return 6;
    case kAllDropped:
      return 7;
    case kZeroWeight:
      return 8;
    case kCannotWrite:
      return 9;
    case kBadModel:
      return 10;
    case kNotPooled:
      return 11;
    default:
      return code == 0 ? 0 : 1;
  }
}

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

InputError BadSetting(const std::string& what) {
  return InputError{kBadSettings, "error: " + what};
}

// The texts of every setting of the name, a text holding a comma-separated
// list counting as several.
std::vector<std::string> Texts(const QXSettings& settings, const std::string& name) {
  std::vector<std::string> out;
  for (const QXXML_850::QXSetting* setting : settings.GetSettingByName(name)) {
    std::stringstream list(setting->GetValue()->GetString());
    for (std::string item; std::getline(list, item, ',');) {
      const std::size_t first = item.find_first_not_of(" \t");
      if (first != std::string::npos) {
        out.push_back(item.substr(first, item.find_last_not_of(" \t") - first + 1));
      }
    }
  }
  return out;
}

std::string Text(const QXSettings& settings, const std::string& name) {
  const std::vector<std::string> all = Texts(settings, name);
  if (all.size() > 1) throw BadSetting("setting '" + name + "' is given more than once");
  return all.empty() ? std::string() : all[0];
}

// A number setting, read whole in the classic locale whatever its kind.
bool Number(const QXSettings& settings, const std::string& name, double& value) {
  const QXXML_850::QXSetting* setting = settings.FindSetting(name);
  if (setting == nullptr) return false;
  if (setting->GetValue()->GetType() == 0) {
    value = setting->GetValue()->GetDouble();
    return true;
  }
  const std::string text = Text(settings, name);
  if (!ParseNumber(text, value)) {
    throw BadSetting("setting '" + name + "' must be a number, not '" + text + "'");
  }
  return true;
}

bool Flag(const QXSettings& settings, const std::string& name, bool fallback) {
  if (settings.FindSetting(name) == nullptr) return fallback;
  const std::string text = Text(settings, name);
  if (text == "true" || text == "yes" || text == "1") return true;
  if (text == "false" || text == "no" || text == "0") return false;
  throw BadSetting("setting '" + name + "' must be true or false, not '" + text + "'");
}

}  // namespace

Options ReadOptions(const QXSettings& settings) {
  static const char* const known[] = {"target",    "weight",     "categorical", "predictors",
                                      "intercept", "listwise",   "tol",         "block",
                                      "method",    "dictionary", "pmml",        "statxml"};
  std::vector<std::string> names;
  settings.GetSettingNames(names);
  for (const std::string& name : names) {
    if (std::find(std::begin(known), std::end(known), name) == std::end(known)) {
      throw BadSetting("unknown setting '" + name + "'");
    }
  }
  Options o;
  o.target = Text(settings, "target");
  o.weight = Text(settings, "weight");
  o.categorical = Texts(settings, "categorical");
  o.predictors = Texts(settings, "predictors");
  o.dictionary = Text(settings, "dictionary");
  o.intercept = Flag(settings, "intercept", true);
  o.listwise = Flag(settings, "listwise", false);
  const std::string method = Text(settings, "method");
  if (method == "qr") {
    o.method = Method::kQR;
  } else if (!method.empty() && method != "sweep") {
    throw BadSetting("method must be sweep or qr, not '" + method + "'");
  }
  double value;
  if (Number(settings, "tol", value)) {
    if (!(value > 0.0 && value < 1.0)) throw BadSetting("tol must lie in (0, 1)");
    o.tol = value;
  }
  if (Number(settings, "block", value)) {
    if (!(value >= 1.0 && value <= 1e6) || value != std::floor(value)) {
      throw BadSetting("block must be a whole number of rows from 1 to 1000000");
    }
    o.block = static_cast<int>(value);
  }
  if (!o.dictionary.empty() &&
      (!o.target.empty() || !o.weight.empty() || !o.categorical.empty() || !o.predictors.empty())) {
    throw BadSetting(
        "target, weight, categorical and predictors come from the dictionary when one is given");
  }
  return o;
}

namespace {

// How the cells of one row become the values of the variables, and those
// the design columns.
class Encoder {
 public:
  Encoder(QXVarList& list, const std::vector<int>& columns, const CsvReader& reader)
      : list(list), column(columns), reader(reader), values(columns.size()) {}

  enum Outcome { kUsed, kMissing, kBadWeight };

  // Reads and checks every cell; categories are only looked up here.
  Outcome Read(const std::vector<std::string_view>& fields) {
    bool missing = false, badWeight = false;
    for (std::size_t v = 0; v < column.size(); ++v) {
      if (column[v] < 0) continue;
      const std::string_view cell = fields[column[v]];
      IQXEncoder* encoder = list.GetEncoderAt(static_cast<int>(v));
      const IQXVariable::MeasureLevel level = list.GetVarAt(static_cast<int>(v))->GetMeasureLevel();
      if (level == IQXVariable::LevelStringCategorical) {
        const std::string text(cell);
        values[v] = IsMissingCell(cell) || encoder->IsMissing(text) ? -1.0 : -2.0;
        missing = missing || values[v] == -1.0;
        continue;
      }
      double number = QXMV::Missing();
      if (!IsMissingCell(cell) && !ParseNumber(cell, number)) {
        throw reader.Error(kBadValue, "column '" + Name(v) + "': '" + std::string(cell) +
                                          "' is not a finite number");
      }
      if (static_cast<int>(v) == list.GetWeightIndex()) {
        if (!QXMV::IsMissing(number) && number < 0.0) {
          throw reader.Error(kBadValue, "column '" + Name(v) + "': the weight is negative");
        }
        values[v] = encoder->Encode(number);
        badWeight = QXMV::IsMissing(values[v]);
      } else if (level == IQXVariable::LevelNumericCategorical) {
        values[v] = QXMV::IsMissing(number) ? -1.0 : -2.0;
        missing = missing || values[v] == -1.0;
        numbers[v] = number;
      } else {
        values[v] = encoder->Encode(number);
        missing = missing || QXMV::IsMissing(values[v]);
      }
    }
    if (badWeight) return kBadWeight;
    return missing ? kMissing : kUsed;
  }

  // Codes of the categories of a row that is used; with `learn` a new
  // category gets the next code, otherwise it is an error.
  void Categories(const std::vector<std::string_view>& fields, bool learn) {
    for (std::size_t v = 0; v < column.size(); ++v) {
      if (column[v] < 0 || values[v] != -2.0) continue;
      IQXEncoder* encoder = list.GetEncoderAt(static_cast<int>(v));
      const bool text = list.GetVarAt(static_cast<int>(v))->GetMeasureLevel() ==
                        IQXVariable::LevelStringCategorical;
      const std::string cell(fields[column[v]]);
      if (learn) {
        values[v] = text ? encoder->Encode(cell) : encoder->Encode(numbers[v]);
      } else {
        values[v] = text ? encoder->EncodeConst(cell) : encoder->EncodeConst(numbers[v]);
      }
      if (values[v] < 0.0) {
        throw reader.Error(kBadValue, "column '" + Name(v) + "': '" + cell +
                                          "' is not one of the categories of the dictionary");
      }
    }
  }

  double Value(int v) const { return values[v]; }

 private:
  std::string Name(std::size_t v) const {
    return list.GetVarAt(static_cast<int>(v))->GetVariableName();
  }

  QXVarList& list;
  const std::vector<int>& column;
  const CsvReader& reader;
  std::vector<double> values;
  std::map<std::size_t, double> numbers;  // numeric categories, by variable
};

// One design column: a continuous predictor, or the indicator of one
// category of a categorical predictor.
struct DesignColumn {
  int variable;
  int category;  // -1 for a continuous predictor
};

class QueryNothing : public QXCommon_850::QXQueryCancel {
 public:
  bool IsCancel() override { return false; }
  bool WillCancel() const override { return false; }
};

// A persisted QXVarList; the reader's own failure line is kept for the message.
void ReadDictionary(const std::string& path, QXVarList& list) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw InputError{kCannotOpen, path + ": error: cannot open the dictionary"};
  std::ostringstream failure;
  std::streambuf* const err = std::cerr.rdbuf(failure.rdbuf());
  bool ok = QXXML_850::ParseStartXML(in);
  try {
    if (ok) list.ReadObjectXML(in);
  } catch (QXXML_850::IOException* e) {
    delete e;
    ok = false;
  }
  std::cerr.rdbuf(err);
  if (!ok) {
    std::string why = failure.str();
    while (!why.empty() && (why.back() == '\n' || why.back() == ' '))
      why.pop_back();
    throw InputError{kBadSettings, path + ": error: not a dictionary this program can read" +
                                       (why.empty() ? "" : " (" + why + ")")};
  }
}

int ColumnOf(const std::vector<std::string>& header, const std::string& name) {
  const auto at = std::find(header.begin(), header.end(), name);
  return at == header.end() ? -1 : static_cast<int>(at - header.begin());
}

// The dictionary of the header and the options: the target, the predictors
// (continuous, or categorical with the empty cell and NA as missing texts)
// and the weight, in the order of the file's columns.
void BuildDictionary(const std::vector<std::string>& header, const Options& o,
                     const CsvReader& reader, QXVarList& list) {
  const auto need = [&](const std::string& name, const char* option) {
    if (ColumnOf(header, name) < 0) {
      throw reader.Error(kBadSettings, "no column named '" + name + "' for " + option);
    }
  };
  const std::string target = o.target.empty() ? header.back() : o.target;
  need(target, "the target");
  if (!o.weight.empty()) need(o.weight, "the weight");
  for (const std::string& name : o.categorical)
    need(name, "--categorical");
  for (const std::string& name : o.predictors)
    need(name, "--predictors");
  if (o.weight == target) throw reader.Error(kBadSettings, "the weight is also the target");
  const auto listed = [](const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  if (listed(o.categorical, target)) {
    throw reader.Error(kBadSettings, "the target '" + target + "' can't be categorical");
  }
  for (const std::string& name : header) {
    if (name == o.weight) {
      list.SetWeightVar(name, name, IQXVariable::RoundAsIs);
      continue;
    }
    const bool isTarget = name == target;
    if (!isTarget && !o.predictors.empty() && !listed(o.predictors, name)) continue;
    const IQXVariable::VariableRole role =
        isTarget ? IQXVariable::RoleTarget : IQXVariable::RoleInput;
    if (listed(o.categorical, name)) {
      const int v = list.AddCatVar(name, name, 0, IQXVariable::LevelStringCategorical, role);
      list.GetVarAt(v)->SetVariableStorage(IQXVariable::StorageString);
      list.GetEncoderAt(v)->AddDiscreteUserMissing("", "empty cell");
      list.GetEncoderAt(v)->AddDiscreteUserMissing("NA", "not available");
    } else {
      const int v = list.AddContVar(name, name, role);
      list.GetVarAt(v)->SetVariableStorage(IQXVariable::StorageReal);
    }
  }
}

bool IsCategorical(const IQXVariable* v) {
  return v->GetMeasureLevel() == IQXVariable::LevelStringCategorical ||
         v->GetMeasureLevel() == IQXVariable::LevelNumericCategorical;
}

double OrNaN(double value) {
  return QXMV::IsMissing(value) ? kNaN : value;
}

class Run {
 public:
  Run(std::istream& in, const std::string& shownName, const Options& o,
      QXCommon_850::QXQueryCancel* query, const ProgressFn& progress, Fit& fit, Pool* pool)
      : reader(in, shownName),
        o(o),
        cancel(query != nullptr ? query : &nothing),
        progress(progress),
        fit(fit),
        pool(pool) {}

  void Go() {
    if (pool == nullptr) {
      Accumulate();
    } else {
      // Every process reaches the agreement whatever happened to it, so that
      // none waits for another; past it, every step is the same everywhere.
      std::optional<InputError> failure;
      try {
        Accumulate();
      } catch (const InputError& e) {
        failure = e;
      }
      failure = pool->Agree(failure);
      if (failure) throw *failure;
      PoolShares();
    }
    Counts();
    const std::vector<double> range = fit.fields[fit.target].GetSummStats();
    if (range[0] == range[1]) {
      throw InputError{kConstantTarget, reader.Name() + ": error: the target '" +
                                            fit.dictionary.GetVarAt(fit.target)->GetVariableName() +
                                            "' is constant (" + Format(range[0]) +
                                            ") in every case used"};
    }
    fit.method = o.method;
    fit.intercept = o.intercept;
    fit.tol = o.tol > 0.0 ? o.tol : (o.method == Method::kQR ? kQRTol : kSweepTol);
    Solution s = solver->Solve(fit.tol);
    if (o.method == Method::kQR) Refine(*rowEncoder, s);
    Statistics(s);
  }

 private:
  // Reads this process's rows and accumulates them.
  void Accumulate() {
    const std::vector<std::string>& header = reader.ReadHeader();
    QXVarList& list = fit.dictionary;
    if (o.dictionary.empty()) {
      BuildDictionary(header, o, reader, list);
    } else {
      ReadDictionary(o.dictionary, list);
    }
    list.SetListwiseDeletion(o.listwise);
    Layout(header);
    rowEncoder.reset(new Encoder(list, column, reader));
    Encoder& encoder = *rowEncoder;
    std::vector<std::string_view> fields;
    if (pool != nullptr) {
      // Categories learnt from a share would be numbered apart; QR keeps no
      // summary that pools.
      if (o.method == Method::kQR || (o.dictionary.empty() && HasCategorical())) {
        throw BadSetting(
            "a parallel fit takes the sweep, and categorical predictors only from a --dictionary");
      }
      reader.KeepShare(pool->Index(), pool->Count());
    }
    if (o.dictionary.empty() && HasCategorical()) {
      // A first pass learns the categories, in the order they first appear
      // among the cases that will be used.
      while (reader.Next(fields)) {
        if (encoder.Read(fields) == Encoder::kUsed) encoder.Categories(fields, true);
      }
      reader.Rewind();
    }
    list.UpdateNumbersOfCategories();
    Design();
    const bool weighted = list.GetWeightIndex() >= 0;
    const int q = static_cast<int>(design.size());
    if (o.method == Method::kQR) {
      solver.reset(new QRSolver(q, o.intercept, weighted));
    } else {
      solver.reset(new SweepSolver(q, o.intercept, weighted));
    }
    const int width = q + 1 + (weighted ? 1 : 0);
    QXMath_850::QXRectMatrix block(o.block, width, true);
    double* rows = block.AsVector().data();
    int filled = 0;
    for (int v = 0; v < static_cast<int>(column.size()); ++v) {
      const IQXVariable* var = list.GetVarAt(v);
      if (IsCategorical(var)) {
        fit.fields.emplace_back(var->GetVariableName(),
                                list.GetEncoderAt(v)->GetNumberOfCategories());
      } else {
        fit.fields.emplace_back(var->GetVariableName());
      }
    }
    while (reader.Next(fields)) {
      ++fit.rowsRead;
      const Encoder::Outcome outcome = encoder.Read(fields);
      if (outcome == Encoder::kBadWeight) {
        ++fit.badWeights;
        continue;
      }
      if (outcome == Encoder::kMissing) {
        if (!o.listwise) {
          throw reader.Error(kBadValue,
                             "a missing value; --listwise drops the cases that have one");
        }
        ++fit.casesDropped;
        continue;
      }
      encoder.Categories(fields, false);
      ++fit.casesUsed;
      const double w = weighted ? encoder.Value(list.GetWeightIndex()) : 1.0;
      double* row = rows + static_cast<std::size_t>(filled) * width;
      DesignRow(encoder, row);
      if (weighted) row[q + 1] = w;
      for (int v = 0; v < static_cast<int>(column.size()); ++v) {
        if (column[v] < 0 || v == list.GetWeightIndex()) continue;
        fit.fields[v].Update(encoder.Value(v), w);
      }
      if (++filled == o.block) {
        Flush(*solver, block, filled);
        filled = 0;
      }
    }
    Flush(*solver, block, filled);
    // A share's line numbers cost a pass over the file before it: only the
    // message of a file without rows needs this one, and asks for it then.
    if (pool == nullptr) lastLine = reader.Line();
  }

  // The counts, sums and summaries of all processes, in every process.
  void PoolShares() {
    std::vector<long> counts{fit.rowsRead, fit.casesUsed, fit.casesDropped, fit.badWeights,
                             fit.blocks};
    pool->Sum(counts);
    fit.rowsRead = counts[0];
    fit.casesUsed = counts[1];
    fit.casesDropped = counts[2];
    fit.badWeights = counts[3];
    fit.blocks = static_cast<int>(counts[4]);
    if (fit.rowsRead == 0) lastLine = pool->Max(reader.Line());
    bool pooled = pool->Combine(*solver->Pooled());
    for (QXMath_850::QXUniStats& field : fit.fields)
      pooled = pool->Combine(field) && pooled;
    if (!pooled) {
      throw InputError{kNotPooled,
                       reader.Name() + ": error: the processes could not pool their sums"};
    }
  }

  // The design columns of a used case, then its target.
  void DesignRow(const Encoder& encoder, double* row) const {
    const int q = static_cast<int>(design.size());
    for (int j = 0; j < q; ++j) {
      const double value = encoder.Value(design[j].variable);
      row[j] = design[j].category < 0 ? value : (value == design[j].category ? 1.0 : 0.0);
    }
    row[q] = encoder.Value(fit.target);
  }

  // Iterative refinement of a QR solution, in further passes over a
  // seekable input: the residuals of the cases and their products with the
  // design columns are summed in extended precision, and the correction
  // solves the seminormal equations with the factor's inverse. Each pass
  // shrinks the error by about the squared condition number times the
  // rounding unit, so two or three reach the accuracy of the data.
  void Refine(Encoder& encoder, Solution& s) {
    const QXVarList& list = fit.dictionary;
    const int q = static_cast<int>(design.size());
    const int weightIndex = list.GetWeightIndex();
    std::vector<double> row(q + 1);
    std::vector<long double> g(q);
    std::vector<std::string_view> fields;
    double intercept = s.means[q];
    if (o.intercept) {
      for (int j = 0; j < q; ++j)
        intercept -= s.coef[j] * s.means[j];
    }
    // A pass that raises the residual sum of squares means the design is too
    // ill-conditioned for the corrections to converge: the solution before it
    // stays.
    std::vector<double> keptCoef;
    double keptIntercept = intercept;
    long double keptRss = HUGE_VALL;
    for (int pass = 0; pass < 4; ++pass) {
      try {
        reader.Rewind();
      } catch (const InputError&) {
        return;  // standard input: the solution stays as QR gave it
      }
      std::fill(g.begin(), g.end(), 0.0L);
      long double sumR = 0.0L, rss = 0.0L;
      while (reader.Next(fields)) {
        if (encoder.Read(fields) != Encoder::kUsed) continue;
        encoder.Categories(fields, false);
        const long double w = weightIndex >= 0 ? encoder.Value(weightIndex) : 1.0;
        DesignRow(encoder, row.data());
        long double r = static_cast<long double>(row[q]) - (o.intercept ? intercept : 0.0);
        for (int j = 0; j < q; ++j)
          r -= static_cast<long double>(s.coef[j]) * row[j];
        sumR += w * r;
        rss += w * r * r;
        for (int j = 0; j < q; ++j)
          g[j] += w * row[j] * r;
      }
      if (cancel.IsCancel()) {
        throw InputError{kCancelled, "cancelled while refining; nothing was fitted"};
      }
      if (rss > keptRss * (1.0L + 1e-12L)) {
        s.coef = keptCoef;
        intercept = keptIntercept;
        break;
      }
      keptCoef = s.coef;
      keptIntercept = intercept;
      keptRss = rss;
      s.rss = static_cast<double>(rss);
      if (pass == 3) break;
      // With an intercept the correction is that of the centred columns.
      std::vector<double> gc(q);
      for (int j = 0; j < q; ++j)
        gc[j] = static_cast<double>(o.intercept ? g[j] - s.means[j] * sumR : g[j]);
      double change = 0.0, shift = o.intercept ? static_cast<double>(sumR / s.weightSum) : 0.0;
      for (int i = 0; i < q; ++i) {
        double d = 0.0;
        for (int j = 0; j < q; ++j)
          d += s.inverse[i * q + j] * gc[j];
        s.coef[i] += d;
        shift -= d * s.means[i];
        change = std::fmax(change, std::fabs(d) / std::fmax(std::fabs(s.coef[i]), 1e-300));
      }
      intercept += shift;
      if (change < 1e-15) break;
    }
    s.intercept = intercept;
  }

  bool HasCategorical() const {
    for (int v = 0; v < static_cast<int>(column.size()); ++v) {
      if (column[v] >= 0 && IsCategorical(fit.dictionary.GetVarAt(v))) return true;
    }
    return false;
  }

  // The file column of every variable that takes part (-1 for the others),
  // and the target.
  void Layout(const std::vector<std::string>& header) {
    QXVarList& list = fit.dictionary;
    for (int v = 0; v < static_cast<int>(list.Size()); ++v) {
      const std::string& name = list.GetVarAt(v)->GetVariableName();
      const bool used = v == list.GetWeightIndex() || v == list.GetTargetIndex() ||
                        list.GetVariableRole(v) == IQXVariable::RoleInput;
      column.push_back(used ? ColumnOf(header, name) : -1);
      if (used && column.back() < 0) {
        throw reader.Error(kBadSettings,
                           "the dictionary's variable '" + name + "' is not a column");
      }
    }
    fit.target = list.GetTargetIndex();
    if (fit.target < 0 || IsCategorical(list.GetVarAt(fit.target))) {
      throw InputError{kBadSettings,
                       o.dictionary + ": error: the dictionary has no continuous target"};
    }
  }

  // The design columns: each continuous predictor, and an indicator for
  // every category of a categorical one but its last, the reference.
  void Design() {
    QXVarList& list = fit.dictionary;
    for (int v = 0; v < static_cast<int>(list.Size()); ++v) {
      if (list.GetVariableRole(v) != IQXVariable::RoleInput) continue;
      if (!IsCategorical(list.GetVarAt(v))) {
        design.push_back({v, -1});
        continue;
      }
      const int k = list.GetEncoderAt(v)->GetNumberOfCategories();
      for (int c = 0; c + 1 < k; ++c)
        design.push_back({v, c});
    }
    if (design.empty() && !o.intercept) {
      throw InputError{kBadSettings, reader.Name() +
                                         ": error: there is nothing to fit: no "
                                         "predictor and no intercept"};
    }
  }

  void Flush(Solver& solver, const QXMath_850::QXRectMatrix& block, int filled) {
    if (filled == 0) return;
    timer.Start();
    solver.Add(block, filled);
    timer.Accumulate();
    int ticks = 0, calls = 0;
    double seconds = 0.0;
    timer.GetTime(ticks, seconds, calls);
    reporter.SetInfo(&solver.Means(), ++fit.blocks, 0, QXMV::Missing(), seconds);
    if (progress) progress(reporter, fit.rowsRead);
    if (cancel.IsCancel()) {
      throw InputError{kCancelled, "cancelled after " + std::to_string(fit.rowsRead) +
                                       " rows; nothing was fitted"};
    }
  }

  void Counts() {
    QXVarList& list = fit.dictionary;
    list.SetUnWeightedCount(static_cast<double>(fit.casesUsed));
    list.SetDroppedCount(static_cast<double>(fit.casesDropped));
    list.SetBadWeightCount(static_cast<double>(fit.badWeights));
    const std::string where = reader.Name() + ": error: ";
    if (fit.rowsRead == 0) {
      throw InputError{kBadTable, reader.Name() + ":" + std::to_string(lastLine + 1) +
                                      ": error: no data rows after the header"};
    }
    if (fit.casesUsed == 0 && fit.casesDropped > 0) {
      throw InputError{kAllDropped, where + "all " + std::to_string(fit.casesDropped) +
                                        " cases with a usable weight have a missing value"};
    }
    if (fit.casesUsed == 0) {
      throw InputError{kZeroWeight, where +
                                        "the weights add up to zero: no case has a weight "
                                        "above 0"};
    }
  }

  static std::string Format(double x) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(15);
    out << x;
    return out.str();
  }

  std::string TermName(const DesignColumn& d) const {
    const QXVarList& list = fit.dictionary;
    const std::string& name = list.GetVarAt(d.variable)->GetVariableName();
    return d.category < 0 ? name : name + list.GetEncoderAt(d.variable)->Decode(d.category);
  }

  // Everything R's summary(lm(...)) shows, from the solution.
  void Statistics(const Solution& s) {
    const int q = static_cast<int>(design.size());
    int rank = 0;
    for (int j = 0; j < q; ++j)
      rank += s.kept[j] ? 1 : 0;
    const double n = static_cast<double>(fit.casesUsed);
    fit.weightSum = s.weightSum;
    fit.dictionary.SetWeightedCount(s.weightSum);
    fit.rss = s.rss;
    fit.tss = s.tss;
    fit.dfModel = rank;
    fit.dfResidual = n - rank - (o.intercept ? 1.0 : 0.0);
    const double df = fit.dfResidual;
    const double sigma2 = df > 0.0 ? s.rss / df : kNaN;
    fit.sigma = std::sqrt(sigma2);
    fit.rSquared = s.tss > 0.0 ? (s.tss - s.rss) / s.tss : kNaN;
    fit.adjRSquared = 1.0 - (1.0 - fit.rSquared) * ((n - (o.intercept ? 1.0 : 0.0)) / df);
    fit.fValue = rank > 0 ? ((s.tss - s.rss) / rank) / sigma2 : kNaN;
    fit.fPValue = rank > 0 && df > 0.0 ? OrNaN(QXDistFun::SigF(fit.fValue, rank, df)) : kNaN;
    if (s.rss == 0.0) fit.fPValue = 0.0;
    const double tQuantile = df > 0.0 ? OrNaN(QXDistFun::IdfT(0.975, df)) : kNaN;
    const auto finish = [&](Term& t, double variance) {
      t.stdError = std::sqrt(std::fmax(variance, 0.0) * sigma2);
      t.tValue = t.estimate / t.stdError;
      t.pValue = std::isinf(t.tValue) ? 0.0 : 2.0 * OrNaN(QXDistFun::SigT(std::fabs(t.tValue), df));
      if (!(df > 0.0)) t.pValue = kNaN;
      t.lower = t.estimate - tQuantile * t.stdError;
      t.upper = t.estimate + tQuantile * t.stdError;
    };
    if (o.intercept) {
      Term t;
      t.name = "(Intercept)";
      t.estimate = s.means[q];
      double quadratic = 0.0;
      for (int i = 0; i < q; ++i) {
        if (std::isnan(s.intercept)) t.estimate -= s.coef[i] * s.means[i];
        for (int j = 0; j < q; ++j)
          quadratic += s.means[i] * s.inverse[i * q + j] * s.means[j];
      }
      if (!std::isnan(s.intercept)) t.estimate = s.intercept;
      finish(t, 1.0 / s.weightSum + quadratic);
      fit.terms.push_back(t);
    }
    std::vector<std::string> aliased;
    for (int j = 0; j < q; ++j) {
      Term t;
      t.name = TermName(design[j]);
      t.variable = design[j].variable;
      t.category = design[j].category;
      t.aliased = !s.kept[j];
      if (t.aliased) {
        t.estimate = t.stdError = t.tValue = t.pValue = t.lower = t.upper = kNaN;
        fit.aliased.push_back(t.name);
      } else {
        t.estimate = s.coef[j];
        finish(t, s.inverse[j * q + j]);
      }
      fit.terms.push_back(t);
    }
    QXCommon_850::QXWarnings& w = fit.warnings;
    if (!fit.aliased.empty()) {
      w.AddWarning(QXStatus(kAliased, true), QXCommon_850::QXWarnings::First);
      for (const std::string& name : fit.aliased)
        w.AddParameter(QXStatus(kAliased, true), name);
    }
    const auto count = [&w](Code code, long value) {
      if (value == 0) return;
      w.AddWarning(QXStatus(code, true), QXCommon_850::QXWarnings::First);
      w.AddParameter(QXStatus(code, true), static_cast<int>(std::min<long>(value, 2147483647L)));
    };
    count(kDroppedCases, fit.casesDropped);
    count(kBadWeights, fit.badWeights);
    if (!(df > 0.0)) {
      w.AddWarning(QXStatus(kNoResidualDf, true), QXCommon_850::QXWarnings::First);
    } else if (s.rss == 0.0) {
      w.AddWarning(QXStatus(kPerfectFit, true), QXCommon_850::QXWarnings::First);
    }
  }

  CsvReader reader;
  const Options& o;
  QueryNothing nothing;
  QXMath_850::QXCancelInfo cancel;
  const ProgressFn& progress;
  Fit& fit;
  Pool* pool;
  std::unique_ptr<Encoder> rowEncoder;
  std::unique_ptr<Solver> solver;
  long lastLine = 0;  // the file line where the rows ended
  std::vector<int> column;
  std::vector<DesignColumn> design;
  QXMath_850::QXTimeUtil timer{"accumulation"};
  QXMath_850::QXIterationReporter reporter;
};

QXStatus Failure(const InputError& e, std::string& message) {
  message = e.text;
  return QXStatus(e.code, false);
}

}  // namespace

QXStatus FitCsv(std::istream& in, const std::string& shownName, const QXSettings& settings,
                QXCommon_850::QXQueryCancel* cancel, const ProgressFn& progress, Fit& fit,
                std::string& message, Pool* pool) {
  fit = Fit();
  message.clear();
  try {
    const Options o = ReadOptions(settings);
    Run(in, shownName, o, cancel, progress, fit, pool).Go();
  } catch (const InputError& e) {
    return Failure(e, message);
  }
  return QXStatus();
}

QXStatus FitFile(const std::string& path, const QXSettings& settings,
                 QXCommon_850::QXQueryCancel* cancel, const ProgressFn& progress, Fit& fit,
                 std::string& message, Pool* pool) {
  if (path == "-")
    return FitCsv(std::cin, "standard input", settings, cancel, progress, fit, message, pool);
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) {
    message = path + ": error: this is a folder; a CSV file was expected";
    return QXStatus(kCannotOpen, false);
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    message = path + ": error: cannot open the file (" + std::strerror(errno) + ")";
    return QXStatus(kCannotOpen, false);
  }
  return FitCsv(in, path, settings, cancel, progress, fit, message, pool);
}

}  // namespace linreg
