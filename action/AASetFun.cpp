#include "AASetFun.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "AAArguments.h"
#include "AACollect.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "HTPath.h"
#include "Hypertext.h"
#include "NodeIndex.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "Parser.h"
#include "STime.h"

using Type = AttributeType;

namespace {

// The items of a list that name notes, resolved for one evaluation. Paths
// from the root are walked through a table of children by name built once
// per parent, so that a long list of paths costs one pass over the
// containers it touches; anything else goes to the designators.
class ItemNotes {
public:
    // `count` is the number of items to come: a long list is worth bringing
    // the document's name index up to date for.
    ItemNotes(Node* base, MatchList& matches, size_t count)
        : base(base), matches(matches), rebuildIndex(count >= kIndexWorthy) {}

    Node* Find(const std::string& item) {
        if (!base || item.empty())
            return nullptr;
        if (item[0] == '/' && item.find_first_of("\"'()") == std::string::npos) {
            if (Node* indexed = FromIndex(item))
                return indexed;
            bool plain = true;
            Node* found = Walk(item, plain);
            if (plain)
                return found;
        }
        return HTPath::Get(base, item, matches);
    }

private:
    // A path whose every step is the first note of its name in outline
    // order, as the document's name index tells: that note is the first
    // child of its name under its parent, so the walk would end at it too.
    // Answers null when the index cannot tell, and the walk decides.
    Node* FromIndex(const std::string& path) {
        if (!index) {
            Hypertext* document = base->GetHypertext();
            index = document ? document->GetIndex() : nullptr;
            if (!index)
                return nullptr;
            if (rebuildIndex)
                index->UpdateIfNeeded();
        }
        if (index->NeedsUpdate())
            return nullptr;
        return Indexed(path);
    }

    // The note at a path by the index, the parent's path remembered (a
    // list names many notes of few containers).
    // `path` lies in an item of the list, which outlives this object.
    Node* Indexed(std::string_view path) {
        size_t slash = path.rfind('/');
        std::string_view step = path.substr(slash + 1);
        while (!step.empty() && IsBlank(step.front()))
            step.remove_prefix(1);
        while (!step.empty() && IsBlank(step.back()))
            step.remove_suffix(1);
        if (step.empty() || step == "." || step == ".." || static_cast<unsigned char>(step.front()) >= 0x80 ||
            static_cast<unsigned char>(step.back()) >= 0x80)
            return nullptr;
        Node* parent = nullptr;
        if (slash == 0) {
            parent = base->Root();
        } else {
            std::string_view above = path.substr(0, slash);
            auto [known, made] = parents.try_emplace(above, nullptr);
            if (made)
                known->second = Indexed(above);
            parent = known->second;
        }
        // An index that needs no update holds each note under its present
        // name: the note found bears `name`.
        std::string name(step);
        Node* found = parent ? index->Find(name) : nullptr;
        if (!found || found->Invalid() || found->Father() != parent)
            return nullptr;
        // The index leaves out aliases, hidden and untitled notes, which the
        // walk takes like any child: when one of them bears the name among
        // the parent's children, it may stand before the indexed note, and
        // the walk decides. An untitled note is named "" or the document's
        // default name, so only those names need the walk on its account.
        if (name == DefaultName())
            return nullptr;
        return UnindexedNames(parent).count(name) ? nullptr : found;
    }

    // The names of the parent's aliases and hidden children, which the name
    // index does not hold, gathered once per parent. A hidden note is taken
    // out of the tree with its descendants, so under a parent that never
    // held an alias no child needs looking at.
    const std::unordered_set<std::string>& UnindexedNames(const Node* parent) {
        static const std::unordered_set<std::string> none;
        if (!parent->MayHoldAliases())
            return none;
        auto [entry, made] = unindexed.try_emplace(parent);
        if (made)
            for (Node* c = parent->Son(); c; c = c->Brother())
                if (c->IsAlias() || c->IsHidden())
                    entry->second.insert(c->Name());
        return entry->second;
    }

    // The name an untitled note bears when it has one: the same for every
    // note of the document.
    const std::string& DefaultName() {
        if (!defaultName)
            defaultName = base->DefaultName();
        return *defaultName;
    }

    // White space and newlines, as trimming a step removes them; steps that
    // end in other characters are left to the walk.
    static bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

    // Walks "/a/b/c" from the root. `plain` turns false for steps that the
    // table does not answer ("." and "..", empty steps).
    Node* Walk(const std::string& path, bool& plain) {
        Node* at = base->Root();
        size_t start = 1;
        while (at && start <= path.size()) {
            size_t slash = path.find('/', start);
            if (slash == std::string::npos)
                slash = path.size();
            std::string step = Parser::Trim(path.substr(start, slash - start));
            if (step.empty() || step == "." || step == "..") {
                plain = false;
                return nullptr;
            }
            at = ChildNamed(at, step);
            start = slash + 1;
        }
        return at && !at->Invalid() ? at : nullptr;
    }

