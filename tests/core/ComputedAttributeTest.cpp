// Attributes whose value is computed from the tree, the text or the links
// rather than stored, and the name index that reads and writes keep current.
#include <gtest/gtest.h>

#include "Link.h"
#include "Log.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "TestDocument.h"
#include "Value.h"

TEST(ComputedAttributes, LinkCountsLeaveOutPrototypeHiddenAndWebLinks) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Proto");
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    Node* gone = MakeNote(doc, "gone");
    a->SetPrototype(proto, false);
    NodeText(a).SetText("see the plan");
    NodeLinks(a).CreateLink(b);
    NodeLinks(a).CreateLink(gone);
    LinkRecord text(a, 4, 3);
    text.destNode = c;
    ASSERT_NE(NodeLinks(a).CreateLink(text), nullptr);
    LinkRecord web(a);
    web.url = "https://example.org";
    ASSERT_NE(NodeLinks(a).CreateLink(web), nullptr);
    NodeLinks(c).CreateLink(a);
    gone->Hide();

    // Outbound: b and the text link to c; not the prototype, the web link or the hidden end.
    EXPECT_EQ(a->GetLong("OutboundLinkCount"), 2);
    EXPECT_EQ(a->GetLong("InboundLinkCount"), 1);
    EXPECT_EQ(a->GetLong("WebLinkCount"), 1);
    EXPECT_EQ(a->GetLong("TextLinkCount"), 1);
    EXPECT_EQ(b->GetLong("InboundLinkCount"), 1);
    EXPECT_EQ(b->GetLong("OutboundLinkCount"), 0);
    // A prototype's instances do not count as inbound links.
    EXPECT_EQ(proto->GetLong("InboundLinkCount"), 0);
    EXPECT_EQ(c->GetLong("PlainLinkCount"), 1);

    // The counts follow the store without any invalidation.
    gone->Show();
    EXPECT_EQ(a->GetLong("OutboundLinkCount"), 3);

    // An alias counts the web and text links of its original.
    Node* alias = NodeMaker(&doc).MakeAlias(a, doc.Root(), a);
    ASSERT_NE(alias, nullptr);
    EXPECT_EQ(alias->GetLong("WebLinkCount"), 1);
    EXPECT_EQ(alias->GetLong("TextLinkCount"), 1);
    EXPECT_EQ(alias->GetLong("PlainLinkCount"), 0);

    // Counts are read-only.
    StLogCapture log;
    a->SetLong("InboundLinkCount", 9);
    EXPECT_TRUE(log.Contains("Writing to a read only attribute <InboundLinkCount> for node [a]"));
    EXPECT_EQ(a->GetLong("InboundLinkCount"), 1);
}

TEST(ComputedAttributes, TextTreeAndPathsAreReadOnTheSpot) {
    Hypertext doc;
    Node* a = MakeNote(doc, "Alpha");
    Node* b = MakeNote(doc, "Beta", a);
    Node* c = MakeNote(doc, "Gamma", b);

    // The computed value of one note does not leak into the next read of another.
    EXPECT_EQ(c->GetString("Path"), "/Alpha/Beta/Gamma");
    EXPECT_EQ(a->GetString("Path"), "/Alpha");
    EXPECT_EQ(c->GetString("Path"), "/Alpha/Beta/Gamma");
    b->SetName("Delta");
    EXPECT_EQ(c->GetString("Path"), "/Alpha/Delta/Gamma");
    EXPECT_EQ(c->GetString("Container"), "/Alpha/Delta");

    // Two reads of a count in a row stay valid while both are held.
    const Value* childCount = a->Get("ChildCount");
    const Value* descendants = a->Get("DescendantCount");
    ASSERT_NE(childCount, nullptr);
    ASSERT_NE(descendants, nullptr);
    EXPECT_EQ(childCount->AsLong(), 1);
    EXPECT_EQ(descendants->AsLong(), 2);
    EXPECT_EQ(b->GetLong("ChildCount"), 1);
    EXPECT_EQ(c->GetLong("ChildCount"), 0);

    // Text: written through the Text attribute, kept by the note's content.
    a->Set("Text", "One two, three.\nFour");
    EXPECT_EQ(a->GetString("Text"), "One two, three.\nFour");
    EXPECT_EQ(a->GetLong("WordCount"), 4);
    EXPECT_EQ(a->GetLong("TextLength"), 20);
    a->Remove("Text");
    EXPECT_EQ(a->GetString("Text"), "");
    EXPECT_EQ(a->GetLong("WordCount"), 0);
    EXPECT_FALSE(NodeText(a).HasText());

    // LocalAttributes lists names in tree order and leaves out intrinsic ones.
    c->Set("MyString", "x");
    c->SetDouble("Xpos", 4);
    c->Set("Color", "red");
    std::string local = c->GetString("LocalAttributes");
    EXPECT_NE(local.find("Color"), std::string::npos);
    EXPECT_NE(local.find("MyString"), std::string::npos);
    EXPECT_EQ(local.find("Xpos"), std::string::npos);
    EXPECT_EQ(local.find("Name"), std::string::npos);
    c->Remove("Color");
    EXPECT_EQ(c->GetString("LocalAttributes").find("Color"), std::string::npos);

    // Aliases of a note are listed by their paths.
    Node* alias = NodeMaker(&doc).MakeAlias(c, a, nullptr);
    ASSERT_NE(alias, nullptr);
    EXPECT_EQ(c->GetString("Aliases"), "/Alpha/Gamma");
    EXPECT_TRUE(alias->GetBoolean("IsAlias"));
    EXPECT_FALSE(c->GetBoolean("IsAlias"));
}

TEST(NameIndex, RenamesHiddenNotesAndAliasesInTheCache) {
    Hypertext doc;
    Node* a = MakeNote(doc, "Apple");
    Node* b = MakeNote(doc, "Apple", nullptr, a);
    NodeIndex* index = doc.GetIndex();
    index->Rebuild();
    // The first note to hold a name keeps it.
    EXPECT_EQ(index->Find("Apple"), a);
    // A rename invalidates the cache; the slow scan answers in the meantime.
    a->Set("Name", "Pear");
    EXPECT_TRUE(index->NeedsUpdate());
    EXPECT_EQ(index->Find("Pear"), a);
    EXPECT_EQ(index->Find("Apple"), b);
    index->Rebuild();
    EXPECT_EQ(index->Find("Apple"), b);
    EXPECT_EQ(index->Find("Pear"), a);

    // Aliases never enter the name cache, even when they come first in the outline.
    EXPECT_FALSE(index->NeedsUpdate());
    Node* alias = NodeMaker(&doc).MakeAlias(b, doc.Root(), nullptr);
    ASSERT_NE(alias, nullptr);
    index->Rebuild();
    EXPECT_EQ(index->Find("Apple"), b);
    EXPECT_TRUE(index->Has(alias));

    // A hidden note leaves the cache; its name is free for the next note.
    b->Hide();
    EXPECT_EQ(index->Find("Apple"), nullptr);
    Node* late = MakeNote(doc, "Apple");
    EXPECT_EQ(index->Find("Apple"), late);

    // A prototype lookup by a name that no note holds answers nothing.
    EXPECT_EQ(index->FindPrototype("Banana"), nullptr);
    EXPECT_EQ(index->FindPrototype("Pear"), nullptr); // there, but no prototype
    a->SetBoolean("IsPrototype", true);
    EXPECT_EQ(index->FindPrototype("Pear"), a);
    // Untitled notes and the root are not in the cache.
    index->Rebuild();
    EXPECT_EQ(index->Find(""), nullptr);
}
