#include "SystemAttributeTable.h"

#include <array>

// The rows are written with short local names so that each line reads as
// the attribute's definition: name, type, then only what differs from the
// ordinary.

using enum SystemAttributeClass;

static constexpr int String = SystemAttributeRow::kString;
static constexpr int Color = SystemAttributeRow::kColor;
static constexpr int Number = SystemAttributeRow::kNumber;
static constexpr int File = SystemAttributeRow::kFile;
static constexpr int Boolean = SystemAttributeRow::kBoolean;
static constexpr int Date = SystemAttributeRow::kDate;
static constexpr int Unsigned = SystemAttributeRow::kUnsigned;
static constexpr int Action = SystemAttributeRow::kAction;
static constexpr int Set = SystemAttributeRow::kSet;
static constexpr int URL = SystemAttributeRow::kURL;
static constexpr int List = SystemAttributeRow::kList;
static constexpr int Font = SystemAttributeRow::kFont;
static constexpr int Interval = SystemAttributeRow::kInterval;
static constexpr int Dictionary = SystemAttributeRow::kDictionary;
static constexpr int Rectangle = SystemAttributeRow::kRectangle;

// A group: the method that builds it and the category it makes.
static constexpr SystemAttributeRow Group(const char* group, const char* category) {
    SystemAttributeRow r;
    r.category = true;
    r.group = group;
    r.name = category;
    // Categories hold no values of their own.
    r.flags = SystemAttributeRow::kReadOnly;
    return r;
}

static constexpr SystemAttributeRow Attr(const char* name, int type) {
    SystemAttributeRow r;
    r.name = name;
    r.type = type;
    return r;
}

