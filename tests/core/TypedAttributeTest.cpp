// Values written to notes take the type of their attribute; the attribute
// classes that do more than store (read-only, preference, null) and the
// table operations that rename, copy and normalise.
#include <gtest/gtest.h>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "Log.h"
#include "Prefs.h"
#include "PropertyList.h"
#include "Props.h"
#include "TestDocument.h"
#include "DateValue.h"
#include "Value.h"

TEST(TypedAttributes, TextIsReadThroughTheAttributesType) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");

    // Numbers: thousands separators go, a decimal point makes a double, "#" is hexadecimal.
    n->Set("MyNumber", "1,234");
    EXPECT_EQ(n->GetLong("MyNumber"), 1234);
    EXPECT_EQ(n->GetString("MyNumber"), "1234");
    n->Set("MyNumber", "1,234.5");
    EXPECT_EQ(n->GetString("MyNumber"), "1234.5");
    EXPECT_EQ(n->GetLong("MyNumber"), 1235); // rounded half up
    n->Set("MyNumber", "#ff");
    EXPECT_EQ(n->GetLong("MyNumber"), 255);
    n->SetDouble("MyNumber", 1.0 / 3.0);
    EXPECT_EQ(n->GetString("MyNumber"), "0.3333333333");
    n->SetDouble("MyNumber", 2e12);
    EXPECT_EQ(n->GetString("MyNumber"), "2e+12");

    // Booleans: any text other than false, 0 and nothing is true.
    n->Set("MyBoolean", "no");
    EXPECT_TRUE(n->GetBoolean("MyBoolean"));
    EXPECT_EQ(n->GetString("MyBoolean"), "true");
    n->Set("MyBoolean", "0");
    EXPECT_EQ(n->GetString("MyBoolean"), "false");
    n->ToggleBoolean("MyBoolean");
    EXPECT_TRUE(n->GetBoolean("MyBoolean"));
    n->ToggleBoolean("MyBoolean");
    EXPECT_FALSE(n->GetBoolean("MyBoolean"));

    // Sets are stored sorted and without duplicates; lists as written.
    n->Set("MySet", "pear;apple;pear; fig ");
    EXPECT_EQ(n->GetString("MySet"), "apple;fig;pear");
    n->Set("MyList", "pear;apple;pear");
    EXPECT_EQ(n->GetString("MyList"), "pear;apple;pear");
    // An item holding the separator is written back in quotes in a set.
    n->Set("MySet", "b;a\\;c");
    EXPECT_EQ(n->GetString("MySet"), "\"a;c\";b");
    n->SetSet("MySet", "z;y;z");
    EXPECT_EQ(n->GetString("MySet"), "y;z");

    // Dictionaries keep the text and answer pairs.
    n->Set("MyDictionary", "b:2;a:1;junk");
    EXPECT_EQ(n->GetString("MyDictionary"), "b:2;a:1;junk");
    SharedDictionary dict = n->GetDictionary("MyDictionary");
    ASSERT_NE(dict, nullptr);
    EXPECT_EQ(dict->size(), 2u);
    EXPECT_EQ(dict->at("a"), "1");

    // Intervals read free text and write the clock form.
    n->Set("MyInterval", "90");
    EXPECT_EQ(n->GetString("MyInterval"), "01:30");
    n->Set("MyInterval", "1d2");
    EXPECT_EQ(n->GetString("MyInterval"), "1 day 02:00:00");
    n->Set("MyInterval", "12:34:56");
    EXPECT_DOUBLE_EQ(n->GetDouble("MyInterval"), 12 * 3600 + 34 * 60 + 56);

    // Dates: never, ISO text, seconds.
    n->Set("MyDate", "never");
    EXPECT_EQ(n->GetString("MyDate"), "never");
    EXPECT_TRUE(n->GetDate("MyDate").IsNever());
    n->Set("MyDate", "2024-02-29T13:45:00Z");
    EXPECT_EQ(n->GetString("MyDate"), "2024-02-29T13:45:00Z");
    EXPECT_EQ(n->GetFormattedString("MyDate", "y-M0-D h:mm"), "2024-02-29 13:45");
    EXPECT_EQ(n->GetLong("MyDate"), 1709214300);

    // URL and action attributes hold plain text; unsigned numbers read decimal text.
    n->Set("URL", "https://example.org/a;b");
    EXPECT_EQ(n->GetString("URL"), "https://example.org/a;b");
    n->Set("Rule", "$Color=\"red\"");
    EXPECT_EQ(n->GetString("Rule"), "$Color=\"red\"");
    EXPECT_EQ(doc.AttributeStorage()->GetAttribute("Rule")->GetTypeString(), "string");
    EXPECT_EQ(Attribute::NameOfType(7), "action");
    EXPECT_EQ(Attribute::NameOfType(4), "Boolean");
    EXPECT_EQ(Attribute::NameOfType(13), "");

    // Files keep their path.
    n->SetFile("File", "/no/such/place.txt");
    EXPECT_EQ(n->GetString("File"), "/no/such/place.txt");
}

