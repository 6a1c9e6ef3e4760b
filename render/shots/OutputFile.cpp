#include "render/shots/OutputFile.h"

#include "pictures/PictureFile.h"
#include "render/shots/AtomicFile.h"

namespace kovalune::shots {

pictures::FileFormat checkedOutputFormat(const std::filesystem::path& output, bool force) {
    const pictures::FileFormat format = pictures::formatToWrite(output);
    checkWritable(output, force);
    return format;
}

} // namespace kovalune::shots
