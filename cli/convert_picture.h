// The picture outputs of `orvex convert`: PNG through the screen pass and PDF through the print pass, both
// painted by the Cairo family.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace Orvex {
class TORXBaseLabel;
}

namespace OrvexCli {

struct TPictureArgs {
    std::int32_t Dpi = 96;
    float Scale = 1.0f;
};

bool IsPictureOutput(const std::string& fileName);  // .png or .pdf, in any case
std::unique_ptr<Orvex::TORXBaseLabel> NewPictureDocument();
int WritePicture(const Orvex::TORXBaseLabel& document, const std::string& fileName, const TPictureArgs& args);

}  // namespace OrvexCli
