#include "DateTranslator.h"

#include <unicode/parsepos.h>
#include <unicode/uchar.h>

#include "DateDetector.h"
#include "DateFormatterUtilities.h"
#include "DateText.h"
#include "Hooks.h"
#include "RylSerial.h"

namespace {

// A byte that may be part of a name: ASCII letters and digits, and any byte
// of a multi-byte UTF-8 character.
bool IsNameByte(char c) { return DateText::IsLetter(c) || DateText::IsDigit(c) || static_cast<unsigned char>(c) >= 0x80; }

bool StartsWith(const std::string& text, const std::string& prefix) {
    return !prefix.empty() && text.compare(0, prefix.size(), prefix) == 0;
}

// The date of month/day/year with the year as it stands, at midnight.
STime CalendarDay(long month, long day, long year) {
    DateComponents c;
    c.month = month;
    c.day = day;
    c.year = year;
    c.hour = 0;
    c.minute = 0;
    c.second = 0;
    return STime::FromComponents(c);
}

// Seconds since 1970 that a calendar can still hold (about 5.7 million years).
constexpr double kLatestSeconds = 1.8e14;

// The modifier of a text: from its last "+", or failing that its last "-".
size_t ModifierStart(const std::string& text) {
    size_t split = text.rfind('+');
    if (split == std::string::npos)
        split = text.rfind('-');
    return split;
}

} // namespace

// ---------------------------------------------------------------------------
// Statics

RylSerial& DateTranslator::WorkQueue() {
    static RylSerial queue("com.morvent.rylvane.dateTranslator");
    return queue;
}

STime DateTranslator::For(const std::string& text) {
    DateTranslator translator(text);
    if (translator.IsValid())
        return translator.GetTime();
    return STime::Now();
}

std::string DateTranslator::CurrentLocale() {
    return OnDateServices([] { return std::string(DateFormatterUtilities::Get().CurrentLocale().getName()); });
}

std::string DateTranslator::GetRegionCode() {
    return OnDateServices([] { return DateFormatterUtilities::Get().RegionCode(); });
}

void DateTranslator::SetRegionCode(const std::string& code) { DateFormatterUtilities::Get().SetRegionCode(code); }

bool DateTranslator::IsTimeModifier(const std::string& text) {
    static const char* const units[] = {"min", "hour", "day", "week", "mon", "year"};
    for (const char* unit : units)
        if (text.find(unit) != std::string::npos)
            return true;
    return false;
}

long DateTranslator::FixYear(long year) {
    if (year < 40)
        return year + 2000;
    if (year < 100)
        return year + 1900;
    return year;
}

void DateTranslator::ReadAMorPM(DateText& in, long& hour) {
    if (in.Fail())
        return;
    std::string word;
    in.ReadWord(word);
    bool pm = word.find("pm") != std::string::npos || word.find("PM") != std::string::npos;
    if (hour < 13 && pm)
        hour += 12;
}

int DateTranslator::GetMonth(const std::string& word) {
    for (int i = 0; i < 12; ++i)
        if (word == MonthName(i) || word == LongMonthName(i))
            return i + 1;
    return 0;
}

STime DateTranslator::CalculateDate(const STime& time, const std::string& rest) {
    std::string trimmed = DateText::Trim(rest);
    if (trimmed.empty())
        return time;
    return time.Add(trimmed).SetTime(trimmed);
}

STime DateTranslator::CalculateDate(const DateComponents& components, const std::string& rest) {
    return CalculateDate(STime::FromComponents(components), rest);
}

std::string DateTranslator::LongWeekday(int index) {
    return OnDateServices([&] { return DateFormatterUtilities::Get().WeekdayNames().at(index); });
}

std::string DateTranslator::Weekday(int index) {
    return OnDateServices([&] { return DateFormatterUtilities::Get().ShortWeekdayNames().at(index); });
}

std::string DateTranslator::ShortWeekday(int index) {
    return OnDateServices([&] { return DateFormatterUtilities::Get().VeryShortWeekdayNames().at(index); });
}

std::string DateTranslator::LongMonthName(int index) {
    return OnDateServices([&] { return DateFormatterUtilities::Get().MonthNames().at(index); });
}

std::string DateTranslator::MonthName(int index) {
    return OnDateServices([&] { return DateFormatterUtilities::Get().ShortMonthNames().at(index); });
}

// ---------------------------------------------------------------------------
// Translation

