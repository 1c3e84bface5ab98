#include "DateDetector.h"

#include <unordered_map>
#include <vector>

#include <unicode/unistr.h>

#include "DateFormatterUtilities.h"
#include "DateText.h"

namespace {

enum class Kind { Word, Number, Mark };

struct Token {
    Kind kind;
    std::string text;   // words folded to lower case; marks as written
    long value = 0;     // numbers
    int digits = 0;     // numbers
    bool ordinal = false;
};

// Numbers longer than this are no part of a date.
constexpr int kMaximumDigits = 9;
// A text is read up to this many tokens.
constexpr size_t kMaximumTokens = 4096;

std::string Fold(const std::string& word) {
    bool ascii = true;
    for (char c : word)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (ascii) {
        std::string out = word;
        for (char& c : out)
            if (c >= 'A' && c <= 'Z')
                c = static_cast<char>(c - 'A' + 'a');
        return out;
    }
    icu::UnicodeString unicode = DateUnicode(word);
    unicode.foldCase();
    return DateUTF8(unicode);
}

bool IsWordByte(char c) { return DateText::IsLetter(c) || static_cast<unsigned char>(c) >= 0x80; }

std::vector<Token> Tokenize(const std::string& text) {
    std::vector<Token> tokens;
    size_t i = 0;
    const size_t n = text.size();
    while (i < n && tokens.size() < kMaximumTokens) {
        char c = text[i];
        if (DateText::IsSpace(c)) {
            ++i;
        } else if (DateText::IsDigit(c)) {
            size_t start = i;
            while (i < n && DateText::IsDigit(text[i]))
                ++i;
            Token token{Kind::Number, text.substr(start, i - start)};
            token.digits = static_cast<int>(i - start);
            if (token.digits <= kMaximumDigits)
                token.value = std::stol(token.text);
            // An ordinal suffix belongs to the number: 3rd, 21st.
            if (i + 2 <= n) {
                std::string suffix = Fold(text.substr(i, 2));
                bool end = i + 2 == n || !IsWordByte(text[i + 2]);
                if (end && (suffix == "st" || suffix == "nd" || suffix == "rd" || suffix == "th")) {
                    token.ordinal = true;
                    i += 2;
                }
            }
            tokens.push_back(token);
        } else if (IsWordByte(c)) {
            size_t start = i;
            while (i < n && IsWordByte(text[i]))
                ++i;
            tokens.push_back({Kind::Word, Fold(text.substr(start, i - start))});
        } else {
            tokens.push_back({Kind::Mark, std::string(1, c)});
            ++i;
        }
    }
    return tokens;
}

// The names the detector knows, folded: English and the current locale.
struct Lexicon {
    std::unordered_map<std::string, int> months;    // 1..12
    std::unordered_map<std::string, int> weekdays;  // 1 is Sunday
    bool dayFirst = false;                          // numeric dates read d/m/y

    static std::string Strip(std::string name) {
        while (!name.empty() && name.back() == '.')
            name.pop_back();
        return Fold(name);
    }

