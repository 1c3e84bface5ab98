#pragma once
// Calls from the document core into layers built on top of it (the action
// language, export, the application). The core cannot include those layers;
// they install these functions when they start. With nothing installed the
// core does without: no event actions run, names stand for display names.
#include <functional>
#include <string>

class Node;
class NodeVector;

struct CoreHooks {
    // Runs the OnAdd action of `father` for a note just added under it.
    std::function<void(Node* note, Node* father)> onAdd;
    // Runs the OnRemove action of the note's former father.
    std::function<void(Node* note, Node* oldFather)> onRemove;
    // Runs the actions of adornments the note now stands on.
    std::function<void(Node* note, const NodeVector& oldAdornments)> onAdornments;
    // The note's display name (its DisplayExpression).
    std::function<std::string(const Node* note)> displayName;
    // Resolves a path or designator from a note.
    std::function<Node*(Node* from, const std::string& path)> findPath;
    // The note's file name in an export.
    std::function<std::string(const Node* note)> exportFileName;
    // Rewrites text links that used a note's old name.
    std::function<void(Node* note, const std::string& oldName)> renameTextLinks;
    // The note's URL.
    std::function<std::string(const Node* note)> noteURL;
    // A note's text or name changed: the similarity index reindexes it.
    std::function<void(Node* note)> textChanged;
};

CoreHooks& GetCoreHooks();
