#include "tests/pipeline/WorldWatch.h"

#include "host/Image.h"

#include <cstddef>
#include <cstring>

namespace kovalune::test {
namespace {

WorldWatch* current = nullptr;

} // namespace

WorldWatch::WorldWatch(StrictHost& host)
    : host_(host), basicBefore_(host.in()->pica_basicP), basic_(*basicBefore_) {
    current = this;
    basic_.AcquireSuite = acquire;
    host_.in()->pica_basicP = &basic_;
}

WorldWatch::~WorldWatch() {
    host_.in()->pica_basicP = basicBefore_;
    current = nullptr;
}

int32_t WorldWatch::acquire(const char* name, int32_t version, const void** suite) {
    const int32_t answer = current->basicBefore_->AcquireSuite(name, version, suite);
    if (answer == 0 && std::strcmp(name, kPFWorldSuite) == 0 && version == kPFWorldSuiteVersion2) {
        current->hostSuite_ = static_cast<const PFWorldSuite2*>(*suite);
        current->suite_ = {newWorld, disposeWorld, current->hostSuite_->PF_GetPixelFormat};
        *suite = &current->suite_;
    }
    return answer;
}

PF_Err WorldWatch::newWorld(PF_ProgPtr ref, A_long width, A_long height, PF_Boolean clear,
                            PF_PixelFormat format, PF_EffectWorld* world) {
    current->made_.push_back({world, width, height, clear != 0, format});
    const PF_Err err = current->hostSuite_->PF_NewWorld(ref, width, height, clear, format, world);
    if (err == PF_Err_NONE && clear == 0 && current->content_) {
        const auto used = static_cast<std::size_t>(width) * host::bytesPerPixel(format);
        for (A_long y = 0; y < height; ++y) {
            auto* const row = static_cast<uint8_t*>(static_cast<void*>(world->data));
            std::memset(row + std::ptrdiff_t{y} * world->rowbytes, *current->content_, used);
        }
    }
    return err;
}

PF_Err WorldWatch::disposeWorld(PF_ProgPtr ref, PF_EffectWorld* world) {
    current->disposed_.push_back(world);
    return current->hostSuite_->PF_DisposeWorld(ref, world);
}

} // namespace kovalune::test
