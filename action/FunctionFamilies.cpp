#include "FunctionFamilies.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr const char* kFamilies[] = {
    "numeric", "date",  "colour", "string", "list",     "group",     "note test", "link",
    "note",    "evaluation", "system", "information", "format", "composite", "word",
};

constexpr FunctionFamilyRow F(const char* spelling, const char* family) { return {spelling, false, family, false}; }
constexpr FunctionFamilyRow D(const char* spelling, const char* family) { return {spelling, true, family, false}; }
// Answers false or "" for want of a platform service.
constexpr FunctionFamilyRow FS(const char* spelling, const char* family) { return {spelling, false, family, true}; }
constexpr FunctionFamilyRow DS(const char* spelling, const char* family) { return {spelling, true, family, true}; }

constexpr FunctionFamilyRow kRows[] = {
    F("log", "numeric"),
    F("sqrt", "numeric"),
    F("abs", "numeric"),
    F("cos", "numeric"),
    F("sin", "numeric"),
    F("tan", "numeric"),
    F("atan", "numeric"),
    F("exp", "numeric"),
    F("degrees", "numeric"),
    F("radians", "numeric"),
    F("round", "numeric"),
    F("floor", "numeric"),
    F("ceil", "numeric"),
    F("rand", "numeric"),
    F("isbn10", "information"),
    F("isbn13", "information"),
    F("visited", "note test"),
    F("unvisited", "note test"),
    F("version", "information"),
    F("count", "list"),
    F("max", "list"),
    F("min", "list"),
    F("urlEncode", "string"),
    F("attributeEncode", "string"),
    F("jsonEncode", "string"),
    F("escapeHTML", "string"),
    F("locale", "string"),
    F("utf8", "string"),
    F("idEncode", "string"),
    F("lastWord", "string"),
    F("firstWord", "string"),
    F("uppercase", "string"),
    F("upperCase", "string"),
    F("lowercase", "string"),
    F("loweCase", "string"),
    F("capitalize", "string"),
    FS("play", "system"),
    F("type", "information"),
    F("attribute", "information"),
    F("document", "information"),
    F("compositeWithName", "composite"),
    F("word", "note test"),
    F("#word", "note test"),

    F("pow", "numeric"),
    F("mod", "numeric"),
    F("distance", "link"),
    FS("notify", "system"),
    F("interval", "date"),
    F("inheritsFrom", "note test"),
    F("isDuplicateName", "note test"),
    F("stamp", "note"),
    F("create", "note"),
    F("createAgent", "note"),
    FS("covid", "information"),
    F("delete", "note"),
    F("hasLocalValue", "note test"),
    F("rgb", "colour"),
    F("RGB", "colour"),
    F("brightness", "colour"),
    F("saturation", "colour"),
    F("hue", "colour"),
    F("date", "date"),
    F("list", "list"),
    F("dictionary", "list"),
    F("linkPath", "link"),
    F("day", "date"),
    F("hour", "date"),
    F("minute", "date"),
    F("second", "date"),
    F("month", "date"),
    F("week", "date"),
    F("year", "date"),
    F("days", "date"),
    F("hours", "date"),
    F("minutes", "date"),
    F("months", "date"),
    F("weeks", "date"),
    F("years", "date"),
    F("seconds", "date"),
    F("time", "date"),
    F("format", "format"),
    F("do", "note"),
    FS("speak", "system"),
    F("substr", "string"),
    F("first", "note test"),
    F("#first", "note test"),
    F("last", "note test"),
    F("#last", "note test"),
    F("linkedTo", "note test"),
    F("#linkedTo", "note test"),
    F("linkedFrom", "note test"),
    F("#linkedFrom", "note test"),
    F("originalLinkedTo", "note test"),
    F("originalLinkedFrom", "note test"),
    F("linkTo", "link"),
    F("linkToOriginal", "link"),
    F("linkFrom", "link"),
    F("linkFromOriginal", "link"),
    F("unlinkTo", "link"),
    F("unlinkToOriginal", "link"),
    F("unlinkFrom", "link"),
    F("unlinkFromOriginal", "link"),
    F("distanceTo", "link"),
    FS("drivingTimeTo", "link"),
    F("indented", "note test"),
    F("#indented", "note test"),
    F("similarTo", "word"),
    F("#similarTo", "word"),
    F("wordsRelatedTo", "word"),
    F("between", "note test"),
    F("#between", "note test"),

    F("descendedFrom", "note test"),
    F("#descendedFrom", "note test"),
    F("inside", "note test"),
    F("#inside", "note test"),
    F("contains", "note test"),
    F("#contains", "note test"),
    F("compositeFor", "composite"),
    F("my", "composite"),

    F("guard", "note test"),

    F("collect", "group"),
    F("collect_if", "group"),
    F("count_if", "group"),
    F("sum", "group"),
    F("sum_if", "group"),
    F("avg", "group"),
    F("avg_if", "group"),
    F("every", "group"),
    F("any", "group"),
    F("exportedString", "system"),
    F("neighbors", "link"),
    F("neighbors2", "link"),
    F("neighborsWithin", "link"),
    F("neighbors2Within", "link"),

    // Read by the parser by hand.
    F("find", "group"),
    F("values", "group"),
    F("eval", "evaluation"),
    F("action", "evaluation"),
    F("runCommand", "system"),
    F("links", "link"),
    F("if", "evaluation"),

    D("contains", "string"),
    D("containsAnyOf", "string"),
    D("icontains", "string"),
    D("icontainsAnyOf", "string"),
    D("beginsWith", "string"),
    D("endsWith", "string"),
    D("countOccurrencesOf", "string"),
    D("find", "string"),
    D("format", "format"),
    D("remove", "list"),
    D("every", "list"),
    D("any", "list"),
    D("collect", "list"),
    D("collect_if", "list"),
    D("trim", "string"),
    D("wordList", "string"),
    DS("nounList", "string"),
    D("paragraphList", "string"),
    D("following", "string"),
    D("first", "list"),
    D("last", "list"),
    D("fontSize", "string"),
    D("textColor", "string"),
    D("substr", "string"),
    D("tr", "string"),
    D("replace", "string"),
    D("deleteCharacters", "string"),
    D("split", "string"),
    D("at", "list"),
    D("lookup", "list"),
    D("intersect", "list"),
    D("sort", "list"),
    D("isort", "list"),
    D("nsort", "list"),
    D("unique", "list"),
    D("paragraphs", "string"),
    D("paragraph", "string"),
    D("paragraphCount", "string"),
    D("words", "string"),
    D("precision", "format"),
    D("max", "list"),
    D("min", "list"),
    D("count", "list"),
    D("sum", "list"),
    D("avg", "list"),
    D("next", "string"),
    D("toNumber", "numeric"),
    D("size", "string"),
    D("bold", "string"),
    D("italic", "string"),
    D("plain", "string"),
    D("strike", "string"),
    D("empty", "string"),
    D("reverse", "string"),
    D("lowercase", "string"),
    D("uppercase", "string"),
    D("capitalize", "string"),
    DS("play", "system"),
    D("json", "string"),
    D("year", "date"),
    D("month", "date"),
    D("week", "date"),
    D("day", "date"),
    D("hour", "date"),
    D("minute", "date"),
    D("second", "date"),
    D("weekday", "date"),
    D("red", "colour"),
    D("blue", "colour"),
    D("green", "colour"),
    D("hue", "colour"),
    D("saturation", "colour"),
    D("brightness", "colour"),
    D("keys", "list"),
    DS("speak", "system"),
};

