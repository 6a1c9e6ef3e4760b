// The folder is in the user's part of the registry. Under Wine that belongs to a prefix of its own; a real user's is left
// alone.
#include "tests/platform/ScopedUser.h"

#include "effect/platform/Platform.h"

#include <array>
#include <mbctype.h>
#include <stdexcept>
#include <string>
#include <vector>
#include <windows.h>

namespace kovalune::test {
using namespace platform;
namespace {

constexpr char kKey[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr char kName[] = "AppData";

struct RegistryValue {
    DWORD type = REG_EXPAND_SZ;
    std::vector<BYTE> bytes;
};

RegistryValue read() {
    RegistryValue value;
    DWORD size = 0;
    if (RegGetValueA(HKEY_CURRENT_USER, kKey, kName, RRF_RT_ANY | RRF_NOEXPAND, nullptr, nullptr, &size) !=
        ERROR_SUCCESS) {
        throw std::runtime_error("the registry has no folder for settings");
    }
    value.bytes.resize(size);
    if (RegGetValueA(HKEY_CURRENT_USER, kKey, kName, RRF_RT_ANY | RRF_NOEXPAND, &value.type,
                     value.bytes.data(), &size) != ERROR_SUCCESS) {
        throw std::runtime_error("the registry's folder for settings can not be read");
    }
    value.bytes.resize(size);
    return value;
}

void write(const RegistryValue& value) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kKey, kName, value.type, value.bytes.data(),
                    static_cast<DWORD>(value.bytes.size()));
}

std::string withoutSeparatorsAtItsEnd(const std::string& path) {
    return path.substr(0, path.find_last_not_of(kPathSeparator) + 1);
}

bool isWine() {
    return GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
}

} // namespace

ScopedSettings::ScopedSettings(const std::string& folder) {
    if (!isWine()) {
        throw std::runtime_error(
            "this test changes the user's folder for settings and runs under Wine alone");
    }
    const RegistryValue before = read();
    restore_ = [before] { write(before); };
    RegistryValue value;
    value.type = REG_SZ;
    value.bytes.assign(folder.c_str(), folder.c_str() + folder.size() + 1);
    write(value);
    std::array<char, 1024> known{};
    if (applicationDataFolder(known.data(), known.size()) &&
        withoutSeparatorsAtItsEnd(folder) != withoutSeparatorsAtItsEnd(known.data())) {
        restore_();
        throw std::runtime_error(std::string("the folder for settings is ") + known.data());
    }
}

ScopedLanguage::ScopedLanguage(UserLanguage language) {
    const int before = _getmbcp();
    restore_ = [before] { _setmbcp(before); };
    if (_setmbcp(language == UserLanguage::kJapanese ? 932 : _MB_CP_SBCS) != 0) {
        throw std::runtime_error("the system has no such code page");
    }
}

} // namespace kovalune::test
