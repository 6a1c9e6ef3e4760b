// The names of files on the command line that stand for none or for several, and what to write instead.
#pragma once

#include <string>

namespace kovalune::cli {

/// Throws Failure with `rule` for the name "-".
void checkNoStream(const std::string& name, const std::string& rule);

/// Throw Failure for the name of a picture to read or to write that stands for the pictures of a
/// numbered sequence ("####", "%04d") while there is no file of that very name.
void checkReadName(const std::string& name, const std::string& command);
void checkWriteName(const std::string& name, const std::string& command);
/// The same of a picture that is drawn beside what the command tells, which may not be "-" either.
void checkDrawnName(const std::string& name, const std::string& command);
/// The same of a file of settings that is called "-".
void checkParamsName(const std::string& name);
void checkParamsTarget(const std::string& name);

} // namespace kovalune::cli
