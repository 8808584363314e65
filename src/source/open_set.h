#pragma once

#include "source/line_store.h"
#include "source/opened_file.h"

#include <cstddef>
#include <string>
#include <vector>

namespace morvane {

/// A line of the model's material list.
struct Material {
    std::string text;          // the trimmed line
    std::size_t list_line = 0; // its index in the model store
};

/// Where a material is selected for drawing.
struct MaterialBlock {
    std::size_t selecting_line = 0; // index of its MATERIAL line in the model store
    std::size_t block_end = 0;      // index of the first DRAW_TRI_END line behind that
    std::size_t further_places = 0; // how often it is selected again
};

/// A material marked by its highlight colour: one row of the translation table.
struct Translation {
    std::size_t number = 0;    // zero-based, its position in the material list
    std::size_t list_line = 0; // index in the model store
    MaterialBlock block;
    std::string highlight; // six hex digits in the platform's order, blue green red
    std::string color;     // its own colour, RRGGBB
    std::string processed; // empty until Process has rewritten it, then the kind
};

/// Where the frame file places the object. Latitude and longitude are in the file's units with a
/// fraction.
struct Placement {
    double placement_a = 0;         // reference longitude
    double placement_b = 0;         // reference latitude
    double placement_b_degrees = 0; // reference latitude in degrees
    std::string placement_line;     // the SCALE_AGL line
    double placement_rotation = 0;  // 1/65536 of a full turn
    std::string unreadable;         // why the frame file's placement could not be read, or empty
};

/// One insertion into the model file.
struct ReplacementRecord {
    std::size_t insertion_line = 0; // generated lines go before this line of the model store
    std::size_t tag = 0;            // marks the record's lines in the generated-code table
};

struct GeneratedRow {
    std::size_t tag = 0;
    std::string text;
};

/// One entry of the parameter extension dictionary.
struct DictionaryRow {
    std::string equ_line;
    std::string dd_line;
};

/// The new-code buffer: collects the generated lines of all materials of a set. Lines stand at
/// 1 .. base; a line that nobody wrote is empty text.
struct NewCodeBuffer {
    std::size_t base = 0; // element 0: the index of the last line in use
    std::vector<std::string> lines{std::string()};

    void set_line(std::size_t index, std::string text);
    void cut_back_to(std::size_t old_base);
};

/// Everything that lives from one Open to the next.
struct OpenSet {
    static constexpr std::size_t max_translations = 300;
    static constexpr std::size_t max_records = 100;
    static constexpr std::size_t max_generated_rows = 50000;

    std::string base;
    LineStore model;
    LineStore frame;
    OpenedFile model_file; // as they were on the disk when they were read
    OpenedFile frame_file;
    std::vector<Material> materials;       // material number n stands at n - 1
    std::vector<Translation> translations; // row n of the translation table stands at n - 1
    std::size_t vertex_list = 0;           // index of the line after VERTEX_LIST_BEGIN
    std::size_t bgl_end = 1;               // a line of the model before which no BGL_END stands
    Placement placement;
    NewCodeBuffer new_code;
    std::vector<ReplacementRecord> records; // ascending by insertion line
    std::vector<GeneratedRow> generated;
    std::vector<DictionaryRow> dictionary;
    bool frame_changed = false;
    bool opened = false; // the material list is filled, Process may select from it
    bool saved = false;

    /// Row 1 .. n of the translation table. Throws SubscriptOutOfRange elsewhere.
    Translation& translation(std::size_t row);
    const Translation& translation(std::size_t row) const;
    /// How many marked materials Process has not rewritten yet.
    std::size_t unprocessed() const;
};

} // namespace morvane
