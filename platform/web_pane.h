// The pane that shows web pages and other documents that come with their own layout.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tessavox {

/// Commands that the page itself carries out, by their long known numbers.
enum class WebCommand { save = 3, print = 6, copy = 12, select_all = 17 };

/// What comes of a navigation shows in the pane, as errors do; nothing here waits for it.
class WebPane {
public:
    virtual ~WebPane() = default;
    /// Begins to show what lies at an address or a path; a text that is neither is searched for.
    /// @throws Failure if pages can't be shown here, which the pane then says.
    virtual void Navigate(const std::string& url) = 0;
    /// @throws Failure if there is no such page.
    virtual void GoBack() = 0;
    virtual void GoForward() = 0;
    /// These do nothing while there is no page.
    virtual void Stop() = 0;
    virtual void Refresh() = 0;
    /// Begins to show a page to search from. @throws Failure as Navigate does.
    virtual void GoSearch() = 0;
    /// The address of what is shown, empty before the first page.
    virtual std::string LocationURL() const = 0;
    /// copy: puts what is selected on the clipboard, where anything is, and returns when it can be
    /// read there. select_all: selects the whole page and returns when that is done. Within one
    /// handler both together wait 1.5 s at most, and meanwhile the windows are painted, but nothing
    /// of the program runs. save and print ask what they need to know themselves.
    virtual void ExecWB(WebCommand command) = 0;

    std::function<void()> NavigateComplete2; // LocationURL is that of the page to which it came
};

class WebPanes {
public:
    virtual ~WebPanes() = default;
    /// A pane that costs next to nothing until its first page.
    virtual std::unique_ptr<WebPane> create() = 0;
};

} // namespace tessavox
