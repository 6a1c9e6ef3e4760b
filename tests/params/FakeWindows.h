// A window system for one test, in place of the real one: it notes what dialogs ask of it, and shows a dialog by handing
// the request to the test.
#pragma once

#include "effect/platform/WindowCalls.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::test {

class FakeWindows {
public:
    FakeWindows() : before_(platform::windowCalls()) {
        current() = this;
        platform::windowCalls() = {
            [](const platform::DialogRequest& request) -> intptr_t {
                current()->requests.push_back(request);
                return current()->show ? current()->show(request) : current()->result;
            },
            [](platform::Window window, intptr_t dialogResult) {
                current()->note("end " + nameOf(window) + ' ' + std::to_string(dialogResult));
            },
            [](platform::Window window) -> platform::Window { return current()->parents[window]; },
            [](platform::Window window, platform::WindowRect& rect) {
                const auto found = current()->rects.find(window);
                if (found == current()->rects.end()) {
                    return false;
                }
                rect = found->second;
                return true;
            },
            [](platform::Window window, int32_t x, int32_t y, int32_t width, int32_t height) {
                current()->note("move " + nameOf(window) + ' ' + std::to_string(x) + ',' + std::to_string(y) +
                                ' ' + std::to_string(width) + 'x' + std::to_string(height));
            },
            [](platform::Window window, int32_t id) { return controlOf(window, id); },
            [](platform::Window window, const char* text) {
                current()->note("text " + nameOf(window) + ' ' + text);
            },
            [](platform::Window window, bool enabled) {
                current()->note(std::string(enabled ? "enable " : "disable ") + nameOf(window));
            },
        };
    }
    FakeWindows(const FakeWindows&) = delete;
    FakeWindows& operator=(const FakeWindows&) = delete;
    ~FakeWindows() {
        platform::windowCalls() = before_;
        current() = nullptr;
    }

    /// A window of the test's; numbers are small and even.
    static platform::Window window(uintptr_t number) { return reinterpret_cast<platform::Window>(number); }
    static platform::Window controlOf(platform::Window dialog, int32_t id) {
        return window(reinterpret_cast<uintptr_t>(dialog) + static_cast<uintptr_t>(id) * 1000);
    }

    intptr_t result = 0;                                          ///< of every dialog, unless `show` is there
    std::function<intptr_t(const platform::DialogRequest&)> show; ///< plays the dialog
    std::map<platform::Window, platform::Window> parents;
    std::map<platform::Window, platform::WindowRect> rects;

    std::vector<platform::DialogRequest> requests;
    std::vector<std::string> calls; ///< in order, windows by their numbers

private:
    static FakeWindows*& current() {
        static FakeWindows* instance = nullptr;
        return instance;
    }
    static std::string nameOf(platform::Window window) {
        return std::to_string(reinterpret_cast<uintptr_t>(window));
    }
    void note(std::string call) { calls.push_back(std::move(call)); }

    const platform::WindowCalls before_;
};

} // namespace kovalune::test
