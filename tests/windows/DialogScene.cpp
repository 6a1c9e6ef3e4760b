#include "tests/windows/DialogScene.h"

#include <utility>
#include <variant>
// After windows.h, whose types it needs.
#include <shlobj.h>

namespace kovalune::test {
namespace {

std::filesystem::path folderForSettings() {
    wchar_t folder[MAX_PATH] = {};
    SHGetSpecialFolderPathW(nullptr, folder, CSIDL_APPDATA, TRUE);
    return folder;
}

std::string asText(const host::ParamValue& value) {
    if (const PF_Pixel* const color = std::get_if<PF_Pixel>(&value)) {
        return std::to_string(color->alpha) + ' ' + std::to_string(color->red) + ' ' +
               std::to_string(color->green) + ' ' + std::to_string(color->blue);
    }
    const A_long* const number = std::get_if<A_long>(&value);
    return number != nullptr ? std::to_string(*number) : std::to_string(std::get<double>(value));
}

} // namespace

DialogScene::DialogScene() : settings_(folderForSettings()) {
    options.threads = 2;
}

DialogScene::~DialogScene() = default;

void DialogScene::SetUp() {
    ASSERT_FALSE(settings_.empty());
    mayWrite_ = !std::filesystem::exists(makersFolder());
    ASSERT_TRUE(mayWrite_) << makersFolder() << " is there already; this test would change it";
    // A class that every system has.
    window_ = CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 60, 40, 800, 620, nullptr,
                            nullptr, nullptr, nullptr);
    ASSERT_NE(window_, nullptr) << "this test needs a display";
    options.mainWindow = window_;
}

void DialogScene::TearDown() {
    endHost();
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
    if (mayWrite_) {
        std::filesystem::remove_all(makersFolder());
    }
}

void DialogScene::startHost() {
    endHost();
    module_ = std::make_unique<host::EffectModule>(host::EffectModule::load(KOVALUNE_PLUGIN));
    options.executablePath = module_->path();
    host_ = std::make_unique<host::judge::JudgedHost>(options);
    session_ = std::make_unique<host::Session>(*host_, *module_);
    ASSERT_TRUE(session_->setupResult().ok()) << session_->setupResult().returnMsg;
}

void DialogScene::endHost() {
    session_.reset();
    host_.reset();
    module_.reset();
}

void DialogScene::openDialog(DialogUser::Act act) {
    const DialogUser user(std::move(act));
    const host::CommandResult result = session_->run(PF_Cmd_DO_DIALOG);
    EXPECT_TRUE(result.ok()) << result.code << ": " << result.returnMsg;
    EXPECT_TRUE(user.metOne());
    EXPECT_FALSE(user.wasStuck());
    EXPECT_EQ(dialogOfThread(), nullptr);
    EXPECT_TRUE(host_->audit().clean()) << host_->audit().text();
}

void DialogScene::choose(int control) {
    openDialog([control](HWND dialog) { press(dialog, control); });
}

DialogScene::Defaults DialogScene::defaults() const {
    Defaults values;
    for (std::size_t i = 1; i < session_->params().size(); ++i) {
        const PF_ParamDef& param = session_->params()[i];
        if (param.param_type != PF_Param_GROUP_START && param.param_type != PF_Param_GROUP_END) {
            values[param.name] = asText(session_->defaultValue(static_cast<int>(i)));
        }
    }
    return values;
}

void DialogScene::set(const std::string& parameter, const host::ParamValue& value) {
    session_->setValue(session_->findParam(parameter).value(), value);
}

RECT placeOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
}

} // namespace kovalune::test
