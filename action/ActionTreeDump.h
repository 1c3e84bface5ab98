#pragma once
// Writes parsed action code as indented text, one node per line, so that a
// user can see how the code is read. Each line names the node's class and
// its fields (texts in double quotes); operands follow, indented by two
// blanks. A further argument linked to the one before it is marked ", ".
// Past 40 levels the indentation stays at 40 levels and each line begins
// with its depth, as in "[41] AAInteger \"1\"".
//
//   rylvane parse '1 + 2 * 3'
//   AAPlus
//     AAInteger "1"
//     AAMultiply
//       AAInteger "2"
//       AAInteger "3"
#include <string>

class AAValue;
class Action;

class ActionTreeDump {
public:
    static std::string Expression(const AAValue* value);
    static std::string Statements(const Action& action);
};
