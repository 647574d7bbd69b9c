// The clipboard of an X11 session.
#pragma once

#include "platform/qt/clipboard_fetch.h"

#include <cstdint>

struct xcb_connection_t;

namespace tessavox {

/// Changes and what is ours are the toolkit's; what others have copied is asked for here.
class X11Clipboard : public ClipboardFetch {
public:
    /// Null where the windows are no X11 windows.
    static std::unique_ptr<X11Clipboard> connected();
    ~X11Clipboard() override;

    bool is_ours() const override;
    void offer(const TextSlice& text) override;

protected:
    void ask_for_forms() override;
    void ask_for(const TextForm& form) override;
    void drop_question() override { m_is_asked = false; }
    void handle_events() override;
    std::vector<pollfd> awaited() const override;

private:
    struct Atoms;
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const;
    };
    using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

    explicit X11Clipboard(Connection connection);
    std::uint32_t atom(const char* name);
    std::uint32_t owner() const; // its window
    void ask(std::uint32_t target);
    void answered(std::uint32_t target, std::uint32_t property);
    void take_answer();
    void answer(const QByteArray& piece, bool is_last);

    Connection m_connection;
    std::unique_ptr<Atoms> m_atoms;
    std::uint32_t m_window = 0;
    bool m_is_asked = false;
    bool m_comes_in_pieces = false;
    std::uint32_t m_target = 0; // asked for at present
    std::uint32_t m_property = 0; // where the answer will be
    std::size_t m_turn = 0;
};

} // namespace tessavox
