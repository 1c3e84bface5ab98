#pragma once
// Word clouds: the commonest words of a note, a section or the document,
// each set in one of five sizes by its weight.
#include "Lynx.h"
#include "MarkupExportElement.h"

class MarkupCloud : public MarkupExportElement {
public:
    enum Scope { kNote, kSection, kDocument };
    static constexpr size_t kDefaultMaxWords = 100;
    MarkupCloud(std::string name, std::string arguments, Scope scope);
    std::string ExportValue(Node* node, ExportTemplate* exportTemplate) override;
    // The tier (0 to 4) of each weight.
    static std::vector<int> Tiers(const std::vector<WordRecord>& words);

private:
    size_t GetMaxWords(Node* node, ExportTemplate* exportTemplate) const;
    Scope scope;
};
