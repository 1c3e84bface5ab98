// Link functions of action code: making and removing links, reading them
// back with links(), paths along links, neighbours and distances.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include "Link.h"
#include "LinkBundle.h"
#include "NodeLinks.h"

namespace {

class LinkFunctionsTest : public ActionTestDocument {
protected:
    // "source>dest:type" for each visible link of the document, in order.
    std::string Links() {
        std::string out;
        for (Link* link : NodeLinks(doc.Root()).All()) {
            if (link->IsPrototype() || !link->SourceNode() || !link->DestNode())
                continue;
            out += (out.empty() ? "" : ",") + link->SourceNode()->Name() + ">" + link->DestNode()->Name() + ":" +
                   link->Name();
        }
        return out;
    }
};

TEST_F(LinkFunctionsTest, LinkToAndLinkFromMakeEachLinkOnce) {
    EXPECT_EQ(Eval("linkTo(\"/Top/B\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled");
    // Made again, the same link is not doubled; another type is a new link.
    EXPECT_EQ(Eval("linkTo(\"/Top/B\")"), "");
    EXPECT_EQ(Eval("linkTo(\"/Top/B\", \"agree\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled,A>B:agree");
    EXPECT_EQ(Eval("linkFrom(\"/Top\", \"'part'\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled,A>B:agree,Top>A:part");
    // A group designator links to each of its notes, never the note itself.
    EXPECT_EQ(Eval("linkTo(\"siblings\", \"peer\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled,A>B:agree,Top>A:part,A>B:peer");
    EXPECT_EQ(Eval("linkTo(\"this\")"), "");
    EXPECT_EQ(Eval("linkTo(\"/Nowhere\")"), "");
    EXPECT_EQ(Links(), "A>B:*untitled,A>B:agree,Top>A:part,A>B:peer");
}

TEST_F(LinkFunctionsTest, UnlinkRemovesOneTypeOrEveryType) {
    Do("linkTo(\"/Top/B\"); linkTo(\"/Top/B\", \"agree\"); linkFrom(\"/Top/B\", \"back\")");
    EXPECT_EQ(Links(), "A>B:*untitled,A>B:agree,B>A:back");
    EXPECT_EQ(Eval("unlinkTo(\"/Top/B\", \"agree\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled,B>A:back");
    EXPECT_EQ(Eval("unlinkTo(\"/Top/B\", \"agree\")"), "");
    // unlinkFrom removes links that end at the note.
    EXPECT_EQ(Eval("unlinkFrom(\"/Top/B\")"), "true");
    EXPECT_EQ(Links(), "A>B:*untitled");
    EXPECT_EQ(Eval("unlinkTo(\"/Top/B\", \"*\")"), "true");
    EXPECT_EQ(Links(), "");
}

TEST_F(LinkFunctionsTest, OriginalFormsLinkTheOriginalsOfAliases) {
    Node* alias = NodeMaker(&doc).MakeAlias(b, top, a);
    ASSERT_NE(alias, nullptr);
    Node* c = MakeNote("C");
    EXPECT_EQ(Eval("linkToOriginal(\"/C\")", alias), "true");
    EXPECT_EQ(Links(), "B>C:*untitled");
    EXPECT_EQ(Eval("linkFromOriginal(\"/C\", \"x\")", alias), "true");
    EXPECT_EQ(Links(), "B>C:*untitled,C>B:x");
    EXPECT_EQ(Eval("unlinkToOriginal(\"/C\")", alias), "true");
    EXPECT_EQ(Eval("unlinkFromOriginal(\"/C\")", alias), "true");
    EXPECT_EQ(Links(), "");
    (void)c;
}

TEST_F(LinkFunctionsTest, LinksQueriesReadDirectionTypeAndAttribute) {
    Node* c = MakeNote("C");
    c->Set("Count", "3");
    b->Set("Count", "2");
    Do("linkTo(\"/Top/B\", \"agree\"); linkTo(\"/C\", \"agree\"); linkTo(\"/C\", \"other\")");
    Do("linkTo(\"/Top/A\")", top);
    EXPECT_EQ(Eval("links.outbound.agree.$Name"), "B;C");
    EXPECT_EQ(Eval("links.outbound.agree.$Count"), "2;3");
    EXPECT_EQ(Eval("links.outbound.*.$Name"), "B;C;C");
    EXPECT_EQ(Eval("links.outbound.other"), "C");
    EXPECT_EQ(Eval("links.inbound.*.$Name"), "Top");
    EXPECT_EQ(Eval("links(/C).inbound.agree.$Name"), "A");
    EXPECT_EQ(Eval("links(children).inbound.*.$Name", top), "Top;A");
    EXPECT_EQ(Eval("links.outbound.none.$Name"), "");
    EXPECT_EQ(Eval("links.outbound.agree.$Name + \";x\""), "B;C;x");
    // A deleted note's links are no longer read.
    Do("delete(\"/C\")");
    EXPECT_EQ(Eval("links.outbound.*.$Name"), "B");
}

TEST_F(LinkFunctionsTest, LinkPathAndNeighboursFollowLinks) {
    Node* c = MakeNote("C");
    Node* d = MakeNote("D");
    Do("linkTo(\"/Top/B\", \"next\")");
    Do("linkTo(\"/C\", \"next\"); linkTo(\"/D\", \"skip\")", b);
    Do("linkTo(\"/D\", \"next\")", c);
    EXPECT_EQ(Eval("linkPath(\"/D\")"), "/Top/A;/Top/B;/D");
    EXPECT_EQ(Eval("linkPath(\"/D\", \"next\")"), "/Top/A;/Top/B;/C;/D");
    EXPECT_EQ(Eval("linkPath(\"/Top\")"), "");
    EXPECT_EQ(Eval("neighbors(\"/Top/B\")"), "/C;/D;/Top/A");
    EXPECT_EQ(Eval("neighbors(\"/Top/B\", \"next\")"), "/C;/Top/A");
    EXPECT_EQ(Eval("neighbors2(\"/Top/A\")"), "/Top/B;/C;/D");
    EXPECT_EQ(Eval("neighbors2(\"/Top/A\", \"next\")"), "/Top/B;/C");
    EXPECT_EQ(Eval("neighbors(\"/Top\")"), "");
    (void)d;
}

TEST_F(LinkFunctionsTest, DistanceByLatitudeAndLongitude) {
    Node* paris = MakeNote("Paris");
    Node* london = MakeNote("London");
    paris->Set("Latitude", "48.8566");
    paris->Set("Longitude", "2.3522");
    london->Set("Latitude", "51.5074");
    london->Set("Longitude", "-0.1278");
    double km = std::stod(Eval("distance(\"/Paris\", \"/London\")"));
    EXPECT_NEAR(km, 343.5, 1.0);
    EXPECT_EQ(Eval("distance(\"/Paris\", \"/Paris\")"), "0");
    EXPECT_EQ(Eval("distance(\"/Paris\", \"/Nowhere\")"), "");
    EXPECT_EQ(Eval("distance(\"/Paris\")"), "");
    // Services this system lacks answer empty.
    EXPECT_EQ(Eval("distanceTo(\"/London\")"), "");
    EXPECT_EQ(Eval("drivingTimeTo(\"/London\")"), "");
}

}  // namespace
