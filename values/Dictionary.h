#pragma once
// The string-to-string dictionary of dictionary values and action results.
// Keys enumerate in byte order.
#include <map>
#include <memory>
#include <string>

using Dictionary = std::map<std::string, std::string>;
using SharedDictionary = std::shared_ptr<const Dictionary>;
