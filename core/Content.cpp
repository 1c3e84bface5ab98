#include "Content.h"

#include <cctype>

#include "RylSerial.h"

namespace {
RylSerial& ContentQueue() {
    static RylSerial queue("com.morvent.rylvane.content");
    return queue;
}
} // namespace

const std::string& Content::RTFText() const {
    static const std::string none;
    return styled ? styled->rtf : none;
}

const std::string& Content::RTFDData() const {
    static const std::string none;
    return styled ? styled->rtfd : none;
}

Content::Styled& Content::MutableStyled() {
    if (!styled)
        styled = std::make_unique<Styled>();
    return *styled;
}

// Called on the content queue.
void Content::CopyFrom(const Content& other) {
    text = other.text;
    if (other.styled)
        styled = std::make_unique<Styled>(*other.styled);
    else
        styled.reset();
}

Content::Content(const Content& other) {
    ContentQueue().Sync([&] { CopyFrom(other); });
}

Content& Content::operator=(const Content& other) {
    if (this != &other)
        ContentQueue().Sync([&] { CopyFrom(other); });
    return *this;
}

std::string Content::GetText() const {
    return ContentQueue().Sync([&] { return text; });
}

void Content::SetText(const std::string& t) {
    ContentQueue().Sync([&] { text = t; });
}

bool Content::HasText() const {
    return ContentQueue().Sync([&] { return !text.empty(); });
}

long Content::TextSize() const {
    return ContentQueue().Sync([&] { return static_cast<long>(text.size()); });
}

bool Content::IsWordBreak(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

long Content::WordCount() const {
    return ContentQueue().Sync([&] {
        long words = 0;
        bool inWord = false;
        for (char c : text) {
            if (IsWordBreak(c)) {
                inWord = false;
            } else if (!inWord) {
                inWord = true;
                ++words;
            }
        }
        return words;
    });
}

bool Content::HasRTF() const {
    return ContentQueue().Sync([&] { return !RTFText().empty(); });
}

std::string Content::GetRTF() const {
    return ContentQueue().Sync([&] { return RTFText(); });
}

void Content::SetRTF(const std::string& r) {
    ContentQueue().Sync([&] {
        if (!r.empty() || styled)
            MutableStyled().rtf = r;
    });
}

bool Content::HasRTFD() const {
    return ContentQueue().Sync([&] { return !RTFDData().empty(); });
}

std::string Content::GetRTFD() const {
    return ContentQueue().Sync([&] { return RTFDData(); });
}

void Content::SetRTFD(const std::string& r) {
    ContentQueue().Sync([&] {
        if (!r.empty() || styled)
            MutableStyled().rtfd = r;
    });
}

void Content::SetText(std::string&& t) {
    ContentQueue().Sync([&] { text = std::move(t); });
}

void Content::SetRTF(std::string&& r) {
    ContentQueue().Sync([&] {
        if (!r.empty() || styled)
            MutableStyled().rtf = std::move(r);
    });
}

void Content::SetRTFD(std::string&& r) {
    ContentQueue().Sync([&] {
        if (!r.empty() || styled)
            MutableStyled().rtfd = std::move(r);
    });
}
