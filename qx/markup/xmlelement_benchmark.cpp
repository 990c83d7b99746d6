// Writing a large result document: a tree of elements with attributes and
// text, through ToStream (a block at a time) and ToString (one string), with
// libxml2's xmlSaveDoc on the same tree as the baseline when it was found.
// Besides the speed, each run reports the heap it needed on top of the tree
// itself: for ToStream that stays flat however large the document grows.
#include <benchmark/benchmark.h>

#include <memory>
#include <ostream>
#include <string>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/markup/internal/countingallocator.h"
#include "qx/markup/internal/countingsink.h"
#include "qx/markup/xmlelement.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#endif

namespace {

using namespace QXXML_850;
using internal::CountingBuffer;
using internal::HeapCounter;

// The content of a table of `rows` rows in groups of 100, each row with
// three attributes (one needing escapes) and a text of `textLength`
// characters with an "&" or a "<" every 16; both trees are built from it.
struct Table {
  Table(int rowCount, int textLength) : rows(rowCount), text(textLength, 'x') {
    for (int i = 0; i < textLength; i += 16)
      text[static_cast<size_t>(i)] = (i % 32 == 0) ? '&' : '<';
  }
  static std::string Name(int i) { return "variable \"" + std::to_string(i) + "\""; }
  static double Value(int i) { return i * 0.1; }
  int rows;
  std::string text;
};

std::unique_ptr<XMLElement> MakeTree(const Table& table) {
  std::unique_ptr<XMLElement> root(XMLElement::Create("Table"));
  root->AddAttribute("rows", static_cast<double>(table.rows));
  XMLElement* group = nullptr;
  for (int i = 0; i < table.rows; ++i) {
    if (i % 100 == 0) {
      group = XMLElement::Create("Group");
      root->AddElement(group);
    }
    XMLElement* row = XMLElement::Create("Row");
    row->AddAttribute("name", Table::Name(i));
    row->AddAttribute("value", Table::Value(i));
    row->AddAttribute("code", static_cast<double>(i));
    row->AddElement(XMLString::Create(table.text));
    group->AddElement(row);
  }
  return root;
}

void WriteOnce(benchmark::State& state, bool stream) {
  const auto tree =
      MakeTree(Table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))));
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

// 1,000 to 300,000 rows of short text, and longer texts.
void Sizes(benchmark::internal::Benchmark* b) {
  b->Args({1000, 32})->Args({10000, 32})->Args({100000, 32})->Args({300000, 32});
  b->Args({100000, 256})->Args({10000, 4096});
  b->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_ToStream)->Apply(Sizes);
BENCHMARK(BM_ToString)->Apply(Sizes);
QX_BENCHMARK_RATIO("BM_ToStream", "BM_ToString");

#ifdef QX_HAVE_LIBXML2
// The same table as a libxml2 document, written unformatted by xmlSaveDoc.
void BM_LibXml2SaveDoc(benchmark::State& state) {
  const Table table(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  xmlDocPtr doc = xmlNewDoc(BAD_CAST "1.0");
  xmlNodePtr root = xmlNewNode(nullptr, BAD_CAST "Table");
  xmlDocSetRootElement(doc, root);
  xmlNewProp(root, BAD_CAST "rows", BAD_CAST std::to_string(table.rows).c_str());
  const xmlChar* text = BAD_CAST table.text.c_str();
  xmlNodePtr group = nullptr;
  for (int i = 0; i < table.rows; ++i) {
    if (i % 100 == 0) group = xmlNewChild(root, nullptr, BAD_CAST "Group", nullptr);
    xmlNodePtr row = xmlNewChild(group, nullptr, BAD_CAST "Row", nullptr);
    xmlNewProp(row, BAD_CAST "name", BAD_CAST Table::Name(i).c_str());
    const std::unique_ptr<XMLAttribute> value(XMLAttribute::Create("value", Table::Value(i)));
    xmlNewProp(row, BAD_CAST "value", BAD_CAST value->GetValue().c_str());  // our number text
    xmlNewProp(row, BAD_CAST "code", BAD_CAST std::to_string(i).c_str());
    xmlAddChild(row, xmlNewText(text));
  }
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    xmlSaveCtxtPtr save = xmlSaveToIO(internal::CountBytes, nullptr, &bytes, "UTF-8", 0);
    xmlSaveDoc(save, doc);
    xmlSaveClose(save);
    benchmark::DoNotOptimize(bytes);
  }
  xmlFreeDoc(doc);
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
  state.counters["doc_MB"] = static_cast<double>(bytes) / 1e6;
}

BENCHMARK(BM_LibXml2SaveDoc)->Apply(Sizes);
QX_BENCHMARK_RATIO("BM_ToStream", "BM_LibXml2SaveDoc");
#endif

}  // namespace
