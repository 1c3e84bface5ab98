#include "Content.h"

#include <cctype>

#include "RylSerial.h"

namespace {
RylSerial& ContentQueue() {
    static RylSerial queue("com.morvent.rylvane.content");
    return queue;
}
} // namespace

Content::Content(const Content& other) {
    ContentQueue().Sync([&] {
        text = other.text;
        rtf = other.rtf;
        rtfd = other.rtfd;
    });
}

Content& Content::operator=(const Content& other) {
    if (this != &other)
        ContentQueue().Sync([&] {
            text = other.text;
            rtf = other.rtf;
            rtfd = other.rtfd;
        });
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
    return ContentQueue().Sync([&] { return !rtf.empty(); });
}

std::string Content::GetRTF() const {
    return ContentQueue().Sync([&] { return rtf; });
}

void Content::SetRTF(const std::string& r) {
    ContentQueue().Sync([&] { rtf = r; });
}

bool Content::HasRTFD() const {
    return ContentQueue().Sync([&] { return !rtfd.empty(); });
}

std::string Content::GetRTFD() const {
    return ContentQueue().Sync([&] { return rtfd; });
}

void Content::SetRTFD(const std::string& r) {
    ContentQueue().Sync([&] { rtfd = r; });
}

void Content::SetText(std::string&& t) {
    ContentQueue().Sync([&] { text = std::move(t); });
}

void Content::SetRTF(std::string&& r) {
    ContentQueue().Sync([&] { rtf = std::move(r); });
}

void Content::SetRTFD(std::string&& r) {
    ContentQueue().Sync([&] { rtfd = std::move(r); });
}
