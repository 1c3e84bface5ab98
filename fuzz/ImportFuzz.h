#pragma once
// The check every import fuzz target makes: the bytes, read as one kind of
// text into a new document, may fail but must not crash, hang or leak; the
// count of notes made must be what the document holds; and the document
// must still write and read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "Hypertext.h"
#include "ImportManager.h"
#include "ImportableText.h"
#include "Node.h"
#include "TalvikReader.h"
#include "TalvikWriter.h"

inline int FuzzImport(const uint8_t* data, size_t size, ImportableText::Kind kind, const char* file = "") {
    // Large inputs add time, not coverage.
    if (size > 256 * 1024)
        return 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    Hypertext doc;
    ImportManager manager(&doc, nullptr);
    ImportableText item(text, kind);
    item.SetFile(file);
    bool ok = manager.ImportIt(item);
    manager.Finish();
    if (ok && manager.Failed())
        std::abort();
    size_t notes = 0;
    for (Node* n = doc.Root()->Son(); n; n = n->Next())
        ++notes;
    if (notes != manager.CreatedCount())
        std::abort();
    std::ostringstream out;
    if (!TalvikWriter(&doc).Write(out))
        std::abort();
    Hypertext again;
    TalvikReader reader(again.Root());
    if (!reader.Read(out.str()))
        std::abort();
    return 0;
}
