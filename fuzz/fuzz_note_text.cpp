// Turns bytes into a note's text (read as RTF when they look like RTF, else
// as plain text) and the text into HTML and Markdown, with text links and a
// cut taken from the bytes. Every opening string of the note must be matched
// by its closing string, and the same text must always give the same code.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "HTMLMarkup.h"
#include "Hypertext.h"
#include "Link.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "RylCommonMark.h"

namespace {

class FuzzHost : public HTMLMarkupHost {
public:
    bool HasTextLinks() const override { return true; }
    bool LinkIndexEntry(const Node*, LinkBundle& found) const override {
        found = links;
        return true;
    }
    std::string LinkURLFor(const Node* target, const Node*) const override { return target->Name() + ".html"; }
    std::string ImageFileName(const Node*, int index) const override { return "image" + std::to_string(index) + ".png"; }
    void WriteImageFile(const Node*, int, const std::string&, const std::string&) const override {}
    std::vector<std::string> MacroOpenings() const override { return {"^do("}; }

    LinkBundle links;
};

struct Fixture {
    Fixture() {
        note = NodeMaker(&doc).MakeNode("Fuzz", nullptr, nullptr, 0, 0);
        other = NodeMaker(&doc).MakeNode("Other", nullptr, note, 0, 0);
        // Every opening string is \x01 and every closing one \x02, so that
        // their balance can be counted in the output.
        for (const char* name : {"HTMLBoldStart", "HTMLItalicStart", "HTMLUnderlineStart", "HTMLStrikeStart",
                                 "HTMLExportBefore", "HTMLOrderedListStart", "HTMLListStart", "HTMLListItemStart",
                                 "HTMLOrderedListItemStart", "HTMLIndentedParagraphStart", "HTMLFirstParagraphStart",
                                 "HTMLParagraphStart", "HTMLImageStart", "HTMLCodeStart"})
            note->Set(name, "\x01");
        for (const char* name : {"HTMLBoldEnd", "HTMLItalicEnd", "HTMLUnderlineEnd", "HTMLStrikeEnd",
                                 "HTMLExportAfter", "HTMLOrderedListEnd", "HTMLListEnd", "HTMLListItemEnd",
                                 "HTMLOrderedListItemEnd", "HTMLIndentedParagraphEnd", "HTMLFirstParagraphEnd",
                                 "HTMLParagraphEnd", "HTMLImageEnd", "HTMLCodeEnd"})
            note->Set(name, "\x02");
        note->Set("CodeFont", "Courier");
    }
    Hypertext doc;
    Node* note = nullptr;
    Node* other = nullptr;
};

void CheckBalanced(const std::string& html) {
    long depth = 0;
    for (char c : html) {
        if (c == '\x01')
            ++depth;
        else if (c == '\x02' && --depth < 0)
            std::abort();
    }
    if (depth != 0)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Fixture fixture;
    if (size < 4)
        return 0;
    // Four bytes of settings: the cut, a link's span, and the entity flag.
    long limit = data[0] % 4 == 0 ? data[0] : 0;
    int linkStart = data[1];
    unsigned linkLength = data[2] % 16;
    bool entities = data[3] & 1;
    std::string_view bytes(reinterpret_cast<const char*>(data + 4), size - 4);

    StyledText styled = bytes.substr(0, 5) == "{\\rtf" ? StyledText::FromRTF(bytes) : StyledText(bytes);
    NodeText(fixture.note).SetRTFD(styled);
    fixture.note->Set("HTMLEntities", entities ? "true" : "false");

    FuzzHost host;
    LinkRecord toOther(fixture.note, linkStart, linkLength);
    toOther.destNode = fixture.other;
    LinkRecord web(fixture.note, linkStart / 2, linkLength + 3);
    web.url = "https://example.org/";
    Link* links[] = {toOther.MakeLink(), web.MakeLink()};
    for (Link* link : links)
        if (link)
            host.links.push_back(link);

    std::string html = HTMLMarkup(fixture.note, fixture.note, &host, limit).ToString();
    std::string markdown = HTMLMarkup(fixture.note, fixture.note, &host, limit, true).ToString();
    RylCommonMark::Translate(markdown);

    std::u16string text = styled.Unicode();
    if (text.find(u'\x01') == std::u16string::npos && text.find(u'\x02') == std::u16string::npos)
        CheckBalanced(html);
    if (HTMLMarkup(fixture.note, fixture.note, &host, limit).ToString() != html)
        std::abort();

    for (Link* link : links)
        if (link)
            link->Delete();
    return 0;
}
