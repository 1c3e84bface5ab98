#include "ImportManager.h"

#include "Attribute.h"
#include "Hypertext.h"
#include "Importable.h"
#include "ImportableText.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "Props.h"
#include "Spreadsheet.h"

const std::string* ImportSource::Find(const std::string& type) const {
    for (const auto& [t, data] : flavours)
        if (t == type)
            return &data;
    return nullptr;
}

ImportManager::ImportManager(Hypertext* h, Node* t) : hypertext(h), target(t) {
    if (!target && hypertext)
        target = hypertext->Root();
    if (target)
        lastUnderTarget = target->YoungestSon();
}

ImportManager::~ImportManager() = default;

bool ImportManager::CanPaste(const ImportSource& source) const {
    for (const std::string& type : Importable::ImportableTypes())
        if (source.Has(type))
            return true;
    return false;
}

namespace {

// What the platform's bridges to other applications read; this build has none.
struct ForeignFlavour {
    const char* type;
    const char* what;
};
constexpr ForeignFlavour kForeign[] = {
    {ImportManager::kDevonThinkSelection, "DEVONthink selections"},
    {ImportManager::kDeliciousMonster, "Delicious Monster items"},
    {ImportManager::kStamp, "stamps"},
    {ImportManager::kOmniFocus, "OmniFocus items"},
    {ImportManager::kOmniOutliner, "OmniOutliner rows"},
    {ImportManager::kMailMessage, "mail messages"},
    {ImportManager::kCalendarEvent, "calendar events"},
    {ImportManager::kDraggedNote, "notes dragged from another window"},
};

} // namespace

bool ImportManager::Import(const ImportSource& source) {
    if (const std::string* text = source.Find(kString))
        ChooseName(NodeName(static_cast<Node*>(nullptr)).MakeName(*text));
    // Each step ends the walk once it has made something; a flavour this
    // build cannot read ends it with a failure when nothing else is there.
    std::string refused;
    for (const ForeignFlavour& foreign : kForeign)
        if (source.Has(foreign.type) && refused.empty())
            refused = std::string(foreign.what) +
                      " cannot be imported here: reading them needs a platform service this build lacks";
    if (const std::string* path = source.Find(kDraggedPath)) {
        auto item = Importable::Create(*path, kDraggedPath);
        if (item && ImportIt(*item) && IsValid())
            return true;
    }
    bool urlDone = false;
    if (const std::string* url = source.Find(kURL))
        urlDone = ImportURL(*url);
    if (const std::string* files = source.Find(kFileURL)) {
        std::vector<std::string> paths;
        size_t start = 0;
        while (start <= files->size()) {
            size_t end = files->find('\n', start);
            if (end == std::string::npos)
                end = files->size();
            // Lists written with CRLF line ends leave a return behind.
            size_t stop = end > start && (*files)[end - 1] == '\r' ? end - 1 : end;
            if (stop > start)
                paths.push_back(files->substr(start, stop - start));
            start = end + 1;
        }
        if (ImportFiles(paths))
            return true;
    }
    if (const std::string* card = source.Find(kVCard))
        if (ImportItems(kVCard, *card))
            return true;
    // Styled text yields to a plain text beside it that has a structure of
    // its own (a table, an outline, cards...); the plain text is recognised
    // before it becomes one note.
    const std::string* text = source.Find(kString);
    if (const std::string* rtf = source.Find(kRTF)) {
        if (text && ImportableText::Recognize(*text, "") != ImportableText::Kind::Plain &&
            ImportItems(kString, *text))
            return true;
        if (ImportItems(kRTF, *rtf))
            return true;
    }
    if (text && ImportItems(kString, *text))
        return true;
    if (source.Has(kImage) && !urlDone && refused.empty())
        refused = "pictures on the pasteboard cannot be imported here: reading them needs a platform service "
                  "this build lacks";
    if (urlDone)
        return true;
    if (!refused.empty() && !Failed())
        Fail(refused);
    return false;
}

bool ImportManager::ImportFiles(const std::vector<std::string>& paths) {
    bool any = false;
    for (const std::string& path : paths) {
        auto item = Importable::CreateForFileURL(path);
        if (!item) {
            Fail(path + ": no such file");
            continue;
        }
        any = ImportIt(*item) || any;
    }
    return any;
}

