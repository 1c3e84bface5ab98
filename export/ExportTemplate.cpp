#include "ExportTemplate.h"

#include <fstream>
#include <sstream>

#include "ExportActionQueue.h"
#include "Exporter.h"
#include "HTExportPath.h"
#include "Node.h"
#include "NodeFacade.h"
#include "NodeHelpers.h"
#include "NoteTextMarkup.h"
#include "STemplateFile.h"

ExportTemplate::ExportTemplate(const std::string& text, Exporter* exporter, ExportTemplate* parent)
    : exporter(exporter), parent(parent) {
    Build(text);
}

ExportTemplate::ExportTemplate(Node* note, Exporter* exporter, ExportTemplate* parent)
    : exporter(exporter), parent(parent) {
    if (note)
        name = note->Name();
    Build(note ? NodeText(note).GetText() : std::string());
}

ExportTemplate::~ExportTemplate() = default;

void ExportTemplate::Build(const std::string& text) {
    if (parent) {
        exportingNode = parent->exportingNode;
        matches = parent->matches;
        linkIndex = parent->linkIndex;
        useEntities = parent->useEntities;
        depth = parent->depth + 1;
    } else if (exporter) {
        linkIndex = exporter->GetLinkIndex();
    }
    root = ExportElement::FromString(text);
    valid = root != nullptr;
}

std::unique_ptr<ExportTemplate> ExportTemplate::Named(const std::string& name, Node* from, Exporter* exporter,
                                                      ExportTemplate* parent) {
    if (name.empty() || (parent && parent->Depth() >= kMaxTemplateDepth))
        return nullptr;
    if (from) {
        MatchList matches = parent ? parent->Matches() : MatchList();
        Node* found = HTExportPath(name).Get(from, matches);
        if (found && NodeFacade(found).IsTemplate())
            return std::make_unique<ExportTemplate>(found, exporter, parent);
        if (found)
            return nullptr;
    }
    std::string text = STemplateFile::BuiltInTemplate(name);
    if (text.empty())
        return nullptr;
    auto made = std::make_unique<ExportTemplate>(text, exporter, parent);
    made->SetName(name);
    return made;
}

ExportTemplate* ExportTemplate::Outermost() {
    ExportTemplate* at = this;
    while (at->parent)
        at = at->parent;
    return at;
}

namespace {

thread_local ExportTemplate* tRunning = nullptr;

}  // namespace

ExportTemplate* ExportTemplate::Running() { return tRunning; }

int ExportTemplate::Export(std::ostream& stream, Node* node, Node* exporting, ExportView* view) {
    ExportActionQueue::Scope actions;
    includes.clear();
    Node* saved = exportingNode;
    exportingNode = exporting;
    ExportTemplate* outer = tRunning;
    tRunning = this;
    int code = 0;
    try {
        code = root ? root->Export(stream, node, this, view) : 0;
    } catch (...) {
        tRunning = outer;
        exportingNode = saved;
        throw;
    }
    tRunning = outer;
    exportingNode = saved;
    return code;
}

std::string ExportTemplate::ExportString(Node* node, Node* exporting) {
    std::ostringstream stream;
    Export(stream, node, exporting);
    return stream.str();
}

std::string ExportTemplate::EncodeEntityText(const std::string& text, bool keepAmpersands, bool encodeAngles) {
    return NoteTextMarkup::EscapeText(text, keepAmpersands, encodeAngles);
}

std::string ExportTemplate::EntityFilter(const std::string& text, Node* node) {
    if (node && !node->GetBoolean("HTMLEntities"))
        return text;
    if (!useEntities)
        return text;
    return EncodeEntityText(text, false, node && node->GetBoolean("HTMLQuoteHTML"));
}

bool ExportTemplate::AlreadyIncluded(const Node* node) {
    ExportTemplate* outer = Outermost();
    auto found = outer->includes.find(node);
    return found != outer->includes.end() && found->second > kMaxIncludes - 1;
}

void ExportTemplate::Including(const Node* node) { ++Outermost()->includes[node]; }

bool ExportTemplate::ExportingTextFrom(const Node* node) const {
    for (const ExportTemplate* at = this; at; at = at->parent)
        if (at->textSource && at->textSource == node)
            return true;
    return false;
}

bool ExportTemplate::ExportingHTML() const { return exporter ? exporter->UseHTML() : true; }

std::string ExportTemplate::DoPlainTextMarkup(Node* node, int limit) {
    std::string text = NodeText(node).GetText();
    if (limit > 0 && static_cast<size_t>(limit) < text.size())
        text.resize(static_cast<size_t>(limit));
    return text;
}

std::string ExportTemplate::DoTextMarkup(Node* node, int limit) {
    if (!node)
        return auxText;
    if (!ExportingHTML())
        return DoPlainTextMarkup(node, limit);
    std::string html = NoteTextMarkup::ToHTML(node, this, limit);
    if (IsTemplate(html))
        return ParseTemplate(html, node);
    return html;
}

