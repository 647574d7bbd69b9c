#include "web/web_commands.h"

#include "forms/main_controls.h"
#include "platform/failure.h"
#include "web/web_view.h"

namespace tessavox {

namespace {

using M = MainControls;

/// A site has the same name in every language.
struct SiteRow {
    MenuItem M::*item;
    const char* caption;
    const char* address;
};

constexpr SiteRow sites[] = {
    { &M::munTIME, "TIME", "https://time.com/" },
    { &M::mnuESPN, "ESPN", "https://www.espn.com/" },
    { &M::mnuCNET, "CNET", "https://www.cnet.com/" },
    { &M::mnuABC, "ABC", "https://abcnews.go.com/" },
    { &M::mnuReuters, "Reuters", "https://www.reuters.com/" },
    { &M::mnuMSNBC, "MSNBC", "https://www.msnbc.com/" },
    { &M::mnuYahoo, "Yahoo", "https://www.yahoo.com/" },
    { &M::mnuBBC, "BBC", "https://www.bbc.com/news" },
    { &M::mnuCNN, "CNN", "https://www.cnn.com/" },
    { &M::mnuVOA, "Voice Of America", "https://www.voanews.com/" },
    { &M::munGoogle, "Google", "https://www.google.com/" },
};

} // namespace

void add_web_commands(MainControls& main, const std::function<WebView&()>& active)
{
    for (const SiteRow& row : sites) {
        MenuItem& item = main.*row.item;
        item.Caption = row.caption;
        item.set_container(&main.mnuWebsite);
        item.Click
            = [active, address = row.address] { attempt([&] { active().show_site(address); }); };
    }
    main.Toolbar2.ButtonClick
        = [active](int index) { attempt([&] { active().Toolbar2_ButtonClick(index); }); };
}

} // namespace tessavox
