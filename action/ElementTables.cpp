#include "ElementTables.h"

#include <unordered_map>

#include "AAFunctions.h"

namespace {

template <class T>
AAValuePtr Make() {
    return std::make_unique<T>();
}

using AF = ArgumentForm;

FunctionEntry Fn(const char* spelling, ArgumentForm form, AAValuePtr (*make)(), bool offered = true) {
    return FunctionEntry{spelling, form, make, offered, nullptr, 0};
}

FunctionEntry Group(const char* spelling, AAValuePtr (*make)(), const char* message, size_t minimum = 2) {
    return FunctionEntry{spelling, ArgumentForm::Designator, make, true, message, minimum};
}

std::vector<FunctionEntry> BuildFunctionTable() {
    return {
        // The first argument, parsed.
        Fn("log", AF::Single, &Make<AALog>),
        Fn("sqrt", AF::Single, &Make<AASqrt>),
        Fn("abs", AF::Single, &Make<AAAbs>),
        Fn("cos", AF::Single, &Make<AACos>),
        Fn("sin", AF::Single, &Make<AASin>),
        Fn("tan", AF::Single, &Make<AATan>),
        Fn("atan", AF::Single, &Make<AAArcTan>),
        Fn("exp", AF::Single, &Make<AAExp>),
        Fn("degrees", AF::Single, &Make<AADegrees>),
        Fn("radians", AF::Single, &Make<AARadians>),
        Fn("round", AF::Single, &Make<AARound>),
        Fn("floor", AF::Single, &Make<AAFloor>),
        Fn("ceil", AF::Single, &Make<AACeil>),
        Fn("rand", AF::Single, &Make<AARand>),
        Fn("isbn10", AF::Single, &Make<AAISBN10>),
        Fn("isbn13", AF::Single, &Make<AAISBN13>),
        Fn("visited", AF::Single, &Make<AAVisited>),
        Fn("unvisited", AF::Single, &Make<AAUnvisited>),
        Fn("version", AF::Single, &Make<AAVersion>),
        Fn("count", AF::Single, &Make<AACount>),
        Fn("max", AF::Single, &Make<AAMax>),
        Fn("min", AF::Single, &Make<AAMin>),
        Fn("urlEncode", AF::Single, &Make<AAURLEncode>),
        Fn("attributeEncode", AF::Single, &Make<AAAttributeEncode>),
        Fn("jsonEncode", AF::Single, &Make<AAJSONEncode>),
        Fn("escapeHTML", AF::Single, &Make<AAEscapeHTML>),
        Fn("locale", AF::Single, &Make<AALocale>),
        Fn("utf8", AF::Single, &Make<AAUTF8>),
        Fn("idEncode", AF::Single, &Make<AAIDEncode>),
        Fn("lastWord", AF::Single, &Make<AALastWord>),
        Fn("firstWord", AF::Single, &Make<AAFirstWord>),
        Fn("uppercase", AF::Single, &Make<AAUppercase>),
        Fn("upperCase", AF::Single, &Make<AAUppercase>, false),
        Fn("lowercase", AF::Single, &Make<AALowercase>),
        Fn("loweCase", AF::Single, &Make<AALowercase>, false),
        Fn("capitalize", AF::Single, &Make<AACapitalize>),
        Fn("play", AF::Single, &Make<AAPlay>),
        Fn("type", AF::Single, &Make<AAType>),
        Fn("attribute", AF::Single, &Make<AAAttributeOperator>),
        Fn("document", AF::Single, &Make<AADocumentPath>),
        Fn("compositeWithName", AF::Single, &Make<AACompositeWithName>),
        Fn("word", AF::Single, &Make<AAWord>),
        Fn("#word", AF::Single, &Make<AAWord>, false),

        // The parenthesised text as one expression.
        Fn("pow", AF::Arguments, &Make<AAPower>),
        Fn("mod", AF::Arguments, &Make<AAMod>),
        Fn("distance", AF::Arguments, &Make<AADistance>),
        Fn("notify", AF::Arguments, &Make<AANotify>),
        Fn("interval", AF::Arguments, &Make<AAInterval>),
        Fn("inheritsFrom", AF::Arguments, &Make<AAInheritsFrom>),
        Fn("isDuplicateName", AF::Arguments, &Make<AADuplicateName>),
        Fn("stamp", AF::Arguments, &Make<AAStamp>),
        Fn("create", AF::Arguments, &Make<AACreate>),
        Fn("createAgent", AF::Arguments, &Make<AACreateAgent>),
        Fn("covid", AF::Arguments, &Make<AACovid>),
        Fn("delete", AF::Arguments, &Make<AADelete>),
        Fn("hasLocalValue", AF::Arguments, &Make<AALocalValue>),
        Fn("rgb", AF::Arguments, &Make<AARGB>),
        Fn("RGB", AF::Arguments, &Make<AARGB>),
        Fn("brightness", AF::Arguments, &Make<AABrightness>),
        Fn("saturation", AF::Arguments, &Make<AASaturation>),
        Fn("hue", AF::Arguments, &Make<AAHue>),
        Fn("date", AF::Arguments, &Make<AADate>),
        Fn("list", AF::Arguments, &Make<AAList>),
        Fn("dictionary", AF::Arguments, &Make<AADictionary>),
        Fn("linkPath", AF::Arguments, &Make<AAOnPath>),
        Fn("day", AF::Arguments, &Make<AADay>),
        Fn("hour", AF::Arguments, &Make<AAHour>),
        Fn("minute", AF::Arguments, &Make<AAMinute>),
        Fn("second", AF::Arguments, &Make<AASecond>),
        Fn("month", AF::Arguments, &Make<AAMonth>),
        Fn("week", AF::Arguments, &Make<AAWeekOfYear>),
        Fn("year", AF::Arguments, &Make<AAYear>),
        Fn("days", AF::Arguments, &Make<AADays>),
        Fn("hours", AF::Arguments, &Make<AAHours>),
        Fn("minutes", AF::Arguments, &Make<AAMinutes>),
        Fn("months", AF::Arguments, &Make<AAMonths>),
        Fn("weeks", AF::Arguments, &Make<AAWeeks>),
        Fn("years", AF::Arguments, &Make<AAYears>),
        Fn("seconds", AF::Arguments, &Make<AASeconds>),
        Fn("time", AF::Arguments, &Make<AATime>),
        Fn("format", AF::Arguments, &Make<AAFormat>),
        Fn("do", AF::Arguments, &Make<AAMacro>),
        Fn("speak", AF::Arguments, &Make<AASpeak>),
        Fn("substr", AF::Arguments, &Make<AASubstring>),
        Fn("first", AF::Arguments, &Make<AAFirst>),
        Fn("#first", AF::Arguments, &Make<AAFirst>, false),
        Fn("last", AF::Arguments, &Make<AALast>),
        Fn("#last", AF::Arguments, &Make<AALast>, false),
        Fn("linkedTo", AF::Arguments, &Make<AALinkedTo>),
        Fn("#linkedTo", AF::Arguments, &Make<AALinkedTo>, false),
        Fn("linkedFrom", AF::Arguments, &Make<AALinkedFrom>),
        Fn("#linkedFrom", AF::Arguments, &Make<AALinkedFrom>, false),
        Fn("originalLinkedTo", AF::Arguments, &Make<AAOriginalLinkedTo>),
        Fn("originalLinkedFrom", AF::Arguments, &Make<AAOriginalLinkedFrom>),
        Fn("linkTo", AF::Arguments, &Make<AALinkTo>),
        Fn("linkToOriginal", AF::Arguments, &Make<AALinkToOriginal>),
        Fn("linkFrom", AF::Arguments, &Make<AALinkFrom>),
        Fn("linkFromOriginal", AF::Arguments, &Make<AALinkFromOriginal>),
        Fn("unlinkTo", AF::Arguments, &Make<AAUnlinkTo>),
        Fn("unlinkToOriginal", AF::Arguments, &Make<AAUnlinkToOriginal>),
        Fn("unlinkFrom", AF::Arguments, &Make<AAUnlinkFrom>),
        Fn("unlinkFromOriginal", AF::Arguments, &Make<AAUnlinkFromOriginal>),
        Fn("distanceTo", AF::Arguments, &Make<AADistanceBetween>),
        Fn("drivingTimeTo", AF::Arguments, &Make<AADrivingTime>),
        Fn("indented", AF::Arguments, &Make<AAIndented>),
        Fn("#indented", AF::Arguments, &Make<AAIndented>, false),
        Fn("similarTo", AF::Arguments, &Make<AASimilar>),
        Fn("#similarTo", AF::Arguments, &Make<AASimilar>, false),
        Fn("wordsRelatedTo", AF::Arguments, &Make<AARelatedWords>),
        Fn("between", AF::Arguments, &Make<AABetween>),
        Fn("#between", AF::Arguments, &Make<AABetween>, false),

        // A path as text.
        Fn("descendedFrom", AF::Path, &Make<AADescendedFrom>),
        Fn("#descendedFrom", AF::Path, &Make<AADescendedFrom>, false),
        Fn("inside", AF::Path, &Make<AAInside>),
        Fn("#inside", AF::Path, &Make<AAInside>, false),
        Fn("contains", AF::Path, &Make<AAContains>),
        Fn("#contains", AF::Path, &Make<AAContains>, false),
        Fn("compositeFor", AF::Path, &Make<AACompositeFor>),
        Fn("my", AF::Path, &Make<AACompositeFor>),

        // The parenthesised text, unparsed.
        Fn("guard", AF::Literal, &Make<AAGuardField>),

        // A designator and further arguments.
        Group("collect", &Make<AACollect>, "collect: syntax error"),
        Group("collect_if", &Make<AACollectIf>, "collect_if: syntax error", 3),
        Group("count_if", &Make<AACountIf>, "count_if: syntax error"),
        Group("sum", &Make<AASum>, "sum: syntax error"),
        Group("sum_if", &Make<AASumIf>, "sum_if: syntax error"),
        Group("avg", &Make<AAAvg>, "avg: syntax error"),
        Group("avg_if", &Make<AAAvgIf>, "avg_if: syntax error"),
        Group("every", &Make<AAEvery>, "every: syntax error"),
        Group("any", &Make<AAAny>, "any: syntax error"),
        Group("exportedString", &Make<AAExport>, "export: syntax error"),
        Group("neighbors", &Make<AANeighbors>, "export: syntax error", 1),
        Group("neighbors2", &Make<AANeighbors2>, "export: syntax error", 1),
        Group("neighborsWithin", &Make<AANeighborsWithin>, "export: syntax error", 1),
        Group("neighbors2Within", &Make<AANeighbors2Within>, "export: syntax error", 1),
    };
}

using DF = DotForm;

std::vector<DotOperatorEntry> BuildDotOperatorTable() {
    return {
        {"contains", DF::OneToken, [] () -> AAValuePtr { return std::make_unique<AADotContains>(true); }},
        {"containsAnyOf", DF::OneToken, [] () -> AAValuePtr { return std::make_unique<AADotContainsAny>(true); }},
        {"icontains", DF::OneTokenCaseInsensitive,
         [] () -> AAValuePtr { return std::make_unique<AADotContains>(false); }},
        {"icontainsAnyOf", DF::OneTokenCaseInsensitive,
         [] () -> AAValuePtr { return std::make_unique<AADotContainsAny>(false); }},

        {"beginsWith", DF::ArgumentsCaseSensitive, &Make<AADotBeginsWith>},
        {"endsWith", DF::ArgumentsCaseSensitive, &Make<AADotEndsWith>},
        {"countOccurrencesOf", DF::ArgumentsCaseSensitive, &Make<AADotCountOccurrencesOf>},
        {"find", DF::ArgumentsCaseSensitive, &Make<AADotFind>},

        {"format", DF::Arguments, &Make<AADotFormat>},
        {"remove", DF::Arguments, &Make<AADotRemove>},
        {"every", DF::Arguments, &Make<AADotEvery>},
        {"any", DF::Arguments, &Make<AADotAny>},
        {"collect", DF::Arguments, &Make<AADotCollect>},
        {"collect_if", DF::Arguments, &Make<AADotCollectIf>},
        {"trim", DF::Arguments, &Make<AATrim>},
        {"wordList", DF::Arguments, &Make<AAWordList>},
        {"nounList", DF::Arguments, &Make<AANounList>},
        {"paragraphList", DF::Arguments, &Make<AAParagraphList>},
        {"following", DF::Arguments, &Make<AAFollowing>},
        {"first", DF::Arguments, &Make<AADotFirst>},
        {"last", DF::Arguments, &Make<AADotLast>},
        {"fontSize", DF::Arguments, &Make<AAFontSize>},
        {"textColor", DF::Arguments, &Make<AADotTextColor>},
        {"substr", DF::Arguments, &Make<AADotSubstring>},
        {"tr", DF::Arguments, &Make<AATr>},
        {"replace", DF::Arguments, &Make<AAReplace>},
        {"deleteCharacters", DF::Arguments, &Make<AADeleteCharacters>},
        {"split", DF::Arguments, &Make<AASplit>},
        {"at", DF::Arguments, &Make<AAAt>},
        {"lookup", DF::Arguments, &Make<AALookup>},
        {"intersect", DF::Arguments, &Make<AAIntersect>},
        {"sort", DF::Arguments, &Make<AASort>},
        {"isort", DF::Arguments, &Make<AASortCaseInsensitive>},
        {"nsort", DF::Arguments, &Make<AASortNumeric>},
        {"unique", DF::Arguments, &Make<AAUnique>},
        {"paragraphs", DF::Arguments, &Make<AAParagraphs>},
        {"paragraph", DF::Arguments, &Make<AAParagraph>},
        {"paragraphCount", DF::Arguments, &Make<AAParagraphCount>},
        {"words", DF::Arguments, &Make<AAWords>},
        {"precision", DF::Arguments, &Make<AAPrecision>},

        {"max", DF::NoArgument, &Make<AADotMax>},
        {"min", DF::NoArgument, &Make<AADotMin>},
        {"count", DF::NoArgument, &Make<AADotCount>},
        {"sum", DF::NoArgument, &Make<AADotSum>},
        {"avg", DF::NoArgument, &Make<AADotAvg>},
        {"next", DF::NoArgument, &Make<AANext>},
        {"toNumber", DF::NoArgument, &Make<AAToNumber>},
        {"size", DF::NoArgument, &Make<AASize>},
        {"bold", DF::NoArgument, &Make<AADotBold>},
        {"italic", DF::NoArgument, &Make<AADotItalic>},
        {"plain", DF::NoArgument, &Make<AADotPlain>},
        {"strike", DF::NoArgument, &Make<AADotStrike>},
        {"empty", DF::NoArgument, &Make<AAEmpty>},
        {"reverse", DF::NoArgument, &Make<AAReverse>},
        {"lowercase", DF::NoArgument, &Make<AALowercase>},
        {"uppercase", DF::NoArgument, &Make<AAUppercase>},
        {"capitalize", DF::NoArgument, &Make<AACapitalize>},
        {"play", DF::NoArgument, &Make<AAPlay>},
        {"json", DF::NoArgument, &Make<AAJSONEncode>},
        {"year", DF::NoArgument, &Make<AAYear>},
        {"month", DF::NoArgument, &Make<AAMonth>},
        {"week", DF::NoArgument, &Make<AAWeekOfYear>},
        {"day", DF::NoArgument, &Make<AADay>},
        {"hour", DF::NoArgument, &Make<AAHour>},
        {"minute", DF::NoArgument, &Make<AAMinute>},
        {"second", DF::NoArgument, &Make<AASecond>},
        {"weekday", DF::NoArgument, &Make<AAWeekday>},
        {"red", DF::NoArgument, &Make<AARed>},
        {"blue", DF::NoArgument, &Make<AABlue>},
        {"green", DF::NoArgument, &Make<AAGreen>},
        {"hue", DF::NoArgument, &Make<AADotHue>},
        {"saturation", DF::NoArgument, &Make<AADotSaturation>},
        {"brightness", DF::NoArgument, &Make<AADotBrightness>},
        {"keys", DF::NoArgument, &Make<AAKeys>},

        {"speak", DF::TokenAndArguments, &Make<AASpeak>},
    };
}

}  // namespace

const std::vector<FunctionEntry>& FunctionTable() {
    static const std::vector<FunctionEntry> table = BuildFunctionTable();
    return table;
}

const std::vector<DotOperatorEntry>& DotOperatorTable() {
    static const std::vector<DotOperatorEntry> table = BuildDotOperatorTable();
    return table;
}

const DotOperatorEntry* FindDotOperator(const std::string& name) {
    static const std::unordered_map<std::string, const DotOperatorEntry*> index = [] {
        std::unordered_map<std::string, const DotOperatorEntry*> map;
        for (const DotOperatorEntry& entry : DotOperatorTable())
            map.emplace(entry.name, &entry);
        return map;
    }();
    auto found = index.find(name);
    return found == index.end() ? nullptr : found->second;
}
