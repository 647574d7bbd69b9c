// The pane that shows web pages and other documents that come with their own layout.
#pragma once

#include <string>

namespace tessavox {

/// Commands that the page itself carries out, by their long known numbers.
enum class WebCommand { save = 3, print = 6 };

class WebPane {
public:
    virtual ~WebPane() = default;
    /// Begins to show what lies at an address or a path. @throws Failure if that can't be tried.
    virtual void Navigate(const std::string& url) = 0;
    /// @throws Failure if there is nothing to do it with.
    virtual void ExecWB(WebCommand command) = 0;
};

} // namespace tessavox
