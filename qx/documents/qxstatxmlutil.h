#ifndef QX_DOCUMENTS_QXSTATXMLUTIL_H
#define QX_DOCUMENTS_QXSTATXMLUTIL_H

#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

class XMLElement;
class QXXMLCounts;
class QXXMLCoordinates;
class QXXMLCoordinatesGroup;
class QXXMLRecordInfo;
class QXVariateData;

// The pieces of a StatXML document. A component builds its result tree from
// these factories and writes it with WriteTree. Each CreateElem function
// returns a new element that the caller owns until it hands it on with
// AddElement. Elements passed in are taken over: each is added as a child,
// or deleted where the function leaves it out; null ones are skipped.
// Numbers are written as "%.15g" with a point whatever the locale, and a
// number that is not finite leaves its attribute out.
class QXCOMMON_API QXStatXMLUtil {
 public:
  QXStatXMLUtil();
  virtual ~QXStatXMLUtil();

  // "StatXML" with its namespace, the schema-instance namespace, version
  // "1.0" and the schema location.
  static XMLElement* BuildRoot();

  // General elements.
  static XMLElement* CreateElem(const std::string& name, const std::string& att,
                                const std::string& value);
  static XMLElement* CreateElem(const std::string& name, const std::string& att1,
                                const std::string& value1, const std::string& att2,
                                const std::string& value2);
  static XMLElement* CreateElem(const std::string& name, const std::string& att1,
                                const std::string& value1, const std::string& att2,
                                const std::string& value2, const std::string& att3,
                                const std::string& value3);
  static XMLElement* CreateElem(const std::string& name, const std::string& att, double value);
  static XMLElement* CreateElemStatistic(const std::string& name, const std::string& value);
  // No "value" for the missing-value sentinel.
  static XMLElement* CreateElemStatistic(const std::string& name, double value);
  // "missingFreq" and "invalidFreq" unless the sentinel, "cardinality" if >= 0.
  static XMLElement* CreateElemCounts(double total, double missing, double invalid,
                                      double cardinality);
  static XMLElement* CreateElemCounts(const QXXMLCounts& counts);
  static XMLElement* CreateElemStructuredData(const std::string& description);
  static XMLElement* CreateElemUnivarData(const std::string& description);
  static XMLElement* CreateElemBivarData(const std::string& description);
  static XMLElement* CreateElemMultivariateData(const std::string& description);

  // Labels.
  static XMLElement* CreateElemFieldInfo(const std::string& fieldName, const std::string& value,
                                         bool isNull);
  static XMLElement* CreateElemFieldInfo(const std::string& fieldName, double value, bool isNull);
  static XMLElement* CreateElemFactor(const std::string& field, const std::string& value,
                                      bool nest);
  static XMLElement* CreateElemFactor(const std::string& field, double value, bool nest);
  static XMLElement* CreateElemCovariate(const std::string& field, int power);
  static XMLElement* CreateElemRegressionParameter(const std::string& name, bool isIntercept);
  static XMLElement* CreateElemRegressionParameter(const std::vector<XMLElement*>& first,
                                                   const std::vector<XMLElement*>& second,
                                                   const std::string& name, bool isIntercept);
  static XMLElement* CreateElemLabel(const std::string& label);
  static XMLElement* CreateElemLabel(const std::string& label, XMLElement* child);
  static XMLElement* CreateElemLabel(const std::vector<XMLElement*>& first,
                                     const std::vector<XMLElement*>& second,
                                     const std::string& name, bool isIntercept,
                                     const std::string& label);

  // Matrices. `pair` is added only if it holds exactly two elements; no
  // "nbCols" for the kind "symmetric".
  static XMLElement* CreateElemMatrix(XMLElement* first, std::vector<XMLElement*> pair,
                                      XMLElement* third, XMLElement* fourth, unsigned int nRows,
                                      unsigned int nCols, const std::string& kind, bool rowMajor);
  // The labels only if there are one or two (null ones not counted).
  static XMLElement* CreateElemMatrixLabels(const std::vector<XMLElement*>& labels);
  static XMLElement* CreateElemRowColLabels(const std::string& dimension);
  static XMLElement* CreateElemRowColLabels(const std::vector<XMLElement*>& children,
                                            const std::string& dimension);
  static XMLElement* CreateElemRowColLabels(XMLElement* child, const std::string& dimension);
  static XMLElement* CreateElemIndices(XMLElement* child, const std::string& dimension);
  static XMLElement* CreateElemSegmentInfo(const std::vector<XMLElement*>& children);
  static XMLElement* CreateElemSegmentInfo(XMLElement* child);
  static XMLElement* CreateElemSegmentData(XMLElement* first, XMLElement* second);

