// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/picture_rig.h"

#include <vector>

namespace morvane::test {

SceneView& scene_view(const Rig& rig) {
    return control<SceneView>(*rig.form, "sceneView");
}

void settle() {
    QTest::qWait(5);
}

namespace {

template <typename Fits>
std::optional<QPoint> place_of(SceneView& view, const Fits& fits) {
    const raster::Picture& picture = view.picture();
    std::vector<QPoint> places;
    for (int y = 0; y < picture.size.height; ++y) {
        for (int x = 0; x < picture.size.width; ++x) {
            const auto pointed =
                scene::pointed_at(view.scene(), view.ghost(), picture.ids[picture.at(x, y)]);
            if (pointed && fits(*pointed)) {
                places.emplace_back(x, y);
            }
        }
    }
    return places.empty() ? std::nullopt
                          : std::optional(places[places.size() / 2] / view.devicePixelRatioF());
}

} // namespace

std::optional<QPoint> place_of_material(SceneView& view, int material) {
    return place_of(view, [=](const scene::Pointed& p) { return p.material == material; });
}

std::optional<QPoint> place_of_line(SceneView& view, std::uint32_t line) {
    return place_of(view, [=](const scene::Pointed& p) { return p.line == line; });
}

} // namespace morvane::test
