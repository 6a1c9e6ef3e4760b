#include "render/selfcheck/GoldenScene.h"

#include "render/selfcheck/Random.h"

#include <array>
#include <variant>

namespace kovalune::selfcheck {
namespace {

constexpr std::array kFormats = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128};
constexpr std::array kViews = {1, 3, 4, 5, 6, 7, 8};

struct Size {
    int32_t width;
    int32_t height;
};
constexpr std::array kSizes = {Size{1, 1}, Size{7, 5}, Size{33, 20}, Size{64, 48}, Size{97, 61}};

// ---- Text

/// Values are multiples of a quarter.
std::string numberText(double value) {
    constexpr std::array kParts = {"", ".25", ".5", ".75"};
    const auto quarters = static_cast<int64_t>(value * 4.0);
    return std::to_string(quarters / 4) + kParts[static_cast<std::size_t>(quarters % 4)];
}

std::string colourText(const PF_Pixel& colour) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const uint8_t channel : {colour.red, colour.green, colour.blue}) {
        text += kDigits[channel >> 4];
        text += kDigits[channel & 15];
    }
    return text;
}

std::string valueText(const host::ParamValue& value) {
    if (const auto* const number = std::get_if<double>(&value)) {
        return numberText(*number);
    }
    if (const auto* const whole = std::get_if<A_long>(&value)) {
        return std::to_string(*whole);
    }
    return colourText(std::get<PF_Pixel>(value));
}

const char* depthText(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32 ? "8" : format == PF_PixelFormat_ARGB64 ? "16" : "32";
}

/// Nothing where the frame is no proxy, one factor where both are the same.
std::string scalesText(const GoldenScene& scene) {
    const auto textOf = [](const PF_RationalScale& scale) {
        return std::to_string(scale.num) + '/' + std::to_string(scale.den);
    };
    const std::string across = textOf(scene.scaleX);
    const std::string down = textOf(scene.scaleY);
    if (across == down) {
        return across == "1/1" ? "" : " scale=" + across;
    }
    return " scale=" + across + ',' + down;
}

std::string frameText(const GoldenScene& scene) {
    constexpr std::array kViewNames = {"",          "Normal",    "",          "Extract",  "Base",
                                       "Process-1", "Process-2", "Process-3", "Process-4"};
    std::string text = scene.flow == host::RenderFlow::kSmart ? " smart " : " legacy ";
    text += kViewNames[static_cast<std::size_t>(scene.view)];
    text += scalesText(scene);
    if (scene.rect) {
        text += " rect=" + std::to_string(scene.rect->left) + ',' + std::to_string(scene.rect->top) + ',' +
                std::to_string(scene.rect->right) + ',' + std::to_string(scene.rect->bottom);
    }
    if (scene.iterations != 0) {
        text += " iterations=" + std::to_string(scene.iterations);
    }
    text += " |";
    const char* gap = " ";
    for (const auto& [label, value] : scene.settings) {
        text += gap + label + '=' + valueText(value);
        gap = "; ";
    }
    return text;
}

std::string smoothText(const SmoothOptions& options) {
    std::string text = " | threshold=" + std::to_string(options.threshold);
    if (options.strength != SmoothOptions().strength) {
        text += "; strength=" + std::to_string(options.strength);
    }
    if (options.curve != 0) {
        text += "; curve=" + std::to_string(options.curve);
    }
    if (options.key != SmoothKey::kNone) {
        text += std::string("; key=") + (options.key == SmoothKey::kRemove ? "remove," : "only,") +
                std::to_string(options.keyRed) + ',' + std::to_string(options.keyGreen) + ',' +
                std::to_string(options.keyBlue) + ',' + std::to_string(options.keyTolerance);
    }
    return text;
}

// ---- Settings

class SettingsMaker {
public:
    SettingsMaker(GoldenScene& scene, const GoldenPalette& palette, Random& random)
        : scene_(scene), palette_(palette), random_(random) {}

