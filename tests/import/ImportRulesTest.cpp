// The rules each reader keeps, as tables of input text and the outline it
// makes, and what hostile input (byte order marks, odd line ends, NUL bytes,
// deep nesting, long lines) ends as.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include <unistd.h>

#include "Hypertext.h"
#include "FreemindReader.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "RISReader.h"
#include "STime.h"
#include "TaskpaperReader.h"
#include "Spreadsheet.h"
#include "VCard.h"

namespace {

// The notes under `n`, one line each, indented two blanks a level.
void Dump(const Node* n, int depth, std::string& out) {
    for (Node* c = n->Son(); c; c = c->Brother()) {
        out += std::string(2 * depth, ' ') + c->Name() + "\n";
        Dump(c, depth + 1, out);
    }
}

// Imports `text` under the root of a new document and answers the outline
// it made, or "failed: " and the failure.
struct Imports {
    Hypertext doc;
    ImportManager manager{&doc, nullptr};
    bool ok = false;

    explicit Imports(const std::string& text, ImportableText::Kind kind = ImportableText::Kind::Any,
                 const std::string& file = "") {
        ImportableText item(text, kind);
        item.SetFile(file);
        ok = manager.ImportIt(item);
        manager.Finish();
    }
    std::string Outline() const {
        if (!ok)
            return "failed: " + manager.FailureMessage();
        std::string out;
        Dump(doc.Root(), 0, out);
        return out;
    }
    Node* Top(size_t i = 0) const { return i < manager.Targets().size() ? manager.Targets()[i] : nullptr; }
};

struct Golden {
    const char* what;
    std::string text;
    ImportableText::Kind kind;
    std::string outline;
};

void Check(const std::vector<Golden>& table) {
    for (const Golden& g : table) {
        Imports run(g.text, g.kind);
        EXPECT_EQ(run.Outline(), g.outline) << g.what;
    }
}

const std::string kBOM = "\xEF\xBB\xBF";

} // namespace

TEST(ImportPasteTest, PastedTextIsRecognisedBeforeItBecomesOneNote) {
    struct Case {
        const char* what;
        std::string text;
        std::string outline;
    };
    const Case cases[] = {
        {"a table", "Name,Cost\na,1\nb,2\n", "imported spreadsheet\n  a\n  b\n"},
        {"an outline", "a\n\tb\n\tc\n", "imported outline\n  a\n    b\n    c\n"},
        {"cards", "BEGIN:VCARD\nFN:Ann Lee\nEND:VCARD\n", "Ann Lee\n"},
        {"prose", "Just a line of prose.", "Just a line of prose.\n"},
    };
    for (const Case& c : cases) {
        Hypertext doc;
        ImportManager manager(&doc, nullptr);
        ImportSource source;
        source.Add(ImportManager::kString, c.text);
        EXPECT_TRUE(manager.Import(source)) << c.what;
        std::string out;
        Dump(doc.Root(), 0, out);
        EXPECT_EQ(out, c.outline) << c.what;
    }

    // Styled text beside plain text: a structured plain text wins, else the
    // styled text is the note.
    Hypertext doc;
    ImportManager manager(&doc, nullptr);
    ImportSource both;
    both.Add(ImportManager::kRTF, "{\\rtf1 outline}");
    both.Add(ImportManager::kString, "a\n\tb\n\tc\n");
    EXPECT_TRUE(manager.Import(both));
    ASSERT_TRUE(manager.Targets().size() == 1u);
    EXPECT_EQ(manager.Targets()[0]->Name(), "imported outline");
}

