#pragma once
// Functions of composites.
#include "AAValue.h"

class AACompositeFor : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeFor"; }
};

class AACompositeWithName : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeWithName"; }
};

class AACompositeCount : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeCount"; }
};

class AACompositeName : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeName"; }
};

class AACompositeRole : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeRole"; }
};

class AACompositeRoles : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeRoles"; }
};

class AACompositeKind : public AACompositeFunction {
public:
    using AACompositeFunction::AACompositeFunction;
    const char* ClassName() const override { return "AACompositeKind"; }
};
