#pragma once
// The result of an expression of the action language: a text, a number, a
// group of notes, a rich text or a dictionary, read in whatever form the
// caller needs. The text form is computed on demand and cached, so const
// readers may fill it in.
#include <memory>
#include <string>

#include "ArgList.h"
#include "Dictionary.h"
#include "NodeVector.h"
#include "PColor.h"
#include "SetList.h"
#include "StyledText.h"

class STime;
class STimeInterval;
class Node;

class ActionResult {
public:
    // The empty text, which is also the number 0.
    ActionResult();
    explicit ActionResult(double number);
    explicit ActionResult(const std::string& text);
    explicit ActionResult(const char* text) : ActionResult(std::string(text ? text : "")) {}
    // The notes, with their paths as text.
    explicit ActionResult(const NodeVector& nodes);
    static ActionResult ForDictionary(const Dictionary& dictionary);

    ActionResult(const ActionResult&) = default;
    ActionResult& operator=(const ActionResult&) = default;
    ActionResult(ActionResult&&) = default;
    ActionResult& operator=(ActionResult&&) = default;
    virtual ~ActionResult();

    // The text; a number is written at precision 10, a dictionary as
    // "key:value" pairs joined with ";". The text is kept.
    virtual std::string AsString() const;
    virtual std::string AsNSString() const;
    virtual std::string AsTrimmedString() const;
    // A 32-bit integer: the truncated number, or the text read as an integer
    // ("#ff" as hexadecimal).
    virtual int AsNumber() const;
    // The number, or the text read as a double ("true" is 1, "#ff" 255).
    virtual double AsDouble() const;
    virtual STime AsDate() const;
    virtual STimeInterval AsInterval() const;
    // "true" or "false".
    virtual std::string AsKeyword() const;
    virtual const NodeVector& AsNodes() const;
    virtual ArgList AsList() const;
    virtual SetList AsSet() const;
    // The text as a colour for `note`: names resolved by its document.
    virtual PColor AsColor(const Node* note) const;
    // This text as a table of "key:value" pairs, looked up by the key's
    // trimmed text.
    virtual ActionResult AsLookupTable(const ActionResult& key) const;
    // The held dictionary, or one read from the list's "key:value" items.
    virtual SharedDictionary AsDictionary() const;
    virtual void SetDictionary(const Dictionary& dictionary);
    virtual bool IsTrue() const;
    virtual bool IsFalse() const;
    virtual bool empty() const;
    // This and `other` joined with ";"; a copy of `other` when this is empty.
    virtual ActionResult Append(const ActionResult& other) const;
    // Compares the raw text field.
    virtual bool operator==(const std::string& text) const;
    virtual std::shared_ptr<StyledText> AttributedString() const;
    virtual void AttributedString(std::shared_ptr<StyledText> text);
    virtual void HasString(bool flag);

    // The fields are open to the evaluator, which builds results in place.
    mutable bool hasString = true;
    mutable std::string string;
    bool isNumber = true;
    mutable double number = 0.0;
    NodeVector nodes;
    std::shared_ptr<StyledText> richText;
    mutable SharedDictionary dictionary;
};
