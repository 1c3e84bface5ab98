#include <gtest/gtest.h>

#include "Attribute.h"
#include "FreemindReader.h"
#include "Hypertext.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "OPMLReader.h"
#include "Props.h"
#include "RISReader.h"
#include "Spreadsheet.h"
#include "TabbedTextReader.h"
#include "TaskpaperReader.h"
#include "VCard.h"

namespace {

// Imports `text` (as from a file named `file`, when given) under the root.
struct Imported {
    Hypertext doc;
    ImportManager manager{&doc, nullptr};
    bool ok = false;

    explicit Imported(const std::string& text, const std::string& file = "",
                      ImportableText::Kind kind = ImportableText::Kind::Any) {
        ImportableText item(text, kind);
        item.SetFile(file);
        ok = manager.ImportIt(item);
        manager.Finish();
    }
    Node* Top(size_t i) const { return i < manager.Targets().size() ? manager.Targets()[i] : nullptr; }
};

std::vector<std::string> ChildNames(const Node* n) {
    std::vector<std::string> names;
    for (Node* c = n->Son(); c; c = c->Brother())
        names.push_back(c->Name());
    return names;
}

} // namespace

TEST(TabbedTextReaderTest, RecognisesOutlinesByDepthAndShape) {
    TabbedTextReader reader;
    EXPECT_FALSE(reader.CanRead("a\n\tb\n")) << "two lines are too short";
    EXPECT_FALSE(reader.CanRead("a\n\tb\nc\nd\ne\n\tf\ng\nh\ni\n")) << "9 lines, 2 indented: too thin";
    EXPECT_TRUE(reader.CanRead("a\n\tb\nc\nd\ne\n\tf\ng\nh\n\ti\n")) << "9 lines, 3 indented";
    EXPECT_FALSE(reader.CanRead("a\n\t\tb\n\tc\n\td\n")) << "a jump of two levels";
    EXPECT_TRUE(TabbedTextReader('\r').CanRead("a\r\tb\r\tc\r"));
    EXPECT_FALSE(TabbedTextReader('\r').CanRead("a\n\tb\n\tc\n"));
    EXPECT_EQ(TabbedTextReader::HasOmniOutlinerPrefix("- item"), 2u);
    EXPECT_EQ(TabbedTextReader::HasOmniOutlinerPrefix("\xE2\x80\xA2 item"), 4u);

    Imported in("Plan\n\tStep one\n\t\tDetail\n\t- Step two\nLater\n\tEnd\n");
    ASSERT_TRUE(in.ok);
    Node* outline = in.Top(0);
    ASSERT_TRUE(outline);
    EXPECT_EQ(outline->Name(), "imported outline");
    EXPECT_EQ(ChildNames(outline), (std::vector<std::string>{"Plan", "Later"}));
    EXPECT_EQ(ChildNames(outline->Son()), (std::vector<std::string>{"Step one", "Step two"}));
    EXPECT_EQ(ChildNames(outline->Son()->Son()), (std::vector<std::string>{"Detail"}));
    EXPECT_EQ(in.manager.CreatedCount(), 7u);
}

TEST(TabbedTextReaderTest, JumpsMakePlainTextAndDeepOutlinesStopAtTheLimit) {
    Imported jump("a\n\t\tb\n\tc\n\td\n");
    ASSERT_TRUE(jump.ok);
    ASSERT_EQ(jump.manager.Targets().size(), 1u);
    EXPECT_EQ(NodeText(jump.Top(0)).GetText(), "a\n\t\tb\n\tc\n\td\n");

    // Forced as an outline, a staircase deeper than notes may go fails whole.
    std::string deep;
    for (int i = 0; i < ImportManager::kMaxNoteDepth + 5; ++i)
        deep += std::string(i, '\t') + "x\n";
    Hypertext doc;
    ImportManager manager(&doc, nullptr);
    ImportableText item(deep, ImportableText::Kind::Outline);
    EXPECT_FALSE(manager.ImportIt(item));
    EXPECT_TRUE(manager.Failed());
    EXPECT_NE(manager.FailureMessage().find("nested too deeply"), std::string::npos);
}

