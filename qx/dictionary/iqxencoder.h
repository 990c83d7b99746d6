#ifndef QX_DICTIONARY_IQXENCODER_H
#define QX_DICTIONARY_IQXENCODER_H

#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

// How a raw value of a field, a number or a text, becomes the double that a
// computation uses: a category code (a small whole number), the number itself,
// or a missing answer. Each variable owns one encoder; a component calls
// Encode on the first pass over its data and EncodeConst afterwards.
//
// Four classes implement it: QXContEncoder and QXRoundEncoder for numbers,
// QXCatNumEncoder and QXStringEncoder for categories. Each answers every
// operation, also those meant for the other kind of value, without throwing.
class QXCOMMON_API IQXEncoder {
 public:
  // The int values are what the persisted form and GetEncoderType carry.
  enum EncoderType : int {
    EncoderUnknown = 0,
    EncoderBinning = 1,
    EncoderCatNum = 2,
    EncoderString = 3,
    EncoderRound = 4
  };

  virtual ~IQXEncoder();

  virtual EncoderType GetEncoderType() const = 0;
  virtual int GetNumberOfCategories() const = 0;
  // Encode may grow a categorical encoder by a new code; EncodeConst never
  // changes the encoder.
  virtual double Encode(double value) = 0;
  virtual double EncodeConst(double value) const = 0;
  virtual double Encode(const std::string& value) = 0;
  virtual double EncodeConst(const std::string& value) const = 0;
  virtual bool IsMissing(double value) const = 0;
  virtual bool IsMissing(const std::string& value) const = 0;
  // The category of a code, as text or as a number.
  virtual std::string Decode(int code) const = 0;
  virtual double DecodeNum(int code) const = 0;
  // A new deep copy, owned by the caller.
  virtual IQXEncoder* Clone() const = 0;
  virtual void SetValueLabels(const std::vector<std::string>& labels) = 0;
  virtual void SetValueLabel(int code, const std::string& label) = 0;
  // User-missing values: a value and its label. False when the encoder has no
  // use for that kind of value.
  virtual bool AddDiscreteUserMissing(const std::string& value, const std::string& label) = 0;
  virtual bool AddDiscreteUserMissing(double value, const std::string& label) = 0;
  virtual bool SetMissingInterval(double low, double high) = 0;
  // Null where the encoder keeps no such list.
  virtual const std::vector<std::string>* GetValueLabels() const = 0;
  virtual const std::vector<double>* GetDiscreteMissValues() const = 0;
  virtual const std::vector<std::string>* GetDiscreteMissValuesStr() const = 0;
  virtual const std::vector<std::string>* GetMissValueLabels() const = 0;
  // Whether an interval is set; the outputs are untouched when it isn't.
  virtual bool GetMissingInterval(double& low, double& high) const = 0;
  // The persisted form: the number of elements written or read; 0 when the
  // stream wasn't good for writing. A failed read writes a line on std::cerr
  // and throws IOException* (the catcher deletes it).
  virtual int WriteObjectXML(std::ostream& os, int nTabs) const = 0;
  virtual int ReadObjectXML(std::ifstream& is) = 0;
  virtual void Display() const = 0;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_IQXENCODER_H
