# The Debian package, which Scripts/package builds. The install rules are next to the targets.

# Uses SOURCE_DATE_EPOCH if that is set.
string(TIMESTAMP KARVO_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP KARVO_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(Resources/com.brindlewick.karvo.metainfo.xml.in com.brindlewick.karvo.metainfo.xml @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/com.brindlewick.karvo.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# Compresses without a time stamp, so that the same input gives the same package.
function(install_compressed source name destination)
  set(file ${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz)
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/compressed)
  execute_process(COMMAND gzip -9nc ${source} OUTPUT_FILE ${file} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${file} DESTINATION ${destination})
endfunction()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  Resources/package/karvo.1 Resources/package/changelog.in)
configure_file(Resources/package/changelog.in compressed/changelog @ONLY)
install_compressed(${CMAKE_CURRENT_SOURCE_DIR}/Resources/package/karvo.1 karvo.1
  ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(${CMAKE_CURRENT_BINARY_DIR}/compressed/changelog changelog.Debian
  ${CMAKE_INSTALL_DATADIR}/doc/karvo)
install(FILES Resources/package/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/karvo)
install(FILES Resources/package/lintian-overrides
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME karvo)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME karvo)
# The build number is part of the version, so the package's signature covers it. The updater
# compares it with its own before it offers the package.
set(CPACK_PACKAGE_VERSION ${KARVO_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${KARVO_BUILD})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Karvo <${KARVO_SUPPORT_EMAIL}>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://${KARVO_SITE_HOST}/karvo/")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The last two packages provide the caches for links and the theme for the icon.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6gui6, libpam-modules, ca-certificates, fonts-inter, \
dbus-user-session | dbus-x11, xdg-utils, desktop-file-utils, hicolor-icon-theme")
# A session locker for hand-offs, and fingerprint support.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xss-lock | light-locker | gnome-shell, libpam-fprintd")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "privacy utility for X11 desktops")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "\
Karvo locks the whole computer behind a full-screen lock of its own, or the
app in front behind a blur that follows its windows. It blurs every display
until revealed, blurs all but the window in use, and keeps chosen apps blurred
whenever they are not in use. A password or a fingerprint unlocks.

A guard process engages the session's own lock if Karvo ends while locked.")
# An upgrade and a removal need the same steps.
foreach(script postinst postrm)
  configure_file(Resources/package/maintainer package-scripts/${script} COPYONLY)
  list(APPEND scripts ${CMAKE_CURRENT_BINARY_DIR}/package-scripts/${script})
endforeach()
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_SOURCE_DIR}/Resources/package/conffiles ${scripts})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
