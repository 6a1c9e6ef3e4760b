#include "render/selfcheck/GoldenHash.h"

#include "render/selfcheck/PixelHash.h"

#include <stdexcept>
#include <vector>

namespace kovalune::selfcheck {
namespace {

void addPixel(PixelHash& hash, const PF_Pixel& p) {
    for (const uint8_t channel : {p.alpha, p.red, p.green, p.blue}) {
        hash.add(channel);
    }
}

void addPixel(PixelHash& hash, const PF_Pixel16& p) {
    for (const uint16_t channel : {p.alpha, p.red, p.green, p.blue}) {
        hash.addInteger(channel);
    }
}

void addPixel(PixelHash& hash, const PF_PixelFloat& p) {
    for (const float channel : {p.alpha, p.red, p.green, p.blue}) {
        hash.addFloat(channel);
    }
}

template <class Pixel>
void addPixels(PixelHash& hash, const host::Image& image) {
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            addPixel(hash, image.at<Pixel>(x, y));
        }
    }
}

std::string codeText(PF_Err code) {
    return "code " + std::to_string(code);
}

host::RenderRequest requestOf(const GoldenScene& scene) {
    host::RenderRequest request;
    request.flow = scene.flow;
    request.downsampleX = scene.scaleX;
    request.downsampleY = scene.scaleY;
    if (!scene.rect) {
        return request;
    }
    if (scene.flow == host::RenderFlow::kSmart) {
        request.rect = scene.rect;
    } else {
        PF_Rect hint{};
        hint.left = static_cast<decltype(hint.left)>(scene.rect->left);
        hint.top = static_cast<decltype(hint.top)>(scene.rect->top);
        hint.right = static_cast<decltype(hint.right)>(scene.rect->right);
        hint.bottom = static_cast<decltype(hint.bottom)>(scene.rect->bottom);
        request.extentHint = hint;
    }
    return request;
}

void apply(host::Session& session, const std::string& label, const host::ParamValue& value) {
    const std::optional<int> index = session.findParam(label);
    if (!index) {
        throw std::runtime_error("no control '" + label + "'");
    }
    session.setValue(*index, value);
}

std::string frameHash(const GoldenScene& scene, const host::Image& input, host::EffectModule& module,
                      host::Host& host) {
    host::Session session(host, module);
    if (!session.setupResult().ok()) {
        return codeText(session.setupResult().code);
    }
    apply(session, "View", A_long{scene.view});
    for (const auto& [label, value] : scene.settings) {
        apply(session, label, value);
    }
    host::Image output;
    const host::RenderResult result = session.render(input, output, requestOf(scene));
    return result.ok() ? pictureHash(output) : codeText(result.code);
}

template <class View, class Image>
View viewOf(Image& image) {
    return {image.format(), image.width(), image.height(), static_cast<int32_t>(image.rowBytes()),
            image.row(0)};
}

std::string smoothHash(const GoldenScene& scene, const host::Image& input) {
    host::Image output(input.format(), input.width(), input.height());
    const PF_Err err =
        smoothPicture(viewOf<PictureView>(input), viewOf<WritablePictureView>(output), scene.smooth);
    return err == PF_Err_NONE ? pictureHash(output) : codeText(err);
}

std::string edgesHash(const GoldenScene& scene, const host::Image& input) {
    std::vector<uint8_t> flags(static_cast<std::size_t>(scene.width) *
                               static_cast<std::size_t>(scene.height));
    const PF_Err err = edgeFlags(viewOf<PictureView>(input), scene.smooth, flags);
    if (err != PF_Err_NONE) {
        return codeText(err);
    }
    PixelHash hash;
    for (const uint8_t cell : flags) {
        hash.add(cell);
    }
    return hash.text();
}

} // namespace

std::string pictureHash(const host::Image& image) {
    PixelHash hash;
    hash.addInteger(static_cast<uint32_t>(image.format()));
    hash.addInteger(static_cast<uint32_t>(image.width()));
    hash.addInteger(static_cast<uint32_t>(image.height()));
    switch (image.format()) {
    case PF_PixelFormat_ARGB32:
        addPixels<PF_Pixel>(hash, image);
        break;
    case PF_PixelFormat_ARGB64:
        addPixels<PF_Pixel16>(hash, image);
        break;
    default:
        addPixels<PF_PixelFloat>(hash, image);
        break;
    }
    return hash.text();
}

std::string goldenHash(const GoldenScene& scene, host::EffectModule& module, host::Host& host) {
    const host::Image input =
        drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed).image;
    switch (scene.what) {
    case GoldenScene::What::kSmooth:
        return smoothHash(scene, input);
    case GoldenScene::What::kEdgeFlags:
        return edgesHash(scene, input);
    case GoldenScene::What::kFrame:
        break;
    }
    const int usual = host.options().iterations;
    if (scene.iterations != 0) {
        host.options().iterations = scene.iterations;
    }
    std::string hash = frameHash(scene, input, module, host);
    host.options().iterations = usual;
    return hash;
}

} // namespace kovalune::selfcheck