TEST(ImportEncodingTest, AByteOrderMarkIsNoPartOfTheFirstLine) {
    Check({
        {"table", kBOM + "Cost,Name\n1,a\n2,b\n", ImportableText::Kind::Any, "imported spreadsheet\n  a\n  b\n"},
        {"outline", kBOM + "a\n\tb\n\tc\n", ImportableText::Kind::Any, "imported outline\n  a\n    b\n    c\n"},
        {"card", kBOM + "BEGIN:VCARD\r\nFN:Ann Lee\r\nEND:VCARD\r\n", ImportableText::Kind::Any, "Ann Lee\n"},
        {"RIS", kBOM + "TY  - JOUR\nTI  - Trees\nER  - \n", ImportableText::Kind::Any, "Trees\n"},
        {"TaskPaper", kBOM + "Home:\n\t- sweep\n", ImportableText::Kind::TaskPaper,
         "imported TaskPaper\n  Home\n    sweep\n"},
        {"plain", kBOM + "Hello.", ImportableText::Kind::Any, "Hello.\n"},
    });
    // UTF-16 in either byte order, told by its mark.
    auto utf16 = [](const std::u16string& text, bool little) {
        std::string bytes = little ? "\xFF\xFE" : "\xFE\xFF";
        for (char16_t u : text) {
            char lo = static_cast<char>(u & 0xFF), hi = static_cast<char>(u >> 8);
            bytes += little ? std::string{lo, hi} : std::string{hi, lo};
        }
        return bytes;
    };
    const std::u16string tsv = u"Name\tPrice\nCaf\u00E9\t3\n\U0001F600\t4\n";
    for (bool little : {true, false}) {
        std::string bytes = utf16(tsv, little);
        EXPECT_EQ(ImportableText::Recognize(bytes, ""), ImportableText::Kind::Spreadsheet);
        Imports in(bytes);
        EXPECT_EQ(in.Outline(), "imported spreadsheet\n  Caf\xC3\xA9\n  \xF0\x9F\x98\x80\n") << little;
    }
    Imports lone(utf16(std::u16string(u"a") + char16_t(0xD800) + u"b", true));
    EXPECT_EQ(lone.Outline(), "a\xEF\xBF\xBD" "b\n") << "a lone surrogate";

    Imports sheet(kBOM + "Cost,Name\n1,a\n", ImportableText::Kind::Any);
    EXPECT_TRUE(sheet.doc.AttributeStorage()->Find("Cost"));
    Imports ris(kBOM + "TY  - JOUR\nTI  - Trees\nER  - \n");
    ASSERT_TRUE(ris.Top());
    EXPECT_EQ(ris.Top()->GetString("RefType"), "JOUR");
}

TEST(VCardRulesTest, EscapesInStructuredValues) {
    VCard card("BEGIN:VCARD\nFN:A\nORG:Smith\\; Jones;Sales\nADR:;;1 Main St\\, Apt 2;Town;;;\nEND:VCARD\n");
    EXPECT_EQ(card.Org(), "Smith; Jones, Sales");
    EXPECT_EQ(card.Address(), "1 Main St, Apt 2, Town");
    VCard named("BEGIN:VCARD\nN:O\\;Neil;Pat;;;\nEND:VCARD\n");
    EXPECT_EQ(named.FullName(), "Pat O;Neil");
}

// Read line by line, a 4 MB line of colons takes milliseconds; searched
// from every colon back to its line's start it took minutes.
TEST(VCardRulesTest, ALongLineOfColonsIsReadInLinearTime) {
    std::string colons(4 << 20, ':');
    EXPECT_FALSE(VCard::IsValid(colons));
    EXPECT_EQ(ImportableText::Recognize(colons, ""), ImportableText::Kind::Plain);
}

TEST(VCardRulesTest, QuotedPrintableValues) {
    const std::string text = "BEGIN:VCARD\r\nVERSION:2.1\r\n"
                             "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:Ren=C3=A9e =\r\nL=C3=A9vy\r\n"
                             "NOTE;QUOTED-PRINTABLE:a=3Db =ZZ end\r\n"
                             "TEL:1=2\r\nEND:VCARD\r\n";
    VCard card(text);
    EXPECT_EQ(card.FullName(), "Ren\xC3\xA9" "e L\xC3\xA9vy");
    EXPECT_EQ(card.FirstContaining("NOTE"), "a=b =ZZ end") << "an = before no hex digits stays";
    EXPECT_EQ(card.Telephone(), "1=2") << "other values are not decoded";
    // Many soft breaks in a row are joined in linear time.
    std::string many = "BEGIN:VCARD\nFN;QUOTED-PRINTABLE:x";
    for (int i = 0; i < 200000; ++i)
        many += "=\n=41";
    many += "\nEND:VCARD\n";
    VCard big(many);
    EXPECT_EQ(big.FullName().size(), 200001u);
}

TEST(RISRulesTest, RepeatedPagesKeepTheFirst) {
    Imports run("TY  - JOUR\nTI  - T\nSP  - 5\nSP  - 9\nEP  - 7\nER  - \n");
    ASSERT_TRUE(run.Top());
    EXPECT_EQ(run.Top()->GetString("Pages"), "5-7");
}

namespace {

std::string Ymd(const STime& t) {
    return std::to_string(t.Year()) + "-" + std::to_string(t.Month()) + "-" + std::to_string(t.Day());
}

using K = ImportableText::Kind;

} // namespace

