// The finished plug-ins for Windows as files: how hosts find the effect in them and what they need to load.
// The files come from the presets win32 and win64. Where one is missing, its tests say so and are skipped; with
// CI=true they fail.

#include "effect/resources/DialogPicture.h"
#include "tests/windows/DialogTemplate.h"
#include "tests/windows/PeFile.h"
#include "tests/windows/PiplProperties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace kovalune::test {
namespace {

struct AexKind {
    const char* name;
    const char* variable; ///< of the environment; it goes before `path`
    const char* path;
    bool is64Bit;
};

std::ostream& operator<<(std::ostream& stream, const AexKind& kind) {
    return stream << kind.name;
}

std::string pathOf(const AexKind& kind) {
    const char* const given = std::getenv(kind.variable);
    return given != nullptr && *given != '\0' ? given : kind.path;
}

bool filesAreRequired() {
    const char* const ci = std::getenv("CI");
    return ci != nullptr && std::string_view(ci) == "true";
}

class AexFile : public testing::TestWithParam<AexKind> {
protected:
    void SetUp() override {
        const std::string path = pathOf(GetParam());
        if (std::filesystem::exists(path)) {
            file_.emplace(readFile(path));
            return;
        }
        const std::string message = "NOT TESTED: there is no " + path + ". Build the preset " +
                                    GetParam().name + ", or name the file in " + GetParam().variable + '.';
        if (filesAreRequired()) {
            FAIL() << message;
        }
        GTEST_SKIP() << message;
    }

