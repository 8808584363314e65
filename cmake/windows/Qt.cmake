# Lets find_package() see the Qt for Windows that packaging/windows/build-qt leaves outside the
# checkout: where MORVANE_QT_WINDOWS says, else in the user's cache.
if(DEFINED ENV{MORVANE_QT_WINDOWS})
  set(qt_folder $ENV{MORVANE_QT_WINDOWS})
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(qt_folder $ENV{XDG_CACHE_HOME}/morvane/qt-windows)
else()
  set(qt_folder $ENV{HOME}/.cache/morvane/qt-windows)
endif()
if(EXISTS ${qt_folder}/complete)
  list(APPEND CMAKE_FIND_ROOT_PATH ${qt_folder})
  list(APPEND CMAKE_PREFIX_PATH ${qt_folder})
  # Its tools (moc, rcc, uic) run here: they are this system's.
  set(QT_HOST_PATH /usr)
  find_path(MORVANE_QT_HOST_CMAKE Qt6HostInfo/Qt6HostInfoConfig.cmake
            PATHS /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake /usr/lib/cmake
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  set(QT_HOST_PATH_CMAKE_DIR ${MORVANE_QT_HOST_CMAKE})
endif()
