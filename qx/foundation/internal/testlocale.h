#ifndef QX_FOUNDATION_INTERNAL_TESTLOCALE_H
#define QX_FOUNDATION_INTERNAL_TESTLOCALE_H

// Test support (never installed): switches the C library to a named locale,
// compiling it with localedef into a folder of the build tree (found through
// LOCPATH) when the system lacks it. Nothing outside that folder is touched.

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace QXCommon_850 {
namespace internal {

// Sets LC_ALL to `name`, made if need be from the locale source `source` and
// the character map `charmap`. False, with the reason in `why`, if it can't.
inline bool UseLocale(const std::string& name, const std::string& source,
                      const std::string& charmap, const std::string& cacheDir, std::string& why) {
  namespace fs = std::filesystem;
  // The C library remembers a failed look-up for good, so the system's own
  // locales are tried without LOCPATH, and the folder only once it holds the
  // locale. Only the C locale is set: a C++ locale made from a LOCPATH folder
  // leaks inside the C library, which the leak checker would report.
  unsetenv("LOCPATH");
  if (std::setlocale(LC_ALL, name.c_str()) != nullptr) return true;
  const fs::path target = fs::path(cacheDir) / name;
  std::error_code ec;
  if (!fs::exists(target / "LC_NUMERIC", ec)) {
    // Made in a private folder and moved into place in one step, so test
    // programs running side by side never see half a locale.
    const fs::path scratch = fs::path(cacheDir) / (".tmp-" + name + std::to_string(getpid()));
    fs::create_directories(cacheDir, ec);
    const std::string command =
        "localedef -i " + source + " -f " + charmap + " '" + scratch.string() + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) >= 0 && fs::exists(scratch / "LC_NUMERIC", ec)) {
      fs::rename(scratch, target, ec);
    }
    fs::remove_all(scratch, ec);
  }
  setenv("LOCPATH", cacheDir.c_str(), 1);
  if (fs::exists(target / "LC_NUMERIC", ec) && std::setlocale(LC_ALL, name.c_str()) != nullptr) {
    return true;
  }
  why = "locale " + name + " is not installed and localedef could not make it from " + source +
        " (Debian package 'locales')";
  std::setlocale(LC_ALL, "C");
  return false;
}

inline void UseClassicLocale() {
  std::setlocale(LC_ALL, "C");
}

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_TESTLOCALE_H
