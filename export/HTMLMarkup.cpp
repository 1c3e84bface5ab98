#include "HTMLMarkup.h"

#include <algorithm>

#include "CodeGenerator.h"
#include "HTMLMarkupParagraph.h"
#include "Link.h"
#include "LinkCluster.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"

std::string HTMLMarkupHost::OpenParagraphMarkup(const Node* note, int index, char16_t) const {
    if (!note)
        return std::string();
    return note->GetString(index == 0 ? "HTMLFirstParagraphStart" : "HTMLParagraphStart");
}

std::string HTMLMarkupHost::CloseParagraphMarkup(const Node* note, int index, char16_t) const {
    if (!note)
        return std::string();
    return note->GetString(index == 0 ? "HTMLFirstParagraphEnd" : "HTMLParagraphEnd");
}

namespace {

// Paragraph tags for a markup without a host: the note's own strings.
class NoHost : public HTMLMarkupHost {
public:
    bool HasTextLinks() const override { return false; }
    bool LinkIndexEntry(const Node*, LinkBundle&) const override { return false; }
    std::string LinkURLFor(const Node*, const Node*) const override { return std::string(); }
    std::string ImageFileName(const Node*, int) const override { return std::string(); }
    void WriteImageFile(const Node*, int, const std::string&, const std::string&) const override {}
    std::vector<std::string> MacroOpenings() const override { return {}; }
};

const NoHost& TheNoHost() {
    static const NoHost host;
    return host;
}

bool IsWhite(char16_t c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == 0xA0; }

}  // namespace

HTMLMarkup::HTMLMarkup(Node* n, Node* exporting, const HTMLMarkupHost* h, long lim, bool md)
    : note(n), exportingNode(exporting), host(h), limit(lim), markdown(md) {}

HTMLMarkup::~HTMLMarkup() = default;

std::string HTMLMarkup::ToString() {
    if (!done) {
        done = true;
        Init();
        if (code)
            result = code->ToHTML(note);
    }
    return result;
}

void HTMLMarkup::Init() {
    if (!note)
        return;
    styled = NodeText(note).CreateAttributedString();
    if (styled.empty())
        return;
    markdown = markdown || note->GetBoolean("HTMLMarkdown");
    const CodeGenerator::Lookup* lookup = host ? host->CodeLookup(note) : nullptr;
    if (markdown)
        generator = std::make_unique<MarkdownCodeGenerator>(note, lookup);
    else
        generator = std::make_unique<HTMLCodeGenerator>(note, lookup);
    if (host)
        for (const std::string& opening : host->MacroOpenings())
            macroOpenings.push_back(Utf8ToUtf16(opening));

    code = std::make_unique<HTMLCode>(styled.Unicode(), entities ? *entities : note->GetBoolean("HTMLEntities"),
                                      note->GetBoolean("HTMLQuoteHTML"));
    bool cut = limit > 0 && limit < styled.Length();
    if (cut) {
        int end = static_cast<int>(limit);
        // Never split a surrogate pair.
        if (end > 0 && styled.Unicode()[end - 1] >= 0xD800 && styled.Unicode()[end - 1] < 0xDC00)
            --end;
        code->SetLast(end);
    }

    AddBoldMarkup();
    AddItalicMarkup();
    AddUnderlineMarkup();
    AddStrikeMarkup();
    AddCodeMarkup();
    AddTextLinks();
    AddImages();
    if (cut)
        code->Add(HTMLMarkupTag("...", code->End(), false), true);
    AddParagraphs();
    Finish();
}

std::u16string HTMLMarkup::GetText() const { return styled.Unicode().substr(0, End()); }

template <typename Has, typename Mark>
void HTMLMarkup::ForEachStretch(Has has, Mark mark) {
    const std::vector<StyleRun>& runs = styled.Runs();
    size_t i = 0;
    while (i < runs.size()) {
        if (!has(runs[i].style)) {
            ++i;
            continue;
        }
        int start = runs[i].start;
        int end = runs[i].End();
        for (++i; i < runs.size() && has(runs[i].style) && runs[i].start == end; ++i)
            end = runs[i].End();
        mark(start, end);
    }
}

