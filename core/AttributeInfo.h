#pragma once
// Questions about attributes, asked of a document (and of its root note).
#include <functional>
#include <string>
#include <vector>

#include "NodeFacade.h"

class Attribute;
class Props;

class AttributeInfo : public HypertextFacade, public NodeFacade {
public:
    AttributeInfo(Hypertext* h);
    AttributeInfo(Node* n);

    Props* AttributeStorage() const;
    Attribute* RootAttribute() const;
    // Drops a leading "$"; an empty name gives null; an unknown one "NoSuchAttribute".
    Attribute* GetAttribute(const std::string& name) const;
    bool HasAttribute(const std::string& name) const;
    long GetCount() const;
    std::vector<Attribute*> Categories() const;
    std::vector<Attribute*> AttributesFor(const std::string& category) const;
    std::vector<std::string> AttributeNamesStartingWith(const std::string& prefix) const;
    std::vector<std::string> AttributeNamesContaining(const std::string& part) const;
    bool HasUserAttributes() const { return CountUserAttributes() > 0; }
    long CountUserAttributes() const;
    long CountSystemAttributes() const;
    std::vector<Attribute*> UserAttributeList() const;
    Attribute* UserAttribute(long index) const;
    void EachUserAttribute(const std::function<void(Attribute*)>& block) const;

    // A user attribute: made under "User", its name cleaned of blanks and symbols.
    Attribute* CreateBasicAttribute(const std::string& name, const std::string& category, bool editable,
                                    int type) const;
    Attribute* CreatePreferenceAttribute(const std::string& name, const std::string& category, int kind,
                                         bool editable, int type) const;
    void RemoveAttribute(const std::string& name) const;
    // Renames an attribute and carries every note's own value over to the new name.
    void RenameAttribute(Attribute* attribute, const std::string& newName) const;
    // Rewrites the note's DisplayedAttributes list for a renamed attribute.
    void RenameKeyAttribute(Node* node, const std::string& oldName, const std::string& newName) const;

    // The default of an attribute, as written to a file.
    std::string GetDefaultValueOf(const std::string& name) const;
    void SetDefault(const std::string& name, const std::string& text) const;
    bool GetDefaultBooleanValueOf(const std::string& name) const;
    void SetDefaultBooleanValueOf(const std::string& name, bool value) const;
    void NormalizeSet(const std::string& name, Node* node) const;

    bool AttributeIsEditable(const std::string& name) const;
    bool AttributeIsReadOnly(const std::string& name) const { return !AttributeIsEditable(name); }
    void MakeAttributeReadOnly(const std::string& name) const;
    std::string CategoryForAttribute(const std::string& name) const;
    int GetAttributeType(const std::string& name) const;
    bool IsColorAttribute(const std::string& name) const;
    bool IsDateAttribute(const std::string& name) const;
    bool IsSetAttribute(const std::string& name) const;
    bool IsDictionaryAttribute(const std::string& name) const;
    bool IsListAttribute(const std::string& name) const;
    bool IsIntervalAttribute(const std::string& name) const;
    bool IsBooleanAttribute(const std::string& name) const;
    bool IsStringAttribute(const std::string& name) const;
    bool IsNumberAttribute(const std::string& name) const;
    bool AttributeCannotInherit(const std::string& name) const;
    bool IsStyledText(const std::string& name) const { return name == "Text"; }
    std::string SuggestedValues(const std::string& name) const;
    void SetSuggestedValues(const std::string& name, const std::string& values) const;
    std::string Description(const std::string& name) const;
    bool IsSequential(const std::string& name) const;
    void BeSequential(const std::string& name, bool sequential) const;
    void Sort() const;
    void UpdateOutlineOrder() const;
    Attribute* GetNameAttribute() const { return GetAttribute("Name"); }
    // Copies the inheritable values `source` holds itself to this info's root note.
    void CopyAttributesFrom(Node* source) const;
};
