#include "TalvikReader.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <set>
#include <unordered_set>

#include "Attribute.h"
#include "Base64.h"
#include "Colors.h"
#include "Content.h"
#include "Hypertext.h"
#include "KindNode.h"
#include "LinkManager.h"
#include "LinkType.h"
#include "Log.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NodeIndex.h"
#include "NodeLinks.h"
#include "Prefs.h"
#include "Props.h"
#include "Prototypes.h"
#include "Value.h"

namespace {

bool IsNoteElement(std::string_view name) { return name == "item" || name == "agent" || name == "adornment"; }

// Sections kept as they were read and written back unchanged.
bool IsCarriedSection(std::string_view name) {
    static const std::set<std::string, std::less<>> names = {"stamps",   "menu",    "macros",  "windows", "utilityWindows",
                                                             "searches", "filters", "gallery", "badges"};
    return names.count(name) > 0;
}

std::string Trim(const std::string& text) {
    size_t a = text.find_first_not_of(" \t\r\n");
    if (a == std::string::npos)
        return {};
    size_t b = text.find_last_not_of(" \t\r\n");
    return text.substr(a, b - a + 1);
}

} // namespace

struct TalvikReader::NoteState {
    // Ready for another note, keeping the room its containers have grown.
    void Reset() {
        element = nullptr;
        node = lastChild = nullptr;
        fileID = 0;
        fileCreator.clear();
        isProxy = hasText = false;
        text.clear();
        rtf.clear();
        rtfd.clear();
        initial.clear();
        provided.clear();
        lastNamed = nullptr;
    }

    XMLItem* element = nullptr;
    Node* node = nullptr;
    Node* lastChild = nullptr;
    uint32_t fileID = 0;
    std::string fileCreator;
    bool isProxy = false;
    bool hasText = false;
    std::string text;
    std::string rtf;
    std::string rtfd;
    // Local values the note had when made (but its id and creator), and,
    // only when there are such, the attributes the file gave values to.
    std::vector<const Attribute*> initial;
    std::vector<const Attribute*> provided;
    // The attribute of the note's last value so far.
    NamedAttribute* lastNamed = nullptr;
};

TalvikReader::TalvikReader(Node* r, Node* a, bool p)
    : root(r), after(a), pasting(p), hypertext(r ? r->GetHypertext() : nullptr) {
    if (hypertext) {
        previousInhibit = hypertext->ActionsInhibited();
        previousDontRename = hypertext->DontRename();
        hypertext->InhibitActions(true);
        hypertext->DontRename(true);
        hypertext->IsBeingRead(true);
    }
}

TalvikReader::~TalvikReader() {
    if (hypertext) {
        hypertext->InhibitActions(previousInhibit);
        hypertext->DontRename(previousDontRename);
        hypertext->IsBeingRead(false);
    }
}

bool TalvikReader::CouldBeXML(std::string_view start) {
    return start.substr(0, 1024).find("<rylvane") != std::string_view::npos;
}

bool TalvikReader::Read(std::string_view data) {
    if (!CouldBeXML(data)) {
        Fail("not a Rylvane document");
        return false;
    }
    return Finish(Parse(data));
}

bool TalvikReader::Read(std::istream& stream) { return Finish(Parse(stream)); }

namespace {

// Digits only, few enough to fit an int.
bool IsSmallNumber(const std::string& text) {
    if (text.empty() || text.size() > 6)
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

} // namespace

bool TalvikReader::ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        Fail(std::string("cannot open: ") + std::strerror(errno));
        return false;
    }
    char start[1024];
    file.read(start, sizeof start);
    if (!CouldBeXML(std::string_view(start, static_cast<size_t>(file.gcount())))) {
        Fail("not a Rylvane document");
        return false;
    }
    file.clear();
    file.seekg(0);
    return Read(file);
}

// ---------------------------------------------------------------- streaming

