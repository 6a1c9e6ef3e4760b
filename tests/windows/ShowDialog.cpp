// Takes a picture of the Option dialog, in the language that a host's command line and the system give:
//   show_dialog FILE.bmp [-L JP | -L EN]
#include "tests/windows/DialogUser.h"
#include "tests/windows/Screen.h"

#include "host/EffectModule.h"
#include "host/Host.h"
#include "host/Session.h"

#include <exception>
#include <iostream>

int main(int count, char** arguments) try {
    using namespace kovalune::host;
    if (count < 2) {
        std::cerr << "usage: show_dialog FILE.bmp [-L JP | -L EN]\n";
        return 2;
    }
    EffectModule module = EffectModule::load(KOVALUNE_PLUGIN);
    Host host;
    Session session(host, module);
    bool written = false;
    const kovalune::test::DialogUser user([&](HWND dialog) {
        written = kovalune::test::writePicture(kovalune::test::pictureOf(dialog), arguments[1]);
        kovalune::test::press(dialog, IDOK);
    });
    session.run(PF_Cmd_DO_DIALOG);
    if (!written) {
        std::cerr << (user.metOne() ? "the picture could not be written\n" : "there was no dialog\n");
        return 1;
    }
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
