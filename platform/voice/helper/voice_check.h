// Tells a user why a voice is silent.
#pragma once

#include <filesystem>

namespace tessavox::voice {

/// Tries a description or a Piper model as the program would, and prints a line for each thing that
/// it finds, "good: ..." or "wrong: ...". Returns 0 if the voice speaks.
int check_voice(const std::filesystem::path& file);

} // namespace tessavox::voice
