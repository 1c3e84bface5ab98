#include "Configuration.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

std::string ConfigurationFolder() {
    if (const char* dir = std::getenv("RYLVANE_CONFIG_DIR"); dir && *dir)
        return dir;
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg)
        return std::string(xdg) + "/rylvane";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::string(home) + "/.config/rylvane";
    return {};
}

std::string ConfigurationText(const std::string& name, const std::string& builtIn, bool* fromUser) {
    if (fromUser)
        *fromUser = false;
    std::string folder = ConfigurationFolder();
    if (!folder.empty()) {
        std::ifstream file(folder + "/" + name, std::ios::binary);
        if (file) {
            std::ostringstream text;
            text << file.rdbuf();
            if (fromUser)
                *fromUser = true;
            return text.str();
        }
    }
    return builtIn;
}
