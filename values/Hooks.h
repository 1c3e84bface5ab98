#pragma once
// Hooks: the one way a lower layer calls up into a layer built on top of it.
//
// Dependencies flow one way (platform <- values <- core <- persistence,
// action <- agents, export, views <- app), yet values must compile actions and
// the core must run OnAdd, find paths and name notes for export. Each such
// upward call is a member of `Hooks`, grouped below by the layer that
// installs it. Every layer installs its own group in one function, run once:
//
//   core           InstallCoreHooks()    (core/CoreHooks.h), from the first
//                                        Hypertext's constructor
//   action         InstallActionHooks()  when the action language starts
//   export         InstallExportHooks()  (export/ExportHooks.h), by the
//                                        commands that export or evaluate
//   text           InstallTextHooks()    (text/LynxUpdater.h), by the
//                                        program at start-up
//   agents, app    their install function at start-up
//
// An empty hook means the layer that installs it is not there (a test of the
// values alone, a tool without the action language): the caller then does
// without and answers the default written beside the hook. A hook may be
// replaced, never removed, once installed.
//
// Threads: hooks are read without a lock from any thread. Install them before
// a second thread can read them (the queues' hand-over orders the writes before
// the reads), and do not change them while other threads run.
//
// Tests change hooks through `StHooks`, which puts the previous hooks
// back when it goes out of scope.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "PColor.h"

class Action;
class Hypertext;
class Node;
class NodeVector;
class Value;

struct Hooks {
    // ---------------------------------------------------------------- core
    // Installed by InstallCoreHooks().

    // The notes' paths joined with ";" (NodeVector::PathString). Empty: "".
    std::function<std::string(const NodeVector& nodes)> pathString;
    // A colour name looked up in a document's colour table
    // (ColorValue::AsExportString). Empty: black.
    std::function<PColor(Hypertext* document, const std::string& name)> translateColorForDocument;
    // A colour text resolved for a note (ActionResult::AsColor), names and
    // "automatic" included. Empty: the text read as a colour on its own.
    std::function<PColor(const Node* note, const std::string& text)> translateColorForNode;
    // The note a sort reads its value from when the transformer asks for
    // originals: the original of an alias, the note itself otherwise.
    // Empty: the note itself.
    std::function<const Node*(const Node* note)> originalOf;
    // Hands a released value to a document for deletion (StValue's
    // destructor). Empty: the value is deleted at once.
    std::function<void(const Node* note, const Value* value)> deleteValueForNote;
    // Reads a note's attribute as text for date text such as "$DueDate+1 day".
    // Empty: the reference resolves against now.
    std::function<std::string(Node* note, const std::string& attributeName)> readAttribute;

    // -------------------------------------------------------------- action
    // Installed by InstallActionHooks().

    // Compiles action code (StringValue::AsAgentAction). May throw; a throw
    // counts as no action. Empty: no action.
    std::function<Action*(const std::string& text)> createAction;
    // Hands a compiled action back to a document's action pool when the value
    // that compiled it dies. Empty: the action is left to its owner.
    std::function<void(Hypertext* document, Action* action)> recycleAction;
    // Parses action code for StringValue::EvaluateFor; the result is kept by
    // the value and handed to evaluateAction. May throw or answer null: no
    // action. Empty: "".
    std::function<std::shared_ptr<void>(const std::string& text)> parseAction;
    // Runs a parsed action with `note` as `that` in the note's current
    // context and answers the result's text. May throw: "syntax error".
    std::function<std::string(const std::shared_ptr<void>& parsed, const Node* note)> evaluateAction;
    // Looks `key` up in a lookup table written as "key:value" pairs
    // (ActionResult::AsLookupTable). Empty: the first "key:value" item
    // whose trimmed key matches.
    std::function<std::string(const std::string& table, const std::string& key)> lookupTable;

    // Runs the OnAdd action of `father` for a note just added under it.
    // Empty: no action runs.
    std::function<void(Node* note, Node* father)> onAdd;
    // Runs the OnRemove action of the note's former father. Empty: none runs.
    std::function<void(Node* note, Node* oldFather)> onRemove;
    // Runs the actions of adornments the note now stands on. Empty: none run.
    std::function<void(Node* note, const NodeVector& oldAdornments)> onAdornments;
    // The note's display name (its DisplayExpression). Empty: its Name.
    std::function<std::string(const Node* note)> displayName;
    // Resolves a path or designator from a note. Empty: "/a/b" is followed
    // by names from the root.
    std::function<Node*(Node* from, const std::string& path)> findPath;

    // ---------------------------------------------------------------- text
    // Installed by InstallTextHooks() (text/LynxUpdater.h), by the program at
    // start-up and by the first updater.

    // A note's text or name changed: the index reindexes it. Empty: nothing
    // is reindexed.
    std::function<void(Node* note)> textChanged;
    // Whether the note's word index holds the word (the word filtered as the
    // index filters text); the index is made when first asked. Empty: false.
    std::function<bool(Node* note, const std::string& word)> noteHasWord;
    // The notes whose words are most like those of `note`, best first, at
    // most `count`; the document's indexes are made when first asked.
    // `asking` is the note the question is computed for: a query asks note
    // after note, and the answer may be kept for the rest of such a pass.
    // Empty: none.
    std::function<std::vector<Node*>(Node* note, size_t count, const Node* asking)> mostSimilarNotes;
    // The words that share the most notes with `word` (filtered as the
    // index filters text) in the document of `note`: most shared notes
    // first, ties in alphabetical order, `word` itself left out, at most
    // `count`. `note` is the note the question is computed for; the answer
    // may be kept for the rest of a pass, as for mostSimilarNotes.
    // Empty: none.
    std::function<std::vector<std::string>(Node* note, const std::string& word, size_t count)> relatedWords;

    // -------------------------------------------------------------- export
    // Installed by the export layer.

    // The note's file name in an export. Empty: the note's Name.
    std::function<std::string(const Node* note)> exportFileName;
    // The note's URL. Empty: "".
    std::function<std::string(const Node* note)> noteURL;
    // exportedString(note, template): the note expanded with the named
    // template (a template note or a built-in template), in memory. Empty: "".
    std::function<std::string(Node* note, const std::string& templateName)> exportedString;

    // --------------------------------------------------------- application
    // Installed by the application (and its main loop) at start-up.

    // Rewrites text links that used a note's old name. Empty: text links
    // keep the old name.
    std::function<void(Node* note, const std::string& oldName)> renameTextLinks;
    // Runs a block on the main thread (ValueRecyclingPool::Drain hands the
    // drained values there). Empty: the block runs at once.
    std::function<void(std::function<void()> block)> runOnMainThread;
};

// The hooks every caller reads.
const Hooks& GetHooks();
// The hooks an install function fills. Only the install functions named
// above, and StHooks, use this.
Hooks& EditHooks();

// Changes the hooks for one scope (a test, a tool) and restores the previous
// ones when it ends:
//
//     StHooks hooks;
//     hooks->onAdd = [&](Node*, Node*) { ++adds; };
class StHooks {
public:
    StHooks() : saved(GetHooks()) {}
    ~StHooks() { EditHooks() = saved; }
    StHooks(const StHooks&) = delete;
    StHooks& operator=(const StHooks&) = delete;

    Hooks& operator*() { return EditHooks(); }
    Hooks* operator->() { return &EditHooks(); }

private:
    Hooks saved;
};
