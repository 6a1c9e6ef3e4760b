#include "tests/pictures/DamagedBytes.h"

#include "text/Failure.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

namespace kovalune::test {

using namespace pictures;
using namespace text;

namespace {

#ifdef KOVALUNE_SANITIZED // the sanitizers need their address space for themselves

class MemoryLimit {
public:
    explicit MemoryLimit(std::size_t) {}
};

#else

/// Holds the address space of the process to what it is and some more.
class MemoryLimit {
public:
    explicit MemoryLimit(std::size_t mostGrowth) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &before_);
        const rlimit limit{pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + mostGrowth,
                           before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &before_); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit before_{};
};

#endif

} // namespace

std::string refusalOf(const Decode& decode, std::span<const uint8_t> bytes) {
    try {
        const Picture picture = decode(bytes, "in.file");
        EXPECT_GT(picture.width, 0U);
        EXPECT_GT(picture.height, 0U);
        EXPECT_EQ(picture.samples.size(), picture.byteCount());
        return "";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.kind(), FailureKind::kFile);
        const std::string text = failure.what();
        EXPECT_EQ(text.rfind("cannot read 'in.file': ", 0), 0U) << text;
        return text;
    }
}

std::string refusalInLittleMemory(const Decode& decode, std::span<const uint8_t> bytes,
                                  std::size_t mostGrowth) {
    const MemoryLimit limit(mostGrowth);
    return refusalOf(decode, bytes);
}

void expectBeginningsRefused(const Decode& decode, const std::vector<uint8_t>& file, std::size_t last) {
    testing::internal::CaptureStderr();
    for (std::size_t count = 0; count < file.size(); ++count) {
        // In memory of its own, so that reading past the end is noticed.
        const std::vector<uint8_t> beginning(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(count));
        const std::string refusal = refusalOf(decode, beginning);
        if (count < last) {
            EXPECT_NE(refusal, "") << count << " of " << file.size() << " bytes were enough";
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

void expectWrongBytesBorne(const Decode& decode, const std::vector<uint8_t>& file, std::size_t mostGrowth) {
    testing::internal::CaptureStderr();
    {
        const MemoryLimit limit(mostGrowth);
        std::vector<uint8_t> bytes = file;
        for (uint8_t& byte : bytes) {
            const uint8_t sound = byte;
            for (const int wrong : {sound ^ 0x01, sound ^ 0x80, 0x00, 0x7f, 0xff, sound + 1, sound - 1}) {
                byte = static_cast<uint8_t>(wrong);
                try {
                    refusalOf(decode, bytes);
                } catch (const std::exception& exception) {
                    ADD_FAILURE() << "byte " << &byte - bytes.data() << " as " << int{byte} << ": "
                                  << exception.what();
                }
            }
            byte = sound;
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace kovalune::test
