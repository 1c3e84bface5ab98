// Translating date texts: distinct texts of each shape (every one a miss in
// the translation cache), a mixed set of 100,000 distinct texts, and repeated
// texts that the cache answers. Run with TZ and LANG set as usual.
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "DateFormatterUtilities.h"
#include "DateTranslator.h"
#include "STime.h"
#include "STimeInterval.h"

namespace {

const char* const kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                               "July",    "August",   "September", "October", "November", "December"};

std::string Two(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

// The i-th text of a shape; texts of one shape differ for i below 100,000.
std::string Text(int shape, int i) {
    int day = 1 + i % 28, month = 1 + (i / 28) % 12, year = 1900 + (i / 336) % 300;
    int hour = i % 24, minute = (i * 7) % 60;
    switch (shape) {
    case 0:  // ISO 8601 date and time
        return std::to_string(year) + "-" + Two(month) + "-" + Two(day) + "T" + Two(hour) + ":" + Two(minute) + ":00";
    case 1:  // the locale's short date
        return std::to_string(month) + "/" + std::to_string(day) + "/" + std::to_string(year);
    case 2:  // the locale's long date
        return std::string(kMonths[month - 1]) + " " + std::to_string(day) + ", " + std::to_string(year);
    case 3:  // relative words with a modifier and a time
        return "today +" + std::to_string(i % 5000) + " days " + std::to_string(1 + i % 12) + "pm";
    case 4:  // day, month name, year and time
        return std::to_string(day) + " " + kMonths[month - 1] + " " + std::to_string(year) + " " + Two(hour) + ":" +
               Two(minute);
    case 5:  // seconds since 1970
        return std::to_string(1000000000 + i * 97);
    default:  // a phrase for the detector
        return "in " + std::to_string(1 + i) + " days";
    }
}

constexpr int kShapes = 7;
const char* const kShapeNames[] = {"iso", "short", "long", "today", "dayMonthYear", "seconds", "phrase"};

void Translate(const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
        benchmark::DoNotOptimize(STime::For(text).SecondsSince1970());
}

void ForgetTranslations() { DateFormatterUtilities::Get().Cache().Clear(); }

// 100,000 distinct texts, an even mix of the shapes above, none cached.
void BM_TranslateDistinctMixed(benchmark::State& state) {
    std::vector<std::string> texts;
    texts.reserve(100000);
    for (int i = 0; i < 100000; ++i)
        texts.push_back(Text(i % kShapes, i / kShapes));
    Translate(texts);  // formatters made
    for (auto _ : state) {
        state.PauseTiming();
        ForgetTranslations();
        state.ResumeTiming();
        Translate(texts);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(texts.size()));
}
BENCHMARK(BM_TranslateDistinctMixed)->Unit(benchmark::kMillisecond)->Iterations(3);

// Distinct texts of one shape.
void BM_TranslateDistinctShape(benchmark::State& state) {
    int shape = static_cast<int>(state.range(0));
    state.SetLabel(kShapeNames[shape]);
    std::vector<std::string> texts;
    for (int i = 0; i < 10000; ++i)
        texts.push_back(Text(shape, i));
    Translate(texts);
    for (auto _ : state) {
        state.PauseTiming();
        ForgetTranslations();
        state.ResumeTiming();
        Translate(texts);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(texts.size()));
}
BENCHMARK(BM_TranslateDistinctShape)->DenseRange(0, kShapes - 1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same 1,000 texts over and over: the cache answers the dates it holds.
void BM_TranslateRepeated(benchmark::State& state) {
    int shape = static_cast<int>(state.range(0));
    state.SetLabel(kShapeNames[shape]);
    std::vector<std::string> texts;
    for (int i = 0; i < 1000; ++i)
        texts.push_back(Text(shape, i));
    Translate(texts);
    for (auto _ : state)
        Translate(texts);
    state.SetItemsProcessed(state.iterations() * static_cast<long>(texts.size()));
}
BENCHMARK(BM_TranslateRepeated)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_FormatExport(benchmark::State& state) {
    STime time = STime::For("2021-03-04T09:05:07");
    for (auto _ : state)
        benchmark::DoNotOptimize(time.AsExportString("W, D MM y h:mm:s"));
}
BENCHMARK(BM_FormatExport);

void BM_IntervalText(benchmark::State& state) {
    long i = 0;
    for (auto _ : state) {
        STimeInterval interval(STimeInterval(static_cast<double>(++i * 37)).ToString());
        benchmark::DoNotOptimize(interval.Seconds());
    }
}
BENCHMARK(BM_IntervalText);

} // namespace

BENCHMARK_MAIN();
