#include "DateText.h"

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <climits>
#include <cstdlib>

void DateText::SkipSpace() {
    while (position < text.size() && IsSpace(text[position]))
        ++position;
}

bool DateText::ReadLong(long& value) {
    if (failed)
        return false;
    SkipSpace();
    size_t p = position;
    bool negative = false;
    if (p < text.size() && (text[p] == '+' || text[p] == '-')) {
        negative = text[p] == '-';
        ++p;
    }
    size_t digits = p;
    unsigned long long magnitude = 0;
    bool overflow = false;
    const unsigned long long limit = negative ? static_cast<unsigned long long>(LONG_MAX) + 1 : LONG_MAX;
    while (p < text.size() && IsDigit(text[p])) {
        unsigned digit = static_cast<unsigned>(text[p] - '0');
        if (!overflow && magnitude > (limit - digit) / 10)
            overflow = true;
        if (!overflow)
            magnitude = magnitude * 10 + digit;
        ++p;
    }
    if (p == digits) {
        // Nothing numeric: the sign, if any, is consumed like a stream does.
        position = p;
        value = 0;
        failed = true;
        return false;
    }
    position = p;
    if (overflow) {
        // Like a stream, the limit; the negative one stops one short, so
        // that it is never mistaken for an undefined calendar field.
        value = negative ? -LONG_MAX : LONG_MAX;
        failed = true;
        return false;
    }
    value = negative ? static_cast<long>(0 - magnitude) : static_cast<long>(magnitude);
    return true;
}

bool DateText::ReadDouble(double& value) {
    if (failed)
        return false;
    SkipSpace();
    size_t p = position;
    if (p < text.size() && (text[p] == '+' || text[p] == '-'))
        ++p;
    size_t mantissa = p;
    while (p < text.size() && IsDigit(text[p]))
        ++p;
    if (p < text.size() && text[p] == '.') {
        ++p;
        while (p < text.size() && IsDigit(text[p]))
            ++p;
    }
    bool anyDigit = false;
    for (size_t i = mantissa; i < p; ++i)
        anyDigit = anyDigit || IsDigit(text[i]);
    if (!anyDigit) {
        position = p;
        value = 0;
        failed = true;
        return false;
    }
    std::string number = text.substr(position, p - position);
    position = p;
    errno = 0;
    value = std::strtod(number.c_str(), nullptr);
    if (errno == ERANGE && std::isinf(value)) {
        // Out of range: the largest value, as a stream gives.
        value = value > 0 ? DBL_MAX : -DBL_MAX;
        failed = true;
        return false;
    }
    return true;
}

bool DateText::ReadChar(char& value) {
    if (failed)
        return false;
    SkipSpace();
    if (position >= text.size()) {
        failed = true;
        return false;
    }
    value = text[position++];
    return true;
}

bool DateText::ReadWord(std::string& value) {
    if (failed)
        return false;
    SkipSpace();
    size_t start = position;
    while (position < text.size() && !IsSpace(text[position]))
        ++position;
    if (position == start) {
        failed = true;
        return false;
    }
    value = text.substr(start, position - start);
    return true;
}

int DateText::Peek() const {
    if (failed || position >= text.size())
        return -1;
    return static_cast<unsigned char>(text[position]);
}

int DateText::Get() {
    if (failed || position >= text.size()) {
        failed = true;
        return -1;
    }
    return static_cast<unsigned char>(text[position++]);
}

void DateText::PutBack() {
    if (position > 0)
        --position;
}

std::string DateText::Trim(const std::string& text) {
    size_t start = 0, end = text.size();
    while (start < end && IsSpace(text[start]))
        ++start;
    while (end > start && IsSpace(text[end - 1]))
        --end;
    return text.substr(start, end - start);
}

std::string DateText::TrimQuotes(const std::string& text) {
    std::string trimmed = Trim(text);
    if (trimmed.size() >= 2 && trimmed.front() == '"' && trimmed.back() == '"')
        trimmed = trimmed.substr(1, trimmed.size() - 2);
    return trimmed;
}