DateTranslator::DateTranslator(const std::string& t, Node* note) : text(t), context(note) {}

STime DateTranslator::GetTime() {
    Translate();
    return time;
}

bool DateTranslator::IsValid() {
    Translate();
    return valid;
}

bool DateTranslator::Translate() {
    // The universal-time form depends on no locale or zone: read it without
    // the environment check and the date queue.
    if (!translated && STime::FromUniversalText(text, time)) {
        translated = true;
        PreliminaryScan();
        return valid = true;
    }
    if (!DateQueueDepth::Inside())
        DateFormatterUtilities::Get().RefreshFromEnvironment();
    WorkQueue().Sync([&] {
        StDateQueueDepth depth;
        if (!DoTranslate())
            time = STime::Never();
    });
    return valid;
}

STime DateTranslator::GetTimeDirectly() {
    if (!DoTranslate())
        time = STime::Never();
    return time;
}

bool DateTranslator::DoTranslate() {
    if (translated)
        return valid;
    translated = true;

    PreliminaryScan();
    if (IsNever()) {
        time = STime::Never();
        return valid = true;
    }
    // The form dates are written in needs neither the calendar services nor
    // the cache: documents hold thousands of distinct such texts.
    if (STime::FromUniversalText(text, time))
        return valid = true;
    STime cached;
    if (OnDateServices([&] { return DateFormatterUtilities::Get().Cache().Find(text, cached); })) {
        time = cached;
        return valid = true;
    }
    if (ISO8601()) {
        OnDateServices([&] { DateFormatterUtilities::Get().Cache().Add(text, time); });
        return valid = true;
    }
    std::string name, rest, word;
    if (IsAttributeReference(name, rest))
        return valid = AttributeReference(name, rest);
    if (IsToday(word, rest))
        return valid = TodaysDate(word, rest);
    if (TryStringToDate())
        return valid = true;
    STime found;
    if (CocoaCanTranslate(text, found))
        return valid = CocoaTranslate(found);
    int weekday = DayOfWeek(word, rest);
    if (weekday > 0)
        return valid = Weekday(weekday, word, rest);
    if (!text.empty() && (text.back() == 'p' || text.back() == 'a') && CocoaCanTranslate(text + "m", found))
        return valid = CocoaTranslate(found);
    if (isNumber)
        return valid = NumericDate();
    if (hasSlash)
        return valid = AmericanDate();
    if (MonthDayYear())
        return valid;
    if (DayMonthYear())
        return valid;
    time = STime::Never();
    return valid = false;
}

void DateTranslator::PreliminaryScan() {
    hasColon = text.find(':') != std::string::npos;
    hasSlash = text.find('/') != std::string::npos;
    isNumber = true;
    bool seenPoint = false;
    for (size_t i = 0; i < text.size() && isNumber; ++i) {
        char c = text[i];
        if (DateText::IsSpace(c) || DateText::IsDigit(c))
            continue;
        if (c == '.' && !seenPoint) {
            seenPoint = true;
            continue;
        }
        if (c == '-' && i == 0 && text.size() > 1)
            continue;
        isNumber = false;
    }
}

bool DateTranslator::IsNever() { return StartsWith(text, "never") || StartsWith(text, "Never"); }

bool DateTranslator::ISO8601() {
    // The platform form first: 2021-03-04T10:00:00Z or with an offset. Its
    // texts are short and always name their zone after the "T"; others are
    // not handed to the parser.
    size_t t = text.find('T');
    bool zoned = t != std::string::npos && text.find_first_of("Z+-", t) != std::string::npos;
    bool parsed = zoned && text.size() <= 64 && OnDateServices([&] {
        icu::SimpleDateFormat& formatter = DateFormatterUtilities::Get().ISO8601Formatter();
        icu::UnicodeString input = DateUnicode(text);
        icu::ParsePosition position(0);
        UDate date = formatter.parse(input, position);
        if (position.getErrorIndex() >= 0 || position.getIndex() != input.length())
            return false;
        time = STime::FromUDate(date);
        return true;
    });
    if (parsed)
        return true;

    // Then by hand, in local time: [-]year-month-day[T][,]hour:minute[:second] [pm]
    size_t start = 0;
    bool negative = false;
    if (!text.empty() && text[0] == '-') {
        negative = true;
        start = 1;
    }
    if (start >= text.size() || !DateText::IsDigit(text[start]) || text.size() < 5 || !DateText::IsDigit(text[2]))
        return false;
    DateText in(text.substr(start));
    long year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    char dash = 0, separator = 0;
    in.ReadLong(year);
    if (!in.ReadChar(dash) || dash != '-')
        return false;
    in.ReadLong(month);
    if (month < 1 || month > 12)
        return false;
    if (!in.ReadChar(dash) || dash != '-')
        return false;
    in.ReadLong(day);
    if (in.Peek() == 'T')
        in.Get();
    if (in.Peek() == ',')
        in.Get();
    in.ReadLong(hour);
    in.ReadChar(separator);
    in.ReadLong(minute);
    if (in.Peek() == ':') {
        in.Get();
        in.ReadLong(second);
    }
    in.SkipSpace();
    int marker = in.Peek();
    if ((marker == 'p' || marker == 'P') && hour < 13)
        hour += 12;
    if (day < 1 || day > 31)
        return false;
    time = STime(month, day, negative ? -year : year, hour, minute, second);
    return true;
}