    Node* ChildNamed(Node* parent, const std::string& name) {
        auto [entry, made] = children.try_emplace(parent);
        if (made)
            for (Node* c = parent->Son(); c; c = c->Brother())
                entry->second.try_emplace(c->Name(), c);
        auto found = entry->second.find(name);
        return found == entry->second.end() ? nullptr : found->second;
    }

    Node* base;
    MatchList& matches;
    static constexpr size_t kIndexWorthy = 1000;
    bool rebuildIndex;
    NodeIndex* index = nullptr;
    std::unordered_map<std::string_view, Node*> parents;
    std::unordered_map<const Node*, std::unordered_map<std::string, Node*>> children;
    std::unordered_map<const Node*, std::unordered_set<std::string>> unindexed;
    std::optional<std::string> defaultName;
};

bool NumericLess(const std::string& a, const std::string& b) {
    return ActionResult(a).AsDouble() < ActionResult(b).AsDouble();
}

bool DateLess(const std::string& a, const std::string& b) {
    return STime::For(a).SecondsSince1970() < STime::For(b).SecondsSince1970();
}

}  // namespace

// ---------------------------------------------------------------- AASetFun

int AASetFun::ItemType(const ArgList& items, Node* note, MatchList& matches) const {
    int type = operand ? operand->ResultType(note, matches) : Type::kNone;
    if (type == Type::kNumber || type == Type::kDate)
        return type;
    // Texts, lists and computed values say nothing of their items.
    if (items.IsNumeric())
        return Type::kNumber;
    if (items.IsDate())
        return Type::kDate;
    return Type::kString;
}

ActionResult AASetFun::ActionValue(Node* note, MatchList& matches) const {
    ArgList items(ArgumentText(operand.get(), note, matches), ';', false);
    return Compute(items, ItemType(items, note, matches));
}

int AASetFun::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AASetFun::Compute(const ArgList& items, int) const { return ActionResult(items.ToString(";")); }

ActionResult AACount::Compute(const ArgList& items, int) const {
    return ActionResult(static_cast<double>(items.size()));
}

int AACount::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AAMax::Compute(const ArgList& items, int type) const {
    bool byValue = type == Type::kNumber || type == Type::kDate;
    if (items.empty())
        return ActionResult(byValue ? "0" : "");
    auto less = [type](const std::string& a, const std::string& b) {
        if (type == Type::kNumber)
            return NumericLess(a, b);
        if (type == Type::kDate)
            return DateLess(a, b);
        return a < b;
    };
    const std::vector<std::string>& list = items.GetList();
    auto found = Smallest() ? std::min_element(list.begin(), list.end(), less)
                            : std::max_element(list.begin(), list.end(), less);
    return ActionResult(*found);
}

int AAMax::ResultType(Node* note, MatchList& matches) const {
    int type = operand ? operand->ResultType(note, matches) : Type::kNone;
    // Otherwise the items decide, which only computing tells.
    return type == Type::kNumber || type == Type::kDate ? type : Type::kNone;
}

ActionResult AADotSum::Compute(const ArgList& items, int) const {
    double total = 0.0;
    for (const std::string& item : items)
        total += ActionResult(item).AsDouble();
    return ActionResult(total);
}

int AADotSum::ResultType(Node*, MatchList&) const { return Type::kNumber; }

ActionResult AADotAvg::Compute(const ArgList& items, int type) const {
    if (items.empty())
        return ActionResult(0.0);
    return ActionResult(AADotSum::Compute(items, type).AsDouble() / static_cast<double>(items.size()));
}

// ---------------------------------------------------------- list operators

int AAListOperator::ResultType(Node*, MatchList&) const { return Type::kList; }

int AAListOperator::ReceiverType(Node* note, MatchList& matches) const {
    return left ? left->ResultType(note, matches) : Type::kNone;
}

ActionResult AAListOperator::Receiver(Node* note, MatchList& matches) const {
    return left ? ComputeValue(left.get(), note, matches) : ActionResult(std::string());
}

const AAValue* AAListOperator::Argument(int n) const {
    // A call without arguments (`.first`, `.first()`) holds the empty
    // expression in the first place.
    const AAValue* argument = NthArgument(right.get(), n);
    return dynamic_cast<const AADefaultValue*>(argument) ? nullptr : argument;
}

