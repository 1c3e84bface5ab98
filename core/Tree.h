#pragma once
// An intrusive n-ary tree. Each element links to its father, its next younger
// brother, its eldest son and its elder brother; none of these own anything.
// Children form a doubly linked list hanging from the eldest son.
#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

class Tree;

// A comparison of two tree elements, shared by copies of a TreeComparator.
class TreeComparison {
public:
    virtual ~TreeComparison() = default;
    // Answers true when `a` sorts before `b`.
    virtual bool operator()(const Tree* a, const Tree* b) const = 0;
};

class TreeComparator {
public:
    explicit TreeComparator(std::shared_ptr<TreeComparison> c) : comparison(std::move(c)) {}
    bool operator()(const Tree* a, const Tree* b) const { return (*comparison)(a, b); }

private:
    std::shared_ptr<TreeComparison> comparison;
};

class Tree {
public:
    Tree() = default;
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    virtual ~Tree() = default;

    virtual bool Validate() const {
        std::vector<const Tree*> seen;
        return ValidateInternal(seen);
    }
    // Checks for cycles and links that disagree; `seen` collects visited elements.
    virtual bool ValidateInternal(std::vector<const Tree*>& seen) const;
    virtual long CountElderSiblings() const;

    virtual void AddSon(Tree* x);
    virtual void AddFirstSon(Tree* x);
    virtual void AddYoungestSon(Tree* x);
    virtual void AddBrother(Tree* x);
    virtual void AddElderBrother(Tree* x);

    virtual long ChildCount() const;
    virtual bool HasChildren() const { return son != nullptr; }
    virtual long Descendants() const;
    virtual long Depth() const;
    virtual bool IsRoot() const { return father == nullptr || father == this; }
    virtual bool IsDescendedFrom(const Tree* ancestor) const;
    virtual void Unhook();
    virtual void Sort(const TreeComparator& comparator);
    // Answers whether the children's order changed.
    virtual bool SortChildren(const TreeComparator& comparator);

    Tree* TreeFather() const { return father; }
    Tree* TreeSon() const { return son; }
    Tree* TreeBrother() const { return brother; }
    Tree* TreeElderBrother() const { return elderBrother; }
    Tree* TreeYoungestSon() const;
    Tree* TreeSentinel() const;
    Tree* TreeNext() const;
    Tree* TreePrevious() const;

protected:
    // Called on the father once `child` hangs among its sons.
    virtual void Adopted(Tree* child) {}

    Tree* father = nullptr;
    Tree* brother = nullptr;
    Tree* son = nullptr;
    Tree* elderBrother = nullptr;
};

// The typed layer: the same walks answering the element type.
template <typename T>
class TTree : public Tree {
public:
    T Father() const { return static_cast<T>(father); }
    T Son() const { return static_cast<T>(son); }
    T Brother() const { return static_cast<T>(brother); }
    T ElderBrother() const { return static_cast<T>(elderBrother); }
    T YoungestSon() const { return static_cast<T>(TreeYoungestSon()); }
    T Sentinel() const { return static_cast<T>(TreeSentinel()); }
    T Next() const { return static_cast<T>(TreeNext()); }
    T Previous() const { return static_cast<T>(TreePrevious()); }
};
