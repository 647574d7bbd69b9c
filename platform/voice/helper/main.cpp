//   tessavox-voice-helper [--voices FOLDER]
// Speaks utterances for another process, which started it and feeds it over a socket: confines
// itself, greets on descriptor 1, and then answers there what is asked on descriptor 0. Ends with
// that, or when it is asked nonsense. FOLDER has the descriptions that come with the program.
//   tessavox-voice-helper --check FILE
// Tells what is wrong with the description of a voice or with a Piper model.
#include "platform/confinement/confinement.h"
#include "platform/descriptor.h"
#include "platform/failure.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/helper/voice_check.h"
#include "platform/voice/programs/program_engine.h"
#include "platform/voice/rendering/render_wire.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <mutex>
#include <new>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

namespace tessavox::voice {

namespace {

enum ExitCode { good = 0, bad_request = 2, out_of_memory = 3 };

constexpr std::uint64_t most_memory_bytes = std::uint64_t{ 2 } << 30;

/// The requests that wait, between the thread that reads them and the one that speaks.
class OrderBox {
public:
    struct Order {
        std::uint64_t job = 0;
        WireRequest request;
        bool dropped = false;
    };
    void put(std::uint64_t job, WireRequest request)
    {
        const std::lock_guard lock(m_mutex);
        m_orders.push_back({ job, std::move(request) });
        m_changed.notify_one();
    }
    /// Everything up to `last_job` is no longer wanted, not even what is being spoken.
    void drop_up_to(std::uint64_t last_job)
    {
        const std::lock_guard lock(m_mutex);
        for (Order& order : m_orders)
            order.dropped = order.dropped || order.job <= last_job;
        if (m_taken <= last_job)
            m_dropped = true;
    }
    /// Waits for the next one.
    Order take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_orders.empty(); });
        Order order = std::move(m_orders.front());
        m_orders.pop_front();
        m_taken = order.job;
        m_dropped = order.dropped;
        return order;
    }
    /// Whether the one taken last has been dropped since.
    const std::atomic<bool>& dropped() const { return m_dropped; }

private:
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::deque<Order> m_orders;
    std::uint64_t m_taken = 0; // its job
    std::atomic<bool> m_dropped{ false };
};

// One request, or one withdrawal. False at the end of the input.
bool receive_one(OrderBox& box, WireBytes& message)
{
    std::array<std::byte, sizeof(WireHeader)> start;
    if (!read_all(STDIN_FILENO, start))
        return false;
    const WireHeader header = *peek_header(start);
    message.resize(header.length);
    if (!read_all(STDIN_FILENO, message))
        return false;
    if (message.empty())
        box.drop_up_to(header.job);
    else
        box.put(header.job, read_request(message));
    return true;
}

// The end of the input ends the process, whatever an engine is doing.
[[noreturn]] void receive(OrderBox& box)
{
    WireBytes message;
    bool more = true;
    while (more)
        if (!attempt([&] { more = receive_one(box, message); }))
            _exit(bad_request);
    _exit(good);
}

std::optional<Rendering> render(
    const VoiceCatalog& catalog, const OrderBox::Order& order, const std::atomic<bool>& dropped)
{
    std::optional<Rendering> rendering;
    if (order.dropped)
        return rendering;
    const WireRequest& request = order.request;
    attempt([&] {
        rendering = catalog.render(
            catalog.find(request.voice_id), request.rate, request.utterance, dropped);
    });
    // Nobody looks at what was broken off.
    if (dropped)
        rendering.reset();
    return rendering;
}

// The walls stand before an engine is started: espeak-ng would look for a sound server, although it
// is never to be heard here, and wait half a minute for one that hangs.
std::vector<std::string> put_up_walls(const VoiceFolders& natural)
{
    Confinement walls;
    walls.readable = { "/lib", "/lib64", "/usr/lib", "/usr/lib64", "/usr/local/lib",
        "/usr/share/espeak-ng-data", "/usr/local/share/espeak-ng-data", "/etc/ld.so.cache" };
    if (const char* data = std::getenv("ESPEAK_DATA_PATH"))
        walls.readable.emplace_back(data);
    for (const auto* folders : { &natural.descriptions, &natural.piper })
        walls.readable.insert(walls.readable.end(), folders->begin(), folders->end());
    walls.most_memory_bytes = most_memory_bytes;
    return confine(walls);
}

// The sound server's library complains about being kept from what nobody here wants from it.
class SilentErrors {
public:
    SilentErrors()
        : m_errors(dup(STDERR_FILENO))
    {
        const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
        dup2(nowhere.get(), STDERR_FILENO);
    }
    ~SilentErrors() { dup2(m_errors.get(), STDERR_FILENO); }
    SilentErrors(const SilentErrors&) = delete;
    SilentErrors& operator=(const SilentErrors&) = delete;

private:
    Descriptor m_errors;
};

std::unique_ptr<VoiceCatalog> start_engines_within_walls(
    const VoicePlaces& places, EngineKeeper& keeper)
{
    std::vector<std::string> gaps;
    std::unique_ptr<VoiceCatalog> catalog;
    {
        const SilentErrors silence;
        gaps = put_up_walls(places.folders);
        catalog = make_installed_catalog(make_program_engine(places, keeper));
    }
    for (const std::string& gap : gaps)
        std::fprintf(stderr, "tessavox-voice-helper: %s\n", gap.c_str());
    return catalog;
}

[[noreturn]] void run_speaking_helper(const std::string& shipped_voices)
{
    // The input ends with the parent; this is for a parent that dies while the helper is stopped.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    std::set_new_handler([] { _exit(out_of_memory); });
    constexpr unsigned int first_foreign = STDERR_FILENO + 1;
    close_range(first_foreign, ~0U, 0); // what a library of the parent's left open
    const VoicePlaces places = voice_places(shipped_voices);
    EngineKeeper keeper(places); // before there are walls and threads
    const auto catalog = start_engines_within_walls(places, keeper);
    OrderBox box;
    std::thread([&box] { receive(box); }).detach();
    WireBytes message;
    append_greeting(message, catalog->tokens());
    while (write_all(STDOUT_FILENO, message)) {
        const OrderBox::Order order = box.take();
        message.clear();
        append_answer(message, order.job, render(*catalog, order, box.dropped()));
        if (message.size() > longest_message) {
            message.clear();
            append_answer(message, order.job, std::nullopt);
        }
    }
    _exit(good);
}

} // namespace

} // namespace tessavox::voice

int main(int count, char** arguments)
{
    using namespace tessavox::voice;
    const std::string_view option = count == 3 ? arguments[1] : "";
    if (option == "--check")
        return check_voice(arguments[2]);
    run_speaking_helper(option == "--voices" ? arguments[2] : "");
}
