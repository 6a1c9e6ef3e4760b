#include "effect/resources/Pipl.h"

#include "effect/frame/EffectVersion.h"

#include <cstddef>
#include <string_view>

namespace kovalune {
namespace {

constexpr std::size_t kPadding = 4; // strings are padded to a multiple of it

using Bytes = std::vector<uint8_t>;

/// A value's lowest bytes, the lowest first.
Bytes littleEndian(uint32_t value, std::size_t bytes) {
    Bytes result;
    for (std::size_t i = 0; i < bytes; ++i) {
        result.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    return result;
}

Bytes word(uint32_t value) {
    return littleEndian(value, 4);
}

void append(Bytes& to, const Bytes& more) {
    to.insert(to.end(), more.begin(), more.end());
}

/// Four letters as the number that has the first in its highest byte; in the file they read backwards.
Bytes fourLetters(std::string_view letters) {
    return {letters.rbegin(), letters.rend()};
}

Bytes padded(Bytes bytes) {
    bytes.resize((bytes.size() + kPadding - 1) / kPadding * kPadding);
    return bytes;
}

Bytes pascalString(std::string_view text) {
    Bytes bytes = {static_cast<uint8_t>(text.size())};
    bytes.insert(bytes.end(), text.begin(), text.end());
    return padded(std::move(bytes));
}

Bytes cString(std::string_view text) {
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return padded(std::move(bytes));
}

Bytes majorMinor(PF_SpecVersion version) {
    Bytes bytes = littleEndian(static_cast<uint32_t>(version.major), 2);
    append(bytes, littleEndian(static_cast<uint32_t>(version.minor), 2));
    return bytes;
}

struct Property {
    std::string_view key;
    Bytes data;
};

std::vector<Property> properties(PiplHost host) {
    const bool is64Bit = host == PiplHost::kWindows64;
    // Readers of 64-bit files round every length up to 4, so there the number has 4 bytes.
    const std::size_t infoBytes = is64Bit ? 4 : 2;
    return {
        {"kind", fourLetters("eFKT")},
        {"name", pascalString(kEffectName)},
        {"catg", pascalString(kEffectCategory)},
        {is64Bit ? "8664" : "wx86", cString(kEntryPointName)},
        {"ePVR", majorMinor({2, 0})},
        {"eSVR", majorMinor(is64Bit ? kSpecVersionOf64BitHosts : kSpecVersionOf32BitHosts)},
        {"eVER", word(kPackedVersion)},
        {"eINF", littleEndian(0, infoBytes)},
        {"eGLO", word(static_cast<uint32_t>(kOutFlags))},
        {"eGL2", word(static_cast<uint32_t>(kOutFlags2))},
        {"eMNA", pascalString(kMatchName)},
        {"aeFL", word(0)},
    };
}

} // namespace

std::vector<uint8_t> piplBytes(PiplHost host) {
    const std::vector<Property> list = properties(host);
    Bytes bytes = littleEndian(1, 2);
    append(bytes, word(0));
    append(bytes, word(static_cast<uint32_t>(list.size())));
    for (const Property& property : list) {
        append(bytes, fourLetters("8BIM"));
        append(bytes, fourLetters(property.key));
        append(bytes, word(0));
        append(bytes, word(static_cast<uint32_t>(property.data.size())));
        append(bytes, property.data);
    }
    return bytes;
}

} // namespace kovalune
