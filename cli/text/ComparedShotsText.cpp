#include "cli/text/ComparedShotsText.h"

#include "cli/text/PictureJson.h"
#include "render/shots/FrameList.h"
#include "render/shots/FramePattern.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;

/// Over all channels, of 255.
double largestOf255(const pictures::PictureDifference& difference) {
    double largest = 0.0;
    for (const pictures::ChannelDifference& channel : difference.largest) {
        // NaN outweighs every number.
        largest = !(channel.fraction <= largest) ? channel.fraction : largest;
    }
    return 255.0 * largest;
}

std::string frameLine(const ComparedFrame& frame, int width) {
    std::string line = shots::frameText(frame.frame, width) + ": different: ";
    if (!frame.difference) {
        return line + "the sizes\n";
    }
    const double share =
        100.0 * static_cast<double>(frame.difference->pixels) / static_cast<double>(frame.pixels);
    return line + std::to_string(frame.difference->pixels) + " of " + std::to_string(frame.pixels) +
           " pixels (" + text::fixedText(share, 3) + " %), by " +
           text::roundedText(largestOf255(*frame.difference), 6) + " of 255 at most\n";
}

std::string onlyLine(const char* side, const std::vector<int64_t>& frames, int width) {
    return frames.empty() ? std::string()
                          : std::string("only in ") + side + ": " + shots::framesText(frames, width) + '\n';
}

Json frameJson(const ComparedFrame& frame) {
    Json json = {{"frame", frame.frame}, {"same", frame.same()}};
    if (!frame.difference) {
        json["reason"] = "the sizes differ";
        return json;
    }
    json["pixels"] = frame.pixels;
    json["different"] = frame.difference->pixels;
    json["withinTolerance"] = frame.difference->within;
    json["largestOf255"] = numberJson(largestOf255(*frame.difference));
    return json;
}

} // namespace

std::size_t ComparedShots::different() const {
    const auto both =
        std::count_if(frames.begin(), frames.end(), [](const ComparedFrame& frame) { return !frame.same(); });
    return static_cast<std::size_t>(both) + onlyInA.size() + onlyInB.size();
}

std::string comparedText(const ComparedShots& compared) {
    const auto sideLine = [&compared](const char* side, const std::string& name, std::size_t only) {
        const std::size_t frames = compared.frames.size() + only;
        return std::string(side) + ": " + text::printable(name) + ": " + std::to_string(frames) +
               (frames == 1 ? " frame\n" : " frames\n");
    };
    std::string text = sideLine("A", compared.nameA, compared.onlyInA.size()) +
                       sideLine("B", compared.nameB, compared.onlyInB.size());
    for (const ComparedFrame& frame : compared.frames) {
        text += frame.same() ? std::string() : frameLine(frame, compared.width);
    }
    text += onlyLine("A", compared.onlyInA, compared.width);
    text += onlyLine("B", compared.onlyInB, compared.width);
    if (compared.same()) {
        return text + (compared.tolerance > 0.0
                           ? "same within " + text::shortestText(compared.tolerance) + " of 255\n"
                           : std::string("same\n"));
    }
    const std::size_t all = compared.frames.size() + compared.onlyInA.size() + compared.onlyInB.size();
    return text + std::to_string(compared.different()) + " of " + std::to_string(all) + " frames differ\n";
}

std::string comparedJson(const ComparedShots& compared) {
    Json json = {{"a", compared.nameA},
                 {"b", compared.nameB},
                 {"same", compared.same()},
                 {"tolerance", compared.tolerance},
                 {"frames", Json::array()}};
    for (const ComparedFrame& frame : compared.frames) {
        json["frames"].push_back(frameJson(frame));
    }
    json["onlyInA"] = compared.onlyInA;
    json["onlyInB"] = compared.onlyInB;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::cli
