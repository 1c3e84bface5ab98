// The quick ways of the query read path answer what the general way
// answers: group functions over `all` walk the outline in place, `.contains`
// is tested as a truth without a result made, and `.sort` reads an
// attribute key where it lies. Each case is computed both ways on the same
// document: once as written, once with a neutral change (`.lowercase()` on
// text that is already lower case, in parentheses) that sends it the general
// way.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "AACollect.h"
#include "AAValue.h"
#include "HTPath.h"
#include "ActionTestDocument.h"
#include "MatchList.h"
#include "NoteQuery.h"

class QueryShortcutsTest : public ActionTestDocument {
protected:
    // Below Top: red and blue notes at several depths, one that refuses
    // searches, an alias of a red note (Top's first child, so the second
    // note in outline order) and a note that inherits its colour.
    void SetUp() override {
        ActionTestDocument::SetUp();
        a->Set("Color", "red");
        a->Set("Count", "3");
        b->Set("Color", "blue");
        b->Set("Count", "4");
        Node* deep = MakeNote("deep", b);
        deep->Set("Color", "red");
        deep->Set("Count", "5");
        Node* hidden = MakeNote("quiet", top, b);
        hidden->Set("Color", "red");
        hidden->Set("Count", "100");
        hidden->SetBoolean("Searchable", false);
        Node* heir = MakeNote("heir", deep);
        heir->SetPrototype(a, false);
        alias = NodeMaker(&doc).MakeAlias(deep, top, nullptr);
        ASSERT_NE(alias, nullptr);
    }

    // Whether the group function `text` walks the document in place.
    bool WalksInPlace(const std::string& text) {
        AAValuePtr tree = Action::ParseExpression(text);
        const auto* group = dynamic_cast<const AACollect*>(tree.get());
        MatchList matches;
        return group && group->WalksInPlace(a, "all", matches);
    }

    Node* alias = nullptr;
};

TEST_F(QueryShortcutsTest, GroupFunctionsOverAllAnswerAsTheGeneralWay) {
    struct Case {
        const char* quick;
        const char* general;
        const char* expected;
    };
    const Case cases[] = {
        {"count_if(all, $Color==\"red\")", "count_if(all, ($Color.lowercase())==\"red\")", "4"},
        {"collect_if(all, $Color==\"red\", $Name)", "collect_if(all, ($Color.lowercase())==\"red\", $Name)",
         "deep;A;deep;heir"},
        {"find($Color==\"red\")", "find(($Color.lowercase())==\"red\")", "/Top/deep;/Top/A;/Top/B/deep;/Top/B/deep/heir"},
        {"collect(all, $Count)", "collect(all, ($Count.lowercase()))", "0;5;3;4;5;3"},
        {"sum(all, $Count)", "sum(all, ($Count.lowercase()))", "20"},
        {"sum_if(all, $Color==\"red\", $Count)", "sum_if(all, ($Color.lowercase())==\"red\", $Count)", "16"},
        // The average divides by the whole group, the refusing note included.
        {"avg(all, $Count)", "avg(all, ($Count.lowercase()))", "2.857142857"},
        {"every(all, $Count>=0)", "every(all, ($Count.lowercase())>=0)", "true"},
        {"every(all, $Count>3)", "every(all, ($Count.lowercase())>3)", ""},
        {"any(all, $Color==\"blue\")", "any(all, ($Color.lowercase())==\"blue\")", "true"},
        {"any(all, $Color==\"green\")", "any(all, ($Color.lowercase())==\"green\")", ""},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(WalksInPlace(c.quick)) << c.quick;
        EXPECT_FALSE(WalksInPlace(c.general)) << c.general;
        EXPECT_EQ(Eval(c.quick), c.expected) << c.quick;
        EXPECT_EQ(Eval(c.general), c.expected) << c.general;
    }
    // Only `all` itself walks in place; code that may change the tree, a
    // designator or a group read through a variable goes the general way.
    EXPECT_FALSE(WalksInPlace("collect(all, create(\"x\"))"));
    EXPECT_FALSE(WalksInPlace("collect(all, $Name(parent))"));
    AAValuePtr tree = Action::ParseExpression("collect(all, $Name)");
    const auto* group = dynamic_cast<const AACollect*>(tree.get());
    ASSERT_NE(group, nullptr);
    MatchList matches;
    EXPECT_FALSE(group->WalksInPlace(a, "children", matches));
    EXPECT_FALSE(group->WalksInPlace(NotANode::Get(), "all", matches));
    EXPECT_TRUE(group->WalksInPlace(a, "all", matches));
}

