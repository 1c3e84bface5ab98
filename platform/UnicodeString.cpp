#include "UnicodeString.h"

#include <cstdlib>
#include <cstring>
#include <memory>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utf8.h>

namespace {

std::u16string ToUnits(const std::string& utf8) {
    std::u16string out;
    if (utf8.empty()) return out;
    UErrorCode status = U_ZERO_ERROR;
    int32_t needed = 0;
    u_strFromUTF8WithSub(nullptr, 0, &needed, utf8.data(), static_cast<int32_t>(utf8.size()), 0xFFFD,
                         nullptr, &status);
    status = U_ZERO_ERROR;
    out.resize(needed);
    u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), needed, &needed, utf8.data(),
                         static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) out.clear();
    return out;
}

std::string FromUnits(const std::u16string& units) {
    std::string out;
    if (units.empty()) return out;
    UErrorCode status = U_ZERO_ERROR;
    int32_t needed = 0;
    const UChar* src = reinterpret_cast<const UChar*>(units.data());
    u_strToUTF8WithSub(nullptr, 0, &needed, src, static_cast<int32_t>(units.size()), 0xFFFD, nullptr,
                       &status);
    status = U_ZERO_ERROR;
    out.resize(needed);
    u_strToUTF8WithSub(out.data(), needed, &needed, src, static_cast<int32_t>(units.size()), 0xFFFD,
                       nullptr, &status);
    if (U_FAILURE(status)) out.clear();
    return out;
}

// A converter for Mac Roman; each thread keeps its own, since converters hold
// state.
UConverter* MacRomanConverter() {
    struct Closer {
        void operator()(UConverter* c) const { ucnv_close(c); }
    };
    thread_local std::unique_ptr<UConverter, Closer> converter;
    if (!converter) {
        UErrorCode status = U_ZERO_ERROR;
        converter.reset(ucnv_open("macintosh", &status));
        if (U_FAILURE(status)) {
            converter.reset();
            return nullptr;
        }
        status = U_ZERO_ERROR;
        ucnv_setSubstChars(converter.get(), "?", 1, &status);
    }
    ucnv_reset(converter.get());
    return converter.get();
}

icu::UnicodeString AsICU(const std::u16string& units) {
    return icu::UnicodeString(reinterpret_cast<const UChar*>(units.data()),
                              static_cast<int32_t>(units.size()));
}

std::u16string FromICU(const icu::UnicodeString& s) {
    return std::u16string(reinterpret_cast<const char16_t*>(s.getBuffer()), s.length());
}

UnicodeString FromUTF16Bytes(const std::string& bytes, bool bigEndian) {
    size_t start = 0;
    if (bytes.size() >= 2) {
        unsigned char b0 = bytes[0], b1 = bytes[1];
        if (b0 == 0xFE && b1 == 0xFF) {
            bigEndian = true;
            start = 2;
        } else if (b0 == 0xFF && b1 == 0xFE) {
            bigEndian = false;
            start = 2;
        }
    }
    std::u16string units;
    units.reserve((bytes.size() - start) / 2);
    for (size_t i = start; i + 1 < bytes.size(); i += 2) {
        unsigned char hi = bytes[i], lo = bytes[i + 1];
        if (!bigEndian) std::swap(hi, lo);
        units.push_back(static_cast<char16_t>((hi << 8) | lo));
    }
    return UnicodeString(units);
}

std::string LocaleFromEnvironment(const char* category) {
    const char* names[] = {"LC_ALL", category, "LANG"};
    for (const char* name : names) {
        if (!name) continue;
        const char* value = std::getenv(name);
        if (value && *value) {
            std::string locale(value);
            size_t cut = locale.find_first_of(".@");
            if (cut != std::string::npos) locale.resize(cut);
            if (locale == "C" || locale == "POSIX") return "en_US_POSIX";
            return locale;
        }
    }
    return "en_US_POSIX";
}

}  // namespace

UnicodeString::UnicodeString(const std::string& text) : utf8(text), valid(kUTF8) {}
UnicodeString::UnicodeString(const char* text) : utf8(text ? text : ""), valid(kUTF8) {}
UnicodeString::UnicodeString(const std::u16string& u) : units(u), valid(kUnits) {}
UnicodeString::UnicodeString(const UnicodeString& other) = default;
UnicodeString& UnicodeString::operator=(const UnicodeString& other) = default;
UnicodeString::UnicodeString(UnicodeString&&) noexcept = default;
UnicodeString& UnicodeString::operator=(UnicodeString&&) noexcept = default;
UnicodeString::~UnicodeString() = default;

