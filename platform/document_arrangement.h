// How the windows of the documents are laid out side by side.
#pragma once

namespace tessavox {

/// The numbers by which the commands of the Window menu call them.
enum class Arrangement { cascade = 0, tile_horizontal = 1, tile_vertical = 2, icons = 3 };

class DocumentArrangement {
public:
    virtual ~DocumentArrangement() = default;
    /// Cascades the windows, puts them one below the other (tile_horizontal) or side by side
    /// (tile_vertical), or the minimised ones in a row at the bottom. Minimised windows stay so.
    virtual void Arrange(Arrangement arrangement) = 0;
};

} // namespace tessavox
