#include "base/text.h"
#include "objects/geo_placement.h"
#include "objects/rewrite.h"

namespace morvane {

namespace {

class Effects final : public KindWriter {
  public:
    explicit Effects(const EffectParameters& parameters)
        : parameters_(parameters), grounding_{parameters.fx_OTG, parameters.fx_Terrain_alt} {}

    void write_triangle(Rewriting& to, const Triangle& triangle) override {
        const FieldArray reference = split_fields(to.placement().placement_line);
        const std::string skip = "SKIP_FX" + to_text(to.line());
        to.emit(std::string(scale_keyword(grounding_)) + skip + ", " + std::string(reference[2]) +
                ", " + std::string(reference[3]) + ", " + std::string(reference[4]) +
                geo_coordinates(to.placement(), triangle.vertex, grounding_));
        to.advance();
        to.emit("    KZM_FX1 \"" + parameters_.lstEffectType + "\" , \"" + parameters_.fx_params +
                "\"");
        to.advance();
        to.emit(skip + "  label BGLCODE");
    }

    // The closing label has no number: a second material writes the same label again, as required.
    void close(Rewriting& to) override {
        const std::size_t closing = to.counter() + 1;
        to.set_up_line(closing, "SKIP_FX  label BGLCODE");
        to.raise_base(closing);
    }

  private:
    EffectParameters parameters_;
    Grounding grounding_;
};

} // namespace

std::unique_ptr<KindWriter> make_effects(const EffectParameters& parameters) {
    return std::make_unique<Effects>(parameters);
}

} // namespace morvane
