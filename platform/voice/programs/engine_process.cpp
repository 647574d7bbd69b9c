#include "platform/voice/programs/engine_process.h"

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/voice/natural/small_file.h"
#include "platform/voice/programs/sound_answer.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <span>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::size_t most_errors_kept = 600;

fs::path sound_folder(const fs::path& own)
{
    return own / "sound";
}

// A user's home, or what it lies in, is what the walls are there for.
bool may_be_read(const fs::path& path)
{
    const char* home_variable = std::getenv("HOME");
    const fs::path home = fs::path(home_variable ? home_variable : "/").lexically_normal();
    const fs::path plain = path.lexically_normal();
    const auto [end, rest] = std::ranges::mismatch(plain, home);
    return path.is_absolute() && end != plain.end();
}

// A program of a package's, in a folder "bin", needs what lies beside that; any other its own
// folder.
std::vector<fs::path> places_of_program(const fs::path& program)
{
    const fs::path folder = program.parent_path();
    if (folder.filename() != "bin")
        return { program, folder };
    const fs::path root = folder.parent_path();
    return { program, folder, root / "lib", root / "lib64", root / "pyvenv.cfg" };
}

std::vector<std::string> readable_for(const NaturalVoice& voice)
{
    const VoiceDescription& description = voice.description;
    std::vector<fs::path> places = description.reads;
    places.push_back(voice.origin.parent_path());
    if (!description.model.empty())
        places.insert(places.end(), { description.model, description.model.parent_path() });
    std::error_code ignored;
    const fs::path program = description.command.front();
    const fs::path installed = fs::canonical(program, ignored);
    // A script's own interpreter may lie elsewhere again.
    const fs::path interpreter = fs::canonical(installed.parent_path() / "python", ignored);
    for (const fs::path& path : { program, installed, interpreter })
        std::ranges::copy(places_of_program(path), std::back_inserter(places));
    for (const std::string& argument : description.command)
        places.emplace_back(argument);
    std::vector<std::string> readable;
    for (const fs::path& place : places)
        if (may_be_read(place))
            readable.push_back(place);
    return readable;
}

struct Value {
    std::string_view placeholder;
    std::string value;
};

std::string filled(std::string argument, std::span<const Value> values)
{
    for (std::size_t at = 0; (at = argument.find('{', at)) != std::string::npos;) {
        const std::string_view rest = std::string_view(argument).substr(at);
        const auto value = std::ranges::find_if(
            values, [&](const Value& one) { return rest.starts_with(one.placeholder); });
        if (value == values.end()) {
            ++at;
            continue;
        }
        argument.replace(at, value->placeholder.size(), value->value);
        at += value->value.size();
    }
    return argument;
}

} // namespace

/// Tells of files that were written and closed.
class EngineProcess::Watch {
public:
    explicit Watch(const fs::path& folder)
        : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        std::error_code ignored;
        fs::create_directory(folder, ignored);
        if (inotify_add_watch(descriptor(), folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0)
            throw Failure("the folder of its sound can't be watched");
    }

    int descriptor() const { return m_descriptor.get(); }
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        alignas(inotify_event) std::array<char, 4096> events{};
        for (ssize_t got = 0; (got = read(descriptor(), events.data(), events.size())) > 0;)
            for (const char* at = events.data(); at < events.data() + got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                if (event->len > 0)
                    found.emplace_back(event->name);
                at += sizeof *event + event->len;
            }
        return found;
    }

private:
    const Descriptor m_descriptor;
};

EngineProcess::EngineProcess(NaturalVoice voice)
    : m_voice(std::move(voice))
    , m_closed_files(std::make_unique<Watch>(sound_folder(m_folder.path())))
{
    if (!anew())
        start({});
}

EngineProcess::~EngineProcess() = default;

void EngineProcess::start(const std::string& text)
{
    const VoiceDescription& description = m_voice.description;
    const fs::path sound = sound_folder(m_folder.path());
    // An argument that begins with a dash would be an option.
    const Value values[] = { { "{text}", text.starts_with('-') ? " " + text : text },
        { "{out}", sound / "speech.wav" }, { "{dir}", sound }, { "{model}", description.model },
        { "{folder}", m_voice.origin.parent_path() },
        { "{speaker}", std::to_string(description.speaker.value_or(0)) } };
    ProgramOrder order;
    for (const std::string& argument : description.command)
        order.arguments.push_back(filled(argument, values));
    order.readable = readable_for(m_voice);
    order.folder = m_folder.path();
    m_program.reset();
    m_program = std::make_unique<ConfinedProgram>(order);
    m_output_ended = m_errors_ended = false;
}

std::vector<std::byte> EngineProcess::say(const std::string& line, EnginePatience& patience)
{
    if (anew()) {
        start(line);
    } else {
        wait_for_what_is_not_asked();
        if (has_answer() || !m_output.empty())
            throw Failure("it answers more than it is asked");
    }
    if (!anew() || !has_placeholder(m_voice.description.command, "{text}"))
        send(line + "\n");
    if (anew())
        m_program->close_input();
    while (!has_answer())
        wait(patience);
    ++m_answers;
    return take_answer();
}

