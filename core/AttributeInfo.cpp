#include "AttributeInfo.h"

#include "Attribute.h"
#include "Content.h"
#include "Hypertext.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "Value.h"

AttributeInfo::AttributeInfo(Hypertext* h) : HypertextFacade(h), NodeFacade(h ? h->Root() : nullptr) {}

AttributeInfo::AttributeInfo(Node* n) : HypertextFacade(n ? n->GetHypertext() : nullptr), NodeFacade(n) {}

Props* AttributeInfo::AttributeStorage() const { return hypertext ? hypertext->AttributeStorage() : nullptr; }

Attribute* AttributeInfo::RootAttribute() const {
    Props* p = AttributeStorage();
    return p ? p->Root() : nullptr;
}

Attribute* AttributeInfo::GetAttribute(const std::string& name) const {
    std::string n = name;
    if (!n.empty() && n[0] == '$')
        n.erase(0, 1);
    Props* p = AttributeStorage();
    if (n.empty() || !p)
        return nullptr;
    return p->GetAttribute(n);
}

bool AttributeInfo::HasAttribute(const std::string& name) const {
    Props* p = AttributeStorage();
    std::string n = !name.empty() && name[0] == '$' ? name.substr(1) : name;
    return p && p->Has(n);
}

long AttributeInfo::GetCount() const {
    Props* p = AttributeStorage();
    return p ? p->GetCount() : 0;
}

std::vector<Attribute*> AttributeInfo::Categories() const {
    Props* p = AttributeStorage();
    return p ? p->Categories() : std::vector<Attribute*>();
}

std::vector<Attribute*> AttributeInfo::AttributesFor(const std::string& category) const {
    Props* p = AttributeStorage();
    return p ? p->AttributesFor(category) : std::vector<Attribute*>();
}

std::vector<std::string> AttributeInfo::AttributeNamesStartingWith(const std::string& prefix) const {
    std::vector<std::string> names;
    if (Props* p = AttributeStorage())
        for (Attribute* a : p->AttributesStartingWith(prefix))
            names.push_back(a->Name());
    return names;
}

std::vector<std::string> AttributeInfo::AttributeNamesContaining(const std::string& part) const {
    std::vector<std::string> names;
    if (Props* p = AttributeStorage())
        for (Attribute* a : p->AttributesContaining(part))
            names.push_back(a->Name());
    return names;
}

std::vector<Attribute*> AttributeInfo::UserAttributeList() const {
    std::vector<Attribute*> list;
    if (Props* p = AttributeStorage())
        for (Attribute* a : p->InTreeOrder())
            if (!a->IsAttributeCategory() && a->IsUserAttribute())
                list.push_back(a);
    return list;
}

long AttributeInfo::CountUserAttributes() const { return static_cast<long>(UserAttributeList().size()); }

long AttributeInfo::CountSystemAttributes() const {
    long n = 0;
    if (Props* p = AttributeStorage())
        for (Attribute* a : p->InTreeOrder())
            if (!a->IsAttributeCategory() && !a->IsUserAttribute())
                ++n;
    return n;
}

Attribute* AttributeInfo::UserAttribute(long index) const {
    auto list = UserAttributeList();
    return index >= 0 && index < static_cast<long>(list.size()) ? list[index] : nullptr;
}

void AttributeInfo::EachUserAttribute(const std::function<void(Attribute*)>& block) const {
    for (Attribute* a : UserAttributeList())
        block(a);
}

Attribute* AttributeInfo::CreateBasicAttribute(const std::string& name, const std::string& category, bool editable,
                                               int type) const {
    Props* p = AttributeStorage();
    return p ? p->CreateBasicAttribute(name, category, editable, type) : nullptr;
}

Attribute* AttributeInfo::CreatePreferenceAttribute(const std::string& name, const std::string& category, int kind,
                                                    bool editable, int type) const {
    Props* p = AttributeStorage();
    return p ? p->CreatePreferenceAttribute(name, category, kind, editable, type) : nullptr;
}

void AttributeInfo::RemoveAttribute(const std::string& name) const {
    Props* p = AttributeStorage();
    if (!p || !p->Has(name))
        return;
    Attribute* a = p->GetAttribute(name);
    // Notes drop their values before the definition goes.
    Apply([&](Node* n) { n->Properties().Remove(a); });
    p->RemoveAttribute(a);
}

void AttributeInfo::RenameAttribute(Attribute* attribute, const std::string& newName) const {
    Props* p = AttributeStorage();
    if (!p || !attribute)
        return;
    const std::string oldName = attribute->Name();
    std::vector<std::pair<Node*, std::string>> held;
    Apply([&](Node* n) {
        if (NodeDefaults(n).HasImmediate(attribute))
            held.emplace_back(n, n->GetString(attribute));
    });
    p->Rename(attribute, newName);
    for (auto& [n, text] : held)
        NodeFacade(n).SetString(attribute->Name(), text);
    Apply([&](Node* n) { RenameKeyAttribute(n, oldName, attribute->Name()); });
}

