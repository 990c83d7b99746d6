// linreg --mpi under mpirun on 1 to 4 processes against the one-process fit
// of the same file: the coefficients agree to rounding, a repeated run
// writes the same documents, a process with no rows still takes part, and a
// bad row on any process stops every process with the one-process message.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "minixml.h"

namespace {

const std::string kDir = QX_TEST_BINARY_DIR;

struct Outcome {
  int exit = -1;
  std::string output;  // standard output and error
};

Outcome RunCommand(const std::string& command) {
  Outcome o;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return o;
  char chunk[4096];
  for (std::size_t got; (got = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;)
    o.output.append(chunk, got);
  const int status = pclose(pipe);
  o.exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return o;
}

// linreg on `csv`, by itself (ranks 0) or under mpirun, writing <tag>.pmml.
Outcome Linreg(int ranks, const std::string& csv, const std::string& tag,
               const std::string& options = "--weight w --listwise") {
  std::string command = std::string(QX_LINREG) + " " + csv + " " + options + " --pmml " + kDir +
                        "/" + tag + ".pmml --statxml " + kDir + "/" + tag + ".statxml.xml";
  if (ranks > 0) {
    command = std::string(QX_MPIRUN) + " " + std::to_string(ranks) + " " + command + " --mpi";
  }
  return RunCommand(command);
}

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The PMML document without its time stamp.
std::string Stable(const std::string& path) {
  std::string text = ReadAll(path);
  const std::size_t at = text.find("<Timestamp>");
  if (at != std::string::npos) text.erase(at, text.find('\n', at) - at);
  return text;
}

// The intercept, then each coefficient, of a written model.
std::vector<double> Coefficients(const std::string& path) {
  std::vector<double> out;
  const linreg::XmlNode root = linreg::ParseXmlFile(path, linreg::kBadModel);
  const linreg::XmlNode* model = root.Child("RegressionModel");
  const linreg::XmlNode* table = model != nullptr ? model->Child("RegressionTable") : nullptr;
  if (table == nullptr) return out;
  out.push_back(std::stod(*table->Attribute("intercept")));
  for (const linreg::XmlNode& p : table->children)
    if (p.name == "NumericPredictor") out.push_back(std::stod(*p.Attribute("coefficient")));
  return out;
}

// Weighted rows of three correlated predictors, with blank lines, CRLF line
// ends and a few cases with a missing cell, so that shares cut anywhere.
std::string Table(const std::string& tag) {
  const std::string path = kDir + "/" + tag + ".csv";
  std::ofstream out(path, std::ios::binary);
  std::mt19937_64 engine(11);
  std::normal_distribution<double> normal(0.0, 1.0);
  out << "x1,x2,x3,w,y\r\n";
  char line[200];
  for (int r = 0; r < 3000; ++r) {
    const double x1 = 50.0 + normal(engine), x2 = 20.0 + 0.3 * (x1 - 50.0) + normal(engine);
    const double x3 = -20.0 + 3.0 * normal(engine);
    const double y = 2.0 + 0.5 * x1 - 1.5 * x2 + 0.25 * x3 + normal(engine);
    std::snprintf(line, sizeof line, "%.17g,%.17g,%s,%d,%.17g\r\n", x1, x2,
                  r % 97 == 5 ? "NA" : std::to_string(x3).c_str(), 1 + r % 3, y);
    out << line << (r % 211 == 0 ? "\r\n" : "");
  }
  return path;
}

class LinregMpiTest : public testing::TestWithParam<int> {};

TEST_P(LinregMpiTest, EqualsOneProcessToRoundingAndRepeatsItself) {
  const int ranks = GetParam();
  const std::string tag = "mpi_np" + std::to_string(ranks), csv = Table(tag);
  const Outcome one = Linreg(0, csv, tag + "_one");
  ASSERT_EQ(one.exit, 0) << one.output;
  const Outcome first = Linreg(ranks, csv, tag + "_a"), second = Linreg(ranks, csv, tag + "_b");
  ASSERT_EQ(first.exit, 0) << first.output;
  ASSERT_EQ(second.exit, 0) << second.output;
  const std::vector<double> expected = Coefficients(kDir + "/" + tag + "_one.pmml");
  const std::vector<double> got = Coefficients(kDir + "/" + tag + "_a.pmml");
  ASSERT_EQ(got.size(), 4u);
  ASSERT_EQ(got.size(), expected.size());
  for (std::size_t j = 0; j < got.size(); ++j)
    EXPECT_NEAR(got[j], expected[j], 1e-13 * std::fabs(expected[j])) << j;
  EXPECT_EQ(Stable(kDir + "/" + tag + "_a.pmml"), Stable(kDir + "/" + tag + "_b.pmml"));
  // The summary is printed once, with the pooled counts.
  EXPECT_NE(first.output.find("3000 read, 2969 used"), std::string::npos) << first.output;
  EXPECT_EQ(first.output.find("Residual standard error"),
            first.output.rfind("Residual standard error"));
}

INSTANTIATE_TEST_SUITE_P(Ranks, LinregMpiTest, testing::Values(1, 2, 3, 4));

// One long row holds most of the bytes, so that of four processes at least
// one finds no row starting in its share.
TEST(LinregMpiShareTest, ProcessWithNoRowsTakesPart) {
  const std::string csv = kDir + "/mpi_empty_share.csv";
  std::ofstream(csv, std::ios::binary) << "x,y\n1," << std::string(400, ' ') << "2.5\n2,3.25\n"
                                       << "3,5.5\n4,6\n";
  const Outcome one = Linreg(0, csv, "mpi_empty_one", ""),
                four = Linreg(4, csv, "mpi_empty_four", "");
  ASSERT_EQ(four.exit, 0) << four.output;
  const std::vector<double> expected = Coefficients(kDir + "/mpi_empty_one.pmml");
  const std::vector<double> got = Coefficients(kDir + "/mpi_empty_four.pmml");
  ASSERT_EQ(got.size(), 2u);
  for (std::size_t j = 0; j < got.size(); ++j)
    EXPECT_NEAR(got[j], expected[j], 1e-13 * std::fabs(expected[j]));
}

// Bad cells in the shares of the second and third of three processes: every
// process stops, with the exit status and the one line that the
// one-process run gives for the first of them.
TEST(LinregMpiShareTest, BadRowStopsEveryProcessWithTheSameMessage) {
  const std::string csv = kDir + "/mpi_bad.csv";
  std::ofstream out(csv, std::ios::binary);
  out << "x1,x2,y\n";
  for (int r = 0; r < 300; ++r)
    out << r << "," << (r == 150 || r == 280 ? "high" : std::to_string(r % 7)) << "," << r % 5
        << "\n";
  out.close();
  const Outcome one = Linreg(0, csv, "mpi_bad_one", "");
  const std::string line = csv + ":152: error: column 'x2': 'high' is not a finite number\n";
  ASSERT_EQ(one.exit, 5);
  ASSERT_EQ(one.output, line);
  for (int ranks : {2, 3}) {
    const Outcome many = Linreg(ranks, csv, "mpi_bad_many", "");
    EXPECT_EQ(many.exit, 5) << many.output;
    const std::size_t at = many.output.find(line);
    EXPECT_NE(at, std::string::npos) << many.output;
    EXPECT_EQ(many.output.find(line, at + 1), std::string::npos) << many.output;
    EXPECT_EQ(many.output.find("280"), std::string::npos) << many.output;
  }
  std::remove((kDir + "/mpi_bad_many.pmml").c_str());
}

}  // namespace
