#include <gtest/gtest.h>

#include "ActionResult.h"
#include "Hooks.h"

TEST(ActionResultTest, Construction) {
    ActionResult none;
    EXPECT_EQ(none.AsString(), "");
    EXPECT_TRUE(none.empty());
    EXPECT_FALSE(none.IsTrue());
    EXPECT_EQ(none.AsNumber(), 0);

    ActionResult n(1234.5);
    EXPECT_FALSE(n.hasString);
    EXPECT_EQ(n.AsString(), "1234.5");
    EXPECT_TRUE(n.hasString);  // the text is kept
    EXPECT_EQ(ActionResult(1.0 / 3.0).AsString(), "0.3333333333");
    EXPECT_EQ(ActionResult(1e12).AsString(), "1e+12");
    EXPECT_EQ(ActionResult(-2.9).AsNumber(), -2);

    ActionResult d = ActionResult::ForDictionary({{"b", "2"}, {"a", "1"}});
    EXPECT_EQ(d.AsString(), "a:1;b:2");
    EXPECT_EQ(d.AsDictionary()->at("b"), "2");

    static NodeVector seen;
    StHooks hooks;
    hooks->pathString = [](const NodeVector& nodes) {
        seen = nodes;
        return std::string("/a;/b");
    };
    NodeVector notes;
    Node* fake = reinterpret_cast<Node*>(0x10);
    notes.push_back(fake);
    ActionResult group(notes);
    EXPECT_EQ(group.AsString(), "/a;/b");
    EXPECT_EQ(group.AsNodes().First(), fake);
    EXPECT_EQ(seen.size(), 1u);
    hooks->pathString = nullptr;
    EXPECT_EQ(ActionResult(notes).AsString(), "");
}

TEST(ActionResultTest, NumbersFromText) {
    EXPECT_EQ(ActionResult("#ff").AsNumber(), 255);
    EXPECT_EQ(ActionResult("#ff").AsDouble(), 255.0);
    EXPECT_EQ(ActionResult("42abc").AsNumber(), 42);
    EXPECT_EQ(ActionResult("abc").AsNumber(), 0);
    EXPECT_EQ(ActionResult("true").AsDouble(), 1.0);
    EXPECT_EQ(ActionResult("2.5").AsDouble(), 2.5);
    EXPECT_EQ(ActionResult("x").AsDouble(), 0.0);
    EXPECT_EQ(ActionResult("").AsDouble(), 0.0);
}

TEST(ActionResultTest, Truth) {
    for (const char* t : {"false", " false ", "0", "never", ""}) EXPECT_FALSE(ActionResult(t).IsTrue()) << t;
    for (const char* t : {"true", "False", "no", "0.0", "x"}) EXPECT_TRUE(ActionResult(t).IsTrue()) << t;
    EXPECT_TRUE(ActionResult(0.5).IsTrue());
    EXPECT_FALSE(ActionResult(0.0).IsTrue());
    EXPECT_TRUE(ActionResult(0.0).IsFalse());
    EXPECT_EQ(ActionResult("x").AsKeyword(), "true");
    EXPECT_EQ(ActionResult("0").AsKeyword(), "false");
}

TEST(ActionResultTest, ListsDictionariesAndAppend) {
    ActionResult r("b;a;b");
    EXPECT_EQ(r.AsList().size(), 3u);
    EXPECT_EQ(r.AsSet().ToString(";"), "a;b");
    EXPECT_EQ(ActionResult("  x \n").AsTrimmedString(), "x");

    ActionResult pairs("k:v;lone;x:y:z");
    auto dict = pairs.AsDictionary();
    EXPECT_EQ(dict->size(), 2u);
    EXPECT_EQ(dict->at("k"), "v");
    EXPECT_EQ(dict->at("x"), "y");
    EXPECT_EQ(pairs.AsDictionary(), dict);  // kept

    ActionResult table("red:1; green : 2");
    EXPECT_EQ(table.AsLookupTable(ActionResult(" green ")).AsString(), "2");
    EXPECT_EQ(table.AsLookupTable(ActionResult("blue")).AsString(), "");
    EXPECT_EQ(table.AsLookupTable(ActionResult("")).AsString(), "");

    ActionResult empty;
    ActionResult b("b");
    EXPECT_EQ(empty.Append(b).AsString(), "b");
    EXPECT_EQ(ActionResult("a").Append(b).AsString(), "a;b");
    EXPECT_EQ(ActionResult(2.0).Append(ActionResult(3.0)).AsString(), "2;3");

    ActionResult styledA("a"), styledB("b");
    styledA.AttributedString(std::make_shared<StyledText>("A"));
    styledB.AttributedString(std::make_shared<StyledText>("B"));
    EXPECT_EQ(styledA.Append(styledB).AttributedString()->Text(), "A\nB");
    EXPECT_EQ(ActionResult("x").Append(styledB).AttributedString()->Text(), "B");
    EXPECT_EQ(styledA.Append(ActionResult("y")).AttributedString()->Text(), "A");

    EXPECT_TRUE(ActionResult("abc") == "abc");
    EXPECT_FALSE(ActionResult(3.0) == "3");  // the raw field is still empty

    EXPECT_EQ(ActionResult("#00ff00").AsColor(nullptr), PColor(0, 0xFFFF, 0));
    StHooks hooks;
    hooks->translateColorForNode = [](const Node*, const std::string&) { return PColor::White(); };
    EXPECT_EQ(ActionResult("white").AsColor(nullptr), PColor::White());
}
