// NodeText: the styled side of a note's text.
#include "Change.h"
#include "Content.h"
#include "Node.h"
#include "NodeHelpers.h"

StyledText NodeText::CreateAttributedString() const {
    const Content* c = node ? static_cast<const Node*>(node)->GetContent() : nullptr;
    return c ? c->GetAttributedString(node) : StyledText();
}

void NodeText::SetRTFD(const StyledText& styled) const {
    if (!node)
        return;
    GetContent()->SetAttributedString(styled);
    node->Changed(kChangeContent);
}

void NodeText::Append(const std::string& text) const {
    if (!node || text.empty())
        return;
    if (!HasRTF() && !HasRTFD()) {
        SetText(GetText() + text);
        return;
    }
    StyledText styled = CreateAttributedString();
    styled.Replace(styled.Length(), 0, text);
    SetRTFD(styled);
}

int NodeText::PictureCount() const {
    const Content* c = node ? static_cast<const Node*>(node)->GetContent() : nullptr;
    return c ? c->CountPictures() : 0;
}

std::string NodeText::GetPicture(int n) const {
    const Content* c = node ? static_cast<const Node*>(node)->GetContent() : nullptr;
    return c ? c->GetPicture(n) : std::string();
}

int NodeText::GetPicturePosition(int n) const {
    const Content* c = node ? static_cast<const Node*>(node)->GetContent() : nullptr;
    return c ? c->GetPicturePosition(n) : -1;
}

TextAlignment NodeText::Justification() const {
    const Content* c = node ? static_cast<const Node*>(node)->GetContent() : nullptr;
    return c ? c->Justification() : TextAlignment::Natural;
}

std::string NodeText::TextFont() const { return node ? node->GetString("TextFont") : std::string(); }

double NodeText::TextFontSize() const { return node ? node->GetDouble("TextFontSize") : 0; }
