#pragma once
// A list of statements: an ArgList whose splitting keeps "{...}" blocks whole,
// so that a ";" inside braces does not end a statement.
#include "ArgList.h"

class ActionList : public ArgList {
public:
    ActionList() = default;
    explicit ActionList(const std::string& text, char delimiter = ';', bool keepEmpty = false);

protected:
    void Split(const std::string& text, char delimiter) override;
};
