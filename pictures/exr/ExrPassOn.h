// The channels and parts of an OpenEXR file that a new one has beside the picture: channels are read and stored anew with the
// picture's, other parts go over as they are packed.
#pragma once

#include "pictures/exr/ExrMemory.h"
#include "pictures/exr/ExrRest.h"

#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfMultiPartInputFile.h>
#include <ImfMultiPartOutputFile.h>
#include <cstdint>
#include <memory>
#include <vector>

namespace kovalune::pictures {

/// All functions throw Failure with the old file's name where that is damaged, and what the library throws.
class ExrPassOn {
public:
    /// `rest` has bytes, and lives longer.
    explicit ExrPassOn(const ExrRest& rest);

    /// Reads the part's other channels, and adds them to the picture's header and buffer, which point into this object then.
    /// What the part says of several channels goes to the header too.
    void addChannels(Imf::Header& header, Imf::FrameBuffer& buffer);

    /// The headers of a file of several parts; `picture` is that of the picture's.
    std::vector<Imf::Header> headersWith(const Imf::Header& picture) const;

    /// Where the picture's is among them.
    int place() const;

    /// All but the picture's, into a file with those headers.
    void copyParts(Imf::MultiPartOutputFile& file);

private:
    template <class Work>
    void reading(const Work& work);

    const ExrRest& rest_;
    ExrInput input_;
    std::unique_ptr<Imf::MultiPartInputFile> file_;
    std::vector<std::vector<uint8_t>> planes_; ///< the samples of the channels
};

} // namespace kovalune::pictures
