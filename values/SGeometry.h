#pragma once
// Geometric values of doubles: a point and a rectangle. y grows downward.
#include <string>

class SPoint {
public:
    constexpr SPoint() = default;
    constexpr SPoint(double xValue, double yValue) : x(xValue), y(yValue) {}

    SPoint operator+(const SPoint& o) const { return SPoint(x + o.x, y + o.y); }
    SPoint operator-(const SPoint& o) const { return SPoint(x - o.x, y - o.y); }
    SPoint operator*(double f) const { return SPoint(x * f, y * f); }
    SPoint operator/(double f) const { return SPoint(x / f, y / f); }
    SPoint& operator+=(const SPoint& o) { x += o.x; y += o.y; return *this; }
    SPoint& operator-=(const SPoint& o) { x -= o.x; y -= o.y; return *this; }
    bool operator==(const SPoint& o) const { return x == o.x && y == o.y; }
    bool operator!=(const SPoint& o) const { return !(*this == o); }

    double x = 0.0;
    double y = 0.0;
};

// A rectangle given by its edges, built in the order top, left, bottom, right.
class SRect {
public:
    constexpr SRect() = default;
    constexpr SRect(double topEdge, double leftEdge, double bottomEdge, double rightEdge)
        : top(topEdge), left(leftEdge), bottom(bottomEdge), right(rightEdge) {}

    double Top() const { return top; }
    double Left() const { return left; }
    double Bottom() const { return bottom; }
    double Right() const { return right; }
    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
    SPoint TopLeft() const { return SPoint(left, top); }
    SPoint Center() const { return SPoint((left + right) / 2.0, (top + bottom) / 2.0); }
    bool IsEmpty() const { return right <= left || bottom <= top; }
    bool Contains(const SPoint& p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }

    // The four edges in constructor order, blank-separated, each written as a
    // double at precision 10: "10 20 30 40".
    std::string ToString() const;
    // Reads the four numbers of ToString; answers false (leaving the
    // rectangle alone) unless all four were read.
    bool FromString(const std::string& text);

    bool operator==(const SRect& o) const {
        return top == o.top && left == o.left && bottom == o.bottom && right == o.right;
    }
    bool operator!=(const SRect& o) const { return !(*this == o); }

    double top = 0.0;
    double left = 0.0;
    double bottom = 0.0;
    double right = 0.0;
};
