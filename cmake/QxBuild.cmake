# Helpers that give every subsystem folder the same shape: an object library
# linked into the one shared library, a test program, and optional benchmarks.

# Flags every translation unit of the project gets: exact IEEE arithmetic
# (no contraction into fused multiply-adds) and the warning level.
add_library(qx_build_flags INTERFACE)
target_compile_options(qx_build_flags INTERFACE
  -ffp-contract=off -fno-fast-math -Wall -Wextra
  $<$<BOOL:${QXCOMMON_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_features(qx_build_flags INTERFACE cxx_std_17)

# qx_add_subsystem(<name> SOURCES <files...> [DEPENDS <subsystems below it...>])
function(qx_add_subsystem name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  set(target qx_${name})
  add_library(${target} OBJECT ${ARG_SOURCES})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:qx_build_flags>)
  foreach(dep IN LISTS ARG_DEPENDS)
    target_link_libraries(${target} PUBLIC qx_${dep})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY QX_SUBSYSTEMS ${target})
endfunction()

# qx_add_tests(<name> SOURCES <files...>): one GoogleTest program per folder.
function(qx_add_tests name)
  if(NOT QXCOMMON_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  set(target qx_${name}_tests)
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE qxcommon GTest::gtest_main qx_build_flags)
  target_compile_definitions(${target} PRIVATE
    QX_TEST_SHARED_DATA="${QXCOMMON_SHARED_DATA_DIR}"
    QX_TEST_SOURCE_DIR="${CMAKE_CURRENT_SOURCE_DIR}"
    QX_TEST_BINARY_DIR="${PROJECT_BINARY_DIR}")
  gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS ${name})
endfunction()

# qx_add_benchmarks(<name> SOURCES <files...> [LIBRARIES <extra...>]):
# Google Benchmark programs, built on request and never part of ctest.
function(qx_add_benchmarks name)
  if(NOT QXCOMMON_BUILD_BENCHMARKS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  set(target qx_${name}_benchmarks)
  add_executable(${target} ${ARG_SOURCES}
                 ${PROJECT_SOURCE_DIR}/qx/foundation/internal/benchmarkmain.cpp)
  target_link_libraries(${target} PRIVATE qxcommon benchmark::benchmark qx_build_flags
                        ${ARG_LIBRARIES})
  if(QX_LAPACK_LIBRARY AND QX_BLAS_LIBRARY)
    target_link_libraries(${target} PRIVATE ${QX_LAPACK_LIBRARY} ${QX_BLAS_LIBRARY})
    target_compile_definitions(${target} PRIVATE QX_HAVE_LAPACK=1)
  endif()
endfunction()
