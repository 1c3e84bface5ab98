#pragma once
// A note's text. It keeps the plain text, the RTF text and the RTFD data (with
// pictures). All access goes through one process-wide serial queue.
#include <string>

class Content {
public:
    Content() = default;
    Content(const Content& other);
    Content& operator=(const Content& other);
    virtual ~Content() = default;

    std::string GetText() const;
    void SetText(const std::string& text);
    bool HasText() const;
    long TextSize() const;
    long WordCount() const;
    static bool IsWordBreak(char c);

    bool HasRTF() const;
    std::string GetRTF() const;
    void SetRTF(const std::string& rtf);
    bool HasRTFD() const;
    std::string GetRTFD() const;
    void SetRTFD(const std::string& rtfd);

private:
    std::string text;
    std::string rtf;
    std::string rtfd;
};
