#pragma once
// Replacing a file so that a failure or a kill at any moment leaves either
// the old file or the complete new one, and nothing else behind.
//
// The new contents go to a temporary file in the folder of the file being
// replaced; it is flushed to disk, given the old file's mode (and owner,
// where the process may), renamed over the old file, and the folder is
// flushed too so that the rename itself survives a power cut.
//
// - On Linux the temporary is made with O_TMPFILE and has no name until it
//   is complete: a killed save leaves nothing. Where the file system cannot
//   do that, the temporary is named ".NAME.rylvane-PID-XXXXXX"; such files
//   of processes that no longer run are removed by the next save.
// - SIGINT, SIGTERM, SIGHUP and SIGQUIT during a save remove the temporary
//   before the process ends as the signal would have ended it.
// - A symbolic link is followed: its target is replaced, in the target's
//   folder, and the link stays a link.
// - A file with more than one hard link is refused: a rename can only
//   replace one of its names, and writing into the file in place would not
//   survive a crash. The line says so.
#include <functional>
#include <ostream>
#include <string>

// Replaces the file at `path` by what `produce` writes (it answers false
// when it could not write everything). False with `error` set to one line
// naming `path` on failure; the old file is then as it was.
bool ReplaceFile(const std::string& path, const std::function<bool(std::ostream&)>& produce, std::string& error);