UnicodeString UnicodeString::FromUTF16(const std::string& bytes) {
    return FromUTF16Bytes(bytes, true);
}

UnicodeString UnicodeString::FromUTF16LE(const std::string& bytes) {
    return FromUTF16Bytes(bytes, false);
}

UnicodeString UnicodeString::FromMacRoman(const std::string& bytes) {
    UnicodeString result;
    result.macRoman = bytes;
    result.valid = kMacRoman;
    return result;
}

void UnicodeString::Need(unsigned form) const {
    if (valid & form) return;
    // Everything goes through the code units.
    if (!(valid & kUnits)) {
        if (valid & kUTF8) {
            units = ToUnits(utf8);
        } else {
            units.clear();
            UConverter* conv = MacRomanConverter();
            if (conv && !macRoman.empty()) {
                UErrorCode status = U_ZERO_ERROR;
                units.resize(macRoman.size());
                int32_t n = ucnv_toUChars(conv, reinterpret_cast<UChar*>(units.data()),
                                          static_cast<int32_t>(units.size()), macRoman.data(),
                                          static_cast<int32_t>(macRoman.size()), &status);
                units.resize(U_SUCCESS(status) ? n : 0);
            }
        }
        valid |= kUnits;
    }
    if (form == kUTF8) {
        utf8 = FromUnits(units);
    } else if (form == kMacRoman) {
        macRoman.clear();
        UConverter* conv = MacRomanConverter();
        if (conv && !units.empty()) {
            UErrorCode status = U_ZERO_ERROR;
            macRoman.resize(units.size() * 2 + 4);
            int32_t n = ucnv_fromUChars(conv, macRoman.data(), static_cast<int32_t>(macRoman.size()),
                                        reinterpret_cast<const UChar*>(units.data()),
                                        static_cast<int32_t>(units.size()), &status);
            macRoman.resize(U_SUCCESS(status) ? n : 0);
        }
    }
    valid |= form;
}

const std::string& UnicodeString::UTF8() const {
    Need(kUTF8);
    return utf8;
}

const std::string& UnicodeString::MacRoman() const {
    Need(kMacRoman);
    return macRoman;
}

const std::u16string& UnicodeString::AsNSString() const {
    Need(kUnits);
    return units;
}

bool UnicodeString::empty() const {
    if (valid & kUTF8) return utf8.empty();
    if (valid & kUnits) return units.empty();
    return macRoman.empty();
}

void UnicodeString::clear() {
    utf8.clear();
    macRoman.clear();
    units.clear();
    valid = kUTF8;
}

char16_t UnicodeString::at(int i) const {
    const std::u16string& u = AsNSString();
    if (i < 0 || static_cast<size_t>(i) >= u.size()) return 0;
    return u[i];
}

UnicodeString UnicodeString::substr(int start) const {
    return substr(start, static_cast<int>(length()));
}

UnicodeString UnicodeString::substr(int start, int count) const {
    const std::u16string& u = AsNSString();
    if (start < 0) start = 0;
    if (static_cast<size_t>(start) >= u.size() || count <= 0) return UnicodeString(std::u16string());
    return UnicodeString(u.substr(start, static_cast<size_t>(count)));
}

bool UnicodeString::IsValidUnicode() const {
    if (valid & kUTF8) return IsValidUTF8(utf8);
    // Code units or Mac Roman bytes: valid unless there is an unpaired surrogate.
    const std::u16string& u = AsNSString();
    for (size_t i = 0; i < u.size(); ++i) {
        char16_t c = u[i];
        if (c >= 0xD800 && c <= 0xDBFF) {
            if (i + 1 >= u.size() || u[i + 1] < 0xDC00 || u[i + 1] > 0xDFFF) return false;
            ++i;
        } else if (c >= 0xDC00 && c <= 0xDFFF) {
            return false;
        }
    }
    return true;
}

namespace {

// The locale for case mapping, remade only when the environment changes.
const icu::Locale& CaseLocale() {
    thread_local std::string name;
    thread_local icu::Locale locale;
    std::string current = UnicodeString::UserLocaleName();
    if (current != name) {
        name = current;
        locale = icu::Locale(name.c_str());
    }
    return locale;
}

// Whether ASCII letters map as plain ASCII in this locale; Turkish, Azeri and
// Lithuanian have their own rules for "i" and "I".
bool PlainASCIICase(const icu::Locale& locale) {
    const char* language = locale.getLanguage();
    return std::strcmp(language, "tr") != 0 && std::strcmp(language, "az") != 0 &&
           std::strcmp(language, "lt") != 0;
}

bool IsASCII(const std::string& text) {
    for (unsigned char c : text)
        if (c >= 0x80) return false;
    return true;
}

}  // namespace

