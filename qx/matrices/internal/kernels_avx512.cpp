// The AVX-512 build of the kernels (compile options in qx/matrices/CMakeLists.txt).

#define QX_KERNEL_WIDTH 8
#define QX_KERNEL_TABLE kKernelsAvx512
#define QX_KERNEL_NAME "AVX-512"
#include "qx/matrices/internal/kernelbody.h"
