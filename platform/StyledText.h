#pragma once
// Styled text: a string with runs of character and paragraph attributes, and
// its RTF and RTFD forms.
//
// Positions and lengths count UTF-16 code units, as the text views and the
// anchors of text links do; `Text()` gives the UTF-8 form. The runs cover the
// whole text without gaps, are never empty, and neighbours always differ.
//
// An attachment (an embedded picture) is the character U+FFFC carrying the
// attachment in its style. In RTF an attachment is only a reference by file
// name; the RTFD form is a small container holding the RTF text and the
// bytes of every attached file, which are carried through unchanged.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct TextRGB {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    bool operator==(const TextRGB&) const = default;
};

// Alignment and indents belong to a paragraph; `Natural` is the writing
// direction's own alignment.
enum class TextAlignment : uint8_t { Natural, Left, Center, Right, Justified };

struct TextAttachment {
    std::string fileName;   // name of the file inside the RTFD container
    std::string data;       // the file's bytes, exactly as received
    int width = 0;          // in twips (1/20 point); 0 when unknown
    int height = 0;
    bool operator==(const TextAttachment&) const = default;
};

struct TextStyle {
    std::string font;                    // font name; empty means the note's text font
    double size = 0;                     // in points; 0 means the note's text size
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethrough = false;
    std::optional<TextRGB> foreground;   // none means the note's text colour
    std::optional<TextRGB> background;
    TextAlignment alignment = TextAlignment::Natural;
    int leftIndent = 0;                  // of the paragraph, in twips; 0 is none
    int firstLineIndent = 0;             // of its first line, from the left indent
    std::string link;                    // URL the characters link to, if any
    std::shared_ptr<const TextAttachment> attachment;

    bool operator==(const TextStyle& other) const;
    bool operator!=(const TextStyle& other) const { return !(*this == other); }
    // True when nothing is set: plain text in the note's own style.
    bool IsPlain() const;
};

struct StyleRun {
    int start = 0;
    int length = 0;
    TextStyle style;
    int End() const { return start + length; }
};

class StyledText {
public:
    static constexpr char16_t kAttachmentCharacter = 0xFFFC;

    StyledText() = default;
    explicit StyledText(std::string_view utf8, const TextStyle& style = {});
    static StyledText FromUnicode(std::u16string text, const TextStyle& style = {});
    // Text with given runs; runs are clipped to the text and any part of the
    // text they leave uncovered is plain.
    static StyledText FromRuns(std::u16string text, std::vector<StyleRun> runs);

    // The text as UTF-8 and as UTF-16.
    std::string Text() const;
    const std::u16string& Unicode() const { return text; }
    int Length() const { return static_cast<int>(text.size()); }
    bool empty() const { return text.empty(); }

    const std::vector<StyleRun>& Runs() const { return runs; }
    // The style of the character at `position`; a plain style out of range.
    const TextStyle& StyleAt(int position) const;
    // The run holding `position`, or null out of range.
    const StyleRun* RunAt(int position) const;

    // Sets the style of a range; the range is clipped to the text.
    void SetStyle(int start, int length, const TextStyle& style);
    // Calls `change` on a copy of each run's style within the range.
    template <typename F>
    void ModifyStyle(int start, int length, F change);
    // Sets the alignment of every paragraph touched by the range.
    void SetAlignment(int start, int length, TextAlignment alignment);
    // Sets the left and first-line indents (twips) of every paragraph
    // touched by the range.
    void SetIndents(int start, int length, int leftIndent, int firstLineIndent = 0);
    void SetLink(int start, int length, const std::string& url);

    void Append(std::string_view utf8, const TextStyle& style = {});
    void Append(const StyledText& other);
    // Replaces a range (clipped to the text) by other styled text.
    void Replace(int start, int length, const StyledText& replacement);
    // Replaces a range by plain text taking the style of the range's first
    // character (or of the character before it when the range is empty).
    void Replace(int start, int length, std::string_view utf8);
    StyledText Substring(int start, int length) const;

    // Inserts an attachment character at `position`.
    void InsertAttachment(int position, const TextAttachment& attachment, const TextStyle& style = {});
    int AttachmentCount() const;
    // The n-th attachment in text order, or null.
    const TextAttachment* Attachment(int n) const;
    // The position of the n-th attachment character, or -1.
    int AttachmentPosition(int n) const;
    bool HasAttachments() const { return AttachmentCount() > 0; }

    // True when some character carries a style other than plain.
    bool HasStyles() const;

    // Ranges of paragraphs: each ends after its line break (or at the end).
    int ParagraphStart(int position) const;
    int ParagraphEnd(int position) const;

    bool operator==(const StyledText& other) const;
    bool operator!=(const StyledText& other) const { return !(*this == other); }

    // RTF. The writer uses a fixed subset; the reader understands that subset
    // and the common constructs of RTF from other programs, and passes over
    // what it does not know.
    std::string ToRTF() const;
    static StyledText FromRTF(std::string_view rtf);

    // RTFD container: the RTF text plus the attached files.
    std::string ToRTFD() const;
    // A malformed container gives empty text and `ok` false.
    static StyledText FromRTFD(std::string_view data, bool* ok = nullptr);
    static bool IsRTFD(std::string_view data);
    // The files of an RTFD container, without reading its text.
    static std::vector<std::pair<std::string, std::string>> RTFDFiles(std::string_view data, bool* ok = nullptr);
    static std::string MakeRTFD(const std::vector<std::pair<std::string, std::string>>& files);

private:
    void Normalize();
    void Coalesce();
    // Splits the run holding `position` so that a run starts there.
    size_t SplitAt(int position);

    std::u16string text;
    std::vector<StyleRun> runs;
};

template <typename F>
void StyledText::ModifyStyle(int start, int length, F change) {
    if (start < 0) {
        length += start;
        start = 0;
    }
    if (start > Length())
        return;
    if (length > Length() - start)
        length = Length() - start;
    if (length <= 0)
        return;
    size_t first = SplitAt(start);
    size_t last = SplitAt(start + length);
    for (size_t i = first; i < last; ++i)
        change(runs[i].style);
    Coalesce();
}

// UTF-8 and UTF-16 conversions; invalid input becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view utf8);
std::string Utf16ToUtf8(std::u16string_view utf16);