UnicodeString UnicodeString::Lowercase() const {
    const icu::Locale& locale = CaseLocale();
    if ((valid & kUTF8) && IsASCII(utf8) && PlainASCIICase(locale)) {
        std::string lower = utf8;
        for (char& c : lower)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return UnicodeString(lower);
    }
    icu::UnicodeString s = AsICU(AsNSString());
    s.toLower(locale);
    return UnicodeString(FromICU(s));
}

UnicodeString UnicodeString::Uppercase() const {
    const icu::Locale& locale = CaseLocale();
    if ((valid & kUTF8) && IsASCII(utf8) && PlainASCIICase(locale)) {
        std::string upper = utf8;
        for (char& c : upper)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        return UnicodeString(upper);
    }
    icu::UnicodeString s = AsICU(AsNSString());
    s.toUpper(locale);
    return UnicodeString(FromICU(s));
}

bool UnicodeString::Less(const UnicodeString& other) const {
    return AsNSString() < other.AsNSString();
}

bool UnicodeString::LessCaseInsensitive(const UnicodeString& other) const {
    return AsICU(AsNSString()).caseCompare(AsICU(other.AsNSString()), U_FOLD_CASE_DEFAULT) < 0;
}

bool UnicodeString::EqualCaseInsensitive(const UnicodeString& other) const {
    return AsICU(AsNSString()).caseCompare(AsICU(other.AsNSString()), U_FOLD_CASE_DEFAULT) == 0;
}

std::string UnicodeString::RemoveControlCharacters(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        unsigned char b = static_cast<unsigned char>(c);
        if (b >= 32 || b == 9 || b == 10 || b == 13) result += c;
    }
    return result;
}

std::string UnicodeString::EscapeSlashes(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        if (c == '/') result += '\\';
        result += c;
    }
    return result;
}

std::string UnicodeString::ToJSON(const std::string& text) {
    std::string result;
    result.reserve(text.size() + 8);
    for (char c : text) {
        switch (c) {
            case 8: result += "\\b"; break;
            case 9: result += "\\t"; break;
            case 10: result += "\\n"; break;
            case 12: result += "\\f"; break;
            case 13: result += "\\r"; break;
            case '"':
            case '/':
            case '\\':
                result += '\\';
                result += c;
                break;
            default: result += c;
        }
    }
    return result;
}

bool UnicodeString::IsValidUTF8(const std::string& text) {
    const uint8_t* s = reinterpret_cast<const uint8_t*>(text.data());
    const int32_t length = static_cast<int32_t>(text.size());
    int32_t i = 0;
    while (i < length) {
        if (s[i] < 0x80) {
            ++i;
            continue;
        }
        UChar32 c;
        U8_NEXT(s, i, length, c);
        if (c < 0) return false;
    }
    return true;
}

std::string UnicodeString::Lowercase(const std::string& text) {
    return UnicodeString(text).Lowercase().UTF8();
}

std::string UnicodeString::Uppercase(const std::string& text) {
    return UnicodeString(text).Uppercase().UTF8();
}

bool UnicodeString::EqualCaseInsensitive(const std::string& a, const std::string& b) {
    if (a == b) return true;
    return UnicodeString(a).EqualCaseInsensitive(UnicodeString(b));
}

std::string UnicodeString::UserLocaleName(const char* category) {
    return LocaleFromEnvironment(category);
}

int UnicodeString::LocalizedCompare(const std::string& a, const std::string& b) {
    // Collators are costly to make and not to be shared between threads: each
    // thread keeps one, remade when the user's locale changes.
    thread_local std::unique_ptr<icu::Collator> collator;
    thread_local std::string collatorLocale;
    std::string locale = UserLocaleName("LC_COLLATE");
    if (!collator || locale != collatorLocale) {
        UErrorCode status = U_ZERO_ERROR;
        collator.reset(icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
        if (U_FAILURE(status)) collator.reset();
        collatorLocale = locale;
    }
    if (!collator) {
        int c = a.compare(b);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    UErrorCode status = U_ZERO_ERROR;
    UCollationResult r = collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                               icu::StringPiece(b.data(), static_cast<int32_t>(b.size())),
                                               status);
    if (U_FAILURE(status)) return 0;
    return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
}
