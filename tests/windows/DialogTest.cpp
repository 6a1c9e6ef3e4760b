// The Option dialog of the finished plug-in on a screen: where it stands, what its buttons do, and what is left on the disk.

#include "tests/windows/DialogScene.h"
#include "tests/windows/Screen.h"

#include <algorithm>
#include <fstream>

namespace kovalune::test {
namespace {

namespace fs = std::filesystem;

constexpr int kGroup = 2000;
constexpr int kRemember = 2001;
constexpr int kForget = 2002;

void writeFile(const fs::path& file, const std::string& content) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
}

class OptionDialog : public DialogScene {
protected:
    void SetUp() override {
        DialogScene::SetUp();
        if (!HasFatalFailure()) {
            startHost();
        }
    }
};

TEST_F(OptionDialog, StandsInTheMiddleOfTheHostsWindow) {
    openDialog([this](HWND dialog) {
        const RECT own = placeOf(dialog);
        const RECT parent = placeOf(window());
        EXPECT_EQ(own.left, (parent.left + parent.right - (own.right - own.left)) / 2);
        EXPECT_EQ(own.top, (parent.top + parent.bottom - (own.bottom - own.top)) / 2);
        press(dialog, IDOK);
    });
}

TEST_F(OptionDialog, LocksTheHostsWindowWhileItIsOpen) {
    openDialog([this](HWND dialog) {
        EXPECT_FALSE(IsWindowEnabled(window()));
        EXPECT_EQ(GetParent(dialog), window());
        press(dialog, IDOK);
    });
    EXPECT_TRUE(IsWindowEnabled(window()));
}

struct Control {
    int id;
    const wchar_t* kind;
    LONG style;
    RECT place; ///< left, top, width and height in dialog units
};

TEST_F(OptionDialog, HasItsControlsInTheirPlaces) {
    const Control controls[] = {
        {IDOK, L"Button", BS_DEFPUSHBUTTON, {180, 144, 36, 18}},
        {kGroup, L"Button", BS_GROUPBOX, {6, 6, 222, 76}},
        {kRemember, L"Button", BS_PUSHBUTTON, {36, 30, 162, 15}},
        {kForget, L"Button", BS_PUSHBUTTON, {36, 50, 162, 15}},
    };
    openDialog([&](HWND dialog) {
        RECT inside = {};
        GetClientRect(dialog, &inside);
        RECT size = {0, 0, 235, 170};
        MapDialogRect(dialog, &size);
        EXPECT_EQ(inside.right, size.right);
        EXPECT_EQ(inside.bottom, size.bottom);
        for (const Control& control : controls) {
            SCOPED_TRACE(control.id);
            const HWND window = GetDlgItem(dialog, control.id);
            ASSERT_NE(window, nullptr);
            wchar_t kind[16] = {};
            GetClassNameW(window, kind, 16);
            EXPECT_EQ(std::wstring(kind), control.kind);
            EXPECT_EQ(GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK, control.style);
            RECT expected = control.place;
            MapDialogRect(dialog, &expected);
            expected.right += expected.left;
            expected.bottom += expected.top;
            RECT place = placeOf(window);
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
            EXPECT_TRUE(EqualRect(&place, &expected)) << place.left << ' ' << place.top;
            EXPECT_TRUE(IsWindowVisible(window));
            EXPECT_TRUE(IsWindowEnabled(window));
        }
        press(dialog, IDOK);
    });
}

TEST_F(OptionDialog, ShowsThePictureOfItsResource) {
    const HMODULE module = GetModuleHandleW(L"Kovalune.aex");
    const HBITMAP bitmap = LoadBitmapW(module, MAKEINTRESOURCEW(203));
    ASSERT_NE(bitmap, nullptr);
    const ScreenPicture expected = pictureOf(bitmap);
    DeleteObject(bitmap);
    ASSERT_EQ(expected.width, 365);
    ASSERT_EQ(expected.height, 65);
    openDialog([&](HWND dialog) {
        RECT corner = {12, 90, 0, 0};
        MapDialogRect(dialog, &corner);
        MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&corner), 1);
        const RECT frame = placeOf(dialog);
        const ScreenPicture shown = pictureOf(dialog);
        const int left = static_cast<int>(corner.left - frame.left);
        const int top = static_cast<int>(corner.top - frame.top);
        // The font decides how much of it the box has room for.
        const int width = std::min(expected.width, shown.width - left - 8);
        EXPECT_GT(width, 300);
        int wrong = 0;
        for (int y = 0; y < expected.height; ++y) {
            for (int x = 0; x < width; ++x) {
                wrong += shown.at(left + x, top + y) != expected.at(x, y) ? 1 : 0;
            }
        }
        EXPECT_EQ(wrong, 0);
        press(dialog, IDOK);
    });
}

struct Leaving {
    const char* name;
    void (*act)(HWND dialog);
};

class WaysToLeave : public OptionDialog, public testing::WithParamInterface<Leaving> {};

TEST_P(WaysToLeave, DoNothingElse) {
    openDialog(GetParam().act);
    EXPECT_FALSE(fs::exists(makersFolder()));
    writeFile(file(), "[Version=1.0]\r\nView=3\r\n");
    openDialog(GetParam().act);
    EXPECT_EQ(contentOf(file()), "[Version=1.0]\r\nView=3\r\n");
}

