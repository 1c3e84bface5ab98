#pragma once
// Facades that each add one concern to NodeFacade: naming, placing, making,
// deleting, collecting, defaults and text.
#include <string>

#include "NodeFacade.h"
#include "SGeometry.h"
#include "StyledText.h"

class Content;

class NodeName : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    // The name a duplicate of the note gets.
    std::string MakeNameForDuplicate(const std::string& name) const;
    // A name made from the note's text.
    std::string MakeName(const std::string& text) const;
    static std::string Increment(const std::string& name);
    static bool IsACopy(const std::string& name);
    static bool IsANumber(const std::string& text);
};

class NodePosition : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    // Where a note placed among `parent`'s children beside `sibling` goes on the map.
    SPoint FindAPlaceNear(Node* parent, Node* sibling) const;
    SPoint CalculateMapPosition(Node* parent, Node* elder, Node* brother) const;
    void DoMoveTo(Node* parent, Node* after) const;
    void DoMoveTo(Node* parent, double x, double y) const;
    void DoMoveTo(Node* parent, const SPoint& p) const { DoMoveTo(parent, p.x, p.y); }
    void DoMoveToInternal(Node* parent, Node* after, double x, double y) const;
    void DoMoveToInternalWithoutOnAdd(Node* parent, Node* after, double x, double y) const;
    // Links the note into the tree; answers whether its father changed.
    bool InitializePosition(Node* parent, Node* after, double x, double y) const;
    // The same without giving the note a position: for a note whose position
    // comes later (from a file), so that none is made only to be replaced.
    bool PlaceWithoutPosition(Node* parent, Node* after) const;
    SPoint GetPosition() const;
    void SetPosition(double x, double y) const;
    void SetPosition(const SPoint& p) const { SetPosition(p.x, p.y); }
    void SetSize(double width, double height) const;
    double GetWidth() const;
    double GetHeight() const;
    long SiblingOrder() const;
    void AboutToMove(Node* oldFather, Node* newFather) const {}
    void JustMoved(bool moved, const NodeVector& adornments) const;

private:
    bool Place(Node* parent, Node* after, bool withPosition, double x, double y) const;
};

class NodeCollections : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    NodeVector Ancestors() const;
    NodeVector ChildrenOf() const;
    NodeVector Descendants() const;
    NodeVector All() const;
    NodeVector Adornments() const;
    NodeVector Siblings() const;
    NodeVector YoungerSiblings() const;
    NodeVector ThisAndYoungerSiblings() const;
};

class NodeDefaults : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    const Attribute* GetAttribute(const std::string& name) const;
    const Value* GetDefault(const std::string& name) const;
    std::string GetDefaultAsString(const std::string& name) const;
    double GetDefaultAsDouble(const std::string& name) const;
    bool GetDefaultAsBoolean(const std::string& name) const;
    // The note's value comes from the attribute's default: it holds none and
    // inherits none.
    bool UsesDefault(const std::string& name) const;
    bool UsesDefault(const Attribute* attribute) const;
    // The note holds a value of its own.
    bool HasImmediate(const std::string& name) const;
    bool HasImmediate(const Attribute* attribute) const;
    void SetDefaultValue(const std::string& name, const std::string& text) const;
    long UniqueValueLimit() const;
};

class NodeDeleter : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    void Hide(bool hide) const;
    // Hides and then destroys the note with its subtree.
    void Delete() const;
};

class NodeText : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    Content* GetContent() const;
    std::string GetText() const;
    void SetText(const std::string& text) const;
    bool HasText() const;
    long TextSize() const;
    long WordCount() const;
    long EstimatedNoteSize() const;
    long ImageCount() const;
    bool HasRTF() const;
    std::string GetRTF() const;
    void SetRTF(const std::string& rtf) const;
    bool HasRTFD() const;
    std::string GetRTFD() const;
    void SetRTFD(const std::string& rtfd) const;
    void CopyContentFrom(const Node* source) const;

    // Styled text (see Content).
    StyledText CreateAttributedString() const;
    void SetRTFD(const StyledText& styled) const;
    void Append(const std::string& text) const;
    int PictureCount() const;
    std::string GetPicture(int n) const;
    int GetPicturePosition(int n) const;
    TextAlignment Justification() const;
    std::string TextFont() const;
    double TextFontSize() const;
};

// The way other subsystems make notes.
class NodeMaker {
public:
    NodeMaker(Hypertext* h) : hypertext(h) {}
    NodeMaker(const Node* n);

    // A null parent means the root.
    Node* MakeNode(const std::string& name, Node* parent, Node* after, double x, double y) const;
    // Without Initialize and renumbering: for readers.
    Node* MakeDontInitialize(const std::string& name, Node* parent, Node* after, double x, double y) const;
    Node* Make(const std::string& name, Node* parent, Node* after) const;
    Node* MakeAlias(Node* original) const;
    Node* MakeAlias(Node* original, Node* parent, Node* after) const;
    Node* MakeAlias(Node* original, Node* parent, Node* after, double x, double y) const;
    Attribute* MakeAttribute(const std::string& name, const std::string& category, bool editable, int type) const;

private:
    Hypertext* hypertext;
};
