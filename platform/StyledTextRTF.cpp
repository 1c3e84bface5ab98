// RTF and RTFD forms of StyledText.
//
// The writer produces this shape:
//
//   {\rtf1\ansi\ansicpg1252\uc0
//   {\fonttbl\f0\fnil Helvetica;\f1\fnil Courier;}
//   {\colortbl;\red255\green0\blue0;}
//   \pard\qc \f0\fs28\b Title\par
//   \pard\li720 \plain plain text with {\field{\*\fldinst{HYPERLINK "https://x"}}{\fldrslt a link}}\par
//   {{\NeXTGraphic picture.png \width400 \height300}\u65532 }}
//
// Characters outside printable ASCII go out as \uN with no fallback (\uc0).
// Properties that return to "unset" (no font, no size) are written as \plain
// followed by everything still set, since RTF has no word for "no font".
#include "StyledText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <set>

#include <unicode/ucnv.h>

namespace {

// ---------------------------------------------------------------- writing

const char* AlignmentWord(TextAlignment alignment) {
    switch (alignment) {
    case TextAlignment::Left: return "\\pard\\ql";
    case TextAlignment::Center: return "\\pard\\qc";
    case TextAlignment::Right: return "\\pard\\qr";
    case TextAlignment::Justified: return "\\pard\\qj";
    case TextAlignment::Natural: break;
    }
    return "\\pard";
}

void PutNumber(std::string& out, long n) { out += std::to_string(n); }

// How PutText writes: running text, or a name or URL inside a group where
// \par and \tab mean nothing, so that every character is spelled \uN; in
// a table ";" ends the entry and cannot appear.
enum class TextMode { Running, Literal, Table };

// Writes UTF-16 text with RTF escapes.
void PutText(std::string& out, std::u16string_view text, TextMode mode = TextMode::Running) {
    for (char16_t c : text) {
        switch (c) {
        case u'\\': out += "\\\\"; continue;
        case u'{': out += "\\{"; continue;
        case u'}': out += "\\}"; continue;
        default: break;
        }
        if (mode == TextMode::Running) {
            if (c == u'\n') {
                out += "\\par\n";
                continue;
            }
            if (c == u'\t') {
                out += "\\tab ";
                continue;
            }
            if (c == 0x2028) {
                out += "\\line ";
                continue;
            }
        }
        if (mode == TextMode::Table && c == u';') {
            out += ',';
            continue;
        }
        if (c >= 0x20 && c < 0x7F) {
            out += static_cast<char>(c);
            continue;
        }
        out += "\\u";
        PutNumber(out, static_cast<int16_t>(c));
        out += ' ';
    }
}

struct WriterState {
    std::string font;
    double size = 0;
    bool bold = false, italic = false, underline = false, strikethrough = false;
    std::optional<TextRGB> foreground, background;
    TextAlignment alignment = TextAlignment::Natural;
    int leftIndent = 0;
    int firstLineIndent = 0;
};

class RTFWriter {
public:
    explicit RTFWriter(const StyledText& source, const std::vector<std::string>& attachmentNames)
        : source(source), names(attachmentNames) {}

    std::string Write() {
        CollectTables();
        std::string out = "{\\rtf1\\ansi\\ansicpg1252\\uc0\n";
        if (!fonts.empty()) {
            out += "{\\fonttbl";
            for (size_t i = 0; i < fonts.size(); ++i) {
                out += "\\f";
                PutNumber(out, static_cast<long>(i));
                out += "\\fnil ";
                PutText(out, Utf8ToUtf16(fonts[i]), TextMode::Table);
                out += ';';
            }
            out += "}\n";
        }
        if (!colors.empty()) {
            out += "{\\colortbl;";
            for (const auto& c : colors) {
                out += "\\red";
                PutNumber(out, c.red);
                out += "\\green";
                PutNumber(out, c.green);
                out += "\\blue";
                PutNumber(out, c.blue);
                out += ';';
            }
            out += "}\n";
        }
        WriteBody(out);
        out += "}";
        return out;
    }

private:
    void CollectTables() {
        for (const auto& run : source.Runs()) {
            const TextStyle& s = run.style;
            if (!s.font.empty() && fontIndex.find(s.font) == fontIndex.end()) {
                fontIndex[s.font] = static_cast<int>(fonts.size());
                fonts.push_back(s.font);
            }
            for (const auto& c : {s.foreground, s.background})
                if (c && std::find(colors.begin(), colors.end(), *c) == colors.end())
                    colors.push_back(*c);
        }
    }

