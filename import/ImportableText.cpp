#include "ImportableText.h"

#include <algorithm>
#include <cctype>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "FreemindReader.h"
#include "ImportManager.h"
#include "Node.h"
#include "OPMLReader.h"
#include "RISReader.h"
#include "Spreadsheet.h"
#include "TabbedTextReader.h"
#include "TaskpaperReader.h"
#include "VCard.h"

namespace {

// A UTF-8 byte order mark says only how the text is encoded.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view WithoutByteOrderMark(std::string_view text) {
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        text.remove_prefix(kByteOrderMark.size());
    return text;
}

// Text that begins with a UTF-16 byte order mark, in either byte order, as
// UTF-8; a lone surrogate becomes U+FFFD and an odd last byte is dropped.
// False for any other text.
bool FromUTF16(std::string_view text, std::string& out) {
    if (text.size() < 2)
        return false;
    unsigned char b0 = static_cast<unsigned char>(text[0]), b1 = static_cast<unsigned char>(text[1]);
    bool little = b0 == 0xFF && b1 == 0xFE, big = b0 == 0xFE && b1 == 0xFF;
    if (!little && !big)
        return false;
    std::u16string units;
    units.reserve(text.size() / 2);
    for (size_t i = 2; i + 1 < text.size(); i += 2) {
        unsigned char lo = static_cast<unsigned char>(text[little ? i : i + 1]);
        unsigned char hi = static_cast<unsigned char>(text[little ? i + 1 : i]);
        units.push_back(static_cast<char16_t>(hi << 8 | lo));
    }
    out.clear();
    out.reserve(units.size() * 3 / 2);
    int32_t i = 0, length = static_cast<int32_t>(units.size());
    while (i < length) {
        UChar32 c;
        U16_NEXT(units.data(), i, length, c);
        if (U_IS_SURROGATE(c))
            c = 0xFFFD;
        char bytes[4];
        int32_t n = 0;
        U8_APPEND_UNSAFE(bytes, n, c);
        out.append(bytes, static_cast<size_t>(n));
    }
    return true;
}

bool IsBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
}

} // namespace

bool ImportableText::HasCommaBeforeTab(std::string_view line) {
    size_t comma = line.find(','), tab = line.find('\t');
    return comma != std::string_view::npos && (tab == std::string_view::npos || comma < tab);
}

bool ImportableText::KindNamed(const std::string& name, Kind& k) {
    static const std::pair<const char*, Kind> names[] = {
        {"opml", Kind::OPML},         {"freemind", Kind::Freemind}, {"mm", Kind::Freemind},
        {"csv", Kind::CSV},           {"tsv", Kind::TSV},           {"outline", Kind::Outline},
        {"taskpaper", Kind::TaskPaper}, {"vcard", Kind::VCard},     {"vcf", Kind::VCard},
        {"ris", Kind::RIS},           {"text", Kind::Plain},        {"txt", Kind::Plain},
    };
    std::string lower = name;
    for (char& c : lower)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const auto& [n, value] : names)
        if (lower == n) {
            k = value;
            return true;
        }
    return false;
}

ImportableText::Kind ImportableText::Recognize(std::string_view text, const std::string& extension) {
    std::string decoded;
    if (FromUTF16(text, decoded))
        return Recognize(decoded, extension);
    text = WithoutByteOrderMark(text);
    std::string ext = extension;
    for (char& c : ext)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (RISReader::CanRead(text) && !RISReader::Parse(text).empty())
        return Kind::RIS;
    if (ext == "csv" || ext == "tsv" || Spreadsheet::LooksLikeTable(text))
        return Kind::Spreadsheet;
    if (VCard::IsValid(text))
        return Kind::VCard;
    if (extension == "opml" || extension == "OPML" || OPMLReader::IsOPML(text))
        return Kind::OPML;
    if (ext != "html" && ext != "htm" &&
        (TabbedTextReader('\n').CanRead(text) || TabbedTextReader('\r').CanRead(text)))
        return Kind::Outline;
    return Kind::Plain;
}

