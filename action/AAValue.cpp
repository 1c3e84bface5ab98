#include "AAValue.h"

#include <cstdio>

AAValue::~AAValue() { DestroyChildren(); }

bool AAValue::SingleArgument() const {
    const AAValue* first = GetArgument();
    return first && !first->GetNextArgument();
}

void AAValue::Describe(AAValueParts& parts) const {}

void AAValue::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (next)
        out.push_back(std::move(next));
}

void AAValue::DestroyChildren() {
    // The outermost destruction on a thread runs the loop; the destructors
    // of the nodes it frees only hand their children over to it.
    thread_local std::vector<AAValuePtr>* running = nullptr;
    if (running) {
        ReleaseChildren(*running);
        return;
    }
    std::vector<AAValuePtr> pending;
    ReleaseChildren(pending);
    if (pending.empty())
        return;
    running = &pending;
    while (!pending.empty()) {
        AAValuePtr node = std::move(pending.back());
        pending.pop_back();
        node.reset();
    }
    running = nullptr;
}

std::string AAQuoteForDump(const std::string& text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 32 || c == 127) {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\x%02x", c);
                out += buffer;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
    return out;
}

void AAStringValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAQuotedStringValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    if (quote == '\'')
        parts.fields.push_back("single-quoted");
}

void AAInvalid::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAMatchValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AAAttributeValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    if (!designator.empty())
        parts.fields.push_back("designator " + AAQuoteForDump(designator));
}

void AATemplateValue::Describe(AAValueParts& parts) const { parts.fields.push_back(AAQuoteForDump(token)); }

void AARegexValue::Describe(AAValueParts& parts) const {
    parts.fields.push_back(AAQuoteForDump(token));
    parts.fields.push_back("pattern " + AAQuoteForDump(pattern));
    parts.fields.push_back(caseSensitive ? "case-sensitive" : "case-insensitive");
}

void AALinks::Describe(AAValueParts& parts) const {
    parts.fields.push_back("designator " + AAQuoteForDump(designator));
    parts.fields.push_back("query " + AAQuoteForDump(query));
}

AAIfExpression::~AAIfExpression() { DestroyChildren(); }

void AAIfExpression::Describe(AAValueParts& parts) const {
    parts.operands = {condition.get(), thenBranch.get(), elseBranch.get()};
}

void AAIfExpression::ReleaseChildren(std::vector<AAValuePtr>& out) {
    out.push_back(std::move(condition));
    out.push_back(std::move(thenBranch));
    out.push_back(std::move(elseBranch));
    AAValue::ReleaseChildren(out);
}

AAUnaryOperator::~AAUnaryOperator() { DestroyChildren(); }

void AAUnaryOperator::Describe(AAValueParts& parts) const {
    if (operand)
        parts.operands.push_back(operand.get());
}

void AAUnaryOperator::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (operand)
        out.push_back(std::move(operand));
    AAValue::ReleaseChildren(out);
}

AABinaryOperator::~AABinaryOperator() { DestroyChildren(); }

void AABinaryOperator::Describe(AAValueParts& parts) const {
    // An empty right side is left out; an empty left side before a right
    // one is shown as an empty slot.
    if (left || right)
        parts.operands.push_back(left.get());
    if (right)
        parts.operands.push_back(right.get());
}

void AABinaryOperator::ReleaseChildren(std::vector<AAValuePtr>& out) {
    if (left)
        out.push_back(std::move(left));
    if (right)
        out.push_back(std::move(right));
    AAValue::ReleaseChildren(out);
}

void AADotContains::Describe(AAValueParts& parts) const {
    parts.fields.push_back(caseSensitive ? "case-sensitive" : "case-insensitive");
    AADotOperator::Describe(parts);
}

void AACompositeFunction::Describe(AAValueParts& parts) const {
    for (const std::string& argument : arguments)
        parts.fields.push_back(AAQuoteForDump(argument));
    AAUnaryOperator::Describe(parts);
}

