// List and dictionary functions of action code, as a user writes them:
// golden tables of expression and answer, evaluated on note A of the shared
// test document.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include "NodeIndex.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using Golden = std::vector<std::pair<const char*, const char*>>;

class ListFunctionsTest : public ActionTestDocument {
protected:
    void ExpectAll(const Golden& cases, Node* note = nullptr) {
        for (const auto& [expression, expected] : cases)
            EXPECT_EQ(Eval(expression, note), expected) << expression;
    }
};

TEST_F(ListFunctionsTest, CountsAndExtremesFollowTheKindOfTheItems) {
    ExpectAll({
        {"count(\"a;b;c\")", "3"},
        {"\"a;b;c\".count", "3"},
        {"\"\".count", "0"},
        // Numbers compare as numbers, and the item keeps its spelling.
        {"max(\"3;10;9\")", "10"},
        {"min(\"3;10;9.50\")", "3"},
        {"\"3;10;09.50\".max", "10"},
        {"\"3;10;09.50\".min", "3"},
        {"\"-2;1\".min", "-2"},
        // Text compares by bytes.
        {"max(\"pear;apple;Zebra\")", "pear"},
        {"min(\"pear;apple;Zebra\")", "Zebra"},
        // Dates compare as instants, not as text.
        {"max(\"2024-01-05T10:00:00Z;2023-12-31T09:00:00Z\")", "2024-01-05T10:00:00Z"},
        {"min(\"2024-01-05T10:00:00Z;2023-12-31T09:00:00Z\")", "2023-12-31T09:00:00Z"},
        {"max(\"\")", "0"},
        {"\"1;2;3.5\".sum", "6.5"},
        {"\"1;2;3\".avg", "2"},
        {"\"\".avg", "0"},
    });
    // A count is a number, so arithmetic on it adds rather than appends.
    a->Set("Items", "x;y;z");
    EXPECT_EQ(Eval("$Items.count + 1"), "4");
    EXPECT_EQ(Eval("$Items.count * 2"), "6");
    a->Set("Items", "4;12;8");
    EXPECT_EQ(Eval("$Items.max"), "12");
    EXPECT_EQ(Eval("$Items.sum"), "24");
}

TEST_F(ListFunctionsTest, ItemsByPositionAndByKey) {
    ExpectAll({
        {"\"a;b;c\".at(1)", "b"},
        {"\"a;b;c\".at(-1)", "c"},
        {"\"a;b;c\".at(-3)", "a"},
        {"\"a;b;c\".at(3)", ""},
        {"\"a;b;c\".at(-4)", ""},
        {"\"a;b;c\"[0]", "a"},
        {"\"a;b;c\".first", "a"},
        {"\"a;b;c\".first(2)", "a;b"},
        {"\"a;b;c\".first(9)", "a;b;c"},
        {"\"a;b;c\".first(0)", ""},
        {"\"a;b;c\".last", "c"},
        {"\"a;b;c\".last(2)", "b;c"},
        {"\"a:1;b:2\".lookup(\"b\")", "2"},
        {"\"a:1;b:2\".lookup(\" b \")", "2"},
        {"\"a:1;b:2\".lookup(\"\")", ""},
        {"\"a:1;b:2\".lookup(\"c\")", ""},
        {"dictionary(\"k:v;m:n\").at(\"m\")", "n"},
        {"dictionary(\"k:v;m:n\")[\"k\"]", "v"},
        {"dictionary(\"k:v;m:n\").at(\"z\")", ""},
        {"dictionary(\"b:1;a:2\").keys", "a;b"},
        {"\"b:1;a:2;c\".keys", "a;b"},
    });
    a->Set("Table", "x:1;y:2");
    EXPECT_EQ(Eval("$Table.at(\"y\")"), "2");
    EXPECT_EQ(Eval("$Table[\"x\"]"), "1");
    EXPECT_EQ(Eval("$Table.keys"), "x;y");
    // An index on a dictionary is a key, not a position.
    EXPECT_EQ(Eval("$Table.at(0)"), "");
}

TEST_F(ListFunctionsTest, SetOperationsAndMaking) {
    ExpectAll({
        {"\"b;a;b\".unique", "a;b"},
        {"\"a;b;c\".intersect(\"c;a;z\")", "a;c"},
        {"\"a;b;c\".intersect(\"\")", ""},
        {"\"a;b;a;c\".remove(\"a\")", "b;c"},
        {"\"a;b\".remove(\"z\")", "a;b"},
        {"list(1, \"two\", 3)", "1;two;3"},
        {"list(\"a\", list(\"b\", \"c\"))", "a;b;c"},
        {"list(1, 2).count", "2"},
    });
    a->Set("Count", "7");
    EXPECT_EQ(Eval("list($Count, $Name)"), "7;A");
    a->Set("Tags", "x;y");
    EXPECT_EQ(Eval("$Tags.remove(\"x\")"), "y");
    // Making a dictionary gives a dictionary result, which assignment keeps.
    Do("$Table = dictionary(\"p:1;q:2\")");
    EXPECT_EQ(Get("Table"), "p:1;q:2");
}

