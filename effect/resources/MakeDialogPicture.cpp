// Draws the picture of the Option dialog into a file, for the resource compiler. Runs on the machine that builds.
//   make-dialog-picture FILE

#include "effect/resources/DialogPicture.h"
#include "effect/resources/WriteFile.h"

#include <iostream>

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: make-dialog-picture FILE\n";
        return 2;
    }
    return kovalune::writeFile(argv[1], kovalune::dialogPictureFile());
}
