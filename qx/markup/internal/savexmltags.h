#ifndef QX_MARKUP_INTERNAL_SAVEXMLTAGS_H
#define QX_MARKUP_INTERNAL_SAVEXMLTAGS_H

#include <string>

namespace QXXML_850 {
namespace internal {

// The vocabulary of the persisted-object file. Each source unit that includes
// this gets its own copy, so none depends on another unit's initialization.
namespace SaveXMLTags {
static const std::string XML_ELE_ROOT = "QXXMLRoot";
static const std::string XML_ELE_HEADER = "QXXMLRoot";
static const std::string XML_ATT_COPYRIGHT = "copyright";
static const std::string XML_ELE_OBJ = "Obj";
static const std::string XML_ATT_OBJ = "name";
static const std::string XML_ELE_INT = "Int";
static const std::string XML_ATT_INT = "value";
static const std::string XML_ELE_LONG = "Long";
static const std::string XML_ATT_LONG = "value";
static const std::string XML_ELE_DOUBLE = "Double";
static const std::string XML_ATT_DOUBLE = "value";
static const std::string XML_VAL_MISSING = "Missing";
static const std::string XML_ELE_STRING = "String";
static const std::string XML_ATT_STRING = "value";
static const std::string SAVEXML_DTD_LOC = "savexml.dtd";
}  // namespace SaveXMLTags

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_MARKUP_INTERNAL_SAVEXMLTAGS_H
