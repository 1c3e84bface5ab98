// Functions that make and delete notes and run the document's named code:
// create, createAgent, delete, stamp and do, with the stamps and macros the
// document file carries.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include "NamedCodeList.h"
#include "TalvikReader.h"

namespace {

class NoteMakingTest : public ActionTestDocument {
protected:
    void SetStamps(const std::string& raw) { doc.SetCarriedSection("stamps", raw); }
    void SetMacros(const std::string& raw) { doc.SetCarriedSection("macros", raw); }
    // The names of the live children of a note, in order.
    static std::string Children(Node* parent) {
        std::string names;
        for (Node* n = parent->Son(); n; n = n->Brother())
            names += (names.empty() ? "" : ",") + n->Name();
        return names;
    }
};

TEST_F(NoteMakingTest, CreateAndCreateAgentMakeMissingStepsOnly) {
    EXPECT_EQ(Eval("create(\"/Inbox/Today\")"), "/Inbox/Today");
    EXPECT_EQ(Eval("create(\"/Inbox\", \"Later\")"), "/Inbox/Later");
    EXPECT_EQ(Children(doc.Root()), "Inbox,Top");
    Node* inbox = doc.Root()->Son();
    ASSERT_NE(inbox, nullptr);
    // Each new note is made first in its container.
    EXPECT_EQ(Children(inbox), "Later,Today");
    // A path that exists is found, not made again.
    EXPECT_EQ(Eval("create(\"/Inbox/Today\")"), "/Inbox/Today");
    EXPECT_EQ(Children(inbox), "Later,Today");

    EXPECT_EQ(Eval("createAgent(\"/Agents/Reds\", '$Color==\"red\"')"), "/Agents/Reds");
    EXPECT_EQ(Children(doc.Root()), "Agents,Inbox,Top");
    Node* agents = doc.Root()->Son();
    ASSERT_NE(agents, nullptr);
    Node* reds = agents->Son();
    ASSERT_NE(reds, nullptr);
    EXPECT_TRUE(reds->IsAgent());
    EXPECT_FALSE(agents->IsAgent());
    EXPECT_EQ(reds->GetString("AgentQuery"), "$Color==\"red\"");
    // An existing note keeps its kind and takes the new query.
    EXPECT_EQ(Eval("createAgent(\"/Inbox/Later\", \"$Flag\")"), "/Inbox/Later");
    EXPECT_FALSE(inbox->Son()->IsAgent());
    EXPECT_EQ(inbox->Son()->GetString("AgentQuery"), "$Flag");
}

TEST_F(NoteMakingTest, DeleteHidesEveryDesignatedNoteButNeverTheRoot) {
    Node* c = MakeNote("C", top, b);
    Node* grandchild = MakeNote("G", c);
    EXPECT_EQ(Eval("delete(\"/Top\", \"B\")"), "true");
    EXPECT_TRUE(b->IsHidden());
    EXPECT_EQ(Children(top), "A,C");
    // Deleting again finds nothing.
    EXPECT_EQ(Eval("delete(\"/Top/B\")"), "");
    // A container goes with its children; the note's values stay readable.
    c->Set("Words", "kept");
    EXPECT_EQ(Eval("delete(\"/Top/C\")"), "true");
    EXPECT_TRUE(grandchild->IsHidden());
    EXPECT_EQ(c->GetString("Words"), "kept");
    EXPECT_EQ(Eval("delete(\"/\")"), "");
    EXPECT_EQ(Eval("delete(\"\")"), "");
    EXPECT_FALSE(doc.Root()->IsHidden());
    // The statements after a deletion of the note itself are not run.
    Do("$Count = 1; delete(this); $Count = 2");
    EXPECT_TRUE(a->IsHidden());
    EXPECT_EQ(a->GetLong("Count"), 1);
    EXPECT_EQ(Children(top), "");
}

TEST_F(NoteMakingTest, StampsApplyByFunctionAndByBareName) {
    SetStamps("<stamps><menu name=\"Done\" Value=\"$Flag=true;$Count=$Count+1\" kind=\"0\"/>"
              "<menu name=\"Tag\" Value='$Tags=$Tags+\"x\"'/></stamps>");
    EXPECT_EQ(Eval("stamp(\"Done\")"), "true");
    EXPECT_EQ(Get("Flag"), "true");
    EXPECT_EQ(Get("Count"), "1");
    // With a designator: every designated note.
    EXPECT_EQ(Eval("stamp(\"children\", \"Tag\")", top), "true");
    EXPECT_EQ(Get("Tags", a), "x");
    EXPECT_EQ(Get("Tags", b), "x");
    EXPECT_EQ(Get("Tags", top), "");
    EXPECT_EQ(Eval("stamp(\"Nothing\")"), "");
    EXPECT_EQ(Get("Count"), "1");
    // A statement whose value names a stamp applies it.
    Do("\"Done\"", b);
    EXPECT_EQ(Get("Count", b), "1");
    Do("\"Don\"+\"e\"", b);
    EXPECT_EQ(Get("Count", b), "2");
    // The stamps follow the document's section when it changes.
    SetStamps("<stamps><menu name=\"Done\" Value=\"$Count=40\"/></stamps>");
    EXPECT_EQ(Eval("stamp(\"Done\")"), "true");
    EXPECT_EQ(Get("Count"), "40");
}

TEST_F(NoteMakingTest, StampsAndMacrosThatCallThemselvesStop) {
    SetStamps("<stamps><menu name=\"Loop\" Value='$Count=$Count+1;stamp(\"Loop\")'/>"
              "<menu name=\"Echo\" Value='\"Echo\"'/></stamps>");
    SetMacros("<macros><macro name=\"again\">do(\"again\")</macro></macros>");
    EXPECT_EQ(Eval("stamp(\"Loop\")"), "true");
    long count = a->GetLong("Count");
    EXPECT_GT(count, 1);
    EXPECT_LE(count, 41);
    // A stamp whose statement names itself.
    EXPECT_EQ(Eval("stamp(\"Echo\")"), "true");
    EXPECT_EQ(Eval("do(\"again\")"), "");
}

TEST_F(NoteMakingTest, MacrosReplacePlaceholdersWithTheirArguments) {
    SetMacros("<macros><macro name=\"twice\">$1+$1</macro>"
              "<macro name=\"label\">$Words=\"$1 of $2\";$Count=$2</macro>"
              "<macro name=\"dup\">\"$1$1\"</macro><macro name=\"tenth\">\"$10|$1|$3\"</macro></macros>");
    EXPECT_EQ(Eval("do(\"twice\", 21)"), "42");
    EXPECT_EQ(Eval("do(\"dup\", \"ab\")"), "abab");
    EXPECT_EQ(Eval("do(\"label\", \"three\", 7)"), "true");
    EXPECT_EQ(Get("Words"), "three of 7");
    EXPECT_EQ(Get("Count"), "7");
    // A placeholder beyond the arguments is empty; $10 is the tenth.
    EXPECT_EQ(NamedCodeList::Substitute("\"$10|$1|$3\"", {"x"}), "\"|x|\"");
    EXPECT_EQ(Eval("do(\"tenth\", \"x\")"), "|x|");
    EXPECT_EQ(Eval("do(\"missing\", 1)"), "");
    EXPECT_EQ(NamedCodeList::Substitute("$1$2-$0-$", {"a", "b"}), "ab--$");
    EXPECT_EQ(NamedCodeList::Substitute("$99999999999999999999", {"a"}), "");
    // Text that doubles at each call stops growing at the bound.
    std::string half(NamedCodeList::kMaxText / 2 + 1, 'x');
    EXPECT_EQ(NamedCodeList::Substitute("$1", {half}).size(), half.size());
    EXPECT_EQ(NamedCodeList::Substitute("$1$1", {half}), "");
}

TEST_F(NoteMakingTest, NamedCodeSectionsThatDoNotParseGiveNoEntries) {
    using Kind = NamedCodeList::Kind;
    EXPECT_TRUE(NamedCodeList::Read(Kind::kMacros, "<macros><macro name=\"x\">1</macro>").empty());
    EXPECT_TRUE(NamedCodeList::Read(Kind::kStamps, "<stamps><menu Value=\"1\"/></stamps>").empty());
    auto stamps = NamedCodeList::Read(Kind::kStamps, "<menu name=\"One\" Value=\"$Count=1\"/>");
    ASSERT_EQ(stamps.size(), 1u);
    EXPECT_EQ(stamps[0].first, "One");
    // A document type declaration is refused.
    EXPECT_TRUE(NamedCodeList::Read(Kind::kMacros, "<!DOCTYPE m [<!ENTITY e \"x\">]><macros>"
                                                   "<macro name=\"x\">&e;</macro></macros>")
                    .empty());
    SetMacros("<macros><macro name=\"x\">");
    EXPECT_EQ(Eval("do(\"x\")"), "");
}

}  // namespace

