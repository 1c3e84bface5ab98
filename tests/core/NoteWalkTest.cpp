// Walking and reshaping the note tree: preorder walks and collections,
// moves and their orders, copies with their links, deletion, names made
// from text, and the id of a note.
#include <gtest/gtest.h>

#include "Link.h"
#include "Log.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "NodeSorting.h"
#include "Prototypes.h"
#include "TestDocument.h"
#include "Value.h"

namespace {

std::string Names(const NodeVector& nodes) {
    std::string s;
    for (Node* n : nodes)
        s += (s.empty() ? "" : ",") + n->Name();
    return s;
}

// Builds   A(A1(A1a), A2)  B  C(C1)   under the root.
struct Outline {
    explicit Outline(Hypertext& doc) {
        a = MakeNote(doc, "A");
        a1 = MakeNote(doc, "A1", a);
        a1a = MakeNote(doc, "A1a", a1);
        a2 = MakeNote(doc, "A2", a, a1);
        b = MakeNote(doc, "B", nullptr, a);
        c = MakeNote(doc, "C", nullptr, b);
        c1 = MakeNote(doc, "C1", c);
    }
    Node *a, *a1, *a1a, *a2, *b, *c, *c1;
};

} // namespace

TEST(NoteWalks, PreorderCollectionsAndSentinels) {
    Hypertext doc;
    Outline o(doc);
    Node* root = doc.Root();

    NodeVector walked;
    for (Node* n = root; n; n = n->Next())
        walked.push_back(n);
    EXPECT_EQ(Names(walked), doc.Root()->Name() + ",A,A1,A1a,A2,B,C,C1");
    NodeVector back;
    for (Node* n = o.c1; n; n = n->Previous())
        back.push_back(n);
    EXPECT_EQ(back.size(), 8u);
    EXPECT_EQ(back[1], o.c);
    EXPECT_EQ(back[2], o.b);
    EXPECT_EQ(back[3], o.a2);
    EXPECT_EQ(back[4], o.a1a); // the deepest last descendant of A1
    EXPECT_EQ(back.back(), root);

    EXPECT_EQ(o.a1a->Sentinel(), o.a2);
    EXPECT_EQ(o.a2->Sentinel(), o.b);
    EXPECT_EQ(o.c1->Sentinel(), nullptr);
    EXPECT_EQ(doc.FirstNode(), o.a);

    NodeVector sub;
    NodeFacade(o.a).Enumerate([&](Node* n) { sub.push_back(n); });
    EXPECT_EQ(Names(sub), "A1,A1a,A2");
    sub.clear();
    NodeFacade(o.a).EnumerateWithSelf([&](Node* n) { sub.push_back(n); });
    EXPECT_EQ(Names(sub), "A,A1,A1a,A2");
    EXPECT_EQ(NodeFacade(o.a).DescendantCount(), 3);
    EXPECT_EQ(o.a->GetLong("DescendantCount"), 3);
    EXPECT_EQ(o.a->Depth(), 3);

    NodeCollections col(o.a1a);
    EXPECT_EQ(col.Ancestors().size(), 3u);
    EXPECT_EQ(col.Ancestors()[0], o.a1);
    EXPECT_EQ(col.Ancestors()[2], root);
    EXPECT_EQ(Names(NodeCollections(o.a).Descendants()), "A1,A1a,A2");
    EXPECT_EQ(Names(NodeCollections(o.a).All()), "A,A1,A1a,A2,B,C,C1");
    EXPECT_EQ(Names(NodeCollections(o.b).Siblings()), "A,B,C");
    EXPECT_EQ(Names(NodeCollections(o.a).YoungerSiblings()), "B,C");
    EXPECT_EQ(Names(NodeCollections(o.b).ThisAndYoungerSiblings()), "B,C");
    EXPECT_EQ(Names(NodeCollections(o.c).ChildrenOf()), "C1");
    EXPECT_EQ(NodeFacade(o.c1).EldestBrother(), o.c1);
    EXPECT_EQ(NodeFacade(o.a2).EldestBrother(), o.a1);

    // The whole-document walk visits the root too.
    EXPECT_EQ(HypertextFacade(&doc).Count([](Node*) { return true; }), 8);
    EXPECT_EQ(HypertextFacade(&doc).First([](Node* n) { return n->Name() == "C1"; }), o.c1);
}

