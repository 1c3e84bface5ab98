#include "RegularExpression.h"

#include <climits>
#include <list>
#include <unordered_map>

#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

struct RegularExpression::Impl {
    std::unique_ptr<icu::RegexMatcher> matcher;
    // The text being matched, in UTF-16; its buffer is kept from one
    // search to the next, so that a query over many notes converts each
    // note's text without allocating.
    icu::UnicodeString input;
    // A case-sensitive pattern of plain ASCII characters, none of which
    // means anything to the engine, matches exactly where its bytes occur:
    // such a pattern is searched in the UTF-8 text with no conversion.
    std::string literal;
    bool isLiteral = false;
    // Otherwise, what every match of a case-sensitive pattern starts with:
    // a text without it has no match, and is not converted.
    std::string requiredStart;

    // Makes `text` the matcher's input, as UnicodeString::fromUTF8 reads
    // it (an ill-formed sequence becomes U+FFFD).
    void SetInput(std::string_view text);
};

void RegularExpression::Impl::SetInput(std::string_view text) {
    if (text.size() > static_cast<size_t>(INT32_MAX / 2)) {
        input = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    } else {
        // No UTF-8 text is longer in UTF-16 units than in bytes.
        int32_t capacity = static_cast<int32_t>(text.size());
        UChar* units = input.getBuffer(capacity > 0 ? capacity : 1);
        int32_t length = 0;
        if (!units) {
            input = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), capacity));
        } else {
            const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
            // ASCII, the usual case, widens byte by byte; the first byte
            // past it hands the rest to ICU's converter.
            while (length < capacity && bytes[length] < 0x80) {
                units[length] = bytes[length];
                ++length;
            }
            if (length < capacity) {
                UErrorCode status = U_ZERO_ERROR;
                int32_t rest = 0;
                u_strFromUTF8WithSub(units + length, capacity - length, &rest, text.data() + length, capacity - length,
                                     0xFFFD, nullptr, &status);
                length = U_SUCCESS(status) ? length + rest : 0;
            }
            input.releaseBuffer(length);
        }
    }
    matcher->reset(input);
}

namespace {

// Whether every character of the pattern stands for itself: ASCII letters,
// digits, space and punctuation that has no meaning outside a class. ASCII
// bytes in UTF-8 are never part of another character, and an ill-formed
// sequence converts to U+FFFD, so such a pattern occurs in the UTF-16 text
// exactly where its bytes occur in the UTF-8.
bool IsPlainCharacter(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ' || c == '_' ||
           c == '-' || c == ',' || c == ':' || c == ';' || c == '/' || c == '=' || c == '<' || c == '>' || c == '!' ||
           c == '@' || c == '%' || c == '&' || c == '\'' || c == '"' || c == '~';
}

bool IsPlainLiteral(const std::string& pattern) {
    if (pattern.empty())
        return false;
    for (unsigned char c : pattern) {
        if (!IsPlainCharacter(c))
            return false;
    }
    return true;
}

// The plain characters every match of a case-sensitive pattern starts
// with: those before its first special character, less the last one when a
// quantifier follows it. A pattern with `|` anywhere may start otherwise,
// and has none.
std::string RequiredStart(const std::string& pattern) {
    if (pattern.find('|') != std::string::npos)
        return std::string();
    size_t length = 0;
    while (length < pattern.size() && IsPlainCharacter(static_cast<unsigned char>(pattern[length])))
        ++length;
    if (length > 0 && length < pattern.size()) {
        char next = pattern[length];
        if (next == '*' || next == '?' || next == '+' || next == '{')
            --length;
    }
    return pattern.substr(0, length);
}

// The UTF-16 length of UTF-8 bytes, with ill-formed sequences counted as
// the one U+FFFD each becomes.
long Utf16Length(std::string_view text) {
    long length = 0;
    size_t i = 0;
    while (i < text.size() && static_cast<unsigned char>(text[i]) < 0x80)
        ++i;
    length = static_cast<long>(i);
    if (i == text.size())
        return length;
    UErrorCode status = U_ZERO_ERROR;
    int32_t rest = 0;
    u_strFromUTF8WithSub(nullptr, 0, &rest, text.data() + i, static_cast<int32_t>(text.size() - i), 0xFFFD, nullptr,
                         &status);
    return length + rest;
}

}  // namespace

