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
# Called from qx/<name>/. The subsystem compiles against an include root of its
# own, build/layers/<name>, holding only qx/<name> (a link to the folder), and
# sees the roots of the subsystems it DEPENDS on, and theirs, through linking.
# A header of any other folder is not found, so a wrong-way include fails to
# build. Tests, benchmarks and examples link qxcommon and see every folder.
function(qx_add_subsystem name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  set(target qx_${name})
  if(NOT CMAKE_CURRENT_SOURCE_DIR STREQUAL "${PROJECT_SOURCE_DIR}/qx/${name}")
    message(FATAL_ERROR "qx_add_subsystem(${name}) belongs in qx/${name}/CMakeLists.txt")
  endif()
  foreach(dep IN LISTS ARG_DEPENDS)
    if(NOT TARGET qx_${dep})
      message(FATAL_ERROR "Subsystem ${name} depends on '${dep}', which is not a subsystem "
                          "added before it in the top-level CMakeLists.txt")
    endif()
  endforeach()
  set(root ${PROJECT_BINARY_DIR}/layers/${name})
  file(MAKE_DIRECTORY ${root}/qx)
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/qx/${name} SYMBOLIC)
  add_library(${target} OBJECT ${ARG_SOURCES})
  target_include_directories(${target} PUBLIC ${root})
  set_target_properties(${target} PROPERTIES QX_DEPENDS "${ARG_DEPENDS}")
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

# qx_add_internal_tests(<name> SOURCES <files...>): a GoogleTest program that
# links the objects of subsystem <name> and of those it depends on, rather
# than the shared library, so that it may reach internal functions (such as
# the switch that forces a kernel path) which the library does not export.
function(qx_add_internal_tests name)
  if(NOT QXCOMMON_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  set(target qx_${name}_internal_tests)
  set(pending ${name})
  set(objects "")
  while(pending)
    list(POP_FRONT pending sub)
    if(NOT "$<TARGET_OBJECTS:qx_${sub}>" IN_LIST objects)
      list(APPEND objects "$<TARGET_OBJECTS:qx_${sub}>")
      get_target_property(depends qx_${sub} QX_DEPENDS)
      if(depends)
        list(APPEND pending ${depends})
      endif()
    endif()
  endwhile()
  add_executable(${target} ${ARG_SOURCES} ${objects})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${target} PRIVATE GTest::gtest_main qx_build_flags ${CMAKE_DL_LIBS})
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

# qx_add_layer_check(): a ctest case holding every subsystem to its DEPENDS
# (cmake/CheckLayers.cmake). It runs by itself at the end of the top-level
# CMakeLists.txt, once every subsystem has been added.
function(qx_add_layer_check)
  if(NOT QXCOMMON_BUILD_TESTS)
    return()
  endif()
  get_property(subsystems GLOBAL PROPERTY QX_SUBSYSTEMS)
  set(content "")
  set(names "")
  foreach(target IN LISTS subsystems)
    string(REGEX REPLACE "^qx_" "" name ${target})
    list(APPEND names ${name})
    get_target_property(depends ${target} QX_DEPENDS)
    get_target_property(dir ${target} SOURCE_DIR)
    get_target_property(sources ${target} SOURCES)
    list(TRANSFORM sources PREPEND "${dir}/")
    string(APPEND content
      "set(qx_${name}_depends \"${depends}\")\n"
      "set(qx_${name}_dir \"${dir}\")\n"
      "set(qx_${name}_sources \"${sources}\")\n"
      "set(qx_${name}_includes \"$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>\")\n")
  endforeach()
  set(layers ${PROJECT_BINARY_DIR}/layers/layers.cmake)
  file(GENERATE OUTPUT ${layers} CONTENT "set(qx_layers \"${names}\")\n${content}")
  add_test(NAME qxcommon.layers
           COMMAND ${CMAKE_COMMAND} -DLAYERS=${layers} -DCXX=${CMAKE_CXX_COMPILER}
                   -DWORK_DIR=${PROJECT_BINARY_DIR}/layers/check
                   -P ${PROJECT_SOURCE_DIR}/cmake/CheckLayers.cmake)
  set_tests_properties(qxcommon.layers PROPERTIES LABELS packaging)
endfunction()
cmake_language(DEFER DIRECTORY ${PROJECT_SOURCE_DIR} CALL qx_add_layer_check)

# Links libxml2 into a test or benchmark target, when both exist, and defines
# QX_HAVE_LIBXML2 for it. Tests read the library's XML back with a real
# parser; the library itself never uses libxml2. True in `found` if linked.
function(qx_use_libxml2 target found)
  set(${found} FALSE PARENT_SCOPE)
  if(NOT TARGET ${target})
    return()
  endif()
  find_package(LibXml2 QUIET)
  if(LibXml2_FOUND)
    target_link_libraries(${target} PRIVATE LibXml2::LibXml2)
    target_compile_definitions(${target} PRIVATE QX_HAVE_LIBXML2=1)
    set(${found} TRUE PARENT_SCOPE)
  endif()
endfunction()
