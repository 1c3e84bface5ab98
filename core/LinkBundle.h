#pragma once
// A list of links: the answer to every link query. Filters give copies.
#include <functional>
#include <string>
#include <vector>

#include "LinkStyle.h"

class Link;
class Node;

class LinkBundle : public std::vector<Link*> {
public:
    using std::vector<Link*>::vector;

    LinkBundle OmitHidden() const;
    LinkBundle OmitPrototypes() const;
    // Leaves out links whose type is not visible in the document.
    LinkBundle OmitInvisible() const;
    LinkBundle OmitWebLinks() const;
    // Links whose guard is empty or satisfied by `value`.
    LinkBundle WithGuardFieldSatisfied(const std::string& value) const;
    // The first link from each source.
    LinkBundle WithUniqueSources() const;
    // Links whose type is one of the ";"-separated names; "" or "*" is any.
    LinkBundle OnPath(const std::string& types) const;
    LinkBundle NotOnPath(const std::string& types) const;
    LinkBundle LinksOnPath(const std::string& types, bool onPath) const { return onPath ? OnPath(types) : NotOnPath(types); }

    // Links that start or end at `end`.
    LinkBundle ListLinks(const Node* end) const;
    LinkBundle ListLinksFrom(const Node* end) const;
    LinkBundle ListLinksTo(const Node* end) const;
    // Neither text nor web links.
    LinkBundle ListBasicLinksFrom(const Node* end) const;
    LinkBundle ListBasicLinksTo(const Node* end) const;
    LinkBundle ListWebLinksFrom(const Node* end) const;
    LinkBundle ListTextLinksFrom(const Node* end) const;
    LinkBundle ListTextLinksTo(const Node* end) const;

    void Apply(const std::function<void(Link*)>& block) const;
    LinkBundle Collect(const std::function<bool(const Link*)>& accept) const;
    bool Every(const std::function<bool(const Link*)>& test) const;
    bool Any(const std::function<bool(const Link*)>& test) const;
    Link* First(const std::function<bool(const Link*)>& test) const;
    // Position in the bundle, or -1.
    long IndexOf(const Link* link) const;
    void Insert(Link* link, size_t position);
    void Remove(const Link* link);
    void Add(Link* link);
    // Takes every link out of its document and destroys it.
    void DeleteLinks() const;
    // Copies of `source`'s outbound links that start from `copy` instead.
    static void CloneLinksFrom(const Node* source, Node* copy, bool withPrototypes);
    // The names of the destinations of the links anchored in `span`, ";" between.
    std::string ToString(const TextSpan& span) const;
};
