// The regression component against R's lm (testdata/r_reference.csv, written
// by testdata/make_reference.R) and against the NIST StRD certified values,
// and the model it writes read back to score the data it was fitted to.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "linreg.h"
#include "linregoutput.h"
#include "linregreport.h"

namespace linreg {
namespace {

using QXXML_850::QXSettings;

const std::string kTestData = std::string(QX_TEST_SOURCE_DIR) + "/testdata/";

// Correct significant digits of `value` against `reference`, at most 15.
double Digits(double value, double reference) {
  const double err =
      reference == 0.0 ? std::fabs(value) : std::fabs(value - reference) / std::fabs(reference);
  return err == 0.0 ? 15.0 : std::fmin(15.0, -std::log10(err));
}

// A NIST StRD file: its certified coefficients and residual standard
// deviation, and its data as CSV with the columns the model needs (x and its
// powers up to `degree`, or x1 ... x6 for Longley), the response y last.
struct Strd {
  std::vector<double> certified, certifiedSd;
  double residualSd = 0.0;
  std::string csv;
};

bool ReadStrd(const std::string& name, int degree, Strd& out) {
  std::ifstream in(std::string(QX_TEST_SHARED_DATA) + "/nist-strd/" + name + ".dat");
  std::vector<std::vector<double>> rows;
  int dataLines = 0;
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    std::string first;
    words >> first;
    if (first.size() > 1 && first[0] == 'B' && std::isdigit(static_cast<unsigned char>(first[1]))) {
      double estimate = 0.0, sd = 0.0;
      words >> estimate >> sd;
      out.certified.push_back(estimate);
      out.certifiedSd.push_back(sd);
    }
    if (first == "Standard" && line.find("Deviation") != std::string::npos) {
      out.residualSd = std::strtod(line.c_str() + line.find("Deviation") + 9, nullptr);
    }
    if (first == "Data:") ++dataLines;
    std::vector<double> row;
    std::istringstream numbers(line);
    for (double v; numbers >> v;)
      row.push_back(v);
    if (dataLines == 2 && !row.empty()) rows.push_back(row);
  }
  if (rows.empty()) return false;
  std::ostringstream csv;
  csv.precision(17);
  const int k = static_cast<int>(rows[0].size()) - 1;
  if (degree == 0) {
    for (int j = 1; j <= k; ++j)
      csv << "x" << j << ",";
  } else {
    csv << "x";
    for (int p = 2; p <= degree; ++p)
      csv << ",x" << p;
    csv << ",";
  }
  csv << "y\n";
  for (const std::vector<double>& r : rows) {
    if (degree == 0) {
      for (int j = 1; j <= k; ++j)
        csv << r[j] << ",";
    } else {
      // As R computes x^p: x * x for the square, pow otherwise.
      for (int p = 1; p <= degree; ++p)
        csv << (p == 1 ? r[1] : p == 2 ? r[1] * r[1] : std::pow(r[1], p)) << ",";
    }
    csv << r[0] << "\n";
  }
  out.csv = csv.str();
  return true;
}

struct Set {
  const char* name;
  const char* strd;  // the NIST file, or null for a CSV file of testdata
  int degree;
  std::vector<std::pair<std::string, std::string>> settings;
};

const std::vector<Set>& Sets() {
  static const std::vector<Set> sets = {
      {"norris", "Norris", 1, {}},
      {"pontius", "Pontius", 2, {}},
      {"longley", "Longley", 0, {}},
      {"wampler1", "Wampler1", 5, {}},
      {"wampler2", "Wampler2", 5, {}},
      {"wampler3", "Wampler3", 5, {}},
      {"wampler4", "Wampler4", 5, {}},
      {"wampler5", "Wampler5", 5, {}},
      {"weighted", nullptr, 0, {{"weight", "w"}, {"target", "y"}}},
      {"categorical", nullptr, 0, {{"categorical", "region"}}},
      {"aliased", nullptr, 0, {}},
      {"missing", nullptr, 0, {{"listwise", "true"}}},
  };
  return sets;
}

// Fits a set; false (and a skip message) when its data are absent.
bool FitSet(const Set& set, const std::string& method, double tol, Fit& fit, std::string& text) {
  if (set.strd != nullptr) {
    Strd strd;
    if (!ReadStrd(set.strd, set.degree, strd)) return false;
    text = strd.csv;
  } else {
    std::ifstream in(kTestData + set.name + ".csv");
    text.assign(std::istreambuf_iterator<char>(in), {});
  }
  QXSettings settings;
  for (const auto& s : set.settings)
    settings.AddSetting(s.first, s.second, true);
  settings.AddSetting("method", method, true);
  if (tol > 0.0) {
    std::ostringstream text;
    text << tol;
    settings.AddSetting("tol", text.str(), true);
  }
  std::istringstream in(text);
  std::string message;
  const QXCommon_850::QXStatus status =
      FitCsv(in, set.name, settings, nullptr, nullptr, fit, message);
  EXPECT_TRUE(status.IsOK()) << set.name << ": " << message;
  return status.IsOK();
}

// The reference table: set -> "quantity term" -> value.
std::map<std::string, std::map<std::string, double>> ReadReference() {
  std::map<std::string, std::map<std::string, double>> table;
  std::ifstream in(kTestData + "r_reference.csv");
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::vector<std::string> f;
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, ',');)
      f.push_back(cell);
    if (f.size() == 4) table[f[0]][f[1] + " " + f[2]] = std::strtod(f[3].c_str(), nullptr);
  }
  return table;
}

