// Reads and writes through aliases and prototypes: which note answers,
// which note is written, what is kept per alias, and what a change reports.
#include <gtest/gtest.h>

#include "AttributeInfo.h"
#include "Change.h"
#include "Log.h"
#include "Props.h"
#include "Prototypes.h"
#include "TestDocument.h"
#include "Value.h"

namespace {

// Collects the masks delivered for each note.
struct MaskRecorder {
    explicit MaskRecorder(Hypertext& doc) {
        doc.Changes()->AddListener([this](const Change::Batch& batch) {
            for (auto& [n, mask] : batch)
                masks[n] |= mask;
        });
    }
    unsigned long For(Node* n) const {
        auto it = masks.find(n);
        return it == masks.end() ? 0 : it->second;
    }
    void Clear() { masks.clear(); }
    std::map<Node*, unsigned long> masks;
};

} // namespace

TEST(AliasReads, AliasOriginalPrototypeDefaultInThatOrder) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    Node* original = MakeNote(doc, "Original");
    Node* box = MakeNote(doc, "Box");
    proto->Set("Color", "red");
    proto->Set("MyString", "from prototype");
    original->SetPrototype(proto, false);
    original->SetDouble("Width", 7);
    Node* alias = NodeMaker(&doc).MakeAlias(original, box, nullptr);
    ASSERT_NE(alias, nullptr);

    // Nothing local on the alias or the original: the original's prototype answers.
    EXPECT_EQ(alias->GetString("Color"), "red");
    EXPECT_EQ(alias->GetPrototype(), proto);
    // The original's own value wins over its prototype.
    original->Set("Color", "blue");
    EXPECT_EQ(alias->GetString("Color"), "blue");
    // Nothing anywhere: the default.
    EXPECT_EQ(alias->GetString("MyNumber"), "0");
    EXPECT_EQ(alias->GetString("MyString"), "from prototype");

    // Size was copied when the alias was made and is the alias's own from then on.
    EXPECT_EQ(alias->GetDouble("Width"), 7);
    original->SetDouble("Width", 9);
    EXPECT_EQ(alias->GetDouble("Width"), 7);
    alias->SetDouble("Height", 4);
    EXPECT_NE(original->GetDouble("Height"), 4);

    // The name is never held by the alias itself.
    const Attribute* nameAttr = doc.AttributeStorage()->GetAttribute("Name");
    EXPECT_EQ(alias->DoGetImmediate(nameAttr), nullptr);
    EXPECT_EQ(alias->GetString("Name"), "Original");

    // Created and Modified always come from the original, even when the
    // alias holds a value of its own.
    STime stamp = STime::FromUnixEpoch(1600000000);
    original->SetTime("Modified", stamp);
    EXPECT_EQ(alias->GetDate("Modified").SecondsSince1970(), 1600000000);
    alias->CanForward(false);
    alias->SetTime("Created", STime::FromUnixEpoch(1000));
    alias->CanForward(true);
    EXPECT_EQ(alias->GetDate("Created").SecondsSince1970(), original->GetDate("Created").SecondsSince1970());

    // A prototype given to the alias is the original's.
    Node* other = MakeNote(doc, "Other");
    other->Set("MyString", "from other");
    alias->SetPrototype(other, false);
    EXPECT_EQ(original->GetPrototype(), other);
    EXPECT_EQ(original->GetString("MyString"), "from other");

    // Children are the original's: the alias is a container when the original is.
    EXPECT_FALSE(alias->IsContainer());
    MakeNote(doc, "Inside", original);
    EXPECT_TRUE(alias->IsContainer());
    EXPECT_EQ(alias->GetLong("ChildCount"), 1);
    EXPECT_EQ(alias->Son(), nullptr);
}

TEST(AliasWrites, ForwardingAndChangesReportedOnBothNotes) {
    Hypertext doc;
    Node* original = MakeNote(doc, "Original");
    Node* box = MakeNote(doc, "Box");
    Node* alias = NodeMaker(&doc).MakeAlias(original, box, nullptr);
    ASSERT_NE(alias, nullptr);
    MaskRecorder changes(doc);

    {
        StChanges hold(&doc);
        alias->Set("Color", "green");
    }
    EXPECT_EQ(original->GetString("Color"), "green");
    EXPECT_EQ(alias->DoGetImmediate(doc.AttributeStorage()->GetAttribute("Color")), nullptr);
    EXPECT_NE(changes.For(original) & 1, 0ul);
    EXPECT_NE(changes.For(alias) & 1, 0ul);

    // Intrinsic values stay on the alias and only the alias changes.
    changes.Clear();
    {
        StChanges hold(&doc);
        alias->SetDouble("Xpos", 12);
    }
    EXPECT_EQ(alias->GetDouble("Xpos"), 12);
    EXPECT_NE(original->GetDouble("Xpos"), 12);
    EXPECT_EQ(changes.For(original), 0ul);
    EXPECT_NE(changes.For(alias) & 2048, 0ul);

    // With forwarding off, an inheritable value lands on the alias and hides the original's.
    alias->CanForward(false);
    alias->Set("Color", "yellow");
    alias->CanForward(true);
    EXPECT_EQ(alias->GetString("Color"), "yellow");
    EXPECT_EQ(original->GetString("Color"), "green");
}

