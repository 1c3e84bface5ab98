#include "Prefs.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

struct KindRow {
    int kind;
    const char* key;
    Prefs::Shape shape;
};

// Preference kinds and the fields they read. Kind 27 reads the spelling
// switch and answers its inverse.
const KindRow kKinds[] = {
    {1, "Creator", Prefs::kStringField},
    {2, "NameFont", Prefs::kStringField},
    {3, "MapBackgroundColor", Prefs::kStringField},
    {4, "TitleFont", Prefs::kStringField},
    {5, "BooleanSetting", Prefs::kBooleanField},
    {6, "StringSetting", Prefs::kStringField},
    {7, "TextColor", Prefs::kColorField},
    {8, "TextBackgroundColor", Prefs::kColorField},
    {9, "HTMLExtension", Prefs::kStringField},
    {10, "TextExportTemplate", Prefs::kStringField},
    {11, "TitleForegroundColor", Prefs::kColorField},
    {12, "TitleBackgroundColor", Prefs::kColorField},
    {13, "PrototypeHighlightColor", Prefs::kColorField},
    {14, "ParagraphSpacing", Prefs::kNumberField},
    {17, "TextSidebar", Prefs::kBooleanField},
    {18, "TextFont", Prefs::kStringField},
    {19, "TextFontSize", Prefs::kNumberField},
    {20, "InteriorScale", Prefs::kNumberField},
    {21, "WindowPlace", Prefs::kRectField},
    {22, "TextAlign", Prefs::kNumberField},
    {23, "ColorSetting", Prefs::kColorField},
    {24, "MapBackgroundAccentColor", Prefs::kStringField},
    {25, "MapBackgroundPattern", Prefs::kStringField},
    {26, "SmartQuotes", Prefs::kBooleanField},
    {27, "CheckSpelling", Prefs::kBooleanField},
};

const KindRow* RowFor(int kind) {
    for (const auto& row : kKinds)
        if (row.kind == kind)
            return &row;
    return nullptr;
}

std::string UserName() {
    if (const char* user = std::getenv("USER"); user && *user)
        return user;
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_name)
        return pw->pw_name;
    return "system";
}

} // namespace

Prefs::Prefs() = default;

Prefs Prefs::Defaults() {
    Prefs p;
    p.Set("Creator", UserName());
    p.Set("NameFont", "Helvetica");
    p.Set("TitleFont", "Helvetica");
    p.Set("TextFont", "Helvetica");
    p.Set("TextFontSize", "16");
    p.Set("MapBackgroundColor", "white");
    p.Set("MapBackgroundAccentColor", "");
    p.Set("MapBackgroundPattern", "plain");
    p.Set("TextColor", "#000000");
    p.Set("TextBackgroundColor", "#ffffff");
    p.Set("TitleForegroundColor", "#000000");
    p.Set("TitleBackgroundColor", "#ffffff");
    p.Set("PrototypeHighlightColor", "#ff0000");
    p.Set("HTMLExtension", ".html");
    p.Set("TextExportTemplate", "");
    p.Set("ParagraphSpacing", "0");
    p.Set("InteriorScale", "1");
    p.Set("WindowPlace", "Rect[ 0 0 0 0 ]");
    p.Set("TextAlign", "0");
    p.Set("SmartQuotes", "true");
    p.Set("CheckSpelling", "true");
    return p;
}

std::string Prefs::Get(const std::string& key) const {
    auto it = values.find(key);
    return it == values.end() ? std::string() : it->second;
}

bool Prefs::GetBoolean(const std::string& key) const {
    std::string v = Get(key);
    return v == "true" || v == "1" || v == "yes";
}

double Prefs::GetNumber(const std::string& key) const {
    std::string v = Get(key);
    char* end = nullptr;
    double d = std::strtod(v.c_str(), &end);
    return end == v.c_str() ? 0.0 : d;
}

const char* Prefs::KeyForKind(int kind) {
    const KindRow* row = RowFor(kind);
    return row ? row->key : "";
}

Prefs::Shape Prefs::KindShape(int kind) {
    const KindRow* row = RowFor(kind);
    return row ? row->shape : kStringField;
}

std::string Prefs::StringFor(int kind) const { return Get(KeyForKind(kind)); }

double Prefs::NumberFor(int kind) const { return GetNumber(KeyForKind(kind)); }

bool Prefs::BooleanFor(int kind) const {
    bool b = GetBoolean(KeyForKind(kind));
    return kind == 27 ? !b : b;
}

std::string Prefs::Creator() const {
    std::string c = Get("Creator");
    return c.empty() ? std::string("system") : c;
}
