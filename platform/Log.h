#pragma once
// Diagnostic log lines. The model never throws; problems it meets are logged
// here as one line of text. By default lines go nowhere unless RYLVANE_LOG is
// set in the environment (then to stderr); tests install a sink to read them.
#include <functional>
#include <string>


using LogSink = std::function<void(const std::string&)>;

// Writes one line to the current sink.
void LogLine(const std::string& line);

// printf-style convenience: LogFormat("Invalid elder moving %s", name.c_str()).
void LogFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Replaces the sink; returns the previous one. An empty sink restores the default.
LogSink SetLogSink(LogSink sink);

// Scope guard that collects the lines logged while it lives.
class StLogCapture {
public:
    StLogCapture();
    ~StLogCapture();
    StLogCapture(const StLogCapture&) = delete;
    StLogCapture& operator=(const StLogCapture&) = delete;
    const std::string& Text() const { return text; }
    bool Contains(const std::string& part) const { return text.find(part) != std::string::npos; }

private:
    std::string text;
    LogSink previous;
};

