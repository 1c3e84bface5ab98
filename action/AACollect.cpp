#include "AACollect.h"

#include <set>
#include <string_view>
#include <vector>

#include "AAArguments.h"
#include "AttributeType.h"
#include "HTPath.h"
#include "MatchList.h"
#include "Node.h"
#include "Parser.h"
#include "STimeInterval.h"

using Type = AttributeType;

std::string QuoteIfNeeded(const std::string& text) {
    if (text.find_first_of(";(\"") == std::string::npos)
        return text;
    if (text.find('"') != std::string::npos)
        return "'" + text + "'";
    return "\"" + text + "\"";
}

const AAValue* AACollect::Condition() const { return HasCondition() ? NthArgument(operand.get(), 1) : nullptr; }

const AAValue* AACollect::Expression() const { return NthArgument(operand.get(), HasCondition() ? 2 : 1); }

NodeVector AACollect::Choose(Node* note, MatchList& matches, bool& found) const {
    found = false;
    const AAValue* group = operand.get();
    if (!group)
        return NodeVector();
    std::string text = ComputeValue(group, note, matches).AsString();
    if (text.empty())
        return NodeVector();
    found = true;
    return HTPath::All(note, text, matches);
}

namespace {

// Whether computing `tree` only reads notes: constants, attributes of the
// note itself, comparisons, arithmetic, `.contains`. Anything else (a
// function, a designator) might create, move or delete notes, or is not
// known not to; so is a tree too large to look through.
bool OnlyReads(const AAValue* tree) {
    static const std::set<std::string_view> readers{
        "AAStringValue", "AAQuotedStringValue", "AAInteger",  "AABoolean",   "AAAttributeValue", "AAEqual",
        "AANotEqual",    "AALess",              "AALessEqual", "AAGreater",  "AAGreaterEqual",   "AAAnd",
        "AAOr",          "AANot",               "AAParenthetical", "AAPlus", "AAMinus",          "AAMultiply",
        "AADivide",      "AANegate",            "AADotContains", "AADotContainsAny",
    };
    constexpr size_t kMostVisited = 256;
    return AAValue::EveryNode(tree, kMostVisited, [](const AAValue* value) {
        if (!readers.count(value->ClassName()))
            return false;
        const auto* reference = dynamic_cast<const AAAttributeValue*>(value);
        return !reference || reference->Designator().empty();
    });
}

}  // namespace

bool AACollect::WalksInPlace(Node* note, const std::string& text, MatchList& matches) const {
    if (text != "all" || !note || note->Invalid() || !note->Root() || matches.HasBinding(text) ||
        !HTPath::WithinDepth())
        return false;
    int known = onlyReads.load(std::memory_order_relaxed);
    if (known == 0) {
        known = OnlyReads(operand.get()) ? 1 : 2;
        onlyReads.store(known, std::memory_order_relaxed);
    }
    return known == 1;
}

const Attribute* AACollect::SearchableAttribute(const Node* note) {
    return note ? note->GetAttribute("Searchable") : nullptr;
}

bool AACollect::Included(Node* note, MatchList& matches) const {
    return Included(note, matches, SearchableAttribute(note));
}

bool AACollect::Included(Node* note, MatchList& matches, const Attribute* searchable) const {
    if (!note)
        return false;
    bool canSearch = searchable ? note->GetBoolean(searchable) : note->GetBoolean("Searchable");
    if (HasCondition()) {
        const AAValue* condition = Condition();
        if (note->IsAdornment() || !condition || !canSearch)
            return false;
        return ComputeTruth(condition, note, matches);
    }
    return canSearch;
}

ActionResult AACollect::ActionValue(Node* note, MatchList& matches) const {
    bool found = false;
    const AAValue* expression = Expression();
    const Attribute* searchable = SearchableAttribute(note);
    ArgList result;
    ForEachMember(note, matches, found, [&](Node* member) {
        matches.matches.clear();
        if (Included(member, matches, searchable))
            AACollect::AddCollected(result, expression, member, matches);
        return true;
    });
    if (!found)
        return ActionResult(std::string());
    return ActionResult(result.ToString(";"));
}

int AACollect::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AACountIf::ActionValue(Node* note, MatchList& matches) const {
    if (!Condition())
        return ActionResult("count_if: syntax error");
    bool found = false;
    long count = 0;
    const Attribute* searchable = SearchableAttribute(note);
    ForEachMember(note, matches, found, [&](Node* member) {
        matches.matches.clear();
        if (Included(member, matches, searchable))
            ++count;
        return true;
    });
    return ActionResult(static_cast<double>(count));
}

