#include "render/suggest/SuggestedPasses.h"

#include "pictures/PixelValues.h"
#include "render/Stages.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace kovalune::suggest {

namespace {

using pictures::ColorPair;
using pictures::ColorRegion;

constexpr std::size_t kProcessStages = kStageCount - 1;

bool holds(const std::vector<std::size_t>& places, std::size_t place) {
    return std::find(places.begin(), places.end(), place) != places.end();
}

bool isSecondIn(const SuggestedPass& pass, std::size_t place) {
    return std::any_of(pass.stages.begin(), pass.stages.end(),
                       [place](const SuggestedStage& stage) { return stage.second == place; });
}

/// False, and the pass stays as it is, where it has no room.
bool addStage(SuggestedPass& pass, const SuggestedStage& stage) {
    std::vector<std::size_t> base = pass.base;
    for (const ColorPair& pair : stage.pairs) {
        if (!isSecondIn(pass, pair.neighbour) && !holds(base, pair.neighbour)) {
            base.push_back(pair.neighbour);
        }
    }
    if (pass.stages.size() == kProcessStages || base.size() > kStageColors ||
        isSecondIn(pass, stage.second)) {
        return false;
    }
    pass.base = std::move(base);
    pass.stages.push_back(stage);
    return true;
}

bool addAll(SuggestedPass& pass, const std::vector<SuggestedStage>& stages) {
    SuggestedPass tried = pass;
    for (const SuggestedStage& stage : stages) {
        if (!addStage(tried, stage)) {
            return false;
        }
    }
    pass = std::move(tried);
    return true;
}

/// Colours that pairs connect, by the first of them.
class Groups {
public:
    explicit Groups(std::span<const ColorPair> pairs) {
        for (const ColorPair& pair : pairs) {
            const std::size_t a = firstOf(pair.neighbour);
            const std::size_t b = firstOf(pair.second);
            firsts_[std::max(a, b)] = std::min(a, b);
        }
    }

    std::size_t firstOf(std::size_t place) {
        auto found = firsts_.try_emplace(place, place).first;
        while (found->second != found->first) {
            found = firsts_.find(found->second);
        }
        return found->first;
    }

private:
    std::map<std::size_t, std::size_t> firsts_;
};

/// The stages of pairs that hang together, each after those that its neighbours come from and as soon after them as can
/// be, so that a shadow in a shadow follows it.
class StageOrder {
public:
    StageOrder(std::span<const ColorPair> pairs, std::span<const ColorRegion> regions,
               const pictures::PairRules& rules)
        : regions_(regions), rules_(rules) {
        for (const ColorPair& pair : pairs) {
            bySecond_[pair.second].push_back(pair);
        }
    }

    std::vector<SuggestedStage> ordered() && {
        for (const auto& each : bySecond_) {
            place(each.first);
        }
        return std::move(stages_);
    }

private:
    bool canBePlaced(std::size_t second) const {
        const std::vector<ColorPair>& pairs = bySecond_.at(second);
        return !holds(placed_, second) &&
               std::all_of(pairs.begin(), pairs.end(), [this](const ColorPair& pair) {
                   return !bySecond_.contains(pair.neighbour) || holds(placed_, pair.neighbour);
               });
    }

    void place(std::size_t second) {
        if (!canBePlaced(second)) {
            return;
        }
        placed_.push_back(second);
        addStages(second, bySecond_.at(second));
        for (const auto& [other, pairs] : bySecond_) {
            const bool inThis = std::any_of(pairs.begin(), pairs.end(), [second](const ColorPair& pair) {
                return pair.neighbour == second;
            });
            if (inThis) {
                place(other);
            }
        }
    }

