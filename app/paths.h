// Parts of a path. Both the backslash and the slash part folders, and so does a drive's colon.
#pragma once

#include <string>
#include <string_view>

// Everything before the file's name, with its last separator; empty when there is none.
std::string path_folder(std::string_view path);

// The file's name with its extension, without its folder.
std::string path_file_title(std::string_view path);

// The file's name without folder and without its last extension.
std::string path_base_name(std::string_view path);

// From the last '.' of the file's name on; empty when the name holds none. Dots in folders do not count.
std::string path_extension(std::string_view path);

// The path with its extension (path_extension) replaced by `extension`, which brings its own '.'.
std::string replace_extension(std::string_view path, std::string_view extension);

// Appends `extension` unless the path holds a '.' anywhere: a dot in a folder's name suppresses it too.
std::string with_default_extension(std::string_view path, std::string_view extension);
