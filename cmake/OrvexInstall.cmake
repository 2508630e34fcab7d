# The installed package: headers, the module libraries as namespaced targets (orvex::core bundling the
# modules below the agent, orvex::agent, orvex::host), the `orvex` command, a CMake package (find_package(Orvex)) and pkg-config
# files (orvex, orvex-agent, orvex-host).
#
# Headers are installed under <prefix>/include/orvex so that an embedder includes them exactly as our own
# sources do ("orvex/document/document.h", "host/paint/export.h") without a directory named `host` landing
# in a shared include folder. A header whose opening line begins with "// Private to" is a helper of the
# sources beside it and is not installed; every other header is API and must compile on its own against
# the installed tree (tests/install/run.sh checks both).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ORVEX_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/orvex)
set(ORVEX_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Orvex)
set(ORVEX_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Fills out_var with the public headers under the given folders of the source tree, relative to it.
function(orvex_public_headers out_var)
  set(public)
  foreach(folder ${ARGN})
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/${folder}/*.h)
    foreach(header ${headers})
      file(STRINGS ${CMAKE_SOURCE_DIR}/${header} opening LIMIT_COUNT 1)
      if(NOT opening MATCHES "^// Private to")
        list(APPEND public ${header})
      endif()
    endforeach()
  endforeach()
  list(SORT public)
  set(${out_var} ${public} PARENT_SCOPE)
endfunction()

function(orvex_install_headers)
  foreach(header ${ARGN})
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${CMAKE_SOURCE_DIR}/${header} DESTINATION ${ORVEX_INSTALL_INCLUDEDIR}/${folder}
      COMPONENT development)
  endforeach()
endfunction()

orvex_public_headers(ORVEX_PUBLIC_HEADERS orvex host)
orvex_install_headers(${ORVEX_PUBLIC_HEADERS})
install(FILES ${CMAKE_BINARY_DIR}/generated/orvex/version.h DESTINATION ${ORVEX_INSTALL_INCLUDEDIR}/orvex
  COMPONENT development)

# Every module library (ORVEX_LAYERS in CMakeLists.txt) is installed; orvex::core is the interface target
# that bundles the ones below the agent.
list(TRANSFORM ORVEX_LAYER_NAMES PREPEND orvex_ OUTPUT_VARIABLE ORVEX_LAYER_TARGETS)
install(TARGETS ${ORVEX_LAYER_TARGETS} orvex_core EXPORT OrvexTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(TARGETS orvex RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)

install(EXPORT OrvexTargets NAMESPACE orvex:: DESTINATION ${ORVEX_INSTALL_CMAKEDIR} COMPONENT development)
configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/OrvexConfig.cmake.in
  ${CMAKE_BINARY_DIR}/generated/OrvexConfig.cmake INSTALL_DESTINATION ${ORVEX_INSTALL_CMAKEDIR})
# Before 1.0 a minor version may change the API, so only the same minor version satisfies a request.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/generated/OrvexConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/generated/OrvexConfig.cmake ${CMAKE_BINARY_DIR}/generated/OrvexConfigVersion.cmake
  DESTINATION ${ORVEX_INSTALL_CMAKEDIR} COMPONENT development)

# The .pc files find their prefix from their own folder, so a tree installed with `cmake --install
# --prefix` anywhere (or moved afterwards) still names the right paths.
# orvex.pc links the core modules highest first, as a static link needs them.
set(ORVEX_PC_CORE_LIBS)
foreach(name ${ORVEX_LAYER_NAMES})
  if(NOT name STREQUAL "agent" AND NOT name STREQUAL "host")
    set(ORVEX_PC_CORE_LIBS "-lorvex_${name} ${ORVEX_PC_CORE_LIBS}")
  endif()
endforeach()
string(STRIP "${ORVEX_PC_CORE_LIBS}" ORVEX_PC_CORE_LIBS)
file(RELATIVE_PATH ORVEX_PC_TO_PREFIX /prefix/${ORVEX_INSTALL_PKGCONFIGDIR} /prefix)
string(REGEX REPLACE "/$" "" ORVEX_PC_TO_PREFIX "${ORVEX_PC_TO_PREFIX}")
foreach(pc orvex orvex-agent orvex-host)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/${pc}.pc.in ${CMAKE_BINARY_DIR}/generated/${pc}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/generated/${pc}.pc DESTINATION ${ORVEX_INSTALL_PKGCONFIGDIR}
    COMPONENT development)
endforeach()
