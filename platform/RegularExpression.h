#pragma once
// The platform's regular expressions, on ICU: the syntax users of action
// code write (`.contains`, `.replace`, `.split`), with positions in UTF-16
// units as the language counts them. A compiled expression is kept per
// thread by its pattern and options, so that a query run over every note of
// a document compiles its pattern once.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class RegularExpression {
public:
    struct Match {
        // Where the match starts and how long it is, in UTF-16 units.
        long position = -1;
        long length = 0;
        // Group 0 (the whole match) first; an unmatched group is "".
        std::vector<std::string> groups;
    };

    // The compiled expression for this pattern and case option on this
    // thread; it stays usable until the thread compiles many others.
    static RegularExpression& Cached(std::string_view pattern, bool caseInsensitive);

    RegularExpression(const std::string& pattern, bool caseInsensitive);
    ~RegularExpression();
    RegularExpression(const RegularExpression&) = delete;
    RegularExpression& operator=(const RegularExpression&) = delete;

    // False when the pattern does not compile; such an expression matches nothing.
    bool IsValid() const;
    // The first match in `text` at or after `from` (UTF-16 units).
    bool Search(std::string_view text, Match& match, long from = 0);
    // Every match, in order; an empty match moves on by one unit.
    void SearchAll(const std::string& text, std::vector<Match>& found);
    // Every match replaced by `replacement`, where `$1` names a group and a
    // backslash quotes the next character. A bad template leaves the text.
    std::string ReplaceAll(const std::string& text, const std::string& replacement);

    // Matching is cut off after about this many steps of the match engine
    // (roughly milliseconds), so that a pathological pattern such as
    // `(a+)+$` answers no match instead of running for ever.
    static constexpr int kTimeLimit = 500;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};
