#pragma once
// An agent's query: the text of its AgentQuery, parsed once with the case
// rule of its AgentCaseSensitive, and tested note by note.
#include <string>
#include <vector>

#include "AAValue.h"

class Attribute;
class MatchList;
class Node;

class AgentQuery {
public:
    AgentQuery() = default;
    AgentQuery(const AgentQuery&) = delete;
    AgentQuery& operator=(const AgentQuery&) = delete;

    // Reads the agent's AgentQuery and AgentCaseSensitive; when either
    // differs from what is held, parses the text again and answers true.
    bool Prepare(Node* agent);
    // A held query that is valid, or one that is valid after Prepare.
    bool IsReady(Node* agent);
    // Whether the note satisfies the query; `matches` receives the captures.
    bool Evaluate(Node* note, MatchList& matches) const;

    const std::string& QueryString() const { return text; }
    void SetQueryString(const std::string& t) { text = t; }
    bool CaseSensitive() const { return caseSensitive; }
    void SetCaseSentitive(bool c) { caseSensitive = c; }
    bool IsValid() const { return tree != nullptr; }
    // The attributes the query reads of each note, as `agent`'s document
    // defines them.
    std::vector<const Attribute*> AttributesRead(const Node* agent) const;
    // Whether the query's answer for a note can depend on nothing but what
    // the document's notes hold: it is made only of attribute reads,
    // operators and functions known to compute from their operands alone,
    // and of literals that do not read as dates (a date text such as "today"
    // or "next week" is counted from the present moment). A query with a
    // random or time designator or function, or with any function not known
    // to be of that kind, answers false.
    bool DependsOnlyOnNotes() const { return onlyNotes; }
    // The same test for any parsed tree.
    static bool TreeDependsOnlyOnNotes(const AAValue* tree);
    // The definitions of the attributes the query names, as text: for each,
    // whether the document has it, its type and its default value. Notes
    // that hold no value of their own read the default, and a definition
    // can change without any note changing.
    std::string Definitions(const Node* agent) const;

private:
    void SetQuery(AAValuePtr parsed);

    AAValuePtr tree;
    std::string text;
    bool caseSensitive = true;
    bool prepared = false;
    bool onlyNotes = false;
    // The names of attributes the query may read (bare words included).
    std::vector<std::string> namesRead;
};