TEST(AliasPlacement, BesideTheOriginalHiddenAndBackAndDeleted) {
    Hypertext doc;
    Node* box = MakeNote(doc, "Box");
    Node* first = MakeNote(doc, "First", box);
    Node* original = MakeNote(doc, "Original", box, first);
    Node* last = MakeNote(doc, "Last", box, original);
    NodePosition(original).SetPosition(2, 3);

    // An alias made beside its original follows it at half a unit to the right.
    AliasNode* beside = AliasNode::CreateFor(original);
    ASSERT_NE(beside, nullptr);
    EXPECT_EQ(beside->Father(), box);
    EXPECT_EQ(beside->ElderBrother(), original);
    EXPECT_EQ(beside->Brother(), last);
    EXPECT_DOUBLE_EQ(beside->GetDouble("Xpos"), 2.5);
    EXPECT_DOUBLE_EQ(beside->GetDouble("Ypos"), 3);
    EXPECT_FALSE(beside->CanBeAliased());
    EXPECT_FALSE(beside->CanReceiveChildren());

    // A copy of an alias is another alias of the same original.
    Node* copy = beside->Clone(0);
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(copy->IsAlias());
    EXPECT_EQ(copy->GetOriginal(), original);
    EXPECT_DOUBLE_EQ(copy->GetDouble("Xpos"), 3.0);

    // Hiding an alias remembers its place; showing it puts it back there.
    NodePosition(beside).SetPosition(6, 1);
    beside->Hide(true);
    EXPECT_TRUE(beside->IsHidden());
    EXPECT_EQ(beside->Father(), nullptr);
    EXPECT_FALSE(original->Aliases().HasNode(beside));
    beside->Hide(false);
    EXPECT_FALSE(beside->IsHidden());
    EXPECT_EQ(beside->Father(), box);
    EXPECT_EQ(beside->ElderBrother(), original);
    EXPECT_DOUBLE_EQ(beside->GetDouble("Xpos"), 6);
    EXPECT_DOUBLE_EQ(beside->GetDouble("Ypos"), 1);
    EXPECT_TRUE(original->Aliases().HasNode(beside));
    EXPECT_TRUE(box->Validate());

    // Deleting an alias takes it out of the original's list and leaves the original alone.
    size_t before = original->Aliases().size();
    NodeDeleter(beside).Delete();
    EXPECT_EQ(original->Aliases().size(), before - 1);
    EXPECT_FALSE(original->IsHidden());
    EXPECT_TRUE(box->Validate());

    // Hiding the original hides every alias; they come back with it.
    original->Hide();
    EXPECT_TRUE(copy->IsHidden());
    original->Show();
    EXPECT_FALSE(copy->IsHidden());
    EXPECT_EQ(copy->Father(), box);
}

TEST(AliasCreation, NewlyCreatedWorkSkipsAliases) {
    Hypertext doc;
    AttributeInfo info(&doc);
    Attribute* ticket = info.CreateBasicAttribute("Ticket", "User", true, AttributeType::kNumber);
    ASSERT_NE(ticket, nullptr);
    ticket->BeSequential(true);
    Attribute* due = info.CreateBasicAttribute("Due", "User", true, AttributeType::kDate);
    due->SetDefault(Value::ForDate(STime::FromUnixEpoch(1700000000)));

    Node* a = MakeNote(doc, "A");
    EXPECT_EQ(a->GetLong("Ticket"), 1);
    ASSERT_NE(a->DoGetImmediate(due), nullptr);
    Node* alias = NodeMaker(&doc).MakeAlias(a, doc.Root(), a);
    ASSERT_NE(alias, nullptr);
    // The alias numbers nothing and freezes nothing of its own.
    EXPECT_EQ(ticket->GetDefaultValueAsString(), "1");
    EXPECT_EQ(alias->DoGetImmediate(ticket), nullptr);
    EXPECT_EQ(alias->GetLong("Ticket"), 1);
    Node* b = MakeNote(doc, "B");
    EXPECT_EQ(b->GetLong("Ticket"), 2);
    // The root is skipped when the numbering is laid over a document.
    ticket->Initialize(&doc);
    EXPECT_EQ(doc.Root()->DoGetImmediate(ticket), nullptr);
}

