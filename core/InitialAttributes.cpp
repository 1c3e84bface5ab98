#include "InitialAttributes.h"

#include "Attribute.h"
#include "Log.h"
#include "PColor.h"
#include "Props.h"
#include "SpecialAttributes.h"
#include "Value.h"

// The table's type codes are the attribute type numbers.
static_assert(int(SystemAttributeRow::kString) == int(AttributeType::kString));
static_assert(int(SystemAttributeRow::kColor) == int(AttributeType::kColor));
static_assert(int(SystemAttributeRow::kNumber) == int(AttributeType::kNumber));
static_assert(int(SystemAttributeRow::kFile) == int(AttributeType::kFile));
static_assert(int(SystemAttributeRow::kBoolean) == int(AttributeType::kBoolean));
static_assert(int(SystemAttributeRow::kDate) == int(AttributeType::kDate));
static_assert(int(SystemAttributeRow::kUnsigned) == int(AttributeType::kUnsigned));
static_assert(int(SystemAttributeRow::kAction) == int(AttributeType::kAction));
static_assert(int(SystemAttributeRow::kSet) == int(AttributeType::kSet));
static_assert(int(SystemAttributeRow::kURL) == int(AttributeType::kURL));
static_assert(int(SystemAttributeRow::kList) == int(AttributeType::kList));
static_assert(int(SystemAttributeRow::kFont) == int(AttributeType::kFont));
static_assert(int(SystemAttributeRow::kInterval) == int(AttributeType::kInterval));
static_assert(int(SystemAttributeRow::kDictionary) == int(AttributeType::kDictionary));

static InitialAttributes::ColorFileReader& TheColorFileReader() {
    static InitialAttributes::ColorFileReader reader;
    return reader;
}

static InitialAttributes::LinkTypeFileReader& TheLinkTypeFileReader() {
    static InitialAttributes::LinkTypeFileReader reader;
    return reader;
}

InitialAttributes::InitialAttributes(Props* p) : props(p) {}

InitialAttributes& InitialAttributes::Use(Attribute* attribute) {
    current = attribute;
    return *this;
}

InitialAttributes& InitialAttributes::BasicAttribute(const std::string& name, const std::string& category,
                                                     bool editable, int type) {
    current = props ? props->CreateBasicAttribute(name, category, editable, type) : nullptr;
    return *this;
}

InitialAttributes& InitialAttributes::BasicAttribute(const std::string& name) {
    current = props ? props->CreateBasicAttribute(name) : nullptr;
    return *this;
}

InitialAttributes& InitialAttributes::Invisible() {
    if (current)
        current->VisibleInEditor(false);
    return *this;
}

InitialAttributes& InitialAttributes::CannotInherit() {
    if (current)
        current->CanInherit(false);
    return *this;
}

InitialAttributes& InitialAttributes::ReadOnly() {
    if (current)
        current->SetEditable(false);
    return *this;
}

InitialAttributes& InitialAttributes::DefaultToTrue() {
    if (current)
        current->SetDefaultBoolean(true);
    return *this;
}

InitialAttributes& InitialAttributes::DefaultToFalse() {
    if (current)
        current->SetDefaultBoolean(false);
    return *this;
}

InitialAttributes& InitialAttributes::DefaultToInt(int value) {
    if (current)
        current->SetDefault(Value::ForInt(value));
    return *this;
}

InitialAttributes& InitialAttributes::DefaultTo(const std::string& text) {
    if (current)
        current->SetDefault(text);
    return *this;
}

InitialAttributes& InitialAttributes::Inspectable() {
    if (current && current->IsValid())
        current->AlsoChanges(kChangeNode | kChangeInspectable);
    return *this;
}

InitialAttributes& InitialAttributes::Changes(unsigned long mask) {
    if (current)
        current->Changes(mask);
    return *this;
}

InitialAttributes& InitialAttributes::AlsoChanges(unsigned long mask) {
    if (current)
        current->AlsoChanges(mask);
    return *this;
}

InitialAttributes& InitialAttributes::Suggests(const std::string& list) {
    if (current)
        current->SuggestedValues(list);
    return *this;
}

std::string InitialAttributes::ColorScheme(bool dark) {
    return dark ? "Dark Coral/Dark Coral.tbc" : "Modern/Modern.tbc";
}

void InitialAttributes::SetColorFileReader(ColorFileReader reader) { TheColorFileReader() = std::move(reader); }

void InitialAttributes::SetLinkTypeFileReader(LinkTypeFileReader reader) {
    TheLinkTypeFileReader() = std::move(reader);
}

