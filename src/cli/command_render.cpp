// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/guid128.h"
#include "base/paths.h"
#include "base/text.h"
#include "cli/cli.h"
#include "cli/json_text.h"
#include "raster/picture.h"
#include "raster/strokes.h"
#include "recipe/apply_recipe.h"
#include "recipe/recipe.h"
#include "scene/draw_scene.h"
#include "scene/draw_shape.h"
#include "scene/read_library.h"
#include "scene/read_set.h"
#include "source/materials.h"
#include "source/open_set.h"
#include "source/source_set.h"
#include "system/replace_files.h"

#include <charconv>
#include <iostream>
#include <map>
#include <optional>

namespace morvane::cli {

namespace {

constexpr int largest_side = 8192;
constexpr raster::PictureSize default_size{800, 600};

struct RenderOptions {
    std::string input; // base path of a set, or a BGL file
    std::string recipe;
    std::string output;
    std::string view = "3d";
    std::string size; // empty: the default
    std::string object;
    std::string textures;
    std::vector<std::string> libraries;
    std::size_t row = 0; // 0: none
    bool no_marks = false;
    bool dark = false;
};

int usage_error(const std::string& text) {
    std::cerr << text << '\n';
    return wrong;
}

std::optional<int> side(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, value);
    const bool fits = error == std::errc() && next == end && value >= 1 && value <= largest_side;
    return fits ? std::optional(value) : std::nullopt;
}

std::optional<raster::PictureSize> picture_size(std::string_view text) {
    const std::size_t x = text.find('x');
    const auto width = side(text.substr(0, x));
    const auto height = x == text.npos ? std::nullopt : side(text.substr(x + 1));
    return width && height ? std::optional(raster::PictureSize{*width, *height}) : std::nullopt;
}

raster::View view_of(const std::string& name) {
    static const std::map<std::string, raster::View> views{
        {"plan", raster::View::Plan}, {"front", raster::View::Front}, {"side", raster::View::Side}};
    const auto found = views.find(name);
    return found == views.end() ? raster::View::Orbit : found->second;
}

scene::DrawOptions draw_options(const RenderOptions& options) {
    scene::DrawOptions result;
    result.marks = !options.no_marks;
    result.dark = options.dark;
    return result;
}

// The scene with what a recipe would make; std::nullopt after a message.
std::optional<scene::Scene> scene_with_recipe(Cli& cli, const RenderOptions& options,
                                              OpenSet& set) {
    const RecipeReading reading = read_recipe(*cli.disk, options.recipe, cli.default_effect());
    if (!reading.recipe) {
        cli.status = report_wrong(cli, reading.errors, reading.problems);
        return std::nullopt;
    }
    if (!open_source_set(cli.services(), set, options.input)) {
        return std::nullopt;
    }
    const RecipePlan plan = plan_recipe(set, *reading.recipe);
    if (!plan.errors.empty()) {
        cli.status = report_wrong(cli, plan.errors, plan.problems);
        return std::nullopt;
    }
    if (!apply_recipe(cli.services(), set, *reading.recipe, plan).ok) {
        return std::nullopt;
    }
    return scene::read_set(set);
}

// The MATERIAL number of a row of the list of marked materials.
std::optional<int> number_of_row(Cli& cli, const RenderOptions& options) {
    const auto file = cli.disk->open_for_reading(model_file_name(options.input));
    const LineStore model = LineStore::read(*file);
    const auto rows = build_translation_list(model, find_material_list(model));
    return options.row <= rows.size()
               ? std::optional(static_cast<int>(rows[options.row - 1].number))
               : std::nullopt;
}

void write_picture(Cli& cli, const raster::Picture& picture, const std::string& path) {
    const std::string bytes = png_bytes(picture);
    replace_file(*cli.disk, path, [&](TextWriter& out) { out.write(bytes); });
}

Json textures_json(const scene::Scene& scene) {
    Json result = Json::array();
    for (const scene::SceneTexture& texture : scene.textures) {
        result.push_back({{"name", json_text(texture.name)},
                          {"path", texture.path.empty() ? Json() : json_path(texture.path)}});
    }
    return result;
}

void print_set(Cli& cli, const scene::Scene& scene, const std::string& output) {
    if (cli.json) {
        print_json(cli, {{"output", json_path(output)},
                         {"triangles", scene.triangles.size()},
                         {"marks", scene.marks.size()},
                         {"textures", textures_json(scene)},
                         {"messages", json_texts(cli.reporter.messages())}});
        return;
    }
    cli.reporter.print_notes();
    std::cout << output << ": " << scene.triangles.size() << " triangles, " << scene.marks.size()
              << " generated objects; " << limits_text(scene) << '\n';
    for (const scene::SceneTexture& texture : scene.textures) {
        if (texture.path.empty()) {
            std::cout << "texture not found: " << texture.name << '\n';
        }
    }
}

// Whether the output would replace something that is read.
bool is_input(Cli& cli, const RenderOptions& options, const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
        if (!input.empty() && is_same_file(*cli.disk, input, options.output)) {
            return true;
        }
    }
    return false;
}

