// Tests on notes in action code: place in the outline, links, prototypes,
// local values, names and words. The outline is
//   Top: A, B, C (C holding D and E), and Proto beside Top.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include <algorithm>
#include <string>

#include "Action.h"
#include "Hooks.h"
#include "Link.h"
#include "LynxUpdater.h"
#include "MatchList.h"
#include "NodeFacade.h"
#include "NodeLinks.h"
#include "NodeIndex.h"
#include "NoteQuery.h"

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

TEST_F(NoteTestFunctionsTest, GuardsOfOutboundLinks) {
    // A web link guarded by "open", as the document reader makes one, and a
    // plain link to B guarded by "members".
    LinkRecord web(a);
    web.url = "https://example.org/door";
    web.guard = "open";
    ASSERT_NE(NodeLinks(a).CreateLink(web), nullptr);
    Link* plain = NodeLinks(a).CreateLink(b, "see");
    ASSERT_NE(plain, nullptr);
    plain->SetGuard("members");
    NodeLinks(c).CreateLink(d, "see");

    EXPECT_TRUE(Holds("guard(open)", a));
    EXPECT_TRUE(Holds("guard(\"open\")", a));
    EXPECT_TRUE(Holds("guard( open )", a));
    EXPECT_TRUE(Holds("guard(members)", a));
    MatchList matches;
    EXPECT_EQ(Action::ParseExpression("guard(open)")->ResultType(a, matches), AttributeType::kBoolean);
    // The whole guard, exactly.
    EXPECT_FALSE(Holds("guard(ope)", a));
    EXPECT_FALSE(Holds("guard(Open)", a));
    EXPECT_FALSE(Holds("guard(closed)", a));
    // An empty word names no guard, though unguarded links pass any.
    EXPECT_FALSE(Holds("guard()", c));
    EXPECT_FALSE(Holds("guard", a));
    // Only outbound links count: B is the end of the guarded link.
    EXPECT_FALSE(Holds("guard(members)", b));
    EXPECT_FALSE(Holds("guard(open)", c));
    // As a query asks it of every note.
    NodeVector found = NoteQuery("guard(open)", true).FindAll(&doc);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0], a);
    EXPECT_EQ(Eval("!guard(closed)", a), "true");
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

TEST_F(NoteTestFunctionsTest, DuplicateNamesFollowRenamesAndRemovals) {
    // Answered once, so that what is remembered of the names must follow
    // each change below.
    EXPECT_FALSE(Holds("isDuplicateName()", a));
    EXPECT_FALSE(Holds("isDuplicateName()", d));
    Do("$Name = \"A\"", e);
    EXPECT_TRUE(Holds("isDuplicateName()", a));
    EXPECT_TRUE(Holds("isDuplicateName()", e));
    Do("$Name = \"E\"", e);
    EXPECT_FALSE(Holds("isDuplicateName()", a));
    Node* twin = MakeNote("D", top);
    EXPECT_TRUE(Holds("isDuplicateName()", d));
    twin->Hide();
    EXPECT_FALSE(Holds("isDuplicateName()", d));
    // A hidden note is refused itself, and a shown one of its name found.
    Node* other = MakeNote("D", proto);
    EXPECT_TRUE(Holds("isDuplicateName()", d));
    EXPECT_FALSE(Holds("isDuplicateName()", twin));
    // An alias speaks for its original, and is no second bearer of the name.
    Node* alias = NodeMaker(&doc).MakeAlias(other, top, nullptr);
    EXPECT_TRUE(Holds("isDuplicateName()", alias));
    other->Hide();
    EXPECT_FALSE(Holds("isDuplicateName()", d));
    // A rename whose trace in the name index someone else cleared shows
    // from the next pass over the notes on.
    MakeNote("Pass", proto);
    for (Node* note : {a, b, c, d})
        EXPECT_FALSE(Holds("isDuplicateName()", note));
    Do("$Name = \"B\"", e);
    doc.GetIndex()->Rebuild();
    EXPECT_FALSE(Holds("isDuplicateName()", a));
    EXPECT_TRUE(Holds("isDuplicateName()", b));
    Do("$Name = \"E\"", e);
    // The root is not among the bearers; notes of the default name are.
    doc.Root()->SetName("Top");
    EXPECT_FALSE(Holds("isDuplicateName()", top));
    Node* first = MakeNote("", c);
    Node* second = MakeNote("", c);
    EXPECT_EQ(first->Name(), second->Name());
    EXPECT_TRUE(Holds("isDuplicateName()", first));
}

TEST_F(NoteTestFunctionsTest, DuplicateNamesAcrossALargeDocument) {
    // The census of names answers for notes far apart in a large document
    // as the walk did (its speed is measured in bench_date_functions).
    const int kNotes = 10000;
    Node* holder = nullptr;
    Node* last = nullptr;
    for (int i = 0; i < kNotes; ++i) {
        if (i % 500 == 0) {
            holder = MakeNote("holder " + std::to_string(i), proto, holder);
            last = nullptr;
        }
        last = MakeNote("note " + std::to_string(i), holder, last);
    }
    MakeNote("note 17", top);
    NodeVector found = NoteQuery("isDuplicateName()", true).FindAll(&doc);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]->Name(), "note 17");
    EXPECT_EQ(found[1]->Name(), "note 17");
    EXPECT_NE(found[0], found[1]);
}

// The word functions ask the indexes, which reindex changed notes on their
// queue.
class WordIndexQueueTest : public NoteTestFunctionsTest {
protected:
    void SetUp() override {
        NoteTestFunctionsTest::SetUp();
        InstallTextHooks();
    }
    void Text(Node* note, const std::string& text) { NodeText(note).SetText(text); }
};

