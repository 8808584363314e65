# The headers of stb: one picture writer and one font, each a header alone.
if(NOT TARGET stb::stb)
  find_path(STB_INCLUDE_DIR stb/stb_image_write.h)
  include(FindPackageHandleStandardArgs)
  find_package_handle_standard_args(stb REQUIRED_VARS STB_INCLUDE_DIR
                                    REASON_FAILURE_MESSAGE "run tools/install build")
  add_library(stb::stb INTERFACE IMPORTED GLOBAL)
  target_include_directories(stb::stb SYSTEM INTERFACE ${STB_INCLUDE_DIR})
endif()