    int ColorNumber(const std::optional<TextRGB>& c) const {
        if (!c)
            return 0;
        return static_cast<int>(std::find(colors.begin(), colors.end(), *c) - colors.begin()) + 1;
    }

    // Brings `state` to the target style, writing control words.
    void Transition(std::string& out, WriterState& state, const TextStyle& target) {
        std::string words;
        if (target.alignment != state.alignment || target.leftIndent != state.leftIndent ||
            target.firstLineIndent != state.firstLineIndent) {
            // \pard clears every paragraph property, so whatever is still
            // set follows it.
            words += AlignmentWord(target.alignment);
            if (target.leftIndent != 0) {
                words += "\\li";
                PutNumber(words, target.leftIndent);
            }
            if (target.firstLineIndent != 0) {
                words += "\\fi";
                PutNumber(words, target.firstLineIndent);
            }
            state.alignment = target.alignment;
            state.leftIndent = target.leftIndent;
            state.firstLineIndent = target.firstLineIndent;
        }
        bool reset = (state.font != target.font && target.font.empty()) || (state.size != 0 && target.size == 0);
        if (reset) {
            // \plain resets the characters only; the paragraph stays.
            words += "\\plain";
            WriterState paragraph;
            paragraph.alignment = state.alignment;
            paragraph.leftIndent = state.leftIndent;
            paragraph.firstLineIndent = state.firstLineIndent;
            state = paragraph;
        }
        if (target.font != state.font) {
            words += "\\f";
            PutNumber(words, fontIndex[target.font]);
            state.font = target.font;
        }
        if (target.size != state.size) {
            words += "\\fs";
            PutNumber(words, std::lround(target.size * 2));
            state.size = target.size;
        }
        if (target.bold != state.bold)
            words += target.bold ? "\\b" : "\\b0";
        if (target.italic != state.italic)
            words += target.italic ? "\\i" : "\\i0";
        if (target.underline != state.underline)
            words += target.underline ? "\\ul" : "\\ulnone";
        if (target.strikethrough != state.strikethrough)
            words += target.strikethrough ? "\\strike" : "\\strike0";
        if (target.foreground != state.foreground) {
            words += "\\cf";
            PutNumber(words, ColorNumber(target.foreground));
        }
        if (target.background != state.background) {
            words += "\\cb";
            PutNumber(words, ColorNumber(target.background));
        }
        state.bold = target.bold;
        state.italic = target.italic;
        state.underline = target.underline;
        state.strikethrough = target.strikethrough;
        state.foreground = target.foreground;
        state.background = target.background;
        if (!words.empty()) {
            out += words;
            out += ' ';
        }
    }

    static void PutURL(std::string& out, const std::string& url) {
        std::string quoted;
        for (char c : url) {
            if (c == '"')
                quoted += "%22";
            else
                quoted += c;
        }
        PutText(out, Utf8ToUtf16(quoted), TextMode::Literal);
    }

