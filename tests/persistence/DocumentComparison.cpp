#include "DocumentComparison.h"

#include "Attribute.h"
#include "Colors.h"
#include "Content.h"
#include "Hypertext.h"
#include "Link.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Node.h"
#include "Prefs.h"
#include "Props.h"
#include "Value.h"

namespace {

std::string Describe(const Node* n) {
    return n ? "note " + std::to_string(n->GetID().GetID()) + " \"" + n->Name() + "\"" : std::string("no note");
}

std::string LocalValues(const Node* n) {
    std::string out;
    for (const auto& [attribute, value] : n->Properties())
        if (attribute->Name() != "ID" && attribute->Name() != "Creator")
            out += attribute->Name() + "=" + (value ? value->AsXML() : std::string("(null)")) + "\n";
    return out;
}

std::string CompareNotes(const Node* a, const Node* b) {
    if (a->GetID().GetID() != b->GetID().GetID() || a->Creator() != b->Creator())
        return Describe(a) + " stands where " + Describe(b) + " does";
    if (std::string(a->XMLKind()) != b->XMLKind() || a->IsAlias() != b->IsAlias())
        return Describe(a) + " differs in kind";
    if (a->IsAlias() && a->GetOriginal()->GetID().GetID() != b->GetOriginal()->GetID().GetID())
        return Describe(a) + " is an alias of another note";
    std::string va = LocalValues(a);
    std::string vb = LocalValues(b);
    if (va != vb)
        return Describe(a) + " has other values:\n" + va + "against\n" + vb;
    const Node* pa = a->GetPrototype();
    const Node* pb = b->GetPrototype();
    if ((pa ? pa->GetID().GetID() : 0) != (pb ? pb->GetID().GetID() : 0))
        return Describe(a) + " has another prototype";
    if (a->GetPrototypeRequest() != b->GetPrototypeRequest())
        return Describe(a) + " waits for another prototype";
    if (a->CompositeData() != b->CompositeData())
        return Describe(a) + " has other composites";
    const Content* ca = a->GetContent();
    const Content* cb = b->GetContent();
    std::string ta = ca ? ca->GetText() : std::string();
    std::string tb = cb ? cb->GetText() : std::string();
    if (ta != tb)
        return Describe(a) + " has other text";
    if ((ca ? ca->GetRTF() : std::string()) != (cb ? cb->GetRTF() : std::string()))
        return Describe(a) + " has other RTF";
    if ((ca ? ca->GetRTFD() : std::string()) != (cb ? cb->GetRTFD() : std::string()))
        return Describe(a) + " has other RTFD";
    return {};
}

std::string CompareAttribute(const Attribute* a, const Attribute* b, const Hypertext& ha, const Hypertext& hb) {
    if (a->Name() != b->Name())
        return "attribute " + a->Name() + " stands where " + b->Name() + " does";
    if (a->GetType() != b->GetType() || a->IsEditable() != b->IsEditable() ||
        a->VisibleInEditor() != b->VisibleInEditor() || a->CanInherit() != b->CanInherit() ||
        a->IsSequential() != b->IsSequential() || a->IsPreferenceAttribute() != b->IsPreferenceAttribute() ||
        a->GetKind() != b->GetKind() || a->Description() != b->Description() ||
        a->SuggestedValues().ToString(";") != b->SuggestedValues().ToString(";") ||
        a->GetDefaultValueAsXML(&ha) != b->GetDefaultValueAsXML(&hb))
        return "attribute " + a->Name() + " is defined otherwise";
    return {};
}

} // namespace

std::string DocumentDifference(const Hypertext& a, const Hypertext& b) {
    // Notes, in preorder.
    const Node* na = a.Root();
    const Node* nb = b.Root();
    while (na || nb) {
        if (!na || !nb)
            return "one document has more notes, from " + Describe(na ? na : nb);
        if ((na->Father() ? na->Father()->GetID().GetID() : 0) != (nb->Father() ? nb->Father()->GetID().GetID() : 0))
            return Describe(na) + " has another parent";
        std::string difference = CompareNotes(na, nb);
        if (!difference.empty())
            return difference;
        na = na->Next();
        nb = nb->Next();
    }

    // Links, in priority order.
    LinkBundle la = a.Links()->All();
    LinkBundle lb = b.Links()->All();
    if (la.size() != lb.size())
        return "the documents have " + std::to_string(la.size()) + " and " + std::to_string(lb.size()) + " links";
    for (size_t i = 0; i < la.size(); ++i)
        if (!la[i]->SameAs(*lb[i]))
            return "link " + std::to_string(i) + " (" + la[i]->Name() + ") differs";

    // Attribute definitions, in tree order.
    std::vector<Attribute*> aa = a.AttributeStorage()->InTreeOrder();
    std::vector<Attribute*> ab = b.AttributeStorage()->InTreeOrder();
    if (aa.size() != ab.size())
        return "the documents define " + std::to_string(aa.size()) + " and " + std::to_string(ab.size()) +
               " attributes";
    for (size_t i = 0; i < aa.size(); ++i) {
        std::string difference = CompareAttribute(aa[i], ab[i], a, b);
        if (!difference.empty())
            return difference;
    }

    if (a.GetLinkTypes()->Types() != b.GetLinkTypes()->Types())
        return "the link types differ";
    if (!(*a.GetColorTable() == *b.GetColorTable()))
        return "the colour tables differ";
    if (a.GetPreferences()->All() != b.GetPreferences()->All())
        return "the preferences differ";
    if (a.CarriedSections() != b.CarriedSections())
        return "the carried sections differ";
    if (a.Preview() != b.Preview())
        return "the previews differ";
    if (a.UUID() != b.UUID())
        return "the UUIDs differ";
    return {};
}
