// A frei0r host of the tests' own: the finished file, loaded as a host loads it, and its instances.
#pragma once

#include "adapters/frei0r/Interface.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::test {

/// R, G, B, A in memory.
struct Rgba {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t alpha;

    friend bool operator==(const Rgba&, const Rgba&) = default;
};

struct RgbaPicture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<Rgba> pixels = {}; ///< rows one after the other, the top one first

    friend bool operator==(const RgbaPicture&, const RgbaPicture&) = default;
};

/// Blocks of flat colours, see-through ones among them.
RgbaPicture blocks(unsigned width, unsigned height);

/// The file, from dlopen to dlclose, without a call of its own. Throws std::runtime_error where it cannot be loaded.
class LoadedFile {
public:
    explicit LoadedFile(const std::string& file = KOVALUNE_FREI0R_FILE);
    ~LoadedFile();
    LoadedFile(const LoadedFile&) = delete;
    LoadedFile& operator=(const LoadedFile&) = delete;

private:
    void* library_;

public:
    frei0r::Init* const init;
    frei0r::Deinit* const deinit;
    frei0r::GetPluginInfo* const getPluginInfo;
    frei0r::GetParamInfo* const getParamInfo;
    frei0r::Construct* const construct;
    frei0r::Destruct* const destruct;
    frei0r::SetParamValue* const setParamValue;
    frei0r::GetParamValue* const getParamValue;
    frei0r::Update* const update;
};

/// By its name; throws std::runtime_error for an unknown one.
int placeOf(const LoadedFile& file, const std::string& name);

/// From f0r_construct to f0r_destruct.
class LoadedFilter {
public:
    LoadedFilter(const LoadedFile& file, unsigned width, unsigned height);
    ~LoadedFilter();
    LoadedFilter(const LoadedFilter&) = delete;
    LoadedFilter& operator=(const LoadedFilter&) = delete;

    void set(const std::string& name, double value);
    void set(const std::string& name, const frei0r::Color& value);
    void set(const std::string& name, const std::string& value);

    double number(const std::string& name) const;
    frei0r::Color color(const std::string& name) const;
    std::string text(const std::string& name) const;

    /// The picture has the filter's size. The output is full of another value before.
    RgbaPicture update(const RgbaPicture& picture, double time = 0.0);

    frei0r::Instance instance() const { return instance_; }

private:
    const LoadedFile& file_;
    const frei0r::Instance instance_;
};

/// The file in a host that has called f0r_init, and calls f0r_deinit in the end.
struct Ready : LoadedFile {
    Ready();
    ~Ready();
};

} // namespace kovalune::test
