#include "Link.h"

#include "Hypertext.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "StyledText.h"
#include "XMLReader.h"
#include "XMLWriter.h"

// ---------------------------------------------------------------- Link

bool Link::StartsAt(const Node* end) const { return end && end == source; }

bool Link::EndsAt(const Node* end) const { return end && end == dest; }

bool Link::SourceOrDestinationAreChildrenOf(const Node* parent) const {
    return parent && ((source && source->Father() == parent) || (dest && dest->Father() == parent));
}

bool Link::SourceOrDestinationAreDescendantsOf(const Node* ancestor) const {
    return ancestor && ((source && source->IsDescendedFrom(ancestor)) || (dest && dest->IsDescendedFrom(ancestor)));
}

bool Link::IsHidden() const {
    return style.IsHidden() || (source && source->IsHidden()) || (dest && dest->IsHidden());
}

bool Link::GuardSatisfied(const std::string& value) const { return guard.empty() || guard == value; }

std::string Link::Label() const {
    Hypertext* h = source ? source->GetHypertext() : nullptr;
    const LinkTypes* types = h ? h->GetLinkTypes() : nullptr;
    const LinkType* type = types ? types->Find(name) : nullptr;
    if (type && !type->Label().empty())
        return type->Label();
    return name;
}

std::string Link::AnchorText() const {
    if (!source || !IsTextLink())
        return {};
    StyledText text(NodeText(source).GetText());
    return text.Substring(sourceSpan.start, static_cast<int>(sourceSpan.length)).Text();
}

bool Link::IsPrototype() const { return name == LinkType::kPrototype; }

bool Link::SameAs(const Link& o) const {
    auto sameEnd = [](const Node* a, const Node* b) {
        if (!a || !b)
            return a == b;
        return a->GetID().GetID() == b->GetID().GetID() && a->Creator() == b->Creator();
    };
    return sameEnd(source, o.source) && sameEnd(dest, o.dest) && name == o.name && sourceSpan == o.sourceSpan &&
           destSpan == o.destSpan && style == o.style && arrowType == o.arrowType && labelX == o.labelX &&
           labelY == o.labelY && controlX == o.controlX && controlY == o.controlY && width == o.width &&
           sourcePad == o.sourcePad && destPad == o.destPad && color == o.color && url == o.url &&
           title == o.title && linkClass == o.linkClass && target == o.target && guard == o.guard &&
           comment == o.comment;
}

void Link::ToXML(XMLWriter* w, const LinkIDMap* renumber) const {
    auto idOf = [renumber](const Node* n) -> unsigned long {
        uint32_t id = n ? n->GetID().GetID() : 0;
        if (renumber) {
            auto it = renumber->find(id);
            if (it != renumber->end())
                return it->second;
        }
        return id;
    };
    w->Open("link");
    w->Put("name", name);
    w->PutUnsigned("sourceid", idOf(source));
    w->Put("sourcecreator", source ? source->Creator() : std::string());
    w->PutLong("sstart", sourceSpan.start);
    w->PutUnsigned("slen", sourceSpan.length);
    w->PutLong("dstart", destSpan.start);
    w->PutUnsigned("dlen", destSpan.length);
    w->PutUnsigned("style", style.Bits());
    w->PutLong("arrowtype", arrowType);
    w->PutDouble("labelx", labelX);
    w->PutDouble("labely", labelY);
    w->PutDouble("cpx", controlX);
    w->PutDouble("cpy", controlY);
    w->PutDouble("linkWidth", width);
    w->PutDouble("sourcepad", sourcePad);
    w->PutDouble("destpad", destPad);
    if (dest) {
        w->PutUnsigned("destid", idOf(dest));
        w->Put("destcreator", dest->Creator());
        if (color != "normal")
            w->Put("color", color);
    } else {
        w->Put("URL", url);
        w->Put("title", title);
        w->Put("class", linkClass);
        w->Put("target", target);
        if (color != "normal")
            w->Put("color", color);
    }
    if (!guard.empty())
        w->Put("guard", guard);
    if (!comment.empty())
        w->Put("comment", comment);
    w->EndEmptyTag();
}

CLink::CLink(Node* s, Node* d, const std::string& type) {
    source = s;
    dest = d;
    name = type.empty() ? std::string(LinkType::kUntitled) : type;
}

