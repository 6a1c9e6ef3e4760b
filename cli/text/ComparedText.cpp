#include "cli/text/ComparedText.h"

#include "cli/text/PictureJson.h"
#include "pictures/PixelValues.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <nlohmann/json.hpp>

namespace kovalune::cli {

namespace {

using Json = nlohmann::ordered_json;
using pictures::PictureDifference;

std::string partText(std::size_t part, std::size_t whole) {
    return text::fixedText(100.0 * static_cast<double>(part) / static_cast<double>(whole), 3) + " %";
}

std::string placeText(const pictures::Picture& picture, std::size_t pixel) {
    return std::to_string(pixel % picture.width) + ',' + std::to_string(pixel / picture.width);
}

std::size_t pixelsOf(const pictures::Picture& picture) {
    return std::size_t{picture.width} * picture.height;
}

/// A whole line.
std::string largestText(const ComparedPictures& compared) {
    const pictures::SampleType type = compared.a.sampleType;
    const bool sameType = type == compared.b.sampleType;
    std::string list;
    for (const pictures::ChannelDifference& channel : compared.difference->largest) {
        list += (list.empty() ? "" : ", ") + channel.name + ' ';
        const std::string fraction = text::roundedText(channel.fraction, 6);
        list += sameType ? text::shortestText(channel.units) + " (" + fraction + ")" : fraction;
    }
    return "Largest difference, of " +
           (sameType ? text::shortestText(pictures::whiteOf(type)) + " (of 1): " : std::string("1: ")) +
           list + '\n';
}

std::string differenceText(const ComparedPictures& compared) {
    const PictureDifference& difference = *compared.difference;
    const std::string tolerance = text::shortestText(compared.tolerance) + " of 255";
    if (difference.pixels == 0 && difference.within == 0) {
        return "same\n";
    }
    if (difference.pixels == 0) {
        return "same within " + tolerance + ": " + std::to_string(difference.within) +
               (difference.within == 1 ? " pixel differs" : " pixels differ") + " by no more\n" +
               largestText(compared);
    }
    const std::size_t pixels = pixelsOf(compared.a);
    return "different: " + std::to_string(difference.pixels) + " of " + std::to_string(pixels) + " pixels (" +
           partText(difference.pixels, pixels) + ")" +
           (compared.tolerance > 0.0 ? " by more than " + tolerance : std::string()) + '\n' +
           largestText(compared) + "First at " + placeText(compared.a, difference.first) +
           "\n  A: " + pictures::pixelText(compared.a, difference.first) +
           "\n  B: " + pictures::pixelText(compared.b, difference.first) + '\n';
}

Json namedForm(const std::string& name, const pictures::Picture& picture) {
    Json json = {{"file", name}};
    json.update(formJson(picture));
    return json;
}

void addDifference(Json& json, const ComparedPictures& compared) {
    const PictureDifference& difference = *compared.difference;
    const bool sameType = compared.a.sampleType == compared.b.sampleType;
    json["pixels"] = pixelsOf(compared.a);
    json["different"] = difference.pixels;
    json["withinTolerance"] = difference.within;
    json["largest"] = Json::array();
    for (const pictures::ChannelDifference& channel : difference.largest) {
        Json each = {{"channel", channel.name}, {"fraction", numberJson(channel.fraction)}};
        if (sameType) {
            each["units"] = numberJson(channel.units);
        }
        json["largest"].push_back(each);
    }
    if (difference.pixels > 0) {
        json["first"] = {{"x", difference.first % compared.a.width},
                         {"y", difference.first / compared.a.width},
                         {"a", pixelJson(compared.a, difference.first)},
                         {"b", pixelJson(compared.b, difference.first)}};
    }
}

} // namespace

std::string comparedText(const ComparedPictures& compared) {
    const pictures::Picture& a = compared.a;
    const pictures::Picture& b = compared.b;
    std::string text = "A: " + text::printable(compared.nameA) + ": " + pictures::formText(a) +
                       "\nB: " + text::printable(compared.nameB) + ": " + pictures::formText(b) + '\n';
    if (pictures::hasAlpha(a.channels) && pictures::hasAlpha(b.channels) && a.alphaKind != b.alphaKind) {
        text += "The kinds of alpha differ; the values are compared as they stand.\n";
    }
    return text + (compared.difference ? differenceText(compared) : "different: the sizes\n");
}

std::string comparedJson(const ComparedPictures& compared) {
    Json json = {{"a", namedForm(compared.nameA, compared.a)},
                 {"b", namedForm(compared.nameB, compared.b)},
                 {"same", compared.difference && compared.difference->pixels == 0},
                 {"tolerance", compared.tolerance}};
    if (compared.difference) {
        addDifference(json, compared);
    } else {
        json["reason"] = "the sizes differ";
    }
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace kovalune::cli