TEST(TaskpaperReaderTest, ProjectsTasksAndTags) {
    EXPECT_TRUE(TaskpaperReader::IsProject("Project:"));
    EXPECT_FALSE(TaskpaperReader::IsProject("Project: soon"));
    EXPECT_TRUE(TaskpaperReader::IsTask("\t- task @done"));
    EXPECT_FALSE(TaskpaperReader::IsTask("task - not"));
    EXPECT_EQ(TaskpaperReader::Tag("@due(2024-05-01)"), "due");
    EXPECT_EQ(TaskpaperReader::Arguments("@due( 2024-05-01 )"), "2024-05-01");
    EXPECT_EQ(TaskpaperReader::NextTag("mail me@home @today", 0), 13u) << "an @ inside a word is no tag";

    Imported in("Project:\n\t- task @done\n\t- call @due(2024-05-01) @home @phone\n", "",
                ImportableText::Kind::TaskPaper);
    ASSERT_TRUE(in.ok);
    Node* list = in.Top(0);
    ASSERT_TRUE(list && list->Son());
    Node* project = list->Son();
    EXPECT_EQ(project->Name(), "Project");
    Node* task = project->Son();
    ASSERT_TRUE(task);
    EXPECT_EQ(task->Name(), "task");
    EXPECT_TRUE(task->GetBoolean("Checked"));
    EXPECT_TRUE(task->GetBoolean("NameStrike"));
    Node* call = task->Brother();
    ASSERT_TRUE(call);
    EXPECT_EQ(call->Name(), "call");
    EXPECT_FALSE(call->GetBoolean("Checked"));
    EXPECT_EQ(call->GetString("Tags"), "home;phone");
    STime due = call->GetDate("DueDate");
    EXPECT_EQ(due.Year(), 2024);
}

TEST(SpreadsheetTest, QuotesTypesAndColumns) {
    EXPECT_TRUE(Spreadsheet::CouldBeNumeric("1,200"));
    EXPECT_TRUE(Spreadsheet::CouldBeNumeric("$3"));
    EXPECT_TRUE(Spreadsheet::CouldBeNumeric(""));
    EXPECT_TRUE(Spreadsheet::CouldBeNumeric("-4.5"));
    EXPECT_FALSE(Spreadsheet::CouldBeNumeric("4-5"));
    EXPECT_FALSE(Spreadsheet::CouldBeNumeric("1.2.3"));
    EXPECT_TRUE(Spreadsheet::CouldBeBoolean("FALSE"));
    EXPECT_FALSE(Spreadsheet::CouldBeBoolean("yes"));
    EXPECT_EQ(Spreadsheet::PrepareNumeric("$1,200"), "1200");
    EXPECT_EQ(Spreadsheet::MakeAttributeName("Due date (est.)"), "Due_date__est__");
    EXPECT_EQ(Spreadsheet::MakeAttributeName("2024"), "_2024");
    EXPECT_TRUE(ImportableText::HasCommaBeforeTab("a,b\tc"));
    EXPECT_FALSE(ImportableText::HasCommaBeforeTab("a\tb,c"));

    SpreadsheetLine line("one,\"two, three\",\"say \"\"hi\"\"\",", ',');
    ASSERT_EQ(line.size(), 4u);
    EXPECT_EQ(line.GetField(1), "two, three");
    EXPECT_EQ(line.GetField(2), "say \"hi\"");
    EXPECT_EQ(line.GetField(3), "");
    EXPECT_EQ(SpreadsheetLine::TrimQuotes("\"a\"\"b\""), "a\"b");

    Imported in("Cost,Name,Done,When,Note Text\r\n\"1,200\",Alpha,true,2024-03-01,\"multi\nline\"\r\n$3,Beta,0,,plain\r\n",
                "sheet.csv");
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    Node* sheet = in.Top(0);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->Name(), "imported spreadsheet");
    EXPECT_EQ(ChildNames(sheet), (std::vector<std::string>{"Alpha", "Beta"}));
    Props* props = in.doc.AttributeStorage();
    ASSERT_TRUE(props->Find("Cost"));
    EXPECT_TRUE(props->Find("Cost")->IsNumber());
    EXPECT_TRUE(props->Find("Done")->IsBoolean());
    EXPECT_TRUE(props->Find("When")->IsDate());
    EXPECT_TRUE(props->Find("Note_Text")->IsString());
    EXPECT_TRUE(props->Find("Cost")->IsUserAttribute());
    Node* alpha = sheet->Son();
    EXPECT_DOUBLE_EQ(alpha->GetDouble("Cost"), 1200);
    EXPECT_TRUE(alpha->GetBoolean("Done"));
    EXPECT_EQ(alpha->GetDate("When").Year(), 2024);
    EXPECT_EQ(alpha->GetString("Note_Text"), "multi\nline");
    EXPECT_DOUBLE_EQ(alpha->Brother()->GetDouble("Cost"), 3);
    EXPECT_EQ(in.manager.CreatedCount(), 3u);

    Imported tabs("Name\tSize\nx\t1\ny\t2\n", "t.tsv");
    ASSERT_TRUE(tabs.ok);
    EXPECT_DOUBLE_EQ(tabs.Top(0)->Son()->Brother()->GetDouble("Size"), 2);
}