TEST(LinregTest, AgreesWithRsLmToNineDigits) {
  const auto reference = ReadReference();
  ASSERT_EQ(reference.size(), Sets().size());
  int compared = 0;
  for (const Set& set : Sets()) {
    // R's own QR gives the Wampler sets to fewer digits than 9; the certified
    // values judge those.
    if (std::string(set.name).compare(0, 7, "wampler") == 0) continue;
    for (const char* method : {"sweep", "qr"}) {
      Fit fit;
      std::string text;
      if (!FitSet(set, method, 0.0, fit, text)) continue;
      const std::map<std::string, double>& r = reference.at(set.name);
      const std::string where = std::string(set.name) + " by " + method;
      for (const Term& t : fit.terms) {
        ASSERT_EQ(r.count("aliased " + t.name) > 0, t.aliased) << where << " " << t.name;
        if (t.aliased) continue;
        const std::pair<const char*, double> values[] = {{"estimate", t.estimate},
                                                         {"stderr", t.stdError},
                                                         {"tvalue", t.tValue},
                                                         {"pvalue", t.pValue}};
        for (const auto& v : values) {
          const std::string key = std::string(v.first) + " " + t.name;
          ASSERT_EQ(r.count(key), 1u) << where << ": R has no " << key;
          // A p-value in the tail carries the error of its t value times
          // about t squared: it is held to the digits that t allows.
          const double t2 = t.tValue * t.tValue;
          const double need =
              std::string(v.first) == "pvalue" ? 9.0 - std::log10(std::fmax(1.0, t2)) : 9.0;
          EXPECT_GE(Digits(v.second, r.at(key)), need)
              << where << " " << key << ": " << v.second << " against " << r.at(key);
          ++compared;
        }
      }
      const std::pair<const char*, double> whole[] = {
          {"sigma ", fit.sigma},
          {"rsquared ", fit.rSquared},
          {"adjrsquared ", fit.adjRSquared},
          {"fvalue ", fit.fValue},
          {"dfresidual ", fit.dfResidual},
          {"cases ", static_cast<double>(fit.casesUsed)}};
      for (const auto& v : whole) {
        EXPECT_GE(Digits(v.second, r.at(v.first)), 9.0) << where << " " << v.first;
      }
    }
  }
  if (compared == 0) GTEST_SKIP() << "no data to compare";
}

TEST(LinregTest, ReachesTheNistCertifiedDigits) {
  // The smallest number of correct digits over the coefficients and their
  // standard errors: sweep on the easy sets, QR on all; Filip only by QR
  // with its tolerance lowered (its design is nearly singular).
  struct Case {
    const char* strd;
    int degree;
    const char* method;
    double tol, digits;
  };
  const Case cases[] = {
      {"Norris", 1, "sweep", 0, 11}, {"Pontius", 2, "sweep", 0, 9}, {"Longley", 0, "sweep", 0, 9},
      {"Norris", 1, "qr", 0, 13},    {"Pontius", 2, "qr", 0, 13},   {"Longley", 0, "qr", 0, 14},
      {"Wampler1", 5, "qr", 0, 14},  {"Wampler2", 5, "qr", 0, 13},  {"Wampler3", 5, "qr", 0, 12},
      {"Wampler4", 5, "qr", 0, 12},  {"Wampler5", 5, "qr", 0, 9},   {"Filip", 10, "qr", 1e-20, 7}};
  for (const Case& c : cases) {
    Strd strd;
    if (!ReadStrd(c.strd, c.degree, strd)) GTEST_SKIP() << "no NIST StRD data";
    Fit fit;
    std::string text;
    const Set set{c.strd, c.strd, c.degree, {}};
    ASSERT_TRUE(FitSet(set, c.method, c.tol, fit, text));
    ASSERT_EQ(fit.terms.size(), strd.certified.size()) << c.strd;
    double least = 15.0;
    std::string worst;
    const auto judge = [&](double value, double certified, const std::string& what) {
      if (certified == 0.0 || Digits(value, certified) >= least) return;
      least = Digits(value, certified);
      worst = what;
    };
    for (std::size_t k = 0; k < fit.terms.size(); ++k) {
      ASSERT_FALSE(fit.terms[k].aliased) << c.strd << " " << fit.terms[k].name;
      judge(fit.terms[k].estimate, strd.certified[k], "estimate of " + fit.terms[k].name);
      judge(fit.terms[k].stdError, strd.certifiedSd[k], "std. error of " + fit.terms[k].name);
    }
    judge(fit.sigma, strd.residualSd, "residual sd");
    std::printf("%-9s %-5s %4.1f digits (least: %s)\n", c.strd, c.method, least, worst.c_str());
    EXPECT_GE(least, c.digits) << c.strd << " by " << c.method;
  }
}

