#include "adapters/web/PairPlacement.h"

#include "pictures/FlatColors.h"
#include "pictures/PixelValues.h"
#include "render/Stages.h"
#include "render/suggest/SuggestedPasses.h"
#include "text/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace kovalune::web {

namespace {

using pictures::ColorRegion;

std::string hexOf(const ColorRegion& region) {
    return pictures::hexText(pictures::nearestRgb(region.color, pictures::SampleType::kUint8));
}

/// Whether two colours differ by one in a channel at the most.
bool isBeside(std::string_view first, std::string_view second) {
    const auto channel = [](std::string_view hex, std::size_t place) {
        int value = -2;
        std::from_chars(hex.data() + place, hex.data() + place + 2, value, 16);
        return value;
    };
    constexpr std::size_t kLength = 7; // "#RRGGBB"
    return first.size() == kLength && second.size() == kLength &&
           std::abs(channel(first, 1) - channel(second, 1)) <= 1 &&
           std::abs(channel(first, 3) - channel(second, 3)) <= 1 &&
           std::abs(channel(first, 5) - channel(second, 5)) <= 1;
}

class Placing {
public:
    Placing(const host::Session& session, const render::NamedParams& named,
            std::span<const ColorRegion> regions)
        : session_(session), named_(named), regions_(regions) {}

    PairPlacement place(const ColorsOfPair& colors) {
        areRounded_ = colors.areRounded;
        const std::optional<std::size_t> light = placeOf(colors.light);
        const std::optional<std::size_t> shadow = placeOf(colors.shadow);
        if (!light || !shadow) {
            return refused(PairProblem::Kind::kNoFlatColor, light ? colors.shadow : colors.light);
        }
        if (*light == *shadow) {
            return refused(PairProblem::Kind::kSameColor, colors.light);
        }
        const uint64_t border = pictures::borderWith(regions_[*shadow], *light);
        if (border == 0) {
            return refused(PairProblem::Kind::kNoBorder, colors.shadow);
        }
        readPass();
        auto stage = std::find(stages_.begin(), stages_.end(), shadow);
        const bool isNew = stage == stages_.end();
        if (isNew) {
            stage = std::find(stages_.begin(), stages_.end(), std::nullopt);
        }
        if (stage == stages_.end() || !putLight(*light, stage, colors.light)) {
            PairPlacement full;
            full.isFull = true;
            return full;
        }
        result_.stage = static_cast<std::size_t>(stage - stages_.begin()) + 1;
        if (isNew) { // otherwise it runs out over this light too from now on
            *stage = shadow;
            sayShadow(*light, *shadow, border, colors.shadow);
        }
        return std::move(result_);
    }

private:
    using Taken = std::vector<std::optional<std::size_t>>; ///< of each slot, its colour's place

    static PairPlacement refused(PairProblem::Kind kind, const std::string& color) {
        PairPlacement result;
        result.problem = PairProblem{kind, color};
        return result;
    }

    std::optional<std::size_t> placeOf(const std::string& hex) const {
        auto found = std::find_if(regions_.begin(), regions_.end(),
                                  [&](const ColorRegion& region) { return hexOf(region) == hex; });
        if (found == regions_.end() && areRounded_) {
            found = std::find_if(regions_.begin(), regions_.end(),
                                 [&](const ColorRegion& region) { return isBeside(hexOf(region), hex); });
        }
        return found == regions_.end() ? std::nullopt
                                       : std::optional(static_cast<std::size_t>(found - regions_.begin()));
    }

    /// The colour that a slot selects; none where it is free.
    std::optional<std::size_t> takenBy(std::size_t stage, std::size_t color) const {
        const std::string slot = stage == 0 ? render::colorSwitch(stage, color) : render::stageSwitch(stage);
        return render::isOn(session_, slot) == true
                   ? placeOf(render::colorText(session_, render::colorLabel(stage, color)))
                   : std::nullopt;
    }

    void readPass() {
        for (std::size_t color = 0; color < kStageColors; ++color) {
            base_.push_back(takenBy(0, color));
        }
        for (std::size_t stage = 1; stage < kStageCount; ++stage) {
            stages_.push_back(takenBy(stage, 0));
        }
    }

    void say(const std::string& label, const std::string& value) {
        result_.values.emplace_back(label, value);
    }

    /// True where the shadow of `stage` finds the light: in Base, or as the shadow of a stage before.
    bool putLight(std::size_t light, Taken::iterator stage, const std::string& hex) {
        if (std::find(base_.begin(), base_.end(), light) != base_.end() ||
            std::find(stages_.begin(), stage, light) != stage) {
            return true;
        }
        const auto free = std::find(base_.begin(), base_.end(), std::nullopt);
        if (free == base_.end()) {
            return false;
        }
        *free = light;
        const auto color = static_cast<std::size_t>(free - base_.begin());
        say(render::colorSwitch(0, color), "on");
        say(render::colorLabel(0, color), hex);
        return true;
    }

    void sayShadow(std::size_t light, std::size_t shadow, uint64_t border, const std::string& hex) {
        const pictures::ColorPair pair{.neighbour = light, .second = shadow, .border = border};
        const double blur =
            suggest::suggestedPasses(regions_, {&pair, 1}).front().stages.front().boundaryBlur;
        if (const std::optional<int> amount = session_.findParam("Blur Amount");
            amount && !named_.contains(*amount)) {
            say("Blur Amount", "0"); // what is in Base stays flat
        }
        const std::string prefix = std::to_string(result_.stage) + " : ";
        say(render::stageSwitch(result_.stage), "on");
        say(render::colorLabel(result_.stage, 0), hex);
        say(prefix + "Boundary Blur", text::shortestText(blur));
        if (result_.stage > 1) {
            say(prefix + "Keep Process", liesInTheOneBefore() ? "on" : "off");
        }
    }

    bool liesInTheOneBefore() const {
        suggest::SuggestedPass pass;
        for (const std::optional<std::size_t>& place : base_) {
            if (place) {
                pass.base.push_back(*place);
            }
        }
        for (std::size_t stage = 0; stage < result_.stage; ++stage) {
            if (stages_[stage]) {
                pass.stages.push_back({.second = *stages_[stage], .pairs = {}});
            }
        }
        return suggest::liesInTheOneBefore(pass, pass.stages.size() - 1, regions_);
    }

    const host::Session& session_;
    const render::NamedParams& named_;
    std::span<const ColorRegion> regions_;
    bool areRounded_ = false;
    Taken base_;
    Taken stages_; ///< from "Process 1" on
    PairPlacement result_;
};

} // namespace

PairPlacement placePair(const host::Session& session, const render::NamedParams& named,
                        std::span<const ColorRegion> regions, const ColorsOfPair& colors) {
    return Placing(session, named, regions).place(colors);
}

} // namespace kovalune::web
