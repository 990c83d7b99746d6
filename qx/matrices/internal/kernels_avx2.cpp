// The AVX2 build of the kernels (compile options in qx/matrices/CMakeLists.txt).

#define QX_KERNEL_WIDTH 4
#define QX_KERNEL_TABLE kKernelsAvx2
#define QX_KERNEL_NAME "AVX2"
#include "qx/matrices/internal/kernelbody.h"
