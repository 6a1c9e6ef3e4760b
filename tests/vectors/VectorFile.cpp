#include "tests/vectors/VectorFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace kovalune::test {
namespace {

using host::Image;

static_assert(std::endian::native == std::endian::little, "the files' order of bytes is taken as it is");

std::ifstream openFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return file;
}

PF_PixelFormat formatNamed(const std::string& name) {
    if (name == "argb") {
        return PF_PixelFormat_ARGB32;
    }
    if (name == "ae16") {
        return PF_PixelFormat_ARGB64;
    }
    if (name == "ae32") {
        return PF_PixelFormat_ARGB128;
    }
    throw std::runtime_error("unknown pixel format " + name);
}

template <class Number>
Number number(const std::string& text) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error("not a number: " + text);
    }
    return value;
}

PF_RationalScale fraction(const std::string& text) {
    const std::size_t slash = text.find('/');
    return {number<A_long>(text.substr(0, slash)), number<A_u_long>(text.substr(slash + 1))};
}

PF_Pixel color(const std::string& text) {
    std::istringstream channels(text);
    std::array<A_u_char, 3> rgb = {};
    for (A_u_char& channel : rgb) {
        std::string part;
        std::getline(channels, part, ',');
        channel = number<A_u_char>(part);
    }
    return {255, rgb[0], rgb[1], rgb[2]};
}

host::ParamValue valueFor(const PF_ParamDef& param, const std::string& text) {
    switch (param.param_type) {
    case PF_Param_FLOAT_SLIDER:
        return number<double>(text);
    case PF_Param_COLOR:
        return color(text);
    default:
        return number<A_long>(text);
    }
}

template <class Pixel>
std::string differenceAt(const Image& actual, const Image& expected, A_long x, A_long y) {
    const Pixel& a = actual.at<Pixel>(x, y);
    const Pixel& e = expected.at<Pixel>(x, y);
    std::ostringstream text;
    text.precision(17);
    text << "pixel (" << x << ", " << y << "): is " << +a.alpha << ' ' << +a.red << ' ' << +a.green << ' '
         << +a.blue << ", should be " << +e.alpha << ' ' << +e.red << ' ' << +e.green << ' ' << +e.blue;
    return text.str();
}

} // namespace

Image readPicture(const std::filesystem::path& path) {
    std::ifstream file = openFile(path);
    std::string line;
    std::getline(file, line);
    std::istringstream head(line);
    std::string magic;
    std::string format;
    A_long width = 0;
    A_long height = 0;
    if (!(head >> magic >> format >> width >> height) || magic != "kovalune-world") {
        throw std::runtime_error("not a picture: " + path.string());
    }
    Image image(formatNamed(format), width, height);
    for (A_long y = 0; y < height; ++y) {
        file.read(static_cast<char*>(static_cast<void*>(image.row(y))),
                  static_cast<std::streamsize>(image.rowBytes()));
    }
    if (!file || file.peek() != std::ifstream::traits_type::eof()) {
        throw std::runtime_error("wrong length: " + path.string());
    }
    return image;
}

std::map<std::string, std::string> readSettings(const std::filesystem::path& path) {
    std::ifstream file = openFile(path);
    std::map<std::string, std::string> settings;
    std::string line;
    while (std::getline(file, line)) {
        if (line.starts_with('#')) {
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) {
            throw std::runtime_error("line without '=' in " + path.string() + ": " + line);
        }
        settings[line.substr(0, equals)] = line.substr(equals + 1);
    }
    return settings;
}

int FrameVector::iterations() const {
    return number<int>(settings.at("iterations"));
}

host::RenderRequest FrameVector::request() const {
    host::RenderRequest request;
    request.downsampleX = fraction(settings.at("downsample_x"));
    request.downsampleY = fraction(settings.at("downsample_y"));
    return request;
}

void FrameVector::applyTo(host::Session& session) const {
    for (const auto& [key, text] : settings) {
        if (key == "iterations" || key == "downsample_x" || key == "downsample_y") {
            continue;
        }
        const auto index = session.findParam(key);
        if (!index) {
            throw std::runtime_error("no parameter " + key);
        }
        session.setValue(*index, valueFor(session.params().at(static_cast<std::size_t>(*index)), text));
    }
}

FrameVector readFrameVector(const std::filesystem::path& folder) {
    return {folder.filename().string(), readPicture(folder / "input.kvw"),
            readPicture(folder / "expected.kvw"), readSettings(folder / "settings.txt")};
}

std::vector<std::string> vectorNames(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_directory()) {
            names.push_back(entry.path().filename().string());
        }
    }
    if (names.empty()) {
        throw std::runtime_error("no vectors in " + folder.string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string firstDifference(const Image& actual, const Image& expected) {
    if (actual.format() != expected.format() || actual.width() != expected.width() ||
        actual.height() != expected.height()) {
        return "format or size differ";
    }
    const auto pixelBytes = static_cast<std::ptrdiff_t>(host::bytesPerPixel(actual.format()));
    for (A_long y = 0; y < actual.height(); ++y) {
        const std::byte* const a = actual.row(y);
        const std::byte* const end = a + actual.rowBytes();
        const auto differing = std::mismatch(a, end, expected.row(y)).first;
        if (differing == end) {
            continue;
        }
        const auto x = static_cast<A_long>((differing - a) / pixelBytes);
        switch (actual.format()) {
        case PF_PixelFormat_ARGB32:
            return differenceAt<PF_Pixel>(actual, expected, x, y);
        case PF_PixelFormat_ARGB64:
            return differenceAt<PF_Pixel16>(actual, expected, x, y);
        default:
            return differenceAt<PF_PixelFloat>(actual, expected, x, y);
        }
    }
    return {};
}

} // namespace kovalune::test
