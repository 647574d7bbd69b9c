// Message boxes of the desktop.
#pragma once

#include "platform/message_boxes.h"

namespace tessavox {

class QtMessageBoxes : public MessageBoxes {
public:
    MessageAnswer show(const std::string& text, const std::string& title, MessageButtons buttons,
        MessageIcon icon) override;
};

} // namespace tessavox
