// The memory of the PNG library, which reports a lack of it as any other error: this tells them apart.
#pragma once

#include <cstdlib>
#include <png.h>

namespace kovalune::pictures {

class PngMemory {
public:
    /// Whether any request was turned down.
    bool refused() const { return refused_; }

    static png_voidp take(png_structp png, png_alloc_size_t bytes) {
        void* const memory = std::malloc(bytes);
        if (memory == nullptr) {
            static_cast<PngMemory*>(png_get_mem_ptr(png))->refused_ = true;
        }
        return memory;
    }

    static void giveBack(png_structp, png_voidp memory) { std::free(memory); }

private:
    bool refused_ = false;
};

} // namespace kovalune::pictures
