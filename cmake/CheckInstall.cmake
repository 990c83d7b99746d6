# Installs the build tree into a fresh prefix, then builds and runs the small
# consumer in cmake/consumer against it twice: through find_package and through
# pkg-config, with nothing but the prefix to go on.
# Usage: cmake -DBUILD_DIR= -DWORK_DIR= -DCONSUMER_DIR= -DCXX= -DGENERATOR= -P CheckInstall.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " cmd "${ARGN}")
    message(FATAL_ERROR "Failed (${rc}): ${cmd}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# The SONAME chain and the headers must be in place.
file(GLOB libdirs LIST_DIRECTORIES true ${prefix}/lib ${prefix}/lib64 ${prefix}/lib/*-linux-gnu)
set(libdir "")
foreach(dir IN LISTS libdirs)
  if(EXISTS ${dir}/libqxcommon850r.so)
    set(libdir ${dir})
  endif()
endforeach()
if(NOT libdir)
  message(FATAL_ERROR "libqxcommon850r.so not installed under ${prefix}")
endif()
file(GLOB real ${libdir}/libqxcommon850r.so.*.*.*)
if(NOT IS_SYMLINK ${libdir}/libqxcommon850r.so OR NOT real)
  message(FATAL_ERROR "libqxcommon850r.so is not a link to a versioned file")
endif()
foreach(header qxcommon.h foundation/qxstatusshared.h)
  if(NOT EXISTS ${prefix}/include/qx/${header})
    message(FATAL_ERROR "Header qx/${header} not installed")
  endif()
endforeach()

# 1. CMake package.
set(cm ${WORK_DIR}/cmake-consumer)
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${cm} -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${cm})
run(${cm}/qxconsumer)
message(STATUS "find_package consumer: ${last_output}")

# 2. pkg-config.
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
set(ENV{PKG_CONFIG_PATH} ${libdir}/pkgconfig)
run(${PKG_CONFIG} --cflags --libs qxcommon)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 ${CONSUMER_DIR}/main.cpp ${flags} -o ${WORK_DIR}/pc-consumer)
set(ENV{LD_LIBRARY_PATH} ${libdir})
run(${WORK_DIR}/pc-consumer)
message(STATUS "pkg-config consumer: ${last_output}")
