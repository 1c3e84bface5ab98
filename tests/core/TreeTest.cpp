#include "Tree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Item : public TTree<Item*> {
public:
    explicit Item(std::string n) : name(std::move(n)) {}
    // Breaks the father link, as a faulty edit would.
    void CorruptFather(Tree* f) { father = f; }
    std::string name;
};

std::string Walk(Item* from) {
    std::string s;
    for (Item* i = from; i; i = i->Next())
        s += i->name;
    return s;
}

std::string Children(Item* parent) {
    std::string s;
    for (Item* c = parent->Son(); c; c = c->Brother())
        s += c->name;
    return s;
}

struct ByName : TreeComparison {
    bool operator()(const Tree* a, const Tree* b) const override {
        return static_cast<const Item*>(a)->name[0] < static_cast<const Item*>(b)->name[0];
    }
};

} // namespace

TEST(Tree, InsertionWalksAndSelfReferences) {
    Item r("r"), a("a"), b("b"), c("c"), d("d"), e("e");
    r.AddSon(&a);
    r.AddSon(&b);
    r.AddFirstSon(&c); // becomes eldest
    a.AddSon(&d);
    d.AddBrother(&e);
    EXPECT_EQ(Children(&r), "cab");
    EXPECT_EQ(Walk(&r), "rcadeb");
    EXPECT_EQ(e.Previous(), &d);
    EXPECT_EQ(b.Previous(), &e); // deepest last descendant of the elder brother
    EXPECT_EQ(c.Previous(), &r);
    EXPECT_EQ(r.Previous(), nullptr);
    EXPECT_EQ(a.Sentinel(), &b);
    EXPECT_EQ(e.Sentinel(), &b);
    EXPECT_EQ(b.Sentinel(), nullptr);
    EXPECT_EQ(r.Depth(), 3);
    EXPECT_EQ(r.Descendants(), 5);
    EXPECT_TRUE(e.IsDescendedFrom(&r));
    EXPECT_TRUE(e.IsDescendedFrom(&e));
    EXPECT_FALSE(a.IsDescendedFrom(&d));

    // Adding a note as its own son or brother changes nothing.
    a.AddSon(&a);
    a.AddBrother(&a);
    a.AddFirstSon(&a);
    EXPECT_EQ(Walk(&r), "rcadeb");
    EXPECT_TRUE(r.Validate());

    // Moving keeps the subtree: a goes after b and takes d and e with it.
    b.AddBrother(&a);
    EXPECT_EQ(Children(&r), "cba");
    EXPECT_EQ(Walk(&r), "rcbade");
    EXPECT_EQ(a.CountElderSiblings(), 2);

    // AddElderBrother and AddYoungestSon.
    b.AddElderBrother(&d);
    EXPECT_EQ(Children(&r), "cdba");
    EXPECT_EQ(Children(&a), "e");
    c.AddYoungestSon(&d);
    EXPECT_EQ(Children(&c), "d");
    EXPECT_TRUE(r.Validate());
}

TEST(Tree, SortIsStableAndValidateFindsBrokenLinks) {
    Item r("r"), b1("b1"), a("a"), b2("b2"), c("c");
    r.AddSon(&b1);
    r.AddSon(&c);
    r.AddSon(&b2);
    r.AddSon(&a);
    r.SortChildren(TreeComparator(std::make_shared<ByName>()));
    std::vector<std::string> order;
    for (Item* i = r.Son(); i; i = i->Brother())
        order.push_back(i->name);
    EXPECT_EQ(order, (std::vector<std::string>{"a", "b1", "b2", "c"}));
    EXPECT_EQ(r.YoungestSon(), &c);
    EXPECT_EQ(c.ElderBrother(), &b2);
    EXPECT_TRUE(r.Validate());

    // A son that names another father is caught.
    Item stranger("s");
    b1.CorruptFather(&stranger);
    EXPECT_FALSE(r.Validate());
    b1.CorruptFather(&r);
    EXPECT_TRUE(r.Validate());
    // Unhook leaves the element's own subtree in place.
    Item inner("i");
    a.AddSon(&inner);
    a.Unhook();
    EXPECT_EQ(r.ChildCount(), 3);
    EXPECT_EQ(a.Father(), nullptr);
    EXPECT_EQ(a.Son(), &inner);
    EXPECT_TRUE(r.Validate());
}
