#pragma once
// A file named by a path. An SFile with no path is NoFile, the invalid file.
#include <string>

class SFile {
public:
    SFile() = default;
    explicit SFile(const std::string& path) : path(path) {}

    static const SFile& NoFile();

    // Has a path.
    bool IsValid() const { return !path.empty(); }
    // The path names something that exists in the file system.
    bool Exists() const;
    const std::string& UnixPath() const { return path; }

    bool operator==(const SFile& o) const { return path == o.path; }
    bool operator!=(const SFile& o) const { return path != o.path; }

private:
    std::string path;
};