TEST_F(WordIndexQueueTest, WordsOfTheNoteIndex) {
    Text(a, "The quick brown fox, and 42 geese in 2024.");
    EXPECT_TRUE(Holds("word(quick)", a));
    EXPECT_TRUE(Holds("word(\"QUICK\")", a)) << "the word is filtered as the text is";
    EXPECT_TRUE(Holds("#word(fox)", a));
    EXPECT_FALSE(Holds("word(\"in\")", a)) << "too short to be indexed";
    EXPECT_FALSE(Holds("word(\"2024\")", a)) << "digits are never indexed";
    EXPECT_FALSE(Holds("word(geese2)", a));
    EXPECT_FALSE(Holds("word(dog)", a));
    EXPECT_FALSE(Holds("word()", a));
    // The name is indexed with the text; a computed word is computed.
    EXPECT_TRUE(Holds("word(top)", top));
    a->Set("Words", "brown");
    EXPECT_TRUE(Holds("word($Words)", a));
    // Each note answers from its own index.
    EXPECT_FALSE(Holds("word(quick)", b));

    // A change of text is indexed again before the next question.
    Do("$Text = \"a lazy dog\"");
    EXPECT_TRUE(Holds("word(lazy)", a));
    EXPECT_FALSE(Holds("word(quick)", a));
    // An alias holds its original's words.
    Node* alias = NodeMaker(&doc).MakeAlias(a, proto, nullptr);
    EXPECT_TRUE(Holds("word(lazy)", alias));
}

TEST_F(WordIndexQueueTest, SimilarNotesByTheirWords) {
    Node* model = MakeNote("Model", proto);
    Node* close = MakeNote("Close", proto);
    Node* near = MakeNote("Near", proto);
    Node* far = MakeNote("Far", proto);
    Text(model, "apple banana cherry orchard harvest");
    Text(close, "apple banana cherry orchard");
    Text(near, "apple tractor");
    Text(far, "zebra giraffe");
    Text(d, "walrus narwhal");
    Text(e, "walrus narwhal");
    EXPECT_TRUE(Holds("similarTo(/Proto/Model)", close));
    EXPECT_TRUE(Holds("#similarTo(/Proto/Model)", near));
    EXPECT_FALSE(Holds("similarTo(/Proto/Model)", far));
    EXPECT_FALSE(Holds("similarTo(/Proto/Model)", model)) << "a note is not similar to itself";
    EXPECT_FALSE(Holds("similarTo(/Proto/Nowhere)", close));
    // The count keeps only the best.
    EXPECT_TRUE(Holds("similarTo(/Proto/Model, 1)", close));
    EXPECT_FALSE(Holds("similarTo(/Proto/Model, 1)", near));
    EXPECT_FALSE(Holds("similarTo(/Proto/Model, 0)", close));
    // As an agent asks it of every note.
    NodeVector found = NoteQuery("similarTo(/Proto/Model)", true).FindAll(&doc);
    std::vector<std::string> names;
    for (Node* note : found)
        names.push_back(note->Name());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"Close", "Near"}));
    EXPECT_TRUE(Holds("similarTo(/Top/C/D)", e));
    // A changed text changes the answer of the same question.
    Text(far, "apple banana cherry orchard harvest");
    EXPECT_TRUE(Holds("similarTo(/Proto/Model)", far));
    Text(close, "zebra");
    EXPECT_FALSE(Holds("similarTo(/Proto/Model)", close));
}

TEST_F(WordIndexQueueTest, WordsRelatedByTheNotesTheyShare) {
    // Names with digits add no words of their own.
    Node* n1 = MakeNote("n1", proto);
    Node* n2 = MakeNote("n2", proto, n1);
    Node* n3 = MakeNote("n3", proto, n2);
    Node* n4 = MakeNote("n4", proto, n3);
    Text(n1, "apple banana cherry");
    Text(n2, "Apple, banana and a date.");
    Text(n3, "apple cherry elder apple");
    Text(n4, "banana fig grape");
    // banana and cherry share two notes with apple, date and elder one each;
    // ties go alphabetically and apple itself is left out.
    EXPECT_EQ(Eval("wordsRelatedTo(apple)"), "banana;cherry;and;date;elder");
    EXPECT_EQ(Eval("wordsRelatedTo(\"APPLE\", 2)"), "banana;cherry");
    EXPECT_EQ(Eval("wordsRelatedTo(apple, 3)"), "banana;cherry;and");
    EXPECT_EQ(Eval("wordsRelatedTo(apple, 1)"), "banana");
    EXPECT_EQ(Eval("wordsRelatedTo(apple, 0)"), "");
    EXPECT_EQ(Eval("wordsRelatedTo(fig)"), "banana;grape");
    EXPECT_EQ(Eval("wordsRelatedTo(zebra)"), "");
    EXPECT_EQ(Eval("wordsRelatedTo(\"\")"), "");
    // A computed word; the answer is a list.
    a->Set("Words", "fig");
    EXPECT_EQ(Eval("wordsRelatedTo($Words).count"), "2");
    // A changed text changes the answer to the same question.
    Text(n4, "apple elder cherry");
    EXPECT_EQ(Eval("wordsRelatedTo(apple)"), "cherry;banana;elder;and;date");
    EXPECT_EQ(Eval("wordsRelatedTo(apple)", n2), "cherry;banana;elder;and;date");
    // Every note of a query gets the same answer.
    EXPECT_EQ(NoteQuery("wordsRelatedTo(apple, 1) == \"cherry\"", true).FindAll(&doc).size(),
              NoteQuery("true", true).FindAll(&doc).size());
    // Without the word index there is no answer.
    StHooks hooks;
    hooks->relatedWords = nullptr;
    EXPECT_EQ(Eval("wordsRelatedTo(apple)"), "");
}

}  // namespace