void HTMLMarkup::AddBoldMarkup() {
    ForEachStretch([](const TextStyle& s) { return s.bold; },
                   [this](int start, int end) { generator->Bold(*this, start, end); });
}

void HTMLMarkup::AddItalicMarkup() {
    ForEachStretch([](const TextStyle& s) { return s.italic; },
                   [this](int start, int end) { generator->Italic(*this, start, end); });
}

void HTMLMarkup::AddUnderlineMarkup() {
    ForEachStretch([](const TextStyle& s) { return s.underline; },
                   [this](int start, int end) { generator->Underline(*this, start, end); });
}

void HTMLMarkup::AddStrikeMarkup() {
    ForEachStretch([](const TextStyle& s) { return s.strikethrough; },
                   [this](int start, int end) { generator->Strike(*this, start, end); });
}

void HTMLMarkup::AddCodeMarkup() {
    if (markdown)
        return;
    std::string codeFont = note->GetString("CodeFont");
    std::string textFont = note->GetString("TextFont");
    if (codeFont.empty() || codeFont == textFont)
        return;
    ForEachStretch([&codeFont](const TextStyle& s) { return s.font == codeFont; },
                   [this](int start, int end) { generator->CodeSpan(*this, start, end); });
}

void HTMLMarkup::AddTextLinks() {
    if (!host || !host->HasTextLinks()) {
        AddWebLinks();
        return;
    }
    Node* original = note->GetOriginal();
    LinkBundle bundle;
    if (!host->LinkIndexEntry(original, bundle))
        bundle = NodeLinks(original).OutboundTextLinks();
    LinkClusters clusters;
    clusters.FormFrom(bundle, note, End());
    clusters.DoMarkup(*this, *generator);
}

void HTMLMarkup::AddWebLinks() {
    const std::vector<StyleRun>& runs = styled.Runs();
    size_t i = 0;
    while (i < runs.size()) {
        const std::string& url = runs[i].style.link;
        if (url.empty()) {
            ++i;
            continue;
        }
        int start = runs[i].start;
        int end = runs[i].End();
        for (++i; i < runs.size() && runs[i].style.link == url && runs[i].start == end; ++i)
            end = runs[i].End();
        generator->WebLink(*this, start, end, url, nullptr);
    }
}

void HTMLMarkup::AddImages() {
    if (!host)
        return;
    int count = styled.AttachmentCount();
    for (int i = 0; i < count; ++i)
        AddImage(i);
}

void HTMLMarkup::AddImage(int index) {
    int position = styled.AttachmentPosition(index);
    if (position < 0 || position >= End())
        return;
    std::string fileName = host->ImageFileName(note, index);
    if (fileName.empty())
        return;
    generator->Image(*this, position, fileName);
    ExportImageFile(index, fileName);
}

void HTMLMarkup::ExportImageFile(int index, const std::string& fileName) {
    const TextAttachment* picture = styled.Attachment(index);
    if (picture && !picture->data.empty())
        host->WriteImageFile(note, index, fileName, picture->data);
}

void HTMLMarkup::AddParagraphs() {
    if (markdown)
        return;
    FindParagraphs();
    AssembleParagraphs();
    paragraphs->AddTo(*this);
}

void HTMLMarkup::FindParagraphs() {
    paragraphs = std::make_unique<HTMLMarkupParagraphList>();
    std::u16string text = GetText();
    paragraphs->FromText(text);
    paragraphs->FindListLevels(ListsAreEnabled() && !markdown, kMaxListLevel);
}

void HTMLMarkup::AssembleParagraphs() { paragraphs->Assemble(); }

void HTMLMarkup::Finish() { generator->Finish(*this); }

bool HTMLMarkup::ListsAreEnabled() const { return generator && generator->ListsAreEnabled(); }

