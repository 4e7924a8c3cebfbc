#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace velmor::platform {

// The path to read: unchanged if it exists; else with "\" as "/" and, folder by folder, in the existing
// spelling. A part that exists in no spelling keeps its own, so the result may not exist. Nothing for an
// empty path and for one with a zero character.
std::optional<std::string> pathToRead(std::u16string_view path);

// The path to change: its folders as in pathToRead, its last part as written.
std::optional<std::string> pathToChange(std::u16string_view path);

bool pathExists(const std::filesystem::path& path);
bool isRegularFile(const std::filesystem::path& path);

}  // namespace velmor::platform
