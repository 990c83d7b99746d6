# MPI for the optional companion library qxcommon::mpi (qx/mpi), and the
# helper that runs a program under mpirun as a ctest case. Nothing here
# touches the core library, which never links MPI.
option(QXCOMMON_BUILD_MPI "Build libqxcommon850r_mpi when CMake finds MPI" ON)
set(QXCOMMON_HAVE_MPI FALSE)
if(QXCOMMON_BUILD_MPI)
  # The C interface only: no C++ bindings are linked or declared.
  set(MPI_CXX_SKIP_MPICXX ON)
  find_package(MPI QUIET COMPONENTS CXX)
  if(MPI_CXX_FOUND AND MPIEXEC_EXECUTABLE)
    set(QXCOMMON_HAVE_MPI TRUE)
    execute_process(COMMAND ${MPIEXEC_EXECUTABLE} --version OUTPUT_VARIABLE qx_mpiexec_version
                    ERROR_QUIET)
    string(REGEX MATCH "^[^\n]*" qx_mpiexec_version "${qx_mpiexec_version}")
    message(STATUS "MPI: ${qx_mpiexec_version}; building qxcommon::mpi")
  else()
    message(STATUS "MPI not found: qxcommon::mpi and its tests are left out "
                   "(Debian: libopenmpi-dev openmpi-bin)")
  endif()
endif()

# qx_add_mpirun_test(<name> <ranks> <program> <arguments...>): the program on
# <ranks> processes of this machine, allowed to outnumber the cores and to
# run as root, with a timeout so that a rank left waiting can't hang the
# run. Under the sanitizers, leaks inside the MPI libraries themselves are
# suppressed (cmake/lsan_mpi.supp); full stacks are needed to see them there.
# QX_MPIRUN: the launcher and its flags, up to the number of processes.
# QX_MPIRUN_ENVIRONMENT: what a test that launches needs in its environment.
set(QX_MPIRUN ${MPIEXEC_EXECUTABLE})
if(qx_mpiexec_version MATCHES "Open MPI|OpenRTE")
  list(APPEND QX_MPIRUN --oversubscribe)
endif()
list(APPEND QX_MPIRUN ${MPIEXEC_PREFLAGS} ${MPIEXEC_NUMPROC_FLAG})
set(QX_MPIRUN_ENVIRONMENT OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1)
if(QXCOMMON_SANITIZE)
  list(APPEND QX_MPIRUN_ENVIRONMENT
       "ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:fast_unwind_on_malloc=0"
       "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan_mpi.supp")
endif()

function(qx_add_mpirun_test name ranks)
  add_test(NAME ${name} COMMAND ${QX_MPIRUN} ${ranks} ${ARGN} ${MPIEXEC_POSTFLAGS})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${QX_MPIRUN_ENVIRONMENT}" TIMEOUT 60
                                          PROCESSORS 2)
endfunction()

# Where MPI is absent its tests are reported as skipped, with the reason.
function(qx_add_mpi_skip name)
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo
                                "skipped: MPI not found (Debian: libopenmpi-dev openmpi-bin)")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "skipped:" LABELS mpi)
endfunction()
