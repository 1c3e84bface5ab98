#pragma once
// What each construct of marked-up note text writes. The base writes
// nothing; HTMLCodeGenerator uses the note's HTML strings and
// MarkdownCodeGenerator writes Markdown links.
#include <array>
#include <cstdint>
#include <string>

class Attribute;
class HTMLMarkup;
class LinkCluster;
class Node;

class CodeGenerator {
public:
    // The 28 strings, in start and end pairs.
    enum Pair { kBold, kItalic, kUnderline, kStrike, kWholeText, kOrderedList, kList, kListItem, kOrderedItem,
                kIndentedParagraph, kFirstParagraph, kParagraph, kImage, kCode, kPairCount };
    static const char* const kAttributeNames[kPairCount][2];

    // The attributes of those names in one attribute table, for a host that
    // makes a generator for each of many notes.
    struct Lookup {
        // Looks the names up again when the table is another, or changed.
        void Refresh(const Node* note);
        uint64_t stamp = 0;
        std::array<std::array<const Attribute*, 2>, kPairCount> attributes{};
    };

    // Reads the strings of `note`, through `lookup` when given (refreshed
    // for the note's document).
    explicit CodeGenerator(const Node* note, const Lookup* lookup = nullptr);
    virtual ~CodeGenerator() = default;

    virtual void Italic(HTMLMarkup& markup, int start, int end) {}
    virtual void Bold(HTMLMarkup& markup, int start, int end) {}
    virtual void Underline(HTMLMarkup& markup, int start, int end) {}
    virtual void Strike(HTMLMarkup& markup, int start, int end) {}
    virtual void CodeSpan(HTMLMarkup& markup, int start, int end) {}
    virtual void Finish(HTMLMarkup& markup) {}
    virtual void OrderedList(HTMLMarkup& markup, int start, int end) {}
    virtual void List(HTMLMarkup& markup, int start, int end) {}
    // Items skip `skip` characters (the list characters) at their start.
    virtual void OrderedListItem(HTMLMarkup& markup, int start, int end, int skip) {}
    virtual void ListItem(HTMLMarkup& markup, int start, int end, int skip) {}
    virtual void IndentedParagraph(HTMLMarkup& markup, int start, int end) {}
    virtual void FirstParagraph(HTMLMarkup& markup, int start, int end) {}
    virtual void Paragraph(HTMLMarkup& markup, int start, int end) {}
    // A picture at `position`, written to `fileName`.
    virtual void Image(HTMLMarkup& markup, int position, const std::string& fileName) {}
    // A web link on [start, end); `cluster` is the text link it comes from, if any.
    virtual void WebLink(HTMLMarkup& markup, int start, int end, const std::string& url, const LinkCluster* cluster) {}
    // A text link to a note.
    virtual void Link(HTMLMarkup& markup, const LinkCluster& cluster) {}
    virtual bool ListsAreEnabled() const { return false; }

    const std::string& Start(Pair pair) const { return strings[pair][0]; }
    const std::string& End(Pair pair) const { return strings[pair][1]; }
    const Node* GetNode() const { return note; }

protected:
    const Node* note;
    std::array<std::array<std::string, 2>, kPairCount> strings;
};

class HTMLCodeGenerator : public CodeGenerator {
public:
    using CodeGenerator::CodeGenerator;
    void Italic(HTMLMarkup& markup, int start, int end) override;
    void Bold(HTMLMarkup& markup, int start, int end) override;
    void Underline(HTMLMarkup& markup, int start, int end) override;
    void Strike(HTMLMarkup& markup, int start, int end) override;
    void CodeSpan(HTMLMarkup& markup, int start, int end) override;
    void Finish(HTMLMarkup& markup) override;
    void OrderedList(HTMLMarkup& markup, int start, int end) override;
    void List(HTMLMarkup& markup, int start, int end) override;
    void OrderedListItem(HTMLMarkup& markup, int start, int end, int skip) override;
    void ListItem(HTMLMarkup& markup, int start, int end, int skip) override;
    void IndentedParagraph(HTMLMarkup& markup, int start, int end) override;
    void FirstParagraph(HTMLMarkup& markup, int start, int end) override;
    void Paragraph(HTMLMarkup& markup, int start, int end) override;
    void Image(HTMLMarkup& markup, int position, const std::string& fileName) override;
    void WebLink(HTMLMarkup& markup, int start, int end, const std::string& url, const LinkCluster* cluster) override;
    void Link(HTMLMarkup& markup, const LinkCluster& cluster) override;
    // Lists are marked while the note has list strings.
    bool ListsAreEnabled() const override;

    // `<a href="U"`, the cluster's class, title and target parts, ">".
    static std::string ConstructWebLinkTag(const std::string& url, const LinkCluster* cluster);
};

class MarkdownCodeGenerator : public CodeGenerator {
public:
    using CodeGenerator::CodeGenerator;
    // "[" text "](" URL ") ".
    void WebLink(HTMLMarkup& markup, int start, int end, const std::string& url, const LinkCluster* cluster) override;
    // "[" text "](/" path ") ", the path being the destination's.
    void Link(HTMLMarkup& markup, const LinkCluster& cluster) override;
};
