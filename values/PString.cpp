#include "PString.h"

#include <algorithm>
#include <cstring>

void PString::Assign(const char* bytes, size_t length) {
    length = std::min<size_t>(length, kMaxLength);
    buffer[0] = static_cast<unsigned char>(length);
    if (length) std::memmove(buffer + 1, bytes, length);
    buffer[length + 1] = 0;
}

void PString::clear() {
    buffer[0] = 0;
    buffer[1] = 0;
}

PString& PString::operator=(const char* text) {
    if (!text) {
        clear();
    } else {
        Assign(text, std::strlen(text));
    }
    return *this;
}

PString& PString::operator=(const std::string& text) {
    Assign(text.data(), text.size());
    return *this;
}

PString& PString::operator=(const unsigned char* pascal) {
    if (!pascal) {
        clear();
    } else {
        Assign(reinterpret_cast<const char*>(pascal + 1), pascal[0]);
    }
    return *this;
}

bool PString::operator==(const PString& other) const {
    return buffer[0] == other.buffer[0] && std::memcmp(buffer + 1, other.buffer + 1, buffer[0]) == 0;
}

bool PString::operator<(const PString& other) const {
    return str() < other.str();
}

void PString::PtoCstr(unsigned char* b) {
    unsigned char length = b[0];
    std::memmove(b, b + 1, length);
    b[length] = 0;
}

void PString::CtoPstr(char* b) {
    size_t length = std::min<size_t>(std::strlen(b), kMaxLength);
    std::memmove(b + 1, b, length);
    b[0] = static_cast<char>(length);
}

void PString::Truncate(int length) {
    if (length < 0) length = 0;
    if (length < buffer[0]) {
        buffer[0] = static_cast<unsigned char>(length);
        buffer[length + 1] = 0;
    }
}

void PString::CopyTo(unsigned char* destination, int capacity) const {
    if (!destination || capacity <= 0) return;
    int length = std::min<int>(buffer[0], capacity - 1);
    destination[0] = static_cast<unsigned char>(length);
    std::memcpy(destination + 1, buffer + 1, length);
}

void PString::RemoveSpecialMenuCharacters() {
    std::string kept;
    for (char c : str()) {
        if (!std::strchr(";^!</(", c)) kept += c;
    }
    *this = kept;
}
