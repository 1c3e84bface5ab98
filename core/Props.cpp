#include "Props.h"

#include "Log.h"
#include "SpecialAttributes.h"
#include "Value.h"

Props::Props() { Clear(); }

Props::~Props() {
    // Children are destroyed before their fathers, so that no attribute
    // outlives its place in the tree.
    byName.clear();
    while (!owned.empty())
        owned.pop_back();
}

void Props::Restamp() {
    static std::atomic<uint64_t> next{1};
    stamp.store(next.fetch_add(1), std::memory_order_release);
}

void Props::Clear() {
    Restamp();
    lastAdopted = nullptr;
    byName.clear();
    while (!owned.empty())
        owned.pop_back();
    root = new BasicAttribute("anything", AttributeType::kString, false);
    owned.emplace_back(root);
    byName[root->Name()] = root;
    nullAttribute = new NullAttribute("NoSuchAttribute");
    Adopt(nullAttribute, root);
}

Attribute* Props::GetAttribute(const std::string& name) const {
    auto it = byName.find(name);
    return it == byName.end() ? nullAttribute : it->second;
}

bool Props::AddAttribute(Attribute* attribute) {
    if (!attribute || byName.count(attribute->Name()))
        return false;
    Restamp();
    byName[attribute->Name()] = attribute;
    return true;
}

Attribute* Props::Adopt(Attribute* attribute, Attribute* parent) {
    if (!AddAttribute(attribute)) {
        delete attribute;
        return nullptr;
    }
    owned.emplace_back(attribute);
    Attribute* father = parent ? parent : root;
    if (lastAdopted && lastAdopted->Father() == father && !lastAdopted->Brother())
        lastAdopted->AddBrother(attribute);
    else
        father->AddSon(attribute);
    lastAdopted = attribute;
    return attribute;
}

void Props::RemoveAttribute(Attribute* attribute) {
    if (!attribute || attribute == root || attribute == nullAttribute)
        return;
    Restamp();
    auto it = byName.find(attribute->Name());
    if (it == byName.end() || it->second != attribute)
        return;
    byName.erase(it);
    if (lastAdopted == attribute)
        lastAdopted = nullptr;
    // Its children move up to its father, so that they stay in the tree.
    Attribute* father = attribute->Father();
    while (Attribute* child = attribute->Son())
        (father ? father : root)->AddSon(child);
    attribute->Unhook();
    for (auto o = owned.begin(); o != owned.end(); ++o)
        if (o->get() == attribute) {
            owned.erase(o);
            break;
        }
}

void Props::Rename(Attribute* attribute, const std::string& name) {
    if (!attribute)
        return;
    Restamp();
    auto it = byName.find(attribute->Name());
    if (it != byName.end() && it->second == attribute)
        byName.erase(it);
    attribute->SetName(name);
    byName[attribute->Name()] = attribute;
    Sort();
}

void Props::NewlyCreated(Node* note) const {
    for (Attribute* a = root; a; a = a->Next())
        a->NewlyCreated(note);
}

void Props::Sort() { root->Sort(); }

std::vector<Attribute*> Props::InTreeOrder() const {
    std::vector<Attribute*> all;
    for (Attribute* a = root->Next(); a; a = a->Next())
        all.push_back(a);
    return all;
}

std::vector<Attribute*> Props::Categories() const {
    std::vector<Attribute*> result;
    for (Attribute* a = root->Next(); a; a = a->Next())
        if (a->IsAttributeCategory())
            result.push_back(a);
    return result;
}

std::vector<Attribute*> Props::AttributesFor(const std::string& category) const {
    std::vector<Attribute*> result;
    auto it = byName.find(category);
    if (it == byName.end())
        return result;
    for (Attribute* a = it->second->Son(); a; a = a->Brother())
        result.push_back(a);
    return result;
}

std::vector<Attribute*> Props::AttributesStartingWith(const std::string& prefix) const {
    std::vector<Attribute*> result;
    for (Attribute* a : InTreeOrder())
        if (!a->IsAttributeCategory() && a->Name().compare(0, prefix.size(), prefix) == 0)
            result.push_back(a);
    return result;
}

