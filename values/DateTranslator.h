#pragma once
// DateTranslator: free text to an STime.
//
// The steps, first success wins: "never..."; the translation cache; ISO 8601;
// "$Attribute+modifier" (with a context note); today/now/yesterday/tomorrow
// with modifiers; the locale's date formats with an optional "+3 days"
// modifier; the date detector (phrases such as "next friday 5pm", "in 3
// weeks", "March 3rd"); weekday names; a trailing "p"/"a" read as pm/am;
// a bare number (a year when between -2500 and 2500, else seconds since
// 1970); month/day/year with slashes; "January 5, 2021 10:30 pm" and
// "5 January 2021 10:30"; otherwise the text is invalid and gives never.
#include <string>

#include "DateText.h"
#include "STime.h"

class Node;
class RylSerial;

class DateTranslator {
public:
    explicit DateTranslator(const std::string& text, Node* context = nullptr);
    virtual ~DateTranslator() = default;
    DateTranslator(const DateTranslator&) = delete;
    DateTranslator& operator=(const DateTranslator&) = delete;

    // Translates (once) on the translator queue and gives the result; never
    // when the text is not a date.
    virtual STime GetTime();
    virtual bool IsValid();
    // Translates without the queue (the caller serialises).
    virtual STime GetTimeDirectly();
    virtual bool Translate();

    virtual bool HasColon() const { return hasColon; }
    virtual bool HasSlash() const { return hasSlash; }
    virtual bool IsNumber() const { return isNumber; }

    // The time if the text is valid, otherwise the current instant.
    static STime For(const std::string& text);
    static std::string CurrentLocale();
    static std::string GetRegionCode();
    static void SetRegionCode(const std::string& code);
    static RylSerial& WorkQueue();

    // Helpers shared with STime; each reads its text as a stream.
    static bool IsTimeModifier(const std::string& text);
    static long FixYear(long year);
    static void ReadAMorPM(DateText& in, long& hour);
    static int GetMonth(const std::string& word);  // 1..12, 0 when unknown
    static STime CalculateDate(const STime& time, const std::string& rest);
    static STime CalculateDate(const DateComponents& components, const std::string& rest);

protected:
    virtual bool DoTranslate();
    virtual void PreliminaryScan();
    virtual bool ISO8601();
    virtual bool IsNever();
    virtual bool IsAttributeReference(std::string& name, std::string& rest);
    virtual bool AttributeReference(const std::string& name, const std::string& rest);
    virtual bool IsToday(std::string& word, std::string& rest);
    virtual bool TodaysDate(const std::string& word, const std::string& rest);
    virtual int DayOfWeek(std::string& word, std::string& rest);
    virtual bool Weekday(int index, const std::string& word, const std::string& rest);
    virtual bool TryStringToDate();
    virtual bool CocoaCanTranslate(const std::string& text, STime& found);
    virtual bool CocoaTranslate(const STime& found);
    virtual bool NumericDate();
    virtual bool AmericanDate();
    virtual bool MonthDayYear();
    virtual bool DayMonthYear();

    static std::string LongWeekday(int index);
    static std::string Weekday(int index);
    static std::string ShortWeekday(int index);
    static std::string LongMonthName(int index);
    static std::string MonthName(int index);

    std::string text;
    STime time = STime::Never();
    Node* context = nullptr;
    bool valid = false;
    bool hasColon = false;
    bool hasSlash = false;
    bool isNumber = true;
    bool translated = false;
};
