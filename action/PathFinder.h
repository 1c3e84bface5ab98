#pragma once
// The shortest chain of links from one note to another: a breadth-first walk
// over outbound links whose type is one of the given types.
#include <string>

#include "NodeVector.h"

class Node;

class PathFinder {
public:
    // `linkTypes` is a ";"-separated list of link type names; "" or "*"
    // takes every type. A null `to` asks for no particular end.
    PathFinder(Node* from, Node* to, const std::string& linkTypes);
    virtual ~PathFinder();

    // The notes from `from` to `to`, both included; empty when `to` cannot be
    // reached. Without `to`, the last path the walk tried. Each note is
    // visited once, so the walk ends on documents with cycles.
    virtual NodeVector Run();
    // The answer of the last Run.
    const NodeVector& Path() const { return path; }

private:
    Node* from;
    Node* to;
    std::string linkTypes;
    NodeVector path;
};
