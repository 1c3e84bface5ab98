// Queries read attributes and literals the short way (text in place, numbers
// without a result, the attribute a name means remembered per table). Each
// case checks that the short way answers what the full evaluation answers,
// and that what a query remembers follows the document: values, prototypes
// and the attribute table changed between two passes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ActionTestDocument.h"

#include "AttributeInfo.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NoteQuery.h"
#include "Props.h"

namespace {

using QueryCacheTest = ActionTestDocument;

using List = std::vector<std::string>;

List Names(const NodeVector& notes) {
    List names;
    for (Node* note : notes)
        names.push_back(note->Name());
    return names;
}

// An attribute in parentheses is computed as a whole result: the reference
// the short reads must agree with.
TEST_F(QueryCacheTest, ComparisonsAnswerWhatTheFullEvaluationAnswers) {
    const char* const texts[] = {"", "abc", "warm gray dark", "#ff", "true", "false", "2026-01-05", " 12 ",
                                 "\"7\"", "7", "-3.5", "ünïcode", "0"};
    const char* const operators[] = {"==", "!=", "<", ">", "<=", ">="};
    const char* const literals[] = {"\"abc\"", "\"\"", "2", "\"12\"", "\"#ff\"", "true", "\"2026-01-05\"", "hello"};
    for (const char* text : texts) {
        a->Set("Words", text);
        for (const char* op : operators) {
            for (const char* literal : literals) {
                std::string shortWay = std::string("$Words ") + op + " " + literal;
                std::string fullWay = std::string("($Words) ") + op + " " + literal;
                EXPECT_EQ(Eval(shortWay), Eval(fullWay)) << shortWay << " with $Words " << text;
                std::string reversed = std::string(literal) + " " + op + " $Words";
                std::string reversedFull = std::string(literal) + " " + op + " ($Words)";
                EXPECT_EQ(Eval(reversed), Eval(reversedFull)) << reversed << " with $Words " << text;
            }
        }
    }
    const char* const numbers[] = {"0", "2", "2.5", "-3", "1000000", "0.1"};
    for (const char* number : numbers) {
        a->Set("Count", number);
        for (const char* op : operators) {
            for (const char* literal : {"2", "\"2\"", "2.5", "#ff", "-1"}) {
                std::string shortWay = std::string("$Count ") + op + " " + literal;
                std::string fullWay = std::string("($Count) ") + op + " " + literal;
                EXPECT_EQ(Eval(shortWay), Eval(fullWay)) << shortWay << " with $Count " << number;
            }
        }
        EXPECT_EQ(Eval("$Count + 1"), Eval("($Count) + 1")) << number;
        EXPECT_EQ(Eval("$Count * 2 - #10"), Eval("($Count) * 2 - #10")) << number;
    }
    // Known answers, so that both ways cannot be wrong together.
    a->Set("Count", "4");
    a->Set("Words", "red");
    EXPECT_EQ(Eval("$Count > 2"), "1");
    EXPECT_EQ(Eval("$Count > #ff"), "0");
    EXPECT_EQ(Eval("$Words == \"red\""), "true");
    EXPECT_EQ(Eval("$Words < \"re\""), "");
    EXPECT_EQ(Eval("$NoSuchThing == \"\""), "true");
    // A bare word that names an attribute reads the attribute, not the word.
    EXPECT_EQ(Eval("Count + 1"), "5");
    EXPECT_EQ(Eval("$Words == Words"), "true");
}

TEST_F(QueryCacheTest, NamesAreReadFromTheOriginalAndDatesTheFullWay) {
    Node* alias = NodeMaker(&doc).MakeAlias(a, top, b);
    ASSERT_NE(alias, nullptr);
    EXPECT_EQ(Eval("$Name == \"A\"", alias), "true");
    EXPECT_EQ(Eval("$Name > \"A\"", alias), "");
    a->Set("Due", "2026-03-04");
    // Dates compare by day, not as texts.
    EXPECT_EQ(Eval("$Due == \"2026-03-04\""), "true");
    EXPECT_EQ(Eval("$Due > \"2026-03-01\""), "true");
}

TEST_F(QueryCacheTest, APassSeesValuesPrototypesAndTheTableAsTheyAreNow) {
    NoteQuery query("$Words == \"x\" & $Count > 2", true);
    ASSERT_TRUE(query.IsValid());
    EXPECT_TRUE(query.FindAll(&doc).empty());

    a->Set("Words", "x");
    a->Set("Count", "3");
    EXPECT_EQ(Names(query.FindAll(&doc)), (List{"A"}));
    a->Set("Count", "2");
    EXPECT_TRUE(query.FindAll(&doc).empty());

    // Inherited values, and a change of the prototype itself.
    Node* prototype = MakeNote("Proto");
    prototype->Set("Words", "x");
    prototype->Set("Count", "9");
    b->SetPrototype(prototype, false);
    EXPECT_EQ(Names(query.FindAll(&doc)), (List{"Proto", "B"}));
    prototype->Set("Words", "y");
    EXPECT_TRUE(query.FindAll(&doc).empty());
    prototype->Set("Words", "x");
    Node* other = MakeNote("Other");
    other->Set("Words", "z");
    b->SetPrototype(other, false);
    EXPECT_EQ(Names(query.FindAll(&doc)), (List{"Proto"}));

    // The table: a renamed attribute no longer answers to its old name, and
    // a new one of that name is a different attribute, with no values yet.
    Props* props = doc.AttributeStorage();
    AttributeInfo(&doc).RenameAttribute(props->Find("Words"), "Phrase");
    EXPECT_TRUE(query.FindAll(&doc).empty());
    AttributeInfo(&doc).CreateBasicAttribute("Words", "User", true, AttributeType::kString);
    EXPECT_TRUE(query.FindAll(&doc).empty());
    prototype->Set("Words", "x");
    EXPECT_EQ(Names(query.FindAll(&doc)), (List{"Proto"}));
    AttributeInfo(&doc).RemoveAttribute("Count");
    // `$Count` now names nothing: its text is empty, which is not above 2.
    EXPECT_TRUE(query.FindAll(&doc).empty());
}

// One compiled query over two documents whose tables differ: each reads its
// own attribute of the name.
TEST_F(QueryCacheTest, OneQueryServesDocumentsWithDifferentTables) {
    Hypertext second;
    AttributeInfo(&second).CreateBasicAttribute("Words", "User", true, AttributeType::kString);
    Node* there = NodeMaker(&second).MakeNode("There", nullptr, nullptr, 0, 0);
    there->Set("Words", "x");
    a->Set("Words", "x");
    NoteQuery query("$Words == \"x\"", true);
    for (int pass = 0; pass < 3; ++pass) {
        EXPECT_EQ(Names(query.FindAll(&doc)), (List{"A"}));
        EXPECT_EQ(Names(query.FindAll(&second)), (List{"There"}));
    }
}

// The scan fetches notes ahead of its visits; what it visits must still be
// the tree as each visit leaves it.
TEST_F(QueryCacheTest, TheScanVisitsTheOutlineAsEachVisitLeavesIt) {
    Node* c = MakeNote("C", a);
    MakeNote("D", c);
    Node* e = MakeNote("E", top, b);
    MakeNote("F", e);
    auto scan = [this](auto visitAlso) {
        List visited;
        Node* root = doc.Root();
        VisitNotesInOutlineOrder(root->Son(), root->Sentinel(), {}, [] { return false; }, [&](Node* note) {
            visited.push_back(note->Name());
            visitAlso(note);
        });
        return visited;
    };
    List enumerated;
    NodeFacade(doc.Root()).Enumerate([&](Node* note) { enumerated.push_back(note->Name()); });
    EXPECT_EQ(scan([](Node*) {}), enumerated);

    // A visit that deletes the notes just ahead, and one that adds a note
    // straight after the one visited.
    EXPECT_EQ(scan([&](Node* note) {
                  if (note == c) {
                      NodeDeleter(c->Son()).Delete();
                      NodeDeleter(b).Delete();
                      NodeDeleter(e).Delete();
                  }
              }),
              (List{"Top", "A", "C"}));
    EXPECT_EQ(scan([&](Node* note) {
                  if (note == a)
                      MakeNote("New", top, a);
              }),
              (List{"Top", "A", "C", "New"}));

    List stopped;
    int left = 2;
    VisitNotesInOutlineOrder(doc.Root(), nullptr, {}, [&] { return left-- == 0; },
                             [&](Node* note) { stopped.push_back(note->Name()); });
    EXPECT_EQ(stopped.size(), 2u);
}

}  // namespace
