#ifndef QX_FUZZ_SCRATCHFILE_H
#define QX_FUZZ_SCRATCHFILE_H

// The file a fuzz target writes each input to and reads back from: made once
// at start-up from a mkstemp pattern, removed when the process exits.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace qxfuzz {

inline std::string& ScratchPath() {
  static std::string path;
  return path;
}

// Makes the file from a pattern such as "/tmp/name_XXXXXX"; aborts if it can't.
inline void MakeScratchFile(const char* pattern) {
  std::string name = pattern;
  const int fd = mkstemp(&name[0]);
  if (fd < 0) std::abort();
  close(fd);
  ScratchPath() = name;
  std::atexit([] { std::remove(ScratchPath().c_str()); });
}

}  // namespace qxfuzz

#endif  // QX_FUZZ_SCRATCHFILE_H