TEST(TabbedTextRulesTest, LineEndsBlanksAndPrefixes) {
    Check({
        {"CRLF", "a\r\n\tb\r\n\tc\r\n", K::Any, "imported outline\n  a\n    b\n    c\n"},
        {"lone CR", "a\r\tb\r\t\tc\r", K::Any, "imported outline\n  a\n    b\n      c\n"},
        {"blank lines", "a\n\n\tb\n \t \n\tc\n", K::Any, "imported outline\n  a\n    b\n    c\n"},
        {"prefixes and trailing blanks", "\xE2\x80\xA2 a  \n\t- b\t\n\t\xE2\x96\xB8 c\n", K::Any,
         "imported outline\n  a\n    b\n    c\n"},
        {"a line left empty by its prefix is dropped", "a\n\t- \n\tb\n\tc\n", K::Any,
         "imported outline\n  a\n    b\n    c\n"},
        {"back out several levels", "a\n\tb\n\t\tc\n\t\t\td\ne\n\tf\n", K::Any,
         "imported outline\n  a\n    b\n      c\n        d\n  e\n    f\n"},
        {"forced, a jump is refused", "a\n\t\t\tb\n\tc\n", K::Outline,
         "failed: the text is not a tab-indented outline (too short, or a line jumps two levels)"},
        {"forced, too short", "a\n\tb\n", K::Outline,
         "failed: the text is not a tab-indented outline (too short, or a line jumps two levels)"},
    });
    // Only the first 1000 lines decide: a jump after them does not make the
    // text plain, and is read as one level deeper.
    std::string text = "top\n";
    for (int i = 0; i < 999; ++i)
        text += "\tx\n";
    text += "\t\t\tdeep\n";
    Imports late(text);
    ASSERT_TRUE(late.Top());
    EXPECT_EQ(late.Top()->Name(), "imported outline");
    EXPECT_EQ(late.manager.CreatedCount(), 1002u);
    Node* last = late.Top()->Son()->YoungestSon();
    ASSERT_TRUE(last && last->Son());
    EXPECT_EQ(last->Son()->Name(), "deep");
}

TEST(TaskpaperRulesTest, ItemsAndTheirTags) {
    Check({
        {"projects, tasks and notes", "Home:\n\t- sweep\n\ta note\nWork: @today\n\t- call\r\n", K::TaskPaper,
         "imported TaskPaper\n  Home\n    sweep\n    a note\n  Work\n    call\n"},
        {"tags leave the name", "- pay @due(2024-06-01) bills @flag\n", K::TaskPaper,
         "imported TaskPaper\n  pay bills\n"},
        {"lone CR", "A:\r\t- b\r", K::TaskPaper, "imported TaskPaper\n  A\n    b\n"},
    });
    Imports in("- ship @done(2024-03-02) @start(2024-02-01) @due(2024-03-09)\n"
               "- mail me@home.org @high @wait(\n- quiet\n",
               K::TaskPaper, "/tmp/lists/Chores.taskpaper");
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    Node* list = in.Top();
    EXPECT_EQ(list->Name(), "Chores");
    Node* ship = list->Son();
    ASSERT_TRUE(ship);
    EXPECT_EQ(ship->Name(), "ship");
    EXPECT_TRUE(ship->GetBoolean("Checked"));
    EXPECT_EQ(Ymd(ship->GetDate("EndDate")), "2024-3-2");
    EXPECT_EQ(Ymd(ship->GetDate("StartDate")), "2024-2-1");
    EXPECT_EQ(Ymd(ship->GetDate("DueDate")), "2024-3-9");
    EXPECT_EQ(ship->GetString("Tags"), "");
    Node* mail = ship->Brother();
    ASSERT_TRUE(mail);
    EXPECT_EQ(mail->Name(), "mail me@home.org");
    EXPECT_EQ(mail->GetString("Tags"), "high;wait");
    EXPECT_FALSE(mail->GetBoolean("Checked"));
    EXPECT_FALSE(mail->Brother()->GetBoolean("NameStrike"));
}

TEST(TaskpaperRulesTest, TagsAgainstTagsAndLongLines) {
    struct Case {
        std::string line, name, tags;
    };
    const Case cases[] = {
        {"@x@y task", "task", "x;y"},
        {"a @x@y", "a@y", "x"},
        {"a @x @y b", "a b", "x;y"},
        {"a  @x", "a", "x"},
        {"@x(1 2) rest @y(", "rest", "x;y"},
        {"- a@b.org @@ @", "a@b.org @@ @", ""},
    };
    for (const Case& c : cases) {
        Hypertext doc;
        Node* note = NodeMaker(&doc).MakeNode("", nullptr, nullptr, 0, 0);
        TaskpaperReader().ProcessNote(note, c.line);
        EXPECT_EQ(note->Name(), c.name) << c.line;
        EXPECT_EQ(note->GetString("Tags"), c.tags) << c.line;
    }
    // A line of a million tags is read in one pass (erased one by one, it
    // took seconds).
    std::string line = "- many";
    for (int i = 0; i < 1000000; ++i)
        line += " @t";
    Imports in(line + " done\n", K::TaskPaper);
    ASSERT_TRUE(in.Top() && in.Top()->Son()) << in.Outline();
    EXPECT_EQ(in.Top()->Son()->Name(), "many done");
}