TEST(NoteWalks, OrdersFollowMovesAfterRenumbering) {
    Hypertext doc;
    Outline o(doc);
    // Move A to be the last top-level note: the whole subtree goes along.
    NodePosition(o.a).DoMoveTo(doc.Root(), o.c);
    doc.UpdateOutlineOrder();
    EXPECT_EQ(o.b->GetOutlineOrder(), 1);
    EXPECT_EQ(o.c->GetOutlineOrder(), 2);
    EXPECT_EQ(o.c1->GetOutlineOrder(), 3);
    EXPECT_EQ(o.a->GetOutlineOrder(), 4);
    EXPECT_EQ(o.a1a->GetOutlineOrder(), 6);
    EXPECT_EQ(o.a->GetSiblingOrder(), 2);
    EXPECT_EQ(o.a->GetLong("SiblingOrder"), 3);
    EXPECT_EQ(o.a1a->GetLong("OutlineDepth"), 3);
    EXPECT_EQ(o.a1a->GetString("Path"), "/A/A1/A1a");

    // The attribute counts its elder brothers on the spot, without renumbering.
    NodePosition(o.c).DoMoveTo(doc.Root(), nullptr);
    EXPECT_EQ(o.c->GetLong("SiblingOrder"), 1);
    EXPECT_EQ(o.b->GetLong("SiblingOrder"), 2);

    // Sorting a vector by outline order uses the numbers of the last renumbering.
    doc.UpdateOutlineOrder();
    NodeVector v{o.a2, o.c1, o.b, o.a};
    NodeVectors::SortByOutlineOrder(v);
    EXPECT_EQ(Names(v), "C1,B,A,A2");

    // A new note is put first when no elder is given.
    Node* first = MakeNote(doc, "First");
    EXPECT_EQ(doc.FirstNode(), first);
    EXPECT_EQ(first->GetOutlineOrder(), 1);
    EXPECT_TRUE(doc.Root()->Validate());
}

TEST(NoteWalks, MovesRefuseCyclesAndForeignElders) {
    Hypertext doc;
    Outline o(doc);
    // The father of a note may not become its own descendant through the Container.
    o.a->Set("Container", "/A/A1/A1a");
    EXPECT_EQ(o.a->Father(), doc.Root());
    // A hidden elder is ignored: the note goes first.
    o.b->Hide();
    NodePosition(o.c1).DoMoveTo(doc.Root(), o.b);
    EXPECT_EQ(doc.FirstNode(), o.c1);
    EXPECT_TRUE(doc.Root()->Validate());

    // Making a note under a parent that has no document cannot happen; making one with a
    // null parent puts it under the root.
    Node* top = NodeMaker(&doc).MakeNode("Top", nullptr, nullptr, 0, 0);
    EXPECT_EQ(top->Father(), doc.Root());
}

TEST(NoteCopies, ValuesNameLinksAndPrototypeComeAlong) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    proto->Set("MyString", "inherited");
    Node* a = MakeNote(doc, "Plan");
    Node* b = MakeNote(doc, "Target");
    Node* hiddenEnd = MakeNote(doc, "Gone");
    a->SetPrototype(proto, false);
    a->Set("Color", "red");
    NodeText(a).SetText("the plan");
    Link* plain = NodeLinks(a).CreateLink(b, "agree");
    ASSERT_NE(plain, nullptr);
    ASSERT_NE(NodeLinks(a).CreateLink(hiddenEnd), nullptr);
    hiddenEnd->Hide();
    a->SetTime("Created", STime::FromUnixEpoch(1000));

    Node* withLinks = Node::Create(*a, 1);
    ASSERT_NE(withLinks, nullptr);
    EXPECT_EQ(withLinks->Name(), "Plan copy");
    EXPECT_EQ(withLinks->GetString("Color"), "red");
    EXPECT_EQ(withLinks->GetString("MyString"), "inherited");
    EXPECT_EQ(withLinks->GetPrototype(), proto);
    EXPECT_EQ(NodeText(withLinks).GetText(), "the plan");
    // The copy is a new note: new id, new dates.
    EXPECT_NE(withLinks->GetID().GetID(), a->GetID().GetID());
    EXPECT_GT(withLinks->GetDate("Created").SecondsSince1970(), 1000);
    // Every outbound link, hidden ones too, but no second prototype link.
    LinkBundle copied = NodeLinks(withLinks).OutboundLinksIncludeHidden();
    EXPECT_EQ(copied.OmitPrototypes().size(), 2u);
    bool toTarget = false;
    for (Link* l : copied)
        if (l->DestNode() == b && l->Name() == "agree")
            toTarget = true;
    EXPECT_TRUE(toTarget);
    EXPECT_EQ(NodeLinks(withLinks).OutboundLinks().OmitPrototypes().size(), 1u);
    // The source keeps its own links.
    EXPECT_EQ(NodeLinks(a).OutboundLinksIncludeHidden().OmitPrototypes().size(), 2u);

    Node* bare = Node::Create(*a, 0);
    EXPECT_TRUE(NodeLinks(bare).OutboundLinksIncludeHidden().OmitPrototypes().empty());
    // A copy of a copy counts on.
    Node* again = Node::Create(*withLinks, 0);
    EXPECT_EQ(again->Name(), "Plan copy 1");
}

