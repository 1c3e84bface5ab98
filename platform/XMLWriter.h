#pragma once
// Writes XML text: tags, attributes and escaped text.
//
// A start tag is built in steps: Open("item") writes "<item ", each Put
// writes `name="value" ` (with the trailing blank) and EndTag writes ">".
// Output collects in a buffer; a writer made on a stream hands the buffer
// to the stream in large pieces and at Flush or destruction.
#include <ostream>
#include <string>
#include <string_view>

class XMLWriter {
public:
    XMLWriter() = default;
    explicit XMLWriter(std::ostream& stream) : out(&stream) {}
    ~XMLWriter();
    XMLWriter(const XMLWriter&) = delete;
    XMLWriter& operator=(const XMLWriter&) = delete;

    // The first line of a document, with its line break.
    void Declaration();

    void Open(std::string_view name);
    void Put(std::string_view name, std::string_view value);
    void PutBoolean(std::string_view name, bool value);
    void PutDouble(std::string_view name, double value);
    void PutUnsigned(std::string_view name, unsigned long value);
    void PutLong(std::string_view name, long value);
    // A rectangle as "x,y,width,height".
    void PutRect(std::string_view name, double x, double y, double width, double height);
    // Closes the start tag with ">", and a line break when asked.
    void EndTag(bool newline = false);
    // Closes the start tag as an empty element "/>" with a line break.
    void EndEmptyTag();
    // "</name>" and a line break.
    void Close(std::string_view name);

    // Escaped character data.
    void Text(std::string_view text);
    // Bytes written as they are.
    void Raw(std::string_view text) { buffer.append(text); MaybeFlush(); }
    // <name>escaped text</name> and a line break.
    void Element(std::string_view name, std::string_view text);

    // The text written so far (for a writer without a stream).
    const std::string& Result() const { return buffer; }
    void Flush();

    // Appends `text` escaped for XML: & < > " ' become entities; a carriage
    // return becomes "&#13;" so that it survives reading; inside attribute
    // values tab and line feed become "&#9;" and "&#10;" for the same reason.
    // Other control characters, bytes that are not UTF-8 and the
    // non-characters U+FFFE and U+FFFF are left out, since XML cannot carry
    // them. "1" and "0" are taken at once.
    static void ToXML(std::string_view text, std::string& out, bool attribute = false);
    static std::string ToXML(std::string_view text, bool attribute = false);

    // A number as the shortest text that reads back to the same double.
    static std::string FormatDouble(double value);

private:
    void MaybeFlush() {
        if (out && buffer.size() >= kFlushSize)
            Flush();
    }
    static constexpr size_t kFlushSize = 1 << 20;

    std::ostream* out = nullptr;
    std::string buffer;
};