    void WriteBody(std::string& out) {
        WriterState state;
        WriterState outer;
        std::string openLink;
        const std::u16string& text = source.Unicode();
        size_t attachment = 0;
        for (const auto& run : source.Runs()) {
            const TextStyle& style = run.style;
            if (style.link != openLink) {
                if (!openLink.empty()) {
                    out += "}}";
                    state = outer;
                }
                openLink = style.link;
                if (!openLink.empty()) {
                    out += "{\\field{\\*\\fldinst{HYPERLINK \"";
                    PutURL(out, openLink);
                    out += "\"}}{\\fldrslt ";
                    outer = state;
                }
            }
            Transition(out, state, style);
            std::u16string_view chars(text.data() + run.start, static_cast<size_t>(run.length));
            if (!style.attachment) {
                PutText(out, chars);
                continue;
            }
            for (char16_t c : chars) {
                if (c != StyledText::kAttachmentCharacter) {
                    PutText(out, std::u16string_view(&c, 1));
                    continue;
                }
                const std::string& name = attachment < names.size() ? names[attachment] : style.attachment->fileName;
                ++attachment;
                out += "{{\\NeXTGraphic ";
                PutText(out, Utf8ToUtf16(name), TextMode::Literal);
                out += " \\width";
                PutNumber(out, style.attachment->width);
                out += " \\height";
                PutNumber(out, style.attachment->height);
                out += "}\\u-4 }";
            }
        }
        if (!openLink.empty())
            out += "}}";
    }

    const StyledText& source;
    const std::vector<std::string>& names;
    std::vector<std::string> fonts;
    std::map<std::string, int> fontIndex;
    std::vector<TextRGB> colors;
};

// Names of the attachments in text order, unique within the container: an
// unnamed one is called "Attachment N", and a name already used by different
// bytes gets " N" before its extension.
std::vector<std::string> AttachmentNames(const StyledText& text) {
    std::vector<std::string> names;
    std::map<std::string, const TextAttachment*> used;
    int count = text.AttachmentCount();
    for (int i = 0; i < count; ++i) {
        const TextAttachment* a = text.Attachment(i);
        std::string name = a->fileName.empty() ? "Attachment " + std::to_string(i + 1) : a->fileName;
        std::string candidate = name;
        for (int n = 2;; ++n) {
            auto it = used.find(candidate);
            if (it == used.end() || it->second->data == a->data)
                break;
            size_t dot = name.rfind('.');
            if (dot == std::string::npos || dot == 0)
                candidate = name + " " + std::to_string(n);
            else
                candidate = name.substr(0, dot) + " " + std::to_string(n) + name.substr(dot);
        }
        used.emplace(candidate, a);
        names.push_back(candidate);
    }
    return names;
}

// ---------------------------------------------------------------- reading

enum class Destination : uint8_t { Text, Skip, FontTable, ColorTable, FieldInstruction, Graphic };

struct ReaderState {
    Destination destination = Destination::Text;
    TextStyle style;
    int unicodeSkip = 1;
    bool skipAttachmentCharacter = false;
    std::string fieldURL;    // set on a \field group once its instruction is read
};

struct GraphicInfo {
    std::u16string name;
    int width = 0;
    int height = 0;
};

const std::set<std::string, std::less<>>& SkippedDestinations() {
    static const std::set<std::string, std::less<>> words = {
        "info", "stylesheet", "pict", "header", "headerl", "headerr", "headerf", "footer", "footerl", "footerr",
        "footerf", "footnote", "listtable", "listoverridetable", "revtbl", "rsidtbl", "generator", "xmlnstbl",
        "themedata", "colorschememapping", "latentstyles", "datastore", "object", "objdata", "filetbl",
        "annotation", "atnid", "atnauthor", "bkmkstart", "bkmkend", "pn", "shp",
        "shpinst", "nonshppict", "private", "userprops", "docvar", "mmathPr", "ftnsep",
        "ftnsepc", "aftnsep", "aftnsepc", "background", "txe", "xe", "tc", "comment", "title", "author",
        "operator", "company", "doccomm", "keywords", "subject", "category", "hlinkbase", "expandedcolortbl",
    };
    return words;
}

class RTFReader {
public:
    explicit RTFReader(std::string_view input) : input(input) {}
    ~RTFReader() {
        if (converter)
            ucnv_close(converter);
    }