TEST(TypedAttributes, ColoursByNameLiteralAndAutomatic) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    Node* n = MakeNote(doc, "n");
    n->Set("Color", "#336699");
    EXPECT_EQ(n->GetColor("Color").ToString(), "#336699");
    EXPECT_EQ(n->GetString("Color"), "#336699");

    // A name is kept as text and translated on reading and on export.
    n->Set("Color", "red");
    EXPECT_EQ(n->GetString("Color"), "red");
    PColor red = n->GetColor("Color");
    EXPECT_NE(red, PColor::Black());
    EXPECT_EQ(n->GetExportString("Color", ""), red.ToString());

    // An empty text is black.
    n->Set("Color", "");
    EXPECT_EQ(n->GetColor("Color"), PColor::Black());

    // "automatic" takes the prototype's colour, or else the translated default.
    n->Set("Color", "automatic");
    EXPECT_EQ(n->GetColor("Color"), HypertextFacade(&doc).TranslateColor("warm gray dark"));
    proto->Set("Color", "#102030");
    n->SetPrototype(proto, false);
    EXPECT_EQ(n->GetColor("Color").ToString(), "#102030");

    // Colours by name compare as their texts, in reverse.
    ValuePtr a(Value::ForColor("blue")), b(Value::ForColor("red"));
    EXPECT_EQ(a->compare(b.get()), 1);
}

TEST(AttributeClasses, ReadOnlyPreferenceNullAndCategories) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    Node* n = MakeNote(doc, "Note");

    // Removing from a read-only attribute is refused with its own line.
    StLogCapture log;
    n->Remove("OutlineOrder");
    EXPECT_TRUE(log.Contains("Removing a read only attribute <OutlineOrder> for node [Note]"));
    EXPECT_EQ(n->GetLong("OutlineOrder"), n->GetOutlineOrder());

    // The null attribute stores nothing and is never valid.
    Attribute* none = props->GetAttribute("Nothing at all");
    EXPECT_FALSE(none->IsValid());
    n->Set(none, Value::Create("dropped"));
    EXPECT_EQ(n->DoGetImmediate(none), nullptr);
    EXPECT_EQ(n->Get("Nothing at all"), nullptr);

    // A preference attribute's default is the document preference: SetDefault changes nothing.
    Attribute* font = props->GetAttribute("NameFont");
    ASSERT_TRUE(font->IsPreferenceAttribute());
    std::string before = n->GetString("NameFont");
    font->SetDefault("Comic Neue");
    EXPECT_EQ(n->GetString("NameFont"), before);
    doc.GetPreferences()->Set(Prefs::KeyForKind(font->GetKind()), "Charter");
    EXPECT_EQ(n->GetString("NameFont"), "Charter");
    EXPECT_EQ(font->GetDefaultValueAsXML(&doc), "Charter");
    // A local value still wins over the preference.
    n->Set("NameFont", "Optima");
    EXPECT_EQ(n->GetString("NameFont"), "Optima");

    // Categories: a category names itself, others their father.
    EXPECT_EQ(props->GetAttribute("Xpos")->Category(), "Map");
    EXPECT_EQ(props->GetAttribute("Map")->Category(), "Map");
    EXPECT_TRUE(props->GetAttribute("Map")->IsAttributeCategory());
    // Attributes made before their category existed sit under the null attribute.
    EXPECT_EQ(props->GetAttribute("AIM")->Category(), "NoSuchAttribute");
    EXPECT_FALSE(props->GetAttribute("AIM")->IsUserAttribute());

    // Names: empty, blanks, punctuation and a leading digit are refused.
    for (const char* bad : {"", "a b", "a.b", "a,b", "a;b", "a'b", "a?b", "a/b", "a*b", "a@b", "a%b", "a$b",
                            "a+b", "a=b", "a-b", "a\"b", "a[b", "a]b", "a{b", "a}b", "a\rb", "a\tb", "1a"})
        EXPECT_FALSE(Attribute::IsValidAttributeName(bad)) << bad;
    for (const char* good : {"a", "A1", "under_score", "Ünïcode"})
        EXPECT_TRUE(Attribute::IsValidAttributeName(good)) << good;
}

