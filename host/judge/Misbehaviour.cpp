#include "host/judge/Misbehaviour.h"

#include "host/HostError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kovalune::host::judge {

void Misbehaviour::check() const {
    if (!isLayoutNumber(options_.rowGuard)) {
        throw HostError("rowGuard must be a multiple of 4 from 0 to 65536");
    }
    if (options_.extraRecordBytes < 0 || options_.extraRecordBytes > 32) {
        throw HostError("extraRecordBytes must be 0 to 32");
    }
}

SideLimits Misbehaviour::sides() const {
    SideLimits sides;
    if (options_.allowEmpty) {
        sides.smallest = 0;
    }
    if (options_.allowHuge) {
        sides.largest = std::numeric_limits<A_long>::max();
    }
    return sides;
}

bool Misbehaviour::offersSuite(std::string_view name, std::int32_t version) const {
    return std::none_of(
        options_.withheldSuites.begin(), options_.withheldSuites.end(),
        [&](const SuiteName& suite) { return suite.name == name && suite.version == version; });
}

PF_LRect Misbehaviour::outputPlace(const PF_LRect& place) const {
    return {place.left, place.top, place.right + options_.outputWidthDelta,
            place.bottom + options_.outputHeightDelta};
}

PF_PixelFormat Misbehaviour::formatTold(PF_PixelFormat format) const {
    return options_.forcePixelFormat.value_or(format);
}

void Misbehaviour::firstParamFilled(PF_ParamDef& param) const {
    if (options_.firstLayerWord) {
        std::memcpy(&param.u, &*options_.firstLayerWord, sizeof *options_.firstLayerWord);
    }
}

void Misbehaviour::recordHandedOver(void* end) const {
    constexpr int kPattern = 0xA5;
    std::memset(end, kPattern, static_cast<std::size_t>(options_.extraRecordBytes));
}

} // namespace kovalune::host::judge
