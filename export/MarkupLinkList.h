#pragma once
// Elements that write anchors: a link to one note, the way up, siblings,
// children, the links of a note and similar notes.
#include "LinkBundle.h"
#include "MarkupExportElement.h"

// ^linkto(note, text, class)^.
class MarkupLinkTo : public MarkupExportElement {
public:
    using MarkupExportElement::MarkupExportElement;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupAncestors : public MarkupList {
public:
    using MarkupList::MarkupList;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupSiblings : public MarkupList {
public:
    using MarkupList::MarkupList;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
};

class MarkupChildLinks : public MarkupList {
public:
    using MarkupList::MarkupList;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;

private:
    NodeVector Children(Node* node) const;
};

// The link lists: prefix, item prefix, item suffix, suffix, path.
class MarkupLinkList : public MarkupList {
public:
    enum Kind { kBasic, kInbound, kInboundText, kOutboundText, kInboundBasic, kOutboundBasic, kWeb };
    MarkupLinkList(std::string name, std::string arguments, Kind kind);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    bool Eval(Node* node, ExportTemplate* exportTemplate) override;
    LinkBundle GetLinks(Node* node, ExportTemplate* exportTemplate);

private:
    bool Inbound() const { return kind == kInbound || kind == kInboundText || kind == kInboundBasic; }
    Kind kind;
};

// ^similarto(note, count, start, item prefix, item suffix, end)^.
class MarkupSimilar : public MarkupNodeRelative {
public:
    using MarkupNodeRelative::MarkupNodeRelative;
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
};