TEST(SpreadsheetTest, AnOpenQuoteFailsWithItsLineAndMakesNothing) {
    Imported in("a,b\n1,2\n3,\"open\n4,5\n", "bad.csv");
    EXPECT_FALSE(in.ok);
    EXPECT_EQ(in.manager.FailureLine(), 3);
    EXPECT_EQ(in.manager.FailureMessage(), "line 3: a quoted field is not closed");
    EXPECT_EQ(in.manager.CreatedCount(), 0u);
    EXPECT_FALSE(in.doc.Root()->Son());
}

TEST(VCardTest, CardsBecomeNotes) {
    const std::string text = "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Doe;Jane;;;\r\nFN:Jane Doe\r\n"
                             "EMAIL;TYPE=WORK:jane@example.com\r\nTEL;TYPE=HOME:555-1234\r\n"
                             "ADR;TYPE=HOME:;;1 Main St;Springfield;IL;62701;USA\r\nORG:Acme\\, Inc.\r\n"
                             "NOTE:first line\\nsecond\r\n  continued\r\nEND:VCARD\r\n"
                             "BEGIN:VCARD\nN:Smith;John;;;\nEND:VCARD\n";
    EXPECT_TRUE(VCard::IsValid(text));
    EXPECT_FALSE(VCard::IsValid("BEGIN:VCARD\nFN:No end\n"));
    std::vector<VCard> cards = VCard::AllIn(text);
    ASSERT_EQ(cards.size(), 2u);
    EXPECT_EQ(cards[0].FullName(), "Jane Doe");
    EXPECT_EQ(cards[1].FullName(), "John Smith") << "a card without FN is named from N";
    EXPECT_EQ(cards[0].HomeTelephone(), "555-1234");
    EXPECT_EQ(cards[0].Org(), "Acme, Inc.");
    EXPECT_EQ(cards[0].FirstContaining("NOTE"), "first line\nsecond continued");

    Imported in(text);
    ASSERT_TRUE(in.ok);
    ASSERT_EQ(in.manager.Targets().size(), 2u);
    Node* jane = in.Top(0);
    EXPECT_EQ(jane->Name(), "Jane Doe");
    EXPECT_EQ(jane->GetString("Email"), "jane@example.com");
    EXPECT_EQ(jane->GetString("Address"), "1 Main St");
    EXPECT_EQ(jane->GetString("City"), "Springfield");
    EXPECT_EQ(jane->GetString("PostalCode"), "62701");
    EXPECT_NE(NodeText(jane).GetText().find("Email (WORK): jane@example.com"), std::string::npos);
}

