#ifndef QX_DICTIONARY_INTERNAL_VARIABLEPARTS_H
#define QX_DICTIONARY_INTERNAL_VARIABLEPARTS_H

// Pieces the variable classes share: deep assignment of what they own, and
// the persisted form of the replacement text and of the encoder. Never
// installed.

#include <string>

#include "qx/dictionary/internal/persist.h"
#include "qx/dictionary/iqxencoder.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {
namespace internal {

// Makes `mine` a deep copy of `theirs`: through the assignment of Encoder
// where both are one, else by deleting and cloning; null where `theirs` is.
template <typename Encoder>
void AssignEncoder(IQXEncoder*& mine, const IQXEncoder* theirs) {
  if (theirs == nullptr) {
    delete mine;
    mine = nullptr;
    return;
  }
  Encoder* target = dynamic_cast<Encoder*>(mine);
  const Encoder* source = dynamic_cast<const Encoder*>(theirs);
  if (target != nullptr && source != nullptr) {
    *target = *source;
    return;
  }
  IQXEncoder* copy = theirs->Clone();
  delete mine;
  mine = copy;
}

// Replaces the owned element by a clone of `theirs`, or null.
inline void AssignElement(XMLElement*& mine, const XMLElement* theirs) {
  XMLElement* copy = theirs != nullptr ? theirs->Clone() : nullptr;
  delete mine;
  mine = copy;
}

// The replacement flag, then the text if it is set.
inline void WriteReplacement(ObjWriter& out, bool has, const std::string& text) {
  out.Value(has);
  if (has) out.Value(text);
}

inline void ReadReplacement(ObjReader& in, bool& has, std::string& text) {
  in.Value(has);
  if (has) in.Value(text);
}

// The encoder's type (0 without one), then the encoder one level deeper.
inline void WriteEncoder(ObjWriter& out, const IQXEncoder* encoder) {
  out.Enum(encoder != nullptr ? encoder->GetEncoderType() : IQXEncoder::EncoderUnknown);
  if (encoder != nullptr) out.Nested(encoder->WriteObjectXML(out.Stream(), out.Depth() + 1));
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DICTIONARY_INTERNAL_VARIABLEPARTS_H