bool DateTranslator::IsAttributeReference(std::string& name, std::string& rest) {
    if (text.empty() || text[0] != '$')
        return false;
    name = "$";
    size_t i = 1;
    while (i < text.size() && IsNameByte(text[i]))
        name += text[i++];
    if (i < text.size()) {
        rest = text.substr(i);
    } else {
        // The name ran to the end of the text: its last character is
        // written once more, so a bare reference names no attribute.
        name += name.back();
        rest.clear();
    }
    return true;
}

bool DateTranslator::AttributeReference(const std::string& name, const std::string& rest) {
    STime base = STime::Now();
    if (context) {
        // The document core reads the attribute; without it the reference
        // counts from now.
        if (auto& reader = GetHooks().readAttribute) {
            // The inner translation has no context note, so that a value
            // that refers to itself cannot recurse.
            DateTranslator inner(reader(context, name.substr(1)));
            base = inner.GetTime();
        }
    }
    time = base.Add(rest);
    return true;
}

bool DateTranslator::IsToday(std::string& word, std::string& rest) {
    static const char* const words[][2] = {
        {"today", "Today"}, {"now", "Now"}, {"yesterday", "Yesterday"}, {"tomorrow", "Tomorrow"}};
    for (const auto& pair : words) {
        for (const char* candidate : pair) {
            if (StartsWith(text, candidate)) {
                word = pair[0];
                rest = text.substr(std::string(candidate).size());
                return true;
            }
        }
    }
    return false;
}

bool DateTranslator::TodaysDate(const std::string& word, const std::string& rest) {
    DateComponents c = STime::Now().GetComponents();
    if (c.Has(c.day)) {
        if (word == "tomorrow")
            c.day += 1;
        else if (word == "yesterday")
            c.day -= 1;
    }
    time = CalculateDate(c, rest);
    return true;
}

bool DateTranslator::TryStringToDate() {
    std::string front = text, modifier;
    size_t split = ModifierStart(text);
    if (split != std::string::npos) {
        front = text.substr(0, split);
        modifier = text.substr(split);
    }
    if (IsTimeModifier(front))
        return false;
    if (!IsTimeModifier(modifier)) {
        front = text;
        modifier.clear();
    }
    bool ok = false;
    STime date = DateFormatterUtilities::Get().TryToConvert(front, ok);
    if (!ok) {
        time = STime::Never();
        return false;
    }
    time = CalculateDate(date, modifier);
    return true;
}

bool DateTranslator::CocoaCanTranslate(const std::string& candidate, STime& found) {
    return DateDetector::FindFirstDate(candidate, STime::Now(), found);
}

bool DateTranslator::CocoaTranslate(const STime& found) {
    time = found;
    return true;
}

