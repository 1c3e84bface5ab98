// Documents in shapes that once made reading slow: the shortcuts taken for
// them must give what the plain way gives.
#include "DocumentTestSupport.h"

#include "AttributeType.h"
#include "Colors.h"
#include "Props.h"
#include "Prototypes.h"

namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<rylvane version=\"2\" revision=\"13\" >\n";

std::string Note(int id, const std::string& name, const std::string& proto = {}, const std::string& inner = {}) {
    return "<item ID=\"" + std::to_string(id) + "\" Creator=\"t\"" + (proto.empty() ? "" : " proto=\"" + proto + "\"") +
           " >\n<attribute name=\"Name\">" + name + "</attribute>\n<attribute name=\"IsPrototype\">true</attribute>\n" +
           inner + "</item>\n";
}

Node* Named(Hypertext& doc, const std::string& name) {
    for (Node* n = doc.Root()->Son(); n; n = n->Brother())
        if (n->Name() == name)
            return n;
    return nullptr;
}

} // namespace

TEST(HostileShapes, PrototypesFromAFileAreRefusedInFileOrderWhenTheyCloseALoop) {
    // A->C and B->A are made; C->B would close the loop C->B->A->C and waits as a request.
    std::string xml = kHead + "<item ID=\"1\" Creator=\"t\" >\n" + Note(2, "A", "C") + Note(3, "B", "A") +
                      Note(4, "C", "B") + Note(5, "D", "D") + Note(6, "E", "B") + "</item>\n</rylvane>\n";
    std::string error;
    auto doc = ReadDocument(xml, &error);
    ASSERT_TRUE(doc) << error;
    Node* a = Named(*doc, "A");
    Node* b = Named(*doc, "B");
    Node* c = Named(*doc, "C");
    ASSERT_TRUE(a && b && c);
    EXPECT_EQ(a->GetPrototype(), c);
    EXPECT_EQ(b->GetPrototype(), a);
    EXPECT_EQ(c->GetPrototype(), nullptr);
    EXPECT_EQ(Named(*doc, "D")->GetPrototype(), nullptr);
    EXPECT_EQ(Named(*doc, "E")->GetPrototype(), b);

    // The same answers as asking each note on its own.
    PrototypeChains chains;
    Node* d = Named(*doc, "D");
    EXPECT_FALSE(chains.CanBePrototype(c, b));
    EXPECT_FALSE(chains.CanBePrototype(d, d));
    EXPECT_TRUE(chains.CanBePrototype(d, b));
    d->SetPrototype(b, false);
    chains.Linked(d, b);
    EXPECT_FALSE(chains.CanBePrototype(c, d));
    EXPECT_EQ(chains.CanBePrototype(c, d), NodeInheritance(c).CanBePrototype(d));
}

TEST(HostileShapes, ALongChainAndManyAliasesReadWhole) {
    const int n = 3000;
    std::string notes;
    for (int i = 0; i < n; ++i)
        notes += Note(10 + i, "p" + std::to_string(i), i ? "p" + std::to_string(i - 1) : "");
    for (int i = 0; i < n; ++i)
        notes += "<item ID=\"" + std::to_string(100000 + i) +
                 "\" Creator=\"t\" >\n<attribute name=\"Alias\">10</attribute>\n</item>\n";
    std::string error;
    auto doc = ReadDocument(kHead + "<item ID=\"1\" Creator=\"t\" >\n" + notes + "</item>\n</rylvane>\n", &error);
    ASSERT_TRUE(doc) << error;
    int length = 0;
    for (Node* p = Named(*doc, "p" + std::to_string(n - 1)); p; p = p->GetPrototype())
        ++length;
    EXPECT_EQ(length, n);
    Node* first = Named(*doc, "p0");
    ASSERT_TRUE(first);
    NodeVector aliases = first->Aliases();
    ASSERT_EQ(aliases.size(), static_cast<size_t>(n));
    // Hiding and showing keeps the order they were made in.
    Node* second = aliases[1];
    second->Hide(true);
    EXPECT_EQ(first->Aliases().size(), static_cast<size_t>(n - 1));
    EXPECT_EQ(first->Aliases()[1], aliases[2]);
    NodeDeleter(aliases[0]).Delete();
    EXPECT_EQ(first->Aliases().size(), static_cast<size_t>(n - 2));
    EXPECT_EQ(first->Aliases()[0], aliases[2]);
}

TEST(HostileShapes, ManyValuesOnOneNoteAndManyColoursAreFoundByName) {
    Hypertext doc;
    Node* note = AddNote(doc, "many");
    Props* props = doc.AttributeStorage();
    std::vector<const Attribute*> made;
    for (int i = 0; i < 200; ++i) {
        made.push_back(props->CreateBasicAttribute("Many" + std::to_string(i), "User", true, AttributeType::kString));
        note->Set(made.back(), "v" + std::to_string(i));
    }
    for (int i = 0; i < 200; i += 7)
        EXPECT_EQ(note->GetString(made[i]), "v" + std::to_string(i));
    // A renamed attribute stands out of name order in the list, and is still found.
    props->Rename(const_cast<Attribute*>(made[5]), "AAAfirst");
    EXPECT_EQ(note->GetString(made[5]), "v5");
    note->Set(made[5], "again");
    EXPECT_EQ(note->GetString(made[5]), "again");
    EXPECT_EQ(note->GetString(made[150]), "v150");

    Colors colors = Colors::Empty();
    colors.Set("Deep Sea", PColor(1, 2, 3));
    colors.Set("sky", PColor(4, 5, 6));
    PColor found;
    EXPECT_TRUE(colors.Find("deep sea", found));
    EXPECT_EQ(found, PColor(1, 2, 3));
    colors.Set("DEEP SEA", PColor(7, 8, 9));
    EXPECT_EQ(colors.size(), 2u);
    EXPECT_EQ(colors.Entries()[0].name, "Deep Sea");
    colors.Remove("Deep sea");
    EXPECT_FALSE(colors.Has("deep sea"));
    EXPECT_TRUE(colors.Find("SKY", found));
    EXPECT_EQ(found, PColor(4, 5, 6));
}
