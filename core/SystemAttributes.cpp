// The core set of system attributes that the tree, naming, prototypes and
// aliases rely on. The full system table builds on the same factories.
#include "SystemAttributes.h"

#include "Props.h"
#include "SpecialAttributes.h"

namespace {

Attribute* Flags(Attribute* a, bool intrinsic, unsigned long facets) {
    if (!a)
        return a;
    if (intrinsic)
        a->CanInherit(false);
    if (facets)
        a->Changes(facets);
    return a;
}

} // namespace

void BuildSystemAttributes(Props* props) {
    props->Clear();
    props->CreateBasicAttribute("System", props->Root(), false, AttributeType::kString);
    using T = AttributeType;
    auto basic = [&](const char* name, const char* category, bool editable, int type) {
        if (!props->Has(category))
            props->CreateBasicAttribute(category, "System", false, T::kString);
        return props->CreateBasicAttribute(name, category, editable, type);
    };
    auto install = [&](Attribute* a, const char* category) {
        if (!props->Has(category))
            props->CreateBasicAttribute(category, "System", false, T::kString);
        return props->Install(a, category);
    };

    Flags(basic("Alias", "Internal", false, T::kUnsigned), false, 0);
    Flags(basic("Created", "General", false, T::kDate), true, 0);
    Flags(basic("Modified", "General", false, T::kDate), true, 0);
    Flags(basic("ID", "General", false, T::kNumber), true, 0);
    Flags(props->CreatePreferenceAttribute("Creator", "General", 1, false, T::kString), true, 0);
    Attribute* name = Flags(install(new NameAttribute("Name"), "General"), true, 5 | 1 | 4096);
    name->SetDefault("untitled");
    Flags(install(new PrototypeAttribute("Prototype"), "General"), false, 517 | 1 | 4096);
    Flags(install(new IsPrototypeAttribute("IsPrototype"), "General"), true, 1 | 4096);
    basic("PrototypeBequeathsChildren", "General", true, T::kBoolean)->SetDefaultBoolean(true);
    Flags(install(new ParentAttribute("Container"), "General"), true, 0);
    Flags(install(new PathAttribute("Path"), "General"), true, 0);
    Flags(install(new LocalAttribute("LocalAttributes"), "General"), true, 0);
    install(new AliasesAttribute("Aliases"), "General");
    Flags(install(new OutlineOrderAttribute("OutlineOrder"), "General"), true, 0);
    Flags(install(new SiblingOrderAttribute("SiblingOrder"), "General"), true, 0);
    Flags(install(new OutlineDepthAttribute("OutlineDepth"), "General"), true, 0);
    install(new ChildCountAttribute("ChildCount"), "General");
    install(new DescendantCountAttribute("DescendantCount"), "General");
    Attribute* lock = basic("Lock", "General", true, T::kBoolean);
    lock->AlsoChanges(1 | 4096);
    basic("DisplayedAttributes", "General", true, T::kList)->AlsoChanges(4 | 1 | 4096);
    basic("Subtitle", "General", true, T::kString)->Changes(1);
    basic("Checked", "General", true, T::kBoolean)->Changes(1);
    basic("UniqueValueLimit", "General", true, T::kNumber)->SetDefault("100");

    install(new TextAttribute("Text"), "Textual");
    basic("ReadOnly", "Textual", true, T::kBoolean)->Changes(4);
    install(new WordCountAttribute("WordCount"), "Textual");
    install(new TextLengthAttribute("TextLength"), "Textual");

    Attribute* color = basic("Color", "Appearance", true, T::kColor);
    color->SetDefault("warm gray dark");
    color->Changes(1 | 4096);

    Attribute* xpos = Flags(basic("Xpos", "Map", true, T::kNumber), true, 2048);
    Attribute* ypos = Flags(basic("Ypos", "Map", true, T::kNumber), true, 2048);
    (void)xpos;
    (void)ypos;
    Attribute* height = Flags(basic("Height", "Map", true, T::kNumber), true, 513);
    height->SetDefault("1.86");
    Attribute* width = Flags(basic("Width", "Map", true, T::kNumber), true, 513);
    width->SetDefault("3.0");

    basic("Separator", "Outline", true, T::kBoolean);
    basic("Sort", "Sorting", true, T::kString);
    basic("IsTemplate", "HTML", true, T::kBoolean);
    basic("HTMLExportExtension", "HTML", true, T::kString)->SetDefault(".html");
    basic("StartDate", "Events", true, T::kDate)->Changes(8192);
    basic("DueDate", "Events", true, T::kDate)->Changes(8192);
    basic("AgentQuery", "Agent", true, T::kString);

    basic("MyString", "Sandbox", true, T::kString);
    basic("MyNumber", "Sandbox", true, T::kNumber);
    basic("MyDate", "Sandbox", true, T::kDate);
    basic("MySet", "Sandbox", true, T::kSet);
    basic("MyDictionary", "Sandbox", true, T::kDictionary);
    basic("MyList", "Sandbox", true, T::kList);
    basic("MyColor", "Sandbox", true, T::kColor);
    basic("MyBoolean", "Sandbox", true, T::kBoolean);
    basic("MyInterval", "Sandbox", true, T::kInterval);
    basic("IsComposite", "Composites", false, T::kBoolean)->CanInherit(false);

    props->CreateBasicAttribute("User", props->Root(), false, T::kString);
    props->Sort();
}
