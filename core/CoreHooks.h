#pragma once
// The document core's part of the hooks (values/Hooks.h): paths of notes,
// colour names, originals, deferred deletion of values and attributes read
// by date text. Installed once, by the first Hypertext's constructor; calling
// it again does nothing.
void InstallCoreHooks();
