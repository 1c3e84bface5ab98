#pragma once
// The state of one evaluation: the capture groups of the latest regular
// expression (`$0`, `$1`, ...), the variables declared with `var` or bound
// by `.each`, and the context (see ActionContext). A MatchList belongs to one
// evaluation on one thread.
#include <map>
#include <string>
#include <vector>

#include "ActionContext.h"

class Link;
class Node;

class MatchList {
public:
    MatchList() = default;
    MatchList(const MatchList&) = default;
    MatchList& operator=(const MatchList&) = default;
    virtual ~MatchList() = default;

    // Forgets every variable; the capture groups stay.
    virtual void Reset();
    // Binds a variable to a value and a type code (-1: computed, untyped).
    virtual void Bind(const std::string& name, const std::string& value, int type);
    // Changes the value of a bound variable; does nothing for an unbound name.
    virtual void Set(const std::string& name, const std::string& value);
    virtual bool HasBinding(const std::string& name) const;
    // The value of a variable, "" when unbound.
    virtual std::string Lookup(const std::string& name) const;
    // The type code of a variable, 0 when unbound.
    virtual int Type(const std::string& name) const;
    // The bound names in order.
    std::vector<std::string> Variables() const;

    virtual ActionContext& CurrentContext() { return context; }
    virtual const ActionContext& CurrentContext() const { return context; }
    // Copies the context; null is ignored.
    virtual void CurrentContext(const ActionContext* other);
    virtual Node* CurrentThat() const { return context.CurrentThat(); }
    virtual void CurrentThat(Node* n) { context.CurrentThat(n); }
    virtual Node* CurrentAgent() const { return context.CurrentAgent(); }
    virtual void CurrentAgent(Node* n) { context.CurrentAgent(n); }
    virtual Node* CurrentAdornment() const { return context.CurrentAdornment(); }
    virtual void CurrentAdornment(Node* n) { context.CurrentAdornment(n); }
    virtual Node* CurrentExport() const { return context.CurrentExport(); }
    virtual void CurrentExport(Node* n) { context.CurrentExport(n); }
    virtual Link* CurrentLink() const { return context.CurrentLink(); }
    virtual void CurrentLink(Link* l) { context.CurrentLink(l); }

    // The capture groups of the latest regular expression, group 0 first.
    std::vector<std::string> matches;

    // After a `.each` round: every variable of `saved` takes its value from
    // this list, then this list becomes `saved`. Variables made inside the
    // round are dropped; changes to outer ones stay.
    void RestoreClosure(MatchList saved);

private:
    std::map<std::string, std::string> values;
    std::map<std::string, int> types;
    ActionContext context;
};
