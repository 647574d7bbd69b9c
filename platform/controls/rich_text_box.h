// The place of a rich text pane among the controls of a form.
#pragma once

#include "platform/controls/control.h"
#include "platform/rich_text_pane.h"

#include <memory>

namespace tessavox {

/// The pane holds text and selection; this control gives it its geometry and visibility.
class RichTextBox : public Control {
public:
    RichTextBox(Form& form, std::string name, std::unique_ptr<RichTextPane> pane)
        : Control(form, std::move(name), "RichTextBox")
        , m_pane(std::move(pane))
    {
    }
    RichTextPane* operator->() const { return m_pane.get(); }
    RichTextPane& pane() const { return *m_pane; }

private:
    std::unique_ptr<RichTextPane> m_pane;
};

} // namespace tessavox