    Lexicon() {
        static const char* const months[][3] = {
            {"january", "jan", ""},    {"february", "feb", ""}, {"march", "mar", ""},    {"april", "apr", ""},
            {"may", "", ""},           {"june", "jun", ""},     {"july", "jul", ""},     {"august", "aug", ""},
            {"september", "sep", "sept"}, {"october", "oct", ""}, {"november", "nov", ""}, {"december", "dec", ""}};
        for (int m = 0; m < 12; ++m)
            for (const char* name : months[m])
                if (*name)
                    this->months[name] = m + 1;
        static const char* const days[][4] = {{"sunday", "sun", "", ""},
                                              {"monday", "mon", "", ""},
                                              {"tuesday", "tue", "tues", ""},
                                              {"wednesday", "wed", "", ""},
                                              {"thursday", "thu", "thur", "thurs"},
                                              {"friday", "fri", "", ""},
                                              {"saturday", "sat", "", ""}};
        for (int d = 0; d < 7; ++d)
            for (const char* name : days[d])
                if (*name)
                    weekdays[name] = d + 1;
        OnDateServices([&] {
            auto& utilities = DateFormatterUtilities::Get();
            for (int m = 0; m < 12; ++m) {
                for (const std::string& name : {utilities.MonthNames()[m], utilities.ShortMonthNames()[m]}) {
                    std::string key = Strip(name);
                    if (!key.empty())
                        this->months.emplace(key, m + 1);
                }
            }
            for (int d = 0; d < 7; ++d) {
                for (const std::string& name : {utilities.WeekdayNames()[d], utilities.ShortWeekdayNames()[d]}) {
                    std::string key = Strip(name);
                    if (key.size() > 1)
                        weekdays.emplace(key, d + 1);
                }
            }
            std::string pattern;
            if (auto* simple = dynamic_cast<icu::SimpleDateFormat*>(&utilities.ShortDateFormatter())) {
                icu::UnicodeString p;
                simple->toPattern(p);
                pattern = DateUTF8(p);
            }
            size_t d = pattern.find('d'), m = pattern.find('M');
            dayFirst = d != std::string::npos && m != std::string::npos && d < m;
        });
    }
};

enum class Unit { None, Minute, Hour, Day, Week, Month, Year };

Unit UnitFor(const std::string& word) {
    static const std::unordered_map<std::string, Unit> units = {
        {"min", Unit::Minute},   {"mins", Unit::Minute},  {"minute", Unit::Minute}, {"minutes", Unit::Minute},
        {"hr", Unit::Hour},      {"hrs", Unit::Hour},     {"hour", Unit::Hour},     {"hours", Unit::Hour},
        {"day", Unit::Day},      {"days", Unit::Day},     {"week", Unit::Week},     {"weeks", Unit::Week},
        {"month", Unit::Month},  {"months", Unit::Month}, {"year", Unit::Year},     {"years", Unit::Year}};
    auto it = units.find(word);
    return it == units.end() ? Unit::None : it->second;
}

// What a phrase says about the date.
struct DatePart {
    bool found = false;
    bool cue = false;        // says by itself that it is a date
    bool calendar = false;   // a calendar day (taken at noon when no time follows)
    DateComponents components;
    size_t end = 0;
};

struct TimePart {
    bool found = false;
    bool cue = false;
    long hour = 0, minute = 0, second = 0;
    size_t end = 0;
};

class Reader {
public:
    Reader(const std::vector<Token>& tokens, const Lexicon& lexicon, const STime& now)
        : tokens(tokens), lexicon(lexicon), now(now), today(now.GetComponents()) {}

    bool Find(STime& result) {
        if (!today.Has(today.year))
            return false;
        for (size_t i = 0; i < tokens.size(); ++i) {
            if (Phrase(i, result))
                return true;
        }
        return false;
    }

private:
    const std::vector<Token>& tokens;
    const Lexicon& lexicon;
    STime now;
    DateComponents today;

    const Token* At(size_t i) const { return i < tokens.size() ? &tokens[i] : nullptr; }
    bool IsWord(size_t i, const char* word) const {
        const Token* t = At(i);
        return t && t->kind == Kind::Word && t->text == word;
    }
    bool IsMark(size_t i, char mark) const {
        const Token* t = At(i);
        return t && t->kind == Kind::Mark && t->text[0] == mark;
    }
    bool IsNumber(size_t i) const {
        const Token* t = At(i);
        return t && t->kind == Kind::Number && t->digits <= kMaximumDigits;
    }
    int Month(size_t i) const {
        const Token* t = At(i);
        if (!t || t->kind != Kind::Word)
            return 0;
        auto it = lexicon.months.find(t->text);
        return it == lexicon.months.end() ? 0 : it->second;
    }
    int Weekday(size_t i) const {
        const Token* t = At(i);
        if (!t || t->kind != Kind::Word)
            return 0;
        auto it = lexicon.weekdays.find(t->text);
        return it == lexicon.weekdays.end() ? 0 : it->second;
    }

