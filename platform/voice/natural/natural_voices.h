// The natural voices of this machine: those that somebody has described, and the Piper models,
// which need no description.
#pragma once

#include "platform/voice/natural/voice_description.h"
#include "platform/voice/natural/voice_folders.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

struct NaturalVoice {
    std::string
        id; // unique, the same at every start: "voice:FILE" or "piper:MODEL" or with ":SPEAKER"
    VoiceDescription description; // its model and program are there; the program by its full path
    std::filesystem::path origin; // the file that it comes from
};

/// A file that should have been a voice.
struct UnfitVoice {
    std::filesystem::path origin;
    std::string reason;
};

struct NaturalVoices {
    std::vector<NaturalVoice> voices; // by id within each folder, folders in their order
    std::vector<UnfitVoice> unfit;
};

/// Programs by name.
struct VoicePrograms {
    std::string search_path; // $PATH
    std::string piper; // what runs Piper models, as a path; empty: there is none
    std::string home = {}; // of the user
};

/// Looks into the folders, some levels deep. A folder that isn't there or can't be read holds
/// nothing.
NaturalVoices find_natural_voices(const VoiceFolders& folders, const VoicePrograms& programs);

/// The voice of a single file, a description or a Piper model. @throws Failure with what is wrong.
NaturalVoice read_natural_voice(const std::filesystem::path& file, const VoicePrograms& programs);

/// Whether the voice of this id, of all engines' voices, is a natural one.
constexpr bool is_natural_voice(std::string_view id)
{
    return id.starts_with("voice:") || id.starts_with("piper:");
}

/// The path of the program that runs Piper models; empty if there is none.
std::string find_piper(const std::string& search_path);

/// The full path of a program that can be run, as a shell would find it. Empty if there is none.
std::filesystem::path find_program(const std::string& name, const std::string& search_path);

} // namespace tessavox::voice
