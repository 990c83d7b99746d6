// Reading and writing a persisted file of 1,000 to 100,000 values: doubles,
// ints and strings in turn, as a large encoder or variable list would hold
// them. The writer is timed into a sink that only counts the bytes, against
// libxml2's xmlTextWriter writing the same lines when it was found.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <ostream>
#include <string>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/markup/internal/countingsink.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

#ifdef QX_HAVE_LIBXML2
#include <libxml/xmlwriter.h>
#endif

namespace {

using namespace QXXML_850;

// The i-th value: a double, an int or a string with an ampersand.
double DoubleValue(int i) {
  return i * 1.0e-3 + 0.1;
}
std::string StringValue(int i) {
  return "category & label " + std::to_string(i);
}

void WriteFile(std::ostream& os, int values) {
  StartDocument(os);
  StartRoot(os, "benchmark");
  const XMLObj obj("QXStringEncoder", 1);
  obj.StartObj(os);
  for (int i = 0; i < values; ++i) {
    switch (i % 3) {
      case 0:
        obj.WriteSubElement(os, DoubleValue(i));
        break;
      case 1:
        obj.WriteSubElement(os, i);
        break;
      default:
        obj.WriteSubElement(os, StringValue(i));
        break;
    }
  }
  obj.EndObj(os);
  EndRoot(os);
}

std::string TempPath() {
  char pattern[] = "/tmp/qx_xmlio_bench_XXXXXX";
  const int fd = mkstemp(pattern);
  if (fd >= 0) close(fd);
  return pattern;
}

void BM_ReadPersisted(benchmark::State& state) {
  const int values = static_cast<int>(state.range(0));
  const std::string path = TempPath();
  {
    std::ofstream out(path, std::ios::binary);
    WriteFile(out, values);
  }
  for (auto _ : state) {
    std::ifstream in(path, std::ios::binary);
    bool ok = ParseStartXML(in) && ParseStartObj(in, "QXStringEncoder");
    double d;
    int n;
    std::string s;
    for (int i = 0; ok && i < values; ++i) {
      switch (i % 3) {
        case 0:
          ok = ParseValue(in, d);
          break;
        case 1:
          ok = ParseValue(in, n);
          break;
        default:
          ok = ParseValue(in, s);
          break;
      }
    }
    ok = ok && ParseEndObj(in);
    if (!ok) state.SkipWithError("the file did not read back");
    benchmark::DoNotOptimize(ok);
  }
  state.SetItemsProcessed(static_cast<int64_t>(values) * state.iterations());
  std::remove(path.c_str());
}

void BM_WritePersisted(benchmark::State& state) {
  const int values = static_cast<int>(state.range(0));
  std::size_t bytes = 0;
  for (auto _ : state) {
    internal::CountingBuffer buffer;
    std::ostream os(&buffer);
    WriteFile(os, values);
    bytes = buffer.count;
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(static_cast<int64_t>(values) * state.iterations());
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
}

BENCHMARK(BM_ReadPersisted)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WritePersisted)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_ReadPersisted", "BM_WritePersisted");

#ifdef QX_HAVE_LIBXML2
// The same lines through xmlTextWriter, indented by tabs: the numbers by
// "%.15g", the strings escaped by the writer.
void BM_LibXml2TextWriter(benchmark::State& state) {
  const int values = static_cast<int>(state.range(0));
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    xmlOutputBufferPtr out =
        xmlOutputBufferCreateIO(internal::CountBytes, nullptr, &bytes, nullptr);
    xmlTextWriterPtr writer = xmlNewTextWriter(out);
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, BAD_CAST "\t");
    xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr);
    xmlTextWriterWriteDTD(writer, BAD_CAST "QXXMLRoot", nullptr, BAD_CAST "savexml.dtd", nullptr);
    xmlTextWriterStartElement(writer, BAD_CAST "QXXMLRoot");
    xmlTextWriterWriteAttribute(writer, BAD_CAST "copyright", BAD_CAST "benchmark");
    xmlTextWriterStartElement(writer, BAD_CAST "Obj");
    xmlTextWriterWriteAttribute(writer, BAD_CAST "name", BAD_CAST "QXStringEncoder");
    for (int i = 0; i < values; ++i) {
      switch (i % 3) {
        case 0:
          xmlTextWriterStartElement(writer, BAD_CAST "Double");
          xmlTextWriterWriteFormatAttribute(writer, BAD_CAST "value", "%.15g", DoubleValue(i));
          break;
        case 1:
          xmlTextWriterStartElement(writer, BAD_CAST "Int");
          xmlTextWriterWriteFormatAttribute(writer, BAD_CAST "value", "%.15g",
                                            static_cast<double>(i));
          break;
        default:
          xmlTextWriterStartElement(writer, BAD_CAST "String");
          xmlTextWriterWriteAttribute(writer, BAD_CAST "value", BAD_CAST StringValue(i).c_str());
          break;
      }
      xmlTextWriterEndElement(writer);
    }
    xmlTextWriterEndDocument(writer);
    xmlFreeTextWriter(writer);  // flushes and closes `out`
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(static_cast<int64_t>(values) * state.iterations());
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
}

BENCHMARK(BM_LibXml2TextWriter)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_WritePersisted", "BM_LibXml2TextWriter");
#endif

}  // namespace