bool ImportManager::ImportIt(Importable& importable) {
    if (!importable.IsValid()) {
        // It tells the manager why it cannot be read.
        importable.ImportSelf(*this);
        return false;
    }
    return importable.Import(target, nullptr, *this) && IsValid();
}

bool ImportManager::ImportItems(const std::string& type, const std::string& data) {
    auto item = Importable::Create(data, type);
    return item && ImportIt(*item);
}

bool ImportManager::ImportURL(const std::string& url) {
    auto item = Importable::Create(url, kURL);
    return item && ImportIt(*item);
}

bool ImportManager::ImportStructuredText(const std::string& text) {
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        Fail("nothing to import: the text is empty");
        return false;
    }
    std::string name = chosenName.empty() ? NodeName(static_cast<Node*>(nullptr)).MakeName(text) : chosenName;
    Node* note = MakeNote(name, target, nullptr);
    if (!note)
        return false;
    NodeText(note).SetText(text);
    return true;
}

Node* ImportManager::MakeNote(const std::string& name, Node* parent, Node* after) {
    if (dontCreate || !target)
        return nullptr;
    if (!parent)
        parent = target;
    if (!after && parent == target)
        after = lastUnderTarget;
    int depth = 0;
    for (Node* n = parent; n && n->Father(); n = n->Father())
        ++depth;
    if (depth >= kMaxNoteDepth) {
        if (!Failed())
            Fail("notes nested too deeply (more than " + std::to_string(kMaxNoteDepth) + " levels)");
        return nullptr;
    }
    double x = 0, y = 0;
    if (after) {
        x = after->GetDouble("Xpos");
        y = after->GetDouble("Ypos") + 2.0;
    }
    Node* note = Node::Create(name, parent, after, x, y, true);
    if (!note)
        return nullptr;
    ++created;
    valid = true;
    if (parent == target) {
        targets.push_back(note);
        lastUnderTarget = note;
    }
    return note;
}

void ImportManager::Discard(Node* note) {
    if (!note)
        return;
    size_t count = 1;
    for (Node* n = note->Son(); n;) {
        ++count;
        if (n->Son()) {
            n = n->Son();
            continue;
        }
        while (n && n != note && !n->Brother())
            n = n->Father();
        n = (n && n != note) ? n->Brother() : nullptr;
    }
    created = created > count ? created - count : 0;
    if (note == lastUnderTarget)
        lastUnderTarget = note->ElderBrother();
    targets.Remove(note);
    NodeDeleter(note).Delete();
    if (created == 0)
        valid = false;
}

std::string ImportManager::MakeUserAttribute(const std::string& column, int type) {
    std::string name = Spreadsheet::MakeAttributeName(column);
    if (!Attribute::IsValidAttributeName(name) || !hypertext)
        return "";
    Props* props = hypertext->AttributeStorage();
    if (Attribute* known = props->Find(name))
        return known->IsEditable() && !known->IsAttributeCategory() ? name : "";
    return props->CreateBasicAttribute(name, "User", true, type) ? name : "";
}

void ImportManager::Fail(const std::string& message, long line) {
    if (!failure.empty())
        return;
    failure = message.empty() ? "cannot be read" : message;
    failureLine = line;
}

std::string ImportManager::FailureMessage() const {
    if (failureLine > 0 && failure.rfind("line ", 0) != 0)
        return "line " + std::to_string(failureLine) + ": " + failure;
    return failure;
}

void ImportManager::ReportBadOPML(const std::string& text, const std::string& message, long line) {
    Node* note = MakeNote("Imported OPML", target, nullptr);
    if (note) {
        NodeText(note).SetText(text);
        keepsFailure = true;
    }
    Fail(message + " (not valid OPML)", line);
}

void ImportManager::Absorb(ImportManager& part) {
    if (part.Failed() && !part.KeepsFailure()) {
        NodeVector made = part.Targets();
        for (Node* n : made)
            part.Discard(n);
    }
    created += part.created;
    valid = valid || part.valid;
}

void ImportManager::ChooseName(const std::string& text) { chosenName = text; }

void ImportManager::Finish() {
    if (hypertext && created > 0)
        hypertext->UpdateOutlineOrder();
    if (target && created > 0)
        target->Changed(kChangeChildren);
}