TEST(SpreadsheetRulesTest, ColumnsAreTypedByEveryValue) {
    Imports in("Title,Count,Flag,Day,Word,Blank,Mixed\n"
               "a,1,true,2024-01-05,yes,,2\n"
               "b,,FALSE,,no,,true\n"
               "c,-2.5,1,2023-12-31,maybe,,\n",
               K::Any, "/tmp/t.csv");
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    Props* props = in.doc.AttributeStorage();
    EXPECT_FALSE(props->Find("Title")) << "without a Name column the first column names the notes";
    ASSERT_TRUE(props->Find("Count") && props->Find("Flag") && props->Find("Day") && props->Find("Word") &&
                props->Find("Blank") && props->Find("Mixed"));
    EXPECT_TRUE(props->Find("Count")->IsNumber());
    EXPECT_TRUE(props->Find("Flag")->IsBoolean());
    EXPECT_TRUE(props->Find("Day")->IsDate());
    EXPECT_TRUE(props->Find("Word")->IsString());
    EXPECT_TRUE(props->Find("Blank")->IsString()) << "an empty column is text";
    EXPECT_TRUE(props->Find("Mixed")->IsString()) << "2 and true are neither all numbers nor all booleans";
    std::string out;
    Dump(in.doc.Root(), 0, out);
    EXPECT_EQ(out, "imported spreadsheet\n  a\n  b\n  c\n");
    Node* c = in.Top()->YoungestSon();
    EXPECT_DOUBLE_EQ(c->GetDouble("Count"), -2.5);
    EXPECT_TRUE(c->GetBoolean("Flag"));
    EXPECT_EQ(Ymd(c->GetDate("Day")), "2023-12-31");
    EXPECT_FALSE(c->ElderBrother()->GetBoolean("Flag"));
}

TEST(SpreadsheetRulesTest, RowsQuotesAndLineEnds) {
    Check({
        {"lower-case name column, short and long rows", "x,name\n1,a\n2\n3,c,extra\n", K::CSV,
         "imported spreadsheet\n  a\n  \n  c\n"},
        {"blank lines between rows", "Name,X\n\na,1\n\n\nb,2\n", K::CSV, "imported spreadsheet\n  a\n  b\n"},
        {"lone CR", "Name,X\ra,1\rb,2\r", K::CSV, "imported spreadsheet\n  a\n  b\n"},
        {"quoted names", "Name,X\n\"a, \"\"b\"\"\"  ,1\n\"two\r\nlines\",2\n", K::CSV,
         "imported spreadsheet\n  a, \"b\"\n  two\nlines\n"},
        {"a tab file holds commas", "Name\tNote\na, b\tc, d\n", K::TSV, "imported spreadsheet\n  a, b\n"},
        {"an empty table", "\n\n", K::CSV, "failed: nothing to import: the text is empty"},
        {"an open quote", "Name\n\"a\nb\n", K::CSV, "failed: line 2: a quoted field is not closed"},
    });
    // A column whose attribute an earlier column sets is left out, the name
    // column's among them; a leading "$" is no part of a column's name.
    Imports twice("Name,$Cost,Cost,name,Text\na,1,x,b,hello\n", K::CSV);
    ASSERT_TRUE(twice.Top() && twice.Top()->Son()) << twice.Outline();
    Node* a = twice.Top()->Son();
    EXPECT_EQ(a->Name(), "a");
    EXPECT_DOUBLE_EQ(a->GetDouble("Cost"), 1);
    EXPECT_TRUE(twice.doc.AttributeStorage()->Find("Cost")->IsNumber());
    EXPECT_FALSE(twice.doc.AttributeStorage()->Find("_Cost"));
    EXPECT_EQ(NodeText(a).GetText(), "hello") << "a column may set a system attribute";
    EXPECT_EQ(Spreadsheet::MakeAttributeName("$Due date"), "Due_date");

    // A header of many columns, most of them repeats.
    std::string header = "Name", row = "r";
    for (int i = 0; i < 100000; ++i) {
        header += ",c" + std::to_string(i % 50);
        row += "," + std::to_string(i);
    }
    Imports wide(header + "\n" + row + "\n", K::CSV);
    ASSERT_TRUE(wide.Top() && wide.Top()->Son()) << wide.Outline();
    EXPECT_DOUBLE_EQ(wide.Top()->Son()->GetDouble("c49"), 49);

    Imports tsv("Name\tNote\na, b\tc, d\n", K::TSV);
    ASSERT_TRUE(tsv.Top() && tsv.Top()->Son());
    EXPECT_EQ(tsv.Top()->Son()->GetString("Note"), "c, d");
    EXPECT_EQ(Spreadsheet::MakeAttributeName("Co\xFFst"), "Co_st") << "bytes that are no UTF-8";
    EXPECT_EQ(Spreadsheet::MakeAttributeName("Gr\xC3\xB6\xC3\x9F" "e m\xC2\xB2"), "Gr\xC3\xB6\xC3\x9F" "e_m_");
}

