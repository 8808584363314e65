#include "objects/rewrite.h"

#include "base/errors.h"
#include "base/numbers.h"
#include "base/reporter.h"
#include "base/text.h"
#include "objects/trace.h"

namespace morvane {

Rewriting::Rewriting(OpenSet& set, std::size_t row)
    : set_(set), row_(row), label_("LBL" + to_text(row)),
      line_(set.translation(row).block.selecting_line + 1), old_base_(set.new_code.base) {
    first_vertex_ =
        val(get_field(set_.model.line(line_), 1)) + static_cast<double>(set_.vertex_list);
}

FieldArray Rewriting::vertex(double number) const {
    return split_fields(trim(set_.model.line(to_index(first_vertex_ + number))));
}

void Rewriting::emit(std::string text) {
    set_up_line(counter_, std::move(text));
}

void Rewriting::set_up_line(std::size_t offset, std::string text) {
    set_.new_code.set_line(set_.new_code.base + offset, std::move(text));
}

void Rewriting::raise_base(std::size_t count) {
    set_.new_code.base += count;
}

bool Rewriting::at_triangle() const {
    return trim(set_.model.line(line_)).starts_with("DRAW_TRI ");
}

Triangle Rewriting::triangle() const {
    const FieldArray fields = split_fields(set_.model.line(line_));
    return {fields, vertex(val(fields[1]))};
}

void Rewriting::comment_out() {
    set_.model.comment_out(line_);
}

void Rewriting::forget_code() {
    set_.new_code.cut_back_to(old_base_);
}

namespace {

std::unique_ptr<KindWriter> make_writer(Kind kind, const Parameters& parameters,
                                        Reporter& reporter) {
    switch (kind) {
    case Kind::Lights:
        return make_lights(parameters.lights);
    case Kind::Effects:
        return make_effects(parameters.effects);
    case Kind::Windsock:
        return make_windsock(parameters.windsock, reporter);
    case Kind::Library:
        return make_library(parameters.library);
    case Kind::LibraryNew:
        break;
    }
    return make_library_new(parameters.library);
}

// False when the triangle was not accepted.
bool rewrite_triangle(Rewriting& rewriting, KindWriter& writer) {
    const std::size_t line = rewriting.line();
    try {
        const Triangle triangle = rewriting.triangle();
        if (!writer.accept(rewriting, triangle)) {
            return false;
        }
        rewriting.comment_out();
        rewriting.advance();
        rewriting.next_line();
        writer.write_triangle(rewriting, triangle);
        return true;
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.code(), error.about() + " (triangle in line " + to_text(line) +
                                             " of the model file)");
    }
}

// False when a triangle was not accepted.
bool rewrite_block(Rewriting& rewriting, KindWriter& writer) {
    rewriting.comment_out();
    rewriting.next_line();
    if (rewriting.at_triangle()) {
        writer.set_up(rewriting);
    }
    while (rewriting.at_triangle()) {
        if (!rewrite_triangle(rewriting, writer)) {
            return false;
        }
    }
    rewriting.comment_out();
    writer.close(rewriting);
    return true;
}

} // namespace

std::optional<std::size_t> rewrite_material(const Services& services, OpenSet& set, std::size_t row,
                                            Kind kind, const Parameters& parameters,
                                            const std::optional<std::string>& trace_folder) {
    Rewriting rewriting(set, row);
    const auto writer = make_writer(kind, parameters, services.reporter);
    if (!rewrite_block(rewriting, *writer)) {
        rewriting.forget_code();
        return std::nullopt;
    }
    write_code_traces(services.disk, set, trace_folder);
    return rewriting.counter();
}

} // namespace morvane