int AACountIf::ResultType(Node*, MatchList&) const { return Type::kNumber; }

bool AASum::Total(Node* note, MatchList& matches, double& total, bool& interval, size_t& groupSize) const {
    total = 0.0;
    interval = false;
    const AAValue* expression = Expression();
    if (!expression || (HasCondition() && !Condition()))
        return false;
    bool found = false;
    groupSize = 0;
    const Attribute* searchable = SearchableAttribute(note);
    // A plain number attribute (`$Width`) is read as a number: the general
    // path writes each value as text and reads the text back.
    const Attribute* numberAttribute = nullptr;
    if (const auto* attribute = dynamic_cast<const AAAttributeValue*>(expression);
        attribute && attribute->Designator().empty() && note) {
        const Attribute* definition = note->GetAttribute(attribute->Name());
        if (definition && definition->GetType() == Type::kNumber)
            numberAttribute = definition;
    }
    ForEachMember(note, matches, found, [&](Node* member) {
        ++groupSize;
        matches.matches.clear();
        if (!Included(member, matches, searchable))
            return true;
        if (numberAttribute) {
            total += member->GetDouble(numberAttribute);
        } else if (expression->ResultType(member, matches) == Type::kInterval) {
            interval = true;
            total += ComputeValue(expression, member, matches).AsInterval().Seconds();
        } else {
            total += ComputeValue(expression, member, matches).AsDouble();
        }
        return true;
    });
    return true;
}

ActionResult AASum::ActionValue(Node* note, MatchList& matches) const {
    double total = 0.0;
    bool interval = false;
    size_t size = 0;
    if (!Total(note, matches, total, interval, size))
        return ActionResult(SyntaxError());
    return interval ? ActionResult(STimeInterval(total).ToString()) : ActionResult(total);
}

int AASum::ResultType(Node* note, MatchList& matches) const {
    const AAValue* expression = Expression();
    if (expression && expression->ResultType(note, matches) == Type::kInterval)
        return Type::kInterval;
    return Type::kNumber;
}

ActionResult AAAvg::ActionValue(Node* note, MatchList& matches) const {
    double total = 0.0;
    bool interval = false;
    size_t size = 0;
    if (!Total(note, matches, total, interval, size))
        return ActionResult(SyntaxError());
    double average = total / static_cast<double>(size ? size : 1);
    return interval ? ActionResult(STimeInterval(average).ToString()) : ActionResult(average);
}

ActionResult AAEvery::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* expression = Expression();
    if (!operand || !expression)
        return ActionResult(SyntaxError());
    bool found = false;
    bool decided = false;
    ForEachMember(note, matches, found, [&](Node* member) {
        matches.matches.clear();
        decided = ComputeTruth(expression, member, matches) == Decisive();
        return !decided;
    });
    if (decided)
        return Decisive() ? kTrueResult() : kFalseResult();
    return Decisive() ? kFalseResult() : kTrueResult();
}

int AAEvery::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AAValues::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* attribute = NthArgument(operand.get(), 1);
    std::string name = Parser::TrimQuotes(attribute ? attribute->Token() : std::string());
    if (!name.empty() && name[0] == '$')
        name.erase(0, 1);
    if (name.empty())
        return ActionResult(std::string());
    bool found = false;
    NodeVector group = Choose(note, matches, found);
    std::set<std::string> values;
    for (Node* member : group) {
        // A list or set value gives each of its items.
        ArgList items(member->GetString(name), ';', false);
        for (const std::string& item : items.GetList())
            if (!item.empty())
                values.insert(item);
    }
    std::string out;
    for (const std::string& value : values)
        out += value + ";";
    return ActionResult(out);
}

int AAValues::ResultType(Node*, MatchList&) const { return Type::kList; }

void AACollect::AddCollected(ArgList& result, const AAValue* expression, Node* member, MatchList& matches) {
    if (!expression) {
        result.push_back(member->GetString("Name"));
        return;
    }
    int type = expression->ResultType(member, matches);
    std::string value = ComputeValue(expression, member, matches).AsString();
    if (type == Type::kList || type == Type::kSet || type == Type::kDictionary)
        result.Add(value, ';');
    else if (value.empty())
        return;
    else if (value.find_first_of(";(\"") == std::string::npos)
        result.push_back(value);
    else
        result.push_back(QuoteIfNeeded(value));
}
