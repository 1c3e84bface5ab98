// The system attribute table as a new document has it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Attribute.h"
#include "InitialAttributes.h"
#include "Prefs.h"
#include "Props.h"
#include "SpecialAttributes.h"
#include "SystemAttributeTable.h"
#include "TestDocument.h"
#include "Value.h"

namespace {

std::string FatherName(const Attribute* a) { return a && a->Father() ? a->Father()->Name() : std::string(); }

} // namespace

TEST(SystemAttributeBuild, EveryRowBecomesADefinition) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    // The rows, plus the root "anything", "NoSuchAttribute", "System" and "User".
    EXPECT_EQ(props->GetCount(), 424);
    EXPECT_EQ(FatherName(props->GetAttribute("System")), "anything");
    EXPECT_EQ(FatherName(props->GetAttribute("User")), "anything");

    int categories = 0;
    for (const SystemAttributeRow& row : SystemAttributeTable::Rows()) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(props->Has(row.name));
        const Attribute* a = props->GetAttribute(row.name);
        if (row.category) {
            ++categories;
            EXPECT_EQ(FatherName(a), "System");
            EXPECT_TRUE(a->IsAttributeCategory());
            continue;
        }
        EXPECT_EQ(a->GetType(), row.type);
        EXPECT_EQ(a->IsEditable(), !row.IsReadOnly());
        EXPECT_EQ(a->VisibleInEditor(), row.IsVisibleInEditor());
        EXPECT_EQ(a->CanInherit(), !row.IsIntrinsic());
        EXPECT_EQ(a->GetChangeFacets(), row.ChangeFacets());
        EXPECT_EQ(a->IsPreferenceAttribute(), row.IsPreference());
        if (row.IsPreference()) {
            EXPECT_EQ(a->GetKind(), row.preferenceKind);
        }
        EXPECT_EQ(a->IsDeprecated(), row.deprecated || row.IsRenamed());
        if (row.IsRenamed()) {
            auto* renamed = dynamic_cast<const RenamedAndDeprecatedAttribute*>(a);
            ASSERT_NE(renamed, nullptr);
            ASSERT_NE(renamed->Target(), nullptr);
            EXPECT_EQ(renamed->Target()->Name(), row.renamedTo);
        }
        EXPECT_FALSE(a->IsUserAttribute());
    }
    EXPECT_EQ(categories, 24);

    // The special classes behind a few names.
    EXPECT_NE(dynamic_cast<const NameAttribute*>(props->GetAttribute("Name")), nullptr);
    EXPECT_NE(dynamic_cast<const TextAttribute*>(props->GetAttribute("Text")), nullptr);
    EXPECT_NE(dynamic_cast<const ParentAttribute*>(props->GetAttribute("Container")), nullptr);
    EXPECT_NE(dynamic_cast<const ShadowAttribute*>(props->GetAttribute("Shadow")), nullptr);
    EXPECT_NE(dynamic_cast<const TimelineScaleColor2Attribute*>(props->GetAttribute("TimelineScaleColor2")), nullptr);
    EXPECT_NE(dynamic_cast<const DeprecatedAttribute*>(props->GetAttribute("ShowTitle")), nullptr);
    EXPECT_NE(dynamic_cast<const PlainLinksAttribute*>(props->GetAttribute("PlainLinkCount")), nullptr);
    EXPECT_NE(props->GetAttribute("Shape")->SuggestedValues().IndexOf("vertical tag"), -1);
}

TEST(SystemAttributeBuild, CategoriesAreLookedUpWhenAttributesAreMade) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    const Attribute* nothing = props->GetAttribute("NoSuchThing");
    ASSERT_FALSE(nothing->IsValid());

    // Internal runs before People, Net and General exist.
    for (const char* name : {"AIM", "RSSChannelTemplate", "RSSItemTemplate", "RSSItemLimit", "ReadCount"}) {
        const Attribute* a = props->GetAttribute(name);
        ASSERT_TRUE(a->IsValid()) << name;
        EXPECT_EQ(a->Category(), "NoSuchAttribute") << name;
        EXPECT_EQ(a->Father(), nothing) << name;
    }
    EXPECT_EQ(props->GetAttribute("RSSChannelTemplate")->GetDefaultValueAsString(), "RSSChannel");

    // Map is made before HTML, so HTMLMarkDown finds it; it still reports
    // the category of the attribute it forwards to.
    EXPECT_EQ(FatherName(props->GetAttribute("HTMLMarkDown")), "Map");
    EXPECT_EQ(props->GetAttribute("HTMLMarkDown")->Category(), "HTML");
    // Appearance comes before Map: Color2 lands under NoSuchAttribute too.
    EXPECT_EQ(props->GetAttribute("Color2")->Father(), nothing);
    EXPECT_EQ(props->GetAttribute("Color2")->Category(), "Appearance");
    EXPECT_EQ(props->GetAttribute("Shape")->Category(), "Appearance");
    EXPECT_EQ(props->GetAttribute("NotesFolder")->Category(), "Watch");

    std::vector<std::string> people;
    for (const Attribute* a : props->AttributesFor("People"))
        people.push_back(a->Name());
    EXPECT_EQ(people, (std::vector<std::string>{"Email", "FullName", "Organization", "Telephone", "Twitter"}))
        << "sorted by name, without AIM";
}

