#pragma once
// Small helpers the document file tests share: making notes, and writing and
// reading whole documents in memory.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "Hypertext.h"
#include "Node.h"
#include "NodeHelpers.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"

// A note made last under `parent` (the root when null), at (x, y).
inline Node* AddNote(Hypertext& doc, const std::string& name, Node* parent = nullptr, double x = 1, double y = 2) {
    Node* after = parent ? parent->YoungestSon() : doc.Root()->YoungestSon();
    return NodeMaker(&doc).MakeNode(name, parent, after, x, y);
}

inline std::string WriteDocument(const Hypertext& doc) {
    std::ostringstream out;
    EXPECT_TRUE(TalvikWriter(&doc).Write(out));
    return out.str();
}

// The document read from `bytes`, or null with the reader's message in
// `error`; the bytes from `backgroundFrom` on are parsed on a second thread.
inline std::unique_ptr<Hypertext> ReadDocument(const std::string& bytes, std::string* error = nullptr,
                                               size_t backgroundFrom = XMLReader::kBackgroundThreshold) {
    auto doc = std::make_unique<Hypertext>();
    TalvikReader reader(doc->Root());
    reader.SetBackgroundThreshold(backgroundFrom);
    bool ok = reader.Read(bytes);
    if (error)
        *error = reader.ErrorMessage();
    if (!ok)
        return nullptr;
    return doc;
}
