// The messages between the program and its speaking helpers. Both ends are the same build on the
// same machine, so numbers travel in its own byte order; still each end believes nothing it reads.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/utterance.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tessavox::voice {

using WireBytes = std::vector<std::byte>;

/// What precedes each message.
struct WireHeader {
    std::uint32_t magic = wire_magic;
    std::uint32_t length = 0; // bytes that follow
    std::uint64_t job = 0; // the answer carries the number of its request, the greeting 0

    static constexpr std::uint32_t wire_magic = 0x31585654; // "TVX1"
};

/// Longest message in bytes: more than the slowest voice makes of the longest utterance.
constexpr std::uint32_t longest_message = 256U << 20;

struct WireRequest {
    std::string voice_id;
    int rate = 0;
    Utterance utterance; // without what no engine needs: places in the source, bookmarks, levels
};

/// Appends a whole message, header included.
void append_request(WireBytes& out, std::uint64_t job, const WireRequest& request);
/// The same; nothing as the rendering says that the engine couldn't speak.
void append_answer(WireBytes& out, std::uint64_t job, const std::optional<Rendering>& rendering);

/// What a helper says unasked when it is ready: the voices that it has.
void append_greeting(WireBytes& out, const std::vector<SpeechObjectToken>& voices);
/// Makes a helper give up what it was asked for up to this job. Each still gets an answer.
void append_drop(WireBytes& out, std::uint64_t last_job);

/// Reads what follows a header. @throws Failure if it isn't what append_request() writes.
WireRequest read_request(std::span<const std::byte> message);
/// Reads the answer about an utterance of `tokens` tokens; nothing if the engine couldn't speak.
/// @throws Failure if it isn't what append_answer() writes, or breaks what a rendering promises:
/// one rising mark for each token, all within the sound.
std::optional<Rendering> read_answer(std::span<const std::byte> message, std::size_t tokens);

/// @throws Failure if it isn't what append_greeting() writes.
std::vector<SpeechObjectToken> read_greeting(std::span<const std::byte> message);

/// The header at the start of `bytes`, if all of it is there. @throws Failure if it is none.
std::optional<WireHeader> peek_header(std::span<const std::byte> bytes);

} // namespace tessavox::voice
