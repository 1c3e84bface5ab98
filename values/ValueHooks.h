#pragma once
// Calls from the values layer up into the document and the action language.
// Values know nothing of notes, documents or compiled actions; the layers
// above install these functions at start-up. Every hook may be empty, and each
// caller then answers its documented default (no action, "", black, ...).
//
// The hooks are read without a lock: install them once, before values are used
// from more than one thread.
#include <functional>
#include <memory>
#include <string>

#include "PColor.h"

class Node;
class Hypertext;
class Action;
class NodeVector;

struct ValueHooks {
    // Compiles action code (StringValue::AsAgentAction). May throw; a throw
    // counts as no action.
    std::function<Action*(const std::string& text)> createAction;
    // Hands a compiled action back to a document's action pool when the value
    // that compiled it dies.
    std::function<void(Hypertext* document, Action* action)> recycleAction;

    // Parses action code for StringValue::EvaluateFor; the result is kept by
    // the value and handed to evaluateAction. May throw or answer null: no
    // action.
    std::function<std::shared_ptr<void>(const std::string& text)> parseAction;
    // Runs a parsed action with `note` as `that` in the note's current
    // context and answers the result's text. May throw: "syntax error".
    std::function<std::string(const std::shared_ptr<void>& parsed, const Node* note)> evaluateAction;

    // The notes' paths joined with ";" (NodeVector::PathString).
    std::function<std::string(const NodeVector& nodes)> pathString;

    // A colour name looked up in a document's colour table
    // (ColorValue::AsExportString). Black when unknown.
    std::function<PColor(Hypertext* document, const std::string& name)> translateColorForDocument;
    // A colour text resolved for a note (ActionResult::AsColor), names and
    // "automatic" included.
    std::function<PColor(const Node* note, const std::string& text)> translateColorForNode;

    // Looks `key` up in a lookup table written as "key:value" pairs
    // (ActionResult::AsLookupTable).
    std::function<std::string(const std::string& table, const std::string& key)> lookupTable;

    // The note a sort reads its value from when the transformer asks for
    // originals: the original of an alias, the note itself otherwise.
    std::function<const Node*(const Node* note)> originalOf;

    // Hands a released value to a document for deletion
    // (StValue's destructor). Without it the value is deleted at once.
    std::function<void(const Node* note, const class Value* value)> deleteValueForNote;

    // Runs a block on the main thread (ValueRecyclingPool::Drain hands the
    // drained values there). Without it the block runs at once.
    std::function<void(std::function<void()> block)> runOnMainThread;
};

ValueHooks& GetValueHooks();
