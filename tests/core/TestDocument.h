#pragma once
// Helpers for core tests: a document and a quick way to make notes.
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"

inline Node* MakeNote(Hypertext& doc, const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
    return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
}