const CodeGenerator::Lookup* ExportTemplate::CodeLookup(const Node* note) const {
    codeLookup.Refresh(note);
    return &codeLookup;
}

bool ExportTemplate::IsTemplate(const std::string& text) { return text.find('^') != std::string::npos; }

std::string ExportTemplate::ProcessExportElements(const std::string& text, Node* node) {
    const Node* saved = textSource;
    textSource = node;
    std::unique_ptr<ExportElement> tree = ExportElement::FromString(text);
    std::ostringstream stream;
    tree->Export(stream, node, this, nullptr);
    textSource = saved;
    return stream.str();
}

std::string ExportTemplate::URLFor(Node* target, Node* current) {
    if (!exporter || !target)
        return std::string();
    if (exporter->HasRootPath())
        return exporter->RootPath() + FileNameFor(target);
    std::string host = HostFor(target);
    if (host.empty() || host == "http://")
        return exporter->RelativeURL(target, current);
    return host + FileNameFor(target);
}

namespace {

// A note whose links ask for another extension than its pages have.
std::string WithLinkExtension(Node* node, std::string url) {
    if (!node)
        return url;
    std::string link = node->GetString("HTMLLinkExtension");
    std::string page = node->GetString("HTMLExportExtension");
    if (link != page && link != ".html") {
        if (url.size() >= page.size() && url.compare(url.size() - page.size(), page.size(), page) == 0)
            url.resize(url.size() - page.size());
        url += link;
    }
    return url;
}

}  // namespace

std::string ExportTemplate::LinkURLFor(Node* node) { return WithLinkExtension(node, FileNameFor(node)); }

std::string ExportTemplate::LinkURLFor(Node* node, Node* current) {
    return WithLinkExtension(node, URLFor(node, current));
}

std::string ExportTemplate::HostFor(Node*) { return exporter ? exporter->Host() : std::string(); }

bool ExportTemplate::HasChildLinks() const { return !exporter || exporter->HasChildLinks(); }
bool ExportTemplate::HasTextLinks() const { return !exporter || exporter->HasTextLinks(); }
bool ExportTemplate::HasLinkNames() const { return !exporter || exporter->HasLinkNames(); }
bool ExportTemplate::HasBasicLinks() const { return !exporter || exporter->HasBasicLinks(); }

std::string ExportTemplate::AuxFileName(Node* node) { return exporter ? exporter->AuxFileName(node) : std::string(); }

std::string ExportTemplate::ImageFileName(Node* node, int index) {
    return exporter ? exporter->ImageFileName(node, index) : std::string();
}

std::string ExportTemplate::ImageLocalFileName(Node* node, int index) {
    return exporter ? exporter->ImageLocalFileName(node, index) : std::string();
}

std::string ExportTemplate::RootPath() const { return exporter ? exporter->RootPath() : std::string(); }

void ExportTemplate::RootPath(const std::string& path) {
    if (exporter)
        exporter->RootPath(path);
}

bool ExportTemplate::Exporting() const { return exportingNode != nullptr; }

std::string ExportTemplate::FileNameFor(Node* node) { return exporter ? exporter->FileNameFor(node) : std::string(); }

std::string ExportTemplate::NameOfFile(Node* node) { return exporter ? exporter->NameOfFile(node) : std::string(); }

std::string ExportTemplate::GetExportFolder() const {
    return exporter ? exporter->GetExportFolder() : std::string();
}

bool ExportTemplate::ExportAuxFile(Node* node, const std::string& text) {
    std::string file = AuxFileName(node);
    if (file.empty())
        return false;
    auxText = text;
    bool done = ExportTheFile(file);
    auxText.clear();
    return done;
}

bool ExportTemplate::ExportTheFile(const std::string& file) {
    std::string text = ExportString(nullptr, exportingNode);
    return exporter && exporter->WriteFile(file, text);
}

std::string ExportTemplate::LinkURLFor(const Node* target, const Node* current) const {
    auto* self = const_cast<ExportTemplate*>(this);
    return self->LinkURLFor(const_cast<Node*>(target), const_cast<Node*>(current));
}

std::string ExportTemplate::ImageFileName(const Node* note, int index) const {
    return exporter ? exporter->ImageFileName(const_cast<Node*>(note), index) : std::string();
}

void ExportTemplate::WriteImageFile(const Node* note, int index, const std::string& fileName,
                                    const std::string& data) const {
    if (!exporter || fileName.empty())
        return;
    // The name is relative to the page being written.
    std::string page = exporter->FileNameFor(exportingNode ? exportingNode : const_cast<Node*>(note));
    size_t slash = page.rfind('/');
    std::string folder = slash == std::string::npos ? std::string() : page.substr(0, slash + 1);
    exporter->WriteFile(folder + fileName, data);
}
