// How anything that can go wrong outside the program's own logic is reported, and how a routine
// steps over it.
#pragma once

#include <stdexcept>
#include <utility>

namespace tessavox {

/// A platform call, a conversion or a checked sum that could not be carried out. what() is a plain
/// text for the trace; users never see it. Nothing else is ever thrown on purpose, so anything that
/// is no Failure is a programming error and must be left to surface.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Runs one statement and steps over its Failure. Returns whether the statement went through.
template <class Statement> bool attempt(Statement&& statement)
{
    try {
        std::forward<Statement>(statement)();
        return true;
    } catch (const Failure&) {
        return false;
    }
}

/// Runs the statements in their order, each whatever became of the one before it.
template <class... Statements> void attempt_each(Statements&&... statements)
{
    (attempt(std::forward<Statements>(statements)), ...);
}

} // namespace tessavox
