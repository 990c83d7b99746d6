#ifndef QX_DOCUMENTS_QXDATAMODELTAGS_H
#define QX_DOCUMENTS_QXDATAMODELTAGS_H

#include <string>

// The vocabulary of the extended data model that QXPMMLExporter writes beside
// a PMML data dictionary: fields with their measure, storage and role. One
// private copy per source unit, as for QXPMMLTags.
namespace QXXML_850 {
namespace QXDataModelTags {

static const std::string XML_ELE_DATAMODEL = "DataModel";
static const std::string XML_ELE_FIELDS = "Fields";
static const std::string XML_ELE_FIELD = "Field";
static const std::string XML_ATT_COUNT = "count";
static const std::string XML_ATT_NAME = "name";
static const std::string XML_ATT_DISPLAYLABEL = "displayLabel";
static const std::string XML_ATT_MEASURE = "measure";
static const std::string XML_ATT_ROLE = "role";
static const std::string XML_ATT_STORAGE = "storage";
static const std::string XML_VAL_CONTINUOUS = "continuous";
static const std::string XML_VAL_NOMINAL = "nominal";
static const std::string XML_VAL_ORDINAL = "ordinal";
static const std::string XML_VAL_FLAG = "flag";
static const std::string XML_VAL_DISCRETE = "discrete";
static const std::string XML_VAL_TYPELESS = "typeless";
static const std::string XML_VAL_UNKNOWN = "unknown";
static const std::string XML_VAL_INTEGER = "integer";
static const std::string XML_VAL_REAL = "real";
static const std::string XML_VAL_STRING = "string";
static const std::string XML_VAL_DATE = "date";
static const std::string XML_VAL_TIME = "time";
static const std::string XML_VAL_TIMESTAMP = "timestamp";
static const std::string XML_VAL_INPUT = "input";
static const std::string XML_VAL_TARGET = "target";
static const std::string XML_VAL_FREQWEIGHT = "freqWeight";
static const std::string XML_VAL_RECORDID = "recordId";
static const std::string XML_VAL_NONE = "none";

}  // namespace QXDataModelTags
}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_QXDATAMODELTAGS_H
