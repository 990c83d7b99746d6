#ifndef QX_DOCUMENTS_INTERNAL_DOCUMENTTEST_H
#define QX_DOCUMENTS_INTERNAL_DOCUMENTTEST_H

// Test support (never installed): an element as one line of text, and the
// comparison of a written document with its golden copy in testdata/.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "qx/markup/xmlelement.h"

namespace QXXML_850 {
namespace internal {

// The element written without line breaks; "null" for none.
inline std::string OneLine(const XMLElement* element) {
  if (element == nullptr) return "null";
  std::string out;
  ExportFormat format;
  format.SetFormat(false);
  element->ToString(out, format);
  return out;
}

// The same for an element handed over, which is deleted.
inline std::string Text(XMLElement* element) {
  std::unique_ptr<XMLElement> owner(element);
  return OneLine(element);
}

// On a difference the document made is left in the build tree, to be looked
// at and copied over the golden one if the change is meant (see
// testdata/README.md).
inline void ExpectGolden(const std::string& name, const std::string& text) {
  const std::string golden = std::string(QX_TEST_SOURCE_DIR) + "/testdata/" + name;
  std::ifstream in(golden, std::ios::binary);
  std::ostringstream expected;
  expected << in.rdbuf();
  if (in && expected.str() == text) return;
  const std::filesystem::path made =
      std::filesystem::path(QX_TEST_BINARY_DIR) / "documents_golden" / name;
  std::filesystem::create_directories(made.parent_path());
  std::ofstream(made, std::ios::binary) << text;
  ADD_FAILURE() << "the document differs from " << golden << "; what was written is in " << made;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_INTERNAL_DOCUMENTTEST_H
