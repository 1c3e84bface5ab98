#include "NodeSorting.h"

#include <algorithm>
#include <set>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "RylSerial.h"
#include "Transformer.h"
#include "Value.h"

namespace {
RylSerial& ComparatorQueue() {
    static RylSerial queue("com.morvent.rylvane.AttributeValueComparator");
    return queue;
}
} // namespace

AttributeValueComparator::AttributeValueComparator(const Attribute* a, bool back, const std::string& t,
                                                   const Attribute* a2, bool back2, const std::string& t2)
    : attribute(a), secondAttribute(a2), backward(back), secondBackward(back2), transform(t),
      secondTransform(t2), transformer(Transformer::Create(t)), secondTransformer(Transformer::Create(t2)) {}

AttributeValueComparator::~AttributeValueComparator() = default;

int AttributeValueComparator::CompareBy(const Attribute* attr, bool back, Transformer* t, const Node* a,
                                        const Node* b) const {
    const Node* left = t ? t->ChooseNode(a) : a;
    const Node* right = t ? t->ChooseNode(b) : b;
    StValue x(left->Get(attr), left);
    StValue y(right->Get(attr), right);
    int r = x.compare(y, t);
    return back ? -r : r;
}

int AttributeValueComparator::Compare(const Node* a, const Node* b) const {
    return ComparatorQueue().Sync([&] {
        int result = -1;
        if (!a || !b)
            return result;
        if (attribute && attribute->IsValid()) {
            result = CompareBy(attribute, backward, transformer.get(), a, b);
            if (result != 0)
                return result;
        }
        if (secondAttribute && secondAttribute->IsValid())
            result = CompareBy(secondAttribute, secondBackward, secondTransformer.get(), a, b);
        return result;
    });
}

bool AttributeValueComparator::operator()(const Tree* a, const Tree* b) const {
    return Compare(static_cast<const Node*>(a), static_cast<const Node*>(b)) < 0;
}

std::shared_ptr<AttributeValueComparator> AttributeValueComparator::ForContainer(const Node* c) {
    if (!c)
        return nullptr;
    const Attribute* first = c->SortAttribute();
    std::string also = c->GetString("SortAlso");
    const Attribute* second = also.empty() ? nullptr : c->GetAttribute(also);
    return std::make_shared<AttributeValueComparator>(first, c->GetBoolean("SortBackward"),
                                                      c->GetString("SortTransform"), second,
                                                      c->GetBoolean("SortBackwardAlso"),
                                                      c->GetString("SortAlsoTransform"));
}

namespace NodeVectors {

void SortByOutlineOrder(NodeVector& v) {
    std::stable_sort(v.begin(), v.end(),
                     [](const Node* a, const Node* b) { return a->GetOutlineOrder() < b->GetOutlineOrder(); });
}

void SortByName(NodeVector& v) {
    std::stable_sort(v.begin(), v.end(), [](const Node* a, const Node* b) { return a->Name() < b->Name(); });
}

void SortByAttribute(NodeVector& v, const std::string& attribute, bool backward) {
    if (v.empty())
        return;
    const Attribute* a = v.front()->GetAttribute(attribute);
    AttributeValueComparator comparator(a, backward, "", nullptr, false, "");
    std::stable_sort(v.begin(), v.end(), [&](const Node* x, const Node* y) { return comparator.Compare(x, y) < 0; });
}

namespace {
void RemoveIf(NodeVector& v, const std::function<bool(const Node*)>& test) {
    v.erase(std::remove_if(v.begin(), v.end(), test), v.end());
}
} // namespace

void RemoveAliases(NodeVector& v) {
    RemoveIf(v, [](const Node* n) { return n->IsAlias(); });
}

void RemoveAdornments(NodeVector& v) {
    RemoveIf(v, [](const Node* n) { return n->IsAdornment(); });
}

void RemoveSeparators(NodeVector& v) {
    RemoveIf(v, [](const Node* n) { return n->GetBoolean("Separator"); });
}

void RemoveLocked(NodeVector& v) {
    RemoveIf(v, [](const Node* n) { return n->IsLocked(); });
}

NodeVector Unlocked(const NodeVector& v) {
    NodeVector copy = v;
    RemoveLocked(copy);
    return copy;
}

std::string TitleList(const NodeVector& v) {
    std::string out;
    for (size_t i = 0; i < v.size(); ++i) {
        if (i)
            out += ';';
        out += v[i]->Name();
    }
    return out;
}

bool SameParent(const NodeVector& v) {
    for (const Node* n : v)
        if (n->Father() != v.front()->Father())
            return false;
    return true;
}

bool AnyElementIsDescendedFrom(const NodeVector& v, const Node* ancestor) {
    return std::any_of(v.begin(), v.end(), [&](const Node* n) { return n->IsDescendedFrom(ancestor); });
}

std::string SharedValue(const NodeVector& v, const std::string& attribute) {
    if (v.empty())
        return "";
    std::string first = v.front()->GetString(attribute);
    for (const Node* n : v)
        if (n->GetString(attribute) != first)
            return "";
    return first;
}

} // namespace NodeVectors

ValueList::ValueList(const Node* n, const std::string& a) : note(n), attribute(a) {}

std::vector<std::string> ValueList::Values() const {
    std::set<std::string> values;
    Hypertext* h = note ? note->GetHypertext() : nullptr;
    if (!h)
        return {};
    AttributeInfo info(h);
    Attribute* a = info.GetAttribute(attribute);
    if (!a || !a->IsValid())
        return {};
    size_t limit = static_cast<size_t>(NodeDefaults(h->Root()).UniqueValueLimit());
    bool split = a->IsSet() || a->IsList();
    HypertextFacade(h).Apply([&](Node* n) {
        if (n->IsAlias() || values.size() > limit)
            return;
        std::string text = NodeFacade(n).GetString(a);
        if (!split) {
            values.insert(text);
            return;
        }
        ArgList items(text, ';', false);
        for (int i = 0; i < static_cast<int>(items.size()); ++i)
            values.insert(items.at(i));
    });
    ArgList suggested(a->SuggestedValues().ToString(";"), ';', false);
    for (int i = 0; i < static_cast<int>(suggested.size()); ++i)
        values.insert(suggested.at(i));
    return std::vector<std::string>(values.begin(), values.end());
}
