#include "HTMLExportSaver.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "CommandTrust.h"
#include "Node.h"

bool HTMLExportSaver::FileContentsUnchanged(const std::string& path, const std::string& text) {
    std::error_code code;
    auto size = std::filesystem::file_size(path, code);
    if (code || size != text.size())
        return false;
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::string old((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (old.size() != text.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i)
        if (old[i] != text[i] && !std::isspace(static_cast<unsigned char>(text[i])))
            return false;
    return true;
}

bool HTMLExportSaver::NothingToExport(const std::string& path, const std::string& text) {
    std::error_code code;
    if (std::filesystem::exists(path, code))
        return false;
    for (char c : text)
        if (!std::isspace(static_cast<unsigned char>(c)))
            return false;
    return true;
}

bool HTMLExportSaver::Save(const std::string& path, const std::string& text, std::string& error) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out)
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
        error = "cannot write " + path + ": " + std::strerror(errno ? errno : EIO);
        return false;
    }
    return true;
}

HTMLExportSaver::Outcome HTMLExportSaver::Export(Node* node, const std::string& path, const std::string& text,
                                                 std::string& error) {
    std::string command = node ? node->GetString("HTMLExportCommand") : std::string();
    std::string result = text;
    if (command.empty()) {
        if (FileContentsUnchanged(path, text))
            return kUnchanged;
        if (NothingToExport(path, text))
            return kSkipped;
        return Save(path, text, error) ? kWritten : kFailed;
    } else {
        // An outside program: only when the user allowed commands. A refused
        // command (reported once by CommandTrust) leaves the page as it was.
        if (!CommandTrust::Allowed()) {
            CommandTrust::Run(node, command, text, "~");
            return kSkipped;
        }
        result = CommandTrust::Run(node, command, text, "~");
    }
    if (NothingToExport(path, result))
        return kSkipped;
    if (FileContentsUnchanged(path, result))
        return kUnchanged;
    return Save(path, result, error) ? kWritten : kFailed;
}
