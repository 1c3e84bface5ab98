// rylvane date [--format FMT] TEXT...: how each text is understood as a date.
// rylvane interval TEXT...: how each text is understood as a duration.
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "STime.h"
#include "STimeInterval.h"

namespace {

struct DateOptions {
    std::string format;
    std::vector<std::string> texts;
};

int RunDate(const DateOptions& options) {
    for (const std::string& text : options.texts) {
        STime time = STime::For(text);
        std::cout << (options.format.empty() ? time.ISO8601DateString() : time.AsExportString(options.format)) << "\n";
    }
    std::cout.flush();
    return 0;
}

struct IntervalOptions {
    std::string format;
    std::vector<std::string> texts;
};

int RunInterval(const IntervalOptions& options) {
    for (const std::string& text : options.texts) {
        STimeInterval interval(text);
        std::cout << (options.format.empty() ? interval.ToString() : interval.ToString(options.format)) << "\n";
    }
    std::cout.flush();
    return 0;
}

CommandRegistration dateCommand(
    "date",
    [](CLI::App& app, CommandResult& result) {
        auto options = std::make_shared<DateOptions>();
        auto* cmd = app.add_subcommand("date", "Print each text as the date it is understood to be (ISO 8601)");
        cmd->add_option("--format,-f", options->format,
                        "Date format codes instead of ISO 8601, e.g. \"D/M0/y h:mm\" or \"W, MM d\"");
        cmd->add_option("texts", options->texts, "Date texts, e.g. \"tomorrow 9:30\", \"3/15\", \"next friday 5pm\"")
            ->required();
        cmd->callback([&result, options] { result.code = RunDate(*options); });
    },
    60);

CommandRegistration intervalCommand(
    "interval",
    [](CLI::App& app, CommandResult& result) {
        auto options = std::make_shared<IntervalOptions>();
        auto* cmd = app.add_subcommand("interval", "Print each text as the duration it is understood to be");
        cmd->add_option("--format,-f", options->format, "\"l\" for positional text, \"L\" for words");
        cmd->add_option("texts", options->texts, "Interval texts, e.g. \"90\", \"1h30m\", \"2d 3\", \"12:34:56\"")
            ->required();
        cmd->callback([&result, options] { result.code = RunInterval(*options); });
    },
    61);

} // namespace
