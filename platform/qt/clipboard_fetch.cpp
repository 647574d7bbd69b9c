#include "platform/qt/clipboard_fetch.h"

#include <QGuiApplication>
#include <QSocketNotifier>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <span>
#include <xcb/xcb.h>

namespace tessavox {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr qsizetype largest_text_bytes = qsizetype(128) << 20;
/// Each question has a place of its own for the answer, so that a late one isn't taken for that to
/// the next question. So many questions later nobody answers the first one any more.
constexpr std::size_t answer_places = 8;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply> using Owned = std::unique_ptr<Reply, Free>;

} // namespace

/// A form of text: what the owner calls it, and the format that it comes in.
struct ClipboardFetch::Form {
    const char* target;
    const char* format;
};

namespace {

constexpr const char* uri_list = "text/uri-list";
constexpr const char* plain = "text/plain";
constexpr const char* page = "text/html";

} // namespace

struct ClipboardFetch::Atoms {
    /// The best one first.
    static constexpr std::array<Form, 5> forms{ {
        { uri_list, uri_list },
        { "UTF8_STRING", plain },
        { "text/plain;charset=utf-8", plain },
        { "STRING", plain },
        { page, page },
    } };
    xcb_atom_t clipboard, targets, incremental;
    std::array<xcb_atom_t, forms.size()> form_targets;
    std::array<xcb_atom_t, answer_places> places;
};

void ClipboardFetch::Disconnect::operator()(xcb_connection_t* connection) const
{
    xcb_disconnect(connection);
}

bool ClipboardFetch::is_possible()
{
    return QGuiApplication::platformName() == "xcb";
}

ClipboardFetch::ClipboardFetch()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_atoms(std::make_unique<Atoms>())
{
    if (xcb_connection_has_error(m_connection.get()))
        return;
    xcb_connection_t* connection = m_connection.get();
    m_atoms->clipboard = atom("CLIPBOARD");
    m_atoms->targets = atom("TARGETS");
    m_atoms->incremental = atom("INCR");
    for (std::size_t i = 0; i < Atoms::forms.size(); ++i)
        m_atoms->form_targets[i] = atom(Atoms::forms[i].target);
    for (std::size_t i = 0; i < answer_places; ++i)
        m_atoms->places[i] = atom(("TESSAVOX_" + std::to_string(i)).c_str());

    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    m_window = xcb_generate_id(connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, screen.root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection);
    auto& notifier
        = *new QSocketNotifier(xcb_get_file_descriptor(connection), QSocketNotifier::Read, this);
    connect(&notifier, &QSocketNotifier::activated, this, &ClipboardFetch::advance);
}

ClipboardFetch::~ClipboardFetch() = default;

