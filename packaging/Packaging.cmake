# What a package holds and how packages are made: a Debian package of a native build, a zip and an
# installer of a cross-build for Windows.
include(GNUInstallDirs)

if(WIN32)
  # Everything in one folder that runs from where it lies, with its settings beside it.
  set(program_folder .)
  set(data_folder .)
  set(document_folder docs)
  set(example_folder examples)
else()
  set(program_folder ${CMAKE_INSTALL_BINDIR})
  set(data_folder ${CMAKE_INSTALL_DATADIR}/morvane)
  set(document_folder ${CMAKE_INSTALL_DOCDIR})
  set(example_folder ${CMAKE_INSTALL_DOCDIR}/examples)
endif()

install(TARGETS morvane-cli RUNTIME DESTINATION ${program_folder})
install(FILES share/morvane.inc share/model.inc DESTINATION ${data_folder})
install(DIRECTORY examples/ DESTINATION ${example_folder} PATTERN "*.py" EXCLUDE)
# The README is about the checkout; its links lead nowhere from here.
install(FILES packaging/index.md CHANGELOG.md NOTICES.md DESTINATION ${document_folder})
if(WIN32)
  install(FILES LICENSE DESTINATION ${document_folder}) # Debian has it in common-licenses
endif()
install(DIRECTORY docs/ DESTINATION ${document_folder} PATTERN "*.in" EXCLUDE
        PATTERN "*.1" EXCLUDE PATTERN "*.5" EXCLUDE PATTERN "words.txt" EXCLUDE)

# The unpacking program is a Windows program everywhere; the system's programs are no company for it.
if(TARGET bglunpack)
  if(WIN32)
    set(unpack_folder .)
  else()
    set(unpack_folder lib/morvane)
  endif()
  install(DIRECTORY ${MORVANE_UNPACK_FOLDER}/ DESTINATION ${unpack_folder}
          FILES_MATCHING PATTERN "bglunpack*.exe" PATTERN CMakeFiles EXCLUDE)
endif()

if(NOT WIN32)
  include(${CMAKE_CURRENT_LIST_DIR}/linux/Install.cmake)
endif()

set(CPACK_PACKAGE_NAME morvane)
set(CPACK_PACKAGE_VENDOR Morvane)
set(CPACK_PACKAGE_CONTACT "Morvane maintainers <maintainers@morvane.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "Turns marked triangles of gmax exports into lights, effects and objects")
set(CPACK_PACKAGE_DESCRIPTION
"Rewrites the MASM source that gmax exports for Microsoft Flight Simulator 2002:
marked materials become lights, effects, windsocks and library objects. Also
assembles aircraft models, inspects BGL libraries and writes library sources.")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# Files take the time of the commit, so that the same commit gives the same package.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/SetTimes.cmake)

if(WIN32)
  set(CPACK_GENERATOR ZIP NSIS)
  include(${CMAKE_CURRENT_LIST_DIR}/windows/Installer.cmake)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-qpa-plugins, shared-mime-info")
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS "wine")
endif()
include(CPack)

if(NOT CMAKE_CROSSCOMPILING)
  add_custom_target(packages COMMAND ${CMAKE_CURRENT_LIST_DIR}/make USES_TERMINAL VERBATIM)
  add_dependencies(packages morvane-cli pages bglunpack)
  if(TARGET morvane)
    add_dependencies(packages morvane)
  endif()
endif()
