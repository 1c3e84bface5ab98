// Feeds bytes to the action-code parser, both as a list of statements and as
// one expression. Parsing must end, without crash or leak, on any text; and
// the same text must always be read the same way.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Action.h"
#include "ActionTreeDump.h"
#include "AgentActionExpressionParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string code(reinterpret_cast<const char*>(data), size);

    std::unique_ptr<Action> action = Action::Create(code);
    AAValuePtr expression = AgentActionExpressionParser::Parse(code, size % 2 == 0);

    // Dumps of long inputs grow with the square of the depth; small inputs
    // are enough to exercise the walk.
    if (size < 512) {
        std::string first = ActionTreeDump::Statements(*action);
        if (ActionTreeDump::Statements(*Action::Create(code)) != first)
            std::abort();
        std::string tree = ActionTreeDump::Expression(expression.get());
        if (ActionTreeDump::Expression(AgentActionExpressionParser::Parse(code, size % 2 == 0).get()) != tree)
            std::abort();
    }
    return 0;
}
