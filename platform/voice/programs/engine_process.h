// An engine that is a program of its own: a line of text in, sound out.
#pragma once

#include "platform/voice/natural/natural_voices.h"
#include "platform/voice/programs/confined_program.h"
#include "platform/voice/programs/private_folder.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessavox::voice {

/// How long is waited for an answer, and what may break it off.
struct EnginePatience {
    std::chrono::steady_clock::time_point deadline;
    int descriptor = -1; // when it becomes readable, `look` is called
    std::function<void()> look; // may throw, and may bring the deadline nearer
};

/// The most that an answer may have: two minutes of sound at the highest rate, and its header.
constexpr std::size_t most_answer_bytes = std::size_t{ 120 } * 48000 * 2 + 65536;

/// One voice's program. In the modes `directory` and `frames` it runs as long as this object, in
/// mode `wave` anew for each line. After a failure it is of no more use.
class EngineProcess {
public:
    /// @throws Failure if it can't be started.
    explicit EngineProcess(NaturalVoice voice);
    ~EngineProcess();

    /// What the program makes of a line, which has no line end: a wave file, or in mode `frames` a
    /// header and samples (see sound_answer.h). @throws Failure that says what the program did
    /// wrong.
    std::vector<std::byte> say(const std::string& line, EnginePatience& patience);

    /// The last that it has written to its errors, some hundred bytes at most.
    const std::string& last_errors() const { return m_errors; }

private:
    void start(const std::string& text);
    void wait_for_what_is_not_asked();
    void send(const std::string& line);
    bool anew() const { return m_voice.description.mode == CommandMode::wave; }
    void wait(EnginePatience& patience);
    bool read_some(int descriptor, std::string* kept);
    void read_closed_files();
    bool has_answer() const;
    std::vector<std::byte> take_answer();
    std::vector<std::byte> take_file(const std::filesystem::path& file);
    std::optional<std::size_t> length_of_frames() const;

    const NaturalVoice m_voice;
    const PrivateFolder m_folder;
    class Watch;
    const std::unique_ptr<Watch> m_closed_files;
    std::unique_ptr<ConfinedProgram> m_program;
    int m_answers = 0; // so far
    std::vector<std::filesystem::path> m_files; // closed and not taken
    std::string m_output; // of mode `frames`, not taken
    bool m_output_ended = false;
    std::string m_errors;
    bool m_errors_ended = false;
};

} // namespace tessavox::voice
