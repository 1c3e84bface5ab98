#include "DateFormatterUtilities.h"

#include <cstdlib>
#include <cstring>

#include <unicode/dtfmtsym.h>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/numfmt.h>
#include <unicode/numsys.h>
#include <unicode/parsepos.h>

#include "DateTranslator.h"
#include "Log.h"

// ---------------------------------------------------------------------------
// Queues and strings

RylSerial& STimeQueue() {
    static RylSerial queue("com.morvent.rylvane.STime");
    return queue;
}

namespace {
thread_local int dateQueueDepth = 0;
}

bool DateQueueDepth::Inside() { return dateQueueDepth > 0; }
void DateQueueDepth::Enter() { ++dateQueueDepth; }
void DateQueueDepth::Leave() { --dateQueueDepth; }

std::string DateUTF8(const icu::UnicodeString& text) {
    std::string out;
    text.toUTF8String(out);
    return out;
}

icu::UnicodeString DateUnicode(const std::string& text) { return icu::UnicodeString::fromUTF8(text); }

// ---------------------------------------------------------------------------
// DateTranslatorCache

void DateTranslatorCache::Add(const std::string& text, const STime& time) {
    if (entries.size() >= kMaximumEntries)
        entries.clear();
    entries[text] = time.SecondsSince1970();
}

bool DateTranslatorCache::Has(const std::string& text) const { return entries.count(text) != 0; }

STime DateTranslatorCache::Get(const std::string& text) const {
    auto it = entries.find(text);
    return it == entries.end() ? STime::Never() : STime(it->second);
}

bool DateTranslatorCache::Find(const std::string& text, STime& time) const {
    auto it = entries.find(text);
    if (it == entries.end())
        return false;
    time = STime(it->second);
    return true;
}

void DateTranslatorCache::Clear() { entries.clear(); }

// ---------------------------------------------------------------------------
// DateFormatterUtilities

DateFormatterUtilities& DateFormatterUtilities::Get() {
    static DateFormatterUtilities* utilities = new DateFormatterUtilities;
    return *utilities;
}

DateFormatterUtilities::DateFormatterUtilities() = default;

namespace {

const char* const kUnset = "\x01";

std::string EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string(kUnset);
}

icu::DateFormat::EStyle ICUStyle(int style) {
    switch (style) {
    case DateFormatterUtilities::kShortStyle:
        return icu::DateFormat::kShort;
    case DateFormatterUtilities::kMediumStyle:
        return icu::DateFormat::kMedium;
    case DateFormatterUtilities::kLongStyle:
        return icu::DateFormat::kLong;
    default:
        return icu::DateFormat::kNone;
    }
}

bool IsUnknownZone(const icu::TimeZone& zone) {
    icu::UnicodeString id;
    zone.getID(id);
    return id == icu::UnicodeString("Etc/Unknown");
}

} // namespace

std::string DateFormatterUtilities::EnvironmentLocaleName() {
    const char* names[] = {"LC_ALL", "LC_TIME", "LANG"};
    std::string value;
    for (const char* name : names) {
        const char* v = std::getenv(name);
        if (v && *v) {
            value = v;
            break;
        }
    }
    size_t cut = value.find_first_of(".@");
    if (cut != std::string::npos)
        value.erase(cut);
    if (value.empty() || value == "C" || value == "POSIX")
        value = "en_US";
    return value;
}

icu::TimeZone* DateFormatterUtilities::CreateEnvironmentZone() {
    const char* tz = std::getenv("TZ");
    if (tz) {
        std::string id = tz;
        if (!id.empty() && id[0] == ':')
            id.erase(0, 1);
        size_t info = id.find("zoneinfo/");
        if (info != std::string::npos)
            id.erase(0, info + 9);
        if (id.empty())
            id = "UTC";
        icu::TimeZone* zone = icu::TimeZone::createTimeZone(DateUnicode(id));
        if (zone && !IsUnknownZone(*zone))
            return zone;
        delete zone;
    }
    icu::TimeZone* zone = icu::TimeZone::detectHostTimeZone();
    if (!zone || IsUnknownZone(*zone)) {
        delete zone;
        zone = icu::TimeZone::getGMT()->clone();
    }
    return zone;
}

