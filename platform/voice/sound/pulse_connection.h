// The connection to the sound server: its thread, its state and the list of its outputs.
#pragma once

#include "platform/failure.h"
#include "platform/voice/sound/audio_sink.h"

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tessavox::voice {

struct PulseOperationRelease {
    /// Its callback will not run any more.
    void operator()(pa_operation* operation) const
    {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};
using PulseOperation = std::unique_ptr<pa_operation, PulseOperationRelease>;

// For calls whose outcome shows in a callback or a state, or does not matter.
inline void forget(pa_operation* operation)
{
    if (operation)
        pa_operation_unref(operation);
}

/// One attempt at a server. Once lost it stays lost, and a new one has to be made.
class PulseConnection {
public:
    using Deadline = std::chrono::steady_clock::time_point;
    enum class State { connecting, ready, lost };

    /// Begins to connect; does not wait. @throws Failure if there is no server.
    explicit PulseConnection(const std::string& application_name)
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
    ~PulseConnection()
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
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    State state() const
    {
        const std::lock_guard lock(m_mutex);
        return m_state;
    }
    /// Waits until it is ready or lost, or the time is up, and tells the state then.
    State wait_until_connected(Deadline deadline)
    {
        wait(deadline, [this] { return m_state != State::connecting; });
        return state();
    }

    /// Waits until `settled()` is true or the time is up. For states that a callback changes and
    /// then announces.
    template <class Condition> bool wait(Deadline deadline, Condition settled)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_until(lock, deadline, settled);
    }
    void announce()
    {
        // Under the mutex, so that a waiter can't miss it between its look and its sleep.
        const std::lock_guard lock(m_mutex);
        m_changed.notify_all();
    }

    /// From now on the list of outputs is kept up to date in the background.
    void watch_outputs()
    {
        const Lock lock(*this);
        if (std::exchange(m_watching, true) || pa_context_get_state(context()) != PA_CONTEXT_READY)
            return;
        list_outputs();
    }
    std::vector<SoundServer::Output> outputs() const
    {
        const std::lock_guard lock(m_mutex);
        return m_outputs;
    }

    /// Every call into the library has to be made under this lock; callbacks run under it. Never
    /// held for long: the library's thread lets go of it while it waits.
    void lock() { pa_threaded_mainloop_lock(m_loop.get()); }
    void unlock() { pa_threaded_mainloop_unlock(m_loop.get()); }
    using Lock = std::lock_guard<PulseConnection>;

    pa_context* context() { return m_context.get(); }

private:
    struct LoopRelease {
        void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    };
    struct ContextRelease {
        void operator()(pa_context* context) const { pa_context_unref(context); }
    };

    void connect()
    {
        pa_context_set_state_callback(m_context.get(), state_changed, this);
        pa_context_set_subscribe_callback(m_context.get(), outputs_changed, this);
        if (pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
            throw Failure(
                std::string("no sound server: ") + pa_strerror(pa_context_errno(m_context.get())));
        if (pa_threaded_mainloop_start(m_loop.get()) < 0)
            throw Failure("no thread for the sound server");
    }
    void list_outputs()
    {
        forget(pa_context_subscribe(context(), PA_SUBSCRIPTION_MASK_SINK, nullptr, nullptr));
        m_coming.clear();
        m_listing.reset(pa_context_get_sink_info_list(context(), output_listed, this));
    }
    static void state_changed(pa_context* context, void* self)
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
    static void outputs_changed(
        pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self)
    {
        auto& connection = *static_cast<PulseConnection*>(self);
        connection.m_coming.clear();
        connection.m_listing.reset(
            pa_context_get_sink_info_list(connection.context(), output_listed, self));
    }
    static void output_listed(pa_context*, const pa_sink_info* sink, int end, void* self)
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

    std::unique_ptr<pa_threaded_mainloop, LoopRelease> m_loop;
    std::unique_ptr<pa_context, ContextRelease> m_context;
    bool m_watching = false; // under Lock, as the next two
    PulseOperation m_listing;
    std::vector<SoundServer::Output> m_coming; // a list that is not complete yet

    mutable std::mutex m_mutex; // taken after Lock, never before it
    std::condition_variable m_changed;
    State m_state = State::connecting;
    std::vector<SoundServer::Output> m_outputs;
};

} // namespace tessavox::voice
