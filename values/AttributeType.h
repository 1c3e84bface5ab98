#pragma once
// The type of an attribute: one integer code with a word for the types that
// have one (see TypeStringFor).
#include <string>

class AttributeType {
public:
    enum Type {
        kNone = -1,
        kString = 0,
        kColor = 1,
        kNumber = 2,
        kFile = 3,
        kBoolean = 4,
        kDate = 5,
        kUnsigned = 6,
        kAction = 7,
        kSet = 8,
        kURL = 9,
        kList = 10,
        kFont = 11,
        kInterval = 12,
        kDictionary = 13,
    };

    constexpr AttributeType() = default;
    constexpr AttributeType(int code) : type(code) {}

    // The code for a type word, case-insensitively; 0 for an unknown word.
    static int FromString(const std::string& word);
    // The word for a code; codes without a word (6, 7, 11) and codes out of
    // range give "string".
    static std::string TypeStringFor(int code);

    int Type() const { return type; }
    std::string AsString() const { return TypeStringFor(type); }

    bool IsNone() const { return type == kNone; }
    bool IsString() const { return type == kString; }
    bool IsColor() const { return type == kColor; }
    bool IsNumber() const { return type == kNumber; }
    bool IsFile() const { return type == kFile; }
    bool IsBoolean() const { return type == kBoolean; }
    bool IsDate() const { return type == kDate; }
    bool IsUnsigned() const { return type == kUnsigned; }
    bool IsAction() const { return type == kAction; }
    bool IsSet() const { return type == kSet; }
    bool IsURL() const { return type == kURL; }
    bool IsList() const { return type == kList; }
    bool IsFont() const { return type == kFont; }
    bool IsInterval() const { return type == kInterval; }
    bool IsDictionary() const { return type == kDictionary; }

    bool operator==(const AttributeType& o) const { return type == o.type; }
    bool operator!=(const AttributeType& o) const { return type != o.type; }

private:
    int type = kString;
};