TEST(NoteDeletion, DestroyingTakesChildrenLinksAndIndexEntries) {
    Hypertext doc;
    Node* a = MakeNote(doc, "Alpha");
    Node* child = MakeNote(doc, "Child", a);
    Node* other = MakeNote(doc, "Other");
    NodeLinks(other).CreateLink(child);
    NodeLinks(child).CreateLink(other);
    uint32_t childID = child->GetID().GetID();
    long links = doc.LinkCount();
    long before = doc.GetIndex()->count();

    NodeDeleter(a).Delete();
    EXPECT_EQ(doc.GetIndex()->count(), before - 2);
    EXPECT_EQ(doc.GetIndex()->Find(childID), nullptr);
    EXPECT_EQ(doc.LinkCount(), links - 2);
    EXPECT_TRUE(NodeLinks(other).OutboundLinksIncludeHidden().empty());
    EXPECT_EQ(doc.FirstNode(), other);
    EXPECT_TRUE(doc.HiddenNodes().empty());

    // Hiding keeps the links, so that undo finds them again.
    Node* keep = MakeNote(doc, "Keep");
    NodeLinks(other).CreateLink(keep);
    keep->Hide();
    EXPECT_EQ(NodeLinks(other).OutboundLinksIncludeHidden().size(), 1u);
    EXPECT_TRUE(NodeLinks(other).OutboundLinks().empty());
    keep->Show();
    EXPECT_EQ(NodeLinks(other).OutboundLinks().size(), 1u);
}

TEST(NoteNames, NamesFromTextAndDuplicates) {
    Hypertext doc;
    NodeName names(MakeNote(doc, "n"));
    EXPECT_EQ(names.MakeName("  First line\nsecond line"), "First line");
    EXPECT_EQ(names.MakeName("Ends here. And more"), "Ends here.");
    EXPECT_EQ(names.MakeName("tab\tcut"), "tab");
    EXPECT_EQ(names.MakeName("\r\nlead"), "lead");
    // A long text keeps whole words within 512 bytes and ends with an ellipsis.
    std::string words;
    for (int i = 0; i < 200; ++i)
        words += "word ";
    std::string made = names.MakeName(words);
    ASSERT_GE(made.size(), 3u);
    EXPECT_EQ(made.substr(made.size() - 3), "\xE2\x80\xA6");
    std::string body = made.substr(0, made.size() - 3);
    EXPECT_LE(body.size(), 512u);
    EXPECT_GT(body.size(), 505u);
    EXPECT_NE(body.back(), ' ');
    EXPECT_EQ(body.substr(body.size() - 4), "word");

    EXPECT_EQ(NodeName::Increment("v9"), "v10");
    EXPECT_EQ(NodeName::Increment("Draft"), "Draft 1");
    EXPECT_EQ(NodeName::Increment("take 099"), "take 100");
    EXPECT_TRUE(NodeName::IsACopy("Plan copy"));
    EXPECT_FALSE(NodeName::IsACopy("copy"));
    EXPECT_FALSE(NodeName::IsACopy("Plan copy 2"));
    EXPECT_FALSE(NodeName::IsANumber(""));
    EXPECT_TRUE(NodeName::IsANumber("0042"));

    // An unnamed note is untitled; a named one or one with text is not.
    Node* blank = MakeNote(doc, "");
    EXPECT_TRUE(NodeFacade(blank).IsUntitled());
    NodeText(blank).SetText("something");
    EXPECT_FALSE(NodeFacade(blank).IsUntitled());
    EXPECT_EQ(blank->DefaultName(), "untitled");
    Node* defaultNamed = MakeNote(doc, "untitled");
    EXPECT_TRUE(NodeFacade(defaultNamed).IsUntitled());
}

TEST(NoteIds, SettingAnIdMovesTheNoteInTheIndex) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    uint32_t old = n->GetID().GetID();
    n->SetID(NodeID(123456, "elsewhere"));
    EXPECT_EQ(doc.GetIndex()->Find(123456), n);
    EXPECT_EQ(doc.GetIndex()->Find(123456, "elsewhere"), n);
    EXPECT_EQ(doc.GetIndex()->Find(old), nullptr);
    EXPECT_EQ(n->GetLong("ID"), 123456);
    EXPECT_EQ(n->GetString("Creator"), "elsewhere");

    // On an alias the id attributes are written on the alias, not forwarded.
    Node* alias = NodeMaker(&doc).MakeAlias(n, doc.Root(), n);
    ASSERT_NE(alias, nullptr);
    EXPECT_EQ(n->GetLong("ID"), 123456);
    EXPECT_EQ(alias->GetLong("ID"), static_cast<long>(alias->GetID().GetID()));
    EXPECT_EQ(alias->GetAliasID(), 123456u);

    // Equal and Compare look at both fields.
    EXPECT_TRUE(NodeID(5, "x").Equal(NodeID(5, "x")));
    EXPECT_FALSE(NodeID(5, "x").Equal(NodeID(5, "y")));
    EXPECT_TRUE(NodeID(5, "x").Equal(5, "x"));
    EXPECT_EQ(NodeID(5, "x").Compare(NodeID(5, "x")), 0);
}
