# Gives every file that is about to be packed the time of the commit.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  file(GLOB_RECURSE files LIST_DIRECTORIES TRUE "${CPACK_TEMPORARY_DIRECTORY}/*")
  foreach(file ${files} ${CPACK_TEMPORARY_DIRECTORY})
    execute_process(COMMAND touch -h -d "@$ENV{SOURCE_DATE_EPOCH}" "${file}")
  endforeach()
endif()
