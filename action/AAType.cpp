#include "AAType.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <unicode/decimfmt.h>
#include <unicode/locid.h>
#include <unicode/numfmt.h>
#include <unicode/unistr.h>

#include "AAArguments.h"
#include "Attribute.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "Parser.h"
#include "STime.h"
#include "STimeInterval.h"
#include "UnicodeString.h"

#ifndef RYLVANE_VERSION
#define RYLVANE_VERSION "0.0.0"
#endif

using Type = AttributeType;

namespace {

// An attribute name as written in a call: `$Name`, "Name", a bare word or
// a computed text; without quotes and a leading "$".
std::string AttributeName(const AAValue* argument, Node* note, MatchList& matches) {
    if (!argument)
        return std::string();
    std::string name;
    bool bareWord = dynamic_cast<const AAStringValue*>(argument) && !dynamic_cast<const AAQuotedStringValue*>(argument);
    if (dynamic_cast<const AAAttributeValue*>(argument) || (bareWord && !matches.HasBinding(argument->Token())))
        name = argument->Token();
    else
        name = AAValue::ComputeValue(argument, note, matches).AsString();
    name = Parser::TrimQuotes(Parser::Trim(name));
    if (!name.empty() && name[0] == '$')
        name.erase(0, 1);
    return name;
}

}  // namespace

// -------------------------------------------------------------- attributes

ActionResult AAType::ActionValue(Node* note, MatchList& matches) const {
    std::string name = AttributeName(operand.get(), note, matches);
    if (name.empty() || !note)
        return ActionResult(std::string());
    AttributeInfo info(note);
    Attribute* attribute = info.HasAttribute(name) ? info.GetAttribute(name) : nullptr;
    return ActionResult(attribute ? attribute->GetTypeString() : std::string());
}

int AAType::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAAttributeOperator::ActionValue(Node* note, MatchList& matches) const {
    std::string name = AttributeName(operand.get(), note, matches);
    if (name.empty() || !note)
        return ActionResult(std::string());
    AttributeInfo info(note);
    Attribute* attribute = info.HasAttribute(name) ? info.GetAttribute(name) : nullptr;
    if (!attribute)
        return ActionResult(std::string());
    // Flags are written out in full, so that the dictionary's text keeps them.
    auto flag = [](bool on) { return std::string(on ? "true" : "false"); };
    Dictionary facts;
    facts["name"] = attribute->Name();
    facts["type"] = attribute->GetTypeString();
    facts["default"] = attribute->GetDefaultValueAsString();
    facts["suggested"] = attribute->SuggestedValues().ToString(";");
    facts["sequential"] = flag(attribute->IsSequential());
    facts["category"] = attribute->Category();
    facts["description"] = attribute->Description();
    facts["editable"] = flag(attribute->IsEditable());
    facts["inherits"] = flag(attribute->CanInherit());
    facts["user"] = flag(attribute->IsUserAttribute());
    return ActionResult::ForDictionary(facts);
}

int AAAttributeOperator::ResultType(Node*, MatchList&) const { return Type::kDictionary; }

// -------------------------------------------------------- program, document

const char* AAVersion::ProgramVersion() { return RYLVANE_VERSION; }

ActionResult AAVersion::ActionValue(Node* note, MatchList& matches) const {
    std::string part = Parser::TrimQuotes(ArgumentText(operand.get(), note, matches));
    std::string version = ProgramVersion();
    if (part.empty())
        return ActionResult(version);
    ArgList pieces(version, '.', true);
    static const char* const names[] = {"major", "minor", "patch"};
    for (size_t i = 0; i < std::size(names); ++i)
        if (part == names[i])
            return ActionResult(pieces.at(static_cast<int>(i)));
    return ActionResult(std::string());
}

int AAVersion::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADocumentPath::ActionValue(Node* note, MatchList& matches) const {
    std::string part = Parser::TrimQuotes(ArgumentText(operand.get(), note, matches));
    Hypertext* document = note ? note->GetHypertext() : nullptr;
    std::string file = document ? document->GetDefaultPathname() : std::string();
    if (file.empty())
        return ActionResult(std::string());
    std::filesystem::path path(file);
    if (part.empty() || part == "path")
        return ActionResult(file);
    if (part == "name")
        return ActionResult(path.stem().string());
    if (part == "file")
        return ActionResult(path.filename().string());
    if (part == "folder")
        return ActionResult(path.parent_path().string());
    if (part == "extension") {
        std::string extension = path.extension().string();
        return ActionResult(extension.empty() ? extension : extension.substr(1));
    }
    return ActionResult(std::string());
}