// ---------------------------------------------------------------------------
// Evaluation: defaults of every node and the leaves

#include <boost/regex.hpp>

#include "AttributeInfo.h"
#include "AttributeToken.h"
#include "Attribute.h"
#include "Hypertext.h"
#include "HTPath.h"
#include "Log.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "Parser.h"
#include "Props.h"
#include "SetList.h"
#include "UnicodeString.h"
#include "Value.h"

const char* const AAValue::kTrue = "true";
const char* const AAValue::kFalse = "";

const ActionResult& AAValue::kTrueResult() {
    static const ActionResult result(std::string("true"));
    return result;
}

const ActionResult& AAValue::kFalseResult() {
    static const ActionResult result(std::string(""));
    return result;
}

namespace {

// The depth of nested evaluation on this thread.
thread_local int evaluationDepth = 0;

// Counts one level of evaluation for the life of the object.
class StEvaluationLevel {
public:
    StEvaluationLevel() { ++evaluationDepth; }
    ~StEvaluationLevel() { --evaluationDepth; }
    StEvaluationLevel(const StEvaluationLevel&) = delete;
    StEvaluationLevel& operator=(const StEvaluationLevel&) = delete;
    bool TooDeep() const { return evaluationDepth > AAValue::kMaxEvaluationDepth; }
};

void ReportTooDeep() {
    thread_local bool reported = false;
    if (!reported) {
        reported = true;
        LogFormat("Action code nested more than %d evaluations deep; the rest evaluates to nothing",
                  AAValue::kMaxEvaluationDepth);
    }
}

}  // namespace

ActionResult AAValue::ComputeValue(const AAValue* value, Node* note, MatchList& matches) {
    if (!value)
        return ActionResult();
    StEvaluationLevel level;
    if (level.TooDeep()) {
        ReportTooDeep();
        return ActionResult();
    }
    return value->ActionValue(note, matches);
}

ActionResult AAValue::ActionValue(Node*, MatchList&) const { return ActionResult(std::string()); }

bool AAValue::ComputeTruth(const AAValue* value, Node* note, MatchList& matches) {
    if (!value)
        return false;
    StEvaluationLevel level;
    if (level.TooDeep()) {
        ReportTooDeep();
        return false;
    }
    return value->Truth(note, matches);
}

bool AAValue::FastText(const AAValue* value, Node* note, MatchList& matches, std::string& buffer,
                       std::string_view& text) {
    if (!value)
        return false;
    StEvaluationLevel level;
    return !level.TooDeep() && value->TextInPlace(note, matches, buffer, text);
}

bool AAValue::FastNumber(const AAValue* value, Node* note, MatchList& matches, double& number) {
    if (!value)
        return false;
    StEvaluationLevel level;
    return !level.TooDeep() && value->NumberInPlace(note, matches, number);
}

double AAValue::NumberOfText(const std::string& text) {
    // As a text result reads: its trimmed text may be a date; otherwise
    // "true" is 1, "#ff" hexadecimal and anything else a decimal number.
    std::string trimmed = Parser::TrimQuotes(text);
    if (STime::IsDate(trimmed))
        return STime::For(trimmed).DaysSince(STime::Never());
    if (text.empty())
        return 0.0;
    if (text == "true")
        return 1.0;
    if (text[0] == '#')
        return ActionResult(text).AsDouble();
    return Parser::ReadDouble(text);
}

bool AAValue::NumberInPlace(Node* note, MatchList& matches, double& number) const {
    std::string buffer;
    std::string_view text;
    if (!TextInPlace(note, matches, buffer, text))
        return false;
    number = text.data() == buffer.data() ? NumberOfText(buffer) : NumberOfText(std::string(text));
    return true;
}


double AAValue::GetDouble(Node* note, MatchList& matches) const { return ActionValue(note, matches).AsDouble(); }

long AAValue::GetNum(Node* note, MatchList& matches) const { return ActionValue(note, matches).AsNumber(); }

STime AAValue::GetDate(Node* note, MatchList& matches) const { return ActionValue(note, matches).AsDate(); }

