#include "base/numbers.h"
#include "objects/rewrite.h"

namespace morvane {

namespace {

// Places objects inside the model's own frame, so neither its rotation nor the ground counts.
class LibraryNew final : public KindWriter {
  public:
    explicit LibraryNew(const LibraryParameters& parameters)
        : parameters_(parameters), scale_(format_decimal(val(parameters.libScale), 1, 1)) {}

    void write_triangle(Rewriting& to, const Triangle& triangle) override {
        to.emit("    BGL_TRANSFORM_MAT " + std::string(triangle.vertex[1]) + ", " +
                std::string(triangle.vertex[2]) + ", " + std::string(triangle.vertex[3]) + ", " +
                scale_ + ", 0.0, 0.0, 0.0, " + scale_ + ", 0.0, 0.0, 0.0, " + scale_);
        to.advance();
        to.emit("    KZM_LIBRARY_CALL " + parameters_.libGUID);
        to.advance();
        to.emit("    BGL_TRANSFORM_END");
    }

    void close(Rewriting& to) override { to.raise_base(to.counter()); }

  private:
    LibraryParameters parameters_;
    std::string scale_;
};

} // namespace

std::unique_ptr<KindWriter> make_library_new(const LibraryParameters& parameters) {
    return std::make_unique<LibraryNew>(parameters);
}

} // namespace morvane
