#pragma once
// Ordering notes by attributes, and the note-aware operations on NodeVector.
#include <memory>
#include <string>

#include "NodeVector.h"
#include "Tree.h"

class Attribute;
class Hypertext;
class Node;
class Transformer;

// Sorts notes by up to two attributes, each optionally backward and through a
// transformer named like the `SortTransform` attribute.
class AttributeValueComparator : public TreeComparison {
public:
    AttributeValueComparator(const Attribute* attribute, bool backward, const std::string& transform,
                             const Attribute* secondAttribute, bool secondBackward,
                             const std::string& secondTransform);
    ~AttributeValueComparator() override;
    // Three-way comparison; -1 when a note is missing.
    int Compare(const Node* a, const Node* b) const;
    bool operator()(const Tree* a, const Tree* b) const override;

    // A comparator from a container's Sort, SortBackward, SortTransform,
    // SortAlso, SortBackwardAlso and SortAlsoTransform.
    static std::shared_ptr<AttributeValueComparator> ForContainer(const Node* container);

private:
    int CompareBy(const Attribute* attr, bool backward, Transformer* transformer, const Node* a,
                  const Node* b) const;

    const Attribute* attribute;
    const Attribute* secondAttribute;
    bool backward;
    bool secondBackward;
    std::string transform;
    std::string secondTransform;
    std::unique_ptr<Transformer> transformer;
    std::unique_ptr<Transformer> secondTransformer;
};

// Note-aware operations on a vector of notes.
namespace NodeVectors {
void SortByOutlineOrder(NodeVector& v);
void SortByName(NodeVector& v);
void SortByAttribute(NodeVector& v, const std::string& attribute, bool backward = false);
void RemoveAliases(NodeVector& v);
void RemoveAdornments(NodeVector& v);
void RemoveSeparators(NodeVector& v);
void RemoveLocked(NodeVector& v);
NodeVector Unlocked(const NodeVector& v);
// The names joined with ";".
std::string TitleList(const NodeVector& v);
bool SameParent(const NodeVector& v);
bool AnyElementIsDescendedFrom(const NodeVector& v, const Node* ancestor);
// The text every note shares for an attribute, or "" when they differ.
std::string SharedValue(const NodeVector& v, const std::string& attribute);
} // namespace NodeVectors

// The values in use of an attribute across a document, with its suggested
// values: for the editors' suggestions.
class ValueList {
public:
    ValueList(const Node* note, const std::string& attribute);
    std::vector<std::string> Values() const;

private:
    const Node* note;
    std::string attribute;
};
