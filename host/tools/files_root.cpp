#include "host/tools/files_root.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "host/tools/tool_args.h"

namespace Orvex::Host {

namespace fs = std::filesystem;

namespace {

bool IsWithin(const fs::path& aPath, const fs::path& aRoot) {
    auto p = aPath.begin();
    for (auto r = aRoot.begin(); r != aRoot.end(); ++r, ++p) {
        if (r->empty()) continue;  // the trailing separator of a root like "/tmp/x/"
        if (p == aPath.end() || *p != *r) return false;
    }
    return true;
}

}  // namespace

fs::path ResolveInsideRoot(const fs::path& aRoot, std::string_view aPath) {
    if (aPath.empty()) throw EToolArgument("argument \"path\" must not be empty");
    if (aPath.find('\0') != std::string_view::npos)
        throw EToolArgument("argument \"path\" must not contain NUL");
    const fs::path relative(aPath);
    if (relative.is_absolute() || relative.has_root_name() || relative.has_root_directory())
        throw EToolArgument(
            fmt::format("path \"{}\" is absolute; give a path relative to the files folder", aPath));
    for (const auto& part : relative)
        if (part == "..")
            throw EToolArgument(
                fmt::format("path \"{}\" steps out with \"..\"; stay inside the files folder", aPath));

    std::error_code ec;
    const fs::path root = fs::canonical(aRoot, ec);
    if (ec) throw EToolArgument(fmt::format("the files folder cannot be opened: {}", ec.message()));
    // A link below the root could point anywhere, now or after the check: refuse every one on the way.
    fs::path walked = root;
    for (const auto& part : relative) {
        if (part.empty() || part == ".") continue;
        walked /= part;
        if (fs::is_symlink(fs::symlink_status(walked, ec)))
            throw EToolArgument(
                fmt::format("path \"{}\" goes through a symbolic link; links are refused", aPath));
    }
    const fs::path resolved = fs::weakly_canonical(root / relative, ec);
    if (ec || !IsWithin(resolved, root))
        throw EToolArgument(fmt::format("path \"{}\" leaves the files folder", aPath));
    if (resolved == root)
        throw EToolArgument(fmt::format("path \"{}\" names the files folder itself", aPath));
    return resolved;
}

}  // namespace Orvex::Host
