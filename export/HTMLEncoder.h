#pragma once
// Entity work on text bound for HTML: ampersands, angle brackets and
// characters outside ASCII become entities.
#include <string>
#include <string_view>

// Follows a text character by character and says whether a character lies
// between an opening tag (such as "<code") and its closing tag ("</code").
// The characters of the two tags themselves are outside. Tag names match
// without regard to case.
class TagState {
public:
    explicit TagState(std::u32string open = U"<code", std::u32string close = U"</code");
    // Feeds the character at `i`; characters must be fed in order.
    bool Inside(std::u32string_view text, size_t i);
    bool IsInside() const { return state == kInside; }

private:
    enum State { kOutside, kInOpenTag, kInside, kInCloseTag };
    std::u32string openTag;
    std::u32string closeTag;
    State state = kOutside;
};

class HTMLEncoder {
public:
    // The text with entities. "&" stays when `keepAmpersands` or when it
    // starts an entity, else becomes "&amp;". Angle brackets are encoded when
    // `encodeAngles`, and always between "<code" and "</code". Other
    // characters go through AsEntity.
    static std::string EntityFilter(std::string_view text, bool keepAmpersands, bool encodeAngles);
    // The same, carrying the code-span state from one stretch of a text to
    // the next.
    static std::string EntityFilter(std::string_view text, bool keepAmpersands, bool encodeAngles, TagState& codeState);
    // One character: -54 is a blank, U+FFFC (an attachment) is dropped, "&"
    // is "&amp;", ASCII below 127 stands, the rest is "&#x" hex ";".
    static std::string AsEntity(long c);
    // True when the "&" at `i` starts an entity: from the next character only
    // letters, digits and "#" up to a ";" before the end.
    static bool IsEntity(std::u32string_view text, size_t i);
    // Every "&" becomes "&amp;", entity or not.
    static std::string EncodeAmpersands(std::string_view text);
    // Every double quote becomes "&quot;".
    static std::string EncodeQuotes(std::string_view text);

    // UTF-8 to code points and back; invalid input becomes U+FFFD.
    static std::u32string CodePoints(std::string_view utf8);
    static void AppendUTF8(std::string& out, char32_t c);
};
