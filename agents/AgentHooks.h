#pragma once
// Installs the calls by which the document core runs event actions: a
// parent's OnAdd for a note added under it, and its OnRemove for a note that
// left it (never while a file is read). Installs the action language's calls
// too. Safe to call more than once; the first call installs.
void InstallAgentHooks();
