#include "HTPath.h"

#include <cstdlib>
#include <random>
#include <unordered_map>
#include <unordered_set>

#include "Action.h"
#include "ArgList.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeFinder.h"
#include "NodeHelpers.h"
#include "Parser.h"

namespace {

// The words that name a note relative to the base or to the context.
enum class Word {
    Parent,
    Grandparent,
    Child,
    NextSibling,
    PrevSibling,
    LastChild,
    FirstSibling,
    LastSibling,
    Previous,
    Next,
    This,
    Cover,
    Agent,
    Current,
    That,
    Destination,
    Source,
    Adornment,
    Original,
    RandomChild,
};

const Word* WordFor(std::string_view text) {
    static const std::unordered_map<std::string_view, Word> words{
        {"parent", Word::Parent},
        {"..", Word::Parent},
        {"grandparent", Word::Grandparent},
        {"child", Word::Child},
        {"nextsibling", Word::NextSibling},
        {"nextSibling", Word::NextSibling},
        {"prevsibling", Word::PrevSibling},
        {"prevSibling", Word::PrevSibling},
        {"previoussibling", Word::PrevSibling},
        {"previousSibling", Word::PrevSibling},
        {"lastchild", Word::LastChild},
        {"lastChild", Word::LastChild},
        {"firstsibling", Word::FirstSibling},
        {"firstSibling", Word::FirstSibling},
        {"lastsibling", Word::LastSibling},
        {"lastSibling", Word::LastSibling},
        {"previous", Word::Previous},
        {"next", Word::Next},
        {"this", Word::This},
        {".", Word::This},
        {"cover", Word::Cover},
        {"agent", Word::Agent},
        {"current", Word::Current},
        {"that", Word::That},
        {"destination", Word::Destination},
        {"source", Word::Source},
        {"adornment", Word::Adornment},
        {"original", Word::Original},
        {"randomchild", Word::RandomChild},
        {"randomChild", Word::RandomChild},
    };
    auto it = words.find(text);
    return it == words.end() ? nullptr : &it->second;
}

enum class Group { Children, Descendants, Ancestors, Siblings, All };

const Group* GroupFor(std::string_view text) {
    static const std::unordered_map<std::string_view, Group> groups{
        {"children", Group::Children},     {"child", Group::Children},        {"descendant", Group::Descendants},
        {"descendent", Group::Descendants}, {"descendants", Group::Descendants}, {"ancestor", Group::Ancestors},
        {"ancestors", Group::Ancestors},    {"sibling", Group::Siblings},      {"siblings", Group::Siblings},
        {"all", Group::All},
    };
    auto it = groups.find(text);
    return it == groups.end() ? nullptr : &it->second;
}

// The parent; the root has none.
Node* ParentOf(const Node* note) {
    if (!note)
        return nullptr;
    Node* father = note->Father();
    return father == note ? nullptr : father;
}

// Designators resolve designators inside expressions that resolve
// designators; text that names itself (an attribute whose value is a
// designator that reads the same attribute) would go on forever. Past this
// depth a designator resolves to nothing.
constexpr int kMaxDepth = 48;
thread_local int depth = 0;

class StDepth {
public:
    StDepth() { ++depth; }
    ~StDepth() { --depth; }
    StDepth(const StDepth&) = delete;
    StDepth& operator=(const StDepth&) = delete;
    bool TooDeep() const { return depth > kMaxDepth; }
};

std::string_view TrimView(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    size_t last = text.find_last_not_of(blanks);
    return text.substr(first, last - first + 1);
}

}  // namespace

HTPath::HTPath(const std::string& text) { HTPath::Parse(text); }

HTPath::~HTPath() = default;

// The trimmed text is kept whole. A designator word stands alone. Text of the
// form `name(argument)` is split at the first "(", the argument being what
// lies between it and the closing ")" at the very end; a path ("/...") and
// action code (`find(...)`, `$Name(...)`) are never split, since their
// parentheses belong to them.
void HTPath::Parse(const std::string& text) {
    whole = Parser::Trim(text);
    argument.clear();
    if (IsDesignator(whole)) {
        designator = whole;
        return;
    }
    if (!whole.empty() && whole.front() != '/' && whole.back() == ')' && !IsExpression(whole)) {
        size_t open = whole.find('(');
        if (open != std::string::npos && open + 1 < whole.size()) {
            designator = std::string(TrimView(std::string_view(whole).substr(0, open)));
            argument = whole.substr(open + 1, whole.size() - open - 2);
            return;
        }
    }
    designator = whole;
}

