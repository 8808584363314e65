# The manual page, the completions of the shells, and what puts the window into the menu.
if(EXISTS ${CMAKE_SOURCE_DIR}/docs/morvane-cli.1)
  install(FILES docs/morvane-cli.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

set(completions ${CMAKE_BINARY_DIR}/completions)
file(MAKE_DIRECTORY ${completions})
add_custom_command(
  OUTPUT ${completions}/morvane-cli ${completions}/_morvane-cli ${completions}/morvane-cli.fish
  COMMAND morvane-cli --completions bash > ${completions}/morvane-cli
  COMMAND morvane-cli --completions zsh > ${completions}/_morvane-cli
  COMMAND morvane-cli --completions fish > ${completions}/morvane-cli.fish
  DEPENDS morvane-cli VERBATIM)
add_custom_target(completions ALL DEPENDS ${completions}/morvane-cli)
install(FILES ${completions}/morvane-cli
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${completions}/_morvane-cli DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES ${completions}/morvane-cli.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

# A menu entry without the window would start nothing.
if(TARGET morvane)
  set(here ${CMAKE_CURRENT_LIST_DIR})
  file(GLOB desktop ${here}/*.desktop)
  file(GLOB metadata ${here}/*.metainfo.xml)
  file(GLOB icons ${here}/*.svg)
  file(GLOB types ${here}/*-mime.xml)
  install(FILES ${desktop} DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${metadata} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
  install(FILES ${icons} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES ${types} DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
endif()