bool TalvikReader::StartItem(XMLItem* item) {
    if (!hypertext) {
        Fail("no document to read into");
        return false;
    }
    const std::string& name = item->Name();
    int depth = Depth();
    if (depth == 1) {
        if (name != "rylvane") {
            Fail("not a Rylvane document (its root element is <" + name + ">)");
            return false;
        }
        sawRoot = true;
        // A version that is no small whole number is as unknown as a newer one.
        if (const std::string* text = item->Attributes().Find("version"); text && !IsSmallNumber(*text)) {
            Fail("version " + *text + " files are not supported");
            return false;
        }
        version = static_cast<int>(item->Attributes().GetLong("version"));
        revision = static_cast<int>(item->Attributes().GetLong("revision"));
        if (version >= 3) {
            Fail("version " + std::to_string(version) + " files are not supported");
            return false;
        }
        if (!pasting) {
            std::string uuid = Trim(item->Attributes().GetString("uuid"));
            if (!uuid.empty())
                hypertext->SetUUID(uuid);
        }
        item->keepText = false;
        return true;
    }
    XMLItem* father = item->Father();
    bool inNote = !stack.empty() && father == stack.back()->element;
    if (IsNoteElement(name) && (depth == 2 || inNote)) {
        StartNote(item);
        return true;
    }
    if (depth == 2 && (name == "links" || IsCarriedSection(name)))
        item->keepText = false;
    return true;
}

bool TalvikReader::CapturesRaw(std::string_view name, int depth) const {
    // A note's composites are kept whole too (a "composites" element deeper
    // down that is no note's is captured but then dropped).
    return (depth == 2 && IsCarriedSection(name)) || (depth >= 3 && name == "composites");
}

bool TalvikReader::EndItem(XMLItem* item) {
    if (!stack.empty() && item == stack.back()->element) {
        EndNote(item);
        return true;
    }
    if (!stack.empty() && item->Father() == stack.back()->element) {
        if (item->Name() == "composites" && stack.back()->node)
            stack.back()->node->SetCompositeData(item->Raw());
        return true;
    }
    int depth = Depth() + 1;
    if (depth == 3 && item->Name() == "link" && item->Father()->Name() == "links") {
        linkRecords.push_back(LinkRecord::FromXML(item));
        return true;
    }
    if (depth != 2)
        return false;
    const std::string& name = item->Name();
    if (pasting)
        return true;
    if (name == "attrib")
        MakeAttribute(item, nullptr);
    else if (name == "colors")
        MakeColors(item);
    else if (name == "linkTypes")
        MakeLinkTypes(item);
    else if (name == "preferences")
        MakePrefs(item);
    else if (name == "preview")
        MakePreview(item);
    else if (name == "uuid") {
        std::string uuid = Trim(item->Text());
        if (!uuid.empty())
            hypertext->SetUUID(uuid);
    } else if (IsCarriedSection(name))
        hypertext->SetCarriedSection(name, item->Raw());
    return true;
}

// ---------------------------------------------------------------- notes

void TalvikReader::StartNote(XMLItem* item) {
    item->keepText = false;
    std::unique_ptr<NoteState> state;
    if (spareStates.empty()) {
        state = std::make_unique<NoteState>();
    } else {
        state = std::move(spareStates.back());
        spareStates.pop_back();
    }
    state->element = item;
    const XMLAttributes& a = item->Attributes();
    state->fileID = static_cast<uint32_t>(a.GetUnsigned("ID"));
    state->fileCreator = a.GetString("Creator");
    Node* node = nullptr;
    if (stack.empty() && !pasting && !sawFirstNote) {
        // The document's root takes the place of the file's first note.
        node = root;
        if (a.Has("ID"))
            node->SetID(state->fileID, a.Has("Creator") ? state->fileCreator : node->Creator());
    } else {
        Node* parent = stack.empty() ? root : stack.back()->node;
        Node* elder = stack.empty() ? (topNodes.empty() ? (pasting ? after : root->YoungestSon()) : topNodes.back())
                                    : stack.back()->lastChild;
        bool keepID = !pasting && a.Has("ID");
        const uint32_t* fileID = keepID ? &state->fileID : nullptr;
        const std::string* fileCreator = a.Has("Creator") ? &state->fileCreator : nullptr;
        KindNode::Kind kind;
        if (KindNode::KindOfElement(item->Name(), kind))
            node = KindNode::CreateForReading(kind, parent, elder, fileID, fileCreator, lastValueCount);
        else
            node = Node::CreateForReading(parent, elder, fileID, fileCreator, lastValueCount);
        if (!node) {
            LogLine("RylNodeBuilder: node is nil. This should never happen");
            Fail("a note could not be made");
            return;
        }
    }
    sawFirstNote = true;
    std::string proto = a.GetString("proto");
    if (!proto.empty())
        prototypeRequests.emplace_back(node, proto);
    // Values the note holds before the file speaks (a note made for reading
    // holds only its id and creator, which stay).
    for (const auto& [attribute, value] : node->Properties())
        if (attribute->Name() != "ID" && attribute->Name() != "Creator")
            state->initial.push_back(attribute);
    state->node = node;
    stack.push_back(std::move(state));
}

