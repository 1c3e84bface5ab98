#include <gtest/gtest.h>

#include "Colors.h"
#include "Content.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "NodeLinks.h"
#include "Prototypes.h"
#include "TestDocument.h"
#include "XMLReader.h"
#include "XMLWriter.h"

namespace {

std::vector<std::string> Destinations(const LinkBundle& links) {
    std::vector<std::string> names;
    for (const Link* l : links)
        names.push_back(l->DestNode() ? l->DestNode()->Name() : l->URL());
    return names;
}

} // namespace

TEST(Links, StoreKeepsPriorityOrderThroughExchangeAndReorder) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    Node* d = MakeNote(doc, "d");
    Link* ab = NodeLinks(a).CreateLink(b, "agree");
    Link* ac = NodeLinks(a).CreateLink(c);
    Link* ad = NodeLinks(a).CreateLink(d);
    Link* ba = NodeLinks(b).CreateLink(a);
    ASSERT_TRUE(ab && ac && ad && ba);
    LinkManager* links = doc.Links();
    EXPECT_EQ(links->size(), 4u);
    EXPECT_EQ(ac->Name(), "*untitled");
    EXPECT_EQ(Destinations(NodeLinks(a).OutboundLinks()), (std::vector<std::string>{"b", "c", "d"}));
    EXPECT_EQ(Destinations(NodeLinks(a).InboundLinks()), (std::vector<std::string>{"a"}));
    EXPECT_EQ(links->ListLinks(a, false).size(), 4u);
    EXPECT_TRUE(links->UsesLinkType("agree"));
    EXPECT_FALSE(links->UsesLinkType("disagree"));

    links->Exchange(ab, ad);
    EXPECT_EQ(links->PriorityOf(ad), 0);
    EXPECT_EQ(links->Get(2), ab);
    EXPECT_EQ(Destinations(NodeLinks(a).OutboundLinks()), (std::vector<std::string>{"d", "c", "b"}));

    links->Reorder(ab, ad);   // ab moves before ad
    EXPECT_EQ(Destinations(NodeLinks(a).OutboundLinks()), (std::vector<std::string>{"b", "d", "c"}));
    EXPECT_EQ(links->PriorityOf(ba), 3);

    // Removal leaves the others in order, also after many holes.
    links->Remove(ad);
    EXPECT_FALSE(links->Has(ad));
    EXPECT_EQ(Destinations(NodeLinks(a).OutboundLinks()), (std::vector<std::string>{"b", "c"}));
    std::vector<Link*> many;
    for (int i = 0; i < 300; ++i)
        many.push_back(NodeLinks(c).CreateLink(d));
    for (int i = 0; i < 300; i += 2)
        links->Remove(many[i]);
    EXPECT_EQ(links->size(), 3u + 150u);
    EXPECT_EQ(links->PriorityOf(many[1]), 3);
    EXPECT_EQ(links->Get(links->size() - 1), many[299]);
    // A link made apart can be put at a chosen place.
    Link* early = LinkRecord(d, a, "example").MakeLink();
    links->InsertBefore(early, ba);
    EXPECT_EQ(links->PriorityOf(early), links->PriorityOf(ba) - 1);
    EXPECT_EQ(Destinations(NodeLinks(d).OutboundLinks()), (std::vector<std::string>{"a"}));
}

