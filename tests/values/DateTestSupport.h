#pragma once
// Pins the zone, the locale and the clock for date tests.
#include <cstdlib>
#include <ctime>
#include <string>

#include <gtest/gtest.h>

#include "STime.h"

// Wednesday 10 March 2021, 14:25:36 UTC.
constexpr double kWednesday = 1615386336.0;

class StDateEnvironment {
public:
    StDateEnvironment(const char* zone, const char* locale, double now) : fixed(now) {
        Save("TZ", oldZone, hadZone);
        Save("LC_ALL", oldLocale, hadLocale);
        setenv("TZ", zone, 1);
        setenv("LC_ALL", locale, 1);
        tzset();
        STime::SetRegionCode("");
    }
    ~StDateEnvironment() {
        Restore("TZ", oldZone, hadZone);
        Restore("LC_ALL", oldLocale, hadLocale);
        tzset();
    }

private:
    static void Save(const char* name, std::string& value, bool& had) {
        const char* v = std::getenv(name);
        had = v != nullptr;
        value = v ? v : "";
    }
    static void Restore(const char* name, const std::string& value, bool had) {
        if (had)
            setenv(name, value.c_str(), 1);
        else
            unsetenv(name);
    }
    std::string oldZone, oldLocale;
    bool hadZone = false, hadLocale = false;
    StFixedNow fixed;
};

class DateTest : public ::testing::Test {
protected:
    StDateEnvironment environment{"UTC", "en_US.UTF-8", kWednesday};
};

// The ISO text of the translation of `text`.
inline std::string Understood(const std::string& text) { return STime::For(text).ISO8601DateString(); }