    bool Phrase(size_t i, STime& result) {
        const bool inside = i > 0;
        DatePart date = ReadDate(i);
        TimePart time;
        if (date.found) {
            size_t j = date.end;
            // "friday at 5pm", "March 3, 10:30", "tomorrow @ noon"
            if (IsWord(j, "at") || IsMark(j, ',') || IsMark(j, '@'))
                time = ReadTime(j + 1, true);
            if (!time.found)
                time = ReadTime(j, false);
        } else {
            time = ReadTime(i, false);
            if (time.found) {
                size_t j = time.end;
                if (IsWord(j, "on") || IsMark(j, ','))
                    ++j;
                date = ReadDate(j);
            }
        }
        if (!date.found && !time.found)
            return false;
        bool cue = date.cue || time.cue || (inside && date.found);
        if (!cue)
            return false;
        DateComponents c = date.found ? date.components : today;
        if (time.found) {
            c.hour = time.hour;
            c.minute = time.minute;
            c.second = time.second;
        } else if (date.calendar) {
            c.hour = 12;
            c.minute = 0;
            c.second = 0;
        }
        STime found = STime::FromComponents(c);
        if (found.IsNever())
            return false;
        result = found;
        return true;
    }

    // --- dates

    DatePart ReadDate(size_t i) {
        DatePart part;
        if (i >= tokens.size())
            return part;
        if (ReadRelativeWord(i, part) || ReadRelativeWeekday(i, part) || ReadOffset(i, part) ||
            ReadMonthFirst(i, part) || ReadDayFirst(i, part) || ReadNumeric(i, part))
            return part;
        return DatePart();
    }

    DateComponents Shifted(Unit unit, long amount) const {
        DateComponents c = today;
        switch (unit) {
        case Unit::Minute:
            c.minute += amount;
            break;
        case Unit::Hour:
            c.hour += amount;
            break;
        case Unit::Day:
            c.day += amount;
            break;
        case Unit::Week:
            c.day += 7 * amount;
            break;
        case Unit::Month:
            c.month += amount;
            break;
        case Unit::Year:
            c.year += amount;
            break;
        case Unit::None:
            break;
        }
        return c;
    }

    // today, tomorrow, yesterday, "the day after tomorrow"
    bool ReadRelativeWord(size_t i, DatePart& part) {
        long offset = 0;
        size_t end = i + 1;
        if (IsWord(i, "the") && IsWord(i + 1, "day") && IsWord(i + 2, "after") && IsWord(i + 3, "tomorrow")) {
            offset = 2;
            end = i + 4;
        } else if (IsWord(i, "today") || IsWord(i, "tonight")) {
            offset = 0;
        } else if (IsWord(i, "tomorrow")) {
            offset = 1;
        } else if (IsWord(i, "yesterday")) {
            offset = -1;
        } else {
            return false;
        }
        part.found = true;
        part.cue = true;
        part.components = Shifted(Unit::Day, offset);
        part.end = end;
        return true;
    }

    // [next|this|coming|last|past] weekday; next/last week, month, year
    bool ReadRelativeWeekday(size_t i, DatePart& part) {
        int direction = 0;
        size_t j = i;
        if (IsWord(i, "next") || IsWord(i, "this") || IsWord(i, "coming")) {
            direction = 1;
            ++j;
        } else if (IsWord(i, "last") || IsWord(i, "past") || IsWord(i, "previous")) {
            direction = -1;
            ++j;
        }
        int weekday = Weekday(j);
        if (weekday > 0) {
            long w = today.Has(today.weekday) ? today.weekday : 1;
            long days = direction >= 0 ? weekday + (w < weekday ? 0 : 7) - w : -(w - weekday + (w > weekday ? 0 : 7));
            part.found = true;
            part.cue = direction != 0;
            part.components = Shifted(Unit::Day, days);
            part.end = j + 1;
            return true;
        }
        if (direction != 0 && At(j) && At(j)->kind == Kind::Word) {
            Unit unit = UnitFor(At(j)->text);
            if (unit == Unit::Week || unit == Unit::Month || unit == Unit::Year) {
                part.found = true;
                part.cue = true;
                part.components = Shifted(unit, direction);
                part.end = j + 1;
                return true;
            }
        }
        return false;
    }

    // An amount: a number, or "a"/"an".
    bool ReadAmount(size_t i, long& amount) const {
        if (IsNumber(i) && !At(i)->ordinal) {
            amount = At(i)->value;
            return true;
        }
        if (IsWord(i, "a") || IsWord(i, "an")) {
            amount = 1;
            return true;
        }
        return false;
    }