void InitialAttributes::ReadColors(Hypertext* hypertext, bool dark) {
    const ColorFileReader& reader = TheColorFileReader();
    if (!reader)
        return;
    if (!reader(hypertext, ColorScheme(dark)))
        reader(hypertext, "colors.xml");
}

void InitialAttributes::ReadLinkTypes(Hypertext* hypertext) {
    if (const LinkTypeFileReader& reader = TheLinkTypeFileReader())
        reader(hypertext, "linkTypes.xml");
}

void InitialAttributesForTalvik::Build(Props* p, Hypertext* hypertext) {
    props = p;
    current = nullptr;
    if (!props)
        return;
    props->Clear();
    const std::string root = props->Root()->Name();
    BasicAttribute("System", root, false, AttributeType::kString);
    Internal();
    Agent();
    General();
    Textual();
    Appearance();
    Iris();
    Map();
    Outline();
    Net();
    TextFormat();
    Sorting();
    HTML();
    Events();
    People();
    Places();
    References();
    Sandbox();
    Scrivener();
    Simplenote();
    Pennerby();
    Weblog();
    Grid();
    Composites();
    AI();
    BasicAttribute("User", root, false, AttributeType::kString);
    props->Sort();
    current = nullptr;
    if (hypertext) {
        ReadColors(hypertext, darkAppearance);
        ReadLinkTypes(hypertext);
    }
}

void InitialAttributesForTalvik::Internal() { MakeGroup("Internal"); }
void InitialAttributesForTalvik::Agent() { MakeGroup("Agent"); }
void InitialAttributesForTalvik::General() { MakeGroup("General"); }
void InitialAttributesForTalvik::Textual() { MakeGroup("Textual"); }
void InitialAttributesForTalvik::Appearance() { MakeGroup("Appearance"); }
void InitialAttributesForTalvik::Iris() { MakeGroup("Iris"); }
void InitialAttributesForTalvik::Map() { MakeGroup("Map"); }
void InitialAttributesForTalvik::Outline() { MakeGroup("Outline"); }
void InitialAttributesForTalvik::Net() { MakeGroup("Net"); }
void InitialAttributesForTalvik::TextFormat() { MakeGroup("TextFormat"); }
void InitialAttributesForTalvik::Sorting() { MakeGroup("Sorting"); }
void InitialAttributesForTalvik::HTML() { MakeGroup("HTML"); }
void InitialAttributesForTalvik::Events() { MakeGroup("Events"); }
void InitialAttributesForTalvik::People() { MakeGroup("People"); }
void InitialAttributesForTalvik::Places() { MakeGroup("Places"); }
void InitialAttributesForTalvik::References() { MakeGroup("References"); }
void InitialAttributesForTalvik::Sandbox() { MakeGroup("Sandbox"); }
void InitialAttributesForTalvik::Scrivener() { MakeGroup("Scrivener"); }
void InitialAttributesForTalvik::Simplenote() { MakeGroup("Simplenote"); }
void InitialAttributesForTalvik::Pennerby() { MakeGroup("Pennerby"); }
void InitialAttributesForTalvik::Weblog() { MakeGroup("Weblog"); }
void InitialAttributesForTalvik::Grid() { MakeGroup("Grid"); }
void InitialAttributesForTalvik::Composites() { MakeGroup("Composites"); }
void InitialAttributesForTalvik::AI() { MakeGroup("AI"); }

void InitialAttributesForTalvik::MakeGroup(const char* group) {
    auto rows = SystemAttributeTable::RowsOfGroup(group);
    if (rows.empty()) {
        LogLine(std::string("No system attributes for the group ") + group);
        return;
    }
    const SystemAttributeRow& categoryRow = rows.front();
    BasicAttribute(categoryRow.name, "System", !categoryRow.IsReadOnly(), categoryRow.type);
    for (const SystemAttributeRow& row : rows.subspan(1))
        Make(row, row.HasOwnCategory() ? row.under : categoryRow.name);
}