TEST(SystemAttributeBuild, OldNamesForwardAndOddSpellingsAnswer) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    n->Set("Color2", "red");
    EXPECT_EQ(n->GetString("AccentColor"), "red");
    EXPECT_EQ(n->GetString("Color2"), "red");
    n->Set("AccentColor", "blue");
    EXPECT_EQ(n->GetString("Color2"), "blue");
    n->Remove(doc.AttributeStorage()->GetAttribute("Color2"));
    EXPECT_EQ(n->GetString("AccentColor"), "dark warm gray dark");

    n->Set("KeyAttributes", "Width;Height");
    EXPECT_EQ(n->GetString("DisplayedAttributes"), "Width;Height");
    n->Set("HTMLMarkDown", "true");
    EXPECT_TRUE(n->GetBoolean("HTMLMarkdown"));
    n->Set("LeafTip", "0.25");
    EXPECT_EQ(n->GetString("Tip"), "0.25");

    n->Set("Text", "one two three four");
    EXPECT_EQ(n->GetLong("Wordcount"), 4);
    EXPECT_EQ(n->GetLong("WordCount"), 4);
    EXPECT_FALSE(doc.AttributeStorage()->GetAttribute("Wordcount")->VisibleInEditor());
    EXPECT_TRUE(doc.AttributeStorage()->GetAttribute("WordCount")->VisibleInEditor());

    n->Set("ScrivenerIndexCardFileExension", "txt");
    EXPECT_EQ(n->GetString("ScrivenerIndexCardFileExension"), "txt");
    n->Set("mt_allow_comments", "0");
    EXPECT_EQ(n->GetLong("mt_allow_comments"), 0);
    EXPECT_EQ(MakeNote(doc, "m")->GetLong("mt_allow_comments"), 1);
}

TEST(SystemAttributeBuild, PreferenceAttributesAnswerFromTheDocumentPreferences) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    Prefs* prefs = doc.GetPreferences();
    ASSERT_NE(prefs, nullptr);

    prefs->Set(Prefs::KeyForKind(2), "Georgia");
    EXPECT_EQ(n->GetString("NameFont"), "Georgia");
    prefs->Set(Prefs::KeyForKind(19), "12.7");
    EXPECT_EQ(n->GetLong("TextFontSize"), 12) << "truncated";
    prefs->Set(Prefs::KeyForKind(22), "-1");
    EXPECT_EQ(n->GetString("TextAlign"), "right");
    prefs->Set(Prefs::KeyForKind(22), "1");
    EXPECT_EQ(n->GetString("TextAlign"), "center");
    prefs->Set(Prefs::KeyForKind(27), "false");
    EXPECT_TRUE(n->GetBoolean("NoSpelling")) << "the inverse of the spelling switch";
    prefs->Set(Prefs::KeyForKind(27), "true");
    EXPECT_FALSE(n->GetBoolean("NoSpelling"));
    prefs->Set(Prefs::KeyForKind(3), "#102030");
    EXPECT_EQ(n->GetString("MapBackgroundColor"), "#102030");
    // The old name reads the preference through the attribute it forwards to.
    EXPECT_EQ(n->GetString("MapBackgroundColor2"), "#102030");

    // A local value still wins over the preference.
    n->Set("NameFont", "Courier");
    EXPECT_EQ(n->GetString("NameFont"), "Courier");
    // Setting a default on a preference attribute changes nothing.
    Attribute* textAlign = doc.AttributeStorage()->GetAttribute("TextAlign");
    textAlign->SetDefault(std::string("left"));
    EXPECT_EQ(n->GetString("TextAlign"), "center");

    // New documents take the creator from the user's preferences.
    EXPECT_FALSE(Prefs::Defaults().Get(Prefs::KeyForKind(1)).empty());
}

