// The clipboard as a session offers it to a program that isn't in front.
#pragma once

#include "platform/qt/copied_forms.h"

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <poll.h>
#include <vector>

namespace tessavox {

/// The toolkit itself waits for the owner of the clipboard, for many seconds if that one hangs.
/// This asks on a connection of its own and handles the answers as they come: in the message loop,
/// in advance(), or in wait(). What is fetched is the form that the text is best taken from.
class ClipboardFetch : public QObject {
public:
    using Notice = std::function<void()>;

    /// The one for this session; null if only the toolkit can reach its clipboard.
    static std::unique_ptr<ClipboardFetch> of_this_session();

    /// Whether what lies there is this program's own.
    virtual bool is_ours() const = 0;
    /// Puts a text there; nothing if it is empty. @throws Failure if the session doesn't take it.
    virtual void offer(const TextSlice& text) = 0;

    /// `notice` runs when something else lies there.
    void when_changed(Notice notice) { m_changed = std::move(notice); }
    /// `notice` runs when all is fetched.
    void when_done(Notice notice) { m_done = std::move(notice); }

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
    bool offers_text() const { return m_forms && m_forms->offer_text(); }
    /// What was fetched, once it is done; it is forgotten here.
    TextSlice take_text();

protected:
    /// What there is; has offered() or end() called, at once or later.
    virtual void ask_for_forms() = 0;
    /// A form that was offered; has received() called, at once or later.
    virtual void ask_for(const TextForm& form) = 0;
    /// Whatever still comes of the last question is no answer any more.
    virtual void drop_question() = 0;
    virtual void handle_events() = 0;
    virtual std::vector<pollfd> awaited() const = 0;

    void changed() const;
    void offered(const std::function<bool(const TextForm&)>& is_offered);
    /// A piece of the answer, an empty one at its end.
    void received(const QByteArray& piece);
    void end(); // there is no more to fetch

private:
    enum class State { idle, asked, done };
    void ask_for_next();

    Notice m_changed;
    Notice m_done;
    State m_state = State::idle;
    std::chrono::steady_clock::time_point m_start;
    std::optional<CopiedForms> m_forms;
};

} // namespace tessavox
