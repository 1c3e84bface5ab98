// The template language: the caret grammar, conditions, element names and
// the failure texts that show in the output.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "Action.h"
#include "ActionHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "CommandTrust.h"
#include "ExportActionQueue.h"
#include "ExportElement.h"
#include "ExportHooks.h"
#include "ExportTemplate.h"
#include "Exporter.h"
#include "Hypertext.h"
#include "MarkupExportElement.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "STemplateFile.h"
#include "STime.h"

namespace {

class TemplateTest : public ::testing::Test {
protected:
    void SetUp() override {
        InstallActionHooks();
        InstallExportHooks();
        AttributeInfo(&doc).CreateBasicAttribute("Flag", "User", true, AttributeType::kBoolean);
        AttributeInfo(&doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        top = Make("Top");
        a = Make("A", top);
        b = Make("B", top, a);
        NodeText(a).SetText("alpha beta gamma delta");
    }

    Node* Make(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    // The expansion of `text` for `note` (A unless named).
    std::string Expand(const std::string& text, Node* note = nullptr) {
        Node* on = note ? note : a;
        ExportTemplate page(text, &exporter, nullptr);
        return page.ExportString(on, on);
    }

    Hypertext doc;
    DummyHTMLExporter exporter{&doc};
    Node* top = nullptr;
    Node* a = nullptr;
    Node* b = nullptr;
};

TEST_F(TemplateTest, CaretGrammar) {
    EXPECT_EQ(Expand("a^^b"), "a^b");
    EXPECT_EQ(Expand("a ^ b"), "a b");
    EXPECT_EQ(Expand("[^TITLE^][^title^][^Title]"), "[A][A][A]");
    EXPECT_EQ(Expand("^title"), "A");
    EXPECT_EQ(Expand("^value($Name)^^^"), "A^");
    // An unknown name shows in its caret form; the closing caret goes with
    // the arguments.
    EXPECT_EQ(Expand("x^nosuch(1)^y"), "x^ nosuch(1)y");
    EXPECT_EQ(Expand("^nosuch^"), "^ nosuch");
    EXPECT_EQ(Expand("^9x^"), "^9x");
    // Parentheses nest, quotes hold parentheses, a backslash keeps the next
    // character out of the count.
    EXPECT_EQ(Expand("^value(\"(\" + $Name + \")\")^"), "(A)");
    EXPECT_EQ(Expand("^value((1+2)*3)^"), "9");
    EXPECT_EQ(Expand("^comment(a\\)b)^"), "<!-- a\\)b -->");
    // An unclosed parenthesis gives empty arguments.
    EXPECT_EQ(Expand("^comment(abc"), "<!--  -->");
}

TEST_F(TemplateTest, Conditions) {
    a->SetBoolean("Flag", true);
    EXPECT_EQ(Expand("^if(Flag)^yes^else^no^endif^"), "yes");
    EXPECT_EQ(Expand("^if(Flag)^yes^else^no^endif^", b), "no");
    // A condition on an attribute that does not exist: action code, then
    // any non-blank text.
    EXPECT_EQ(Expand("^if($Count>2)^big^else^small^endif^"), "small");
    a->SetDouble("Count", 5);
    EXPECT_EQ(Expand("^if($Count>2)^big^else^small^endif^"), "big");
    // Text that parses as action code is decided by its value; a bare word
    // is its own text, so true.
    EXPECT_EQ(Expand("^if(nosuchthing)^t^else^f^endif^"), "t");
    EXPECT_EQ(Expand("^if(false)^t^else^f^endif^"), "f");
    EXPECT_EQ(Expand("^if()^t^else^f^endif^"), "t");
    // Designators: true when they find a note.
    EXPECT_EQ(Expand("^if(nextSibling)^n^else^none^endif^"), "n");
    EXPECT_EQ(Expand("^if(nextSibling)^n^else^none^endif^", b), "none");
    // Nested blocks, and an unterminated if that keeps the rest.
    EXPECT_EQ(Expand("^if(Flag)^1^if(Flag)^2^else^3^endif^4^else^5^endif^6"), "1246");
    EXPECT_EQ(Expand("^if(Flag)^kept ^title^"), "kept A");
    EXPECT_EQ(Expand("^if(^text^)^has text^else^none^endif^"), "has text");
    EXPECT_EQ(Expand("^if(^text^)^has text^else^none^endif^", b), "none");
    EXPECT_EQ(Expand("^not(Flag)^") + "|" + Expand("^not(Flag)^", b), " false | true ");
    // Stray block ends are harmless.
    EXPECT_EQ(Expand("a^endif^b^else^c"), "abc");
}

TEST_F(TemplateTest, ValuesAndAttributes) {
    a->SetDouble("Count", 3);
    EXPECT_EQ(Expand("^get(Count)^/^get($Name)^"), "3/A");
    EXPECT_EQ(Expand("^getfor(/Top/B,Name)^"), "B");
    EXPECT_EQ(Expand("^getfor(/Nowhere,Name)^"), "");
    EXPECT_EQ(Expand("^value($Count*2)^"), "6");
    EXPECT_EQ(Expand("^encode(\"a\"&b)^"), "&amp;quot;a&amp;quot;&amp;b");
    EXPECT_EQ(Expand("^urlencode(a b&c)^"), "a%20b&c");
    EXPECT_EQ(Expand("^idencode(9 lives!)^|^idencode(a  b)^|^idencode(!!x)^"), "_9_lives_|a_b|_x");
    EXPECT_EQ(Expand("^backslashencode(say \"hi\" 'x')^"), "say \\\"hi\\\" \\'x\\'");
    // An unbalanced quote runs to the end: the arguments are unclosed.
    EXPECT_EQ(Expand("^backslashencode(a\"b)^"), "");
    EXPECT_EQ(Expand("^opmlencode(^value(\"<&>\")^)^"), "&lt;&amp;&gt;");
    EXPECT_EQ(Expand("^uppercase(^title^)^^lowercase(XY)^^capitalize(big red dog)^"), "AxyBig Red Dog");
    EXPECT_EQ(Expand("^firstword(one two three)^-^lastword(one two three)^"), "one-three");
    EXPECT_EQ(Expand("^equal(a,a)^^equal(a,b)^^equal(a)^"), " true  false  false ");
    EXPECT_EQ(Expand("^contains(abc,b.)^^beginswith(abc,ab)^^endswith(abcbc,bc)^"), " true  true  true ");
    EXPECT_EQ(Expand("^contains(x,[)^"), " false ");
    EXPECT_EQ(Expand("^indent(\"--\",2)^x^indent(\"  \",500)^y"), "----xy");
    EXPECT_EQ(Expand("^sectionnumber^", b), "1.2");
    EXPECT_EQ(Expand("^exists(childlinks)^", top), "true");
    EXPECT_EQ(Expand("[^exists(childlinks)^]"), "[]");
    EXPECT_EQ(Expand("^count(children,Name)^|^count(children,Name,0)^", top), "2.00|2");
    EXPECT_EQ(Expand("^version(major)^"), "0");
}

TEST_F(TemplateTest, TextElements) {
    EXPECT_EQ(Expand("^text(2)^|^text(plain)^"), "<p>alpha beta...</p>|alpha beta gamma delta");
    EXPECT_EQ(Expand("^text(/Top/B)^"), "");
    EXPECT_EQ(Expand("^text^"), "<p>alpha beta gamma delta</p>");
    // A note's text that holds elements is expanded for the note.
    NodeText(b).SetText("^value($Name)^");
    EXPECT_EQ(Expand("^text^", b), "B");

    // The markup encodes a note's text once, whatever its "HTMLEntities",
    // and exporting leaves the note and the document as they were.
    NodeText(a).SetText("R&D caf\xC3\xA9");
    a->SetBoolean("HTMLEntities", true);
    uint64_t changes = doc.ChangeCount();
    EXPECT_EQ(Expand("^text^"), "<p>R&D caf\xC3\xA9</p>");
    EXPECT_EQ(doc.ChangeCount(), changes);
    EXPECT_TRUE(a->GetBoolean("HTMLEntities"));
    // The note's own strings enclose it, read through the attributes the
    // template looked up once.
    a->Set("HTMLExportBefore", "<div>");
    a->Set("HTMLExportAfter", "</div>");
    EXPECT_EQ(Expand("^text^"), "<div><p>R&D caf\xC3\xA9</p></div>");
}

TEST_F(TemplateTest, PreviewCommandRunsOnlyWhenAllowed) {
    // The command gets the note's text, its elements expanded.
    NodeText(b).SetText("b is ^value($Name)^");
    b->Set("HTMLPreviewCommand", "tr a-z A-Z");
    CommandTrust::Allow(false);
    CommandTrust::ResetReports();
    testing::internal::CaptureStderr();
    EXPECT_EQ(Expand("^text^", b), "<p>b is B</p>");
    EXPECT_EQ(Expand("^text^", b), "<p>b is B</p>");
    std::string refused = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(refused.begin(), refused.end(), '\n'), 1);
    EXPECT_NE(refused.find("tr a-z A-Z"), std::string::npos);

    CommandTrust::Allow(true);
    EXPECT_EQ(Expand("^text^", b), "<P>B IS B</P>");
    EXPECT_EQ(Expand("^text(plain)^", b), "B IS B");
    CommandTrust::Allow(false);
}

TEST_F(TemplateTest, TemplateFilesAreReadOnlyWhenAllowed) {
    std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("rylvane-template-" + std::to_string(::getpid()) + ".txt");
    std::ofstream(file) << "<^title^>";
    std::string include = "^include(/Top/B," + file.string() + ")^";
    std::string notFound = "^include(/Top/B," + file.string() + ")::template not found, or template includes itself";
    CommandTrust::Allow(false);
    EXPECT_EQ(Expand(include), notFound);
    CommandTrust::Allow(true);
    EXPECT_EQ(Expand(include), "<B>");
    // A folder or an oversized file is no template.
    EXPECT_EQ(STemplateFile::BuiltInTemplate(file.string()), "<^title^>");
    EXPECT_EQ(STemplateFile::BuiltInTemplate(std::filesystem::temp_directory_path().string()), "");
    std::filesystem::resize_file(file, STemplateFile::kMaxFileSize + 1);
    EXPECT_EQ(Expand(include), notFound);
    CommandTrust::Allow(false);
    std::filesystem::remove(file);
}

TEST_F(TemplateTest, ActionsRunWhenTheExpansionIsOver) {
    a->SetDouble("Count", 1);
    // The page shows the value from before its action, which has run once
    // the expansion is over.
    EXPECT_EQ(Expand("^action($Count=$Count+1)^^value($Count)^|^action($Count=$Count*10)^^value($Count)^"), "1|1");
    EXPECT_EQ(a->GetString("Count"), "20");
    EXPECT_EQ(ExportActionQueue::Pending(), 0u);
    // An action that deletes its note stops the actions queued for it.
    EXPECT_EQ(Expand("^action(delete(this))^^action($Name=\"late\")^", b), "");
    EXPECT_TRUE(b->IsHidden());
    EXPECT_EQ(b->Name(), "B");
    // Actions whose expansions queue actions without end stop.
    Node* templates = Make("Templates");
    Node* again = Make("Again", templates);
    again->SetBoolean("IsTemplate", true);
    NodeText(again).SetText("^action($Count=$Count+1;exportedString(this,\"/Templates/Again\"))^");
    Expand("^include(/Top/A,/Templates/Again)^");
    EXPECT_EQ(a->GetString("Count"), std::to_string(21 + ExportActionQueue::kMaxGenerations));
}

TEST_F(TemplateTest, FailuresShowInTheOutput) {
    // A note whose text includes itself.
    NodeText(b).SetText("before ^text^ after");
    EXPECT_EQ(Expand("^text^", b), "<p>before ^text(B,):: text tries to include itself  after</p>");
    // A template naming a missing note.
    EXPECT_EQ(Expand("^include(/Top/B,/Nowhere)^"),
              "^include(/Top/B,/Nowhere)::template not found, or template includes itself");
    // A circular include: a template note that includes its own note stops
    // after 90 inclusions with the message.
    Node* templates = Make("Templates");
    Node* loop = Make("Loop", templates);
    loop->SetBoolean("IsTemplate", true);
    NodeText(loop).SetText("[^include(/Top/A,/Templates/Loop)^]");
    std::string out = Expand("^include(/Top/A,/Templates/Loop)^");
    EXPECT_NE(out.find("^include(A,/Templates/Loop):: circular include"), std::string::npos) << out.substr(0, 200);
    EXPECT_EQ(std::count(out.begin(), out.end(), '['), ExportTemplate::kMaxIncludes);
    // With no template at all the exporter writes the fixed text.
    DummyHTMLExporter bare(&doc);
    EXPECT_EQ(bare.ExportOne(a), "Unable to find this template");
}

TEST_F(TemplateTest, IncludesAndChildren) {
    Node* templates = Make("Templates");
    Node* item = Make("Item", templates);
    item->SetBoolean("IsTemplate", true);
    NodeText(item).SetText("(^title^)");
    EXPECT_EQ(Expand("^children(/Templates/Item)^", top), "(A)(B)");
    EXPECT_EQ(Expand("^children(/Templates/Item,1)^", top), "(A)");
    Node* c = Make("C", a);
    EXPECT_EQ(Expand("^descendants(/Templates/Item)^", top), "(A)(C)(B)");
    EXPECT_EQ(Expand("^children(/Templates/Item)^", top), "(A)(B)");
    c->SetBoolean("HTMLDontExport", true);
    EXPECT_EQ(Expand("^descendants(/Templates/Item)^", top), "(A)(B)");
    EXPECT_EQ(Expand("^include(/Top/B;/Top/A,/Templates/Item)^"), "(B)(A)");
    // Built-in templates are found by name.
    EXPECT_EQ(Expand("^include(/Top/B,markdown-item)^"), "- [B](B.html)\n");
    EXPECT_EQ(Expand("^include(/Top/B)^"),
              "^include(/Top/B,)::template not found, or template includes itself");
}

TEST_F(TemplateTest, LinksAndLists) {
    NodeLinks(a).CreateLink(b, "agree");
    std::string out = Expand("^outboundlinks(\"<ul>\",\"<li>\",\"</li>\",\"</ul>\")^");
    EXPECT_EQ(out, "<ul><li><a href=\"B.html\">B</a></li></ul>");
    EXPECT_EQ(Expand("^inboundlinks(\"\",\"[\",\"]\",\"\")^", b), "[<a href=\"A.html\">A</a>]");
    EXPECT_EQ(Expand("^outboundlinks^", b), "");
    EXPECT_EQ(Expand("^childlinks(\"\",\"\",\";\",\"\")^", top),
              "<a href=\"A.html\">A</a>;<a href=\"B.html\">B</a>;");
    EXPECT_EQ(Expand("^siblings(\"\",\"<\",\">\",\"\")^"), "<A><<a href=\"B.html\">B</a>>");
    // A list's first string is no note name, even when a note has that name.
    Make("[");
    EXPECT_EQ(Expand("^childlinks(\"[\",\"\",\"\",\"]\")^", top),
              "[<a href=\"A.html\">A</a><a href=\"B.html\">B</a>]");
    EXPECT_EQ(Expand("^linkto(/Top/B,\"next\",\"nav\")^"), "<a href=\"B.html\" class=\"nav\">next</a>");
    EXPECT_EQ(Expand("^linkto(/Nowhere)^"), "");
    EXPECT_EQ(Expand("^url(/Top/A)^"), "#");
    // The nesting counter of argument expansion: once it has passed its
    // limit it stays there, and arguments are left as written.
    std::atomic<int>& nesting = ExportElement::EvaluationNesting();
    int saved = nesting.load();
    nesting = MarkupExportElement::kMaxEvaluationNesting;
    EXPECT_EQ(Expand("^lowercase(^title^)^"), "^title^");
    EXPECT_EQ(nesting.load(), MarkupExportElement::kMaxEvaluationNesting + 1);
    nesting = saved;
    EXPECT_EQ(Expand("^lowercase(^title^)^"), "a");
}

TEST_F(TemplateTest, DatesGroupsAndPlaces) {
    a->SetTime("Created", STime::FromUnixEpoch(1700000000.0));  // 2023-11-14
    EXPECT_EQ(Expand("^created(y)^|^created(/Top/A,d)^"), "2023|14");
    EXPECT_EQ(Expand("^get(Created,y)^"), "2023");
    EXPECT_EQ(Expand("^today(y)^"), STime::Now().AsExportString("y"));
    EXPECT_EQ(Expand("^days(2023-11-14,1000000)^|^days(2023-11-14,1)^"), " true | false ");
    a->SetDouble("Count", 2);
    b->SetDouble("Count", 6);
    b->SetBoolean("Flag", true);
    EXPECT_EQ(Expand("^sum(children,Count)^|^min(children,Count,0)^|^max(children,Count,1)^|^mean(children,Count)^",
                     top),
              "8.00|2|6.0|4.00");
    EXPECT_EQ(Expand("^every(children,Flag)^|^any(children,Flag)^|^every(children,Count,6)^", top),
              " false | true | false ");
    EXPECT_EQ(Expand("^if(^sum(children,Count)^)^some^endif^", top), "some");
    // Places of a page: the way up to the export folder, the file name and
    // the folder of a note.
    Node* c = Make("C", a);
    EXPECT_EQ(Expand("[^root^][^root(/Top/A/C)^]", c), "[../../][../../]");
    EXPECT_EQ(Expand("^file^|^path^|^directory^", c), "/C.html|C.html|");
    EXPECT_EQ(Expand("^setroot(http://x/)^^root^", c), "http://x/");
}

TEST_F(TemplateTest, ExportedStringFromActionCode) {
    Node* templates = Make("Templates");
    Node* item = Make("Item", templates);
    item->SetBoolean("IsTemplate", true);
    NodeText(item).SetText("<^title^>");
    EXPECT_EQ(Action::Evaluate(a, "exportedString(/Top/B,\"/Templates/Item\")"), "<B>");
    EXPECT_EQ(Action::Evaluate(a, "exportedString(this,\"/Templates/Item\")"), "<A>");
    // A template whose value exports itself again ends.
    NodeText(item).SetText("x^value(exportedString(this,\"/Templates/Item\"))^");
    std::string out = Action::Evaluate(a, "exportedString(this,\"/Templates/Item\")");
    EXPECT_EQ(out.substr(0, 3), "xxx");
    EXPECT_LT(out.size(), 200u);
}

TEST_F(TemplateTest, RunawayNestingStaysBounded) {
    std::string deep;
    for (int i = 0; i < 20000; ++i)
        deep += "^if(x)^";
    EXPECT_NO_FATAL_FAILURE(Expand(deep));
    std::string args;
    for (int i = 0; i < 20000; ++i)
        args += "^not(";
    EXPECT_NO_FATAL_FAILURE(Expand(args));
    long before = ExportElement::LiveCount();
    Expand(deep + args);
    EXPECT_EQ(ExportElement::LiveCount(), before);
}

}  // namespace
