#include "tests/vectors/VectorWriter.h"

#include "tests/reference/PlainProcess.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace kovalune::test {
namespace {

using host::Image;

[[noreturn]] void failFor(const std::string& label, const std::string& text) {
    throw std::runtime_error("'" + label + "' cannot be '" + text + "'");
}

template <class Number>
void setNumber(Number& field, const std::string& label, const std::string& text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() ||
        static_cast<double>(static_cast<Number>(value)) != value) {
        failFor(label, text);
    }
    field = static_cast<Number>(value);
}

void setColor(PF_Pixel& field, const std::string& label, const std::string& text) {
    std::istringstream parts(text);
    field = {255, 0, 0, 0};
    for (A_u_char* channel : {&field.red, &field.green, &field.blue}) {
        std::string part;
        std::getline(parts, part, ',');
        setNumber(*channel, label, part);
    }
    if (!parts.eof()) {
        failFor(label, text);
    }
}

/// The settings under their labels; each is taken once.
class Labels {
public:
    explicit Labels(std::map<std::string, std::string> settings) : settings_(std::move(settings)) {
        for (const char* ofHost : {"iterations", "downsample_x", "downsample_y"}) {
            settings_.erase(ofHost);
        }
    }

    template <class Number>
    void number(const std::string& label, Number& field) {
        setNumber(field, label, take(label));
    }
    void color(const std::string& label, ColorEntry& entry) {
        setColor(entry.color, label, take(label));
        number(label + " Range", entry.range);
    }

    void checkAllTaken() const {
        if (!settings_.empty()) {
            throw std::runtime_error("the effect has no setting '" + settings_.begin()->first + "'");
        }
    }

private:
    std::string take(const std::string& label) {
        auto node = settings_.extract(label);
        if (node.empty()) {
            throw std::runtime_error("the setting '" + label + "' is missing");
        }
        return std::move(node.mapped());
    }

    std::map<std::string, std::string> settings_;
};

RenderSettings renderSettings(const FrameVector& vector) {
    Labels labels(vector.settings);
    RenderSettings settings;
    settings.extentRect = {.top = 0,
                           .left = 0,
                           .bottom = static_cast<int16_t>(vector.input.height()),
                           .right = static_cast<int16_t>(vector.input.width())};
    labels.number("View", settings.view);
    StageSettings& base = settings.stages[0];
    labels.number("Blur Amount", base.blurAmount);
    labels.number("Blur Repeat Num", base.repeat);
    labels.number("Keep Division", base.keepDivision);
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        labels.number("Enable " + number, base.colors[i].enable);
        labels.color("Color " + number, base.colors[i]);
    }
    for (int i = 1; i <= 4; ++i) {
        const std::string stage = std::to_string(i) + " : ";
        StageSettings& process = settings.stages[i];
        labels.number(stage + "Enable Process", process.enableProcess);
        labels.color(stage + "Color", process.colors[0]);
        labels.number(stage + "Boundary Blur", process.boundaryBlur);
        labels.number(stage + "Blur Repeat Num", process.repeat);
        labels.number(stage + "Boundary Bias", process.boundaryBias);
        labels.number(stage + "Keep Division", process.keepDivision);
        if (i > 1) {
            labels.number(stage + "Keep Process", process.keepProcess);
        }
    }
    labels.checkAllTaken();
    return settings;
}

/// Calls `visit` with the picture's and the image's pixel of every place.
template <class Pixel, class Picture, class Place, class Visit>
void forEachPixel(Picture& picture, Place& image, const Visit& visit) {
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            visit(picture.at(x, y), image.template at<Pixel>(x, y));
        }
    }
}

template <class Visit, class Picture, class Place>
void forEachPixelOfFormat(Picture& picture, Place& image, const Visit& visit) {
    switch (image.format()) {
    case PF_PixelFormat_ARGB32:
        return forEachPixel<PF_Pixel>(picture, image, visit);
    case PF_PixelFormat_ARGB64:
        return forEachPixel<PF_Pixel16>(picture, image, visit);
    default:
        return forEachPixel<PF_PixelFloat>(picture, image, visit);
    }
}

PlainPicture plainOf(const Image& image) {
    PlainPicture picture(image.format(), image.width(), image.height());
    const auto read = [](PlainPixel& plain, const auto& pixel) {
        plain = {static_cast<double>(pixel.alpha), static_cast<double>(pixel.red),
                 static_cast<double>(pixel.green), static_cast<double>(pixel.blue)};
    };
    forEachPixelOfFormat<decltype(read)>(picture, image, read);
    return picture;
}

Image imageOf(const PlainPicture& picture) {
    Image image(picture.format, picture.width, picture.height);
    const auto write = [](const PlainPixel& plain, auto& pixel) {
        using Channel = std::remove_cvref_t<decltype(pixel.alpha)>;
        pixel = {static_cast<Channel>(plain.alpha), static_cast<Channel>(plain.red),
                 static_cast<Channel>(plain.green), static_cast<Channel>(plain.blue)};
    };
    forEachPixelOfFormat<decltype(write)>(picture, image, write);
    return image;
}

const char* nameOf(PF_PixelFormat format) {
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return "argb";
    case PF_PixelFormat_ARGB64:
        return "ae16";
    default:
        return "ae32";
    }
}

void writeFile(const std::filesystem::path& path, const std::function<void(std::ostream&)>& write) {
    std::ofstream file(path, std::ios::binary);
    write(file);
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

void writePicture(const std::filesystem::path& path, const Image& image) {
    writeFile(path, [&](std::ostream& file) {
        file << "kovalune-world " << nameOf(image.format()) << ' ' << image.width() << ' ' << image.height()
             << '\n';
        for (A_long y = 0; y < image.height(); ++y) {
            file.write(static_cast<const char*>(static_cast<const void*>(image.row(y))),
                       static_cast<std::streamsize>(image.rowBytes()));
        }
    });
}

} // namespace

Image referenceFrame(const FrameVector& vector) {
    const RenderSettings settings = renderSettings(vector);
    const host::RenderRequest request = vector.request();
    const auto ratio = [](const PF_RationalScale& scale) {
        return static_cast<double>(scale.num) / static_cast<double>(scale.den);
    };
    const double scale = std::min(ratio(request.downsampleX), ratio(request.downsampleY));
    const PlainRendered rendered =
        plainRender({.settings = settings, .iterations = vector.iterations(), .scale = scale, .fault = {}},
                    plainOf(vector.input));
    if (rendered.err != PF_Err_NONE) {
        throw std::runtime_error("the reference frame ends with code " + std::to_string(rendered.err));
    }
    return imageOf(rendered.output);
}

void writeFrameVector(const std::filesystem::path& folder, const FrameVector& vector) {
    std::error_code error;
    if (!std::filesystem::create_directory(folder, error)) {
        throw std::runtime_error("cannot make the folder " + folder.string() + ": " +
                                 (error ? error.message() : "it is there already"));
    }
    try {
        writePicture(folder / "input.kvw", vector.input);
        writePicture(folder / "expected.kvw", vector.expected);
        writeFile(folder / "settings.txt", [&](std::ostream& file) {
            file << kOriginLine << '\n';
            for (const auto& [label, value] : vector.settings) {
                file << label << '=' << value << '\n';
            }
        });
    } catch (const std::exception&) {
        std::filesystem::remove_all(folder);
        throw;
    }
}

} // namespace kovalune::test