TEST(VCardRulesTest, FieldsNamesAndParameters) {
    const std::string text = "begin:vcard\n"
                             "item1.EMAIL;type=INTERNET:a@b.org\n"
                             "TEL;WORK:1\nTEL;HOME:2\n"
                             "ADR;LABEL=\"x:y\":;;St;City;;;\n"
                             "FN:\n"
                             "N:Lee;Ann;Q;Dr.;Jr.\n"
                             "NOTE:folded\n\tline\n"
                             "end:vcard\n";
    VCard card(text);
    ASSERT_TRUE(card.IsValid());
    EXPECT_EQ(card.FullName(), "Dr. Ann Q Lee Jr.") << "an empty FN falls back to N";
    EXPECT_EQ(card.EMail(), "a@b.org");
    EXPECT_EQ(card.Telephone(), "1");
    EXPECT_EQ(card.HomeTelephone(), "2");
    EXPECT_EQ(card.Address(), "St, City");
    EXPECT_EQ(card.FirstContaining("note"), "foldedline");
    EXPECT_EQ(card.ReadableText(), "Telephone (WORK): 1\nTelephone (HOME): 2\nEmail: a@b.org\n"
                                   "Address: St, City\nNote: foldedline\n");

    Check({
        {"no name", "BEGIN:VCARD\nEMAIL:a@b\nEND:VCARD\n", K::VCard,
         "failed: the text is not a vCard (no card with a name)"},
        {"no end", "BEGIN:VCARD\nFN:A\n", K::VCard, "failed: the text is not a vCard (no card with a name)"},
        {"cards between other text", "junk\nBEGIN:VCARD\nFN:A\nEND:VCARD\nmore\nBEGIN:VCARD\nFN:B\nEND:VCARD", K::Any,
         "A\nB\n"},
    });
}

TEST(RISRulesTest, TagsGatherOrKeepTheFirst) {
    const std::string text = "Exported list\r\n\r\n"
                             "TY  - BOOK\r\nT1  - Second title\r\nTI  - First title\r\nTI  - Later title\r\n"
                             "KW  - trees\r\nKW  - notes\r\nN1  - one\r\nN1  - two\r\nPB  - Pub\r\nPB  - Other\r\n"
                             "ER  - \r\n"
                             "TY  - JOUR\r\nTI  - Never ended\r\n";
    Imports in(text);
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    ASSERT_EQ(in.manager.Targets().size(), 1u) << "a record without its end mark is dropped";
    Node* book = in.Top();
    EXPECT_EQ(book->Name(), "First title");
    EXPECT_EQ(book->GetString("Publisher"), "Pub");
    EXPECT_EQ(NodeText(book).GetText(), "one\ntwo");
    EXPECT_NE(book->GetString("RefKeywords").find("trees"), std::string::npos);
    EXPECT_NE(book->GetString("RefKeywords").find("notes"), std::string::npos);
    EXPECT_EQ(book->GetString("ReferenceRIS"), "TY  - BOOK\nT1  - Second title\nTI  - First title\n"
                                               "TI  - Later title\nKW  - trees\nKW  - notes\nN1  - one\n"
                                               "N1  - two\nPB  - Pub\nPB  - Other\nER  - \n");
    // The end mark is looked for after a newline: a file of lone CRs is text.
    EXPECT_EQ(ImportableText::Recognize("TY  - JOUR\rTI  - x\rER  - \r", ""), K::Plain);
    Check({{"no title", "TY  - GEN\nER  -\n", K::RIS, "\n"},
           {"forced, no end mark", "TY  - GEN\n", K::RIS, "failed: the text is not RIS (no record ends with \"ER  -\")"}});
}

