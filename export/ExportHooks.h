#pragma once
// Installs the export layer's hooks (see Hooks.h): the file name and URL of
// a note, and exportedString() of the action language. Run it before the
// commands that export or evaluate code that may export.
void InstallExportHooks();
