#include "MarkupCloud.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "Node.h"
#include "NodeIndexing.h"

MarkupCloud::MarkupCloud(std::string name, std::string arguments, Scope scope)
    : MarkupExportElement(std::move(name), std::move(arguments)), scope(scope) {}

size_t MarkupCloud::GetMaxWords(Node* node, ExportTemplate* exportTemplate) const {
    size_t at = scope == kDocument ? 0 : 1;
    if (ArgCount() <= at || Trim(Arg(at)).empty())
        return kDefaultMaxWords;
    long n = std::atol(EvaluatedArg(at, node, exportTemplate).c_str());
    return n > 0 ? static_cast<size_t>(n) : kDefaultMaxWords;
}

std::vector<int> MarkupCloud::Tiers(const std::vector<WordRecord>& words) {
    std::vector<int> tiers;
    if (words.empty())
        return tiers;
    auto [least, most] = std::minmax_element(words.begin(), words.end(),
                                             [](const WordRecord& a, const WordRecord& b) { return a.weight < b.weight; });
    double a = std::sqrt(least->weight);
    double b = std::sqrt(most->weight);
    double scale = 4.0 / (b + 0.1 - a);
    for (const WordRecord& word : words)
        tiers.push_back(std::clamp(static_cast<int>(std::lround(scale * (std::sqrt(word.weight) - a))), 0, 4));
    return tiers;
}

std::string MarkupCloud::ExportValue(Node* node, ExportTemplate* exportTemplate) {
    Node* target = node;
    if (scope != kDocument && ArgCount() > 0 && !Trim(Arg(0)).empty())
        target = GetNodeNamed(node, Arg(0), exportTemplate, true);
    if (scope == kDocument && node)
        target = node->Root();
    if (!target)
        return std::string();
    size_t count = GetMaxWords(node, exportTemplate);
    std::vector<WordRecord> words = NodeIndexing(target).CommonWords(count, scope != kNote, true);
    if (words.empty())
        return std::string();
    std::vector<int> tiers = Tiers(words);
    auto start = [&](int tier) { return node->GetString("HTMLCloud" + std::to_string(tier + 1) + "Start"); };
    auto end = [&](int tier) { return node->GetString("HTMLCloud" + std::to_string(tier + 1) + "End"); };
    std::string out;
    int current = -1;
    for (size_t i = 0; i < words.size(); ++i) {
        if (tiers[i] != current) {
            if (current >= 0)
                out += end(current) + " ";
            current = tiers[i];
            out += start(current) + " ";
        }
        out += EntityFilter(words[i].word, node, exportTemplate) + " ";
    }
    out += end(current) + " ";
    return out;
}
