#include "NodeHelpers.h"

#include <cctype>
#include <cstdlib>

#include "Attribute.h"
#include "Content.h"
#include "Hooks.h"
#include "Hypertext.h"
#include "Log.h"
#include "Parser.h"
#include "Props.h"
#include "Prototypes.h"
#include "Value.h"

// ------------------------------------------------------------------ NodeName

bool NodeName::IsANumber(const std::string& text) {
    if (text.empty())
        return false;
    for (unsigned char c : text)
        if (!std::isdigit(c))
            return false;
    return true;
}

bool NodeName::IsACopy(const std::string& name) {
    size_t at = name.rfind(" copy");
    return at != std::string::npos && name.size() >= 5 && at == name.size() - 5;
}

std::string NodeName::Increment(const std::string& name) {
    size_t end = name.size();
    size_t start = end;
    while (start > 0 && std::isdigit(static_cast<unsigned char>(name[start - 1])))
        --start;
    if (start == end)
        return name + " 1";
    std::string digits = name.substr(start);
    // Add one to the decimal digits as text, so that long runs never overflow.
    int i = static_cast<int>(digits.size()) - 1;
    while (i >= 0) {
        if (digits[i] == '9') {
            digits[i] = '0';
            --i;
        } else {
            ++digits[i];
            break;
        }
    }
    if (i < 0)
        digits.insert(digits.begin(), '1');
    // A parse drops leading zeros: "File 007" becomes "File 8".
    size_t firstNonZero = digits.find_first_not_of('0');
    digits = firstNonZero == std::string::npos ? "0" : digits.substr(firstNonZero);
    return name.substr(0, start) + digits;
}

std::string NodeName::MakeNameForDuplicate(const std::string& name) const {
    if (node && node->GetBoolean("Separator"))
        return name;
    if (!name.empty() && std::isdigit(static_cast<unsigned char>(name.back())) && !IsANumber(name))
        return Increment(name);
    if (IsACopy(name))
        return name + " 1";
    if (name.empty())
        return "copy";
    return name + " copy";
}

std::string NodeName::MakeName(const std::string& text) const {
    std::string t = Parser::Trim(text);
    size_t cut = t.find_first_of("\r\n\t.");
    if (cut != std::string::npos)
        t = t.substr(0, t[cut] == '.' ? cut + 1 : cut);
    if (t.size() < 512)
        return t;
    std::string result;
    size_t i = 0;
    while (i < t.size()) {
        while (i < t.size() && std::isspace(static_cast<unsigned char>(t[i])))
            ++i;
        size_t j = i;
        while (j < t.size() && !std::isspace(static_cast<unsigned char>(t[j])))
            ++j;
        if (j == i)
            break;
        std::string word = t.substr(i, j - i);
        size_t grown = result.size() + (result.empty() ? 0 : 1) + word.size();
        if (grown > 512)
            break;
        if (!result.empty())
            result += ' ';
        result += word;
        i = j;
    }
    return result + "\xE2\x80\xA6";
}

// -------------------------------------------------------------- NodePosition

SPoint NodePosition::GetPosition() const {
    if (!node)
        return SPoint(0, 0);
    return SPoint(node->GetDouble("Xpos"), node->GetDouble("Ypos"));
}

void NodePosition::SetPosition(double x, double y) const {
    if (!node)
        return;
    node->SetDouble("Xpos", x);
    node->SetDouble("Ypos", y);
}

void NodePosition::SetSize(double width, double height) const {
    if (!node)
        return;
    node->SetDouble("Width", width);
    node->SetDouble("Height", height);
}

double NodePosition::GetWidth() const { return node ? node->GetDouble("Width") : 0.0; }

double NodePosition::GetHeight() const { return node ? node->GetDouble("Height") : 0.0; }

long NodePosition::SiblingOrder() const { return node ? node->CountElderSiblings() + 1 : 0; }

SPoint NodePosition::FindAPlaceNear(Node* parent, Node* sibling) const {
    // A new note goes just below its sibling, or at the top left of an empty
    // container; finer placement on the map belongs to the map layout.
    if (sibling) {
        SPoint p = NodePosition(sibling).GetPosition();
        return SPoint(p.x, p.y + NodePosition(sibling).GetHeight() + 0.5);
    }
    if (parent) {
        double bottom = -1.0;
        bool any = false;
        for (Node* c = parent->Son(); c; c = c->Brother()) {
            if (c == node)
                continue;
            SPoint p = NodePosition(c).GetPosition();
            double b = p.y + NodePosition(c).GetHeight();
            if (!any || b > bottom)
                bottom = b;
            any = true;
        }
        if (any)
            return SPoint(0, bottom + 0.5);
    }
    return SPoint(0, 0);
}