  // Arrays: "Array" with "type" ("int", "real" or "string"), "n" (all forms
  // but the int pointer) and the list as text.
  static XMLElement* CreateElemArray(const int* values, int n);
  static XMLElement* CreateElemArray(const std::vector<int>& values);
  static XMLElement* CreateElemArray(const double* values, int n);
  static XMLElement* CreateElemArray(const std::vector<double>& values);
  // Quotes and backslashes escaped by a backslash; if any text holds a
  // blank, every text is enclosed in double quotes.
  static XMLElement* CreateElemArray(const std::vector<std::string>& values);
  static XMLElement* CreateElemArray(const std::string& text, int n);

  // Lists as one text child, items separated by single blanks (none ahead of
  // an item while the text is still empty).
  static void AddStringList(XMLElement& element, const std::string& text);
  static void AddStringList(XMLElement& element, const std::vector<std::string>& values);
  // Each item through "%.0g" in the C library's locale: one significant digit.
  static void AddIntList(XMLElement& element, const int* values, int n);
  // Each item through "%.15g" in the C library's locale.
  static void AddIntList(XMLElement& element, const std::vector<int>& values);
  // "__MISSING__" for the sentinel, other items "%.15g" with a point.
  static void AddDoublesList(XMLElement& element, const double* values, int n);
  static void AddDoublesList(XMLElement& element, const std::vector<double>& values);
  // `out` becomes `in` with each double quote and backslash escaped by a
  // backslash.
  static void ReplaceSpecialChar(const std::string& in, std::string& out);

  // Coordinates and records. "field" and "statistic" only if not empty; the
  // values as the only child, after `extra` where given.
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<int>& values);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<double>& values);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<std::string>& values);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<int>& values, XMLElement* extra);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<double>& values, XMLElement* extra);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic,
                                           const std::vector<std::string>& values,
                                           XMLElement* extra);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic, const int* values, int n);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic, const double* values,
                                           int n);
  static XMLElement* CreateElemCoordinates(const std::string& feature, const std::string& field,
                                           const std::string& statistic, const std::string& text,
                                           int n);
  // Null unless the value type is 0, 1 or 2.
  static XMLElement* CreateElemCoordinates(const QXXMLCoordinates& coordinates);
  static XMLElement* CreateElemCoordinatesGroup(XMLElement* first,
                                                const std::vector<XMLElement*>& others,
                                                const std::string& description);
  static XMLElement* CreateElemCoordinatesGroup(const QXXMLCoordinatesGroup& group);
  // An "Array" for each of the first two inner vectors; further ones are
  // dropped.
  static XMLElement* CreateElemRecordInfo(const std::string& id, const std::string& label,
                                          const std::vector<std::vector<int>>& values);
  static XMLElement* CreateElemRecordInfo(const std::string& id, const std::string& label,
                                          const std::vector<std::vector<double>>& values);
  static XMLElement* CreateElemRecordInfo(const std::string& id, const std::string& label,
                                          const std::vector<std::vector<std::string>>& values);
  // Null unless the value type is 0, 1 or 2.
  static XMLElement* CreateElemRecordInfo(const QXXMLRecordInfo& record);
  // A record or coordinates of an unknown value type is added as a null
  // child, which the writer skips but which keeps the parent open: <a></a>.
  static void AddRecordInfos(XMLElement& parent, const std::vector<QXXMLRecordInfo>& records);

  // A statistics section named `name` ("UnivariateData", "BivariateData" or
  // "MultivariateData"): counts, statistics, then coordinates (at most 2, 3,
  // or all after the groups, by the name); another name gets no coordinates.
  static XMLElement* CreateElemVarData(const std::string& name, const std::string& description,
                                       const QXVariateData& data);
  // Adds the first min(size, maximum) coordinates; `minimum` has no effect.
  static void AddCoordinatesToVarData(XMLElement* parent,
                                      const std::vector<QXXMLCoordinates>& coordinates, int minimum,
                                      int maximum);
};

}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_QXSTATXMLUTIL_H
