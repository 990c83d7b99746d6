# Fails if the shared object holds any fused multiply-add instruction, which
# would change the last bits of the library's sums, or lacks the AVX2 and
# AVX-512 builds of the kernels that are picked at load time.
# Usage: cmake -DLIBRARY=<file> -DOBJDUMP=<objdump> -P CheckNoFusedMultiplyAdd.cmake
if(NOT OBJDUMP)
  set(OBJDUMP objdump)
endif()
execute_process(COMMAND ${OBJDUMP} -d --no-show-raw-insn ${LIBRARY}
                OUTPUT_VARIABLE listing RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[\t ]v?fn?m(add|sub|addsub|subadd)[0-9][0-9][0-9][a-z]*[\t ][^\n]*"
       fused "${listing}")
if(fused)
  list(LENGTH fused count)
  list(GET fused 0 first)
  message(FATAL_ERROR "${count} fused multiply-add instructions in ${LIBRARY}, the first:${first}")
endif()
foreach(reg IN ITEMS ymm zmm)
  string(FIND "${listing}" "%${reg}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "No instruction on %${reg} registers in ${LIBRARY}: a kernel build is missing")
  endif()
endforeach()
message(STATUS "No fused multiply-add in ${LIBRARY}; AVX2 and AVX-512 kernels present")