SPoint NodePosition::CalculateMapPosition(Node* parent, Node* elder, Node* brother) const {
    if (!elder && !brother)
        return SPoint(0, 0);
    if (node && node->Father() != parent)
        return FindAPlaceNear(parent, elder ? elder : brother);
    return GetPosition();
}

void NodePosition::DoMoveTo(Node* parent, Node* after) const {
    if (!node)
        return;
    SPoint p = CalculateMapPosition(parent, after, after ? after->Brother() : nullptr);
    DoMoveToInternal(parent, after, p.x, p.y);
}

void NodePosition::DoMoveTo(Node* parent, double x, double y) const {
    if (!node || !parent)
        return;
    DoMoveToInternal(parent, parent->YoungestSon() == node ? node->ElderBrother() : parent->YoungestSon(), x, y);
}

namespace {
bool Usable(Node* after) { return after && after->IsValid() && !after->IsHidden(); }
} // namespace

void NodePosition::DoMoveToInternal(Node* parent, Node* after, double x, double y) const {
    if (!node)
        return;
    if (!Usable(after))
        after = nullptr;
    NodeVector adornments = node->OldAdornments() ? *node->OldAdornments() : NodeVector();
    if (node->Father() == parent && node->ElderBrother() == after && node->GetDouble("Xpos") == x &&
        node->GetDouble("Ypos") == y) {
        JustMoved(false, adornments);
        return;
    }
    Node* oldFather = node->Father();
    bool moved = InitializePosition(parent, after, x, y);
    AboutToMove(oldFather, parent);
    if (moved)
        if (auto& onRemove = GetHooks().onRemove)
            onRemove(node, oldFather);
    JustMoved(moved, adornments);
}

void NodePosition::DoMoveToInternalWithoutOnAdd(Node* parent, Node* after, double x, double y) const {
    if (!node)
        return;
    if (!Usable(after))
        after = nullptr;
    NodeVector adornments = node->OldAdornments() ? *node->OldAdornments() : NodeVector();
    if (!(node->Father() == parent && node->ElderBrother() == after && node->GetDouble("Xpos") == x &&
          node->GetDouble("Ypos") == y))
        InitializePosition(parent, after, x, y);
    JustMoved(false, adornments);
}

bool NodePosition::InitializePosition(Node* parent, Node* after, double x, double y) const {
    return Place(parent, after, true, x, y);
}

bool NodePosition::PlaceWithoutPosition(Node* parent, Node* after) const { return Place(parent, after, false, 0, 0); }

bool NodePosition::Place(Node* parent, Node* after, bool withPosition, double x, double y) const {
    if (!node || !parent)
        return false;
    if (after && (!after->IsValid() || after->IsHidden()))
        after = nullptr;
    if (after && after->Father() != parent) {
        LogFormat("Invalid elder moving %s", node->Name().c_str());
        after = nullptr;
    }
    // A note cannot go inside itself or its own subtree.
    if (parent == node || parent->IsDescendedFrom(node) || after == node)
        return false;
    StChanges changes(parent->GetHypertext());
    Node* oldElder = node->ElderBrother();
    Node* oldFather = node->Father();
    bool fatherChanged = oldFather != parent;
    if (parent->GetHypertext() != node->GetHypertext()) {
        if (oldFather)
            oldFather->Changed(kChangeChildren);
        node->SetHypertext(parent->GetHypertext());
    } else if (fatherChanged && oldFather) {
        oldFather->Changed(kChangeChildren);
    }
    if (withPosition)
        SetPosition(x, y);
    if (after)
        after->AddBrother(node);
    else
        parent->AddFirstSon(node);
    if (!(oldElder == after && !fatherChanged)) {
        parent->Changed(kChangeChildren);
        node->Changed(kChangeNode);
    }
    return fatherChanged;
}

void NodePosition::JustMoved(bool moved, const NodeVector& adornments) const {
    if (!node)
        return;
    auto& hooks = GetHooks();
    if (moved && hooks.onAdd && node->Father())
        hooks.onAdd(node, node->Father());
    if (hooks.onAdornments)
        hooks.onAdornments(node, adornments);
}