void AttributeInfo::RenameKeyAttribute(Node* n, const std::string& oldName, const std::string& newName) const {
    if (!n)
        return;
    std::string displayed = n->GetString("DisplayedAttributes");
    if (displayed.empty())
        return;
    ArgList items(displayed, ';', false);
    if (items.IndexOf(oldName) < 0)
        return;
    items.Remove(oldName);
    items.push_back(newName);
    n->Set("DisplayedAttributes", items.ToString(";"));
}

std::string AttributeInfo::GetDefaultValueOf(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    const Value* v = a ? a->GetDefaultValue(NodeFacade::node) : nullptr;
    return v ? v->AsXML() : std::string();
}

void AttributeInfo::SetDefault(const std::string& name, const std::string& text) const {
    if (Attribute* a = GetAttribute(name); a && a->IsValid())
        a->SetDefault(text);
}

bool AttributeInfo::GetDefaultBooleanValueOf(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    const Value* v = a ? a->GetDefaultValue(NodeFacade::node) : nullptr;
    return v && v->AsBoolean();
}

void AttributeInfo::SetDefaultBooleanValueOf(const std::string& name, bool value) const {
    if (Attribute* a = GetAttribute(name); a && a->IsValid())
        a->SetDefaultBoolean(value);
}

void AttributeInfo::NormalizeSet(const std::string& name, Node* n) const {
    if (Attribute* a = GetAttribute(name))
        a->Normalize(n);
}

bool AttributeInfo::AttributeIsEditable(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a && a->IsValid() && a->IsEditable();
}

void AttributeInfo::MakeAttributeReadOnly(const std::string& name) const {
    if (Attribute* a = GetAttribute(name); a && a->IsValid())
        a->SetEditable(false);
}

std::string AttributeInfo::CategoryForAttribute(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a ? a->Category() : std::string();
}

int AttributeInfo::GetAttributeType(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a ? a->GetType() : AttributeType::kNone;
}

bool AttributeInfo::IsColorAttribute(const std::string& n) const { return GetAttributeType(n) == AttributeType::kColor; }
bool AttributeInfo::IsDateAttribute(const std::string& n) const { return GetAttributeType(n) == AttributeType::kDate; }
bool AttributeInfo::IsSetAttribute(const std::string& n) const { return GetAttributeType(n) == AttributeType::kSet; }
bool AttributeInfo::IsDictionaryAttribute(const std::string& n) const {
    return GetAttributeType(n) == AttributeType::kDictionary;
}
bool AttributeInfo::IsListAttribute(const std::string& n) const { return GetAttributeType(n) == AttributeType::kList; }
bool AttributeInfo::IsIntervalAttribute(const std::string& n) const {
    return GetAttributeType(n) == AttributeType::kInterval;
}
bool AttributeInfo::IsBooleanAttribute(const std::string& n) const {
    return GetAttributeType(n) == AttributeType::kBoolean;
}
bool AttributeInfo::IsStringAttribute(const std::string& n) const {
    return GetAttributeType(n) == AttributeType::kString;
}
bool AttributeInfo::IsNumberAttribute(const std::string& n) const {
    return GetAttributeType(n) == AttributeType::kNumber;
}

bool AttributeInfo::AttributeCannotInherit(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a && !a->CanInherit();
}

std::string AttributeInfo::SuggestedValues(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a ? a->SuggestedValues().ToString(";") : std::string();
}

void AttributeInfo::SetSuggestedValues(const std::string& name, const std::string& values) const {
    if (Attribute* a = GetAttribute(name); a && a->IsValid())
        a->SuggestedValues(values);
}

std::string AttributeInfo::Description(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a ? a->Description() : std::string();
}

bool AttributeInfo::IsSequential(const std::string& name) const {
    Attribute* a = GetAttribute(name);
    return a && a->IsSequential();
}

void AttributeInfo::BeSequential(const std::string& name, bool sequential) const {
    Attribute* a = GetAttribute(name);
    if (!a || !a->IsValid())
        return;
    a->BeSequential(sequential);
    if (sequential)
        a->Initialize(hypertext);
}

void AttributeInfo::Sort() const {
    if (Props* p = AttributeStorage())
        p->Sort();
}

void AttributeInfo::UpdateOutlineOrder() const {
    if (hypertext)
        hypertext->UpdateOutlineOrder();
}

void AttributeInfo::CopyAttributesFrom(Node* source) const {
    Node* target = NodeFacade::node;
    Props* p = AttributeStorage();
    if (!source || !target || !p)
        return;
    NodeDefaults defaults(source);
    for (Attribute* a : p->InTreeOrder()) {
        if (a->IsAttributeCategory() || !a->CanInherit() || a->Name() == "Container" || !defaults.HasImmediate(a))
            continue;
        target->Set(a, source->CreateClonedValue(a));
    }
    target->CloneValue("Height", source);
    target->CloneValue("Width", source);
    if (NodeText(source).HasText())
        NodeText(target).CopyContentFrom(source);
}
