// Writes the property list to a file, for the resource compiler. Runs on the machine that builds.
//   make-pipl 32|64 FILE

#include "effect/resources/Pipl.h"
#include "effect/resources/WriteFile.h"

#include <iostream>
#include <string_view>

int main(int argc, char* argv[]) {
    const std::string_view bits = argc == 3 ? argv[1] : "";
    if (bits != "32" && bits != "64") {
        std::cerr << "usage: make-pipl 32|64 FILE\n";
        return 2;
    }
    const auto host = bits == "64" ? kovalune::PiplHost::kWindows64 : kovalune::PiplHost::kWindows32;
    return kovalune::writeFile(argv[2], kovalune::piplBytes(host));
}
