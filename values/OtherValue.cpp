#include <sstream>

#include "Value.h"
#include "Hooks.h"

namespace {

int Sign(int c) {
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

PColor ColorFromText(const std::string& text) {
    PColor color;
    color.FromString(text);
    return color;
}

}  // namespace

// ---------------------------------------------------------------- ColorValue

ColorValue::ColorValue(const std::string& t) : color(ColorFromText(t)), text(t) {}

ColorValue::ColorValue(const PColor& c) : color(c), text(c.ToString()) {}

Value* ColorValue::Clone() const {
    return new ColorValue(text);
}

std::string ColorValue::AsString() const {
    return text;
}

std::string ColorValue::AsXML() const {
    return text;
}

long ColorValue::AsLong() const {
    return 1;
}

bool ColorValue::AsBoolean() const {
    if (!color.IsBlack()) return true;
    return !(text.empty() || text == "black" || text == "Black" || text == "normal");
}

PColor ColorValue::AsColor() const {
    return color;
}

std::string ColorValue::AsExportString(const std::string&, Hypertext* document) const {
    PColor result = PColor::Black();
    if (!text.empty() && !result.FromString(text) && document) {
        const Hooks& hooks = GetHooks();
        if (hooks.translateColorForDocument) result = hooks.translateColorForDocument(document, text);
    }
    return result.ToString();
}

int ColorValue::compare(const Value* other) const {
    // Reversed on purpose: the greater text sorts first.
    return -Sign(AsXML().compare(other ? other->AsXML() : std::string()));
}

// ---------------------------------------------------------------- RectValue

RectValue::RectValue(const SRect& r) : rect(r) {}

RectValue::RectValue(const std::string& tagged) {
    std::istringstream in(tagged);
    std::string word;
    double top = 0, left = 0, bottom = 0, right = 0;
    in >> word >> top >> left >> bottom >> right;
    rect = SRect(top, left, bottom, right);
}

std::string RectValue::AsString() const {
    return rect.ToString();
}

std::string RectValue::AsXML() const {
    return rect.ToString();
}

SRect RectValue::AsRect() const {
    return rect;
}

int RectValue::compare(const Value* other) const {
    SRect o = other ? other->AsRect() : SRect();
    const double mine[] = {rect.top, rect.left, rect.right, rect.bottom};
    const double theirs[] = {o.top, o.left, o.right, o.bottom};
    for (int i = 0; i < 4; ++i) {
        if (mine[i] < theirs[i]) return -1;
        if (mine[i] > theirs[i]) return 1;
    }
    return 0;
}

// ---------------------------------------------------------------- FileValue

FileValue::FileValue(const std::string& p) : path(p), file(p) {}

FileValue::FileValue(const SFile& f) : path(f.UnixPath()), file(f) {}

std::string FileValue::AsString() const {
    return path;
}

std::string FileValue::AsXML() const {
    return path.size() < 32769 ? path : std::string();
}

void FileValue::AsFile(SFile& f) const {
    f = AsFile();
}

SFile FileValue::AsFile() const {
    if (file.IsValid()) return file;
    if (path.empty()) return SFile::NoFile();
    return SFile(path);
}

std::string FileValue::Path() const {
    SFile f = AsFile();
    return f.Exists() ? f.UnixPath() : path;
}