    StyledText Read() {
        if (input.substr(0, 5) != "{\\rtf")
            return StyledText(input);
        stack.reserve(32);
        while (pos < input.size() && !finished) {
            char c = input[pos];
            if (c == '{') {
                FlushBytes();
                ++pos;
                OpenGroup();
            } else if (c == '}') {
                FlushBytes();
                ++pos;
                CloseGroup();
            } else if (c == '\\') {
                ReadControl();
            } else if (c == '\r' || c == '\n' || c == 0) {
                ++pos;
            } else {
                if (static_cast<unsigned char>(c) < 0x80)
                    FlushBytes();
                ++pos;
                if (TakeSkip())
                    continue;
                Literal(static_cast<unsigned char>(c));
            }
        }
        FlushBytes();
        return StyledText::FromRuns(std::move(text), std::move(runs));
    }

private:
    static constexpr size_t kMaxDepth = 512;

    ReaderState& Top() { return stack.empty() ? base : stack.back(); }

    void OpenGroup() {
        skipRemaining = 0;
        if (stack.size() >= kMaxDepth) {
            ++overflow;
            return;
        }
        ReaderState copy = Top();
        copy.skipAttachmentCharacter = false;
        copy.fieldURL.clear();
        stack.push_back(std::move(copy));
        groupJustOpened = true;
    }

    void CloseGroup() {
        skipRemaining = 0;
        if (overflow > 0) {
            --overflow;
            return;
        }
        if (stack.empty()) {
            finished = true;
            return;
        }
        ReaderState closed = std::move(stack.back());
        stack.pop_back();
        if (stack.empty()) {
            finished = true;
            return;
        }
        if (closed.destination == Destination::FieldInstruction && Top().destination != Destination::FieldInstruction) {
            Top().fieldURL = ParseHyperlink(Utf16ToUtf8(fieldInstruction));
            fieldInstruction.clear();
        } else if (closed.destination == Destination::Graphic && Top().destination != Destination::Graphic) {
            EmitAttachment();
        } else if (closed.destination == Destination::FontTable && Top().destination != Destination::FontTable) {
            FinishFontEntry();
        }
    }

    static std::string ParseHyperlink(const std::string& instruction) {
        size_t start = instruction.find_first_not_of(" \t");
        if (start == std::string::npos || instruction.compare(start, 9, "HYPERLINK") != 0)
            return {};
        size_t open = instruction.find('"', start + 9);
        if (open == std::string::npos) {
            size_t from = instruction.find_first_not_of(" \t", start + 9);
            if (from == std::string::npos)
                return {};
            size_t to = instruction.find_first_of(" \t", from);
            return instruction.substr(from, to == std::string::npos ? std::string::npos : to - from);
        }
        size_t close = instruction.find('"', open + 1);
        if (close == std::string::npos)
            close = instruction.size();
        return instruction.substr(open + 1, close - open - 1);
    }

    void EmitAttachment() {
        auto attachment = std::make_shared<TextAttachment>();
        std::string name = Utf16ToUtf8(graphic.name);
        size_t from = name.find_first_not_of(" \t\r\n");
        size_t to = name.find_last_not_of(" \t\r\n");
        attachment->fileName = from == std::string::npos ? std::string() : name.substr(from, to - from + 1);
        attachment->width = graphic.width;
        attachment->height = graphic.height;
        graphic = GraphicInfo();
        ReaderState& state = Top();
        if (state.destination != Destination::Text)
            return;
        TextStyle style = state.style;
        style.attachment = std::move(attachment);
        Append(StyledText::kAttachmentCharacter, style);
        state.skipAttachmentCharacter = true;
    }

    void FinishFontEntry() {
        if (fontName.empty() && fontNumber < 0)
            return;
        std::string name = Utf16ToUtf8(fontName);
        size_t from = name.find_first_not_of(" \t");
        size_t to = name.find_last_not_of(" \t");
        name = from == std::string::npos ? std::string() : name.substr(from, to - from + 1);
        if (fontNumber >= 0)
            fonts[fontNumber] = name;
        fontName.clear();
        fontNumber = -1;
    }

    bool TakeSkip() {
        if (skipRemaining > 0) {
            --skipRemaining;
            return true;
        }
        return false;
    }

