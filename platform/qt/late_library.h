// Parts of the program that are loaded when they are first needed, so that a start that does
// without them doesn't pay for them.
#pragma once

#include <string>

namespace tessavox {

/// The function `name` of the library at `path`, which stays loaded. @throws Failure with the
/// system's words if that can't be had.
void* late_function(const std::string& path, const char* name);

} // namespace tessavox
