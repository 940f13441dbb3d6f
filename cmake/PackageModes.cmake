# Folders of a package are open to everybody, whatever the mask of who makes it.
file(GLOB_RECURSE paths LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(path ${CPACK_TEMPORARY_DIRECTORY} ${paths})
  if(IS_DIRECTORY "${path}")
    file(CHMOD "${path}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()
