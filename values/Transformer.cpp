#include "Transformer.h"

#include <unicode/utf8.h>

#include "UnicodeString.h"
#include "Hooks.h"

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && IsBlank(text[i])) ++i;
        size_t start = i;
        while (i < text.size() && !IsBlank(text[i])) ++i;
        if (i > start) words.push_back(text.substr(start, i - start));
    }
    return words;
}

}  // namespace

Transformer::~Transformer() = default;

std::unique_ptr<Transformer> Transformer::Create(const std::string& name) {
    if (name == "lowercase" || name == "case-insensitive") return std::make_unique<TransformerLowerCase>();
    if (name == "last word") return std::make_unique<TransformerLastWord>();
    if (name == "original note") return std::make_unique<TransformerOriginal>();
    return std::make_unique<Transformer>();
}

std::string Transformer::Transform(const std::string& text) const {
    return text;
}

const Node* Transformer::ChooseNode(const Node* note) const {
    return note;
}

std::string TransformerLowerCase::Transform(const std::string& text) const {
    return UnicodeString::Lowercase(text);
}

std::string TransformerUpperCase::Transform(const std::string& text) const {
    return UnicodeString::Uppercase(text);
}

std::string TransformerCapitalize::Transform(const std::string& text) const {
    std::string result;
    for (const std::string& word : Words(text)) {
        if (!result.empty()) result += ' ';
        // The first code point, upper-cased; a malformed lead byte is taken alone.
        int32_t end = 0;
        UChar32 c;
        U8_NEXT(reinterpret_cast<const uint8_t*>(word.data()), end, static_cast<int32_t>(word.size()), c);
        if (c < 0) {
            result += word;
            continue;
        }
        result += UnicodeString::Uppercase(word.substr(0, end));
        result += word.substr(end);
    }
    return result;
}

std::string TransformerFirstWord::Transform(const std::string& text) const {
    std::vector<std::string> words = Words(text);
    return words.empty() ? std::string() : words.front();
}

std::string TransformerLastWord::Transform(const std::string& text) const {
    std::vector<std::string> words = Words(text);
    return words.empty() ? std::string() : words.back();
}

const Node* TransformerOriginal::ChooseNode(const Node* note) const {
    const Hooks& hooks = GetHooks();
    if (!note || !hooks.originalOf) return note;
    return hooks.originalOf(note);
}
