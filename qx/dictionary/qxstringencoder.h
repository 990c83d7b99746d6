#ifndef QX_DICTIONARY_QXSTRINGENCODER_H
#define QX_DICTIONARY_QXSTRINGENCODER_H

#include <map>
#include <string>
#include <vector>

#include "qx/dictionary/iqxencoder.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// The encoder of a categorical variable whose categories are texts: each new
// text gets the next code, 0 upward, in the order of first appearance, and
// keeps it. Texts compare byte by byte, case-sensitive, untrimmed; an empty
// text is an ordinary category unless declared missing. Each text is stored
// once, in the map from text to code, and the codes point back into it.
class QXCOMMON_API QXStringEncoder : public IQXEncoder {
 public:
  // Empty; n is only the room made for the codes.
  explicit QXStringEncoder(int n);
  // Empty, then Encode of every text in order.
  explicit QXStringEncoder(const std::vector<std::string>& texts);
  QXStringEncoder(const QXStringEncoder& other);
  QXStringEncoder& operator=(const QXStringEncoder& other);

  // Points every code at its text in the map again.
  void CreateLinks();

  EncoderType GetEncoderType() const override;
  // The last code + 1.
  int GetNumberOfCategories() const override;
  // A number is never a category: -1.0.
  double Encode(double value) override;
  double EncodeConst(double value) const override;
  // The text's code, a new one if it has none; -1.0 for a missing text.
  double Encode(const std::string& value) override;
  // The text's code, or -1.0 if it is missing or has none.
  double EncodeConst(const std::string& value) const override;
  bool IsMissing(double value) const override;
  // Whether the text is one of the discrete missing strings.
  bool IsMissing(const std::string& value) const override;
  // The text of the code; empty for no code.
  std::string Decode(int code) const override;
  // Always the missing sentinel.
  double DecodeNum(int code) const override;
  IQXEncoder* Clone() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  // Declaring a text missing keeps its code, but Encode answers -1.0 for it.
  bool AddDiscreteUserMissing(const std::string& value, const std::string& label) override;
  bool AddDiscreteUserMissing(double value, const std::string& label) override;
  bool SetMissingInterval(double low, double high) override;
  const std::vector<std::string>* GetValueLabels() const override;
  const std::vector<double>* GetDiscreteMissValues() const override;
  const std::vector<std::string>* GetDiscreteMissValuesStr() const override;
  const std::vector<std::string>* GetMissValueLabels() const override;
  bool GetMissingInterval(double& low, double& high) const override;
  // Texts are written in code order, so a code survives a write and a read.
  // Reading keeps the missing strings until their turn comes, so it is meant
  // for a new encoder: a text this one held as missing gets no code.
  int WriteObjectXML(std::ostream& os, int nTabs) const override;
  int ReadObjectXML(std::ifstream& is) override;
  void Display() const override;

 private:
  std::map<std::string, int> codes;
  std::vector<const std::string*> links;
  std::vector<std::string> valueLabels;
  int lastCode;
  std::vector<std::string> missStrings;
  std::vector<std::string> missLabels;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXSTRINGENCODER_H
