# header_library(TARGET NAME): the target of a library that is headers alone, which lie in
# /usr/include/NAME. The compiler is shown a folder with nothing but them in it, since the other
# headers there are this system's and not Windows's.
function(header_library target name)
  if(TARGET ${target})
    return()
  endif()
  if(NOT EXISTS /usr/include/${name})
    message(FATAL_ERROR "/usr/include/${name} is missing: run tools/install build")
  endif()
  set(folder ${CMAKE_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${folder})
  file(CREATE_LINK /usr/include/${name} ${folder}/${name} SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${folder})
endfunction()
