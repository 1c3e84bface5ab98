#pragma once
// Group functions over the notes a designator names: designator, then the
// further arguments. The `_if` forms take a condition before the expression.
#include <atomic>

#include "AAValue.h"
#include "Attribute.h"
#include "HTPath.h"
#include "Node.h"
#include "NodeVector.h"
#include "NoteQuery.h"

// `collect(group, expr)`: the expression computed on each note of the
// group that allows searches, joined with ";".
class AACollect : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACollect"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

    // The notes of the group; `found` is false when the group computed to
    // nothing at all.
    NodeVector Choose(Node* note, MatchList& matches, bool& found) const;
    // Calls `visit` on each note of the group in order, as Choose lists
    // them, until it answers false. The group `all` is walked in place, with
    // the notes ahead fetched, when the arguments only read notes: nothing
    // can then change the tree during the walk, and no list of every note
    // is gathered first.
    template <typename Visit>
    void ForEachMember(Node* note, MatchList& matches, bool& found, Visit visit) const;
    // Whether the group's text `text` names the whole document and may be
    // walked in place (see ForEachMember).
    bool WalksInPlace(Node* note, const std::string& text, MatchList& matches) const;
    // Whether a note of the group takes part.
    virtual bool Included(Node* note, MatchList& matches) const;
    // The same, with the attribute Searchable of the group's document looked
    // up once for the whole group (null: looked up by name).
    bool Included(Node* note, MatchList& matches, const Attribute* searchable) const;
    // The attribute Searchable of the document the note belongs to.
    static const Attribute* SearchableAttribute(const Node* note);
    virtual bool HasCondition() const { return false; }
    const AAValue* Condition() const;
    const AAValue* Expression() const;
    // Adds what `expression` computes on `member` to a collected list: a
    // list's items one by one, any other value unless empty; the member's
    // name when there is no expression.
    static void AddCollected(ArgList& result, const AAValue* expression, Node* member, MatchList& matches);

private:
    // Whether every argument only reads: 0 not known yet, 1 yes, 2 no.
    mutable std::atomic<int> onlyReads{0};
};

template <typename Visit>
void AACollect::ForEachMember(Node* note, MatchList& matches, bool& found, Visit visit) const {
    found = false;
    const AAValue* group = operand.get();
    if (!group)
        return;
    std::string text = ComputeValue(group, note, matches).AsString();
    if (text.empty())
        return;
    found = true;
    if (WalksInPlace(note, text, matches)) {
        Node* root = note->Root();
        std::vector<const Attribute*> fetched = AttributesReadBy(operand.get(), note);
        if (const Attribute* searchable = SearchableAttribute(note))
            fetched.push_back(searchable);
        bool stopped = false;
        VisitNotesInOutlineOrder(root->Son(), nullptr, fetched, [&stopped] { return stopped; },
                                 [&](Node* member) { stopped = !visit(member); });
        return;
    }
    for (Node* member : HTPath::All(note, text, matches))
        if (!visit(member))
            return;
}

// `collect_if(group, condition, expr)`; "find" is written as one.
class AACollectIf : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AACollectIf"; }
    bool HasCondition() const override { return true; }
};

class AACountIf : public AACollectIf {
public:
    using AACollectIf::AACollectIf;
    const char* ClassName() const override { return "AACountIf"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// The sum of the expression over the included notes; intervals add up as
// intervals.
class AASum : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AASum"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    // The total, whether it is an interval, and the size of the whole group.
    bool Total(Node* note, MatchList& matches, double& total, bool& interval, size_t& groupSize) const;
    virtual const char* SyntaxError() const { return "sum: syntax error"; }
};

class AASumIf : public AASum {
public:
    using AASum::AASum;
    const char* ClassName() const override { return "AASumIf"; }
    bool HasCondition() const override { return true; }
};

// The sum divided by the size of the whole group, refused notes included.
class AAAvg : public AASum {
public:
    using AASum::AASum;
    const char* ClassName() const override { return "AAAvg"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

protected:
    const char* SyntaxError() const override { return "avg: syntax error"; }
};

class AAAvgIf : public AAAvg {
public:
    using AAAvg::AAAvg;
    const char* ClassName() const override { return "AAAvgIf"; }
    bool HasCondition() const override { return true; }

protected:
    const char* SyntaxError() const override { return "avg_if: syntax error"; }
};

// True when the expression holds on every note (an empty group included).
class AAEvery : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AAEvery"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    // The answer when a note's test comes out `decisive`, and otherwise.
    virtual bool Decisive() const { return false; }
    virtual const char* SyntaxError() const { return "every: syntax error"; }
};

class AAAny : public AAEvery {
public:
    using AAEvery::AAEvery;
    const char* ClassName() const override { return "AAAny"; }

protected:
    bool Decisive() const override { return true; }
    const char* SyntaxError() const override { return "any: syntax error"; }
};

// `values(group, attribute)`: the distinct non-empty values, sorted, each
// followed by ";".
class AAValues : public AACollect {
public:
    using AACollect::AACollect;
    const char* ClassName() const override { return "AAValues"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// A text holding ";", "(" or a double quote, in quotes: single quotes when
// it holds a double quote.
std::string QuoteIfNeeded(const std::string& text);
