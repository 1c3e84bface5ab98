#pragma once
// Text in the forms the system meets: UTF-8 (the normal form of every string),
// Mac Roman (old files) and UTF-16 code units (what positions in the action
// language count). Each form is made on demand from another and kept.
//
// Text that is not valid UTF-8 is accepted everywhere: conversions replace
// each bad sequence with U+FFFD, and IsValidUnicode tells it apart.
#include <cstddef>
#include <memory>
#include <string>

class UnicodeString {
public:
    UnicodeString() = default;
    UnicodeString(const std::string& utf8);
    UnicodeString(const char* utf8);
    UnicodeString(const std::u16string& units);
    UnicodeString(const UnicodeString& other);
    UnicodeString& operator=(const UnicodeString& other);
    UnicodeString(UnicodeString&&) noexcept;
    UnicodeString& operator=(UnicodeString&&) noexcept;
    ~UnicodeString();

    // From UTF-16 bytes, big-endian or little-endian; a byte order mark of
    // either kind is honoured and dropped.
    static UnicodeString FromUTF16(const std::string& bytes);
    static UnicodeString FromUTF16LE(const std::string& bytes);
    static UnicodeString FromMacRoman(const std::string& bytes);

    const std::string& UTF8() const;
    // Characters that Mac Roman lacks become "?".
    const std::string& MacRoman() const;
    // The UTF-16 code units (the platform string).
    const std::u16string& AsNSString() const;

    // Bytes of the UTF-8 form.
    size_t size() const { return UTF8().size(); }
    // UTF-16 code units.
    size_t length() const { return AsNSString().size(); }
    bool empty() const;
    void clear();
    // The code unit at `i`; 0 out of range.
    char16_t at(int i) const;
    // Substrings by code unit, clamped to the text.
    UnicodeString substr(int start) const;
    UnicodeString substr(int start, int count) const;

    // Iterates over code units; offset() is the position of the unit.
    class const_iterator {
    public:
        const_iterator(const std::u16string* s, size_t i) : text(s), index(i) {}
        char16_t operator*() const { return (*text)[index]; }
        const_iterator& operator++() { ++index; return *this; }
        bool operator==(const const_iterator& o) const { return index == o.index; }
        bool operator!=(const const_iterator& o) const { return index != o.index; }
        size_t offset() const { return index; }

    private:
        const std::u16string* text;
        size_t index;
    };
    const_iterator begin() const { return const_iterator(&AsNSString(), 0); }
    const_iterator end() const { return const_iterator(&AsNSString(), AsNSString().size()); }

    // The UTF-8 form is well formed.
    bool IsValidUnicode() const;
    // Case mapping in the user's current locale.
    UnicodeString Lowercase() const;
    UnicodeString Uppercase() const;
    // Code-unit order, no options.
    bool Less(const UnicodeString& other) const;
    // Case-insensitive comparison (case folding).
    bool LessCaseInsensitive(const UnicodeString& other) const;
    bool EqualCaseInsensitive(const UnicodeString& other) const;
    // Equal UTF-8 bytes.
    bool operator==(const UnicodeString& other) const { return UTF8() == other.UTF8(); }
    bool operator!=(const UnicodeString& other) const { return !(*this == other); }

    // Deletes every character below 32 except tab, line feed and carriage return.
    static std::string RemoveControlCharacters(const std::string& text);
    // Writes each "/" as "\/".
    static std::string EscapeSlashes(const std::string& text);
    // A byte loop: backspace, tab, line feed, form feed and carriage return
    // become \b \t \n \f \r; '"', '/' and backslash get a backslash; every
    // other byte passes through.
    static std::string ToJSON(const std::string& text);

    // Conveniences on UTF-8 strings.
    static bool IsValidUTF8(const std::string& text);
    static std::string Lowercase(const std::string& text);
    static std::string Uppercase(const std::string& text);
    static bool EqualCaseInsensitive(const std::string& a, const std::string& b);
    // -1, 0 or 1 in the ordering of the user's locale (its collation at the
    // default strength), as the platform's localized comparison gives.
    static int LocalizedCompare(const std::string& a, const std::string& b);
    // The user's locale as an ICU locale name, from LC_ALL, the category
    // variable (LC_COLLATE or LC_CTYPE) and LANG in that order; "en_US_POSIX"
    // for C and POSIX.
    static std::string UserLocaleName(const char* category = "LC_CTYPE");

private:
    enum : unsigned { kUTF8 = 1, kMacRoman = 2, kUnits = 4 };
    void Need(unsigned form) const;

    mutable std::string utf8;
    mutable std::string macRoman;
    mutable std::u16string units;
    mutable unsigned valid = kUTF8;
};

// The same class, built from Mac Roman bytes.
class UnicodeStringFromMacRoman : public UnicodeString {
public:
    explicit UnicodeStringFromMacRoman(const std::string& bytes)
        : UnicodeString(FromMacRoman(bytes)) {}
};
