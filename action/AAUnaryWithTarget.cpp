#include "AAUnaryWithTarget.h"

#include <cmath>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

#include "AAArguments.h"
#include "AttributeType.h"
#include "HTPath.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkBundle.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "Parser.h"
#include "RylSerial.h"

using Type = AttributeType;

namespace {

bool SameOriginal(const Node* a, const Node* b) { return a && b && a->GetOriginal() == b->GetOriginal(); }

// Whether the whole text reads as a number.
bool IsNumberText(const std::string& text, double& number) {
    std::string trimmed = Parser::Trim(text);
    if (trimmed.empty())
        return false;
    char* end = nullptr;
    number = std::strtod(trimmed.c_str(), &end);
    return end && *end == '\0' && !std::isnan(number);
}

// A whole number from an argument, held to a range any count of notes fits.
long ArgumentCount(const AAValue* value, Node* note, MatchList& matches) {
    double number = AAValue::ComputeValue(value, note, matches).AsDouble();
    if (std::isnan(number))
        return 0;
    if (number > 1e9)
        return 1000000000L;
    if (number < -1e9)
        return -1000000000L;
    return static_cast<long>(number);
}

}  // namespace

// ---------------------------------------------------------------------------
// The common frame

ActionResult AANoteTest::ActionValue(Node* note, MatchList& matches) const {
    if (!note || note->Invalid() || note->IsHidden())
        return kFalseResult();
    return Test(note, matches) ? kTrueResult() : kFalseResult();
}

int AANoteTest::ResultType(Node*, MatchList&) const { return Type::kBoolean; }

std::string AANoteTest::DesignatorText(const AAValue* value, Node* note, MatchList& matches) {
    if (!value)
        return std::string();
    if (dynamic_cast<const AAStringValue*>(value))
        return value->Token();
    return ComputeValue(value, note, matches).AsString();
}

Node* AANoteTest::TargetNode(const std::string& designator, Node* note, MatchList& matches) const {
    if (designator.empty())
        return note;
    Hypertext* document = note ? note->GetHypertext() : nullptr;
    {
        std::lock_guard<std::mutex> guard(memoMutex);
        if (memoNote && document && memoDocument == document && memoText == designator) {
            // The remembered pointer is only compared, never followed, until
            // the index has shown that it is still a note of this document.
            NodeIndex* index = document->GetIndex();
            Node* found = index ? index->Find(memoID, memoCreator) : nullptr;
            if (found && found == memoNote && !found->IsHidden() && !found->Invalid())
                return found;
            memoNote = nullptr;
        }
    }
    std::string path = Parser::TrimQuotes(designator);
    if (path.empty())
        return note;
    Node* target = HTPath::Get(note, path, matches);
    std::lock_guard<std::mutex> guard(memoMutex);
    memoText = designator;
    memoDocument = document;
    memoNote = target;
    if (target) {
        memoID = target->GetID().GetID();
        memoCreator = target->GetID().GetCreator();
    }
    return target;
}

Node* AANoteTest::FirstTarget(Node* note, MatchList& matches) const {
    return TargetNode(DesignatorText(operand.get(), note, matches), note, matches);
}

// ---------------------------------------------------------------------------
// Place in the outline

bool AADescendedFrom::Test(Node* note, MatchList& matches) const {
    Node* ancestor = FirstTarget(note, matches);
    if (!ancestor)
        return false;
    for (Node* above = note->Father(); above; above = above->Father())
        if (above == ancestor)
            return true;
    return false;
}

bool AAInside::Test(Node* note, MatchList& matches) const {
    Node* container = FirstTarget(note, matches);
    if (!container)
        return false;
    const Node* original = container->GetOriginal();
    const Node* self = note;
    for (const Node* candidate : {self, static_cast<const Node*>(note->GetOriginal())}) {
        Node* father = candidate->Father();
        if (father && (father == container || father == original))
            return true;
    }
    return false;
}

bool AAContains::Test(Node* note, MatchList& matches) const {
    Node* child = FirstTarget(note, matches);
    if (!child)
        return false;
    Node* original = note->GetOriginal();
    for (Node* holder : {note, original}) {
        for (Node* son = holder->Son(); son; son = son->Brother())
            if (SameOriginal(son, child))
                return true;
        if (holder == original)
            break;
    }
    return false;
}

bool AAFirst::Test(Node* note, MatchList& matches) const {
    Node* container = FirstTarget(note, matches);
    if (!container)
        return false;
    const AAValue* countArgument = NthArgument(operand.get(), 1);
    long count = countArgument ? ArgumentCount(countArgument, note, matches) : 1;
    if (count < 1)
        return false;
    Node* child = FromYoungest() ? container->YoungestSon() : container->Son();
    for (long seen = 0; child && seen < count; ++seen) {
        if (SameOriginal(child, note))
            return true;
        child = FromYoungest() ? child->ElderBrother() : child->Brother();
    }
    return false;
}

