# The installer. It installs for all users, with "/S" without a question; removing it takes only the
# files that it brought, never the settings that the program wrote beside them.
set(CPACK_PACKAGE_INSTALL_DIRECTORY Morvane)
set(CPACK_NSIS_PACKAGE_NAME Morvane)
set(CPACK_NSIS_DISPLAY_NAME "Morvane")
set(CPACK_NSIS_INSTALL_ROOT "$PROGRAMFILES64")
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_UNINSTALL_NAME uninstall)
set(CPACK_NSIS_MODIFY_PATH OFF)
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_NSIS_MUI_ICON ${CMAKE_CURRENT_LIST_DIR}/morvane.ico)
set(CPACK_NSIS_MUI_UNIICON ${CMAKE_CURRENT_LIST_DIR}/morvane.ico)
set(CPACK_NSIS_COMPRESSOR "/SOLID lzma")
# As 64-bit a program as those it brings; a Wine without 32 bits runs it too.
set(CPACK_NSIS_DEFINES "Target amd64-unicode")

if(TARGET morvane)
  # Recipes keep the program that they open with; the window is offered beside it.
  set(CPACK_PACKAGE_EXECUTABLES morvane Morvane)
  set(CPACK_NSIS_INSTALLED_ICON_NAME morvane.exe)
  set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS [[
    WriteRegStr HKLM "Software\Classes\Morvane.Recipe" "" "Morvane recipe"
    WriteRegStr HKLM "Software\Classes\Morvane.Recipe\shell\open\command" "" '"$INSTDIR\morvane.exe" "%1"'
    WriteRegStr HKLM "Software\Classes\.toml\OpenWithProgids" "Morvane.Recipe" ""
]])
  set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS [[
    DeleteRegKey HKLM "Software\Classes\Morvane.Recipe"
    DeleteRegValue HKLM "Software\Classes\.toml\OpenWithProgids" "Morvane.Recipe"
]])
endif()
