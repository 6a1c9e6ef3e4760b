// What frames are to be: the effect in the reference host, in this very process, from the factory's values.
#pragma once

#include "adapters/openfx/Controls.h"
#include "effect/Kovalune.h"
#include "host/Host.h"
#include "host/Session.h"
#include "tests/adapters/openfx/TestHost.h"

#include <string>

namespace kovalune::test {

class Reference {
public:
    Reference();

    host::Session& session() { return session_; }
    const std::vector<openfx::Control>& controls() const { return controls_; }

    /// By the effect's label.
    const openfx::Control& labelled(const std::string& label) const;

    /// A value of the effect's as the host has it.
    void give(TestEffect& instance, const std::string& label, const host::ParamValue& value) const;

    /// All of an instance's values at a time, colours as they are.
    host::ParamValues valuesOf(TestEffect& instance, double time = 0.0) const;

    host::Image render(const host::Image& image, const host::ParamValues& values,
                       PF_RationalScale scale = {1, 1});

private:
    const FactoryDefaultsScope factory_;
    host::Host host_;
    host::Session session_;
    std::vector<openfx::Control> controls_;
};

/// A drawing of flat colours with hard edges, and settings that change much of it.
host::Image drawing(PF_PixelFormat format, int width, int height);
void chooseColours(TestEffect& instance);

} // namespace kovalune::test