// ----------------------------------------------------------------- one note

Node* HTPath::Get(const Node* note, const std::string& path, MatchList& matches) {
    return HTPath(path).Get(note, matches);
}

Node* HTPath::Get(const Node* note, MatchList& matches) const {
    if (!note || !note->IsValid())
        return nullptr;
    StDepth guard;
    if (guard.TooDeep())
        return nullptr;
    Node* base = const_cast<Node*>(note);
    if (!argument.empty())
        if (Node* start = HTPath(argument).Get(base, matches))
            base = start;
    return Resolve(base, designator, true, matches);
}

Node* HTPath::Resolve(Node* base, const std::string& text, bool withWhole, MatchList& matches) const {
    if (!base)
        return nullptr;
    // The designator is only copied when a variable or a computation
    // replaces it.
    std::string replaced;
    const std::string* designated = &text;
    if (matches.HasBinding(text)) {
        replaced = matches.Lookup(text);
        designated = &replaced;
    }
    bool isPath = !designated->empty() && designated->front() == '/';
    if (isPath) {
        if (Node* found = ParsePath(base, *designated))
            return found;
    } else if (IsExpression(*designated)) {
        // Quoted text is a name first; only then is it computed.
        if (Node* named = NodeFinder(base).FindNodeNamed(Parser::TrimQuotes(*designated)))
            return named;
        ActionResult result = EvaluateAction(base, *designated, matches);
        const NodeVector& notes = result.AsNodes();
        if (!notes.empty())
            return notes.front();
        replaced = result.AsString();
        designated = &replaced;
    }
    const std::string& d = *designated;
    if (d.empty())
        return nullptr;

    if (const Word* word = WordFor(d)) {
        switch (*word) {
            case Word::Parent:
                return ParentOf(base);
            case Word::Grandparent:
                return ParentOf(ParentOf(base));
            case Word::Child:
                return Child(base);
            case Word::NextSibling:
                return NextSibling(base);
            case Word::PrevSibling:
                return PrevSibling(base);
            case Word::LastChild:
                return base->YoungestSon();
            case Word::FirstSibling: {
                Node* parent = ParentOf(base);
                return parent ? parent->Son() : nullptr;
            }
            case Word::LastSibling: {
                Node* parent = ParentOf(base);
                return parent ? parent->YoungestSon() : nullptr;
            }
            case Word::Previous:
                return Previous(base);
            case Word::Next:
                return Next(base);
            case Word::This:
                return base;
            case Word::Cover:
                return HypertextFacade(base->GetHypertext()).FirstNode();
            case Word::Agent:
                if (Node* agent = matches.CurrentAgent())
                    return agent;
                break;  // a note named "agent"
            case Word::Current:
                if (Node* exported = matches.CurrentExport())
                    return exported;
                break;  // a note named "current"
            case Word::That:
                return matches.CurrentThat();
            case Word::Destination:
                return matches.CurrentLink() ? matches.CurrentContext().CurrentDestination() : nullptr;
            case Word::Source:
                return matches.CurrentLink() ? matches.CurrentContext().CurrentSource() : nullptr;
            case Word::Adornment:
                // Without an adornment in the context, the one the note
                // stands on would be asked of the map, which the document
                // core does not know.
                return matches.CurrentAdornment();
            case Word::Original:
                return base->GetOriginal();
            case Word::RandomChild: {
                long count = 0;
                for (Node* c = base->Son(); c; c = c->Brother())
                    ++count;
                if (count == 0)
                    return nullptr;
                thread_local std::mt19937 random{std::random_device{}()};
                return Child(base, std::uniform_int_distribution<long>(0, count - 1)(random));
            }
        }
    } else if (IsIndexedChild(d)) {
        return Child(base, ChildIndex(d));
    }

    // A name: a child of the base first, then any note of the document.
    if (d.find('/') != std::string::npos) {
        if (isPath)
            return nullptr;
        if (Node* found = ParsePath(base, d))
            return found;
    }
    if (Node* child = FindChildNamed(base, d))
        return child;
    NodeFinder finder(base);
    if (withWhole && !argument.empty()) {
        if (Node* child = FindChildNamed(base, whole))
            return child;
        if (Node* named = finder.FindNodeNamed(whole))
            return named;
    }
    return finder.FindNodeNamed(d);
}