namespace {

// The stamps and macros of a document file, read as the file gives them.
TEST(NamedCodeFromFile, StampsAndMacrosOfAReadDocumentRun) {
    InstallActionHooks();
    Hypertext doc;
    const std::string file =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n"
        "<rylvane version=\"2\">\n"
        "<macros><macro name=\"greet\">\"hello \" + $1</macro></macros>\n"
        "<stamps><menu name=\"Red\" Value='$Color=\"red\"' kind=\"0\"/></stamps>\n"
        "<item ID=\"4\" Creator=\"me\"><attribute name=\"Name\">Root</attribute>\n"
        "<item ID=\"5\" Creator=\"me\"><attribute name=\"Name\">Top</attribute></item></item>\n"
        "</rylvane>\n";
    TalvikReader reader(doc.Root());
    ASSERT_TRUE(reader.Read(file)) << reader.ErrorMessage();
    Node* top = doc.Root()->Son();
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(Action::Evaluate(top, "do(\"greet\", $Name)"), "hello Top");
    EXPECT_EQ(Action::Evaluate(top, "stamp(\"Red\")"), "true");
    EXPECT_EQ(top->GetString("Color"), "red");
    auto stamps = NamedCodeList::Stamps(&doc)->Entries();
    ASSERT_EQ(stamps.size(), 1u);
    EXPECT_EQ(stamps[0].second, "$Color=\"red\"");
}

}  // namespace

namespace {

// sum reads a plain number attribute without writing it as text: the
// answers must be those of any other expression of the same values.
TEST_F(NoteMakingTest, SumOfANumberAttributeMatchesTheGeneralPath) {
    Node* c = MakeNote("C", top, b);
    a->Set("Count", "1.25");
    b->Set("Count", "-0.1");
    c->Set("Count", "1e21");
    for (const char* group : {"children", "all", "descendants"}) {
        std::string plain = Eval(std::string("sum(") + group + ", $Count)", top);
        EXPECT_EQ(plain, Eval(std::string("sum(") + group + ", $Count + 0)", top)) << group;
    }
    c->Set("Count", "");
    EXPECT_EQ(Eval("sum(children, $Count)", top), "1.15");
    // A note that refuses searches adds nothing.
    b->SetBoolean("Searchable", false);
    EXPECT_EQ(Eval("sum(children, $Count)", top), "1.25");
    EXPECT_EQ(Eval("sum(children, $Count(/Top/A))", top), "2.5");
}

}  // namespace
