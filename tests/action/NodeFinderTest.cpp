// Lookups of a document's notes through its index, and the chains of links
// between notes.
#include <gtest/gtest.h>

#include "../core/TestDocument.h"
#include "Link.h"
#include "NodeFinder.h"
#include "NodeLinks.h"
#include "PathFinder.h"

namespace {

Node* Add(Hypertext& doc, const std::string& name, Node* parent = nullptr) {
    Node* father = parent ? parent : doc.Root();
    return MakeNote(doc, name, parent, father->YoungestSon());
}

std::vector<std::string> Names(const NodeVector& notes) {
    std::vector<std::string> names;
    for (const Node* n : notes)
        names.push_back(n->Name());
    return names;
}

using V = std::vector<std::string>;

}  // namespace

TEST(NodeFinder, FindsNotesOfItsOwnDocumentOnly) {
    Hypertext doc;
    Node* top = Add(doc, "Top");
    Node* plain = Add(doc, "Proto", top);
    Node* proto = Add(doc, "Proto");
    proto->SetBoolean("IsPrototype", true);
    Hypertext other;
    Node* stranger = Add(other, "Stranger");

    NodeFinder finder(top);
    EXPECT_EQ(finder.FindNodeNamed("Top"), top);
    EXPECT_EQ(finder.FindNodeNamed("Stranger"), nullptr);
    Node* named = finder.FindNodeNamed("Proto");
    EXPECT_TRUE(named == plain || named == proto);
    // Of two notes of one name, the prototype is the prototype.
    EXPECT_EQ(finder.FindPrototypeNamed("Proto"), proto);
    EXPECT_EQ(finder.FindPrototypeNamed("Top"), nullptr);
    EXPECT_EQ(finder.Find(plain->GetID().GetID()), plain);
    EXPECT_EQ(finder.Find(plain->GetID().GetID(), plain->Creator()), plain);
    EXPECT_EQ(finder.Find(plain->GetID().GetID(), "someone else"), nullptr);
    EXPECT_TRUE(finder.HasNode(proto));
    EXPECT_FALSE(finder.HasNode(stranger));
    EXPECT_FALSE(finder.HasNode(nullptr));
    EXPECT_EQ(finder.Index(), doc.GetIndex());

    Link* mine = NodeLinks(top).CreateLink(proto);
    Link* theirs = NodeLinks(stranger).CreateLink(stranger);
    EXPECT_TRUE(finder.HasLink(mine));
    EXPECT_FALSE(finder.HasLink(theirs));
    EXPECT_FALSE(finder.HasLink(nullptr));

    EXPECT_EQ(NodeFinder(plain).DefaultPathname(), "/Top/Proto");
    EXPECT_EQ(NodeFinder(doc.Root()).DefaultPathname(), "/");

    // Without a note, or with the note that stands for none, nothing is found.
    for (NodeFinder none : {NodeFinder(static_cast<Node*>(nullptr)), NodeFinder(NotANode::Get())}) {
        EXPECT_EQ(none.Index(), nullptr);
        EXPECT_EQ(none.FindNodeNamed("Top"), nullptr);
        EXPECT_EQ(none.FindPrototypeNamed("Proto"), nullptr);
        EXPECT_EQ(none.Find(top->GetID().GetID()), nullptr);
        EXPECT_FALSE(none.HasNode(top));
        EXPECT_FALSE(none.HasLink(mine));
        EXPECT_EQ(none.DefaultPathname(), "");
    }
}

TEST(PathFinder, TheShortestChainOfLinksOfTheGivenTypes) {
    Hypertext doc;
    Node* a = Add(doc, "a");
    Node* b = Add(doc, "b");
    Node* c = Add(doc, "c");
    Node* d = Add(doc, "d");
    Node* e = Add(doc, "e");
    Node* lone = Add(doc, "lone");
    NodeLinks(a).CreateLink(b, "next");
    NodeLinks(b).CreateLink(a, "back");  // a cycle
    NodeLinks(b).CreateLink(c, "next");
    NodeLinks(a).CreateLink(d, "aside");
    NodeLinks(d).CreateLink(c, "aside");
    NodeLinks(c).CreateLink(e, "next");
    NodeLinks(e).CreateLink(a, "next");  // a longer cycle

    // Any type: breadth first, the first link first.
    EXPECT_EQ(Names(PathFinder(a, c, "").Run()), (V{"a", "b", "c"}));
    EXPECT_EQ(Names(PathFinder(a, c, "*").Run()), (V{"a", "b", "c"}));
    EXPECT_EQ(Names(PathFinder(a, e, "").Run()), (V{"a", "b", "c", "e"}));
    // Only the types asked for.
    EXPECT_EQ(Names(PathFinder(a, c, "aside").Run()), (V{"a", "d", "c"}));
    EXPECT_EQ(Names(PathFinder(a, e, "aside;next").Run()), (V{"a", "b", "c", "e"}));
    EXPECT_TRUE(PathFinder(a, e, "aside").Run().empty());
    EXPECT_EQ(Names(PathFinder(b, a, "back").Run()), (V{"b", "a"}));
    // Links lead one way; a note nothing leads to is not reached.
    EXPECT_EQ(Names(PathFinder(d, b, "").Run()), (V{"d", "c", "e", "a", "b"}));
    EXPECT_TRUE(PathFinder(d, b, "aside").Run().empty());
    EXPECT_TRUE(PathFinder(a, lone, "").Run().empty());
    EXPECT_TRUE(PathFinder(lone, a, "").Run().empty());
    // To itself, a note is its own path.
    EXPECT_EQ(Names(PathFinder(c, c, "").Run()), V{"c"});
    // Without an end, the last path tried: the farthest note of the walk.
    PathFinder open(d, nullptr, "");
    EXPECT_EQ(Names(open.Run()), (V{"d", "c", "e", "a", "b"}));
    EXPECT_EQ(Names(open.Path()), (V{"d", "c", "e", "a", "b"}));
    EXPECT_EQ(Names(PathFinder(lone, nullptr, "").Run()), V{"lone"});
    EXPECT_TRUE(PathFinder(nullptr, a, "").Run().empty());
}
