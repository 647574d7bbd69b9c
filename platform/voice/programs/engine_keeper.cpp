#include "platform/voice/programs/engine_keeper.h"

#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/voice/programs/engine_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <span>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Time for a model to be loaded, and three times the length of the sound, about.
constexpr auto patience_at_least = std::chrono::seconds(10);
constexpr auto patience_per_byte = std::chrono::milliseconds(200);
// What nobody waits for any more may be finished in this time, because a program that is ended has
// to load its model again.
constexpr auto patience_with_the_unwanted = std::chrono::seconds(1);
constexpr int idle_milliseconds = 5 * 60 * 1000;
// A text that changes between voices keeps them loaded; more of them fill the memory.
constexpr std::size_t most_engines = 3;

struct OrderHeader {
    std::uint64_t number = 0;
    std::uint32_t anew = 0; // by a program that is started for it
    std::uint32_t id_length = 0;
    std::uint32_t line_length = 0;
    std::uint32_t unused = 0;
};
constexpr std::uint32_t longest_order_text = 65'536;

struct AnswerHeader {
    std::uint64_t number = 0;
    std::uint32_t failed = 0; // then the bytes are a message
    std::uint32_t length = 0;
};

template <class Header> std::span<const std::byte> bytes_of(const Header& header)
{
    return std::as_bytes(std::span(&header, 1));
}

/// The helper has gone.
struct Abandoned { };

/// The keeper's own end.
class Keeper {
public:
    Keeper(int socket, VoicePlaces places)
        : m_socket(socket)
        , m_places(std::move(places))
    {
    }

    void serve()
    {
        for (;;) {
            pollfd readable{ m_socket, POLLIN, 0 };
            if (poll(&readable, 1, m_engines.empty() ? -1 : idle_milliseconds) == 0) {
                m_engines.clear();
                continue;
            }
            OrderHeader order;
            if (!read_all(m_socket, std::as_writable_bytes(std::span(&order, 1)))
                || order.id_length > longest_order_text || order.line_length > longest_order_text)
                throw Abandoned();
            std::string id(order.id_length, '\0');
            std::string line(order.line_length, '\0');
            if (!read_all(m_socket, std::as_writable_bytes(std::span(id)))
                || !read_all(m_socket, std::as_writable_bytes(std::span(line))))
                throw Abandoned();
            if (order.anew != 0)
                end(id);
            answer(order.number, id, line);
        }
    }

private:
    struct Kept {
        std::string id;
        std::unique_ptr<EngineProcess> process;
    };

    void answer(std::uint64_t number, const std::string& id, const std::string& line)
    {
        AnswerHeader header{ number, 0, 0 };
        std::vector<std::byte> bytes;
        try {
            bytes = said(id, line);
        } catch (const Failure& failure) {
            const auto message = std::as_bytes(std::span(std::string_view(failure.what())));
            bytes.assign(message.begin(), message.end());
            header.failed = 1;
        }
        header.length = static_cast<std::uint32_t>(bytes.size());
        if (!write_all(m_socket, bytes_of(header)) || !write_all(m_socket, bytes))
            throw Abandoned();
    }

    std::vector<std::byte> said(const std::string& id, const std::string& line)
    {
        EnginePatience patience{ Clock::now() + patience_at_least
                + patience_per_byte * static_cast<int>(line.size()),
            m_socket, {} };
        patience.look = [&] { look_at_helper(patience); };
        EngineProcess& engine = engine_of(id);
        try {
            return engine.say(line, patience);
        } catch (const Failure& failure) {
            const std::string errors = engine.last_errors();
            end(id);
            throw Failure(failure.what() + (errors.empty() ? "" : "; its errors: " + errors));
        }
    }

    void end(const std::string& id)
    {
        std::erase_if(m_engines, [&](const Kept& kept) { return kept.id == id; });
    }

    // Another order tells that nobody waits for this one.
    void look_at_helper(EnginePatience& patience)
    {
        char byte = 0;
        if (recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == 0)
            throw Abandoned();
        patience.deadline = std::min(patience.deadline, Clock::now() + patience_with_the_unwanted);
        patience.descriptor = -1;
    }

