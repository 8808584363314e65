#pragma once

#include "objects/parameters.h"
#include "source/fields.h"
#include "source/open_set.h"
#include "system/services.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace morvane {

/// A triangle of the block that is being rewritten.
struct Triangle {
    FieldArray fields; // of its DRAW_TRI line: fields 1 to 3 are vertex numbers
    FieldArray vertex; // of its first vertex: x, y, z, then the normal's x, y, z
};

/// One material on its way from triangles to code: the place in the model store, and the place in
/// the new-code buffer.
class Rewriting {
  public:
    /// Throws SubscriptOutOfRange when `row` is no row of the translation table.
    Rewriting(OpenSet& set, std::size_t row);

    const Placement& placement() const { return set_.placement; }
    const Translation& material() const { return set_.translation(row_); }
    /// "LBL" and the row.
    const std::string& label() const { return label_; }
    /// The model store's index of the line looked at; for a kind that writes a triangle's code, of
    /// the line after the triangle.
    std::size_t line() const { return line_; }
    /// k: the number of buffer lines used behind the base.
    std::size_t counter() const { return counter_; }

    /// Fields of the vertex with that number within the block.
    FieldArray vertex(double number) const;

    /// Writes the buffer line base + counter.
    void emit(std::string text);
    /// Raises the counter.
    void advance() { ++counter_; }
    /// Writes the buffer line base + `offset`, before any triangle.
    void set_up_line(std::size_t offset, std::string text);
    /// Raises the buffer's base (its element 0) to base + `count`.
    void raise_base(std::size_t count);

    bool at_triangle() const;
    Triangle triangle() const;
    /// Comments out the line looked at.
    void comment_out();
    void next_line() { ++line_; }

    /// Forgets the lines written; the comments stay.
    void forget_code();

  private:
    OpenSet& set_;
    std::size_t row_;
    std::string label_;
    std::size_t line_;
    std::size_t counter_ = 0;
    double first_vertex_ = 0;
    std::size_t old_base_;
};

/// What distinguishes one kind of object from another while a block is walked.
class KindWriter {
  public:
    KindWriter() = default;
    KindWriter(const KindWriter&) = delete;
    KindWriter& operator=(const KindWriter&) = delete;
    virtual ~KindWriter() = default;

    /// Called once, when the block's first line is a triangle.
    virtual void set_up(Rewriting&) {}
    /// Called before a triangle's line is commented out. False, after a message box, gives the
    /// material up.
    virtual bool accept(Rewriting&, const Triangle&) { return true; }
    /// Writes a triangle's code. The counter has been raised for it.
    virtual void write_triangle(Rewriting&, const Triangle&) = 0;
    /// Called once, behind the last triangle.
    virtual void close(Rewriting&) = 0;
};

std::unique_ptr<KindWriter> make_lights(const LightParameters& parameters);
std::unique_ptr<KindWriter> make_effects(const EffectParameters& parameters);
std::unique_ptr<KindWriter> make_windsock(const WindsockParameters& parameters, Reporter& reporter);
std::unique_ptr<KindWriter> make_library(const LibraryParameters& parameters);
std::unique_ptr<KindWriter> make_library_new(const LibraryParameters& parameters);

/// Turns the triangles of a marked material (row of the translation table) into code of a kind:
/// the block's lines are commented out in the model store, the code goes into the new-code buffer,
/// and when `trace_folder` names one, "bgl_code.txt" and "bgl_new_code.txt" are written there.
///
/// Gives the number of buffer lines used; nothing when a windsock's triangle was flat, after its
/// message box (lines commented out so far stay so, the buffer is as before). Throws RuntimeError
/// on the way, and then leaves it to the caller to put the set back.
std::optional<std::size_t> rewrite_material(const Services& services, OpenSet& set, std::size_t row,
                                            Kind kind, const Parameters& parameters,
                                            const std::optional<std::string>& trace_folder = {});

} // namespace morvane