std::vector<Attribute*> Props::AttributesContaining(const std::string& part) const {
    std::vector<Attribute*> result;
    for (Attribute* a : InTreeOrder())
        if (!a->IsAttributeCategory() && a->Name().find(part) != std::string::npos)
            result.push_back(a);
    return result;
}

std::vector<Attribute*> Props::NumericAttributesContaining(const std::string& part) const {
    std::vector<Attribute*> result;
    for (Attribute* a : AttributesContaining(part))
        if (a->IsNumber())
            result.push_back(a);
    return result;
}

void Props::Log() const {
    for (Attribute* a : InTreeOrder())
        LogLine(a->Name() + "\t" + a->GetTypeString() + "\t" + a->Category());
}

Attribute* Props::ParentFor(const std::string& category) const {
    auto it = byName.find(category);
    // An unknown category leaves the attribute under "NoSuchAttribute",
    // which is what a lookup by that name answers.
    return it == byName.end() ? nullAttribute : it->second;
}

Attribute* Props::CreateBasicAttribute(const std::string& name) {
    return CreateBasicAttribute(name, root, true, AttributeType::kString);
}

Attribute* Props::CreateBasicAttribute(const std::string& name, Attribute* parent, bool editable, int type) {
    auto it = byName.find(name);
    if (it != byName.end()) {
        if (parent && it->second->IsDescendedFrom(parent))
            return it->second;
        ::LogLine("<" + name + "> exists, but isn't descended from <" + (parent ? parent->Name() : "") + ">");
        return nullptr;
    }
    auto* a = new BasicAttribute(name, type, editable);
    a->SetName(name);
    if (byName.count(a->Name())) {
        Attribute* existing = byName[a->Name()];
        delete a;
        return existing->IsDescendedFrom(parent) ? existing : nullptr;
    }
    return Adopt(a, parent);
}

Attribute* Props::CreateBasicAttribute(const std::string& name, const std::string& categoryName, bool editable,
                                       int type) {
    return CreateBasicAttribute(name, ParentFor(categoryName), editable, type);
}

Attribute* Props::CreateRenamedAndDeprecatedAttribute(const std::string& name, const std::string& category,
                                                      bool editable, int type, const std::string& target) {
    auto it = byName.find(target);
    Attribute* t = it == byName.end() ? nullptr : it->second;
    return Adopt(new RenamedAndDeprecatedAttribute(name, type, editable, t), ParentFor(category));
}

Attribute* Props::CreateDeprecatedAttribute(const std::string& name, const std::string& category, bool editable,
                                            int type) {
    return Adopt(new DeprecatedAttribute(name, type, editable), ParentFor(category));
}

Attribute* Props::CreateShadowAttribute(const std::string& name, const std::string& category, bool editable,
                                        int type) {
    return Adopt(new ShadowAttribute(name, type, editable), ParentFor(category));
}

Attribute* Props::CreatePreferenceAttribute(const std::string& name, const std::string& category, int kind,
                                            bool editable, int type) {
    return Adopt(new PreferenceAttribute(name, kind, type, editable), ParentFor(category));
}

Attribute* Props::CreateTextAttribute(const std::string& name, const std::string& category) {
    return Adopt(new TextAttribute(name), ParentFor(category));
}

Attribute* Props::CreateNameAttribute(const std::string& name, const std::string& category) {
    return Adopt(new NameAttribute(name), ParentFor(category));
}

Attribute* Props::CreatePrototypeAttribute(const std::string& name, const std::string& category) {
    return Adopt(new PrototypeAttribute(name), ParentFor(category));
}

Attribute* Props::CreateParentAttribute(const std::string& name, const std::string& category) {
    return Adopt(new ParentAttribute(name), ParentFor(category));
}

Attribute* Props::Install(Attribute* attribute, const std::string& category) {
    return Adopt(attribute, ParentFor(category));
}
