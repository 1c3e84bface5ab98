#include "MarkupText.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <random>

#include "CommandTrust.h"
#include "ExportTemplate.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"

MarkupText::MarkupText(std::string name, std::string arguments, bool paragraphs)
    : MarkupExportElement(std::move(name), std::move(arguments)), paragraphs(paragraphs) {
    std::vector<std::string> items;
    for (size_t i = 0; i < ArgCount(); ++i)
        items.push_back(TrimQuotes(Arg(i)));
    // One argument beginning with a digit: this note, that many words.
    if (items.size() == 1 && !items[0].empty() && std::isdigit(static_cast<unsigned char>(items[0][0])))
        items = {"this", items[0]};
    for (const std::string& item : items)
        if (item == "plain")
            plain = true;
    if (!items.empty() && items[0] != "plain")
        noteName = items[0];
    if (items.size() > 1 && items[1] != "plain")
        words = std::atol(items[1].c_str());
}

Node* MarkupText::Target(Node* node, ExportTemplate* exportTemplate) {
    if (noteName.empty() || noteName == "this")
        return node;
    return GetNodeNamed(node, noteName, exportTemplate, true);
}

bool MarkupText::IsWordDelimiter(char c, bool inDelimiter) const {
    if (!paragraphs || inDelimiter)
        return std::isspace(static_cast<unsigned char>(c)) != 0;
    return c == '\r' || c == '\n';
}

size_t MarkupText::FindFirstWordsOf(const std::string& text, long n) const {
    if (n <= 0)
        return text.size();
    bool inDelimiter = true;
    long seen = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        bool delimiter = IsWordDelimiter(text[i], inDelimiter);
        if (delimiter && !inDelimiter && ++seen == n)
            return i;
        inDelimiter = delimiter;
    }
    return text.size();
}

std::string MarkupText::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    if (!exportTemplate)
        return std::string();
    if (!node)
        return exportTemplate->DoTextMarkup(nullptr, 0);
    Node* target = Target(node, exportTemplate);
    if (!target)
        return std::string();
    if (exportTemplate->ExportingTextFrom(target))
        return "^text(" + target->Name() + "," + exportTemplate->GetName() + "):: text tries to include itself ";
    bool noMarkup = target->GetAttribute("HTMLMarkupText") && !target->GetBoolean("HTMLMarkupText");
    bool markdown = target->GetBoolean("HTMLMarkdown");
    bool verbatim = noMarkup || NodeFacade(target).IsTemplate() || plain;
    // A preview command is an outside program that turns the text into the
    // page's text. It runs only when the user allowed commands; a refused one
    // is reported (once) and the text is exported as if there were none.
    std::string command = target->GetString("HTMLPreviewCommand");
    if (!command.empty() && !CommandTrust::Allowed()) {
        CommandTrust::Run(target, command, std::string(), "~");
        command.clear();
    }
    std::string text = NodeText(target).GetText();
    if (!markdown && !verbatim && command.empty()) {
        int limit = words > 0 ? static_cast<int>(FindFirstWordsOf(text, words)) : 0;
        return exportTemplate->DoTextMarkup(target, limit);
    }
    std::string source = verbatim ? text : exportTemplate->DoTextMarkup(target, 0);
    if (!command.empty())
        return CommandTrust::Run(target, command, exportTemplate->ProcessExportElements(source, target), "~");
    if (words > 0)
        source.resize(FindFirstWordsOf(source, words));
    return EntityFilter(source, target, exportTemplate);
}

bool MarkupText::Eval(Node* node, ExportTemplate* exportTemplate) {
    Node* target = node ? Target(node, exportTemplate) : nullptr;
    return target && NodeText(target).HasText();
}

std::string MarkupRandomLine::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = GetNode(node, exportTemplate, false);
    if (!target)
        return std::string();
    std::string text = NodeText(target).GetText();
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\r', start);
        lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        start = end == std::string::npos ? text.size() : end + 1;
    }
    if (lines.empty())
        return std::string();
    static std::mt19937 generator(std::random_device{}());
    std::shuffle(lines.begin(), lines.end(), generator);
    return lines.front();
}
