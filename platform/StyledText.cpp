#include "StyledText.h"

#include <algorithm>

#include <unicode/ustring.h>
#include <unicode/utf16.h>

std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out;
    if (utf8.empty())
        return out;
    out.resize(utf8.size());
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), static_cast<int32_t>(out.size()), &length,
                         utf8.data(), static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
    if (U_FAILURE(status))
        return {};
    out.resize(length);
    return out;
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
    std::string out;
    if (utf16.empty())
        return out;
    out.resize(utf16.size() * 3);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length,
                       reinterpret_cast<const UChar*>(utf16.data()), static_cast<int32_t>(utf16.size()), 0xFFFD,
                       nullptr, &status);
    if (U_FAILURE(status))
        return {};
    out.resize(length);
    return out;
}

bool TextStyle::operator==(const TextStyle& other) const {
    if (font != other.font || size != other.size || bold != other.bold || italic != other.italic ||
        underline != other.underline || strikethrough != other.strikethrough || foreground != other.foreground ||
        background != other.background || alignment != other.alignment || leftIndent != other.leftIndent ||
        firstLineIndent != other.firstLineIndent || link != other.link)
        return false;
    if (attachment == other.attachment)
        return true;
    if (!attachment || !other.attachment)
        return false;
    return *attachment == *other.attachment;
}

bool TextStyle::IsPlain() const { return *this == TextStyle(); }

StyledText::StyledText(std::string_view utf8, const TextStyle& style) : text(Utf8ToUtf16(utf8)) {
    if (!text.empty())
        runs.push_back({0, Length(), style});
}

StyledText StyledText::FromUnicode(std::u16string unicode, const TextStyle& style) {
    StyledText result;
    result.text = std::move(unicode);
    if (!result.text.empty())
        result.runs.push_back({0, result.Length(), style});
    return result;
}

StyledText StyledText::FromRuns(std::u16string unicode, std::vector<StyleRun> given) {
    StyledText result;
    result.text = std::move(unicode);
    int position = 0;
    for (auto& run : given) {
        int length = std::min(run.length, result.Length() - position);
        if (length <= 0)
            continue;
        result.runs.push_back({position, length, std::move(run.style)});
        position += length;
    }
    if (position < result.Length())
        result.runs.push_back({position, result.Length() - position, TextStyle()});
    result.Coalesce();
    return result;
}

std::string StyledText::Text() const { return Utf16ToUtf8(text); }

const StyleRun* StyledText::RunAt(int position) const {
    if (position < 0 || position >= Length())
        return nullptr;
    auto it = std::upper_bound(runs.begin(), runs.end(), position,
                               [](int p, const StyleRun& run) { return p < run.start; });
    if (it == runs.begin())
        return nullptr;
    return &*(it - 1);
}

const TextStyle& StyledText::StyleAt(int position) const {
    static const TextStyle plain;
    const StyleRun* run = RunAt(position);
    return run ? run->style : plain;
}

size_t StyledText::SplitAt(int position) {
    if (position <= 0)
        return 0;
    if (position >= Length())
        return runs.size();
    auto it = std::upper_bound(runs.begin(), runs.end(), position,
                               [](int p, const StyleRun& run) { return p < run.start; });
    size_t index = static_cast<size_t>(it - runs.begin()) - 1;
    StyleRun& run = runs[index];
    if (run.start == position)
        return index;
    StyleRun tail{position, run.End() - position, run.style};
    run.length = position - run.start;
    runs.insert(runs.begin() + static_cast<long>(index) + 1, tail);
    return index + 1;
}

void StyledText::Coalesce() {
    std::vector<StyleRun> merged;
    merged.reserve(runs.size());
    for (auto& run : runs) {
        if (run.length <= 0)
            continue;
        if (!merged.empty() && merged.back().style == run.style) {
            merged.back().length += run.length;
            continue;
        }
        merged.push_back(std::move(run));
    }
    runs = std::move(merged);
}

void StyledText::Normalize() {
    int position = 0;
    for (auto& run : runs) {
        run.start = position;
        position += std::max(run.length, 0);
    }
    Coalesce();
}

void StyledText::SetStyle(int start, int length, const TextStyle& style) {
    ModifyStyle(start, length, [&style](TextStyle& s) { s = style; });
}

int StyledText::ParagraphStart(int position) const {
    position = std::clamp(position, 0, Length());
    while (position > 0) {
        char16_t c = text[position - 1];
        if (c == u'\n' || c == u'\r' || c == 0x2029)
            break;
        --position;
    }
    return position;
}