// Whether a program answers twice shows after its first answer, while that one is heard.
void EngineProcess::wait_for_what_is_not_asked()
{
    const auto time = std::chrono::milliseconds(m_answers == 1 ? 200 : 0);
    EnginePatience patience{ Clock::now() + time, -1, {} };
    while (!has_answer() && attempt([&] { wait(patience); })) { }
}

// A pipe takes a line whole, if the program reads what came before; one that doesn't will not
// answer either.
void EngineProcess::send(const std::string& line)
{
    if (write(m_program->input(), line.data(), line.size()) < 0 && errno != EPIPE)
        throw Failure("it does not read its input");
}

bool EngineProcess::has_answer() const
{
    switch (m_voice.description.mode) {
    case CommandMode::directory:
        return !m_files.empty();
    case CommandMode::wave:
        return m_program->end().has_value();
    case CommandMode::frames:
        break;
    }
    const auto length = length_of_frames();
    return length && m_output.size() >= *length;
}

// The length of the answer at the start of the output, once its header is there.
std::optional<std::size_t> EngineProcess::length_of_frames() const
{
    const std::size_t end = m_output.find('\n');
    if (end == std::string::npos && m_output.size() < most_frames_header)
        return std::nullopt;
    const FramesHeader header = parse_frames_header(std::string_view(m_output).substr(0, end));
    return end + 1 + header.frames * sizeof(std::int16_t);
}

std::vector<std::byte> EngineProcess::take_answer()
{
    switch (m_voice.description.mode) {
    case CommandMode::directory: {
        const fs::path file = m_files.front();
        m_files.erase(m_files.begin());
        return take_file(file);
    }
    case CommandMode::wave:
        read_some(m_program->errors(), &m_errors);
        if (!m_program->ended_well())
            throw Failure("it " + *m_program->end());
        return take_file(sound_folder(m_folder.path()) / "speech.wav");
    case CommandMode::frames:
        break;
    }
    const auto bytes = std::as_bytes(std::span(m_output).first(*length_of_frames()));
    std::vector<std::byte> answer(bytes.begin(), bytes.end());
    m_output.erase(0, answer.size());
    return answer;
}

std::vector<std::byte> EngineProcess::take_file(const fs::path& file)
{
    std::string bytes;
    try {
        bytes = read_small_file(file, most_answer_bytes);
    } catch (const Failure& failure) {
        throw Failure("its sound " + std::string(failure.what()));
    }
    unlink(file.c_str());
    const auto all = std::as_bytes(std::span(bytes));
    return { all.begin(), all.end() };
}

void EngineProcess::read_closed_files()
{
    for (const std::string& name : m_closed_files->names())
        if (m_voice.description.mode == CommandMode::directory)
            m_files.push_back(sound_folder(m_folder.path()) / name);
}

// Output that nobody waits for and the bulk of the errors are thrown away, so that a program that
// writes much is not held up and fills no memory. False at the end.
bool EngineProcess::read_some(int descriptor, std::string* kept)
{
    std::array<char, 65536> piece{};
    const ssize_t got = read(descriptor, piece.data(), piece.size());
    if (kept && got > 0)
        kept->append(piece.data(), static_cast<std::size_t>(got));
    return got > 0 || (got < 0 && errno != EIO);
}

void EngineProcess::wait(EnginePatience& patience)
{
    const auto left
        = std::chrono::ceil<std::chrono::milliseconds>(patience.deadline - Clock::now()).count();
    const int most_ms = static_cast<int>(std::clamp<std::int64_t>(left, 0, 60'000));
    const bool ended = m_program->end().has_value();
    std::array<pollfd, 5> descriptors{ { { ended ? -1 : m_program->process(), POLLIN, 0 },
        { m_output_ended ? -1 : m_program->output(), POLLIN, 0 },
        { m_errors_ended ? -1 : m_program->errors(), POLLIN, 0 },
        { m_closed_files->descriptor(), POLLIN, 0 }, { patience.descriptor, POLLIN, 0 } } };
    const int ready = poll(descriptors.data(), descriptors.size(), ended ? 0 : most_ms);
    const bool frames = m_voice.description.mode == CommandMode::frames;
    if (descriptors[1].revents != 0)
        m_output_ended = !read_some(m_program->output(), frames ? &m_output : nullptr);
    if (descriptors[2].revents != 0)
        m_errors_ended = !read_some(m_program->errors(), &m_errors);
    m_errors.erase(0, m_errors.size() - std::min(m_errors.size(), most_errors_kept));
    if (m_output.size() > most_answer_bytes)
        throw Failure("it writes more than an answer can have");
    read_closed_files();
    if (descriptors[4].revents != 0)
        patience.look();
    if (ready == 0 && ended && !has_answer())
        throw Failure("it " + *m_program->end());
    if (Clock::now() >= patience.deadline && !has_answer())
        throw Failure("it does not answer in time");
}

} // namespace tessavox::voice
