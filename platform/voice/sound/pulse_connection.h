// The connection to the sound server: its thread, its state and the list of its outputs.
#pragma once

#include "platform/voice/sound/audio_sink.h"

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/operation.h>
#include <pulse/thread-mainloop.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
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

/// One attempt at a server. Once lost it stays lost, and a new one has to be made.
class PulseConnection {
public:
    using Deadline = std::chrono::steady_clock::time_point;
    enum class State { connecting, ready, lost };

    /// Begins to connect; does not wait. @throws Failure if there is no server.
    explicit PulseConnection(const std::string& application_name);
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    State state() const;
    /// Waits until it is ready or lost, or the time is up, and tells the state then.
    State wait_until_connected(Deadline deadline);

    /// Waits until `settled()` is true or the time is up. For states that a callback changes and
    /// then announces.
    template <class Condition> bool wait(Deadline deadline, Condition settled)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_until(lock, deadline, settled);
    }
    void announce();

    /// From now on the list of outputs is kept up to date in the background.
    void watch_outputs();
    std::vector<SoundServer::Output> outputs() const;

    /// Every call into the library has to be made under this lock; callbacks run under it. Never
    /// held for long: the library's thread lets go of it while it waits.
    class Lock {
    public:
        explicit Lock(PulseConnection& connection)
            : m_loop(connection.m_loop.get())
        {
            pa_threaded_mainloop_lock(m_loop);
        }
        ~Lock() { pa_threaded_mainloop_unlock(m_loop); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pa_threaded_mainloop* m_loop;
    };
    pa_context* context() { return m_context.get(); }

private:
    struct LoopRelease {
        void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    };
    struct ContextRelease {
        void operator()(pa_context* context) const { pa_context_unref(context); }
    };

    void connect();
    void list_outputs();
    static void state_changed(pa_context* context, void* self);
    static void outputs_changed(
        pa_context* context, pa_subscription_event_type_t event, std::uint32_t, void* self);
    static void output_listed(pa_context* context, const pa_sink_info* sink, int end, void* self);

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
