// What a program carries that links kovalune_render, as this one does: a plug-in for another host wants nothing of picture
// files.

#include <gtest/gtest.h>

#include <link.h>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

std::vector<std::string> loadedLibraries() {
    std::vector<std::string> names;
    const auto add = [](dl_phdr_info* library, std::size_t, void* list) {
        static_cast<std::vector<std::string>*>(list)->emplace_back(library->dlpi_name);
        return 0;
    };
    dl_iterate_phdr(add, &names);
    return names;
}

TEST(Linking, OfFramesBringsNoLibraryForPictureFiles) {
    const std::vector<std::string> libraries = loadedLibraries();
    ASSERT_GT(libraries.size(), 1U);
    for (const std::string& library : libraries) {
        for (const char* const part :
             {"libpng", "libtiff", "libOpenEXR", "libImath", "libz.", "kovalune_pictures"}) {
            EXPECT_EQ(library.find(part), std::string::npos) << library;
        }
    }
}

} // namespace
} // namespace kovalune::test
