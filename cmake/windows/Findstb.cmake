include(HeaderLibrary)
header_library(stb::stb stb)
set(stb_FOUND TRUE)