TEST(Links, HiddenEndsTextAndWebLinks) {
    Hypertext doc;
    Node* a = MakeNote(doc, "a");
    Node* b = MakeNote(doc, "b");
    Node* c = MakeNote(doc, "c");
    NodeText(a).SetText("see \xF0\x9F\x98\x80 the plan");
    NodeLinks(a).CreateLink(b);
    LinkRecord text(a, 7, 3);   // "the", after a character of two UTF-16 units
    text.destNode = c;
    text.type = "example";
    Link* textLink = NodeLinks(a).CreateLink(text);
    ASSERT_NE(textLink, nullptr);
    EXPECT_TRUE(textLink->IsTextLink());
    EXPECT_EQ(textLink->AnchorText(), "the");
    EXPECT_TRUE(textLink->IsTextLinkFor(8));
    EXPECT_FALSE(textLink->IsTextLinkFor(10));
    LinkRecord web(a);
    web.url = "https://example.org";
    web.title = "Example";
    Link* webLink = NodeLinks(a).CreateLink(web);
    ASSERT_NE(webLink, nullptr);
    EXPECT_TRUE(webLink->IsWebLink());
    EXPECT_EQ(NodeLinks(a).WebLinks().size(), 1u);
    EXPECT_EQ(NodeLinks(a).OutboundTextLinks().size(), 1u);
    EXPECT_EQ(NodeLinks(a).OutboundBasicLinks().size(), 1u);
    // A record with neither destination nor URL makes nothing.
    EXPECT_EQ(NodeLinks(a).CreateLink(LinkRecord(a)), nullptr);
    // The type met first in a link joins the document's list.
    EXPECT_TRUE(NodeLinks(a).HasLinkType("example"));

    // Hiding b hides the link to it, but the hidden-inclusive list keeps it.
    NodeDeleter(b).Hide(true);
    EXPECT_EQ(Destinations(NodeLinks(a).OutboundLinks()), (std::vector<std::string>{"c", "https://example.org"}));
    EXPECT_EQ(NodeLinks(a).OutboundLinksIncludeHidden().size(), 3u);
    EXPECT_TRUE(NodeLinks(b).OutboundLinks().empty());
    EXPECT_TRUE(NodeLinks(b).InboundLinks().empty());
    EXPECT_EQ(doc.Links()->HiddenLinks().size(), 1u);

    // Deleting a note takes its links with it.
    NodeDeleter(c).Delete();
    EXPECT_EQ(doc.Links()->size(), 2u);
    EXPECT_EQ(NodeLinks(a).OutboundTextLinks().size(), 0u);
}

TEST(Links, PrototypesAreLinksAndLeaveOtherKindsInOrder) {
    Hypertext doc;
    Node* proto = MakeNote(doc, "Person");
    proto->SetBoolean("IsPrototype", true);
    proto->Set("Color", "red");
    Node* n = MakeNote(doc, "Ann");
    Node* other = MakeNote(doc, "other");
    NodeLinks(n).CreateLink(other, "agree");
    n->SetPrototype(proto, false);
    NodeLinks(n).CreateLink(other, "example");
    EXPECT_EQ(n->GetPrototype(), proto);
    EXPECT_EQ(n->GetString("Color"), "red");
    LinkBundle out = NodeLinks(n).OutboundLinks();
    ASSERT_EQ(out.size(), 3u);
    EXPECT_TRUE(out[1]->IsPrototype());
    LinkBundle plain = out.OmitPrototypes();
    ASSERT_EQ(plain.size(), 2u);
    EXPECT_EQ(plain[0]->Name(), "agree");
    EXPECT_EQ(plain[1]->Name(), "example");
    EXPECT_TRUE(NodeLinks(proto).HasInboundLinks());
    EXPECT_FALSE(NodeLinks(proto).HasInboundLinksOmitPrototypes());

    // Removing the prototype link clears the cache, and the value goes with it.
    doc.Links()->Remove(out[1]);
    EXPECT_EQ(n->GetPrototype(), nullptr);
    EXPECT_NE(n->GetString("Color"), "red");
    // A prototype of its own chain is refused, so no link is made.
    proto->SetPrototype(n, false);
    n->SetPrototype(proto, false);
    EXPECT_EQ(proto->GetPrototype(), n);
    EXPECT_EQ(n->GetPrototype(), nullptr);
    EXPECT_EQ(NodeLinks(n).OutboundLinks().size(), 2u);
}

