// Opens files and addresses with the desktop's own programs.
#pragma once

#include "platform/shell.h"

#include <string>

namespace tessavox {

class QtShell : public Shell {
public:
    /// `app_folder` holds the help pages.
    explicit QtShell(std::string app_folder)
        : m_app_folder(std::move(app_folder))
    {
    }
    int open(const std::string& path) override;
    void navigate(const std::string& address) override;

private:
    std::string m_app_folder;
};

} // namespace tessavox
