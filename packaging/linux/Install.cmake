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

find_program(MORVANE_PYTHON NAMES python3)
if(MORVANE_PYTHON)
  add_custom_command(
    OUTPUT ${made}/morvane-cli.1
    COMMAND ${MORVANE_PYTHON} ${CMAKE_SOURCE_DIR}/tools/make-manual $<TARGET_FILE:morvane-cli>
            > ${made}/morvane-cli.1
    DEPENDS morvane-cli ${CMAKE_SOURCE_DIR}/docs/morvane-cli.1.in
            ${CMAKE_SOURCE_DIR}/tools/make-manual VERBATIM)
  list(APPEND pages ${made}/morvane-cli.1)
  install(FILES ${made}/morvane-cli.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
add_custom_target(pages ALL DEPENDS ${pages})