const Attribute* TalvikReader::AttributeNamed(const std::string& given) {
    Props* props = hypertext->AttributeStorage();
    if (!props)
        return nullptr;
    // Most names are plain and known: answer those with one look-up.
    if (!given.empty() && given[0] != '$')
        if (Attribute* known = props->Find(given))
            return known;
    std::string name = !given.empty() && given[0] == '$' ? given.substr(1) : given;
    if (name.empty())
        return nullptr;
    if (props->Has(name))
        return props->GetAttribute(name);
    Attribute* made = props->CreateBasicAttribute(name, "User", true, AttributeType::kString);
    if (!made) {
        LogLine("TalvikReader: a value for the unknown attribute <" + name + "> was dropped");
        return nullptr;
    }
    LogLine("TalvikReader: made the user attribute <" + made->Name() + "> for a value in the file");
    return made;
}

TalvikReader::NamedAttribute& TalvikReader::ResolveAttribute(const char* name, NamedAttribute* previous) {
    NamedAttribute* guess = previous ? previous->next : firstNamed;
    if (guess && *guess->name == name)
        return *guess;
    auto [slot, fresh] = namedAttributes.try_emplace(name);
    NamedAttribute& named = slot->second;
    if (fresh) {
        named.name = &slot->first;
        // The id and creator were read from the note's element.
        if (slot->first != "ID" && slot->first != "Creator") {
            const Attribute* attribute = AttributeNamed(slot->first);
            if (attribute && attribute->IsValid()) {
                named.attribute = attribute;
                named.alias = attribute->Name() == "Alias";
                if (attribute->GetType() != AttributeType::kFile)
                    named.interner = &interners.try_emplace(attribute, attribute->GetType()).first->second;
            }
        }
    }
    if (previous)
        previous->next = &named;
    else
        firstNamed = &named;
    return named;
}

bool TalvikReader::StartLeaf(const char* name, const char** attributes) {
    if (stack.empty() || Current() != stack.back()->element || IsNoteElement(name))
        return false;
    NoteState& state = *stack.back();
    leafKind = LeafKind::kSkipped;
    leafTarget = nullptr;
    if (std::strcmp(name, "attribute") == 0) {
        const char* given = "";
        for (const char** a = attributes; a && a[0]; a += 2)
            if (std::strcmp(a[0], "name") == 0) {
                given = a[1];
                break;
            }
        NamedAttribute& named = ResolveAttribute(given, state.lastNamed);
        state.lastNamed = &named;
        if (named.attribute) {
            leafKind = LeafKind::kAttribute;
            leafAttribute = &named;
            leafBuffer.clear();
            leafTarget = &leafBuffer;
        }
    } else if (std::strcmp(name, "text") == 0) {
        leafKind = LeafKind::kText;
        state.text.clear();
        state.hasText = true;
        leafTarget = &state.text;
    } else if (std::strcmp(name, "rtf") == 0) {
        leafKind = LeafKind::kRTF;
        state.rtf.clear();
        leafTarget = &state.rtf;
    } else if (std::strcmp(name, "rtfd") == 0) {
        leafKind = LeafKind::kRTFD;
        leafBuffer.clear();
        leafTarget = &leafBuffer;
    } else if (std::strcmp(name, "image") == 0) {
        // An adornment's picture; on any other note it means nothing.
        if (state.node && state.node->IsAdornment()) {
            leafKind = LeafKind::kPicture;
            leafBuffer.clear();
            leafTarget = &leafBuffer;
        }
    } else if (std::strcmp(name, "composites") == 0) {
        // Read as an element, to be kept whole (EndItem).
        return false;
    }
    // Anything else ("styles", "pictures" and "script" are obsolete) is
    // skipped whole.
    return true;
}

