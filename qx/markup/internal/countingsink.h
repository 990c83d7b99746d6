#ifndef QX_MARKUP_INTERNAL_COUNTINGSINK_H
#define QX_MARKUP_INTERNAL_COUNTINGSINK_H

// Benchmark support (never installed): places to write to that count the
// bytes and throw them away, for the library's streams and for libxml2's
// output callbacks, so that a writer's own work is timed and not a disk's.

#include <cstddef>
#include <streambuf>

namespace QXXML_850 {
namespace internal {

class CountingBuffer : public std::streambuf {
 public:
  std::size_t count = 0;

 protected:
  int_type overflow(int_type c) override {
    ++count;
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char*, std::streamsize n) override {
    count += static_cast<std::size_t>(n);
    return n;
  }
};

// An xmlOutputWriteCallback: `context` is a std::size_t counter.
inline int CountBytes(void* context, const char*, int length) {
  *static_cast<std::size_t*>(context) += static_cast<std::size_t>(length);
  return length;
}

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_MARKUP_INTERNAL_COUNTINGSINK_H