void DateFormatterUtilities::RefreshFromEnvironment() {
    std::string localeName = EnvironmentValue("LC_ALL") + EnvironmentValue("LC_TIME") + EnvironmentValue("LANG");
    std::string zoneName = EnvironmentValue("TZ");
    bool changed;
    {
        // Read the recorded names under the queue; the reset below takes
        // both queues in their order.
        changed = STimeQueue().Sync([&] {
            if (!environmentKnown) {
                environmentKnown = true;
                environmentLocale = localeName;
                environmentZone = zoneName;
                return false;
            }
            if (environmentLocale == localeName && environmentZone == zoneName)
                return false;
            environmentLocale = localeName;
            environmentZone = zoneName;
            return true;
        });
    }
    if (changed)
        LocaleHasChanged();
}

void DateFormatterUtilities::SetRegionCode(const std::string& code) {
    std::string stored = code == "0" ? std::string() : code;
    bool changed = STimeQueue().Sync([&] {
        if (stored == regionCode)
            return false;
        regionCode = stored;
        return true;
    });
    if (changed)
        Reset();
}

void DateFormatterUtilities::Reset() {
    DateTranslator::WorkQueue().Sync([&] {
        StDateQueueDepth outer;
        STimeQueue().Sync([&] {
            StDateQueueDepth inner;
            shortFormatter.reset();
            longDateFormatter.reset();
            timeFormatter.reset();
            shortDateFormatter.reset();
            calendar.reset();
            locale.reset();
            zone.reset();
            zoneIsUniversal = -1;
            isoFormatter.reset();
            partFormatters.clear();
            patternFormatters.clear();
            templatePatterns.clear();
            symbolsLoaded = false;
            // The medium formatters stay, with their locale; they follow
            // the zone, though, when next used.
            mediumZoneStale = true;
            cache.Clear();
        });
    });
}

const icu::Locale& DateFormatterUtilities::CurrentLocale() {
    if (!locale) {
        std::string name = regionCode.empty() ? EnvironmentLocaleName() : regionCode;
        locale.reset(new icu::Locale(icu::Locale::createCanonical(name.c_str())));
        if (locale->isBogus())
            locale.reset(new icu::Locale("en_US"));
    }
    return *locale;
}

const icu::TimeZone& DateFormatterUtilities::TimeZone() {
    if (!zone)
        zone.reset(CreateEnvironmentZone());
    return *zone;
}

bool DateFormatterUtilities::ZoneIsUniversal() {
    // Through the services, so that a change of TZ is seen first.
    return OnDateServices([&] {
        if (zoneIsUniversal < 0)
            zoneIsUniversal = TimeZone().hasSameRules(*icu::TimeZone::getGMT()) ? 1 : 0;
        return zoneIsUniversal == 1;
    });
}

icu::Calendar& DateFormatterUtilities::Calendar() {
    if (!calendar) {
        UErrorCode status = U_ZERO_ERROR;
        calendar.reset(icu::Calendar::createInstance(TimeZone().clone(), CurrentLocale(), status));
        if (U_FAILURE(status) || !calendar) {
            status = U_ZERO_ERROR;
            calendar.reset(icu::Calendar::createInstance(TimeZone().clone(), icu::Locale("en_US"), status));
        }
        calendar->setLenient(true);
    }
    return *calendar;
}

// Reads the numeric fields of a date: a run of ASCII digits. ICU's own
// number parser makes a copy of itself for every field it reads, which is
// most of the cost of parsing a date; the parsers of locales that write
// ASCII digits use this one instead. Longer runs and anything else go to the
// locale's own number format.
class DateDigitsFormat : public icu::NumberFormat {
public:
    explicit DateDigitsFormat(icu::NumberFormat* localeFormat) : inner(localeFormat) {}
    DateDigitsFormat(const DateDigitsFormat& other) : icu::NumberFormat(other), inner(other.inner->clone()) {}
    DateDigitsFormat* clone() const override { return new DateDigitsFormat(*this); }

