#include "render/shots/ParamsFile.h"

#include "pictures/FileBytes.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kovalune::shots {

std::string paramsTextOf(const std::filesystem::path& file) {
    const auto checkBeginning = [&file](std::span<const uint8_t> beginning) {
        if (beginning.size() > kMostParamsFileBytes) {
            throw text::Failure(text::FailureKind::kFile,
                                "cannot read " + text::inQuotes(file.string()) + ": it is larger than " +
                                    std::to_string(kMostParamsFileBytes) + " bytes");
        }
    };
    const std::vector<uint8_t> bytes = pictures::fileBytes(file, kMostParamsFileBytes + 1, checkBeginning);
    return {bytes.begin(), bytes.end()};
}

} // namespace kovalune::shots
