// What a user writes down to make the voice of any program one of ours:
//
//     # A voice of the engine "parrot"
//     Name = Polly
//     Language = en-GB
//     Mode = wave
//     Command = parrot --quiet --out {out} {text}
//
// A line holds a key and its value; lines that are empty or begin with # say nothing.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// How a program is asked for sound.
enum class CommandMode {
    directory, // it keeps running: a line in, a wave file written into {dir} and closed
    wave, // run anew for each text: one wave file, {out}
    frames, // it keeps running: a line in, a header and samples out, perhaps with word times
};

struct VoiceDescription {
    std::string name;
    std::string language; // BCP 47, as written: "en-GB"
    std::string gender; // "Male", "Female", "Neutral" or empty
    std::string age = "Adult"; // "Child", "Teen", "Adult" or "Senior"
    std::string vendor;
    CommandMode mode = CommandMode::wave;
    // The program and its arguments, of which placeholders are not yet filled in. No shell sees
    // them.
    std::vector<std::string> command;
    std::filesystem::path model; // for {model}; empty if there is none
    std::optional<int> speaker; // for {speaker}
    std::vector<std::filesystem::path> reads; // what it reads elsewhere than where programs lie
    std::string encoding = "UTF-8"; // of its input
    std::string reference; // espeak-ng's voice to align with; empty: the language's own
    int sample_rate = 0; // Hz; 0: what the sound itself says
};

/// The most that is read of a description.
constexpr std::size_t most_description_bytes = 65'536;

/// Reads one. @throws Failure with the number of the line and what is wrong with it, or which key
/// is missing.
VoiceDescription parse_voice_description(std::string_view text);

/// An argument list as written in a description: blanks part arguments, double quotes hold them
/// together, and a backslash takes the next character as it is. @throws Failure if a quote is open.
std::vector<std::string> split_arguments(std::string_view line);

/// Whether some argument holds the placeholder, "{text}" and the like.
bool has_placeholder(const std::vector<std::string>& command, std::string_view placeholder);

} // namespace tessavox::voice
