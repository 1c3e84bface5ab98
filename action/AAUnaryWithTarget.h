#pragma once
// Tests on notes: each answers true or false for the note it is computed on.
#include "AAValue.h"

class AADescendedFrom : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AADescendedFrom"; }
};

class AAInside : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AAInside"; }
};

class AAContains : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AAContains"; }
};

class AAFirst : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AAFirst"; }
};

class AALast : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AALast"; }
};

class AALinkedTo : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AALinkedTo"; }
};

class AALinkedFrom : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AALinkedFrom"; }
};

class AAOriginalLinkedTo : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AAOriginalLinkedTo"; }
};

class AAOriginalLinkedFrom : public AAUnaryWithTarget {
public:
    using AAUnaryWithTarget::AAUnaryWithTarget;
    const char* ClassName() const override { return "AAOriginalLinkedFrom"; }
};

class AAIndented : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAIndented"; }
};

class AABetween : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AABetween"; }
};

class AAWord : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAWord"; }
};

class AASimilar : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AASimilar"; }
};

class AAInheritsFrom : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAInheritsFrom"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AADuplicateName : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADuplicateName"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AALocalValue : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALocalValue"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AAVisited : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAVisited"; }
    int Priority() const override { return kPriorityDotOperator; }
};

class AAUnvisited : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnvisited"; }
};

class AAGuardField : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAGuardField"; }
    int Priority() const override { return kPriorityDotOperator; }
};