    const PeFile& file() const { return *file_; }

private:
    std::optional<PeFile> file_;
};

TEST_P(AexFile, IsALibraryForItsKindOfWindows) {
    EXPECT_EQ(file().machine(), GetParam().is64Bit ? 0x8664 : 0x14C);
    EXPECT_EQ(file().magic(), GetParam().is64Bit ? 0x20B : 0x10B);
    EXPECT_NE(file().characteristics() & 0x2000, 0);
}

TEST_P(AexFile, IsLoadedAnywhereAndRunsNoData) {
    constexpr int kAnywhere = 0x40;
    constexpr int kFarAnywhere = 0x20; // beyond 4 GB
    constexpr int kNoData = 0x100;
    const int wanted = kAnywhere | kNoData | (GetParam().is64Bit ? kFarAnywhere : 0);
    EXPECT_EQ(file().libraryCharacteristics() & wanted, wanted);
}

TEST_P(AexFile, ExportsExactlyTheEntryPointUndecorated) {
    const PeFile::Exports exports = file().exports();
    EXPECT_EQ(exports.names, std::vector<std::string>{"EntryPointFunc"});
    EXPECT_EQ(exports.functions, 1U);
}

/// What libraries of Windows have had since Windows XP, as far as the plug-in or its runtime calls it.
const std::map<std::string, std::set<std::string>>& functionsOfWindowsXp() {
    static const std::map<std::string, std::set<std::string>> functions = {
        {"kernel32.dll",
         {"CloseHandle",
          "CreateSemaphoreA",
          "CreateSemaphoreW",
          "DeleteCriticalSection",
          "DeleteFileA",
          "EnterCriticalSection",
          "FreeLibrary",
          "GetCommandLineA",
          "GetCurrentThreadId",
          "GetFileAttributesA",
          "GetFullPathNameA",
          "GetLastError",
          "GetModuleHandleA",
          "GetModuleHandleW",
          "GetPrivateProfileIntA",
          "GetPrivateProfileStringA",
          "GetProcAddress",
          "InitializeCriticalSection",
          "IsDBCSLeadByteEx",
          "LeaveCriticalSection",
          "LoadLibraryA",
          "LoadLibraryW",
          "MultiByteToWideChar",
          "ReleaseSemaphore",
          "RemoveDirectoryA",
          "SetLastError",
          "Sleep",
          "TlsAlloc",
          "TlsFree",
          "TlsGetValue",
          "TlsSetValue",
          "VirtualProtect",
          "VirtualQuery",
          "WaitForSingleObject",
          "WideCharToMultiByte",
          "WritePrivateProfileStringA"}},
        {"msvcrt.dll", {"__mb_cur_max", "__setusermatherr",
                        "_amsg_exit",   "_assert",
                        "_close",       "_errno",
                        "_getmbcp",     "_initterm",
                        "_iob",         "_lock",
                        "_read",        "_unlock",
                        "abort",        "atoi",
                        "calloc",       "fputc",
                        "fputs",        "free",
                        "fwrite",       "localeconv",
                        "malloc",       "memchr",
                        "memcmp",       "memcpy",
                        "memmove",      "memset",
                        "realloc",      "setlocale",
                        "strchr",       "strcmp",
                        "strerror",     "strlen",
                        "strncmp",      "strncpy",
                        "vfprintf",     "wcslen"}},
        {"shell32.dll", {"SHCreateDirectoryExA", "SHGetFolderPathA"}},
        {"user32.dll",
         {"CharPrevA", "DialogBoxParamA", "EnableWindow", "EndDialog", "GetDlgItem", "GetKeyState",
          "GetParent", "GetWindowRect", "MoveWindow", "SetWindowTextA"}},
    };
    return functions;
}

/// What 64-bit Windows has beside that, Vista at the latest: the unwinding of its calls, and names of the C library.
const std::set<std::string> kFunctionsOf64BitVista = {
    "RaiseException",      "RtlCaptureContext",  "RtlLookupFunctionEntry", "RtlUnwindEx", "RtlVirtualUnwind",
    "___lc_codepage_func", "___mb_cur_max_func", "__C_specific_handler",   "__iob_func"};

/// docs/installing.md names it: Windows XP for 32 bits, Vista for 64.
TEST_P(AexFile, NeedsNothingThatTheOldestWindowsLacks) {
    const std::vector<PeFile::Import> imports = file().imports();
    EXPECT_FALSE(imports.empty());
    for (const PeFile::Import& import : imports) {
        const auto known = functionsOfWindowsXp().find(import.library);
        ASSERT_NE(known, functionsOfWindowsXp().end()) << import.library;
        EXPECT_FALSE(import.functions.empty()) << import.library;
        for (const std::string& function : import.functions) {
            const bool of64Bits = GetParam().is64Bit && kFunctionsOf64BitVista.count(function) != 0;
            EXPECT_TRUE(of64Bits || known->second.count(function) != 0) << import.library << ' ' << function;
        }
    }
    EXPECT_FALSE(file().hasDelayedImports());
    EXPECT_LE(file().systemVersion(), GetParam().is64Bit ? 600 : 501);
}

TEST_P(AexFile, IsStripped) {
    EXPECT_EQ(file().symbolTable(), 0U);
    EXPECT_EQ(file().symbolCount(), 0U);
    EXPECT_FALSE(file().hasDebugDirectory());
    for (const PeSection& section : file().sections()) {
        EXPECT_FALSE(section.name.starts_with(".debug")) << section.name;
        EXPECT_FALSE(section.name.starts_with(".stab")) << section.name;
        // A long name: only debug sections have those, and they stand in the table of symbols.
        EXPECT_FALSE(section.name.starts_with("/")) << section.name;
    }
}

TEST_P(AexFile, DoesNotTellWhenItWasBuilt) {
    EXPECT_EQ(file().timestamp(), 0U);
    EXPECT_EQ(file().exports().timestamp, 0U);
}

TEST_P(AexFile, HasOnePropertyListWithWhatTheEffectIs) {
    std::vector<PeResource> lists;
    for (const PeResource& resource : file().resources()) {
        // Resource compilers change the case of a type's name, and the system does not mind it.
        if (resource.type == "PIPL" || resource.type == "PiPL") {
            lists.push_back(resource);
        }
    }
    ASSERT_EQ(lists.size(), 1U);
    EXPECT_EQ(lists[0].id, "#16000");
    EXPECT_EQ(lists[0].language, 1033U);
    expectProperties(readPipl(lists[0].data), expectedProperties(GetParam().is64Bit));
}

/// The one resource of a type's number.
PeResource onlyResource(const PeFile& file, const std::string& type) {
    std::vector<PeResource> found;
    for (const PeResource& resource : file.resources()) {
        if (resource.type == type) {
            found.push_back(resource);
        }
    }
    EXPECT_EQ(found.size(), 1U) << type;
    return found.empty() ? PeResource{} : found.front();
}

TEST_P(AexFile, HasTheOptionDialog) {
    const PeResource resource = onlyResource(file(), "#5");
    EXPECT_EQ(resource.id, "#201");
    EXPECT_EQ(resource.language, 1041U);
    const DialogTemplate dialog = readDialogTemplate(resource.data);
    EXPECT_EQ(dialog.title, "Option");
    EXPECT_EQ(dialog.font, "MS UI Gothic");
    EXPECT_EQ(dialog.points, 9);
    EXPECT_EQ(dialog.place, (DialogPlace{22, 17, 235, 170}));
    constexpr uint32_t kDefaultButton = 1;
    constexpr uint32_t kGroupBox = 7;
    constexpr uint32_t kBitmap = 14;
    const std::vector<DialogControl> expected = {
        {1, "#128", kDefaultButton, {180, 144, 36, 18}, "OK"},
        {2000, "#128", kGroupBox, {6, 6, 222, 76}, ""},
        {2001, "#128", 0, {36, 30, 162, 15}, ""},
        {2002, "#128", 0, {36, 50, 162, 15}, ""},
        {0xFFFF, "STATIC", kBitmap, {12, 90, 209, 43}, "#203"},
    };
    EXPECT_EQ(dialog.controls.size(), expected.size());
    for (std::size_t i = 0; i < std::min(dialog.controls.size(), expected.size()); ++i) {
        EXPECT_TRUE(dialog.controls[i] == expected[i])
            << i << ": " << dialog.controls[i].kind << ' ' << dialog.controls[i].text;
    }
}

TEST_P(AexFile, HasTheDialogsPicture) {
    const PeResource resource = onlyResource(file(), "#2");
    EXPECT_EQ(resource.id, "#203");
    EXPECT_EQ(resource.language, 1041U);
    EXPECT_EQ(resource.data.size(), 71280U);
    EXPECT_TRUE(resource.data == dialogPicture());
}

INSTANTIATE_TEST_SUITE_P(Windows, AexFile,
                         testing::Values(AexKind{"win32", "KOVALUNE_AEX_WIN32", KOVALUNE_AEX_WIN32, false},
                                         AexKind{"win64", "KOVALUNE_AEX_WIN64", KOVALUNE_AEX_WIN64, true}),
                         [](const auto& kind) { return std::string(kind.param.name); });

} // namespace
} // namespace kovalune::test