int AAValue::ResultType(Node*, MatchList&) const { return AttributeType::kNone; }

namespace {

// The date part of an attribute with one component replaced.
STime ReplaceDatePart(const STime& time, const std::string& facet, long number) {
    if (facet == "year") return time.ForYear(number);
    if (facet == "month") return time.ForMonth(number);
    if (facet == "day") return time.ForDay(number);
    if (facet == "hour") return time.ForHour(number);
    if (facet == "minute") return time.ForMinute(number);
    return time.ForSecond(number);
}

bool IsDateFacet(const std::string& facet) {
    return facet == "year" || facet == "month" || facet == "day" || facet == "hour" || facet == "minute" ||
           facet == "second";
}

// Whether an assignment to `name` changes a definition rather than a value.
bool NamesTheAttributeDefinition(const AttributeToken& token) { return token.Name() == "attribute"; }

// `attribute(Name)["default"] = value` and friends: the definition of the
// attribute the designator names.
ActionResult AssignToDefinition(Node* target, const AttributeToken& token, const ActionResult& value) {
    std::string subject = Parser::TrimQuotes(Parser::Trim(token.Designator()));
    AttributeInfo info(target);
    if (!info.HasAttribute(subject))
        return AAValue::kTrueResult();
    auto apply = [&info, &subject](const std::string& word, const std::string& text) {
        if (word == "suggested")
            info.SetSuggestedValues(subject, text);
        else if (word == "default")
            info.SetDefault(subject, text);
        else if (word == "sequential" && !text.empty())
            info.BeSequential(subject, true);
    };
    if (token.HasIndex()) {
        apply(token.Index(), value.AsString());
    } else if (SharedDictionary dictionary = value.AsDictionary()) {
        for (const char* word : {"suggested", "default", "sequential"}) {
            auto it = dictionary->find(word);
            if (it != dictionary->end())
                apply(word, it->second);
        }
    }
    return AAValue::kTrueResult();
}

}  // namespace

ActionResult AAValue::SetFacet(Node* target, const AttributeToken& token, const ActionResult& value) const {
    const std::string& facet = token.Facet();
    const std::string& name = token.Name();
    NodeFacade note(target);
    if (!target)
        return ActionResult(std::string());
    if (IsDateFacet(facet)) {
        STime time = note.GetDate(name);
        target->SetTime(name, ReplaceDatePart(time, facet, value.AsNumber()));
    } else if (facet == "red" || facet == "green" || facet == "blue" || facet == "hue" || facet == "saturation" ||
               facet == "brightness") {
        PColor color = ActionResult(note.GetString(name)).AsColor(target);
        if (facet == "red" || facet == "green" || facet == "blue") {
            uint16_t channel = static_cast<uint16_t>(std::clamp(value.AsNumber(), 0, 255) * 257);
            if (facet == "red") color.red = channel;
            else if (facet == "green") color.green = channel;
            else color.blue = channel;
        } else {
            double h = 0, s = 0, v = 0;
            color.ToHSV(h, s, v);
            double number = value.AsDouble();
            if (facet == "hue") h = number;
            else if (facet == "saturation") s = number;
            else v = number;
            color = PColor::HSV(h, s, v);
        }
        target->SetColor(name, color.AsString());
    } else if (facet == "name") {
        target->Set(name, value.AsString());
    } else {
        return ActionResult(std::string());
    }
    return ActionResult(note.GetString(name));
}

