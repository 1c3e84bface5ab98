#pragma once
// Links between notes. A link goes from a source note to a destination note,
// or, for a web link, to a URL. A text link is anchored on a span of the
// source's text. A prototype link ties a note to its prototype.
//
// All links of a document live in its LinkManager, which owns them.
#include <cstdint>
#include <map>
#include <string>

#include "LinkStyle.h"

class Hypertext;
class LinkManager;
class Node;
class XMLItem;
class XMLWriter;

// Maps note ids to the ids written in their place (when writing a clip).
using LinkIDMap = std::map<uint32_t, uint32_t>;

class Link {
public:
    virtual ~Link() = default;

    // Destroys the link; the caller has taken it out of its manager.
    virtual void Delete() { delete this; }
    // A `link` element. With `renumber`, note ids are written through it.
    virtual void ToXML(XMLWriter* writer) const { ToXML(writer, nullptr); }
    virtual void ToXML(XMLWriter* writer, const LinkIDMap* renumber) const;

    virtual bool StartsAt(const Node* end) const;
    virtual bool EndsAt(const Node* end) const;
    virtual bool SourceOrDestinationAreChildrenOf(const Node* parent) const;
    virtual bool SourceOrDestinationAreDescendantsOf(const Node* ancestor) const;

    virtual Node* SourceNode() const { return source; }
    virtual void SetSource(Node* n) { source = n; }
    virtual Node* DestNode() const { return dest; }
    virtual void SetDest(Node* n) { dest = n; }
    virtual void SetDestNode(Node* n) { dest = n; }

    // Anchored on a span of the source's text.
    virtual bool IsTextLink() const { return !sourceSpan.IsEmpty(); }
    // Leads to a URL rather than to a note.
    virtual bool IsWebLink() const { return dest == nullptr && !url.empty(); }
    // A text link whose anchor holds this position.
    virtual bool IsTextLinkFor(int position) const { return IsTextLink() && sourceSpan.IsInSpan(position); }
    // A link anchored on the picture at this index of the source's text.
    virtual bool IsGraphicLinkFor(int pictureIndex) const { return false; }
    // One of its ends is hidden (deleted for the user), or it is drawn hidden.
    virtual bool IsHidden() const;
    // Whether the guard allows following the link; an empty guard always does.
    virtual bool GuardSatisfied(const std::string& value) const;

    // The link type's name.
    virtual const std::string& Name() const { return name; }
    virtual std::string Label() const;
    virtual const std::string& Guard() const { return guard; }
    virtual const std::string& URL() const { return url; }
    virtual std::string GetNSURL() const { return url; }
    virtual void SetURL(const std::string& u) { url = u; }
    virtual const std::string& Target() const { return target; }
    virtual void SetTarget(const std::string& t) { target = t; }
    virtual const std::string& Title() const { return title; }
    virtual void SetTitle(const std::string& t) { title = t; }
    // The anchored text of the source, for a text link.
    virtual std::string AnchorText() const;
    virtual bool IsPrototype() const;
    virtual const std::string& Comment() const { return comment; }

    // Plain data of the link.
    void SetName(const std::string& n) { name = n; }
    void SetGuard(const std::string& g) { guard = g; }
    void SetComment(const std::string& c) { comment = c; }
    const std::string& Class() const { return linkClass; }
    void SetClass(const std::string& c) { linkClass = c; }
    const TextSpan& SourceSpan() const { return sourceSpan; }
    void SetSourceSpan(const TextSpan& s) { sourceSpan = s; }
    const TextSpan& DestSpan() const { return destSpan; }
    void SetDestSpan(const TextSpan& s) { destSpan = s; }
    LinkStyle Style() const { return style; }
    void SetStyle(LinkStyle s) { style = s; }
    int ArrowType() const { return arrowType; }
    void SetArrowType(int a) { arrowType = a; }
    // "normal" means the link type's colour.
    const std::string& Color() const { return color; }
    void SetColor(const std::string& c) { color = c.empty() ? "normal" : c; }
    double LabelX() const { return labelX; }
    double LabelY() const { return labelY; }
    void SetLabelPosition(double x, double y) {
        labelX = x;
        labelY = y;
    }
    double ControlX() const { return controlX; }
    double ControlY() const { return controlY; }
    void SetControlPoint(double x, double y) {
        controlX = x;
        controlY = y;
    }
    double Width() const { return width; }
    void SetWidth(double w) { width = w; }
    double SourcePad() const { return sourcePad; }
    double DestPad() const { return destPad; }
    void SetPads(double s, double d) {
        sourcePad = s;
        destPad = d;
    }

    // Same ends and same data (used to compare documents).
    bool SameAs(const Link& other) const;

protected:
    Link() = default;
    Link(const Link&) = default;

    Node* source = nullptr;
    Node* dest = nullptr;
    std::string name;
    TextSpan sourceSpan;
    TextSpan destSpan;
    LinkStyle style;
    int arrowType = 0;
    double labelX = 0, labelY = 0;
    double controlX = 0, controlY = 0;
    double width = 0;
    double sourcePad = 0, destPad = 0;
    std::string color = "normal";
    std::string url;
    std::string title;
    std::string linkClass;
    std::string target;
    std::string guard;
    std::string comment;

    friend class LinkRecord;
};

// The concrete link of a document.
class CLink : public Link {
public:
    CLink(Node* source, Node* dest, const std::string& type);
    CLink(const CLink& other) = default;
};

// A description of a link that may not exist yet, and the way links are
// read from a file.
class LinkRecord {
public:
    LinkRecord() = default;
    LinkRecord(Node* source, int start, int length);
    explicit LinkRecord(Node* source, Node* dest = nullptr, const std::string& type = std::string());
    explicit LinkRecord(const Link* link);

    // Reads a `link` element. Note ids stay as ids until CreateLink.
    static LinkRecord FromXML(const XMLItem* item);

    // Makes the link and adds it to the source's document. Answers null when
    // an end is missing, when the ends are in different documents, or when
    // the source cannot link.
    Link* CreateLink() const;
    // The link alone, added nowhere.
    Link* MakeLink() const;

    bool IsWebLink() const { return !destNode && !url.empty(); }
    bool IsTextLink() const { return !sourceSpan.IsEmpty(); }
    Node* SourceNode() const { return sourceNode; }
    Node* DestNode() const { return destNode; }
    void SetSourceNode(Node* n) { sourceNode = n; }
    void SetDestNode(Node* n) { destNode = n; }
    void SetStyle(LinkStyle s) { style = s; }
    Hypertext* GetLinkHolder() const;

    // The ends as read from a file, before they are resolved to notes.
    uint32_t sourceID = 0;
    std::string sourceCreator;
    uint32_t destID = 0;
    std::string destCreator;
    bool hasDest = false;

    Node* sourceNode = nullptr;
    Node* destNode = nullptr;
    std::string type;
    TextSpan sourceSpan;
    TextSpan destSpan;
    LinkStyle style;
    int arrowType = 0;
    double labelX = 0, labelY = 0;
    double controlX = 0, controlY = 0;
    double width = 0;
    double sourcePad = 0, destPad = 0;
    std::string color = "normal";
    std::string url;
    std::string title;
    std::string linkClass;
    std::string target;
    std::string guard;
    std::string comment;
};
