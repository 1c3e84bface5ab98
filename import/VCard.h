#pragma once
// Electronic business cards: lines of a name, optional parameters after ";",
// ":" and a value, between BEGIN:VCARD and END:VCARD.
#include <string>
#include <string_view>
#include <vector>

class Node;

class VCard {
public:
    struct Field {
        std::string name;                    // upper case, group prefix removed
        std::vector<std::string> parameters; // upper case, as "TYPE=HOME" or "HOME"
        std::string value;
        long line = 0;
    };

    VCard() = default;
    // Reads one card from its text.
    explicit VCard(std::string_view text) { Parse(text); }

    // Every card of a text; a text without cards gives none.
    static std::vector<VCard> AllIn(std::string_view text);
    // Whether the text holds a card (begin, end, and a name).
    static bool IsValid(std::string_view text);

    void Parse(std::string_view text);
    // One unfolded line into a field; false when it has no ":".
    static bool ParseLine(std::string_view line, Field& field);
    static void ParseLeft(std::string_view left, Field& field);
    static std::string ParseRight(std::string_view right);

    bool IsValid() const { return begun && ended && (!FullName().empty()); }
    std::string FullName() const;
    std::string EMail() const;
    std::string Telephone() const;
    std::string HomeTelephone() const;
    std::string Address() const;
    std::string AIM() const;
    std::string Org() const;
    std::string ABUID() const;
    // The value of the first field whose name holds `key`, or "".
    std::string FirstContaining(const std::string& key) const;
    // The card as lines of "label: value", for the note's text.
    std::string ReadableText() const;
    const std::vector<Field>& Fields() const { return fields; }

    // Names the note and sets its text and address attributes.
    void For(Node* note) const;

private:
    const Field* First(const std::string& name, const std::string& parameter = "") const;
    std::vector<Field> fields;
    bool begun = false;
    bool ended = false;
};
