#include <gtest/gtest.h>

#include "Change.h"
#include "Hooks.h"
#include "Log.h"
#include "NodeID.h"
#include "NodeIndex.h"
#include "TestDocument.h"
#include "Value.h"

TEST(NodeTree, ElderUnderAnotherParentIsDroppedWithLogLine) {
    Hypertext doc;
    Node* a = MakeNote(doc, "A");
    Node* b = MakeNote(doc, "B", nullptr, a);
    Node* a1 = MakeNote(doc, "A1", a);
    Node* x = MakeNote(doc, "X", b);
    Node* y = MakeNote(doc, "Y", b, x);
    StLogCapture log;
    // a1 is a child of A, not of B: Y goes first under B instead.
    NodePosition(y).DoMoveTo(b, a1);
    EXPECT_TRUE(log.Contains("Invalid elder moving Y"));
    EXPECT_EQ(b->Son(), y);
    EXPECT_EQ(y->Brother(), x);
    EXPECT_TRUE(doc.Root()->Validate());
}

TEST(NodeTree, MovingInPlaceRunsOnlyAdornmentActions) {
    Hypertext doc;
    int adds = 0, removes = 0, adornments = 0;
    StHooks hooks;
    hooks->onAdd = [&](Node*, Node*) { ++adds; };
    hooks->onRemove = [&](Node*, Node*) { ++removes; };
    hooks->onAdornments = [&](Node*, const NodeVector&) { ++adornments; };
    Node* a = MakeNote(doc, "A");
    Node* b = MakeNote(doc, "B", nullptr, a);
    Node* c = MakeNote(doc, "C", a);
    adds = removes = adornments = 0;

    NodePosition(c).DoMoveToInternal(a, nullptr, c->GetDouble("Xpos"), c->GetDouble("Ypos"));
    EXPECT_EQ(adds, 0);
    EXPECT_EQ(removes, 0);
    EXPECT_EQ(adornments, 1);

    NodePosition(c).DoMoveToInternal(b, nullptr, 3, 4);
    EXPECT_EQ(adds, 1);
    EXPECT_EQ(removes, 1);
    EXPECT_EQ(adornments, 2);
    EXPECT_EQ(c->Father(), b);
    EXPECT_EQ(c->GetDouble("Xpos"), 3);

    // A move within the same father is no add and no remove.
    NodePosition(c).DoMoveToInternal(b, nullptr, 5, 5);
    EXPECT_EQ(adds, 1);
    EXPECT_EQ(removes, 1);
}

TEST(NodeTree, HidingTakesTheSubtreeOutOfTreeAndIndex) {
    Hypertext doc;
    Node* a = MakeNote(doc, "Alpha");
    Node* b = MakeNote(doc, "Beta", a);
    Node* keep = MakeNote(doc, "Keep", nullptr, a);
    uint32_t bid = b->GetID().GetID();
    NodeIndex* index = doc.GetIndex();
    index->Rebuild();
    ASSERT_EQ(index->Find("Beta"), b);
    ASSERT_EQ(index->Find(bid), b);

    a->Hide();
    EXPECT_TRUE(a->IsHidden());
    EXPECT_TRUE(b->IsHidden());
    EXPECT_EQ(a->Father(), nullptr);
    EXPECT_EQ(doc.Root()->Son(), keep);
    EXPECT_EQ(index->Find(bid), nullptr);
    EXPECT_EQ(index->Find("Beta"), nullptr);
    EXPECT_EQ(doc.HiddenNodes().count(b), 1u);
    // Values still read on a hidden note.
    EXPECT_EQ(b->GetString("Name"), "Beta");

    a->Show();
    EXPECT_FALSE(b->IsHidden());
    EXPECT_EQ(index->Find(bid), b);
    EXPECT_EQ(a->Father(), nullptr); // Show does not put it back in the tree
    EXPECT_EQ(doc.HiddenNodes().count(b), 0u);
    NodePosition(a).DoMoveTo(doc.Root(), keep);
    EXPECT_EQ(keep->Brother(), a);
    EXPECT_TRUE(doc.Root()->Validate());
}

TEST(NodeTree, DuplicateNamesAndInvalidUtf8) {
    Hypertext doc;
    Node* plan = MakeNote(doc, "Plan");
    auto dup = [](Node* n) { return NodeName(n).MakeNameForDuplicate(n->Name()); };
    EXPECT_EQ(dup(plan), "Plan copy");
    plan->SetName("Plan copy");
    EXPECT_EQ(dup(plan), "Plan copy 1");
    plan->SetName("Plan copy 1");
    EXPECT_EQ(dup(plan), "Plan copy 2");
    plan->SetName("2024");
    EXPECT_EQ(dup(plan), "2024 copy");
    plan->SetName("");
    EXPECT_EQ(dup(plan), "copy");
    plan->SetName("Take 9");
    EXPECT_EQ(dup(plan), "Take 10");
    plan->SetBoolean("Separator", true);
    EXPECT_EQ(dup(plan), "Take 9");

    plan->SetName("bad \xC3\x28 name");
    EXPECT_EQ(plan->Name(), "");

    // A copy made through Create gets the duplicate name and a fresh id.
    plan->SetBoolean("Separator", false);
    plan->SetName("Plan");
    plan->Set("MyString", "kept");
    Node* copy = Node::Create(*plan, 0);
    EXPECT_EQ(copy->Name(), "Plan copy");
    EXPECT_EQ(copy->GetString("MyString"), "kept");
    EXPECT_NE(copy->GetID().GetID(), plan->GetID().GetID());
    EXPECT_EQ(copy->GetLong("ID"), static_cast<long>(copy->GetID().GetID()));
    NodePosition(copy).DoMoveTo(doc.Root(), plan);
    EXPECT_EQ(plan->Brother(), copy);
}

