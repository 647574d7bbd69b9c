// What the desktop opens for the program.
#pragma once

#include <string>

namespace tessavox {

class Shell {
public:
    virtual ~Shell() = default;
    /// The lowest result of open() that means success.
    static constexpr int opened = 33;
    /// Opens a file with the program that the desktop has for its kind, without waiting for that.
    /// The name of the help file, "tessavox.chm", stands for the shipped help pages. Returns
    /// `opened` or more, else what went wrong: 2 no such file, 3 no such folder, 5 not allowed, 31
    /// no program for it; 0 for anything else.
    virtual int open(const std::string& path) = 0;
    /// Opens a web or mail address likewise. @throws Failure if the desktop has nothing for it.
    virtual void navigate(const std::string& address) = 0;
};

} // namespace tessavox
