// Speed of the data dictionary: encoding cases through a QXVarList against a
// plain std::unordered_map lookup loop doing the same job, writing and
// reading a list of 10,000 variables, and how encoding, persisting and
// adding grow from 1,000 to 100,000 categories or variables.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "qx/dictionary/qxstringencoder.h"
#include "qx/dictionary/qxvarlist.h"
#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/foundation/ioexception.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace {

using namespace QXXML_850;
using V = IQXVariable;

const int kFields = 20;  // the even ones text categories, the odd ones numbers
const int kCases = 1000000;
const int kPoolRows = 4096;  // distinct rows, cycled through

// Rows of raw field values: a text (from a vocabulary of 40 per field, one
// empty text in 200 for a missing cell) or a number (one missing in 200).
struct Cases {
  std::vector<std::string> vocabulary;
  std::vector<const std::string*> texts;  // kPoolRows x kFields / 2
  std::vector<double> numbers;            // kPoolRows x kFields / 2
  Cases() {
    std::mt19937 random(7);
    for (int k = 0; k < 40; ++k)
      vocabulary.push_back("category-" + std::to_string(k * 7919 % 1000));
    vocabulary.push_back("");
    for (int row = 0; row < kPoolRows; ++row) {
      for (int f = 0; f < kFields / 2; ++f) {
        const unsigned pick = random() % 200;
        texts.push_back(&vocabulary[pick == 0 ? 40 : pick % 40]);
        numbers.push_back(random() % 200 == 0 ? QXCommon_850::QXMV::Missing()
                                              : (random() % 100000) * 0.01);
      }
    }
  }
};

const Cases& Data() {
  static const Cases cases;
  return cases;
}

QXVarList CaseList() {
  QXVarList list;
  for (int f = 0; f < kFields; ++f) {
    const std::string name = "field" + std::to_string(f);
    if (f % 2 == 0) {
      list.AddCatVar(name, "", 0, V::LevelStringCategorical, V::RoleInput);
      list.GetEncoderAt(f)->AddDiscreteUserMissing("", "empty cell");
    } else {
      list.AddContVar(name, "", V::RoleInput);
    }
  }
  list.SetListwiseDeletion(true);
  return list;
}

// Passes every case through encodeText(field, text) and encodeNumber(field,
// x), with listwise deletion; gives the number of cases kept.
template <typename EncodeText, typename EncodeNumber>
double EncodeAll(EncodeText encodeText, EncodeNumber encodeNumber) {
  const Cases& data = Data();
  std::vector<double> row(kFields);
  double kept = 0.0;
  for (int c = 0; c < kCases; ++c) {
    const size_t base = static_cast<size_t>(c % kPoolRows) * (kFields / 2);
    bool missing = false;
    for (int f = 0; f < kFields / 2; ++f) {
      row[2 * f] = encodeText(f, *data.texts[base + f]);
      row[2 * f + 1] = encodeNumber(f, data.numbers[base + f]);
      missing = missing || row[2 * f] < 0.0 || QXCommon_850::QXMV::IsMissing(row[2 * f + 1]);
    }
    kept += missing ? 0.0 : 1.0;
    benchmark::DoNotOptimize(row.data());
  }
  return kept;
}

void BM_EncodeCasesVarList(benchmark::State& state) {
  double kept = 0.0;
  for (auto _ : state) {
    QXVarList list = CaseList();
    std::vector<IQXEncoder*> encoders;
    for (int f = 0; f < kFields; ++f)
      encoders.push_back(list.GetEncoderAt(f));
    kept = EncodeAll([&](int f, const std::string& text) { return encoders[2 * f]->Encode(text); },
                     [&](int f, double x) { return encoders[2 * f + 1]->Encode(x); });
    list.SetUnWeightedCount(kept);
    list.SetDroppedCount(kCases - kept);
  }
  state.counters["kept"] = kept;
  state.SetItemsProcessed(state.iterations() * kCases);
}
BENCHMARK(BM_EncodeCasesVarList)->Unit(benchmark::kMillisecond);

// The same job by hand: a hash map from text to code per text field, codes
// by first appearance, the empty text missing; numbers passed through.
void BM_EncodeCasesUnorderedMap(benchmark::State& state) {
  double kept = 0.0;
  for (auto _ : state) {
    std::vector<std::unordered_map<std::string, int>> codes(kFields / 2);
    kept = EncodeAll(
        [&](int f, const std::string& text) {
          if (text.empty()) return -1.0;
          auto& map = codes[f];
          return static_cast<double>(map.emplace(text, static_cast<int>(map.size())).first->second);
        },
        [](int, double x) { return x; });
  }
  state.counters["kept"] = kept;
  state.SetItemsProcessed(state.iterations() * kCases);
}
BENCHMARK(BM_EncodeCasesUnorderedMap)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_EncodeCasesVarList", "BM_EncodeCasesUnorderedMap");

