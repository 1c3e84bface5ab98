#pragma once
// The built-in attribute vocabulary of every new document, kept as data.
//
// Each row is either a group (a category made under "System") or an attribute
// made under the group that precedes it. Rows stand in creation order, groups
// in build order. InitialAttributesForTalvik turns the rows into attribute
// definitions; nothing else in the program needs to know how a given system
// attribute was made.
//
// This header needs no other core header, so tools and tests can read the
// rows without building a document.
#include <cstddef>
#include <span>
#include <string_view>

// The class of attribute a row makes. Preference, renamed and deprecated
// attributes are told by their own fields of the row and stay `BasicAttribute`
// here.
enum class SystemAttributeClass : unsigned char {
    BasicAttribute,
    NameAttribute,
    TextAttribute,
    PrototypeAttribute,
    ParentAttribute,
    IsPrototypeAttribute,
    PathAttribute,
    LocalAttribute,
    HTMLExportPathAttribute,
    NoteURLAttribute,
    AliasAttribute,
    AdornmentAttribute,
    AliasesAttribute,
    DisplayNameAttribute,
    ShadowAttribute,
    TimelineScaleColor2Attribute,
    WordCountAttribute,
    ImageCountAttribute,
    NoteSizeAttribute,
    ChildCountAttribute,
    AdornmentCountAttribute,
    DescendantCountAttribute,
    TextLengthAttribute,
    OutlineOrderAttribute,
    OutlineDepthAttribute,
    SiblingOrderAttribute,
    InboundLinksAttribute,
    OutboundLinksAttribute,
    WebLinksAttribute,
    TextLinksAttribute,
    PlainLinksAttribute,
};

// Where an attribute's default comes from.
enum class SystemAttributeDefault : unsigned char {
    TypeInitial,  // the initial default of the type: 0, false, never or empty
    Text,         // `defaultText`, read with the attribute's type
    GuideColor,   // the colour of the map guides
};

// Where an attribute's suggested values come from.
enum class SystemAttributeSuggestions : unsigned char {
    None,
    ShapeNames,  // the names of the note shapes
};

struct SystemAttributeRow {
    // Type codes, the same numbers as AttributeType.
    enum TypeCode : int {
        kString = 0,
        kColor = 1,
        kNumber = 2,
        kFile = 3,
        kBoolean = 4,
        kDate = 5,
        kUnsigned = 6,
        kAction = 7,
        kSet = 8,
        kURL = 9,
        kList = 10,
        kFont = 11,
        kInterval = 12,
        kDictionary = 13,
        kRectangle = 100,
    };

    enum Flag : unsigned {
        kReadOnly = 1,     // not editable
        kNotInEditor = 2,  // left out of the attribute inspectors
        kIntrinsic = 4,    // not inherited from prototypes, kept per alias
        kInspectable = 8,  // shown by the inspectors: adds the facets 1 and 4096
    };

    bool category = false;
    // The name of the group method that makes this row (e.g. "Simplenote"
    // for the category "Watch").
    const char* group = "";
    const char* name = "";
    int type = kString;
    SystemAttributeDefault defaultKind = SystemAttributeDefault::TypeInitial;
    const char* defaultText = "";
    unsigned flags = 0;
    // The change mask given with Changes, when `hasChanges`; then the mask
    // added with AlsoChanges.
    bool hasChanges = false;
    unsigned long changes = 0;
    unsigned long alsoChanges = 0;
    // Preference kind, or -1 for an attribute whose default is its own.
    int preferenceKind = -1;
    // The attribute an old name forwards to, or "" when the name is current.
    const char* renamedTo = "";
    bool deprecated = false;
    SystemAttributeClass attributeClass = SystemAttributeClass::BasicAttribute;
    // The category to make the attribute under instead of its group's own,
    // or "". It is looked up by name when the attribute is made.
    const char* under = "";
    SystemAttributeSuggestions suggestions = SystemAttributeSuggestions::None;