RegularExpression::RegularExpression(const std::string& pattern, bool caseInsensitive) : impl(std::make_unique<Impl>()) {
    if (!caseInsensitive && IsPlainLiteral(pattern)) {
        impl->literal = pattern;
        impl->isLiteral = true;
    } else if (!caseInsensitive) {
        impl->requiredStart = RequiredStart(pattern);
    }
    UErrorCode status = U_ZERO_ERROR;
    uint32_t flags = caseInsensitive ? UREGEX_CASE_INSENSITIVE : 0;
    auto matcher = std::make_unique<icu::RegexMatcher>(icu::UnicodeString::fromUTF8(pattern), flags, status);
    if (U_SUCCESS(status)) {
        matcher->setTimeLimit(kTimeLimit, status);
        impl->matcher = std::move(matcher);
    }
}

RegularExpression::~RegularExpression() = default;

bool RegularExpression::IsValid() const { return impl->matcher != nullptr; }

namespace {

void ReadGroups(icu::RegexMatcher& matcher, RegularExpression::Match& match) {
    UErrorCode status = U_ZERO_ERROR;
    match.position = matcher.start(status);
    match.length = matcher.end(status) - match.position;
    int32_t groups = matcher.groupCount();
    for (int32_t i = 0; i <= groups; ++i) {
        std::string group;
        UErrorCode groupStatus = U_ZERO_ERROR;
        icu::UnicodeString found = matcher.group(i, groupStatus);
        if (U_SUCCESS(groupStatus))
            found.toUTF8String(group);
        match.groups.push_back(std::move(group));
    }
}

}  // namespace

bool RegularExpression::Search(std::string_view text, Match& match, long from) {
    match = Match();
    if (!impl->matcher)
        return false;
    if (impl->isLiteral && from == 0 && text.size() <= static_cast<size_t>(INT32_MAX / 2)) {
        size_t at = text.find(impl->literal);
        if (at == std::string_view::npos)
            return false;
        match.position = Utf16Length(text.substr(0, at));
        match.length = static_cast<long>(impl->literal.size());
        match.groups.push_back(impl->literal);
        return true;
    }
    if (!impl->requiredStart.empty() && text.find(impl->requiredStart) == std::string_view::npos)
        return false;
    impl->SetInput(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    UErrorCode status = U_ZERO_ERROR;
    if (from < 0 || from > impl->input.length())
        return false;
    if (!matcher.find(static_cast<int64_t>(from), status) || U_FAILURE(status))
        return false;
    ReadGroups(matcher, match);
    return true;
}


void RegularExpression::SearchAll(const std::string& text, std::vector<Match>& found) {
    found.clear();
    if (!impl->matcher)
        return;
    impl->SetInput(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    UErrorCode status = U_ZERO_ERROR;
    while (matcher.find(status) && U_SUCCESS(status)) {
        Match match;
        ReadGroups(matcher, match);
        found.push_back(std::move(match));
    }
    // A match cut off by the time limit counts as no match at all.
    if (U_FAILURE(status))
        found.clear();
}

std::string RegularExpression::ReplaceAll(const std::string& text, const std::string& replacement) {
    if (!impl->matcher)
        return text;
    impl->SetInput(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString result = matcher.replaceAll(icu::UnicodeString::fromUTF8(replacement), status);
    if (U_FAILURE(status))
        return text;
    std::string out;
    result.toUTF8String(out);
    return out;
}

RegularExpression& RegularExpression::Cached(std::string_view pattern, bool caseInsensitive) {
    // A small cache per thread: a query usually uses one or two patterns;
    // a document that computes its patterns gets them compiled afresh. A
    // query asks for the same pattern on every note, so the last one asked
    // for is answered before the key is made and looked up.
    constexpr size_t kLimit = 64;
    struct Cache {
        std::unordered_map<std::string, std::unique_ptr<RegularExpression>> byKey;
        std::string lastKey;
        RegularExpression* last = nullptr;
    };
    thread_local Cache cache;
    const char option = caseInsensitive ? 'i' : 'c';
    if (cache.last && cache.lastKey.size() == pattern.size() + 1 && cache.lastKey[0] == option &&
        std::string_view(cache.lastKey).substr(1) == pattern)
        return *cache.last;
    std::string key;
    key.reserve(pattern.size() + 1);
    key += option;
    key += pattern;
    auto it = cache.byKey.find(key);
    if (it == cache.byKey.end()) {
        if (cache.byKey.size() >= kLimit)
            cache.byKey.clear();
        auto made = std::make_unique<RegularExpression>(std::string(pattern), caseInsensitive);
        it = cache.byKey.emplace(key, std::move(made)).first;
    }
    cache.lastKey = std::move(key);
    cache.last = it->second.get();
    return *cache.last;
}
