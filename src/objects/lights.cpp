#include "objects/rewrite.h"

namespace morvane {

namespace {

constexpr std::size_t set_up_lines = 8;

class Lights final : public KindWriter {
  public:
    explicit Lights(const LightParameters& parameters) : parameters_(parameters) {}

    void set_up(Rewriting& to) override {
        write_condition(to);
        to.set_up_line(4, to.label() + "b label BGLCODE");
        to.set_up_line(5, "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL");
        write_flash_mask(to);
        to.set_up_line(8, to.label() + " label BGLCODE");
        to.raise_base(set_up_lines);
    }

    void write_triangle(Rewriting& to, const Triangle& triangle) override {
        const auto field = [&](std::size_t i) { return std::string(triangle.vertex[i]); };
        // The blank before the comma behind the intensity stands on purpose.
        to.emit("    BGL_LIGHT " + parameters_.LightType + ", " + field(1) + ", " + field(2) +
                ", " + field(3) + ", " + parameters_.LightInt + " ," + parameters_.LightAttnL +
                ", " + parameters_.LightAttS + ", 0FF" + to.material().color + "h, " + field(4) +
                ", " + field(5) + ", " + field(6));
    }

    void close(Rewriting& to) override {
        to.advance();
        to.emit(to.label() + "a label BGLCODE");
        to.raise_base(to.counter());
    }

  private:
    // Lines 1 to 3: what the whole group of lights depends on. With neither flag line 1 is left as
    // it is.
    void write_condition(Rewriting& to) const {
        if (parameters_.DayFlag) {
            to.set_up_line(1, "    VAR_BASE_OVERRIDE VAR_BASE_GLOBAL");
            to.set_up_line(2, "    IFIN1 " + to.label() + "b, tod, 1,1");
            to.set_up_line(3, "    BGL_JUMP_32 " + to.label() + "a");
            return;
        }
        to.set_up_line(2, ";");
        to.set_up_line(3, ";");
        if (parameters_.AircraftFlag) {
            const int bit = light_switch_bit(parameters_.LightType);
            to.set_up_line(1, ";   No globals needed !!!! ");
            to.set_up_line(2, "    IFMSK " + to.label() + "a, dict_g_lightStates , " +
                                  std::to_string(bit));
        }
    }

    void write_flash_mask(Rewriting& to) const {
        const std::string mask =
            "," + parameters_.LightVariable + ", 0" + parameters_.FlashMask + "h";
        if (parameters_.AircraftFlag) {
            to.set_up_line(6, "    IFMSK " + to.label() + "a" + mask);
            to.set_up_line(7, ";");
        } else {
            to.set_up_line(6, "    IFMSK " + to.label() + mask);
            to.set_up_line(7, "    BGL_JUMP_32 " + to.label() + "a");
        }
    }

    LightParameters parameters_;
};

} // namespace

std::unique_ptr<KindWriter> make_lights(const LightParameters& parameters) {
    return std::make_unique<Lights>(parameters);
}

} // namespace morvane
