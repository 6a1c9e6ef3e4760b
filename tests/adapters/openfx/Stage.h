// A host with one instance on it, its pictures and the reference beside it.
#pragma once

#include "tests/adapters/openfx/Reference.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace kovalune::test {

class Stage {
public:
    explicit Stage(TestHostOptions options = {}, const std::string& context = openfx::name::kContextFilter)
        : host(std::move(options)) {
        if (!host.start(context)) {
            throw std::runtime_error("the plug-in does not start");
        }
        instance = host.makeInstance(context);
        if (host.create(*instance) != openfx::kOk) {
            throw std::runtime_error("no instance");
        }
    }
    ~Stage() {
        instance->clip("Source").picture = instance->clip("Output").picture = nullptr;
        EXPECT_EQ(host.destroy(*instance), openfx::kOk);
        EXPECT_EQ(host.unload(), openfx::kOk);
        EXPECT_EQ(host.faults(), std::vector<std::string>{});
        EXPECT_EQ(host.imagesOut(), 0);
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// With the whole output as the window, unless the call has another.
    openfx::Status render(TestPicture* source, TestPicture& output, RenderCall call = {}) {
        if (call.window.x1 == call.window.x2) {
            call.window = output.bounds();
        }
        instance->clip("Source").picture = source;
        instance->clip("Output").picture = &output;
        const openfx::Status status = host.render(*instance, call);
        EXPECT_TRUE(output.isGuardIntact());
        EXPECT_TRUE(source == nullptr || source->isUntouched());
        return status;
    }

    /// What the reference makes of the same picture.
    host::Image expected(const TestPicture& source, PF_RationalScale scale = {1, 1}) {
        return reference.render(source.image(), reference.valuesOf(*instance), scale);
    }

    TestHost host;
    std::unique_ptr<TestEffect> instance;
    Reference reference;
};

inline constexpr const char* kDepths[] = {"OfxBitDepthByte", "OfxBitDepthShort", "OfxBitDepthFloat"};

inline PF_PixelFormat formatOfDepth(const std::string& depth) {
    return depth == kDepths[0]   ? PF_PixelFormat_ARGB32
           : depth == kDepths[1] ? PF_PixelFormat_ARGB64
                                 : PF_PixelFormat_ARGB128;
}

/// The drawing in this form.
inline TestPicture drawn(const PictureForm& form, int width, int height) {
    TestPicture picture(form, width, height);
    picture.fill(drawing(formatOfDepth(form.depth), width, height));
    return picture;
}

} // namespace kovalune::test
