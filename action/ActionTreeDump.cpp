#include "ActionTreeDump.h"

#include <string>
#include <vector>

#include "AAToken.h"
#include "AAValue.h"
#include "Action.h"

namespace {

// Lines are indented two spaces a level up to this depth; deeper lines are
// indented as this depth and begin with their depth in brackets, so that
// the dump of a deep tree grows with the number of nodes only.
constexpr int kMaxIndentDepth = 40;

void Indent(std::string& out, int depth) {
    if (depth <= kMaxIndentDepth) {
        out.append(static_cast<size_t>(depth) * 2, ' ');
        return;
    }
    out.append(static_cast<size_t>(kMaxIndentDepth) * 2, ' ');
    out += '[' + std::to_string(depth) + "] ";
}

// Walks the tree with an explicit stack: trees may be far deeper than the
// call stack allows.
void WriteExpression(std::string& out, const AAValue* root, int baseDepth) {
    struct Item {
        const AAValue* node;
        int depth;
        bool chained;
    };
    std::vector<Item> stack{{root, baseDepth, false}};
    AAValueParts parts;
    while (!stack.empty()) {
        Item item = stack.back();
        stack.pop_back();
        Indent(out, item.depth);
        if (item.chained)
            out += ", ";
        if (!item.node) {
            out += "(none)\n";
            continue;
        }
        out += item.node->ClassName();
        parts.fields.clear();
        parts.operands.clear();
        item.node->Describe(parts);
        for (const std::string& field : parts.fields) {
            out += ' ';
            out += field;
        }
        out += '\n';
        // The next argument comes after this node's operands.
        if (const AAValue* next = item.node->GetNextArgument())
            stack.push_back({next, item.depth, true});
        for (auto it = parts.operands.rbegin(); it != parts.operands.rend(); ++it)
            stack.push_back({*it, item.depth + 1, false});
    }
}

void WriteAction(std::string& out, const Action& action, int depth);

void WriteStatement(std::string& out, const AAToken& token, int depth) {
    Indent(out, depth);
    out += token.ClassName();
    if (auto* assign = dynamic_cast<const AAAssign*>(&token)) {
        out += ' ' + AAQuoteForDump(assign->Left()) + '\n';
        WriteExpression(out, assign->Right(), depth + 1);
    } else if (auto* expression = dynamic_cast<const AAExpressionToken*>(&token)) {
        out += '\n';
        WriteExpression(out, expression->Expression(), depth + 1);
    } else if (auto* vars = dynamic_cast<const AAVars*>(&token)) {
        out += '\n';
        for (const auto& [name, value] : vars->Variables()) {
            Indent(out, depth + 1);
            out += "var " + AAQuoteForDump(name) + '\n';
            if (value)
                WriteExpression(out, value.get(), depth + 2);
        }
    } else if (auto* ifToken = dynamic_cast<const AAIf*>(&token)) {
        out += '\n';
        WriteExpression(out, ifToken->Condition(), depth + 1);
        WriteAction(out, ifToken->Then(), depth + 1);
        WriteAction(out, ifToken->Else(), depth + 1);
    } else if (auto* each = dynamic_cast<const AAEach*>(&token)) {
        out += ' ' + AAQuoteForDump(each->Variable()) + '\n';
        WriteExpression(out, each->Receiver(), depth + 1);
        WriteAction(out, each->Body(), depth + 1);
    } else {
        out += '\n';
    }
}

void WriteAction(std::string& out, const Action& action, int depth) {
    Indent(out, depth);
    out += action.ClassName();
    auto* agentAction = dynamic_cast<const AgentAction*>(&action);
    if (!agentAction) {
        out += '\n';
        return;
    }
    out += ' ' + AAQuoteForDump(agentAction->Text()) + '\n';
    for (const AATokenPtr& token : agentAction->Tokens().Tokens())
        WriteStatement(out, *token, depth + 1);
}

}  // namespace

std::string ActionTreeDump::Expression(const AAValue* value) {
    std::string out;
    WriteExpression(out, value, 0);
    return out;
}

std::string ActionTreeDump::Statements(const Action& action) {
    std::string out;
    auto* agentAction = dynamic_cast<const AgentAction*>(&action);
    if (!agentAction) {
        out = std::string(action.ClassName()) + '\n';
        return out;
    }
    // The statements of the top level stand at the left margin.
    for (const AATokenPtr& token : agentAction->Tokens().Tokens())
        WriteStatement(out, *token, 0);
    return out;
}
