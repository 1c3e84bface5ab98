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
    Node* sydney = MakeNote("Sydney");
    paris->Set("Latitude", "48.8566");
    paris->Set("Longitude", "2.3522");
    london->Set("Latitude", "51.5074");
    london->Set("Longitude", "-0.1278");
    sydney->Set("Latitude", "-33.8688");
    sydney->Set("Longitude", "151.2093");
    double km = std::stod(Eval("distance(\"/Paris\", \"/London\")"));
    EXPECT_NEAR(km, 343.5, 1.0);
    EXPECT_NEAR(std::stod(Eval("distance(\"/London\", \"/Sydney\")")), 16994, 10);
    EXPECT_EQ(Eval("distance(\"/Paris\", \"/Paris\")"), "0");
    EXPECT_EQ(Eval("distance(\"/Paris\", \"/Nowhere\")"), "");
    EXPECT_EQ(Eval("distance(\"/Paris\")"), "");
    // distanceTo measures from the note itself, as distance(this, ...) does.
    EXPECT_NEAR(std::stod(Eval("distanceTo(\"/London\")", paris)), 343.5, 1.0);
    EXPECT_NEAR(std::stod(Eval("distanceTo(/Sydney)", london)), 16994, 10);
    for (const char* to : {"/London", "/Sydney", "/Paris"})
        EXPECT_EQ(Eval(std::string("distanceTo(\"") + to + "\")", paris),
                  Eval(std::string("distance(this, \"") + to + "\")", paris))
            << to;
    EXPECT_EQ(Eval("distanceTo(\"/Nowhere\")", paris), "");
    // A designator found only by computing the argument.
    london->Set("Words", "/Paris");
    EXPECT_NEAR(std::stod(Eval("distanceTo($Words)", london)), 343.5, 1.0);
    // The map service this system lacks answers empty.
    EXPECT_EQ(Eval("drivingTimeTo(\"/London\")"), "");
}

TEST_F(LinkFunctionsTest, NeighboursWithinADistance) {
    // Paris links to London (near) and to Sydney (far); London links on to
    // Brussels (near Paris, two steps away) and Perth (far, two steps).
    auto place = [&](const std::string& name, const char* lat, const char* lon) {
        Node* n = MakeNote(name);
        n->Set("Latitude", lat);
        n->Set("Longitude", lon);
        return n;
    };
    Node* paris = place("Paris", "48.8566", "2.3522");
    Node* london = place("London", "51.5074", "-0.1278");
    place("Sydney", "-33.8688", "151.2093");
    place("Brussels", "50.8503", "4.3517");
    place("Perth", "-31.9523", "115.8613");
    Do("linkTo(\"/London\", road); linkTo(\"/Sydney\", flight)", paris);
    Do("linkTo(\"/Brussels\", road); linkTo(\"/Perth\", flight)", london);
    ASSERT_EQ(Eval("neighbors(/Paris)"), "/London;/Sydney");
    ASSERT_EQ(Eval("neighbors2(/Paris)"), "/London;/Sydney;/Brussels;/Perth");

    EXPECT_EQ(Eval("neighborsWithin(/Paris, 500)"), "/London");
    EXPECT_EQ(Eval("neighborsWithin(/Paris, 20000)"), "/London;/Sydney");
    EXPECT_EQ(Eval("neighborsWithin(/Paris, 300)"), "");
    // Two steps keep the order of neighbors2; the distance is from Paris,
    // not from the note that led there.
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 500)"), "/London;/Brussels");
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 15000)"), "/London;/Brussels;/Perth");
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 300)"), "/Brussels") << "Brussels is 320 km from London";
    // Link types choose the links followed.
    EXPECT_EQ(Eval("neighborsWithin(/Paris, 20000, flight)"), "/Sydney");
    EXPECT_EQ(Eval("neighborsWithin(/Paris, 500, flight)"), "");
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 20000, road)"), "/London;/Brussels");
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 20000, \"road;flight\")"), "/London;/Sydney;/Brussels;/Perth");
    // The distance may be computed; a missing or non-numeric one keeps none.
    paris->Set("Count", "400");
    EXPECT_EQ(Eval("neighborsWithin(/Paris, $Count * 2)", paris), "/London");
    EXPECT_EQ(Eval("neighborsWithin(/Paris)"), "");
    EXPECT_EQ(Eval("neighborsWithin(/Paris, far)"), "");
    EXPECT_EQ(Eval("neighbors2Within(/Paris, \"\")"), "");
    EXPECT_EQ(Eval("neighborsWithin(/Nowhere, 500)"), "");
    // The result is a list of notes, as neighbors gives.
    EXPECT_EQ(Eval("neighbors2Within(/Paris, 500).count"), "2");
}

}  // namespace
