#ifndef QX_DICTIONARY_QXCONTENCODER_H
#define QX_DICTIONARY_QXCONTENCODER_H

#include <string>
#include <vector>

#include "qx/dictionary/iqxencoder.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

class QXBinningEncoder;

// The encoder of a continuous variable: it decides whether a number is
// missing (the system-missing sentinel, the user-missing interval, the
// discrete user-missing values, tested in that order) and passes every other
// number through unchanged. A binned variable's encoder also owns a
// QXBinningEncoder, which it never applies itself.
class QXCOMMON_API QXContEncoder : public IQXEncoder {
 public:
  // One bin, no binning.
  QXContEncoder();
  explicit QXContEncoder(const std::vector<double>& cutPoints);
  QXContEncoder(double min, double max, int nBins);
  QXContEncoder(const QXContEncoder& other);
  QXContEncoder& operator=(const QXContEncoder& other);
  ~QXContEncoder() override;

  // The binning, or null when the variable isn't binned.
  const QXBinningEncoder* GetBinningEncoder() const;

  EncoderType GetEncoderType() const override;
  // The binning's number of bins, else the stored number.
  int GetNumberOfCategories() const override;
  // The value itself, or the missing sentinel if it is missing.
  double Encode(double value) override;
  double EncodeConst(double value) const override;
  // A text is always missing: these give the sentinel.
  double Encode(const std::string& value) override;
  double EncodeConst(const std::string& value) const override;
  bool IsMissing(double value) const override;
  bool IsMissing(const std::string& value) const override;
  // No categories: an empty text and the sentinel.
  std::string Decode(int code) const override;
  double DecodeNum(int code) const override;
  IQXEncoder* Clone() const override;
  // Value labels are ignored.
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  bool AddDiscreteUserMissing(const std::string& value, const std::string& label) override;
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  // Succeeds once, and only with high > low.
  bool SetMissingInterval(double low, double high) override;
  const std::vector<std::string>* GetValueLabels() const override;
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override;
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;
  // The binning is not persisted: an encoder read back has its number of
  // bins and keeps the binning it had.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  void Display() const override;

 private:
  int nBins;
  std::vector<double> missValues;
  std::vector<std::string> missLabels;
  bool hasInterval;
  double intervalLow;
  double intervalHigh;
  QXBinningEncoder* binning;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXCONTENCODER_H