void TalvikReader::LeafText(const char* text, int length) {
    if (leafTarget)
        leafTarget->append(text, static_cast<size_t>(length));
}

void TalvikReader::EndLeaf() {
    NoteState& state = *stack.back();
    switch (leafKind) {
    case LeafKind::kAttribute: {
        const NamedAttribute& named = *leafAttribute;
        if (named.alias)
            state.isProxy = true;
        if (named.interner)
            state.node->Set(named.attribute, named.interner->Make(leafBuffer));
        else
            state.node->Set(named.attribute, leafBuffer);
        if (!state.initial.empty())
            state.provided.push_back(named.attribute);
        break;
    }
    case LeafKind::kRTFD: {
        std::string bytes;
        if (!Base64Decoder::Decode(leafBuffer, bytes))
            LogLine("TalvikReader: the pictures of a note could not be decoded");
        state.rtfd = std::move(bytes);
        break;
    }
    case LeafKind::kPicture: {
        std::string bytes;
        if (!Base64Decoder::Decode(leafBuffer, bytes))
            LogLine("TalvikReader: the picture of an adornment could not be decoded");
        else if (auto* adornment = dynamic_cast<KindNode*>(state.node))
            adornment->SetPicture(std::move(bytes));
        break;
    }
    default:
        break;
    }
    leafKind = LeafKind::kSkipped;
    leafAttribute = nullptr;
    leafTarget = nullptr;
}

void TalvikReader::EndNote(XMLItem* item) {
    std::unique_ptr<NoteState> state = std::move(stack.back());
    stack.pop_back();
    Node* node = state->node;
    if (!node)
        return;
    if (!state->isProxy && (state->hasText || !state->rtf.empty() || !state->rtfd.empty())) {
        if (Content* content = node->GetContent()) {
            content->SetText(std::move(state->text));
            content->SetRTF(std::move(state->rtf));
            content->SetRTFD(std::move(state->rtfd));
        }
    }
    // Values the note got when it was made but the file does not hold go
    // again, so that the note is what the file says.
    for (const Attribute* attribute : state->initial)
        if (std::find(state->provided.begin(), state->provided.end(), attribute) == state->provided.end())
            node->DoRemove(attribute);
    // A guess for the next note, bounded so that one note of many values
    // does not make every note after it reserve room for as many.
    lastValueCount = std::min<size_t>(node->Properties().size(), 32);
    if (state->isProxy)
        proxies.emplace_back(node, state->fileID);
    byID.emplace_back(state->fileID, node);
    ++noteCount;
    if (stack.empty())
        topNodes.push_back(node);
    else
        stack.back()->lastChild = node;
    state->Reset();
    spareStates.push_back(std::move(state));
}

// ---------------------------------------------------------------- sections

void TalvikReader::MakeAttribute(const XMLItem* item, Attribute* parent) {
    Props* props = hypertext->AttributeStorage();
    if (!props || item->Name() != "attrib")
        return;
    const XMLAttributes& a = item->Attributes();
    std::string name = a.GetString("Name");
    Attribute* attribute = nullptr;
    if (!name.empty() && props->Has(name)) {
        attribute = props->GetAttribute(name);
        // Only a default that differs from the program's own replaces it.
        if (const std::string* text = a.Find("default"); text && *text != attribute->GetDefaultValueAsXML(hypertext))
            attribute->SetDefault(*text);
        if (const std::string* suggested = a.Find("suggested"))
            attribute->SuggestedValues(*suggested);
    } else if (!name.empty()) {
        int type = static_cast<int>(a.GetLong("type", AttributeType::kString));
        bool editable = a.GetBoolean("editable", true);
        Attribute* father = parent;
        if (!father) {
            std::string parentName = a.GetString("parent");
            father = parentName.empty() || !props->Has(parentName) ? props->Root() : props->GetAttribute(parentName);
        }
        if (a.Has("kind"))
            attribute = props->CreatePreferenceAttribute(name, father->Name(), static_cast<int>(a.GetLong("kind")),
                                                         editable, type);
        else
            attribute = props->CreateBasicAttribute(name, father, editable, type);
        if (attribute) {
            attribute->VisibleInEditor(a.GetBoolean("visibleInEditor", true));
            if (a.GetBoolean("sequential"))
                attribute->BeSequential(true);
            if (a.Has("canInherit"))
                attribute->CanInherit(a.GetBoolean("canInherit", true));
            if (const std::string* suggested = a.Find("suggested"))
                attribute->SuggestedValues(*suggested);
            attribute->SetDescription(a.GetString("description"));
            if (const std::string* text = a.Find("default"))
                attribute->SetDefault(*text);
        } else {
            LogLine("TalvikReader: the attribute <" + name + "> could not be made");
        }
    }
    for (const XMLItem* child = item->Son(); child; child = child->Brother())
        MakeAttribute(child, attribute ? attribute : parent);
}

