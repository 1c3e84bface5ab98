#pragma once
// A small document for tests of action code: user attributes of every kind
// and the notes Top, A and B (A and B children of Top), with shortcuts to
// evaluate an expression or apply an action on a note (A unless named).
#include <gtest/gtest.h>

#include <string>

#include "Action.h"
#include "ActionHooks.h"
#include "AttributeInfo.h"
#include "AttributeType.h"
#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"

class ActionTestDocument : public ::testing::Test {
protected:
    void SetUp() override {
        InstallActionHooks();
        AttributeInfo info(&doc);
        info.CreateBasicAttribute("Count", "User", true, AttributeType::kNumber);
        info.CreateBasicAttribute("Flag", "User", true, AttributeType::kBoolean);
        info.CreateBasicAttribute("Tags", "User", true, AttributeType::kSet);
        info.CreateBasicAttribute("Items", "User", true, AttributeType::kList);
        info.CreateBasicAttribute("Table", "User", true, AttributeType::kDictionary);
        info.CreateBasicAttribute("Due", "User", true, AttributeType::kDate);
        info.CreateBasicAttribute("Span", "User", true, AttributeType::kInterval);
        info.CreateBasicAttribute("Words", "User", true, AttributeType::kString);
        top = MakeNote("Top");
        a = MakeNote("A", top);
        b = MakeNote("B", top, a);
    }

    Node* MakeNote(const std::string& name, Node* parent = nullptr, Node* after = nullptr) {
        return NodeMaker(&doc).MakeNode(name, parent, after, 0, 0);
    }

    std::string Eval(const std::string& text, Node* note = nullptr) { return Action::Evaluate(note ? note : a, text); }
    void Do(const std::string& text, Node* note = nullptr) { Action::Do(note ? note : a, text); }
    std::string Get(const std::string& name, Node* note = nullptr) { return (note ? note : a)->GetString(name); }

    Hypertext doc;
    Node* top = nullptr;
    Node* a = nullptr;
    Node* b = nullptr;
};
