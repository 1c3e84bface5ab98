#pragma once
// Information functions: attribute types and metadata, the version, the document, ISBNs, and formatting of values.
#include "AAValue.h"

class AAType : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAType"; }
};

class AAAttributeOperator : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAAttributeOperator"; }
};

class AAVersion : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAVersion"; }
};

class AADocumentPath : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADocumentPath"; }
};

class AAISBN10 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAISBN10"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AAISBN13 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAISBN13"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AACovid : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AACovid"; }
};

class AAFormat : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAFormat"; }
};

class AADotFormat : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotFormat"; }
};
