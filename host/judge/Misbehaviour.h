// A host that misbehaves as its options say, for effects that must bear it.
#pragma once

#include "host/HostManners.h"
#include "host/judge/JudgeOptions.h"

namespace kovalune::host::judge {

class Misbehaviour : public HostManners {
public:
    explicit Misbehaviour(const JudgeOptions& options) : options_(options) {}

    void check() const override;
    SideLimits sides() const override;
    bool offersBasicSuite() const override { return !options_.nullBasicSuite; }
    bool offersSuite(std::string_view name, std::int32_t version) const override;
    bool givesInputWorld() const override { return !options_.nullInputWorld; }
    bool givesOutputWorld() const override { return !options_.nullOutputWorld; }
    PF_LRect outputPlace(const PF_LRect& place) const override;
    PF_PixelFormat formatTold(PF_PixelFormat format) const override;
    void firstParamFilled(PF_ParamDef& param) const override;
    void recordHandedOver(void* end) const override;

private:
    const JudgeOptions& options_;
};

} // namespace kovalune::host::judge
