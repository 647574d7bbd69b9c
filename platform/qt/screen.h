// The mouse pointer.
#pragma once

#include "platform/screen.h"

namespace tessavox {

class QtScreen : public Screen {
public:
    ~QtScreen() override;
    void set_MousePointer(MousePointer pointer) override;

private:
    bool m_is_busy = false;
};

} // namespace tessavox
