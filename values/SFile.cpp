#include "SFile.h"

#include <filesystem>
#include <system_error>

const SFile& SFile::NoFile() {
    static const SFile none;
    return none;
}

bool SFile::Exists() const {
    if (path.empty()) return false;
    std::error_code error;
    return std::filesystem::exists(std::filesystem::path(path), error);
}
