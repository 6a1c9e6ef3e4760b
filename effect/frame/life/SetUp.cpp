// The operations of the effect's life: about text, flags, registration of the parameters.

#include "effect/frame/BaseFilter.h"
#include "effect/frame/EffectVersion.h"
#include "effect/frame/texts/Language.h"
#include "effect/frame/texts/NoticeTable.h"
#include "effect/params/DefaultsFile.h"
#include "effect/params/DefaultsSource.h"
#include "effect/params/ParamRegistry.h"
#include "effect/platform/Platform.h"
#include "effect/share/AEUtil/HostVersion.h"
#include "effect/share/HostCode.h"

namespace kovalune {
namespace {

PF_Err registerParameters(PF_InData* in, const char* defaultsPath) {
    return paramRegistry().forEach(
        [&](BaseParam& param) { return param.addToHost(in, param.diskId, defaultsPath); });
}

} // namespace

void writeAboutText(PF_InData* in, PF_OutData* out, bool longForm) {
    const auto print = in->utils->ansi.sprintf;
    const char* const noText = "";
    const char* const notice = noticeText(kAboutNotice, currentLanguage());
    if (longForm) {
        print(out->return_msg, "%s %d.%d.%d %s build:%d %s\r\r%s", kEffectName, kVersionMajor, kVersionMinor,
              kVersionBugfix, kStageText, kBuild, noText, notice);
    } else {
        print(out->return_msg, "%s %d.%d.%d %s %s\r\r%s", kEffectName, kVersionMajor, kVersionMinor,
              kVersionBugfix, kStageText, noText, notice);
    }
}

PF_Err BaseFilter::about(PF_InData* in, PF_OutData* out, PF_ParamDef**, PF_LayerDef*) {
    writeAboutText(in, out, platform::shiftKeyDown());
    return PF_Err_NONE;
}

PF_Err BaseFilter::globalSetup(PF_InData*, PF_OutData* out, PF_ParamDef**, PF_LayerDef*) {
    out->my_version = kPackedVersion;
    out->out_flags = kOutFlags;
    out->out_flags2 = kOutFlags2;
    return PF_Err_NONE;
}

PF_Err BaseFilter::paramsSetup(PF_InData* in, PF_OutData* out, PF_ParamDef**, PF_LayerDef*) {
    PF_Err err = PF_Err_NONE;
    if (AEUtil::hostIsOld(in)) {
        paramRegistry().setSectionName("");
        err = registerParameters(in, nullptr);
    } else if (areFactoryDefaultsAsked()) {
        paramRegistry().setSectionName(sectionNameOfThisVersion().c_str());
        err = registerParameters(in, nullptr);
    } else {
        char path[kDefaultsPathBytes];
        ignored(makeDefaultsPath(path)); // an empty path has no values
        paramRegistry().setSectionName(sectionNameOfThisVersion().c_str());
        err = registerParameters(in, path);
    }
    out->num_params = paramRegistry().indexCounter();
    return err;
}

} // namespace kovalune