TEST(LinregTest, PrintsTheCoefficientTableAsRsSummaryDoes) {
  // testdata/r_summaries.txt: "## set", then the lines summary(lm) prints
  // from "Coefficients:" to before "---".
  std::map<std::string, std::string> printed;
  std::ifstream in(kTestData + "r_summaries.txt");
  std::string set;
  for (std::string line; std::getline(in, line);) {
    if (line.compare(0, 3, "## ") == 0) {
      set = line.substr(3);
    } else {
      printed[set] += line + "\n";
    }
  }
  int compared = 0;
  for (const Set& s : Sets()) {
    // The Wampler tables print R's own last-digit errors of near-zero values.
    if (std::string(s.name).compare(0, 7, "wampler") == 0) continue;
    Fit fit;
    std::string text;
    if (!FitSet(s, "sweep", 0.0, fit, text)) continue;
    const std::string report = SummaryText(fit, "");
    const std::size_t from = report.find("Coefficients:");
    const std::size_t to = report.find("---\n");
    ASSERT_NE(to, std::string::npos);
    EXPECT_EQ(report.substr(from, to - from), printed.at(s.name)) << s.name;
    ++compared;
  }
  EXPECT_GE(compared, 4);
}

// The fitted values of a set from its CSV text and the terms of the fit.
std::vector<double> Fitted(const Fit& fit, const std::string& text) {
  std::istringstream in(text);
  std::string line;
  std::getline(in, line);
  std::vector<std::string> header;
  std::istringstream names(line);
  for (std::string name; std::getline(names, name, ',');)
    header.push_back(name);
  std::vector<double> fitted;
  while (std::getline(in, line)) {
    std::vector<std::string> cells;
    std::istringstream row(line);
    for (std::string cell; std::getline(row, cell, ',');)
      cells.push_back(cell);
    double y = 0.0;
    for (const Term& t : fit.terms) {
      if (t.aliased) continue;
      if (t.variable < 0) {
        y += t.estimate;
        continue;
      }
      const std::string& name = fit.dictionary.GetVarAt(t.variable)->GetVariableName();
      const std::string& cell =
          cells[std::find(header.begin(), header.end(), name) - header.begin()];
      if (t.category < 0) {
        y += t.estimate * std::strtod(cell.c_str(), nullptr);
      } else if (cell == fit.dictionary.GetEncoderAt(t.variable)->Decode(t.category)) {
        y += t.estimate;
      }
    }
    fitted.push_back(y);
  }
  return fitted;
}

TEST(LinregTest, ScoringTheTrainingDataThroughThePmmlGivesTheFittedValues) {
  for (const Set& set : Sets()) {
    if (set.strd != nullptr && std::string(set.name) != "longley") continue;
    Fit fit;
    std::string text;
    if (!FitSet(set, "sweep", 0.0, fit, text)) continue;
    const std::string base = std::string(QX_TEST_BINARY_DIR) + "/linreg_" + set.name;
    WriteDocuments(fit, set.name, base + ".statxml.xml", base + ".pmml");
    std::ifstream file(base + ".pmml");
    const Model model =
        ReadModel(std::string(std::istreambuf_iterator<char>(file), {}), base + ".pmml");
    std::istringstream data(text);
    std::ostringstream predictions;
    const long unscored = Score(model, data, set.name, predictions);
    const std::vector<double> fitted = Fitted(fit, text);
    std::istringstream lines(predictions.str());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "predicted_y");
    long na = 0;
    for (std::size_t i = 0; std::getline(lines, line); ++i) {
      ASSERT_LT(i, fitted.size());
      if (line == "NA") {
        ++na;
        continue;
      }
      const double score = std::strtod(line.c_str(), nullptr);
      EXPECT_LE(std::fabs(score - fitted[i]), 1e-12 * std::fabs(fitted[i]))
          << set.name << " row " << i;
    }
    // Only the rows with a missing predictor go unscored.
    EXPECT_EQ(na, unscored);
    EXPECT_EQ(na, std::string(set.name) == "missing" ? 4 : 0);
  }
}

}  // namespace
}  // namespace linreg
