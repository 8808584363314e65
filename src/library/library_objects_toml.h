// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/library_list.h"
#include "system/services.h"
#include "toml/toml_document.h"

#include <vector>

namespace morvane {

/// An object of a library list file. Its entry is complete only when no errors were added.
struct ListedObject {
    TomlElement element;
    LibraryLine line;
    LibraryEntry entry;
    bool has_guid = false;
};

/// The objects of a list file, in its order. A missing identifier is left to the caller; everything
/// else that is wrong is added to the errors.
std::vector<ListedObject> read_listed_objects(const Services& services,
                                              const TomlDocument& document, DocumentErrors& errors);

} // namespace morvane
