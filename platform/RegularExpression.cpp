#include "RegularExpression.h"

#include <list>
#include <unordered_map>

#include <unicode/regex.h>
#include <unicode/unistr.h>

struct RegularExpression::Impl {
    std::unique_ptr<icu::RegexMatcher> matcher;
    icu::UnicodeString input;
};

RegularExpression::RegularExpression(const std::string& pattern, bool caseInsensitive) : impl(std::make_unique<Impl>()) {
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

bool RegularExpression::Search(const std::string& text, Match& match, long from) {
    match = Match();
    if (!impl->matcher)
        return false;
    impl->input = icu::UnicodeString::fromUTF8(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    matcher.reset(impl->input);
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
    impl->input = icu::UnicodeString::fromUTF8(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    matcher.reset(impl->input);
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
    impl->input = icu::UnicodeString::fromUTF8(text);
    icu::RegexMatcher& matcher = *impl->matcher;
    matcher.reset(impl->input);
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString result = matcher.replaceAll(icu::UnicodeString::fromUTF8(replacement), status);
    if (U_FAILURE(status))
        return text;
    std::string out;
    result.toUTF8String(out);
    return out;
}

RegularExpression& RegularExpression::Cached(const std::string& pattern, bool caseInsensitive) {
    // A small cache per thread: a query usually uses one or two patterns;
    // a document that computes its patterns gets them compiled afresh.
    constexpr size_t kLimit = 64;
    struct Cache {
        std::unordered_map<std::string, std::unique_ptr<RegularExpression>> byKey;
    };
    thread_local Cache cache;
    std::string key;
    key.reserve(pattern.size() + 1);
    key += caseInsensitive ? 'i' : 'c';
    key += pattern;
    auto it = cache.byKey.find(key);
    if (it != cache.byKey.end())
        return *it->second;
    if (cache.byKey.size() >= kLimit)
        cache.byKey.clear();
    auto made = std::make_unique<RegularExpression>(pattern, caseInsensitive);
    RegularExpression& result = *made;
    cache.byKey.emplace(std::move(key), std::move(made));
    return result;
}
