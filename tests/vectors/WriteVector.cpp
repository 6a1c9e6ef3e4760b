// Writes a new vector: renders a picture with the reference frame of the tests.
//
//   write_vector INPUT SETTINGS FOLDER   INPUT is a picture and SETTINGS a settings file, both as vectors have them; FOLDER
//                                        must not be there yet

#include "tests/vectors/VectorWriter.h"

#include <exception>
#include <iostream>

int main(int count, char** arguments) {
    using namespace kovalune::test;
    if (count != 4) {
        std::cerr << "usage: write_vector INPUT SETTINGS FOLDER\n";
        return 2;
    }
    try {
        FrameVector vector;
        vector.input = readPicture(arguments[1]);
        vector.settings = readSettings(arguments[2]);
        vector.expected = referenceFrame(vector);
        writeFrameVector(arguments[3], vector);
    } catch (const std::exception& error) {
        std::cerr << "write_vector: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
