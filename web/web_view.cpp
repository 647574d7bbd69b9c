#include "web/web_view.h"

#include "forms/document_controls.h"
#include "persist/text_file.h"
#include "platform/failure.h"
#include "speech/document_speech.h"

#include <algorithm>
#include <utility>

namespace tessavox {

namespace {

enum View : std::int16_t { text_view = 1, web_view = 2 };
constexpr int enter_key = 13;
constexpr const char* default_site = "https://www.google.com/";

bool has_point(const std::string& address)
{
    return address.find('.') != std::string::npos;
}

/// The place of an address that comes to a list of so many. Only loosely related to its place in
/// the list, so gaps remain; beyond 30 entries there is none.
std::size_t history_index(int entries)
{
    constexpr int before_wrap = 10;
    return static_cast<std::size_t>(entries < before_wrap ? entries + 1 : entries - before_wrap);
}

/// By the number of the tool button, from 1; the fourth is a separator.
constexpr void (WebPane::*tool_actions[])() = { &WebPane::GoBack, &WebPane::GoForward,
    &WebPane::Stop, nullptr, &WebPane::Refresh, &WebPane::GoSearch };
constexpr int last_tool_that_shows_the_address = 2;

} // namespace

WebView::WebView(DocumentSpeech& speech, PCCFile& settings, const std::string& ConfigFolder,
    Handler control_pos, Handler control_pos2)
    : m_speech(speech)
    , m_window(speech.windows.document)
    , m_settings(settings)
    , m_config_folder(ConfigFolder)
    , m_control_pos(std::move(control_pos))
    , m_control_pos2(std::move(control_pos2))
{
    m_window.TabStrip1.Click = [this] { TabStrip1_Click(); };
    m_window.Command3.Click = [this] { Command3_Click(); };
    m_window.Combo1.Click = [this] { Combo1_Click(); };
    m_window.Combo1.KeyDown = [this](int KeyCode, int) { Combo1_KeyDown(KeyCode); };
    m_window.WebBrowser1->NavigateComplete2 = [this] { WebBrowser1_NavigateComplete2(); };
}

void WebView::load_last_address()
{
    m_sLastUrl = m_settings.FileText(web_address_line);
}

// Without setting3.txt the lines of the file read before are taken, whatever they hold; so it is
// with setting2.txt after it.
void WebView::load_history()
{
    m_settings.ReadFromFile(m_config_folder + history_settings_file);
    for (std::int16_t line = 2; line < m_settings.TotalLine(); ++line) {
        const std::string address = m_settings.FileText(line);
        const auto index = static_cast<std::size_t>(line - 2);
        if (index < m_sUrlHistory.size())
            m_sUrlHistory[index] = address;
        if (!address.empty())
            m_window.Combo1.AddItem(address);
    }
}

std::string WebView::address_to_keep() const
{
    const std::string& shown = m_window.Combo1.Text.get();
    return has_point(shown) ? shown : m_sLastUrl;
}

// Anew at each switch, to the address of the last window that was closed, not to where this one
// was.
void WebView::TabStrip1_Click()
{
    m_speech.session.StopBtn_Click();
    const auto tab = static_cast<std::size_t>(m_window.TabStrip1.SelectedItem.get());
    if (m_window.TabStrip1.Tabs()[tab].key() == "text") {
        m_speech.place.view_status = text_view;
        m_control_pos();
        return;
    }
    m_speech.place.view_status = web_view;
    m_settings.ReadFromFile(m_config_folder + speech_settings_file);
    const std::string last = m_settings.FileText(web_address_line);
    const std::string url = has_point(last) ? last : default_site;
    m_window.Combo1.Text = url;
    navigate(url);
    m_control_pos2();
}

void WebView::Command3_Click()
{
    const std::string address = m_window.Combo1.Text;
    remember(address);
    m_speech.place.view_status = web_view;
    navigate(address);
}

void WebView::Combo1_Click()
{
    navigate(m_window.Combo1.Text);
}

void WebView::Combo1_KeyDown(int KeyCode)
{
    m_speech.place.view_status = web_view;
    const std::string address = m_window.Combo1.Text;
    if (KeyCode != enter_key || address.empty())
        return;
    if (!is_known(address))
        remember(address);
    navigate(address);
}

void WebView::WebBrowser1_NavigateComplete2()
{
    m_window.Combo1.Text = m_window.WebBrowser1->LocationURL();
}

/// Looks as far as the list is long.
bool WebView::is_known(const std::string& address) const
{
    const auto entries = static_cast<std::size_t>(m_window.Combo1.ListCount());
    const auto looked_at = std::min(entries + 1, m_sUrlHistory.size());
    const auto end = m_sUrlHistory.begin() + static_cast<std::ptrdiff_t>(looked_at);
    return std::find(m_sUrlHistory.begin(), end, address) != end;
}

void WebView::remember(const std::string& address)
{
    const std::size_t index = history_index(m_window.Combo1.ListCount());
    if (index < m_sUrlHistory.size())
        m_sUrlHistory[index] = address;
    m_window.Combo1.AddItem(address);
}

void WebView::navigate(const std::string& address)
{
    attempt([&] { m_window.WebBrowser1->Navigate(address); });
}

void WebView::show_site(const std::string& address)
{
    m_speech.place.view_status = web_view;
    m_control_pos2();
    navigate(address);
}

void WebView::Toolbar2_ButtonClick(int index)
{
    if (const auto action = tool_actions[index - 1])
        attempt([&] { (m_window.WebBrowser1.pane().*action)(); });
    if (index <= last_tool_that_shows_the_address)
        WebBrowser1_NavigateComplete2();
}

} // namespace tessavox
