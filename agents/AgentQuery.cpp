#include "AgentQuery.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "Action.h"
#include "Attribute.h"
#include "MatchList.h"
#include "Node.h"
#include "NoteQuery.h"
#include "Parser.h"
#include "STime.h"

bool AgentQuery::Prepare(Node* agent) {
    if (!agent)
        return false;
    std::string newText = agent->GetString("AgentQuery");
    bool newCase = agent->GetBoolean("AgentCaseSensitive");
    if (prepared && newText == text && newCase == caseSensitive)
        return false;
    bool changed = prepared;
    prepared = true;
    text = newText;
    caseSensitive = newCase;
    AAValuePtr parsed = text.empty() ? nullptr : Action::ParseExpression(text, caseSensitive);
    // Text that does not parse whole leaves the agent without a query.
    if (parsed && !parsed->IsValid(agent))
        parsed.reset();
    SetQuery(std::move(parsed));
    return changed;
}

bool AgentQuery::IsReady(Node* agent) {
    if (tree)
        return true;
    Prepare(agent);
    return tree != nullptr;
}

bool AgentQuery::Evaluate(Node* note, MatchList& matches) const {
    if (!tree || !note)
        return false;
    matches.CurrentThat(note);
    return AAValue::ComputeTruth(tree.get(), note, matches);
}

std::vector<const Attribute*> AgentQuery::AttributesRead(const Node* agent) const {
    return AttributesReadBy(tree.get(), agent);
}

namespace {

// Tree nodes whose value is computed from their operands (Left, Right and
// the argument chain) and from the notes they read, and from nothing else:
// no clock, no random numbers, no outside program, no compiled text.
bool ComputesFromOperandsAlone(std::string_view kind) {
    static constexpr std::string_view kinds[] = {
        "AAAbs", "AAAnd", "AAAttributeValue", "AABoolean", "AACeil", "AAContains", "AADescendedFrom", "AADivide",
        "AADotBeginsWith", "AADotContains", "AADotContainsAny", "AADotCount", "AADotEndsWith", "AAEmpty", "AAEqual",
        "AAFloor", "AAGreater", "AAGreaterEqual", "AAInheritsFrom", "AAInside", "AAInteger", "AALess",
        "AALessEqual", "AALinkedFrom", "AALinkedTo", "AALowercase", "AAMinus", "AAMod", "AAMultiply", "AANegate",
        "AANot", "AANotEqual", "AAOr", "AAOriginalLinkedFrom", "AAOriginalLinkedTo", "AAParenthetical", "AAPlus",
        "AAQuotedStringValue", "AARegexValue", "AARound", "AASize", "AAStringValue", "AATrim", "AAUppercase",
    };
    return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

bool Contains(std::string_view text, std::string_view part) {
    auto lower = [](unsigned char c) { return static_cast<char>(std::tolower(c)); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(),
                       [&](char a, char b) { return lower(a) == lower(b); }) != text.end();
}

} // namespace

void AgentQuery::SetQuery(AAValuePtr parsed) {
    tree = std::move(parsed);
    onlyNotes = TreeDependsOnlyOnNotes(tree.get());
    namesRead.clear();
    if (!onlyNotes)
        return;
    // A note that is not searchable is never found.
    namesRead.push_back("Searchable");
    // The walk of TreeDependsOnlyOnNotes has passed: the tree is small.
    std::vector<const AAValue*> pending{tree.get()};
    while (!pending.empty()) {
        const AAValue* value = pending.back();
        pending.pop_back();
        if (!value)
            continue;
        std::string_view kind = value->ClassName();
        if ((kind == "AAAttributeValue" || kind == "AAStringValue") &&
            std::find(namesRead.begin(), namesRead.end(), value->Token()) == namesRead.end())
            namesRead.push_back(value->Token());
        pending.push_back(value->GetNextArgument());
        pending.push_back(value->Right());
        pending.push_back(value->Left());
    }
}

std::string AgentQuery::Definitions(const Node* agent) const {
    std::string text;
    for (const std::string& name : namesRead) {
        const Attribute* attribute = agent ? agent->GetAttribute(name) : nullptr;
        text += name;
        if (!attribute || !attribute->IsValid()) {
            text += '\x01';
            continue;
        }
        text += '\x02' + std::to_string(attribute->GetType()) + '\x02';
        text += attribute->GetDefaultValueAsString(agent);
        text += '\x03';
    }
    return text;
}

bool AgentQuery::TreeDependsOnlyOnNotes(const AAValue* tree) {
    if (!tree)
        return false;
    // A bounded walk: a query larger than this is taken to depend on more.
    constexpr size_t kMostVisited = 512;
    return AAValue::EveryNode(tree, kMostVisited, [](const AAValue* value) {
        if (!ComputesFromOperandsAlone(value->ClassName()))
            return false;
        // "randomChild" and the like pick a note by chance.
        if (Contains(value->Token(), "random"))
            return false;
        if (const auto* reference = dynamic_cast<const AAAttributeValue*>(value);
            reference && Contains(reference->Designator(), "random"))
            return false;
        bool literal = std::string_view(value->ClassName()) == "AAStringValue" ||
                       std::string_view(value->ClassName()) == "AAQuotedStringValue";
        return !(literal && STime::IsDate(Parser::TrimQuotes(value->Token())));
    });
}
