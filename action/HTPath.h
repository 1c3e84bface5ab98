#pragma once
// Designators: the words, paths and names by which action code names notes.
// `parent`, `child[2]`, `/Projects/Ideas`, `"My note"`, `find($Done)` or a
// bare name lead to one note (Get); group words such as `children` and
// ";"-separated lists lead to many (All). A designator may carry, in
// parentheses, the note it starts from: `child(/Projects)`.
//
// An HTPath is parsed once and may be kept and used again; its resolvers are
// const and safe to use from several threads. Every resolver is virtual so
// that other subsystems (export) can replace single steps.
#include <string>
#include <string_view>

#include "ActionResult.h"
#include "NodeVector.h"

class MatchList;
class Node;

class HTPath {
public:
    HTPath() = default;
    explicit HTPath(const std::string& text);
    HTPath(const HTPath&) = default;
    HTPath& operator=(const HTPath&) = default;
    virtual ~HTPath();

    // Splits the text into designator and argument (see the .cpp).
    virtual void Parse(const std::string& text);
    const std::string& Designator() const { return designator; }
    const std::string& Argument() const { return argument; }
    const std::string& Whole() const { return whole; }

    // One note, or null.
    static Node* Get(const Node* note, const std::string& path, MatchList& matches);
    virtual Node* Get(const Node* note, MatchList& matches) const;
    // Whether one more designator may be resolved here: past a depth of
    // designators nested in designators, every designator names nothing.
    static bool WithinDepth();
    // Every note the designator names, in order; duplicates are kept.
    static NodeVector All(const Node* note, const std::string& path, MatchList& matches);
    virtual NodeVector All(const Node* note, MatchList& matches) const;
    // Appends the notes the designator names to `result`; answers whether
    // any were found.
    virtual bool Choose(const Node* note, NodeVector& result, MatchList& matches) const;

    // The group words.
    virtual void ChooseChildren(const Node* note, NodeVector& result) const;
    virtual void ChooseDescendants(const Node* note, NodeVector& result) const;
    virtual void ChooseAncestors(const Node* note, NodeVector& result) const;
    virtual void ChooseSiblings(const Node* note, NodeVector& result) const;
    virtual void ChooseAll(const Node* note, NodeVector& result) const;

    // Walks a "/"-separated path from `note`, or from the root when the path
    // begins with "/". Null when a step fails or the end is a dead note.
    virtual Node* ParsePath(const Node* note, const std::string& path) const;
    // "." is the note, ".." its parent, anything else the first child of
    // exactly that name.
    virtual Node* FindChildNamed(const Node* note, const std::string& name) const;
    virtual Node* FindChildNamedNotAdornment(const Node* note, const std::string& name) const;

    // Outline order and the family of a note; null where there is none.
    virtual Node* Next(const Node* note) const;
    virtual Node* Previous(const Node* note) const;
    virtual Node* NextSibling(const Node* note) const;
    virtual Node* PrevSibling(const Node* note) const;
    // The eldest child.
    virtual Node* Child(const Node* note) const;
    // The child at `index` counted from 0; a negative index counts back from
    // the youngest (-1).
    virtual Node* Child(const Node* note, long index) const;
    // The text has the form `child[n]`.
    virtual bool IsIndexedChild(std::string_view text) const;
    // The n of `child[n]`; 0 when it is no integer.
    virtual long ChildIndex(std::string_view text) const;

    // The text is one of the designator words.
    virtual bool IsDesignator(std::string_view text) const;
    // The text is action code to compute rather than a name: it begins with
    // "$" or a quote, or is a call of find, compositeFor or compositeWithName.
    virtual bool IsExpression(std::string_view text) const;
    // The text of an expression computed on the note.
    virtual std::string Evaluate(Node* note, const std::string& text, MatchList& matches) const;
    // Computes an expression on the note; every evaluation of a designator
    // goes through here.
    virtual ActionResult EvaluateAction(Node* note, const std::string& text, MatchList& matches) const;

protected:
    // Steps 3 on of Get: `d` from `base`. With `withWhole`, names also try the
    // whole text (a note named "Meeting (Monday)").
    virtual Node* Resolve(Node* base, const std::string& d, bool withWhole, MatchList& matches) const;
    // The notes of `text` from `base`: lists, expressions, group words.
    bool ChooseText(Node* base, std::string text, bool asParsed, NodeVector& result, MatchList& matches) const;

    std::string designator;
    std::string argument;
    std::string whole;
};
