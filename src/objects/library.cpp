#include "base/errors.h"
#include "base/numbers.h"
#include "base/text.h"
#include "objects/geo_placement.h"
#include "objects/rewrite.h"

#include <cmath>

namespace morvane {

namespace {

// 65536 / scale, cut to a whole number: what the placement of a library object carries.
std::string scale_word(const std::string& scale) {
    const double number = val(scale);
    if (number == 0) {
        throw RuntimeError(ErrorNumber::DivisionByZero, "the library object's scale is 0");
    }
    return plain_text(std::floor(65536 / number));
}

class Library final : public KindWriter {
  public:
    explicit Library(const LibraryParameters& parameters)
        : parameters_(parameters), grounding_{parameters.lib_OTG, parameters.lib_Terrain_alt} {}

    void write_triangle(Rewriting& to, const Triangle& triangle) override {
        const FieldArray reference = split_fields(to.placement().placement_line);
        const std::string skip = "SKIP_LIB" + to_text(to.line());
        to.emit(std::string(scale_keyword(grounding_)) + skip + ", " + std::string(reference[2]) +
                ", " + std::string(reference[3]) + ", " + scale_word(parameters_.libScale) +
                geo_coordinates(to.placement(), triangle.vertex, grounding_));
        to.advance();
        to.emit("    KZM_LIBRARY_CALL " + parameters_.libGUID);
        to.advance();
        to.emit(skip + "  label BGLCODE");
    }

    // The closing label has no number: a second material writes the same label again, as required.
    void close(Rewriting& to) override {
        const std::size_t closing = to.counter() + 1;
        to.set_up_line(closing, "SKIP_LIB  label BGLCODE");
        to.raise_base(closing);
    }

  private:
    LibraryParameters parameters_;
    Grounding grounding_;
};

} // namespace

std::unique_ptr<KindWriter> make_library(const LibraryParameters& parameters) {
    return std::make_unique<Library>(parameters);
}

} // namespace morvane
