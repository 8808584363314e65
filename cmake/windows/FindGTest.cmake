# GoogleTest is built from Debian's source package of it, for there is no library of it for Windows.
if(NOT TARGET GTest::gtest)
  if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
    message(FATAL_ERROR "/usr/src/googletest is missing: run tools/install windows")
  endif()
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
set(GTest_FOUND TRUE)