    // A byte of text outside an escape: plain ASCII, or part of a multibyte
    // sequence in the document's code page.
    void Literal(unsigned char c) {
        if (c < 0x80) {
            Character(c == '\t' ? u'\t' : static_cast<char16_t>(c));
            return;
        }
        pendingBytes += static_cast<char>(c);
    }

    void FlushBytes() {
        if (pendingBytes.empty())
            return;
        std::u16string decoded = Decode(pendingBytes);
        pendingBytes.clear();
        for (char16_t c : decoded)
            Character(c);
    }

    std::u16string Decode(const std::string& bytes) {
        OpenConverter();
        std::u16string out;
        if (!converter) {
            for (unsigned char b : bytes)
                out += static_cast<char16_t>(b);
            return out;
        }
        out.resize(bytes.size() * 2 + 4);
        UErrorCode status = U_ZERO_ERROR;
        int32_t n = ucnv_toUChars(converter, reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()),
                                  bytes.data(), static_cast<int32_t>(bytes.size()), &status);
        if (U_FAILURE(status))
            return std::u16string(bytes.size(), 0xFFFD);
        out.resize(static_cast<size_t>(n));
        return out;
    }

    void OpenConverter() {
        if (!converter && !converterFailed) {
            UErrorCode status = U_ZERO_ERROR;
            converter = ucnv_open(codePage.c_str(), &status);
            if (U_FAILURE(status)) {
                converter = nullptr;
                status = U_ZERO_ERROR;
                converter = ucnv_open("windows-1252", &status);
                if (U_FAILURE(status)) {
                    converter = nullptr;
                    converterFailed = true;
                }
            }
        }
    }

    bool MultiByteCodePage() {
        OpenConverter();
        return converter && ucnv_getMaxCharSize(converter) > 1;
    }

    void SetCodePage(const std::string& name) {
        if (name == codePage)
            return;
        codePage = name;
        if (converter)
            ucnv_close(converter);
        converter = nullptr;
        converterFailed = false;
    }

    void Character(char16_t c) {
        ReaderState& state = Top();
        switch (state.destination) {
        case Destination::Text:
            if (state.skipAttachmentCharacter) {
                state.skipAttachmentCharacter = false;
                if (c == StyledText::kAttachmentCharacter || c == 0xAC)
                    return;
            }
            {
                TextStyle style = state.style;
                style.attachment.reset();
                Append(c, style);
            }
            return;
        case Destination::FontTable:
            if (c == u';')
                FinishFontEntry();
            else
                fontName += c;
            return;
        case Destination::ColorTable:
            if (c == u';') {
                if (colorHasComponents)
                    colors.push_back(color);
                else
                    colors.push_back(std::nullopt);
                color = TextRGB();
                colorHasComponents = false;
            }
            return;
        case Destination::FieldInstruction:
            fieldInstruction += c;
            return;
        case Destination::Graphic:
            graphic.name += c;
            return;
        case Destination::Skip:
            return;
        }
    }

    void Append(char16_t c, const TextStyle& style) {
        int position = static_cast<int>(text.size());
        text += c;
        if (!runs.empty() && runs.back().style == style && !style.attachment) {
            ++runs.back().length;
            return;
        }
        runs.push_back({position, 1, style});
    }

