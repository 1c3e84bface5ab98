#include "Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace {

std::mutex& SinkMutex() {
    static std::mutex m;
    return m;
}

LogSink& Sink() {
    static LogSink sink;
    return sink;
}

void DefaultSink(const std::string& line) {
    static const bool enabled = std::getenv("RYLVANE_LOG") != nullptr;
    if (enabled)
        std::fprintf(stderr, "%s\n", line.c_str());
}

} // namespace

void LogLine(const std::string& line) {
    LogSink sink;
    {
        std::lock_guard<std::mutex> lock(SinkMutex());
        sink = Sink();
    }
    if (sink)
        sink(line);
    else
        DefaultSink(line);
}

void LogFormat(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string out;
    if (n > 0) {
        std::vector<char> buffer(static_cast<size_t>(n) + 1);
        std::vsnprintf(buffer.data(), buffer.size(), format, args);
        out.assign(buffer.data(), static_cast<size_t>(n));
    }
    va_end(args);
    LogLine(out);
}

LogSink SetLogSink(LogSink sink) {
    std::lock_guard<std::mutex> lock(SinkMutex());
    LogSink previous = std::move(Sink());
    Sink() = std::move(sink);
    return previous;
}

StLogCapture::StLogCapture() {
    previous = SetLogSink([this](const std::string& line) {
        text += line;
        text += '\n';
    });
}

StLogCapture::~StLogCapture() { SetLogSink(std::move(previous)); }

