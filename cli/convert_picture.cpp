#include "cli/convert_picture.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>

#include "cli/commands.h"
#include "host/paint/cairo_label.h"
#include "host/paint/export.h"
#include "orvex/core/text.h"

namespace OrvexCli {

namespace {
std::string Extension(const std::string& fileName) {
    return Orvex::ToLowerAscii(std::filesystem::path(fileName).extension().string());
}
}  // namespace

bool IsPictureOutput(const std::string& fileName) {
    const std::string ext = Extension(fileName);
    return ext == ".png" || ext == ".pdf";
}

std::unique_ptr<Orvex::TORXBaseLabel> NewPictureDocument() {
    return std::make_unique<Orvex::TORXCairoLabel>();
}

int WritePicture(const Orvex::TORXBaseLabel& document, const std::string& fileName,
                 const TPictureArgs& args) {
    std::string error;
    bool written = false;
    if (Extension(fileName) == ".pdf") {
        written = Orvex::ExportPdf(document, fileName, error);
    } else {
        Orvex::TQVLRasterOptions options;
        options.Dpi = args.Dpi;
        options.Scale = args.Scale;
        if (!Orvex::CheckRasterOptions(document, options, error)) {
            fmt::print(stderr, "orvex: {}\n", error);
            return kExitUsage;
        }
        written = Orvex::ExportPng(document, fileName, options, error);
    }
    if (!written) {
        fmt::print(stderr, "orvex: {}\n", error);
        return kExitUsage;
    }
    return kExitOk;
}

}  // namespace OrvexCli
