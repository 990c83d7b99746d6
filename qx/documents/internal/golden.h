#ifndef QX_DOCUMENTS_INTERNAL_GOLDEN_H
#define QX_DOCUMENTS_INTERNAL_GOLDEN_H

// Test support (never installed): compares a written document with its
// golden copy in testdata/, and on a difference leaves what was made in the
// build tree to be looked at (and copied over the golden one if the change is
// meant). See testdata/README.md.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace QXXML_850 {
namespace internal {

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

#endif  // QX_DOCUMENTS_INTERNAL_GOLDEN_H
