#pragma once
// Configuration files such as "linkTypes.xml" and "colors.xml". The program
// carries a built-in copy of each; a file of the same name in the user's
// configuration folder takes its place. The folder is $RYLVANE_CONFIG_DIR,
// else $XDG_CONFIG_HOME/rylvane, else ~/.config/rylvane.
#include <string>

// The folder searched, possibly not existing.
std::string ConfigurationFolder();

// The text of the user's file `name`, or `builtIn` when there is none.
// `fromUser` tells which one was answered.
std::string ConfigurationText(const std::string& name, const std::string& builtIn, bool* fromUser = nullptr);