std::string TempPath() {
  char pattern[] = "/tmp/qx_dictionary_bench_XXXXXX";
  const int fd = mkstemp(pattern);
  if (fd >= 0) close(fd);
  return pattern;
}

// n variables: continuous and text categorical in turn, five categories each.
QXVarList WideList(int n) {
  QXVarList list;
  const std::vector<std::string> categories = {"low", "medium", "high", "very high", "n/a"};
  for (int i = 0; i < n; ++i) {
    const std::string name = "v" + std::to_string(i);
    if (i % 2 == 0) {
      list.AddContVar(name, "Variable " + std::to_string(i), V::RoleInput);
    } else {
      list.AddCatVar(name, "Variable " + std::to_string(i), categories, V::RoleInput);
    }
  }
  list.SetVariableRole(0, V::RoleTarget);
  return list;
}

std::string Document(const QXVarList& list) {
  std::ostringstream out;
  StartDocument(out);
  StartRoot(out, "benchmark");
  list.WriteObjectXML(out, 1);
  EndRoot(out);
  return out.str();
}

void BM_WriteVarList(benchmark::State& state) {
  const QXVarList list = WideList(static_cast<int>(state.range(0)));
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string text = Document(list);
    bytes = text.size();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}
BENCHMARK(BM_WriteVarList)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_ReadVarList(benchmark::State& state) {
  const std::string path = TempPath();
  std::ofstream(path, std::ios::binary) << Document(WideList(static_cast<int>(state.range(0))));
  for (auto _ : state) {
    std::ifstream in(path, std::ios::binary);
    QXVarList list;
    try {
      if (!ParseStartXML(in)) state.SkipWithError("no header");
      list.ReadObjectXML(in);
    } catch (IOException* e) {
      delete e;
      state.SkipWithError("the list didn't read back");
    }
    benchmark::DoNotOptimize(list.Size());
  }
  std::remove(path.c_str());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadVarList)->Arg(10000)->Unit(benchmark::kMillisecond);

// Scaling from 1,000 to 100,000. Lookups in any map slow down per item once
// it outgrows the caches, so the text encoder is measured beside a hash map
// of the same texts: a flat ratio means the growth is the memory's.

// Building a text encoder of n categories, then n lookups of them.
void BM_EncodeCategories(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<std::string> texts;
  for (int i = 0; i < n; ++i)
    texts.push_back("category " + std::to_string(i * 2654435761u));
  for (auto _ : state) {
    QXStringEncoder encoder(0);
    for (const std::string& text : texts)
      encoder.Encode(text);
    double sum = 0.0;
    for (size_t i = texts.size(); i-- > 0;)
      sum += encoder.EncodeConst(texts[i]);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_EncodeCategories)->RangeMultiplier(10)->Range(1000, 100000);

// The same with a hash map from text to code.
void BM_EncodeCategoriesUnorderedMap(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  std::vector<std::string> texts;
  for (int i = 0; i < n; ++i)
    texts.push_back("category " + std::to_string(i * 2654435761u));
  for (auto _ : state) {
    std::unordered_map<std::string, int> codes;
    for (const std::string& text : texts)
      codes.emplace(text, static_cast<int>(codes.size()));
    double sum = 0.0;
    for (size_t i = texts.size(); i-- > 0;)
      sum += codes.find(texts[i])->second;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_EncodeCategoriesUnorderedMap)->RangeMultiplier(10)->Range(1000, 100000);
QX_BENCHMARK_RATIO("BM_EncodeCategories", "BM_EncodeCategoriesUnorderedMap");

// Writing and reading back a text encoder of n categories: linear.
void BM_PersistCategories(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  QXStringEncoder encoder(0);
  for (int i = 0; i < n; ++i)
    encoder.Encode("category " + std::to_string(i));
  const std::string path = TempPath();
  for (auto _ : state) {
    {
      std::ofstream out(path, std::ios::binary);
      encoder.WriteObjectXML(out, 1);
    }
    std::ifstream in(path, std::ios::binary);
    QXStringEncoder read(0);
    read.ReadObjectXML(in);
    benchmark::DoNotOptimize(read.GetNumberOfCategories());
  }
  std::remove(path.c_str());
  state.SetComplexityN(n);
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_PersistCategories)->RangeMultiplier(10)->Range(1000, 100000)->Complexity();

// Adding n variables to a list, each add looking its name up first. Past
// 10,000 variables the list outgrows the caches, which costs a step in time
// per variable; from 100,000 to 300,000 it is flat again.
void BM_AddVariables(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    QXVarList list = WideList(n);
    benchmark::DoNotOptimize(list.Size());
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_AddVariables)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(300000);

}  // namespace
