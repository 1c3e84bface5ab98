#pragma once
// Attribute definitions. An Attribute is the definition of one attribute of a
// document (name, type, default, flags, place in the category tree); it exists
// once per document. Notes store only the values that differ from what they
// would otherwise get, in their PropertyList.
#include <cstdint>
#include <optional>
#include <string>

#include "ArgList.h"
#include "AttributeType.h"
#include "Change.h"
#include "RylSerial.h"
#include "Tree.h"
#include "Value.h"

class Hypertext;
class Node;
class Prefs;
class Value;

class Attribute : public TTree<Attribute*>, public AttributeType {
public:
    Attribute(const std::string& name, int type, bool editable = true);
    ~Attribute() override;

    // Whether a note's local value must be written to a file.
    virtual bool NeedToWrite(const Node* note, const Attribute* attribute, const Value* value) const;
    virtual void Sort();
    // A new value the caller owns: ValueFor and Clone on this attribute's
    // clone queue; for an attribute that reads other notes, its text
    // computed afresh, outside the queue.
    virtual Value* ClonedValueFor(const Node* note) const;
    // Whether a read of this attribute reads other notes (their names, the
    // original's aliases, what a hook gives), taking each one's lock. Such a
    // read must hold no note lock and no clone queue (see Node.cpp on the
    // order of the locks), so it is computed afresh by ComputeText.
    virtual bool ReadsOtherNotes() const { return false; }
    // The text a read of `note` answers, for an attribute that reads other
    // notes; "" for the rest.
    virtual std::string ComputeText(const Node* note) const { return ""; }
    // Converts the value a read of `note` answers in place, on this
    // attribute's clone queue as ClonedValueFor reads it, when the value
    // reads as its clone; nothing otherwise (the caller then converts a
    // clone, outside the queue). `convert` must take no other lock.
    template <typename F>
    auto ReadInPlace(const Node* note, F&& convert) const
        -> std::optional<decltype(convert(static_cast<const Value*>(nullptr)))> {
        using Answer = std::optional<decltype(convert(static_cast<const Value*>(nullptr)))>;
        if (ReadsOtherNotes())
            return std::nullopt;
        auto read = [&]() -> Answer {
            const Value* value = ValueFor(note);
            if (value && value->ReadsAsItsClone())
                return convert(value);
            return std::nullopt;
        };
        if (ReadsStoredValuesOnly())
            return read();
        return cloneQueue.Sync(read);
    }
    // Whether a read answers a stored value (the note's, its prototypes' or
    // the default) and keeps nothing between reads. Such a read is made
    // under the note's lock alone, without the clone queue: writes to the
    // note's values take that lock, a replaced value goes to the document's
    // deferred deletion, and the queue only guards what computed
    // attributes keep between reads.
    virtual bool ReadsStoredValuesOnly() const { return false; }

    // The value a read of `note` answers (borrowed).
    virtual const Value* ValueFor(const Node* note) const = 0;
    // The value `note` holds itself or inherits, without the default (borrowed).
    virtual const Value* ImmediateValue(const Node* note) const = 0;
    // Stores `value` for `note`; the attribute takes ownership of it.
    virtual void Set(Node* note, const Value* value) = 0;
    virtual void Remove(Node* note) = 0;

