#pragma once
// A note's text. It keeps the plain text, the RTF text and the RTFD data (with
// pictures). All access goes through one process-wide serial queue.
//
// Most notes have plain text only, so the two styled forms live apart and are
// made when first set to something.
#include <memory>
#include <string>

#include "StyledText.h"

class Node;

class Content {
public:
    Content() = default;
    Content(const Content& other);
    Content& operator=(const Content& other);
    ~Content() = default;

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
    // The same, taking the text over without a copy (for readers).
    void SetText(std::string&& text);
    void SetRTF(std::string&& rtf);
    void SetRTFD(std::string&& rtfd);

    // The styled text: from the RTFD data when there is some, else from the
    // RTF, else the plain text. Plain runs stand for the note's own style.
    StyledText GetAttributedString(const Node* node = nullptr) const;
    // Stores styled text in the three forms: the plain text always, RTF when
    // it has styles or pictures, RTFD when it has pictures.
    void SetAttributedString(const StyledText& styled);
    // The style the note's text is shown in where it says nothing itself:
    // its TextFont, TextFontSize and TextColor.
    static TextStyle StandardStyleFor(const Node* node);
    static std::string InitialFont() { return "Helvetica"; }
    int CountPictures() const;
    // The bytes of the n-th picture, "" when there is none.
    std::string GetPicture(int n) const;
    // The position of the n-th picture in the text, or -1.
    int GetPicturePosition(int n) const;
    // The alignment of the first paragraph.
    TextAlignment Justification() const;
    void SetJustification(TextAlignment alignment);

private:
    struct Styled {
        std::string rtf;
        std::string rtfd;
    };
    // The styled forms, made on demand; "" when there is none.
    Styled& MutableStyled();
    const std::string& RTFText() const;
    const std::string& RTFDData() const;
    void CopyFrom(const Content& other);

    std::string text;
    std::unique_ptr<Styled> styled;
};
