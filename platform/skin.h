// The look of the windows, from one file for all of them.
#pragma once

#include <string>

namespace tessavox {

class Form;

class Skin {
public:
    virtual ~Skin() = default;
    /// @throws Failure if the file can't be read; windows then stay plain.
    virtual void LoadSkin(const std::string& path) = 0;
    /// Paints the form's window and its controls by the skin that was loaded last. What a skin says
    /// that can't be understood has no effect. @throws Failure while the form isn't loaded.
    virtual void ApplySkin(Form& form) = 0;
};

} // namespace tessavox
