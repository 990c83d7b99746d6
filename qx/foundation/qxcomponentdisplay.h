#ifndef QX_FOUNDATION_QXCOMPONENTDISPLAY_H
#define QX_FOUNDATION_QXCOMPONENTDISPLAY_H

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "qx/foundation/qxexport.h"

// Labelled diagnostic printing. Every Display() of the library writes through
// these functions to one process-wide stream (std::cout unless SetOutStream
// says otherwise). Each printed item starts on a new line: the line break comes
// before the text, and every break and text is flushed.
//
// The stream pointer is shared by all threads and is not synchronised.
namespace QXDisplay_850 {

QXCOMMON_API void SetOutStream(std::ostream& out);
QXCOMMON_API std::ostream& GetOutStream();

// `breaks` line breaks, then the text. A null text prints nothing at all.
QXCOMMON_API void DisplayText(const long& breaks, const char* text);
QXCOMMON_API void DisplayText(const long& breaks, const std::string& text);

// Scalars: "label = value".
QXCOMMON_API void DisplayS(std::string label, std::string text);
QXCOMMON_API void DisplayB(std::string label, bool value);
QXCOMMON_API void DisplayI(std::string label, int value);
QXCOMMON_API void DisplayL(std::string label, long value);
QXCOMMON_API void DisplayD(std::string label, double value);   // %g, "miss" for the sentinel
QXCOMMON_API void DisplayDF(std::string label, double value);  // %.17g, "miss" for the sentinel
QXCOMMON_API void DisplayTimeStamp(std::string label);         // "label: Y-MM-DD-hh-mm-ss", local

// Vectors in the list form: "label (size = n)", then the elements ten to a line.
QXCOMMON_API void DisplayIV(std::string label, const std::vector<int>& v);
QXCOMMON_API void DisplayUV(std::string label, const std::vector<unsigned int>& v);
QXCOMMON_API void DisplayBV(std::string label, const std::vector<bool>& v);
QXCOMMON_API void DisplaySV(std::string label, const std::vector<std::string>& v);
// With `oneLine` true, each element goes on a line of its own at 17 digits.
QXCOMMON_API void DisplayDV(std::string label, const std::vector<double>& v, bool oneLine = false);
QXCOMMON_API void DisplayDA(std::string label, const double* v, int count, bool oneLine = false);
QXCOMMON_API void DisplayVPD(std::string label, const std::vector<std::pair<double, double>>& v);
QXCOMMON_API void DisplayVPDI(std::string label, const std::vector<std::pair<double, int>>& v);
QXCOMMON_API void DisplayVPII(std::string label, const std::vector<std::pair<int, int>>& v);

// The element lines of the list form alone, without a header.
QXCOMMON_API void DisplayDAS(const double* v, int count);

// A packed lower triangle (row i holds i + 1 elements): bare rows, and with a
// header and "row i: " in front of each row.
QXCOMMON_API void DisplayDVTRS(const std::vector<double>& packed, int nRows);
QXCOMMON_API void DisplayDVTR(std::string label, const std::vector<double>& packed, int nRows);

// Vectors of vectors; each member is printed under "vec[i]".
QXCOMMON_API void DisplaySVV(std::string label, const std::vector<std::vector<std::string>>& v);
QXCOMMON_API void DisplayDVV(std::string label, const std::vector<std::vector<double>>& v,
                             bool oneLine);
// A table of flags, one line per row: "rowLabel i colLabel: t f ...".
QXCOMMON_API void DisplayBVV(std::string label, const std::vector<std::vector<bool>>& v,
                             const std::string& rowLabel, const std::string& colLabel);

// Maps.
QXCOMMON_API void DisplayIIM(std::string label, const std::map<int, int>& m);
QXCOMMON_API void DisplayDDM(std::string label, const std::map<double, double>& m);
QXCOMMON_API void DisplayVIM(std::string label, const std::map<int, std::vector<int>>& m);
QXCOMMON_API void DisplayIntVecIntMap(std::string label, const std::map<std::vector<int>, int>& m);
QXCOMMON_API void DisplayIntVecDVecMap(std::string label,
                                       const std::map<std::vector<int>, std::vector<double>>& m);
QXCOMMON_API void DisplaySLDM(std::string label,
                              const std::map<std::vector<std::string>, double>& m);

}  // namespace QXDisplay_850

#endif  // QX_FOUNDATION_QXCOMPONENTDISPLAY_H
