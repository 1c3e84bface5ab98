#pragma once
// Text links grouped by their anchor: a cluster is one span of the source's
// text with the one or more links anchored on it.
#include <string>
#include <vector>

#include "LinkBundle.h"

class HTMLMarkup;
class Link;
class Node;

class LinkCluster {
public:
    LinkCluster(int start, int end) : start(start), end(end) {}
    int Start() const { return start; }
    int End() const { return end; }
    const std::vector<const Link*>& Links() const { return links; }
    void AddLink(const Link* link) { links.push_back(link); }
    // The first link leads to a URL rather than to a note.
    bool IsWebLink() const;
    // Where the anchor leads: the first link's URL for a web link, else the
    // export's address of its destination ("" when it has none).
    std::string URL(const HTMLMarkup& markup) const;
    // The ` class="C" `, ` title="T"` and ` target="G"` parts of the first
    // link, each only when not empty.
    std::string Attributes() const;
    // The opening anchor: `<a href="U"`, the parts, ">"; "" without an address.
    std::string ToHTML(const HTMLMarkup& markup) const;

private:
    int start;
    int end;
    std::vector<const Link*> links;
};

class LinkClusters : public std::vector<LinkCluster> {
public:
    // The text links of `bundle` that start at the note (or its original),
    // grouped by span, in text order. Spans are clipped to `length`; a span
    // overlapping an earlier one is left out, since anchors cannot nest.
    void FormFrom(const LinkBundle& bundle, const Node* note, int length);
    // Marks each cluster through the markup's code generator.
    void DoMarkup(HTMLMarkup& markup, class CodeGenerator& generator) const;
};