void TalvikReader::MakeColors(const XMLItem* item) {
    if (Colors* colors = hypertext->GetColorTable()) {
        colors->Clear();
        colors->Add(item);
    }
}

void TalvikReader::MakeLinkTypes(const XMLItem* item) {
    if (LinkTypes* types = hypertext->GetLinkTypes()) {
        types->Clear();
        types->Add(item);
    }
}

void TalvikReader::MakePrefs(const XMLItem* item) {
    Prefs* prefs = hypertext->GetPreferences();
    if (!prefs)
        return;
    for (const XMLItem* child = item->Son(); child; child = child->Brother())
        if (child->Name() == "pref") {
            std::string key = child->Attributes().GetString("name");
            if (!key.empty())
                prefs->Set(key, child->Text());
        }
}

void TalvikReader::MakePreview(const XMLItem* item) {
    std::string bytes;
    if (Base64Decoder::Decode(item->Text(), bytes))
        hypertext->SetPreview(bytes);
    else
        LogLine("TalvikReader: the preview could not be decoded");
}

// ---------------------------------------------------------------- finishing

namespace {

struct ByFileID {
    bool operator()(const std::pair<uint32_t, Node*>& entry, uint32_t id) const { return entry.first < id; }
    bool operator()(uint32_t id, const std::pair<uint32_t, Node*>& entry) const { return id < entry.first; }
    bool operator()(const std::pair<uint32_t, Node*>& a, const std::pair<uint32_t, Node*>& b) const {
        return a.first < b.first;
    }
};

} // namespace

Node* TalvikReader::FindNode(uint32_t id, const std::string& creator) const {
    auto [first, last] = std::equal_range(byID.begin(), byID.end(), id, ByFileID());
    Node* any = nullptr;
    for (auto it = first; it != last; ++it) {
        if (it->second->Creator() == creator)
            return it->second;
        if (!any)
            any = it->second;
    }
    if (any)
        return any;
    if (pasting && hypertext->GetIndex())
        return hypertext->GetIndex()->Find(id);
    return nullptr;
}

void TalvikReader::MakeAliases() {
    // Proxies still waiting: an alias of one of them is dropped.
    std::unordered_set<const Node*> waiting;
    for (const auto& [proxy, fileID] : proxies)
        waiting.insert(proxy);
    for (const auto& waitingProxy : proxies) {
        Node* proxy = waitingProxy.first;
        uint32_t fileID = waitingProxy.second;
        // The proxy's entries among the notes by id.
        auto [first, last] = std::equal_range(byID.begin(), byID.end(), fileID, ByFileID());
        uint32_t originalID = static_cast<uint32_t>(proxy->GetUnsignedLong("Alias"));
        Node* original = FindNode(originalID, std::string());
        if (original && waiting.count(original))
            original = nullptr;
        if (original)
            original = original->GetOriginal();
        Node* alias = nullptr;
        if (original && !original->IsHidden()) {
            Node* parent = proxy->Father();
            Node* elder = proxy->ElderBrother();
            alias = AliasNode::CreateFor(original, parent, elder, proxy->GetDouble("Xpos"), proxy->GetDouble("Ypos"),
                                         false);
        }
        uint32_t id = proxy->GetID().GetID();
        std::string creator = proxy->Creator();
        if (!alias) {
            LogLine("TalvikReader: an alias of the missing note " + std::to_string(originalID) + " was dropped");
            byID.erase(std::remove_if(first, last, [proxy](const auto& entry) { return entry.second == proxy; }),
                       last);
            std::erase(topNodes, proxy);
            waiting.erase(proxy);
            NodeDeleter(proxy).Delete();
            continue;
        }
        // The alias takes the proxy's own values, and only those.
        alias->CanForward(false);
        std::vector<const Attribute*> kept;
        for (const auto& [attribute, value] : proxy->Properties()) {
            if (attribute->Name() == "ID" || attribute->Name() == "Creator")
                continue;
            alias->DoSet(attribute, value->Clone());
            kept.push_back(attribute);
        }
        std::vector<const Attribute*> extra;
        for (const auto& [attribute, value] : alias->Properties())
            if (attribute->Name() != "ID" && attribute->Name() != "Creator" &&
                std::find(kept.begin(), kept.end(), attribute) == kept.end())
                extra.push_back(attribute);
        for (const Attribute* attribute : extra)
            alias->DoRemove(attribute);
        for (auto entry = first; entry != last; ++entry)
            if (entry->second == proxy)
                entry->second = alias;
        std::replace(topNodes.begin(), topNodes.end(), proxy, alias);
        waiting.erase(proxy);
        NodeDeleter(proxy).Delete();
        if (!pasting)
            alias->SetID(id, creator);
        alias->CanForward(true);
    }
    proxies.clear();
}

