# Debian packages (cpack -G DEB): one package per install component.
#
#   protofix            the tool, its manual page and bash completion   (component tool)
#   libprotofix<SOVER>  the shared library                              (component runtime)
#   libprotofix-dev     headers, CMake package, pkg-config file, the    (component development)
#                       link name or static library, examples and docs
#
# Configure with CMAKE_INSTALL_PREFIX=/usr (make package does) so that the library directory is
# the multiarch one that Debian's linker searches. The runtime package exists in a shared build
# only; the tool then depends on it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME protofix)
set(CPACK_PACKAGE_VENDOR protofix)
set(CPACK_PACKAGE_CONTACT "protofix maintainers <protofix@localhost>")
# Each package's synopsis is the first line of its own description: CPackDeb puts the common
# summary before it unless the summary is CPack's default, so the summary is left at that.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Dependencies on shared libraries come from dpkg-shlibdeps (libjsoncpp25 on bookworm, libc6, ...);
# the runtime package states its own for packages that link it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The packaged binaries lose their debug information (the tool is 11 MB with it, 0.5 MB without);
# CPack moves it into -dbgsym packages (.ddeb), found by build id under /usr/lib/debug.
set(CPACK_STRIP_FILES OFF)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)

set(CPACK_COMPONENTS_ALL development)
if(BUILD_SHARED_LIBS)
  list(APPEND CPACK_COMPONENTS_ALL runtime)
endif()
if(PROTOFIX_BUILD_TOOL)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

get_target_property(PROTOFIX_SOVERSION protofix SOVERSION)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libprotofix${PROTOFIX_SOVERSION}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "library converting video recorder configuration sections\n\
The shared library of protofix: the request class that converts the configuration sections \
of video recorders between the device's table, fixed-layout records and F5 text.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libprotofix-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "development files of the video recorder configuration library\n\
Headers, CMake package and pkg-config file of protofix, with the examples of every section \
and the documentation.")
# The public headers include JsonCpp's: the package that holds them, found from where CMake
# found JsonCpp.
set(PROTOFIX_JSONCPP_DEV libjsoncpp-dev)
find_program(PROTOFIX_DPKG_QUERY dpkg-query)
if(PROTOFIX_DPKG_QUERY AND jsoncpp_DIR)
  execute_process(COMMAND ${PROTOFIX_DPKG_QUERY} -S "${jsoncpp_DIR}"
                  OUTPUT_VARIABLE PROTOFIX_JSONCPP_OWNER ERROR_QUIET RESULT_VARIABLE PROTOFIX_QUERY_RESULT)
  if(PROTOFIX_QUERY_RESULT EQUAL 0 AND PROTOFIX_JSONCPP_OWNER MATCHES "^([^:, ]+)")
    set(PROTOFIX_JSONCPP_DEV "${CMAKE_MATCH_1}")
  endif()
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${PROTOFIX_JSONCPP_DEV}")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME protofix)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_DESCRIPTION
    "converts video recorder configuration sections\n\
The protofix command: shows what a device's table, a record or an F5 text becomes, and what \
a table loses on the way to an older device.")

if(BUILD_SHARED_LIBS)
  set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
  set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
  # dpkg-shlibdeps looks for the tool's libraries along its RPATH, which leads into the tool's
  # own staging tree; it finds the library in the runtime component's instead.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
      "${CPACK_PACKAGE_DIRECTORY}/_CPack_Packages/Linux/DEB/\
${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-Linux/runtime/usr/${CMAKE_INSTALL_LIBDIR}")
endif()

include(CPack)
