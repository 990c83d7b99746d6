#ifndef QX_DICTIONARY_QXCATNUMENCODER_H
#define QX_DICTIONARY_QXCATNUMENCODER_H

#include <map>
#include <string>
#include <vector>

#include "qx/dictionary/iqxencoder.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The encoder of a categorical variable whose categories are numbers: each
// new value gets the next code, 0 upward, in the order of first appearance,
// and keeps it. Values equal as doubles are one category, without tolerance.
// It keeps the mapping both ways, value labels by code, and the user-missing
// values and interval, which get no code.
class QXCOMMON_API QXCatNumEncoder : public IQXEncoder {
 public:
  // Empty; n is only the room made for the categories.
  explicit QXCatNumEncoder(int n);
  // Empty, then Encode of every value in order.
  explicit QXCatNumEncoder(const std::vector<double>& values);

  EncoderType GetEncoderType() const override;
  // The number of values that have a code.
  int GetNumberOfCategories() const override;
  // The value's code, a new one if it has none; -1.0 for a missing value.
  double Encode(double value) override;
  // The value's code, or -1.0 if it is missing or has none.
  double EncodeConst(double value) const override;
  // A text is never a category: -1.0.
  double Encode(const std::string& value) override;
  double EncodeConst(const std::string& value) const override;
  // The sentinel, the interval, the discrete values, in that order.
  bool IsMissing(double value) const override;
  bool IsMissing(const std::string& value) const override;
  // The value of the code as "%.15g" text with a point; empty for no code.
  std::string Decode(int code) const override;
  // The value of the code; the missing sentinel for no code.
  double DecodeNum(int code) const override;
  IQXEncoder* Clone() const override;
  // Replaces the labels, however many.
  void SetValueLabels(const std::vector<std::string>& labels) override;
  // Extends the labels with empty ones to the number of categories if they
  // are fewer, then labels the code if it has a category.
  void SetValueLabel(int code, const std::string& label) override;
  bool AddDiscreteUserMissing(const std::string& value, const std::string& label) override;
  // Declaring a value missing keeps its code, but Encode answers -1.0 for it.
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  bool SetMissingInterval(double low, double high) override;
  const std::vector<std::string>* GetValueLabels() const override;
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override;
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;
  // Categories are written in code order, so a code survives a write and a
  // read. Reading first empties the encoder.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  void Display() const override;

 private:
  // Orders doubles by <, with every NaN one value above all numbers, so that
  // a NaN is one category rather than a break of the map's order.
  struct Less {
    bool operator()(double a, double b) const { return a < b || (a == a && b != b); }
  };

  std::map<double, int, Less> codes;
  std::vector<double> categories;
  std::vector<std::string> valueLabels;
  int lastCode;
  std::vector<double> missValues;
  std::vector<std::string> missLabels;
  bool hasInterval;
  double intervalLow;
  double intervalHigh;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXCATNUMENCODER_H