    /// Everything may be anything, with small amounts more often than large ones.
    void randomise() {
        amount("Blur Amount", 30);
        repeat("Blur Repeat Num");
        checkBox("Keep Division", 70);
        for (int number = 1; number <= 4; ++number) {
            const std::string place = std::to_string(number);
            if (number == 1 || random_.chance(50)) {
                set("Enable " + place, A_long{number == 1 && random_.chance(10) ? 0 : 1});
                colour("Color " + place);
                range("Color " + place + " Range");
            }
        }
        for (int number = 1; number <= 4; ++number) {
            randomiseStage(std::to_string(number) + " : ", number);
        }
    }

    /// All stages on, each with these amounts.
    void fill(double amountOfAll, A_long repeats) {
        set("Blur Amount", amountOfAll);
        set("Blur Repeat Num", repeats);
        set("Color 1", palette_[4]);
        for (int number = 1; number <= 4; ++number) {
            const std::string prefix = std::to_string(number) + " : ";
            set(prefix + "Enable Process", A_long{1});
            set(prefix + "Color", palette_[static_cast<std::size_t>(number)]);
            set(prefix + "Boundary Blur", amountOfAll);
            set(prefix + "Blur Repeat Num", repeats);
        }
    }

    void keepAll(double bias) {
        for (int number = 1; number <= 4; ++number) {
            const std::string prefix = std::to_string(number) + " : ";
            set(prefix + "Boundary Bias", bias);
            if (number > 1) {
                set(prefix + "Keep Process", A_long{1});
            }
        }
    }

    void set(const std::string& label, host::ParamValue value) { scene_.settings.push_back({label, value}); }

private:
    void randomiseStage(const std::string& prefix, int number) {
        const bool isOn = random_.chance(60);
        if (isOn != (number == 1)) {
            set(prefix + "Enable Process", A_long{isOn ? 1 : 0});
        }
        if (!isOn) {
            return;
        }
        colour(prefix + "Color");
        range(prefix + "Color Range");
        amount(prefix + "Boundary Blur", 40);
        repeat(prefix + "Blur Repeat Num");
        if (random_.chance(50)) {
            set(prefix + "Boundary Bias", random_.below(401) / 4.0);
        }
        checkBox(prefix + "Keep Division", 70);
        if (number > 1) {
            checkBox(prefix + "Keep Process", 50);
        }
    }

    void amount(const std::string& label, int usual) {
        const int most = random_.chance(85) ? usual : 1000;
        set(label, random_.chance(10) ? 0.0 : random_.below(4 * most + 1) / 4.0);
    }
    void repeat(const std::string& label) {
        set(label, A_long{random_.between(1, random_.chance(80) ? 4 : 10)});
    }
    void range(const std::string& label) {
        if (random_.chance(50)) {
            set(label, random_.below(random_.chance(80) ? 40 : 401) / 4.0);
        }
    }
    void colour(const std::string& label) {
        PF_Pixel chosen =
            palette_[static_cast<std::size_t>(random_.below(static_cast<int>(palette_.size())))];
        chosen.alpha = 255;
        set(label, chosen);
    }
    void checkBox(const std::string& label, int percentOn) {
        set(label, A_long{random_.chance(percentOn) ? 1 : 0});
    }

    GoldenScene& scene_;
    const GoldenPalette& palette_;
    Random& random_;
};

// ---- Lists of scenes

class SceneList {
public:
    std::vector<GoldenScene> made() && { return std::move(scenes_); }

    void addRandomFrames() {
        for (const PictureKind kind : kPictureKinds) {
            for (const Size& size : kSizes) {
                for (const PF_PixelFormat format : kFormats) {
                    GoldenScene scene = next(kind, format, size);
                    scene.view = random_.chance(50) ? 1 : kViews[static_cast<std::size_t>(random_.below(7))];
                    scene.flow = random_.chance(70) ? host::RenderFlow::kSmart : host::RenderFlow::kLegacy;
                    if (random_.chance(15)) {
                        scene.scaleX = scene.scaleY = {1, static_cast<A_u_long>(random_.between(2, 4))};
                    }
                    add(scene, [](SettingsMaker& make) { make.randomise(); });
                }
            }
        }
    }

