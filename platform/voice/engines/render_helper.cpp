// The helper's side of a render farm.
#include "platform/failure.h"
#include "platform/voice/engines/render_farm.h"
#include "platform/voice/engines/render_wire.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

constexpr int exit_bad_request = 2;

// Fills all of `bytes`. False at the end of the input.
bool read_all(std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t got = read(STDIN_FILENO, bytes.data(), bytes.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(got));
    }
    return true;
}

bool write_all(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t put = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(put));
    }
    return true;
}

std::optional<Rendering> render(const VoiceCatalog& catalog, const WireRequest& request)
{
    static const std::atomic<bool> never_cancelled{ false };
    std::optional<Rendering> rendering;
    attempt([&] {
        rendering = catalog.render(
            catalog.find(request.voice_id), request.rate, request.utterance, never_cancelled);
    });
    return rendering;
}

// One request and its answer. False at the end of the input.
bool serve_one(const VoiceCatalog& catalog, WireBytes& message)
{
    std::array<std::byte, sizeof(WireHeader)> start;
    if (!read_all(start))
        return false;
    const WireHeader header = *peek_header(start);
    message.resize(header.length);
    if (!read_all(message))
        return false;
    const WireRequest request = read_request(message);
    message.clear();
    append_answer(message, header.job, render(catalog, request));
    if (message.size() > longest_message) {
        message.clear();
        append_answer(message, header.job, std::nullopt);
    }
    return write_all(message);
}

} // namespace

int run_render_helper()
{
    // The input ends with the parent; this is for a parent that dies while the helper is speaking.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    const auto catalog = make_installed_catalog();
    WireBytes message;
    bool more = true;
    while (more)
        if (!attempt([&] { more = serve_one(*catalog, message); }))
            return exit_bad_request;
    return 0;
}

} // namespace tessavox::voice
