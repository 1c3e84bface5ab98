#include "ExportNameTable.h"

#include "Attribute.h"
#include "Props.h"

ExportNameTable::Reads::Reads(const Hypertext* hypertext) {
    Props* props = hypertext ? hypertext->AttributeStorage() : nullptr;
    if (!props)
        return;
    separator = props->GetAttribute("Separator");
    fileName = props->GetAttribute("HTMLExportFileName");
    spacer = props->GetAttribute("HTMLExportFileNameSpacer");
    lowerCase = props->GetAttribute("HTMLFileNameLowerCase");
    maxLength = props->GetAttribute("HTMLFileNameMaxLength");
    extension = props->GetAttribute("HTMLExportExtension");
    dontExport = props->GetAttribute("HTMLDontExport");
    exportChildren = props->GetAttribute("HTMLExportChildren");
}

std::string ExportNameTable::Reads::Definitions() const {
    std::string definitions;
    for (const Attribute* attribute :
         {separator, fileName, spacer, lowerCase, maxLength, extension, dontExport, exportChildren}) {
        if (attribute)
            definitions += attribute->GetDefaultValueAsString();
        definitions += '\x1f';
    }
    return definitions;
}

ExportNameTable::Key ExportNameTable::KeyFor(const Hypertext* hypertext, const Reads& reads,
                                             const std::string& extensionOverride) {
    Key key;
    // Read first: a change made while the names are made gives the next
    // export another key.
    key.changeCount = hypertext ? hypertext->ChangeCount() : 0;
    Props* props = hypertext ? hypertext->AttributeStorage() : nullptr;
    key.attributeStamp = props ? props->Stamp() : 0;
    key.extensionOverride = extensionOverride;
    key.definitions = reads.Definitions();
    return key;
}

void ExportNameTable::Add(const Node* node, std::string name) {
    names.insert(name);
    files.insert_or_assign(node, std::move(name));
}

ExportNameCache* ExportNameCache::For(Hypertext* hypertext) {
    if (!hypertext)
        return nullptr;
    return static_cast<ExportNameCache*>(
        hypertext->Part("export.NameCache", [] { return std::make_unique<ExportNameCache>(); }));
}

std::shared_ptr<const ExportNameTable> ExportNameCache::Find(const ExportNameTable::Key& wanted) const {
    std::lock_guard<std::mutex> guard(mutex);
    return table && key == wanted ? table : nullptr;
}

void ExportNameCache::Keep(ExportNameTable::Key madeFrom, std::shared_ptr<const ExportNameTable> made) {
    std::lock_guard<std::mutex> guard(mutex);
    key = std::move(madeFrom);
    table = std::move(made);
}