INSTANTIATE_TEST_SUITE_P(
    OptionDialog, WaysToLeave,
    testing::Values(Leaving{"ClickOnOk", [](HWND dialog) { press(dialog, IDOK); }},
                    Leaving{"EnterKey", [](HWND dialog) { type(dialog, VK_RETURN); }},
                    Leaving{"EscapeKey", [](HWND dialog) { type(dialog, VK_ESCAPE); }},
                    Leaving{"CloseBox", [](HWND dialog) { PostMessageW(dialog, WM_CLOSE, 0, 0); }},
                    Leaving{"ClickOnOkAfterOtherThings",
                            [](HWND dialog) {
                                SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(kGroup, BN_CLICKED), 0);
                                SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(77, 1), 0);
                                NMHDR note = {};
                                SendMessageW(dialog, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&note));
                                EXPECT_TRUE(IsWindow(dialog));
                                press(dialog, IDOK);
                            }}),
    [](const auto& each) { return each.param.name; });

TEST_F(OptionDialog, RemembersTheValuesOfTheInstanceForTheNextStart) {
    const Defaults factory = defaults();
    set("View", A_long{5});
    set("Blur Amount", 12.5);
    set("Color 1", PF_Pixel{9, 1, 2, 4});
    choose(kRemember);
    const std::string text = contentOf(file());
    EXPECT_TRUE(text.starts_with("[Version=1.0]\r\nView=5\r\nBlur Amount=12.500000\r\n")) << text;
    EXPECT_NE(text.find("\r\nColor 1.a=9\r\n"), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 39 + 8 * 4);
    EXPECT_EQ(defaults(), factory);

    startHost();
    Defaults expected = factory;
    expected["View"] = "5";
    expected["Blur Amount"] = "12.500000";
    expected["Color 1"] = "255 1 2 4"; // alpha is written and never read
    EXPECT_EQ(defaults(), expected);

    choose(kForget);
    EXPECT_FALSE(fs::exists(makersFolder()));
    startHost();
    EXPECT_EQ(defaults(), factory);
}

TEST_F(OptionDialog, ForgetsWithoutAFileToo) {
    choose(kForget);
    EXPECT_FALSE(fs::exists(makersFolder()));
    EXPECT_TRUE(fs::exists(settings()));
}

TEST_F(OptionDialog, KeepsAFolderThatSomebodyElseUses) {
    choose(kRemember);
    writeFile(makersFolder() / "Other" / "notes.txt", "mine");
    choose(kForget);
    EXPECT_FALSE(fs::exists(makersFolder() / "Tavik"));
    EXPECT_EQ(contentOf(makersFolder() / "Other" / "notes.txt"), "mine");
}

TEST_F(OptionDialog, BearsAFolderInTheFilesPlace) {
    writeFile(file() / "inside.txt", "mine");
    choose(kRemember);
    choose(kForget);
    EXPECT_EQ(contentOf(file() / "inside.txt"), "mine");
    startHost();
    choose(IDOK);
}

TEST_F(OptionDialog, HasGreyButtonsInAnOldHost) {
    options.version = {12, 11};
    startHost();
    openDialog([](HWND dialog) {
        for (const int button : {kRemember, kForget}) {
            EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, button)));
            press(dialog, button);
        }
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, kGroup)));
        EXPECT_TRUE(IsWindow(dialog));
        press(dialog, IDOK);
    });
    EXPECT_FALSE(fs::exists(makersFolder()));
}

TEST_F(OptionDialog, OpensInAHostWithoutAWindow) {
    options.mainWindow = nullptr;
    startHost();
    openDialog([](HWND dialog) {
        EXPECT_EQ(GetParent(dialog), nullptr);
        press(dialog, kRemember);
    });
    EXPECT_TRUE(fs::exists(file()));
}

TEST_F(OptionDialog, OpensInAHostThatKnowsNeitherWindowNorPath) {
    std::string failed = "some";
    for (int call = 1; !failed.empty(); ++call) {
        ASSERT_LT(call, 10);
        host::judge::FaultPlan plan;
        plan.failCall = call;
        host().armFaults(plan);
        choose(IDOK);
        failed = host().failedCallName();
        EXPECT_EQ(failed.empty(), call > 2) << failed;
    }
}

TEST_F(OptionDialog, OpensForEveryPathThatAHostMayGive) {
    const std::string paths[] = {"", "nowhere.aex", "Z:\\" + std::string(250, 'x'), std::string(1000, 'x')};
    for (const std::string& path : paths) {
        host().options().executablePath = path;
        choose(IDOK);
    }
}

TEST_F(OptionDialog, OpensAgainAndAgainAndAfterTheNextLoad) {
    for (int turn = 0; turn < 3; ++turn) {
        for (const int control : {kRemember, kForget, IDOK}) {
            choose(control);
            EXPECT_EQ(fs::exists(file()), control == kRemember);
        }
        startHost();
    }
}

} // namespace
} // namespace kovalune::test
