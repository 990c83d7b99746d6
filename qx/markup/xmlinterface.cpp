#include "qx/markup/xmlinterface.h"

namespace QXXML_850 {

ExportFormat::ExportFormat() : newParagraph(true), indentation(false), format(true), tabCount(0) {}

bool ExportFormat::HasIndentation() const {
  return format && indentation;
}

bool ExportFormat::IsNewParagraph() const {
  return format && newParagraph;
}

void ExportFormat::SetFormat(bool on) {
  format = on;
}

void ExportFormat::SetIndentation(bool on) {
  indentation = on;
}

void ExportFormat::SetIsNewParagraph(bool on) {
  newParagraph = on;
}

XMLInterface::~XMLInterface() {}

}  // namespace QXXML_850
