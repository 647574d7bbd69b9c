#include "platform/qt/x11_clipboard.h"

#include "platform/failure.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/x_server.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScreen>
#include <QSocketNotifier>
#include <QVariant>

#include <algorithm>
#include <array>
#include <cstring>
#include <qpa/qplatformnativeinterface.h>
#include <xcb/xcb.h>

namespace tessavox {
namespace {

/// Each question has a place of its own for the answer, so that a late one isn't taken for that to
/// the next question. So many questions later nobody answers the first one any more.
constexpr std::size_t answer_places = 8;

using x_server::Owned;

/// A text on the clipboard that shares its characters with the program's own copy.
class SharedText : public QMimeData {
public:
    explicit SharedText(TextSlice text)
        : m_text(std::move(text))
    {
    }
    QStringList formats() const override { return { "text/plain" }; }
    bool hasFormat(const QString& format) const override { return format == "text/plain"; }

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override
    {
        if (!hasFormat(format))
            return {};
        const QStringView text(m_text.view());
        return type.id() == QMetaType::QByteArray ? QVariant(text.toUtf8()) : text.toString();
    }

private:
    TextSlice m_text;
};

/// The toolkit gives a clipboard the time of the last event that it has seen, and the server
/// refuses whoever comes with a time before that of another program's copy.
void bring_toolkit_up_to_date()
{
    QPlatformNativeInterface& server = *QGuiApplication::platformNativeInterface();
    QScreen* const screen = QGuiApplication::primaryScreen();
    const auto now
        = reinterpret_cast<std::uintptr_t>(server.nativeResourceForScreen("gettimestamp", screen));
    const auto set_time = reinterpret_cast<void (*)()>( // by which the compiler takes the next cast
        server.nativeResourceFunctionForScreen("setapptime"));
    if (set_time)
        reinterpret_cast<void (*)(QScreen*, xcb_timestamp_t)>(set_time)(
            screen, static_cast<xcb_timestamp_t>(now));
}

} // namespace

struct X11Clipboard::Atoms {
    xcb_atom_t clipboard, targets, incremental;
    std::vector<xcb_atom_t> forms; // in their order
    std::array<xcb_atom_t, answer_places> places;
};

void X11Clipboard::Disconnect::operator()(xcb_connection_t* connection) const
{
    xcb_disconnect(connection);
}

std::unique_ptr<X11Clipboard> X11Clipboard::connected()
{
    if (QGuiApplication::platformName() != "xcb")
        return nullptr;
    Connection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()))
        return nullptr;
    return std::unique_ptr<X11Clipboard>(new X11Clipboard(std::move(connection)));
}

X11Clipboard::X11Clipboard(Connection connection)
    : m_connection(std::move(connection))
    , m_atoms(std::make_unique<Atoms>())
{
    xcb_connection_t* const server = m_connection.get();
    m_atoms->clipboard = atom("CLIPBOARD");
    m_atoms->targets = atom("TARGETS");
    m_atoms->incremental = atom("INCR");
    for (const TextForm& form : text_forms())
        m_atoms->forms.push_back(atom(form.name));
    for (std::size_t i = 0; i < answer_places; ++i)
        m_atoms->places[i] = atom(("TESSAVOX_" + std::to_string(i)).c_str());

    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    m_window = xcb_generate_id(server);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, m_window, screen.root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual, XCB_CW_EVENT_MASK, &events);
    xcb_flush(server);
    auto& notifier
        = *new QSocketNotifier(xcb_get_file_descriptor(server), QSocketNotifier::Read, this);
    connect(&notifier, &QSocketNotifier::activated, this, &ClipboardFetch::advance);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &X11Clipboard::changed);
}

X11Clipboard::~X11Clipboard() = default;

xcb_window_t X11Clipboard::owner() const
{
    const auto asked = xcb_get_selection_owner(m_connection.get(), m_atoms->clipboard);
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection.get(), asked, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

// The toolkit takes a text for its own also where the server has refused it.
bool X11Clipboard::is_ours() const
{
    const xcb_setup_t& toolkit = *xcb_get_setup(x_server::connection());
    return (owner() & ~toolkit.resource_id_mask) == toolkit.resource_id_base;
}

void X11Clipboard::offer(const TextSlice& text)
{
    QClipboard& clipboard = *QApplication::clipboard();
    bring_toolkit_up_to_date();
    if (text.empty())
        clipboard.clear();
    else
        clipboard.setMimeData(std::make_unique<SharedText>(text).release());
    if (text.empty() ? owner() != XCB_NONE : !is_ours())
        throw Failure("another program has just copied something");
}

std::uint32_t X11Clipboard::atom(const char* name)
{
    const auto asked = xcb_intern_atom(
        m_connection.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection.get(), asked, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void X11Clipboard::ask_for_forms()
{
    if (owner() == XCB_NONE)
        end();
    else
        ask(m_atoms->targets);
}

void X11Clipboard::ask_for(const TextForm& form)
{
    ask(m_atoms->forms[static_cast<std::size_t>(&form - text_forms().data())]);
}

std::vector<pollfd> X11Clipboard::awaited() const
{
    return { { xcb_get_file_descriptor(m_connection.get()), POLLIN, 0 } };
}

void X11Clipboard::handle_events()
{
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
            if (m_is_asked && m_comes_in_pieces && notice.atom == m_property
                && notice.state == XCB_PROPERTY_NEW_VALUE)
                take_answer();
            break;
        }
        default:
            break;
        }
    }
    if (xcb_connection_has_error(m_connection.get()) && is_started())
        end();
}

void X11Clipboard::ask(std::uint32_t target)
{
    m_is_asked = true;
    m_comes_in_pieces = false;
    m_target = target;
    m_property = m_atoms->places[++m_turn % answer_places];
    xcb_convert_selection(
        m_connection.get(), m_window, m_atoms->clipboard, m_target, m_property, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

void X11Clipboard::answered(std::uint32_t target, std::uint32_t property)
{
    if (!m_is_asked || m_comes_in_pieces || target != m_target)
        return;
    if (property == m_property)
        take_answer();
    else if (property == XCB_NONE)
        answer({}, true);
}

void X11Clipboard::take_answer()
{
    constexpr std::uint32_t all = 0x1fffffff;
    const auto asked = xcb_get_property(
        m_connection.get(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, all);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection.get(), asked, nullptr));
    const int size = reply ? xcb_get_property_value_length(reply.get()) : 0;
    if (reply && reply->type == m_atoms->incremental) {
        m_comes_in_pieces = true; // each of which is put there once the last one is taken
        return;
    }
    const auto* const bytes
        = size > 0 ? static_cast<const char*>(xcb_get_property_value(reply.get())) : nullptr;
    answer(QByteArray::fromRawData(bytes, size), !m_comes_in_pieces);
}

void X11Clipboard::answer(const QByteArray& piece, bool is_last)
{
    if (m_target == m_atoms->targets) {
        m_is_asked = false;
        std::vector<xcb_atom_t> targets(
            static_cast<std::size_t>(piece.size()) / sizeof(xcb_atom_t));
        std::memcpy(targets.data(), piece.constData(), targets.size() * sizeof(xcb_atom_t));
        return offered([&](const TextForm& form) {
            const auto wanted
                = m_atoms->forms[static_cast<std::size_t>(&form - text_forms().data())];
            return std::find(targets.begin(), targets.end(), wanted) != targets.end();
        });
    }
    if (!piece.isEmpty())
        received(piece);
    if (m_is_asked && (is_last || piece.isEmpty())) {
        m_is_asked = false;
        received({});
    }
}

} // namespace tessavox
