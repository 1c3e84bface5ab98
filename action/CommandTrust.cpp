#include "CommandTrust.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>
#include <set>

#include <sys/wait.h>
#include <unistd.h>

#include "Node.h"

namespace {

std::atomic<bool> gAllowed{false};
std::mutex gReportMutex;
std::set<std::string> gReported;

// A word for the shell: in single quotes, each quote written as '\''.
std::string ShellQuote(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

}  // namespace

void CommandTrust::Allow(bool allowed) { gAllowed = allowed; }

bool CommandTrust::Allowed() { return gAllowed; }

void CommandTrust::ResetReports() {
    std::lock_guard<std::mutex> lock(gReportMutex);
    gReported.clear();
}

std::string CommandTrust::Run(const Node* note, const std::string& command, const std::string& input,
                              const std::string& directory) {
    if (command.empty())
        return std::string();
    if (!gAllowed) {
        std::lock_guard<std::mutex> lock(gReportMutex);
        if (gReported.insert(command).second)
            std::cerr << "rylvane: refused to run a command of note \"" << (note ? note->Name() : std::string())
                      << "\" (use --allow-commands): " << command << "\n";
        return std::string();
    }
    // The input goes through a temporary file, so that a command that does
    // not read it cannot block us.
    std::string inputPath;
    {
        char pattern[] = "/tmp/rylvane-input-XXXXXX";
        int fd = mkstemp(pattern);
        if (fd < 0)
            return std::string();
        inputPath = pattern;
        size_t written = 0;
        while (written < input.size()) {
            ssize_t n = write(fd, input.data() + written, input.size() - written);
            if (n <= 0)
                break;
            written += static_cast<size_t>(n);
        }
        close(fd);
    }
    std::string folder = directory;
    if (folder.empty() || folder == "~") {
        const char* home = std::getenv("HOME");
        folder = home ? home : "/";
    } else if (folder.rfind("~/", 0) == 0) {
        const char* home = std::getenv("HOME");
        folder = std::string(home ? home : "") + folder.substr(1);
    }
    std::string line = "cd " + ShellQuote(folder) + " && /bin/sh -c " + ShellQuote(command) + " < " +
                       ShellQuote(inputPath);
    std::string output;
    if (FILE* pipe = popen(line.c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
            output.append(buffer, n);
        pclose(pipe);
    }
    std::remove(inputPath.c_str());
    return output;
}