// Groups in build order; within a group, attributes in creation order.
static constexpr SystemAttributeRow kWritten[] = {
    Group("Internal", "Internal"),
    Attr("EntryScript", String).ReadOnly().NotInEditor(),
    Attr("ExitScript", String).ReadOnly().NotInEditor(),
    Attr("WindowPlace", Rectangle).ReadOnly().NotInEditor().Intrinsic().Preference(21),
    Attr("Alias", Unsigned).Default("0").ReadOnly().NotInEditor(),
    Attr("AIM", String).NotInEditor().Under("People"),
    Attr("RSSChannelTemplate", String).Default("RSSChannel").NotInEditor().Under("Net"),
    Attr("RSSItemTemplate", String).Default("RSSItem").NotInEditor().Under("Net"),
    Attr("RSSItemLimit", Number).Default("0").NotInEditor().Under("Net"),
    Attr("ReadCount", Number).ReadOnly().NotInEditor().Intrinsic().Under("General"),

    Group("Agent", "Agent"),
    Attr("AgentQuery", String),
    Attr("AgentCaseSensitive", Boolean).Default("true"),
    Attr("AgentAction", Action),
    Attr("AgentPriority", Number).Default("1"),
    Attr("CleanupAction", String).Default("grid").Intrinsic().Changes(1),

    Group("General", "General"),
    Attr("Created", Date).ReadOnly().Intrinsic(),
    Attr("Modified", Date).ReadOnly().Intrinsic(),
    Attr("ID", Number).ReadOnly().Intrinsic(),
    Attr("Creator", String).ReadOnly().Intrinsic().Preference(1),
    Attr("CreatedFrom", String).Intrinsic(),
    Attr("Checked", Boolean).Changes(1),
    Attr("Name", String).Default("untitled").Intrinsic().Inspectable().Changes(5).Class(NameAttribute),
    Attr("Subtitle", String).Changes(1),
    Attr("Caption", String).Changes(1),
    Attr("SelectionCount", Number).ReadOnly().Intrinsic(),
    Attr("OnAdd", Action),
    Attr("OnRemove", Action),
    Attr("Rule", Action),
    Attr("Edict", Action),
    Attr("RuleDisabled", Boolean).Intrinsic(),
    Attr("EdictDisabled", Boolean).Intrinsic(),
    Attr("DisplayExpression", Action).Inspectable(),
    Attr("HoverExpression", Action).Inspectable(),
    Attr("HoverImage", File).Inspectable(),
    Attr("HoverOpacity", Number).Default("0.5").Inspectable(),
    Attr("DisplayExpressionDisabled", Boolean).Intrinsic().Inspectable(),
    Attr("Path", String).ReadOnly().Intrinsic().Class(PathAttribute),
    Attr("IsAlias", Boolean).ReadOnly().Class(AliasAttribute),
    Attr("IsAdornment", Boolean).ReadOnly().Class(AdornmentAttribute),
    Attr("Searchable", Boolean).Default("true").Intrinsic(),
    Attr("LocalAttributes", Set).ReadOnly().Intrinsic().Class(LocalAttribute),
    Attr("DisplayName", String).ReadOnly().Class(DisplayNameAttribute),
    Attr("ChildCount", Number).ReadOnly().Class(ChildCountAttribute),
    Attr("AdornmentCount", Number).ReadOnly().Class(AdornmentCountAttribute),
    Attr("DescendantCount", Number).ReadOnly().Class(DescendantCountAttribute),
    Attr("OutlineOrder", Number).ReadOnly().Intrinsic().Class(OutlineOrderAttribute),
    Attr("OutlineDepth", Number).ReadOnly().Intrinsic().Class(OutlineDepthAttribute),
    Attr("SiblingOrder", Number).ReadOnly().Intrinsic().Class(SiblingOrderAttribute),
    Attr("InboundLinkCount", Number).ReadOnly().Intrinsic().Class(InboundLinksAttribute),
    Attr("OutboundLinkCount", Number).ReadOnly().Intrinsic().Class(OutboundLinksAttribute),
    Attr("WebLinkCount", Number).ReadOnly().Intrinsic().Class(WebLinksAttribute),
    Attr("PlainLinkCount", Number).ReadOnly().Intrinsic().Class(PlainLinksAttribute),
    Attr("TextLinkCount", Number).ReadOnly().Intrinsic().Class(TextLinksAttribute),
    Attr("Aliases", List).Class(AliasesAttribute),
    Attr("IsPrototype", Boolean).Intrinsic().Inspectable().Class(IsPrototypeAttribute),
    Attr("Prototype", String).Inspectable().Changes(517).Class(PrototypeAttribute),
    Attr("Container", String).Intrinsic().Class(ParentAttribute),
    Attr("PrototypeBequeathsChildren", Boolean).Default("true"),
    Attr("Private", Boolean),
    Attr("File", File),
    Attr("ClusterTerms", Set),

    Group("Textual", "Textual"),
    Attr("Text", String).Class(TextAttribute),
    Attr("ReadOnly", Boolean).Changes(4),
    Attr("TextExportTemplate", String).Preference(10),
    Attr("TextLength", Number).ReadOnly().Class(TextLengthAttribute),
    Attr("Wordcount", Number).ReadOnly().NotInEditor().Class(WordCountAttribute),
    Attr("WordCount", Number).ReadOnly().Class(WordCountAttribute),
    Attr("ImageCount", Number).ReadOnly().Class(ImageCountAttribute),
    Attr("EstimatedNoteSize", Number).ReadOnly().Class(NoteSizeAttribute),
    Attr("UpdateTextLinksAfterRename", Boolean).Default("true"),

    Group("Appearance", "Appearance"),
    Attr("Color", Color).Default("warm gray dark").Inspectable().Changes(1),
    Attr("AccentColor", Color).Default("dark warm gray dark").Inspectable().Changes(1),
    Attr("Color2", Color).RenamedTo("AccentColor").Under("Map"),
    Attr("Pattern", String).Default("plain").Inspectable().AlsoChanges(1),
    Attr("Border", Number).Default("2").Inspectable().Changes(1).AlsoChanges(1),
    Attr("BorderColor", Color).Default("automatic").Inspectable().AlsoChanges(1),
    Attr("BorderBevel", String).Default("automatic").Inspectable().AlsoChanges(1),
    Attr("BorderDash", Number).Default("0").Inspectable().AlsoChanges(1),
    Attr("Opacity", Number).Default("100.0").Inspectable().AlsoChanges(1),
    Attr("Shadow", Boolean).Default("true").Inspectable().Changes(1).Class(ShadowAttribute),
    Attr("ShadowDistance", Number).Default("5").Inspectable().AlsoChanges(1),
    Attr("ShadowBlur", Number).Default("10").Inspectable().AlsoChanges(1),
    Attr("ShadowColor", Color).Default("black").Inspectable().AlsoChanges(1),
    Attr("Badge", String).Inspectable().AlsoChanges(1),
    Attr("BadgeMonochrome", Boolean).Inspectable().AlsoChanges(1),
    Attr("BadgeSize", Number).Inspectable().AlsoChanges(1),
    Attr("CaptionColor", Color).Default("blue").Inspectable().AlsoChanges(1),
    Attr("CaptionFont", Font).Default("SketchnoteSquare").Inspectable().AlsoChanges(1),
    Attr("CaptionOpacity", Number).Default("100.0").Inspectable().AlsoChanges(1),
    Attr("CaptionSize", Number).Default("100.0").Inspectable().AlsoChanges(1),
    Attr("CaptionAlignment", String).Default("left").Inspectable().AlsoChanges(1),
    Attr("PlotColor", Color).Default("light green").AlsoChanges(1),
    Attr("Flags", List).Intrinsic().AlsoChanges(1),

    Group("Iris", "Iris"),
    Attr("IrisRadius", Number).Default("1.0").Changes(1),
    Attr("IrisAngle", Number).Default("0.0").Changes(1),

    Group("Map", "Map"),
    Attr("Height", Number).Default("1.86").Intrinsic().Changes(513),
    Attr("Width", Number).Default("3.0").Intrinsic().Changes(513),
    Attr("MapBackgroundColor", Color).Inspectable().AlsoChanges(8).Preference(3),
    Attr("MapBackgroundColor2", Color).RenamedTo("MapBackgroundColor"),
    Attr("MapBackgroundAccentColor", Color).Inspectable().AlsoChanges(8).Preference(24),
    Attr("MapBackgroundPattern", String).Inspectable().AlsoChanges(8).Preference(25),
    Attr("MapBackgroundFill", String).Inspectable().AlsoChanges(8),
    Attr("MapBackgroundFillOpacity", Number).Default("0.1").Inspectable().AlsoChanges(8),
    Attr("MapBackgroundShadow", Boolean).Default("true").Inspectable().AlsoChanges(8),
    Attr("NameColor", Color).Default("automatic").Inspectable().AlsoChanges(1),
    Attr("NameFont", Font).Inspectable().AlsoChanges(1).Preference(2),
    Attr("HoverFont", Font).Default("RingsideCondensedSSm-Med").Inspectable(),
    Attr("AdornmentFont", Font).Default("RingsideCondensedSSm-Light").Inspectable().AlsoChanges(1),
    Attr("NameBold", Boolean).Default("false").Inspectable().AlsoChanges(1),
    Attr("NameStrike", Boolean).Default("false").Inspectable().AlsoChanges(1),
    Attr("NameLeading", Number).Inspectable().AlsoChanges(1),
    Attr("MapNameSize", Number).Default("100.0").Inspectable().AlsoChanges(1),
    Attr("MapTextSize", Number).RenamedTo("MapNameSize"),
    Attr("MapBodyTextSize", Number).Default("0").Inspectable(),
    Attr("MapBodyTextColor", Color).Default("automatic").Inspectable(),
    Attr("NameAlignment", String).Default("left").Inspectable().AlsoChanges(1),
    Attr("TitleHeight", Number).Default("0").Inspectable().AlsoChanges(1),
    Attr("Xpos", Number).Intrinsic().Changes(2048),
    Attr("Ypos", Number).Intrinsic().Changes(2048),
    Attr("MapScrollX", Number).Intrinsic().Changes(1),
    Attr("MapScrollY", Number).Intrinsic().Changes(1),
    Attr("Lock", Boolean).Default("false").Inspectable().AlsoChanges(1),
    Attr("Shape", String).Inspectable().AlsoChanges(1).SuggestsShapeNames().Under("Appearance"),
    Attr("Sticky", Boolean).Default("false").Inspectable().AlsoChanges(1),
    Attr("InteriorScale", Number).Changes(2049).Preference(20),
    Attr("TableExpression", Action).Changes(1),
    Attr("TableHeading", String).Changes(1),
    Attr("Fill", String).Inspectable().AlsoChanges(1),
    Attr("FillOpacity", Number).Default("0.75").Inspectable().AlsoChanges(1),
    Attr("Base", Number).Default("0.5").Changes(513),
    Attr("LeafBase", Number).RenamedTo("Base"),
    Attr("Tip", Number).Default("0.5").Changes(513),
    Attr("LeafTip", Number).RenamedTo("Tip"),
    Attr("Bend", Number).Default("0.0").Changes(513),
    Attr("LeafBend", Number).RenamedTo("Bend"),
    Attr("Direction", Boolean).Default("false").Changes(513),
    Attr("LeafDirection", Boolean).RenamedTo("Direction"),
    Attr("PlotBackgroundColor", Color).Default("white").Inspectable(),
    Attr("PlotBackgroundOpacity", Number).Default("50.0").Inspectable(),
    Attr("PlotColorList", List).Default("2;7;3;8;4;9;0;5;1;6").AlsoChanges(1),
    Attr("TitleOpacity", Number).Default("100.0").Inspectable().AlsoChanges(1),
    Attr("SubtitleOpacity", Number).Default("50.0").Inspectable().AlsoChanges(1),
    Attr("SubtitleSize", Number).Default("75.0").Inspectable().AlsoChanges(1),
    Attr("SubtitleColor", Color).Default("automatic").Inspectable().AlsoChanges(1),

    Group("Outline", "Outline"),
    Attr("OutlineColorSwatch", Boolean).Inspectable(),
    Attr("Separator", Boolean).Inspectable(),
    Attr("PrototypeHighlightColor", Color).Inspectable().AlsoChanges(1).Preference(13),
    Attr("OutlineNameSize", Number).Default("100.0").Inspectable().AlsoChanges(513),
    Attr("OutlineTextSize", Number).RenamedTo("OutlineNameSize"),
    Attr("OutlineBackgroundColor", Color).Default("automatic").Inspectable().Changes(1),

    Group("Net", "Net"),
    Attr("URL", URL),
    Attr("NoteURL", String).ReadOnly().Class(NoteURLAttribute),
    Attr("AutoFetch", Boolean),
    Attr("AutoFetchCommand", Action),
    Attr("LastFetched", Date).Default("never").ReadOnly().Intrinsic(),
    Attr("ViewInBrowser", Boolean).Default("false"),
    Attr("RawData", String),

    Group("TextFormat", "TextFormat"),
    Attr("TextPaneWidth", Number).Default("-1").Deprecated(),
    Attr("TextPaneRatio", Number).Default("0.5").Deprecated(),
    Attr("LineSpacing", Number).Default("100.0").Inspectable().AlsoChanges(4),
    Attr("DisplayedAttributesFont", Font).Default("IdealSansSSm-Book"),
    Attr("KeyAttributeFont", Font).RenamedTo("DisplayedAttributesFont"),
    Attr("DisplayedAttributesFontSize", Number).Default("11.0"),
    Attr("KeyAttributeFontSize", Number).RenamedTo("DisplayedAttributesFontSize"),
    Attr("DisplayedAttributesDateFormat", String).AlsoChanges(4),
    Attr("KeyAttributeDateFormat", String).RenamedTo("DisplayedAttributesDateFormat"),
    Attr("HideDisplayedAttributes", Boolean).Default("false").AlsoChanges(4),
    Attr("HideKeyAttributes", Boolean).RenamedTo("HideDisplayedAttributes"),
    Attr("TextAlign", String).Default("left").Inspectable().Preference(22),
    Attr("TextColor", Color).Inspectable().AlsoChanges(4).Preference(7),
    Attr("TextFont", Font).Preference(18),
    Attr("TextFontSize", Number).Preference(19),
    Attr("TextBackgroundColor", Color).Preference(8),
    Attr("ShowTitle", Boolean).Deprecated(),
    Attr("HideTitle", Boolean).Default("false").AlsoChanges(512),
    Attr("TitleFont", Font).Preference(4),
    Attr("CodeFont", Font).Default("Courier New"),
    Attr("TitleForegroundColor", Color).Preference(11),
    Attr("TitleBackgroundColor", Color).Preference(12),
    Attr("ParagraphSpacing", Number).Inspectable().AlsoChanges(4).Preference(14),
    Attr("LeftMargin", Number).Default("2"),
    Attr("RightMargin", Number).Default("2"),
    Attr("TextWindowHeight", Number).Default("250"),
    Attr("TextWindowWidth", Number).Default("475"),
    Attr("Tabs", String).Default("0.25;0.25;0.25;0.25;"),
    Attr("DisplayedAttributes", List).Inspectable().AlsoChanges(4),
    Attr("KeyAttributes", List).AlsoChanges(4).RenamedTo("DisplayedAttributes"),
    Attr("TextSidebar", Boolean).Preference(17),
    Attr("NoSpelling", Boolean).Inspectable().AlsoChanges(4).Preference(27),
    Attr("Ziplinks", Boolean).Default("true").Changes(4),
    Attr("SmartQuotes", Boolean).Inspectable().AlsoChanges(4).Preference(26),
    Attr("SmartLinks", Boolean).Default("true").Inspectable().AlsoChanges(4),
    Attr("SyntaxHighlighting", String).AlsoChanges(4),

    Group("Sorting", "Sorting"),
    Attr("Sort", String).Inspectable(),
    Attr("SortBackward", Boolean).Inspectable(),
    Attr("SortAlso", String).Inspectable(),
    Attr("SortBackwardAlso", Boolean).Inspectable(),
    Attr("SortTransform", String).Default("case-sensitive").Inspectable(),
    Attr("SortAlsoTransform", String).Default("case-sensitive").Inspectable(),

    Group("HTML", "HTML"),
    Attr("IsTemplate", Boolean),
    Attr("HTMLExportTemplate", String).Inspectable().AlsoChanges(4),
    Attr("HTMLFileNameMaxLength", Number).Default("24"),
    Attr("HTMLFileNameLowerCase", Boolean),
    Attr("HTMLEntities", Boolean).Default("false"),
    Attr("HTMLExportExtension", String).Default(".html"),
    Attr("HTMLLinkExtension", String).Default(".html"),
    Attr("HTMLExportFileName", String),
    Attr("HTMLExportPath", String).ReadOnly().Class(HTMLExportPathAttribute),
    Attr("HTMLExportFileNameSpacer", String).Default("_"),
    Attr("HTMLDontExport", Boolean),
    Attr("HTMLExportChildren", Boolean).Default("true"),
    Attr("HTMLMarkupText", Boolean).Default("true"),
    Attr("HTMLQuoteHTML", Boolean).Changes(4),
    Attr("HTMLFirstParagraphStart", String).Default("<p>"),
    Attr("HTMLParagraphStart", String).Default("<p>"),
    Attr("HTMLFirstParagraphEnd", String).Default("</p>"),
    Attr("HTMLParagraphEnd", String).Default("</p>"),
    Attr("HTMLIndentedParagraphStart", String).Default("<blockquote>"),
    Attr("HTMLIndentedParagraphEnd", String).Default("</blockquote>"),
    Attr("HTMLListStart", String).Default("<ul>"),
    Attr("HTMLListEnd", String).Default("</ul>"),
    Attr("HTMLOrderedListStart", String).Default("<ol>"),
    Attr("HTMLOrderedListEnd", String).Default("</ol>"),
    Attr("HTMLListItemStart", String).Default("<li>"),
    Attr("HTMLListItemEnd", String).Default("</li>"),
    Attr("HTMLOrderedListItemStart", String).Default("<li>"),
    Attr("HTMLOrderedListItemEnd", String).Default("</li>"),
    Attr("HTMLExportBefore", String),
    Attr("HTMLExportAfter", String),
    Attr("HTMLItalicStart", String).Default("<i>"),
    Attr("HTMLItalicEnd", String).Default("</i>"),
    Attr("HTMLBoldStart", String).Default("<b>"),
    Attr("HTMLBoldEnd", String).Default("</b>"),
    Attr("HTMLUnderlineStart", String).Default("<u>"),
    Attr("HTMLUnderlineEnd", String).Default("</u>"),
    Attr("HTMLStrikeStart", String).Default("<strike>"),
    Attr("HTMLStrikeEnd", String).Default("</strike>"),
    Attr("HTMLCodeStart", String).Default("<code>"),
    Attr("HTMLCodeEnd", String).Default("</code>"),
    Attr("HTMLExportCommand", String),
    Attr("HTMLPreviewCommand", String),
    Attr("HTMLImageStart", String).Default("<img"),
    Attr("HTMLImageEnd", String).Default(">"),
    Attr("HTMLCloud1Start", String).Default("<span style=\"font-size: 0.75em\" >"),
    Attr("HTMLCloud2Start", String).Default("<span style=\"font-size: 1em\" >"),
    Attr("HTMLCloud3Start", String).Default("<span style=\"font-size: 1.4em\" >"),
    Attr("HTMLCloud4Start", String).Default("<span style=\"font-size: 2em\" >"),
    Attr("HTMLCloud5Start", String).Default("<span style=\"font-size: 2.8em\" >"),
    Attr("HTMLCloud1End", String).Default("</span>"),
    Attr("HTMLCloud2End", String).Default("</span>"),
    Attr("HTMLCloud3End", String).Default("</span>"),
    Attr("HTMLCloud4End", String).Default("</span>"),
    Attr("HTMLCloud5End", String).Default("</span>"),
    Attr("HTMLOverwriteImages", Boolean),
    Attr("HTMLFont", Font).Default("Andale Mono"),
    Attr("HTMLFontSize", Number).Default("13.0"),
    Attr("HTMLMarkdown", Boolean),
    Attr("HTMLMarkDown", Boolean).RenamedTo("HTMLMarkdown").Under("Map"),

    Group("Events", "Events"),
    Attr("StartDate", Date).Changes(8192),
    Attr("EndDate", Date).Changes(8192),
    Attr("DueDate", Date).Changes(8192),
    Attr("TimelineBand", Number).Intrinsic().Changes(1),
    Attr("TimelineBandLabelColor", Color).Default("black").Changes(1),
    Attr("TimelineBandLabelOpacity", Number).Default("25").Changes(1),
    Attr("TimelineBandLabels", List).Changes(1),
    Attr("TimelineMarker", Boolean),
    Attr("TimelineStart", Date),
    Attr("TimelineEnd", Date),
    Attr("TimelineColor", Color).Default("lighter warm gray"),
    Attr("TimelineScaleColor", Color).Default("cool gray"),
    Attr("TimelineScaleColor2", Color).Changes(1).Class(TimelineScaleColor2Attribute),
    Attr("TimelineGridColor", Color).DefaultGuideColor(),
    Attr("TimelineAliases", Boolean).Default("true"),
    Attr("TimelineDescendants", Boolean).Default("true"),
    Attr("TimelineStartAttribute", String).Default("StartDate"),
    Attr("TimelineEndAttribute", String).Default("EndDate"),

    Group("People", "People"),
    Attr("FullName", String),
    Attr("Email", String),
    Attr("Organization", String),
    Attr("Telephone", String),
    Attr("Twitter", String),

    Group("Places", "Places"),
    Attr("Address", String),
    Attr("City", String),
    Attr("State", String),
    Attr("PostalCode", String),
    Attr("District", String),
    Attr("Country", String),
    Attr("Latitude", Number),
    Attr("Longitude", Number),
    Attr("Range", Number),
    Attr("FormattedAddress", String),
    Attr("GeocodedAddress", String),

    Group("References", "References"),
    Attr("Tags", Set),
    Attr("RefType", String),
    Attr("RefFormat", String),
    Attr("Authors", Set),
    Attr("Author2", String),
    Attr("Author3", String),
    Attr("Author4", String),
    Attr("ReferenceTitle", String),
    Attr("ArticleTitle", String),
    Attr("BookTitle", String),
    Attr("Publisher", String),
    Attr("PublicationYear", String),
    Attr("PublicationCity", String),
    Attr("RefKeywords", Set),
    Attr("CallNumber", String),
    Attr("Edition", String),
    Attr("Volume", String),
    Attr("AccessDate", String),
    Attr("ISBN", String),
    Attr("DOI", String),
    Attr("Journal", String),
    Attr("Issue", String),
    Attr("Pages", String),
    Attr("ReferenceURL", URL),
    Attr("ReferenceRIS", String),
    Attr("ReferenceDictionary", Dictionary),
    Attr("Abstract", String),
    Attr("SourceCreated", Date),
    Attr("SourceModified", Date),

    Group("Sandbox", "Sandbox"),
    Attr("MyString", String),
    Attr("MyNumber", Number),
    Attr("MyDate", Date),
    Attr("MySet", Set),
    Attr("MyDictionary", Dictionary),
    Attr("MyList", List),
    Attr("MyColor", Color),
    Attr("MyBoolean", Boolean),
    Attr("MyInterval", Interval),

    Group("Scrivener", "Scrivener"),
    Attr("ScrivenerID", String),
    Attr("ScrivenerType", String),
    Attr("ScrivenerLabelID", Number),
    Attr("ScrivenerLabel", String),
    Attr("ScrivenerStatusID", Number),
    Attr("ScrivenerStatus", String),
    Attr("ScrivenerKeywords", Set),
    Attr("ScrivenerNote", String),
    Attr("ScrivenerPageBreakBefore", Boolean).NotInEditor(),
    Attr("ScrivenerIncludeInCompile", Boolean).NotInEditor(),
    Attr("ScrivenerCompileAsIs", Boolean).NotInEditor(),
    Attr("ScrivenerFileExtension", String).NotInEditor(),
    Attr("ScrivenerShowSynopsisImage", Boolean).NotInEditor(),
    Attr("ScrivenerIndexCardFileExension", String).NotInEditor(),
    Attr("ScrivenerIgnoresTitlePrefixAndSuffix", Boolean).NotInEditor(),
    Attr("ScrivenerIconFileName", String).NotInEditor(),
    Attr("ScrivenerPreferredExternalApplication", String).NotInEditor(),
    Attr("ScrivenerFreeformFlag", Boolean).NotInEditor(),
    Attr("ScrivenerTemplateFolder", Boolean).NotInEditor(),
    Attr("ScrivenerNoteRTF", String).NotInEditor(),

    Group("Simplenote", "Watch"),
    Attr("NotesFolder", String),
    Attr("EvernoteNotebook", String),
    Attr("WatchFolder", File),
    Attr("DEVONthinkGroup", String),
    Attr("DEVONthinkLabel", String),
    Attr("Tot", Set),
    Attr("UUID", String),
    Attr("NotesModified", Date),
    Attr("NotesID", String),
    Attr("SourceURL", URL),
    Attr("SimplenoteKey", String),
    Attr("SimplenoteModified", Date),
    Attr("SimplenoteVersion", Number),
    Attr("SimplenoteSync", Number),
    Attr("SimplenoteTags", Set),

    Group("Pennerby", "Pennerby"),
    Attr("ChosenWord", String),
    Attr("BeforeVisit", Action),
    Attr("OnVisit", Action),
    Attr("Visits", Number),
    Attr("ResetAction", Action),
    Attr("Deck", Set),
    Attr("Requirements", Action),

    Group("Weblog", "Weblog"),
    Attr("WeblogPostID", String),
    Attr("mt_allow_comments", Number).Default("1"),
    Attr("mt_allow_pings", Number).Default("1"),
    Attr("mt_convert_breaks", String),
    Attr("mt_keywords", String),

    Group("Grid", "Grid"),
    Attr("GridRows", Number).Inspectable().Changes(1),
    Attr("GridColumns", Number).Inspectable().Changes(1),
    Attr("GridColor", Color).DefaultGuideColor().Inspectable().Changes(1),
    Attr("GridLabels", List).Inspectable().Changes(1),
    Attr("GridOpacity", Number).Default("75.0").Inspectable().Changes(1),
    Attr("GridLabelFont", Font).Default("IdealSansSSm-Book").Inspectable().Changes(1),
    Attr("GridLabelSize", Number).Default("10.0").Inspectable().Changes(1),

    Group("Composites", "Composites"),
    Attr("IsComposite", Boolean).ReadOnly().Intrinsic(),
    Attr("Associates", Set).ReadOnly().Intrinsic(),
    Attr("NeverComposite", Boolean).Default("true").Intrinsic(),
    Attr("Role", String),
    Attr("IsMultiple", Boolean),
    Attr("OnJoin", Action),

    Group("AI", "AI"),
    Attr("NLNames", Set),
    Attr("NLOrganizations", Set),
    Attr("NLPlaces", Set),
    Attr("NLTags", Set),
    Attr("Sentiment", Number),
    Attr("Sentiments", List),
    Attr("DominantLanguage", String),
};

