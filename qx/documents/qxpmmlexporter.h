#ifndef QX_DOCUMENTS_QXPMMLEXPORTER_H
#define QX_DOCUMENTS_QXPMMLEXPORTER_H

#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxstatusshared.h"

namespace QXXML_850 {
class XMLElement;
class QXVarList;
}  // namespace QXXML_850

namespace QXMath_850 {
class QXUniStats;
}

namespace QXCommon_850 {

class QXApplicInfo4XML;
class QXQueryCancel;

// Builds the parts of a PMML 4.3 document that every model shares: the root,
// the header, the data dictionary of a QXVarList, the extended data model of
// its fields and the univariate statistics of a field. The component adds its
// model element under the root and writes the tree with WriteTree. Each
// operation hands one finished tree to its last argument, which the caller
// then owns, and reports failure by the QXStatus it returns (all errors):
//   1    the QXQueryCancel asked to stop; `out` is null
//   101  an index is negative or not below the list's size (datum 0: it)
//   102  the list holds no variable at that index (datum 0: the index)
//   117  the QXUniStats is not valid; `out` is null
// After 101 or 102, `out` holds the fields written before the bad index.
class QXCOMMON_API QXPMMLExporter {
 public:
  enum StatusCode : long {
    StatusCancelled = 1,
    StatusBadIndex = 101,
    StatusNullVariable = 102,
    StatusInvalidUniStats = 117
  };

  // `cancel` is borrowed and may be null; it is asked before each variable
  // and once after the last.
  explicit QXPMMLExporter(QXQueryCancel* cancel);
  ~QXPMMLExporter();
  QXPMMLExporter(const QXPMMLExporter&) = delete;
  QXPMMLExporter& operator=(const QXPMMLExporter&) = delete;

  // A new "PMML" root of version 4.3 with its namespaces; the two are the
  // same (both write 4.3).
  QXXML_850::XMLElement* ExportPMMLElement() const;
  QXXML_850::XMLElement* ExportPMMLElement40() const;

  // "Header": the copyright of `info`, or the library's own notice; the
  // description; "Application" with the name and version that `info` gives;
  // with `timestamp`, the present local time as text.
  QXStatus ExportHeader(const QXApplicInfo4XML* info, const std::string& description,
                        bool timestamp, QXXML_850::XMLElement*& out);
  // "DataDictionary" with a "DataField" for each variable at `indices`, in
  // that order, or, if empty, for every variable whose role isn't unused.
  QXStatus ExportDataDictionary(const QXXML_850::QXVarList& list, const std::vector<int>& indices,
                                QXXML_850::XMLElement*& out);
  // "DataModel": the list's field formats, then "Fields" with a "Field"
  // (measure, storage, role) for each variable at `indices`, or, if empty,
  // for every variable.
  QXStatus ExportDataModel(const QXXML_850::QXVarList& list, const std::vector<int>& indices,
                           QXXML_850::XMLElement*& out);
  // "UnivariateStats": counts, then the frequencies of the categories, or
  // the numeric summary and the frequencies of the intervals.
  QXStatus ExportUniStats(const QXMath_850::QXUniStats& stats, QXXML_850::XMLElement*& out);
  // "Extension" with "name" (if not empty), "value" and the library's
  // "extender". A text value is left out if empty, a number if not finite.
  void ExportExtension(const std::string& name, const std::string& value,
                       QXXML_850::XMLElement*& out);
  void ExportExtension(const std::string& name, double value, QXXML_850::XMLElement*& out);

 private:
  // Moves the finished tree to `out`, or deletes it on cancellation.
  QXStatus Hand(const QXStatus& status, QXXML_850::XMLElement*& out);

  QXXML_850::XMLElement* tree;  // under construction; null between operations
  QXQueryCancel* cancel;
};

}  // namespace QXCommon_850

#endif  // QX_DOCUMENTS_QXPMMLEXPORTER_H