    using icu::NumberFormat::format;
    using icu::NumberFormat::parse;
    icu::UnicodeString& format(double number, icu::UnicodeString& appendTo, icu::FieldPosition& pos) const override {
        return inner->format(number, appendTo, pos);
    }
    icu::UnicodeString& format(int32_t number, icu::UnicodeString& appendTo, icu::FieldPosition& pos) const override {
        return inner->format(number, appendTo, pos);
    }
    icu::UnicodeString& format(int64_t number, icu::UnicodeString& appendTo, icu::FieldPosition& pos) const override {
        return inner->format(number, appendTo, pos);
    }

    void parse(const icu::UnicodeString& text, icu::Formattable& result, icu::ParsePosition& position) const override {
        const int32_t start = position.getIndex();
        const int32_t length = text.length();
        int32_t i = start;
        int32_t value = 0;
        while (i < length && i - start < 9) {
            UChar c = text.charAt(i);
            if (c < u'0' || c > u'9')
                break;
            value = value * 10 + (c - u'0');
            ++i;
        }
        if (i < length && i - start == 9 && text.charAt(i) >= u'0' && text.charAt(i) <= u'9') {
            inner->parse(text, result, position);
            return;
        }
        if (i == start) {
            // No digits: no number here (signs are not part of a date field).
            position.setErrorIndex(start);
            return;
        }
        result.setLong(value);
        position.setIndex(i);
    }

    UClassID getDynamicClassID() const override {
        static const char classID = 0;
        return const_cast<char*>(&classID);
    }

private:
    std::unique_ptr<icu::NumberFormat> inner;
};

static icu::UnicodeString PlainSpaces(icu::UnicodeString text) {
    text.findAndReplace(icu::UnicodeString(static_cast<UChar32>(0x202F)), icu::UnicodeString(" "));
    text.findAndReplace(icu::UnicodeString(static_cast<UChar32>(0x00A0)), icu::UnicodeString(" "));
    return text;
}

icu::DateFormat* DateFormatterUtilities::MakeFormatter(int dateStyle, int timeStyle, bool forParsing) {
    icu::DateFormat* formatter =
        icu::DateFormat::createDateTimeInstance(ICUStyle(dateStyle), ICUStyle(timeStyle), CurrentLocale());
    if (!formatter)
        formatter = icu::DateFormat::createDateTimeInstance(ICUStyle(dateStyle), ICUStyle(timeStyle), icu::Locale("en_US"));
    formatter->setTimeZone(TimeZone());
    // Parsing is strict: the whole pattern must be matched and the calendar
    // takes no 30 February.
    formatter->setLenient(false);
    if (forParsing) {
        // The locale's patterns may hold narrow or no-break spaces (before
        // "PM", say); people type plain ones. The parsers use plain spaces
        // and Try turns the input's into plain ones as well.
        if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(formatter)) {
            icu::UnicodeString pattern;
            simple->toPattern(pattern);
            simple->applyPattern(PlainSpaces(pattern));
            UErrorCode status = U_ZERO_ERROR;
            std::unique_ptr<icu::NumberingSystem> numbers(icu::NumberingSystem::createInstance(CurrentLocale(), status));
            if (U_SUCCESS(status) && numbers && std::strcmp(numbers->getName(), "latn") == 0 &&
                simple->getNumberFormat())
                simple->adoptNumberFormat(new DateDigitsFormat(simple->getNumberFormat()->clone()));
        }
    }
    return formatter;
}

void DateFormatterUtilities::RefreshMediumZone() {
    if (!mediumZoneStale)
        return;
    mediumZoneStale = false;
    if (mediumFormatter)
        mediumFormatter->setTimeZone(TimeZone());
    if (mediumDateFormatter)
        mediumDateFormatter->setTimeZone(TimeZone());
}

