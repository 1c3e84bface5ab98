#include <gtest/gtest.h>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "Colors.h"
#include "NodeIndex.h"
#include "NodeSorting.h"
#include "Prefs.h"
#include "Props.h"
#include "TestDocument.h"
#include "Value.h"

TEST(NodeIndexLookup, NameCacheAndSlowScanAgree) {
    Hypertext doc;
    Node* first = MakeNote(doc, "Twin");
    Node* box = MakeNote(doc, "Box", nullptr, first);
    MakeNote(doc, "Twin", box); // a later note with the same name
    NodeIndex* index = doc.GetIndex();
    // Before a rebuild the lookup scans in outline order.
    ASSERT_TRUE(index->NeedsUpdate());
    EXPECT_EQ(index->Find("Twin"), first);
    index->Rebuild();
    EXPECT_FALSE(index->NeedsUpdate());
    EXPECT_EQ(index->Find("Twin"), first); // the first holder keeps the name
    EXPECT_EQ(index->Find("Nobody"), nullptr);

    // A rename invalidates the cache; the scan still answers correctly.
    first->SetName("Single");
    EXPECT_TRUE(index->NeedsUpdate());
    EXPECT_EQ(index->Find("Single"), first);
    EXPECT_NE(index->Find("Twin"), first);

    // Untitled notes and aliases are not indexed by name.
    Node* untitled = MakeNote(doc, "untitled");
    Node* alias = NodeMaker(&doc).MakeAlias(box, doc.Root(), nullptr);
    index->Rebuild();
    EXPECT_EQ(index->Find("untitled"), nullptr);
    EXPECT_EQ(index->Find("Box"), box);
    EXPECT_EQ(index->Find(box->GetID().GetID()), box);
    EXPECT_NE(alias->GetID().GetID(), box->GetID().GetID());
    (void)untitled;

    // FindPrototype prefers a note marked as a prototype.
    Node* proto = MakeNote(doc, "Single");
    proto->SetBoolean("IsPrototype", true);
    EXPECT_EQ(index->FindPrototype("Single"), proto);
    EXPECT_EQ(index->count(), static_cast<long>(doc.GetAllNodes().size()));
}

TEST(NodeIndexLookup, DeletingANoteWithAliasesLeavesNoDanglingOriginal) {
    Hypertext doc;
    Node* original = MakeNote(doc, "Original");
    Node* holder = MakeNote(doc, "Holder");
    Node* alias = NodeMaker(&doc).MakeAlias(original, holder, nullptr);
    NodeDeleter(original).Delete();
    // The alias was hidden with its original and now answers for itself.
    EXPECT_TRUE(alias->IsHidden());
    EXPECT_EQ(alias->GetOriginal(), alias);
    EXPECT_EQ(holder->Son(), nullptr);
    EXPECT_EQ(doc.GetIndex()->Find(alias->GetID().GetID()), nullptr);
    EXPECT_TRUE(doc.Root()->Validate());
}

TEST(Sorting, ByAttributeBackwardAndWithTransformer) {
    Hypertext doc;
    Node* box = MakeNote(doc, "Box");
    Node* c = MakeNote(doc, "c", box);
    Node* a = MakeNote(doc, "B", box, c);
    Node* b = MakeNote(doc, "a", box, a);
    Node* empty = MakeNote(doc, "", box, b);
    c->SetLong("MyNumber", 3);
    a->SetLong("MyNumber", 1);
    b->SetLong("MyNumber", 2);
    NodeVector v = NodeFacade(box).Children();
    NodeVectors::SortByAttribute(v, "MyNumber");
    EXPECT_EQ(NodeVectors::TitleList(v), ";B;a;c");
    NodeVectors::SortByAttribute(v, "MyNumber", true);
    EXPECT_EQ(NodeVectors::TitleList(v), "c;a;B;");

    // Container sort by name, case-insensitive: the empty name goes last.
    box->Set("Sort", "Name");
    box->Set("SortTransform", "case-insensitive");
    auto comparator = AttributeValueComparator::ForContainer(box);
    box->SortChildren(TreeComparator(comparator));
    EXPECT_EQ(NodeVectors::TitleList(NodeFacade(box).Children()), "a;B;c;");
    (void)empty;

    NodeVector all = NodeFacade(box).Children();
    all.reverse();
    NodeVectors::SortByOutlineOrder(all);
    doc.UpdateOutlineOrder();
    NodeVectors::SortByOutlineOrder(all);
    EXPECT_EQ(all.front(), box->Son());
    EXPECT_TRUE(NodeVectors::SameParent(all));
    EXPECT_TRUE(NodeVectors::AnyElementIsDescendedFrom(all, box));
}

