// Designators: words, paths, names, indexed children, group words, lists,
// variables and the context, resolved from notes of a small document.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "../core/TestDocument.h"
#include "Action.h"
#include "HTPath.h"
#include "Link.h"
#include "MatchList.h"
#include "NodeLinks.h"
#include "Prototypes.h"

namespace {

// Appends a note as the youngest child of `parent` (the root when null).
Node* Add(Hypertext& doc, const std::string& name, Node* parent = nullptr) {
    Node* father = parent ? parent : doc.Root();
    return MakeNote(doc, name, parent, father->YoungestSon());
}

std::string Name(const Node* note) { return note ? note->Name() : "(null)"; }

std::vector<std::string> Names(const NodeVector& notes) {
    std::vector<std::string> names;
    for (const Node* n : notes)
        names.push_back(HypertextFacade(n->GetHypertext()).Root() == n ? "/" : n->Name());
    return names;
}

// /Projects/{Ideas/{Spark, Flame}, parent, Tasks}, /Notes/{Ideas, a, b},
// /Archive, /a;b, /Meeting (Monday), /agent
struct Outline {
    Hypertext doc;
    Node* projects = Add(doc, "Projects");
    Node* ideas = Add(doc, "Ideas", projects);
    Node* spark = Add(doc, "Spark", ideas);
    Node* flame = Add(doc, "Flame", ideas);
    Node* namedParent = Add(doc, "parent", projects);
    Node* tasks = Add(doc, "Tasks", projects);
    Node* notes = Add(doc, "Notes");
    Node* otherIdeas = Add(doc, "Ideas", notes);
    Node* a = Add(doc, "a", notes);
    Node* b = Add(doc, "b", notes);
    Node* archive = Add(doc, "Archive");
    Node* aAndB = Add(doc, "a;b");
    Node* meeting = Add(doc, "Meeting (Monday)");
    Node* namedAgent = Add(doc, "agent");
    MatchList matches;

    Node* Get(const Node* from, const std::string& path) { return HTPath::Get(from, path, matches); }
    std::vector<std::string> All(const Node* from, const std::string& path) {
        return Names(HTPath::All(from, path, matches));
    }
};

using V = std::vector<std::string>;

}  // namespace

TEST(HTPath, ParseSplitsOffTheStartingNoteButNotPathsOrCode) {
    HTPath plain("  child(/Projects)  ");
    EXPECT_EQ(plain.Whole(), "child(/Projects)");
    EXPECT_EQ(plain.Designator(), "child");
    EXPECT_EQ(plain.Argument(), "/Projects");
    HTPath spaced("lastChild (/Projects)");
    EXPECT_EQ(spaced.Designator(), "lastChild");
    HTPath word("parent");
    EXPECT_EQ(word.Designator(), "parent");
    EXPECT_EQ(word.Argument(), "");
    // A path and action code keep their parentheses.
    EXPECT_EQ(HTPath("/A/b(c)").Designator(), "/A/b(c)");
    EXPECT_EQ(HTPath("find($Name==\"x\")").Designator(), "find($Name==\"x\")");
    EXPECT_EQ(HTPath("$Name(child)").Argument(), "");
    // The ")" must be the last character.
    EXPECT_EQ(HTPath("a(b) c").Designator(), "a(b) c");

    HTPath words;
    EXPECT_TRUE(words.IsDesignator("previousSibling"));
    EXPECT_TRUE(words.IsDesignator("randomchild"));
    EXPECT_FALSE(words.IsDesignator("lastchild"));  // a table word, but no designator word
    EXPECT_FALSE(words.IsDesignator("Parent"));
    EXPECT_TRUE(words.IsExpression("$Name"));
    EXPECT_TRUE(words.IsExpression("'x'"));
    EXPECT_TRUE(words.IsExpression("  find(x)"));
    EXPECT_TRUE(words.IsExpression("compositeWithName(x)"));
    EXPECT_FALSE(words.IsExpression("finder"));
    EXPECT_FALSE(words.IsExpression(" $x"));
}

