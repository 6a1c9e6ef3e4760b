// The effect in the reference host, for all instances of the plug-in: made with the first, gone with the last, and all its
// threads and memory with it.
#pragma once

#include "adapters/openfx/HostThreads.h"
#include "adapters/openfx/Suites.h"
#include "host/Host.h"
#include "host/RowWork.h"
#include "host/Session.h"

#include <mutex>
#include <optional>
#include <vector>

namespace kovalune::openfx {

class Engine {
public:
    /// Starts from the factory's values. Throws ActionFailure where the effect's set-up fails.
    explicit Engine(const Suites& suites);

    /// Renders may be under way on several threads; their requests have all values.
    host::Session& session() { return *session_; }
    const host::RowWork& rowWork() const { return host_.rowWork(); }

    /// By the index of the effect's parameter: whether its control has an effect with these values.
    std::vector<bool> enabledOf(const host::ParamValues& values);

    /// A picture that frames share one after the other; its pixels are any.
    host::Image takeImage(PF_PixelFormat format, int width, int height);
    void giveBack(host::Image image);
    void forgetImages();

private:
    std::optional<HostThreads> threads_;
    host::Host host_;
    std::optional<host::Session> session_;
    std::mutex valuesMutex_; ///< of the session's own values
    std::mutex imagesMutex_;
    std::vector<host::Image> images_;
};

/// A picture of the engine's for a scope.
class EngineImage {
public:
    EngineImage(Engine& engine, PF_PixelFormat format, int width, int height)
        : engine_(engine), image_(engine.takeImage(format, width, height)) {}
    ~EngineImage() { engine_.giveBack(std::move(image_)); }
    EngineImage(const EngineImage&) = delete;
    EngineImage& operator=(const EngineImage&) = delete;

    host::Image& operator*() { return image_; }

private:
    Engine& engine_;
    host::Image image_;
};

} // namespace kovalune::openfx
