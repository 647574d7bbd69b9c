// The skin of a window, the same for all.
#pragma once

#include "platform/controls/form.h"
#include "platform/failure.h"
#include "platform/skin.h"

namespace tessavox {

constexpr const char* skin_file = "/winaqua2.skn"; // in the folder of the shipped data

/// Part of a window's load. Without the skin's file the window stays plain.
inline void apply_skin(Form& form, Skin& skin, const std::string& AppFolder)
{
    attempt_each([&] { skin.LoadSkin(AppFolder + skin_file); }, [&] { skin.ApplySkin(form); });
}

} // namespace tessavox