raster::Camera camera_of(const RenderOptions& options) {
    raster::Camera camera;
    camera.view = view_of(options.view);
    return camera;
}

scene::Catalogue catalogue_of(Cli& cli, const RenderOptions& options) {
    scene::Catalogue catalogue;
    for (const std::string& path : options.libraries) {
        add_to_catalogue(catalogue, *cli.disk->open_for_reading(path));
    }
    return catalogue;
}

int render_set(Cli& cli, const RenderOptions& options, const raster::PictureSize& size) {
    if (is_input(
            cli, options,
            {model_file_name(options.input), frame_file_name(options.input), options.recipe})) {
        return usage_error("--output: '" + options.output + "' is one of the files to be drawn");
    }
    OpenSet set; // a scene made of it must not outlive it
    cli.status = failed;
    auto scene = options.recipe.empty()
                     ? std::optional(scene::read_set_files(*cli.disk, options.input))
                     : scene_with_recipe(cli, options, set);
    if (!scene) {
        cli.reporter.print_notes();
        return cli.status;
    }
    scene::DrawOptions draw = draw_options(options);
    if (options.row > 0) {
        const auto number = number_of_row(cli, options);
        if (!number) {
            return usage_error("--select: there is no row " + to_text(options.row) +
                               " of marked materials");
        }
        draw.selected = {*number};
    }
    locate_textures(*cli.disk, *scene, options.textures);
    for (const Note& note : scene->notes) {
        cli.reporter.note(note);
    }
    const scene::Catalogue catalogue = catalogue_of(cli, options);
    draw.objects = &catalogue;
    write_picture(cli, render_picture(*scene, camera_of(options), size, draw), options.output);
    print_set(cli, *scene, options.output);
    return done;
}

// The objects asked for: all, or those of a name or identifier.
std::vector<scene::Shape> shapes_of(Cli& cli, const RenderOptions& options) {
    const auto file = cli.disk->open_for_reading(options.input);
    const auto guid = parse_identifier(options.object);
    std::vector<scene::Shape> shapes;
    for (const scene::ObjectPlace& place : scene::list_object_places(*file)) {
        if (options.object.empty() || equal_ignoring_case(place.name, options.object) ||
            guid == place.guid) {
            shapes.push_back(read_shape(*file, place));
        }
    }
    return shapes;
}

raster::Picture picture_of_object(const scene::Shape& shape, const RenderOptions& options,
                                  const raster::PictureSize& size) {
    const scene::ShapeOptions draw{.dark = options.dark};
    raster::Picture picture = thumbnail(shape, size, draw, camera_of(options));
    const raster::Colour ink = scene::theme_of(options.dark, false).ink;
    draw_text(picture, 10, 10, shape.name, ink, 2);
    draw_text(picture, 10, 34, measures_text(shape), ink);
    return picture;
}

