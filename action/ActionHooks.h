#pragma once
// Installs the calls by which the values layer and the document core reach
// the action language: values compile and evaluate their text as action
// code, a retired compiled action goes to its document's pool, and the core
// resolves paths and display names through designators and expressions.
// Safe to call more than once; the first call installs.
void InstallActionHooks();