icu::DateFormat& DateFormatterUtilities::ShortFormatter() {
    if (!shortFormatter)
        shortFormatter.reset(MakeFormatter(kShortStyle, kShortStyle));
    return *shortFormatter;
}

icu::DateFormat& DateFormatterUtilities::MediumFormatter() {
    if (!mediumFormatter)
        mediumFormatter.reset(MakeFormatter(kMediumStyle, kShortStyle));
    RefreshMediumZone();
    return *mediumFormatter;
}

icu::DateFormat& DateFormatterUtilities::TimeFormatter() {
    if (!timeFormatter)
        timeFormatter.reset(MakeFormatter(kNoStyle, kShortStyle));
    return *timeFormatter;
}

icu::DateFormat& DateFormatterUtilities::ShortDateFormatter() {
    if (!shortDateFormatter)
        shortDateFormatter.reset(MakeFormatter(kShortStyle, kNoStyle));
    return *shortDateFormatter;
}

icu::DateFormat& DateFormatterUtilities::MediumDateFormatter() {
    if (!mediumDateFormatter)
        mediumDateFormatter.reset(MakeFormatter(kMediumStyle, kNoStyle));
    RefreshMediumZone();
    return *mediumDateFormatter;
}

icu::DateFormat& DateFormatterUtilities::LongDateFormatter() {
    if (!longDateFormatter)
        longDateFormatter.reset(MakeFormatter(kLongStyle, kNoStyle));
    return *longDateFormatter;
}

icu::DateFormat& DateFormatterUtilities::FormatterFor(int dateStyle, int timeStyle) {
    return *ParserFor(dateStyle, timeStyle).formatter;
}

// The ASCII punctuation among the literal characters of a pattern.
static std::string RequiredPunctuation(const icu::DateFormat& formatter) {
    std::string required;
    const auto* simple = dynamic_cast<const icu::SimpleDateFormat*>(&formatter);
    if (!simple)
        return required;
    icu::UnicodeString pattern;
    simple->toPattern(pattern);
    bool quoted = false;
    for (int32_t i = 0; i < pattern.length(); ++i) {
        UChar c = pattern.charAt(i);
        if (c == '\'') {
            quoted = !quoted;
            continue;
        }
        if (quoted || c >= 0x80 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))
            continue;
        if (c > ' ' && required.find(static_cast<char>(c)) == std::string::npos)
            required += static_cast<char>(c);
    }
    return required;
}

DateFormatterUtilities::PartParser& DateFormatterUtilities::ParserFor(int dateStyle, int timeStyle) {
    PartParser& parser = partFormatters[PartCode(dateStyle, timeStyle)];
    if (!parser.formatter) {
        parser.formatter.reset(MakeFormatter(dateStyle, timeStyle, true));
        parser.calendar.reset(parser.formatter->getCalendar()->clone());
        parser.required = RequiredPunctuation(*parser.formatter);
    }
    return parser;
}

icu::SimpleDateFormat& DateFormatterUtilities::ISO8601Formatter() {
    if (!isoFormatter) {
        UErrorCode status = U_ZERO_ERROR;
        isoFormatter.reset(
            new icu::SimpleDateFormat(icu::UnicodeString("yyyy-MM-dd'T'HH:mm:ssXXX"), icu::Locale("en_US_POSIX"), status));
        // Gregorian with the usual Julian change, like the calendar that
        // builds dates from components, so that ISO text reads back the same.
        isoFormatter->adoptCalendar(new icu::GregorianCalendar(TimeZone(), icu::Locale("en_US_POSIX"), status));
        isoFormatter->setLenient(false);
    }
    return *isoFormatter;
}

