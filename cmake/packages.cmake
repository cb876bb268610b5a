# Debian packages, one for each component: libreedid0, libreedid-dev and reedid (the tool).
#   cmake --preset debian && cmake --build --preset debian && (cd build/debian && cpack)
set(REEDID_CONTACT "reedid developers <developers@reedid.invalid>" CACHE STRING
    "Maintainer of the Debian packages; the name .invalid is never anybody's, so set yours when you pass packages on")
set(debian_dir ${PROJECT_SOURCE_DIR}/cmake/debian)
set(debian_build_dir ${PROJECT_BINARY_DIR}/packages)

# Sorts before revision 1, which would be Debian's own.
set(CPACK_DEBIAN_PACKAGE_RELEASE 0reedid1)
set(debian_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP debian_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${debian_dir}/changelog.in ${debian_build_dir}/changelog.Debian @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${debian_build_dir}/changelog COPYONLY)
configure_file(${PROJECT_SOURCE_DIR}/LICENSE ${debian_build_dir}/copyright COPYONLY)

set(library_package libreedid${PROJECT_VERSION_MAJOR})
set(packages runtime:${library_package} dev:libreedid-dev)
if(TARGET reedid_tool)
  list(APPEND packages tool:reedid)
endif()
foreach(pair ${packages})
  string(REPLACE ":" ";" pair ${pair})
  list(GET pair 0 component)
  list(GET pair 1 package)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${upper}_FILE_NAME DEB-DEFAULT)
  set(documents DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
  install(FILES ${debian_build_dir}/copyright ${debian_build_dir}/changelog ${documents})
  install(FILES ${debian_build_dir}/changelog.Debian ${documents} EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${REEDID_CONTACT})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${debian_dir}/finish.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each description below opens with its own

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${debian_dir}/triggers)
install(FILES ${debian_dir}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${library_package} COMPONENT runtime EXCLUDE_FROM_ALL)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "EDID, CTA-861 and DisplayID library - shared library
Reads, edits and rebuilds what a display tells about itself: EDID base
blocks, CTA-861 extensions and DisplayID sections. It has a flat C interface
and is made for the firmware of HDMI sinks, repeaters and test rigs.

This package holds the shared library.")

set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${library_package} (= ${debian_version})")
set(CPACK_DEBIAN_DEV_DESCRIPTION "EDID, CTA-861 and DisplayID library - development files
Reads, edits and rebuilds what a display tells about itself: EDID base
blocks, CTA-861 extensions and DisplayID sections. It has a flat C interface
and is made for the firmware of HDMI sinks, repeaters and test rigs.

This package holds the C headers, a C++20 header over them, the static
library, the pkg-config file and the CMake package.")

set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_RECOMMENDS "hwdata, ieee-data")  # names of makers and vendors
set(CPACK_DEBIAN_TOOL_DESCRIPTION "show, check and edit the EDID of displays
Command-line tool for EDID base blocks, CTA-861 extensions and DisplayID
sections. It tells what a display says of itself and whether that is valid,
and writes copies that an HDMI 2.0 or 1.4 link can carry, with another
physical address, with less audio or without HDR.")
include(CPack)
