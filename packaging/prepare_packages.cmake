# Part of packing: directories as everybody may enter them, whatever the umask is,
# and manual pages compressed as the distribution wants them.
set(top ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(CHMOD_RECURSE ${top} DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(GLOB_RECURSE pages ${top}/share/man/*.[1-8] ${top}/usr/share/man/*.[1-8]
  ${top}/*/usr/share/man/*.[1-8])
if(pages)
  execute_process(COMMAND gzip -9n ${pages} COMMAND_ERROR_IS_FATAL ANY)
endif()