TEST_F(ListFunctionsTest, SortOrders) {
    ExpectAll({
        {"\"b;a;C\".sort", "C;a;b"},
        {"\"b;a;C\".isort", "a;b;C"},
        {"\"10;9;100\".sort", "10;100;9"},
        {"\"10;9;100\".nsort", "9;10;100"},
        {"\"-1.5;2;-3\".nsort", "-3;-1.5;2"},
        {"\"\".sort", ""},
        {"\"beta;Alpha;gamma\".isort", "Alpha;beta;gamma"},
        {"\"beta;Alpha;gamma\".sort", "Alpha;beta;gamma"},
        {"\"b;B;a\".isort.first", "a"},
    });
}

TEST_F(ListFunctionsTest, SortNotesByKey) {
    Node* c = MakeNote("C", top, b);
    a->Set("Count", "2");
    b->Set("Count", "10");
    c->Set("Count", "5");
    a->Set("Words", "pear");
    b->Set("Words", "apple");
    c->Set("Words", "Zebra");
    a->Set("Due", "2024-03-01");
    b->Set("Due", "2023-01-01");
    c->Set("Due", "2025-06-01");
    ExpectAll(
        {
            {"collect(children, $Path)", "/Top/A;/Top/B;/Top/C"},
            // A number key orders by value, not by text.
            {"collect(children, $Path).sort($Count)", "/Top/A;/Top/C;/Top/B"},
            {"collect(children, $Path).sort(\"Count\")", "/Top/A;/Top/C;/Top/B"},
            {"collect(children, $Path).sort(Count)", "/Top/A;/Top/C;/Top/B"},
            {"collect(children, $Path).sort($Words)", "/Top/C;/Top/B;/Top/A"},
            {"collect(children, $Path).isort($Words)", "/Top/B;/Top/A;/Top/C"},
            {"collect(children, $Path).sort($Due)", "/Top/B;/Top/A;/Top/C"},
            // Names are designators too; text that names no note is its own key.
            {"\"C;B;A\".sort($Count)", "A;C;B"},
            {"\"/Top/B;zz;/Top/A\".sort($Words)", "/Top/B;/Top/A;zz"},
        },
        top);
}

TEST_F(ListFunctionsTest, GroupFormsOverTheNotesOfAList) {
    a->Set("Count", "2");
    b->Set("Count", "5");
    ExpectAll(
        {
            {"collect(children, $Path).every($Count > 1)", "true"},
            {"collect(children, $Path).every($Count > 2)", ""},
            {"collect(children, $Path).any($Count > 4)", "true"},
            {"collect(children, $Path).any($Count > 5)", ""},
            {"\"\".every($Count > 100)", "true"},
            {"\"\".any($Count > 0)", ""},
            {"collect(children, $Path).collect($Count)", "2;5"},
            {"collect(children, $Path).collect_if($Count > 3, $Name)", "B"},
            {"\"A;nobody;B\".collect($Name)", "A;B"},
            {"collect(children, $Path).collect", "A;B"},
            {"collect(children, $Path).collect_if", ""},
        },
        top);
    b->SetBoolean("Searchable", false);
    // A note that refuses searches is left out, as by the group form.
    EXPECT_EQ(Eval("\"/Top/A;/Top/B\".collect($Name)", top), "A");
    EXPECT_EQ(Eval("\"/Top/A;/Top/B\".every($Count > 1)", top), "true");
}

TEST_F(ListFunctionsTest, LongListsFindNotesAsPathsDo) {
    // Two siblings of one name: a path leads into the first only, so the
    // child of the second is not reached, even through the name index that
    // long lists use.
    Node* first = MakeNote("Dup", top, b);
    Node* second = MakeNote("Dup", top, first);
    MakeNote("X", second);
    MakeNote("Y", b);
    std::string items;
    for (int i = 0; i < 1000; ++i)
        items += "/Top/A;";
    items += "/Top/Dup/X;/Top/B/Y";
    a->Set("Items", items);
    std::string names = Eval("$Items.collect($Name)");
    EXPECT_EQ(names.find('X'), std::string::npos);
    EXPECT_EQ(names.substr(names.size() - 3), "A;Y");
    EXPECT_EQ(std::count(names.begin(), names.end(), ';'), 1000);
}

