#pragma once
// Every function and dot operator of action code with the family it
// belongs to, kept as data beside the parser's tables, for
// `rylvane functions` and for readers of the language. A row marked as a
// service answers false or "" here, for want of a platform service (speech,
// sound, notifications, maps, a public data service, a tagger of parts of
// speech, a thesaurus).
//
// This header needs no other header of the action language.
#include <cstddef>
#include <span>
#include <string_view>

struct FunctionFamilyRow {
    const char* spelling;
    // A dot operator (`.sort`) rather than a function (`sort(...)`).
    bool dot;
    const char* family;
    bool service;
};

class FunctionFamilies {
public:
    // The rows: functions first, then dot operators, each in the order of
    // the parser's tables; the special forms the parser reads by hand
    // (find, values, eval, ...) follow the functions.
    static std::span<const FunctionFamilyRow> Rows();
    // The family names in the order they are listed.
    static std::span<const char* const> Names();
    // The row of a spelling (without the dot), or null.
    static const FunctionFamilyRow* Find(std::string_view spelling, bool dot);

    static constexpr std::size_t kFamilyCount = 15;
};
