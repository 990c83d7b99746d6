#ifndef QX_DOCUMENTS_QXVARIATEDATA_H
#define QX_DOCUMENTS_QXVARIATEDATA_H

#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

// Open records in which a component collects the numbers of one chart or
// table, and which turn themselves into StatXML elements through
// QXStatXMLUtil. The component fills the fields directly. Where a record
// holds values of three kinds, its value type picks the vector the writers
// read (0 ints, 1 doubles, 2 strings); the other two are ignored.
namespace QXXML_850 {

class XMLElement;

// The frequencies of a section: total, missing, invalid and the cardinality.
// All start as the missing-value sentinel.
class QXCOMMON_API QXXMLCounts {
 public:
  QXXMLCounts();
  virtual ~QXXMLCounts();

  double fTotalFreq;
  double fMissingFreq;
  double fInvalidFreq;
  double fCardinality;
};

// One axis of a chart: what it shows (feature), of which field, by which
// statistic, and its values.
class QXCOMMON_API QXXMLCoordinates {
 public:
  QXXMLCoordinates();
  virtual ~QXXMLCoordinates();

  // A new "Coordinates" element owned by the caller; null unless the value
  // type is 0, 1 or 2.
  XMLElement* GetCoordinates() const;
  void Display() const;

  std::string fFeature;
  std::string fField;
  std::string fStatistic;
  std::vector<int> fIntValues;
  std::vector<double> fDoubleValues;
  std::vector<std::string> fStringValues;
  int fValueType;  // -1: no values yet
};

// Coordinates that belong together, under a description.
class QXCOMMON_API QXXMLCoordinatesGroup {
 public:
  QXXMLCoordinatesGroup();
  virtual ~QXXMLCoordinatesGroup();

  // A new "CoordinatesGroup" element owned by the caller.
  XMLElement* GetCoordinatesGroup() const;
  void Display() const;

  std::string fDescription;
  std::vector<QXXMLCoordinates> fCoordinates;
};

// One record of a table, by id and label, with up to two lists of values.
class QXCOMMON_API QXXMLRecordInfo {
 public:
  QXXMLRecordInfo();
  virtual ~QXXMLRecordInfo();

  void Display() const;

  std::string fRecordId;
  std::string fRecordLabel;
  std::vector<std::vector<int>> fIntValues;
  std::vector<std::vector<double>> fDoubleValues;
  std::vector<std::vector<std::string>> fStringValues;
  int fValueType;  // -1: no values yet
};

// A statistics section of a StatXML document: counts, named statistics
// (strings when fIsStringStats, doubles otherwise), coordinates, record
// infos and coordinate groups. It becomes a univariate, bivariate or
// multivariate section; record infos are added by QXStatXMLUtil::AddRecordInfos
// on request.
class QXCOMMON_API QXVariateData {
 public:
  QXVariateData();
  virtual ~QXVariateData();

  // New elements owned by the caller: "UnivariateData" (at most two
  // coordinates), "BivariateData" (at most three) and "MultivariateData"
  // (the groups, then every coordinate).
  XMLElement* GetUnivariateDataElem() const;
  XMLElement* GetBivariateDataElem() const;
  XMLElement* GetMultiVariateDataElem() const;
  void Display() const;

  std::vector<QXXMLCounts> fCounts;
  std::vector<std::string> fStatNames;
  bool fIsStringStats;  // true at construction
  std::vector<std::string> fStatStrings;
  std::vector<double> fStatValues;
  std::vector<QXXMLCoordinates> fCoordinates;
  std::vector<QXXMLRecordInfo> fRecordInfos;
  std::string fDescription;
  std::vector<QXXMLCoordinatesGroup> fCoordinatesGroups;
};

}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_QXVARIATEDATA_H
