// SPDX-License-Identifier: GPL-3.0-or-later
#include "scene/site_plan.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace morvane::scene {

namespace {

std::uint32_t moved(std::uint32_t position, std::size_t by) {
    return position + static_cast<std::uint32_t>(by);
}

int moved(int position, std::size_t by) {
    return position < 0 ? position : position + static_cast<int>(by);
}

double distance_between(const Vec3& a, const Vec3& b) {
    return std::hypot(a.x - b.x, a.z - b.z);
}

// Several sets of one airport may well have one reference place; what they draw is elsewhere then.
bool is_double(const SitePlan::Site& a, const SitePlan::Site& b) {
    return distance_between(a.box.low, b.box.low) < same_place &&
           distance_between(a.box.high, b.box.high) < same_place;
}

} // namespace

bool SitePlan::add(const std::string& name, const Scene& scene) {
    if (!scene.reference.place) {
        return false;
    }
    if (sites_.empty()) {
        all_.reference.place = scene.reference.place;
    }
    GeoPlace place = *scene.reference.place;
    place.above_ground = true; // heights count from the ground of each set
    place.altitude = 0;
    const Vec3 by = geo_to_scene(all_.reference, place, 0).offset;
    Site site{name, {by.x, 0, by.z}, {}, all_.triangles.size(), {}};
    add_geometry(scene, site.place);
    for (std::size_t i = site.first_triangle; i < all_.triangles.size(); ++i) {
        for (const std::uint32_t corner : all_.triangles[i].corners) {
            site.box.add(all_.points[corner]);
        }
    }
    site.box.add(site.place);
    all_.box.add(site.box.low);
    all_.box.add(site.box.high);
    sites_.push_back(std::move(site));
    return true;
}

void SitePlan::add_geometry(const Scene& scene, const Vec3& by) {
    const std::size_t points = all_.points.size();
    const std::size_t blocks = all_.blocks.size();
    const std::size_t materials = all_.materials.size();
    const std::size_t textures = all_.textures.size();
    all_.materials.insert(all_.materials.end(), scene.materials.begin(), scene.materials.end());
    all_.textures.insert(all_.textures.end(), scene.textures.begin(), scene.textures.end());
    all_.normals.insert(all_.normals.end(), scene.normals.begin(), scene.normals.end());
    for (const Vec3& point : scene.points) {
        all_.points.push_back(point + by);
    }
    for (SceneBlock block : scene.blocks) {
        block.look = moved(block.look, materials);
        block.texture = moved(block.texture, textures);
        all_.blocks.push_back(block);
    }
    for (SceneTriangle triangle : scene.triangles) {
        for (std::uint32_t& corner : triangle.corners) {
            corner = moved(corner, points);
        }
        triangle.block = moved(triangle.block, blocks);
        all_.triangles.push_back(triangle);
    }
    for (const auto& [from, to] : scene.lines) {
        all_.lines.push_back({moved(from, points), moved(to, points)});
    }
}

void SitePlan::look_for_troubles() {
    for (std::size_t i = 0; i < sites_.size(); ++i) {
        sites_[i].trouble = trouble_of(i);
    }
}

std::string SitePlan::trouble_of(std::size_t site) const {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < sites_.size(); ++i) {
        if (i == site) {
            continue;
        }
        if (is_double(sites_[i], sites_[site])) {
            return "in the place of " + sites_[i].name;
        }
        nearest = std::min(nearest, distance_between(sites_[i].place, sites_[site].place));
    }
    return sites_.size() > 1 && nearest > far_away
               ? format_decimal(nearest / 1000, 0, 0) + " km from the nearest other set"
               : std::string();
}

std::optional<std::size_t> SitePlan::site_of(std::uint32_t id) const {
    if (id == raster::no_id || id > all_.triangles.size()) {
        return std::nullopt;
    }
    std::size_t site = sites_.size() - 1;
    while (id - 1 < sites_[site].first_triangle) {
        --site;
    }
    return site;
}

} // namespace morvane::scene
