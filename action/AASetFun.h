#pragma once
// List and dictionary functions: the members of AASetFun over a list text, and the dot operators on list and dictionary receivers.
#include "AAValue.h"

// `count(list)`, `.count`: the number of items.
class AACount : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AACount"; }
    ActionResult Compute(const ArgList& items, int type) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `max(list)`, `.max`: the greatest item in its own spelling; an empty list
// is "0" for numbers and dates and "" otherwise.
class AAMax : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AAMax"; }
    ActionResult Compute(const ArgList& items, int type) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    // Picks the smallest instead of the greatest.
    virtual bool Smallest() const { return false; }
};

class AAMin : public AAMax {
public:
    using AAMax::AAMax;
    const char* ClassName() const override { return "AAMin"; }

protected:
    bool Smallest() const override { return true; }
};

class AADotCount : public AACount {
public:
    using AACount::AACount;
    const char* ClassName() const override { return "AADotCount"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotMax : public AAMax {
public:
    using AAMax::AAMax;
    const char* ClassName() const override { return "AADotMax"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotMin : public AAMin {
public:
    using AAMin::AAMin;
    const char* ClassName() const override { return "AADotMin"; }
    int Priority() const override { return kPriorityDotOperator; }
};

// `.sum`: the items read as numbers, added.
class AADotSum : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotSum"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult Compute(const ArgList& items, int type) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `.avg`: the sum divided by the number of items; 0 for no items.
class AADotAvg : public AADotSum {
public:
    using AADotSum::AADotSum;
    const char* ClassName() const override { return "AADotAvg"; }
    ActionResult Compute(const ArgList& items, int type) const override;
};

// Dot operators on a receiver list. A missing receiver is the empty list.
class AAListOperator : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    // The receiver's type, -1 without a receiver.
    int ReceiverType(Node* note, MatchList& matches) const;
    ActionResult Receiver(Node* note, MatchList& matches) const;
    // The n-th argument (0 the first), null when absent.
    const AAValue* Argument(int n) const;
};

// `.remove(item)`: the list without any item equal to it.
class AADotRemove : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AADotRemove"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// The items of a receiver list taken as notes, for the group forms: an item
// is the path or name of a note; items that name none are passed over.
class AAListOfNotes : public AAListOperator {
public:
    using AAListOperator::AAListOperator;

protected:
    NodeVector Notes(Node* note, MatchList& matches) const;
};

// `.every(expr)`: true when the expression is true on every note of the
// list (an empty list too).
class AADotEvery : public AAListOfNotes {
public:
    using AAListOfNotes::AAListOfNotes;
    const char* ClassName() const override { return "AADotEvery"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

protected:
    // The answer that ends the walk at once.
    virtual bool Decisive() const { return false; }
};

// `.any(expr)`: true when the expression is true on some note of the list.
class AADotAny : public AADotEvery {
public:
    using AADotEvery::AADotEvery;
    const char* ClassName() const override { return "AADotAny"; }

protected:
    bool Decisive() const override { return true; }
};

// `.collect(expr)`: the expression on each searchable note of the list.
class AADotCollect : public AAListOfNotes {
public:
    using AAListOfNotes::AAListOfNotes;
    const char* ClassName() const override { return "AADotCollect"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

protected:
    // Whether a condition chooses the notes, and where the condition and
    // the expression stand among the arguments.
    virtual bool Conditional() const { return false; }
    virtual const AAValue* Condition() const { return nullptr; }
    virtual const AAValue* Expression() const { return Argument(0); }
};

// `.collect_if(condition, expr)`: as `.collect`, over the notes for which
// the condition holds.
class AADotCollectIf : public AADotCollect {
public:
    using AADotCollect::AADotCollect;
    const char* ClassName() const override { return "AADotCollectIf"; }

protected:
    bool Conditional() const override { return true; }
    const AAValue* Condition() const override { return Argument(0); }
    const AAValue* Expression() const override { return Argument(1); }
};

// `.first(n)`: the first n items, 1 when not given.
class AADotFirst : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AADotFirst"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

protected:
    virtual bool FromEnd() const { return false; }
};

// `.last(n)`: the last n items, 1 when not given.
class AADotLast : public AADotFirst {
public:
    using AADotFirst::AADotFirst;
    const char* ClassName() const override { return "AADotLast"; }

protected:
    bool FromEnd() const override { return true; }
};

// `.at(i)` and `[i]`: the value of a key on a dictionary, otherwise the item
// at i (negative from the end).
class AAAt : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AAAt"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `.lookup(key)`: the receiver as a table of "key:value" items.
class AALookup : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AALookup"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `.intersect(other)`: the items in both, sorted and without duplicates.
class AAIntersect : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AAIntersect"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `.sort`, `.sort(key)`: the items, or the notes they name ordered by a key,
// in byte order; a key of type number or date orders by its value.
class AASort : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AASort"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;

    enum class Order { Bytes, CaseInsensitive, Number, Date };

protected:
    // The order when the key (or the receiver) is of `keyType`.
    virtual Order OrderFor(int keyType) const;
};

// `.isort`: case-insensitive order.
class AASortCaseInsensitive : public AASort {
public:
    using AASort::AASort;
    const char* ClassName() const override { return "AASortCaseInsensitive"; }

protected:
    Order OrderFor(int keyType) const override { return Order::CaseInsensitive; }
};

// `.nsort`: numeric order.
class AASortNumeric : public AASort {
public:
    using AASort::AASort;
    const char* ClassName() const override { return "AASortNumeric"; }

protected:
    Order OrderFor(int keyType) const override { return Order::Number; }
};

// `.unique`: the receiver as a set.
class AAUnique : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AAUnique"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `.keys`: the keys of the receiver read as a dictionary.
class AAKeys : public AAListOperator {
public:
    using AAListOperator::AAListOperator;
    const char* ClassName() const override { return "AAKeys"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `list(a, b, ...)`: the arguments as text joined with ";".
class AAList : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAList"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `dictionary("k:v;k2:v2")`: a dictionary of the "key:value" items.
class AADictionary : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADictionary"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};
