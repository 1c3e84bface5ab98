// The styled side of a note's text: StyledText made from, and kept as, the
// RTF and RTFD forms.
#include "Content.h"

#include "Node.h"
#include "PColor.h"

namespace {
RylSerial& ContentQueueForStyles() {
    static RylSerial queue("com.morvent.rylvane.content.styles");
    return queue;
}
} // namespace

StyledText Content::GetAttributedString(const Node*) const {
    std::string data = GetRTFD();
    if (!data.empty()) {
        bool ok = false;
        StyledText styled = StyledText::FromRTFD(data, &ok);
        if (ok)
            return styled;
    }
    std::string rtf = GetRTF();
    if (!rtf.empty())
        return StyledText::FromRTF(rtf);
    return StyledText(GetText());
}

void Content::SetAttributedString(const StyledText& styled) {
    bool pictures = styled.HasAttachments();
    SetText(styled.Text());
    SetRTF(pictures || styled.HasStyles() ? styled.ToRTF() : std::string());
    SetRTFD(pictures ? styled.ToRTFD() : std::string());
}

TextStyle Content::StandardStyleFor(const Node* node) {
    TextStyle style;
    if (!node)
        return style;
    style.font = node->GetString("TextFont");
    style.size = node->GetDouble("TextFontSize");
    PColor color = node->GetColor("TextColor");
    style.foreground = TextRGB{static_cast<uint8_t>(color.red >> 8), static_cast<uint8_t>(color.green >> 8),
                               static_cast<uint8_t>(color.blue >> 8)};
    return style;
}

int Content::CountPictures() const {
    std::string data = GetRTFD();
    if (data.empty())
        return 0;
    return StyledText::FromRTFD(data).AttachmentCount();
}

std::string Content::GetPicture(int n) const {
    std::string data = GetRTFD();
    if (data.empty())
        return {};
    StyledText styled = StyledText::FromRTFD(data);
    const TextAttachment* picture = styled.Attachment(n);
    return picture ? picture->data : std::string();
}

int Content::GetPicturePosition(int n) const {
    std::string data = GetRTFD();
    if (data.empty())
        return -1;
    return StyledText::FromRTFD(data).AttachmentPosition(n);
}

TextAlignment Content::Justification() const {
    StyledText styled = GetAttributedString();
    return styled.empty() ? TextAlignment::Natural : styled.StyleAt(0).alignment;
}

void Content::SetJustification(TextAlignment alignment) {
    ContentQueueForStyles().Sync([&] {
        StyledText styled = GetAttributedString();
        if (styled.empty())
            return;
        styled.SetAlignment(0, styled.Length(), alignment);
        SetAttributedString(styled);
    });
}