std::string ImportableText::LowerExtension() const {
    std::string ext = Extension();
    for (char& c : ext)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

Node* ImportableText::MakeContainer(ImportManager& manager, const std::string& otherwise) {
    Node* made = manager.MakeNote(otherwise, target, nullptr);
    container = made;
    return made;
}

bool ImportableText::ImportSelf(ImportManager& manager) {
    std::string decoded;
    if (FromUTF16(text, decoded))
        text = std::move(decoded);
    else if (WithoutByteOrderMark(text).size() != text.size())
        text.erase(0, kByteOrderMark.size());
    if (IsBlank(text)) {
        manager.Fail("nothing to import: the text is empty");
        return false;
    }
    auto refuse = [&](const char* what) {
        manager.Fail(std::string("the text is not ") + what);
        return false;
    };
    switch (kind) {
    case Kind::RIS:
        return TryRIS(manager) ? !manager.Failed() : refuse("RIS (no record ends with \"ER  -\")");
    case Kind::Spreadsheet:
    case Kind::CSV:
    case Kind::TSV:
        return TrySpreadsheet(manager) && !manager.Failed();
    case Kind::VCard:
        return TryVCard(manager) ? !manager.Failed() : refuse("a vCard (no card with a name)");
    case Kind::OPML:
        TryOPML(manager);
        return !manager.Failed();
    case Kind::Outline:
        return TryTabbedText(manager) ? !manager.Failed()
                                      : refuse("a tab-indented outline (too short, or a line jumps two levels)");
    case Kind::TaskPaper:
        return TryTaskPaper(manager) && !manager.Failed();
    case Kind::Freemind:
        return TryFreemind(manager) && !manager.Failed();
    case Kind::Plain:
        return ImportPlain(manager);
    case Kind::Any:
        break;
    }
    if (TryRIS(manager) || TrySpreadsheet(manager) || TryVCard(manager) || TryOPML(manager) ||
        TryTabbedText(manager))
        return !manager.Failed();
    return ImportPlain(manager);
}

bool ImportableText::TryRIS(ImportManager& manager) {
    if (!RISReader::CanRead(text))
        return false;
    std::vector<RISReader::Record> records = RISReader::Parse(text);
    if (records.empty())
        return false;
    RISReader::Import(records, manager, target);
    return true;
}

bool ImportableText::TrySpreadsheet(ImportManager& manager) {
    std::string ext = LowerExtension();
    bool byName = ext == "csv" || ext == "tsv" || kind == Kind::CSV || kind == Kind::TSV || kind == Kind::Spreadsheet;
    if (!byName && !Spreadsheet::LooksLikeTable(text))
        return false;
    char delimiter = (kind == Kind::CSV || (kind != Kind::TSV && ext == "csv")) ? ','
                     : (kind == Kind::TSV || ext == "tsv")                     ? '\t'
                                                                                : 0;
    Spreadsheet sheet(text, delimiter);
    if (long line = sheet.UnterminatedQuoteLine()) {
        manager.Fail("a quoted field is not closed", line);
        return true;
    }
    if (sheet.Lines().empty()) {
        manager.Fail("nothing to import: the table is empty");
        return true;
    }
    Node* holder = MakeContainer(manager, "imported spreadsheet");
    if (holder)
        sheet.Import(manager, holder);
    return true;
}

bool ImportableText::TryVCard(ImportManager& manager) {
    std::vector<VCard> cards = VCard::AllIn(text);
    if (cards.empty())
        return false;
    Node* last = nullptr;
    for (const VCard& card : cards) {
        Node* note = manager.MakeNote(card.FullName(), target, last);
        if (!note)
            break;
        card.For(note);
        last = note;
    }
    return true;
}

bool ImportableText::TryOPML(ImportManager& manager) {
    bool byName = kind == Kind::OPML || Extension() == "opml" || Extension() == "OPML";
    if (!byName && !OPMLReader::IsOPML(text))
        return false;
    Node* holder = MakeContainer(manager, file.empty() ? "imported outline" : Stem());
    if (!holder)
        return true;
    OPMLReader reader(manager, holder);
    if (reader.Read(text))
        return true;
    manager.Discard(holder);
    if (manager.Failed())
        return true;
    container = nullptr;
    manager.ReportBadOPML(text, reader.ErrorMessage(), reader.ErrorLine());
    return true;
}

bool ImportableText::TryTabbedText(ImportManager& manager) {
    std::string ext = LowerExtension();
    if (kind == Kind::Any && (ext == "html" || ext == "htm"))
        return false;
    char lineEnd = 0;
    if (TabbedTextReader('\n').CanRead(text))
        lineEnd = '\n';
    else if (TabbedTextReader('\r').CanRead(text))
        lineEnd = '\r';
    if (!lineEnd)
        return false;
    Node* holder = MakeContainer(manager, "imported outline");
    if (holder)
        TabbedTextReader(lineEnd).Parse(text, manager, holder);
    return true;
}

bool ImportableText::TryTaskPaper(ImportManager& manager) {
    Node* holder = MakeContainer(manager, file.empty() ? "imported TaskPaper" : Stem());
    if (holder)
        TaskpaperReader(text.find('\n') == std::string::npos && text.find('\r') != std::string::npos ? '\r' : '\n')
            .Parse(text, manager, holder);
    return true;
}

bool ImportableText::TryFreemind(ImportManager& manager) {
    Node* holder = MakeContainer(manager, file.empty() ? "imported map" : Stem());
    if (!holder)
        return true;
    FreemindReader reader(manager, holder);
    if (!reader.Read(text)) {
        manager.Discard(holder);
        container = nullptr;
        manager.Fail(reader.ErrorMessage(), reader.ErrorLine());
    }
    return true;
}

bool ImportableText::ImportPlain(ImportManager& manager) {
    if (file.empty() || !manager.ChosenName().empty())
        return manager.ImportStructuredText(text);
    // The file's name names this note only, not those of files after it.
    manager.ChooseName(Stem());
    bool made = manager.ImportStructuredText(text);
    manager.ChooseName("");
    return made;
}