// --------------------------------------------------------------- many notes

bool HTPath::WithinDepth() { return depth + 1 <= kMaxDepth; }

NodeVector HTPath::All(const Node* note, const std::string& path, MatchList& matches) {
    return HTPath(path).All(note, matches);
}

NodeVector HTPath::All(const Node* note, MatchList& matches) const {
    NodeVector result;
    Choose(note, result, matches);
    return result;
}

bool HTPath::Choose(const Node* note, NodeVector& result, MatchList& matches) const {
    if (!note || note->Invalid())
        return false;
    StDepth guard;
    if (guard.TooDeep())
        return false;
    Node* base = const_cast<Node*>(note);
    if (!argument.empty())
        if (Node* start = HTPath(argument).Get(base, matches))
            base = start;
    size_t before = result.size();
    std::string text = Parser::TrimQuotes(designator);
    bool asParsed = true;
    if (matches.HasBinding(text)) {
        text = matches.Lookup(text);
        asParsed = false;
    }
    ChooseText(base, std::move(text), asParsed, result, matches);
    return result.size() > before;
}

bool HTPath::ChooseText(Node* base, std::string text, bool asParsed, NodeVector& result, MatchList& matches) const {
    // A list: each item on its own, in order, duplicates kept.
    auto chooseList = [&]() {
        if (text.find(';') == std::string::npos)
            return false;
        ArgList items(text, ';');
        if (items.size() < 2)
            return false;
        for (const std::string& item : items)
            HTPath(item).Choose(base, result, matches);
        return true;
    };
    if (chooseList())
        return true;
    if (IsExpression(text)) {
        if (Node* named = NodeFinder(base).FindNodeNamed(Parser::TrimQuotes(text))) {
            result.push_back(named);
            return true;
        }
        ActionResult computed = EvaluateAction(base, text, matches);
        const NodeVector& notes = computed.AsNodes();
        if (!notes.empty()) {
            result.Append(notes);
            return true;
        }
        text = computed.AsString();
        asParsed = false;
        if (chooseList())
            return true;
    }
    if (const Group* group = GroupFor(text)) {
        switch (*group) {
            case Group::Children:
                ChooseChildren(base, result);
                break;
            case Group::Descendants:
                ChooseDescendants(base, result);
                break;
            case Group::Ancestors:
                ChooseAncestors(base, result);
                break;
            case Group::Siblings:
                ChooseSiblings(base, result);
                break;
            case Group::All:
                ChooseAll(base, result);
                break;
        }
        return true;
    }
    // One note. Text as written goes through Get's steps with its quotes,
    // so that a quoted word is a name; computed text is taken as it is.
    Node* one = asParsed ? Resolve(base, designator, true, matches) : Resolve(base, text, false, matches);
    if (one)
        result.push_back(one);
    return one != nullptr;
}

void HTPath::ChooseChildren(const Node* note, NodeVector& result) const {
    if (!note)
        return;
    for (Node* c = note->Son(); c; c = c->Brother())
        if (!c->IsAdornment())
            result.push_back(c);
}

void HTPath::ChooseDescendants(const Node* note, NodeVector& result) const {
    result.Append(NodeCollections(note).Descendants());
}

void HTPath::ChooseAncestors(const Node* note, NodeVector& result) const {
    result.Append(NodeCollections(note).Ancestors());
}

void HTPath::ChooseSiblings(const Node* note, NodeVector& result) const {
    Node* parent = ParentOf(note);
    if (!parent)
        return;
    for (Node* c = parent->Son(); c; c = c->Brother())
        if (c != note && !c->IsAdornment())
            result.push_back(c);
}

void HTPath::ChooseAll(const Node* note, NodeVector& result) const {
    result.Append(NodeCollections(note).All());
}

// -------------------------------------------------------------------- paths

