#include "LinkType.h"

#include "Configuration.h"
#include "Hypertext.h"
#include "LinkManager.h"
#include "XMLReader.h"
#include "XMLWriter.h"

void LinkType::Read(const XMLItem* item) {
    const XMLAttributes& a = item->Attributes();
    name = a.GetString("name", name);
    label = a.GetString("label", label);
    colorString = a.GetString("colorString", colorString);
    style.SetBits(static_cast<unsigned>(a.GetUnsigned("style", style.Bits())));
    arrowType = static_cast<int>(a.GetLong("arrowType", arrowType));
    showLabel = a.GetBoolean("showLabel", showLabel);
    visible = a.GetBoolean("visible", visible);
    required = a.GetBoolean("required", required);
    onLink = a.GetString("onLink", onLink);
}

void LinkType::ToXML(XMLWriter& writer) const {
    writer.Open("linkType");
    writer.Put("name", name);
    writer.Put("label", label);
    writer.PutBoolean("visible", visible);
    writer.PutBoolean("showLabel", showLabel);
    writer.PutBoolean("required", required);
    writer.Put("colorString", colorString);
    writer.PutUnsigned("style", style.Bits());
    writer.PutLong("arrowType", arrowType);
    writer.Put("onLink", onLink);
    writer.EndEmptyTag();
}

const std::string& LinkTypes::BuiltInXML() {
    static const std::string xml = R"(<?xml version="1.0" encoding="UTF-8" ?>
<linkTypes>
<linkType name="*untitled" label="" visible="1" showLabel="0" required="0" colorString="" style="1" arrowType="0" onLink="" />
<linkType name="*prototype" label="prototype" visible="0" showLabel="0" required="0" colorString="" style="5" arrowType="0" onLink="" />
<linkType name="agree" label="agree" visible="1" showLabel="1" required="0" colorString="green" style="1" arrowType="0" onLink="" />
<linkType name="disagree" label="disagree" visible="1" showLabel="1" required="0" colorString="red" style="1" arrowType="0" onLink="" />
<linkType name="example" label="example" visible="1" showLabel="1" required="0" colorString="" style="1" arrowType="0" onLink="" />
<linkType name="source" label="source" visible="1" showLabel="1" required="0" colorString="blue" style="9" arrowType="0" onLink="" />
<linkType name="navigation" label="navigation" visible="1" showLabel="0" required="0" colorString="" style="1" arrowType="0" onLink="" />
</linkTypes>
)";
    return xml;
}

LinkTypes::LinkTypes() { ReadConfiguration(); }

LinkTypes LinkTypes::Empty() { return LinkTypes(EmptyTag{}); }

void LinkTypes::ReadConfiguration() {
    bool fromUser = false;
    std::string text = ConfigurationText("linkTypes.xml", BuiltInXML(), &fromUser);
    if (!ReadXML(text) && fromUser)
        ReadXML(BuiltInXML());
}

bool LinkTypes::ReadXML(const std::string& text) {
    XMLReader reader;
    if (!reader.Parse(text))
        return false;
    types.clear();
    Add(reader.GetNodeList());
    return true;
}

void LinkTypes::Add(const XMLItem* item) {
    if (!item)
        return;
    if (item->Name() == "linkTypes") {
        for (const XMLItem* child = item->Son(); child; child = child->Brother())
            if (child->Name() == "linkType")
                Add(child);
        return;
    }
    const std::string* name = item->Attributes().Find("name");
    if (!name || name->empty())
        return;
    if (LinkType* known = Find(*name)) {
        known->Read(item);
        return;
    }
    LinkType type(*name);
    type.Read(item);
    types.push_back(type);
}

void LinkTypes::Add(const LinkType& type) {
    if (type.Name().empty())
        return;
    if (LinkType* known = Find(type.Name())) {
        *known = type;
        return;
    }
    types.push_back(type);
}

void LinkTypes::Remove(const std::string& name) {
    std::erase_if(types, [&](const LinkType& t) { return t.Name() == name; });
}

void LinkTypes::ToXML(XMLWriter& writer) const {
    writer.Open("linkTypes");
    writer.EndTag(true);
    for (const auto& type : types)
        type.ToXML(writer);
    writer.Close("linkTypes");
}

const LinkType* LinkTypes::Find(const std::string& name) const {
    for (const auto& type : types)
        if (type.Name() == name)
            return &type;
    return nullptr;
}

LinkType* LinkTypes::Find(const std::string& name) {
    for (auto& type : types)
        if (type.Name() == name)
            return &type;
    return nullptr;
}

std::vector<std::string> LinkTypes::Names() const {
    std::vector<std::string> names;
    for (const auto& type : types)
        names.push_back(type.Name());
    return names;
}

bool LinkTypes::UsesLinkType(const Hypertext* hypertext, const std::string& name) {
    const LinkManager* links = hypertext ? hypertext->Links() : nullptr;
    return links && links->UsesLinkType(name);
}

std::vector<std::string> LinkTypes::InUse(const Hypertext* hypertext) const {
    std::vector<std::string> used;
    for (const auto& type : types)
        if (UsesLinkType(hypertext, type.Name()))
            used.push_back(type.Name());
    return used;
}
