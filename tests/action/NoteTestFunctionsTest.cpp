// Tests on notes in action code: place in the outline, links, prototypes,
// local values and names. The outline is
//   Top: A, B, C (C holding D and E), and Proto beside Top.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include <string>

#include "Action.h"
#include "MatchList.h"
#include "NodeLinks.h"

namespace {

class NoteTestFunctionsTest : public ActionTestDocument {
protected:
    void SetUp() override {
        ActionTestDocument::SetUp();
        c = MakeNote("C", top, b);
        d = MakeNote("D", c);
        e = MakeNote("E", c, d);
        proto = MakeNote("Proto", nullptr, top);
    }

    bool Holds(const std::string& expression, Node* note) { return Eval(expression, note) == "true"; }

    Node* c = nullptr;
    Node* d = nullptr;
    Node* e = nullptr;
    Node* proto = nullptr;
};

TEST_F(NoteTestFunctionsTest, PlaceInTheOutline) {
    EXPECT_TRUE(Holds("descendedFrom(/Top)", d));
    EXPECT_TRUE(Holds("descendedFrom(/Top/C)", d));
    EXPECT_TRUE(Holds("descendedFrom(\"/Top\")", a));
    EXPECT_FALSE(Holds("descendedFrom(/Top/C)", a));
    EXPECT_FALSE(Holds("descendedFrom(/Top)", top));
    EXPECT_FALSE(Holds("descendedFrom(/Nowhere)", a));

    EXPECT_TRUE(Holds("inside(/Top/C)", d));
    EXPECT_FALSE(Holds("inside(/Top)", d));
    EXPECT_TRUE(Holds("inside(/Top)", a));

    EXPECT_TRUE(Holds("contains(/Top/A)", top));
    EXPECT_TRUE(Holds("contains(/Top/C/E)", c));
    EXPECT_FALSE(Holds("contains(/Top/C/D)", top));
    EXPECT_FALSE(Holds("contains(/Top/A)", a));
}

TEST_F(NoteTestFunctionsTest, AliasesStandForTheirOriginals) {
    Node* alias = NodeMaker(&doc).MakeAlias(d, proto, nullptr);
    ASSERT_NE(alias, nullptr);
    // The alias sits in Proto, its original in C: inside either.
    EXPECT_TRUE(Holds("inside(/Proto)", alias));
    EXPECT_TRUE(Holds("inside(/Top/C)", alias));
    EXPECT_FALSE(Holds("inside(/Top)", alias));
    // Proto holds D through the alias.
    EXPECT_TRUE(Holds("contains(/Top/C/D)", proto));
    // The alias is D's stand-in among Proto's children.
    EXPECT_TRUE(Holds("first(/Proto, 1)", d));
}

TEST_F(NoteTestFunctionsTest, FirstAndLastChildren) {
    EXPECT_TRUE(Holds("first(/Top, 1)", a));
    EXPECT_FALSE(Holds("first(/Top, 1)", b));
    EXPECT_TRUE(Holds("first(/Top, 2)", b));
    EXPECT_TRUE(Holds("first(/Top)", a));
    EXPECT_FALSE(Holds("first(/Top, 0)", a));
    EXPECT_FALSE(Holds("first(/Top, -3)", a));
    EXPECT_TRUE(Holds("last(/Top, 1)", c));
    EXPECT_FALSE(Holds("last(/Top, 2)", a));
    EXPECT_TRUE(Holds("last(/Top, 3)", a));
    EXPECT_TRUE(Holds("last(/Top/C, 1)", e));
    EXPECT_FALSE(Holds("first(/Top/C, 1)", e));
    // A count far past the children only ends the walk.
    EXPECT_TRUE(Holds("last(/Top, 1e30)", a));
}

TEST_F(NoteTestFunctionsTest, Depth) {
    EXPECT_TRUE(Holds("indented(0)", top));
    EXPECT_TRUE(Holds("indented(1)", a));
    EXPECT_FALSE(Holds("indented(0)", a));
    EXPECT_TRUE(Holds("indented(2)", d));
    EXPECT_FALSE(Holds("indented(3)", d));
    // Below an anchor a direct child has depth 1.
    EXPECT_TRUE(Holds("indented(1, /Top)", a));
    EXPECT_TRUE(Holds("indented(2, /Top)", d));
    EXPECT_TRUE(Holds("indented(1, /Top/C)", d));
    EXPECT_FALSE(Holds("indented(1, /Top/C)", a));
    // An anchor that names nothing is the root, with the depth unchanged.
    EXPECT_TRUE(Holds("indented(1, /Nowhere)", a));
    EXPECT_FALSE(Holds("indented(0)", doc.Root()));
    // No depth is no depth 0.
    EXPECT_FALSE(Holds("indented()", top));
}

TEST_F(NoteTestFunctionsTest, Links) {
    NodeLinks(a).CreateLink(b, "agree");
    EXPECT_TRUE(Holds("linkedTo(/Top/B)", a));
    EXPECT_TRUE(Holds("linkedTo(/Top/B, \"agree\")", a));
    EXPECT_TRUE(Holds("linkedTo(/Top/B, \"*\")", a));
    EXPECT_FALSE(Holds("linkedTo(/Top/B, \"disagree\")", a));
    EXPECT_FALSE(Holds("linkedTo(/Top/A)", b));
    EXPECT_TRUE(Holds("linkedFrom(/Top/A, \"agree\")", b));
    EXPECT_FALSE(Holds("linkedFrom(/Top/B)", a));

    // A link from an alias is a link of the alias: only the original forms
    // reach through it.
    Node* alias = NodeMaker(&doc).MakeAlias(c, proto, nullptr);
    ASSERT_NE(alias, nullptr);
    NodeLinks(c).CreateLink(d, "see");
    EXPECT_FALSE(Holds("linkedTo(/Top/C/D)", alias));
    EXPECT_TRUE(Holds("originalLinkedTo(/Top/C/D)", alias));
    EXPECT_TRUE(Holds("originalLinkedFrom(/Top/C, \"see\")", d));
    EXPECT_FALSE(Holds("originalLinkedFrom(/Top/C, \"agree\")", d));
}

TEST_F(NoteTestFunctionsTest, Between) {
    struct Case {
        const char* expression;
        bool expected;
    };
    const Case cases[] = {
        {"between(5, 1, 10)", true},
        {"between(1, 1, 10)", true},
        {"between(10, 1, 10)", false},
        {"between(-1, 1, 10)", false},
        // Numbers written as text compare as numbers, other text by bytes.
        {"between(\"2\", \"10\", \"30\")", false},
        {"between(\"9\", \"10\", \"30\")", false},
        {"between(\"20\", \"10\", \"30\")", true},
        {"between(\"m\", \"a\", \"z\")", true},
        {"between(\"z\", \"a\", \"z\")", false},
        {"between($Due, \"2021-01-01\", \"2021-12-31\")", true},
        {"between($Due, \"2022-01-01\", \"2022-12-31\")", false},
        {"between(5, 1)", false},
    };
    a->Set("Due", "2021-03-04");
    for (const Case& item : cases)
        EXPECT_EQ(Holds(item.expression, a), item.expected) << item.expression;
}

TEST_F(NoteTestFunctionsTest, PrototypesAndLocalValues) {
    a->SetPrototype(proto, false);
    EXPECT_TRUE(Holds("inheritsFrom(/Proto)", a));
    EXPECT_FALSE(Holds("inheritsFrom(/Proto)", b));
    EXPECT_FALSE(Holds("inheritsFrom(/Top)", a));

    proto->Set("Count", "7");
    a->Set("Words", "own");
    EXPECT_EQ(Get("Count"), "7");
    EXPECT_FALSE(Holds("hasLocalValue(\"Count\")", a));
    EXPECT_TRUE(Holds("hasLocalValue(\"Count\")", proto));
    EXPECT_TRUE(Holds("hasLocalValue(Words)", a));
    EXPECT_TRUE(Holds("hasLocalValue(\"$Words\")", a));
    EXPECT_FALSE(Holds("hasLocalValue(Words)", b));
    EXPECT_FALSE(Holds("hasLocalValue(\"NoSuchThing\")", a));
}

TEST_F(NoteTestFunctionsTest, DuplicateNamesAndVisits) {
    EXPECT_FALSE(Holds("isDuplicateName()", a));
    Node* twin = MakeNote("A", c);
    EXPECT_TRUE(Holds("isDuplicateName()", a));
    EXPECT_TRUE(Holds("isDuplicateName()", twin));
    // An alias bears its original's name without making it a duplicate.
    NodeMaker(&doc).MakeAlias(b, proto, nullptr);
    EXPECT_FALSE(Holds("isDuplicateName()", b));

    b->SetDouble("ReadCount", 2);
    EXPECT_TRUE(Holds("visited(/Top/B)", a));
    EXPECT_FALSE(Holds("unvisited(/Top/B)", a));
    EXPECT_FALSE(Holds("visited(/Top/C)", a));
    EXPECT_TRUE(Holds("unvisited(/Top/C)", a));
}

TEST_F(NoteTestFunctionsTest, HiddenAndMissingNotesAreRefused) {
    d->Hide();
    EXPECT_FALSE(Holds("descendedFrom(/Top)", d));
    EXPECT_FALSE(Holds("between(5, 1, 10)", d));
    EXPECT_FALSE(Holds("indented(2)", d));
    AAValuePtr tree = Action::ParseExpression("descendedFrom(/Top)", true);
    MatchList matches;
    EXPECT_EQ(AAValue::ComputeValue(tree.get(), nullptr, matches).AsString(), "");
}

TEST_F(NoteTestFunctionsTest, DesignatorIsRememberedUntilItsNoteIsHidden) {
    // One compiled tree, computed on several notes as an agent does.
    AAValuePtr tree = Action::ParseExpression("inside(parent)", true);
    MatchList matches;
    auto on = [&](Node* note) { return AAValue::ComputeValue(tree.get(), note, matches).IsTrue(); };
    EXPECT_TRUE(on(d));
    // The same designator text gives the note it named before: C, not A's
    // own parent.
    EXPECT_FALSE(on(a));
    EXPECT_TRUE(on(e));
    // Once C is hidden it is forgotten and the text is resolved again.
    c->Hide();
    EXPECT_TRUE(on(a));
}

}  // namespace