bool AAIndented::Test(Node* note, MatchList& matches) const {
    const AAValue* depthArgument = operand.get();
    if (!depthArgument || (!depthArgument->GetNextArgument() && dynamic_cast<const AADefaultValue*>(depthArgument)))
        return false;
    long depth = ArgumentCount(depthArgument, note, matches);
    Node* root = note->Root();
    if (!root || note == root)
        return false;
    Node* anchor = root;
    if (const AAValue* designator = depthArgument->GetNextArgument()) {
        std::string text = Parser::TrimQuotes(DesignatorText(designator, note, matches));
        Node* found = text.empty() ? nullptr : HTPath::Get(note, text, matches);
        if (found) {
            anchor = found;
            --depth;
        }
    }
    for (Node* father = note->Father(); father; father = father->Father()) {
        if (father == anchor)
            return depth == 0;
        if (father == root || depth <= 0)
            return false;
        --depth;
    }
    return false;
}

// ---------------------------------------------------------------------------
// Links

bool AALinkedTo::Test(Node* note, MatchList& matches) const {
    Node* other = FirstTarget(note, matches);
    if (!other)
        return false;
    std::string type;
    if (const AAValue* typeArgument = NthArgument(operand.get(), 1))
        type = Parser::TrimQuotes(ComputeValue(typeArgument, note, matches).AsString());
    bool anyType = type.empty() || type == "*";
    Node* from = Originals() ? note->GetOriginal() : note;
    const Node* end = Originals() ? other->GetOriginal() : other;
    LinkBundle links = Inbound() ? NodeLinks(from).InboundLinks() : NodeLinks(from).OutboundLinks();
    for (const Link* link : links) {
        const Node* far = Inbound() ? link->SourceNode() : link->DestNode();
        if (far == end && (anyType || link->Name() == type))
            return true;
    }
    return false;
}

bool AAGuardField::Test(Node* note, MatchList&) const {
    std::string word = operand ? Parser::TrimQuotes(Parser::Trim(operand->Token())) : std::string();
    if (word.empty())
        return false;
    for (const Link* link : NodeLinks(note).OutboundLinks())
        if (link->Guard() == word)
            return true;
    return false;
}

// ---------------------------------------------------------------------------
// Values

bool AABetween::Test(Node* note, MatchList& matches) const {
    const AAValue* value = operand.get();
    const AAValue* low = NthArgument(value, 1);
    const AAValue* high = NthArgument(value, 2);
    if (!value || !low || !high)
        return false;
    int type = value->ResultType(note, matches);
    if (type == Type::kDate) {
        STime at = value->GetDate(note, matches);
        STime from = low->GetDate(note, matches);
        STime to = high->GetDate(note, matches);
        return !(at < from) && at < to;
    }
    std::string text = ComputeValue(value, note, matches).AsString();
    std::string lowText = ComputeValue(low, note, matches).AsString();
    std::string highText = ComputeValue(high, note, matches).AsString();
    double x = 0, lo = 0, hi = 0;
    bool numeric = type == Type::kNumber || type == Type::kUnsigned;
    if (numeric || (IsNumberText(text, x) && IsNumberText(lowText, lo) && IsNumberText(highText, hi))) {
        x = ActionResult(text).AsDouble();
        lo = ActionResult(lowText).AsDouble();
        hi = ActionResult(highText).AsDouble();
        return lo <= x && x < hi;
    }
    return lowText <= text && text < highText;
}

// ---------------------------------------------------------------------------
// Words

bool AAWord::Test(Node* note, MatchList& matches) const {
    const auto& hasWord = GetHooks().noteHasWord;
    if (!hasWord || !operand)
        return false;
    std::string word = Parser::TrimQuotes(DesignatorText(operand.get(), note, matches));
    if (word.empty())
        return false;
    return hasWord(note, word);
}

bool AASimilar::Test(Node* note, MatchList& matches) const {
    const auto& mostSimilar = GetHooks().mostSimilarNotes;
    if (!mostSimilar)
        return false;
    Node* model = FirstTarget(note, matches);
    if (!model || model->Invalid() || model->IsHidden())
        return false;
    long count = kDefaultCount;
    if (const AAValue* countArgument = NthArgument(operand.get(), 1))
        count = ArgumentCount(countArgument, note, matches);
    if (count < 1)
        return false;
    // The index holds originals: an alias is as similar as its original.
    const Node* self = note->GetOriginal();
    for (const Node* similar : mostSimilar(model, static_cast<size_t>(count), note))
        if (similar == self)
            return true;
    return false;
}

bool AAInheritsFrom::Test(Node* note, MatchList& matches) const {
    Node* ancestor = FirstTarget(note, matches);
    if (!ancestor)
        return false;
    // A loop in the prototype chain ends the walk.
    std::unordered_set<const Node*> seen;
    for (Node* prototype = note->GetPrototype(); prototype && seen.insert(prototype).second;
         prototype = prototype->GetPrototype())
        if (prototype == ancestor)
            return true;
    return false;
}

