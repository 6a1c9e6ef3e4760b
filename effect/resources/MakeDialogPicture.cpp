// Draws the picture of the Option dialog into a file, for the resource compiler. Runs on the machine that builds.
//   make-dialog-picture FILE

#include "effect/resources/DialogPicture.h"

#include <fstream>
#include <iostream>

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: make-dialog-picture FILE\n";
        return 2;
    }
    std::ofstream file(argv[1], std::ios::binary);
    for (const uint8_t byte : kovalune::dialogPictureFile()) {
        file.put(static_cast<char>(byte));
    }
    file.close();
    if (!file) {
        std::cerr << "cannot write " << argv[1] << '\n';
        return 1;
    }
    return 0;
}
