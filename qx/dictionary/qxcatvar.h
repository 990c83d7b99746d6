#ifndef QX_DICTIONARY_QXCATVAR_H
#define QX_DICTIONARY_QXCATVAR_H

#include <string>
#include <vector>

#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// A categorical field: name, label, role, storage and measurement level, its
// number of categories, ordinal and binary flags, the sum of frequency weights
// per category, and the encoder that gives the codes: a QXCatNumEncoder at
// the level LevelNumericCategorical, a QXStringEncoder at any other.
// QXVarList builds these through AddCatVar.
class QXCOMMON_API QXCatVar : public IQXVariable {
 public:
  QXCatVar(const std::string& name, const std::string& label, int nCategories, MeasureLevel level,
           VariableRole role, bool ordinal);
  // The same, keeping a copy of the sums of frequency weights.
  QXCatVar(const std::string& name, const std::string& label, const std::vector<double>& sumFreqWts,
           int nCategories, MeasureLevel level, VariableRole role, bool ordinal);
  QXCatVar(const QXCatVar& other);
  // Keeps the own sums of frequency weights when the source has none.
  QXCatVar& operator=(const QXCatVar& other);
  ~QXCatVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  // The stored number, which may be behind the encoder's.
  int GetNumberOfCategories() const override;
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  VariableStorage GetVariableStorage() const override;
  void SetVariableStorage(VariableStorage storage) override;
  void SetFieldFormatElement(XMLElement* element) override;
  const XMLElement* GetFieldFormatElement() const override;
  XMLElement* GetFieldFormatElement() override;
  // Raises the stored number to the encoder's, never lowers it.
  int UpdateNumberOfCategories() override;
  void SetMissingValueReplacement(const std::string& replacement) override;
  const std::string* GetMissingValueReplacement() const override;
  IQXVariable* Clone() const override;
  const IQXEncoder* GetEncoder() const override;
  IQXEncoder* GetEncoder() override;
  // After the update: StatusConstant for 1 category, StatusInvalid below 1.
  VarStatus GetVarStatus() override;
  // The sums of frequency weights, the flag variable and the field-format
  // element are not persisted. Reading needs encoder type 2 or 3.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  // Stored only at the categorical levels; says whether.
  bool SetFlagVariable(bool flag) override;
  bool IsFlagVariable() const override;
  // The encoder is not displayed.
  void Display() const override;

  void SetNumberOfCategories(int n);
  // False, and `sums` untouched, when none are stored.
  bool GetSumFreqWts(std::vector<double>& sums) const;
  void SetOrdinalFlag(bool flag);
  bool GetOrdinalFlag() const;
  // trueIndex (0 or 1) is the code that means true; any other index leaves
  // the flag false and the old index.
  void SetBinaryFlag(bool flag, int trueIndex);
  bool GetBinaryFlag() const;
  int GetBinaryFlagTrueIndex() const;
  // Deletes the own encoder and takes this one over; the stored number of
  // categories becomes the new encoder's, up or down.
  void ChangeEncoder(IQXEncoder* encoder);

 private:
  std::string name;
  std::string label;
  bool ordinal;
  bool binary;
  int binaryTrueIndex;
  VariableRole role;
  VariableStorage storage;
  int nCategories;
  MeasureLevel level;
  std::string replacement;
  bool hasReplacement;
  IQXEncoder* encoder;
  XMLElement* fieldFormat;
  std::vector<double> sumFreqWts;
  bool flagVariable;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXCATVAR_H
