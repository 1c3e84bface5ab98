#pragma once
// The paragraphs of a note's text, with the lists they form.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class HTMLMarkup;

class HTMLMarkupParagraph {
public:
    static constexpr char16_t kListCharacter = '*';
    static constexpr char16_t kOrderedListCharacter = '#';
    static constexpr char16_t kBullet = 0x2022;
    static char16_t GetListCharacter() { return kListCharacter; }
    static char16_t GetOrderedListCharacter() { return kOrderedListCharacter; }
    static bool IsListCharacter(char16_t c) { return c == kListCharacter || c == kOrderedListCharacter || c == kBullet; }

    HTMLMarkupParagraph(int start, int end, std::u16string_view text, bool preformatted);

    int Start() const { return start; }
    int End() const { return end; }
    void SetEnd(int e) { end = e; }
    const std::u16string& Text() const { return text; }
    bool IsPreformatted() const { return preformatted; }
    // The count of leading list characters (0 for an ordinary paragraph);
    // the first of them is the ListCharacter.
    int ListLevel() const { return level; }
    char16_t ListCharacter() const { return listCharacter; }
    bool IsOrdered() const { return listCharacter == kOrderedListCharacter; }
    // Counts the leading list characters; with `enabled` false the
    // paragraph is no list item.
    void FindListLevel(bool enabled, int maxLevel);
    // The end of the paragraph and of all its nested items.
    int EndOfItem() const;

    // The paragraph's text, from its first to its last non-blank, is an HTML
    // element: "<" ... ">".
    bool IsHTMLMarkup() const;
    // At least 4 characters: "^", a letter, and ")^" or "^" at the end.
    bool IsMarkup() const;
    // At least 4 characters, the first three those of a macro opening, and
    // ")" or ")^" at the end.
    bool IsMacro(const std::vector<std::u16string>& openings) const;

    // Nested items of a list item.
    std::vector<std::unique_ptr<HTMLMarkupParagraph>>& Children() { return children; }
    const std::vector<std::unique_ptr<HTMLMarkupParagraph>>& Children() const { return children; }

private:
    std::u16string_view Trimmed() const;

    int start;
    int end;
    std::u16string text;
    bool preformatted;
    int level = 0;
    char16_t listCharacter = 0;
    std::vector<std::unique_ptr<HTMLMarkupParagraph>> children;
};

class HTMLMarkupParagraphList : public std::vector<std::unique_ptr<HTMLMarkupParagraph>> {
public:
    // Splits the text at newlines and carriage returns, white space between
    // paragraphs skipped; a stretch inside "<pre" ... "</pre" is not split and
    // is one preformatted paragraph.
    void FromText(std::u16string_view text);
    // Counts the list levels of all paragraphs.
    void FindListLevels(bool enabled, int maxLevel);
    // Nests list items by level: an item deeper than the one before it
    // becomes a child of that one.
    void Assemble();
    // Places the tags of every paragraph and list.
    void AddTo(HTMLMarkup& markup) const;

private:
    static size_t EatWhitespace(std::u16string_view text, size_t i);
    // The lists of a run of sibling items, nested items first.
    static void ListMarkup(HTMLMarkup& markup, const std::vector<const HTMLMarkupParagraph*>& items);
};
