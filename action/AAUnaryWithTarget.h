#pragma once
// Tests on notes: each answers true or false for the note it is computed on,
// and false for a missing or hidden note.
#include <cstdint>
#include <mutex>
#include <string>

#include "AAValue.h"

class Hypertext;

// The common frame of the note tests: the refusal of missing and hidden
// notes, the boolean answer, and the reading of a designator argument.
//
// A designator is resolved through HTPath::Get, and the note it named is
// remembered with its text: the same text again gives the remembered note
// without a new walk, even when the designator is relative to the note
// computed on. A remembered note that has become hidden, has left the
// document or belongs to another document is forgotten and the text is
// resolved anew. The memo is checked against the document's index before
// it is used, so it never hands out a note that no longer exists.
class AANoteTest : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    ActionResult ActionValue(Node* note, MatchList& matches) const final;
    int ResultType(Node* note, MatchList& matches) const override;
    // An empty designator gives `note`; quotes around the text are dropped.
    Node* TargetNode(const std::string& designator, Node* note, MatchList& matches) const override;

protected:
    // The test on a note that is present and shown.
    virtual bool Test(Node* note, MatchList& matches) const = 0;
    // The text of an argument that names something: a bare word or a quoted
    // text as written, any other expression as computed.
    static std::string DesignatorText(const AAValue* value, Node* note, MatchList& matches);
    // The note the first argument designates; null when it names none.
    Node* FirstTarget(Node* note, MatchList& matches) const;

private:
    mutable std::mutex memoMutex;
    mutable std::string memoText;
    mutable Hypertext* memoDocument = nullptr;
    mutable Node* memoNote = nullptr;
    mutable uint32_t memoID = 0;
    mutable std::string memoCreator;
};

// `descendedFrom(designator)`: the note lies below the designated note.
class AADescendedFrom : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AADescendedFrom"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `inside(designator)`: the note, or its original, is a child of the
// designated container (or of the container's original).
class AAInside : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAInside"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `contains(designator)`: the designated note is a child of this note,
// compared by original.
class AAContains : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAContains"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `first(container, n)`: the note is among the first n children of the
// container, compared by original; `last` counts from the youngest child.
class AAFirst : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAFirst"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
    virtual bool FromYoungest() const { return false; }
};

class AALast : public AAFirst {
public:
    using AAFirst::AAFirst;
    const char* ClassName() const override { return "AALast"; }

protected:
    bool FromYoungest() const override { return true; }
};

// `linkedTo(designator[, type])`: a link of that type goes from the note to
// the designated note; the type "*", or none, is any type. `linkedFrom` is
// the link the other way. The original forms test the originals of both.
class AALinkedTo : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AALinkedTo"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
    virtual bool Inbound() const { return false; }
    virtual bool Originals() const { return false; }
};

class AALinkedFrom : public AALinkedTo {
public:
    using AALinkedTo::AALinkedTo;
    const char* ClassName() const override { return "AALinkedFrom"; }

protected:
    bool Inbound() const override { return true; }
};

class AAOriginalLinkedTo : public AALinkedTo {
public:
    using AALinkedTo::AALinkedTo;
    const char* ClassName() const override { return "AAOriginalLinkedTo"; }

protected:
    bool Originals() const override { return true; }
};

class AAOriginalLinkedFrom : public AALinkedTo {
public:
    using AALinkedTo::AALinkedTo;
    const char* ClassName() const override { return "AAOriginalLinkedFrom"; }

protected:
    bool Inbound() const override { return true; }
    bool Originals() const override { return true; }
};

// `indented(n[, designator])`: the note lies exactly n levels below the
// anchor. Without a designator the anchor is the document root and a
// top-level note has depth 0; with one, a direct child has depth 1.
class AAIndented : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAIndented"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `between(value, low, high)`: low <= value < high, as numbers, dates or
// texts by the kind of the value.
class AABetween : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AABetween"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `word(text)`: the word index of the note holds the word. The index counts the words of a
// note's text, name and text attributes, in lower case, of three letters or
// more and without digits; the word is filtered the same way.
class AAWord : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAWord"; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `similarTo(designator[, count])`: the note is among the `count` notes
// (kDefaultCount when not given) whose words are most like those of the
// designated note, as the word index scores them. The designated note is
// never similar to itself.
class AASimilar : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AASimilar"; }
    static constexpr long kDefaultCount = 10;

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `inheritsFrom(designator)`: the designated note is on the note's
// prototype chain.
class AAInheritsFrom : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAInheritsFrom"; }
    int Priority() const override { return kPriorityDotOperator; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `isDuplicateName()`: another note of the document, not an alias of this
// one and not hidden, bears the same name.
class AADuplicateName : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AADuplicateName"; }
    int Priority() const override { return kPriorityDotOperator; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `hasLocalValue(attribute)`: the note holds a value of its own for the
// attribute, rather than inheriting one.
class AALocalValue : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AALocalValue"; }
    int Priority() const override { return kPriorityDotOperator; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};

// `visited(designator)`: the designated note has been read, by its reading
// count; `unvisited` is the opposite.
class AAVisited : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAVisited"; }
    int Priority() const override { return kPriorityDotOperator; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
    virtual bool Wanted() const { return true; }
};

class AAUnvisited : public AAVisited {
public:
    using AAVisited::AAVisited;
    const char* ClassName() const override { return "AAUnvisited"; }
    int Priority() const override { return kPriorityValue; }

protected:
    bool Wanted() const override { return false; }
};

// `guard(word)`: one of the note's outbound links (a web link, most often)
// has exactly that word as its guard. The word is the text between the
// parentheses as written, trimmed of blanks and quotes; an empty word is
// false, as an unguarded link carries no guard.
class AAGuardField : public AANoteTest {
public:
    using AANoteTest::AANoteTest;
    const char* ClassName() const override { return "AAGuardField"; }
    int Priority() const override { return kPriorityDotOperator; }

protected:
    bool Test(Node* note, MatchList& matches) const override;
};