    virtual std::string Category() const;
    virtual bool IsAttributeCategory() const { return HasChildren(); }
    virtual void SetDefault(Value* value) = 0;
    virtual void SetDefault(const std::string& text);
    virtual void SetDefaultBoolean(bool value);
    virtual const Value* GetDefaultValue(const Node* note) const = 0;
    virtual const Value* GetTheDefaultValue() const = 0;
    virtual std::string GetDefaultValueAsString(const Node* note) const;
    virtual std::string GetDefaultValueAsString() const;
    virtual std::string GetDefaultValueAsXML(const Hypertext* hypertext) const;
    virtual void NewlyCreated(Node* note) {}
    virtual void SetEditable(bool e) { editable = e; }
    virtual bool IsEditable() const { return editable; }
    virtual bool IsHidden() const { return hidden; }
    virtual void Hide(bool h) { hidden = h; }
    virtual bool IsValid() const { return true; }
    // Sorts the ";"-items of a set or dictionary value and stores them again.
    virtual void Normalize(Node* note);
    virtual bool IsPreferenceAttribute() const { return false; }
    virtual bool IsUserAttribute() const;
    virtual int GetKind() const { return 0; }
    virtual bool VisibleInEditor() const { return visibleInEditor; }
    virtual void VisibleInEditor(bool v) { visibleInEditor = v; }
    virtual void SetName(const std::string& newName);
    virtual void SetType(int t) { attributeType = t; }
    virtual int GetType() const { return attributeType; }
    virtual void SetTypeString(const std::string& word) { SetType(AttributeType::FromString(word)); }
    virtual std::string GetTypeString() const { return AttributeType::TypeStringFor(GetType()); }
    virtual bool IsString() const { return GetType() == kString; }
    virtual bool IsSet() const { return GetType() == kSet; }
    virtual bool IsList() const { return GetType() == kList; }
    virtual bool IsAction() const { return GetType() == kAction; }
    virtual bool IsColor() const { return GetType() == kColor; }
    virtual bool IsBoolean() const { return GetType() == kBoolean; }
    virtual bool IsDate() const { return GetType() == kDate; }
    virtual bool IsNumber() const { return GetType() == kNumber; }
    virtual bool IsInterval() const { return GetType() == kInterval; }
    virtual bool IsDictionaryAttribute() const { return GetType() == kDictionary; }
    virtual void BeSequential(bool s = true) { sequential = s; }
    virtual bool IsSequential() const { return sequential; }
    virtual unsigned long GetChangeFacets() const { return changeFacets; }
    virtual void Changes(unsigned long mask) { changeFacets = mask; }
    virtual void AlsoChanges(unsigned long mask) { changeFacets |= mask; }
    virtual bool CanInherit() const { return canInherit != 0; }
    bool CanInheritFast() const { return canInherit != 0; }
    // A bit that stands for this attribute in a note's summary of the values
    // it holds (several attributes share each bit).
    uint64_t SummaryBit() const { return summaryBit; }
    virtual void CanInherit(bool c) { canInherit = c ? 1 : 0; }
    // Tells a note that this attribute's value changed.
    virtual void Changed(Node* note) const;
    // Brings the definition up to date with a document: numbers sequential notes.
    virtual void Initialize(Hypertext* hypertext);
    virtual std::string Reformat(const std::string& text) const { return text; }
    virtual std::string Deformat(const std::string& text) const { return text; }
    virtual const std::string& Description() const { return description; }
    virtual void SetDescription(const std::string& d) { description = d; }
    virtual const ArgList& SuggestedValues() const { return suggestedValues; }
    virtual void SuggestedValues(const std::string& list);
    virtual bool IsDeprecated() const { return false; }
    virtual void InitializeSequentialValue(Node* note);

    const std::string& Name() const { return name; }
    // The type's name as shown to users; empty beyond 12.
    static std::string NameOfType(int code);
    static bool IsValidAttributeName(const std::string& name);

protected:
    mutable RylSerial cloneQueue;
    std::string name;
    std::string description;
    int attributeType;
    bool editable = true;
    bool sequential = false;
    bool hidden = false;
    bool visibleInEditor = true;
    unsigned char canInherit = 1;
    unsigned long changeFacets = 0;
    ArgList suggestedValues;
    uint64_t summaryBit;
};

// A value stored in notes: the general case.
class BasicAttribute : public Attribute {
public:
    BasicAttribute(const std::string& name, int type, bool editable = true);
    ~BasicAttribute() override;

