# Installation: headers under include/qx, the shared object with its SONAME
# links, a CMake package giving qxcommon::qxcommon, and a pkg-config file.
include(CMakePackageConfigHelpers)

set(QXCOMMON_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qxcommon)

install(TARGETS qxcommon EXPORT qxcommonTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_COMPONENT Development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/qx/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qx
        FILES_MATCHING PATTERN "*.h"
        PATTERN "internal" EXCLUDE
        PATTERN "mpi" EXCLUDE
        PATTERN "testdata" EXCLUDE)
install(EXPORT qxcommonTargets NAMESPACE qxcommon:: DESTINATION ${QXCOMMON_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/qxcommonConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qxcommonConfig.cmake INSTALL_DESTINATION ${QXCOMMON_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qxcommonConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qxcommonConfig.cmake
              ${PROJECT_BINARY_DIR}/qxcommonConfigVersion.cmake
        DESTINATION ${QXCOMMON_CMAKE_DIR})

# pkg-config paths are made relative to the .pc file so the prefix can move.
file(RELATIVE_PATH QXCOMMON_PC_TO_PREFIX
     /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/qxcommon.pc.in ${PROJECT_BINARY_DIR}/qxcommon.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qxcommon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The MPI companion, when built: its own component of the same package
# (find_package(qxcommon COMPONENTS mpi) gives qxcommon::mpi) and its own
# pkg-config file, qxcommon-mpi.pc, which carries the MPI flags it was built with.
if(TARGET qxcommon_mpi)
  install(TARGETS qxcommon_mpi EXPORT qxcommonMpiTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT mpi NAMELINK_COMPONENT mpi
          INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(FILES ${PROJECT_SOURCE_DIR}/qx/mpi/qxmpipool.h
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qx/mpi COMPONENT mpi)
  install(EXPORT qxcommonMpiTargets NAMESPACE qxcommon:: DESTINATION ${QXCOMMON_CMAKE_DIR}
          COMPONENT mpi)
  set(QXCOMMON_MPI_CFLAGS "")
  foreach(dir IN LISTS MPI_CXX_INCLUDE_DIRS)
    string(APPEND QXCOMMON_MPI_CFLAGS " -I${dir}")
  endforeach()
  foreach(definition IN LISTS MPI_CXX_COMPILE_DEFINITIONS)
    string(APPEND QXCOMMON_MPI_CFLAGS " -D${definition}")
  endforeach()
  list(JOIN MPI_CXX_LIBRARIES " " QXCOMMON_MPI_LIBS)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/qxcommon-mpi.pc.in ${PROJECT_BINARY_DIR}/qxcommon-mpi.pc
                 @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/qxcommon-mpi.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT mpi)
endif()
