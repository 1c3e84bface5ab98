#include "Tree.h"

bool Tree::ValidateInternal(std::vector<const Tree*>& seen) const {
    if (std::find(seen.begin(), seen.end(), this) != seen.end())
        return false;
    seen.push_back(this);
    const Tree* elder = nullptr;
    for (const Tree* s = son; s; s = s->brother) {
        if (s->father != this)
            return false;
        if (s->elderBrother != elder)
            return false;
        if (!s->ValidateInternal(seen))
            return false;
        elder = s;
    }
    return true;
}

long Tree::CountElderSiblings() const {
    long n = 0;
    for (const Tree* e = elderBrother; e; e = e->elderBrother)
        ++n;
    return n;
}

void Tree::AddSon(Tree* x) {
    if (!x || x == this)
        return;
    Tree* last = TreeYoungestSon();
    if (last == x)
        return;
    if (last) {
        last->AddBrother(x);
    } else {
        x->Unhook();
        x->father = this;
        son = x;
        Adopted(x);
    }
}

void Tree::AddFirstSon(Tree* x) {
    if (!x || x == this || x == son)
        return;
    x->Unhook();
    x->father = this;
    x->elderBrother = nullptr;
    x->brother = son;
    if (son)
        son->elderBrother = x;
    son = x;
    Adopted(x);
}

void Tree::AddYoungestSon(Tree* x) {
    Tree* last = TreeYoungestSon();
    if (last)
        last->AddBrother(x);
    else
        AddFirstSon(x);
}

void Tree::AddBrother(Tree* x) {
    if (!x || x == this || x == brother)
        return;
    x->Unhook();
    x->father = father;
    x->elderBrother = this;
    x->brother = brother;
    if (brother)
        brother->elderBrother = x;
    brother = x;
    if (father)
        father->Adopted(x);
}

void Tree::AddElderBrother(Tree* x) {
    if (elderBrother)
        elderBrother->AddBrother(x);
    else if (father)
        father->AddFirstSon(x);
}

long Tree::ChildCount() const {
    long n = 0;
    for (const Tree* s = son; s; s = s->brother)
        ++n;
    return n;
}

long Tree::Descendants() const {
    long n = 0;
    for (const Tree* s = son; s; s = s->brother)
        n += 1 + s->Descendants();
    return n;
}

long Tree::Depth() const {
    long deepest = 0;
    for (const Tree* s = son; s; s = s->brother)
        deepest = std::max(deepest, s->Depth());
    return 1 + deepest;
}

bool Tree::IsDescendedFrom(const Tree* ancestor) const {
    if (!ancestor)
        return false;
    for (const Tree* t = this; t; t = t->father) {
        if (t == ancestor)
            return true;
        if (t->father == t)
            break;
    }
    return false;
}

void Tree::Unhook() {
    if (father && father->son == this)
        father->son = brother;
    if (elderBrother)
        elderBrother->brother = brother;
    if (brother)
        brother->elderBrother = elderBrother;
    father = nullptr;
    brother = nullptr;
    elderBrother = nullptr;
}

bool Tree::SortChildren(const TreeComparator& comparator) {
    if (!son || !son->brother)
        return false;
    std::vector<Tree*> sons;
    for (Tree* s = son; s; s = s->brother)
        sons.push_back(s);
    std::vector<Tree*> before = sons;
    std::stable_sort(sons.begin(), sons.end(), [&](Tree* a, Tree* b) { return comparator(a, b); });
    if (sons == before)
        return false;
    son = sons.front();
    for (size_t i = 0; i < sons.size(); ++i) {
        sons[i]->elderBrother = i ? sons[i - 1] : nullptr;
        sons[i]->brother = i + 1 < sons.size() ? sons[i + 1] : nullptr;
    }
    return true;
}

void Tree::Sort(const TreeComparator& comparator) {
    SortChildren(comparator);
    for (Tree* s = son; s; s = s->brother)
        s->Sort(comparator);
}

Tree* Tree::TreeYoungestSon() const {
    Tree* s = son;
    while (s && s->brother)
        s = s->brother;
    return s;
}

Tree* Tree::TreeSentinel() const {
    for (const Tree* t = this; t && !t->IsRoot(); t = t->father) {
        if (t->brother)
            return t->brother;
    }
    return nullptr;
}

Tree* Tree::TreeNext() const {
    if (son)
        return son;
    return TreeSentinel();
}

Tree* Tree::TreePrevious() const {
    if (IsRoot())
        return nullptr;
    if (elderBrother) {
        Tree* t = elderBrother;
        while (Tree* last = t->TreeYoungestSon())
            t = last;
        return t;
    }
    return father;
}