TEST(AttributeTable, AddRenameRemoveAndCount) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    AttributeInfo info(&doc);
    long count = props->GetCount();
    Attribute* a = info.CreateBasicAttribute("Budget", "User", true, AttributeType::kNumber);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(props->GetCount(), count + 1);
    // Asking again under the same category answers the same definition.
    EXPECT_EQ(props->CreateBasicAttribute("Budget", "User", true, AttributeType::kNumber), a);
    EXPECT_EQ(props->GetCount(), count + 1);

    Node* n = MakeNote(doc, "n");
    n->SetLong("Budget", 40);
    info.SetDefault("Budget", "5");
    EXPECT_EQ(MakeNote(doc, "m")->GetLong("Budget"), 5);
    EXPECT_EQ(info.GetDefaultValueOf("Budget"), "5");

    // Renaming moves the table entry and the note's value with it.
    info.RenameAttribute(a, "Spend");
    EXPECT_FALSE(props->Has("Budget"));
    EXPECT_EQ(props->GetAttribute("Spend"), a);
    EXPECT_EQ(n->GetLong("Spend"), 40);
    EXPECT_EQ(n->Get("Budget"), nullptr);

    // The type can change; the default is re-made for the new type.
    a->SetType(AttributeType::kBoolean);
    EXPECT_EQ(a->GetDefaultValueAsString(), "false");
    a->SetType(AttributeType::kDate);
    EXPECT_EQ(a->GetDefaultValueAsString(), "never");

    // Removal takes it out of the table; the name reads as unknown.
    info.RemoveAttribute("Spend");
    EXPECT_FALSE(props->Has("Spend"));
    EXPECT_EQ(props->GetCount(), count);
    EXPECT_EQ(n->GetString("Spend"), "");
    EXPECT_EQ(info.CountUserAttributes(), 0);
}

