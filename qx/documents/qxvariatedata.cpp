#include "qx/documents/qxvariatedata.h"

#include "qx/documents/qxstatxmltags.h"
#include "qx/documents/qxstatxmlutil.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXXML_850 {

using namespace QXDisplay_850;
using QXCommon_850::QXMV;

namespace {

// The vector that `valueType` picks, under `label`; "Error" for another type.
void DisplayValues(const std::string& label, int valueType, const std::vector<int>& ints,
                   const std::vector<double>& doubles, const std::vector<std::string>& strings) {
  switch (valueType) {
    case 0:
      DisplayIV(label, ints);
      break;
    case 1:
      DisplayDV(label, doubles);
      break;
    case 2:
      DisplaySV(label, strings);
      break;
    default:
      DisplayText(1, "Error");
  }
}

}  // namespace

QXXMLCounts::QXXMLCounts()
    : fTotalFreq(QXMV::Missing()),
      fMissingFreq(QXMV::Missing()),
      fInvalidFreq(QXMV::Missing()),
      fCardinality(QXMV::Missing()) {}

QXXMLCounts::~QXXMLCounts() {}

QXXMLCoordinates::QXXMLCoordinates() : fValueType(-1) {}

QXXMLCoordinates::~QXXMLCoordinates() {}

XMLElement* QXXMLCoordinates::GetCoordinates() const {
  return QXStatXMLUtil::CreateElemCoordinates(*this);
}

void QXXMLCoordinates::Display() const {
  DisplayText(1, " Coordinates display start: ");
  DisplayS("feature", fFeature);
  DisplayS("field", fField);
  DisplayS("statistic", fStatistic);
  DisplayValues("values ", fValueType, fIntValues, fDoubleValues, fStringValues);
  DisplayText(1, " Coordinates display end. ");
}

QXXMLCoordinatesGroup::QXXMLCoordinatesGroup() {}

QXXMLCoordinatesGroup::~QXXMLCoordinatesGroup() {}

XMLElement* QXXMLCoordinatesGroup::GetCoordinatesGroup() const {
  return QXStatXMLUtil::CreateElemCoordinatesGroup(*this);
}

void QXXMLCoordinatesGroup::Display() const {
  DisplayText(1, " CoordinatesGroup display start: ");
  DisplayS("Description", fDescription);
  for (const QXXMLCoordinates& coordinates : fCoordinates)
    coordinates.Display();
  DisplayText(1, " CoordinatesGroup display end. ");
}

QXXMLRecordInfo::QXXMLRecordInfo() : fValueType(-1) {}

QXXMLRecordInfo::~QXXMLRecordInfo() {}

void QXXMLRecordInfo::Display() const {
  DisplayText(1, " RecordInfo display start: ");
  DisplayS("RecordID ", fRecordId);
  DisplayS("RecordLable ", fRecordLabel);
  if (fValueType == 0) {
    for (const std::vector<int>& values : fIntValues)
      DisplayIV("value ", values);
  } else if (fValueType == 1) {
    for (const std::vector<double>& values : fDoubleValues)
      DisplayDV("value ", values);
  } else if (fValueType == 2) {
    for (const std::vector<std::string>& values : fStringValues)
      DisplaySV("value ", values);
  } else {
    DisplayText(1, "Error");
  }
  DisplayText(1, " RecordInfo display end. ");
}

QXVariateData::QXVariateData() : fIsStringStats(true) {}

QXVariateData::~QXVariateData() {}

XMLElement* QXVariateData::GetUnivariateDataElem() const {
  return QXStatXMLUtil::CreateElemVarData(QXStatXMLTags::XML_ELE_UNIVARIATEDATE, fDescription,
                                          *this);
}

XMLElement* QXVariateData::GetBivariateDataElem() const {
  return QXStatXMLUtil::CreateElemVarData(QXStatXMLTags::XML_ELE_BIVARIATEDATE, fDescription,
                                          *this);
}

XMLElement* QXVariateData::GetMultiVariateDataElem() const {
  return QXStatXMLUtil::CreateElemVarData(QXStatXMLTags::XML_ELE_MULTIVARIATEDATE, fDescription,
                                          *this);
}

void QXVariateData::Display() const {
  DisplayText(1, " QXVariateData display start: ");
  DisplayS(" Description ", fDescription);
  DisplayText(1, " Counts: ");
  for (const QXXMLCounts& counts : fCounts) {
    DisplayD(" fTotalFreq ", counts.fTotalFreq);
    DisplayD(" fMissingFreq ", counts.fMissingFreq);
    DisplayD(" fInvalidFreq ", counts.fInvalidFreq);
  }
  DisplayText(1, " Statistics: ");
  DisplaySV(" Names ", fStatNames);
  if (fIsStringStats) {
    DisplaySV(" Values ", fStatStrings);
  } else {
    DisplayDV(" Values ", fStatValues);
  }
  DisplayText(1, " Coordinates: ");
  for (const QXXMLCoordinates& coordinates : fCoordinates)
    coordinates.Display();
  DisplayText(1, " RecordInfo: ");
  for (const QXXMLRecordInfo& record : fRecordInfos)
    record.Display();
  DisplayText(1, " QXVariateData display end. ");
}

}  // namespace QXXML_850
