#include "Exporter.h"

#include "ExportActionQueue.h"
#include "HTMLExportSaver.h"

#include <vector>

#include "HTExportPath.h"
#include "Hypertext.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeExport.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "STemplateFile.h"

namespace {

const char* const kNoTemplate = "Unable to find this template";

}  // namespace

Exporter::Exporter(Hypertext* hypertext) : hypertext(hypertext) {}

Exporter::~Exporter() = default;

bool Exporter::Export(bool all) {
    // The templates' actions run when the whole export is over.
    ExportActionQueue::Scope actions;
    LoadTemplate();
    errorCode = 0;
    if (!Prepare(all))
        return false;
    ExportDocument();
    Cleanup();
    return errorCode == 0;
}

std::string Exporter::Host() const { return std::string(); }

std::string Exporter::TemplateNameFor(Node* node) const {
    return node ? node->GetString("HTMLExportTemplate") : std::string();
}

bool Exporter::FindTemplate(const std::string& name, Node* from, std::string& text, std::string& foundName) const {
    if (name.empty())
        return false;
    if (from) {
        MatchList matches;
        if (Node* note = HTExportPath(name).Get(from, matches)) {
            text = NodeText(note).GetText();
            foundName = note->Name();
            return true;
        }
    }
    text = STemplateFile::BuiltInTemplate(name);
    foundName = name;
    return !text.empty();
}

void Exporter::SetTemplateText(const std::string& text) {
    defaultTemplate = std::make_unique<ExportTemplate>(text, this, nullptr);
    defaultTemplate->SetLinkIndex(&linkIndex);
}

bool Exporter::HasTemplate() const {
    if (defaultTemplate)
        return true;
    Node* root = HypertextFacade(hypertext).Root();
    std::string text, found;
    return FindTemplate(chosenTemplate, root, text, found) || FindTemplate(TemplateNameFor(root), root, text, found);
}

void Exporter::LoadTemplate() {
    if (defaultTemplate)
        return;
    Node* root = HypertextFacade(hypertext).Root();
    std::string text, found;
    if (FindTemplate(chosenTemplate, root, text, found) || FindTemplate(TemplateNameFor(root), root, text, found)) {
        defaultTemplate = std::make_unique<ExportTemplate>(text, this, nullptr);
        defaultTemplate->SetName(found);
    } else {
        defaultTemplate = std::make_unique<ExportTemplate>(std::string(kNoTemplate), this, nullptr);
    }
    defaultTemplate->SetLinkIndex(&linkIndex);
}

void Exporter::LoadPreviewTemplate() {
    Node* root = HypertextFacade(hypertext).Root();
    MatchList matches;
    std::string style, page;
    if (Node* note = HTExportPath("/Hints/Preview/style").Get(root, matches))
        style = NodeText(note).GetText();
    if (Node* note = HTExportPath("/Hints/Preview/template").Get(root, matches))
        page = NodeText(note).GetText();
    if (page.empty())
        page = "<html><head><style>\n" + style + "\n</style></head>\n<body>^text^</body></html>";
    defaultTemplate = std::make_unique<ExportTemplate>(page, this, nullptr);
    defaultTemplate->SetLinkIndex(&linkIndex);
}

std::unique_ptr<ExportTemplate> Exporter::ExportTemplateFor(Node* node) {
    if (!chosenTemplate.empty())
        return nullptr;
    std::string name = TemplateNameFor(node);
    if (name.empty() || (defaultTemplate && name == TemplateNameFor(HypertextFacade(hypertext).Root())))
        return nullptr;
    std::unique_ptr<ExportTemplate> own = ExportTemplate::Named(name, node, this, nullptr);
    if (own)
        own->SetLinkIndex(&linkIndex);
    return own;
}

std::string Exporter::ExportOne(Node* node) {
    if (!NodeExport(node).IsExportable())
        return std::string();
    if (!defaultTemplate) {
        if (node->GetBoolean("HTMLMarkdown"))
            LoadPreviewTemplate();
        else
            LoadTemplate();
    }
    Node* saved = exporting;
    exporting = node;
    std::unique_ptr<ExportTemplate> own = ExportTemplateFor(node);
    ExportTemplate* use = own ? own.get() : defaultTemplate.get();
    use->SetLinkIndex(&linkIndex);
    std::string text = use->ExportString(node, node);
    exporting = saved;
    return text;
}