    /// More neighbours than Base has colours take a stage of another pass.
    void addStages(std::size_t second, std::vector<ColorPair> pairs) {
        std::stable_sort(pairs.begin(), pairs.end(),
                         [](const ColorPair& a, const ColorPair& b) { return a.border > b.border; });
        const double half = rules_.blurOfThickness * pictures::thicknessOf(regions_[second]);
        const double blur = std::round(10.0 * std::clamp(half, rules_.leastBlur, rules_.mostBlur)) / 10.0;
        for (std::size_t start = 0; start < pairs.size(); start += kStageColors) {
            const auto first = pairs.begin() + static_cast<std::ptrdiff_t>(start);
            const auto count = static_cast<std::ptrdiff_t>(std::min(kStageColors, pairs.size() - start));
            stages_.push_back({second, {first, first + count}, blur, false});
        }
    }

    std::span<const ColorRegion> regions_;
    const pictures::PairRules& rules_;
    std::map<std::size_t, std::vector<ColorPair>> bySecond_; ///< the larger ones first
    std::vector<std::size_t> placed_;
    std::vector<SuggestedStage> stages_;
};

void distribute(const std::vector<SuggestedStage>& stages, std::vector<SuggestedPass>& passes) {
    for (SuggestedPass& pass : passes) {
        if (addAll(pass, stages)) {
            return;
        }
    }
    passes.emplace_back();
    for (const SuggestedStage& stage : stages) {
        if (!addStage(passes.back(), stage)) {
            addStage(passes.emplace_back(), stage);
        }
    }
}

/// The colours that the stage's own can run out over and touches: those of Base and of the stages before it.
std::vector<std::size_t> touchedBy(const SuggestedPass& pass, std::size_t stage,
                                   std::span<const ColorRegion> regions) {
    std::vector<std::size_t> before = pass.base;
    for (std::size_t other = 0; other < stage; ++other) {
        before.push_back(pass.stages[other].second);
    }
    std::vector<std::size_t> touched;
    for (const std::size_t place : before) {
        if (pictures::borderWith(regions[pass.stages[stage].second], place) > 0) {
            touched.push_back(place);
        }
    }
    return touched;
}

std::string tenths(double number) {
    return text::fixedText(number, 1);
}

class SettingsWriter {
public:
    SettingsWriter(std::span<const ColorRegion> regions, pictures::SampleType type,
                   const pictures::PairRules& rules)
        : regions_(regions), type_(type), rules_(rules) {}

    std::string passText(const SuggestedPass& pass) const {
        std::string text;
        for (std::size_t color = 0; color < pass.base.size(); ++color) {
            text += remark(figuresOf(pass.base[color]));
            text += line(render::colorSwitch(0, color), "on");
            text += line(render::colorLabel(0, color), nameOf(pass.base[color]));
        }
        for (std::size_t stage = 0; stage < pass.stages.size(); ++stage) {
            text += stageText(pass, stage);
        }
        return text;
    }

private:
    static std::string remark(const std::string& text) { return "; " + text + '\n'; }

    static std::string line(const std::string& label, const std::string& value) {
        return label + '=' + value + '\n';
    }

    std::string nameOf(std::size_t place) const {
        return pictures::hexText(pictures::nearestRgb(regions_[place].color, type_));
    }

    std::string figuresOf(std::size_t place) const {
        const ColorRegion& region = regions_[place];
        const pictures::ColorTone tone = pictures::toneOf(region.color, type_);
        return nameOf(place) + ": " + std::to_string(region.color.pixels) + " pixels, " +
               tenths(pictures::thicknessOf(region)) + " pixels thick; hue " + tenths(tone.hue) +
               " degrees, lightness " + tenths(tone.lightness) + " %, saturation " + tenths(tone.saturation) +
               " %";
    }

    std::string figuresOf(const ColorPair& pair) const {
        return std::string(pair.isHighlight() ? "highlight on " : "shadow of ") + nameOf(pair.neighbour) +
               ": common border of " + std::to_string(pair.border) + " pixels, " + tenths(pair.borderShare) +
               " % of its outline; hue " + tenths(pair.hueApart) + " degrees apart, " +
               tenths(std::abs(pair.lightnessApart)) + (pair.isHighlight() ? " % lighter" : " % darker");
    }