// The computed and special classes, made by name.
static Attribute* NewSpecialAttribute(SystemAttributeClass c, const std::string& name) {
    switch (c) {
    case SystemAttributeClass::IsPrototypeAttribute: return new IsPrototypeAttribute(name);
    case SystemAttributeClass::PathAttribute: return new PathAttribute(name);
    case SystemAttributeClass::LocalAttribute: return new LocalAttribute(name);
    case SystemAttributeClass::HTMLExportPathAttribute: return new HTMLExportPathAttribute(name);
    case SystemAttributeClass::NoteURLAttribute: return new NoteURLAttribute(name);
    case SystemAttributeClass::AliasAttribute: return new AliasAttribute(name);
    case SystemAttributeClass::AdornmentAttribute: return new AdornmentAttribute(name);
    case SystemAttributeClass::AliasesAttribute: return new AliasesAttribute(name);
    case SystemAttributeClass::DisplayNameAttribute: return new DisplayNameAttribute(name);
    case SystemAttributeClass::TimelineScaleColor2Attribute: return new TimelineScaleColor2Attribute(name);
    case SystemAttributeClass::WordCountAttribute: return new WordCountAttribute(name);
    case SystemAttributeClass::ImageCountAttribute: return new ImageCountAttribute(name);
    case SystemAttributeClass::NoteSizeAttribute: return new NoteSizeAttribute(name);
    case SystemAttributeClass::ChildCountAttribute: return new ChildCountAttribute(name);
    case SystemAttributeClass::AdornmentCountAttribute: return new AdornmentCountAttribute(name);
    case SystemAttributeClass::DescendantCountAttribute: return new DescendantCountAttribute(name);
    case SystemAttributeClass::TextLengthAttribute: return new TextLengthAttribute(name);
    case SystemAttributeClass::OutlineOrderAttribute: return new OutlineOrderAttribute(name);
    case SystemAttributeClass::OutlineDepthAttribute: return new OutlineDepthAttribute(name);
    case SystemAttributeClass::SiblingOrderAttribute: return new SiblingOrderAttribute(name);
    case SystemAttributeClass::InboundLinksAttribute: return new InboundLinksAttribute(name);
    case SystemAttributeClass::OutboundLinksAttribute: return new OutboundLinksAttribute(name);
    case SystemAttributeClass::WebLinksAttribute: return new WebLinksAttribute(name);
    case SystemAttributeClass::TextLinksAttribute: return new TextLinksAttribute(name);
    case SystemAttributeClass::PlainLinksAttribute: return new PlainLinksAttribute(name);
    default: return nullptr;
    }
}

Attribute* InitialAttributesForTalvik::Make(const SystemAttributeRow& row, const std::string& category) {
    const bool editable = !row.IsReadOnly();
    Attribute* made = nullptr;
    if (row.IsRenamed()) {
        made = props->CreateRenamedAndDeprecatedAttribute(row.name, category, editable, row.type, row.renamedTo);
    } else if (row.IsPreference()) {
        made = props->CreatePreferenceAttribute(row.name, category, row.preferenceKind, editable, row.type);
    } else if (row.deprecated) {
        made = props->CreateDeprecatedAttribute(row.name, category, editable, row.type);
    } else {
        switch (row.attributeClass) {
        case SystemAttributeClass::BasicAttribute:
            made = props->CreateBasicAttribute(row.name, category, editable, row.type);
            break;
        case SystemAttributeClass::ShadowAttribute:
            made = props->CreateShadowAttribute(row.name, category, editable, row.type);
            break;
        case SystemAttributeClass::NameAttribute: made = props->CreateNameAttribute(row.name, category); break;
        case SystemAttributeClass::TextAttribute: made = props->CreateTextAttribute(row.name, category); break;
        case SystemAttributeClass::PrototypeAttribute:
            made = props->CreatePrototypeAttribute(row.name, category);
            break;
        case SystemAttributeClass::ParentAttribute: made = props->CreateParentAttribute(row.name, category); break;
        default:
            if (Attribute* special = NewSpecialAttribute(row.attributeClass, row.name))
                made = props->Install(special, category);
            break;
        }
    }
    Use(made);
    if (!made) {
        LogLine(std::string("Could not make the system attribute <") + row.name + ">");
        return nullptr;
    }

    if (row.IsReadOnly())
        ReadOnly();
    switch (row.defaultKind) {
    case SystemAttributeDefault::TypeInitial: break;
    case SystemAttributeDefault::Text:
        if (row.type == SystemAttributeRow::kBoolean) {
            if (std::string_view(row.defaultText) == "true")
                DefaultToTrue();
            else
                DefaultToFalse();
        } else {
            DefaultTo(row.defaultText);
        }
        break;
    case SystemAttributeDefault::GuideColor:
        made->SetDefault(Value::ForColor(PColor(SystemAttributeTable::kGuideColorRed,
                                                SystemAttributeTable::kGuideColorGreen,
                                                SystemAttributeTable::kGuideColorBlue)));
        break;
    }
    if (!row.IsVisibleInEditor())
        Invisible();
    if (row.IsIntrinsic())
        CannotInherit();
    if (row.hasChanges)
        Changes(row.changes);
    if (row.IsInspectable())
        Inspectable();
    if (row.alsoChanges)
        AlsoChanges(row.alsoChanges);
    if (row.suggestions == SystemAttributeSuggestions::ShapeNames)
        Suggests(SystemAttributeTable::ShapeNames());
    return made;
}
