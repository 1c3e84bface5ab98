#include "RylCommonMark.h"

#include <cmark.h>

#include <cstdlib>
#include <memory>

std::string RylCommonMark::Translate(std::string_view text) {
    int options = CMARK_OPT_UNSAFE | CMARK_OPT_VALIDATE_UTF8;
    std::unique_ptr<char, decltype(&std::free)> html(cmark_markdown_to_html(text.data(), text.size(), options), &std::free);
    return html ? std::string(html.get()) : std::string();
}
