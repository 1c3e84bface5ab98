#include "CodeGenerator.h"

#include "HTMLMarkup.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkCluster.h"
#include "Node.h"
#include "Props.h"

const char* const CodeGenerator::kAttributeNames[kPairCount][2] = {
    {"HTMLBoldStart", "HTMLBoldEnd"},
    {"HTMLItalicStart", "HTMLItalicEnd"},
    {"HTMLUnderlineStart", "HTMLUnderlineEnd"},
    {"HTMLStrikeStart", "HTMLStrikeEnd"},
    {"HTMLExportBefore", "HTMLExportAfter"},
    {"HTMLOrderedListStart", "HTMLOrderedListEnd"},
    {"HTMLListStart", "HTMLListEnd"},
    {"HTMLListItemStart", "HTMLListItemEnd"},
    {"HTMLOrderedListItemStart", "HTMLOrderedListItemEnd"},
    {"HTMLIndentedParagraphStart", "HTMLIndentedParagraphEnd"},
    {"HTMLFirstParagraphStart", "HTMLFirstParagraphEnd"},
    {"HTMLParagraphStart", "HTMLParagraphEnd"},
    {"HTMLImageStart", "HTMLImageEnd"},
    {"HTMLCodeStart", "HTMLCodeEnd"},
};

void CodeGenerator::Lookup::Refresh(const Node* note) {
    const Hypertext* document = note ? note->GetHypertext() : nullptr;
    const Props* props = document ? document->AttributeStorage() : nullptr;
    if (!props) {
        stamp = 0;
        return;
    }
    if (stamp == props->Stamp() && stamp != 0)
        return;
    stamp = props->Stamp();
    for (int pair = 0; pair < kPairCount; ++pair)
        for (int side = 0; side < 2; ++side)
            attributes[pair][side] = props->GetAttribute(kAttributeNames[pair][side]);
}

CodeGenerator::CodeGenerator(const Node* n, const Lookup* lookup) : note(n) {
    if (!note)
        return;
    bool looked = lookup && lookup->stamp != 0;
    for (int pair = 0; pair < kPairCount; ++pair)
        for (int side = 0; side < 2; ++side)
            strings[pair][side] = looked ? note->GetString(lookup->attributes[pair][side])
                                         : note->GetString(kAttributeNames[pair][side]);
}

void HTMLCodeGenerator::Italic(HTMLMarkup& markup, int start, int end) {
    markup.Insert(start, end, Start(kItalic), End(kItalic));
}

void HTMLCodeGenerator::Bold(HTMLMarkup& markup, int start, int end) {
    markup.Insert(start, end, Start(kBold), End(kBold));
}

void HTMLCodeGenerator::Underline(HTMLMarkup& markup, int start, int end) {
    markup.Insert(start, end, Start(kUnderline), End(kUnderline));
}

void HTMLCodeGenerator::Strike(HTMLMarkup& markup, int start, int end) {
    markup.Insert(start, end, Start(kStrike), End(kStrike));
}

void HTMLCodeGenerator::CodeSpan(HTMLMarkup& markup, int start, int end) {
    markup.Insert(start, end, Start(kCode), End(kCode));
}

void HTMLCodeGenerator::Finish(HTMLMarkup& markup) {
    if (Start(kWholeText).empty() && End(kWholeText).empty())
        return;
    markup.Enclose(0, markup.End(), Start(kWholeText), End(kWholeText));
}

void HTMLCodeGenerator::OrderedList(HTMLMarkup& markup, int start, int end) {
    markup.Enclose(start, end, Start(kOrderedList), End(kOrderedList));
}

void HTMLCodeGenerator::List(HTMLMarkup& markup, int start, int end) {
    markup.Enclose(start, end, Start(kList), End(kList));
}

void HTMLCodeGenerator::OrderedListItem(HTMLMarkup& markup, int start, int end, int skip) {
    markup.Enclose(start, end, Start(kOrderedItem), End(kOrderedItem), skip);
}

void HTMLCodeGenerator::ListItem(HTMLMarkup& markup, int start, int end, int skip) {
    markup.Enclose(start, end, Start(kListItem), End(kListItem), skip);
}

void HTMLCodeGenerator::IndentedParagraph(HTMLMarkup& markup, int start, int end) {
    markup.Enclose(start, end, Start(kIndentedParagraph), End(kIndentedParagraph));
}

void HTMLCodeGenerator::FirstParagraph(HTMLMarkup& markup, int start, int end) {
    markup.Enclose(start, end, Start(kFirstParagraph), End(kFirstParagraph));
}

void HTMLCodeGenerator::Paragraph(HTMLMarkup& markup, int start, int end) {
    markup.Enclose(start, end, Start(kParagraph), End(kParagraph));
}

void HTMLCodeGenerator::Image(HTMLMarkup& markup, int position, const std::string& fileName) {
    std::string text = "\n" + Start(kImage) + " src=\"" + fileName + "\" " + " alt=\"\" " + End(kImage) + "\n";
    HTMLMarkupTag tag(text, position, true);
    tag.Skip(1);   // the attachment character
    markup.Add(tag, true);
}

bool HTMLCodeGenerator::ListsAreEnabled() const {
    return !Start(kList).empty() || !Start(kOrderedList).empty() || !Start(kListItem).empty() ||
           !Start(kOrderedItem).empty();
}

std::string HTMLCodeGenerator::ConstructWebLinkTag(const std::string& url, const LinkCluster* cluster) {
    return "<a href=\"" + url + "\"" + (cluster ? cluster->Attributes() : std::string()) + ">";
}

void HTMLCodeGenerator::WebLink(HTMLMarkup& markup, int start, int end, const std::string& url, const LinkCluster* cluster) {
    if (url.empty())
        return;
    markup.Insert(start, end, ConstructWebLinkTag(url, cluster), "</a>");
}

void HTMLCodeGenerator::Link(HTMLMarkup& markup, const LinkCluster& cluster) {
    std::string open = cluster.ToHTML(markup);
    if (open.empty())
        return;
    markup.Insert(cluster.Start(), cluster.End(), open, "</a>");
}

void MarkdownCodeGenerator::WebLink(HTMLMarkup& markup, int start, int end, const std::string& url, const LinkCluster* cluster) {
    if (url.empty())
        return;
    markup.Insert(start, end, "[", "](" + url + ") ");
}

void MarkdownCodeGenerator::Link(HTMLMarkup& markup, const LinkCluster& cluster) {
    if (cluster.Links().empty())
        return;
    const Node* dest = cluster.Links().front()->DestNode();
    if (!dest)
        return;
    std::string path = dest->GetString("Path");
    if (!path.empty() && path.front() == '/')
        path.erase(0, 1);
    markup.Insert(cluster.Start(), cluster.End(), "[", "](/" + path + ") ");
}