TEST(AttributeTable, NormaliseAndCopyValuesBetweenNotes) {
    Hypertext doc;
    AttributeInfo info(&doc);
    Node* n = MakeNote(doc, "n");
    n->Set("MyDictionary", "zeta:1;alpha:2;mid:3");
    info.NormalizeSet("MyDictionary", n);
    EXPECT_EQ(n->GetString("MyDictionary"), "alpha:2;mid:3;zeta:1");

    // Intrinsic values, less the ID and hidden attributes, are copied from one note to another.
    Node* source = MakeNote(doc, "source");
    Node* target = MakeNote(doc, "target");
    source->SetDouble("Xpos", 21);
    source->SetDouble("Width", 8);
    source->Set("Color", "red");
    source->Properties().CopyAttributesTo(target);
    EXPECT_EQ(target->GetDouble("Xpos"), 21);
    EXPECT_EQ(target->GetDouble("Width"), 8);
    EXPECT_EQ(target->GetString("Color"), "warm gray dark");
    EXPECT_NE(target->GetID().GetID(), source->GetID().GetID());
    EXPECT_EQ(target->GetLong("ID"), static_cast<long>(target->GetID().GetID()));

    // The inheritable values of a note, its size and its text go to a new note,
    // but not its container.
    Node* model = MakeNote(doc, "model");
    Node* box = MakeNote(doc, "box");
    NodePosition(model).DoMoveTo(box, nullptr);
    model->Set("Color", "blue");
    model->Set("MyString", "copied");
    model->SetDouble("Height", 6);
    model->SetDouble("Xpos", 99);
    NodeText(model).SetText("body text");
    Node* blank = MakeNote(doc, "blank");
    AttributeInfo(blank).CopyAttributesFrom(model);
    EXPECT_EQ(blank->GetString("Color"), "blue");
    EXPECT_EQ(blank->GetString("MyString"), "copied");
    EXPECT_EQ(blank->GetDouble("Height"), 6);
    EXPECT_NE(blank->GetDouble("Xpos"), 99);
    EXPECT_EQ(NodeText(blank).GetText(), "body text");
    EXPECT_EQ(blank->Father(), doc.Root());
}

// Writing a shared value that a note already holds hands the note a second
// reference it must not keep: the count stays at what the holders own.
TEST(TypedAttributes, WritingTheSharedValueANoteHoldsKeepsOneReference) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    ValuePtr due(Value::ForDate("2026-05-06"));
    const auto* date = dynamic_cast<const DateValue*>(due.get());
    ASSERT_NE(date, nullptr);
    n->Set("DueDate", due->Clone());
    EXPECT_EQ(date->Count(), 2);
    n->Set("DueDate", due->Clone());
    n->Set("DueDate", due->Clone());
    EXPECT_EQ(date->Count(), 2);
    EXPECT_EQ(n->Get("DueDate"), due.get());
    n->Remove("DueDate");
    doc.CleanupDeletedValues();
    EXPECT_EQ(date->Count(), 1);
}

// Text reads of stored values take a shorter way than cloning the value
// (colours and strings are read where they lie): they answer what a clone
// of the value answers, for own, inherited and default values alike.
TEST(TypedAttributes, StoredTextReadsAnswerAsTheirClones) {
    Hypertext doc;
    Node* prototype = MakeNote(doc, "Proto");
    Node* note = MakeNote(doc, "Note");
    Node* plain = MakeNote(doc, "Plain");
    note->SetPrototype(prototype, false);
    prototype->Set("Color", "#ff8000");
    prototype->Set("Subtitle", "from the prototype");
    plain->Set("Color", "red");
    plain->SetColor("BorderColor", PColor(0x4000, 0x8000, 0xC000));
    plain->Set("Width", Value::ForDouble(2.5));
    const char* names[] = {"Color", "BorderColor", "Subtitle", "Width", "Name", "Searchable", "Created"};
    for (Node* n : {prototype, note, plain})
        for (const char* name : names) {
            const Attribute* attribute = n->GetAttribute(name);
            ASSERT_NE(attribute, nullptr) << name;
            ValuePtr clone(n->CreateClonedValue(attribute));
            std::string viaString = n->GetString(attribute);
            std::string viaInto = "left over";
            n->GetStringInto(attribute, viaInto);
            EXPECT_EQ(viaString, clone->AsString()) << n->Name() << " " << name;
            EXPECT_EQ(viaInto, clone->AsString()) << n->Name() << " " << name;
        }
    EXPECT_EQ(note->GetString("Color"), "#ff8000");
    EXPECT_EQ(plain->GetString("Color"), "red");
}
