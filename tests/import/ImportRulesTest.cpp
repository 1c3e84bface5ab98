// The rules each reader keeps, as tables of input text and the outline it
// makes, and what hostile input (byte order marks, odd line ends, NUL bytes,
// deep nesting, long lines) ends as.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "Hypertext.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "RISReader.h"
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

TEST(VCardRulesTest, ALongLineOfColonsIsReadInLinearTime) {
    std::string colons(4 << 20, ':');
    auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(VCard::IsValid(colons));
    EXPECT_EQ(ImportableText::Recognize(colons, ""), ImportableText::Kind::Plain);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 10.0);
}

TEST(RISRulesTest, RepeatedPagesKeepTheFirst) {
    Imports run("TY  - JOUR\nTI  - T\nSP  - 5\nSP  - 9\nEP  - 7\nER  - \n");
    ASSERT_TRUE(run.Top());
    EXPECT_EQ(run.Top()->GetString("Pages"), "5-7");
}
