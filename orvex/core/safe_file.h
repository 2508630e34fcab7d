// Writing and reading whole files without surprises. A write goes to a temporary file in the target's own
// folder, is flushed to the disk and then renamed over the target, so a reader (or a crash, or a kill at any
// moment) sees the old file whole or the new one whole, never a cut one. An existing target must be a plain
// file with a single link: a symbolic link, a second hard link (which may lie outside a confined folder), a
// FIFO or a device is refused at once, and nothing is ever opened in a way that could block.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "orvex/core/result.h"

namespace Orvex {

// Codes: QVLErr::kWrite for a refused or failed write; for a read kNoFile, or kLimit for a file over the
// limit. The message names the file and the problem.
using TQVLSafeFileResult = TQVLResult<>;

// Hands the text over in pieces; returns false to abandon the write.
using TQVLFileSink = std::function<bool(std::string_view)>;
// Produces the file's content through sink; returns false (or throws) to abandon the write, which then
// leaves the target untouched.
using TQVLFileProducer = std::function<bool(const TQVLFileSink& sink)>;

TQVLSafeFileResult WriteFileAtomic(const std::string& fileName, std::string_view content);
TQVLSafeFileResult WriteFileAtomic(const std::string& fileName, const TQVLFileProducer& producer);

// The whole content of a regular file of at most maxBytes; a FIFO, a device or a folder is refused
// without blocking, and so is a file over the limit.
TQVLSafeFileResult ReadRegularFile(const std::string& fileName, std::size_t maxBytes, std::string& content);

}  // namespace Orvex
