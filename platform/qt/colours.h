// How well colours can be told from each other, by the Web Content Accessibility Guidelines 2.2.
#pragma once

#include <QColor>

namespace tessavox {

/// What a text needs to be read, by section 1.4.3.
constexpr double contrast_of_text = 4.5;

/// So much of the one, from 0 to 1, and the rest of the other.
QColor mixed(const QColor& one, const QColor& other, double share);

/// From 1, for the same colour, to 21, for black and white.
double contrast(const QColor& one, const QColor& other);

bool is_dark(const QColor& ground);

/// `ink` as it is or, where a text of it could not be read on `ground`, nearer to black or white.
QColor legible(const QColor& ink, const QColor& ground);

} // namespace tessavox
