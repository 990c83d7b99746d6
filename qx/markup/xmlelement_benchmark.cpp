// Writing a large result document: a tree of elements with attributes and
// text, through ToStream (piece by piece) and ToString (one string). Besides
// the speed, each run reports the heap it needed on top of the tree itself:
// for ToStream that stays flat however large the document grows.
#include <benchmark/benchmark.h>

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/markup/internal/countingallocator.h"
#include "qx/markup/xmlelement.h"

namespace {

using namespace QXXML_850;
using internal::HeapCounter;

// Counts the bytes written and throws them away.
class CountingBuffer : public std::streambuf {
 public:
  std::size_t count = 0;

 protected:
  int_type overflow(int_type c) override {
    ++count;
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char*, std::streamsize n) override {
    count += static_cast<std::size_t>(n);
    return n;
  }
};

// A table of `rows` elements in groups of 100, each with three attributes
// (one needing escapes) and a text of `textLength` characters.
std::unique_ptr<XMLElement> MakeTree(int rows, int textLength) {
  std::unique_ptr<XMLElement> root(XMLElement::Create("Table"));
  root->AddAttribute("rows", static_cast<double>(rows));
  XMLElement* group = nullptr;
  std::string text(static_cast<size_t>(textLength), 'x');
  for (int i = 0; i < textLength; i += 16)
    text[static_cast<size_t>(i)] = (i % 32 == 0) ? '&' : '<';
  for (int i = 0; i < rows; ++i) {
    if (i % 100 == 0) {
      group = XMLElement::Create("Group");
      root->AddElement(group);
    }
    XMLElement* row = XMLElement::Create("Row");
    row->AddAttribute("name", "variable \"" + std::to_string(i) + "\"");
    row->AddAttribute("value", i * 0.1);
    row->AddAttribute("code", static_cast<double>(i));
    row->AddElement(XMLString::Create(text));
    group->AddElement(row);
  }
  return root;
}

void WriteOnce(benchmark::State& state, bool stream) {
  const auto tree = MakeTree(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  std::size_t bytes = 0;
  std::size_t extra = 0;
  for (auto _ : state) {
    CountingBuffer buffer;
    std::ostream os(&buffer);
    const std::size_t before = HeapCounter::ResetPeak();
    ExportFormat format;
    if (stream) {
      tree->ToStream(os, format, false);
    } else {
      std::string text;
      tree->ToString(text, format);
      os.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    extra = HeapCounter::Peak() - before;
    bytes = buffer.count;
    benchmark::DoNotOptimize(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
  state.counters["doc_MB"] = static_cast<double>(bytes) / 1e6;
  state.counters["peak_extra_KiB"] = static_cast<double>(extra) / 1024.0;
}

void BM_ToStream(benchmark::State& state) {
  WriteOnce(state, true);
}
void BM_ToString(benchmark::State& state) {
  WriteOnce(state, false);
}

// 100,000 rows at three text lengths, and the text growing by row count.
void Sizes(benchmark::internal::Benchmark* b) {
  b->Args({100000, 32})->Args({100000, 256})->Args({10000, 4096});
  b->Args({1000, 32})->Args({10000, 32})->Args({300000, 32});
  b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_ToStream)->Apply(Sizes);
BENCHMARK(BM_ToString)->Apply(Sizes);
QX_BENCHMARK_RATIO("BM_ToStream", "BM_ToString");

}  // namespace
