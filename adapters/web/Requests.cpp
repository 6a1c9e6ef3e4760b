#include "adapters/web/Requests.h"

#include "adapters/web/PairPlacement.h"
#include "effect/Kovalune.h"
#include "pictures/FlatColors.h"
#include "pictures/PixelValues.h"
#include "render/EffectVersion.h"
#include "render/LinkedEffect.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "render/Stages.h"
#include "render/json/ParamsJson.h"
#include "render/json/SelectionJson.h"
#include "render/selfcheck/SelfCheck.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>

namespace kovalune::web {

namespace {

using Json = nlohmann::ordered_json;
using pictures::SampleType;

/// What is told of colours: those after them are counted.
constexpr std::size_t kMostColors = 64;

std::string dumped(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

class Request {
public:
    Request(Engine& engine, Json json, std::span<const uint8_t> bytes)
        : engine_(engine), json_(std::move(json)), bytes_(bytes) {}

    Answer answered() {
        struct Operation {
            const char* name;
            Json (Request::*answer)();
        };
        static constexpr Operation kOperations[] = {
            {"info", &Request::info},   {"params", &Request::params}, {"open", &Request::open},
            {"state", &Request::state}, {"render", &Request::render}, {"select", &Request::select},
            {"pick", &Request::pick},   {"colors", &Request::colors}, {"suggest", &Request::suggestSettings},
            {"pair", &Request::pair},   {"save", &Request::save},     {"selfcheck", &Request::selfcheck}};
        const std::string op = textOf("op");
        for (const Operation& operation : kOperations) {
            if (op == operation.name) {
                const Json json = (this->*operation.answer)();
                return {dumped(json), std::move(result_)};
            }
        }
        throw text::Failure(text::FailureKind::kUsage, "there is no request " + text::inQuotes(op));
    }

private:
    /// Throws Failure where the request has no such text, and the next where it has no such whole number in the range.
    std::string textOf(const char* member) const {
        const auto found = json_.find(member);
        if (found == json_.end() || !found->is_string()) {
            throw text::Failure(text::FailureKind::kUsage,
                                std::string("the request has no text \"") + member + '"');
        }
        return found->get<std::string>();
    }

    int64_t numberOf(const char* member, int64_t least, int64_t most) const {
        const auto found = json_.find(member);
        const bool isNumber = found != json_.end() && found->is_number_integer();
        const int64_t number = isNumber ? found->get<int64_t>() : 0;
        if (!isNumber || number < least || number > most) {
            throw text::Failure(text::FailureKind::kUsage, std::string("the request has no whole number \"") +
                                                               member + "\" from " + std::to_string(least) +
                                                               " to " + std::to_string(most));
        }
        return number;
    }

    render::ShotSettings settings() { return engine_.settingsOf(textOf("settings")); }

    Place placeIn(const render::ShotSettings& shot) const {
        return {static_cast<std::size_t>(numberOf("pass", 0, static_cast<int64_t>(shot.passCount()) - 1)),
                frame()};
    }

    int64_t frame() const {
        constexpr int64_t kMostFrame = (int64_t{1} << 53U) - 1; // up to which a page's numbers are whole
        return numberOf("frame", -kMostFrame, kMostFrame);
    }

    Json info() {
        return {{"version", KOVALUNE_WEB_VERSION},
                {"effect", render::versionText(engine_.session().effectVersion())},
                {"threads", engine_.threads()}};
    }

    Json params() { return Json::parse(render::paramsJson(engine_.session())); }

    Json open() {
        constexpr int64_t kWholeMemory = int64_t{1} << 32U;
        engine_.open(bytes_, textOf("name"), static_cast<uint64_t>(numberOf("memory", 1, kWholeMemory)));
        const pictures::Picture& picture = engine_.picture();
        result_ = engine_.screen().pixels;
        return {{"name", engine_.pictureName()},
                {"format", picture.format == pictures::FileFormat::kPng ? "PNG" : "TGA"},
                {"width", picture.width},
                {"height", picture.height},
                {"depth", 8 * pictures::bytesPerSample(picture.sampleType)},
                {"form", pictures::formText(picture)}};
    }

    Json state() {
        const render::ShotSettings shot = settings();
        const host::Session& session = engine_.session();
        Json passes = Json::array();
        for (std::size_t pass = 0; pass < shot.passCount(); ++pass) {
            engine_.setValues(shot, {pass, frame()});
            const std::vector<bool> enabled = engine_.enabledControls();
            Json values = Json::object();
            Json isEnabled = Json::object();
            Json keyed = Json::array();
            for (const int index : shot.keyed(pass)) {
                keyed.push_back(session.params()[static_cast<std::size_t>(index)].name);
            }
            for (std::size_t index = 1; index < session.params().size(); ++index) {
                const PF_ParamDef& def = session.params()[index];
                if (render::isSettable(def)) {
                    const auto place = static_cast<int>(index);
                    values[def.name] = render::valueText(def, session.choices(place), session.value(place));
                }
                isEnabled[def.name] = enabled[index];
            }
            passes.push_back({{"name", shot.passName(pass)},
                              {"values", std::move(values)},
                              {"enabled", std::move(isEnabled)},
                              {"keyed", std::move(keyed)}});
        }
        return {{"passes", std::move(passes)}};
    }

    Json render() {
        const render::ShotSettings shot = settings();
        const auto start = std::chrono::steady_clock::now();
        Frame frame = engine_.render(shot, placeIn(shot), static_cast<int>(numberOf("reduce", 1, 4)));
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        Json passes = Json::array();
        for (const PassCounts& pass : frame.passes) {
            render::setValues(engine_.session(), pass.values);
            Json report = Json::object();
            render::addCounts(report, engine_.session(), pass.counts);
            passes.push_back({{"name", pass.name}, {"report", std::move(report)}});
        }
        result_ = std::move(frame.screen.pixels);
        return {{"width", frame.screen.width},
                {"height", frame.screen.height},
                {"milliseconds", time.count()},
                {"passes", std::move(passes)},
                {"notes", frame.notes}};
    }

    Json select() {
        const render::ShotSettings shot = settings();
        const auto stage = static_cast<std::size_t>(numberOf("stage", 0, int64_t{kStageCount} - 1));
        const auto most = static_cast<int64_t>(render::colorsOf(stage)) - 1;
        Selected selected =
            engine_.select(shot, placeIn(shot), stage, static_cast<std::size_t>(numberOf("color", 0, most)));
        result_ = std::move(selected.mask);
        return {{"width", engine_.picture().width},
                {"height", engine_.picture().height},
                {"selected", selected.pixels}};
    }

    Json pick() {
        const pictures::Picture& picture = engine_.picture();
        const auto x = static_cast<std::size_t>(numberOf("x", 0, int64_t{picture.width} - 1));
        const auto y = static_cast<std::size_t>(numberOf("y", 0, int64_t{picture.height} - 1));
        const PickedPixel picked = engine_.pick(x, y);
        Json json = {{"x", x},
                     {"y", y},
                     {"source", pictures::pixelText(picked.source, 0)},
                     {"hex", hexOf(picked.shown)},
                     {"transparent", picked.shown[3] == 0},
                     {"result", nullptr},
                     {"resultHex", nullptr}};
        if (picked.result) {
            json["result"] = pictures::pixelText(*picked.result, 0);
            json["resultHex"] = hexOf(picked.resultShown);
        }
        return json;
    }

    static std::string hexOf(const ScreenPixel& pixel) {
        return pictures::hexText({pixel[0], pixel[1], pixel[2]});
    }

    static std::string hexOf(const pictures::ColorRegion& region) {
        return pictures::hexText(pictures::nearestRgb(region.color, SampleType::kUint8));
    }

    Json colors() {
        const suggest::Suggestion& suggestion = engine_.suggestion();
        const auto pixels = static_cast<double>(engine_.colors().pixels);
        Json colors = Json::array();
        for (const pictures::ColorRegion& region : suggestion.regions) {
            if (colors.size() == kMostColors) {
                break;
            }
            colors.push_back({{"hex", hexOf(region)},
                              {"pixels", region.color.pixels},
                              {"share", 100.0 * static_cast<double>(region.color.pixels) / pixels}});
        }
        return {{"pixels", engine_.colors().pixels},
                {"transparent", engine_.colors().transparent},
                {"more",
                 engine_.colors().colors.size() - std::min(engine_.colors().colors.size(), colors.size())},
                {"colors", std::move(colors)},
                {"pairs", pairsOf(suggestion)}};
    }

    static Json pairsOf(const suggest::Suggestion& suggestion) {
        Json pairs = Json::array();
        for (const suggest::SuggestedPass& pass : suggestion.passes) {
            for (const suggest::SuggestedStage& stage : pass.stages) {
                for (const pictures::ColorPair& pair : stage.pairs) {
                    pairs.push_back({{"light", hexOf(suggestion.regions[pair.neighbour])},
                                     {"shadow", hexOf(suggestion.regions[pair.second])},
                                     {"isHighlight", pair.isHighlight()},
                                     {"borderShare", pair.borderShare},
                                     {"boundaryBlur", stage.boundaryBlur}});
                }
            }
        }
        return pairs;
    }

    Json suggestSettings() {
        return {{"settings", engine_.suggestion().settings}, {"pairs", pairsOf(engine_.suggestion())}};
    }

    /// By which a page has words for it.
    static const char* nameOf(PairProblem::Kind kind) {
        switch (kind) {
        case PairProblem::Kind::kNoFlatColor:
            return "no flat colour";
        case PairProblem::Kind::kSameColor:
            return "same colour";
        default:
            return "no border";
        }
    }

    Json pair() {
        const render::ShotSettings shot = settings();
        const Place place = placeIn(shot);
        engine_.setValues(shot, place);
        const PairPlacement placed = placePair(
            engine_.session(), shot.named(place.pass), engine_.suggestion().regions,
            {textOf("light"), textOf("shadow"), engine_.picture().sampleType != SampleType::kUint8});
        if (placed.problem) {
            return {{"problem", nameOf(placed.problem->kind)}, {"color", placed.problem->color}};
        }
        if (placed.isFull) {
            return {{"full", true}};
        }
        Json values = Json::object();
        for (const auto& [label, value] : placed.values) {
            values[label] = value;
        }
        return {{"values", std::move(values)}, {"stage", placed.stage}};
    }

    Json save() {
        const std::string settings = textOf("settings");
        result_ = engine_.png(settings, frame());
        const std::string& name = engine_.pictureName();
        return {{"name", name.substr(0, name.rfind('.')) + "-soft.png"},
                {"depth", 8 * pictures::bytesPerSample(engine_.picture().sampleType)}};
    }

    Json selfcheck() {
        const bool quick = json_.value("quick", true);
        const auto start = std::chrono::steady_clock::now();
        const FactoryDefaultsScope factory;
        host::Host host(render::toolOptions(engine_.threads()));
        const selfcheck::CheckOutcome outcome = selfcheck::checkScenes(
            render::linkedEffect(), host, {.every = quick ? selfcheck::kQuickStep : 1, .toTheEnd = true});
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        Json json = {{"scenes", outcome.scenes},
                     {"agree", outcome.scenes - outcome.differences},
                     {"seconds", time.count()},
                     {"first", nullptr}};
        if (outcome.first) {
            json["first"] = {{"scene", outcome.first->scene},
                             {"expected", outcome.first->expected},
                             {"found", outcome.first->found}};
        }
        return json;
    }

    Engine& engine_;
    const Json json_;
    const std::span<const uint8_t> bytes_;
    std::vector<uint8_t> result_;
};

Answer failed(const std::string& reason) {
    return {dumped({{"error", reason}}), {}};
}

} // namespace

Answer answer(Engine& engine, const std::string& request, std::span<const uint8_t> bytes) {
    try {
        return Request(engine, Json::parse(request), bytes).answered();
    } catch (const text::Failure& failure) {
        return failed(text::printable(failure.what()));
    } catch (const std::bad_alloc&) {
        return failed("there is not enough memory for this");
    } catch (const std::exception& exception) {
        return failed(std::string("this should not happen: ") + exception.what());
    }
}

} // namespace kovalune::web
