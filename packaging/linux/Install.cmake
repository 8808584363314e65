# The manual page and the completions of the shells, both made from the program's own options. What
# puts the window into the menu is installed along with it.

set(made ${CMAKE_BINARY_DIR}/made)
file(MAKE_DIRECTORY ${made})
add_custom_command(
  OUTPUT ${made}/morvane-cli ${made}/_morvane-cli ${made}/morvane-cli.fish
  COMMAND morvane-cli --completions bash > ${made}/morvane-cli
  COMMAND morvane-cli --completions zsh > ${made}/_morvane-cli
  COMMAND morvane-cli --completions fish > ${made}/morvane-cli.fish
  DEPENDS morvane-cli VERBATIM)
set(pages ${made}/morvane-cli)
install(FILES ${made}/morvane-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${made}/_morvane-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES ${made}/morvane-cli.fish
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