int StyledText::ParagraphEnd(int position) const {
    position = std::clamp(position, 0, Length());
    while (position < Length()) {
        char16_t c = text[position++];
        if (c == u'\n' || c == u'\r' || c == 0x2029)
            break;
    }
    return position;
}

void StyledText::SetAlignment(int start, int length, TextAlignment alignment) {
    int from = ParagraphStart(start);
    int to = ParagraphEnd(std::max(start + length - 1, start));
    ModifyStyle(from, to - from, [alignment](TextStyle& s) { s.alignment = alignment; });
}

void StyledText::SetIndents(int start, int length, int leftIndent, int firstLineIndent) {
    int from = ParagraphStart(start);
    int to = ParagraphEnd(std::max(start + length - 1, start));
    ModifyStyle(from, to - from, [leftIndent, firstLineIndent](TextStyle& s) {
        s.leftIndent = leftIndent;
        s.firstLineIndent = firstLineIndent;
    });
}

void StyledText::SetLink(int start, int length, const std::string& url) {
    ModifyStyle(start, length, [&url](TextStyle& s) { s.link = url; });
}

void StyledText::Append(std::string_view utf8, const TextStyle& style) {
    std::u16string more = Utf8ToUtf16(utf8);
    if (more.empty())
        return;
    runs.push_back({Length(), static_cast<int>(more.size()), style});
    text += more;
    Coalesce();
}

void StyledText::Append(const StyledText& other) { Replace(Length(), 0, other); }

void StyledText::Replace(int start, int length, const StyledText& replacement) {
    start = std::clamp(start, 0, Length());
    length = std::clamp(length, 0, Length() - start);
    size_t first = SplitAt(start);
    size_t last = SplitAt(start + length);
    std::vector<StyleRun> updated(runs.begin(), runs.begin() + static_cast<long>(first));
    for (const auto& run : replacement.runs)
        updated.push_back(run);
    updated.insert(updated.end(), runs.begin() + static_cast<long>(last), runs.end());
    text.replace(static_cast<size_t>(start), static_cast<size_t>(length), replacement.text);
    runs = std::move(updated);
    Normalize();
}

void StyledText::Replace(int start, int length, std::string_view utf8) {
    start = std::clamp(start, 0, Length());
    TextStyle style;
    if (length > 0 || start == Length())
        style = StyleAt(length > 0 ? start : start - 1);
    else
        style = StyleAt(start > 0 ? start - 1 : start);
    style.attachment.reset();
    Replace(start, length, StyledText(utf8, style));
}

StyledText StyledText::Substring(int start, int length) const {
    StyledText result;
    start = std::clamp(start, 0, Length());
    length = std::clamp(length, 0, Length() - start);
    if (length == 0)
        return result;
    result.text = text.substr(static_cast<size_t>(start), static_cast<size_t>(length));
    for (const auto& run : runs) {
        int from = std::max(run.start, start);
        int to = std::min(run.End(), start + length);
        if (from < to)
            result.runs.push_back({from - start, to - from, run.style});
    }
    return result;
}

void StyledText::InsertAttachment(int position, const TextAttachment& attachment, const TextStyle& style) {
    TextStyle withAttachment = style;
    withAttachment.attachment = std::make_shared<const TextAttachment>(attachment);
    Replace(position, 0, FromUnicode(std::u16string(1, kAttachmentCharacter), withAttachment));
}

int StyledText::AttachmentCount() const {
    int count = 0;
    for (const auto& run : runs)
        if (run.style.attachment)
            for (int i = run.start; i < run.End(); ++i)
                if (text[i] == kAttachmentCharacter)
                    ++count;
    return count;
}

int StyledText::AttachmentPosition(int n) const {
    if (n < 0)
        return -1;
    for (const auto& run : runs)
        if (run.style.attachment)
            for (int i = run.start; i < run.End(); ++i)
                if (text[i] == kAttachmentCharacter && n-- == 0)
                    return i;
    return -1;
}

const TextAttachment* StyledText::Attachment(int n) const {
    int position = AttachmentPosition(n);
    return position < 0 ? nullptr : StyleAt(position).attachment.get();
}

bool StyledText::HasStyles() const {
    return std::any_of(runs.begin(), runs.end(), [](const StyleRun& run) { return !run.style.IsPlain(); });
}

bool StyledText::operator==(const StyledText& other) const {
    if (text != other.text || runs.size() != other.runs.size())
        return false;
    for (size_t i = 0; i < runs.size(); ++i)
        if (runs[i].start != other.runs[i].start || runs[i].length != other.runs[i].length ||
            runs[i].style != other.runs[i].style)
            return false;
    return true;
}
