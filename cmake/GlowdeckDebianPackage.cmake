# The Debian package, built with `cpack -G DEB` in the build folder: the programs and files of the install
# rules under /usr, with the Debian copyright file and changelog, stripped programs and the dependencies
# dpkg-shlibdeps reads from them. No maintainer scripts: the desktop database and the icon cache are
# refreshed by the triggers of the packages that own them, so removing the package leaves nothing behind.
#
# Expects from packaging/CMakeLists.txt: glowdeck_docdir, glowdeck_release_date, glowdeck_release_notes.

set(GLOWDECK_PACKAGE_MAINTAINER "The Glowdeck developers <developers@glowdeck.app>" CACHE STRING
    "The Debian package's maintainer, \"Name <address>\"")

set(CPACK_PACKAGE_NAME glowdeck)
set(CPACK_PACKAGE_VENDOR "The Glowdeck developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${GLOWDECK_PACKAGE_MAINTAINER})
set(CPACK_PACKAGE_HOMEPAGE_URL ${GLOWDECK_HOMEPAGE_URL})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The debug report script; without Ruby the program says so and carries on. Qt's own texts (standard buttons)
# in the user's language; Glowdeck's are built into the program.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ruby, qt6-translations-l10n")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tray controller for Philips Hue lights")
# The extended description; CPack puts the summary above it as the synopsis.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Glowdeck puts Philips Hue lights one click away: a lamp icon in the system
tray opens a small window that lists the lights, rooms and scenes of a Hue
bridge, with switches, brightness sliders, and colour and white-tone fields.
It finds the bridge on the local network, pairs with it through its link
button, and can start at login.

The package also holds glowdeckctl, which controls the same lights from a
terminal, and glowdeck-simulator, a simulated bridge to try them with.")

# One package of every install component but the plain LICENSE file, whose text the copyright file holds.
# Install rules without a component of their own, wherever they are, belong to the default one.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
get_cmake_property(CPACK_COMPONENTS_ALL COMPONENTS)
list(APPEND CPACK_COMPONENTS_ALL Debian ${CMAKE_INSTALL_DEFAULT_COMPONENT_NAME})
list(REMOVE_ITEM CPACK_COMPONENTS_ALL Licence)
list(REMOVE_DUPLICATES CPACK_COMPONENTS_ALL)

# The copyright file in Debian's machine-readable format, its licence text taken from LICENSE.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)\n\n(.*)$" _ "${licence}")
set(glowdeck_copyright "${CMAKE_MATCH_1}")
string(STRIP "${CMAKE_MATCH_2}" licence)
string(REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REPLACE "\n" "\n " glowdeck_licence_text " ${licence}")
set(debian_files ${CMAKE_CURRENT_BINARY_DIR}/debian)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/debian/copyright.in ${debian_files}/copyright @ONLY)

# The Debian changelog: the release notes of the AppStream metadata, compressed as Debian requires.
glowdeck_rfc2822_date(${glowdeck_release_date} glowdeck_release_rfc2822)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog.in ${debian_files}/changelog.Debian @ONLY)
add_custom_command(OUTPUT ${debian_files}/changelog.Debian.gz
    COMMAND ${GLOWDECK_GZIP} -9 --no-name --keep --force ${debian_files}/changelog.Debian
    DEPENDS ${debian_files}/changelog.Debian COMMENT "Compressing the Debian changelog" VERBATIM)
add_custom_target(glowdeck_debian_changelog ALL DEPENDS ${debian_files}/changelog.Debian.gz)

install(FILES ${debian_files}/copyright ${debian_files}/changelog.Debian.gz DESTINATION ${glowdeck_docdir}
    COMPONENT Debian EXCLUDE_FROM_ALL)

include(CPack)
