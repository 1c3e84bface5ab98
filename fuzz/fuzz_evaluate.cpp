// Runs bytes as action code on a small document: as an action applied to a
// note, and as an expression evaluated on another. The document has
// prototypes, an alias, links, lists, sets, dictionaries and dates, so that
// designators that lead in circles and every kind of operand are reachable.
// Evaluation must end, without crash, hang or leak, on any text.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Action.h"
#include "ActionHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "LynxUpdater.h"
#include "MatchList.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "NodeLinks.h"

namespace {

struct Document {
    std::unique_ptr<Hypertext> doc = std::make_unique<Hypertext>();
    Node* first = nullptr;
    Node* second = nullptr;
};

Document MakeDocument() {
    Document d;
    Hypertext* doc = d.doc.get();
    AttributeInfo info(doc);
    info.CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
    info.CreateBasicAttribute("Tags", "User", true, AttributeType::kSet);
    info.CreateBasicAttribute("Items", "User", true, AttributeType::kList);
    info.CreateBasicAttribute("Table", "User", true, AttributeType::kDictionary);
    info.CreateBasicAttribute("Due", "User", true, AttributeType::kDate);
    info.CreateBasicAttribute("Span", "User", true, AttributeType::kInterval);
    NodeMaker maker(doc);
    Node* prototypes = maker.MakeNode("Prototypes", nullptr, nullptr, 0, 0);
    Node* proto = maker.MakeNode("Proto", prototypes, nullptr, 0, 0);
    proto->Set("IsPrototype", "true");
    proto->Set("Items", "a;b;c");
    Node* projects = maker.MakeNode("Projects", nullptr, prototypes, 0, 0);
    d.first = maker.MakeNode("parent", projects, nullptr, 0, 0);
    d.second = maker.MakeNode("Second", projects, d.first, 0, 0);
    d.first->SetPrototype(proto, false);
    d.second->SetPrototype(d.first, false);
    d.first->Set("Count", "3");
    d.first->Set("Tags", "x;y");
    d.first->Set("Table", "k:v;n:2");
    d.first->Set("Due", "2024-02-29T12:00:00Z");
    d.first->Set("Span", "90");
    d.second->Set("Items", "/Projects;parent;..;children");
    maker.MakeAlias(d.first, d.second, nullptr);
    maker.MakeAlias(projects, d.first, nullptr);
    NodeLinks(d.first).CreateLink(d.second, "agree");
    NodeLinks(d.second).CreateLink(d.first, "agree");
    return d;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    InstallActionHooks();
    // The word functions ask the document's word index.
    InstallTextHooks();
    std::string code(reinterpret_cast<const char*>(data), size);
    Document d = MakeDocument();
    MatchList matches;
    matches.CurrentThat(d.first);
    Action::Do(d.first, matches, code);
    MatchList others;
    Action::EvaluateAction(d.second, code, others, size % 2 == 0);
    return 0;
}
