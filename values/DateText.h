#pragma once
// DateText: a small reader over a text, with the habits of a C++ input
// stream: formatted reads skip white space first, a failed read puts the
// reader into failure and every later read fails too, and a failed number
// read stores 0. It is used by the date and interval readers, which are
// written in terms of "read an integer, then a character, then a word".
#include <string>

class DateText {
public:
    explicit DateText(std::string text) : text(std::move(text)) {}

    bool Fail() const { return failed; }
    bool AtEnd() const { return position >= text.size(); }
    size_t Position() const { return position; }
    std::string Rest() const { return position < text.size() ? text.substr(position) : std::string(); }

    // Skips white space, then reads an optionally signed decimal integer.
    // Overflow stores the limit (LONG_MAX or -LONG_MAX) and fails, as a
    // stream does.
    bool ReadLong(long& value);
    // Skips white space, then reads a number in decimal notation.
    bool ReadDouble(double& value);
    // Skips white space, then reads one character.
    bool ReadChar(char& value);
    // Skips white space, then reads up to the next white space.
    bool ReadWord(std::string& value);
    // The next character without skipping; -1 at the end or in failure.
    int Peek() const;
    // Takes the next character without skipping; -1 at the end.
    int Get();
    // Steps back over the last character taken.
    void PutBack();
    void SkipSpace();

    static bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }
    static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
    static bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
    static std::string Trim(const std::string& text);
    // Trims white space and then one pair of surrounding double quotes.
    static std::string TrimQuotes(const std::string& text);

private:
    std::string text;
    size_t position = 0;
    bool failed = false;
};