// ----------------------------------------------------------- NodeCollections

NodeVector NodeCollections::Ancestors() const {
    NodeVector result;
    if (!node)
        return result;
    for (Node* f = node->Father(); f; f = f->Father()) {
        result.push_back(f);
        if (f->IsRoot())
            break;
    }
    return result;
}

NodeVector NodeCollections::ChildrenOf() const { return Children(); }

NodeVector NodeCollections::Descendants() const {
    return Collect([](Node*) { return true; });
}

NodeVector NodeCollections::All() const {
    NodeVector result;
    Node* root = node ? node->Root() : nullptr;
    for (Node* n = root ? root->Son() : nullptr; n; n = n->Next())
        result.push_back(n);
    return result;
}

NodeVector NodeCollections::Adornments() const {
    NodeVector result;
    if (node)
        for (Node* c = node->Son(); c; c = c->Brother())
            if (c->IsAdornment())
                result.push_back(c);
    return result;
}

NodeVector NodeCollections::Siblings() const {
    NodeVector result;
    if (!node || !node->Father())
        return result;
    for (Node* c = node->Father()->Son(); c; c = c->Brother())
        if (!c->IsAdornment())
            result.push_back(c);
    return result;
}

NodeVector NodeCollections::YoungerSiblings() const {
    NodeVector result;
    if (!node)
        return result;
    for (Node* c = node->Brother(); c; c = c->Brother())
        if (!c->IsAdornment())
            result.push_back(c);
    return result;
}

NodeVector NodeCollections::ThisAndYoungerSiblings() const {
    NodeVector result;
    if (!node)
        return result;
    for (Node* c = node; c; c = c->Brother())
        if (!c->IsAdornment())
            result.push_back(c);
    return result;
}

// -------------------------------------------------------------- NodeDefaults

const Attribute* NodeDefaults::GetAttribute(const std::string& name) const {
    return node ? node->GetAttribute(name) : nullptr;
}

const Value* NodeDefaults::GetDefault(const std::string& name) const {
    const Attribute* a = GetAttribute(name);
    return a ? a->GetDefaultValue(node) : nullptr;
}

std::string NodeDefaults::GetDefaultAsString(const std::string& name) const {
    const Value* v = GetDefault(name);
    return v ? v->AsString() : std::string();
}

double NodeDefaults::GetDefaultAsDouble(const std::string& name) const {
    const Value* v = GetDefault(name);
    return v ? v->AsDouble() : 0.0;
}

bool NodeDefaults::GetDefaultAsBoolean(const std::string& name) const {
    const Value* v = GetDefault(name);
    return v && v->AsBoolean();
}

bool NodeDefaults::HasImmediate(const std::string& name) const { return HasImmediate(GetAttribute(name)); }

bool NodeDefaults::HasImmediate(const Attribute* attribute) const {
    if (!node || !attribute)
        return false;
    const Node* holder = node;
    // An alias holds only its intrinsic values; the rest are its original's.
    if (node->IsAlias() && attribute->CanInherit())
        holder = node->GetOriginal();
    return holder->DoGetImmediate(attribute) != nullptr;
}

bool NodeDefaults::UsesDefault(const std::string& name) const { return UsesDefault(GetAttribute(name)); }

bool NodeDefaults::UsesDefault(const Attribute* attribute) const {
    if (!node || !attribute)
        return true;
    return attribute->ImmediateValue(node) == nullptr;
}

void NodeDefaults::SetDefaultValue(const std::string& name, const std::string& text) const {
    const Attribute* a = GetAttribute(name);
    if (a && a->IsValid())
        const_cast<Attribute*>(a)->SetDefault(text);
}

long NodeDefaults::UniqueValueLimit() const {
    long limit = node && node->Root() ? node->Root()->GetLong("UniqueValueLimit") : 0;
    return limit > 0 ? limit : 100;
}

// -------------------------------------------------------------- NodeDeleter

void NodeDeleter::Hide(bool hide) const {
    if (node)
        node->Hide(hide);
}

void NodeDeleter::Delete() const {
    if (!node || node == node->Root())
        return;
    node->Hide(true);
    delete node;
}

// ------------------------------------------------------------------ NodeText

namespace {
// Reads never make a text store; writes do.
const Content* Reading(Node* node) { return node ? static_cast<const Node*>(node)->GetContent() : nullptr; }
} // namespace

