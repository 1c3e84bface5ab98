// `rylvane demo`: builds a small document in memory and prints its outline.
#include <iostream>

#include "Commands.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"

namespace {

void PrintOutline(Node* node, int depth) {
    for (Node* n = node->Son(); n; n = n->Brother()) {
        std::cout << std::string(depth * 2, ' ') << n->Name();
        for (const char* attr : {"Prototype", "Color", "MyNumber", "MyDate"}) {
            const Value* v = n->Get(attr);
            std::string text = n->GetString(attr);
            NodeDefaults defaults(n);
            if (v && !text.empty() && !defaults.UsesDefault(attr))
                std::cout << "\t" << attr << "=" << text;
        }
        if (n->IsAlias())
            std::cout << "\t(alias)";
        std::cout << "\n";
        PrintOutline(n, depth + 1);
    }
}

int RunDemo() {
    Hypertext doc;
    NodeMaker make(&doc);
    Node* protos = make.MakeNode("Prototypes", nullptr, nullptr, 0, 0);
    Node* task = make.MakeNode("Task", protos, nullptr, 0, 0);
    task->SetBoolean("IsPrototype", true);
    task->Set("Color", "#d04040");
    Node* projects = make.MakeNode("Projects", nullptr, protos, 0, 0);
    Node* garden = make.MakeNode("Garden", projects, nullptr, 0, 0);
    Node* dig = make.MakeNode("Dig the beds", garden, nullptr, 0, 0);
    dig->Set("Prototype", "Task");
    dig->Set("MyNumber", "1,250");
    dig->Set("MyDate", "2026-03-01");
    Node* sow = make.MakeNode("Sow", garden, dig, 0, 0);
    sow->Set("Prototype", "Task");
    sow->Set("Color", "#40a040");
    Node* inbox = make.MakeNode("Inbox", nullptr, projects, 0, 0);
    make.MakeAlias(sow, inbox, nullptr);
    PrintOutline(doc.Root(), 0);
    return 0;
}

CommandRegistration registration(
    "demo",
    [](CLI::App& app, CommandResult& result) {
        auto* cmd = app.add_subcommand("demo", "Build a small document and print its outline");
        cmd->callback([&result] { result.code = RunDemo(); });
    },
    10);

} // namespace