TEST(RISReaderTest, ARecordPerEndMark) {
    const std::string text = "TY  - JOUR\nAU  - Doe, Jane\nAU  - Roe, Rick\nTI  - On notes\n  and trees\n"
                             "PY  - 2020\nSP  - 10\nEP  - 20\nER  - \n\nTY  - BOOK\nT1  - A book\nER  -\n";
    EXPECT_TRUE(RISReader::CanRead(text));
    EXPECT_FALSE(RISReader::CanRead("TY  - JOUR\nTI  - x\n"));
    std::vector<RISReader::Record> records = RISReader::Parse(text);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(RISReader::Title(records[0]), "On notes and trees");
    EXPECT_EQ(records[1].line, 11);

    Imported in(text);
    ASSERT_TRUE(in.ok);
    ASSERT_EQ(in.manager.Targets().size(), 2u);
    Node* article = in.Top(0);
    EXPECT_EQ(article->Name(), "On notes and trees");
    EXPECT_EQ(article->GetString("RefType"), "JOUR");
    EXPECT_EQ(article->GetString("Authors"), "Doe, Jane;Roe, Rick");
    EXPECT_EQ(article->GetString("Pages"), "10-20");
    EXPECT_EQ(in.Top(1)->Name(), "A book");
}

TEST(OPMLReaderTest, OutlinesBecomeNotesWithTheirAttributes) {
    const std::string text = "<?xml version=\"1.0\"?>\n<opml version=\"2.0\"><head><title>Trip</title>"
                             "<expansionState>0,2</expansionState></head><body>"
                             "<outline text=\"Pack\" _note=\"the bags\" priority=\"high\">"
                             "<outline text=\"Socks\" _status=\"checked\"/><outline text=\"Map\" url=\"http://x.org\"/>"
                             "</outline><outline text=\"Go\" priority=\"low\"/></body></opml>";
    EXPECT_TRUE(OPMLReader::IsOPML(text));
    EXPECT_FALSE(OPMLReader::IsOPML("<html><body/></html>"));
    EXPECT_FALSE(OPMLReader::IsOPML("<opml><body>"));

    Imported in(text);
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    Node* trip = in.Top(0);
    ASSERT_TRUE(trip);
    EXPECT_EQ(trip->Name(), "Trip");
    EXPECT_EQ(trip->GetString("DisplayedAttributes"), "priority");
    EXPECT_EQ(ChildNames(trip), (std::vector<std::string>{"Pack", "Go"}));
    Node* pack = trip->Son();
    EXPECT_EQ(NodeText(pack).GetText(), "the bags");
    EXPECT_EQ(pack->GetString("priority"), "high");
    EXPECT_TRUE(pack->Son()->GetBoolean("Checked"));
    EXPECT_EQ(pack->Son()->Brother()->GetString("URL"), "http://x.org");
    EXPECT_EQ(in.manager.CreatedCount(), 5u);
}

TEST(OPMLReaderTest, ABadFileWithTheExtensionIsKeptAsImportedOPML) {
    const std::string text = "<opml><body><outline text=\"a\">\n<outline text=\"b\"></body></opml>";
    Imported in(text, "broken.opml");
    EXPECT_FALSE(in.ok);
    EXPECT_TRUE(in.manager.Failed());
    EXPECT_TRUE(in.manager.KeepsFailure());
    EXPECT_NE(in.manager.FailureMessage().find("line 2"), std::string::npos) << in.manager.FailureMessage();
    ASSERT_EQ(in.manager.Targets().size(), 1u);
    EXPECT_EQ(in.Top(0)->Name(), "Imported OPML");
    EXPECT_EQ(NodeText(in.Top(0)).GetText(), text);
    EXPECT_EQ(in.manager.CreatedCount(), 1u);
    EXPECT_EQ(in.Top(0)->Son(), nullptr) << "the outlines read before the error are gone";

    // Without the extension, text that is no XML is no OPML: it stays text.
    Imported plain("<opml><body><outline text=\"a\">");
    EXPECT_TRUE(plain.ok);
    EXPECT_FALSE(plain.manager.Failed());
}