// Every attribute row learns the group whose category row precedes it.
static constexpr auto WithGroups() {
    std::array<SystemAttributeRow, std::size(kWritten)> rows{};
    const char* group = "";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i] = kWritten[i];
        if (rows[i].category)
            group = rows[i].group;
        else
            rows[i].group = group;
    }
    return rows;
}

static constexpr auto kRows = WithGroups();

static_assert(kRows.size() == SystemAttributeTable::kEntryCount);
static_assert(kRows[0].category, "the table starts with a group");

static constexpr std::size_t CountCategories() {
    std::size_t n = 0;
    for (const auto& row : kRows)
        n += row.category ? 1 : 0;
    return n;
}
static_assert(CountCategories() == SystemAttributeTable::kCategoryCount);

std::span<const SystemAttributeRow> SystemAttributeTable::Rows() { return kRows; }

std::span<const SystemAttributeRow> SystemAttributeTable::RowsOfGroup(std::string_view group) {
    std::size_t first = 0;
    while (first < kRows.size() && !(kRows[first].category && group == kRows[first].group))
        ++first;
    if (first == kRows.size())
        return {};
    std::size_t end = first + 1;
    while (end < kRows.size() && !kRows[end].category)
        ++end;
    return std::span<const SystemAttributeRow>(kRows).subspan(first, end - first);
}

const SystemAttributeRow* SystemAttributeTable::Find(std::string_view name) {
    for (const auto& row : kRows)
        if (name == row.name)
            return &row;
    return nullptr;
}

const char* SystemAttributeTable::ShapeNames() {
    return "normal;rectangle;oval;diamond;tag;vertical tag;bubble;hex;lozenge;cloud;leaf;banner;arrow";
}
