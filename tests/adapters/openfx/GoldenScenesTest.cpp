// Every golden frame through the bundle, at each of the three depths: where the file has its hash, that one, and where it has not, what
// the reference host makes of the same pixels.

#include "render/selfcheck/GoldenHash.h"
#include "render/selfcheck/GoldenScene.h"
#include "render/selfcheck/SelfCheck.h"
#include "tests/adapters/openfx/Stage.h"

namespace kovalune::test {

using namespace openfx;
using namespace selfcheck;

namespace {

std::string depthOf(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32   ? kDepths[0]
           : format == PF_PixelFormat_ARGB64 ? kDepths[1]
                                             : kDepths[2];
}

/// What a scene has that this interface cannot say: another number of iterations, a part of the picture by itself, and 16-bit
/// values above white.
bool hasItsHash(const GoldenScene& scene) {
    const bool isBeyondWhite = scene.picture == PictureKind::kWild && scene.format == PF_PixelFormat_ARGB64;
    return scene.iterations == 0 && !scene.rect && !isBeyondWhite;
}

class GoldenScenes : public testing::TestWithParam<PF_PixelFormat> {
protected:
    void chooseSettings(const GoldenScene& scene) {
        for (TestParam& param : stage_.instance->params) {
            if (param.type != name::kTypeGroup) {
                param.keys = defaults_->param(param.name).keys;
            }
        }
        stage_.reference.give(*stage_.instance, "View", A_long{scene.view});
        for (const auto& [label, value] : scene.settings) {
            stage_.reference.give(*stage_.instance, label, value);
        }
    }

    /// The scene at the tested depth.
    host::Image frameOf(const GoldenScene& scene, host::Image& source) {
        chooseSettings(scene);
        const PictureForm form = {.depth = depthOf(GetParam()),
                                  .padding = scene.width % 3 * 8,
                                  .isTopFirst = scene.seed % 2 == 1,
                                  .left = -scene.width,
                                  .bottom = 7};
        TestPicture picture(form, scene.width, scene.height);
        picture.fill(
            drawGoldenPicture(scene.picture, GetParam(), scene.width, scene.height, scene.seed).image);
        source = picture.image();
        TestPicture output(form, scene.width, scene.height);
        const double scale = 1.0 / scene.wholeScale();
        EXPECT_EQ(stage_.render(&picture, output, {.scaleX = scale, .scaleY = scale}), kOk);
        return output.image();
    }

    Stage stage_{TestHostOptions{.withheld = {"OfxMultiThreadSuite1"}}};
    const std::unique_ptr<TestEffect> defaults_ = stage_.host.makeInstance();
};

TEST_P(GoldenScenes, AreTheFilesOrTheReferences) {
    const std::vector<GoldenScene> scenes = goldenScenes();
    const std::span<const std::string_view> lines = goldenLines();
    ASSERT_EQ(lines.size(), scenes.size());
    int fromTheFile = 0;
    int frames = 0;
    for (std::size_t i = 0; i < scenes.size() && !HasFailure(); ++i) {
        const GoldenScene& scene = scenes[i];
        if (scene.what != GoldenScene::What::kFrame || scene.wholeScale() == 0) {
            continue;
        }
        ++frames;
        host::Image source;
        const host::Image frame = frameOf(scene, source);
        if (scene.format == GetParam() && hasItsHash(scene)) {
            EXPECT_EQ(pictureHash(frame), lines[i].substr(0, 32)) << scene.text();
            ++fromTheFile;
        } else {
            const host::Image expected =
                stage_.reference.render(source, stage_.reference.valuesOf(*stage_.instance), scene.scaleX);
            EXPECT_EQ(pictureHash(frame), pictureHash(expected)) << scene.text();
        }
    }
    EXPECT_GT(frames, 250);
    EXPECT_GT(fromTheFile, 60);
}

INSTANTIATE_TEST_SUITE_P(Depth, GoldenScenes,
                         testing::Values(PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                         PF_PixelFormat_ARGB128),
                         [](const auto& tested) { return depthOf(tested.param); });

} // namespace
} // namespace kovalune::test
