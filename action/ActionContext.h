#pragma once
// What an evaluation knows about the situation it runs in: the agent whose
// query runs, the note a query tests (`that`), the adornment, the note being
// exported, the link being followed, the notes being dragged and the word a
// text query looks at. Designators such as `agent`, `that` and `source` read
// it. Copied into each MatchList.
#include <memory>
#include <string>

#include "NodeVector.h"
#include "RylSerial.h"

class Link;
class Node;

class ActionContext {
public:
    ActionContext() = default;
    ActionContext(const ActionContext&) = default;
    ActionContext& operator=(const ActionContext&) = default;
    virtual ~ActionContext() = default;

    virtual Node* CurrentAgent() const { return agent; }
    virtual void CurrentAgent(Node* n) { agent = n; }
    virtual Node* CurrentThat() const { return that; }
    virtual void CurrentThat(Node* n) { that = n; }
    virtual Node* CurrentAdornment() const { return adornment; }
    virtual void CurrentAdornment(Node* n) { adornment = n; }
    virtual Node* CurrentExport() const { return exported; }
    virtual void CurrentExport(Node* n) { exported = n; }
    // The notes being dragged, read and written through the context's queue.
    virtual bool IsDragging() const;
    virtual void IsDragging(const NodeVector& notes);
    virtual NodeVector DraggedNotes() const;
    virtual bool Inhibited() const { return inhibited; }
    virtual void Inhibited(bool i) { inhibited = i; }
    virtual Link* CurrentLink() const { return link; }
    virtual void CurrentLink(Link* l) { link = l; }
    virtual const std::string& CurrentPath() const { return path; }
    virtual void CurrentPath(const std::string& p) { path = p; }
    // The ends of the current link, or null.
    virtual Node* CurrentSource() const;
    virtual Node* CurrentDestination() const;
    virtual const std::string& CurrentWord() const { return word; }
    virtual void CurrentWord(const std::string& w) { word = w; }
    // The serial queue shared by every context for the dragged notes.
    static RylSerial& Queue();

private:
    Node* agent = nullptr;
    Node* that = nullptr;
    Node* adornment = nullptr;
    Node* exported = nullptr;
    Link* link = nullptr;
    std::string path;
    bool inhibited = false;
    std::shared_ptr<NodeVector> dragged;
    std::string word;
};