TEST(HTPath, WordsNameTheFamilyAndTheOutline) {
    Outline o;
    Node* root = o.doc.Root();
    EXPECT_EQ(o.Get(o.spark, "parent"), o.ideas);
    EXPECT_EQ(o.Get(o.spark, ".."), o.ideas);
    EXPECT_EQ(o.Get(o.spark, "grandparent"), o.projects);
    EXPECT_EQ(o.Get(o.spark, "this"), o.spark);
    EXPECT_EQ(o.Get(o.spark, "."), o.spark);
    EXPECT_EQ(o.Get(o.projects, "child"), o.ideas);
    EXPECT_EQ(o.Get(o.projects, "lastChild"), o.tasks);
    EXPECT_EQ(o.Get(o.projects, "lastchild"), o.tasks);
    EXPECT_EQ(o.Get(o.namedParent, "nextSibling"), o.tasks);
    EXPECT_EQ(o.Get(o.namedParent, "nextsibling"), o.tasks);
    for (const char* word : {"prevSibling", "prevsibling", "previousSibling", "previoussibling"})
        EXPECT_EQ(o.Get(o.namedParent, word), o.ideas) << word;
    EXPECT_EQ(o.Get(o.tasks, "nextSibling"), nullptr);
    EXPECT_EQ(o.Get(o.ideas, "prevSibling"), nullptr);
    EXPECT_EQ(o.Get(o.tasks, "firstSibling"), o.ideas);
    EXPECT_EQ(o.Get(o.ideas, "lastsibling"), o.tasks);
    // Outline order crosses levels.
    EXPECT_EQ(o.Get(o.flame, "next"), o.namedParent);
    EXPECT_EQ(o.Get(o.namedParent, "previous"), o.flame);
    EXPECT_EQ(o.Get(o.ideas, "next"), o.spark);
    EXPECT_EQ(o.Get(o.tasks, "next"), o.notes);
    EXPECT_EQ(o.Get(o.tasks, "cover"), o.projects);

    // At the root there is no parent and no sibling; "/" is the root.
    EXPECT_EQ(o.Get(root, "parent"), nullptr);
    EXPECT_EQ(o.Get(root, "grandparent"), nullptr);
    EXPECT_EQ(o.Get(root, "firstSibling"), nullptr);
    EXPECT_EQ(o.Get(o.projects, "grandparent"), nullptr);
    EXPECT_EQ(o.Get(o.spark, "/"), root);
    EXPECT_EQ(o.Get(root, "/"), root);

    // An alias's original.
    Node* alias = AliasNode::CreateFor(o.spark);
    ASSERT_NE(alias, nullptr);
    EXPECT_EQ(o.Get(alias, "original"), o.spark);
    EXPECT_EQ(o.Get(o.spark, "original"), o.spark);

    // No note, or no valid note, names nothing.
    EXPECT_EQ(o.Get(nullptr, "this"), nullptr);
    EXPECT_EQ(o.Get(NotANode::Get(), "this"), nullptr);
    EXPECT_TRUE(o.All(nullptr, "children").empty());
    EXPECT_EQ(o.Get(o.spark, ""), nullptr);
}

TEST(HTPath, IndexedChildrenCountFromEitherEnd) {
    Outline o;
    EXPECT_EQ(o.Get(o.projects, "child[0]"), o.ideas);
    EXPECT_EQ(o.Get(o.projects, "child[1]"), o.namedParent);
    EXPECT_EQ(o.Get(o.projects, "child[2]"), o.tasks);
    EXPECT_EQ(o.Get(o.projects, "child[ 2 ]"), o.tasks);
    EXPECT_EQ(o.Get(o.projects, "child[-1]"), o.tasks);
    EXPECT_EQ(o.Get(o.projects, "child[-2]"), o.namedParent);
    EXPECT_EQ(o.Get(o.projects, "child[-3]"), o.ideas);
    EXPECT_EQ(o.Get(o.projects, "child[3]"), nullptr);
    EXPECT_EQ(o.Get(o.projects, "child[-4]"), nullptr);
    // No children: every child word is null.
    for (const char* word : {"child", "child[0]", "child[-1]", "lastChild", "randomChild", "randomchild"})
        EXPECT_EQ(o.Get(o.archive, word), nullptr) << word;
    for (int i = 0; i < 20; ++i) {
        Node* any = o.Get(o.projects, "randomChild");
        EXPECT_TRUE(any == o.ideas || any == o.namedParent || any == o.tasks) << Name(any);
    }
    HTPath path;
    EXPECT_TRUE(path.IsIndexedChild("child[x]"));
    EXPECT_EQ(path.ChildIndex("child[x]"), 0);
    EXPECT_EQ(path.ChildIndex("child[12]"), 12);
    EXPECT_FALSE(path.IsIndexedChild("child["));
    EXPECT_FALSE(path.IsIndexedChild("children[1]"));
}

