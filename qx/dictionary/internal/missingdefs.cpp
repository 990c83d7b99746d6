#include "qx/dictionary/internal/missingdefs.h"

#include "qx/foundation/qxcomponentdisplay.h"

namespace QXXML_850 {
namespace internal {

using namespace QXDisplay_850;

bool IsUserMissing(double x, bool hasInterval, double low, double high,
                   const std::vector<double>& values) {
  if (hasInterval && low <= x && x <= high) return true;
  for (double value : values) {
    if (value == x) return true;
  }
  return false;
}

bool SetInterval(const MissingDefs& defs, double low, double high) {
  if (defs.hasInterval || !(high > low)) return false;
  defs.low = low;
  defs.high = high;
  defs.hasInterval = true;
  return true;
}

bool AddValue(const MissingDefs& defs, double value, const std::string& label) {
  defs.values.push_back(value);
  defs.labels.push_back(label);
  return true;
}

bool GetInterval(bool hasInterval, double low, double high, double& outLow, double& outHigh) {
  if (!hasInterval) return false;
  outLow = low;
  outHigh = high;
  return true;
}

void DisplayMissingDefs(const std::vector<double>& values, const std::vector<std::string>& labels,
                        bool hasInterval, double low, double high) {
  DisplayDV("Discrete user missing values", values);
  if (!labels.empty()) DisplaySV("\t\tMissing Value Labels:", labels);
  if (hasInterval) {
    DisplayText(0, "\t\tUser-missing interval for this encoder: ");
    DisplayText(1, "");
    DisplayD("\t\t[ ", low);
    DisplayD(", ", high);
    DisplayText(0, " ]");
    DisplayText(1, "");
  }
  DisplayText(1, "");
}

void WriteMissingDefs(ObjWriter& out, bool hasInterval, double low, double high,
                      const std::vector<double>& values, const std::vector<std::string>& labels) {
  out.Value(hasInterval);
  if (hasInterval) {
    out.Value(low);
    out.Value(high);
  }
  out.Value(static_cast<int>(values.size()));
  for (double value : values)
    out.Value(value);
  // As many labels as values, whatever the label vector holds.
  for (size_t i = 0; i < values.size(); ++i)
    out.Value(i < labels.size() ? labels[i] : std::string());
}

void ClearMissingDefs(const MissingDefs& defs) {
  defs.hasInterval = false;
  defs.values.clear();
  defs.labels.clear();
}

void ReadMissingDefs(ObjReader& in, const MissingDefs& defs) {
  in.Value(defs.hasInterval);
  if (defs.hasInterval) {
    in.Value(defs.low);
    in.Value(defs.high);
  }
  const int n = in.Count();
  in.Doubles(n, defs.values);
  in.Strings(n, defs.labels);
}

}  // namespace internal
}  // namespace QXXML_850