Content* NodeText::GetContent() const { return node ? node->GetContent() : nullptr; }

std::string NodeText::GetText() const {
    const Content* c = Reading(node);
    return c ? c->GetText() : std::string();
}

void NodeText::SetText(const std::string& text) const {
    if (!node || GetText() == text)
        return;
    GetContent()->SetText(text);
    node->Changed(kChangeContent);
    if (auto& textChanged = GetHooks().textChanged)
        textChanged(node);
}

bool NodeText::HasText() const {
    const Content* c = Reading(node);
    return c && c->HasText();
}

long NodeText::TextSize() const {
    const Content* c = Reading(node);
    return c ? c->TextSize() : 0;
}

long NodeText::WordCount() const {
    const Content* c = Reading(node);
    return c ? c->WordCount() : 0;
}

long NodeText::EstimatedNoteSize() const {
    const Content* c = Reading(node);
    if (!c)
        return 0;
    return static_cast<long>(c->GetText().size() + c->GetRTF().size() + c->GetRTFD().size());
}

long NodeText::ImageCount() const { return PictureCount(); }

bool NodeText::HasRTF() const {
    const Content* c = Reading(node);
    return c && c->HasRTF();
}

std::string NodeText::GetRTF() const {
    const Content* c = Reading(node);
    return c ? c->GetRTF() : std::string();
}

void NodeText::SetRTF(const std::string& rtf) const {
    if (!node || (rtf.empty() && !HasRTF()))
        return;
    GetContent()->SetRTF(rtf);
}

bool NodeText::HasRTFD() const {
    const Content* c = Reading(node);
    return c && c->HasRTFD();
}

std::string NodeText::GetRTFD() const {
    const Content* c = Reading(node);
    return c ? c->GetRTFD() : std::string();
}

void NodeText::SetRTFD(const std::string& rtfd) const {
    if (!node || (rtfd.empty() && !HasRTFD()))
        return;
    GetContent()->SetRTFD(rtfd);
}

void NodeText::CopyContentFrom(const Node* source) const {
    const Content* theirs = source ? source->GetContent() : nullptr;
    if (!node || !theirs || Reading(node) == theirs)
        return;
    *GetContent() = *theirs;
    node->Changed(kChangeContent);
}

// ----------------------------------------------------------------- NodeMaker

NodeMaker::NodeMaker(const Node* n) : hypertext(n ? n->GetHypertext() : nullptr) {}

Node* NodeMaker::MakeNode(const std::string& name, Node* parent, Node* after, double x, double y) const {
    if (!hypertext)
        return nullptr;
    if (!parent)
        parent = hypertext->Root();
    Node* node = Node::Create(name, parent, after, x, y, true);
    if (!node)
        return nullptr;
    parent->Changed(kChangeShape | kChangeChildren);
    hypertext->UpdateOutlineOrder();
    return node;
}

Node* NodeMaker::MakeDontInitialize(const std::string& name, Node* parent, Node* after, double x, double y) const {
    if (!hypertext)
        return nullptr;
    if (!parent)
        parent = hypertext->Root();
    return Node::Create(name, parent, after, x, y, false);
}

Node* NodeMaker::Make(const std::string& name, Node* parent, Node* after) const {
    if (!hypertext)
        return nullptr;
    if (!parent)
        parent = hypertext->Root();
    SPoint p = NodePosition(parent).FindAPlaceNear(parent, after ? after : nullptr);
    return MakeNode(name, parent, after, p.x, p.y);
}

Node* NodeMaker::MakeAlias(Node* original) const { return AliasNode::CreateFor(original); }

Node* NodeMaker::MakeAlias(Node* original, Node* parent, Node* after) const {
    if (!original)
        return nullptr;
    SPoint p = NodePosition(original).GetPosition();
    return MakeAlias(original, parent, after, p.x + 0.5, p.y);
}

Node* NodeMaker::MakeAlias(Node* original, Node* parent, Node* after, double x, double y) const {
    if (!hypertext)
        return nullptr;
    if (!parent)
        parent = hypertext->Root();
    return AliasNode::CreateFor(original, parent, after, x, y, true);
}

Attribute* NodeMaker::MakeAttribute(const std::string& name, const std::string& category, bool editable,
                                    int type) const {
    if (!hypertext)
        return nullptr;
    return hypertext->AttributeStorage()->CreateBasicAttribute(name, category, editable, type);
}
