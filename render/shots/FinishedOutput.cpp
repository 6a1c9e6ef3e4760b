#include "render/shots/FinishedOutput.h"

#include "pictures/EmbeddedSettings.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "text/Failure.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace kovalune::shots {

namespace fs = std::filesystem;

bool FinishedOutput::exists() const {
    // On a network's folder names and times may be some seconds old until the file is opened, which asks the server.
    const int descriptor = ::open(frame_.output.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0) {
        ::close(descriptor);
        return true;
    }
    return errno != ENOENT && errno != ENOTDIR;
}

bool FinishedOutput::isNewest() const {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(frame_.output, error);
    const auto isNewer = [&time](const fs::path& file) {
        std::error_code ignored;
        const fs::file_time_type other = fs::last_write_time(file, ignored);
        return !ignored && other > time;
    };
    std::vector<std::string> others = request_.settingsFiles;
    if (request_.areas != nullptr) {
        const std::vector<std::string> masks = request_.areas->masksOf(frame_);
        others.insert(others.end(), masks.begin(), masks.end());
    }
    return !error && !isNewer(frame_.input) && std::none_of(others.begin(), others.end(), isNewer);
}

std::optional<pictures::Picture> FinishedOutput::opened() const {
    try {
        pictures::DecodeOptions decoding;
        decoding.mostPixels = request_.form.decoding.mostPixels;
        if (pictures::formatOfName(frame_.output) == pictures::FileFormat::kExr) {
            decoding.exrLayer = request_.form.decoding.exrLayer;
            decoding.exrPart = request_.form.decoding.exrPart;
        }
        return pictures::readPicture(frame_.output, decoding);
    } catch (const text::Failure&) {
        return std::nullopt;
    }
}

bool FinishedOutput::holdsItsSettings(const pictures::Picture& opened) const {
    return !request_.form.embeds || !request_.settingsOf ||
           pictures::holdsSettings(opened, request_.settingsOf(frame_));
}

bool isFinished(const PlannedFrame& frame, const PictureRequest& request) {
    const FinishedOutput output(frame, request);
    if (!output.exists() || !output.isNewest()) {
        return false;
    }
    return pictures::withMemoryFor(frame.output, [&] {
        const std::optional<pictures::Picture> opened = output.opened();
        return opened && output.holdsItsSettings(*opened);
    });
}

} // namespace kovalune::shots
