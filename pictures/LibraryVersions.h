// The libraries that read and write picture files, with their versions, or "not built in".
#pragma once

#include <string>
#include <vector>

namespace kovalune::pictures {

struct LibraryVersion {
    std::string name;
    std::string version;
};

std::vector<LibraryVersion> pictureLibraries();

} // namespace kovalune::pictures