    // in N units; N units ago; N units from now
    bool ReadOffset(size_t i, DatePart& part) {
        long amount = 0;
        if (IsWord(i, "in") && ReadAmount(i + 1, amount) && At(i + 2) && At(i + 2)->kind == Kind::Word) {
            Unit unit = UnitFor(At(i + 2)->text);
            if (unit != Unit::None) {
                part.found = true;
                part.cue = true;
                part.components = Shifted(unit, amount);
                part.end = i + 3;
                return true;
            }
        }
        if (ReadAmount(i, amount) && At(i + 1) && At(i + 1)->kind == Kind::Word) {
            Unit unit = UnitFor(At(i + 1)->text);
            if (unit == Unit::None)
                return false;
            if (IsWord(i + 2, "ago")) {
                part.components = Shifted(unit, -amount);
                part.end = i + 3;
            } else if (IsWord(i + 2, "from") && IsWord(i + 3, "now")) {
                part.components = Shifted(unit, amount);
                part.end = i + 4;
            } else if (IsWord(i + 2, "later")) {
                part.components = Shifted(unit, amount);
                part.end = i + 3;
            } else {
                return false;
            }
            part.found = true;
            part.cue = true;
            return true;
        }
        return false;
    }

    // A year after a day: ", 2021" or " 2021".
    size_t ReadYear(size_t j, long& year) const {
        size_t k = j;
        if (IsMark(k, ','))
            ++k;
        if (IsNumber(k) && !At(k)->ordinal && At(k)->digits == 4 && !IsMark(k + 1, ':')) {
            year = At(k)->value;
            return k + 1;
        }
        return j;
    }

    bool CalendarDay(long month, long day, long year, bool cue, size_t end, DatePart& part) {
        if (month < 1 || month > 12 || day < 1 || day > 31)
            return false;
        part.found = true;
        part.cue = cue;
        part.calendar = true;
        part.components = today;
        part.components.era = DateComponents::kUndefined;
        part.components.year = year;
        part.components.month = month;
        part.components.day = day;
        part.components.weekday = DateComponents::kUndefined;
        part.end = end;
        return true;
    }

    // [weekday[,]] month day[st] [, year]
    bool ReadMonthFirst(size_t i, DatePart& part) {
        size_t j = i;
        if (Weekday(j) > 0) {
            ++j;
            if (IsMark(j, ','))
                ++j;
        }
        int month = Month(j);
        if (month == 0)
            return false;
        ++j;
        if (IsMark(j, '.'))
            ++j;
        if (!IsNumber(j) || At(j)->value < 1 || At(j)->value > 31 || IsMark(j + 1, ':'))
            return false;
        long day = At(j)->value;
        bool ordinal = At(j)->ordinal;
        long year = today.year;
        size_t end = ReadYear(j + 1, year);
        return CalendarDay(month, day, year, ordinal, end, part);
    }

    // [the] day[st] [of] month [, year]
    bool ReadDayFirst(size_t i, DatePart& part) {
        size_t j = i;
        bool the = IsWord(j, "the");
        if (the)
            ++j;
        if (!IsNumber(j) || At(j)->value < 1 || At(j)->value > 31)
            return false;
        long day = At(j)->value;
        bool ordinal = At(j)->ordinal;
        ++j;
        // "3. März": a full stop after the day marks it as ordinal.
        if (IsMark(j, '.') && Month(j + 1) > 0) {
            ordinal = true;
            ++j;
        }
        if (IsWord(j, "of"))
            ++j;
        int month = Month(j);
        if (month == 0)
            return false;
        ++j;
        if (IsMark(j, '.'))
            ++j;
        long year = today.year;
        size_t end = ReadYear(j, year);
        return CalendarDay(month, day, year, ordinal || the, end, part);
    }