constexpr bool KnownFamily(std::string_view family) {
    for (const char* name : kFamilies)
        if (family == name)
            return true;
    return false;
}

constexpr bool EveryFamilyKnown() {
    for (const FunctionFamilyRow& row : kRows)
        if (!KnownFamily(row.family))
            return false;
    return true;
}

constexpr bool EveryFamilyUsed() {
    for (const char* name : kFamilies) {
        bool used = false;
        for (const FunctionFamilyRow& row : kRows)
            used = used || std::string_view(row.family) == name;
        if (!used)
            return false;
    }
    return true;
}

constexpr bool NoSpellingTwice() {
    constexpr std::size_t n = std::size(kRows);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n; ++j)
            if (kRows[i].dot == kRows[j].dot && std::string_view(kRows[i].spelling) == kRows[j].spelling)
                return false;
    return true;
}

constexpr bool FunctionsBeforeDots() {
    bool seenDot = false;
    for (const FunctionFamilyRow& row : kRows) {
        if (seenDot && !row.dot)
            return false;
        seenDot = seenDot || row.dot;
    }
    return true;
}

static_assert(std::size(kFamilies) == FunctionFamilies::kFamilyCount);
static_assert(EveryFamilyKnown(), "a row names a family that is not listed");
static_assert(EveryFamilyUsed(), "a family has no row");
static_assert(NoSpellingTwice(), "a spelling has two rows");
static_assert(FunctionsBeforeDots(), "the functions come before the dot operators");

}  // namespace

std::span<const FunctionFamilyRow> FunctionFamilies::Rows() { return kRows; }

std::span<const char* const> FunctionFamilies::Names() { return kFamilies; }

const FunctionFamilyRow* FunctionFamilies::Find(std::string_view spelling, bool dot) {
    auto found = std::find_if(std::begin(kRows), std::end(kRows), [&](const FunctionFamilyRow& row) {
        return row.dot == dot && spelling == row.spelling;
    });
    return found == std::end(kRows) ? nullptr : &*found;
}