TEST(NodeTree, IdsComeFromOneCounterShared) {
    Hypertext one, two;
    Node* a = MakeNote(one, "a");
    Node* b = MakeNote(two, "b");
    Node* c = MakeNote(one, "c");
    EXPECT_EQ(b->GetID().GetID(), a->GetID().GetID() + 1);
    EXPECT_EQ(c->GetID().GetID(), b->GetID().GetID() + 1);
    EXPECT_EQ(a->GetString("Creator"), one.CreatorName());

    uint32_t last = NodeID::LastID();
    NodeID same(last, "x");
    EXPECT_EQ(NodeID::LastID(), last + 1);
    NodeID other(last - 5, "x");
    EXPECT_EQ(NodeID::LastID(), last + 1);

    // Compare runs in inverted sense, so sorted sets run from the highest id.
    NodeID low(10, "b"), high(20, "a"), lowA(10, "a");
    EXPECT_EQ(low.Compare(high), -1);
    EXPECT_EQ(high.Compare(low), 1);
    EXPECT_EQ(low.Compare(lowA), 1);
    EXPECT_TRUE(high < low);
}

TEST(NodeTree, OutlineAndSiblingOrder) {
    Hypertext doc;
    Node* a = MakeNote(doc, "A");
    Node* a1 = MakeNote(doc, "A1", a);
    Node* a2 = MakeNote(doc, "A2", a, a1);
    Node* b = MakeNote(doc, "B", nullptr, a);
    Node* root = doc.Root();
    EXPECT_EQ(root->GetLong("OutlineOrder"), 0);
    EXPECT_EQ(root->GetLong("OutlineDepth"), 0);
    EXPECT_EQ(a->GetLong("OutlineOrder"), 1);
    EXPECT_EQ(a2->GetLong("OutlineOrder"), 3);
    EXPECT_EQ(b->GetLong("OutlineOrder"), 4);
    EXPECT_EQ(a1->GetLong("SiblingOrder"), 1);
    EXPECT_EQ(a1->GetSiblingOrder(), 0);
    EXPECT_EQ(a2->GetSiblingOrder(), 1);
    EXPECT_EQ(a2->GetLong("OutlineDepth"), 2);
    EXPECT_EQ(a2->GetString("Path"), "/A/A2");
    EXPECT_EQ(a->GetLong("ChildCount"), 2);
    EXPECT_EQ(root->GetLong("DescendantCount"), 4);
    EXPECT_EQ(NodeFacade(a2).HTPath(), "/A/A2");
    EXPECT_TRUE(NodeFacade(a).IsTopLevel());
    EXPECT_FALSE(NodeFacade(a1).IsTopLevel());
    EXPECT_EQ(NodeFacade(static_cast<Node*>(nullptr)).OutlineOrder(), -1);
    EXPECT_EQ(NodeFacade(static_cast<Node*>(nullptr)).Name(), "");
}

TEST(NodeTree, ChangesAreCollectedUntilTheOutermostGuardEnds) {
    Hypertext doc;
    Node* a = MakeNote(doc, "A");
    std::vector<Change::Batch> batches;
    doc.Changes()->AddListener([&](const Change::Batch& b) { batches.push_back(b); });
    {
        StChanges outer(&doc);
        {
            StChanges inner(&doc);
            a->SetDouble("Xpos", 10);
            a->Set("Color", "red");
        }
        EXPECT_TRUE(batches.empty());
    }
    ASSERT_EQ(batches.size(), 1u);
    ASSERT_EQ(batches[0].size(), 1u);
    EXPECT_EQ(batches[0][0].first, a);
    EXPECT_EQ(batches[0][0].second, 2048ul | 1ul | 4096ul);
    // The same value again: no change.
    a->SetDouble("Xpos", 10);
    EXPECT_EQ(batches.size(), 1u);
}

// Every part of the program writes a note's path the same way: the Path
// attribute, the paths of a list of notes and HTPath.
TEST(NodeTree, PathsAreWrittenOneWay) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a/b");
    Node* c = MakeNote(doc, "c", a);
    EXPECT_EQ(NodeFacade(c).HTPath(), "/a/b/c");
    EXPECT_EQ(c->GetString("Path"), "/a/b/c");
    EXPECT_EQ(doc.Root()->GetString("Path"), "/");
    EXPECT_EQ(NodeFacade(doc.Root()).HTPath(), "/");
    NodeVector both;
    both.push_back(a);
    both.push_back(c);
    EXPECT_EQ(both.PathString(), "/a/b;/a/b/c");
}
