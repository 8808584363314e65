# One function makes a room's library, one its tests, so that warnings, include paths and
# sanitizers are the same everywhere.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  # Without this ccache skips everything that uses a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                                  CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

# Large programs link several times faster with lld.
find_program(LLD_PROGRAM NAMES ld.lld)
if(LLD_PROGRAM AND NOT WIN32 AND MORVANE_FAST_BUILD)
  add_link_options(-fuse-ld=lld)
endif()

add_library(morvane_options INTERFACE)
target_compile_options(morvane_options INTERFACE -Wall -Wextra -Wconversion -Wshadow)
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
# morvane_precompile(TARGET REUSE_FROM OTHER): takes what another target has precompiled.
function(morvane_precompile target)
  if(MORVANE_PRECOMPILE)
    if(ARGV1 STREQUAL "REUSE_FROM")
      target_precompile_headers(${target} REUSE_FROM ${ARGV2})
    else()
      target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -fpch-preprocess) # for ccache
    endif()
  endif()
endfunction()

# morvane_unity(TARGET N): compiles N sources of the target at a time in a fast build.
function(morvane_unity target count)
  if(MORVANE_FAST_BUILD)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${count}
      UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
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

# morvane_include_root(TARGET NAME): lets the target, and whoever uses it, write
# `#include "NAME/..."` for the headers of this folder. Each room is reached through a folder of its
# own that holds nothing else, so that an include of a room that is not used does not compile.
function(morvane_include_root target name)
  set(root ${CMAKE_BINARY_DIR}/rooms/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${name} COPY_ON_ERROR SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
endfunction()

# morvane_room(NAME USES a b ...): the static library morvane_NAME of all sources in this folder,
# which may include the rooms named and what those use.
function(morvane_room name)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  list(TRANSFORM ROOM_USES PREPEND morvane_)
  own_sources(sources)
  add_library(morvane_${name} STATIC ${sources})
  morvane_include_root(morvane_${name} ${name})
  morvane_unity(morvane_${name} 8)
  target_link_libraries(morvane_${name} PUBLIC morvane_options ${ROOM_USES})
  if(name STREQUAL "base")
    morvane_precompile(morvane_base <algorithm> <array> <functional> <map> <memory> <optional> <set>
                                    <string> <string_view> <vector>)
  else()
    morvane_precompile(morvane_${name} REUSE_FROM morvane_base)
  endif()
endfunction()

# morvane_tests(NAME USES a b ...): the test program test_NAME of all sources in this folder.
function(morvane_tests name)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  list(TRANSFORM ROOM_USES PREPEND morvane_)
  own_sources(sources)
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE ${ROOM_USES} morvane_test_support)
  morvane_unity(test_${name} 5)
  morvane_precompile(test_${name} REUSE_FROM morvane_test_support)
  if(CMAKE_CROSSCOMPILING)
    # Starting Wine takes longer than most tests: one start for all of a room.
    add_test(NAME ${name} COMMAND test_${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  else()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 120
                         PROPERTIES TIMEOUT 300)
  endif()
endfunction()

# morvane_same_arithmetic(TARGET): floating-point results have the same bits on every machine and
# compiler: no product and sum in one rounding. Without the others' precompiled header, which was
# made with other options.
function(morvane_same_arithmetic target)
  target_compile_options(${target} PRIVATE -ffp-contract=off)
  set_target_properties(${target} PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)
endfunction()
