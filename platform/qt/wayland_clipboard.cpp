#include "platform/qt/wayland_clipboard.h"

#include "platform/failure.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-data-control-unstable-v1.h>

namespace tessavox {
namespace {

/// By this form a text of this process is known again when the session tells of it.
std::string own_form()
{
    return "application/x-tessavox-" + std::to_string(::getpid());
}

/// Gives a text to whoever pastes it, as fast as that program takes it.
class Giving : public QObject {
public:
    Giving(int pipe, const TextSlice& text, QObject* parent)
        : QObject(parent)
        , m_pipe(pipe)
        , m_text(text)
        , m_readiness(pipe, QSocketNotifier::Write)
    {
        ::fcntl(pipe, F_SETFL, O_NONBLOCK);
        connect(&m_readiness, &QSocketNotifier::activated, this, &Giving::give);
    }
    ~Giving() override
    {
        m_readiness.setEnabled(false);
        ::close(m_pipe);
    }

private:
    void give()
    {
        if (m_given == m_bytes.size()) {
            m_bytes = next_bytes();
            m_given = 0;
        }
        const auto given = ::write(m_pipe, m_bytes.data() + m_given, m_bytes.size() - m_given);
        if (given > 0)
            m_given += static_cast<std::size_t>(given);
        if (m_bytes.empty() || (given < 0 && errno != EAGAIN && errno != EINTR))
            deleteLater();
    }
    /// Of the next stretch of the text, none at its end.
    std::string next_bytes()
    {
        constexpr std::size_t most_units = 65536;
        std::u16string_view rest = m_text.view().substr(m_taken);
        if (rest.size() > most_units)
            rest = rest.substr(0, most_units + (is_low_surrogate(rest[most_units]) ? 1 : 0));
        m_taken += rest.size();
        return to_utf8(rest);
    }

    int m_pipe;
    TextSlice m_text;
    std::size_t m_taken = 0; // units of it
    std::string m_bytes; // these are its last ones
    std::size_t m_given = 0; // bytes of these
    QSocketNotifier m_readiness;
};

} // namespace

/// What the session calls.
struct WaylandClipboard::Listeners {
    static WaylandClipboard& self(void* data) { return *static_cast<WaylandClipboard*>(data); }

    static void global(
        void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t)
    {
        if (!self(data).m_seat && !std::strcmp(interface, wl_seat_interface.name))
            self(data).m_seat
                = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
        else if (!std::strcmp(interface, zwlr_data_control_manager_v1_interface.name))
            self(data).m_manager = static_cast<zwlr_data_control_manager_v1*>(
                wl_registry_bind(registry, name, &zwlr_data_control_manager_v1_interface, 1));
    }
    static void global_removed(void*, wl_registry*, std::uint32_t) { }
    static constexpr wl_registry_listener registry{ global, global_removed };

    static void form(void* data, zwlr_data_control_offer_v1* handle, const char* name)
    {
        constexpr std::size_t most_forms = 1000; // of a program that is out of its mind
        Offer& announced = self(data).m_announced;
        if (handle == announced.handle && announced.forms.size() < most_forms)
            announced.forms.emplace_back(name);
    }
    static constexpr zwlr_data_control_offer_v1_listener offer{ form };

    static void announced(
        void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* handle)
    {
        if (self(data).m_announced.handle)
            zwlr_data_control_offer_v1_destroy(self(data).m_announced.handle);
        self(data).m_announced = { handle, {} };
        zwlr_data_control_offer_v1_add_listener(handle, &offer, data);
    }
    static void selected(
        void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* handle)
    {
        self(data).selected(handle);
    }
    static void finished(void* data, zwlr_data_control_device_v1* device)
    {
        zwlr_data_control_device_v1_destroy(device);
        self(data).m_device = nullptr;
    }
    static constexpr zwlr_data_control_device_v1_listener device{ announced, selected, finished };

