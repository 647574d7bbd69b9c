// The look of the windows: a style sheet of the toolkit.
#pragma once

#include "platform/file_store.h"
#include "platform/skin.h"

#include <QString>

namespace tessavox {

class QtSkin : public Skin {
public:
    explicit QtSkin(FileStore& files)
        : m_files(files)
    {
    }
    void LoadSkin(const std::string& path) override;
    void ApplySkin(Form& form) override;

private:
    FileStore& m_files;
    std::string m_path; // of what is loaded
    QString m_sheet;
};

} // namespace tessavox
