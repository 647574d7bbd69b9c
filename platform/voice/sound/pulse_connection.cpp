#include "platform/voice/sound/pulse_connection.h"

#include "platform/failure.h"

#include <pulse/error.h>
#include <pulse/subscribe.h>

#include <utility>

namespace tessavox::voice {

namespace {

// For calls whose outcome shows in a callback or does not matter.
void forget(pa_operation* operation)
{
    if (operation)
        pa_operation_unref(operation);
}

} // namespace

PulseConnection::PulseConnection(const std::string& application_name)
    : m_loop(pa_threaded_mainloop_new())
{
    if (!m_loop)
        throw Failure("no main loop for the sound server");
    m_context.reset(
        pa_context_new(pa_threaded_mainloop_get_api(m_loop.get()), application_name.c_str()));
    if (!m_context)
        throw Failure("no context for the sound server");
    connect();
}

void PulseConnection::connect()
{
    pa_context_set_state_callback(m_context.get(), state_changed, this);
    pa_context_set_subscribe_callback(m_context.get(), outputs_changed, this);
    if (pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        throw Failure(
            std::string("no sound server: ") + pa_strerror(pa_context_errno(m_context.get())));
    if (pa_threaded_mainloop_start(m_loop.get()) < 0)
        throw Failure("no thread for the sound server");
}

PulseConnection::~PulseConnection()
{
    {
        const Lock lock(*this);
        m_listing.reset();
        pa_context_set_state_callback(m_context.get(), nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context.get(), nullptr, nullptr);
        pa_context_disconnect(m_context.get());
        m_context.reset();
    }
    pa_threaded_mainloop_stop(m_loop.get());
}

PulseConnection::State PulseConnection::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

PulseConnection::State PulseConnection::wait_until_connected(Deadline deadline)
{
    wait(deadline, [this] { return m_state != State::connecting; });
    return state();
}

void PulseConnection::announce()
{
    // Under the mutex, so that a waiter can't miss it between its look and its sleep.
    const std::lock_guard lock(m_mutex);
    m_changed.notify_all();
}

void PulseConnection::watch_outputs()
{
    const Lock lock(*this);
    if (std::exchange(m_watching, true) || pa_context_get_state(context()) != PA_CONTEXT_READY)
        return;
    list_outputs();
}

std::vector<SoundServer::Output> PulseConnection::outputs() const
{
    const std::lock_guard lock(m_mutex);
    return m_outputs;
}

void PulseConnection::list_outputs()
{
    forget(pa_context_subscribe(context(), PA_SUBSCRIPTION_MASK_SINK, nullptr, nullptr));
    m_coming.clear();
    m_listing.reset(pa_context_get_sink_info_list(context(), output_listed, this));
}

void PulseConnection::state_changed(pa_context* context, void* self)
{
    auto& connection = *static_cast<PulseConnection*>(self);
    const pa_context_state_t now = pa_context_get_state(context);
    {
        const std::lock_guard lock(connection.m_mutex);
        if (now == PA_CONTEXT_READY)
            connection.m_state = State::ready;
        else if (!PA_CONTEXT_IS_GOOD(now))
            connection.m_state = State::lost;
    }
    connection.announce();
    if (now == PA_CONTEXT_READY && connection.m_watching)
        connection.list_outputs();
}

void PulseConnection::outputs_changed(
    pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self)
{
    auto& connection = *static_cast<PulseConnection*>(self);
    connection.m_coming.clear();
    connection.m_listing.reset(
        pa_context_get_sink_info_list(connection.context(), output_listed, self));
}

void PulseConnection::output_listed(pa_context*, const pa_sink_info* sink, int end, void* self)
{
    auto& connection = *static_cast<PulseConnection*>(self);
    if (end == 0) {
        connection.m_coming.push_back({ .name = sink->name, .description = sink->description });
        return;
    }
    const std::lock_guard lock(connection.m_mutex);
    if (end > 0)
        connection.m_outputs = std::exchange(connection.m_coming, {});
}

} // namespace tessavox::voice
