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

# Files keep the times of the build otherwise, which differ when the same commit is built again.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find ${root} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