    std::string blurFigures(const SuggestedStage& stage) const {
        const double thickness = pictures::thicknessOf(regions_[stage.second]);
        const double half = rules_.blurOfThickness * thickness;
        return text::roundedText(100.0 * rules_.blurOfThickness, 3) + " % of its " + tenths(thickness) +
               " pixels" +
               (half < rules_.leastBlur  ? ", and the least that is proposed"
                : half > rules_.mostBlur ? ", and the most that is proposed"
                                         : "");
    }

    std::string stageText(const SuggestedPass& pass, std::size_t stage) const {
        const SuggestedStage& own = pass.stages[stage];
        const std::size_t number = stage + 1;
        const std::string prefix = std::to_string(number) + " : ";
        std::string text = '\n' + remark(figuresOf(own.second));
        for (const ColorPair& pair : own.pairs) {
            text += remark(figuresOf(pair));
        }
        text += line(render::stageSwitch(number), "on");
        text += line(render::colorLabel(number, 0), nameOf(own.second));
        text += remark(blurFigures(own));
        text += line(prefix + "Boundary Blur", text::shortestText(own.boundaryBlur));
        if (stage == 0) {
            return text; // the first stage has no other to keep to
        }
        std::string touched;
        for (const std::size_t place : touchedBy(pass, stage, regions_)) {
            touched += (touched.empty() ? "touches " : ", ") + nameOf(place);
        }
        text += remark(touched + (own.keepProcess ? " alone, which the stage before has" : ""));
        return text + line(prefix + "Keep Process", own.keepProcess ? "on" : "off");
    }

    std::span<const ColorRegion> regions_;
    pictures::SampleType type_;
    const pictures::PairRules& rules_;
};

} // namespace

bool liesInTheOneBefore(const SuggestedPass& pass, std::size_t stage, std::span<const ColorRegion> regions) {
    return stage > 0 &&
           touchedBy(pass, stage, regions) == std::vector<std::size_t>{pass.stages[stage - 1].second};
}

std::vector<SuggestedPass> suggestedPasses(std::span<const ColorRegion> regions,
                                           std::span<const ColorPair> pairs,
                                           const pictures::PairRules& rules) {
    Groups groups(pairs);
    std::map<std::size_t, std::vector<ColorPair>> byGroup;
    for (const ColorPair& pair : pairs) {
        byGroup[groups.firstOf(pair.neighbour)].push_back(pair);
    }
    std::vector<SuggestedPass> passes;
    for (const auto& each : byGroup) {
        distribute(StageOrder(each.second, regions, rules).ordered(), passes);
    }
    for (SuggestedPass& pass : passes) {
        for (std::size_t stage = 0; stage < pass.stages.size(); ++stage) {
            pass.stages[stage].keepProcess = liesInTheOneBefore(pass, stage, regions);
        }
    }
    return passes;
}

std::string suggestedText(std::span<const SuggestedPass> passes, std::span<const ColorRegion> regions,
                          const SuggestionSource& source, const pictures::PairRules& rules) {
    const SettingsWriter writer(regions, source.type, rules);
    std::string text = passes.size() > 1 ? "[Version=2.0]\n" : "[Version=1.0]\n";
    text += "; Suggested for " + source.name + "; figures are of ";
    text += source.frames == 1 ? "one picture" : std::to_string(source.frames) + " frames together";
    text += ", lengths in sides of pixels.\n";
    text += "; The neighbours of what is softened stand in Base, which an amount of 0 leaves flat.\nBlur "
            "Amount=0\n";
    for (std::size_t pass = 0; pass < passes.size(); ++pass) {
        text += passes.size() > 1 ? "\n[Pass " + std::to_string(pass + 1) + "]\n" : "\n";
        text += writer.passText(passes[pass]);
    }
    return text;
}

} // namespace kovalune::suggest