    void addEveryViewOfADrawing() {
        for (const PF_PixelFormat format : kFormats) {
            for (const host::RenderFlow flow : {host::RenderFlow::kSmart, host::RenderFlow::kLegacy}) {
                for (const int32_t view : kViews) {
                    GoldenScene scene = next(PictureKind::kCel, format, {120, 90});
                    scene.view = view;
                    scene.flow = flow;
                    add(scene, [](SettingsMaker& make) { make.fill(9.0, 5); });
                }
            }
        }
    }

    void addAmounts() {
        for (const PF_PixelFormat format : kFormats) {
            for (const double amount :
                 {0.0, 1.0, 5.0, 14.0, 15.0, 29.0, 30.0, 31.0, 63.0, 100.0, 254.75, 1000.0}) {
                for (const A_long repeats : {1, 10}) {
                    const GoldenScene scene = next(PictureKind::kCel, format, {80, 60});
                    add(scene, [&](SettingsMaker& make) { make.fill(amount, repeats); });
                }
            }
        }
    }

    void addDefaults() {
        for (const PF_PixelFormat format : kFormats) {
            for (const PictureKind kind : {PictureKind::kCel, PictureKind::kLines}) {
                const GoldenScene scene = next(kind, format, {301, 203});
                add(scene, [](SettingsMaker& /*make*/) {});
            }
        }
    }

    /// PF_Cmd_RENDER with a part of the world; the other flow asks for a part and gets a picture of its size.
    void addParts() {
        for (const PF_PixelFormat format : kFormats) {
            for (const host::RenderFlow flow : {host::RenderFlow::kSmart, host::RenderFlow::kLegacy}) {
                for (int round = 0; round < 5; ++round) {
                    GoldenScene scene = next(PictureKind::kCel, format, {50, 40});
                    scene.flow = flow;
                    scene.view = kViews[static_cast<std::size_t>(random_.below(7))];
                    const int32_t left = random_.below(30);
                    const int32_t top = random_.below(25);
                    scene.rect = {left, top, left + random_.between(1, 20), top + random_.between(1, 15)};
                    add(scene, [](SettingsMaker& make) { make.randomise(); });
                }
            }
        }
    }

    void addSmoothings() {
        for (const PF_PixelFormat format : kFormats) {
            for (const PictureKind kind : {PictureKind::kCel, PictureKind::kLines, PictureKind::kNoise,
                                           PictureKind::kTransparent, PictureKind::kWild}) {
                for (const SmoothKey key : {SmoothKey::kNone, SmoothKey::kRemove, SmoothKey::kOnly}) {
                    for (const bool asFrames : {true, false}) {
                        GoldenScene scene = next(kind, format, asFrames ? Size{90, 70} : Size{41, 23});
                        scene.what = GoldenScene::What::kSmooth;
                        scene.smooth = optionsFor(scene, key, asFrames);
                        scenes_.push_back(scene);
                        if (!asFrames) {
                            scene.what = GoldenScene::What::kEdgeFlags;
                            scenes_.push_back(scene);
                        }
                    }
                }
            }
        }
    }

    /// Proxies whose factors are no whole parts, or another one down than across.
    void addProxies() {
        struct Scales {
            PF_RationalScale across;
            PF_RationalScale down;
        };
        for (const PF_PixelFormat format : kFormats) {
            for (const Scales& scales : {Scales{{2, 3}, {2, 3}}, Scales{{1, 1}, {1, 4}},
                                         Scales{{1, 3}, {1, 1}}, Scales{{5, 7}, {1, 2}}}) {
                GoldenScene scene = next(PictureKind::kCel, format, {90, 70});
                scene.scaleX = scales.across;
                scene.scaleY = scales.down;
                add(scene, [](SettingsMaker& make) { make.fill(24.0, 3); });
            }
        }
    }

