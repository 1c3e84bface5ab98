#pragma once
// List and dictionary functions: the members of AASetFun over a list text, and the dot operators on list and dictionary receivers.
#include "AAValue.h"

class AACount : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AACount"; }
};

class AAMax : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AAMax"; }
};

class AAMin : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AAMin"; }
};

class AADotCount : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotCount"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotMax : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotMax"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotMin : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotMin"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotSum : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotSum"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotAvg : public AASetFun {
public:
    using AASetFun::AASetFun;
    const char* ClassName() const override { return "AADotAvg"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADotRemove : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotRemove"; }
};

class AADotEvery : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotEvery"; }
};

class AADotAny : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotAny"; }
};

class AADotCollect : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotCollect"; }
};

class AADotCollectIf : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotCollectIf"; }
};

class AADotFirst : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotFirst"; }
};

class AADotLast : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AADotLast"; }
};

class AAAt : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAAt"; }
};

class AALookup : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AALookup"; }
};

class AAIntersect : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAIntersect"; }
};

class AASort : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AASort"; }
};

class AASortCaseInsensitive : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AASortCaseInsensitive"; }
};

class AASortNumeric : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AASortNumeric"; }
};

class AAUnique : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAUnique"; }
};

class AAKeys : public AADotOperator {
public:
    using AADotOperator::AADotOperator;
    const char* ClassName() const override { return "AAKeys"; }
};

class AAList : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAList"; }
};

class AADictionary : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADictionary"; }
};