TEST(Sorting, ValueListGathersValuesInUseAndSuggestions) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    a->SetSet("MySet", "red;green");
    b->SetSet("MySet", "blue;red");
    doc.AttributeStorage()->GetAttribute("MySet")->SuggestedValues("violet;amber");
    auto values = ValueList(a, "MySet").Values();
    EXPECT_EQ(values, (std::vector<std::string>{"amber", "blue", "green", "red", "violet"}));
    EXPECT_TRUE(ValueList(nullptr, "MySet").Values().empty());
}

TEST(Preferences, DefaultsComeFromTheDocumentAndStayStable) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    doc.GetPreferences()->Set("Creator", "ada");
    EXPECT_EQ(n->GetString("Creator"), n->Creator()); // written locally at creation
    Attribute* creator = doc.AttributeStorage()->GetAttribute("Creator");
    const Value* first = creator->GetDefaultValue(n);
    const Value* again = creator->GetDefaultValue(n);
    EXPECT_EQ(first, again); // the same text answers the same object
    EXPECT_EQ(first->AsString(), "ada");
    creator->SetDefault(Value::Create("ignored"));
    EXPECT_EQ(creator->GetDefaultValue(n)->AsString(), "ada");
    EXPECT_EQ(creator->GetDefaultValueAsXML(&doc), "ada");
    doc.GetPreferences()->Set("Creator", "grace");
    EXPECT_EQ(creator->GetDefaultValue(n)->AsString(), "grace");
    // Kind 27 reads the spelling switch and answers its inverse.
    doc.GetPreferences()->Set("CheckSpelling", "true");
    EXPECT_FALSE(doc.GetPreferences()->BooleanFor(27));
}

TEST(Facades, NullNotesAndDocumentsAnswerSafely) {
    NodeFacade none(static_cast<Node*>(nullptr));
    EXPECT_TRUE(none.Invalid());
    EXPECT_FALSE(none.IsAlias());
    EXPECT_EQ(none.GetString("Name"), "");
    EXPECT_EQ(none.Son(), nullptr);
    EXPECT_TRUE(none.Children().empty());
    EXPECT_TRUE(none.Modified().IsNever());
    none.Set("Name", "x");
    none.Set("Name", Value::Create("owned and released"));
    HypertextFacade nodoc(static_cast<Hypertext*>(nullptr));
    EXPECT_TRUE(nodoc.Invalid());
    EXPECT_EQ(nodoc.NodeCount(), 0);
    EXPECT_TRUE(nodoc.Nodes().empty());
    EXPECT_TRUE(nodoc.TranslateColor("no such colour") == PColor());
    nodoc.DeleteValue(Value::Create("released at once"));
    EXPECT_FALSE(NotANode::Get()->IsValid());
    EXPECT_EQ(NotANode::Get()->Name(), "not a node");
    EXPECT_TRUE(HypertextFacade(HypertextFacade::NoHypertext()).Valid());

    Hypertext doc;
    doc.GetColorTable()->Set("sea", PColor(0, 0x8080, 0xffff));
    Node* n = MakeNote(doc, "n");
    n->Set("Color", "sea");
    EXPECT_TRUE(n->GetColor("Color") == PColor(0, 0x8080, 0xffff));
    n->Set("Color", "#ff0000");
    EXPECT_TRUE(n->GetColor("Color") == PColor(0xffff, 0, 0));
}
