#include <gtest/gtest.h>

#include "Attribute.h"
#include "AttributeInfo.h"
#include "Change.h"
#include "Content.h"
#include "Log.h"
#include "Props.h"
#include "TestDocument.h"
#include "Value.h"

namespace {
// Counts the change deliveries that name a note.
struct ChangeCounter {
    explicit ChangeCounter(Hypertext& doc) {
        doc.Changes()->AddListener([this](const Change::Batch& batch) {
            for (auto& [n, mask] : batch)
                if (n == watched)
                    ++count;
        });
    }
    Node* watched = nullptr;
    int count = 0;
};
} // namespace

TEST(Attributes, LookupByNameAndUnknownNames) {
    Hypertext doc;
    AttributeInfo info(&doc);
    ASSERT_NE(info.GetAttribute("$Name"), nullptr);
    EXPECT_EQ(info.GetAttribute("$Name")->Name(), "Name");
    EXPECT_EQ(info.GetAttribute(""), nullptr);
    EXPECT_EQ(info.GetAttribute("$"), nullptr);
    Attribute* missing = info.GetAttribute("NoSuchThing");
    ASSERT_NE(missing, nullptr);
    EXPECT_FALSE(missing->IsValid());
    EXPECT_EQ(missing->Name(), "NoSuchAttribute");

    Node* n = MakeNote(doc, "n");
    EXPECT_EQ(n->Get("NoSuchThing"), nullptr);
    EXPECT_EQ(n->GetString("NoSuchThing"), "");
    size_t held = n->Properties().size();
    n->Set("NoSuchThing", "x"); // ignored
    EXPECT_EQ(n->Properties().size(), held);
    EXPECT_EQ(n->GetString("NoSuchThing"), "");
    EXPECT_EQ(info.GetDefaultValueOf("Width"), "3");
    EXPECT_EQ(info.CategoryForAttribute("Xpos"), "Map");
    EXPECT_EQ(doc.AttributeStorage()->GetAttribute("System")->Category(), "System");
}

TEST(Attributes, WritesChangeOnlyWhenTheValueDiffers) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    Node* n = MakeNote(doc, "n");
    proto->Set("Color", "red");
    n->SetPrototype(proto, false);
    ASSERT_EQ(n->GetString("Color"), "red");
    ChangeCounter changes(doc);
    changes.watched = n;
    // The first local value counts as a change even when it equals the inherited one.
    n->Set("Color", "red");
    EXPECT_EQ(changes.count, 1);
    n->Set("Color", "red");
    EXPECT_EQ(changes.count, 1);
    n->Set("Color", "blue");
    EXPECT_EQ(changes.count, 2);
    n->Remove("Color");
    EXPECT_EQ(changes.count, 3);
    EXPECT_EQ(n->GetString("Color"), "red");
}

TEST(Attributes, ReadOrderLocalThenPrototypeThenDefault) {
    Hypertext doc;
    Node* base = MakeNote(doc, "Base");
    Node* mid = MakeNote(doc, "Mid");
    Node* n = MakeNote(doc, "n");
    mid->SetPrototype(base, false);
    n->SetPrototype(mid, false);
    EXPECT_EQ(n->GetString("Color"), "warm gray dark");
    base->Set("Color", "red");
    EXPECT_EQ(n->GetString("Color"), "red");
    mid->Set("Color", "blue");
    EXPECT_EQ(n->GetString("Color"), "blue");
    n->Set("Color", "green");
    EXPECT_EQ(n->GetString("Color"), "green");
    // Intrinsic attributes never come from a prototype.
    base->SetDouble("Xpos", 42);
    Node* fresh = MakeNote(doc, "fresh");
    fresh->Remove("Xpos");
    fresh->SetPrototype(base, false);
    EXPECT_EQ(fresh->GetDouble("Xpos"), 0);
}

TEST(Attributes, SequentialAndDateDefaults) {
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    Attribute* number = props->CreateBasicAttribute("Ticket", "User", true, AttributeType::kNumber);
    ASSERT_NE(number, nullptr);
    Node* high = MakeNote(doc, "high");
    high->SetLong("Ticket", 50);
    Node* plain = MakeNote(doc, "plain");
    number->BeSequential(true);
    number->Initialize(&doc);
    // A note above the default keeps its value; the others take the
    // default plus one in outline order, raising the default as they go.
    EXPECT_EQ(high->GetLong("Ticket"), 50);
    EXPECT_EQ(plain->GetLong("Ticket"), 1);
    Node* next = MakeNote(doc, "next");
    EXPECT_EQ(next->GetLong("Ticket"), 2);
    EXPECT_EQ(number->GetDefaultValueAsString(), "2");

    Attribute* due = props->CreateBasicAttribute("Deadline", "User", true, AttributeType::kDate);
    due->SetDefault(Value::ForDate(STime::FromUnixEpoch(1700000000)));
    Node* dated = MakeNote(doc, "dated");
    ASSERT_NE(dated->DoGetImmediate(due), nullptr); // frozen at creation
    due->SetDefault(Value::ForDate(STime::FromUnixEpoch(1800000000)));
    EXPECT_EQ(dated->GetDate("Deadline").SecondsSince1970(), 1700000000);
}