    // The one used last stands last.
    EngineProcess& engine_of(const std::string& id)
    {
        const auto place = std::ranges::find(m_engines, id, &Kept::id);
        if (place != m_engines.end()) {
            std::rotate(place, place + 1, m_engines.end());
            return *m_engines.back().process;
        }
        NaturalVoices found = find_natural_voices(m_places.folders, m_places.programs);
        const auto voice = std::ranges::find(found.voices, id, &NaturalVoice::id);
        if (voice == found.voices.end())
            throw Failure("the voice is no longer installed");
        auto process = std::make_unique<EngineProcess>(std::move(*voice));
        if (m_engines.size() == most_engines)
            m_engines.erase(m_engines.begin());
        m_engines.push_back({ id, std::move(process) });
        return *m_engines.back().process;
    }

    const int m_socket;
    const VoicePlaces m_places;
    std::vector<Kept> m_engines;
};

// Neither a terminal nor what ends its helper may end it before it has ended its engines.
[[noreturn]] void keep_engines(int socket, const VoicePlaces& places)
{
    setsid();
    for (const int signal : { SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGUSR1, SIGUSR2 })
        std::signal(signal, SIG_IGN);
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    {
        Keeper keeper(socket, places);
        try {
            keeper.serve();
        } catch (const Abandoned&) {
            // Its engines end with it.
        }
    }
    _exit(EXIT_SUCCESS);
}

} // namespace

VoicePlaces voice_places(const std::string& shipped)
{
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    VoicePlaces places;
    places.folders = voice_folders(variable("XDG_DATA_HOME"), variable("HOME"));
    if (!shipped.empty())
        places.folders.descriptions.push_back(fs::absolute(shipped));
    places.programs.home = variable("HOME");
    places.programs.search_path = variable("PATH");
    // Where programs of a user's own are put, which a desktop doesn't always search.
    if (!places.programs.home.empty())
        places.programs.search_path += ":" + places.programs.home + "/.local/bin";
    places.programs.piper = find_piper(places.programs.search_path);
    return places;
}

EngineKeeper::EngineKeeper(const VoicePlaces& places)
{
    std::array<int, 2> ends{ -1, -1 };
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    const pid_t keeper = fork();
    if (keeper == 0) {
        close(ends[0]);
        keep_engines(ends[1], places);
    }
    close(ends[1]);
    m_socket = Descriptor(ends[0]);
    fcntl(m_socket.get(), F_SETFL, O_NONBLOCK);
}

std::vector<std::byte> EngineKeeper::say(
    const ProgramLine& line, const std::atomic<bool>& cancelled)
{
    const OrderHeader order{ ++m_last_order, line.anew ? 1U : 0U,
        static_cast<std::uint32_t>(line.voice_id.size()),
        static_cast<std::uint32_t>(line.text.size()), 0 };
    if (!write_all(m_socket.get(), bytes_of(order))
        || !write_all(m_socket.get(), std::as_bytes(std::span(line.voice_id)))
        || !write_all(m_socket.get(), std::as_bytes(std::span(line.text))))
        throw Failure("nobody is there to start it");
    // How soon a stop is noticed.
    constexpr int look_milliseconds = 10;
    std::vector<std::byte> answer;
    while (!cancelled && !receive(order.number, answer)) {
        pollfd readable{ m_socket.get(), POLLIN, 0 };
        poll(&readable, 1, look_milliseconds);
    }
    return answer;
}

// Reads what has come. True if it is the whole answer to this order; those to orders that nobody
// waited for are passed over.
bool EngineKeeper::receive(std::uint64_t number, std::vector<std::byte>& answer)
{
    constexpr std::size_t piece = 65'536;
    const std::size_t before = m_incoming.size();
    m_incoming.resize(before + piece);
    const ssize_t got = read(m_socket.get(), m_incoming.data() + before, piece);
    m_incoming.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0)
        throw Failure("what starts it has gone");
    AnswerHeader header;
    if (m_incoming.size() < sizeof header)
        return false;
    std::memcpy(&header, m_incoming.data(), sizeof header);
    if (m_incoming.size() < sizeof header + header.length)
        return false;
    const auto begin = m_incoming.begin() + sizeof header;
    const auto end = begin + header.length;
    answer.assign(begin, end);
    m_incoming.erase(m_incoming.begin(), end);
    if (header.number != number) {
        answer.clear();
        return false;
    }
    if (header.failed != 0)
        throw Failure(std::string(reinterpret_cast<const char*>(answer.data()), answer.size()));
    return true;
}

} // namespace tessavox::voice
