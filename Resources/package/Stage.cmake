# Run by CPack for each kind of package, after it has installed the files into a temporary folder.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})

if(CPACK_GENERATOR STREQUAL RPM)
  # Licences have a folder of their own, and the change log is in the header of the package.
  file(MAKE_DIRECTORY ${root}/usr/share/licenses/karvo)
  file(RENAME ${root}/usr/share/doc/karvo/copyright ${root}/usr/share/licenses/karvo/copyright)
  file(REMOVE_RECURSE ${root}/usr/share/doc ${root}/usr/share/lintian)
  # Debian's include directive is not known elsewhere.
  file(COPY_FILE ${CPACK_KARVO_RPM_PAM} ${root}/etc/pam.d/karvo)
endif()
