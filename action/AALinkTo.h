#pragma once
// Link functions: making and removing links, paths along links, distances
// and neighbours.
//
// `linkTo(designator[, type])` makes a link of the type (default
// "*untitled") from the note to each designated note, `linkFrom` from each
// of them to the note; a link of that type between the two already there is
// not made twice, so that a rule may run the call again and again. The
// `Original` forms link the originals of aliases. `unlinkTo` and
// `unlinkFrom` remove such links: of the type given, or of every type when
// none (or "*") is given. Each answers true when it made or removed a link.
#include "AAValue.h"

class AALinkTo : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkTo"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AALinkToOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkToOriginal"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AALinkFrom : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkFrom"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AALinkFromOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AALinkFromOriginal"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AAUnlinkTo : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkTo"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AAUnlinkToOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkToOriginal"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AAUnlinkFrom : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkFrom"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AAUnlinkFromOriginal : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAUnlinkFromOriginal"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `linkPath(designator[, types])`: the notes on the shortest chain of
// outbound links (of the ";"-separated types, all when none) from the note
// to the designated one, both ends included; empty when there is none.
class AAOnPath : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AAOnPath"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `distance(a, b)`: kilometres along the earth's surface between the two
// designated notes, by their Latitude and Longitude.
class AADistance : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADistance"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `distanceTo(designator)`: `distance(this, designator)`, the kilometres
// from the note to the first designated note; "" when none is designated.
class AADistanceBetween : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADistanceBetween"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `drivingTimeTo` needs a map service, which this system does not have: it
// computes its arguments and answers "".
class AADrivingTime : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AADrivingTime"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

// `neighbors(designator[, types])`: the notes one link away from the
// designated notes, by links either way (of the types, all when none);
// `neighbors2` those one or two links away. The designated notes themselves
// are left out. `neighborsWithin(designator, km[, types])` and
// `neighbors2Within` keep, in the same order, only the neighbours at most
// `km` kilometres from the first designated note by Latitude and Longitude;
// a missing or non-numeric `km` gives an empty list.
class AANeighbors : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
    int Priority() const override { return kPriorityDotOperator; }
};

class AANeighbors2 : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors2"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AANeighborsWithin : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighborsWithin"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};

class AANeighbors2Within : public AAFunction {
public:
    using AAFunction::AAFunction;
    const char* ClassName() const override { return "AANeighbors2Within"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override;
};
