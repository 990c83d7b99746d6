#ifndef QX_DICTIONARY_IQXVARIABLE_H
#define QX_DICTIONARY_IQXVARIABLE_H

#include <fstream>
#include <ostream>
#include <string>

#include "qx/dictionary/iqxencoder.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

class XMLElement;

// One field of the data a component reads: its name and label, its role in
// the analysis, how it is stored, its measurement level and the encoder that
// turns its values into numbers. QXContVar, QXCatVar and QXWeightVar implement
// it, and QXVarList owns a list of them.
class QXCOMMON_API IQXVariable {
 public:
  // The enumerations take an int as their type so that any stored number,
  // also one read from a file, is a valid value; the display functions of
  // qxmtdisplayenums.h print an unknown one as unrecognized.
  enum VariableRole : int {
    RoleUndefined = 0,
    RoleTarget = 1,
    RoleTargetResponse = 2,
    RoleFrequencyWeight = 3,
    RoleInput = 4,
    RolePossibleInput = 5,
    RoleUnused = 6,
    RoleRecordID = 7
  };
  enum VariableStorage : int {
    StorageUndefined = 0,
    StorageInteger = 1,
    StorageReal = 2,
    StorageString = 3,
    StorageDate = 4,
    StorageTime = 5,
    StorageTimestamp = 6
  };
  enum MeasureLevel : int {
    LevelUnknown = 0,
    LevelContinuous = 1,
    LevelNumericCategorical = 2,
    LevelStringCategorical = 3,
    LevelFrequencyWeight = 4
  };
  // How a frequency weight is rounded (QXRoundEncoder).
  enum WRoundingOption : int { RoundTruncate = 0, RoundClosest = 1, RoundAsIs = 2 };
  // What a variable's data turned out to be.
  enum VarStatus : int { StatusOK = 0, StatusConstant = 1, StatusInvalid = 2 };

  virtual ~IQXVariable();

  virtual MeasureLevel GetMeasureLevel() const = 0;
  virtual std::string GetVariableName() const = 0;
  virtual std::string GetVariableLabel() const = 0;
  virtual void SetVariableLabel(const std::string& label) = 0;
  virtual int GetNumberOfCategories() const = 0;
  virtual VariableRole GetVariableRole() const = 0;
  virtual void SetVariableRole(VariableRole role) = 0;
  virtual VariableStorage GetVariableStorage() const = 0;
  virtual void SetVariableStorage(VariableStorage storage) = 0;
  // The variable takes the element over; an element set before is not
  // deleted, so a caller that replaces one deletes the old one itself.
  virtual void SetFieldFormatElement(XMLElement* element) = 0;
  virtual const XMLElement* GetFieldFormatElement() const = 0;
  virtual XMLElement* GetFieldFormatElement() = 0;
  // Brings the stored number of categories up to the encoder's; returns it.
  virtual int UpdateNumberOfCategories() = 0;
  virtual void SetMissingValueReplacement(const std::string& replacement) = 0;
  // Null unless a replacement was set.
  virtual const std::string* GetMissingValueReplacement() const = 0;
  // A new deep copy (encoder and field-format element included), owned by the
  // caller.
  virtual IQXVariable* Clone() const = 0;
  virtual const IQXEncoder* GetEncoder() const = 0;
  virtual IQXEncoder* GetEncoder() = 0;
  // Not const: a categorical variable refreshes its number of categories.
  virtual VarStatus GetVarStatus() = 0;
  // The persisted form, as for IQXEncoder.
  virtual int WriteObjectXML(std::ostream& os, int nTabs) const = 0;
  virtual int ReadObjectXML(std::ifstream& is) = 0;
  // Whether the measurement level allows a flag; the flag is stored only then.
  virtual bool SetFlagVariable(bool flag) = 0;
  virtual bool IsFlagVariable() const = 0;
  virtual void Display() const = 0;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_IQXVARIABLE_H