int AADocumentPath::ResultType(Node*, MatchList&) const { return Type::kString; }

// ------------------------------------------------------------------- ISBNs

namespace {

// The digits (and a final "X") of an ISBN, without hyphens and blanks;
// "" when anything else stands in it.
std::string ISBNDigits(const std::string& text) {
    std::string digits;
    for (char c : text) {
        if (c == '-' || c == ' ')
            continue;
        if (std::isdigit(static_cast<unsigned char>(c)))
            digits += c;
        else if (c == 'X' || c == 'x')
            digits += 'X';
        else
            return std::string();
    }
    return digits;
}

char Check10(const std::string& nine) {
    int sum = 0;
    for (size_t i = 0; i < 9; ++i)
        sum += (10 - static_cast<int>(i)) * (nine[i] - '0');
    int check = (11 - sum % 11) % 11;
    return check == 10 ? 'X' : static_cast<char>('0' + check);
}

char Check13(const std::string& twelve) {
    int sum = 0;
    for (size_t i = 0; i < 12; ++i)
        sum += (i % 2 ? 3 : 1) * (twelve[i] - '0');
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

bool AllDigits(const std::string& text, size_t count) {
    return text.size() >= count &&
           std::all_of(text.begin(), text.begin() + count, [](char c) { return c >= '0' && c <= '9'; });
}

bool ValidISBN10(const std::string& digits) {
    return digits.size() == 10 && AllDigits(digits, 9) && Check10(digits) == digits[9];
}

bool ValidISBN13(const std::string& digits) {
    return digits.size() == 13 && AllDigits(digits, 13) && Check13(digits) == digits[12];
}

}  // namespace

ActionResult AAISBN10::ActionValue(Node* note, MatchList& matches) const {
    std::string digits = ISBNDigits(Parser::TrimQuotes(ArgumentText(operand.get(), note, matches)));
    if (ValidISBN10(digits))
        return ActionResult(digits);
    if (ValidISBN13(digits) && digits.compare(0, 3, "978") == 0) {
        std::string nine = digits.substr(3, 9);
        return ActionResult(nine + Check10(nine));
    }
    return ActionResult(std::string());
}

int AAISBN10::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAISBN13::ActionValue(Node* note, MatchList& matches) const {
    std::string digits = ISBNDigits(Parser::TrimQuotes(ArgumentText(operand.get(), note, matches)));
    if (ValidISBN13(digits))
        return ActionResult(digits);
    if (ValidISBN10(digits)) {
        std::string twelve = "978" + digits.substr(0, 9);
        return ActionResult(twelve + Check13(twelve));
    }
    return ActionResult(std::string());
}

ActionResult AACovid::ActionValue(Node*, MatchList&) const { return kFalseResult(); }

// ------------------------------------------------------------------ format

namespace {

// Places and widths of the fixed form are bounded, so that a document
// cannot ask for a text of any length.
constexpr long kMaxPlaces = 40;
constexpr long kMaxWidth = 4096;

icu::Locale NumberLocale() { return icu::Locale(UnicodeString::UserLocaleName("LC_NUMERIC").c_str()); }

std::string FromICU(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

enum class NumberStyle { Decimal, Currency, WholeCurrency };

std::string Localized(double value, NumberStyle style) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = NumberLocale();
    std::unique_ptr<icu::NumberFormat> formatter(style == NumberStyle::Decimal
                                                     ? icu::NumberFormat::createInstance(locale, status)
                                                     : icu::NumberFormat::createCurrencyInstance(locale, status));
    if (U_FAILURE(status) || !formatter)
        return ActionResult(value).AsString();
    if (style == NumberStyle::WholeCurrency) {
        formatter->setMaximumFractionDigits(0);
        formatter->setRoundingMode(icu::NumberFormat::kRoundHalfDown);
    }
    icu::UnicodeString out;
    formatter->format(value, out);
    return FromICU(out);
}

ActionResult FormatNumber(const AAValue* value, const AAValue* arguments, Node* note, MatchList& matches) {
    ActionResult number = value ? AAValue::ComputeValue(value, note, matches) : ActionResult(std::string());
    if (!arguments)
        return ActionResult(number.AsString());
    double x = number.AsDouble();
    std::string format = AAValue::ComputeValue(arguments, note, matches).AsString();
    if (format == "l" || format == "L" || format.empty())
        return ActionResult(Localized(x, NumberStyle::Decimal));
    if (format == "$")
        return ActionResult(Localized(x, NumberStyle::Currency));
    if (format == "$0")
        return ActionResult(Localized(x, NumberStyle::WholeCurrency));
    const AAValue* widthArgument = arguments->GetNextArgument();
    const AAValue* fillArgument = widthArgument ? widthArgument->GetNextArgument() : nullptr;
    std::string fill = " ";
    if (fillArgument) {
        std::string given = AAValue::ComputeValue(fillArgument, note, matches).AsString();
        if (!given.empty())
            fill = given;
    }
    long places = std::clamp<long>(ActionResult(format).AsNumber(), 0, kMaxPlaces);
    long width = widthArgument ? std::clamp<long>(AAValue::ComputeValue(widthArgument, note, matches).AsNumber(), 0, kMaxWidth) : 0;
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(places), x);
    std::string text(buffer);
    if (width > 0 && static_cast<long>(text.size()) < width)
        text.insert(0, static_cast<size_t>(width) - text.size(), fill[0]);
    return ActionResult(text);
}

ActionResult FormatSet(const AAValue* value, const AAValue* arguments, Node* note, MatchList& matches) {
    ArgList items = value ? AAValue::ComputeValue(value, note, matches).AsList() : ArgList();
    if (CountArguments(arguments) >= 4) {
        std::string parts[4];
        for (int i = 0; i < 4; ++i)
            parts[i] = Parser::EscapeCharacters(ArgumentText(NthArgument(arguments, i), note, matches));
        std::string out = parts[0];
        for (const std::string& item : items)
            out += parts[1] + item + parts[2];
        return ActionResult(out + parts[3]);
    }
    std::string separator = Parser::EscapeCharacters(ArgumentText(arguments, note, matches));
    return ActionResult(items.ToString(separator));
}

}  // namespace

