#include "qx/foundation/qxdynamicloadedlibrary.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

namespace QXCommon_850 {

namespace {
std::string LoaderError() {
  const char* text = dlerror();
  return text != nullptr ? std::string(text) : std::string();
}
}  // namespace

QXDynamicLoadedLibrary::QXDynamicLoadedLibrary(const std::string& libraryName, int loadMode)
    : handle(nullptr),
      mode(loadMode),
      flags(loadMode == 1 ? RTLD_LAZY : RTLD_NOW),
      name(libraryName) {}

// The handle is left open on purpose: code from the library may still be in use.
QXDynamicLoadedLibrary::~QXDynamicLoadedLibrary() {}

int QXDynamicLoadedLibrary::LoadLibraryNow() {
  error.clear();
  if (handle != nullptr) return 0;
  handle = dlopen(name.c_str(), flags);
  if (handle == nullptr) {
    error = LoaderError();
    return -1;
  }
  return 0;
}

void* QXDynamicLoadedLibrary::GetSymbolAddress(const std::string& symbol) {
  error.clear();
  if (LoadLibraryNow() != 0) return nullptr;
  dlerror();  // forget any earlier failure so the text below is this one's
  void* address = dlsym(handle, symbol.c_str());
  if (address == nullptr) error = LoaderError();
  return address;
}

std::string QXDynamicLoadedLibrary::QXDecorateDynamicPathName(const std::string& name) {
  return QXGetFullPathName(QXDecorateLibraryName(name));
}

const std::string& QXDynamicLoadedLibrary::GetErrorText() const {
  return error;
}

}  // namespace QXCommon_850

std::string QXDecorateLibraryName(const std::string& name) {
  const std::string suffix = ".so";
  if (name.size() > suffix.size() &&
      name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0) {
    return name;
  }
  const std::string::size_type slash = name.rfind('/');
  const std::string::size_type split = slash == std::string::npos ? 0 : slash + 1;
  return name.substr(0, split) + "lib" + name.substr(split) + suffix;
}

// The directory in the path of the first object, from `map` on along the
// chain, whose path holds `file`; empty if there is none.
static bool DirectoryInChain(const struct link_map* map, const std::string& file,
                             std::string& directory) {
  for (; map != nullptr; map = map->l_next) {
    if (map->l_name == nullptr) continue;
    const std::string path(map->l_name);
    const std::string::size_type hit = path.rfind(file);
    if (hit != std::string::npos) {
      directory = path.substr(0, hit);
      return true;
    }
  }
  return false;
}

std::string QXGetFullPathName(const std::string& name) {
  const std::string ownFile = QXDecorateLibraryName(std::string("qxcommon") + "850" + "r");

  // The loader knows where it found this library: ask for it by its own file
  // name and read the path from the chain of loaded objects.
  std::string directory;
  bool found = false;
  if (void* self = dlopen(ownFile.c_str(), RTLD_NOW)) {
    struct link_map* map = nullptr;
    if (dlinfo(self, RTLD_DI_LINKMAP, &map) == 0) found = DirectoryInChain(map, ownFile, directory);
    dlclose(self);  // only drops the reference just taken; the library stays loaded
  } else {
    // The bare name can fail to resolve (no link under that name, or a
    // sanitizer's dlopen taking the place of this library as the caller);
    // the loader's entry for the code running here names the same file.
    Dl_info info;
    struct link_map* map = nullptr;
    if (dladdr1(reinterpret_cast<void*>(&QXGetFullPathName), &info, reinterpret_cast<void**>(&map),
                RTLD_DL_LINKMAP) != 0) {
      found = DirectoryInChain(map, ownFile, directory);
    }
  }

  std::string result = name;
  if (found) {
    const std::string sibling = directory + "../ext/bin/tarn.common/" + name;
    struct stat info;
    result = stat(sibling.c_str(), &info) == 0 ? sibling : directory + name;
  }
  return result;
}
