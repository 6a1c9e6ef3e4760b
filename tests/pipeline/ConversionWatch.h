// Watches, counts or replaces the host's colour conversion.
#pragma once

#include "host/CallbackTables.h"
#include "tests/support/StrictHost.h"

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace kovalune::test {

/// While it lives, conversions of the host's command go through it. One at a time in a program.
class ConversionWatch {
public:
    using Convert = std::function<PF_Err(const PF_Pixel& color, PF_Fixed* hls)>;

    /// Without `instead`, the host's own conversion answers.
    explicit ConversionWatch(StrictHost& host, Convert instead = {})
        : table_(host.utils()), instead_(std::move(instead)) {
        current() = this;
        table_.colorCB.RGBtoHLS = convert;
    }
    ~ConversionWatch() {
        table_.colorCB.RGBtoHLS = host::utilCallbacks()->colorCB.RGBtoHLS;
        current() = nullptr;
    }
    ConversionWatch(const ConversionWatch&) = delete;
    ConversionWatch& operator=(const ConversionWatch&) = delete;

    int32_t count() const { return static_cast<int32_t>(colors_.size()); }

    /// What was asked for, in the order of arrival.
    const std::vector<PF_Pixel>& colors() const { return colors_; }

private:
    static ConversionWatch*& current() {
        static ConversionWatch* watch = nullptr;
        return watch;
    }

    static PF_Err convert(PF_ProgPtr ref, PF_Pixel* rgb, PF_Fixed* hls) {
        ConversionWatch& watch = *current();
        {
            const std::lock_guard lock(watch.mutex_);
            watch.colors_.push_back(*rgb);
        }
        return watch.instead_ ? watch.instead_(*rgb, hls)
                              : host::utilCallbacks()->colorCB.RGBtoHLS(ref, rgb, hls);
    }

    PF_UtilCallbacks& table_;
    Convert instead_;
    std::mutex mutex_;
    std::vector<PF_Pixel> colors_;
};

} // namespace kovalune::test
