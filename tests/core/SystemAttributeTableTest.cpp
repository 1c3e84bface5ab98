// The rows of the system attribute table, read without building a document.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "SystemAttributeTable.h"

TEST(SystemAttributeTable, CountsAndGroupOrder) {
    auto rows = SystemAttributeTable::Rows();
    EXPECT_EQ(rows.size(), 420u);
    std::vector<std::string> groups;
    for (const auto& row : rows)
        if (row.category)
            groups.push_back(row.group);
    // The build order decides which categories exist when an attribute is
    // made, so it is part of what a document looks like.
    const std::vector<std::string> buildOrder = {
        "Internal", "Agent",  "General",    "Textual",    "Appearance", "Iris",       "Map",      "Outline",
        "Net",      "TextFormat", "Sorting", "HTML",      "Events",     "People",     "Places",   "References",
        "Sandbox",  "Scrivener",  "Simplenote", "Pennerby", "Weblog",   "Grid",       "Composites", "AI"};
    EXPECT_EQ(groups, buildOrder);

    // Every attribute row knows its group, and the group's rows are exactly
    // the run that starts at its category row.
    std::size_t inGroups = 0;
    for (const auto& group : buildOrder) {
        auto own = SystemAttributeTable::RowsOfGroup(group);
        ASSERT_FALSE(own.empty()) << group;
        EXPECT_TRUE(own.front().category);
        for (const auto& row : own.subspan(1)) {
            EXPECT_FALSE(row.category);
            EXPECT_EQ(std::string(row.group), group) << row.name;
        }
        inGroups += own.size();
    }
    EXPECT_EQ(inGroups, rows.size());
    EXPECT_TRUE(SystemAttributeTable::RowsOfGroup("Watch").empty()) << "groups are found by method, not category";
    EXPECT_EQ(std::string(SystemAttributeTable::RowsOfGroup("Simplenote").front().name), "Watch");
}

TEST(SystemAttributeTable, NamesAreUniqueAndReferencesResolve) {
    std::set<std::string> seen;
    std::set<std::string> categories;
    for (const auto& row : SystemAttributeTable::Rows()) {
        EXPECT_TRUE(seen.insert(row.name).second) << "duplicate " << row.name;
        if (row.category)
            categories.insert(row.name);
        // A renamed attribute forwards to one made before it.
        if (row.IsRenamed()) {
            EXPECT_TRUE(seen.count(row.renamedTo)) << row.name << " -> " << row.renamedTo;
        }
    }
    for (const auto& row : SystemAttributeTable::Rows()) {
        if (row.HasOwnCategory()) {
            EXPECT_TRUE(categories.count(row.under)) << row.name << " under " << row.under;
        }
    }
}

TEST(SystemAttributeTable, FindAndOddSpellings) {
    // Names are the interface: these spellings are kept exactly.
    for (const char* name : {"ScrivenerIndexCardFileExension", "Wordcount", "WordCount", "HTMLMarkDown",
                             "HTMLMarkdown", "mt_allow_comments", "DEVONthinkGroup", "NLNames", "Ziplinks"})
        EXPECT_NE(SystemAttributeTable::Find(name), nullptr) << name;
    EXPECT_EQ(SystemAttributeTable::Find("ScrivenerIndexCardFileExtension"), nullptr);
    EXPECT_EQ(SystemAttributeTable::Find("wordcount"), nullptr) << "lookup is case-sensitive";

    const SystemAttributeRow* windowPlace = SystemAttributeTable::Find("WindowPlace");
    ASSERT_NE(windowPlace, nullptr);
    EXPECT_EQ(windowPlace->type, SystemAttributeRow::kRectangle);
    EXPECT_EQ(windowPlace->preferenceKind, 21);

    const SystemAttributeRow* cloud = SystemAttributeTable::Find("HTMLCloud1Start");
    ASSERT_NE(cloud, nullptr);
    EXPECT_EQ(std::string(cloud->defaultText), "<span style=\"font-size: 0.75em\" >");
}

TEST(SystemAttributeTable, ChangeFacetsCombineInBuildOrder) {
    // Changes sets the mask, inspectable adds 1 and 4096, AlsoChanges adds.
    EXPECT_EQ(SystemAttributeTable::Find("Name")->ChangeFacets(), 4101u);
    EXPECT_EQ(SystemAttributeTable::Find("Prototype")->ChangeFacets(), 4613u);
    EXPECT_EQ(SystemAttributeTable::Find("MapBackgroundColor")->ChangeFacets(), 4105u);
    EXPECT_EQ(SystemAttributeTable::Find("InteriorScale")->ChangeFacets(), 2049u);
    EXPECT_EQ(SystemAttributeTable::Find("Sort")->ChangeFacets(), 4097u);
    EXPECT_EQ(SystemAttributeTable::Find("AgentQuery")->ChangeFacets(), 0u);
}