TEST(OPMLRulesTest, OutlineAttributesAndWhereOutlinesCount) {
    const std::string text =
        "<opml version=\"2.0\"><head><outline text=\"in head\"/></head><body>"
        "<outline text=\"A\" description=\"about\" _note=\"first&#10;second\" url=\"\" xmlUrl=\"http://f.org/rss\"/>"
        "<outline text=\"B\" description=\"only about\" _status=\"true\" type=\"link\"/>"
        "<group><outline text=\"hidden\"/></group>"
        "<outline text=\"C\" _status=\"unchecked\"><outline text=\"C1\" rank=\"2\"/></outline>"
        "</body></opml>";
    Imports in(text);
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    std::string out;
    Dump(in.doc.Root(), 0, out);
    EXPECT_EQ(out, "imported outline\n  A\n  B\n  C\n    C1\n");
    Node* a = in.Top()->Son();
    EXPECT_EQ(NodeText(a).GetText(), "first\nsecond") << "_note wins over description";
    EXPECT_EQ(a->GetString("URL"), "http://f.org/rss");
    Node* b = a->Brother();
    EXPECT_EQ(NodeText(b).GetText(), "only about");
    EXPECT_TRUE(b->GetBoolean("Checked"));
    EXPECT_FALSE(in.doc.AttributeStorage()->Find("type"));
    EXPECT_FALSE(b->Brother()->GetBoolean("Checked"));
    EXPECT_EQ(b->Brother()->Son()->GetString("rank"), "2");
    EXPECT_EQ(in.Top()->GetString("DisplayedAttributes"), "rank");

    // Named by the file when it has no title; an empty body makes the
    // container alone.
    Imports file("<OPML><body/></OPML>", K::Any, "/tmp/Plans.opml");
    ASSERT_TRUE(file.ok);
    EXPECT_EQ(file.Outline(), "Plans\n");
    Check({{"another root", "<html><body/></html>", K::OPML,
            "failed: line 1, column 1: the document element is <html>, not <opml> (not valid OPML)"}});
}

TEST(FreemindRulesTest, NodesLinksAndTheGrid) {
    const std::string text = "<map><node TEXT=\"root\" LINK=\"http://m.org\">"
                             "<richcontent TYPE=\"NODE\"><html><body><p>Rich name</p><p>more</p></body></html>"
                             "</richcontent>"
                             "<node TEXT=\"a\"><node TEXT=\"a1\"/></node>"
                             "<hook NAME=\"x\"><node TEXT=\"not a child\"/></hook>"
                             "<node TEXT=\"b\" COLOR=\"#0000ff\"/></node></map>";
    Imports in(text, K::Freemind);
    ASSERT_TRUE(in.ok) << in.manager.FailureMessage();
    std::string out;
    Dump(in.doc.Root(), 0, out);
    EXPECT_EQ(out, "imported map\n  Rich name\n    a\n      a1\n    b\n");
    Node* root = in.Top()->Son();
    EXPECT_EQ(root->GetString("URL"), "http://m.org");
    Node* a1 = root->Son()->Son();
    EXPECT_DOUBLE_EQ(a1->GetDouble("Xpos"), 8.0);
    EXPECT_DOUBLE_EQ(a1->GetDouble("Ypos"), 4.0);
    Node* b = root->Son()->Brother();
    EXPECT_DOUBLE_EQ(b->GetDouble("Xpos"), 4.0);
    EXPECT_DOUBLE_EQ(b->GetDouble("Ypos"), 6.0);
    EXPECT_EQ(b->GetColor("NameColor"), PColor(0, 0, 0xFFFF));

    EXPECT_EQ(FreemindReader::ToText("<div>a &amp; b<br/>c</div><ul><li>x</li><li>y</li></ul>"), "a & b\nc\nx\ny");
    EXPECT_EQ(FreemindReader::ToText("<p>not <b>closed</p>"), "not closed");
    EXPECT_EQ(FreemindReader::ToText("<p>Press <b>Save</b> to <i>keep</i> it.</p>"), "Press Save to keep it.")
        << "text around inner elements keeps its order";
    EXPECT_EQ(FreemindReader::ToText("<!DOCTYPE html><p>Fish &amp; chips&nbsp;&#8364;5<br>mushy &#x70;eas"),
              "Fish & chips \xE2\x82\xAC" "5\nmushy peas")
        << "HTML that is no XML";
}