std::uint32_t ClipboardFetch::atom(const char* name)
{
    const auto asked = xcb_intern_atom(
        m_connection.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection.get(), asked, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void ClipboardFetch::start()
{
    stop();
    m_start = Clock::now();
    const auto asked = xcb_get_selection_owner(m_connection.get(), m_atoms->clipboard);
    const Owned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(m_connection.get(), asked, nullptr));
    if (!owner || owner->owner == XCB_NONE)
        m_state = State::done;
    else
        ask(m_atoms->targets);
}

void ClipboardFetch::stop()
{
    m_state = State::idle;
    m_to_ask.clear();
    m_asked = nullptr;
    m_offers_text = false;
    m_offered.clear();
}

milliseconds ClipboardFetch::since_start() const
{
    return std::chrono::duration_cast<milliseconds>(Clock::now() - m_start);
}

void ClipboardFetch::wait(milliseconds patience)
{
    const auto until = Clock::now() + patience;
    for (advance(); m_state != State::done; advance()) {
        const auto left = std::chrono::duration_cast<milliseconds>(until - Clock::now());
        if (left.count() <= 0)
            return;
        pollfd readable{ xcb_get_file_descriptor(m_connection.get()), POLLIN, 0 };
        ::poll(&readable, 1, static_cast<int>(left.count()));
    }
}

void ClipboardFetch::advance()
{
    const bool was_done = is_done();
    while (const Owned<xcb_generic_event_t> event{ xcb_poll_for_event(m_connection.get()) }) {
        switch (event->response_type & 0x7f) {
        case XCB_SELECTION_NOTIFY: {
            const auto& notice
                = *reinterpret_cast<const xcb_selection_notify_event_t*>(event.get());
            answered(notice.target, notice.property);
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& notice = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            if (m_state == State::receiving_pieces && notice.atom == m_property
                && notice.state == XCB_PROPERTY_NEW_VALUE)
                take_answer();
            break;
        }
        default:
            break;
        }
    }
    if (xcb_connection_has_error(m_connection.get()))
        m_state = State::done;
    if (is_done() && !was_done && m_notice)
        m_notice();
}

void ClipboardFetch::ask(std::uint32_t target)
{
    m_state = State::asked;
    m_target = target;
    m_property = m_atoms->places[++m_turn % answer_places];
    m_answer.clear();
    xcb_convert_selection(
        m_connection.get(), m_window, m_atoms->clipboard, m_target, m_property, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

void ClipboardFetch::answered(std::uint32_t target, std::uint32_t property)
{
    if (m_state != State::asked || target != m_target)
        return;
    if (property == m_property)
        take_answer();
    else if (property == XCB_NONE)
        answer_is_complete(); // with nothing
}

void ClipboardFetch::take_answer()
{
    constexpr std::uint32_t all = 0x1fffffff;
    const auto asked = xcb_get_property(
        m_connection.get(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, all);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection.get(), asked, nullptr));
    const int size = reply ? xcb_get_property_value_length(reply.get()) : 0;
    if (reply && reply->type == m_atoms->incremental) {
        m_state = State::receiving_pieces; // each of which is put there once the last one is taken
        return;
    }
    if (size > 0)
        m_answer.append(
            static_cast<const char*>(xcb_get_property_value(reply.get())), qsizetype(size));
    if (m_answer.size() > largest_text_bytes) {
        m_offered.clear();
        m_state = State::done;
    } else if (m_state == State::asked || size == 0) {
        answer_is_complete();
    }
}

void ClipboardFetch::answer_is_complete()
{
    if (m_target == m_atoms->targets)
        choose_forms();
    else if (m_asked && !m_answer.isEmpty())
        m_offered.setData(m_asked->format, m_answer);
    const QList<QUrl> urls = m_offered.urls();
    if (!urls.isEmpty() && urls.front().isLocalFile())
        m_to_ask.clear(); // files need no other form
    ask_for_next();
}

void ClipboardFetch::ask_for_next()
{
    if (m_to_ask.empty()) {
        m_state = State::done;
        return;
    }
    m_asked = m_to_ask.front();
    m_to_ask.erase(m_to_ask.begin());
    ask(m_atoms->form_targets[static_cast<std::size_t>(m_asked - Atoms::forms.data())]);
}

void ClipboardFetch::choose_forms()
{
    std::vector<xcb_atom_t> targets(static_cast<std::size_t>(m_answer.size()) / sizeof(xcb_atom_t));
    std::memcpy(targets.data(), m_answer.constData(), targets.size() * sizeof(xcb_atom_t));
    const char* format = nullptr;
    for (std::size_t i = 0; i < Atoms::forms.size(); ++i) {
        const Form& form = Atoms::forms[i];
        const bool is_offered
            = std::find(targets.begin(), targets.end(), m_atoms->form_targets[i]) != targets.end();
        const bool is_known = format && format != uri_list; // a better form of the same text
        if (!is_offered || is_known)
            continue;
        format = form.format;
        m_to_ask.push_back(&form);
    }
    m_offers_text = !m_to_ask.empty();
}

} // namespace tessavox
