// The web view of a document: its address box with the history of it, and the tabs that lead there
// and back.
#pragma once

#include "persist/settings_files.h"
#include "platform/controls/control.h"

#include <string>

namespace tessavox {

class DocumentSpeech;
class PCCFile;
struct DocumentControls;

class WebView {
public:
    /// `ConfigFolder` is where `settings` finds the address of the last page. The handlers lay the
    /// window out for its text and for its page.
    WebView(DocumentSpeech& speech, PCCFile& settings, const std::string& ConfigFolder,
        Handler control_pos, Handler control_pos2);

    /// Takes the address of the last page out of the settings that were read last.
    void load_last_address();
    /// Reads the addresses that were typed in earlier runs into the history and the box.
    void load_history();
    /// What is kept as the address of the last page: what the box says, if that has a point.
    std::string address_to_keep() const;
    const UrlHistory& history() const { return m_sUrlHistory; }

    /// Shows a site from the Website menu. The tab that is in front stays there.
    void show_site(const std::string& address);
    /// By the number of the tool button, from 1, separators too.
    void Toolbar2_ButtonClick(int index);

private:
    void TabStrip1_Click();
    void Command3_Click();
    void Combo1_Click();
    void Combo1_KeyDown(int KeyCode);
    void WebBrowser1_NavigateComplete2();
    bool is_known(const std::string& address) const;
    void remember(const std::string& address);
    void navigate(const std::string& address);

    DocumentSpeech& m_speech;
    DocumentControls& m_window;
    PCCFile& m_settings;
    const std::string& m_config_folder;
    Handler m_control_pos;
    Handler m_control_pos2;
    UrlHistory m_sUrlHistory;
    std::string m_sLastUrl; // as the settings had it at the load
};

} // namespace tessavox
