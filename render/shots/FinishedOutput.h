// Whether an output that is there is what a run would make again.
#pragma once

#include "pictures/Picture.h"
#include "render/shots/ShotRun.h"

#include <optional>

namespace kovalune::shots {

/// Of a frame of the plan. Both outlive it.
class FinishedOutput {
public:
    FinishedOutput(const PlannedFrame& frame, const PictureRequest& request)
        : frame_(frame), request_(request) {}

    bool exists() const;

    /// It is at least as new as its input, its masks and the files of its settings, as far as these are there.
    bool isNewest() const;

    /// As far as it is read back: of OpenEXR the layer and part that are made. None where it cannot be. Throws std::bad_alloc
    /// where there is no memory for it, which says nothing of the file.
    std::optional<pictures::Picture> opened() const;

    /// Where settings are embedded, it holds those that its frame has now.
    bool holdsItsSettings(const pictures::Picture& opened) const;

private:
    const PlannedFrame& frame_;
    const PictureRequest& request_;
};

/// It is there, opens, is the newest and holds its settings: what a farm need not make again. Throws Failure where there is no
/// memory to open it.
bool isFinished(const PlannedFrame& frame, const PictureRequest& request);

} // namespace kovalune::shots
