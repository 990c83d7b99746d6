#ifndef QX_DICTIONARY_QXWEIGHTVAR_H
#define QX_DICTIONARY_QXWEIGHTVAR_H

#include <string>

#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The frequency weight of the data: its role is always RoleFrequencyWeight,
// it has no categories and no replacement, and its QXRoundEncoder makes each
// weight a usable positive number or missing. QXVarList holds at most one,
// set by SetWeightVar.
class QXCOMMON_API QXWeightVar : public IQXVariable {
 public:
  QXWeightVar(const std::string& name, const std::string& label, WRoundingOption option);
  QXWeightVar(const QXWeightVar& other);
  // Copies name, label and storage and clones the field-format element; the
  // encoder is dropped if the source has none, cloned if this one has none,
  // and otherwise this one's own is kept unchanged.
  QXWeightVar& operator=(const QXWeightVar& other);
  ~QXWeightVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  // 0.
  int GetNumberOfCategories() const override;
  // Always RoleFrequencyWeight; setting a role is ignored.
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  VariableStorage GetVariableStorage() const override;
  void SetVariableStorage(VariableStorage storage) override;
  void SetFieldFormatElement(XMLElement* element) override;
  const XMLElement* GetFieldFormatElement() const override;
  XMLElement* GetFieldFormatElement() override;
  int UpdateNumberOfCategories() override;
  // Ignored: a weight has no replacement, and the getter gives null.
  void SetMissingValueReplacement(const std::string& replacement) override;
  const std::string* GetMissingValueReplacement() const override;
  IQXVariable* Clone() const override;
  const IQXEncoder* GetEncoder() const override;
  IQXEncoder* GetEncoder() override;
  VarStatus GetVarStatus() override;
  // Reading reads into the own encoder, made anew if there is none.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  bool SetFlagVariable(bool flag) override;
  bool IsFlagVariable() const override;
  void Display() const override;

 private:
  std::string name;
  std::string label;
  VariableStorage storage;
  IQXEncoder* encoder;
  XMLElement* fieldFormat;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXWEIGHTVAR_H
