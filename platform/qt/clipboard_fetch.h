// Fetches what another program offers on the clipboard of an X11 session.
#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

struct xcb_connection_t;

namespace tessavox {

/// The toolkit itself waits for the owner of the clipboard, for many seconds if that one hangs.
/// This asks on a connection of its own and handles the answers as they come: in the message loop,
/// in advance(), or in wait(). What is fetched is the form that the text is best taken from.
class ClipboardFetch : public QObject {
public:
    ClipboardFetch();
    ~ClipboardFetch() override;

    /// Whether the clipboard of this session can be asked in this way.
    static bool is_possible();

    /// `notice` runs when all is done.
    void when_done(std::function<void()> notice) { m_notice = std::move(notice); }

    /// Asks anew, and forgets what was asked and offered before.
    void start();
    void stop();
    bool is_started() const { return m_state != State::idle; }
    bool is_done() const { return m_state == State::done; }
    std::chrono::milliseconds since_start() const;
    /// Handles the answers that have come.
    void advance();
    /// Handles answers until all is done or the time is over.
    void wait(std::chrono::milliseconds patience);

    /// Whether the owner is known to offer a form of text.
    bool offers_text() const { return m_offers_text; }
    /// What was fetched, once it is done.
    const QMimeData& offered() const { return m_offered; }

private:
    enum class State { idle, asked, receiving_pieces, done };
    struct Form;
    struct Atoms;
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };

    std::uint32_t atom(const char* name);
    void ask(std::uint32_t target);
    void ask_for_next();
    void answered(std::uint32_t target, std::uint32_t property);
    void take_answer();
    void answer_is_complete();
    void choose_forms();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<Atoms> m_atoms;
    std::uint32_t m_window = 0;
    State m_state = State::idle;
    std::chrono::steady_clock::time_point m_start;
    std::uint32_t m_target = 0; // asked for at present
    std::uint32_t m_property = 0; // where the answer will be
    std::size_t m_turn = 0;
    QByteArray m_answer;
    std::vector<const Form*> m_to_ask;
    const Form* m_asked = nullptr;
    bool m_offers_text = false;
    QMimeData m_offered;
    std::function<void()> m_notice;
};

} // namespace tessavox