TEST(ImportHostileTest, DeepNestingEndsWithOneFailureAndNoNotes) {
    const std::string tooDeep = "line " + std::to_string(0) + ": ";
    std::string opml = "<opml><body>", mm = "<map>";
    for (int i = 0; i < ImportManager::kMaxNoteDepth + 10; ++i) {
        opml += "<outline text=\"x\">";
        mm += "<node TEXT=\"x\">";
    }
    for (int i = 0; i < ImportManager::kMaxNoteDepth + 10; ++i) {
        opml += "</outline>";
        mm += "</node>";
    }
    opml += "</body></opml>";
    mm += "</map>";
    for (auto [what, text, kind] : {std::tuple{"OPML", opml, K::Any}, std::tuple{"map", mm, K::Freemind}}) {
        Imports in(text, kind);
        EXPECT_FALSE(in.ok) << what;
        EXPECT_NE(in.manager.FailureMessage().find("nested too deeply"), std::string::npos)
            << what << ": " << in.manager.FailureMessage();
        EXPECT_EQ(in.manager.CreatedCount(), 0u) << what;
        EXPECT_FALSE(in.doc.Root()->Son()) << what;
    }
    // A tab outline as deep as notes may go is read whole.
    std::string stairs;
    for (int i = 0; i < ImportManager::kMaxNoteDepth - 1; ++i)
        stairs += std::string(i, '\t') + "s\n";
    Imports deep(stairs);
    EXPECT_TRUE(deep.ok) << deep.manager.FailureMessage();
    EXPECT_EQ(deep.manager.CreatedCount(), static_cast<size_t>(ImportManager::kMaxNoteDepth));
}

TEST(ImportHostileTest, OddBytesAndHugeFields) {
    // NUL bytes and bytes that are no UTF-8 stay as they came in a plain note.
    const std::string odd("a\0b \xFF\xFE tail", 11);
    Imports plain(odd);
    ASSERT_TRUE(plain.ok) << plain.manager.FailureMessage();
    ASSERT_TRUE(plain.Top());
    EXPECT_EQ(plain.manager.CreatedCount(), 1u);

    // A field of a megabyte is one value.
    std::string huge(1 << 20, 'x');
    Imports sheet("Name,Big\na,\"" + huge + "\"\n", K::CSV);
    ASSERT_TRUE(sheet.ok) << sheet.manager.FailureMessage();
    EXPECT_EQ(sheet.Top()->Son()->GetString("Big").size(), huge.size());

    // A megabyte-long line of one tab outline item.
    Imports line("a\n\t" + huge + "\n\tb\n");
    ASSERT_TRUE(line.ok);
    EXPECT_EQ(line.Top()->Son()->Son()->Name().size(), huge.size());
}

TEST(ImportFilesTest, FilesFoldersAndWhatCannotBeRead) {
    namespace fs = std::filesystem;
    fs::path dir = fs::temp_directory_path() / ("ryl-import-" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir / "my notes" / "inner");
    auto write = [](const fs::path& p, const std::string& text) { std::ofstream(p, std::ios::binary) << text; };
    write(dir / "my notes" / "b.txt", "Bee text.");
    write(dir / "my notes" / "a.csv", "Name,X\nrow,1\n");
    write(dir / "my notes" / ".hidden.txt", "secret");
    write(dir / "my notes" / "c.pdf", "%PDF");
    write(dir / "my notes" / "inner" / "d.md", "Dee.");
    write(dir / "empty.txt", "");

    Hypertext doc;
    ImportManager manager(&doc, nullptr);
    EXPECT_TRUE(manager.ImportFiles({"file://localhost" + (dir / "my%20notes").string()}));
    std::string out;
    Dump(doc.Root(), 0, out);
    EXPECT_EQ(out, "my notes\n  imported spreadsheet\n    row\n  b\n  inner\n    d\n");
    EXPECT_EQ(manager.CreatedCount(), 6u);
    EXPECT_FALSE(manager.Failed()) << manager.FailureMessage();

    // A dropped list of file URLs, one a line, CRLF or not.
    Hypertext dropped;
    ImportManager drop(&dropped, nullptr);
    ImportSource files;
    files.Add(ImportManager::kFileURL, "file://" + (dir / "my%20notes" / "b.txt").string() + "\r\n" +
                                           (dir / "my notes" / "inner" / "d.md").string() + "\r\n");
    EXPECT_TRUE(drop.Import(files));
    EXPECT_FALSE(drop.Failed()) << drop.FailureMessage();
    out.clear();
    Dump(dropped.Root(), 0, out);
    EXPECT_EQ(out, "b\nd\n");

    Hypertext doc2;
    ImportManager empty(&doc2, nullptr);
    EXPECT_FALSE(empty.ImportFiles({(dir / "empty.txt").string()}));
    EXPECT_EQ(empty.FailureMessage(), "nothing to import: the text is empty");
    ImportManager missing(&doc2, nullptr);
    EXPECT_FALSE(missing.ImportFiles({(dir / "gone.txt").string()}));
    EXPECT_EQ(missing.FailureMessage(), (dir / "gone.txt").string() + ": no such file");
    ImportManager pdf(&doc2, nullptr);
    EXPECT_FALSE(pdf.ImportFiles({(dir / "my notes" / "c.pdf").string()}));
    EXPECT_EQ(pdf.FailureMessage(), "PDF text cannot be imported here: reading them needs a platform service this build lacks");
    EXPECT_FALSE(doc2.Root()->Son());
    fs::remove_all(dir);
}