ActionResult AADotRemove::ActionValue(Node* note, MatchList& matches) const {
    int type = ReceiverType(note, matches);
    ActionResult receiver = Receiver(note, matches);
    std::string item = ArgumentText(Argument(0), note, matches);
    if (type == Type::kSet) {
        SetList set = receiver.AsSet();
        set.do_remove(item);
        return ActionResult(set.ToString(";"));
    }
    ArgList list = receiver.AsList();
    list.Remove(item);
    return ActionResult(list.ToString(";"));
}

NodeVector AAListOfNotes::Notes(Node* note, MatchList& matches) const {
    ArgList items = Receiver(note, matches).AsList();
    ItemNotes resolver(note, matches, items.size());
    NodeVector notes;
    notes.reserve(items.size());
    for (const std::string& item : items)
        if (Node* found = resolver.Find(item))
            notes.push_back(found);
    return notes;
}

ActionResult AADotEvery::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* expression = Argument(0);
    if (!expression)
        return kFalseResult();
    for (Node* member : Notes(note, matches)) {
        matches.matches.clear();
        if (ComputeTruth(expression, member, matches) == Decisive())
            return Decisive() ? kTrueResult() : kFalseResult();
    }
    return Decisive() ? kFalseResult() : kTrueResult();
}

int AADotEvery::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

ActionResult AADotCollect::ActionValue(Node* note, MatchList& matches) const {
    const AAValue* condition = Condition();
    const AAValue* expression = Expression();
    ArgList result;
    // Without its condition the conditional form takes no note.
    if (Conditional() && !condition)
        return ActionResult(std::string());
    for (Node* member : Notes(note, matches)) {
        matches.matches.clear();
        if (!member->GetBoolean("Searchable"))
            continue;
        if (Conditional() && (member->IsAdornment() || !ComputeTruth(condition, member, matches)))
            continue;
        AACollect::AddCollected(result, expression, member, matches);
    }
    return ActionResult(result.ToString(";"));
}

ActionResult AADotFirst::ActionValue(Node* note, MatchList& matches) const {
    ArgList items = Receiver(note, matches).AsList();
    const AAValue* count = Argument(0);
    long n = count ? ComputeValue(count, note, matches).AsNumber() : 1;
    if (n <= 0)
        return ActionResult(std::string());
    size_t take = std::min(static_cast<size_t>(n), items.size());
    const std::vector<std::string>& list = items.GetList();
    ArgList result;
    size_t from = FromEnd() ? list.size() - take : 0;
    for (size_t i = from; i < from + take; ++i)
        result.push_back(list[i]);
    return ActionResult(result.ToString(";"));
}

ActionResult AAAt::ActionValue(Node* note, MatchList& matches) const {
    int type = ReceiverType(note, matches);
    ActionResult receiver = Receiver(note, matches);
    ActionResult index = Argument(0) ? ComputeValue(Argument(0), note, matches) : ActionResult(std::string());
    if (type == Type::kDictionary || receiver.dictionary) {
        SharedDictionary dictionary = receiver.AsDictionary();
        auto found = dictionary ? dictionary->find(index.AsString()) : Dictionary::const_iterator();
        if (!dictionary || found == dictionary->end())
            return ActionResult(std::string());
        return ActionResult(found->second);
    }
    ArgList items = receiver.AsList();
    long i = index.AsNumber();
    if (i < 0)
        i += static_cast<long>(items.size());
    if (i < 0 || i >= static_cast<long>(items.size()))
        return ActionResult(std::string());
    return ActionResult(items[static_cast<size_t>(i)]);
}

int AAAt::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AALookup::ActionValue(Node* note, MatchList& matches) const {
    ActionResult key = Argument(0) ? ComputeValue(Argument(0), note, matches) : ActionResult(std::string());
    if (key.AsTrimmedString().empty())
        return ActionResult(std::string());
    return Receiver(note, matches).AsLookupTable(key);
}

int AALookup::ResultType(Node*, MatchList&) const { return Type::kString; }

ActionResult AAIntersect::ActionValue(Node* note, MatchList& matches) const {
    SetList mine = Receiver(note, matches).AsSet();
    SetList other = Argument(0) ? ComputeValue(Argument(0), note, matches).AsSet() : SetList();
    return ActionResult(mine.Intersection(other).ToString(";"));
}

ActionResult AAUnique::ActionValue(Node* note, MatchList& matches) const {
    return ActionResult(Receiver(note, matches).AsSet().ToString(";"));
}

ActionResult AAKeys::ActionValue(Node* note, MatchList& matches) const {
    SharedDictionary dictionary = Receiver(note, matches).AsDictionary();
    ArgList keys;
    if (dictionary)
        for (const auto& entry : *dictionary)
            keys.push_back(entry.first);
    return ActionResult(keys.ToString(";"));
}

// -------------------------------------------------------------------- sort