    void ReadControl() {
        ++pos;   // the backslash
        if (pos >= input.size())
            return;
        char c = input[pos];
        if (c == '\'') {
            ++pos;
            int value = 0;
            int digits = 0;
            while (digits < 2 && pos < input.size() && std::isxdigit(static_cast<unsigned char>(input[pos]))) {
                char h = input[pos++];
                value = value * 16 + (std::isdigit(static_cast<unsigned char>(h)) ? h - '0' : (std::tolower(h) - 'a' + 10));
                ++digits;
            }
            if (digits == 0 || TakeSkip())
                return;
            // In a double-byte code page the second byte of a character may
            // be below 0x80 (\'95\'5c is one character), so it joins the lead byte.
            if (value < 0x80 && (pendingBytes.empty() || !MultiByteCodePage())) {
                FlushBytes();
                Character(static_cast<char16_t>(value));
            } else {
                pendingBytes += static_cast<char>(value);
            }
            return;
        }
        FlushBytes();
        if (!std::isalpha(static_cast<unsigned char>(c))) {
            ++pos;
            groupJustOpened = false;
            if (TakeSkip())
                return;
            switch (c) {
            case '\\': case '{': case '}': Character(static_cast<char16_t>(c)); break;
            case '~': Character(0xA0); break;
            case '_': Character(0x2011); break;
            case '\n': case '\r': Character(u'\n'); break;
            case '*': starred = true; break;
            default: break;   // \- optional hyphen, \| and others: nothing
            }
            return;
        }
        size_t start = pos;
        while (pos < input.size() && std::isalpha(static_cast<unsigned char>(input[pos])) && pos - start < 32)
            ++pos;
        std::string_view word = input.substr(start, pos - start);
        bool hasParameter = false;
        long parameter = 0;
        bool negative = false;
        if (pos < input.size() && input[pos] == '-' && pos + 1 < input.size() &&
            std::isdigit(static_cast<unsigned char>(input[pos + 1]))) {
            negative = true;
            ++pos;
        }
        size_t digitsStart = pos;
        while (pos < input.size() && std::isdigit(static_cast<unsigned char>(input[pos]))) {
            if (pos - digitsStart < 10)
                parameter = parameter * 10 + (input[pos] - '0');
            ++pos;
        }
        hasParameter = pos > digitsStart;
        if (negative)
            parameter = -parameter;
        if (pos < input.size() && input[pos] == ' ')
            ++pos;
        bool first = groupJustOpened;
        bool wasStarred = starred;
        groupJustOpened = false;
        starred = false;
        Word(word, hasParameter, parameter, first || wasStarred, wasStarred);
    }

