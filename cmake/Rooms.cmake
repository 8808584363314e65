# One function makes a room's library, one its tests, so that warnings, include paths and
# sanitizers are the same everywhere.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  # Without this ccache passes over everything that uses a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                                  CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(morvane_options INTERFACE)
target_include_directories(morvane_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(morvane_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
# g++ 12 warns falsely of overlapping copies inside std::string (its bug 105651).
target_compile_options(morvane_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# What g++ means by -Wconversion.
target_compile_options(morvane_options INTERFACE $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)
if(MORVANE_SANITIZE)
  target_compile_options(morvane_options INTERFACE -fsanitize=address,undefined
                                                   -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(morvane_options INTERFACE -fsanitize=address,undefined)
endif()

# morvane_precompile(TARGET HEADER...): has the target read large headers of libraries only once.
# Off where the build has to show that every file includes what it needs.
function(morvane_precompile target)
  if(MORVANE_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -fpch-preprocess) # for ccache
    endif()
  endif()
endfunction()

# own_sources(VARIABLE): the sources of this folder but those of the other platform, which their
# names tell.
function(own_sources variable)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix(_test)?\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows(_test)?\\.cpp$")
  endif()
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# morvane_room(NAME USES a b ...): the static library morvane_NAME of all sources in this folder.
function(morvane_room name)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  own_sources(sources)
  add_library(morvane_${name} STATIC ${sources})
  target_link_libraries(morvane_${name} PUBLIC morvane_options ${ROOM_USES})
endfunction()

# morvane_tests(NAME USES a b ...): the test program test_NAME of all sources in this folder.
function(morvane_tests name)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  own_sources(sources)
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE MORVANE_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  target_link_libraries(test_${name} PRIVATE ${ROOM_USES} morvane_test_support GTest::gtest_main
                                             GTest::gmock)
  # The tests are many and run once: what counts is the time it takes to compile them.
  target_compile_options(test_${name} PRIVATE -O0)
  morvane_precompile(test_${name} <gtest/gtest.h> <gmock/gmock.h> <string> <vector>)
  if(CMAKE_CROSSCOMPILING)
    # Starting Wine takes longer than most tests: one start for all of a room.
    add_test(NAME ${name} COMMAND test_${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  else()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 120
                         PROPERTIES TIMEOUT 300)
  endif()
endfunction()