TEST(FreemindReaderTest, NodesColoursAndRichContent) {
    const std::string text =
        "<map version=\"1.0.1\"><node TEXT=\"Centre\" COLOR=\"#ff0000\"><font NAME=\"Serif\" BOLD=\"true\"/>"
        "<node TEXT=\"Left\" BACKGROUND_COLOR=\"#00ff00\"><richcontent TYPE=\"NOTE\"><html><head/><body>"
        "<p>First</p><p>Second <b>bold</b></p></body></html></richcontent></node>"
        "<node TEXT=\"Right\"/></node></map>";
    Imported in(text, "mind.mm", ImportableText::Kind::Freemind);
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    Node* map = in.Top(0);
    EXPECT_EQ(map->Name(), "mind");
    Node* centre = map->Son();
    ASSERT_TRUE(centre);
    EXPECT_EQ(centre->Name(), "Centre");
    EXPECT_EQ(centre->GetString("NameFont"), "Serif");
    EXPECT_TRUE(centre->GetBoolean("NameBold"));
    EXPECT_EQ(centre->GetColor("NameColor"), PColor(0xFFFF, 0, 0));
    EXPECT_EQ(ChildNames(centre), (std::vector<std::string>{"Left", "Right"}));
    EXPECT_EQ(NodeText(centre->Son()).GetText(), "First\nSecond bold");

    Imported bad("<map><node TEXT=\"x\">", "bad.mm", ImportableText::Kind::Freemind);
    EXPECT_FALSE(bad.ok);
    EXPECT_EQ(bad.manager.CreatedCount(), 0u);
    EXPECT_FALSE(bad.doc.Root()->Son());
    Imported notMap("<opml/>", "x.mm", ImportableText::Kind::Freemind);
    EXPECT_NE(notMap.manager.FailureMessage().find("not <map>"), std::string::npos);
}

TEST(ImportableTextTest, RecognitionOrderAndPlainText) {
    using K = ImportableText::Kind;
    EXPECT_EQ(ImportableText::Recognize("TY  - JOUR\nTI  - x\nER  - \n", ""), K::RIS);
    EXPECT_EQ(ImportableText::Recognize("a,b\n1,2\n", ""), K::Spreadsheet);
    EXPECT_EQ(ImportableText::Recognize("just words", "csv"), K::Spreadsheet);
    EXPECT_EQ(ImportableText::Recognize("BEGIN:VCARD\nFN:A\nEND:VCARD\n", ""), K::VCard);
    EXPECT_EQ(ImportableText::Recognize("<opml><body/></opml>", ""), K::OPML);
    EXPECT_EQ(ImportableText::Recognize("a\n\tb\n\tc\n", ""), K::Outline);
    EXPECT_EQ(ImportableText::Recognize("a\n\tb\n\tc\n", "html"), K::Plain);
    EXPECT_EQ(ImportableText::Recognize("Hello there. A second sentence.", ""), K::Plain);

    Imported in("Hello there. A second sentence.\nMore.");
    ASSERT_TRUE(in.ok);
    EXPECT_EQ(in.Top(0)->Name(), "Hello there.");
    Imported empty(" \n\t");
    EXPECT_FALSE(empty.ok);
    EXPECT_NE(empty.manager.FailureMessage().find("empty"), std::string::npos);
}

TEST(ImportManagerTest, RouteOfAPasteAndWhatItRefuses) {
    Hypertext doc;
    Node* old = NodeMaker(&doc).MakeNode("old", nullptr, nullptr, 0, 0);
    ImportManager manager(&doc, nullptr);
    ImportSource source;
    source.Add(ImportManager::kString, "a\n\tb\n\tc\n");
    EXPECT_TRUE(manager.CanPaste(source));
    EXPECT_TRUE(manager.Import(source));
    EXPECT_EQ(old->Brother(), manager.Targets()[0]) << "new notes come after the target's children";

    ImportManager mail(&doc, nullptr);
    ImportSource message;
    message.Add(ImportManager::kMailMessage, "opaque");
    EXPECT_FALSE(mail.CanPaste(message));
    EXPECT_FALSE(mail.Import(message));
    EXPECT_NE(mail.FailureMessage().find("mail messages cannot be imported here"), std::string::npos);

    ImportManager url(&doc, nullptr);
    ImportSource link;
    link.Add(ImportManager::kURL, "https://example.org/");
    EXPECT_TRUE(url.Import(link));
    EXPECT_EQ(url.Targets()[0]->GetString("URL"), "https://example.org/");
}