TEST(HTPath, PathsWalkNamesFromTheBaseOrTheRoot) {
    Outline o;
    EXPECT_EQ(o.Get(o.archive, "/Projects/Ideas/Spark"), o.spark);
    EXPECT_EQ(o.Get(o.archive, "/Projects/Ideas/"), o.ideas);
    EXPECT_EQ(o.Get(o.projects, "Ideas/Flame"), o.flame);
    EXPECT_EQ(o.Get(o.projects, "../Notes/Ideas"), o.otherIdeas);
    EXPECT_EQ(o.Get(o.spark, "./../Flame"), o.flame);
    EXPECT_EQ(o.Get(o.spark, "./Flame"), nullptr);  // "." is the note, and Spark has no Flame
    // An empty step inside the path, or a missing child, fails; a failed
    // absolute path is not looked up as a name.
    EXPECT_EQ(o.Get(o.archive, "/Projects//Ideas"), nullptr);
    EXPECT_EQ(o.Get(o.archive, "/Projects/Spark"), nullptr);
    EXPECT_EQ(o.Get(o.archive, "/Spark"), nullptr);
    // The word "parent" wins over the note of that name; a path or quotes reach it.
    EXPECT_EQ(o.Get(o.tasks, "parent"), o.projects);
    EXPECT_EQ(o.Get(o.tasks, "/Projects/parent"), o.namedParent);
    EXPECT_EQ(o.Get(o.tasks, "\"parent\""), o.namedParent);
    EXPECT_EQ(o.Get(o.tasks, "'parent'"), o.namedParent);
}

TEST(HTPath, NamesPreferAChildOfTheBase) {
    Outline o;
    EXPECT_EQ(o.Get(o.notes, "Ideas"), o.otherIdeas);
    EXPECT_EQ(o.Get(o.projects, "Ideas"), o.ideas);
    // Elsewhere the document's index decides; some note of the name it is.
    Node* any = o.Get(o.archive, "Ideas");
    EXPECT_TRUE(any == o.ideas || any == o.otherIdeas);
    EXPECT_EQ(o.Get(o.archive, "Spark"), o.spark);
    EXPECT_EQ(o.Get(o.archive, "Nothing"), nullptr);
    // "agent" and "current" without a context fall to names; "that" does not.
    EXPECT_EQ(o.Get(o.archive, "agent"), o.namedAgent);
    EXPECT_EQ(o.Get(o.archive, "current"), nullptr);
    EXPECT_EQ(o.Get(o.archive, "that"), nullptr);
}

TEST(HTPath, AnArgumentGivesTheStartingNote) {
    Outline o;
    EXPECT_EQ(o.Get(o.archive, "child(/Projects)"), o.ideas);
    EXPECT_EQ(o.Get(o.archive, "lastChild(Projects)"), o.tasks);
    EXPECT_EQ(o.Get(o.archive, "child[-2](/Projects)"), o.namedParent);
    EXPECT_EQ(o.Get(o.archive, "Ideas(/Notes)"), o.otherIdeas);
    // An argument that names nothing leaves the note as the start.
    EXPECT_EQ(o.Get(o.ideas, "child(/Nowhere)"), o.spark);
    // A name with parentheses is found as a whole.
    EXPECT_EQ(o.Get(o.archive, "Meeting (Monday)"), o.meeting);
    EXPECT_EQ(o.All(o.archive, "Meeting (Monday)"), V{"Meeting (Monday)"});
    EXPECT_EQ(o.All(o.archive, "children(/Projects/Ideas)"), (V{"Spark", "Flame"}));
}

