#pragma once
// The length-prefixed string of old file formats: one length byte, then up to
// 255 bytes. Longer text is cut to 255 bytes.
#include <cstddef>
#include <string>

class PString {
public:
    static constexpr int kMaxLength = 255;

    PString() { clear(); }
    PString(const char* text) { *this = text; }
    PString(const std::string& text) { *this = text; }
    // From a length-prefixed byte array.
    explicit PString(const unsigned char* pascal) { *this = pascal; }

    PString& operator=(const char* text);
    PString& operator=(const std::string& text);
    PString& operator=(const unsigned char* pascal);

    bool operator==(const PString& other) const;
    bool operator==(const char* text) const { return *this == PString(text); }
    bool operator==(const std::string& text) const { return *this == PString(text); }
    bool operator!=(const PString& other) const { return !(*this == other); }
    bool operator<(const PString& other) const;

    int size() const { return buffer[0]; }
    bool empty() const { return buffer[0] == 0; }
    void clear();

    // The text, terminated by a zero byte (kept behind the last character).
    const char* c_str() const { return reinterpret_cast<const char*>(buffer + 1); }
    // The length-prefixed form.
    const unsigned char* p_str() const { return buffer; }
    std::string str() const { return std::string(c_str(), size()); }

    // Converts a length-prefixed buffer in place to a zero-terminated one, and
    // back. Each buffer must hold 256 bytes.
    static void PtoCstr(unsigned char* buffer);
    static void CtoPstr(char* buffer);

    // Shortens to at most `length` bytes.
    void Truncate(int length);
    // Copies the length-prefixed form into a buffer of `capacity` bytes,
    // cutting the text to fit.
    void CopyTo(unsigned char* destination, int capacity) const;
    // Drops the characters that menus treat as commands: ; ^ ! < / (
    void RemoveSpecialMenuCharacters();

private:
    void Assign(const char* bytes, size_t length);

    // Length byte, up to 255 bytes, and a zero terminator.
    unsigned char buffer[kMaxLength + 2];
};
