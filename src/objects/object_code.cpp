// SPDX-License-Identifier: GPL-3.0-or-later
#include "objects/object_code.h"

#include "objects/lights.h"
#include "objects/placed_calls.h"
#include "objects/windsock.h"

namespace morvane {

ObjectCode object_code(const OpenSet& set, const Translation& material, Kind kind,
                       const Parameters& parameters) {
    switch (kind) {
    case Kind::Lights:
        return lights_code(material, parameters.lights);
    case Kind::Effects:
        return effects_code(set.placement, parameters.effects);
    case Kind::Windsock:
        return windsock_code(material, parameters.windsock);
    case Kind::Library:
        return library_code(set.placement, parameters.library);
    case Kind::LibraryNew:
        break;
    }
    return library_new_code(parameters.library);
}

} // namespace morvane
