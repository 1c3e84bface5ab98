#pragma once
// Builders of the attribute table of a new document.
//
// InitialAttributes is the small vocabulary for making definitions one step
// at a time: it remembers the table it fills and the attribute made last, and
// each step applies to that attribute. InitialAttributesForTalvik uses it to
// make the whole system table from the rows of SystemAttributeTable, one
// method per group, in build order.
#include <functional>
#include <string>

#include "SystemAttributeTable.h"

class Attribute;
class Hypertext;
class Props;

class InitialAttributes {
public:
    explicit InitialAttributes(Props* props = nullptr);
    virtual ~InitialAttributes() = default;

    Props* Storage() const { return props; }
    // The attribute the steps apply to; null when the last make failed.
    Attribute* Current() const { return current; }
    // Makes `attribute` (made elsewhere) the one the steps apply to.
    InitialAttributes& Use(Attribute* attribute);

    // Makes a basic attribute under the category of that name (looked up
    // now: an unknown one answers "NoSuchAttribute").
    InitialAttributes& BasicAttribute(const std::string& name, const std::string& category, bool editable, int type);
    // Makes an editable string attribute under the root.
    InitialAttributes& BasicAttribute(const std::string& name);

    InitialAttributes& Invisible();
    InitialAttributes& CannotInherit();
    InitialAttributes& ReadOnly();
    InitialAttributes& DefaultToTrue();
    InitialAttributes& DefaultToFalse();
    InitialAttributes& DefaultToInt(int value);
    // The default from text, read with the attribute's type.
    InitialAttributes& DefaultTo(const std::string& text);
    // Adds the facets of a value the inspectors show (1 and 4096), for a
    // valid attribute only.
    InitialAttributes& Inspectable();
    InitialAttributes& Changes(unsigned long mask);
    InitialAttributes& AlsoChanges(unsigned long mask);
    InitialAttributes& Suggests(const std::string& list);

    // The colour scheme file of the named colours, relative to the folder of
    // colour schemes.
    static std::string ColorScheme(bool dark);

    // Reads one colour configuration file into the document's named
    // colours; answers false when the file is missing. Installed by the
    // layer that owns the colour table.
    using ColorFileReader = std::function<bool(Hypertext* hypertext, const std::string& file)>;
    // Reads the link type configuration file into the document.
    using LinkTypeFileReader = std::function<void(Hypertext* hypertext, const std::string& file)>;
    static void SetColorFileReader(ColorFileReader reader);
    static void SetLinkTypeFileReader(LinkTypeFileReader reader);

    // Named colours: the scheme for the system's appearance, or "colors.xml"
    // when the scheme is missing. Does nothing until a reader is installed:
    // a new document has already loaded the configured colours and link
    // types when it made its tables, so the readers only replace them.
    void ReadColors(Hypertext* hypertext, bool dark = false);
    // Link types from "linkTypes.xml". Does nothing until a reader is installed.
    void ReadLinkTypes(Hypertext* hypertext);

protected:
    Props* props;
    Attribute* current = nullptr;
};

class InitialAttributesForTalvik : public InitialAttributes {
public:
    InitialAttributesForTalvik() = default;

    // Clears `props` and fills it with the whole system table: "System" and
    // its groups, "User", sorted; then colours and link types when a document
    // is given.
    virtual void Build(Props* props, Hypertext* hypertext = nullptr);

    // Whether the named colours follow the dark appearance.
    void SetDarkAppearance(bool dark) { darkAppearance = dark; }

protected:
    // One method per group, in build order. Each makes its category under
    // "System" and its attributes under the category.
    virtual void Internal();
    virtual void Agent();
    virtual void General();
    virtual void Textual();
    virtual void Appearance();
    virtual void Iris();
    virtual void Map();
    virtual void Outline();
    virtual void Net();
    virtual void TextFormat();
    virtual void Sorting();
    virtual void HTML();
    virtual void Events();
    virtual void People();
    virtual void Places();
    virtual void References();
    virtual void Sandbox();
    virtual void Scrivener();
    virtual void Simplenote();
    virtual void Pennerby();
    virtual void Weblog();
    virtual void Grid();
    virtual void Composites();
    virtual void AI();

    // Makes the category and attributes of one group from its rows.
    void MakeGroup(const char* group);
    // Makes one attribute from its row under `category`; answers it or null.
    Attribute* Make(const SystemAttributeRow& row, const std::string& category);

private:
    bool darkAppearance = false;
};