TEST(LinkTypes, ReadWriteAndUpdateInPlace) {
    LinkTypes types;
    ASSERT_TRUE(types.Has("*untitled"));
    ASSERT_TRUE(types.Has("agree"));
    LinkType mine("supports");
    mine.SetLabel("supports <this> & \"that\"");
    mine.SetColorString("light blue");
    LinkStyle style;
    style.SetDashed(true);
    mine.SetStyle(style);
    mine.SetArrowType(2);
    mine.SetShowLabel(false);
    mine.SetRequired(true);
    mine.SetOnLink("$Color=\"red\"");
    types.Add(mine);
    XMLWriter w;
    types.ToXML(w);
    LinkTypes back = LinkTypes::Empty();
    ASSERT_TRUE(back.ReadXML(w.Result()));
    EXPECT_EQ(back.Types(), types.Types());

    // A known name updates that type where it stands.
    size_t place = 0;
    while (back.Types()[place].Name() != "agree")
        ++place;
    XMLReader reader;
    ASSERT_TRUE(reader.Parse("<linkType name=\"agree\" visible=\"0\"/>"));
    back.Add(reader.GetNodeList());
    EXPECT_EQ(back.Types()[place].Name(), "agree");
    EXPECT_FALSE(back.Types()[place].Visible());
    EXPECT_EQ(back.Types()[place].Label(), "agree");
    EXPECT_FALSE(back.ReadXML("<linkTypes>"));
    EXPECT_EQ(back.size(), types.size());
}

TEST(Colors, NamesLiteralsAndTheFileForm) {
    Colors colors;
    PColor red;
    ASSERT_TRUE(colors.Find("red", red));
    bool found = false;
    EXPECT_EQ(colors.TranslateColor("RED", &found), red);
    EXPECT_TRUE(found);
    EXPECT_EQ(colors.TranslateColor(" #ff8000 ").ToString(), "#ff8000");
    EXPECT_EQ(colors.TranslateColor("no such colour", &found), PColor::Black());
    EXPECT_FALSE(found);
    EXPECT_TRUE(colors.Has("warm gray dark"));
    EXPECT_TRUE(colors.Has("dark warm gray dark"));
    EXPECT_EQ(colors.NameFor(red), "red");

    colors.Set("Brand", PColor(0x1212, 0x3434, 0x5656), true);
    colors.Set("red", PColor(0xffff, 0, 0));
    EXPECT_TRUE(colors.IsHidden("brand"));
    XMLWriter w;
    colors.ToXML(w);
    Colors back = Colors::Empty();
    ASSERT_TRUE(back.ReadXML(w.Result()));
    EXPECT_TRUE(back == colors);
    EXPECT_EQ(back.TranslateColor("red").ToString(), "#ff0000");
}

TEST(Content, StyledTextKeptInThreeForms) {
    Hypertext doc;
    Node* n = MakeNote(doc, "n");
    StyledText styled("Heading\nbody");
    TextStyle bold;
    bold.bold = true;
    styled.SetStyle(0, 7, bold);
    NodeText(n).SetRTFD(styled);
    EXPECT_EQ(NodeText(n).GetText(), "Heading\nbody");
    EXPECT_TRUE(NodeText(n).HasRTF());
    EXPECT_FALSE(NodeText(n).HasRTFD());
    EXPECT_TRUE(NodeText(n).CreateAttributedString() == styled);

    styled.InsertAttachment(8, {"p.png", std::string("\x89PNG\0", 5), 100, 100});
    NodeText(n).SetRTFD(styled);
    EXPECT_TRUE(NodeText(n).HasRTFD());
    EXPECT_EQ(NodeText(n).PictureCount(), 1);
    EXPECT_EQ(NodeText(n).ImageCount(), 1);
    EXPECT_EQ(NodeText(n).GetPicturePosition(0), 8);
    EXPECT_EQ(NodeText(n).GetPicture(0), std::string("\x89PNG\0", 5));
    NodeText(n).Append(" more");
    EXPECT_EQ(NodeText(n).CreateAttributedString().Text(), "Heading\n\xEF\xBF\xBC" "body more");
    EXPECT_EQ(NodeText(n).PictureCount(), 1);
}
