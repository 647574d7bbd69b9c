// The icons of tool bars, menus and buttons.
#pragma once

#include <QIcon>
#include <QPalette>

#include <string>
#include <string_view>

namespace tessavox {

/// Once at the start: the folder of the program's own drawings.
void use_icons_of(const std::string& folder);

/// Where an icon stands: what is pointed at in a menu has the colours of a selection.
enum class IconPlace { menu, tool_bar };

/// The icon of a menu item, by its name, or of a tool button, by its key: that of the desktop's
/// theme, or else our own, in the colour of the text. Empty for those without one.
QIcon icon_of_command(std::string_view name, IconPlace place);

/// Always our own: of a button among the big ones of a document, or in the dock bar, in the colour
/// that its text has by its palette.
QIcon icon_of_big_button(std::string_view name, const QPalette& palette);
QIcon icon_of_dock_button(std::string_view name, const QPalette& palette);

} // namespace tessavox
