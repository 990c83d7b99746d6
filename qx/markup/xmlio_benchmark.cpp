// Reading and writing a persisted file of 100,000 values: doubles, ints and
// strings in turn, as a large encoder or variable list would hold them.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlio.h"

namespace {

using namespace QXXML_850;

void WriteFile(std::ostream& os, int values) {
  StartDocument(os);
  StartRoot(os, "benchmark");
  const XMLObj obj("QXStringEncoder", 1);
  obj.StartObj(os);
  for (int i = 0; i < values; ++i) {
    switch (i % 3) {
      case 0:
        obj.WriteSubElement(os, i * 1.0e-3 + 0.1);
        break;
      case 1:
        obj.WriteSubElement(os, i);
        break;
      default:
        obj.WriteSubElement(os, "category & label " + std::to_string(i));
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
  const std::string path = TempPath();
  for (auto _ : state) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    WriteFile(out, values);
  }
  state.SetItemsProcessed(static_cast<int64_t>(values) * state.iterations());
  std::remove(path.c_str());
}

BENCHMARK(BM_ReadPersisted)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WritePersisted)->Arg(100000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_ReadPersisted", "BM_WritePersisted");

}  // namespace
