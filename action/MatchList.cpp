#include "MatchList.h"

#include "Link.h"

// ---------------------------------------------------------------------------
// ActionContext

RylSerial& ActionContext::Queue() {
    static RylSerial queue("com.morvent.rylvane.ActionContext");
    return queue;
}

bool ActionContext::IsDragging() const {
    return Queue().Sync([this] { return dragged && !dragged->empty(); });
}

void ActionContext::IsDragging(const NodeVector& notes) {
    Queue().Sync([this, &notes] { dragged = std::make_shared<NodeVector>(notes); });
}

NodeVector ActionContext::DraggedNotes() const {
    return Queue().Sync([this] { return dragged ? *dragged : NodeVector(); });
}

Node* ActionContext::CurrentSource() const { return link ? link->SourceNode() : nullptr; }

Node* ActionContext::CurrentDestination() const { return link ? link->DestNode() : nullptr; }

// ---------------------------------------------------------------------------
// MatchList

void MatchList::Reset() {
    values.clear();
    types.clear();
}

void MatchList::Bind(const std::string& name, const std::string& value, int type) {
    values[name] = value;
    types[name] = type;
}

void MatchList::Set(const std::string& name, const std::string& value) {
    auto it = values.find(name);
    if (it != values.end())
        it->second = value;
}

bool MatchList::HasBinding(const std::string& name) const { return !values.empty() && values.count(name) != 0; }

std::string MatchList::Lookup(const std::string& name) const {
    auto it = values.find(name);
    return it == values.end() ? std::string() : it->second;
}

int MatchList::Type(const std::string& name) const {
    auto it = types.find(name);
    return it == types.end() ? 0 : it->second;
}

std::vector<std::string> MatchList::Variables() const {
    std::vector<std::string> names;
    names.reserve(values.size());
    for (const auto& [name, value] : values)
        names.push_back(name);
    return names;
}

void MatchList::CurrentContext(const ActionContext* other) {
    if (other)
        context = *other;
}

void MatchList::RestoreClosure(MatchList saved) {
    for (auto& [name, value] : saved.values) {
        auto it = values.find(name);
        if (it != values.end())
            value = it->second;
    }
    *this = std::move(saved);
}