Node* HTPath::ParsePath(const Node* note, const std::string& path) const {
    if (!note)
        return nullptr;
    ArgList parts(path, '/', true);
    Node* at = const_cast<Node*>(note);
    for (size_t i = 0; i < parts.size(); ++i) {
        const std::string& part = parts[i];
        if (part.empty()) {
            if (i != 0)
                return nullptr;
            at = note->Root();
            if (!at)
                return nullptr;
            continue;
        }
        at = FindChildNamed(at, part);
        if (!at)
            return nullptr;
    }
    return at->Invalid() ? nullptr : at;
}

Node* HTPath::FindChildNamed(const Node* note, const std::string& name) const {
    if (!note)
        return nullptr;
    if (name == ".")
        return const_cast<Node*>(note);
    if (name == "..")
        return ParentOf(note);
    for (Node* c = note->Son(); c; c = c->Brother())
        if (c->Name() == name)
            return c;
    return nullptr;
}

Node* HTPath::FindChildNamedNotAdornment(const Node* note, const std::string& name) const {
    if (!note)
        return nullptr;
    if (name == ".")
        return const_cast<Node*>(note);
    if (name == "..")
        return ParentOf(note);
    for (Node* c = note->Son(); c; c = c->Brother())
        if (!c->IsAdornment() && c->Name() == name)
            return c;
    return nullptr;
}

// ------------------------------------------------------------------- family

Node* HTPath::Next(const Node* note) const { return note ? note->Next() : nullptr; }

Node* HTPath::Previous(const Node* note) const { return note ? note->Previous() : nullptr; }

Node* HTPath::NextSibling(const Node* note) const { return note ? note->Brother() : nullptr; }

Node* HTPath::PrevSibling(const Node* note) const { return note ? note->ElderBrother() : nullptr; }

Node* HTPath::Child(const Node* note) const { return note ? note->Son() : nullptr; }

Node* HTPath::Child(const Node* note, long index) const {
    if (!note)
        return nullptr;
    if (index >= 0) {
        Node* c = note->Son();
        for (; c && index > 0; --index)
            c = c->Brother();
        return c;
    }
    Node* c = note->YoungestSon();
    for (; c && index < -1; ++index)
        c = c->ElderBrother();
    return c;
}

bool HTPath::IsIndexedChild(std::string_view text) const {
    constexpr std::string_view prefix = "child[";
    size_t close = text.rfind(']');
    return text.starts_with(prefix) && close != std::string_view::npos && close >= prefix.size();
}

long HTPath::ChildIndex(std::string_view text) const {
    constexpr std::string_view prefix = "child[";
    if (!IsIndexedChild(text))
        return 0;
    std::string inner(TrimView(text.substr(prefix.size(), text.rfind(']') - prefix.size())));
    if (inner.empty())
        return 0;
    char* end = nullptr;
    long index = std::strtol(inner.c_str(), &end, 10);
    return end && *end == '\0' ? index : 0;
}

// -------------------------------------------------------------- expressions

bool HTPath::IsDesignator(std::string_view text) const {
    static const std::unordered_set<std::string_view> words{
        "parent",      "grandparent", "child",       "lastChild",       "nextSibling",     "nextsibling",
        "prevSibling", "prevsibling", "previousSibling", "previoussibling", "firstSibling", "firstsibling",
        "lastSibling", "lastsibling", "previous",    "next",            "this",            "cover",
        "agent",       "current",     "that",        "destination",     "source",          "adornment",
        "original",    "randomChild", "randomchild",
    };
    return words.count(text) > 0;
}

bool HTPath::IsExpression(std::string_view text) const {
    if (!text.empty() && (text.front() == '$' || text.front() == '"' || text.front() == '\''))
        return true;
    std::string_view trimmed = TrimView(text);
    return trimmed.starts_with("find(") || trimmed.starts_with("compositeFor(") ||
           trimmed.starts_with("compositeWithName(");
}

std::string HTPath::Evaluate(Node* note, const std::string& text, MatchList& matches) const {
    return EvaluateAction(note, text, matches).AsString();
}

ActionResult HTPath::EvaluateAction(Node* note, const std::string& text, MatchList& matches) const {
    return Action::EvaluateAction(note, text, matches, true);
}
