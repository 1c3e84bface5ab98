#pragma once
// DateFormatterUtilities: the process-wide owner of every locale-bound date
// service: the calendar, the locale, the named formatters, the formatters by
// part code, and the cache of translated date texts.
//
// ICU calendars and formatters are not safe to share between threads. All of
// this state is used only inside the "com.morvent.rylvane.STime" queue
// (STimeQueue()); translations are serialised on the
// "com.morvent.rylvane.dateTranslator" queue (DateTranslator::WorkQueue()),
// which is always taken before the STime queue, never after it.
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <unicode/calendar.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "RylSerial.h"
#include "STime.h"

// The queue that guards the calendar and the formatters.
RylSerial& STimeQueue();

// Runs the block inside the STime queue. Coming from outside both date queues,
// it first checks whether the user's locale or time zone changed.
template <typename F>
decltype(auto) OnDateServices(F&& block);

// Bookkeeping of how deep the current thread is inside the date queues.
struct DateQueueDepth {
    static bool Inside();          // inside either date queue
    static void Enter();
    static void Leave();
};

class StDateQueueDepth {
public:
    StDateQueueDepth() { DateQueueDepth::Enter(); }
    ~StDateQueueDepth() { DateQueueDepth::Leave(); }
    StDateQueueDepth(const StDateQueueDepth&) = delete;
    StDateQueueDepth& operator=(const StDateQueueDepth&) = delete;
};

// Text to instant, for texts already translated.
class DateTranslatorCache {
public:
    // The cache is emptied when it reaches this many entries, so that a stream
    // of distinct texts cannot grow it without end.
    static constexpr size_t kMaximumEntries = 1u << 18;

    void Add(const std::string& text, const STime& time);
    bool Has(const std::string& text) const;
    STime Get(const std::string& text) const;  // never when absent
    // Has and Get in one look-up.
    bool Find(const std::string& text, STime& time) const;
    void Clear();
    size_t Size() const { return entries.size(); }

private:
    std::unordered_map<std::string, double> entries;
};

class DateFormatterUtilities {
public:
    // Platform formatter styles.
    enum Style { kNoStyle = 0, kShortStyle = 1, kMediumStyle = 2, kLongStyle = 3 };

    static DateFormatterUtilities& Get();

    static int PartCode(int dateStyle, int timeStyle) { return dateStyle * 100 + timeStyle; }

    // All of the following must be called inside the STime queue.
    icu::Calendar& Calendar();
    const icu::Locale& CurrentLocale();
    const icu::TimeZone& TimeZone();
    icu::DateFormat& ShortFormatter();
    icu::DateFormat& MediumFormatter();
    icu::DateFormat& TimeFormatter();
    icu::DateFormat& ShortDateFormatter();
    icu::DateFormat& MediumDateFormatter();
    icu::DateFormat& LongDateFormatter();
    icu::DateFormat& FormatterFor(int dateStyle, int timeStyle);
    // Whether the local zone keeps universal time all year and in every
    // year, so that ISO 8601 text in it is the "...Z" form. Called from any
    // thread, outside the queue; worked out once per zone.
    bool ZoneIsUniversal();
    // The ISO 8601 formatter in the local zone: yyyy-MM-dd'T'HH:mm:ssXXX.
    icu::SimpleDateFormat& ISO8601Formatter();
    // A formatter for a fixed pattern or skeleton in the current locale.
    icu::SimpleDateFormat& PatternFormatter(const std::string& pattern);
    // The locale's pattern for a template such as "EEEE".
    std::string PatternForTemplate(const std::string& skeleton);

    // Weekday and month names of the current locale (ShortFormatter's symbols).
    // Index 0 is Sunday / January.
    const std::vector<std::string>& WeekdayNames();          // "Sunday"
    const std::vector<std::string>& ShortWeekdayNames();     // "Sun"
    const std::vector<std::string>& VeryShortWeekdayNames(); // "S"
    const std::vector<std::string>& MonthNames();            // "January"
    const std::vector<std::string>& ShortMonthNames();       // "Jan"

    // Parses with the eight style pairs; see DateFormatterUtilities.cpp.
    STime TryToConvert(const std::string& text, bool& ok);
    // Parses with one pair; a pair without time takes the present time of day.
    bool Try(const std::string& text, int dateStyle, int timeStyle, STime& result);

    DateTranslatorCache& Cache() { return cache; }

    std::string RegionCode() const { return regionCode; }
    // Stores the code ("0" means none) and resets when it changes.
    void SetRegionCode(const std::string& code);

    // Drops the locale-bound services and the cache. The medium formatters
    // are kept on purpose: medium texts keep the locale they were made in.
    void Reset();
    // The user's locale or time zone changed.
    void LocaleHasChanged() { Reset(); }
    // Compares LANG/LC_TIME/LC_ALL and TZ with what the services were made
    // for and resets when they differ. Called at the entry points, outside
    // the date queues.
    void RefreshFromEnvironment();

    // The locale named by the environment: LC_ALL, else LC_TIME, else LANG.
    static std::string EnvironmentLocaleName();
    // The zone named by TZ, or the system's zone.
    static icu::TimeZone* CreateEnvironmentZone();

private:
    DateFormatterUtilities();
    icu::DateFormat* MakeFormatter(int dateStyle, int timeStyle, bool forParsing = false);
    void LoadSymbols();
    void RefreshMediumZone();

    DateTranslatorCache cache;
    std::unique_ptr<icu::DateFormat> shortFormatter, mediumFormatter, timeFormatter, shortDateFormatter,
        mediumDateFormatter, longDateFormatter;
    std::unique_ptr<icu::Calendar> calendar;
    std::unique_ptr<icu::Locale> locale;
    std::unique_ptr<icu::TimeZone> zone;
    std::unique_ptr<icu::SimpleDateFormat> isoFormatter;
    // A parser for one style pair: its formatter, a calendar to parse into,
    // and the punctuation its pattern asks for, which a text must hold to
    // be worth parsing.
    struct PartParser {
        std::unique_ptr<icu::DateFormat> formatter;
        std::unique_ptr<icu::Calendar> calendar;
        std::string required;
    };
    PartParser& ParserFor(int dateStyle, int timeStyle);
    bool TryParse(const std::string& text, const icu::UnicodeString& input, int dateStyle, int timeStyle,
                  STime& result);
    std::unordered_map<int, PartParser> partFormatters;
    std::unordered_map<std::string, std::unique_ptr<icu::SimpleDateFormat>> patternFormatters;
    std::unordered_map<std::string, std::string> templatePatterns;
    bool symbolsLoaded = false;
    bool mediumZoneStale = false;
    // ZoneIsUniversal's answer: -1 until worked out for the present zone.
    int zoneIsUniversal = -1;
    std::vector<std::string> weekdayNames, shortWeekdayNames, veryShortWeekdayNames, monthNames, shortMonthNames;
    std::string regionCode;
    std::string environmentLocale;
    std::string environmentZone;
    bool environmentKnown = false;
};

template <typename F>
decltype(auto) OnDateServices(F&& block) {
    if (!DateQueueDepth::Inside())
        DateFormatterUtilities::Get().RefreshFromEnvironment();
    return STimeQueue().Sync([&]() -> decltype(auto) {
        StDateQueueDepth depth;
        return block();
    });
}

// UTF-8 <-> ICU strings.
std::string DateUTF8(const icu::UnicodeString& text);
icu::UnicodeString DateUnicode(const std::string& text);