TEST_F(QueryShortcutsTest, ContainsAsATruthAnswersAsItsValue) {
    a->Set("Words", "alpha beta gamma");
    a->Set("Tags", "x;y");
    a->Set("Items", "p;q;p");
    a->Set("Table", "k:1;m:2");
    const char* queries[] = {
        "$Words.contains(\"beta\")",      "$Words.contains(\"delta\")",   "$Words.icontains(\"BETA\")",
        "$Words.contains(\"^alpha\")",    "$Words.contains(\"(b)(e)ta\")", "$Tags.contains(\"y\")",
        "$Tags.contains(\"z\")",          "$Items.contains(\"q\")",       "$Table.contains(\"m\")",
        "$Table.contains(\"n\")",         "$Words.contains($Name)",       "$Words.containsAnyOf(\"zz;gamma\")",
        "$Words.containsAnyOf(\"zz;yy\")", "$Name.contains(\"\")",
    };
    for (const char* query : queries) {
        AAValuePtr tree = Action::ParseExpression(query);
        ASSERT_NE(tree, nullptr) << query;
        MatchList byValue;
        MatchList byTruth;
        bool value = AAValue::ComputeValue(tree.get(), a, byValue).IsTrue();
        bool truth = AAValue::ComputeTruth(tree.get(), a, byTruth);
        EXPECT_EQ(truth, value) << query;
        // The captures of a match are kept either way.
        EXPECT_EQ(byTruth.matches, byValue.matches) << query;
    }
    // A query uses the truth: it finds what the value says.
    NoteQuery query("$Words.contains(\"(g)amma\")", true);
    MatchList matches;
    EXPECT_TRUE(query.Matches(a, matches));
    EXPECT_FALSE(query.Matches(b, matches));
}

TEST_F(QueryShortcutsTest, SortByAnAttributeKeyReadInPlace) {
    // Names in byte order differ from case-blind order; the alias reads its
    // original's name, plain text is its own key.
    Node* upper = MakeNote("Zed", top, b);
    Node* lower = MakeNote("apple", top, upper);
    upper->Set("Words", "b");
    lower->Set("Words", "a");
    a->Set("Text", "zzz");
    b->Set("Text", "aaa");
    std::vector<std::pair<std::string, std::string>> keyed = {
        {"Zed", "/Top/Zed"}, {"apple", "/Top/apple"}, {"A", "/Top/A"}, {"B", "/Top/B"}, {"deep", "/Top/deep"}};
    std::string items;
    for (const auto& [name, path] : keyed)
        items += (items.empty() ? "" : ";") + path;
    std::sort(keyed.begin(), keyed.end());
    std::string expected;
    for (const auto& [name, path] : keyed)
        expected += (expected.empty() ? "" : ";") + path;
    EXPECT_EQ(Eval("\"" + items + "\".sort($Name)", top), expected);
    EXPECT_EQ(Eval("\"" + items + "\".sort(\"Name\")", top), expected);
    EXPECT_EQ(Eval("\"" + items + "\".sort(($Name.lowercase()))", top),
              "/Top/A;/Top/apple;/Top/B;/Top/deep;/Top/Zed");
    EXPECT_EQ(Eval("\"/Top/Zed;zz;/Top/apple\".sort($Words)", top), "/Top/apple;/Top/Zed;zz");
    // The text key takes the general way; so does a date.
    EXPECT_EQ(Eval("\"/Top/A;/Top/B\".sort($Text)", top), "/Top/B;/Top/A");
    a->Set("Due", "2025-01-01");
    b->Set("Due", "2024-01-01");
    EXPECT_EQ(Eval("\"/Top/A;/Top/B\".sort($Due)", top), "/Top/B;/Top/A");
}

// A long list of paths is resolved through the name index and the walk of
// the sort's own resolver; every item still names the note the designator
// names (the first child of the name, not the first note of the name in
// the document, blanks trimmed), and text that names no note is its own key.
TEST_F(QueryShortcutsTest, SortOfManyPathsNamesWhatDesignatorsName) {
    Node* other = MakeNote("other", top);
    Node* shelf = MakeNote("shelf", top, other);
    Node* big = MakeNote("big", top, shelf);
    // A note named n5 before the shelf in outline order: the name index
    // answers it, not the shelf's own n5.
    MakeNote("n5", other);
    int count = 1;
    Node* after = nullptr;
    for (int i = 0; i < 10; ++i) {
        after = MakeNote("n" + std::to_string(i), shelf, after);
        after->SetLong("Count", count++);
    }
    // A second n3: the first one is meant.
    MakeNote("n3", shelf, after)->SetLong("Count", count++);
    after = nullptr;
    for (int i = 0; i < 100; ++i) {
        after = MakeNote("b" + std::to_string(i), big, after);
        after->SetLong("Count", count++);
    }
    std::vector<std::string> items;
    for (int i = 9; i >= 0; --i)
        items.push_back(i == 7 ? "/Top/shelf/ n7" : "/Top/shelf/n" + std::to_string(i));
    items.push_back("/Top/shelf/missing");
    for (int i = 0; i < 8; ++i)
        items.push_back("/Top/big/b" + std::to_string(i * 13));
    std::string list;
    for (const std::string& item : items)
        list += (list.empty() ? "" : ";") + item;

    // The order by the designators' notes (the keys differ): the key of
    // the item that names none is its text, which reads as 0.
    MatchList matches;
    std::vector<std::pair<long, std::string>> keyed;
    for (const std::string& item : items) {
        Node* named = HTPath::Get(top, item, matches);
        keyed.emplace_back(named ? named->GetLong("Count") : 0, item);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& x, const auto& y) { return x.first < y.first; });
    std::string expected;
    for (const auto& [key, item] : keyed)
        expected += (expected.empty() ? "" : ";") + item;
    EXPECT_EQ(Eval("\"" + list + "\".sort($Count)", top), expected);
    EXPECT_EQ(Eval("\"" + list + "\".nsort($Count)", top), expected);
}
