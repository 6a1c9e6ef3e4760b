#include "adapters/openfx/Render.h"

#include "adapters/openfx/ActionFailure.h"
#include "adapters/openfx/ClipImage.h"
#include "adapters/openfx/PixelPasses.h"
#include "render/FrameArea.h"
#include "render/ParamText.h"
#include "render/Stages.h"

#include <cmath>
#include <optional>
#include <string>
#include <thread>

namespace kovalune::openfx {

namespace {

constexpr A_long kNormalView = 1;

/// By the label that the effect registered.
template <class Value>
Value valueOf(const Instance& instance, const Settings& settings, const std::string& label) {
    const std::optional<int> index = instance.engine().session().findParam(label);
    for (const auto& [each, value] : settings.values) {
        if (index && each == *index) {
            return std::get<Value>(value);
        }
    }
    throw ActionFailure(kFailed, "the effect has no control '" + label + "'");
}

bool isNormalView(const Instance& instance, const Settings& settings) {
    return valueOf<A_long>(instance, settings, std::string(render::kViewLabel)) == kNormalView;
}

bool isCopy(const Instance& instance, const Settings& settings) {
    if (!isNormalView(instance, settings)) {
        return false;
    }
    const auto isOn = [&](const std::string& box) { return valueOf<A_long>(instance, settings, box) != 0; };
    for (std::size_t stage = 1; stage < kStageCount; ++stage) {
        if (isOn(render::stageSwitch(stage))) {
            return false;
        }
    }
    bool anyColor = false;
    for (std::size_t color = 0; color < kStageColors; ++color) {
        anyColor = anyColor || isOn(render::colorSwitch(0, color));
    }
    return !anyColor || valueOf<double>(instance, settings, "Blur Amount") == 0.0;
}

double timeOf(const PropertySet& in) {
    return in.number(name::kTime).value_or(0.0);
}

/// The host is asked on the thread of the render alone; the effect may report from others.
class Cancellation {
public:
    explicit Cancellation(const Instance& instance) : instance_(instance) {}

    /// Whether the frame goes on.
    bool goesOn() {
        const auto* const suite = instance_.suites().effects;
        if (suite->abort != nullptr && std::this_thread::get_id() == thread_ &&
            suite->abort(instance_.effect()) == 1) {
            stopped_ = true;
        }
        return !stopped_;
    }

private:
    const Instance& instance_;
    const std::thread::id thread_ = std::this_thread::get_id();
    std::atomic<bool> stopped_ = false;
};

/// Nothing where no mask is connected, or it has no image.
std::optional<render::FrameArea> areaOf(const Instance& instance, double time, const RectI& bounds) {
    if (instance.mask() == nullptr ||
        instance.propertiesOf(instance.mask()).integer(name::kConnected).value_or(0) == 0) {
        return std::nullopt;
    }
    const ClipImage mask(instance.suites(), instance.mask(), name::kMask, time);
    return mask ? std::optional(areaOf(*mask, bounds)) : std::nullopt;
}

void requireColours(const PixelBlock& block, const char* clip) {
    if (block.components == Components::kAlpha) {
        throw ActionFailure(kFailed, std::string("the image of the clip ") + clip + " has no colours");
    }
}

/// One frame's work between the images of the host.
class FrameWork {
public:
    FrameWork(const Instance& instance, const PropertySet& in)
        : instance_(instance), in_(in), time_(timeOf(in)), settings_(instance.settingsAt(time_)),
          cancellation_(instance) {}

    Status run(const PixelBlock& output, const RectI& window, const PixelBlock& source) {
        Engine& engine = instance_.engine();
        const std::optional<render::FrameArea> area = areaOf(instance_, time_, source.bounds);
        EngineImage image(engine, formatOf(source.depth), source.width(), source.height());
        EngineImage result(engine, formatOf(source.depth), source.width(), source.height());
        takeIn(*image, source, settings_.isLinear, engine.rowWork());
        if (!cancellation_.goesOn() ||
            !renderInto(*result, area ? cutTo(*image, *area) : host::Image(), *image)) {
            return kFailed;
        }
        if (area && isNormalView(instance_, settings_)) {
            restoreOutside(*result, *image, *area);
        } else if (area) {
            clearOutside(*result, *area);
        }
        giveOut(output, window, {*result, *image, source, settings_.isLinear}, engine.rowWork());
        return kOk;
    }

private:
    host::RenderRequest request() {
        host::RenderRequest request;
        request.downsampleX = nearestFraction(in_.number(name::kRenderScale, 0).value_or(1.0));
        request.downsampleY = nearestFraction(in_.number(name::kRenderScale, 1).value_or(1.0));
        request.values = settings_.values;
        request.onProgress = [this](int, int) { return cancellation_.goesOn(); };
        return request;
    }

    /// False where the host has given the frame up.
    bool renderInto(host::Image& result, const host::Image& cut, const host::Image& image) {
        const host::Image& seen = cut.empty() ? image : cut;
        const host::RenderResult rendered =
            instance_.engine().session().render(seen.view(), result.view(), request());
        if (!cancellation_.goesOn()) {
            return false;
        }
        if (!rendered.threw && rendered.code == PF_Err_OUT_OF_MEMORY) {
            throw ActionFailure(kMemory, "Kovalune has too little memory for a frame of " +
                                             std::to_string(image.width()) + 'x' +
                                             std::to_string(image.height()));
        }
        if (!rendered.ok() || !rendered.rendered) {
            throw ActionFailure(kFailed, "Kovalune failed with code " + std::to_string(rendered.code) +
                                             (rendered.returnMsg.empty() ? "" : ": " + rendered.returnMsg));
        }
        return true;
    }