TEST(Prototypes, WritesThroughThePrototypeAttribute) {
    Hypertext doc;
    Node* plain = MakeNote(doc, "Shape");
    Node* real = MakeNote(doc, "Shape", nullptr, plain);
    real->SetBoolean("IsPrototype", true);
    real->Set("Color", "red");
    Node* n = MakeNote(doc, "n");

    // A note marked as prototype wins over an earlier note of the same name.
    n->Set("Prototype", "Shape");
    EXPECT_EQ(n->GetPrototype(), real);
    EXPECT_EQ(n->GetString("Color"), "red");
    EXPECT_EQ(NodeInheritance(real).InstanceCount(), 1);

    // A hidden note cannot become a prototype by name.
    Node* gone = MakeNote(doc, "Gone");
    gone->Hide();
    n->Set("Prototype", "Gone");
    EXPECT_EQ(n->GetPrototype(), real);

    // Removing the value clears the prototype; the read falls back to the default.
    n->Remove("Prototype");
    EXPECT_EQ(n->GetPrototype(), nullptr);
    EXPECT_EQ(n->GetString("Color"), "warm gray dark");
    EXPECT_EQ(NodeInheritance(real).InstanceCount(), 0);

    // A note whose size was changed keeps it when it takes a prototype.
    real->SetDouble("Width", 11);
    n->SetDouble("Width", 5);
    n->SetPrototype(real, false);
    EXPECT_EQ(n->GetDouble("Width"), 5);
    Node* fresh = MakeNote(doc, "fresh");
    fresh->SetPrototype(real, false);
    EXPECT_EQ(fresh->GetDouble("Width"), 11);
    // The size is copied, not inherited: a later change of the prototype stays there.
    real->SetDouble("Width", 13);
    EXPECT_EQ(fresh->GetDouble("Width"), 11);

    // Prototype values reach the instance only through the prototype's own values,
    // not through the prototype's default.
    AttributeInfo info(&doc);
    info.SetDefault("MyString", "document default");
    EXPECT_EQ(fresh->GetString("MyString"), "document default");
    const Attribute* myString = doc.AttributeStorage()->GetAttribute("MyString");
    EXPECT_EQ(NodeInheritance(fresh).InheritFromPrototype(myString), nullptr);
    real->Set("MyString", "prototype's own");
    ASSERT_NE(NodeInheritance(fresh).InheritFromPrototype(myString), nullptr);
    EXPECT_EQ(fresh->GetString("MyString"), "prototype's own");
    // Intrinsic attributes never inherit, whatever the prototype holds.
    EXPECT_EQ(NodeInheritance(fresh).InheritFromPrototype("Xpos"), nullptr);
    EXPECT_EQ(NodeInheritance(fresh).InheritFromPrototype("Name"), nullptr);
}

TEST(ChangeFacets, MasksFollowTheAttributeAndTheNoteState) {
    Hypertext doc;
    AttributeInfo info(&doc);
    Attribute* shape = info.CreateBasicAttribute("Outlined", "User", true, AttributeType::kString);
    ASSERT_NE(shape, nullptr);
    shape->Changes(512);
    shape->AlsoChanges(8192);
    Node* n = MakeNote(doc, "n");
    MaskRecorder changes(doc);

    n->Set("Outlined", "box");
    EXPECT_EQ(changes.For(n), 512ul | 8192ul);
    changes.Clear();
    n->Set("Outlined", "box");
    EXPECT_EQ(changes.For(n), 0ul);
    n->Remove("Outlined");
    EXPECT_EQ(changes.For(n), 512ul | 8192ul);
    changes.Clear();
    // Removing what is not there reports nothing.
    n->Remove("Outlined");
    EXPECT_EQ(changes.For(n), 0ul);

    // Mask 0 reports nothing; a hidden note reports only through AddChange.
    n->Changed(0ul);
    EXPECT_EQ(changes.For(n), 0ul);
    Node* hidden = MakeNote(doc, "hidden");
    hidden->Hide();
    changes.Clear();
    hidden->Changed(4ul);
    EXPECT_EQ(changes.For(hidden), 0ul);
    hidden->AddChange(4ul);
    EXPECT_EQ(changes.For(hidden), 4ul);

    // Moving a note to a new father reports on both fathers.
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c", a);
    changes.Clear();
    NodePosition(c).DoMoveTo(b, nullptr);
    EXPECT_NE(changes.For(a) & 2, 0ul);
    EXPECT_NE(changes.For(b) & 2, 0ul);
    EXPECT_NE(changes.For(c) & 1, 0ul);

    // The renamed attribute reports with the facets of the attribute it stands for.
    changes.Clear();
    n->Set("KeyAttributes", "Width");
    EXPECT_NE(changes.For(n) & 4, 0ul);
}
