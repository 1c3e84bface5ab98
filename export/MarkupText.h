#pragma once
// Elements that write a note's text: whole, the first words or
// paragraphs, or one random line.
#include "MarkupExportElement.h"

// ^text(note, words, plain)^ and ^paragraphs(note, paragraphs, plain)^.
class MarkupText : public MarkupExportElement {
public:
    MarkupText(std::string name, std::string arguments, bool paragraphs);
    int Type() const override { return kMarkupText; }
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    // The length of the text up to the end of its n-th word (or paragraph),
    // or the whole size.
    size_t FindFirstWordsOf(const std::string& text, long n) const;

private:
    Node* Target(Node* node, ExportTemplate* exportTemplate);
    bool IsWordDelimiter(char c, bool inDelimiter) const;

    std::string noteName;
    long words = 0;
    bool plain = false;
    bool paragraphs;
};

class MarkupRandomLine : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};