    constexpr bool Is(Flag f) const { return (flags & f) != 0; }
    constexpr bool IsReadOnly() const { return Is(kReadOnly); }
    constexpr bool IsVisibleInEditor() const { return !Is(kNotInEditor); }
    constexpr bool IsIntrinsic() const { return Is(kIntrinsic); }
    constexpr bool IsInspectable() const { return Is(kInspectable); }
    constexpr bool IsPreference() const { return preferenceKind >= 0; }
    constexpr bool IsRenamed() const { return renamedTo[0] != '\0'; }
    constexpr bool HasOwnCategory() const { return under[0] != '\0'; }
    // The change mask the attribute ends with once built: Changes, then the
    // inspectable facets, then AlsoChanges.
    constexpr unsigned long ChangeFacets() const {
        unsigned long mask = hasChanges ? changes : 0;
        if (IsInspectable())
            mask |= 1 | 4096;
        return mask | alsoChanges;
    }

    // Builder steps used to write the rows.
    constexpr SystemAttributeRow Default(const char* text) const {
        SystemAttributeRow r = *this;
        r.defaultKind = SystemAttributeDefault::Text;
        r.defaultText = text;
        return r;
    }
    constexpr SystemAttributeRow DefaultGuideColor() const {
        SystemAttributeRow r = *this;
        r.defaultKind = SystemAttributeDefault::GuideColor;
        return r;
    }
    constexpr SystemAttributeRow ReadOnly() const { return With(kReadOnly); }
    constexpr SystemAttributeRow NotInEditor() const { return With(kNotInEditor); }
    constexpr SystemAttributeRow Intrinsic() const { return With(kIntrinsic); }
    constexpr SystemAttributeRow Inspectable() const { return With(kInspectable); }
    constexpr SystemAttributeRow Changes(unsigned long mask) const {
        SystemAttributeRow r = *this;
        r.hasChanges = true;
        r.changes = mask;
        return r;
    }
    constexpr SystemAttributeRow AlsoChanges(unsigned long mask) const {
        SystemAttributeRow r = *this;
        r.alsoChanges |= mask;
        return r;
    }
    constexpr SystemAttributeRow Preference(int kind) const {
        SystemAttributeRow r = *this;
        r.preferenceKind = kind;
        return r;
    }
    constexpr SystemAttributeRow RenamedTo(const char* target) const {
        SystemAttributeRow r = *this;
        r.renamedTo = target;
        return r;
    }
    constexpr SystemAttributeRow Deprecated() const {
        SystemAttributeRow r = *this;
        r.deprecated = true;
        return r;
    }
    constexpr SystemAttributeRow Class(SystemAttributeClass c) const {
        SystemAttributeRow r = *this;
        r.attributeClass = c;
        return r;
    }
    constexpr SystemAttributeRow Under(const char* categoryName) const {
        SystemAttributeRow r = *this;
        r.under = categoryName;
        return r;
    }
    constexpr SystemAttributeRow SuggestsShapeNames() const {
        SystemAttributeRow r = *this;
        r.suggestions = SystemAttributeSuggestions::ShapeNames;
        return r;
    }

private:
    constexpr SystemAttributeRow With(Flag f) const {
        SystemAttributeRow r = *this;
        r.flags |= f;
        return r;
    }
};

class SystemAttributeTable {
public:
    // Every row, groups in build order, attributes in creation order.
    static std::span<const SystemAttributeRow> Rows();
    // The rows of one group: its category row first, then its attributes.
    // Empty for an unknown group.
    static std::span<const SystemAttributeRow> RowsOfGroup(std::string_view group);
    // The row of the attribute or category with this exact name, or null.
    static const SystemAttributeRow* Find(std::string_view name);

    static constexpr std::size_t kEntryCount = 420;
    static constexpr std::size_t kCategoryCount = 24;

    // The shape names offered for "Shape", in menu order, ";"-separated.
    static const char* ShapeNames();
    // The colour of the map guides, in 16-bit channels.
    static constexpr unsigned short kGuideColorRed = 0;
    static constexpr unsigned short kGuideColorGreen = 65535;
    static constexpr unsigned short kGuideColorBlue = 65535;
};
