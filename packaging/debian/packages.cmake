# `make package`: two Debian packages, one for each component. What they link is computed from the binaries;
# what is only loaded or asked for at run time is named here.
set(TARNWICK_MAINTAINER "Tarnwick developers <noreply@tarnwick.org>" CACHE STRING
  "Who answers for the packages")

set(CPACK_PACKAGE_NAME tarnwick)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli)
if(TARNWICK_PANEL)
  list(APPEND CPACK_COMPONENTS_ALL panel)
endif()
# Where a folder is no git checkout: the tree without what was built.
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME tarnwick-${PROJECT_VERSION})
set(CPACK_SOURCE_IGNORE_FILES "/build/" "/node_modules/" "/\\\\.git/")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TARNWICK_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME tarnwick)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_CLI_PACKAGE_PRIORITY optional)
# ICU and libplist are loaded by the versions that were built against; without them dates are plain numbers and
# simulators are not named.
string(REGEX MATCH "^[0-9]+" icu_major "${ICU_VERSION}")
set(plist_package libplist-2.0-${LIBPLIST_MAJOR})
if(LIBPLIST_MAJOR EQUAL 3)
  set(plist_package libplist3)  # so called before its packages took the library's name
endif()
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS "libicu${icu_major}, ${plist_package}, git")
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "gh, tarnwick-panel")
set(CPACK_COMPONENT_CLI_DESCRIPTION "tell why this machine is slow right now
One check looks at every process of yours with its command line, memory,
processor share, folder and listening ports, and at memory pressure, swap,
heat, disk space, processor load, containers and running applications.
Eleven rules say what slows the machine, why, and what to do about it.

This package is the command line. The panel for the tray is in
tarnwick-panel.")

set(CPACK_DEBIAN_PANEL_PACKAGE_NAME tarnwick-panel)
set(CPACK_DEBIAN_PANEL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PANEL_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PANEL_PACKAGE_DEPENDS "tarnwick (= ${PROJECT_VERSION}), fonts-inter, \
fonts-material-design-icons-iconfont, hicolor-icon-theme")
set(CPACK_DEBIAN_PANEL_PACKAGE_SUGGESTS qt6-wayland)
set(CPACK_COMPONENT_PANEL_DESCRIPTION "tell why this machine is slow right now - panel for the tray
One check looks at every process of yours and at the machine as a whole.
Eleven rules say what slows it down, why, and what to do about it.

This package is the panel: an icon in the tray, cards with remedies, and
the picture that tarnwick --snapshot draws.")

configure_file(debian/finish.cmake.in finish.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/finish.cmake)
include(CPack)