    /// Lines that are longer than what passes work on at once, and pictures of one line.
    void addLongLines() {
        for (const PF_PixelFormat format : kFormats) {
            for (const Size& size : {Size{1400, 6}, Size{6, 1400}, Size{700, 1}, Size{1, 700}}) {
                for (const PictureKind kind : {PictureKind::kCel, PictureKind::kNoise}) {
                    add(next(kind, format, size), [](SettingsMaker& make) { make.randomise(); });
                }
            }
        }
    }

    /// Each stage inside the one before it, with soft edges from the hardest to the softest.
    void addKeptStages() {
        for (const PF_PixelFormat format : kFormats) {
            for (const double bias : {0.0, 25.0, 100.0}) {
                add(next(PictureKind::kCel, format, {110, 80}), [&](SettingsMaker& make) {
                    make.fill(40.0, 2);
                    make.keepAll(bias);
                });
            }
        }
    }

private:
    GoldenScene next(PictureKind kind, PF_PixelFormat format, const Size& size) {
        GoldenScene scene;
        scene.picture = kind;
        scene.format = format;
        scene.width = size.width;
        scene.height = size.height;
        scene.seed = ++seed_;
        if (kind == PictureKind::kSeed) {
            scene.iterations = random_.between(1, 9);
        }
        return scene;
    }

    template <class Make>
    void add(GoldenScene scene, const Make& make) {
        const GoldenPicture picture =
            drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed);
        SettingsMaker maker(scene, picture.palette, random_);
        make(maker);
        scenes_.push_back(std::move(scene));
    }

    SmoothOptions optionsFor(const GoldenScene& scene, SmoothKey key, bool asFrames) {
        SmoothOptions options;
        options.key = key;
        if (key != SmoothKey::kNone) {
            const PF_Pixel colour =
                drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed)
                    .palette[0];
            options.keyRed = colour.red;
            options.keyGreen = colour.green;
            options.keyBlue = colour.blue;
            options.keyTolerance = random_.between(1, 60);
        }
        if (!asFrames) {
            options.threshold = random_.below(256);
            options.strength = random_.between(0, 100);
            options.curve = random_.between(-100, 100);
        }
        return options;
    }

    Random random_{20260};
    uint64_t seed_ = 0;
    std::vector<GoldenScene> scenes_;
};

} // namespace

std::string GoldenScene::text() const {
    constexpr std::array kNames = {"frame", "smooth", "edges"};
    const std::string start = std::string(kNames[static_cast<std::size_t>(what)]) + ' ' + nameOf(picture) +
                              '-' + std::to_string(seed) + ' ' + std::to_string(width) + 'x' +
                              std::to_string(height) + ' ' + depthText(format);
    return start + (what == What::kFrame ? frameText(*this) : smoothText(smooth));
}

std::vector<GoldenScene> goldenScenes() {
    SceneList list;
    list.addDefaults();
    list.addEveryViewOfADrawing();
    list.addAmounts();
    list.addRandomFrames();
    list.addParts();
    list.addSmoothings();
    list.addProxies();
    list.addLongLines();
    list.addKeptStages();
    return std::move(list).made();
}

GoldenScene randomFrame(uint64_t seed, int32_t mostSide) {
    Random random(seed);
    GoldenScene scene;
    scene.picture = kPictureKinds[static_cast<std::size_t>(random.below(kPictureKinds.size()))];
    scene.format = kFormats[static_cast<std::size_t>(random.below(kFormats.size()))];
    scene.width = random.between(1, mostSide);
    scene.height = random.between(1, mostSide);
    scene.seed = seed;
    scene.view = random.chance(50) ? 1 : kViews[static_cast<std::size_t>(random.below(kViews.size()))];
    scene.flow = random.chance(70) ? host::RenderFlow::kSmart : host::RenderFlow::kLegacy;
    scene.scaleX = scene.scaleY = {1, static_cast<A_u_long>(random.chance(15) ? random.between(2, 4) : 1)};
    scene.iterations = random.between(1, 9);
    const GoldenPicture picture =
        drawGoldenPicture(scene.picture, scene.format, scene.width, scene.height, scene.seed);
    SettingsMaker(scene, picture.palette, random).randomise();
    return scene;
}

} // namespace kovalune::selfcheck
