// The place of a web page among the controls of a form.
#pragma once

#include "platform/controls/control.h"
#include "platform/web_pane.h"

#include <memory>

namespace tessavox {

/// The pane holds the page; this control gives it its geometry and visibility.
class WebBrowser : public Control {
public:
    WebBrowser(Form& form, std::string name, std::unique_ptr<WebPane> pane)
        : Control(form, std::move(name), "WebBrowser")
        , m_pane(std::move(pane))
    {
    }
    WebPane* operator->() const { return m_pane.get(); }
    WebPane& pane() const { return *m_pane; }

private:
    std::unique_ptr<WebPane> m_pane;
};

} // namespace tessavox