int AAFormat::WhatKind(const std::string& text) {
    if (text.find(';') != std::string::npos)
        return Type::kList;
    PColor color;
    if (color.FromString(text))
        return Type::kColor;
    int letters = 0;
    int es = 0;
    bool digits = false;
    for (char c : text) {
        unsigned char u = static_cast<unsigned char>(c);
        if (c == 'e' || c == 'E') {
            ++es;
        } else if (std::isalpha(u) || u >= 0x80) {
            ++letters;
        } else if (std::isdigit(u)) {
            digits = true;
        } else if (c != '-' && c != '.' && c != '+') {
            // Other marks (":", "/", blanks) belong to dates.
            if (c == ':' || c == '/' || c == ' ' || c == ',')
                ++letters;
            else
                return Type::kString;
        }
    }
    if (letters > 0 || es > 1)
        return Type::kDate;
    return digits ? Type::kNumber : Type::kString;
}

ActionResult AAFormat::Format(const AAValue* value, int type, const AAValue* arguments, Node* note,
                              MatchList& matches) {
    if (type == Type::kNone || type == Type::kString) {
        std::string text = value ? ComputeValue(value, note, matches).AsString() : std::string();
        type = WhatKind(text);
    }
    switch (type) {
        case Type::kColor: {
            ActionResult colour = value ? ComputeValue(value, note, matches) : ActionResult(std::string());
            return ActionResult(colour.AsColor(note).AsString());
        }
        case Type::kNumber:
        case Type::kUnsigned:
            return FormatNumber(value, arguments, note, matches);
        case Type::kDate: {
            // The date form needs the export format.
            if (!arguments || !value)
                return ActionResult(std::string());
            std::string format = ComputeValue(arguments, note, matches).AsString();
            return ActionResult(value->GetDate(note, matches).AsExportString(format));
        }
        case Type::kSet:
        case Type::kList:
        case Type::kDictionary:
            return FormatSet(value, arguments, note, matches);
        case Type::kInterval: {
            STimeInterval interval = value ? ComputeValue(value, note, matches).AsInterval() : STimeInterval();
            return ActionResult(interval.Seconds() == 0.0 ? std::string() : interval.ToString());
        }
        default:
            return kFalseResult();
    }
}

ActionResult AAFormat::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* value = operand.get();
    int type = value ? value->ResultType(note, matches) : Type::kNone;
    return Format(value, type, value ? value->GetNextArgument() : nullptr, note, matches);
}

int AAFormat::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AADotFormat::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* value = left.get();
    int type = value ? value->ResultType(note, matches) : Type::kNone;
    // `.format()` holds the empty expression: no written arguments.
    const AAValue* arguments = right.get();
    if (dynamic_cast<const AADefaultValue*>(arguments) && !arguments->GetNextArgument())
        arguments = nullptr;
    return AAFormat::Format(value, type, arguments, note, matches);
}

int AADotFormat::ResultType(Node*, MatchList&) const { return Type::kString; }
