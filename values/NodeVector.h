#pragma once
// An ordered group of notes, without ownership. This is the container part of
// the collection; operations that need the notes themselves (sorting by
// outline order, shared values, ...) live with the notes as free functions.
#include <algorithm>
#include <string>
#include <vector>

class Node;

class NodeVector : public std::vector<Node*> {
public:
    using std::vector<Node*>::vector;

    // Appends only when the note is absent.
    void Add(Node* node) {
        if (!HasNode(node)) push_back(node);
    }
    // Adds at the front.
    void Insert(Node* node) { insert(begin(), node); }
    // Removes the first occurrence.
    void Remove(Node* node) {
        auto it = std::find(begin(), end(), node);
        if (it != end()) erase(it);
    }
    bool HasNode(const Node* node) const { return std::find(begin(), end(), node) != end(); }
    // The position of the note, -1 when absent.
    long IndexOf(const Node* node) const {
        auto it = std::find(begin(), end(), node);
        return it == end() ? -1 : static_cast<long>(it - begin());
    }
    // The first and last notes, null when empty.
    Node* First() const { return empty() ? nullptr : front(); }
    Node* Last() const { return empty() ? nullptr : back(); }
    // Appends every note of `other`, duplicates included.
    void Append(const NodeVector& other) { insert(end(), other.begin(), other.end()); }
    void reverse() { std::reverse(begin(), end()); }

    // The notes' paths joined with ";", through the hook the document layer
    // installs; "" without one.
    std::string PathString() const;
};
