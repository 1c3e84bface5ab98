// Sorting notes by two attributes, and the attribute classes whose default
// is not a plain stored value: forwards of renamed attributes, shadow,
// timeline scale colour, lock and read-only flags.
#include <gtest/gtest.h>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "NodeSorting.h"
#include "Prefs.h"
#include "Props.h"
#include "TestDocument.h"
#include "Value.h"

TEST(NoteOrdering, SecondAttributeBreaksTiesAndTransformsApply) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    Node* box = MakeNote(doc, "Box");
    Node* p = MakeNote(doc, "p", box);
    Node* q = MakeNote(doc, "q", box, p);
    Node* r = MakeNote(doc, "r", box, q);
    p->SetLong("MyNumber", 2);
    q->SetLong("MyNumber", 1);
    r->SetLong("MyNumber", 2);
    p->Set("MyString", "alpha");
    r->Set("MyString", "beta");

    AttributeValueComparator byNumberThenText(props->GetAttribute("MyNumber"), false, "",
                                              props->GetAttribute("MyString"), true, "");
    EXPECT_LT(byNumberThenText.Compare(q, p), 0);
    // Equal numbers: the second attribute decides, backward.
    EXPECT_GT(byNumberThenText.Compare(p, r), 0);
    EXPECT_LT(byNumberThenText.Compare(r, p), 0);
    EXPECT_EQ(byNumberThenText.Compare(p, p), 0);
    // A missing note gives -1 whichever side it is on.
    EXPECT_EQ(byNumberThenText.Compare(nullptr, p), -1);
    EXPECT_EQ(byNumberThenText.Compare(p, nullptr), -1);
    box->SortChildren(TreeComparator(std::make_shared<AttributeValueComparator>(
        props->GetAttribute("MyNumber"), false, "", props->GetAttribute("MyString"), true, "")));
    EXPECT_EQ(NodeVectors::TitleList(NodeFacade(box).Children()), "q;r;p");

    // The container's own attributes name both keys.
    box->Set("Sort", "MyNumber");
    box->SetBoolean("SortBackward", true);
    box->Set("SortAlso", "MyString");
    box->SortChildren(TreeComparator(AttributeValueComparator::ForContainer(box)));
    EXPECT_EQ(NodeVectors::TitleList(NodeFacade(box).Children()), "p;r;q");
    EXPECT_EQ(box->SortAttribute(), props->GetAttribute("MyNumber"));

    // An invalid first attribute leaves the decision to the second one.
    AttributeValueComparator onlySecond(props->GetAttribute("Nope"), false, "", props->GetAttribute("MyString"),
                                        false, "");
    EXPECT_LT(onlySecond.Compare(p, r), 0);

    // Sorting through the original: an alias sorts by its original's own position.
    Node* far = MakeNote(doc, "far");
    NodePosition(far).SetPosition(100, 0);
    NodePosition(q).SetPosition(50, 0);
    Node* alias = NodeMaker(&doc).MakeAlias(far, doc.Root(), nullptr, 1, 0);
    ASSERT_NE(alias, nullptr);
    const Attribute* xpos = props->GetAttribute("Xpos");
    AttributeValueComparator plain(xpos, false, "", nullptr, false, "");
    AttributeValueComparator viaOriginal(xpos, false, "original note", nullptr, false, "");
    EXPECT_LT(plain.Compare(alias, q), 0);
    EXPECT_GT(viaOriginal.Compare(alias, q), 0);

    // Names sort through the locale, empty names last, case-insensitive on request.
    Node* shelf = MakeNote(doc, "Shelf");
    MakeNote(doc, "banana", shelf);
    MakeNote(doc, "", shelf);
    MakeNote(doc, "Apple", shelf);
    MakeNote(doc, "cherry", shelf);
    shelf->Set("Sort", "Name");
    shelf->Set("SortTransform", "lowercase");
    shelf->SortChildren(TreeComparator(AttributeValueComparator::ForContainer(shelf)));
    EXPECT_EQ(NodeVectors::TitleList(NodeFacade(shelf).Children()), "Apple;banana;cherry;");
}

