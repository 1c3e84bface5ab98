#include "TextExporter.h"

#include <algorithm>
#include <cctype>

#include "Attribute.h"
#include "HTMLExportSaver.h"
#include "HTExportPath.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "NodeExport.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "PColor.h"
#include "RylSerial.h"
#include "STemplateFile.h"
#include "Value.h"

TextExporter::TextExporter(Hypertext* hypertext, std::string format) : Exporter(hypertext), format(std::move(format)) {}

Node* TextExporter::OwnTemplateNote() const {
    Node* root = HypertextFacade(hypertext).Root();
    std::string shown = format == "opml" ? "OPML" : format == "outline" ? "Outline" : format;
    MatchList matches;
    Node* own = root ? HTExportPath("/Templates/" + shown).Get(root, matches) : nullptr;
    return own && NodeFacade(own).IsTemplate() ? own : nullptr;
}

void TextExporter::LoadTemplate() {
    if (DefaultTemplate())
        return;
    if (Node* own = OwnTemplateNote())
        SetTemplateText(NodeText(own).GetText());
    else
        SetTemplateText(STemplateFile::BuiltInTemplate(format));
}

std::string TextExporter::ExportedString() {
    LoadTemplate();
    Node* root = HypertextFacade(hypertext).Root();
    if (!root)
        return std::string();
    total = CountExportedNotes();
    return DefaultTemplate()->ExportString(root, root);
}

bool TextExporter::ExportToPath(const std::string& path, std::string& error) {
    return SaveIfChanged(path, ExportedString(), error);
}

OutlineExporter::OutlineExporter(Hypertext* hypertext) : TextExporter(hypertext, "outline") {}

OutlineExporter::~OutlineExporter() = default;

int OutlineExporter::Indents(int depth) { return std::clamp(depth, 0, kMaxIndentLevels) * kIndentStep; }

TextStyle OutlineExporter::StyleFor(Node* note, int depth) const {
    TextStyle style;
    style.bold = depth == 0;
    if (!note)
        return style;
    // Only a colour the note holds itself, and not the one every note has
    // by default; "automatic" defers to the prototype, so is no colour of
    // the note's own.
    Node* original = note->GetOriginal();
    const Attribute* attribute = original->GetAttribute("Color");
    if (!attribute)
        return style;
    std::string text;
    {
        StObjectLock guard(original->Lock());
        if (const Value* own = original->DoGetImmediate(attribute))
            text = own->AsString();
    }
    if (text.empty() || text == "automatic")
        return style;
    HypertextFacade document(hypertext);
    PColor color = document.TranslateColor(text);
    if (color == document.TranslateColor(attribute->GetDefaultValueAsString()))
        return style;
    style.foreground = TextRGB{static_cast<uint8_t>(color.red >> 8), static_cast<uint8_t>(color.green >> 8),
                               static_cast<uint8_t>(color.blue >> 8)};
    return style;
}

std::string OutlineExporter::TitleOf(Node* note) {
    // Through the template element itself, so that the titles are the ones
    // the outline has always had (entities, where a note asks for them).
    if (!titleTemplate)
        titleTemplate = std::make_unique<ExportTemplate>(std::string("^title^"), this, nullptr);
    return titleTemplate->ExportString(note, HypertextFacade(hypertext).Root());
}

void OutlineExporter::TextListFor(Node* note, int depth, StyledText& text) {
    std::u16string characters;
    std::vector<StyleRun> runs;
    GatherParagraphs(note, depth, characters, runs);
    text.Append(StyledText::FromRuns(std::move(characters), std::move(runs)));
}

void OutlineExporter::GatherParagraphs(Node* note, int depth, std::u16string& characters,
                                       std::vector<StyleRun>& runs) {
    if (!note)
        return;
    // Outline order without recursion: documents may nest thousands deep.
    Node* at = note;
    int level = depth;
    while (at) {
        if (NodeExport(at).CanBeExported()) {
            TextStyle style = StyleFor(at, level);
            style.leftIndent = Indents(level);
            std::u16string paragraph = Utf8ToUtf16(TitleOf(at) + "\n");
            runs.push_back({static_cast<int>(characters.size()), static_cast<int>(paragraph.size()), std::move(style)});
            characters += paragraph;
        }
        if (at->Son()) {
            at = at->Son();
            ++level;
            continue;
        }
        while (at != note && !at->Brother()) {
            at = at->Father();
            --level;
        }
        at = at == note ? nullptr : at->Brother();
    }
}

StyledText OutlineExporter::OutlineText() {
    // The paragraphs are gathered first and made into styled text once.
    std::u16string characters;
    std::vector<StyleRun> runs;
    Node* root = HypertextFacade(hypertext).Root();
    for (Node* child = root ? root->Son() : nullptr; child; child = child->Brother())
        GatherParagraphs(child, 0, characters, runs);
    total = CountExportedNotes();
    return StyledText::FromRuns(std::move(characters), std::move(runs));
}

std::string OutlineExporter::PlainText(const StyledText& outline) {
    std::string out;
    int at = 0;
    while (at < outline.Length()) {
        int end = outline.ParagraphEnd(at);
        int levels = outline.StyleAt(at).leftIndent / kIndentStep;
        if (levels > 0 && levels <= kMaxTabbedLevels)
            out.append(static_cast<size_t>(levels), '\t');
        out += Utf16ToUtf8(std::u16string_view(outline.Unicode()).substr(static_cast<size_t>(at),
                                                                         static_cast<size_t>(end - at)));
        at = end;
    }
    return out;
}

bool OutlineExporter::IsRTFPath(const std::string& path) {
    if (path.size() < 4)
        return false;
    std::string ending = path.substr(path.size() - 4);
    for (char& c : ending)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ending == ".rtf";
}

bool OutlineExporter::HasOwnTemplate() const { return DefaultTemplate() || OwnTemplateNote(); }

bool OutlineExporter::ExportToPath(const std::string& path, std::string& error) {
    if (IsRTFPath(path))
        return SaveIfChanged(path, OutlineText().ToRTF(), error);
    if (HasOwnTemplate())
        return TextExporter::ExportToPath(path, error);
    return SaveIfChanged(path, PlainText(OutlineText()), error);
}

bool SingleNoteExporter::ExportToPath(const std::string& path, std::string& error) {
    return SaveIfChanged(path, ExportOne(note), error);
}
