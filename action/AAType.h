#pragma once
// Information functions: attribute types and metadata, the version, the document, ISBNs, and formatting of values.
#include "AAValue.h"

// `type(attribute)`: the attribute's type word; "" for no such attribute.
class AAType : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAType"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `attribute(name)`: what the document knows of an attribute, as a
// dictionary: "name", "type", "default", "suggested", "sequential",
// "category", "description", "editable", "inherits", "user".
class AAAttributeOperator : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAAttributeOperator"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `version()`: the program's version; `version("major")`, "minor" or
// "patch" one part of it.
class AAVersion : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAVersion"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
    static const char* ProgramVersion();
};

// `document()`: the document file's path; `document("name")`, "folder",
// "extension" or "path" one part of it.
class AADocumentPath : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADocumentPath"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `isbn10(text)`: the ISBN-10 of a valid ISBN-10 or of a valid ISBN-13 that
// begins 978, digits only; "" for anything else.
class AAISBN10 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAISBN10"; }
    int Priority() const override { return kPriorityDotOperator; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};

// `isbn13(text)`: the ISBN-13 of a valid ISBN-10 or ISBN-13; "" otherwise.
class AAISBN13 : public AAISBN10 {
public:
    using AAISBN10::AAISBN10;
    const char* ClassName() const override { return "AAISBN13"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `covid(...)`: a look-up in a public data service, which this program does
// not reach: false.
class AACovid : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACovid"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `format(value, ...)`: a value written by its kind (colour, number, date,
// list, interval); see AAType.cpp.
class AAFormat : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAFormat"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;

    // The kind of a value whose type says nothing: a list when it holds
    // ";", a colour when it reads as one, a date when it holds letters other
    // than one "e", a number when it is digits with "-", "." and one "e".
    static int WhatKind(const std::string& text);
    // Writes `value` by the kind `type`, with the further written arguments.
    static ActionResult Format(const AAValue* value, int type, const AAValue* arguments, Node* note,
                               MatchList& matches);
};

// `$X.format(...)`: `format` with the receiver as the value.
class AADotFormat : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotFormat"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int ResultType(Node* note, MatchList& matches) const override;
};
