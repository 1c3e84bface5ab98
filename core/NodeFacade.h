#pragma once
// Small wrappers through which code reaches notes and documents. Each holds a
// possibly null pointer and nothing else, and answers safely on null.
#include <functional>
#include <string>
#include <vector>

#include "Node.h"
#include "PColor.h"
#include "STime.h"

class Attribute;
class Change;
class Hypertext;
class Value;

class HypertextFacade {
public:
    HypertextFacade(Hypertext* h) : hypertext(h) {}
    HypertextFacade(const Hypertext* h) : hypertext(const_cast<Hypertext*>(h)) {}
    virtual ~HypertextFacade() = default;

    static Hypertext* NoHypertext();

    Hypertext* Get() const { return hypertext; }
    virtual bool Valid() const;
    bool Invalid() const { return !Valid(); }
    virtual bool IsClosing() const;
    virtual bool CanEdit() const { return Valid(); }
    virtual bool CanCreateNodes() const { return Valid(); }
    virtual Node* Root() const;
    virtual Node* FirstNode() const;
    // Every note from the root through Next (root included), stopping early
    // when the document starts closing.
    virtual void Apply(const std::function<void(Node*)>& block) const;
    virtual void Apply(const std::function<bool(Node*)>& block, bool stopWhenFalse) const;
    virtual NodeVector Collect(const std::function<bool(Node*)>& accept) const;
    virtual NodeVector Nodes() const;
    virtual long Count(const std::function<bool(Node*)>& accept) const;
    // The first note in outline order that the block accepts.
    virtual Node* First(const std::function<bool(Node*)>& accept) const;
    virtual long NodeCount() const;
    // Resolves a colour text: a literal colour, else a name in the document's colour table.
    virtual PColor TranslateColor(const std::string& text) const;
    virtual std::string DocumentName() const;
    virtual void Renamed(Node* node) const;
    virtual void DeleteValue(const Value* value) const;
    virtual bool DontRename() const;
    virtual void DontRename(bool d) const;
    virtual void DocumentHasChanged() const;

protected:
    Hypertext* hypertext;
};

class NodeFacade {
public:
    NodeFacade(Node* n) : node(n) {}
    NodeFacade(const Node* n) : node(const_cast<Node*>(n)) {}
    virtual ~NodeFacade() = default;

    operator Node*() const { return node; }
    Node* GetNode() const { return node; }
    bool operator==(const NodeFacade& other) const { return node == other.node; }

    virtual Hypertext* GetHypertext() const;
    virtual bool IsClosing() const;
    virtual uint32_t GetID() const;
    virtual std::string Creator() const;
    virtual long OutlineOrder() const;
    virtual std::string GetString(const std::string& name) const;
    virtual std::string GetString(const Attribute* attribute) const;
    virtual long GetLong(const std::string& name) const;
    virtual unsigned long GetUnsignedLong(const std::string& name) const;
    virtual bool GetBoolean(const std::string& name) const;
    virtual double GetDouble(const std::string& name) const;
    virtual PColor GetColor(const std::string& name) const;
    virtual STime GetDate(const std::string& name) const;

    virtual Node* Son() const;
    virtual Node* YoungestSon() const;
    virtual Node* Father() const;
    virtual Node* Brother() const;
    virtual Node* ElderBrother() const;
    virtual Node* EldestBrother() const;
    virtual Node* Next() const;
    virtual Node* Previous() const;
    virtual Node* Sentinel() const;
    virtual Node* Root() const;

    virtual void Set(const std::string& name, const std::string& text) const;
    virtual void Set(const std::string& name, const Value* value) const;
    virtual void Set(const Attribute* attribute, const Value* value) const;
    virtual void SetBoolean(const std::string& name, bool b) const;
    virtual void SetString(const std::string& name, const std::string& text) const;
    virtual void SetDouble(const std::string& name, double d) const;
    virtual void SetLong(const std::string& name, long l) const;
    virtual void SetTime(const std::string& name, const STime& t) const;
    virtual void SetColor(const std::string& name, const std::string& color) const;
    virtual void SetSet(const std::string& name, const std::string& items) const;
    virtual void ToggleBoolean(const std::string& name) const;
    virtual void Remove(const std::string& name) const;
    virtual Node* GetPrototype() const;
    virtual void SetPrototype(Node* prototype) const;
    virtual Node* GetOriginal() const;
    virtual STime Modified() const;
    virtual void HasBeenModified() const;
    virtual std::string Name() const;
    // Tells the index and, for user-visible renames, the text links.
    virtual void Renamed(const std::string& oldName) const;
    virtual std::string DisplayName() const;
    virtual void Changed(unsigned long mask) const;
    virtual void Changed(const Attribute* attribute) const;
    virtual bool HasChildren() const;
    virtual long ChildCount() const;
    virtual long DescendantCount() const;
    virtual bool Invalid() const;
    virtual bool Valid() const { return !Invalid(); }
    virtual void ApplyToChildren(const std::function<void(Node*)>& block) const;
    virtual bool AnyChild(const std::function<bool(Node*)>& test) const;
    virtual Node* First(const std::function<bool(Node*)>& test) const;
    // Descendants in preorder, walked by Next up to the Sentinel.
    virtual void Enumerate(const std::function<void(Node*)>& block) const;
    virtual void EnumerateWithSelf(const std::function<void(Node*)>& block) const;
    virtual NodeVector Collect(const std::function<bool(Node*)>& accept) const;
    virtual NodeVector Children() const;
    virtual bool IsAgent() const;
    virtual bool IsAlias() const;
    virtual bool IsContainer() const;
    virtual bool IsAdornment() const;
    virtual bool IsSmartAdornment() const;
    virtual bool IsSeparator() const;
    virtual bool IsTemplate() const;
    virtual bool IsComposite() const;
    virtual bool IsRoot() const;
    virtual bool IsTopLevel() const;
    virtual bool IsHidden() const;
    virtual bool IsLocked() const;
    virtual bool ReadOnly() const;
    virtual bool CanBeAliased() const;
    virtual bool IsDescendedFrom(const Node* ancestor) const;
    virtual bool CanReceiveChildren() const;
    virtual bool HasSubtitle() const;
    virtual bool IsUntitled() const;
    // The note's path, the one form every part of the program writes: "/"
    // then the names below the root from the top down, "/" between, names
    // as they are; the root is "/". ("" for no note.)
    virtual std::string HTPath() const { return HTPath(false); }
    // The same, with a "/" or a backslash inside a name preceded by a backslash when
    // `escapeNames` is set: the form the command line prints and reads back.
    std::string HTPath(bool escapeNames) const;
    virtual bool CanCreateNodes() const;

protected:
    Node* node;
};

// Reports changes of notes to the document's change collector.
class ChangeFacade : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    void Changed(unsigned long mask) const override;
    void SetModified(bool modified) const;
};

// Holds the delivery of changes until the outermost guard ends.
class StChanges {
public:
    explicit StChanges(Hypertext* hypertext);
    ~StChanges();
    StChanges(const StChanges&) = delete;
    StChanges& operator=(const StChanges&) = delete;

private:
    Change* changes;
};

class NodeSelection : public NodeFacade {
public:
    using NodeFacade::NodeFacade;
    bool IsSelected() const;
    void Select() const;
    void Deselect() const;
    void ToggleSelection() const;
};
