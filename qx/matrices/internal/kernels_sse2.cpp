// The SSE2 build of the kernels (compile options in qx/matrices/CMakeLists.txt).

#define QX_KERNEL_WIDTH 2
#define QX_KERNEL_TABLE kKernelsSse2
#define QX_KERNEL_NAME "SSE2"
#include "qx/matrices/internal/kernelbody.h"