    const Value* ValueFor(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override;
    // True for this class; a subclass whose reads compute or cache anything
    // answers false.
    bool ReadsStoredValuesOnly() const override { return true; }
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;
    void SetDefault(Value* value) override;
    using Attribute::SetDefault;
    const Value* GetDefaultValue(const Node* note) const override;
    const Value* GetTheDefaultValue() const override { return defaultValue.get(); }
    void SetType(int t) override;
    void NewlyCreated(Node* note) override;

    virtual Value* InitialDefaultValue() const;
    virtual void WillSet(Node* note, const Value* value) {}

protected:
    ValuePtr defaultValue;
};

class DeprecatedAttribute : public BasicAttribute {
public:
    using BasicAttribute::BasicAttribute;
    bool IsDeprecated() const override { return true; }
};

// An old name kept for files and code that still use it; everything goes to
// the attribute that replaced it.
class RenamedAndDeprecatedAttribute : public BasicAttribute {
public:
    RenamedAndDeprecatedAttribute(const std::string& name, int type, bool editable, Attribute* target);
    const Value* ValueFor(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override;
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;
    void SetDefault(Value* value) override;
    using BasicAttribute::SetDefault;
    const Value* GetDefaultValue(const Node* note) const override;
    const Value* GetTheDefaultValue() const override;
    std::string Category() const override;
    bool IsDeprecated() const override { return true; }
    bool ReadsOtherNotes() const override;
    std::string ComputeText(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return target ? target->ReadsStoredValuesOnly() : true; }
    Attribute* Target() const { return target; }

private:
    Attribute* target;
};

// Answers false for no note and for adornments, else its default.
class ShadowAttribute : public BasicAttribute {
public:
    using BasicAttribute::BasicAttribute;
    const Value* GetDefaultValue(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }

private:
    mutable Value* falseValue = nullptr;
};

// Keeps alive the one value a computed read last answered: the reader
// borrows it until the next read of the same attribute replaces it. Replaced
// values go to the document's deferred deletion.
class ComputedValueSlot {
public:
    ComputedValueSlot() = default;
    ComputedValueSlot(const ComputedValueSlot&) = delete;
    ComputedValueSlot& operator=(const ComputedValueSlot&) = delete;
    ~ComputedValueSlot();
    // Replaces the kept value with `fresh`.
    const Value* Keep(const Node* note, Value* fresh) const;
    // Reuses the kept value when its text is unchanged.
    const Value* KeepText(const Node* note, const std::string& text) const;
    // Reuses the kept value when it is the integer `n`.
    const Value* KeepInteger(const Node* note, long n) const;

private:
    mutable Value* cached = nullptr;
};

class ReadOnlyAttribute : public BasicAttribute {
public:
    using BasicAttribute::BasicAttribute;
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;
    bool ReadsStoredValuesOnly() const override { return false; }

protected:
    const Value* KeepString(const Node* note, const std::string& text) const { return slot.KeepText(note, text); }
    ComputedValueSlot slot;
};

// An integer computed from the note.
class CachedAttribute : public ReadOnlyAttribute {
public:
    CachedAttribute(const std::string& name) : ReadOnlyAttribute(name, kNumber, false) {}
    const Value* ValueFor(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
    virtual long DoGetValue(const Node* note) const = 0;
};

// The default comes from the document's preferences, chosen by `kind`.
class PreferenceAttribute : public BasicAttribute {
public:
    PreferenceAttribute(const std::string& name, int kind, int type, bool editable);
    bool IsPreferenceAttribute() const override { return true; }
    int GetKind() const override { return kind; }
    // The default is made afresh from the preferences on each read.
    bool ReadsStoredValuesOnly() const override { return false; }
    const Value* GetDefaultValue(const Node* note) const override;
    virtual const Value* GetDefaultValue(const Prefs* prefs) const;
    void SetDefault(Value* value) override;
    using BasicAttribute::SetDefault;
    std::string GetDefaultValueAsXML(const Hypertext* hypertext) const override;

private:
    Value* MakePreferenceValue(const Prefs* prefs) const;
    int kind;
};

class NullAttribute : public BasicAttribute {
public:
    NullAttribute(const std::string& name) : BasicAttribute(name, kString, false) {}
    void Set(Node* note, const Value* value) override;
    void Remove(Node*) override {}
    bool IsValid() const override { return false; }
};

// Orders attributes by name, byte-wise.
struct AttributeComparator {
    bool operator()(const Attribute* a, const Attribute* b) const { return a->Name() < b->Name(); }
};

// Valid attributes first, then by name.
class AttributeNameComparator : public TreeComparison {
public:
    bool operator()(const Tree* a, const Tree* b) const override;
};
