#ifndef QX_DICTIONARY_INTERNAL_MISSINGDEFS_H
#define QX_DICTIONARY_INTERNAL_MISSINGDEFS_H

// The user-missing definitions that the encoders of numbers share
// (QXContEncoder, QXRoundEncoder, QXCatNumEncoder): discrete values with
// parallel labels, and one closed interval. Each encoder keeps the fields
// itself and hands them here by reference. Never installed.

#include <string>
#include <vector>

#include "qx/dictionary/internal/persist.h"

namespace QXXML_850 {
namespace internal {

struct MissingDefs {
  bool& hasInterval;
  double& low;
  double& high;
  std::vector<double>& values;
  std::vector<std::string>& labels;
};

// The interval (both ends inclusive), then the discrete values by exact
// equality, in the order added. The system-missing test is the caller's.
bool IsUserMissing(double x, bool hasInterval, double low, double high,
                   const std::vector<double>& values);
// Stores the interval only if none is set yet and high > low; says whether.
bool SetInterval(const MissingDefs& defs, double low, double high);
bool AddValue(const MissingDefs& defs, double value, const std::string& label);
// The interval's ends into the outputs, if there is one.
bool GetInterval(bool hasInterval, double low, double high, double& outLow, double& outHigh);

// The display lines of the definitions, ending in an empty line.
void DisplayMissingDefs(const std::vector<double>& values, const std::vector<std::string>& labels,
                        bool hasInterval, double low, double high);

// Persisted form: the interval flag, its ends if set, the number of values,
// the values, then as many labels as values.
void WriteMissingDefs(ObjWriter& out, bool hasInterval, double low, double high,
                      const std::vector<double>& values, const std::vector<std::string>& labels);
void ClearMissingDefs(const MissingDefs& defs);
// Reads the definitions into cleared ones.
void ReadMissingDefs(ObjReader& in, const MissingDefs& defs);

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DICTIONARY_INTERNAL_MISSINGDEFS_H
