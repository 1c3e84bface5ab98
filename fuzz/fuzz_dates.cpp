// Any bytes as a date text, a modifier, a time, an export format and an
// interval text. Nothing may crash, hang, leak or overflow.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "DateDetector.h"
#include "DateTranslator.h"
#include "STime.h"
#include "STimeInterval.h"

namespace {

struct PinnedEnvironment {
    PinnedEnvironment() {
        setenv("TZ", "Europe/Berlin", 1);
        setenv("LC_ALL", "en_US.UTF-8", 1);
        // A fixed now keeps runs reproducible.
        STime::SetFixedNow(1615386336.0);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static PinnedEnvironment pinned;
    std::string text(reinterpret_cast<const char*>(data), size);

    DateTranslator translator(text);
    STime time = translator.GetTime();
    translator.IsValid();
    time.ISO8601DateString();
    time.AsExportString(text);
    time.AsExportString("D M0 y h:mm:s * = W w MM M p H");
    time.RFC822DateString();
    time.Add(text);
    time.SetTime(text);
    time.InformalTimeAbbreviation(text);
    STime::IsDate(text);

    // The same text as a modifier of a fixed date, and through the detector.
    STime base(3, 15, 2021);
    base.Add(text).SetTime(text).ISO8601DateString();
    STime found;
    DateDetector::FindFirstDate(text, base, found);

    STimeInterval interval(text);
    interval.ToString();
    interval.ToString("L");
    interval.ToString("l");
    STimeInterval(interval.ToString()).Seconds();
    return 0;
}