    void Word(std::string_view word, bool hasParameter, long parameter, bool atGroupStart, bool starred) {
        ReaderState& state = Top();
        if (state.destination == Destination::Skip)
            return;
        if (word == "u") {
            Character(static_cast<char16_t>(parameter < 0 ? parameter + 65536 : parameter));
            skipRemaining = state.unicodeSkip;
            return;
        }
        if (TakeSkip())
            return;

        // Destinations.
        if (word == "fonttbl") {
            state.destination = Destination::FontTable;
            fontName.clear();
            fontNumber = -1;
            return;
        }
        if (word == "colortbl") {
            state.destination = Destination::ColorTable;
            return;
        }
        if (word == "fldinst") {
            state.destination = Destination::FieldInstruction;
            fieldInstruction.clear();
            return;
        }
        if (word == "fldrslt") {
            state.destination = Destination::Text;
            state.style.link = stack.size() >= 2 ? stack[stack.size() - 2].fieldURL : std::string();
            return;
        }
        if (word == "field")
            return;
        if (word == "NeXTGraphic") {
            state.destination = Destination::Graphic;
            graphic = GraphicInfo();
            return;
        }
        if (SkippedDestinations().count(word) || (starred && atGroupStart)) {
            state.destination = Destination::Skip;
            return;
        }

        switch (state.destination) {
        case Destination::FontTable:
            if (word == "f") {
                FinishFontEntry();
                fontNumber = static_cast<int>(parameter);
            }
            return;
        case Destination::ColorTable:
            if (word == "red" || word == "green" || word == "blue") {
                uint8_t value = static_cast<uint8_t>(std::clamp<long>(parameter, 0, 255));
                (word == "red" ? color.red : word == "green" ? color.green : color.blue) = value;
                colorHasComponents = true;
            }
            return;
        case Destination::Graphic:
            if (word == "width")
                graphic.width = static_cast<int>(parameter);
            else if (word == "height")
                graphic.height = static_cast<int>(parameter);
            return;
        case Destination::FieldInstruction:
        case Destination::Skip:
            return;
        case Destination::Text:
            break;
        }

        TextStyle& style = state.style;
        bool on = !hasParameter || parameter != 0;
        if (word == "par") Character(u'\n');
        else if (word == "line") Character(0x2028);
        else if (word == "tab") Character(u'\t');
        else if (word == "emdash") Character(0x2014);
        else if (word == "endash") Character(0x2013);
        else if (word == "emspace") Character(0x2003);
        else if (word == "enspace") Character(0x2002);
        else if (word == "bullet") Character(0x2022);
        else if (word == "lquote") Character(0x2018);
        else if (word == "rquote") Character(0x2019);
        else if (word == "ldblquote") Character(0x201C);
        else if (word == "rdblquote") Character(0x201D);
        else if (word == "uc") state.unicodeSkip = static_cast<int>(std::clamp<long>(parameter, 0, 8));
        else if (word == "ansicpg") SetCodePage("windows-" + std::to_string(parameter));
        else if (word == "mac") SetCodePage("macintosh");
        else if (word == "pc") SetCodePage("ibm-437");
        else if (word == "pca") SetCodePage("ibm-850");
        else if (word == "deff") defaultFont = static_cast<int>(parameter);
        else if (word == "plain") {
            TextStyle reset;
            reset.alignment = style.alignment;
            reset.leftIndent = style.leftIndent;
            reset.firstLineIndent = style.firstLineIndent;
            reset.link = style.link;
            auto font = fonts.find(defaultFont);
            if (defaultFont >= 0 && font != fonts.end())
                reset.font = font->second;
            style = reset;
        }
        else if (word == "pard") {
            style.alignment = TextAlignment::Natural;
            style.leftIndent = 0;
            style.firstLineIndent = 0;
        }
        else if (word == "li") style.leftIndent = Twips(parameter);
        else if (word == "fi") style.firstLineIndent = Twips(parameter);
        else if (word == "ql") style.alignment = TextAlignment::Left;
        else if (word == "qc") style.alignment = TextAlignment::Center;
        else if (word == "qr") style.alignment = TextAlignment::Right;
        else if (word == "qj") style.alignment = TextAlignment::Justified;
        else if (word == "b") style.bold = on;
        else if (word == "i") style.italic = on;
        else if (word == "ul" || word == "uld" || word == "uldash" || word == "uldb" || word == "ulw" ||
                 word == "ulth" || word == "ulwave" || word == "uldashd" || word == "uldashdd")
            style.underline = on;
        else if (word == "ulnone") style.underline = false;
        else if (word == "strike" || word == "striked") style.strikethrough = on;
        else if (word == "f") {
            auto font = fonts.find(static_cast<int>(parameter));
            style.font = font == fonts.end() ? std::string() : font->second;
        }
        else if (word == "fs") style.size = hasParameter ? std::clamp<long>(parameter, 0, 100000) / 2.0 : 0;
        else if (word == "cf") style.foreground = ColorAt(parameter);
        else if (word == "cb" || word == "highlight" || word == "chcbpat") style.background = ColorAt(parameter);
    }

    static int Twips(long parameter) {
        return static_cast<int>(std::clamp<long>(parameter, std::numeric_limits<int>::min() + 1,
                                                 std::numeric_limits<int>::max()));
    }

    std::optional<TextRGB> ColorAt(long index) const {
        if (index <= 0 || static_cast<size_t>(index) >= colors.size())
            return std::nullopt;
        return colors[static_cast<size_t>(index)];
    }

    std::string_view input;
    size_t pos = 0;
    bool finished = false;
    bool groupJustOpened = false;
    bool starred = false;
    int skipRemaining = 0;
    size_t overflow = 0;
    ReaderState base;
    std::vector<ReaderState> stack;
    std::u16string text;
    std::vector<StyleRun> runs;

    std::map<int, std::string> fonts;
    int defaultFont = -1;
    std::u16string fontName;
    int fontNumber = -1;
    std::vector<std::optional<TextRGB>> colors;
    TextRGB color;
    bool colorHasComponents = false;
    std::u16string fieldInstruction;
    GraphicInfo graphic;

    std::string codePage = "windows-1252";
    std::string pendingBytes;
    UConverter* converter = nullptr;
    bool converterFailed = false;
};

