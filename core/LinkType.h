#pragma once
// Link types: the named kinds of link a document knows, with how links of
// the kind look and what runs when one is made.
//
// The file form, used in documents and in the configuration file
// "linkTypes.xml":
//   <linkTypes>
//   <linkType name="agree" label="" visible="1" showLabel="1" required="0"
//             colorString="" style="1" arrowType="0" onLink="" />
//   </linkTypes>
#include <string>
#include <vector>

#include "LinkStyle.h"

class Hypertext;
class XMLItem;
class XMLWriter;

class LinkType {
public:
    // The type of a link made without one, and of prototype links.
    static constexpr const char* kUntitled = "*untitled";
    static constexpr const char* kPrototype = "*prototype";

    LinkType() = default;
    explicit LinkType(std::string name) : name(std::move(name)) {}

    const std::string& Name() const { return name; }
    void SetName(const std::string& n) { name = n; }
    const std::string& Label() const { return label; }
    void SetLabel(const std::string& l) { label = l; }
    // The colour as written: a name from the colour table or "#rrggbb".
    const std::string& ColorString() const { return colorString; }
    void SetColorString(const std::string& c) { colorString = c; }
    LinkStyle Style() const { return style; }
    void SetStyle(LinkStyle s) { style = s; }
    int ArrowType() const { return arrowType; }
    void SetArrowType(int a) { arrowType = a; }
    bool ShowLabel() const { return showLabel; }
    void SetShowLabel(bool s) { showLabel = s; }
    bool Visible() const { return visible; }
    void SetVisible(bool v) { visible = v; }
    bool Required() const { return required; }
    void SetRequired(bool r) { required = r; }
    // Action code run when a link of this type is made.
    const std::string& OnLink() const { return onLink; }
    void SetOnLink(const std::string& code) { onLink = code; }

    // Reads the XML attributes of a `linkType` element; absent ones keep
    // their present values.
    void Read(const XMLItem* item);
    void ToXML(XMLWriter& writer) const;

    bool operator==(const LinkType&) const = default;

private:
    std::string name;
    std::string label;
    std::string colorString;
    LinkStyle style;
    int arrowType = 0;
    bool showLabel = true;
    bool visible = true;
    bool required = false;
    std::string onLink;
};

class LinkTypes {
public:
    // The built-in list, or the user's "linkTypes.xml" when there is one.
    LinkTypes();
    // An empty list.
    static LinkTypes Empty();

    // Adds a `linkType` element, or each child of a `linkTypes` element.
    // A name already known updates that type in its place.
    void Add(const XMLItem* item);
    // Adds a type; a known name replaces the type in its place.
    void Add(const LinkType& type);
    void Remove(const std::string& name);
    void Clear() { types.clear(); }
    // Replaces the list with the user's configuration file or the built-in one.
    void ReadConfiguration();
    // Replaces the list with the types of an XML text (a `linkTypes` element).
    // Answers false, leaving the list alone, when the text does not parse.
    bool ReadXML(const std::string& text);

    void ToXML(XMLWriter& writer) const;

    const LinkType* Find(const std::string& name) const;
    LinkType* Find(const std::string& name);
    bool Has(const std::string& name) const { return Find(name) != nullptr; }
    const std::vector<LinkType>& Types() const { return types; }
    std::vector<std::string> Names() const;
    size_t size() const { return types.size(); }

    // Whether a link of the document uses this type.
    static bool UsesLinkType(const Hypertext* hypertext, const std::string& name);
    // Names of the types that the document's links use.
    std::vector<std::string> InUse(const Hypertext* hypertext) const;

    static const std::string& BuiltInXML();

private:
    struct EmptyTag {};
    explicit LinkTypes(EmptyTag) {}
    std::vector<LinkType> types;
};
