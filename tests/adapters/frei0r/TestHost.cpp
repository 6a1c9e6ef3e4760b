#include "tests/adapters/frei0r/TestHost.h"

#include <cstring>
#include <dlfcn.h>
#include <stdexcept>

namespace kovalune::test {

namespace {

void* opened(const std::string& file) {
    void* const library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(::dlerror());
    }
    return library;
}

template <class Function>
Function* found(void* library, const char* name) {
    void* const symbol = ::dlsym(library, name);
    if (symbol == nullptr) {
        throw std::runtime_error(std::string("there is no ") + name);
    }
    return reinterpret_cast<Function*>(symbol);
}

const uint32_t* words(const RgbaPicture& picture) {
    return static_cast<const uint32_t*>(static_cast<const void*>(picture.pixels.data()));
}

uint32_t* words(RgbaPicture& picture) {
    return static_cast<uint32_t*>(static_cast<void*>(picture.pixels.data()));
}

} // namespace

RgbaPicture blocks(unsigned width, unsigned height) {
    constexpr Rgba kColors[] = {
        {50, 100, 180, 255}, {30, 70, 130, 255}, {255, 217, 190, 128}, {7, 9, 11, 0}, {3, 180, 245, 255}};
    RgbaPicture picture{width, height};
    for (unsigned y = 0; y < height; ++y) {
        for (unsigned x = 0; x < width; ++x) {
            picture.pixels.push_back(kColors[(x / 9 + 3 * (y / 7)) % std::size(kColors)]);
        }
    }
    return picture;
}

LoadedFile::LoadedFile(const std::string& file)
    : library_(opened(file)), init(found<frei0r::Init>(library_, "f0r_init")),
      deinit(found<frei0r::Deinit>(library_, "f0r_deinit")),
      getPluginInfo(found<frei0r::GetPluginInfo>(library_, "f0r_get_plugin_info")),
      getParamInfo(found<frei0r::GetParamInfo>(library_, "f0r_get_param_info")),
      construct(found<frei0r::Construct>(library_, "f0r_construct")),
      destruct(found<frei0r::Destruct>(library_, "f0r_destruct")),
      setParamValue(found<frei0r::SetParamValue>(library_, "f0r_set_param_value")),
      getParamValue(found<frei0r::GetParamValue>(library_, "f0r_get_param_value")),
      update(found<frei0r::Update>(library_, "f0r_update")) {}

LoadedFile::~LoadedFile() {
    ::dlclose(library_);
}

int placeOf(const LoadedFile& file, const std::string& name) {
    frei0r::PluginInfo info{};
    file.getPluginInfo(&info);
    for (int place = 0; place < info.paramCount; ++place) {
        frei0r::ParamInfo param{};
        file.getParamInfo(&param, place);
        if (name == param.name) {
            return place;
        }
    }
    throw std::runtime_error("there is no parameter " + name);
}

LoadedFilter::LoadedFilter(const LoadedFile& file, unsigned width, unsigned height)
    : file_(file), instance_(file.construct(width, height)) {
    if (instance_ == nullptr) {
        throw std::runtime_error("no instance");
    }
}

LoadedFilter::~LoadedFilter() {
    file_.destruct(instance_);
}

void LoadedFilter::set(const std::string& name, double value) {
    file_.setParamValue(instance_, &value, placeOf(file_, name));
}

void LoadedFilter::set(const std::string& name, const frei0r::Color& value) {
    frei0r::Color copy = value;
    file_.setParamValue(instance_, &copy, placeOf(file_, name));
}

void LoadedFilter::set(const std::string& name, const std::string& value) {
    // A host's own memory, which it uses again at once.
    std::string copy = value;
    char* text = copy.data();
    file_.setParamValue(instance_, static_cast<void*>(&text), placeOf(file_, name));
    copy.assign(copy.size(), '?');
}

double LoadedFilter::number(const std::string& name) const {
    double value = -1.0;
    file_.getParamValue(instance_, &value, placeOf(file_, name));
    return value;
}

frei0r::Color LoadedFilter::color(const std::string& name) const {
    frei0r::Color value{};
    file_.getParamValue(instance_, &value, placeOf(file_, name));
    return value;
}

std::string LoadedFilter::text(const std::string& name) const {
    char* value = nullptr;
    file_.getParamValue(instance_, static_cast<void*>(&value), placeOf(file_, name));
    return value == nullptr ? "null" : value;
}

RgbaPicture LoadedFilter::update(const RgbaPicture& picture, double time) {
    RgbaPicture output = picture;
    std::memset(static_cast<void*>(output.pixels.data()), 0xA5, output.pixels.size() * sizeof(Rgba));
    file_.update(instance_, time, words(picture), words(output));
    return output;
}

Ready::Ready() {
    if (init() < 0) {
        throw std::runtime_error("f0r_init refuses");
    }
}

Ready::~Ready() {
    deinit();
}

} // namespace kovalune::test
