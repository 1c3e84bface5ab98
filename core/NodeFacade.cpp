#include "NodeFacade.h"

#include "Attribute.h"
#include "Change.h"
#include "Colors.h"
#include "Content.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "NodeIndex.h"
#include "Value.h"

// ---------------------------------------------------------- HypertextFacade

Hypertext* HypertextFacade::NoHypertext() { return Hypertext::NoHypertext(); }

bool HypertextFacade::Valid() const { return hypertext && hypertext->IsValid(); }

bool HypertextFacade::IsClosing() const { return !hypertext || hypertext->IsClosing(); }

Node* HypertextFacade::Root() const { return hypertext ? hypertext->Root() : nullptr; }

Node* HypertextFacade::FirstNode() const { return hypertext ? hypertext->FirstNode() : nullptr; }

void HypertextFacade::Apply(const std::function<void(Node*)>& block) const {
    if (!hypertext)
        return;
    for (Node* n = hypertext->Root(); n && !hypertext->IsClosing(); n = n->Next())
        block(n);
}

void HypertextFacade::Apply(const std::function<bool(Node*)>& block, bool stopWhenFalse) const {
    if (!hypertext)
        return;
    for (Node* n = hypertext->Root(); n && !hypertext->IsClosing(); n = n->Next())
        if (!block(n) && stopWhenFalse)
            return;
}

NodeVector HypertextFacade::Collect(const std::function<bool(Node*)>& accept) const {
    NodeVector result;
    Apply([&](Node* n) {
        if (accept(n))
            result.push_back(n);
    });
    return result;
}

NodeVector HypertextFacade::Nodes() const {
    return Collect([](Node*) { return true; });
}

long HypertextFacade::Count(const std::function<bool(Node*)>& accept) const {
    long count = 0;
    Apply([&](Node* n) {
        if (accept(n))
            ++count;
    });
    return count;
}

Node* HypertextFacade::First(const std::function<bool(Node*)>& accept) const {
    if (!hypertext)
        return nullptr;
    for (Node* n = hypertext->Root(); n && !hypertext->IsClosing(); n = n->Next())
        if (accept(n))
            return n;
    return nullptr;
}

long HypertextFacade::NodeCount() const { return hypertext ? hypertext->GetIndex()->count() : 0; }

PColor HypertextFacade::TranslateColor(const std::string& text) const {
    PColor color;
    if (color.FromString(text))
        return color;
    if (hypertext) {
        // The document's colour table ("colors.xml" or the built-in names).
        bool found = false;
        if (const Colors* colors = hypertext->GetColorTable()) {
            PColor named = colors->TranslateColor(text, &found);
            if (found)
                return named;
        }
    }
    return PColor();
}

std::string HypertextFacade::DocumentName() const {
    return hypertext && hypertext->Root() ? hypertext->Root()->Name() : std::string();
}

void HypertextFacade::Renamed(Node* node) const {
    if (hypertext)
        hypertext->Renamed(node);
}

void HypertextFacade::DeleteValue(const Value* value) const {
    if (!value)
        return;
    if (hypertext)
        hypertext->DeleteValue(value);
    else
        value->Delete();
}

bool HypertextFacade::DontRename() const { return hypertext && hypertext->DontRename(); }

void HypertextFacade::DontRename(bool d) const {
    if (hypertext)
        hypertext->DontRename(d);
}

void HypertextFacade::DocumentHasChanged() const {
    if (hypertext)
        hypertext->SetModified(true);
}

// --------------------------------------------------------------- NodeFacade

Hypertext* NodeFacade::GetHypertext() const { return node ? node->GetHypertext() : nullptr; }

bool NodeFacade::IsClosing() const { return HypertextFacade(GetHypertext()).IsClosing(); }

uint32_t NodeFacade::GetID() const { return node ? node->GetID().GetID() : 0; }

std::string NodeFacade::Creator() const { return node ? node->Creator() : std::string(); }

long NodeFacade::OutlineOrder() const { return Invalid() ? -1 : node->GetOutlineOrder(); }

std::string NodeFacade::GetString(const std::string& name) const { return node ? node->GetString(name) : ""; }

std::string NodeFacade::GetString(const Attribute* attribute) const {
    return node ? node->GetString(attribute) : "";
}

long NodeFacade::GetLong(const std::string& name) const { return node ? node->GetLong(name) : 0; }

unsigned long NodeFacade::GetUnsignedLong(const std::string& name) const {
    return node ? node->GetUnsignedLong(name) : 0;
}

bool NodeFacade::GetBoolean(const std::string& name) const { return node && node->GetBoolean(name); }

double NodeFacade::GetDouble(const std::string& name) const { return node ? node->GetDouble(name) : 0.0; }

PColor NodeFacade::GetColor(const std::string& name) const { return node ? node->GetColor(name) : PColor(); }

STime NodeFacade::GetDate(const std::string& name) const { return node ? node->GetDate(name) : STime::Never(); }