TEST_F(ListFunctionsTest, NotesTheNameIndexLeavesOutLeadPathsAsTheyDo) {
    // An alias of Real, and a note of the default name without text, stand
    // before the notes of their names that the name index holds: the path
    // leads to them, and so must a list, with the index up to date or not.
    Node* real = MakeNote("Real", top, b);
    NodeMaker(&doc).MakeAlias(real, top, b);
    Node* plain = MakeNote("untitled", top, real);
    Node* titled = MakeNote("untitled", top, plain);
    NodeText(titled).SetText("words");
    ASSERT_EQ(plain->Name(), titled->Name());
    EXPECT_EQ(Eval("$IsAlias(/Top/Real)"), "true");
    EXPECT_EQ(Eval("$Text(/Top/untitled)"), "");
    for (bool indexed : {false, true}) {
        if (indexed)
            doc.GetIndex()->Rebuild();
        EXPECT_EQ(Eval("\"/Top/Real;/Top/untitled;/Top/B\".collect($IsAlias)"), "true;false;false") << indexed;
        EXPECT_EQ(Eval("\"/Top/untitled;/Top/Real\".every($Text == \"\")"), "true") << indexed;
        EXPECT_EQ(Eval("\"/Top/Real\".every($IsAlias)"), "true") << indexed;
    }
    // A long list brings the index up to date itself.
    std::string items;
    for (int i = 0; i < 1000; ++i)
        items += "/Top/A;";
    a->Set("Items", items + "/Top/Real");
    std::string flags = Eval("$Items.collect($IsAlias)");
    EXPECT_EQ(flags.substr(flags.size() - 5), ";true");
}

TEST_F(ListFunctionsTest, RunawayArgumentsStayBounded) {
    // A count far past the list takes the list; a huge negative index none.
    EXPECT_EQ(Eval("\"a;b\".first(2147483647)"), "a;b");
    EXPECT_EQ(Eval("\"a;b\".last(2147483647)"), "a;b");
    EXPECT_EQ(Eval("\"a;b\".at(-2147483647)"), "");
    EXPECT_EQ(Eval("\"a;b\".first(-3)"), "");
    // Missing receivers and arguments answer empty results.
    EXPECT_EQ(Eval("max()"), "0");
    EXPECT_EQ(Eval("list()"), "");
    EXPECT_EQ(Eval("dictionary()"), "");
}

}  // namespace

TEST_F(ListFunctionsTest, WithoutAliasesTheIndexAnswersAsThePathDoes) {
    // Under a parent that never held an alias the index answers for a step
    // without a look at the parent's children, but a note of the default
    // name still goes by the path, which meets the untitled one first.
    Node* plain = MakeNote("untitled", top, b);
    Node* titled = MakeNote("untitled", top, plain);
    NodeText(titled).SetText("words");
    Node* later = MakeNote("Later", top, titled);
    later->Set("Color", "red");
    ASSERT_FALSE(top->MayHoldAliases());
    doc.GetIndex()->Rebuild();
    std::string items;
    for (int i = 0; i < 1000; ++i)
        items += "/Top/untitled;";
    a->Set("Items", items + "/Top/Later");
    std::string texts = Eval("$Items.collect($Text)");
    EXPECT_EQ(texts.find("words"), std::string::npos) << texts.substr(0, 40);
    std::string colours = Eval("$Items.collect($Color)");
    ASSERT_GE(colours.size(), 4u);
    EXPECT_EQ(colours.substr(colours.size() - 4), ";red");

    // An alias elsewhere leaves this parent to the index; one moved in
    // before the original sends steps of its name back to the walk. The
    // long list keeps the index up to date, so only the mark on the parent
    // can tell.
    Node* alias = NodeMaker(&doc).MakeAlias(later, doc.Root(), nullptr);
    ASSERT_NE(alias, nullptr);
    EXPECT_FALSE(top->MayHoldAliases());
    EXPECT_TRUE(doc.Root()->MayHoldAliases());
    std::string laters;
    for (int i = 0; i < 1000; ++i)
        laters += "/Top/Later;";
    a->Set("Items", laters);
    EXPECT_EQ(Eval("$Items.first.collect($IsAlias)"), "false");
    NodePosition(alias).DoMoveTo(top, nullptr);
    ASSERT_EQ(top->Son(), alias);
    EXPECT_TRUE(top->MayHoldAliases());
    EXPECT_EQ(Eval("$Items.collect($IsAlias).first"), "true");
}
