#pragma once
// The document the benchmarks measure against: 100,000 notes of 10
// attributes (name, position, creation and modification times, colour, and
// four user attributes) and 60 words of text each, with 20,000 links, in
// containers of 100 notes. The same document for reading, writing and
// evaluating, so that their figures can be compared.
#include <memory>
#include <random>
#include <string>

#include "AttributeInfo.h"
#include "Attribute.h"
#include "Hypertext.h"
#include "LinkType.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"
#include "STime.h"

namespace bench_document {

constexpr int kNotes = 100000;
constexpr int kLinks = 20000;
constexpr int kWords = 60;

const char* const kVocabulary[] = {
    "garden", "bean",   "pea",    "soil",   "spring",  "water",  "light",  "seed",   "row",     "compost",
    "harvest", "winter", "frost",  "shade",  "leaf",    "root",   "stem",   "flower", "bee",     "weed",
    "spade",  "rake",   "hoe",    "plan",   "notebook", "idea",   "project", "people", "meeting", "letter",
    "river",  "stone",  "path",   "fence",  "gate",    "orchard", "apple",  "pear",   "plum",    "cherry",
    "the",    "a",      "and",    "of",     "to",      "in",     "with",   "for",    "on",      "by",
};

inline std::string Words(std::mt19937& random, int count) {
    std::uniform_int_distribution<size_t> pick(0, std::size(kVocabulary) - 1);
    std::string text;
    for (int i = 0; i < count; ++i) {
        if (i)
            text += (i % 12 == 0) ? ". " : " ";
        text += kVocabulary[pick(random)];
    }
    return text + ".";
}

inline std::unique_ptr<Hypertext> MakeDocument() {
    auto doc = std::make_unique<Hypertext>();
    std::mt19937 random(42);
    AttributeInfo info(doc.get());
    info.CreateBasicAttribute("Priority", "User", true, AttributeType::kNumber);
    info.CreateBasicAttribute("Status", "User", true, AttributeType::kString);
    info.CreateBasicAttribute("Tags", "User", true, AttributeType::kSet);
    info.CreateBasicAttribute("Due", "User", true, AttributeType::kDate);
    NodeMaker maker(doc.get());
    std::vector<Node*> notes;
    notes.reserve(kNotes);
    Node* container = nullptr;
    Node* last = nullptr;
    static const char* const statuses[] = {"open", "done", "waiting", "someday"};
    static const char* const colors[] = {"red", "green", "light blue", "warm gray dark", "#336699"};
    for (int i = 0; i < kNotes; ++i) {
        Node* parent = nullptr;
        if (i % 100 != 0) {
            parent = container;
        }
        Node* after = parent ? last : (container ? container : nullptr);
        Node* note = maker.MakeDontInitialize("note " + std::to_string(i), parent, after, i % 17, i % 23);
        if (i % 100 == 0) {
            container = note;
            last = nullptr;
        } else {
            last = note;
        }
        // Every note has its own creation and modification times, as in a
        // document written over years; the other values repeat as real ones do.
        note->SetTime("Created", STime(1500000000.0 + i * 613.0));
        note->SetTime("Modified", STime(1600000000.0 + i * 797.0));
        note->Set("Color", colors[i % 5]);
        note->Set("Priority", std::to_string(i % 9 + 1));
        note->Set("Status", statuses[i % 4]);
        note->Set("Tags", std::string(kVocabulary[i % 20]) + ";" + kVocabulary[(i + 7) % 20]);
        note->Set("Due", "2026-" + std::to_string(i % 12 + 1) + "-" + std::to_string(i % 28 + 1));
        NodeText(note).SetText(Words(random, kWords));
        notes.push_back(note);
    }
    std::uniform_int_distribution<size_t> pick(0, notes.size() - 1);
    static const char* const types[] = {"*untitled", "agree", "example", "source"};
    for (int i = 0; i < kLinks; ++i)
        NodeLinks(notes[pick(random)]).CreateLink(notes[pick(random)], types[i % 4]);
    doc->UpdateOutlineOrder();
    return doc;
}

}  // namespace bench_document
