# Builds and runs the small consumer in cmake/consumer against the library.
# By default it installs the build tree into a fresh prefix and builds the
# consumer against it twice, through find_package and through pkg-config, with
# nothing but the prefix to go on. With -DSOURCE_DIR=<source tree> it builds
# the consumer with the library added by add_subdirectory instead.
# With -DMPIRUN=<launcher up to the number of processes, "|" between its
# words> the MPI component is checked the same two ways, its consumer run on
# two processes.
# Usage: cmake [-DBUILD_DIR= | -DSOURCE_DIR=] -DWORK_DIR= -DCONSUMER_DIR= -DCXX= -DGENERATOR=
#        [-DMPIRUN=] -P CheckInstall.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " cmd "${ARGN}")
    message(FATAL_ERROR "Failed (${rc}): ${cmd}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

if(SOURCE_DIR)
  # Unoptimised: this compiles the whole library once more.
  set(sub ${WORK_DIR}/subdirectory-consumer)
  run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${sub} -G ${GENERATOR}
      -DCMAKE_CXX_COMPILER=${CXX} -DQXCOMMON_SOURCE_DIR=${SOURCE_DIR})
  run(${CMAKE_COMMAND} --build ${sub} --parallel 2)
  run(${sub}/qxconsumer)
  message(STATUS "add_subdirectory consumer: ${last_output}")
  return()
endif()

set(prefix ${WORK_DIR}/prefix)
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
run(${PKG_CONFIG} --variable=libdir qxcommon)
string(STRIP "${last_output}" pc_libdir)
# As the README shows: the run path tells the loader where the library is.
run(${CXX} -std=c++17 ${CONSUMER_DIR}/main.cpp ${flags} -Wl,-rpath,${pc_libdir}
    -o ${WORK_DIR}/pc-consumer)
run(${WORK_DIR}/pc-consumer)
message(STATUS "pkg-config consumer: ${last_output}")

if(NOT MPIRUN)
  return()
endif()
string(REPLACE "|" ";" MPIRUN "${MPIRUN}")
# 3. The MPI component through find_package(... COMPONENTS mpi).
if(NOT EXISTS ${prefix}/include/qx/mpi/qxmpipool.h OR NOT EXISTS ${libdir}/libqxcommon850r_mpi.so)
  message(FATAL_ERROR "the MPI component is not installed under ${prefix}")
endif()
set(cmm ${WORK_DIR}/cmake-mpi-consumer)
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${cmm} -G ${GENERATOR} -DQXCONSUMER_MPI=ON
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${cmm})
run(${MPIRUN} 2 ${cmm}/qxconsumer_mpi)
message(STATUS "find_package mpi consumer: ${last_output}")

# 4. pkg-config, qxcommon-mpi.
run(${PKG_CONFIG} --cflags --libs qxcommon-mpi)
string(STRIP "${last_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 ${CONSUMER_DIR}/main_mpi.cpp ${flags} -Wl,-rpath,${pc_libdir}
    -o ${WORK_DIR}/pc-mpi-consumer)
run(${MPIRUN} 2 ${WORK_DIR}/pc-mpi-consumer)
message(STATUS "pkg-config mpi consumer: ${last_output}")