TEST(HTPath, TheContextAnswersItsWords) {
    Outline o;
    Link* link = NodeLinks(o.spark).CreateLink(o.tasks, "leads");
    o.matches.CurrentAgent(o.notes);
    o.matches.CurrentExport(o.ideas);
    o.matches.CurrentThat(o.flame);
    o.matches.CurrentAdornment(o.archive);
    EXPECT_EQ(o.Get(o.projects, "agent"), o.notes);
    EXPECT_EQ(o.Get(o.projects, "current"), o.ideas);
    EXPECT_EQ(o.Get(o.projects, "that"), o.flame);
    EXPECT_EQ(o.Get(o.projects, "adornment"), o.archive);
    EXPECT_EQ(o.Get(o.projects, "source"), nullptr);
    EXPECT_EQ(o.Get(o.projects, "destination"), nullptr);
    o.matches.CurrentLink(link);
    EXPECT_EQ(o.Get(o.projects, "source"), o.spark);
    EXPECT_EQ(o.Get(o.projects, "destination"), o.tasks);
    // Without one in the context there is no adornment.
    MatchList bare;
    EXPECT_EQ(HTPath::Get(o.spark, "adornment", bare), nullptr);
}

TEST(HTPath, VariablesStandForTheirValues) {
    Outline o;
    o.matches.Bind("target", "/Projects/Tasks", -1);
    o.matches.Bind("group", "/Projects;/Notes;/Projects", -1);
    o.matches.Bind("up", "parent", -1);
    o.matches.Bind("someone", "Spark", -1);
    EXPECT_EQ(o.Get(o.archive, "target"), o.tasks);
    EXPECT_EQ(o.Get(o.spark, "up"), o.ideas);
    EXPECT_EQ(o.Get(o.archive, "someone"), o.spark);
    EXPECT_EQ(o.Get(o.archive, "child(target)"), nullptr);  // Tasks has no children
    EXPECT_EQ(o.All(o.archive, "target"), V{"Tasks"});
    EXPECT_EQ(o.All(o.archive, "group"), (V{"Projects", "Notes", "Projects"}));
    o.matches.Bind("kids", "children", -1);
    EXPECT_EQ(o.All(o.ideas, "kids"), (V{"Spark", "Flame"}));
}

TEST(HTPath, GroupWordsAndListsGiveManyNotes) {
    Outline o;
    for (const char* word : {"children", "child"})
        EXPECT_EQ(o.All(o.projects, word), (V{"Ideas", "parent", "Tasks"})) << word;
    for (const char* word : {"descendant", "descendent", "descendants"})
        EXPECT_EQ(o.All(o.projects, word), (V{"Ideas", "Spark", "Flame", "parent", "Tasks"})) << word;
    for (const char* word : {"ancestor", "ancestors"})
        EXPECT_EQ(o.All(o.spark, word), (V{"Ideas", "Projects", "/"})) << word;
    for (const char* word : {"sibling", "siblings"})
        EXPECT_EQ(o.All(o.namedParent, word), (V{"Ideas", "Tasks"})) << word;
    V all{"Projects", "Ideas", "Spark", "Flame", "parent", "Tasks", "Notes", "Ideas",
          "a",        "b",     "Archive", "a;b", "Meeting (Monday)", "agent"};
    EXPECT_EQ(o.All(o.spark, "all"), all);
    EXPECT_TRUE(o.All(o.archive, "children").empty());
    EXPECT_TRUE(o.All(o.doc.Root(), "siblings").empty());

    // Lists: each item in order, duplicates kept, unresolved items dropped.
    EXPECT_EQ(o.All(o.archive, "/Projects;/Notes;/Projects"), (V{"Projects", "Notes", "Projects"}));
    EXPECT_EQ(o.All(o.notes, "a;Nowhere;children(/Projects/Ideas);parent"), (V{"a", "Spark", "Flame", "/"}));
    // Quoted, a list is still a group for All, while Get takes it as a name.
    EXPECT_EQ(o.All(o.archive, "\"a;b\""), (V{"a", "b"}));
    EXPECT_EQ(o.Get(o.archive, "\"a;b\""), o.aAndB);
    // A single designator gives one note, an unresolved one none.
    EXPECT_EQ(o.All(o.spark, "parent"), V{"Ideas"});
    EXPECT_EQ(o.All(o.tasks, "\"parent\""), V{"parent"});
    EXPECT_TRUE(o.All(o.spark, "Nowhere").empty());

    HTPath kept("children");
    NodeVector result{o.archive};
    EXPECT_TRUE(kept.Choose(o.ideas, result, o.matches));
    EXPECT_EQ(Names(result), (V{"Archive", "Spark", "Flame"}));
    EXPECT_FALSE(kept.Choose(o.tasks, result, o.matches));
    EXPECT_EQ(result.size(), 3u);
}