Node* NodeFacade::Son() const { return node ? node->Son() : nullptr; }
Node* NodeFacade::YoungestSon() const { return node ? node->YoungestSon() : nullptr; }
Node* NodeFacade::Father() const { return node ? node->Father() : nullptr; }
Node* NodeFacade::Brother() const { return node ? node->Brother() : nullptr; }
Node* NodeFacade::ElderBrother() const { return node ? node->ElderBrother() : nullptr; }
Node* NodeFacade::Next() const { return node ? node->Next() : nullptr; }
Node* NodeFacade::Previous() const { return node ? node->Previous() : nullptr; }
Node* NodeFacade::Sentinel() const { return node ? node->Sentinel() : nullptr; }
Node* NodeFacade::Root() const { return node ? node->Root() : nullptr; }

Node* NodeFacade::EldestBrother() const {
    if (!node)
        return nullptr;
    Node* n = node;
    while (n->ElderBrother())
        n = n->ElderBrother();
    return n;
}

void NodeFacade::Set(const std::string& name, const std::string& text) const {
    if (node)
        node->Set(name, text);
}

void NodeFacade::Set(const std::string& name, const Value* value) const {
    if (node)
        node->Set(name, value);
    else if (value)
        value->Delete();
}

void NodeFacade::Set(const Attribute* attribute, const Value* value) const {
    if (node)
        node->Set(attribute, value);
    else if (value)
        value->Delete();
}

void NodeFacade::SetBoolean(const std::string& name, bool b) const {
    if (node)
        node->SetBoolean(name, b);
}

void NodeFacade::SetString(const std::string& name, const std::string& text) const {
    if (node)
        node->Set(name, Value::Create(text));
}

void NodeFacade::SetDouble(const std::string& name, double d) const {
    if (node)
        node->SetDouble(name, d);
}

void NodeFacade::SetLong(const std::string& name, long l) const {
    if (node)
        node->SetLong(name, l);
}

void NodeFacade::SetTime(const std::string& name, const STime& t) const {
    if (node)
        node->SetTime(name, t);
}

void NodeFacade::SetColor(const std::string& name, const std::string& color) const {
    if (node)
        node->SetColor(name, color);
}

void NodeFacade::SetSet(const std::string& name, const std::string& items) const {
    if (node)
        node->SetSet(name, items);
}

void NodeFacade::ToggleBoolean(const std::string& name) const {
    if (node)
        node->ToggleBoolean(name);
}

void NodeFacade::Remove(const std::string& name) const {
    if (node)
        node->Remove(name);
}

Node* NodeFacade::GetPrototype() const { return node ? node->GetPrototype() : nullptr; }

void NodeFacade::SetPrototype(Node* prototype) const {
    if (node)
        node->SetPrototype(prototype, true);
}

Node* NodeFacade::GetOriginal() const { return node ? node->GetOriginal() : nullptr; }

STime NodeFacade::Modified() const { return Invalid() ? STime::Never() : node->GetDate("Modified"); }

void NodeFacade::HasBeenModified() const {
    if (node)
        node->HasBeenModified();
}

std::string NodeFacade::Name() const { return Invalid() ? std::string() : node->Name(); }

void NodeFacade::Renamed(const std::string& oldName) const {
    if (Valid())
        HypertextFacade(GetHypertext()).Renamed(node);
    if (oldName.empty() || !node || oldName == node->DefaultName() || node->IsAlias() ||
        HypertextFacade(GetHypertext()).DontRename())
        return;
    // Text links that used the old name follow the new one.
    if (auto& rename = GetHooks().renameTextLinks)
        rename(node, oldName);
}

std::string NodeFacade::DisplayName() const { return Invalid() ? std::string() : node->DisplayName(); }

void NodeFacade::Changed(unsigned long mask) const {
    if (node)
        node->Changed(mask);
}

void NodeFacade::Changed(const Attribute* attribute) const {
    if (node)
        node->Changed(attribute);
}

bool NodeFacade::HasChildren() const { return node && node->HasChildren(); }
long NodeFacade::ChildCount() const { return node ? node->ChildCount() : 0; }
long NodeFacade::DescendantCount() const { return node ? node->Descendants() : 0; }

bool NodeFacade::Invalid() const { return !node || node->Invalid(); }

void NodeFacade::ApplyToChildren(const std::function<void(Node*)>& block) const {
    if (!node)
        return;
    for (Node* c = node->Son(); c;) {
        Node* next = c->Brother();
        block(c);
        c = next;
    }
}

bool NodeFacade::AnyChild(const std::function<bool(Node*)>& test) const {
    if (!node)
        return false;
    for (Node* c = node->Son(); c; c = c->Brother())
        if (test(c))
            return true;
    return false;
}

Node* NodeFacade::First(const std::function<bool(Node*)>& test) const {
    if (!node)
        return nullptr;
    Node* end = node->Sentinel();
    for (Node* n = node->Next(); n && n != end; n = n->Next())
        if (test(n))
            return n;
    return nullptr;
}