TEST(SpecialDefaults, RenamedAttributesForwardEverything) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    Attribute* old = props->GetAttribute("MapTextSize");
    Attribute* target = props->GetAttribute("MapNameSize");
    ASSERT_TRUE(old->IsValid());
    EXPECT_TRUE(old->IsDeprecated());
    EXPECT_FALSE(target->IsDeprecated());
    // The default, the category and the values are the target's.
    EXPECT_EQ(old->GetDefaultValueAsString(), target->GetDefaultValueAsString());
    EXPECT_EQ(old->Category(), target->Category());
    old->SetDefault("31");
    EXPECT_EQ(target->GetDefaultValueAsString(), "31");
    Node* n = MakeNote(doc, "n");
    EXPECT_EQ(n->GetLong("MapNameSize"), 31);
    n->SetLong("MapTextSize", 18);
    EXPECT_EQ(n->GetLong("MapNameSize"), 18);
    // Only the target's name is stored on the note.
    EXPECT_EQ(n->DoGetImmediate(old), nullptr);
    ASSERT_NE(n->DoGetImmediate(target), nullptr);
    EXPECT_EQ(n->GetString("LocalAttributes").find("MapTextSize"), std::string::npos);

    // A deprecated attribute without a target answers as usual.
    Attribute* deprecated = props->GetAttribute("TextPaneWidth");
    EXPECT_TRUE(deprecated->IsDeprecated());
    EXPECT_EQ(n->GetLong("TextPaneWidth"), -1);
    n->SetLong("TextPaneWidth", 300);
    EXPECT_EQ(n->GetLong("TextPaneWidth"), 300);
}

TEST(SpecialDefaults, ShadowScaleColourLockAndReadOnly) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    Node* n = MakeNote(doc, "n");

    // A shadow is on by default for notes, off without a note.
    Attribute* shadow = props->GetAttribute("Shadow");
    EXPECT_TRUE(n->GetBoolean("Shadow"));
    const Value* none = shadow->GetDefaultValue(nullptr);
    ASSERT_NE(none, nullptr);
    EXPECT_FALSE(none->AsBoolean());

    // The second timeline scale colour falls back to the map background while it is at its default.
    doc.GetPreferences()->Set(Prefs::KeyForKind(3), "#123456");
    EXPECT_EQ(n->GetString("MapBackgroundColor"), "#123456");
    EXPECT_EQ(n->GetColor("TimelineScaleColor2").ToString(), "#123456");
    n->Set("TimelineScaleColor2", "#654321");
    EXPECT_EQ(n->GetColor("TimelineScaleColor2").ToString(), "#654321");
    const Value* black = props->GetAttribute("TimelineScaleColor2")->ValueFor(nullptr);
    ASSERT_NE(black, nullptr);
    EXPECT_EQ(black->AsColor(), PColor::Black());

    // Lock and ReadOnly are attributes of the note, inheritable like any other.
    Node* proto = MakeNote(doc, "proto");
    EXPECT_FALSE(n->IsLocked());
    EXPECT_FALSE(n->ReadOnly());
    proto->SetBoolean("Lock", true);
    proto->SetBoolean("ReadOnly", true);
    n->SetPrototype(proto, false);
    EXPECT_TRUE(n->IsLocked());
    EXPECT_TRUE(n->ReadOnly());
    EXPECT_TRUE(NodeFacade(n).IsLocked());
    n->SetBoolean("Lock", false);
    EXPECT_FALSE(n->IsLocked());
    NodeVector v{n, proto};
    NodeVectors::RemoveLocked(v);
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0], n);

    // Editability of definitions is a flag of the table.
    AttributeInfo info(&doc);
    EXPECT_TRUE(info.AttributeIsReadOnly("OutlineOrder"));
    EXPECT_TRUE(info.AttributeIsEditable("MyString"));
    info.MakeAttributeReadOnly("MyString");
    EXPECT_TRUE(info.AttributeIsReadOnly("MyString"));
    EXPECT_TRUE(info.AttributeCannotInherit("Xpos"));
    EXPECT_FALSE(info.AttributeCannotInherit("Color"));
}

TEST(DocumentLife, ValidityWritingAndTheNullDocument) {
    auto doc = std::make_unique<Hypertext>();
    EXPECT_TRUE(doc->IsValid());
    EXPECT_TRUE(doc->CanEdit());
    EXPECT_STREQ(Hypertext::ScrapType(), "com.morvent.rylvane.scrap");
    EXPECT_GT(doc->AttributeStorage()->GetCount(), 100);
    // A document built for its own table starts with the two built-in definitions only.
    Hypertext bare(true);
    EXPECT_EQ(bare.AttributeStorage()->GetCount(), 2);
    EXPECT_FALSE(bare.AttributeStorage()->Has("Name"));

    doc->WillWrite();
    doc->WillWrite();
    doc->DidWrite();
    EXPECT_TRUE(doc->IsWriting());
    doc->DidWrite();
    EXPECT_FALSE(doc->IsWriting());

    // Closing a document with notes, aliases, prototypes and hidden notes frees them all.
    Node* a = MakeNote(*doc, "a");
    Node* b = MakeNote(*doc, "b", a);
    b->SetPrototype(a, false);
    ASSERT_NE(NodeMaker(doc.get()).MakeAlias(b, doc->Root(), a), nullptr);
    MakeNote(*doc, "hidden")->Hide();
    doc.reset();

    Hypertext* none = Hypertext::NoHypertext();
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none, Hypertext::NoHypertext());
}
