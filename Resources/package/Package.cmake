# The Debian package and the RPM, which Scripts/package builds. The install rules are next to the
# targets.

# Uses SOURCE_DATE_EPOCH if that is set.
string(TIMESTAMP KARVO_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP KARVO_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
string(TIMESTAMP KARVO_RPM_CHANGELOG_DATE "%a %b %d %Y" UTC)
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
  Resources/package/karvo.1 Resources/package/changelog.in Resources/package/maintainer)
configure_file(Resources/package/changelog.in compressed/changelog @ONLY)
install_compressed(${CMAKE_CURRENT_SOURCE_DIR}/Resources/package/karvo.1 karvo.1
  ${CMAKE_INSTALL_MANDIR}/man1)
install_compressed(${CMAKE_CURRENT_BINARY_DIR}/compressed/changelog changelog.Debian
  ${CMAKE_INSTALL_DATADIR}/doc/karvo)
install(FILES Resources/package/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/karvo)
install(FILES Resources/package/lintian-overrides
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME karvo)

set(CPACK_GENERATOR DEB RPM)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/Resources/package/Stage.cmake)
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
# A session locker for hand-offs, Qt's plugin for Wayland sessions, and fingerprint support.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xss-lock | light-locker | gnome-shell | swaylock, qt6-wayland, \
libpam-fprintd")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "privacy utility for X11 and Wayland desktops")
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

# An RPM requires the exact versions of the libraries that it was linked with, so it has to be built
# on the distribution that it is for.
set(CPACK_RPM_PACKAGE_RELEASE ${KARVO_BUILD})
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_PACKAGE_RELOCATABLE OFF)
set(CPACK_RPM_PACKAGE_SUMMARY "Privacy utility for X11 and Wayland desktops")
set(CPACK_RPM_PACKAGE_DESCRIPTION "${CPACK_DEBIAN_PACKAGE_DESCRIPTION}")
set(CPACK_RPM_PACKAGE_LICENSE "LicenseRef-proprietary AND MIT")
set(CPACK_RPM_PACKAGE_VENDOR Brindlewick)
set(CPACK_RPM_PACKAGE_URL "https://${KARVO_SITE_HOST}/karvo/")
# These names are the same on Fedora and openSUSE. rpmbuild adds the libraries.
set(CPACK_RPM_PACKAGE_REQUIRES
  "pam, ca-certificates, xdg-utils, desktop-file-utils, hicolor-icon-theme, /usr/bin/dbus-daemon")
set(CPACK_RPM_COMPRESSION_TYPE xz)
set(CPACK_KARVO_RPM_PAM ${CMAKE_CURRENT_SOURCE_DIR}/Resources/pam/${KARVO_PAM})
if(KARVO_PAM STREQUAL debian)
  set(CPACK_KARVO_RPM_PAM ${CMAKE_CURRENT_SOURCE_DIR}/Resources/pam/fedora)
endif()
set(CPACK_RPM_USER_FILELIST "%config(noreplace) /etc/pam.d/karvo"
  "%license /usr/share/licenses/karvo/copyright")
# Folders of other packages.
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION /etc /etc/pam.d /usr/lib/systemd
  /usr/lib/systemd/user /usr/libexec /usr/share/applications /usr/share/dbus-1
  /usr/share/dbus-1/services /usr/share/licenses /usr/share/man /usr/share/man/man1
  /usr/share/metainfo /usr/share/icons /usr/share/icons/hicolor)
foreach(size 16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256 scalable symbolic)
  list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
    /usr/share/icons/hicolor/${size} /usr/share/icons/hicolor/${size}/apps)
endforeach()
# The files are stripped and compressed already, and have no build id. The host and the time of the
# build would differ when the same commit is built again. CPack has no settings for the last lines.
set(CPACK_RPM_SPEC_MORE_DEFINE "\
%define __os_install_post %{nil}
%define _build_id_links none
%define _buildhost localhost
%define use_source_date_epoch_as_buildtime 1
%define clamp_mtime_to_source_date_epoch 1
Packager: Karvo <${KARVO_SUPPORT_EMAIL}>
Recommends: fprintd-pam
Recommends: font(inter)
Recommends: (qt6-qtwayland or qt6-wayland)")
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/rpm/changelog "\
* ${KARVO_RPM_CHANGELOG_DATE} Karvo <${KARVO_SUPPORT_EMAIL}> - ${KARVO_VERSION}-${KARVO_BUILD}
- Version ${KARVO_VERSION}, build ${KARVO_BUILD}.
")
set(CPACK_RPM_CHANGELOG_FILE ${CMAKE_CURRENT_BINARY_DIR}/rpm/changelog)
# The same script as on Debian. RPM expands its macros in it.
file(READ Resources/package/maintainer maintainer)
string(REPLACE "%" "%%" maintainer "${maintainer}")
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/rpm/script "${maintainer}")
set(CPACK_RPM_POST_INSTALL_SCRIPT_FILE ${CMAKE_CURRENT_BINARY_DIR}/rpm/script)
set(CPACK_RPM_POST_UNINSTALL_SCRIPT_FILE ${CMAKE_CURRENT_BINARY_DIR}/rpm/script)
include(CPack)
