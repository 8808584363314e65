include(HeaderLibrary)
header_library(tomlplusplus::tomlplusplus toml++)
set(tomlplusplus_FOUND TRUE)
# Debian's header leaves the code to a library that exists for this system alone.
target_compile_definitions(tomlplusplus::tomlplusplus INTERFACE TOML_HEADER_ONLY=1)