    static void send(
        void* data, zwlr_data_control_source_v1* source, const char*, std::int32_t pipe)
    {
        const bool is_current = source == self(data).m_source;
        new Giving(pipe, is_current ? self(data).m_own_text : TextSlice(), &self(data));
    }
    static void cancelled(void* data, zwlr_data_control_source_v1* source)
    {
        if (source == self(data).m_source)
            self(data).drop_source();
        else
            zwlr_data_control_source_v1_destroy(source);
    }
    static constexpr zwlr_data_control_source_v1_listener source{ send, cancelled };
};

std::unique_ptr<WaylandClipboard> WaylandClipboard::connected()
{
    const QString platform = QGuiApplication::platformName();
    const bool has_screen = platform == "xcb" || platform.startsWith("wayland");
    if (!has_screen || !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        return nullptr;
    wl_display* const display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    std::unique_ptr<WaylandClipboard> clipboard(new WaylandClipboard(display));
    return clipboard->m_device ? std::move(clipboard) : nullptr;
}

WaylandClipboard::WaylandClipboard(wl_display* display)
    : m_display(display)
{
    wl_registry* const registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &Listeners::registry, this);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    if (!m_seat || !m_manager)
        return;
    m_device = zwlr_data_control_manager_v1_get_data_device(m_manager, m_seat);
    zwlr_data_control_device_v1_add_listener(m_device, &Listeners::device, this);
    wl_display_roundtrip(display); // what lies there now
    auto& notifier = *new QSocketNotifier(wl_display_get_fd(display), QSocketNotifier::Read, this);
    connect(&notifier, &QSocketNotifier::activated, this, [this, &notifier] {
        advance();
        if (wl_display_get_error(m_display) != 0)
            notifier.setEnabled(false); // the session is over
    });
}

WaylandClipboard::~WaylandClipboard()
{
    drop_question();
    drop_offer();
    if (m_announced.handle)
        zwlr_data_control_offer_v1_destroy(m_announced.handle);
    if (m_source)
        zwlr_data_control_source_v1_destroy(m_source);
    if (m_device)
        zwlr_data_control_device_v1_destroy(m_device);
    if (m_manager)
        zwlr_data_control_manager_v1_destroy(m_manager);
    if (m_seat)
        wl_seat_destroy(m_seat);
    wl_display_disconnect(m_display);
}

void WaylandClipboard::offer(const TextSlice& text)
{
    if (!m_device)
        throw Failure("the session's clipboard is gone");
    if (m_source)
        zwlr_data_control_source_v1_destroy(m_source);
    m_source = nullptr;
    m_own_text = text;
    m_is_known = true;
    if (!text.empty()) {
        m_source = zwlr_data_control_manager_v1_create_data_source(m_manager);
        zwlr_data_control_source_v1_add_listener(m_source, &Listeners::source, this);
        zwlr_data_control_source_v1_offer(m_source, own_form().c_str());
        for (const char* form : { "text/plain;charset=utf-8", "text/plain", "UTF8_STRING" })
            zwlr_data_control_source_v1_offer(m_source, form);
    }
    zwlr_data_control_device_v1_set_selection(m_device, m_source);
    wl_display_flush(m_display);
}

void WaylandClipboard::drop_source()
{
    zwlr_data_control_source_v1_destroy(m_source);
    m_source = nullptr;
    m_own_text = {};
}

void WaylandClipboard::drop_offer()
{
    if (m_offer.handle)
        zwlr_data_control_offer_v1_destroy(m_offer.handle);
    m_offer = {};
}

void WaylandClipboard::selected(zwlr_data_control_offer_v1* handle)
{
    drop_offer();
    if (handle == m_announced.handle)
        m_offer = std::exchange(m_announced, {});
    const auto& forms = m_offer.forms;
    const bool is_own
        = handle ? std::find(forms.begin(), forms.end(), own_form()) != forms.end() : !m_source;
    if (is_own && m_is_known)
        return;
    m_is_known = false;
    changed();
}

void WaylandClipboard::ask_for_forms()
{
    const auto& forms = m_offer.forms;
    offered([&](const TextForm& form) {
        return std::find(forms.begin(), forms.end(), form.name) != forms.end();
    });
}

void WaylandClipboard::ask_for(const TextForm& form)
{
    drop_question();
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return end();
    // Others expect a pipe that waits for them.
    ::fcntl(pipe[1], F_SETFL, 0);
    zwlr_data_control_offer_v1_receive(m_offer.handle, form.name, pipe[1]);
    wl_display_flush(m_display);
    ::close(pipe[1]);
    m_answer = pipe[0];
    auto arrival = std::make_unique<QSocketNotifier>(m_answer, QSocketNotifier::Read);
    connect(arrival.get(), &QSocketNotifier::activated, this, &ClipboardFetch::advance);
    m_arrival = std::move(arrival);
}

void WaylandClipboard::drop_question()
{
    if (m_arrival) {
        m_arrival->setEnabled(false);
        m_arrival.release()->deleteLater(); // it may be the one that has brought us here
    }
    if (m_answer >= 0)
        ::close(m_answer);
    m_answer = -1;
}

std::vector<pollfd> WaylandClipboard::awaited() const
{
    return { { wl_display_get_fd(m_display), POLLIN, 0 }, { m_answer, POLLIN, 0 } };
}

void WaylandClipboard::handle_events()
{
    while (wl_display_prepare_read(m_display) != 0) {
        if (wl_display_dispatch_pending(m_display) < 0)
            return end(); // the session is over
    }
    wl_display_flush(m_display);
    pollfd readable{ wl_display_get_fd(m_display), POLLIN, 0 };
    if (::poll(&readable, 1, 0) > 0)
        wl_display_read_events(m_display);
    else
        wl_display_cancel_read(m_display);
    wl_display_dispatch_pending(m_display);
    if (m_answer >= 0)
        read_answer();
}

void WaylandClipboard::read_answer()
{
    std::array<char, 65536> piece;
    for (;;) {
        const int pipe = m_answer;
        const auto size = ::read(pipe, piece.data(), piece.size());
        if (size < 0 && (errno == EAGAIN || errno == EINTR))
            return;
        if (size <= 0)
            drop_question();
        received(QByteArray::fromRawData(piece.data(), std::max<ssize_t>(size, 0)));
        if (m_answer != pipe || size <= 0)
            return;
    }
}

} // namespace tessavox