namespace {

// The notes of a document by name, for isDuplicateName: for each name, the
// first two notes in outline order below the root that bear it and are
// neither aliases nor hidden. Made in one walk and kept for one pass over
// the document (a query or a scan of rules asks note after note) while the
// document shows no sign of change: notes come and go (the index's count)
// or are renamed (the name index falls out of date, and is brought up to
// date here so that the next rename shows again). The notes an answer rests
// on are checked to be there, under that name, before they count. A pass
// ends when the note the census was made for is asked again after others,
// or after as many answers as the document has notes: what the signs could
// miss (a rename whose trace someone else cleared) never outlives a pass.
class NameCensus : public DocumentPart {
public:
    bool HasOther(Hypertext* document, const Node* self, const std::string& name) {
        std::lock_guard<std::mutex> guard(lock);
        NodeIndex* index = document->GetIndex();
        if (!index)
            return false;
        if (index->NeedsUpdate()) {
            index->UpdateIfNeeded();
            made = false;
        }
        long notes = index->count();
        bool newPass = self == passStart && askedOthers;
        if (!made || newPass || notes != counted || answers >= static_cast<unsigned long>(notes) + kLeastAnswers) {
            Make(document, notes);
            // Only compared, never followed.
            passStart = self;
            askedOthers = false;
        } else if (self != passStart) {
            askedOthers = true;
        }
        ++answers;
        int other = Other(index, self, name);
        if (other < 0) {
            // A note it rests on is gone or renamed: ask a fresh census.
            Make(document, notes);
            other = Other(index, self, name);
        }
        return other > 0;
    }

private:
    struct Bearer {
        const Node* note = nullptr;
        uint32_t id = 0;
        std::string creator;
    };
    struct Bearers {
        Bearer first;
        Bearer second;
    };

    static constexpr unsigned long kLeastAnswers = 1000;

    static bool Counts(const Node* note) { return !note->IsAlias() && !note->IsHidden(); }

    void Make(Hypertext* document, long notes) {
        byName.clear();
        Node* root = document->Root();
        Node* end = root ? root->Sentinel() : nullptr;
        for (Node* n = root ? root->Next() : nullptr; n && n != end; n = n->Next()) {
            if (!Counts(n))
                continue;
            Bearers& bearers = byName[n->Name()];
            Bearer& slot = !bearers.first.note ? bearers.first : bearers.second;
            if (!slot.note)
                slot = Bearer{n, n->GetID().GetID(), n->GetID().GetCreator()};
        }
        made = true;
        counted = notes;
        answers = 0;
    }

    // 1 when a note other than `self` bears the name, 0 when none does, -1
    // when a note the census names is no longer what it was.
    int Other(NodeIndex* index, const Node* self, const std::string& name) const {
        auto it = byName.find(name);
        if (it == byName.end())
            return 0;
        for (const Bearer* bearer : {&it->second.first, &it->second.second}) {
            if (!bearer->note)
                continue;
            // The pointer is only compared until the index shows that it is
            // still a note of the document.
            const Node* found = index->Find(bearer->id, bearer->creator);
            if (found != bearer->note || found->Invalid() || !Counts(found) || found->Name() != name)
                return -1;
            if (found != self)
                return 1;
        }
        return 0;
    }

    std::mutex lock;
    bool made = false;
    long counted = -1;
    unsigned long answers = 0;
    const Node* passStart = nullptr;
    bool askedOthers = false;
    std::unordered_map<std::string, Bearers> byName;
};

}  // namespace

bool AADuplicateName::Test(Node* note, MatchList&) const {
    Hypertext* document = note->GetHypertext();
    if (!document || !document->Root())
        return false;
    auto* census = static_cast<NameCensus*>(
        document->Part("action.NameCensus", [] { return std::make_unique<NameCensus>(); }));
    const Node* self = note->GetOriginal();
    return census->HasOther(document, self, self->Name());
}

bool AALocalValue::Test(Node* note, MatchList& matches) const {
    std::string name = Parser::TrimQuotes(DesignatorText(operand.get(), note, matches));
    if (!name.empty() && name[0] == '$')
        name.erase(0, 1);
    const Attribute* attribute = name.empty() ? nullptr : note->GetAttribute(name);
    if (!attribute)
        return false;
    StObjectLock guard(note->Lock());
    return note->DoGetImmediate(attribute) != nullptr;
}

bool AAVisited::Test(Node* note, MatchList& matches) const {
    std::string designator = operand ? DesignatorText(operand.get(), note, matches) : std::string();
    Node* target = TargetNode(designator, note, matches);
    if (!target)
        return false;
    return (target->GetDouble("ReadCount") > 0) == Wanted();
}
