// Keeps the engines that are programs, for a process that may start none itself.
//
// An engine's sound is read, aligned and bent in a speaking helper, whose walls let it neither
// start a program nor write a file. So the helper has a keeper: a process of its own, which it
// makes before its walls stand, which reads nothing but short orders by the id of a voice, looks
// the voice up itself, and runs its program within walls made for that voice (see
// confined_program.h). The helper gets the bytes that the program answers with; whatever they are,
// they are taken apart within the helper's walls.
//
//     program -- socket --> helper -- socket --> keeper -- pipes, private folder --> engine
//
// Each of them ends with the one before it, also when that is killed, and takes what it has made
// along: the keeper ends the engines' process groups and removes their folders.
#pragma once

#include "platform/descriptor.h"
#include "platform/voice/natural/natural_voices.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tessavox::voice {

/// Where voices and programs are looked for.
struct VoicePlaces {
    VoiceFolders folders;
    VoicePrograms programs;
};

/// Those of this user, by the environment. `shipped` holds descriptions that come with the program;
/// may be empty.
VoicePlaces voice_places(const std::string& shipped);

/// What a program is to say.
struct ProgramLine {
    std::string voice_id;
    std::string text; // of one line, in the encoding of the voice
    bool anew = false; // by a program that is started for it
};

/// The helper's end. One thread uses it.
class EngineKeeper {
public:
    /// Starts the keeper. To be called before there are other threads. Without one, say() fails.
    explicit EngineKeeper(const VoicePlaces& places);

    /// What the program of a voice answers to a line (see EngineProcess::say). Returns early, with
    /// nothing, when `cancelled` turns true. @throws Failure with what it did wrong.
    std::vector<std::byte> say(const ProgramLine& line, const std::atomic<bool>& cancelled);

private:
    bool receive(std::uint64_t number, std::vector<std::byte>& answer);

    Descriptor m_socket;
    std::uint64_t m_last_order = 0;
    std::vector<std::byte> m_incoming;
};

} // namespace tessavox::voice