    const Instance& instance_;
    const PropertySet& in_;
    double time_;
    Settings settings_;
    Cancellation cancellation_;
};

void setRectangle(const PropertySet& out, const std::string& property, const RectD& rect) {
    const double sides[] = {rect.x1, rect.y1, rect.x2, rect.y2};
    for (int i = 0; i < 4; ++i) {
        out.set(property.c_str(), sides[i], i);
    }
}

std::optional<RectD> definitionOf(const Instance& instance, Clip clip, double time) {
    RectD rect = {};
    const auto* const suite = instance.suites().effects;
    if (suite->clipGetRegionOfDefinition == nullptr ||
        suite->clipGetRegionOfDefinition(clip, time, &rect) != kOk) {
        return std::nullopt;
    }
    return rect;
}

bool isConnected(const Instance& instance, Clip clip) {
    return instance.propertiesOf(clip).integer(name::kConnected).value_or(0) != 0;
}

} // namespace

PF_RationalScale nearestFraction(double scale) {
    constexpr int kMostDenominator = 32767;
    constexpr double kMostScale = 32767.0;
    if (!(scale > 0.0) || scale > kMostScale) {
        return {1, 1};
    }
    PF_RationalScale best = {1, 1};
    double bestDistance = std::abs(scale - 1.0);
    for (int denominator = 1; denominator <= kMostDenominator && bestDistance > 0.0; ++denominator) {
        const double numerator = std::max(std::floor(scale * denominator + 0.5), 1.0);
        const double distance = std::abs(scale - numerator / denominator);
        if (distance < bestDistance) {
            best = {static_cast<A_long>(numerator), static_cast<A_u_long>(denominator)};
            bestDistance = distance;
        }
    }
    return best;
}

Status render(Instance& instance, const PropertySet& in) {
    const double time = timeOf(in);
    const Suites& suites = instance.suites();
    FrameWork work(instance, in);
    const ClipImage output(suites, instance.output(), name::kOutput, time);
    if (!output) {
        throw ActionFailure(kFailed, "the host gives no image of the clip Output");
    }
    requireColours(*output, name::kOutput);
    const RectI window =
        intersection(in.rectangle(name::kRenderWindow).value_or(output->bounds), output->bounds);
    if (isEmpty(window)) {
        return kOk;
    }
    const ClipImage source(suites, instance.source(), name::kSource, time);
    if (!source || isEmpty(source->bounds)) {
        clear(*output, window);
        return kOk;
    }
    requireColours(*source, name::kSource);
    return work.run(*output, window, *source);
}

Status isIdentity(const Instance& instance, const PropertySet& in, const PropertySet& out) {
    const double time = timeOf(in);
    if (!isCopy(instance, instance.settingsAt(time))) {
        return kReplyDefault;
    }
    out.set(name::kName, name::kSource);
    out.offer(name::kTime, time);
    return kOk;
}

Status regionOfDefinition(const Instance& instance, const PropertySet& in, const PropertySet& out) {
    const std::optional<RectD> rect = definitionOf(instance, instance.source(), timeOf(in));
    if (!rect) {
        return kReplyDefault;
    }
    setRectangle(out, name::kRegionOfDefinition, *rect);
    return kOk;
}

Status regionsOfInterest(const Instance& instance, const PropertySet& in, const PropertySet& out) {
    const double time = timeOf(in);
    bool any = false;
    const auto askForAll = [&](Clip clip, const char* clipName) {
        if (const std::optional<RectD> rect = definitionOf(instance, clip, time)) {
            setRectangle(out, std::string(name::kRegionOfInterestOf) + clipName, *rect);
            any = true;
        }
    };
    askForAll(instance.source(), name::kSource);
    if (instance.mask() != nullptr && isConnected(instance, instance.mask())) {
        askForAll(instance.mask(), name::kMask);
    }
    return any ? kOk : kReplyDefault;
}

Status clipPreferences(const Instance& instance, const PropertySet& out) {
    const PropertySet source = instance.propertiesOf(instance.source());
    const std::string components = source.text(name::kComponents).value_or("");
    if (instance.isGeneral() && !components.empty()) {
        out.offer((std::string(name::kComponentsOf) + name::kOutput).c_str(), components.c_str());
        if (const std::optional<std::string> depth = source.text(name::kPixelDepth)) {
            out.offer((std::string(name::kDepthOf) + name::kOutput).c_str(), depth->c_str());
        }
    }
    std::string alpha = source.text(name::kPreMultiplication).value_or("");
    if (components == name::kRgb) {
        alpha = name::kOpaque;
    } else if (alpha == name::kOpaque && !isNormalView(instance, instance.settingsAt(std::nullopt))) {
        alpha = name::kUnpremultiplied; // other views cut away
    }
    if (alpha.empty()) {
        return kReplyDefault;
    }
    out.offer(name::kPreMultiplication, alpha.c_str());
    return kOk;
}

} // namespace kovalune::openfx
