// Runs bytes as an export template on a small document: parsed, expanded
// for a note into memory, and used as a template note that other notes
// include, whose text holds elements and which exportedString() reaches
// from action code. Runaway includes, self-including text and ^value^
// calls that export again must all end, without crash, hang or leak.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "ActionHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "ExportHooks.h"
#include "ExportTemplate.h"
#include "Exporter.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"

namespace {

struct Document {
    std::unique_ptr<Hypertext> doc = std::make_unique<Hypertext>();
    Node* first = nullptr;
    Node* second = nullptr;
};

Document MakeDocument(const std::string& text) {
    Document d;
    Hypertext* doc = d.doc.get();
    AttributeInfo(doc).CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
    NodeMaker maker(doc);
    Node* templates = maker.MakeNode("Templates", nullptr, nullptr, 0, 0);
    Node* page = maker.MakeNode("Page", templates, nullptr, 0, 0);
    page->SetBoolean("IsTemplate", true);
    NodeText(page).SetText(text);
    Node* self = maker.MakeNode("Self", templates, page, 0, 0);
    self->SetBoolean("IsTemplate", true);
    NodeText(self).SetText("^include(/Projects/parent,/Templates/Self)^^value(exportedString(this,\"/Templates/Page\"))^");
    Node* projects = maker.MakeNode("Projects", nullptr, templates, 0, 0);
    d.first = maker.MakeNode("parent", projects, nullptr, 0, 0);
    d.second = maker.MakeNode("Second", projects, d.first, 0, 0);
    maker.MakeNode("Child", d.first, nullptr, 0, 0);
    NodeText(d.first).SetText("First ^text^ and ^include(/Projects/Second,/Templates/Page)^\nmore");
    NodeText(d.second).SetText(text);
    d.first->Set("Count", "3");
    d.first->Set("HTMLExportTemplate", "/Templates/Page");
    maker.MakeAlias(d.first, d.second, nullptr);
    NodeLinks(d.first).CreateLink(d.second, "agree");
    NodeLinks(d.second).CreateLink(d.first, "agree");
    return d;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InstallActionHooks();
    InstallExportHooks();
    std::string text(reinterpret_cast<const char*>(data), size);
    Document d = MakeDocument(text);
    DummyHTMLExporter exporter(d.doc.get());
    {
        ExportTemplate page(text, &exporter, nullptr);
        page.ExportString(d.first, d.first);
        page.ExportString(d.second, d.first);
    }
    exporter.ChooseTemplate("/Templates/Self");
    exporter.ExportOne(d.first);
    return 0;
}