void print_shapes(Cli& cli, const std::vector<scene::Shape>& shapes, const RenderOptions& options) {
    if (!cli.json) {
        cli.reporter.print_notes();
        std::cout << options.output << ": " << shapes.size()
                  << (shapes.size() == 1 ? " object\n" : " objects\n");
        return;
    }
    Json objects = Json::array();
    for (const scene::Shape& shape : shapes) {
        objects.push_back({{"name", json_text(shape.name)},
                           {"guid_text", identifier_text(shape.guid, true)},
                           {"facets", shape.faces.size()},
                           {"commands", shape.commands},
                           {"trouble", shape.trouble.empty() ? Json() : Json(shape.trouble)}});
    }
    print_json(cli, {{"output", json_path(options.output)},
                     {"objects", objects},
                     {"messages", json_texts(cli.reporter.messages())}});
}

int render_library(Cli& cli, const RenderOptions& options,
                   const std::optional<raster::PictureSize>& size) {
    if (!options.recipe.empty() || options.row > 0) {
        return usage_error("a BGL file is drawn without a recipe and without --select");
    }
    if (is_input(cli, options, {options.input})) {
        return usage_error("--output: '" + options.output + "' is the file to be drawn");
    }
    const std::vector<scene::Shape> shapes = shapes_of(cli, options);
    if (shapes.empty()) {
        cli.reporter.message_box(
            options.object.empty()
                ? "There is no library in " + options.input + " that can be drawn."
                : "There is no object " + options.object + " in " + options.input + ".",
            Icon::Critical);
        return failed;
    }
    for (const scene::Shape& shape : shapes) {
        if (!shape.trouble.empty()) {
            cli.reporter.note({shape.name + ": " + shape.trouble, options.input});
        }
    }
    const raster::Picture picture =
        shapes.size() == 1 && !options.object.empty()
            ? picture_of_object(shapes.front(), options, size.value_or(default_size))
            : sheet(shapes, size.value_or(raster::PictureSize{0, 0}), camera_of(options),
                    {.dark = options.dark});
    write_picture(cli, picture, options.output);
    print_shapes(cli, shapes, options);
    return done;
}

int run_render(Cli& cli, const RenderOptions& options) {
    const auto size = picture_size(options.size);
    if (!size && !options.size.empty()) {
        return usage_error("--size: '" + options.size + "' is not WIDTHxHEIGHT, 1 to " +
                           std::to_string(largest_side) + " each");
    }
    return has_ending(options.input, ".bgl")
               ? render_library(cli, options, size)
               : render_set(cli, options, size.value_or(default_size));
}

} // namespace

void add_render_command(CLI::App& app, Cli& cli) {
    auto* command = app.add_subcommand(
        "render", "Draw a set, with a recipe what it would make, or objects of a BGL library");
    const auto options = std::make_shared<RenderOptions>();
    command->add_option("INPUT", options->input, "Base path of a set, or a BGL file")
        ->type_name("BASE|FILE.bgl")
        ->required();
    command->add_option("RECIPE", options->recipe, "Recipe file (TOML)");
    command->add_option("--output", options->output, "The picture (PNG)")
        ->type_name("FILE.png")
        ->required();
    command->add_option("--view", options->view, "3d (the default), plan, front or side")
        ->check(CLI::IsMember({"3d", "plan", "front", "side"}))
        ->type_name("VIEW");
    command->add_option("--size", options->size, "Pixels across and down; default 800x600")
        ->type_name("WxH");
    command->add_option("--select", options->row, "Row of the marked materials to light up")
        ->check(CLI::PositiveNumber)
        ->type_name("ROW");
    command->add_option("--object", options->object, "Name or identifier of one library object")
        ->type_name("NAME");
    command->add_option("--textures", options->textures, "A further folder with textures")
        ->type_name("DIR");
    command
        ->add_option("--library", options->libraries,
                     "A BGL library whose objects are shown where they are called")
        ->type_name("FILE.bgl");
    command->add_flag("--no-marks", options->no_marks, "Omit what was generated");
    command->add_flag("--dark", options->dark, "Draw on a dark background");
    add_example(*command, "render airport --output airport.png");
    on_call(*command, cli, [&cli, options] { return run_render(cli, *options); });
}

} // namespace morvane::cli