TEST(ImportHostileTest, EntitiesNeitherExplodeNorReadFiles) {
    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE opml [<!ENTITY a \"aaaaaaaaaa\">";
    std::string previous = "a";
    for (char e = 'b'; e <= 'k'; ++e) {
        bomb += std::string("<!ENTITY ") + e + " \"";
        for (int i = 0; i < 10; ++i)
            bomb += "&" + previous + ";";
        bomb += "\">";
        previous = std::string(1, e);
    }
    bomb += "]><opml><body><outline text=\"&k;\"/></body></opml>";
    // Declarations are refused outright: the text is kept as it came.
    Imports laughs(bomb, K::OPML);
    EXPECT_EQ(laughs.Outline(), "failed: line 1, column 37: document type declarations are not accepted (not valid OPML)");
    ASSERT_EQ(laughs.manager.CreatedCount(), 1u);
    EXPECT_EQ(laughs.Top()->Name(), "Imported OPML");
    EXPECT_EQ(NodeText(laughs.Top()).GetText(), bomb);

    const std::string outside = "<?xml version=\"1.0\"?><!DOCTYPE map [<!ENTITY secret SYSTEM \"/etc/hostname\">]>"
                                "<map><node TEXT=\"x\"><richcontent TYPE=\"NOTE\"><html>&secret;</html></richcontent>"
                                "</node></map>";
    Imports xxe(outside, K::Freemind);
    EXPECT_EQ(xxe.Outline(), "failed: line 1, column 36: document type declarations are not accepted");
    EXPECT_FALSE(xxe.doc.Root()->Son());
}

TEST(ImportPasteTest, FlavoursInTheirOrder) {
    struct Case {
        const char* what;
        std::vector<std::pair<std::string, std::string>> flavours;
        bool made;
        std::string outline; // or the failure
    };
    const Case cases[] = {
        {"a URL is named from the text beside it and the text still comes in",
         {{ImportManager::kURL, "https://a.org/"}, {ImportManager::kString, "About a."}},
         true,
         "About a.\nAbout a.\n"},
        {"a card before text", {{ImportManager::kString, "x"}, {ImportManager::kVCard, "BEGIN:VCARD\nFN:Bo\nEND:VCARD"}},
         true, "Bo\n"},
        {"a picture alone", {{ImportManager::kImage, "PNG"}}, false,
         "pictures on the pasteboard cannot be imported here: reading them needs a platform service this build "
         "lacks"},
        {"a picture beside a URL", {{ImportManager::kImage, "PNG"}, {ImportManager::kURL, "https://b.org/"}}, true,
         "https://b.org/\n"},
        {"a stamp beside text", {{ImportManager::kStamp, "s"}, {ImportManager::kString, "Words."}}, true, "Words.\n"},
        {"empty text", {{ImportManager::kString, " \n"}}, false, "nothing to import: the text is empty"},
    };
    for (const Case& c : cases) {
        Hypertext doc;
        ImportManager manager(&doc, nullptr);
        ImportSource source;
        for (const auto& [type, data] : c.flavours)
            source.Add(type, data);
        EXPECT_EQ(manager.Import(source), c.made) << c.what;
        std::string out;
        Dump(doc.Root(), 0, out);
        EXPECT_EQ(c.made ? out : manager.FailureMessage(), c.outline) << c.what;
        if (!c.made) {
            EXPECT_FALSE(doc.Root()->Son()) << c.what;
        }
    }
}

TEST(ImportEncodingTest, AnOutlineFileInUTF16DeclaresWhatItWas) {
    // The declaration still names UTF-16 once the text is UTF-8.
    std::u16string x = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><opml><body><outline text=\"caf\u00E9\"/>"
                       u"</body></opml>";
    std::string bytes = "\xFF\xFE";
    for (char16_t u : x) {
        bytes += static_cast<char>(u & 0xFF);
        bytes += static_cast<char>(u >> 8);
    }
    Imports in(bytes, K::Any, "/tmp/a.opml");
    EXPECT_EQ(in.Outline(), "a\n  caf\xC3\xA9\n");
}
