#pragma once
// The evaluator classes behind the operators, function names and dot
// operators of action code, one class per operator. Each holds its operands
// in the slots of its base (see AAValue.h): unary functions an argument
// chain, binary and dot operators a left side (the receiver) and a right side
// (the first argument).
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

// Binary operators. `!=`, `<=` and `>=` derive from `=`, `>` and `<` and
// negate their answer.
AA_NODE_CLASS_PRIORITY(AAPlus, AABinaryOperator, kPriorityAddition)
AA_NODE_CLASS_PRIORITY(AAMinus, AABinaryOperator, kPriorityAddition)
AA_NODE_CLASS_PRIORITY(AAMultiply, AABinaryOperator, kPriorityMultiplication)
AA_NODE_CLASS_PRIORITY(AADivide, AABinaryOperator, kPriorityMultiplication)
AA_NODE_CLASS_PRIORITY(AAOr, AABinaryOperator, kPriorityOrAnd)
AA_NODE_CLASS_PRIORITY(AAAnd, AABinaryOperator, kPriorityOrAnd)
AA_NODE_CLASS_PRIORITY(AAEqual, AABinaryOperator, kPriorityComparison)
AA_NODE_CLASS(AANotEqual, AAEqual)
AA_NODE_CLASS_PRIORITY(AALess, AABinaryOperator, kPriorityComparison)
AA_NODE_CLASS(AAGreaterEqual, AALess)
AA_NODE_CLASS_PRIORITY(AAGreater, AABinaryOperator, kPriorityComparison)
AA_NODE_CLASS(AALessEqual, AAGreater)

// Prefix operators and wrappers.
AA_NODE_CLASS(AANegate, AAUnaryOperator)
AA_NODE_CLASS_PRIORITY(AANot, AAUnaryOperator, kPriorityNot)
AA_NODE_CLASS(AAParenthetical, AAUnaryOperator)
// A shell command: command, then input and directory.
AA_NODE_CLASS(AAShellValue, AAUnaryOperator)

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
AA_NODE_CLASS(AAMod, AANumFun)

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
AA_NODE_CLASS_PRIORITY(AALastWord, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAFirstWord, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAHue, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAGuardField, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAVisited, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADuplicateName, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAStamp, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AACreate, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AADelete, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAInheritsFrom, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AALocalValue, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAISBN10, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AAISBN13, AAUnaryOperator, kPriorityDotOperator)
AA_NODE_CLASS_PRIORITY(AANeighbors, AAUnaryOperator, kPriorityDotOperator)