void TalvikReader::MakePrototypes() {
    NodeIndex* index = hypertext->GetIndex();
    PrototypeChains chains;
    for (auto& request : prototypeRequests) {
        Node* node = request.first;
        const std::string& name = request.second;
        Node* prototype = index ? index->FindPrototype(name) : nullptr;
        if (!prototype)
            prototype = HypertextFacade(hypertext).First([&name](Node* n) { return !n->IsHidden() && n->Name() == name; });
        if (prototype && !prototype->IsHidden() && prototype != node &&
            chains.CanBePrototype(node, prototype->GetOriginal())) {
            NodeLinks(node).CreatePrototypeLink(prototype->GetOriginal());
            chains.Linked(node, prototype->GetOriginal());
        } else {
            node->RequestPrototype(name);
        }
    }
    prototypeRequests.clear();
}

void TalvikReader::MakeLinks() {
    // Each record goes as its link is made, so that the records and the
    // links they become never all exist at once.
    for (; !linkRecords.empty(); linkRecords.pop_front()) {
        LinkRecord& record = linkRecords.front();
        Node* source = FindNode(record.sourceID, record.sourceCreator);
        Node* dest = record.hasDest ? FindNode(record.destID, record.destCreator) : nullptr;
        if (!source || (record.hasDest && !dest)) {
            ++linksDropped;
            continue;
        }
        record.sourceNode = source;
        record.destNode = dest;
        if (record.type == LinkType::kPrototype && (source->GetPrototype() || !dest)) {
            ++linksDropped;
            continue;
        }
        if (record.CreateLink())
            ++linksMade;
        else
            ++linksDropped;
    }
    linkRecords.shrink_to_fit();
}

bool TalvikReader::Finish(bool parsed) {
    if (!hypertext)
        return false;
    if (!parsed || !sawRoot) {
        if (parsed && !sawRoot)
            Fail("no rylvane element");
        if (pasting) {
            for (Node* node : topNodes)
                NodeDeleter(node).Delete();
            topNodes.clear();
        }
        stack.clear();
        return false;
    }
    std::stable_sort(byID.begin(), byID.end(), ByFileID());
    MakeAliases();
    MakePrototypes();
    MakeLinks();
    interners.clear();
    NodeLinks(root).UpdateLinkTypes();
    if (!pasting) {
        // Documents of earlier versions export with the extension set in the preferences.
        if (Props* props = hypertext->AttributeStorage(); props && props->Has("HTMLExportExtension")) {
            Attribute* extension = props->GetAttribute("HTMLExportExtension");
            std::string current = extension->GetDefaultValueAsString();
            const Prefs* prefs = hypertext->GetPreferences();
            std::string preferred = prefs ? prefs->Get("HTMLExtension") : std::string();
            if ((current == ".html" || current.empty()) && !preferred.empty() && preferred != current)
                extension->SetDefault(preferred);
        }
    }
    hypertext->UpdateOutlineOrder();
    HypertextFacade(hypertext).Apply([](Node* n) { n->Loaded(); });
    return true;
}
