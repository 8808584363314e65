#include "base/errors.h"
#include "base/numbers.h"
#include "base/reporter.h"
#include "objects/rewrite.h"
#include "source/materials.h"

#include <array>
#include <cmath>

namespace morvane {

namespace {

struct Vertex {
    double x = 0; // east
    double y = 0; // up
    double z = 0; // north
};

using Corners = std::array<Vertex, 3>;

std::string text(double value) {
    return format_decimal(value, 1, 6);
}

// Puts the lowest corner first, on ties the first of the lowest.
void lowest_first(Corners& corners) {
    double lowest = 99999.999;
    std::size_t index = corners.size();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        if (corners[i].y < lowest) {
            lowest = corners[i].y;
            index = i;
        }
    }
    if (index == corners.size()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange,
                           "a windsock's triangle lies higher than 99999.999");
    }
    std::swap(corners[0], corners[index]);
}

class Windsock final : public KindWriter {
  public:
    Windsock(const WindsockParameters& parameters, Reporter& reporter)
        : parameters_(parameters), reporter_(reporter) {}

    bool accept(Rewriting& from, const Triangle& triangle) override {
        for (std::size_t i = 0; i < corners_.size(); ++i) {
            const FieldArray vertex = from.vertex(val(triangle.fields[i + 1]));
            corners_[i] = {number_field(vertex[1]), number_field(vertex[2]),
                           number_field(vertex[3])};
        }
        lowest_first(corners_);
        // Only the second corner is compared with the lowest, whatever the third is.
        if (height() < 0.1) {
            reporter_.message_box(
                "The triangle used has zero height. It cannot be used for Windsock object.",
                Icon::Exclamation);
            return false;
        }
        return true;
    }

    void write_triangle(Rewriting& to, const Triangle&) override {
        const Vertex& foot = corners_[0];
        to.emit("    KZM_WINDSOCK " + text(foot.x) + ", " + text(foot.y) + ", " + text(foot.z) +
                ", " + text(height()) + ", " + text(size()) + ", 0FF" +
                swap_rgb(parameters_.ws_mastColor) + "h, 0FF" + to.material().color + "h," +
                (parameters_.ws_lit ? "1" : "0"));
    }

    void close(Rewriting& to) override { to.raise_base(to.counter()); }

  private:
    double height() const { return corners_[1].y - corners_[0].y; }

    double size() const {
        const double dx = corners_[1].x - corners_[2].x;
        const double dz = corners_[1].z - corners_[2].z;
        return std::sqrt(dx * dx + dz * dz);
    }

    WindsockParameters parameters_;
    Reporter& reporter_;
    Corners corners_{};
};

} // namespace

std::unique_ptr<KindWriter> make_windsock(const WindsockParameters& parameters,
                                          Reporter& reporter) {
    return std::make_unique<Windsock>(parameters, reporter);
}

} // namespace morvane
