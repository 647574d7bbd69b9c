// The place of a web page among the controls of a form.
#pragma once

#include "platform/controls/control.h"
#include "platform/failure.h"
#include "platform/web_pane.h"

#include <memory>

namespace tessavox {

class WebBrowser : public Control {
public:
    WebBrowser(Form& form, std::string name)
        : Control(form, std::move(name), "WebBrowser")
    {
    }
    void set_pane(std::unique_ptr<WebPane> pane) { m_pane = std::move(pane); }
    /// @throws Failure if this platform shows no pages.
    WebPane& pane() const
    {
        if (!m_pane)
            throw Failure("pages can't be shown here");
        return *m_pane;
    }

private:
    std::unique_ptr<WebPane> m_pane;
};

} // namespace tessavox
