# The manual pages and the completions of the shells. What puts the window into the menu is installed
# along with it.

set(made ${CMAKE_BINARY_DIR}/made)
file(MAKE_DIRECTORY ${made})
set(pages)
set(scripts ${CMAKE_SOURCE_DIR}/share/completions)
install(FILES ${scripts}/morvane-cli.bash RENAME morvane-cli
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${scripts}/_morvane-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES ${scripts}/morvane-cli.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

set(made ${CMAKE_BINARY_DIR}/made)
file(MAKE_DIRECTORY ${made})
find_program(MORVANE_PYTHON NAMES python3)
find_program(MORVANE_GZIP NAMES gzip)

# morvane_compressed(FILE FOLDER [DEPENDS...]): installs a file compressed, without its name and time,
# so that the same file gives the same package.
function(morvane_compressed file folder)
  get_filename_component(name ${file} NAME)
  add_custom_command(
    OUTPUT ${made}/${name}.gz
    COMMAND ${MORVANE_GZIP} -9nc ${file} > ${made}/${name}.gz
    DEPENDS ${file} ${ARGN} VERBATIM)
  install(FILES ${made}/${name}.gz DESTINATION ${folder})
  set(pages ${pages} ${made}/${name}.gz PARENT_SCOPE)
endfunction()

if(MORVANE_PYTHON AND MORVANE_GZIP)
  add_custom_command(
    OUTPUT ${made}/morvane-cli.1
    COMMAND ${MORVANE_PYTHON} ${CMAKE_SOURCE_DIR}/tools/make-manual $<TARGET_FILE:morvane-cli>
            > ${made}/morvane-cli.1
    DEPENDS morvane-cli ${CMAKE_SOURCE_DIR}/docs/morvane-cli.1.in
            ${CMAKE_SOURCE_DIR}/tools/make-manual VERBATIM)
  morvane_compressed(${made}/morvane-cli.1 ${CMAKE_INSTALL_MANDIR}/man1)
endif()
if(MORVANE_GZIP)
  configure_file(packaging/linux/changelog.in ${made}/changelog @ONLY)
  morvane_compressed(${made}/changelog ${CMAKE_INSTALL_DOCDIR})
  morvane_compressed(${CMAKE_SOURCE_DIR}/docs/morvane-recipe.5 ${CMAKE_INSTALL_MANDIR}/man5)
  if(TARGET morvane)
    morvane_compressed(${CMAKE_SOURCE_DIR}/docs/morvane.1 ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
endif()
install(FILES packaging/linux/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
add_custom_target(pages ALL DEPENDS ${pages})
