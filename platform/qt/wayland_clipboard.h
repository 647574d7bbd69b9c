// The clipboard of a Wayland session that lets programs without the focus reach it.
#pragma once

#include "platform/qt/clipboard_fetch.h"

#include <memory>
#include <string>
#include <vector>

class QSocketNotifier;
struct wl_display;
struct wl_registry;
struct wl_seat;
struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace tessavox {

class WaylandClipboard : public ClipboardFetch {
public:
    /// Null where there is no such session.
    static std::unique_ptr<WaylandClipboard> connected();
    ~WaylandClipboard() override;

    /// False: the text that was offered is told by the session to be there still.
    bool is_ours() const override { return false; }
    void offer(const TextSlice& text) override;

protected:
    void ask_for_forms() override;
    void ask_for(const TextForm& form) override;
    void drop_question() override;
    void handle_events() override;
    std::vector<pollfd> awaited() const override;

private:
    struct Listeners;
    /// What some program has copied, and in which forms.
    struct Offer {
        zwlr_data_control_offer_v1* handle = nullptr;
        std::vector<std::string> forms;
    };

    explicit WaylandClipboard(wl_display* display);
    void selected(zwlr_data_control_offer_v1* handle);
    void drop_offer();
    void drop_source();
    void read_answer();

    wl_display* m_display;
    wl_seat* m_seat = nullptr;
    zwlr_data_control_manager_v1* m_manager = nullptr;
    zwlr_data_control_device_v1* m_device = nullptr;
    zwlr_data_control_source_v1* m_source = nullptr; // of the text that is ours
    TextSlice m_own_text;
    bool m_is_known = false; // that what lies there is what was offered last
    Offer m_announced; // that a selection event may follow
    Offer m_offer;
    int m_answer = -1; // the pipe that it comes through
    std::unique_ptr<QSocketNotifier> m_arrival; // of a piece of it
};

} // namespace tessavox
