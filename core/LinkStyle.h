#pragma once
// How a link is drawn (LinkStyle) and where a link is anchored in a note's
// text (TextSpan). Positions in text count UTF-16 code units, as StyledText
// does.
#include <vector>

class LinkStyle {
public:
    enum : unsigned {
        kLinear = 1,
        kBroad = 2,
        kDashed = 4,
        kDotted = 8,
        kBold = 16,
        kCurved = 32,
        kHidden = 64,
    };

    LinkStyle() { Initialize(); }
    explicit LinkStyle(unsigned bits) : bits(bits) {}

    // The default: a plain straight line.
    void Initialize() { bits = kLinear; }
    unsigned Bits() const { return bits; }
    void SetBits(unsigned b) { bits = b; }

    bool IsLinear() const { return bits & kLinear; }
    bool IsBroad() const { return bits & kBroad; }
    bool IsDashed() const { return bits & kDashed; }
    bool IsDotted() const { return bits & kDotted; }
    bool IsBold() const { return bits & kBold; }
    bool IsCurved() const { return bits & kCurved; }
    bool IsHidden() const { return bits & kHidden; }
    // Neither broad, dashed, dotted nor bold.
    bool IsNormal() const { return (bits & (kBroad | kDashed | kDotted | kBold)) == 0; }

    void SetLinear(bool on) { Flag(kLinear, on); }
    void SetBroad(bool on) { Flag(kBroad, on); }
    void SetDashed(bool on) { Flag(kDashed, on); }
    void SetDotted(bool on) { Flag(kDotted, on); }
    void SetBold(bool on) { Flag(kBold, on); }
    void SetCurved(bool on) { Flag(kCurved, on); }
    void SetHidden(bool on) { Flag(kHidden, on); }
    void SetNormal() { bits &= ~(kBroad | kDashed | kDotted | kBold); }

    bool operator==(const LinkStyle& other) const { return bits == other.bits; }

private:
    void Flag(unsigned bit, bool on) { bits = on ? (bits | bit) : (bits & ~bit); }
    unsigned bits = kLinear;
};

class TextSpan {
public:
    TextSpan() = default;
    TextSpan(int start, unsigned length, bool flag = false) : start(start), length(length), flag(flag) {}

    void Set(int s, unsigned l) {
        start = s;
        length = l;
    }
    bool IsEmpty() const { return length == 0; }
    int End() const { return start + static_cast<int>(length); }
    unsigned Length() const { return length; }
    int Start() const { return start; }
    void SetStart(int s) { start = s; }
    void SetLength(unsigned l) { length = l; }
    // Moves the end, keeping the start; an end before the start empties the span.
    void SetEnd(int end) { length = end > start ? static_cast<unsigned>(end - start) : 0; }
    bool GetFlag() const { return flag; }
    void SetFlag(bool f) { flag = f; }

    bool IsBeforeSpan(int position) const { return position < start; }
    bool IsAfterSpan(int position) const { return position >= End(); }
    bool IsInSpan(int position) const { return position >= start && position < End(); }
    bool Overlaps(const TextSpan& other) const {
        return !IsEmpty() && !other.IsEmpty() && start < other.End() && other.start < End();
    }
    // Grows to cover `other` as well.
    void Add(const TextSpan& other) {
        if (other.IsEmpty())
            return;
        if (IsEmpty()) {
            *this = other;
            return;
        }
        int s = start < other.start ? start : other.start;
        int e = End() > other.End() ? End() : other.End();
        start = s;
        length = static_cast<unsigned>(e - s);
    }
    bool operator==(const TextSpan& other) const { return start == other.start && length == other.length; }

    int start = 0;
    unsigned length = 0;
    bool flag = false;
};

using SpanBundle = std::vector<TextSpan>;