ActionResult AAValue::DoAssign(Node* target, Node* source, const AttributeToken& token, MatchList& matches) const {
    ActionResult value = ComputeValue(this, source, matches);
    if (!target)
        return value;
    if (token.HasFacet())
        return SetFacet(target, token, value);
    if (NamesTheAttributeDefinition(token))
        return AssignToDefinition(target, token, value);

    const std::string& name = token.Name();
    const Attribute* attribute = target->GetHypertext() && target->GetHypertext()->AttributeStorage()
                                     ? target->GetHypertext()->AttributeStorage()->Find(name)
                                     : nullptr;
    NodeFacade note(target);
    if (attribute && attribute->IsSet()) {
        note.SetSet(name, value.AsString());
        return ActionResult(note.GetString(name));
    }
    if (attribute && attribute->IsList() && token.HasIndex()) {
        ArgList items(note.GetString(name), ';', true);
        long position = std::strtol(token.Index().c_str(), nullptr, 10);
        if (position < 0)
            position += static_cast<long>(items.size());
        if (position < 0)
            return value;
        while (static_cast<long>(items.size()) <= position)
            items.push_back("");
        items[position] = value.AsString();
        note.Set(name, items.ToString(";"));
        return value;
    }
    if (attribute && attribute->IsDictionaryAttribute()) {
        if (token.HasIndex()) {
            SharedDictionary current = target->GetDictionary(name);
            Dictionary copy = current ? *current : Dictionary();
            copy[token.Index()] = value.AsString();
            ActionResult result = ActionResult::ForDictionary(copy);
            target->SetDictionary(name, result.AsString());
            return result;
        }
        SharedDictionary dictionary = value.AsDictionary();
        ActionResult result = ActionResult::ForDictionary(dictionary ? *dictionary : Dictionary());
        target->SetDictionary(name, result.AsString());
        return value;
    }
    if (matches.HasBinding(name)) {
        matches.Bind(name, value.AsString(), -1);
        return value;
    }
    if (attribute && name == "Text" && value.AttributedString()) {
        NodeText(target).SetRTFD(*value.AttributedString());
        return value;
    }
    note.Set(name, value.AsString());
    return value;
}

// ---------------------------------------------------------------------------
// Leaves

STime AAStringValue::LiteralDate() const {
    std::call_once(dateOnce, [this] { date = STime::For(token); });
    return date;
}

ActionResult AAStringValue::ActionValue(Node* note, MatchList& matches) const {
    if (matches.HasBinding(token))
        return ActionResult(matches.Lookup(token));
    if (note) {
        if (const Attribute* attribute = AttributeNamed(note)) {
            if (attribute->IsDictionaryAttribute()) {
                SharedDictionary dictionary = note->GetDictionary(token);
                return ActionResult::ForDictionary(dictionary ? *dictionary : Dictionary());
            }
            return ActionResult(NodeFacade(note).GetString(attribute));
        }
    }
    return ActionResult(token);
}

bool AAStringValue::TextInPlace(Node* note, MatchList& matches, std::string&, std::string_view& text) const {
    if (matches.HasBinding(token) || (note && AttributeNamed(note)))
        return false;
    text = token;
    return true;
}

bool AAStringValue::NumberInPlace(Node* note, MatchList& matches, double& number) const {
    if (matches.HasBinding(token) || (note && AttributeNamed(note)))
        return false;
    number = LiteralNumber();
    return true;
}

double AAStringValue::LiteralNumber() const {
    int kind = literalKind.load(std::memory_order_acquire);
    if (kind == 1)
        return literalNumber.load(std::memory_order_relaxed);
    if (kind == 2)
        return NumberOfText(token);
    double number = NumberOfText(token);
    if (STime::IsDate(Parser::TrimQuotes(token))) {
        literalKind.store(2, std::memory_order_release);
    } else {
        literalNumber.store(number, std::memory_order_relaxed);
        literalKind.store(1, std::memory_order_release);
    }
    return number;
}

int AAStringValue::ResultType(Node* note, MatchList& matches) const {
    if (note) {
        if (const Attribute* attribute = AttributeNamed(note))
            return attribute->GetType();
    }
    if (matches.HasBinding(token))
        return matches.Type(token);
    return AttributeType::kString;
}

STime AAStringValue::GetDate(Node* note, MatchList& matches) const {
    if (note && AttributeNamed(note))
        return note->GetDate(token);
    return LiteralDate();
}

ActionResult AAQuotedStringValue::ActionValue(Node*, MatchList&) const { return ActionResult(token); }

