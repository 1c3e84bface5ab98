#pragma once
// A whole update of a document in one go, as a batch run wants it.
class Hypertext;

// Runs every agent once (even when the document's agents are switched off),
// then every edict, then every rule from top to bottom.
void UpdateDocument(Hypertext* document);
// The manual update: every agent once, then every edict.
void UpdateAgentsNow(Hypertext* document);
