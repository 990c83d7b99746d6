#ifndef QX_FOUNDATION_QXEXPORT_H
#define QX_FOUNDATION_QXEXPORT_H

// Marks the classes and functions that make up the library's public surface.
// The library is built with hidden visibility, so anything without this mark
// stays inside the shared object.
#if defined(__GNUC__) || defined(__clang__)
#define QXCOMMON_API __attribute__((visibility("default")))
#else
#define QXCOMMON_API
#endif

#endif  // QX_FOUNDATION_QXEXPORT_H
