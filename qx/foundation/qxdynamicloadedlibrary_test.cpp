#include "qx/foundation/qxdynamicloadedlibrary.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace QXCommon_850 {
namespace {

namespace fs = std::filesystem;

TEST(QXDynamicLoadedLibraryTest, DecoratesLibraryNames) {
  EXPECT_EQ(QXDecorateLibraryName("abc"), "libabc.so");
  EXPECT_EQ(QXDecorateLibraryName("dir/abc"), "dir/libabc.so");
  EXPECT_EQ(QXDecorateLibraryName("/opt/a.b/abc"), "/opt/a.b/libabc.so");
  EXPECT_EQ(QXDecorateLibraryName("libabc.so"), "libabc.so");
  EXPECT_EQ(QXDecorateLibraryName("a.so"), "a.so");
  EXPECT_EQ(QXDecorateLibraryName(".so"), "lib.so.so");  // three characters are decorated
  EXPECT_EQ(QXDecorateLibraryName("abc.so.6"), "libabc.so.6.so");
  EXPECT_EQ(QXDecorateLibraryName(""), "lib.so");
}

TEST(QXDynamicLoadedLibraryTest, LoadsOnceAndReportsTheLoadersWords) {
  QXDynamicLoadedLibrary math("libm.so.6", 1);
  EXPECT_EQ(math.LoadLibraryNow(), 0);
  EXPECT_EQ(math.LoadLibraryNow(), 0);
  EXPECT_EQ(math.GetErrorText(), "");
  auto cosine = reinterpret_cast<double (*)(double)>(math.GetSymbolAddress("cos"));
  ASSERT_NE(cosine, nullptr);
  EXPECT_EQ(cosine(0.0), 1.0);

  EXPECT_EQ(math.GetSymbolAddress("qx_no_such_symbol"), nullptr);
  EXPECT_NE(math.GetErrorText().find("qx_no_such_symbol"), std::string::npos);
  EXPECT_NE(math.GetSymbolAddress("sin"), nullptr);
  EXPECT_EQ(math.GetErrorText(), "");  // a success forgets the last failure

  QXDynamicLoadedLibrary missing("libqx_no_such_library.so", 0);
  EXPECT_EQ(missing.LoadLibraryNow(), -1);
  EXPECT_NE(missing.GetErrorText().find("libqx_no_such_library.so"), std::string::npos);
  EXPECT_EQ(missing.GetSymbolAddress("cos"), nullptr);
  EXPECT_FALSE(missing.GetErrorText().empty());
}

// The folder of the library this program runs with, as the loader reports it.
std::string OwnLibraryPath() {
  Dl_info info;
  if (dladdr(reinterpret_cast<void*>(&QXDecorateLibraryName), &info) == 0) return "";
  return info.dli_fname;
}

TEST(QXDynamicLoadedLibraryTest, FindsItsOwnDirectory) {
  const fs::path library = OwnLibraryPath();
  ASSERT_FALSE(library.empty());
  const std::string directory = library.parent_path().string() + "/";
  EXPECT_EQ(QXGetFullPathName("qx-no-such-file.txt"), directory + "qx-no-such-file.txt");
  EXPECT_EQ(QXDynamicLoadedLibrary::QXDecorateDynamicPathName("qxnosuchplugin"),
            directory + "libqxnosuchplugin.so");
}

// Runs the probe program against a copy of the library in `libDir`.
std::string Probe(const fs::path& libDir, const std::string& name) {
  const std::string command =
      "LD_LIBRARY_PATH='" + libDir.string() + "' '" QX_LOCATE_PROBE "' '" + name + "' 2>&1";
  std::string output;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    char buffer[4096];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr)
      output += buffer;
    pclose(pipe);
  }
  if (!output.empty() && output.back() == '\n') output.pop_back();
  return output;
}

TEST(QXDynamicLoadedLibraryTest, PrefersTheSiblingDirectoryOfACopyInATempFolder) {
  const fs::path library = OwnLibraryPath();
  ASSERT_FALSE(library.empty());
  char pattern[] = "/tmp/qxlocateXXXXXX";
  ASSERT_NE(mkdtemp(pattern), nullptr);
  const fs::path root = pattern;
  const fs::path lib = root / "lib";
  fs::create_directories(lib);
  fs::copy_file(library, lib / "libqxcommon850r.so.8");

  // Without the link under its own file name the library can't find itself.
  EXPECT_EQ(Probe(lib, "model.xml"), "model.xml");

  fs::create_symlink("libqxcommon850r.so.8", lib / "libqxcommon850r.so");
  const std::string own = lib.string() + "/";
  EXPECT_EQ(Probe(lib, "model.xml"), own + "model.xml");

  const fs::path sibling = root / "ext" / "bin" / "tarn.common";
  fs::create_directories(sibling);
  std::ofstream(sibling / "model.xml") << "x";
  EXPECT_EQ(Probe(lib, "model.xml"), own + "../ext/bin/tarn.common/model.xml");
  EXPECT_EQ(Probe(lib, "other.xml"), own + "other.xml");

  fs::remove_all(root);
}

}  // namespace
}  // namespace QXCommon_850
