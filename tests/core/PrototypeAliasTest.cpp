#include <gtest/gtest.h>

#include "Prototypes.h"
#include "TestDocument.h"
#include "Value.h"

TEST(Aliases, ShareInheritableValuesAndKeepIntrinsicOnes) {
    Hypertext doc;
    Node* original = MakeNote(doc, "Original");
    Node* box = MakeNote(doc, "Box");
    Node* alias = NodeMaker(&doc).MakeAlias(original, box, nullptr);
    ASSERT_NE(alias, nullptr);
    Node* second = NodeMaker(&doc).MakeAlias(alias, box, alias);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->GetOriginal(), original);
    EXPECT_EQ(original->Aliases().size(), 2u);
    EXPECT_EQ(alias->Name(), "Original");
    EXPECT_EQ(alias->GetLong("Alias"), static_cast<long>(original->GetID().GetID()));

    alias->Set("Color", "red");
    EXPECT_EQ(original->GetString("Color"), "red");
    alias->SetDouble("Xpos", 7);
    EXPECT_EQ(alias->GetDouble("Xpos"), 7);
    EXPECT_NE(original->GetDouble("Xpos"), 7);

    // Renaming through the alias renames the original.
    alias->Set("Name", "Renamed");
    EXPECT_EQ(original->Name(), "Renamed");
    EXPECT_EQ(second->Name(), "Renamed");
    NodeText(alias).SetText("shared text");
    EXPECT_EQ(NodeText(original).GetText(), "shared text");
    EXPECT_EQ(original->GetString("Aliases"), "/Box/Renamed;/Box/Renamed");

    // A hidden original makes its aliases read as empty.
    original->Hide();
    EXPECT_TRUE(alias->IsHidden());
    EXPECT_EQ(alias->GetString("Color"), "");
    original->Show();
    // Show leaves relinking to the caller; the aliases go back by themselves.
    EXPECT_EQ(original->Father(), nullptr);
    NodePosition(original).DoMoveToInternal(doc.Root(), nullptr, 0, 0);
    EXPECT_EQ(original->Father(), doc.Root());
    EXPECT_FALSE(alias->IsHidden());
    EXPECT_EQ(alias->Father(), box);
    EXPECT_EQ(alias->GetString("Color"), "red");

    EXPECT_EQ(AliasNode::CreateFor(doc.Root(), box, nullptr, 0, 0, true), nullptr);
}

TEST(Prototypes, ChainsLoopsAndRefusals) {
    Hypertext doc;
    Node* a = MakeNote(doc, "A");
    Node* b = MakeNote(doc, "B");
    Node* c = MakeNote(doc, "C");
    EXPECT_FALSE(NodeInheritance(a).CanBePrototype(a));
    b->SetPrototype(a, false);
    c->SetPrototype(b, false);
    EXPECT_FALSE(NodeInheritance(a).CanBePrototype(c)); // c's chain leads back to a
    a->SetPrototype(c, false);
    EXPECT_EQ(a->GetPrototype(), nullptr);
    EXPECT_EQ(NodeInheritance(a).InstanceCount(), 1);

    // A loop forced past the guards still ends the read: the default answers.
    a->GetPrototypeCache()->SetNode(b);
    EXPECT_EQ(c->GetString("MyString"), "");
    b->Set("MyString", "from b");
    EXPECT_EQ(c->GetString("MyString"), "from b");
    EXPECT_EQ(a->GetString("MyString"), "from b");
    EXPECT_FALSE(NodeInheritance(c).CanBePrototype(a));
}

TEST(Prototypes, TextSizeAndChildrenComeAlong) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    NodeText(proto).SetText("template text");
    proto->SetDouble("Width", 9);
    MakeNote(doc, "Part", proto);
    Node* fresh = MakeNote(doc, "Fresh");
    fresh->SetPrototype(proto, true);
    EXPECT_EQ(NodeText(fresh).GetText(), "template text");
    EXPECT_EQ(fresh->GetDouble("Width"), 9);
    ASSERT_NE(fresh->Son(), nullptr);
    EXPECT_EQ(fresh->Son()->Name(), "Part");

    Node* other = MakeNote(doc, "Other");
    NodeText(other).SetText("mine");
    other->SetPrototype(proto, false);
    EXPECT_EQ(NodeText(other).GetText(), "mine");
    // Text equal to the old prototype's follows the new prototype.
    Node* proto2 = MakeNote(doc, "Proto2");
    NodeText(proto2).SetText("second");
    fresh->SetPrototype(proto2, false);
    EXPECT_EQ(NodeText(fresh).GetText(), "second");
}

TEST(Prototypes, CloneDescendantsStopsAfterFiveHundred) {
    Hypertext doc;
    Node* big = MakeNote(doc, "Big");
    for (int i = 0; i < 30; ++i) {
        Node* group = NodeMaker(&doc).MakeDontInitialize("g", big, nullptr, 0, 0);
        for (int j = 0; j < 30; ++j)
            NodeMaker(&doc).MakeDontInitialize("leaf", group, nullptr, 0, 0);
    }
    Node* target = MakeNote(doc, "Target");
    NodeInheritance(target).CloneDescendants(big, target);
    EXPECT_EQ(target->Descendants(), 500);
}
