// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/encodings.h"
#include "base/paths.h"
#include "system/program_places.h"

#include <windows.h>

namespace morvane {

namespace {

constexpr std::size_t longest_name = 32768;

} // namespace

std::string executable_folder() {
    std::wstring name(longest_name, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return folder_part(narrow_text(name));
}

std::string environment_variable(const std::string& name) {
    std::wstring value(longest_name, L'\0');
    value.resize(GetEnvironmentVariableW(wide_text(name).c_str(), value.data(),
                                         static_cast<DWORD>(value.size())));
    return narrow_text(value);
}

ProgramFolderChoices program_places(const std::string& option) {
    const std::string data = environment_variable("APPDATA");
    return {option, environment_variable("MORVANE_HOME"), executable_folder(),
            data.empty() ? std::string() : join_path(data, "Morvane")};
}

} // namespace morvane
