#ifndef QX_DICTIONARY_QXCONTVAR_H
#define QX_DICTIONARY_QXCONTVAR_H

#include <string>
#include <vector>

#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// A continuous field: name, label, role, storage, its range and optional
// binning, the sums of weights a component keeps for it, and a QXContEncoder
// that tells missing numbers from the others. QXVarList builds these through
// AddContVar; a component updates the statistics through the setters.
class QXCOMMON_API QXContVar : public IQXVariable {
 public:
  // How a component treats outliers; the library only stores it.
  enum OutlierHandleMethod : int { OutlierNone = 0 };

  // Role RoleInput, storage StorageReal, no encoder.
  QXContVar();
  // Storage StorageReal, a default encoder.
  QXContVar(const std::string& name, const std::string& label, VariableRole role);
  // Equal-width bins when binned, max > min and nBins >= 2; else a default
  // encoder. Storage StorageUndefined.
  QXContVar(const std::string& name, const std::string& label, double min, double max,
            VariableRole role, bool binned, int nBins);
  // Bins at the cut points (nBins = their number + 1) when binned, max > min
  // and nBins >= 2; else a default encoder. Storage StorageUndefined.
  QXContVar(const std::string& name, const std::string& label, double min, double max,
            const std::vector<double>& cutPoints, bool binned, VariableRole role);
  // The same over the whole double range, without the test on min and max.
  QXContVar(const std::string& name, const std::string& label, const std::vector<double>& cutPoints,
            bool binned, VariableRole role);
  QXContVar(const QXContVar& other);
  // Reuses the own encoder where both have one.
  QXContVar& operator=(const QXContVar& other);
  ~QXContVar() override;

  MeasureLevel GetMeasureLevel() const override;
  std::string GetVariableName() const override;
  std::string GetVariableLabel() const override;
  void SetVariableLabel(const std::string& label) override;
  // The encoder's number, or nBins without an encoder.
  int GetNumberOfCategories() const override;
  VariableRole GetVariableRole() const override;
  void SetVariableRole(VariableRole role) override;
  VariableStorage GetVariableStorage() const override;
  void SetVariableStorage(VariableStorage storage) override;
  void SetFieldFormatElement(XMLElement* element) override;
  const XMLElement* GetFieldFormatElement() const override;
  XMLElement* GetFieldFormatElement() override;
  // nBins = the encoder's number; without an encoder nBins stays.
  int UpdateNumberOfCategories() override;
  void SetMissingValueReplacement(const std::string& replacement) override;
  const std::string* GetMissingValueReplacement() const override;
  IQXVariable* Clone() const override;
  const IQXEncoder* GetEncoder() const override;
  IQXEncoder* GetEncoder() override;
  // StatusInvalid if min > max, StatusConstant if they are equal.
  VarStatus GetVarStatus() override;
  // Cut points, outlier method and field-format element are not persisted.
  // Reading an encoder type other than 0 or 1 prints a line on std::cout,
  // leaves no encoder and throws IOException*.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  // A continuous variable is never a flag: false.
  bool SetFlagVariable(bool flag) override;
  bool IsFlagVariable() const override;
  void Display() const override;

  void SetNBins(int n);
  int GetNBins() const;
  double GetMin() const;
  double GetMax() const;
  // Unchecked.
  void SetMinMax(double min, double max);
  double GetSumFreqWts() const;
  void SetSumFreqWts(double sum);
  double GetSumCompWts() const;
  void SetSumCompWts(double sum);
  OutlierHandleMethod GetOutlierHandleMethod() const;
  void SetOutlierHandleMethod(OutlierHandleMethod method);

 private:
  // Storage StorageUndefined, the range and number of bins given, no encoder.
  QXContVar(const std::string& name, const std::string& label, VariableRole role, double min,
            double max, int nBins);

  std::string name;
  std::string label;
  VariableRole role;
  VariableStorage storage;
  double min;
  double max;
  int nBins;
  double mean;
  double stdDev;
  std::vector<double> cutPoints;
  std::string replacement;
  bool hasReplacement;
  IQXEncoder* encoder;
  double fSumFreqWts;
  double fSumCompWts;
  int outlierMethod;
  XMLElement* fieldFormat;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXCONTVAR_H