int AAQuotedStringValue::ResultType(Node*, MatchList&) const { return AttributeType::kString; }

bool AAQuotedStringValue::TextInPlace(Node*, MatchList&, std::string&, std::string_view& text) const {
    text = token;
    return true;
}

bool AAQuotedStringValue::NumberInPlace(Node*, MatchList&, double& number) const {
    number = LiteralNumber();
    return true;
}

STime AAQuotedStringValue::GetDate(Node*, MatchList&) const { return LiteralDate(); }

int AAInteger::ResultType(Node*, MatchList&) const { return AttributeType::kNumber; }

long AAInteger::GetNum(Node*, MatchList&) const {
    std::call_once(numberOnce, [this] {
        if (!token.empty() && token[0] == '#')
            number = static_cast<long>(std::strtoul(token.c_str() + 1, nullptr, 16));
        else
            number = std::strtol(token.c_str(), nullptr, 10);
    });
    return number;
}

int AABoolean::ResultType(Node*, MatchList&) const { return AttributeType::kBoolean; }

ActionResult AAInvalid::ActionValue(Node*, MatchList&) const { return kFalseResult(); }

ActionResult AADefaultValue::DoAssign(Node* target, Node*, const AttributeToken& token, MatchList&) const {
    if (target)
        NodeFacade(target).Remove(token.Name());
    return ActionResult(std::string());
}

ActionResult AAMatchValue::ActionValue(Node*, MatchList& matches) const {
    if (index >= 0 && static_cast<size_t>(index) < matches.matches.size())
        return ActionResult(matches.matches[static_cast<size_t>(index)]);
    return ActionResult(token);
}

ActionResult AAIfExpression::ActionValue(Node* note, MatchList& matches) const {
    bool holds = condition && condition->IsValid(note) && ComputeValue(condition.get(), note, matches).IsTrue();
    const AAValue* branch = holds ? thenBranch.get() : elseBranch.get();
    return branch ? ComputeValue(branch, note, matches) : kFalseResult();
}

// ---------------------------------------------------------------------------
// Attribute references

Node* AAAttributeValue::Target(Node* note, MatchList& matches) const {
    if (designator.empty())
        return note;
    return HTPath::Get(note, designator, matches);
}

ActionResult AAAttributeValue::ActionValue(Node* note, MatchList& matches) const {
    Node* target = Target(note, matches);
    if (!target)
        return ActionResult(std::string());
    return ValueFor(target, note, matches);
}

ActionResult AAAttributeValue::ValueFor(Node* target, Node*, MatchList&) const {
    const Attribute* attribute = attributeCache.Find(target, token);
    if (!attribute)
        return ActionResult(std::string());
    if (attribute->IsDate()) {
        STime time = target->GetDate(token);
        return ActionResult(time.IsNever() ? std::string("never") : time.ISO8601DateString());
    }
    if (attribute->IsDictionaryAttribute()) {
        SharedDictionary dictionary = target->GetDictionary(token);
        return ActionResult::ForDictionary(dictionary ? *dictionary : Dictionary());
    }
    if (isName)
        return ActionResult(NodeFacade(target->GetOriginal()).GetString(attribute));
    ActionResult result(NodeFacade(target).GetString(attribute));
    if (isText && NodeText(target).HasRTF())
        result.AttributedString(std::make_shared<StyledText>(NodeText(target).CreateAttributedString()));
    return result;
}


bool AAAttributeValue::TextInPlace(Node* note, MatchList&, std::string& buffer, std::string_view& text) const {
    if (!designator.empty() || !note || isText)
        return false;
    const Attribute* attribute = attributeCache.Find(note, token);
    if (!attribute) {
        text = std::string_view();
        return true;
    }
    if (attribute->IsDate() || attribute->IsDictionaryAttribute())
        return false;
    (isName ? note->GetOriginal() : note)->GetStringInto(attribute, buffer);
    text = buffer;
    return true;
}