std::string Exporter::RelativeURL(Node* target, Node* current) {
    if (!target)
        return std::string();
    if (target == current)
        return "#";
    return FileNameFor(target);
}

std::string Exporter::FileNameFor(Node* node) {
    if (!node)
        return std::string();
    std::string ext = extension.empty() ? NodeExport(node).GetHTMLExtension() : extension;
    return NodeExport(node).ExportFileName() + ext;
}

std::string Exporter::NameOfFile(Node* node) { return node ? "/" + FileNameFor(node) : std::string(); }

std::string Exporter::AuxFileName(Node* node) { return FileNameFor(node); }

std::string Exporter::ImageFileName(Node* node, int index) {
    std::string name = NodeExport(node).ExportFileName();
    if (index > 0)
        name += std::to_string(index);
    return name + ".png";
}

std::string Exporter::ImageLocalFileName(Node* node, int index) { return ImageFileName(node, index); }

Node* Exporter::IsExporting(Node* node) {
    Node* previous = exporting;
    exporting = node;
    return previous;
}

bool Exporter::CanExport(Node* node) const { return NodeExport(node).CanBeExported(); }

bool Exporter::CanExportChildren(Node* node) const {
    return node && node->Son() && (node->IsRoot() || NodeExport(node).CanExportChildren());
}

long Exporter::CountExportedNotes() const {
    // The notes that WillBeExported: below a note that does not export its
    // children none is, so the walk leaves such branches out.
    Node* root = HypertextFacade(hypertext).Root();
    if (!root)
        return 0;
    long count = 0;
    std::vector<Node*> pending;
    for (Node* child = root->Son(); child; child = child->Brother())
        pending.push_back(child);
    while (!pending.empty() && !HypertextFacade(hypertext).IsClosing()) {
        Node* at = pending.back();
        pending.pop_back();
        NodeExport facade(at);
        if (facade.CanBeExported())
            ++count;
        if (facade.CanExportChildren())
            for (Node* child = at->Son(); child; child = child->Brother())
                pending.push_back(child);
    }
    return count;
}

void Exporter::UpdateProgress(const std::string& name) {
    status = name;
    if (progress)
        progress(fileCount, total);
}

void Exporter::ExportDocument() {
    total = CountExportedNotes();
    status = "Exporting " + std::to_string(total) + " pages.";
    Node* root = HypertextFacade(hypertext).Root();
    if (!root)
        return;
    for (Node* child = root->Son(); child && !HypertextFacade(hypertext).IsClosing(); child = child->Brother())
        ExportNote(child);
}

void Exporter::ExportNote(Node* node) {
    if (stopped)
        return;
    IsExporting(node);
    if (CanExport(node)) {
        ++fileCount;
        UpdateProgress(node->Name());
        ExportToFile(node);
    }
    if (node->Son() && CanExportChildren(node))
        ExportChildrenOf(node);
    IsExporting(nullptr);
}

void Exporter::ExportChildrenOf(Node* node) {
    // Depth first without recursion: documents may nest thousands deep.
    std::vector<Node*> pending;
    for (Node* child = node->YoungestSon(); child; child = child->ElderBrother())
        pending.push_back(child);
    while (!pending.empty() && !HasBeenStopped()) {
        Node* at = pending.back();
        pending.pop_back();
        if (!PrepareDirectoryFor(at))
            return;
        IsExporting(at);
        if (CanExport(at)) {
            ++fileCount;
            UpdateProgress(at->Name());
            ExportToFile(at);
        }
        if (at->Son() && CanExportChildren(at))
            for (Node* child = at->YoungestSon(); child; child = child->ElderBrother())
                pending.push_back(child);
    }
}

bool Exporter::SaveIfChanged(const std::string& path, const std::string& text, std::string& failure) {
    if (HTMLExportSaver::FileContentsUnchanged(path, text)) {
        ++unchanged;
        return true;
    }
    if (!HTMLExportSaver::Save(path, text, failure))
        return false;
    ++written;
    return true;
}