// ---------------------------------------------------------------- LinkRecord

LinkRecord::LinkRecord(Node* source, int start, int length) : sourceNode(source) {
    sourceSpan.Set(start, length > 0 ? static_cast<unsigned>(length) : 0);
}

LinkRecord::LinkRecord(Node* source, Node* dest, const std::string& t) : sourceNode(source), destNode(dest), type(t) {}

LinkRecord::LinkRecord(const Link* link) {
    if (!link)
        return;
    sourceNode = link->SourceNode();
    destNode = link->DestNode();
    type = link->Name();
    sourceSpan = link->SourceSpan();
    destSpan = link->DestSpan();
    style = link->Style();
    arrowType = link->ArrowType();
    labelX = link->LabelX();
    labelY = link->LabelY();
    controlX = link->ControlX();
    controlY = link->ControlY();
    width = link->Width();
    sourcePad = link->SourcePad();
    destPad = link->DestPad();
    color = link->Color();
    url = link->URL();
    title = link->Title();
    linkClass = link->Class();
    target = link->Target();
    guard = link->Guard();
    comment = link->Comment();
}

LinkRecord LinkRecord::FromXML(const XMLItem* item) {
    LinkRecord r;
    if (!item)
        return r;
    const XMLAttributes& a = item->Attributes();
    r.type = a.GetString("name");
    r.sourceID = static_cast<uint32_t>(a.GetUnsigned("sourceid"));
    r.sourceCreator = a.GetString("sourcecreator");
    long sstart = a.GetLong("sstart");
    long slen = a.GetLong("slen");
    r.sourceSpan.Set(static_cast<int>(sstart), slen > 0 ? static_cast<unsigned>(slen) : 0);
    long dstart = a.GetLong("dstart");
    long dlen = a.GetLong("dlen");
    r.destSpan.Set(static_cast<int>(dstart), dlen > 0 ? static_cast<unsigned>(dlen) : 0);
    r.style.SetBits(static_cast<unsigned>(a.GetUnsigned("style", LinkStyle().Bits())));
    r.arrowType = static_cast<int>(a.GetLong("arrowtype"));
    r.labelX = a.GetDouble("labelx");
    r.labelY = a.GetDouble("labely");
    r.controlX = a.GetDouble("cpx");
    r.controlY = a.GetDouble("cpy");
    r.width = a.GetDouble("linkWidth");
    r.sourcePad = a.GetDouble("sourcepad");
    r.destPad = a.GetDouble("destpad");
    r.hasDest = a.Has("destid");
    r.destID = static_cast<uint32_t>(a.GetUnsigned("destid"));
    r.destCreator = a.GetString("destcreator");
    r.color = a.GetString("color", "normal");
    if (r.color.empty())
        r.color = "normal";
    r.url = a.GetString("URL");
    r.title = a.GetString("title");
    r.linkClass = a.GetString("class");
    r.target = a.GetString("target");
    r.guard = a.GetString("guard");
    r.comment = a.GetString("comment");
    return r;
}

Hypertext* LinkRecord::GetLinkHolder() const { return sourceNode ? sourceNode->GetHypertext() : nullptr; }

Link* LinkRecord::MakeLink() const {
    auto* link = new CLink(sourceNode, destNode, type);
    link->sourceSpan = sourceSpan;
    link->destSpan = destSpan;
    link->style = style;
    link->arrowType = arrowType;
    link->labelX = labelX;
    link->labelY = labelY;
    link->controlX = controlX;
    link->controlY = controlY;
    link->width = width;
    link->sourcePad = sourcePad;
    link->destPad = destPad;
    link->color = color.empty() ? std::string("normal") : color;
    link->url = destNode ? std::string() : url;
    link->title = title;
    link->linkClass = linkClass;
    link->target = target;
    link->guard = guard;
    link->comment = comment;
    return link;
}

Link* LinkRecord::CreateLink() const {
    if (!sourceNode || !sourceNode->CanLink())
        return nullptr;
    Hypertext* holder = GetLinkHolder();
    if (!holder)
        return nullptr;
    if (destNode) {
        if (destNode->GetHypertext() != holder || !destNode->CanLink())
            return nullptr;
    } else if (url.empty()) {
        return nullptr;
    }
    Link* link = MakeLink();
    holder->AddLink(link);
    return link;
}
