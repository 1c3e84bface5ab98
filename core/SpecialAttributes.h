#pragma once
// Attributes whose values are computed from the note or whose writes do more
// than store a value.
#include "Attribute.h"

// Marks a note as a prototype; the write is only noted for usage figures.
class IsPrototypeAttribute : public BasicAttribute {
public:
    IsPrototypeAttribute(const std::string& name) : BasicAttribute(name, kBoolean, true) {}
    void WillSet(Node* note, const Value* value) override;
    static long SetCount();
};

// The note's name: read and written on the original, and the index is told.
class NameAttribute : public BasicAttribute {
public:
    NameAttribute(const std::string& name) : BasicAttribute(name, kString, true) {}
    const Value* ValueFor(const Node* note) const override;
    // A stored value of the original, kept nowhere else: read through the
    // original, it is read under the lock that guards it.
    bool ReadsStoredValuesOnly() const override { return true; }
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;
};

// The note's plain text; writing it replaces the styled forms.
class TextAttribute : public BasicAttribute {
public:
    TextAttribute(const std::string& name) : BasicAttribute(name, kString, true) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;

private:
    ComputedValueSlot slot;
};

// The note's path from the root: "/a/b".
class PathAttribute : public ReadOnlyAttribute {
public:
    PathAttribute(const std::string& name) : ReadOnlyAttribute(name, kString, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
};

// The names of the inheritable attributes the note sets itself, in tree order.
class LocalAttribute : public ReadOnlyAttribute {
public:
    LocalAttribute(const std::string& name) : ReadOnlyAttribute(name, kSet, false) {}
    const Value* ValueFor(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
};

// Where the note goes in an HTML export.
class HTMLExportPathAttribute : public ReadOnlyAttribute {
public:
    HTMLExportPathAttribute(const std::string& name) : ReadOnlyAttribute(name, kString, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
};

class NoteURLAttribute : public ReadOnlyAttribute {
public:
    NoteURLAttribute(const std::string& name) : ReadOnlyAttribute(name, kString, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
};

class DisplayNameAttribute : public ReadOnlyAttribute {
public:
    DisplayNameAttribute(const std::string& name) : ReadOnlyAttribute(name, kString, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override { return ValueFor(note); }
};

// Answers whether the note is an alias.
class AliasAttribute : public BasicAttribute {
public:
    AliasAttribute(const std::string& name) : BasicAttribute(name, kBoolean, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
};

// Answers whether the note is an adornment.
class AdornmentAttribute : public BasicAttribute {
public:
    AdornmentAttribute(const std::string& name) : BasicAttribute(name, kBoolean, false) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
};

// The timeline's second scale colour: its value, or the map background when
// that value is the default.
class TimelineScaleColor2Attribute : public BasicAttribute {
public:
    TimelineScaleColor2Attribute(const std::string& name) : BasicAttribute(name, kColor, true) {}
    ~TimelineScaleColor2Attribute() override;
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }

private:
    mutable Value* black = nullptr;
};

// The name of the note's prototype; writing it changes the prototype.
class PrototypeAttribute : public BasicAttribute {
public:
    PrototypeAttribute(const std::string& name) : BasicAttribute(name, kString, true) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override;
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;

private:
    ComputedValueSlot slot;
};

// The paths of the original's aliases.
class AliasesAttribute : public BasicAttribute {
public:
    AliasesAttribute(const std::string& name) : BasicAttribute(name, kList, true) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;

private:
    ComputedValueSlot slot;
};

// The path of the note's father; writing it moves the note.
class ParentAttribute : public BasicAttribute {
public:
    ParentAttribute(const std::string& name) : BasicAttribute(name, kString, true) {}
    const Value* ValueFor(const Node* note) const override;
    bool ReadsStoredValuesOnly() const override { return false; }
    bool ReadsOtherNotes() const override { return true; }
    std::string ComputeText(const Node* note) const override;
    const Value* ImmediateValue(const Node* note) const override;
    void Set(Node* note, const Value* value) override;
    void Remove(Node* note) override;

private:
    ComputedValueSlot slot;
};

// Computed counts.
#define RYL_CACHED_ATTRIBUTE(ClassName)                                          \
    class ClassName : public CachedAttribute {                                   \
    public:                                                                      \
        ClassName(const std::string& name) : CachedAttribute(name) {}            \
        long DoGetValue(const Node* note) const override;                        \
    };
RYL_CACHED_ATTRIBUTE(WordCountAttribute)
RYL_CACHED_ATTRIBUTE(ImageCountAttribute)
RYL_CACHED_ATTRIBUTE(NoteSizeAttribute)
RYL_CACHED_ATTRIBUTE(ChildCountAttribute)
RYL_CACHED_ATTRIBUTE(AdornmentCountAttribute)
RYL_CACHED_ATTRIBUTE(DescendantCountAttribute)
RYL_CACHED_ATTRIBUTE(TextLengthAttribute)
RYL_CACHED_ATTRIBUTE(OutlineOrderAttribute)
RYL_CACHED_ATTRIBUTE(InboundLinksAttribute)
RYL_CACHED_ATTRIBUTE(OutboundLinksAttribute)
RYL_CACHED_ATTRIBUTE(WebLinksAttribute)
RYL_CACHED_ATTRIBUTE(TextLinksAttribute)
RYL_CACHED_ATTRIBUTE(PlainLinksAttribute)
RYL_CACHED_ATTRIBUTE(SiblingOrderAttribute)
RYL_CACHED_ATTRIBUTE(OutlineDepthAttribute)
#undef RYL_CACHED_ATTRIBUTE

// Link counts; the document's link store answers unless another counter is installed.
struct LinkCounts {
    long inbound = 0;   // less prototype and hidden links
    long outbound = 0;  // less prototype, web and hidden links
    long web = 0;       // outbound web links of the original
    long text = 0;      // outbound text links of the original
    long plain = 0;     // outbound links of the note itself that are not text links
};
using LinkCounter = LinkCounts (*)(const Node* note);
void SetLinkCounter(LinkCounter counter);
