#pragma once
// The evaluator classes behind the operators, function names and dot
// operators of action code, one class per operator. Each holds its operands
// in the slots of its base (see AAValue.h): unary functions an argument
// chain, binary and dot operators a left side (the receiver) and a right side
// (the first argument).
#include "AAOperators.h"
#include "AAValue.h"

// Declares a class that adds only its name to its base.
#define AA_NODE_CLASS(Name, Base)                                  \
    class Name : public Base {                                     \
    public:                                                        \
        using Base::Base;                                          \
        const char* ClassName() const override { return #Name; }   \
    };

// The same with its own priority.
#define AA_NODE_CLASS_PRIORITY(Name, Base, priority)               \
    class Name : public Base {                                     \
    public:                                                        \
        using Base::Base;                                          \
        const char* ClassName() const override { return #Name; }   \
        int Priority() const override { return priority; }         \
    };

// A shell command: command, then input and directory.
AA_NODE_CLASS(AAShellValue, AAFunction)

// Numeric functions.
AA_NODE_CLASS(AALog, AANumFun)
AA_NODE_CLASS(AASqrt, AANumFun)
AA_NODE_CLASS(AAAbs, AANumFun)
AA_NODE_CLASS(AACos, AANumFun)
AA_NODE_CLASS(AASin, AANumFun)
AA_NODE_CLASS(AATan, AANumFun)
AA_NODE_CLASS(AAArcTan, AANumFun)
AA_NODE_CLASS(AAExp, AANumFun)
AA_NODE_CLASS(AADegrees, AANumFun)
AA_NODE_CLASS(AARadians, AANumFun)
AA_NODE_CLASS(AARound, AANumFun)
AA_NODE_CLASS(AAFloor, AANumFun)
AA_NODE_CLASS(AACeil, AANumFun)
AA_NODE_CLASS(AARand, AANumFun)
AA_NODE_CLASS(AAPower, AANumFun)

// Text transformers.
AA_NODE_CLASS(AAUppercase, AATransformer)
AA_NODE_CLASS(AALowercase, AATransformer)
AA_NODE_CLASS(AACapitalize, AATransformer)

// List functions; the dot forms bind as dot operators.
AA_NODE_CLASS(AACount, AASetFun)
AA_NODE_CLASS(AAMax, AASetFun)
AA_NODE_CLASS(AAMin, AASetFun)
AA_NODE_CLASS_PRIORITY(AADotCount, AASetFun, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADotMax, AASetFun, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADotMin, AASetFun, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADotSum, AASetFun, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADotAvg, AASetFun, kPriorityDotOperator)

// Tests on notes named by a designator.
AA_NODE_CLASS(AADescendedFrom, AAUnaryWithTarget)
AA_NODE_CLASS(AAInside, AAUnaryWithTarget)
AA_NODE_CLASS(AAContains, AAUnaryWithTarget)
AA_NODE_CLASS(AAFirst, AAUnaryWithTarget)
AA_NODE_CLASS(AALast, AAUnaryWithTarget)
AA_NODE_CLASS(AALinkedTo, AAUnaryWithTarget)
AA_NODE_CLASS(AALinkedFrom, AAUnaryWithTarget)
AA_NODE_CLASS(AAOriginalLinkedTo, AAUnaryWithTarget)
AA_NODE_CLASS(AAOriginalLinkedFrom, AAUnaryWithTarget)

// Composites.
AA_NODE_CLASS(AACompositeFor, AACompositeFunction)
AA_NODE_CLASS(AACompositeWithName, AACompositeFunction)
AA_NODE_CLASS(AACompositeCount, AACompositeFunction)
AA_NODE_CLASS(AACompositeName, AACompositeFunction)
AA_NODE_CLASS(AACompositeRole, AACompositeFunction)
AA_NODE_CLASS(AACompositeRoles, AACompositeFunction)
AA_NODE_CLASS(AACompositeKind, AACompositeFunction)

// Functions that bind as dot operators do.
AA_NODE_CLASS_PRIORITY(AALastWord, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAFirstWord, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAHue, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAGuardField, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAVisited, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADuplicateName, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAStamp, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AACreate, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADelete, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAInheritsFrom, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AALocalValue, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAISBN10, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAISBN13, AAFunction, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AANeighbors, AAFunction, kPriorityDotOperator)

// Other functions.
AA_NODE_CLASS(AAUnvisited, AAFunction)
AA_NODE_CLASS(AAVersion, AAFunction)
AA_NODE_CLASS(AAURLEncode, AAFunction)
AA_NODE_CLASS(AAAttributeEncode, AAFunction)
AA_NODE_CLASS(AAJSONEncode, AAFunction)
AA_NODE_CLASS(AAEscapeHTML, AAFunction)
AA_NODE_CLASS(AALocale, AAFunction)
AA_NODE_CLASS(AAUTF8, AAFunction)
AA_NODE_CLASS(AAIDEncode, AAFunction)
AA_NODE_CLASS(AAPlay, AAFunction)
// `$Text.speak(voice)` keeps its receiver on the left and its argument
// chain on the right; `speak(text, voice)` has the right side only. Like
// every function without a body it answers the empty text.
class AASpeak : public AABinaryOperator {
public:
    using AABinaryOperator::AABinaryOperator;
    const char* ClassName() const override { return "AASpeak"; }
    ActionResult ActionValue(Node* note, MatchList& matches) const override { return AAValue::ActionValue(note, matches); }
    int ResultType(Node*, MatchList&) const override { return -1; }
    bool IsValid(const Node*) const override { return true; }
};
AA_NODE_CLASS(AAType, AAFunction)
AA_NODE_CLASS(AAAttributeOperator, AAFunction)
AA_NODE_CLASS(AADocumentPath, AAFunction)
AA_NODE_CLASS(AAWord, AAFunction)
AA_NODE_CLASS(AADistance, AAFunction)
AA_NODE_CLASS(AANotify, AAFunction)
AA_NODE_CLASS(AAInterval, AAFunction)
AA_NODE_CLASS(AACreateAgent, AAFunction)
AA_NODE_CLASS(AACovid, AAFunction)
AA_NODE_CLASS(AARGB, AAFunction)
AA_NODE_CLASS(AABrightness, AAFunction)
AA_NODE_CLASS(AASaturation, AAFunction)
AA_NODE_CLASS(AADate, AAFunction)
AA_NODE_CLASS(AATime, AAFunction)
AA_NODE_CLASS(AAList, AAFunction)
AA_NODE_CLASS(AADictionary, AAFunction)
AA_NODE_CLASS(AAOnPath, AAFunction)
AA_NODE_CLASS(AAFormat, AAFunction)
AA_NODE_CLASS(AAMacro, AAFunction)
AA_NODE_CLASS(AASubstring, AAFunction)
AA_NODE_CLASS(AALinkTo, AAFunction)
AA_NODE_CLASS(AALinkToOriginal, AAFunction)
AA_NODE_CLASS(AALinkFrom, AAFunction)
AA_NODE_CLASS(AALinkFromOriginal, AAFunction)
AA_NODE_CLASS(AAUnlinkTo, AAFunction)
AA_NODE_CLASS(AAUnlinkToOriginal, AAFunction)
AA_NODE_CLASS(AAUnlinkFrom, AAFunction)
AA_NODE_CLASS(AAUnlinkFromOriginal, AAFunction)
AA_NODE_CLASS(AADistanceBetween, AAFunction)
AA_NODE_CLASS(AADrivingTime, AAFunction)
AA_NODE_CLASS(AAIndented, AAFunction)
AA_NODE_CLASS(AASimilar, AAFunction)
AA_NODE_CLASS(AARelatedWords, AAFunction)
AA_NODE_CLASS(AABetween, AAFunction)
AA_NODE_CLASS(AAEval, AAFunction)
AA_NODE_CLASS(AAAction, AAFunction)
AA_NODE_CLASS(AAExport, AAFunction)
AA_NODE_CLASS(AANeighbors2, AAFunction)
AA_NODE_CLASS(AANeighborsWithin, AAFunction)
AA_NODE_CLASS(AANeighbors2Within, AAFunction)

// Date parts; the dot forms (`$D.year`) take the receiver as their operand.
AA_NODE_CLASS(AADay, AAFunction)
AA_NODE_CLASS(AAHour, AAFunction)
AA_NODE_CLASS(AAMinute, AAFunction)
AA_NODE_CLASS(AASecond, AAFunction)
AA_NODE_CLASS(AAMonth, AAFunction)
AA_NODE_CLASS(AAYear, AAFunction)
AA_NODE_CLASS(AAWeekOfYear, AAFunction)
AA_NODE_CLASS(AAWeekday, AAFunction)

// Differences between two dates in whole units.
AA_NODE_CLASS(AADays, AAFunction)
AA_NODE_CLASS(AAHours, AADays)
AA_NODE_CLASS(AAMinutes, AADays)
AA_NODE_CLASS(AASeconds, AADays)
AA_NODE_CLASS(AAWeeks, AADays)
AA_NODE_CLASS(AAMonths, AADays)
AA_NODE_CLASS(AAYears, AADays)

// Group functions over the notes of a designator: designator, then the
// further arguments. The `_if` forms take a condition first.
AA_NODE_CLASS(AACollect, AAFunction)
AA_NODE_CLASS(AACollectIf, AACollect)
AA_NODE_CLASS(AACountIf, AACollectIf)
AA_NODE_CLASS(AASum, AACollect)
AA_NODE_CLASS(AASumIf, AASum)
AA_NODE_CLASS(AAAvg, AASum)
AA_NODE_CLASS(AAAvgIf, AAAvg)
AA_NODE_CLASS(AAEvery, AACollect)
AA_NODE_CLASS(AAAny, AAEvery)
AA_NODE_CLASS(AAValues, AACollect)

// Dot operators with a receiver on the left.
AA_NODE_CLASS(AADotBeginsWith, AADotOperator)
AA_NODE_CLASS(AADotEndsWith, AADotOperator)
AA_NODE_CLASS(AADotCountOccurrencesOf, AADotOperator)
AA_NODE_CLASS(AADotFind, AADotOperator)
AA_NODE_CLASS(AADotFormat, AADotOperator)
AA_NODE_CLASS(AADotRemove, AADotOperator)
AA_NODE_CLASS(AADotEvery, AADotOperator)
AA_NODE_CLASS(AADotAny, AADotOperator)
AA_NODE_CLASS(AADotCollect, AADotOperator)
AA_NODE_CLASS(AADotCollectIf, AADotOperator)
AA_NODE_CLASS(AATrim, AADotOperator)
AA_NODE_CLASS(AAWordList, AADotOperator)
AA_NODE_CLASS(AANounList, AADotOperator)
AA_NODE_CLASS(AAParagraphList, AADotOperator)
AA_NODE_CLASS(AAFollowing, AADotOperator)
AA_NODE_CLASS(AADotFirst, AADotOperator)
AA_NODE_CLASS(AADotLast, AADotOperator)
AA_NODE_CLASS(AAFontSize, AADotOperator)
AA_NODE_CLASS(AADotTextColor, AADotOperator)
AA_NODE_CLASS(AADotSubstring, AADotOperator)
AA_NODE_CLASS(AATr, AADotOperator)
AA_NODE_CLASS(AAReplace, AADotOperator)
AA_NODE_CLASS(AADeleteCharacters, AADotOperator)
AA_NODE_CLASS(AASplit, AADotOperator)
AA_NODE_CLASS(AAAt, AADotOperator)
AA_NODE_CLASS(AALookup, AADotOperator)
AA_NODE_CLASS(AAIntersect, AADotOperator)
AA_NODE_CLASS(AASort, AADotOperator)
AA_NODE_CLASS(AASortCaseInsensitive, AADotOperator)
AA_NODE_CLASS(AASortNumeric, AADotOperator)
AA_NODE_CLASS(AAUnique, AADotOperator)
AA_NODE_CLASS(AAParagraphs, AADotOperator)
AA_NODE_CLASS(AAParagraph, AADotOperator)
AA_NODE_CLASS(AAParagraphCount, AADotOperator)
AA_NODE_CLASS(AAWords, AADotOperator)
AA_NODE_CLASS(AAPrecision, AADotOperator)
AA_NODE_CLASS(AANext, AADotOperator)
AA_NODE_CLASS(AAToNumber, AADotOperator)
AA_NODE_CLASS(AASize, AADotOperator)
AA_NODE_CLASS(AADotBold, AADotOperator)
AA_NODE_CLASS(AADotItalic, AADotOperator)
AA_NODE_CLASS(AADotPlain, AADotOperator)
AA_NODE_CLASS(AADotStrike, AADotOperator)
AA_NODE_CLASS(AAEmpty, AADotOperator)
AA_NODE_CLASS(AAReverse, AADotOperator)
AA_NODE_CLASS(AARed, AADotOperator)
AA_NODE_CLASS(AABlue, AADotOperator)
AA_NODE_CLASS(AAGreen, AADotOperator)
AA_NODE_CLASS(AADotHue, AADotOperator)
AA_NODE_CLASS(AADotSaturation, AADotOperator)
AA_NODE_CLASS(AADotBrightness, AADotOperator)
AA_NODE_CLASS(AAKeys, AADotOperator)
