#include "SGeometry.h"

#include <sstream>

std::string SRect::ToString() const {
    std::ostringstream out;
    out.precision(10);
    out << top << ' ' << left << ' ' << bottom << ' ' << right;
    return out.str();
}

bool SRect::FromString(const std::string& text) {
    std::istringstream in(text);
    double t, l, b, r;
    if (!(in >> t >> l >> b >> r)) return false;
    *this = SRect(t, l, b, r);
    return true;
}