TEST(Attributes, ComputedAndSpecialAttributes) {
    Hypertext doc;
    Node* n = MakeNote(doc, "Note");
    Node* target = MakeNote(doc, "Target");
    Node* child = MakeNote(doc, "Child", target);
    n->Set("Text", "three little words");
    EXPECT_EQ(NodeText(n).GetText(), "three little words");
    EXPECT_EQ(n->Properties().Get(doc.AttributeStorage()->GetAttribute("Text")), nullptr);
    EXPECT_EQ(n->GetLong("WordCount"), 3);
    EXPECT_EQ(n->GetLong("TextLength"), 18);

    // LocalAttributes lists only inheritable local values, in tree order.
    n->Set("MyString", "x");
    n->Set("Color", "red");
    EXPECT_EQ(n->GetString("LocalAttributes"), "Color;MyString");

    // Prototype by name works for any visible note.
    n->Set("Prototype", "Target");
    EXPECT_EQ(n->GetPrototype(), target);
    EXPECT_EQ(n->GetString("Prototype"), "Target");
    n->Set("Prototype", "Nobody");
    EXPECT_EQ(n->GetPrototype(), target);
    n->Set("Prototype", "");
    EXPECT_EQ(n->GetPrototype(), nullptr);

    // Container moves the note, but never under itself or to where it is.
    n->Set("Container", "/Target");
    EXPECT_EQ(n->Father(), target);
    EXPECT_EQ(target->YoungestSon(), n);
    EXPECT_EQ(n->GetString("Container"), "/Target");
    target->Set("Container", "/Target/Child");
    EXPECT_EQ(target->Father(), doc.Root());
    child->Set("Container", "/Target");
    EXPECT_EQ(child->Father(), target);
    EXPECT_EQ(child->ElderBrother(), nullptr);
    n->Remove("Container");
    EXPECT_EQ(n->Father(), doc.Root());

    StLogCapture log;
    n->SetLong("OutlineOrder", 99);
    EXPECT_TRUE(log.Contains("Writing to a read only attribute <OutlineOrder> for node [Note]"));
}

TEST(Attributes, UserAttributesAreCleanedAndRenamedWithTheirValues) {
    Hypertext doc;
    AttributeInfo info(&doc);
    Attribute* a = info.CreateBasicAttribute("my odd-name 2", "User", true, AttributeType::kString);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->Name(), "myodd_name2");
    EXPECT_TRUE(a->IsUserAttribute());
    EXPECT_FALSE(info.GetAttribute("Name")->IsUserAttribute());
    EXPECT_EQ(info.CountUserAttributes(), 1);

    Node* n = MakeNote(doc, "n");
    n->Set("myodd_name2", "kept");
    n->Set("DisplayedAttributes", "myodd_name2;Color");
    info.RenameAttribute(a, "Tidy");
    EXPECT_EQ(n->GetString("Tidy"), "kept");
    EXPECT_EQ(n->GetString("DisplayedAttributes"), "Color;Tidy");
    EXPECT_FALSE(info.HasAttribute("myodd_name2"));

    EXPECT_FALSE(Attribute::IsValidAttributeName("9lives"));
    EXPECT_FALSE(Attribute::IsValidAttributeName("a-b"));
    EXPECT_FALSE(Attribute::IsValidAttributeName(""));
    EXPECT_TRUE(Attribute::IsValidAttributeName("Fine_1"));
    // An existing name under another category is refused.
    StLogCapture log;
    EXPECT_EQ(doc.AttributeStorage()->CreateBasicAttribute("Xpos", "User", true, AttributeType::kNumber), nullptr);
    EXPECT_TRUE(log.Contains("<Xpos> exists, but isn't descended from <User>"));
}

TEST(Attributes, NeedToWriteDropsWhatWouldBeInherited) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "P");
    Node* n = MakeNote(doc, "n");
    Props* props = doc.AttributeStorage();
    Attribute* color = props->GetAttribute("Color");
    auto needs = [&](Node* note, const char* name) {
        Attribute* a = props->GetAttribute(name);
        return a->NeedToWrite(note, a, note->DoGetImmediate(a));
    };
    n->Set("Color", "warm gray dark"); // equals the default
    EXPECT_FALSE(needs(n, "Color"));
    n->Set("Color", "red");
    EXPECT_TRUE(needs(n, "Color"));
    proto->Set("Color", "red");
    n->SetPrototype(proto, false);
    EXPECT_FALSE(color->NeedToWrite(n, color, n->DoGetImmediate(color)));
    EXPECT_TRUE(needs(n, "Xpos"));    // intrinsic
    EXPECT_FALSE(needs(n, "ID"));     // carried by the note's element
    EXPECT_TRUE(needs(n, "Created")); // dates always
}

TEST(Attributes, DateTextMayReferToAnotherAttributeOfTheNote) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    n->Set("StartDate", "2026-03-01T10:00:00Z");
    EXPECT_EQ(STime::For("$StartDate+1 day", n).ISO8601DateString(), "2026-03-02T10:00:00Z");
}

TEST(Attributes, ManyLocalValuesStayFindableAfterRemovals) {
    // More attributes than summary bits: several share a bit, and removing
    // one must not hide another.
    Hypertext doc;
    Props* props = doc.AttributeStorage();
    std::vector<Attribute*> attrs;
    for (int i = 0; i < 150; ++i)
        attrs.push_back(props->CreateBasicAttribute("Extra" + std::to_string(i), "User", true, AttributeType::kString));
    Node* n = MakeNote(doc, "n");
    for (int i = 0; i < 150; ++i)
        n->Set(attrs[i], Value::Create("v" + std::to_string(i)));
    for (int i = 0; i < 150; i += 3)
        n->Remove(attrs[i]);
    for (int i = 0; i < 150; ++i) {
        const Value* v = n->DoGetImmediate(attrs[i]);
        if (i % 3 == 0)
            EXPECT_EQ(v, nullptr) << i;
        else
            ASSERT_NE(v, nullptr) << i;
    }
    // Local values are kept in name order, which files are written in.
    std::string previous;
    for (const auto& [attribute, value] : n->Properties()) {
        EXPECT_LT(previous, attribute->Name());
        previous = attribute->Name();
    }
}
