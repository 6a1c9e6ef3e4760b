#include "render/Settings.h"

#include "hostapi/Constants.h"
#include "render/ParamLabel.h"
#include "render/ParamText.h"
#include "text/AsciiText.h"

namespace kovalune::render {

int setParameter(host::Session& session, std::string_view label, std::string_view value) {
    const int index = findSettable(session.params(), text::trimmed(label));
    const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
    session.setValue(index, parseValue(def, session.choices(index), value));
    return index;
}

std::optional<RefusedChoice> refusedChoice(const host::Session& session) {
    const int count = static_cast<int>(session.params().size());
    for (int index = 1; index < count; ++index) {
        const PF_ParamDef& def = session.params()[static_cast<std::size_t>(index)];
        if (def.param_type != PF_Param_POPUP) {
            continue;
        }
        const std::string reason = choiceRefusal(def, session.choices(index), session.value(index));
        if (!reason.empty()) {
            return RefusedChoice{index, reason};
        }
    }
    return std::nullopt;
}

} // namespace kovalune::render