int AAAttributeValue::ResultType(Node* note, MatchList&) const {
    const Attribute* attribute = attributeCache.Find(note, token);
    return attribute ? attribute->GetType() : AttributeType::kNone;
}

STime AAAttributeValue::GetDate(Node* note, MatchList& matches) const {
    Node* target = Target(note, matches);
    return target ? target->GetDate(token) : STime::Never();
}

bool AAAttributeValue::IsValid(const Node* note) const {
    if (!designator.empty())
        return true;
    // Without a document the name cannot be checked; it is taken on trust.
    if (!note || !note->GetHypertext())
        return true;
    return attributeCache.Find(note, token) != nullptr;
}

// ---------------------------------------------------------------------------
// Regular-expression queries: `Name(pattern)`

struct AARegexValue::Compiled {
    bool valid = false;
    boost::regex regex;
};

AARegexValue::AARegexValue(std::string name, std::string patternText, bool isCaseSensitive)
    : AAValue(std::move(name)), pattern(std::move(patternText)), caseSensitive(isCaseSensitive) {}

AARegexValue::~AARegexValue() = default;

const AARegexValue::Compiled& AARegexValue::Regex() const {
    std::call_once(compileOnce, [this] {
        auto made = std::make_unique<Compiled>();
        try {
            boost::regex::flag_type flags = boost::regex::perl;
            if (!caseSensitive)
                flags = flags | boost::regex::icase;
            made->regex.assign(pattern, flags);
            made->valid = true;
        } catch (const std::exception&) {
            made->valid = false;
        }
        compiled = std::move(made);
    });
    return *compiled;
}

namespace {

// The number of UTF-16 units in the first `bytes` bytes of UTF-8 text.
long UTF16Length(const std::string& text, size_t bytes) {
    long units = 0;
    for (size_t i = 0; i < bytes && i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if ((c & 0xC0) != 0x80)
            units += c >= 0xF0 ? 2 : 1;
    }
    return units;
}

}  // namespace

ActionResult AARegexValue::ActionValue(Node* note, MatchList& matches) const {
    if (!note)
        return kFalseResult();
    Node* original = note->GetOriginal();
    const Attribute* attribute = attributeCache.Find(original, token);
    std::string text = attribute ? NodeFacade(original).GetString(attribute) : std::string();
    if (attribute && attribute->IsSet())
        return SetList(text, ';').Has(pattern) ? kTrueResult() : kFalseResult();

    const Compiled& compiled = Regex();
    matches.matches.clear();
    if (!compiled.valid)
        return kFalseResult();
    boost::smatch found;
    bool any = false;
    try {
        any = boost::regex_search(text, found, compiled.regex);
    } catch (const std::exception&) {
        any = false;
    }
    if (!any)
        return kFalseResult();
    for (size_t i = 0; i < found.size(); ++i)
        matches.matches.push_back(found[i].matched ? found[i].str() : std::string());
    return ActionResult(static_cast<double>(UTF16Length(text, static_cast<size_t>(found.position(static_cast<boost::smatch::size_type>(0)))) + 1));
}

ActionResult AARegexValue::DoAssign(Node* target, Node* source, const AttributeToken& token,
                                    MatchList& matches) const {
    if (!target)
        return ActionResult(std::string());
    const Attribute* attribute = attributeCache.Find(source ? source : target, this->token);
    std::string text = pattern;
    if (attribute) {
        if (Node* found = HTPath::Get(source ? source : target, pattern, matches))
            text = NodeFacade(found).GetString(attribute);
    }
    NodeFacade(target).Set(token.Name(), text);
    return ActionResult(text);
}

// ---------------------------------------------------------------------------
// Operators with one operand

ActionResult AAUnaryOperator::ActionValue(Node* note, MatchList& matches) const {
    return ComputeValue(operand.get(), note, matches);
}

Node* AAUnaryOperator::TargetNode(const std::string& path, Node* note, MatchList& matches) const {
    if (path.empty())
        return note;
    return HTPath::Get(note, path, matches);
}