namespace {

// Stands in for the evaluator: records what it is asked and answers from a
// table, so that the routing of expressions can be checked on its own.
class ScriptedPath : public HTPath {
public:
    using HTPath::HTPath;
    ActionResult EvaluateAction(Node* note, const std::string& text, MatchList& matches) const override {
        asked.push_back(text);
        if (text == "find($Wanted)")
            return ActionResult(found);
        if (text == "$Loop")
            return ActionResult(Get(note, matches) ? "loop" : "");
        auto it = answers.find(text);
        return it == answers.end() ? ActionResult() : ActionResult(it->second);
    }
    NodeVector found;
    std::map<std::string, std::string> answers;
    mutable std::vector<std::string> asked;
};

}  // namespace

TEST(HTPath, ExpressionsAreNamesFirstThenComputed) {
    Outline o;
    ScriptedPath find("find($Wanted)");
    find.found = NodeVector{o.flame, o.spark};
    EXPECT_EQ(find.Get(o.archive, o.matches), o.flame);
    EXPECT_EQ(Names(find.All(o.archive, o.matches)), (V{"Flame", "Spark"}));
    EXPECT_EQ(find.asked, (V{"find($Wanted)", "find($Wanted)"}));

    // Computed text goes on as a designator: a word, a path, a list.
    ScriptedPath word("$Up");
    word.answers["$Up"] = "parent";
    EXPECT_EQ(word.Get(o.spark, o.matches), o.ideas);
    ScriptedPath path("$Where");
    path.answers["$Where"] = "/Notes/a";
    EXPECT_EQ(path.Get(o.spark, o.matches), o.a);
    ScriptedPath list("$List");
    list.answers["$List"] = "/Notes/a;/Notes/b";
    EXPECT_EQ(Names(list.All(o.spark, o.matches)), (V{"a", "b"}));
    ScriptedPath group("$Group");
    group.answers["$Group"] = "children";
    EXPECT_EQ(Names(group.All(o.ideas, o.matches)), (V{"Spark", "Flame"}));

    // A quoted name of a note is found without computing anything.
    ScriptedPath quoted("\"Archive\"");
    EXPECT_EQ(quoted.Get(o.spark, o.matches), o.archive);
    EXPECT_TRUE(quoted.asked.empty());
    ScriptedPath unknown("'Nowhere'");
    EXPECT_EQ(unknown.Get(o.spark, o.matches), nullptr);
    EXPECT_EQ(unknown.asked, V{"'Nowhere'"});

    // Code that resolves itself ends at a bounded depth.
    ScriptedPath loop("$Loop");
    EXPECT_EQ(loop.Get(o.spark, o.matches), nullptr);
    EXPECT_GT(loop.asked.size(), 10u);
    EXPECT_LT(loop.asked.size(), 200u);
}

TEST(HTPath, ActionCodeInDesignatorsIsComputedOnTheBase) {
    Outline o;
    // Computed text is a designator of its own, from the base.
    o.projects->Set("Subtitle", "/Notes/a;/Notes/b");
    o.spark->Set("Subtitle", "parent");
    EXPECT_EQ(o.All(o.projects, "$Subtitle"), (V{"a", "b"}));
    EXPECT_EQ(o.Get(o.projects, "$Subtitle"), nullptr);  // one name, which no note has
    EXPECT_EQ(o.Get(o.spark, "$Subtitle"), o.ideas);
    // Read from Spark, but "parent" then names the parent of the base.
    EXPECT_EQ(o.Get(o.archive, "$Subtitle(/Projects/Ideas/Spark)"), o.doc.Root());
    // Attribute references read through designators.
    EXPECT_EQ(Action::EvaluateAction(o.archive, "$Name(\"a;b\")").AsString(), "a;b");
    EXPECT_EQ(Action::EvaluateAction(o.archive, "$Name(child[-1](/Projects))").AsString(), "Tasks");
    EXPECT_EQ(Action::EvaluateAction(o.doc.Root(), "$Name(parent)").AsString(), "");
    EXPECT_EQ(Action::EvaluateAction(o.tasks, "$Name(\"parent\")").AsString(), "parent");
    EXPECT_EQ(Action::EvaluateAction(o.tasks, "$Name(parent)").AsString(), "Projects");
}
