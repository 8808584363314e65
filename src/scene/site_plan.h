// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/scene.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace morvane::scene {

/// Several sets in one picture, each where its frame file puts it.
class SitePlan {
  public:
    /// A set of the plan.
    struct Site {
        std::string name;
        Vec3 place;                     // its reference point
        Box box;                        // of its triangles
        std::size_t first_triangle = 0; // in the scene of all
        std::string trouble;            // what seems to be wrong with its place; empty: nothing
    };

    /// Adds a set as its scene has it, without its marks. The first one with a reference place is
    /// the middle of the plan. Returns false, and adds nothing, for a set that has none.
    bool add(const std::string& name, const Scene& scene);
    /// Says of each set in `Site::trouble` whether it covers what another one covers, or is as far
    /// from the others as no airport is wide. To be called when all are added.
    void look_for_troubles();

    /// All together.
    const Scene& scene() const { return all_; }
    const std::vector<Site>& sites() const { return sites_; }
    /// The set that a pixel's id, as Painter::draw sets it, belongs to.
    std::optional<std::size_t> site_of(std::uint32_t id) const;

  private:
    void add_geometry(const Scene& scene, const Vec3& by);
    std::string trouble_of(std::size_t site) const;

    Scene all_;
    std::vector<Site> sites_;
};

/// Sets whose outlines differ by less than this, in metres, are in one place.
inline constexpr double same_place = 1;
/// A set with no other within this many metres is far away.
inline constexpr double far_away = 30000;

} // namespace morvane::scene
