#pragma once
// The statement level of action code. A statement (one item of the action
// text split at ";") is read as a head, an assignment operator and the
// rest; the head picks the form: `if`, `var`, `.each`, an assignment or a
// bare expression.
#include <memory>
#include <string>
#include <vector>

#include "AAToken.h"
#include "Parser.h"

class AgentActionParser : public Parser {
public:
    explicit AgentActionParser(const std::string& statement);

    // A parser on a string.
    static std::unique_ptr<AgentActionParser> For(const std::string& statement);
    // The node of one statement, or null: such a statement is dropped.
    static AATokenPtr Parse(const std::string& statement);

    // The next statement token; "" at the end.
    std::string Token();

    // For editor completion.
    static const std::vector<std::string>& Operators();
    static const std::vector<std::string>& DotOperators();
    static const std::vector<std::string>& OperatorsTakingDesignator();

private:
    AATokenPtr ParseStatement();
};

// Reads "=", "|=" or "&=".
class AgentActionOperatorParser : public Parser {
public:
    explicit AgentActionOperatorParser(std::istream& stream) : Parser(stream) {}
    std::string Token();
};