icu::SimpleDateFormat& DateFormatterUtilities::PatternFormatter(const std::string& pattern) {
    auto& slot = patternFormatters[pattern];
    if (!slot) {
        UErrorCode status = U_ZERO_ERROR;
        slot.reset(new icu::SimpleDateFormat(DateUnicode(pattern), CurrentLocale(), status));
        if (U_FAILURE(status)) {
            status = U_ZERO_ERROR;
            slot.reset(new icu::SimpleDateFormat(DateUnicode(pattern), icu::Locale("en_US"), status));
        }
        slot->setTimeZone(TimeZone());
    }
    return *slot;
}

std::string DateFormatterUtilities::PatternForTemplate(const std::string& skeleton) {
    auto found = templatePatterns.find(skeleton);
    if (found != templatePatterns.end())
        return found->second;
    std::string pattern = skeleton;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(CurrentLocale(), status));
    if (U_SUCCESS(status) && generator) {
        icu::UnicodeString best = generator->getBestPattern(DateUnicode(skeleton), status);
        if (U_SUCCESS(status) && best.length() > 0)
            pattern = DateUTF8(best);
    }
    templatePatterns[skeleton] = pattern;
    return pattern;
}

void DateFormatterUtilities::LoadSymbols() {
    if (symbolsLoaded)
        return;
    symbolsLoaded = true;
    weekdayNames.assign(7, "");
    shortWeekdayNames.assign(7, "");
    veryShortWeekdayNames.assign(7, "");
    monthNames.assign(12, "");
    shortMonthNames.assign(12, "");
    const icu::DateFormatSymbols* symbols = nullptr;
    if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(&ShortFormatter()))
        symbols = simple->getDateFormatSymbols();
    std::unique_ptr<icu::DateFormatSymbols> own;
    if (!symbols) {
        UErrorCode status = U_ZERO_ERROR;
        own.reset(new icu::DateFormatSymbols(CurrentLocale(), status));
        symbols = own.get();
    }
    int32_t count = 0;
    // ICU's weekday arrays start with an empty slot; 1 is Sunday.
    const icu::UnicodeString* names = symbols->getWeekdays(count, icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::WIDE);
    for (int i = 1; i < count && i <= 7; ++i)
        weekdayNames[i - 1] = DateUTF8(names[i]);
    names = symbols->getWeekdays(count, icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::ABBREVIATED);
    for (int i = 1; i < count && i <= 7; ++i)
        shortWeekdayNames[i - 1] = DateUTF8(names[i]);
    names = symbols->getWeekdays(count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::NARROW);
    for (int i = 1; i < count && i <= 7; ++i)
        veryShortWeekdayNames[i - 1] = DateUTF8(names[i]);
    names = symbols->getMonths(count, icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::WIDE);
    for (int i = 0; i < count && i < 12; ++i)
        monthNames[i] = DateUTF8(names[i]);
    names = symbols->getMonths(count, icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::ABBREVIATED);
    for (int i = 0; i < count && i < 12; ++i)
        shortMonthNames[i] = DateUTF8(names[i]);
}

const std::vector<std::string>& DateFormatterUtilities::WeekdayNames() {
    LoadSymbols();
    return weekdayNames;
}

const std::vector<std::string>& DateFormatterUtilities::ShortWeekdayNames() {
    LoadSymbols();
    return shortWeekdayNames;
}

const std::vector<std::string>& DateFormatterUtilities::VeryShortWeekdayNames() {
    LoadSymbols();
    return veryShortWeekdayNames;
}

const std::vector<std::string>& DateFormatterUtilities::MonthNames() {
    LoadSymbols();
    return monthNames;
}

const std::vector<std::string>& DateFormatterUtilities::ShortMonthNames() {
    LoadSymbols();
    return shortMonthNames;
}

bool DateFormatterUtilities::Try(const std::string& text, int dateStyle, int timeStyle, STime& result) {
    return TryParse(text, PlainSpaces(DateUnicode(text)), dateStyle, timeStyle, result);
}

