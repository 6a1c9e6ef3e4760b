#include "tests/adapters/openfx/Reference.h"

#include "render/LinkedEffect.h"

#include <array>
#include <cmath>
#include <stdexcept>

namespace kovalune::test {

namespace {

constexpr std::array<PF_Pixel, 4> kPalette = {{
    {255, 250, 216, 190},
    {255, 232, 168, 140},
    {255, 40, 20, 20},
    {0, 0, 0, 0},
}};

template <class Pixel, class Convert>
void paint(host::Image& image, const Convert& convert) {
    const int width = image.width();
    const int height = image.height();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isLine = x == width / 2 && y < height * 2 / 3;
            const bool isShadow = x + y / 2 < width / 3 || (x > width * 2 / 3 && y > height / 2);
            const bool isOutside = x < 2 || y >= height - 2;
            const PF_Pixel& paint = kPalette[isOutside ? 3U : isLine ? 2U : isShadow ? 1U : 0U];
            image.at<Pixel>(x, y) = {convert(paint.alpha), convert(paint.red), convert(paint.green),
                                     convert(paint.blue)};
        }
    }
}

} // namespace

Reference::Reference()
    : host_(render::toolOptions(2)), session_(host_, render::linkedEffect()),
      controls_(openfx::controlsOf(session_)) {}

const openfx::Control& Reference::labelled(const std::string& label) const {
    for (const openfx::Control& control : controls_) {
        if (control.label == label && control.index != 0) {
            return control;
        }
    }
    throw std::runtime_error("no control " + label);
}

void Reference::give(TestEffect& instance, const std::string& label, const host::ParamValue& value) const {
    const openfx::Control& control = labelled(label);
    if (const auto* const number = std::get_if<double>(&value)) {
        instance.set(control.name, {*number});
    } else if (const auto* const color = std::get_if<PF_Pixel>(&value)) {
        instance.set(control.name, {color->red / 255.0, color->green / 255.0, color->blue / 255.0});
    } else if (control.kind == openfx::Control::Kind::kChoice) {
        for (std::size_t i = 0; i < control.choiceValues.size(); ++i) {
            if (control.choiceValues[i] == std::get<A_long>(value)) {
                instance.set(control.name, {static_cast<double>(i)});
            }
        }
    } else {
        instance.set(control.name, {static_cast<double>(std::get<A_long>(value))});
    }
}

host::ParamValues Reference::valuesOf(TestEffect& instance, double time) const {
    host::ParamValues values;
    for (const openfx::Control& control : controls_) {
        if (control.index == 0) {
            continue;
        }
        const auto& keys = instance.param(control.name).keys;
        auto key = keys.upper_bound(time);
        const std::vector<double>& value = (key == keys.begin() ? key : --key)->second;
        const auto byte = [](double part) { return static_cast<A_u_char>(std::lround(part * 255.0)); };
        switch (control.kind) {
        case openfx::Control::Kind::kNumber:
            values.emplace_back(control.index, value[0]);
            break;
        case openfx::Control::Kind::kColor:
            values.emplace_back(control.index, PF_Pixel{255, byte(value[0]), byte(value[1]), byte(value[2])});
            break;
        case openfx::Control::Kind::kChoice:
            values.emplace_back(control.index, control.choiceValues[static_cast<std::size_t>(value[0])]);
            break;
        default:
            values.emplace_back(control.index, static_cast<A_long>(value[0]));
            break;
        }
    }
    return values;
}

host::Image Reference::render(const host::Image& image, const host::ParamValues& values,
                              PF_RationalScale scale) {
    host::RenderRequest request;
    request.values = values;
    request.downsampleX = request.downsampleY = scale;
    host::Image output;
    const host::RenderResult result = session_.render(image, output, request);
    if (!result.ok()) {
        throw std::runtime_error("the reference failed with code " + std::to_string(result.code));
    }
    return output;
}

host::Image drawing(PF_PixelFormat format, int width, int height) {
    host::Image image(format, width, height);
    if (format == PF_PixelFormat_ARGB32) {
        paint<PF_Pixel>(image, [](A_u_char part) { return part; });
    } else if (format == PF_PixelFormat_ARGB64) {
        paint<PF_Pixel16>(image,
                          [](A_u_char part) { return static_cast<A_u_short>((part * 32768 + 127) / 255); });
    } else {
        paint<PF_PixelFloat>(image, [](A_u_char part) { return static_cast<float>(part) / 255.0F; });
    }
    return image;
}

void chooseColours(TestEffect& instance) {
    const auto choose = [&instance](const char* name, const PF_Pixel& color) {
        instance.set(name, {color.red / 255.0, color.green / 255.0, color.blue / 255.0});
    };
    choose("baseColor1", kPalette[0]);
    choose("process1Color", kPalette[1]);
    instance.set("baseBlurAmount", {6.0});
    instance.set("process1BoundaryBlur", {9.0});
}

} // namespace kovalune::test