int DateTranslator::DayOfWeek(std::string& word, std::string& rest) {
    if (text.empty())
        return 0;
    // A copy whose first letter is upper case.
    icu::UnicodeString unicode = DateUnicode(text);
    UChar32 first = unicode.char32At(0);
    UChar32 upper = u_toupper(first);
    std::string copy = text;
    if (upper != first) {
        icu::UnicodeString head(upper);
        copy = DateUTF8(head) + DateUTF8(unicode.tempSubString(U16_LENGTH(first)));
    }
    std::string firstWord = text.substr(0, text.find_first_of(" \t\n\r\f\v"));
    for (int i = 0; i < 7; ++i) {
        std::string full = LongWeekday(i);
        if (StartsWith(copy, full)) {
            word = full;
            rest = copy.substr(full.size());
            return i + 1;
        }
        for (const std::string& name : {Weekday(i), ShortWeekday(i)}) {
            if (!StartsWith(copy, name))
                continue;
            if (copy.size() == name.size()) {
                word = name;
                rest.clear();
                return i + 1;
            }
            char next = copy[name.size()];
            if (DateText::IsSpace(next) || next == '.') {
                word = name;
                // An abbreviation's full stop belongs to the word.
                rest = copy.substr(name.size() + (next == '.' ? 1 : 0));
                return i + 1;
            }
        }
        if (firstWord.size() >= 4 && StartsWith(full, firstWord)) {
            word = firstWord;
            rest = text.substr(firstWord.size());
            return i + 1;
        }
    }
    return 0;
}

bool DateTranslator::Weekday(int index, const std::string& word, const std::string& rest) {
    STime now = STime::Now();
    int today = now.DayOfWeek();
    DateComponents c = now.GetComponents();
    if (c.Has(c.day))
        c.day += index + (today < index ? 0 : 7) - today;
    time = CalculateDate(c, rest);
    return true;
}

bool DateTranslator::NumericDate() {
    DateText in(text);
    double value = 0;
    in.ReadDouble(value);
    time = STime::Never();
    if (value > -2500 && value < 2500)
        time = STime(6, 15, static_cast<int>(value));
    else if (value > -kLatestSeconds && value < kLatestSeconds)
        time = STime(value);
    // Seconds beyond any calendar leave the date at never.
    return true;
}

bool DateTranslator::AmericanDate() {
    DateText in(text);
    long month = 0, day = 0, year = 0;
    char separator = 0;
    in.ReadLong(month);
    in.ReadChar(separator);
    in.ReadLong(day);
    in.ReadChar(separator);
    in.ReadLong(year);
    if (year == 0 && day >= 32) {
        year = day;
        day = 1;
    } else if (year == 0) {
        year = STime::Now().Year();
    }
    // Any time after the date is read and let go: the result is midnight.
    long hour = 0, minute = 0;
    in.ReadLong(hour);
    in.ReadChar(separator);
    in.ReadLong(minute);
    year = FixYear(year);
    time = CalendarDay(month, day, year);
    return month >= 1 && month <= 12 && day < 32;
}

bool DateTranslator::MonthDayYear() {
    if (text.empty() || !(DateText::IsLetter(text[0]) || static_cast<unsigned char>(text[0]) >= 0x80))
        return false;
    DateText in(text);
    std::string word;
    long day = 0, year = 0, hour = 0, minute = 0, second = 0;
    char separator = 0;
    in.ReadWord(word);
    in.ReadLong(day);
    if (in.Peek() == ',')
        in.Get();
    in.ReadLong(year);
    in.ReadLong(hour);
    in.ReadChar(separator);
    in.ReadLong(minute);
    if (in.Peek() == ':') {
        in.Get();
        in.ReadLong(second);
    }
    ReadAMorPM(in, hour);
    long month = GetMonth(word);
    if (year == 0 && day >= 1001 && day <= 2099) {
        year = day;
        day = 1;
    }
    year = FixYear(year);
    time = CalendarDay(month, day, year).ForHour(hour).ForMinute(minute).ForSecond(second);
    valid = month >= 1 && month <= 12 && day >= 1 && day <= 31;
    return true;
}

bool DateTranslator::DayMonthYear() {
    if (text.empty() || !DateText::IsDigit(text[0]))
        return false;
    DateText in(text);
    std::string word;
    long day = 0, year = 0, hour = 0, minute = 0, second = 0;
    char separator = 0;
    in.ReadLong(day);
    in.ReadWord(word);
    in.ReadLong(year);
    in.ReadLong(hour);
    in.ReadChar(separator);
    in.ReadLong(minute);
    if (in.Peek() == ':') {
        in.Get();
        in.ReadLong(second);
    }
    if (separator != ':') {
        hour = 0;
        minute = 0;
    }
    ReadAMorPM(in, hour);
    long month = GetMonth(word);
    year = FixYear(year);
    time = CalendarDay(month, day, year).ForHour(hour).ForMinute(minute).ForSecond(second);
    valid = month >= 1 && month <= 12 && day >= 1 && day <= 31;
    size_t split = ModifierStart(text);
    if (split != std::string::npos)
        time = CalculateDate(time, text.substr(split));
    return true;
}
