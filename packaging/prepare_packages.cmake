# Runs during packing: lets everybody enter the directories, whatever the umask is, and
# compresses the manual pages as the distribution requires.
set(top ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(CHMOD_RECURSE ${top} DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(GLOB_RECURSE pages ${top}/share/man/*.[1-8] ${top}/usr/share/man/*.[1-8]
  ${top}/*/usr/share/man/*.[1-8])
if(pages)
  execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()
