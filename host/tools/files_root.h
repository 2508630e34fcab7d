// Where the file tools may read and write: only inside one folder, named by a relative path.
#pragma once

#include <filesystem>
#include <string_view>

namespace Orvex::Host {

// The file aPath names inside aRoot. Throws EToolArgument for an empty or absolute path, a ".." step, a
// symbolic link anywhere below the root, or a result that leaves the root. aRoot must exist.
std::filesystem::path ResolveInsideRoot(const std::filesystem::path& aRoot, std::string_view aPath);

}  // namespace Orvex::Host
