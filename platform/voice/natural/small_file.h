// Files that a user has put into a folder, read with care.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace tessavox::voice {

/// The whole of a regular file of at most `most_bytes`. @throws Failure that says what is wrong,
/// but not with which file: that there is none, that it can't be read, that it is a folder, a pipe
/// or a device, that it is too large.
std::string read_small_file(const std::filesystem::path& path, std::size_t most_bytes);

} // namespace tessavox::voice