AASort::Order AASort::OrderFor(int keyType) const {
    if (keyType == Type::kNumber)
        return Order::Number;
    if (keyType == Type::kDate)
        return Order::Date;
    return Order::Bytes;
}

namespace {

struct SortEntry {
    const std::string* item;
    std::string text;
    double number = 0.0;
    bool hasNumber = false;
    icu::UnicodeString folded;
};

// The attribute a quoted key names ("Name" or "$Name"), or "".
std::string QuotedKeyName(const AAValue* key) {
    if (!dynamic_cast<const AAQuotedStringValue*>(key))
        return std::string();
    std::string name = Parser::TrimQuotes(key->Token());
    if (!name.empty() && name[0] == '$')
        name.erase(0, 1);
    return name;
}

}  // namespace

ActionResult AASort::ActionValue(Node* note, MatchList& matches) const {
    ArgList items = Receiver(note, matches).AsList();
    const AAValue* key = Argument(0);
    std::string keyName = QuotedKeyName(key);
    std::vector<SortEntry> entries(items.size());
    Order order = Order::Bytes;
    if (!key) {
        order = OrderFor(Type::kString);
        for (size_t i = 0; i < items.size(); ++i) {
            entries[i].item = &items[i];
            entries[i].text = items[i];
        }
    } else {
        ItemNotes resolver(note, matches, items.size());
        bool typed = false;
        for (size_t i = 0; i < items.size(); ++i) {
            SortEntry& entry = entries[i];
            entry.item = &items[i];
            Node* member = resolver.Find(items[i]);
            if (!member) {
                // Plain text is its own key.
                entry.text = items[i];
                continue;
            }
            if (!typed) {
                typed = true;
                int keyType = keyName.empty() ? key->ResultType(member, matches)
                                              : AttributeInfo(member).GetAttributeType(keyName);
                order = OrderFor(keyType);
            }
            if (!keyName.empty()) {
                entry.text = member->GetString(keyName);
                if (order == Order::Date) {
                    entry.number = member->GetDate(keyName).SecondsSince1970();
                    entry.hasNumber = true;
                }
                continue;
            }
            if (order == Order::Date) {
                entry.number = key->GetDate(member, matches).SecondsSince1970();
                entry.hasNumber = true;
            } else if (std::string_view text; FastText(key, member, matches, entry.text, text)) {
                // The key's text read where it lies (an attribute of the
                // note), as computing it would give it.
                if (text.data() != entry.text.data() || text.size() != entry.text.size())
                    entry.text = std::string(text);
            } else {
                entry.text = ComputeValue(key, member, matches).AsString();
            }
        }
        if (!typed)
            order = OrderFor(Type::kString);
    }
    switch (order) {
        case Order::Number:
            for (SortEntry& entry : entries)
                entry.number = ActionResult(entry.text).AsDouble();
            std::sort(entries.begin(), entries.end(),
                      [](const SortEntry& a, const SortEntry& b) { return a.number < b.number; });
            break;
        case Order::Date:
            // Items that named no note were read as dates of their own text.
            for (SortEntry& entry : entries)
                if (!entry.hasNumber)
                    entry.number = STime::For(entry.text).SecondsSince1970();
            std::sort(entries.begin(), entries.end(),
                      [](const SortEntry& a, const SortEntry& b) { return a.number < b.number; });
            break;
        case Order::CaseInsensitive:
            for (SortEntry& entry : entries)
                entry.folded = icu::UnicodeString::fromUTF8(entry.text).foldCase(U_FOLD_CASE_DEFAULT);
            std::sort(entries.begin(), entries.end(),
                      [](const SortEntry& a, const SortEntry& b) { return a.folded < b.folded; });
            break;
        case Order::Bytes:
            std::sort(entries.begin(), entries.end(),
                      [](const SortEntry& a, const SortEntry& b) { return a.text < b.text; });
            break;
    }
    std::string out;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (i)
            out += ';';
        out += *entries[i].item;
    }
    return ActionResult(out);
}

// ------------------------------------------------------ list(), dictionary()

ActionResult AAList::ActionValue(Node* note, MatchList& matches) const {
    ArgList items;
    for (const AAValue* argument = operand.get(); argument; argument = argument->GetNextArgument())
        items.push_back(ComputeValue(argument, note, matches).AsString());
    return ActionResult(items.ToString(";"));
}

int AAList::ResultType(Node*, MatchList&) const { return Type::kList; }

ActionResult AADictionary::ActionValue(Node* note, MatchList& matches) const {
    ActionResult pairs(ArgumentText(operand.get(), note, matches));
    SharedDictionary dictionary = pairs.AsDictionary();
    return ActionResult::ForDictionary(dictionary ? *dictionary : Dictionary());
}

int AADictionary::ResultType(Node*, MatchList&) const { return Type::kDictionary; }
