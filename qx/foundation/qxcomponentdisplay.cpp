#include "qx/foundation/qxcomponentdisplay.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <iostream>

#include "qx/foundation/qxmissingvalue.h"

namespace QXDisplay_850 {

namespace {

std::ostream* pGlobalQXOutStream = &std::cout;

// printf-style formatting into a std::string, in the C locale of the process.
std::string Fmt(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string Fmt(const char* format, ...) {
  char buffer[64];
  va_list args;
  va_start(args, format);
  const int length = std::vsnprintf(buffer, sizeof buffer, format, args);
  va_end(args);
  if (length < 0) return std::string();
  if (static_cast<size_t>(length) < sizeof buffer) return std::string(buffer, length);
  std::string text(static_cast<size_t>(length) + 1, '\0');
  va_start(args, format);
  std::vsnprintf(&text[0], text.size(), format, args);
  va_end(args);
  text.resize(static_cast<size_t>(length));
  return text;
}

bool IsSentinel(double x) {
  return QXCommon_850::QXMV::IsMissing(x);
}

// " %g", or " miss" for the sentinel.
std::string DoubleItem(double x) {
  return IsSentinel(x) ? std::string(" miss") : Fmt(" %g", x);
}

// The bare %g of a double inside a pair, "miss" for the sentinel.
std::string PairDouble(double x) {
  return IsSentinel(x) ? std::string("miss") : Fmt("%g", x);
}

// The element lines of the list form: each line starts from a single blank and
// takes ten items; a full line is written at once, a short last one at Finish.
class ListLines {
 public:
  void Add(const std::string& item) {
    line += item;
    if (++count == 10) Flush();
  }
  void Finish() {
    if (count > 0) Flush();
  }

 private:
  void Flush() {
    DisplayText(1, line);
    line = " ";
    count = 0;
  }
  std::string line = " ";
  int count = 0;
};

void ListHeader(const std::string& label, size_t size) {
  DisplayText(1, label + " (size =" + Fmt(" %d", static_cast<int>(size)) + ")");
}

template <typename Container, typename ItemFormat>
void DisplayList(const std::string& label, const Container& values, ItemFormat format) {
  ListHeader(label, values.size());
  ListLines lines;
  for (const auto& value : values)
    lines.Add(format(value));
  lines.Finish();
}

void DisplayDoubles(const double* v, int count, bool oneLine) {
  if (oneLine) {
    for (int i = 0; i < count; ++i) {
      DisplayText(1, IsSentinel(v[i]) ? std::string(" miss") : " " + Fmt(" = %.17g", v[i]));
    }
    return;
  }
  ListLines lines;
  for (int i = 0; i < count; ++i)
    lines.Add(DoubleItem(v[i]));
  lines.Finish();
}

// Walks the first nRows rows of a packed lower triangle, row r holding r + 1
// values; a store too short for them ends the walk with a short last row.
template <typename ShowRow>
void ForEachPackedRow(const std::vector<double>& packed, int nRows, ShowRow show) {
  const size_t size = packed.size();
  size_t start = 0;
  for (int row = 0; row < nRows && start < size; ++row) {
    const size_t length = std::min(static_cast<size_t>(row) + 1, size - start);
    show(row, packed.data() + start, length);
    start += length;
  }
}

// Vectors of vectors: a header, then each inner vector under its name
// "vec[i]", or that name and " <none>" for an empty one.
template <typename Inner, typename ShowInner>
void DisplayNestedLists(const std::string& label, const std::vector<Inner>& v, ShowInner show) {
  ListHeader(label, v.size());
  for (size_t i = 0; i < v.size(); ++i) {
    const std::string name = Fmt("vec[%d]", static_cast<int>(i));
    if (v[i].empty()) {
      DisplayText(1, name + " <none>");
    } else {
      show(name, v[i]);
    }
  }
}

std::string MapHeader(const std::string& label, size_t size) {
  return label + " (" + Fmt("%d", static_cast<int>(size)) + ")";
}

std::string SizedMapHeader(const std::string& label, size_t size) {
  return label + " (map size =" + Fmt(" %d", static_cast<int>(size)) + ")";
}

// Writes a map's header line, marked " <empty>" for an empty map; returns
// whether there are entries to print.
bool OpenMap(const std::string& header, bool empty) {
  DisplayText(1, empty ? header + " <empty>" : header);
  return !empty;
}

template <typename Map, typename ItemFormat>
void DisplayPairMap(const std::string& label, const Map& m, ItemFormat format) {
  if (!OpenMap(SizedMapHeader(label, m.size()), m.empty())) return;
  ListLines lines;
  for (const auto& entry : m)
    lines.Add(format(entry.first, entry.second));
  lines.Finish();
}

// Maps with vector keys: a header, then each pair under its two labels.
template <typename Map, typename ShowPair>
void DisplayVectorKeyMap(const std::string& label, const Map& m, ShowPair show) {
  if (!OpenMap(MapHeader(label, m.size()), m.empty())) return;
  for (const auto& entry : m)
    show(entry.first, entry.second);
}

std::string IntItem(int x) {
  return Fmt(" %d", x);
}

}  // namespace

void SetOutStream(std::ostream& out) {
  pGlobalQXOutStream = &out;
}

std::ostream& GetOutStream() {
  return *pGlobalQXOutStream;
}

void DisplayText(const long& breaks, const char* text) {
  if (text == nullptr) return;
  std::ostream& out = *pGlobalQXOutStream;
  for (long i = 0; i < breaks; ++i)
    out << std::endl;
  out << text << std::flush;
}

void DisplayText(const long& breaks, const std::string& text) {
  std::ostream& out = *pGlobalQXOutStream;
  for (long i = 0; i < breaks; ++i)
    out << std::endl;
  out << text << std::flush;
}

void DisplayS(std::string label, std::string text) {
  DisplayText(1, label + " = " + text);
}

void DisplayB(std::string label, bool value) {
  DisplayText(1, label + " = " + (value ? "true" : "false"));
}

void DisplayI(std::string label, int value) {
  DisplayText(1, label + Fmt(" = %d", value));
}

void DisplayL(std::string label, long value) {
  DisplayText(1, label + Fmt(" = %ld", value));
}

void DisplayD(std::string label, double value) {
  DisplayText(1, label + (IsSentinel(value) ? std::string(" = miss") : Fmt(" = %g", value)));
}

void DisplayDF(std::string label, double value) {
  DisplayText(1, label + (IsSentinel(value) ? std::string(" = miss") : Fmt(" = %.17g", value)));
}

void DisplayTimeStamp(std::string label) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  DisplayText(1, label + ": " +
                     Fmt("%d-%02d-%02d-%02d-%02d-%02d", local.tm_year + 1900, local.tm_mon + 1,
                         local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec));
}

void DisplayIV(std::string label, const std::vector<int>& v) {
  DisplayList(label, v, IntItem);
}

void DisplayUV(std::string label, const std::vector<unsigned int>& v) {
  DisplayList(label, v, [](unsigned int x) { return Fmt(" %u", x); });
}

void DisplayBV(std::string label, const std::vector<bool>& v) {
  DisplayList(label, v, [](bool x) { return std::string(x ? " t" : " f"); });
}

void DisplaySV(std::string label, const std::vector<std::string>& v) {
  DisplayList(label, v, [](const std::string& x) { return " \"" + x + "\""; });
}

void DisplayDV(std::string label, const std::vector<double>& v, bool oneLine) {
  ListHeader(label, v.size());
  DisplayDoubles(v.data(), static_cast<int>(v.size()), oneLine);
}

void DisplayDA(std::string label, const double* v, int count, bool oneLine) {
  if (v == nullptr || count < 0) count = 0;
  ListHeader(label, static_cast<size_t>(count));
  DisplayDoubles(v, count, oneLine);
}

void DisplayVPD(std::string label, const std::vector<std::pair<double, double>>& v) {
  DisplayList(label, v, [](const std::pair<double, double>& p) {
    return "(" + PairDouble(p.first) + "," + PairDouble(p.second) + ") ";
  });
}

void DisplayVPDI(std::string label, const std::vector<std::pair<double, int>>& v) {
  DisplayList(label, v, [](const std::pair<double, int>& p) {
    return "(" + PairDouble(p.first) + Fmt(",%d) ", p.second);
  });
}

void DisplayVPII(std::string label, const std::vector<std::pair<int, int>>& v) {
  DisplayList(label, v,
              [](const std::pair<int, int>& p) { return Fmt("(%d,%d) ", p.first, p.second); });
}

void DisplayDAS(const double* v, int count) {
  if (v == nullptr) return;
  DisplayDoubles(v, count, false);
}

void DisplayDVTRS(const std::vector<double>& packed, int nRows) {
  ForEachPackedRow(packed, nRows, [](int, const double* values, size_t length) {
    DisplayDAS(values, static_cast<int>(length));
  });
}

void DisplayDVTR(std::string label, const std::vector<double>& packed, int nRows) {
  DisplayText(1, label + " (number of elements =" + Fmt(" %d", static_cast<int>(packed.size())) +
                     ", " + "number of rows =" + Fmt("%d", nRows) + ")");
  ForEachPackedRow(packed, nRows, [](int row, const double* values, size_t length) {
    std::string line = "row " + Fmt("%d", row) + ": ";
    for (size_t k = 0; k < length; ++k)
      line += DoubleItem(values[k]);
    DisplayText(1, line);
  });
}

void DisplaySVV(std::string label, const std::vector<std::vector<std::string>>& v) {
  DisplayNestedLists(label, v, [](const std::string& name, const std::vector<std::string>& inner) {
    DisplaySV(name, inner);
  });
}

void DisplayDVV(std::string label, const std::vector<std::vector<double>>& v, bool oneLine) {
  DisplayNestedLists(label, v,
                     [oneLine](const std::string& name, const std::vector<double>& inner) {
                       DisplayDV(name, inner, oneLine);
                     });
}

void DisplayBVV(std::string label, const std::vector<std::vector<bool>>& v,
                const std::string& rowLabel, const std::string& colLabel) {
  const int nColumns = v.empty() ? 0 : static_cast<int>(v[0].size());
  DisplayText(1, label + " ( number of rows = " + Fmt("%d", static_cast<int>(v.size())) +
                     ", number of columns = " + Fmt("%d", nColumns) + " )");
  if (v.empty()) return;
  std::string header = " " + colLabel + ":";
  for (int j = 0; j < nColumns; ++j)
    header += Fmt(" %d", j);
  DisplayText(1, header);
  for (size_t i = 0; i < v.size(); ++i) {
    std::string line = " " + rowLabel + Fmt(" %d:", static_cast<int>(i));
    for (bool flag : v[i])
      line += flag ? " t" : " f";
    DisplayText(1, line);
  }
}

void DisplayIIM(std::string label, const std::map<int, int>& m) {
  DisplayPairMap(label, m, [](int k, int x) { return Fmt("(%d,%d) ", k, x); });
}

void DisplayDDM(std::string label, const std::map<double, double>& m) {
  DisplayPairMap(label, m, [](double k, double x) {
    return "(" + PairDouble(k) + "," + PairDouble(x) + ") ";
  });
}

void DisplayVIM(std::string label, const std::map<int, std::vector<int>>& m) {
  DisplayVectorKeyMap(label, m, [](int key, const std::vector<int>& value) {
    std::string line = Fmt(" %d:", key);
    for (int x : value)
      line += IntItem(x);
    DisplayText(1, line);
  });
}

void DisplayIntVecIntMap(std::string label, const std::map<std::vector<int>, int>& m) {
  DisplayVectorKeyMap(label, m, [](const std::vector<int>& key, int value) {
    DisplayIV("Map key", key);
    DisplayI("Map value", value);
  });
}

void DisplayIntVecDVecMap(std::string label,
                          const std::map<std::vector<int>, std::vector<double>>& m) {
  DisplayVectorKeyMap(label, m, [](const std::vector<int>& key, const std::vector<double>& value) {
    DisplayIV("Map key", key);
    DisplayDV("Map value", value);
  });
}

void DisplaySLDM(std::string label, const std::map<std::vector<std::string>, double>& m) {
  DisplayVectorKeyMap(label, m, [](const std::vector<std::string>& key, double value) {
    DisplaySV("Map's StringList:", key);
    DisplayD("Map's double", value);
  });
}

}  // namespace QXDisplay_850
