#include "PColor.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "HexEscapes.h"

namespace {

// Reads `count` hex digits at `at`; -1 when any is not a hex digit.
long HexRun(const std::string& text, size_t at, size_t count) {
    long value = 0;
    for (size_t i = 0; i < count; ++i) {
        int d = HexEscapes::DigitValue(text[at + i]);
        if (d < 0) return -1;
        value = value * 16 + d;
    }
    return value;
}

uint16_t Channel(double unit) {
    return static_cast<uint16_t>(std::lround(std::clamp(unit, 0.0, 1.0) * 65535.0));
}

}  // namespace

bool PColor::FromString(const std::string& text) {
    if (text.empty() || text[0] != '#') return false;
    const size_t digits = text.size() - 1;
    size_t width;
    if (digits == 3) {
        width = 1;
    } else if (digits == 6) {
        width = 2;
    } else if (digits == 12) {
        width = 4;
    } else {
        return false;
    }
    long r = HexRun(text, 1, width);
    long g = HexRun(text, 1 + width, width);
    long b = HexRun(text, 1 + 2 * width, width);
    if (r < 0 || g < 0 || b < 0) return false;
    // Widen each channel to 16 bits by repeating its digits.
    const long factor = width == 1 ? 0x1111 : (width == 2 ? 0x101 : 1);
    red = static_cast<uint16_t>(r * factor);
    green = static_cast<uint16_t>(g * factor);
    blue = static_cast<uint16_t>(b * factor);
    return true;
}

std::string PColor::ToString() const {
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "#%02x%02x%02x", red >> 8, green >> 8, blue >> 8);
    return buffer;
}

void PColor::ToHSV(double& hue, double& saturation, double& value) const {
    const double r = red / 65535.0, g = green / 65535.0, b = blue / 65535.0;
    const double maxC = std::max({r, g, b});
    const double minC = std::min({r, g, b});
    const double delta = maxC - minC;
    value = maxC * 100.0;
    saturation = maxC > 0.0 ? delta / maxC * 100.0 : 0.0;
    if (delta <= 0.0) {
        hue = 0.0;
        return;
    }
    double h;
    if (maxC == r) {
        h = std::fmod((g - b) / delta, 6.0);
    } else if (maxC == g) {
        h = (b - r) / delta + 2.0;
    } else {
        h = (r - g) / delta + 4.0;
    }
    h *= 60.0;
    if (h < 0.0) h += 360.0;
    hue = h;
}

PColor PColor::HSV(double hue, double saturation, double value) {
    if (!std::isfinite(hue)) hue = 0.0;
    const double s = std::clamp(std::isfinite(saturation) ? saturation : 0.0, 0.0, 100.0) / 100.0;
    const double v = std::clamp(std::isfinite(value) ? value : 0.0, 0.0, 100.0) / 100.0;
    double h = std::fmod(hue, 360.0);
    if (h < 0.0) h += 360.0;
    const double c = v * s;
    const double x = c * (1.0 - std::fabs(std::fmod(h / 60.0, 2.0) - 1.0));
    const double m = v - c;
    double r = 0, g = 0, b = 0;
    switch (static_cast<int>(h / 60.0)) {
        case 0: r = c; g = x; break;
        case 1: r = x; g = c; break;
        case 2: g = c; b = x; break;
        case 3: g = x; b = c; break;
        case 4: r = x; b = c; break;
        default: r = c; b = x; break;
    }
    return PColor(Channel(r + m), Channel(g + m), Channel(b + m));
}

PColor PColor::Gray(int level) {
    level = std::clamp(level, 0, 16);
    uint16_t c = static_cast<uint16_t>(65535L * (16 - level) / 16);
    return PColor(c, c, c);
}
