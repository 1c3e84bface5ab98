#include "HTMLMarkupParagraph.h"

#include <algorithm>

#include "HTMLMarkup.h"

namespace {

bool IsBlank(char16_t c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == 0xA0 || c == '\f' || c == '\v'; }

char16_t Lower(char16_t c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c; }

bool StartsWithNoCase(std::u16string_view text, size_t i, std::u16string_view prefix) {
    if (text.size() - i < prefix.size())
        return false;
    for (size_t k = 0; k < prefix.size(); ++k)
        if (Lower(text[i + k]) != Lower(prefix[k]))
            return false;
    return true;
}

bool EndsWith(std::u16string_view text, std::u16string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

bool IsLetter(char16_t c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

HTMLMarkupParagraph::HTMLMarkupParagraph(int start, int end, std::u16string_view text, bool preformatted)
    : start(start), end(end), text(text), preformatted(preformatted) {}

void HTMLMarkupParagraph::FindListLevel(bool enabled, int maxLevel) {
    level = 0;
    listCharacter = 0;
    if (!enabled)
        return;
    while (static_cast<size_t>(level) < text.size() && IsListCharacter(text[level]))
        ++level;
    if (level > 0)
        listCharacter = text[0];
    (void)maxLevel;
}

int HTMLMarkupParagraph::EndOfItem() const {
    const HTMLMarkupParagraph* last = this;
    while (!last->children.empty())
        last = last->children.back().get();
    return std::max(end, last->end);
}

std::u16string_view HTMLMarkupParagraph::Trimmed() const {
    std::u16string_view view(text);
    size_t first = 0;
    while (first < view.size() && IsBlank(view[first]))
        ++first;
    size_t last = view.size();
    while (last > first && IsBlank(view[last - 1]))
        --last;
    return view.substr(first, last - first);
}

bool HTMLMarkupParagraph::IsHTMLMarkup() const {
    std::u16string_view t = Trimmed();
    return !t.empty() && t.front() == '<' && t.back() == '>';
}

bool HTMLMarkupParagraph::IsMarkup() const {
    std::u16string_view t = Trimmed();
    return t.size() >= 4 && t[0] == '^' && IsLetter(t[1]) && t.back() == '^';
}

bool HTMLMarkupParagraph::IsMacro(const std::vector<std::u16string>& openings) const {
    std::u16string_view t = Trimmed();
    if (t.size() < 4)
        return false;
    if (t.back() != ')' && !EndsWith(t, u")^"))
        return false;
    for (const std::u16string& opening : openings)
        if (opening.size() >= 3 && t.substr(0, 3) == std::u16string_view(opening).substr(0, 3))
            return true;
    return false;
}

size_t HTMLMarkupParagraphList::EatWhitespace(std::u16string_view text, size_t i) {
    while (i < text.size() && IsBlank(text[i]))
        ++i;
    return i;
}

void HTMLMarkupParagraphList::FromText(std::u16string_view text) {
    clear();
    size_t i = EatWhitespace(text, 0);
    while (i < text.size()) {
        size_t start = i;
        bool inPre = false;
        bool sawPre = false;
        size_t j = i;
        for (; j < text.size(); ++j) {
            char16_t c = text[j];
            if (c == '<') {
                if (!inPre && StartsWithNoCase(text, j, u"<pre")) {
                    inPre = true;
                    sawPre = true;
                } else if (inPre && StartsWithNoCase(text, j, u"</pre")) {
                    inPre = false;
                }
            } else if ((c == '\n' || c == '\r') && !inPre) {
                break;
            }
        }
        size_t end = j;
        while (end > start && IsBlank(text[end - 1]))
            --end;
        push_back(std::make_unique<HTMLMarkupParagraph>(static_cast<int>(start), static_cast<int>(end),
                                                        text.substr(start, end - start), sawPre));
        i = EatWhitespace(text, j);
    }
}

void HTMLMarkupParagraphList::FindListLevels(bool enabled, int maxLevel) {
    for (auto& paragraph : *this)
        paragraph->FindListLevel(enabled && !paragraph->IsPreformatted(), maxLevel);
}

void HTMLMarkupParagraphList::Assemble() {
    std::vector<std::unique_ptr<HTMLMarkupParagraph>> flat;
    flat.swap(*this);
    // The open items, outermost first, with the level each nests at.
    std::vector<std::pair<HTMLMarkupParagraph*, int>> open;
    for (auto& paragraph : flat) {
        int level = std::min(paragraph->ListLevel(), HTMLMarkup::kMaxListLevel);
        if (level == 0) {
            open.clear();
            push_back(std::move(paragraph));
            continue;
        }
        while (!open.empty() && open.back().second >= level)
            open.pop_back();
        HTMLMarkupParagraph* item = paragraph.get();
        if (open.empty())
            push_back(std::move(paragraph));
        else
            open.back().first->Children().push_back(std::move(paragraph));
        open.emplace_back(item, level);
    }
}

void HTMLMarkupParagraphList::ListMarkup(HTMLMarkup& markup, const std::vector<const HTMLMarkupParagraph*>& items) {
    size_t i = 0;
    while (i < items.size()) {
        // One list: the following items of the same kind.
        size_t j = i;
        bool ordered = items[i]->IsOrdered();
        while (j < items.size() && items[j]->IsOrdered() == ordered)
            ++j;
        for (size_t k = i; k < j; ++k) {
            const HTMLMarkupParagraph* item = items[k];
            if (!item->Children().empty()) {
                std::vector<const HTMLMarkupParagraph*> children;
                for (const auto& child : item->Children())
                    children.push_back(child.get());
                ListMarkup(markup, children);
            }
            markup.AddListItem(item->Start(), item->EndOfItem(), item->ListLevel(), ordered);
        }
        markup.AddList(items[i]->Start(), items[j - 1]->EndOfItem(), items[i]->ListCharacter());
        i = j;
    }
}

void HTMLMarkupParagraphList::AddTo(HTMLMarkup& markup) const {
    size_t i = 0;
    while (i < size()) {
        const HTMLMarkupParagraph& paragraph = *at(i);
        if (paragraph.ListLevel() > 0) {
            std::vector<const HTMLMarkupParagraph*> items;
            for (; i < size() && at(i)->ListLevel() > 0; ++i)
                items.push_back(at(i).get());
            ListMarkup(markup, items);
            continue;
        }
        if (!paragraph.IsPreformatted() && !paragraph.IsHTMLMarkup() && !paragraph.IsMarkup() &&
            !paragraph.IsMacro(markup.MacroOpenings()))
            markup.ParagraphMarkup(paragraph, static_cast<int>(i));
        ++i;
    }
}
