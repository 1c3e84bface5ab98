#pragma once
// DateDetector: finds the first date or time phrase anywhere in a text, in
// the manner of a natural-language data detector.
//
// It reads phrases such as "5pm", "5:30 p.m.", "noon", "10:30", "next friday",
// "last week", "in 3 days", "2 hours ago", "3 weeks from now", "March 3rd",
// "the 3rd of March 2021", "friday at 5pm", "call me tomorrow at noon",
// "due 3/15/2021", and a date with a time in either order ("at 9am on
// March 3"). Month and weekday names are English and those of the current
// locale; the other words are English.
//
// So that the translator's later steps keep the forms they own, a phrase at
// the very start of the text must show a sign of its own that it is a date
// (a time, an ordinal day, a relative word); a bare weekday, "March 3 2021"
// or "3/15" at the start is left to them. Inside other words, any date phrase
// counts.
//
// A calendar date without a time is taken at noon; a relative date ("next
// friday", "in 3 days") keeps the present time of day; a time without a date
// is today. The work is linear in the length of the text.
#include <string>

#include "STime.h"

class DateDetector {
public:
    // True and the date of the first phrase found; `now` anchors relative words.
    static bool FindFirstDate(const std::string& text, const STime& now, STime& result);
};