// ---------------------------------------------------------------- RTFD container
//
// "rylrtfd1", then a 32-bit little-endian count of files, then for each file
// its name and its bytes, each preceded by a 32-bit little-endian length. The
// first file is "TXT.rtf".

constexpr std::string_view kRTFDMagic = "rylrtfd1";
const char* const kRTFDText = "TXT.rtf";

void PutUInt32(std::string& out, uint32_t n) {
    for (int i = 0; i < 4; ++i)
        out += static_cast<char>((n >> (8 * i)) & 0xFF);
}

bool GetUInt32(std::string_view data, size_t& pos, uint32_t& n) {
    if (data.size() - pos < 4)
        return false;
    n = 0;
    for (int i = 0; i < 4; ++i)
        n |= static_cast<uint32_t>(static_cast<unsigned char>(data[pos + i])) << (8 * i);
    pos += 4;
    return true;
}

} // namespace

std::string StyledText::ToRTF() const {
    std::vector<std::string> names = AttachmentNames(*this);
    return RTFWriter(*this, names).Write();
}

StyledText StyledText::FromRTF(std::string_view rtf) { return RTFReader(rtf).Read(); }

bool StyledText::IsRTFD(std::string_view data) { return data.substr(0, kRTFDMagic.size()) == kRTFDMagic; }

std::string StyledText::MakeRTFD(const std::vector<std::pair<std::string, std::string>>& files) {
    std::string out(kRTFDMagic);
    PutUInt32(out, static_cast<uint32_t>(files.size()));
    for (const auto& [name, bytes] : files) {
        PutUInt32(out, static_cast<uint32_t>(name.size()));
        out += name;
        PutUInt32(out, static_cast<uint32_t>(bytes.size()));
        out += bytes;
    }
    return out;
}

std::vector<std::pair<std::string, std::string>> StyledText::RTFDFiles(std::string_view data, bool* ok) {
    std::vector<std::pair<std::string, std::string>> files;
    if (ok)
        *ok = false;
    if (!IsRTFD(data))
        return files;
    size_t pos = kRTFDMagic.size();
    uint32_t count = 0;
    if (!GetUInt32(data, pos, count))
        return files;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t length = 0;
        if (!GetUInt32(data, pos, length) || data.size() - pos < length)
            return {};
        std::string name(data.substr(pos, length));
        pos += length;
        if (!GetUInt32(data, pos, length) || data.size() - pos < length)
            return {};
        files.emplace_back(std::move(name), std::string(data.substr(pos, length)));
        pos += length;
    }
    if (pos != data.size())
        return {};
    if (ok)
        *ok = true;
    return files;
}

std::string StyledText::ToRTFD() const {
    std::vector<std::string> names = AttachmentNames(*this);
    std::vector<std::pair<std::string, std::string>> files;
    files.emplace_back(kRTFDText, RTFWriter(*this, names).Write());
    std::set<std::string> written;
    for (size_t i = 0; i < names.size(); ++i)
        if (written.insert(names[i]).second)
            files.emplace_back(names[i], Attachment(static_cast<int>(i))->data);
    return MakeRTFD(files);
}

StyledText StyledText::FromRTFD(std::string_view data, bool* ok) {
    bool valid = false;
    auto files = RTFDFiles(data, &valid);
    if (ok)
        *ok = valid;
    if (!valid)
        return {};
    std::map<std::string, const std::string*> byName;
    const std::string* rtf = nullptr;
    for (const auto& [name, bytes] : files) {
        if (name == kRTFDText && !rtf)
            rtf = &bytes;
        byName.emplace(name, &bytes);
    }
    if (!rtf) {
        if (ok)
            *ok = false;
        return {};
    }
    StyledText result = FromRTF(*rtf);
    for (auto& run : result.runs) {
        if (!run.style.attachment)
            continue;
        auto it = byName.find(run.style.attachment->fileName);
        if (it == byName.end())
            continue;
        auto filled = std::make_shared<TextAttachment>(*run.style.attachment);
        filled->data = *it->second;
        run.style.attachment = std::move(filled);
    }
    return result;
}
