#pragma once
// Compares two documents in everything a file carries: the notes (kind,
// identity, place, local values, text in all its forms, prototype, alias),
// the links in order, attribute definitions, link types, colours,
// preferences and the sections carried unchanged.
#include <string>

class Hypertext;

// "" when the documents are the same; otherwise a line telling the first
// difference found.
std::string DocumentDifference(const Hypertext& a, const Hypertext& b);