    // 3/15[/2021] in the locale's order, or 2021-03-15; a date of this kind
    // is left to the translator when it begins the text.
    bool ReadNumeric(size_t i, DatePart& part) {
        if (!IsNumber(i))
            return false;
        if (At(i)->digits == 4 && IsMark(i + 1, '-') && IsNumber(i + 2) && IsMark(i + 3, '-') && IsNumber(i + 4))
            return CalendarDay(At(i + 2)->value, At(i + 4)->value, At(i)->value, false, i + 5, part);
        if (!IsMark(i + 1, '/') || !IsNumber(i + 2))
            return false;
        long first = At(i)->value, second = At(i + 2)->value;
        long year = today.year;
        size_t end = i + 3;
        if (IsMark(i + 3, '/') && IsNumber(i + 4) && (At(i + 4)->digits == 2 || At(i + 4)->digits == 4)) {
            year = At(i + 4)->value;
            if (At(i + 4)->digits == 2)
                year += year < 40 ? 2000 : 1900;
            end = i + 5;
        }
        long month = lexicon.dayFirst ? second : first;
        long day = lexicon.dayFirst ? first : second;
        return CalendarDay(month, day, year, false, end, part);
    }

    // --- times

    // am/pm, a.m./p.m.: 1 for pm, 0 for am, -1 for none; `end` after it.
    int Meridiem(size_t i, size_t& end) const {
        const Token* t = At(i);
        if (!t || t->kind != Kind::Word)
            return -1;
        if (t->text == "am" || t->text == "pm") {
            end = i + 1;
            return t->text == "pm";
        }
        if ((t->text == "a" || t->text == "p") && IsMark(i + 1, '.') && IsWord(i + 2, "m")) {
            end = IsMark(i + 3, '.') ? i + 4 : i + 3;
            return t->text == "p";
        }
        return -1;
    }

    // 5pm, 5:30 pm, 17:30, 17:30:15, noon, midnight; with `bare`, a lone
    // hour as well ("at 5").
    TimePart ReadTime(size_t i, bool bare) {
        TimePart part;
        if (IsWord(i, "noon") || IsWord(i, "midday") || IsWord(i, "midnight")) {
            part.found = true;
            part.cue = true;
            part.hour = IsWord(i, "midnight") ? 0 : 12;
            part.end = i + 1;
            return part;
        }
        if (!IsNumber(i) || At(i)->ordinal || At(i)->digits > 2)
            return part;
        long hour = At(i)->value, minute = 0, second = 0;
        size_t j = i + 1;
        bool clock = false;
        if ((IsMark(j, ':') || IsMark(j, '.')) && IsNumber(j + 1) && At(j + 1)->digits == 2) {
            minute = At(j + 1)->value;
            j += 2;
            clock = IsMark(i + 1, ':');
            if (IsMark(j, ':') && IsNumber(j + 1) && At(j + 1)->digits == 2) {
                second = At(j + 1)->value;
                j += 2;
            }
        }
        size_t end = j;
        int meridiem = Meridiem(j, end);
        if (meridiem >= 0) {
            if (hour < 1 || hour > 12)
                return part;
            if (meridiem == 1 && hour < 12)
                hour += 12;
            else if (meridiem == 0 && hour == 12)
                hour = 0;
        } else if (!clock && !(bare && j == i + 1)) {
            return part;
        }
        if (hour > 23 || minute > 59 || second > 59)
            return part;
        part.found = true;
        part.cue = meridiem >= 0 || clock;
        part.hour = hour;
        part.minute = minute;
        part.second = second;
        part.end = meridiem >= 0 ? end : j;
        return part;
    }
};

} // namespace

bool DateDetector::FindFirstDate(const std::string& text, const STime& now, STime& result) {
    std::vector<Token> tokens = Tokenize(text);
    if (tokens.empty())
        return false;
    // The names depend on the locale; the lexicon is rebuilt when it changes.
    static thread_local std::unique_ptr<Lexicon> lexicon;
    static thread_local std::string lexiconLocale;
    std::string locale = OnDateServices([] {
        auto& utilities = DateFormatterUtilities::Get();
        return std::string(utilities.CurrentLocale().getName());
    });
    if (!lexicon || lexiconLocale != locale) {
        lexicon.reset(new Lexicon);
        lexiconLocale = locale;
    }
    Reader reader(tokens, *lexicon, now);
    return reader.Find(result);
}
