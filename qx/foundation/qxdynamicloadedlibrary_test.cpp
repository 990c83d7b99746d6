#include "qx/foundation/qxdynamicloadedlibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace QXCommon_850 {
namespace {

namespace fs = std::filesystem;

TEST(QXDynamicLoadedLibraryTest, NamesAndLoading) {
  EXPECT_EQ(QXDecorateLibraryName("/opt/a.b/abc"), "/opt/a.b/libabc.so");
  EXPECT_EQ(QXDecorateLibraryName("libabc.so"), "libabc.so");
  EXPECT_EQ(QXDecorateLibraryName(".so"), "lib.so.so");  // three characters are decorated

  QXDynamicLoadedLibrary math("libm.so.6", 1);
  EXPECT_EQ(math.LoadLibraryNow(), 0);
  EXPECT_EQ(math.LoadLibraryNow(), 0);
  EXPECT_EQ(math.GetSymbolAddress("qx_no_such_symbol"), nullptr);
  EXPECT_NE(math.GetErrorText().find("qx_no_such_symbol"), std::string::npos);
  auto cosine = reinterpret_cast<double (*)(double)>(math.GetSymbolAddress("cos"));
  ASSERT_NE(cosine, nullptr);
  EXPECT_EQ(cosine(0.0), 1.0);
  EXPECT_EQ(math.GetErrorText(), "");  // a success forgets the last failure
  QXDynamicLoadedLibrary missing("libqx_no_such_library.so", 0);
  EXPECT_EQ(missing.GetSymbolAddress("cos"), nullptr);
  EXPECT_NE(missing.GetErrorText().find("libqx_no_such_library.so"), std::string::npos);
}

// The file of the library this program runs with, as the loader reports it.
fs::path OwnLibrary() {
  Dl_info info;
  if (dladdr(reinterpret_cast<void*>(&QXDecorateLibraryName), &info) == 0) return {};
  return info.dli_fname;
}

// Runs the probe program against a copy of the library in `libDir`, which
// this program can't load a second time.
std::string Probe(const fs::path& libDir, const std::string& name) {
  const std::string command =
      "LD_LIBRARY_PATH='" + libDir.string() + "' '" QX_LOCATE_PROBE "' '" + name + "' 2>&1";
  char buffer[4096] = "";
  if (FILE* pipe = popen(command.c_str(), "r")) {
    if (fgets(buffer, sizeof buffer, pipe) == nullptr) buffer[0] = '\0';
    pclose(pipe);
  }
  std::string output = buffer;
  if (!output.empty() && output.back() == '\n') output.pop_back();
  return output;
}

TEST(QXDynamicLoadedLibraryTest, FindsItsOwnDirectoryAndPrefersTheSibling) {
  const std::string directory = OwnLibrary().parent_path().string() + "/";
  ASSERT_NE(directory, "/");
  EXPECT_EQ(QXGetFullPathName("qx-no-such-file"), directory + "qx-no-such-file");
  EXPECT_EQ(QXDynamicLoadedLibrary::QXDecorateDynamicPathName("qxplugin"),
            directory + "libqxplugin.so");

  char pattern[] = "/tmp/qxlocateXXXXXX";
  ASSERT_NE(mkdtemp(pattern), nullptr);
  const fs::path root = pattern, lib = root / "lib";
  fs::create_directories(lib);
  fs::copy_file(OwnLibrary(), lib / "libqxcommon850r.so.8");
  const std::string own = lib.string() + "/";
  EXPECT_EQ(Probe(lib, "model.xml"), own + "model.xml");
  fs::create_symlink("libqxcommon850r.so.8", lib / "libqxcommon850r.so");
  EXPECT_EQ(Probe(lib, "model.xml"), own + "model.xml");
  fs::create_directories(root / "ext/bin/tarn.common");
  std::ofstream(root / "ext/bin/tarn.common/model.xml") << "x";
  EXPECT_EQ(Probe(lib, "model.xml"), own + "../ext/bin/tarn.common/model.xml");
  EXPECT_EQ(Probe(lib, "other.xml"), own + "other.xml");
  fs::remove_all(root);
}

}  // namespace
}  // namespace QXCommon_850
