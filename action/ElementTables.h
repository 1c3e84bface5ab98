#pragma once
// The tables that map function names and dot-operator names to their
// argument form and evaluator class. The expression parser reads them to
// build nodes; editors read them for completion.
#include <string>
#include <vector>

#include "AAValue.h"

// How a function reads its arguments behind its name.
enum class ArgumentForm {
    Single,      // the first argument, parsed
    Arguments,   // the whole parenthesised text, parsed; "," chains
    Path,        // the first argument as text
    Literal,     // the whole parenthesised text as one text
    Designator,  // a designator text, then parsed arguments
};

struct FunctionEntry {
    const char* spelling;
    ArgumentForm form;
    AAValuePtr (*make)();
    // Offered for completion; older "#" spellings and misspellings are not.
    bool offered;
    // Designator functions: the text when fewer than `minimum` items are given.
    const char* message;
    size_t minimum;
};

// The functions in the order of their documentation.
const std::vector<FunctionEntry>& FunctionTable();

// How a dot operator reads its argument behind its name.
enum class DotForm {
    OneToken,                 // one token, case-sensitive test
    OneTokenCaseInsensitive,  // one token, case-insensitive test
    ArgumentsCaseSensitive,   // parenthesised arguments parsed case-sensitively
    Arguments,                // parenthesised arguments
    NoArgument,               // nothing; a following "(...)" is not read
    TokenAndArguments,        // one token, then parenthesised arguments
};

struct DotOperatorEntry {
    const char* name;
    DotForm form;
    AAValuePtr (*make)();
};

const std::vector<DotOperatorEntry>& DotOperatorTable();
// The entry for a dot-operator name (without the dot), or null.
const DotOperatorEntry* FindDotOperator(const std::string& name);