bool DateFormatterUtilities::TryParse(const std::string& text, const icu::UnicodeString& input, int dateStyle,
                                      int timeStyle, STime& result) {
    return OnDateServices([&] {
        PartParser& parser = ParserFor(dateStyle, timeStyle);
        // A text without the pattern's separators cannot match it.
        for (char c : parser.required)
            if (text.find(c) == std::string::npos)
                return false;
        icu::ParsePosition position(0);
        parser.calendar->clear();
        parser.formatter->parse(input, *parser.calendar, position);
        if (position.getIndex() == 0 || position.getErrorIndex() >= 0)
            return false;
        // The whole text must be read, apart from trailing white space.
        for (int32_t i = position.getIndex(); i < input.length(); ++i)
            if (!u_isUWhiteSpace(input.charAt(i)))
                return false;
        // The strict calendar refuses a day that does not exist (30 February).
        UErrorCode status = U_ZERO_ERROR;
        UDate parsed = parser.calendar->getTime(status);
        if (U_FAILURE(status))
            return false;
        if (timeStyle == kNoStyle) {
            // A date alone takes the present time of day; the calendar
            // settles a time that falls into a daylight-saving gap.
            DateComponents now = STime::Now().GetComponents(kHourUnit | kMinuteUnit | kSecondUnit);
            if (!now.Has(now.hour))
                return false;
            parser.calendar->setLenient(true);
            parser.calendar->set(UCAL_HOUR_OF_DAY, static_cast<int32_t>(now.hour));
            parser.calendar->set(UCAL_MINUTE, static_cast<int32_t>(now.minute));
            parser.calendar->set(UCAL_SECOND, static_cast<int32_t>(now.second));
            parser.calendar->set(UCAL_MILLISECOND, 0);
            parsed = parser.calendar->getTime(status);
            parser.calendar->setLenient(false);
            if (U_FAILURE(status))
                return false;
        }
        result = STime::FromUDate(parsed);
        return true;
    });
}

// Every style's date needs a digit for its day or year, and none is longer
// than a line or has a field of more than a few digits. A text that fails
// these tests is not handed to the parsers, whose number reading grows
// faster than the length of a digit run.
static bool CouldBeStyledDate(const std::string& text) {
    const size_t kLongestText = 256;
    const size_t kLongestDigitRun = 12;
    if (text.size() > kLongestText)
        return false;
    bool hasDigit = false;
    size_t run = 0;
    for (char c : text) {
        if (c >= '0' && c <= '9') {
            if (++run > kLongestDigitRun)
                return false;
            hasDigit = true;
        } else {
            run = 0;
        }
    }
    if (hasDigit)
        return true;
    // Digits of other scripts.
    icu::UnicodeString input = DateUnicode(text);
    for (int32_t i = 0; i < input.length(); i = input.moveIndex32(i, 1))
        if (u_isdigit(input.char32At(i)))
            return true;
    return false;
}

STime DateFormatterUtilities::TryToConvert(const std::string& text, bool& ok) {
    STime cached;
    if (OnDateServices([&] { return cache.Find(text, cached); })) {
        ok = true;
        return cached;
    }
    ok = false;
    STime result = STime::Never();
    if (!CouldBeStyledDate(text))
        return result;
    static const int pairs[8][2] = {{kShortStyle, kShortStyle}, {kShortStyle, kNoStyle},   {kLongStyle, kLongStyle},
                                    {kLongStyle, kMediumStyle}, {kLongStyle, kShortStyle}, {kLongStyle, kNoStyle},
                                    {kMediumStyle, kMediumStyle}, {kMediumStyle, kNoStyle}};
    // Every pair is tried; the last that reads the text wins.
    icu::UnicodeString input = PlainSpaces(DateUnicode(text));
    for (const auto& pair : pairs) {
        STime attempt;
        if (TryParse(text, input, pair[0], pair[1], attempt)) {
            result = attempt;
            ok = true;
        }
    }
    if (ok)
        OnDateServices([&] { cache.Add(text, result); });
    return result;
}