// Other functions.
AA_NODE_CLASS(AAUnvisited, AAUnaryOperator)
AA_NODE_CLASS(AAVersion, AAUnaryOperator)
AA_NODE_CLASS(AAURLEncode, AAUnaryOperator)
AA_NODE_CLASS(AAAttributeEncode, AAUnaryOperator)
AA_NODE_CLASS(AAJSONEncode, AAUnaryOperator)
AA_NODE_CLASS(AAEscapeHTML, AAUnaryOperator)
AA_NODE_CLASS(AALocale, AAUnaryOperator)
AA_NODE_CLASS(AAUTF8, AAUnaryOperator)
AA_NODE_CLASS(AAIDEncode, AAUnaryOperator)
AA_NODE_CLASS(AAPlay, AAUnaryOperator)
// `$Text.speak(voice)` keeps its receiver on the left and its argument
// chain on the right; `speak(text, voice)` has the right side only.
AA_NODE_CLASS(AASpeak, AABinaryOperator)
AA_NODE_CLASS(AAType, AAUnaryOperator)
AA_NODE_CLASS(AAAttributeOperator, AAUnaryOperator)
AA_NODE_CLASS(AADocumentPath, AAUnaryOperator)
AA_NODE_CLASS(AAWord, AAUnaryOperator)
AA_NODE_CLASS(AADistance, AAUnaryOperator)
AA_NODE_CLASS(AANotify, AAUnaryOperator)
AA_NODE_CLASS(AAInterval, AAUnaryOperator)
AA_NODE_CLASS(AACreateAgent, AAUnaryOperator)
AA_NODE_CLASS(AACovid, AAUnaryOperator)
AA_NODE_CLASS(AARGB, AAUnaryOperator)
AA_NODE_CLASS(AABrightness, AAUnaryOperator)
AA_NODE_CLASS(AASaturation, AAUnaryOperator)
AA_NODE_CLASS(AADate, AAUnaryOperator)
AA_NODE_CLASS(AATime, AAUnaryOperator)
AA_NODE_CLASS(AAList, AAUnaryOperator)
AA_NODE_CLASS(AADictionary, AAUnaryOperator)
AA_NODE_CLASS(AAOnPath, AAUnaryOperator)
AA_NODE_CLASS(AAFormat, AAUnaryOperator)
AA_NODE_CLASS(AAMacro, AAUnaryOperator)
AA_NODE_CLASS(AASubstring, AAUnaryOperator)
AA_NODE_CLASS(AALinkTo, AAUnaryOperator)
AA_NODE_CLASS(AALinkToOriginal, AAUnaryOperator)
AA_NODE_CLASS(AALinkFrom, AAUnaryOperator)
AA_NODE_CLASS(AALinkFromOriginal, AAUnaryOperator)
AA_NODE_CLASS(AAUnlinkTo, AAUnaryOperator)
AA_NODE_CLASS(AAUnlinkToOriginal, AAUnaryOperator)
AA_NODE_CLASS(AAUnlinkFrom, AAUnaryOperator)
AA_NODE_CLASS(AAUnlinkFromOriginal, AAUnaryOperator)
AA_NODE_CLASS(AADistanceBetween, AAUnaryOperator)
AA_NODE_CLASS(AADrivingTime, AAUnaryOperator)
AA_NODE_CLASS(AAIndented, AAUnaryOperator)
AA_NODE_CLASS(AASimilar, AAUnaryOperator)
AA_NODE_CLASS(AARelatedWords, AAUnaryOperator)
AA_NODE_CLASS(AABetween, AAUnaryOperator)
AA_NODE_CLASS(AAEval, AAUnaryOperator)
AA_NODE_CLASS(AAAction, AAUnaryOperator)
AA_NODE_CLASS(AAExport, AAUnaryOperator)
AA_NODE_CLASS(AANeighbors2, AAUnaryOperator)
AA_NODE_CLASS(AANeighborsWithin, AAUnaryOperator)
AA_NODE_CLASS(AANeighbors2Within, AAUnaryOperator)

// Date parts; the dot forms (`$D.year`) take the receiver as their operand.
AA_NODE_CLASS(AADay, AAUnaryOperator)
AA_NODE_CLASS(AAHour, AAUnaryOperator)
AA_NODE_CLASS(AAMinute, AAUnaryOperator)
AA_NODE_CLASS(AASecond, AAUnaryOperator)
AA_NODE_CLASS(AAMonth, AAUnaryOperator)
AA_NODE_CLASS(AAYear, AAUnaryOperator)
AA_NODE_CLASS(AAWeekOfYear, AAUnaryOperator)
AA_NODE_CLASS(AAWeekday, AAUnaryOperator)

// Differences between two dates in whole units.
AA_NODE_CLASS(AADays, AAUnaryOperator)
AA_NODE_CLASS(AAHours, AADays)
AA_NODE_CLASS(AAMinutes, AADays)
AA_NODE_CLASS(AASeconds, AADays)
AA_NODE_CLASS(AAWeeks, AADays)
AA_NODE_CLASS(AAMonths, AADays)
AA_NODE_CLASS(AAYears, AADays)

// Group functions over the notes of a designator: designator, then the
// further arguments. The `_if` forms take a condition first.
AA_NODE_CLASS(AACollect, AAUnaryOperator)
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
