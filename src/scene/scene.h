// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/reporter.h"
#include "raster/picture.h"
#include "raster/vector.h"
#include "scene/reference.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace morvane::scene {

using raster::Affine;
using raster::Box;
using raster::Colour;
using raster::Vec3;

/// A material of the model's list.
struct SceneMaterial {
    Colour diffuse = 0xFFB4B4B4; // with its alpha
    Colour ambient = 0xFFB4B4B4; // with the alpha of the diffuse colour
};

/// A texture of the model's list. Pictures stay flat: only whether it is at hand counts.
struct SceneTexture {
    std::string name;
    std::string path; // where it was found; empty: missing, or not looked for yet
};

/// Triangles that are drawn in one go: what one DRAW_TRI_BEGIN begins, each time it is reached.
struct SceneBlock {
    int material = -1;            // zero-based number; -1: none
    int look = -1;                // position in Scene::materials; -1: none
    int texture = -1;             // position in Scene::textures; -1: none
    std::uint32_t begin_line = 0; // of the model file; 0: generated
    std::uint32_t triangles = 0;  // DRAW_TRI lines in the file's block, drawable or not
    bool reached = true;          // false: no way through the code leads here
    Affine transform{};           // from the model file's numbers to the scene
};

struct SceneTriangle {
    std::array<std::uint32_t, 3> corners{}; // positions in Scene::points
    std::uint32_t block = 0;                // position in Scene::blocks
    std::uint32_t index = 0;                // within its block, from 0
    std::uint32_t line = 0;                 // its DRAW_TRI line in the model file
    std::uint32_t first_vertex = 0;         // position in Scene::vertices
    std::uint32_t light = 256;              // of 256: how much of its colour is seen by day
};

/// A vertex as the model file has it.
struct SourceVertex {
    Vec3 place;
    Vec3 normal;
};

/// The triangle that a generated object came from.
struct MarkSource {
    int material = -1;
    std::uint32_t line = 0;  // of the (commented out) triangle in the model file
    std::uint32_t index = 0; // within its block, from 0
    Vec3 place;              // of the corner that the object was put at, in the scene
    double distance = 0;     // metres from there to the object
};

enum class MarkKind { Light, Effect, Windsock, LibraryCall };

/// A generated object as its lines say, which need not be where it was meant to be.
struct Mark {
    MarkKind kind = MarkKind::Light;
    Vec3 place{};
    Affine frame{};           // from the numbers at its place to the scene; an object's own units
    Vec3 direction{};         // of a light's normal, length 1; zero when it has none
    bool cone = false;        // a landing or taxi light
    std::string name{};       // type of a light, name of an effect, identifier of an object
    std::string parameters{}; // time constraints of an effect
    std::array<std::int32_t, 4> guid{};
    Colour colour = 0xFFFFFFFF; // of a light, of a windsock's mast
    Colour sock_colour = 0xFFFFFFFF;
    double height = 0; // of the mast, metres
    double length = 0; // of the sock, metres
    bool lit = false;
    bool geographic = false;      // placed by latitude and longitude
    bool above_sea_level = false; // its height is shown over an assumed terrain
    bool reached = true;
    std::uint32_t line = 0; // of the model file; 0: not saved yet
    std::optional<MarkSource> source{};
};

/// A set's geometry and everything generated, in metres around the reference point: x east, y up
/// from the ground, z north.
struct Scene {
    std::string model_path; // the model file
    std::vector<SceneMaterial> materials;
    std::vector<SceneTexture> textures;
    std::vector<SourceVertex> vertices;
    std::vector<Vec3> points;
    std::vector<Vec3> normals; // of each point, in the scene
    std::vector<SceneBlock> blocks;
    std::vector<SceneTriangle> triangles;
    std::vector<std::array<std::uint32_t, 2>> lines; // DRAW_LINE: positions in points
    std::vector<Mark> marks;
    Reference reference;
    // Metres above sea level that the heights of marks are shown over; it follows from the first of
    // them. std::nullopt: no mark needs it.
    std::optional<double> terrain;
    Box box; // of triangles and marks
    std::vector<Note> notes;
};

/// What an id of a pixel stands for.
inline constexpr std::uint32_t mark_bit = 0x80000000;
inline constexpr std::uint32_t ghost_bit = 0x40000000;

/// A triangle as the status line names it.
struct PickedTriangle {
    std::size_t triangle = 0; // position in Scene::triangles
    int material = -1;
    std::uint32_t line = 0;  // of the model file
    std::uint32_t index = 0; // within its block, from 0
    std::uint32_t count = 0; // triangles of its block
    Vec3 first_vertex;       // as the model file has it
};

/// The triangle or mark that was drawn with an id; std::nullopt for other ids.
std::optional<PickedTriangle> picked_triangle(const Scene& scene, std::uint32_t id);
std::optional<std::size_t> picked_mark(const Scene& scene, std::uint32_t id);

/// "airport_0.asm:371, MATERIAL 12, triangle 2 of 3, first vertex (x y z)".
std::string picked_text(const Scene& scene, const PickedTriangle& picked);

/// "textures: 3 of 5 found; animation at rest; finest detail": what the picture does not show.
std::string limits_text(const Scene& scene);

/// What could not be drawn of a file. The same trouble in many places is one note, which names the
/// first place and how many there are: a damaged file of a million triangles stays readable.
class Problems {
  public:
    /// `text` is what is wrong, e.g. "a triangle names a vertex that is not there"; `line` of the
    /// file, 0 where there is none.
    void add(const std::string& text, std::size_t line);
    std::vector<Note> notes(const std::string& path) const;

  private:
    struct Trouble {
        std::string text;
        std::size_t line = 0; // of the first
        std::size_t count = 0;
    };
    std::vector<Trouble> troubles_;
};

} // namespace morvane::scene
