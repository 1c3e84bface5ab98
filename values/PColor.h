#pragma once
// A colour of red, green and blue channels of 16 bits each. Its text form is
// "#rrggbb"; names of colours are resolved by the document's colour table, not
// here.
#include <cstdint>
#include <string>

class PColor {
public:
    constexpr PColor() = default;
    constexpr PColor(uint16_t r, uint16_t g, uint16_t b) : red(r), green(g), blue(b) {}

    // Reads literal colour text: "#rrggbb", "#rgb" or "#rrrrggggbbbb" (hex
    // digits in either case). Answers whether a colour was found; the colour is
    // changed only then.
    bool FromString(const std::string& text);
    // "#rrggbb" in lower case, from the high byte of each channel.
    std::string ToString() const;
    std::string AsString() const { return ToString(); }

    bool operator==(const PColor& other) const {
        return red == other.red && green == other.green && blue == other.blue;
    }
    bool operator!=(const PColor& other) const { return !(*this == other); }

    bool IsBlack() const { return red == 0 && green == 0 && blue == 0; }

    // Hue in degrees [0, 360), saturation and value in [0, 100].
    void ToHSV(double& hue, double& saturation, double& value) const;
    static PColor HSV(double hue, double saturation, double value);

    // A gray `level` sixteenths of the way from white to black: Gray(0) is
    // white, Gray(16) black.
    static PColor Gray(int level);

    static constexpr PColor Black() { return PColor(0, 0, 0); }
    static constexpr PColor White() { return PColor(0xFFFF, 0xFFFF, 0xFFFF); }

    uint16_t red = 0;
    uint16_t green = 0;
    uint16_t blue = 0;
};
