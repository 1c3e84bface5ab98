#pragma once
// Markdown to HTML through the CommonMark library.
#include <string>
#include <string_view>

class RylCommonMark {
public:
    // The HTML of the Markdown text. Raw HTML in the text is kept, as note
    // text may hold HTML; the text is read as UTF-8 with invalid bytes
    // replaced.
    static std::string Translate(std::string_view text);
};
