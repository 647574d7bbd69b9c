// The Website menu, with its preset sites, and the tool bar of the web view.
#pragma once

#include <functional>

namespace tessavox {

struct MainControls;
class WebView;

/// `active` gives the web view of the active document. @throws Failure if there is none; the
/// command then does nothing.
void add_web_commands(MainControls& main, const std::function<WebView&()>& active);

} // namespace tessavox
