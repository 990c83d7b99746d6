#ifndef QX_DICTIONARY_QXROUNDENCODER_H
#define QX_DICTIONARY_QXROUNDENCODER_H

#include <string>
#include <vector>

#include "qx/dictionary/iqxencoder.h"
#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The encoder of a frequency weight (QXWeightVar): a weight that is missing,
// or not positive, encodes as the missing sentinel; any other is truncated,
// rounded to the closest whole number, or kept as it is, by its option. A
// weight that rounds to zero or below is missing too.
class QXCOMMON_API QXRoundEncoder : public IQXEncoder {
 public:
  // Option RoundAsIs.
  QXRoundEncoder();
  explicit QXRoundEncoder(IQXVariable::WRoundingOption option);

  EncoderType GetEncoderType() const override;
  // Always 0.
  int GetNumberOfCategories() const override;
  double Encode(double value) override;
  double EncodeConst(double value) const override;
  double Encode(const std::string& value) override;
  double EncodeConst(const std::string& value) const override;
  // The sentinel, x <= 0.0, the interval, the discrete values, in that order.
  bool IsMissing(double value) const override;
  bool IsMissing(const std::string& value) const override;
  std::string Decode(int code) const override;
  double DecodeNum(int code) const override;
  IQXEncoder* Clone() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  bool AddDiscreteUserMissing(const std::string& value, const std::string& label) override;
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  bool SetMissingInterval(double low, double high) override;
  const std::vector<std::string>* GetValueLabels() const override;
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override;
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;
  // A negative option read from a file is a failure.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  void Display() const override;

 private:
  int option;
  std::vector<double> missValues;
  std::vector<std::string> missLabels;
  bool hasInterval;
  double intervalLow;
  double intervalHigh;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXROUNDENCODER_H
