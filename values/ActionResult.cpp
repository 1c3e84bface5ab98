#include "ActionResult.h"

#include <cmath>
#include <limits>
#include <sstream>

#include "Parser.h"
#include "Value.h"
#include "Hooks.h"

namespace {

std::string RenderDictionary(const Dictionary& dictionary) {
    std::string text;
    for (const auto& [key, value] : dictionary) {
        if (!text.empty()) text += ';';
        text += key;
        text += ':';
        text += value;
    }
    return text;
}

uint32_t ReadHex(const std::string& digits) {
    std::istringstream in(digits);
    uint32_t number = 0;
    in >> std::hex >> number;
    return number;
}

int TruncateToInt(double x) {
    if (std::isnan(x)) return 0;
    if (x >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (x <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    return static_cast<int>(x);
}

std::vector<std::string> CutAtColons(const std::string& item) {
    std::vector<std::string> pieces;
    size_t start = 0;
    while (true) {
        size_t colon = item.find(':', start);
        if (colon == std::string::npos) {
            pieces.push_back(item.substr(start));
            return pieces;
        }
        pieces.push_back(item.substr(start, colon - start));
        start = colon + 1;
    }
}

}  // namespace

ActionResult::ActionResult() = default;

ActionResult::ActionResult(double n) : hasString(false), isNumber(true), number(n) {}

ActionResult::ActionResult(const std::string& text) : hasString(true), string(text), isNumber(false) {}

ActionResult::ActionResult(const NodeVector& notes)
    : hasString(true), string(notes.PathString()), isNumber(true), number(0.0), nodes(notes) {}

ActionResult ActionResult::ForDictionary(const Dictionary& d) {
    ActionResult result;
    result.hasString = false;
    result.string.clear();
    result.isNumber = false;
    result.dictionary = std::make_shared<const Dictionary>(d);
    return result;
}

ActionResult::~ActionResult() = default;

std::string ActionResult::AsString() const {
    if (hasString) return string;
    if (isNumber) string = DoubleValue::Format(number);
    if (dictionary) string = RenderDictionary(*dictionary);
    hasString = true;
    return string;
}

std::string ActionResult::AsNSString() const {
    return AsString();
}

std::string ActionResult::AsTrimmedString() const {
    return Parser::Trim(AsString());
}

int ActionResult::AsNumber() const {
    if (isNumber) return TruncateToInt(number);
    std::string text = AsString();
    if (text.empty()) return 0;
    if (text[0] == '#') {
        int32_t n = static_cast<int32_t>(ReadHex(text.substr(1)));
        number = n;
        return n;
    }
    std::istringstream in(text);
    int32_t n = 0;
    in >> n;
    number = n;
    return n;
}

double ActionResult::AsDouble() const {
    if (isNumber) return number;
    std::string text = AsString();
    if (text.empty()) return 0.0;
    if (text == "true") return 1.0;
    if (text[0] == '#') {
        number = ReadHex(text.substr(1));
        return number;
    }
    return Parser::ReadDouble(text);
}

std::string ActionResult::AsKeyword() const {
    return IsTrue() ? "true" : "false";
}

const NodeVector& ActionResult::AsNodes() const {
    return nodes;
}

ArgList ActionResult::AsList() const {
    return ArgList(AsString(), ';', false);
}

SetList ActionResult::AsSet() const {
    return SetList(AsString(), ';');
}

PColor ActionResult::AsColor(const Node* note) const {
    const Hooks& hooks = GetHooks();
    if (hooks.translateColorForNode) return hooks.translateColorForNode(note, AsString());
    PColor color;
    color.FromString(AsString());
    return color;
}

ActionResult ActionResult::AsLookupTable(const ActionResult& key) const {
    const std::string wanted = key.AsTrimmedString();
    const Hooks& hooks = GetHooks();
    if (hooks.lookupTable) return ActionResult(hooks.lookupTable(AsString(), wanted));
    // Without the application's table: the first "key:value" item whose
    // trimmed key matches.
    if (wanted.empty()) return ActionResult(std::string());
    for (const std::string& item : AsList()) {
        size_t colon = item.find(':');
        if (colon == std::string::npos) continue;
        if (Parser::Trim(item.substr(0, colon)) == wanted)
            return ActionResult(Parser::Trim(item.substr(colon + 1)));
    }
    return ActionResult(std::string());
}

SharedDictionary ActionResult::AsDictionary() const {
    if (dictionary) return dictionary;
    auto built = std::make_shared<Dictionary>();
    for (const std::string& item : AsList()) {
        std::vector<std::string> pieces = CutAtColons(item);
        if (pieces.size() < 2) continue;
        (*built)[pieces[0]] = pieces[1];
    }
    dictionary = built;
    return dictionary;
}

void ActionResult::SetDictionary(const Dictionary& d) {
    dictionary = std::make_shared<const Dictionary>(d);
    hasString = false;
    isNumber = false;
}

bool ActionResult::IsTrue() const {
    if (isNumber) return number != 0.0;
    std::string text = AsString();
    if (text.empty()) return false;
    if (text == "true") return true;
    if (text == "false" || text == " false " || text == "0" || text == "never") return false;
    return true;
}

bool ActionResult::IsFalse() const {
    return !IsTrue();
}

bool ActionResult::empty() const {
    return AsString().empty();
}

ActionResult ActionResult::Append(const ActionResult& other) const {
    if (empty()) return other;
    ActionResult result(AsString() + ";" + other.AsString());
    if (richText && other.richText) {
        auto joined = std::make_shared<StyledText>(*richText);
        joined->Append("\n");
        joined->Append(*other.richText);
        result.richText = joined;
    } else {
        result.richText = richText ? richText : other.richText;
    }
    return result;
}

bool ActionResult::operator==(const std::string& text) const {
    return string == text;
}

std::shared_ptr<StyledText> ActionResult::AttributedString() const {
    return richText;
}

void ActionResult::AttributedString(std::shared_ptr<StyledText> text) {
    richText = std::move(text);
}

void ActionResult::HasString(bool flag) {
    hasString = flag;
}