void HTMLMarkup::AddList(int start, int end, char16_t character) {
    if (character == HTMLMarkupParagraph::GetOrderedListCharacter())
        generator->OrderedList(*this, start, end);
    else
        generator->List(*this, start, end);
}

void HTMLMarkup::AddListItem(int start, int end, int level, bool ordered) {
    if (ordered)
        generator->OrderedListItem(*this, start, end, level);
    else
        generator->ListItem(*this, start, end, level);
}

bool HTMLMarkup::IsProse() const {
    if (!generator)
        return false;
    return !generator->Start(CodeGenerator::kParagraph).empty() || !generator->End(CodeGenerator::kParagraph).empty() ||
           !generator->Start(CodeGenerator::kFirstParagraph).empty() ||
           !generator->End(CodeGenerator::kFirstParagraph).empty();
}

double HTMLMarkup::ConstantFontSize(int start, int end) const {
    double textSize = NodeText(note).TextFontSize();
    double size = -1;
    const std::vector<StyleRun>& runs = styled.Runs();
    // Runs are in text order: start at the first that reaches past `start`.
    auto first = std::upper_bound(runs.begin(), runs.end(), start,
                                  [](int position, const StyleRun& run) { return position < run.End(); });
    for (auto it = first; it != runs.end(); ++it) {
        const StyleRun& run = *it;
        if (run.start >= end)
            break;
        double runSize = run.style.size > 0 ? run.style.size : textSize;
        if (size < 0)
            size = runSize;
        else if (runSize != size)
            return textSize;
    }
    return size < 0 ? textSize : size;
}

void HTMLMarkup::ParagraphMarkup(const HTMLMarkupParagraph& paragraph, int index) {
    if (markdown)
        return;
    const HTMLMarkupHost& paragraphHost = host ? *host : TheNoHost();
    std::string open = paragraphHost.OpenParagraphMarkup(note, index, 32);
    std::string close = paragraphHost.CloseParagraphMarkup(note, index, 32);
    double d = 0;
    if (!open.empty() || !close.empty())
        d = ConstantFontSize(paragraph.Start(), paragraph.End()) - NodeText(note).TextFontSize();
    if (d < 2) {
        if (IsProse())
            AddParagraphMarkup(paragraph, index);
        else
            Add(HTMLMarkupTag("<br>", paragraph.End(), false), true);
    } else if (d < 4) {
        Enclose(paragraph.Start(), paragraph.End(), "<h3>", "</h3>");
    } else if (d < 6) {
        Enclose(paragraph.Start(), paragraph.End(), "<h2>", "</h2>");
    } else {
        Enclose(paragraph.Start(), paragraph.End(), "<h1>", "</h1>");
    }
}

void HTMLMarkup::AddParagraphMarkup(const HTMLMarkupParagraph& paragraph, int index) {
    int start = paragraph.Start();
    int end = std::min(paragraph.End(), End());
    if (start >= end)
        return;
    const std::u16string& text = styled.Unicode();
    char16_t c = text[start];
    if (!IsWhite(c) && start > 0)
        c = text[start - 1];
    if (c == '\t')
        generator->IndentedParagraph(*this, start, end);
    else if (index != 0)
        generator->Paragraph(*this, start, end);
    else
        generator->FirstParagraph(*this, start, end);
}

void HTMLMarkup::Add(const HTMLMarkupTag& tag, bool atEnd) { code->Add(tag, atEnd); }

void HTMLMarkup::Enclose(int start, int end, const std::string& open, const std::string& close) {
    Enclose(start, end, open, close, 0);
}

void HTMLMarkup::Enclose(int start, int end, const std::string& open, const std::string& close, int skip) {
    HTMLMarkupTag first(open, start, true);
    first.Skip(skip);
    code->Enclose(first, HTMLMarkupTag(close, end, false));
}

void HTMLMarkup::Insert(int start, int end, const std::string& open, const std::string& close) {
    code->Insert(HTMLMarkupTag(open, start, true), HTMLMarkupTag(close, end, false));
}
