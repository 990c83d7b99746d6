#ifndef QX_FOUNDATION_INTERNAL_TESTLOCALE_H
#define QX_FOUNDATION_INTERNAL_TESTLOCALE_H

// Test support (never installed, used only by the test programs): switches the
// process to a named locale, compiling it with localedef into a folder of the
// build tree when the system doesn't have it. Nothing outside that folder is
// touched: the compiled locales are found through LOCPATH.

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <string>
#include <system_error>

namespace QXCommon_850 {
namespace internal {

// Sets LC_ALL and the global C++ locale to `name` (say "de_DE.UTF-8", made
// from the locale source `source` and the character map `charmap`). Returns
// false, with the reason in `why`, when the locale can't be had.
inline bool UseLocale(const std::string& name, const std::string& source,
                      const std::string& charmap, const std::string& cacheDir, std::string& why) {
  namespace fs = std::filesystem;
  // The C library remembers a failed look-up for good, so the system's own
  // locales are tried without LOCPATH, and the compiled folder only once the
  // locale is surely in it.
  unsetenv("LOCPATH");
  if (std::setlocale(LC_ALL, name.c_str()) == nullptr) {
    const fs::path target = fs::path(cacheDir) / name;
    std::error_code ec;
    if (!fs::exists(target / "LC_NUMERIC", ec)) {
      // Compile into a private folder, then move it into place in one step, so
      // test programs running side by side never see half a locale.
      fs::create_directories(cacheDir, ec);
      const fs::path scratch =
          fs::path(cacheDir) / (".tmp-" + name + "-" + std::to_string(getpid()));
      fs::remove_all(scratch, ec);
      const std::string command = "localedef -i " + source + " -f " + charmap + " '" +
                                  scratch.string() + "' >/dev/null 2>&1";
      const int status = std::system(command.c_str());
      (void)status;  // localedef warns by its exit code; the files say whether it worked
      if (fs::exists(scratch / "LC_NUMERIC", ec)) fs::rename(scratch, target, ec);
      fs::remove_all(scratch, ec);
    }
    if (!fs::exists(target / "LC_NUMERIC", ec)) {
      why = "locale " + name + " is not installed and localedef could not make it from " + source +
            " (install the 'locales' package)";
      std::setlocale(LC_ALL, "C");
      return false;
    }
    setenv("LOCPATH", cacheDir.c_str(), 1);
    if (std::setlocale(LC_ALL, name.c_str()) == nullptr) {
      why = "locale " + name + " was compiled but could not be loaded";
      std::setlocale(LC_ALL, "C");
      return false;
    }
  }
  std::locale::global(std::locale(std::setlocale(LC_ALL, nullptr)));
  return true;
}

// Back to the classic locale for the C library and for C++.
inline void UseClassicLocale() {
  std::locale::global(std::locale::classic());
  std::setlocale(LC_ALL, "C");
}

}  // namespace internal
}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_INTERNAL_TESTLOCALE_H
