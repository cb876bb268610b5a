# Debian packages, one for each component: libreedid0, libreedid-dev and reedid (the tool).
#   cmake --preset debian && cmake --build --preset debian && (cd build/debian && cpack)
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
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} RENAME copyright
          COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "the reedid authors <reedid@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "reads, edits and rebuilds display identification data
 Shared library for EDID base blocks, CTA-861 extensions and DisplayID
 sections, with a flat C interface.")

set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEV_DESCRIPTION "reads, edits and rebuilds display identification data - development
 Headers, static library, pkg-config file and CMake package of libreedid.")

set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "shows, checks and edits the EDID of displays
 Command-line tool for EDID base blocks, CTA-861 extensions and DisplayID
 sections: what a display says of itself, whether it is valid, and what is
 left of it behind an HDMI link that carries less.")
include(CPack)