void NodeFacade::Enumerate(const std::function<void(Node*)>& block) const {
    if (!node)
        return;
    Node* end = node->Sentinel();
    for (Node* n = node->Son(); n && n != end; n = n->Next())
        block(n);
}

void NodeFacade::EnumerateWithSelf(const std::function<void(Node*)>& block) const {
    if (!node)
        return;
    block(node);
    Enumerate(block);
}

NodeVector NodeFacade::Collect(const std::function<bool(Node*)>& accept) const {
    NodeVector result;
    Enumerate([&](Node* n) {
        if (accept(n))
            result.push_back(n);
    });
    return result;
}

NodeVector NodeFacade::Children() const {
    NodeVector result;
    if (node)
        for (Node* c = node->Son(); c; c = c->Brother())
            result.push_back(c);
    return result;
}

bool NodeFacade::IsAgent() const { return Valid() && node->IsAgent(); }
bool NodeFacade::IsAlias() const { return Valid() && node->IsAlias(); }
bool NodeFacade::IsContainer() const { return Valid() && node->IsContainer(); }
bool NodeFacade::IsAdornment() const { return Valid() && node->IsAdornment(); }
bool NodeFacade::IsSmartAdornment() const { return IsAdornment() && !node->GetString("AgentQuery").empty(); }
bool NodeFacade::IsSeparator() const { return Valid() && node->GetBoolean("Separator"); }
bool NodeFacade::IsTemplate() const { return Valid() && node->GetBoolean("IsTemplate"); }
bool NodeFacade::IsComposite() const { return Valid() && node->GetBoolean("IsComposite"); }
bool NodeFacade::IsRoot() const { return Valid() && node == node->Root(); }

bool NodeFacade::IsTopLevel() const {
    return Valid() && node != node->Root() && node->Father() && node->Father() == node->Root();
}

bool NodeFacade::IsHidden() const { return Valid() && node->IsHidden(); }
bool NodeFacade::IsLocked() const { return Valid() && node->IsLocked(); }
bool NodeFacade::ReadOnly() const { return Valid() && node->ReadOnly(); }
bool NodeFacade::CanBeAliased() const { return Valid() && node->CanBeAliased(); }

bool NodeFacade::IsDescendedFrom(const Node* ancestor) const {
    return Valid() && node->IsDescendedFrom(ancestor);
}

bool NodeFacade::CanReceiveChildren() const { return Valid() && node->CanReceiveChildren(); }
bool NodeFacade::HasSubtitle() const { return Valid() && !node->GetString("Subtitle").empty(); }

bool NodeFacade::IsUntitled() const {
    if (Invalid())
        return false;
    const Content* content = static_cast<const Node*>(node)->GetContent();
    if (content && content->HasText())
        return false;
    std::string name = node->Name();
    return name.empty() || name == node->DefaultName();
}

std::string NodeFacade::HTPath(bool escapeNames) const {
    if (Invalid())
        return "";
    std::vector<std::string> names;
    Node* root = node->Root();
    for (Node* n = node; n && n != root; n = n->Father())
        names.push_back(n->Name());
    if (names.empty())
        return "/";
    std::string path;
    for (auto it = names.rbegin(); it != names.rend(); ++it) {
        path += '/';
        if (!escapeNames) {
            path += *it;
            continue;
        }
        for (char c : *it) {
            if (c == '/' || c == '\\')
                path += '\\';
            path += c;
        }
    }
    return path;
}

bool NodeFacade::CanCreateNodes() const { return Valid() && node->CanReceiveChildren(); }

// -------------------------------------------------------------- ChangeFacade

void ChangeFacade::Changed(unsigned long mask) const {
    Hypertext* h = GetHypertext();
    if (!node || !h || mask == 0)
        return;
    h->CountChange();
    h->Changes()->Changed(node, mask);
}

void ChangeFacade::SetModified(bool modified) const {
    if (Hypertext* h = GetHypertext())
        h->SetModified(modified);
}

StChanges::StChanges(Hypertext* hypertext) : changes(hypertext ? hypertext->Changes() : nullptr) {
    if (changes)
        changes->Hold();
}

StChanges::~StChanges() {
    if (changes)
        changes->Release();
}

// ------------------------------------------------------------- NodeSelection

bool NodeSelection::IsSelected() const {
    Hypertext* h = GetHypertext();
    return node && h && h->Selection().count(node) != 0;
}

void NodeSelection::Select() const {
    if (Hypertext* h = GetHypertext(); h && node)
        h->Selection().insert(node);
}

void NodeSelection::Deselect() const {
    if (Hypertext* h = GetHypertext(); h && node)
        h->Selection().erase(node);
}

void NodeSelection::ToggleSelection() const {
    if (IsSelected())
        Deselect();
    else
        Select();
}