TEST(SystemAttributeBuild, DefaultsAndFacetsAcrossGroups) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    struct Expect {
        const char* name;
        const char* defaultText;
        unsigned long facets;
    };
    const Expect expected[] = {
        {"AgentCaseSensitive", "true", 0},
        {"AgentPriority", "1", 0},
        {"CleanupAction", "grid", 1},
        {"Name", "untitled", 4101},
        {"HoverOpacity", "0.5", 4097},
        {"Prototype", "", 4613},
        {"Searchable", "true", 0},
        {"ReadOnly", "false", 4},
        {"UpdateTextLinksAfterRename", "true", 0},
        {"Color", "warm gray dark", 4097},
        {"Border", "2", 4097},
        {"Opacity", "100", 4097},
        {"CaptionFont", "SketchnoteSquare", 4097},
        {"PlotColor", "light green", 1},
        {"IrisRadius", "1", 1},
        {"Height", "1.86", 513},
        {"Width", "3", 513},
        {"MapBackgroundFillOpacity", "0.1", 4105},
        {"Xpos", "0", 2048},
        {"PlotColorList", "2;7;3;8;4;9;0;5;1;6", 1},
        {"OutlineNameSize", "100", 4609},
        {"OutlineBackgroundColor", "automatic", 4097},
        {"LastFetched", "never", 0},
        {"TextPaneWidth", "-1", 0},
        {"LineSpacing", "100", 4101},
        {"Tabs", "0.25;0.25;0.25;0.25;", 0},
        {"HideTitle", "false", 512},
        {"Ziplinks", "true", 4},
        {"SortTransform", "case-sensitive", 4097},
        {"HTMLFileNameMaxLength", "24", 0},
        {"HTMLExportFileNameSpacer", "_", 0},
        {"HTMLCloud3Start", "<span style=\"font-size: 1.4em\" >", 0},
        {"HTMLFontSize", "13", 0},
        {"StartDate", "never", 8192},
        {"TimelineBandLabelOpacity", "25", 1},
        {"TimelineGridColor", "#00ffff", 0},
        {"TimelineEndAttribute", "EndDate", 0},
        {"mt_allow_pings", "1", 0},
        {"GridColor", "#00ffff", 4097},
        {"GridOpacity", "75", 4097},
        {"NeverComposite", "true", 0},
        {"Sentiment", "0", 0},
    };
    for (const Expect& e : expected) {
        const Attribute* a = props->GetAttribute(e.name);
        ASSERT_TRUE(a->IsValid()) << e.name;
        EXPECT_EQ(a->GetDefaultValueAsString(), e.defaultText) << e.name;
        EXPECT_EQ(a->GetChangeFacets(), e.facets) << e.name;
    }
    // Intrinsic values are not inherited from a prototype.
    Node* proto = MakeNote(doc, "Proto");
    Node* n = MakeNote(doc, "n");
    n->SetPrototype(proto, false);
    proto->Set("Xpos", "7");
    proto->Set("Badge", "star");
    EXPECT_EQ(n->GetString("Xpos"), "0");
    EXPECT_EQ(n->GetString("Badge"), "star");
}

TEST(SystemAttributeBuild, BuildClearsAndCallsTheConfigurationReaders) {
    std::vector<std::string> colorFiles;
    std::vector<std::string> linkFiles;
    InitialAttributes::SetColorFileReader([&](Hypertext*, const std::string& file) {
        colorFiles.push_back(file);
        return file != "Modern/Modern.tbc";  // only the dark scheme is installed
    });
    InitialAttributes::SetLinkTypeFileReader([&](Hypertext*, const std::string& file) { linkFiles.push_back(file); });

    Hypertext doc;
    EXPECT_EQ(colorFiles, (std::vector<std::string>{"Modern/Modern.tbc", "colors.xml"}));
    EXPECT_EQ(linkFiles, std::vector<std::string>{"linkTypes.xml"});

    // A table of its own: rebuilding the document's would strand the
    // values its notes hold.
    Props props;
    InitialAttributesForTalvik builder;
    builder.Build(&props);
    EXPECT_EQ(colorFiles.size(), 2u) << "without a document there is nothing to read colours into";
    props.CreateBasicAttribute("Mood", "User", true, AttributeType::kString);
    ASSERT_TRUE(props.GetAttribute("Mood")->IsUserAttribute());
    colorFiles.clear();
    builder.SetDarkAppearance(true);
    builder.Build(&props, &doc);
    EXPECT_FALSE(props.Has("Mood")) << "a build starts from an empty table";
    EXPECT_EQ(props.GetCount(), 424);
    EXPECT_EQ(colorFiles, std::vector<std::string>{"Dark Coral/Dark Coral.tbc"});

    InitialAttributes::SetColorFileReader(nullptr);
    InitialAttributes::SetLinkTypeFileReader(nullptr);
}
